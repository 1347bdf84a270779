// What the declared type of a column means: the engine itself lets any column hold anything.
// Used for the rows of statements, for the schema, and for the types that statements write. Pure
// functions, on any thread.
#pragma once

#include <span>
#include <string_view>

#include "provider/engines/engine.h"

namespace orvane::provider::engines {

/// The column type for a type as it was written in CREATE TABLE, without regard to case and
/// whatever length stands behind it in parentheses. Empty for no type and for names that mean
/// nothing.
platform::DataType TypeOfDeclaration(std::string_view sDeclaredType);

/// The types to declare columns with, in their published order.
std::span<const TypeSchema> DeclaredTypes();

}  // namespace orvane::provider::engines
