#include "zones/clock_input.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <vector>

#include "platform/conversions.h"
#include "platform/failure.h"
#include "platform/quoting.h"
#include "platform/utf8.h"

namespace orvane::zones {

using platform::Failure;
using platform::Text;
using platform::Timestamp;
using platform::Value;
using std::chrono::microseconds;
using std::chrono::seconds;

namespace {

constexpr std::size_t kQuotedBytes = 60;

[[noreturn]] void RefuseClock(const Text& sSentence) {
  throw Failure(platform::failure::kTypeMismatch, sSentence);
}

/// Takes exactly nDigits digits from the front.
std::optional<int> TakeDigits(std::string_view& sText, std::size_t nDigits) {
  if (sText.size() < nDigits) return std::nullopt;
  int nNumber = 0;
  for (const char c : sText.substr(0, nDigits)) {
    if (c < '0' || c > '9') return std::nullopt;
    nNumber = nNumber * 10 + (c - '0');
  }
  sText.remove_prefix(nDigits);
  return nNumber;
}

bool Take(std::string_view& sText, char c) {
  if (!sText.starts_with(c)) return false;
  sText.remove_prefix(1);
  return true;
}

struct DayRead {
  Text sText;
  std::chrono::year_month_day day;
};

std::optional<DayRead> TakeDay(std::string_view& sText) {
  const std::string_view sWhole = sText;
  const auto year = TakeDigits(sText, 4);
  if (!year || !Take(sText, '-')) return std::nullopt;
  const auto month = TakeDigits(sText, 2);
  if (!month || !Take(sText, '-')) return std::nullopt;
  const auto day = TakeDigits(sText, 2);
  if (!day) return std::nullopt;
  return DayRead{Text(sWhole.substr(0, sWhole.size() - sText.size())),
                 {std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                  std::chrono::day(static_cast<unsigned>(*day))}};
}

platform::Date Checked(const DayRead& read) {
  if (!read.day.ok() || read.day.year() < std::chrono::year(1)) {
    RefuseClock("There is no day " + read.sText + "; enter a day of the years 1 to 9999.");
  }
  return read.day;
}

std::optional<microseconds> TakeFraction(std::string_view& sText) {
  const auto nDigits = std::min(sText.find_first_not_of("0123456789"), sText.size());
  if (nDigits == 0 || nDigits > 6) return std::nullopt;
  int nFraction = *TakeDigits(sText, nDigits);
  for (auto n = nDigits; n < 6; ++n) nFraction *= 10;
  return microseconds(nFraction);
}

std::optional<microseconds> TakeTimeOfDay(std::string_view& sText) {
  const auto hour = TakeDigits(sText, 2);
  if (!hour || *hour > 23 || !Take(sText, ':')) return std::nullopt;
  const auto minute = TakeDigits(sText, 2);
  if (!minute || *minute > 59) return std::nullopt;
  const microseconds time = std::chrono::hours(*hour) + std::chrono::minutes(*minute);
  if (!Take(sText, ':')) return time;
  const auto second = TakeDigits(sText, 2);
  if (!second || *second > 59) return std::nullopt;
  microseconds fraction(0);
  if (Take(sText, '.')) {
    const auto read = TakeFraction(sText);
    if (!read) return std::nullopt;
    fraction = *read;
  }
  return time + seconds(*second) + fraction;
}

/// "Z", or a sign and "HH:MM[:SS]".
std::optional<seconds> TakeOffset(std::string_view& sText) {
  if (Take(sText, 'Z') || Take(sText, 'z')) return seconds(0);
  const bool bNegative = sText.starts_with('-');
  if (!bNegative && !sText.starts_with('+')) return std::nullopt;
  sText.remove_prefix(1);
  const auto offset = TakeTimeOfDay(sText);
  if (!offset || *offset % seconds(1) != microseconds(0)) return std::nullopt;
  const auto whole = std::chrono::duration_cast<seconds>(*offset);
  return bNegative ? -whole : whole;
}

Text OffsetText(seconds offset) {
  // Written as a time of day, without seconds where there are none, as nearly everywhere.
  Text sOffset = platform::ToText(Value(platform::TimeOfDay(std::chrono::abs(offset))));
  if (sOffset.ends_with(":00")) sOffset.resize(sOffset.size() - 3);
  return (offset < seconds(0) ? "-" : "+") + sOffset;
}

/// What the clocks may be ahead of UTC when they show this time: two where they show it twice, none
/// where they skip it, the larger first.
std::vector<seconds> OffsetsOf(Timestamp shown, const TimeZone& zone) {
  constexpr std::chrono::hours kFarthest(27);  // no zone is farther from UTC
  std::vector<seconds> offsets;
  for (std::chrono::hours away = -kFarthest; away <= kFarthest; away += std::chrono::hours(3)) {
    const seconds offset = zone.OffsetAt(shown + away);
    if (zone.OffsetAt(shown - offset) == offset) offsets.push_back(offset);
  }
  std::ranges::sort(offsets, std::greater());
  offsets.erase(std::unique(offsets.begin(), offsets.end()), offsets.end());
  return offsets;
}

Text ZoneText(const TimeZone& zone) {
  return zone.Name() == "Local" ? zone.NameInUse() : zone.Name();
}

Timestamp FromClocks(Timestamp shown, const TimeZone& zone) {
  const auto offsets = OffsetsOf(shown, zone);
  if (offsets.size() == 1) return shown - offsets.front();
  const Text sShown = platform::ToText(Value(shown));
  if (offsets.empty()) {
    RefuseClock("There is no " + sShown + " in " + ZoneText(zone) +
                ": its clocks skip that time; enter one before or behind it.");
  }
  RefuseClock("The clocks in " + ZoneText(zone) + " show " + sShown + " twice; add " +
              OffsetText(offsets.front()) + " for the first time or " + OffsetText(offsets.back()) +
              " for the second.");
}

}  // namespace

Text QuotedInput(std::string_view sText) {
  if (sText.size() <= kQuotedBytes) return platform::InQuotes(sText);
  std::size_t nBytes = 0;
  char32_t code = 0;
  while (nBytes < kQuotedBytes) {
    nBytes += std::max<std::size_t>(1, platform::FirstCharacter(sText.substr(nBytes), code));
  }
  return platform::InQuotes(Text(sText.substr(0, nBytes)) + "\u2026");
}

Text ClockText(Timestamp timestamp, const TimeZone& zone) {
  // Near the ends of the calendar the clocks may be in a year that cannot be typed.
  if (!IsInRange(timestamp)) return platform::ToText(Value(timestamp)) + "Z";
  const seconds offset = zone.OffsetAt(timestamp);
  const Timestamp shown = timestamp + offset;
  if (!IsInRange(shown)) return platform::ToText(Value(timestamp)) + "Z";
  const Text sText = platform::ToText(Value(shown));
  return OffsetsOf(shown, zone).size() == 1 ? sText : sText + OffsetText(offset);
}

Timestamp ReadClock(std::string_view sText, const TimeZone& zone) {
  std::string_view sRest = sText;
  const auto refuse = [sText] {
    RefuseClock(QuotedInput(sText) +
                " is no date and time; enter it as YYYY-MM-DD HH:MM:SS, with up to six digits "
                "behind the seconds.");
  };
  const auto day = TakeDay(sRest);
  if (!day) refuse();
  microseconds time(0);
  if (Take(sRest, ' ') || Take(sRest, 'T')) {
    sRest.remove_prefix(std::min(sRest.find_first_not_of(' '), sRest.size()));
    const auto read = TakeTimeOfDay(sRest);
    if (!read) refuse();
    time = *read;
  }
  sRest.remove_prefix(std::min(sRest.find_first_not_of(' '), sRest.size()));
  std::optional<seconds> offset;
  if (!sRest.empty()) {
    offset = TakeOffset(sRest);
    if (!offset || !sRest.empty()) refuse();
  }
  const Timestamp shown = Checked(*day) + time;
  const Timestamp timestamp = offset ? shown - *offset : FromClocks(shown, zone);
  if (!IsInRange(timestamp)) {
    RefuseClock(QuotedInput(sText) +
                " is too early or too late; enter a time of the years 1 to "
                "9999.");
  }
  return timestamp;
}

platform::Date ReadDay(std::string_view sText) {
  std::string_view sRest = sText;
  const auto day = TakeDay(sRest);
  if (!day || !sRest.empty()) {
    RefuseClock(QuotedInput(sText) + " is no date; enter it as YYYY-MM-DD.");
  }
  return Checked(*day);
}

platform::TimeOfDay ReadTimeOfDay(std::string_view sText) {
  std::string_view sRest = sText;
  const auto time = TakeTimeOfDay(sRest);
  if (!time || !sRest.empty()) {
    RefuseClock(QuotedInput(sText) +
                " is no time of day; enter it as HH:MM:SS, with up to six digits behind the "
                "seconds.");
  }
  return *time;
}

}  // namespace orvane::zones
