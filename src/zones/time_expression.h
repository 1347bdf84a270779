// Time expressions: "*" (now), "t" (today), "y" (yesterday) or an ISO 8601 date and time, then any
// number of steps such as "-1h" or "+8h-30m".
// Used wherever a statement compares a text with a time column, and where such a text is typed; any
// thread.
#pragma once

#include <string_view>
#include <variant>

#include "zones/time_zone.h"

namespace orvane::zones {

/// Why a text is no time expression.
struct TimeExpressionError {
  std::size_t position = 0;  ///< byte in the expression, from 0, at which reading ended
  platform::Text sReason;    ///< the sentence's middle, for example "the unit is missing"
};

/// Reads an expression. Blanks may stand around every part; letters count in both cases.
///
/// "t" and "y" are the first moment of the day in the zone. A date without an offset of its own
/// ("Z", "+01:00") is the zone's. Steps are a sign, a number and a unit, taken from left to right:
/// s, m and h (whole or with a fraction) are spans of time, whatever the clocks do between; d, w,
/// mo and y (whole) count on the calendar and keep the time of day. Where the month that is
/// reached is too short, its last day is meant. Times outside the years 1 to 9999 are refused.
std::variant<platform::Timestamp, TimeExpressionError> ReadTimeExpression(std::string_view sText,
                                                                          const TimeZone& zone,
                                                                          platform::Timestamp now);

}  // namespace orvane::zones
