#include "controls/values/value_input.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <string_view>

#include "platform/beyond_values.h"
#include "platform/case_folding.h"
#include "platform/conversions.h"
#include "platform/failure.h"
#include "platform/quoting.h"
#include "zones/clock_input.h"

namespace orvane::controls {

using platform::DataType;
using platform::Failure;
using platform::Text;
using platform::Value;
using platform::ValueKind;

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

[[noreturn]] void Refuse(const Text& sSentence) {
  throw Failure(platform::failure::kTypeMismatch, sSentence);
}

[[noreturn]] void RefuseRange(const Text& sSentence) {
  throw Failure(platform::failure::kOverflow, sSentence);
}

std::string_view Trimmed(std::string_view sText) {
  const auto first = sText.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return sText.substr(first, sText.find_last_not_of(kBlanks) - first + 1);
}

bool IsDecimalDigit(char c) {
  return c >= '0' && c <= '9';
}

/// Behind a plus sign, which the library's readers do not know.
std::string_view WithoutPlus(std::string_view sText) {
  const bool bPlus = sText.size() > 1 && sText.front() == '+' && sText[1] != '-';
  return bPlus ? sText.substr(1) : sText;
}

std::int64_t ReadInteger(std::string_view sText, std::int64_t llLeast, std::int64_t llMost) {
  const std::string_view sNumber = WithoutPlus(sText);
  std::int64_t llNumber = 0;
  const char* end = sNumber.data() + sNumber.size();
  const auto [stopped, error] = std::from_chars(sNumber.data(), end, llNumber);
  if (stopped != end || error == std::errc::invalid_argument) {
    Refuse(zones::QuotedInput(sText) +
           " is no whole number; enter digits only, with \"-\" before them where it is negative.");
  }
  if (error != std::errc() || llNumber < llLeast || llNumber > llMost) {
    RefuseRange(zones::QuotedInput(sText) +
                " is outside the range of the column; enter a whole number "
                "from " +
                std::to_string(llLeast) + " to " + std::to_string(llMost) + ".");
  }
  return llNumber;
}

double ReadDouble(std::string_view sText) {
  const std::string_view sNumber = WithoutPlus(sText);
  double dNumber = 0;
  const char* end = sNumber.data() + sNumber.size();
  const auto [stopped, error] = std::from_chars(sNumber.data(), end, dNumber);
  if (stopped != end || error == std::errc::invalid_argument) {
    Refuse(zones::QuotedInput(sText) +
           " is no number; enter digits, with \".\" as the decimal point.");
  }
  if (error != std::errc()) {
    RefuseRange(zones::QuotedInput(sText) +
                " is too large or too small for a floating-point number; enter one between "
                "5e-324 and 1.7976931348623157e+308.");
  }
  return dNumber;
}

/// Every digit is kept, also those behind which only zeros follow; zeros in front are not.
platform::Decimal ReadDecimal(std::string_view sText) {
  std::string_view sRest = WithoutPlus(sText);
  const bool bNegative = !sRest.empty() && sRest.front() == '-';
  if (bNegative) sRest.remove_prefix(1);
  const auto point = std::min(sRest.find('.'), sRest.size());
  std::string_view sWhole = sRest.substr(0, point);
  const std::string_view sFraction = sRest.substr(std::min(point + 1, sRest.size()));
  const bool bPointWithoutDigits = point < sRest.size() && sFraction.empty();
  if (sWhole.empty() || bPointWithoutDigits || !std::ranges::all_of(sWhole, IsDecimalDigit) ||
      !std::ranges::all_of(sFraction, IsDecimalDigit)) {
    Refuse(zones::QuotedInput(sText) +
           " is no decimal number; enter digits, with \".\" as the decimal point.");
  }
  while (sWhole.size() > 1 && sWhole.front() == '0') sWhole.remove_prefix(1);
  Text sDigits = (bNegative ? "-" : "") + Text(sWhole);
  if (!sFraction.empty()) sDigits += "." + Text(sFraction);
  return {sDigits};
}

bool ReadBoolean(std::string_view sText) {
  const Text sFolded = platform::FoldCase(sText);
  if (sFolded == "true" || sFolded == "1") return true;
  if (sFolded == "false" || sFolded == "0") return false;
  Refuse(zones::QuotedInput(sText) + " is neither True nor False; enter one of them.");
}

/// The bytes that the hexadecimal digits stand for, none when one is something else or is alone.
std::optional<platform::Bytes> HexBytes(std::string_view sDigits) {
  if (sDigits.size() % 2 != 0) return std::nullopt;
  platform::Bytes bytes(sDigits.size() / 2);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    unsigned nByte = 0;
    const char* first = sDigits.data() + 2 * i;
    const auto [stopped, error] = std::from_chars(first, first + 2, nByte, 16);
    if (error != std::errc() || stopped != first + 2) return std::nullopt;
    bytes[i] = static_cast<std::byte>(nByte);
  }
  return bytes;
}

