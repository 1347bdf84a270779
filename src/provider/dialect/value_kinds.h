// What a value of a statement is, as far as times go: sets of kinds, worked out from the bottom up.
// A value whose kind depends on the row has all the kinds that it can have; the empty set is null.
#pragma once

#include <cstdint>

namespace orvane::provider::dialect {

using Kinds = std::uint16_t;

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
constexpr Kinds kText = 1U << 12U;  ///< beside kAny: no number, as what stands in a column may be

/// What is stored as a number of microseconds, and what is worked out from that.
constexpr Kinds kTimes = kTime | kShifted;
constexpr Kinds kFromTimes = kTimes | kNumberOfTime | kTextOfTime;
constexpr Kinds kNumbers = kNumber | kCount;
constexpr Kinds kTexts = kTextOfTime | kWrittenTime | kUtcText | kZoneText | kAny | kOther;
/// What is certainly no number.
constexpr Kinds kSureTexts = kTextOfTime | kWrittenTime | kUtcText | kZoneText | kText | kOther;
/// A text of which nothing more is known.
constexpr Kinds kAnyText = kAny | kText;

constexpr bool Has(Kinds kinds, Kinds any) {
  return (kinds & any) != 0;
}
constexpr bool IsOnly(Kinds kinds, Kinds all) {
  return (kinds & static_cast<Kinds>(~all)) == 0;
}
/// True when numbers of times and texts could meet among the values.
constexpr bool Mixes(Kinds kinds) {
  return (Has(kinds, kTimes | kNumberOfTime) && Has(kinds, kTexts)) ||
         (Has(kinds, kCountOfTime) && Has(kinds, kSureTexts));
}

}  // namespace kinds
}  // namespace orvane::provider::dialect
