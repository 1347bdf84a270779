// The tables of the catalog Functions: what statements can use, told to whoever looks there.
// Written when a historian is made; one thread at a time.
#pragma once

#include <string_view>

#include "platform/types.h"

namespace orvane::provider::historian {

/// Name of the catalog's file; it changes whenever the content does.
constexpr std::string_view kFunctionsFile = "Functions.1.db";

/// The statements that make the tables Functions and TimeExpressions with their rows.
platform::Text FunctionsStatements();

}  // namespace orvane::provider::historian
