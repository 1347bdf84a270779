#include "platform/beyond_values.h"

#include <algorithm>
#include <charconv>
#include <chrono>

#include "platform/case_folding.h"
#include "platform/stored_text.h"

namespace orvane::platform {
namespace {

constexpr std::string_view kEra = " BC";

std::optional<Value> ReadWord(std::string_view sText, std::initializer_list<const char*> words) {
  const Text sFolded = FoldCase(sText);
  for (const char* const sWord : words) {
    if (FoldCase(sWord) == sFolded) return Value(Text(sWord));
  }
  return std::nullopt;
}

std::optional<int> ReadDigitsOnly(std::string_view sText) {
  const bool bDigits = std::ranges::all_of(
      sText, [](char character) { return character >= '0' && character <= '9'; });
  int nNumber = 0;
  const auto read = std::from_chars(sText.data(), sText.data() + sText.size(), nNumber);
  return bDigits && read.ec == std::errc() ? std::optional<int>(nNumber) : std::nullopt;
}

// "0044-03-15" before our era, or "20000-01-01": a day that is none from the year 1 to 9999.
bool IsFarDay(std::string_view sText, bool bBeforeEra) {
  constexpr std::size_t kMonthAndDay = 6;
  constexpr std::size_t kYear = 4;
  if (sText.size() < kYear + kMonthAndDay) return false;
  const std::size_t nYearEnd = sText.size() - kMonthAndDay;
  const bool bLong = nYearEnd > kYear;
  if ((bLong && sText.front() == '0') || (!bLong && !bBeforeEra)) return false;
  const auto nYear = ReadDigitsOnly(sText.substr(0, nYearEnd));
  const auto nMonth = ReadDigitsOnly(sText.substr(nYearEnd + 1, 2));
  const auto nDay = ReadDigitsOnly(sText.substr(nYearEnd + 4));
  if (sText[nYearEnd] != '-' || sText[nYearEnd + 3] != '-' || !nYear || *nYear == 0 || !nMonth ||
      !nDay) {
    return false;
  }
  // The calendar comes again every 400 years.
  constexpr int kCycle = 400;
  const int nInCycle = (bBeforeEra ? kCycle - (*nYear - 1) % kCycle : *nYear % kCycle) + kCycle;
  return std::chrono::year_month_day(std::chrono::year(nInCycle),
                                     std::chrono::month(static_cast<unsigned>(*nMonth)),
                                     std::chrono::day(static_cast<unsigned>(*nDay)))
      .ok();
}

bool IsFarMoment(std::string_view sText, bool bBeforeEra, std::string_view sZone) {
  const std::size_t nBlank = std::min(sText.find(' '), sText.size());
  if (!IsFarDay(sText.substr(0, nBlank), bBeforeEra) || !sText.ends_with(sZone)) return false;
  sText.remove_suffix(sZone.size());
  if (sText.size() <= nBlank) return false;
  return FromStoredText(DataType::DBTime, sText.substr(nBlank + 1)).As<TimeOfDay>() != nullptr;
}

}  // namespace

std::optional<Value> ReadBeyond(DataType type, std::string_view sText) {
  const bool bBeforeEra = sText.ends_with(kEra);
  const std::string_view sDay = sText.substr(0, sText.size() - (bBeforeEra ? kEra.size() : 0));
  bool bFar = false;
  switch (type) {
    case DataType::Numeric:
      return ReadWord(sText, {"NaN", "Infinity", "-Infinity"});
    case DataType::DBTime:
      if (sText != "24:00:00") return std::nullopt;
      return Value(TimeOfDay(std::chrono::hours(24)));
    case DataType::DBDate:
      bFar = IsFarDay(sDay, bBeforeEra);
      break;
    case DataType::WallTime:
      bFar = IsFarMoment(sDay, bBeforeEra, "");
      break;
    case DataType::DBTimeStamp:
      bFar = IsFarMoment(sDay, bBeforeEra, "+00");
      break;
    default:
      return std::nullopt;
  }
  return bFar ? std::optional<Value>(Text(sText)) : ReadWord(sText, {"infinity", "-infinity"});
}

}  // namespace orvane::platform
