// Numbers as texts of any length, and what of them a 64-bit integer or a double keeps.
// Used where values go into columns that keep no more than those; pure functions, any thread.
#pragma once

#include <optional>
#include <string_view>

#include "platform/value.h"

namespace orvane::platform {

/// The number as the digits that count, without a zero at either end.
struct NumberDigits {
  bool bNegative = false;
  Text sDigits;            ///< empty for zero
  long long exponent = 0;  ///< the number is 0.digits times ten to this power
  bool bWhole = false;     ///< written without a point and without an exponent
  friend bool operator==(const NumberDigits&, const NumberDigits&) = default;
};

/// The text as a decimal number, with or without a sign, a point and an exponent; none when it is
/// no such number. Infinities are none.
std::optional<NumberDigits> ReadDigits(std::string_view sText);

/// The 64-bit integer or the double that is written with exactly these digits, where there is one:
/// 0.1 is, 0.10000000000000000001 is not. None for what is no number as well.
std::optional<Value> ExactNumber(std::string_view sText);

}  // namespace orvane::platform
