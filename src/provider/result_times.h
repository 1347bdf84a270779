// Gives the columns of a result that hold times the type in which the connection shows times.
// Used by a session behind every statement; one thread at a time.
#pragma once

#include <vector>

#include "platform/ado/recordset.h"
#include "provider/dialect/time_zone.h"

namespace orvane::provider {

/// The recordset itself when nothing is to be done. Otherwise one in which numbers in the columns
/// marked as times are timestamps, and, with bTimeAsDouble, all timestamps are days since
/// 1899-12-30 in the zone.
platform::RecordsetPtr WithShownTimes(platform::RecordsetPtr rs,
                                      const std::vector<platform::Boolean>& timeColumns,
                                      platform::Boolean bTimeAsDouble,
                                      const dialect::TimeZone& zone);

}  // namespace orvane::provider
