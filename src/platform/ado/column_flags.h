// The flags of a column in the columns rowset (COLUMN_FLAGS) that this system reads, or has of its
// own. Told by providers, read by grids and imports. Constants, any thread.
#pragma once

#include "platform/types.h"

namespace orvane::platform::column_flags {

constexpr Long kTakesValues = 0x4;  ///< it is not worked out by the table
/// Of this system alone: it takes what ReadBeyond reads.
constexpr Long kTakesBeyond = 0x10000;
/// Of this system alone: null stands behind all values, and descending before them.
constexpr Long kNullIsLast = 0x20000;

}  // namespace orvane::platform::column_flags