Text Without(std::string_view sText, std::string_view sCharacters) {
  Text sRest;
  std::ranges::copy_if(sText, std::back_inserter(sRest),
                       [&](char c) { return sCharacters.find(c) == std::string_view::npos; });
  return sRest;
}

platform::Bytes ReadBytes(std::string_view sText) {
  const bool bMarked = sText.starts_with("0x") || sText.starts_with("0X");
  auto bytes = bMarked ? HexBytes(Without(sText.substr(2), kBlanks)) : std::nullopt;
  if (!bytes) {
    Refuse(zones::QuotedInput(sText) +
           " stands for no bytes; enter 0x and behind it two hexadecimal digits for each byte.");
  }
  return *std::move(bytes);
}

platform::Guid ReadGuid(std::string_view sText) {
  const auto bytes = HexBytes(Without(sText, "{-}"));
  platform::Guid guid;
  if (!bytes || bytes->size() != guid.bytes.size()) {
    Refuse(zones::QuotedInput(sText) +
           " is no GUID; enter its 32 hexadecimal digits, as in "
           "{00112233-4455-6677-8899-AABBCCDDEEFF}.");
  }
  std::ranges::transform(*bytes, guid.bytes.begin(),
                         [](std::byte byte) { return static_cast<std::uint8_t>(byte); });
  return guid;
}

/// A number where the text is the one way to write it, otherwise the text: "007" is no 7.
Value ReadAny(const Text& sText) {
  for (const auto read : {+[](std::string_view s) {
                            return Value(ReadInteger(s, std::numeric_limits<std::int64_t>::min(),
                                                     std::numeric_limits<std::int64_t>::max()));
                          },
                          +[](std::string_view s) { return Value(ReadDouble(s)); }}) {
    try {
      if (Value vtNumber = read(sText); platform::ToText(vtNumber) == sText) return vtNumber;
    } catch (const Failure&) {
      continue;  // what is no number is a text
    }
  }
  return sText;
}

/// No clock is read: what is typed is what is kept, also what the clocks of a zone skip.
platform::WallTime ReadWallTime(std::string_view sText) {
  const platform::Timestamp time = zones::ReadClock(sText, zones::TimeZone::Utc());
  constexpr std::size_t kDay = 10;
  // Behind the day nothing but a distance from UTC has these.
  if (sText.find_first_of("+-Z", kDay) != std::string_view::npos) {
    throw Failure(platform::failure::kTypeMismatch,
                  zones::QuotedInput(sText) +
                      " says how far it is from UTC, but the column keeps times without a zone; "
                      "leave that out.");
  }
  return platform::WallTime(time.time_since_epoch());
}

}  // namespace

