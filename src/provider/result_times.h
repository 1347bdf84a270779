// Gives the columns of a result that hold times the type in which the connection shows times.
// Used by a session behind every statement; one thread at a time.
#pragma once

#include <cstddef>
#include <stop_token>
#include <vector>

#include "platform/ado/recordset.h"
#include "provider/dialect/translator.h"

namespace orvane::provider {

/// How the connection shows times.
struct TimeDisplay {
  platform::Boolean bAsDouble = false;  ///< as days since 1899-12-30 in the zone
  zones::TimeZone zone;
};

/// How long and how large a result may become.
struct ResultLimits {
  std::size_t maxBytes = 0;  ///< 0 is no limit
  std::stop_token stop{};
};

/// The recordset itself when nothing is to be done. Otherwise one in which numbers in columns of
/// times are timestamps, those that the engine takes for times in columns that mix are numbers
/// again, and timestamps are days where they are shown so. Fails with failure::kCancelled and with
/// ado::OutOfMemory.
platform::RecordsetPtr WithShownTimes(platform::RecordsetPtr rs,
                                      const std::vector<dialect::Content>& contents,
                                      const TimeDisplay& display, const ResultLimits& limits);

}  // namespace orvane::provider
