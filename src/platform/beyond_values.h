// Values that a server keeps in columns of numbers, times and dates, and for which there is no
// other form here than its own text: what is no number, infinity, years that no calendar here has.
// Used where values are typed, pasted and imported, and by the reading of statements. Pure
// functions, on any thread.
#pragma once

#include <optional>
#include <string_view>

#include "platform/ado/recordset.h"

namespace orvane::platform {

/// The value that the text stands for in a column of the type that takes such values (see
/// TextOrder::BeyondValues): the text as rows of the server have it, or 24 hours among times of
/// day. Words are read without regard to case. None for any other text.
std::optional<Value> ReadBeyond(DataType type, std::string_view sText);

}  // namespace orvane::platform
