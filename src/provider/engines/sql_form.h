// How an engine's SQL is written where it is not as the embedded engine reads it, whose forms are
// those of historian SQL. Such an engine tells names that are in quotes apart letter by letter, has
// a type of its own for times, and lets columns take values of their types only.
// Told by an engine, written by the dialect. Constants, any thread.
#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace orvane::provider::engines {

/// A call with so many arguments, "{}" for each of them in order. The text goes up to, without, the
/// bracket that closes the call; the first bracket in it opens the call. Without arguments it is
/// the whole call.
struct CallForm {
  std::string_view sName;  ///< in capitals
  std::size_t nArguments;
  std::string_view sText;
  std::string_view sBefore{};  ///< and behind: around all of it, its window included
  std::string_view sBehind{};
};

/// A call of which the first argument is a pattern. Gives what stands before each of the other
/// arguments, and behind the last of them, as of a CallForm; none for a pattern that it cannot
/// write.
struct PatternForm {
  std::string_view sName;  ///< in capitals
  std::optional<std::vector<platform::Text>> (*write)(std::string_view sPattern,
                                                      std::size_t nArguments);
};

/// A type of columns; in capitals.
struct TypeForm {
  std::string_view sName;
  std::string_view sText;
  bool bLength = false;  ///< what stands in brackets behind it is kept
};

/// A form that names a zone: what stands before a value, between it and the zone, and behind.
struct ZoneForm {
  std::string_view sBefore;
  std::string_view sBehind;
  std::string_view sBehindZone;
};

struct SqlForm {
  std::span<const CallForm> calls;
  std::span<const PatternForm> patterns;
  std::span<const TypeForm> types;
  /// The greatest and the least of several values, "{}" for these, each in brackets; null where one
  /// of them is. As of a CallForm.
  std::string_view sGreatest;
  std::string_view sLeast;
  std::string_view sBinaryOrder;  ///< what COLLATE BINARY is called
  /// That two values, "{}" for each, are written by the same bytes, whatever their column takes for
  /// equal. The first is null where one of them is; for the second two nulls are the same.
  std::string_view sSameBytes;
  std::string_view sSameBytesOrNull;
  /// The same where the first value is a column, whose type then holds for both.
  std::string_view sColumnSameBytes;
  std::string_view sColumnSameBytesOrNull;
  std::string_view sBytesBefore;  ///< before and behind the digits of bytes
  std::string_view sBytesBehind;
  std::string_view sInfinity;       ///< the double that no number is greater than
  std::string_view sMicroseconds;   ///< behind a number: that it counts them
  std::string_view sBetweenBefore;  ///< around what lies between two times: their microseconds
  std::string_view sBetweenBehind;
  /// A parameter in the place of a time may be one that is written as a text only; see
  /// platform::ReadBeyond.
  bool bTimesBeyond = false;
  std::string_view sTimeBehind;   ///< behind a written time in UTC: makes a time of it
  std::string_view sDayBehind;    ///< behind a written date: makes a date of it
  std::string_view sClockBehind;  ///< behind a written time of day: makes one of it
  ZoneForm midnightInZone;        ///< of a date the moment at which it begins
  ZoneForm dayInZone;             ///< of a written time in UTC the date
};

}  // namespace orvane::provider::engines