ValueKind KindOf(DataType type) {
  switch (type) {
    case DataType::Integer:
      return ValueKind::Long;
    case DataType::Double:
      return ValueKind::Double;
    case DataType::Boolean:
      return ValueKind::Boolean;
    case DataType::BigInt:
      return ValueKind::LongLong;
    case DataType::Guid:
      return ValueKind::Guid;
    case DataType::Binary:
      return ValueKind::Bytes;
    case DataType::WChar:
      return ValueKind::Text;
    case DataType::Numeric:
      return ValueKind::Decimal;
    case DataType::DBDate:
      return ValueKind::Date;
    case DataType::DBTime:
      return ValueKind::TimeOfDay;
    case DataType::DBTimeStamp:
      return ValueKind::Timestamp;
    case DataType::WallTime:
      return ValueKind::WallTime;
    case DataType::Empty:
      break;
  }
  return ValueKind::Null;
}

Text ValueInput::Shown(const Value& vtValue) const {
  if (vtValue.Kind() == ValueKind::Object) return {};
  if (const auto* time = vtValue.As<platform::Timestamp>()) return zones::ClockText(*time, m_zone);
  return platform::ToText(vtValue);
}

Value ValueInput::Read(const Text& sText, const ColumnTakes& takes, const Value& vtCurrent) const {
  if (sText == Shown(vtCurrent)) return vtCurrent;
  const ValueKind kind = KindOf(takes.type);
  const ValueKind current = vtCurrent.Kind();
  if (kind == ValueKind::Text) return sText;
  if (kind == ValueKind::Null && (current == kind || current == ValueKind::Text)) {
    return ReadAny(sText);
  }
  if (Trimmed(sText).empty()) return {};
  if (takes.bBeyond) {
    if (auto vtBeyond = platform::ReadBeyond(takes.type, Trimmed(sText))) {
      return *std::move(vtBeyond);
    }
  }
  const ValueKind first = kind == ValueKind::Null ? current : kind;
  try {
    return ReadAs(first, sText);
  } catch (const Failure&) {
    if (kind == ValueKind::Null) return ReadAny(sText);
    // A text would take whatever is typed.
    if (current == kind || current == ValueKind::Null || current == ValueKind::Text) throw;
    try {
      return ReadAs(current, sText);
    } catch (const Failure&) {
      // What the column asks for is what is to be said.
    }
    throw;
  }
}

Value ValueInput::ReadCopied(const Text& sText, ValueKind kindOfCopied, const ColumnTakes& takes,
                             const Value& vtCurrent) const {
  const ValueKind kind = KindOf(takes.type);
  const bool bItself =
      kind == ValueKind::Null || (kind == ValueKind::Decimal && kindOfCopied == ValueKind::Double);
  return bItself ? ReadAs(kindOfCopied, sText) : Read(sText, takes, vtCurrent);
}

Value ValueInput::ReadAs(ValueKind kind, const Text& sText) const {
  const std::string_view sValue = Trimmed(sText);
  switch (kind) {
    case ValueKind::Boolean:
      return ReadBoolean(sValue);
    case ValueKind::Long:
      return static_cast<std::int32_t>(ReadInteger(sValue, std::numeric_limits<std::int32_t>::min(),
                                                   std::numeric_limits<std::int32_t>::max()));
    case ValueKind::LongLong:
      return ReadInteger(sValue, std::numeric_limits<std::int64_t>::min(),
                         std::numeric_limits<std::int64_t>::max());
    case ValueKind::Double:
      return ReadDouble(sValue);
    case ValueKind::Decimal:
      return ReadDecimal(sValue);
    case ValueKind::Timestamp:
      return zones::ReadClock(sValue, m_zone);
    case ValueKind::WallTime:
      return ReadWallTime(sValue);
    case ValueKind::Date:
      return zones::ReadDay(sValue);
    case ValueKind::TimeOfDay:
      return zones::ReadTimeOfDay(sValue);
    case ValueKind::Bytes:
      return ReadBytes(sValue);
    case ValueKind::Guid:
      return ReadGuid(sValue);
    case ValueKind::Null:
    case ValueKind::Text:
    case ValueKind::Object:
      break;
  }
  return sText;
}

}  // namespace orvane::controls
