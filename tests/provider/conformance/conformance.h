// A connection to a server of each engine in turn, for cases that say what all of them promise, in
// terms of historian SQL and rowsets.
#pragma once

#include <gtest/gtest.h>

#include "tests/provider/conformance/engine_under_test.h"
#include "tests/provider/session_acts.h"

namespace orvane::provider::conformance {

class Conformance : public SessionActs, public testing::TestWithParam<EngineUnderTest> {
 protected:
  using SessionActs::Run;

  /// Another connection to the server of the test.
  std::unique_ptr<ado::Session> Open(const Text& sOptions = {}) {
    return OpenAt(*m_server, sOptions);
  }
  static std::unique_ptr<ado::Session> OpenAt(TestServer& server, const Text& sOptions = {}) {
    const SessionPlace place{{server.Engine()}, FixedNow};
    return HistorianProvider(place).Open(
        ado::ConnectionSettings::Parse("Provider = ORVOLEDB; Data Source = " + server.DataSource() +
                                       "; User ID = " + server.User() + "; " + sOptions),
        server.Password(), {});
  }
  std::unique_ptr<ado::Session> OpenPlant(const Text& sOptions = {}) {
    auto opened = Open(sOptions);
    FillPlant(*opened);
    return opened;
  }
  /// Whether the engine says of itself that it is so.
  static bool Differs(Difference difference) { return GetParam().differences.contains(difference); }

  std::unique_ptr<TestServer> m_server = GetParam().start();
};

/// Runs the cases of a suite on every engine.
#define ORVANE_ON_EVERY_ENGINE(suite)                                    \
  INSTANTIATE_TEST_SUITE_P(engines, suite, testing::ValuesIn(Engines()), \
                           [](const auto& engine) { return std::string(engine.param.sName); })

}  // namespace orvane::provider::conformance
