// A range of time as time expressions, as the bar above a table's rows has it: what it is in SQL,
// which moments it means now, and the ranges before and behind it. Plain values, any thread.
#pragma once

#include <optional>
#include <variant>

#include "zones/time_expression.h"

namespace orvane::controls {

/// An empty end is open.
struct TimeRange {
  platform::Text sFrom;
  platform::Text sTo;
  friend bool operator==(const TimeRange&, const TimeRange&) = default;
};

/// The moments a range means, both included.
struct TimeSpan {
  std::optional<platform::Timestamp> from;
  std::optional<platform::Timestamp> to;
  friend bool operator==(const TimeSpan&, const TimeSpan&) = default;
};

/// Why a range means nothing, as a sentence.
struct TimeRangeError {
  bool bTo = false;  ///< it is about the end
  platform::Text sSentence;
};

/// Where the clocks stand, and what they show.
struct Clock {
  const zones::TimeZone& zone;
  platform::Timestamp now;
};

std::variant<TimeSpan, TimeRangeError> ReadTimeRange(const TimeRange& range, const Clock& clock);

/// The range as a condition on the column, in the form of the default filter condition; empty for a
/// range that is open at both ends.
platform::Text ConditionOf(const TimeRange& range, const platform::Text& sColumn);
/// The range that the condition is: one on the column and nothing else. None for any other.
std::optional<TimeRange> RangeIn(const platform::Text& sCondition, const platform::Text& sColumn);

/// The range of the same width that ends where this one begins, or begins where it ends. Days stay
/// days when the clocks change in between. None where an end is open or cannot be read.
std::optional<TimeRange> RangeBefore(const TimeRange& range, const Clock& clock);
std::optional<TimeRange> RangeBehind(const TimeRange& range, const Clock& clock);

}  // namespace orvane::controls
