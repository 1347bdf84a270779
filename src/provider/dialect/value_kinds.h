// What a value of a statement is, as far as times go: sets of kinds, worked out from the bottom up.
// A value whose kind depends on the row has all the kinds that it can have; the empty set is null.
// What is made of stored times and what is made of dates have kinds of their own: where a value may
// be either it has both, and no kind excuses another.
#pragma once

#include <cstdint>

namespace orvane::provider::dialect {

using Kinds = std::uint32_t;

namespace kinds {

constexpr Kinds kNull = 0;
constexpr Kinds kTime = 1U << 0U;          ///< as it is stored
constexpr Kinds kShifted = 1U << 1U;       ///< a time and a number added: counts as the time it is
constexpr Kinds kNumberOfTime = 1U << 2U;  ///< a number worked out from times in another way
constexpr Kinds kTextOfTime = 1U << 3U;    ///< a text that holds a stored time as its number
constexpr Kinds kWrittenTime = 1U << 4U;   ///< what date functions make of a stored time
constexpr Kinds kUtcText = 1U << 5U;       ///< what date functions give else, in UTC
constexpr Kinds kZoneText = 1U << 6U;      ///< the same in some other zone
constexpr Kinds kNumber = 1U << 7U;
constexpr Kinds kCount = 1U << 8U;   ///< a number that is certainly no number of days
constexpr Kinds kAny = 1U << 9U;     ///< a text in the connection's zone, or whatever there is
constexpr Kinds kOther = 1U << 10U;  ///< what can never be a time
constexpr Kinds kCountOfTime = 1U << 11U;  ///< a number of days or seconds made from a stored time
constexpr Kinds kText = 1U << 12U;         ///< beside kAny: some of it is certainly no number
constexpr Kinds kLoose = 1U << 13U;        ///< beside kAny: it may as well be a number or bytes
constexpr Kinds kPart = 1U << 14U;  ///< of a date function's text: it does not begin with the year
constexpr Kinds kUnsorted = 1U << 15U;    ///< the same: such texts do not sort as their times do
constexpr Kinds kWrong = 1U << 16U;       ///< what compares a time with something else itself
constexpr Kinds kDay = 1U << 17U;         ///< a date as a column of dates keeps it
constexpr Kinds kClock = 1U << 18U;       ///< a time of day as a column of these keeps it
constexpr Kinds kOfDay = 1U << 19U;       ///< beside texts: made from dates or times of day
constexpr Kinds kCountOfDay = 1U << 20U;  ///< a number made from dates or times of day

/// What is stored as a number of microseconds, and what is worked out from that.
constexpr Kinds kTimes = kTime | kShifted;
constexpr Kinds kFromTimes = kTimes | kNumberOfTime | kTextOfTime;
constexpr Kinds kNumbers = kNumber | kCount;
constexpr Kinds kCounts = kCountOfTime | kCountOfDay;
constexpr Kinds kDaysAndClocks = kDay | kClock;
constexpr Kinds kTexts =
    kTextOfTime | kWrittenTime | kUtcText | kZoneText | kAny | kOther | kDaysAndClocks;
/// What is certainly no number.
constexpr Kinds kSureTexts =
    kTextOfTime | kWrittenTime | kUtcText | kZoneText | kText | kOther | kDaysAndClocks;
/// A text of which nothing more is known.
constexpr Kinds kAnyText = kAny | kText;
/// A value of which nothing is known.
constexpr Kinds kAnyValue = kAny | kLoose;
/// What date functions give, whatever their format and zone; and of that what is in UTC.
constexpr Kinds kDates = kWrittenTime | kUtcText | kZoneText | kPart | kUnsorted | kOfDay;
constexpr Kinds kUtcDates = kWrittenTime | kUtcText | kPart | kUnsorted | kOfDay;
/// What nothing is known of, not even whether it is a time.
constexpr Kinds kUnknown = kTime | kAnyValue | kOther;
/// What is made of stored times, and what is or is made of dates and times of day.
constexpr Kinds kMadeOfTimes = kFromTimes | kCountOfTime | kWrittenTime;
constexpr Kinds kMadeOfDays = kDaysAndClocks | kOfDay | kCountOfDay;
/// Of which a calculation makes a number that still counts from a stored time or a date.
constexpr Kinds kCounted = kCountOfTime | kWrittenTime | kOfDay | kCountOfDay;
/// What certainly is a number or null, and what is a text or null.
constexpr Kinds kOnlyNumbers = kNumberOfTime | kCounts | kNumbers;
constexpr Kinds kOnlyTexts = kDates | kAnyText;

constexpr bool Has(Kinds kinds, Kinds any) {
  return (kinds & any) != 0;
}
constexpr bool IsOnly(Kinds kinds, Kinds all) {
  return (kinds & static_cast<Kinds>(~all)) == 0;
}
/// What a text is that is made of the values, as far as dates go. What is made of a date without a
/// date function is in no zone of its own.
constexpr Kinds Written(Kinds of) {
  Kinds dates = of & kDates;
  if (Has(of, kClock)) dates |= kPart;
  const bool bOfFunction = Has(of, kWrittenTime | kUtcText | kZoneText);
  if (Has(of, kDaysAndClocks) || (Has(of, kOfDay) && !bOfFunction)) dates |= kAnyText | kOfDay;
  // As texts numbers do not sort as they count.
  if (Has(of, kCountOfDay)) dates |= kAnyText | kOfDay | kUnsorted;
  return dates;
}
/// What a number is that is worked out from the values.
constexpr Kinds Counted(Kinds of) {
  return (Has(of, kMadeOfTimes) ? kCountOfTime : kNull) |
         (Has(of, kMadeOfDays) ? kCountOfDay : kNull);
}

/// True when numbers of times and texts could meet among the values.
constexpr bool Mixes(Kinds kinds) {
  return (Has(kinds, kTimes | kNumberOfTime) && Has(kinds, kTexts)) ||
         (Has(kinds, kCounts) && Has(kinds, kSureTexts));
}

/// True when numbers made from times could meet what turns out to be a text among the values.
constexpr bool MayMix(Kinds kinds) {
  return Has(kinds, kCounts) && Has(kinds, kAny);
}

/// True when dates, or times of day, could meet something else among the values.
constexpr bool MixesDays(Kinds kinds) {
  return Has(kinds, kDaysAndClocks) && !IsOnly(kinds, kDay) && !IsOnly(kinds, kClock);
}

}  // namespace kinds
}  // namespace orvane::provider::dialect
