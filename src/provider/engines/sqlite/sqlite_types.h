// What the declared type of a column means: SQLite itself lets any column hold anything.
// Used for the rows of statements and for the schema. Pure functions, on any thread.
#pragma once

#include <string_view>

#include "platform/ado/recordset.h"

namespace orvane::provider::engines {

/// The column type for a type as it was written in CREATE TABLE, without regard to case and
/// whatever length stands behind it in parentheses. Empty for no type and for names that mean
/// nothing.
platform::DataType TypeOfDeclaration(std::string_view sDeclaredType);

/// The date, time of day or GUID that a stored text is, when it is written exactly as the general
/// value-to-text rule writes that value; otherwise the text. Type DBDate, DBTime or Guid.
platform::Value FromStoredText(platform::DataType type, std::string_view sText);

}  // namespace orvane::provider::engines
