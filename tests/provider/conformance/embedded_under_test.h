// The embedded historian in the suite.
#pragma once

#include "tests/provider/conformance/engine_under_test.h"

namespace orvane::provider::conformance {

EngineUnderTest EmbeddedUnderTest();

}  // namespace orvane::provider::conformance
