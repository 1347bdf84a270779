// Looks whether columns of times hold what other programs have put there: a text is greater than
// every time, so conditions would choose or leave out its row whatever they say. The same for
// numbers among dates and times of day, which are texts: a number is less than each of them.
// Used by a session before a statement that takes the values of such columns for what they should
// be.
#pragma once

#include <sqlite3.h>

#include <span>

#include "provider/engines/engine.h"

namespace orvane::provider::engines {

/// Fails with failure::kSqlError and a sentence that names the first row that holds what none of
/// its kind can be in one of the columns. An index that begins with the column makes this a matter
/// of microseconds; without one the table is read.
void CheckStoredTimes(sqlite3* database, std::span<const TimeColumn> columns,
                      const platform::Text& sSubject);

}  // namespace orvane::provider::engines
