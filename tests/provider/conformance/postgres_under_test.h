// The engine on PostgreSQL servers in the suite.
#pragma once

#include "tests/provider/conformance/engine_under_test.h"

namespace orvane::provider::conformance {

EngineUnderTest PostgresUnderTest();

}  // namespace orvane::provider::conformance
