// Values that are stored as texts, as the types of their columns mean them.
// Used for the rows of statements and of files. Pure functions, on any thread.
#pragma once

#include <string_view>

#include "platform/ado/recordset.h"

namespace orvane::platform {

/// The date, time of day or GUID that a stored text is, when it is written exactly as the general
/// value-to-text rule writes that value; otherwise the text. Type DBDate, DBTime or Guid.
Value FromStoredText(DataType type, std::string_view sText);

}  // namespace orvane::platform
