// Rows as text for a terminal: names, a line beneath them, and a line for each row.
// Used by programs without a window; one thread at a time.
#pragma once

#include "exports/row_writer.h"

namespace orvane::exports {

/// Numbers stand at the right. A null is the word NULL; line breaks and control characters are
/// escaped, so that a row is one line. Times are told in the zone. End must be called.
std::unique_ptr<RowWriter> MakeAlignedText(zones::TimeZone zone);

}  // namespace orvane::exports
