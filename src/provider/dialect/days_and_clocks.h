// Dates and times of day as texts mean them: "2024-05-31" and "08:30:15.25", as columns of types
// DATE and TIME hold them. Also the functions that read them while a statement runs, for texts of
// which the translator knows nothing.
// Used by the analysis of times. Pure functions, on any thread.
#pragma once

#include <optional>
#include <variant>
#include <vector>

#include "provider/dialect/translator.h"
#include "zones/time_expression.h"

namespace orvane::provider::dialect {

/// Reads a date as it is, and any other text as a time expression, of which it gives the day in the
/// connection's zone.
constexpr std::string_view kReadDay = "orvane_time_day";
/// The same for what the engine's date functions write, in UTC.
constexpr std::string_view kReadDayUtc = "orvane_time_day_utc";
/// Reads a time of day.
constexpr std::string_view kReadClock = "orvane_time_clock";

/// The date that stands in the text, or else the day of a time expression in the zone of the
/// clocks. The text itself is read in the first zone.
std::variant<platform::Date, zones::TimeExpressionError> ReadDay(std::string_view sText,
                                                                 const zones::TimeZone& zone,
                                                                 const zones::TimeZone& clocks,
                                                                 platform::Timestamp now);
/// "08:30", "08:30:15" or "08:30:15.25"; none for any other text.
std::optional<platform::TimeOfDay> ReadClock(std::string_view sText);

/// All of them. Null stays null; what is no date or no time of day fails with failure::kSqlError
/// and a sentence.
std::vector<engines::StatementFunction> DayFunctions(const TranslationSettings& settings);

}  // namespace orvane::provider::dialect
