#include "platform/conversions.h"

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <limits>
#include <type_traits>

#include "platform/failure.h"
#include "platform/quoting.h"

namespace orvane::platform {
namespace {

using namespace std::chrono;

constexpr std::int64_t kLongMin = std::numeric_limits<Long>::min();
constexpr std::int64_t kLongMax = std::numeric_limits<Long>::max();

[[noreturn]] void FailMismatch(const Text& sWhat) {
  throw Failure(failure::kTypeMismatch, sWhat + " is not a number; enter digits only.");
}

[[noreturn]] void FailOverflow(const Text& sWhat) {
  throw Failure(failure::kOverflow,
                sWhat + " is too large; enter a number from -2147483648 to 2147483647.");
}

template <class Number>
Text NumberText(Number number) {
  char buffer[64];
  const auto end = std::to_chars(std::begin(buffer), std::end(buffer), number).ptr;
  return {buffer, end};
}

Text Padded(long long llNumber, int nDigits) {
  char buffer[32];
  const int nLength = std::snprintf(buffer, sizeof buffer, "%0*lld", nDigits, llNumber);
  return {buffer, static_cast<std::size_t>(nLength)};
}

Text DateText(Date date) {
  const year_month_day ymd(date);
  return Padded(int{ymd.year()}, 4) + "-" + Padded(unsigned{ymd.month()}, 2) + "-" +
         Padded(unsigned{ymd.day()}, 2);
}

Text TimeText(TimeOfDay time) {
  const hh_mm_ss parts(time);
  Text sText = (parts.is_negative() ? "-" : "") + Padded(parts.hours().count(), 2) + ":" +
               Padded(parts.minutes().count(), 2) + ":" + Padded(parts.seconds().count(), 2);
  if (parts.subseconds().count() != 0) {
    sText += "." + Padded(parts.subseconds().count(), 6);
    sText.erase(sText.find_last_not_of('0') + 1);
  }
  return sText;
}

Text TimestampText(Timestamp timestamp) {
  const auto date = floor<days>(timestamp);
  return DateText(date) + " " + TimeText(timestamp - date);
}

Text HexText(const std::uint8_t* bytes, std::size_t nBytes) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  Text sText;
  sText.reserve(nBytes * 2);
  for (std::size_t i = 0; i < nBytes; ++i) {
    sText += kDigits[bytes[i] >> 4U];
    sText += kDigits[bytes[i] & 0x0FU];
  }
  return sText;
}

Text GuidText(const Guid& guid) {
  const Text sHex = HexText(guid.bytes.data(), guid.bytes.size());
  return "{" + sHex.substr(0, 8) + "-" + sHex.substr(8, 4) + "-" + sHex.substr(12, 4) + "-" +
         sHex.substr(16, 4) + "-" + sHex.substr(20) + "}";
}

Long RangeChecked(std::int64_t llNumber, const Text& sWhat) {
  if (llNumber < kLongMin || llNumber > kLongMax) FailOverflow(sWhat);
  return static_cast<Long>(llNumber);
}

Long DoubleToLong(double dNumber) {
  if (std::isnan(dNumber)) FailMismatch(NumberText(dNumber));
  double dRounded = std::floor(dNumber);
  const double dFraction = dNumber - dRounded;
  if (dFraction > 0.5 || (dFraction == 0.5 && std::fmod(dRounded, 2.0) != 0.0)) dRounded += 1.0;
  if (!(dRounded >= static_cast<double>(kLongMin) && dRounded <= static_cast<double>(kLongMax))) {
    FailOverflow(NumberText(dNumber));
  }
  return static_cast<Long>(dRounded);
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

// True when the digits behind the point are more than one half, or exactly one half behind an
// odd integer.
bool RoundsUp(std::string_view sFraction, bool bOdd) {
  if (sFraction.empty() || sFraction.front() < '5') return false;
  if (sFraction.front() > '5') return true;
  return bOdd || sFraction.find_first_not_of('0', 1) != std::string_view::npos;
}

bool EqualsAsciiNoCase(std::string_view sText, std::string_view sLower) {
  if (sText.size() != sLower.size()) return false;
  for (std::size_t i = 0; i < sText.size(); ++i) {
    const char c = sText[i] >= 'A' && sText[i] <= 'Z' ? static_cast<char>(sText[i] + 32) : sText[i];
    if (c != sLower[i]) return false;
  }
  return true;
}

}  // namespace

Text ToText(const Value& vtValue) {
  return std::visit(
      [](const auto& content) -> Text {
        using T = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<T, Null>) {
          return {};
        } else if constexpr (std::is_same_v<T, bool>) {
          return content ? "True" : "False";
        } else if constexpr (std::is_arithmetic_v<T>) {
          return NumberText(content);
        } else if constexpr (std::is_same_v<T, Decimal>) {
          return content.sDigits;
        } else if constexpr (std::is_same_v<T, Text>) {
          return content;
        } else if constexpr (std::is_same_v<T, Timestamp>) {
          return TimestampText(content);
        } else if constexpr (std::is_same_v<T, WallTime>) {
          return TimestampText(Timestamp(content.time_since_epoch()));
        } else if constexpr (std::is_same_v<T, Date>) {
          return DateText(content);
        } else if constexpr (std::is_same_v<T, TimeOfDay>) {
          return TimeText(content);
        } else if constexpr (std::is_same_v<T, Bytes>) {
          return "0x" +
                 HexText(reinterpret_cast<const std::uint8_t*>(content.data()), content.size());
        } else if constexpr (std::is_same_v<T, Guid>) {
          return GuidText(content);
        } else {
          throw Failure(failure::kTypeMismatch,
                        "An object has no text; a text or a number is needed here.");
        }
      },
      vtValue.Content());
}

