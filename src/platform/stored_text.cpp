#include "platform/stored_text.h"

#include <array>
#include <charconv>
#include <optional>
#include <string>

#include "platform/conversions.h"

namespace orvane::platform {

namespace {

// The number that all of the characters are, in the base.
std::optional<int> Number(std::string_view sDigits, int nBase = 10) {
  int nValue = 0;
  const char* end = sDigits.data() + sDigits.size();
  const auto [stopped, error] = std::from_chars(sDigits.data(), end, nValue, nBase);
  if (error != std::errc() || stopped != end) return std::nullopt;
  return nValue;
}

Value ReadDate(std::string_view sText) {
  if (sText.size() != 10) return {};
  const auto nYear = Number(sText.substr(0, 4));
  const auto nMonth = Number(sText.substr(5, 2));
  const auto nDay = Number(sText.substr(8, 2));
  if (!nYear || !nMonth || !nDay || *nMonth < 0 || *nDay < 0) return {};
  const std::chrono::year_month_day day{std::chrono::year(*nYear),
                                        std::chrono::month(static_cast<unsigned>(*nMonth)),
                                        std::chrono::day(static_cast<unsigned>(*nDay))};
  if (!day.ok()) return {};
  return Date(day);
}

Value ReadTime(std::string_view sText) {
  if (sText.size() < 8 || sText.size() > 15) return {};
  const auto nHour = Number(sText.substr(0, 2));
  const auto nMinute = Number(sText.substr(3, 2));
  const auto nSecond = Number(sText.substr(6, 2));
  std::string sFraction = sText.size() > 9 ? std::string(sText.substr(9)) : "0";
  sFraction.resize(6, '0');
  const auto nFraction = Number(sFraction);
  if (!nHour || !nMinute || !nSecond || !nFraction) return {};
  if (*nHour > 23 || *nMinute > 59 || *nSecond > 59) return {};
  return TimeOfDay(std::chrono::hours(*nHour) + std::chrono::minutes(*nMinute) +
                   std::chrono::seconds(*nSecond) + std::chrono::microseconds(*nFraction));
}

Value ReadGuid(std::string_view sText) {
  std::string sDigits;
  for (const char character : sText) {
    if (character != '{' && character != '-' && character != '}') sDigits.push_back(character);
  }
  Guid guid;
  if (sDigits.size() != guid.bytes.size() * 2) return {};
  for (std::size_t i = 0; i < guid.bytes.size(); ++i) {
    const auto nByte = Number(std::string_view(sDigits).substr(i * 2, 2), 16);
    if (!nByte || *nByte < 0) return {};
    guid.bytes[i] = static_cast<std::uint8_t>(*nByte);
  }
  return guid;
}

}  // namespace

Value FromStoredText(DataType type, std::string_view sText) {
  Value vtValue;
  if (type == DataType::DBDate) vtValue = ReadDate(sText);
  if (type == DataType::DBTime) vtValue = ReadTime(sText);
  if (type == DataType::Guid) vtValue = ReadGuid(sText);
  // Another spelling stays the text it is, so that the original value finds its row again.
  if (vtValue.IsNull() || ToText(vtValue) != sText) return Text(sText);
  return vtValue;
}

}  // namespace orvane::platform
