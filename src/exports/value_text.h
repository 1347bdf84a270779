// The text of a value in a file or on the clipboard, from which it can be read back.
// Used by the writers of rows and the grids; any thread.
#pragma once

#include "platform/value.h"
#include "zones/time_zone.h"

namespace orvane::exports {

/// Appends "YYYY-MM-DD HH:MM:SS[.ffffff]+01:00": the time in the zone with what that is ahead of
/// UTC, so that the hour that comes twice is told apart. Where the zone's clocks are not on whole
/// minutes of UTC (before there were zones), the time is given in UTC, with "Z". The separator
/// stands between day and time.
void AppendTime(platform::Text& sOut, platform::Timestamp timestamp, const zones::TimeZone& zone,
                char cSeparator = ' ');

/// Appends the shortest digits that read back equal, with a point or an exponent, so that nobody
/// takes them for an integer.
void AppendDouble(platform::Text& sOut, double dValue);

/// Appends the value as platform::ToText has it, times as AppendTime; null appends nothing. Fails
/// with failure::kTypeMismatch for an object.
void AppendValue(platform::Text& sOut, const platform::Value& vtValue, const zones::TimeZone& zone);

}  // namespace orvane::exports
