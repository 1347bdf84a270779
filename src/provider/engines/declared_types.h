// What the declared type of a column means: the engine itself lets any column hold anything.
// Used for the rows of statements, for the schema, and for the types that statements write. Pure
// functions, on any thread.
#pragma once

#include <string_view>

#include "platform/ado/recordset.h"

namespace orvane::provider::engines {

/// The column type for a type as it was written in CREATE TABLE, without regard to case and
/// whatever length stands behind it in parentheses. Empty for no type and for names that mean
/// nothing.
platform::DataType TypeOfDeclaration(std::string_view sDeclaredType);

}  // namespace orvane::provider::engines
