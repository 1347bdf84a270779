// Gives the columns of a result that hold times the type in which the connection shows times.
// Used by a session behind every statement; one thread at a time.
#pragma once

#include <vector>

#include "platform/ado/recordset.h"
#include "provider/deadline.h"
#include "provider/dialect/translator.h"

namespace orvane::provider {

/// The recordset itself when nothing is to be done. Otherwise one in which numbers in columns of
/// times are timestamps, those that the engine takes for times in columns that mix are numbers
/// again, and, with bTimeAsDouble, all timestamps are days since 1899-12-30 in the zone. Ends at
/// the deadline.
platform::RecordsetPtr WithShownTimes(platform::RecordsetPtr rs,
                                      const std::vector<dialect::Content>& contents,
                                      platform::Boolean bTimeAsDouble, const zones::TimeZone& zone,
                                      const Deadline& deadline);

}  // namespace orvane::provider
