#include "exports/typed_text.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "platform/case_folding.h"
#include "platform/conversions.h"
#include "platform/exact_number.h"
#include "platform/stored_text.h"
#include "zones/time_expression.h"

namespace orvane::exports {
namespace {

using platform::DataType;
using platform::Text;
using platform::Value;

template <class Number>
std::optional<Number> Read(std::string_view sText) {
  if (!sText.empty() && sText.front() == '+') sText.remove_prefix(1);
  Number number{};
  const char* const end = sText.data() + sText.size();
  const auto read = std::from_chars(sText.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return number;
}

std::optional<Value> ReadWhole(std::string_view sText, bool bShort) {
  const auto number = Read<std::int64_t>(sText);
  using Short = std::numeric_limits<std::int32_t>;
  if (!number || (bShort && (*number < Short::min() || *number > Short::max()))) {
    return std::nullopt;
  }
  return Value(*number);
}

// Infinities are written "inf" and "-inf", and what is no number "nan"; an engine that keeps none
// says so.
std::optional<Value> ReadNumber(std::string_view sText) {
  const auto number = Read<double>(sText);
  return number ? std::optional<Value>(*number) : std::nullopt;
}

// Of more digits than a double has, all of which are kept.
std::optional<Value> ReadDecimal(std::string_view sText) {
  const auto digits = platform::ReadDigits(sText);
  if (!digits || sText.find_first_of("eE") != std::string_view::npos) return std::nullopt;
  if (sText.front() == '+') sText.remove_prefix(1);
  const std::size_t nSign = digits->bNegative ? 1 : 0;
  const auto first = std::min(sText.find_first_not_of('0', nSign), sText.size());
  const bool bPoint = first == sText.size() || sText[first] == '.';
  Text sDigits =
      (digits->bNegative ? "-" : "") + Text(bPoint ? "0" : "") + Text(sText.substr(first));
  if (sDigits.ends_with('.')) sDigits.pop_back();
  return Value(platform::Decimal{std::move(sDigits)});
}

std::optional<Value> ReadBoolean(std::string_view sText) {
  const Text sFolded = platform::FoldCase(sText);
  if (sFolded == "true" || sFolded == "1") return Value(true);
  if (sFolded == "false" || sFolded == "0") return Value(false);
  return std::nullopt;
}

std::optional<Value> ReadBytes(std::string_view sText) {
  if (!sText.starts_with("0x") || sText.size() % 2 != 0) return std::nullopt;
  platform::Bytes bytes;
  for (std::size_t i = 2; i < sText.size(); i += 2) {
    unsigned nByte = 0;
    const char* const end = sText.data() + i + 2;
    const auto read = std::from_chars(sText.data() + i, end, nByte, 16);
    if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
    bytes.push_back(static_cast<std::byte>(nByte));
  }
  return Value(std::move(bytes));
}

// Only in the spelling in which they are stored.
std::optional<Value> ReadStored(DataType type, std::string_view sText) {
  Value vtValue = platform::FromStoredText(type, sText);
  if (vtValue.As<Text>() != nullptr) return std::nullopt;
  return vtValue;
}

/// A day and a time of day as they are stored, with a blank or a "T" between them, and nothing
/// else: a distance from UTC would be lost.
std::optional<platform::WallTime> ReadWallTime(std::string_view sText) {
  constexpr std::size_t kDay = 10;
  if (sText.size() <= kDay || (sText[kDay] != ' ' && sText[kDay] != 'T')) return std::nullopt;
  const Value vtDay = platform::FromStoredText(DataType::DBDate, sText.substr(0, kDay));
  const Value vtTime = platform::FromStoredText(DataType::DBTime, sText.substr(kDay + 1));
  const auto* const day = vtDay.As<platform::Date>();
  const auto* const time = vtTime.As<platform::TimeOfDay>();
  if (day == nullptr || time == nullptr) return std::nullopt;
  return platform::WallTime(day->time_since_epoch() + *time);
}

}  // namespace

std::optional<Value> ReadTyped(DataType type, std::string_view sText, const zones::TimeZone& zone,
                               platform::Timestamp now, bool bRounds) {
  switch (type) {
    case DataType::Integer:
      return ReadWhole(sText, true);
    case DataType::BigInt:
      return ReadWhole(sText, false);
    case DataType::Double:
      return ReadNumber(sText);
    case DataType::Numeric: {
      // None is rounded: what has digits is one of both, or nothing.
      const auto exact = bRounds ? platform::ExactNumber(sText) : std::nullopt;
      if (exact) return exact;
      return platform::ReadDigits(sText) ? ReadDecimal(sText) : ReadNumber(sText);
    }
    case DataType::Boolean:
      return ReadBoolean(sText);
    case DataType::DBTimeStamp: {
      const auto time = zones::ReadTimeExpression(sText, zone, now);
      if (const auto* const timestamp = std::get_if<platform::Timestamp>(&time)) {
        return Value(*timestamp);
      }
      return std::nullopt;
    }
    case DataType::WallTime: {
      const auto wall = ReadWallTime(sText);
      return wall ? std::optional<Value>(*wall) : std::nullopt;
    }
    case DataType::DBDate:
    case DataType::DBTime:
    case DataType::Guid:
      return ReadStored(type, sText);
    case DataType::Binary:
      return ReadBytes(sText);
    case DataType::WChar:
    case DataType::Empty:
      break;
  }
  return Value(Text(sText));
}

std::string_view TypeInWords(DataType type) {
  switch (type) {
    case DataType::Integer:
      return "a whole number of 32 bits";
    case DataType::BigInt:
      return "a whole number";
    case DataType::Double:
    case DataType::Numeric:
      return "a number";
    case DataType::Boolean:
      return "True or False";
    case DataType::DBTimeStamp:
      return "a time such as 2024-05-31 17:45:30";
    case DataType::WallTime:
      return "a time without a zone such as 2024-05-31 17:45:30";
    case DataType::DBDate:
      return "a date such as 2024-05-31";
    case DataType::DBTime:
      return "a time of day such as 17:45:30";
    case DataType::Guid:
      return "an identity in braces";
    case DataType::Binary:
      return "bytes such as 0x00FF";
    case DataType::WChar:
    case DataType::Empty:
      break;
  }
  return "a text";
}

}  // namespace orvane::exports
