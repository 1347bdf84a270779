// Days, times of day and points in time as they are typed and written for typing: exact, and in the
// calendar of a zone, whose clocks skip times and show others twice.
// Part of reading what is typed into a cell; pure functions, any thread.
#pragma once

#include <string_view>

#include "platform/value.h"
#include "zones/time_zone.h"

namespace orvane::zones {

/// The beginning of a text that was typed, between quotes, as a sentence names it.
platform::Text QuotedInput(std::string_view sText);

/// "YYYY-MM-DD HH:MM:SS[.ffffff]" by the zone's clocks, and behind it "+HH:MM" where the clocks
/// show this time twice.
platform::Text ClockText(platform::Timestamp timestamp, const TimeZone& zone);

/// Reads "YYYY-MM-DD[ HH:MM[:SS[.ffffff]]][+HH:MM|Z]"; without a distance from UTC by the zone's
/// clocks. Fails with kTypeMismatch, also for a time that the clocks skip or show twice.
platform::Timestamp ReadClock(std::string_view sText, const TimeZone& zone);
/// Reads "YYYY-MM-DD" of the years 1 to 9999. Fails with kTypeMismatch.
platform::Date ReadDay(std::string_view sText);
/// Reads "HH:MM[:SS[.ffffff]]". Fails with kTypeMismatch.
platform::TimeOfDay ReadTimeOfDay(std::string_view sText);

}  // namespace orvane::zones
