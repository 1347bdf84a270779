// The only conversions of a Value to text, to a 32-bit integer and to a Boolean,
// and of text to a 32-bit integer. Everything shown, saved or concatenated goes through here.
#pragma once

#include <string_view>

#include "platform/value.h"

namespace orvane::platform {

/// The general value-to-text rule: text as it is; integers in decimal; Booleans "True" or
/// "False"; null the empty text; doubles in the shortest form that reads back equal; decimals
/// as their digits; timestamps "YYYY-MM-DD HH:MM:SS[.ffffff]" in UTC (fraction without trailing
/// zeros), dates "YYYY-MM-DD", times "HH:MM:SS[.ffffff]"; bytes "0x" and hex digits; GUIDs
/// "{8-4-4-4-12}" in upper-case hex digits. An object has no text and fails with 13.
Text ToText(const Value& vtValue);

/// Converts to a 32-bit integer. Booleans give -1 and 0; doubles and decimals round half to
/// even; text follows TextToLong. Null, times, bytes, GUIDs and objects fail with 13, a number
/// outside the range with 6.
Long ToLong(const Value& vtValue);

/// The texts that count as a 32-bit integer, exactly: any number of blanks or tabs, an optional
/// "-" or "+", at least one ASCII digit, optionally "." and any number of ASCII digits, any
/// number of blanks or tabs. No digit grouping, no exponent, no other sign, no other digits,
/// and "." alone does not count. A fraction is rounded half to even. Fails with 13 when the text
/// is no such number and with 6 when the rounded number is outside -2147483648..2147483647.
Long TextToLong(std::string_view sText);

/// Converts to a Boolean: null is false, numbers are true when not 0, the texts "True" and
/// "False" count in any ASCII case, other texts follow TextToLong. The rest fails with 13.
Boolean ToBoolean(const Value& vtValue);

}  // namespace orvane::platform
