#include "provider/dialect/days_and_clocks.h"

#include "platform/conversions.h"
#include "platform/failure.h"
#include "platform/stored_text.h"
#include "provider/dialect/time_functions.h"

namespace orvane::provider::dialect {

using platform::Text;
using platform::Timestamp;
using platform::Value;

namespace {

[[noreturn]] void FailNoDay(const Value& vtValue, std::string_view sKind, const Text& sWhy) {
  Text sShown = "A row of bytes";
  if (const auto* const sText = vtValue.As<Text>()) {
    sShown = ShownText(*sText);
  } else if (vtValue.Kind() != platform::ValueKind::Bytes) {
    sShown = platform::ToText(vtValue);
  }
  throw platform::Failure(platform::failure::kSqlError,
                          sShown + " is compared with a " + Text(sKind) +
                              " or stored as one, and is none: " + sWhy + ".",
                          "ORVOLEDB");
}

Value DayOf(const Value& vtValue, const zones::TimeZone& zone, const zones::TimeZone& clocks,
            Timestamp now) {
  if (vtValue.IsNull()) return {};
  const auto* const sText = vtValue.As<Text>();
  if (sText == nullptr) FailNoDay(vtValue, "date", "write a date such as '2024-05-31'");
  const auto day = ReadDay(*sText, zone, clocks, now);
  if (const auto* const error = std::get_if<zones::TimeExpressionError>(&day)) {
    FailNoDay(
        vtValue, "date",
        "at its character " + CharacterNumber(*sText, error->position) + " " + error->sReason);
  }
  // As the column holds it.
  return platform::ToText(std::get<platform::Date>(day));
}

Value ClockOf(const Value& vtValue) {
  if (vtValue.IsNull()) return {};
  const auto* const sText = vtValue.As<Text>();
  const auto clock = sText != nullptr ? ReadClock(*sText) : std::nullopt;
  if (!clock) FailNoDay(vtValue, "time of day", "write one such as '08:30' or '08:30:15'");
  return platform::ToText(*clock);
}

}  // namespace

std::variant<platform::Date, zones::TimeExpressionError> ReadDay(std::string_view sText,
                                                                 const zones::TimeZone& zone,
                                                                 const zones::TimeZone& clocks,
                                                                 Timestamp now) {
  const Value vtDay = platform::FromStoredText(platform::DataType::DBDate, sText);
  if (const auto* const day = vtDay.As<platform::Date>()) return *day;
  const auto time = zones::ReadTimeExpression(sText, zone, now);
  if (const auto* const error = std::get_if<zones::TimeExpressionError>(&time)) return *error;
  const auto local = clocks.ToLocal(std::get<Timestamp>(time));
  return platform::Date(date::floor<date::days>(local).time_since_epoch());
}

std::optional<platform::TimeOfDay> ReadClock(std::string_view sText) {
  Text sClock(sText);
  constexpr std::size_t kMinutes = 5;
  constexpr std::size_t kFraction = 8;
  if (sClock.size() == kMinutes) sClock += ":00";
  // As it is stored, a fraction ends with another digit than 0.
  if (sClock.size() > kFraction + 1 && sClock[kFraction] == '.') {
    while (sClock.ends_with('0')) sClock.pop_back();
    if (sClock.ends_with('.')) sClock.pop_back();
  }
  const Value vtClock = platform::FromStoredText(platform::DataType::DBTime, sClock);
  const auto* const clock = vtClock.As<platform::TimeOfDay>();
  return clock != nullptr ? std::optional(*clock) : std::nullopt;
}

std::vector<engines::StatementFunction> DayFunctions(const TranslationSettings& settings) {
  const auto day = [zone = settings.zone, now = settings.now](const Value& vtValue) {
    return DayOf(vtValue, zone, zone, now);
  };
  const auto utcDay = [zone = settings.zone, now = settings.now, utc = zones::TimeZone::Utc()](
                          const Value& vtValue) { return DayOf(vtValue, utc, zone, now); };
  return {{Text(kReadDay), day}, {Text(kReadDayUtc), utcDay}, {Text(kReadClock), ClockOf}};
}

}  // namespace orvane::provider::dialect
