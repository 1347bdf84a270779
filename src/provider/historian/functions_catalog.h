// The tables of the catalog Functions: what statements can use, told to whoever looks there.
// Written when a historian is made; one thread at a time.
#pragma once

#include "platform/types.h"

namespace orvane::provider::historian {

/// Name of the catalog's file. It changes whenever the content does, so that programs of two
/// versions each have their own.
platform::Text FunctionsFile();

/// The rows of the tables as VALUES takes them.
platform::Text FunctionRows();
platform::Text TimeExpressionRows();

/// The statements that make the tables Functions and TimeExpressions with their rows.
platform::Text FunctionsStatements();

}  // namespace orvane::provider::historian