Long TextToLong(std::string_view sText) {
  const std::string_view sWhole = sText;
  while (!sText.empty() && IsBlank(sText.front())) sText.remove_prefix(1);
  while (!sText.empty() && IsBlank(sText.back())) sText.remove_suffix(1);
  bool bNegative = false;
  if (!sText.empty() && (sText.front() == '-' || sText.front() == '+')) {
    bNegative = sText.front() == '-';
    sText.remove_prefix(1);
  }
  std::size_t nDigits = 0;
  while (nDigits < sText.size() && IsDigit(sText[nDigits])) ++nDigits;
  if (nDigits == 0) FailMismatch(InQuotes(sWhole));
  std::string_view sFraction;
  if (nDigits < sText.size()) {
    if (sText[nDigits] != '.') FailMismatch(InQuotes(sWhole));
    sFraction = sText.substr(nDigits + 1);
    for (const char c : sFraction) {
      if (!IsDigit(c)) FailMismatch(InQuotes(sWhole));
    }
  }
  std::int64_t llMagnitude = 0;
  for (const char c : sText.substr(0, nDigits)) {
    llMagnitude = llMagnitude * 10 + (c - '0');
    if (llMagnitude > kLongMax + 1) FailOverflow(InQuotes(sWhole));
  }
  if (RoundsUp(sFraction, llMagnitude % 2 != 0)) ++llMagnitude;
  return RangeChecked(bNegative ? -llMagnitude : llMagnitude, InQuotes(sWhole));
}

Long ToLong(const Value& vtValue) {
  if (const auto* const bValue = vtValue.As<bool>()) return *bValue ? -1 : 0;
  if (const auto* const lValue = vtValue.As<std::int32_t>()) return *lValue;
  if (const auto* const llValue = vtValue.As<std::int64_t>()) {
    return RangeChecked(*llValue, NumberText(*llValue));
  }
  if (const auto* const dValue = vtValue.As<double>()) return DoubleToLong(*dValue);
  if (const auto* const decimal = vtValue.As<Decimal>()) return TextToLong(decimal->sDigits);
  if (const auto* const sValue = vtValue.As<Text>()) return TextToLong(*sValue);
  FailMismatch(vtValue.IsNull() ? "An empty value" : "The value");
}

Boolean ToBoolean(const Value& vtValue) {
  if (vtValue.IsNull()) return false;
  if (const auto* const bValue = vtValue.As<bool>()) return *bValue;
  if (const auto* const llValue = vtValue.As<std::int64_t>()) return *llValue != 0;
  if (const auto* const dValue = vtValue.As<double>()) return *dValue != 0.0;
  if (const auto* const decimal = vtValue.As<Decimal>()) {
    return decimal->sDigits.find_first_of("123456789") != Text::npos;
  }
  if (const auto* const sValue = vtValue.As<Text>()) {
    if (EqualsAsciiNoCase(*sValue, "true")) return true;
    if (EqualsAsciiNoCase(*sValue, "false")) return false;
  }
  return ToLong(vtValue) != 0;
}

}  // namespace orvane::platform
