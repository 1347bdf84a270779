// Cases that hold for a historian on each engine; what one does otherwise is declared with it.
#pragma once

#include <gtest/gtest.h>

#include "tests/controls/historian_server.h"
#include "tests/provider/conformance/engine_under_test.h"

namespace orvane::tests {

using provider::conformance::Difference;
using provider::conformance::EngineUnderTest;

class OnEngines : public testing::WithParamInterface<EngineUnderTest> {
 protected:
  /// Whether the engine says of itself that it is so.
  static bool Differs(Difference difference) { return GetParam().differences.contains(difference); }
};

/// Runs the cases of a suite on every engine.
#define ORVANE_ON_ENGINES(suite)                                                          \
  INSTANTIATE_TEST_SUITE_P(engines, suite,                                                \
                           testing::ValuesIn(::orvane::provider::conformance::Engines()), \
                           [](const auto& engine) { return std::string(engine.param.sName); })

}  // namespace orvane::tests
