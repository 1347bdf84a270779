// The functions that read values as times while a statement runs, for what the translator cannot
// know: texts of columns, and what date functions give; and that look whether values are of the
// kind that they must be. Named by the translator in the engine's text and brought along with it.
#pragma once

#include <vector>

#include "provider/dialect/translator.h"

namespace orvane::provider::dialect {

/// Reads a text as a time expression in the connection's zone, and where the connection has times
/// as numbers a number of days as well.
constexpr std::string_view kReadTime = "orvane_time";
/// Reads a text as the engine's date functions write it, in UTC.
constexpr std::string_view kReadUtc = "orvane_time_utc";
/// Gives the whole microsecond of a time to which a number was added.
constexpr std::string_view kWholeTime = "orvane_time_whole";

/// Gives a number as it is, for what is compared with a number made from a time.
constexpr std::string_view kOnlyNumber = "orvane_time_number";
/// Gives a text as it is, for what is compared with a written time.
constexpr std::string_view kOnlyText = "orvane_time_text";
/// Gives a number as it is, for what is added to a time.
constexpr std::string_view kOnlyCount = "orvane_time_count";
/// Gives a modifier of a date function as it is, unless it says what a number means.
constexpr std::string_view kOnlyModifier = "orvane_time_modifier";
/// The same as kOnlyText for a part of a time, such as its hour: a text that is no date.
constexpr std::string_view kOnlyPart = "orvane_time_part";
/// The same as kOnlyText for what comes before or behind one: a text that begins as those do.
/// Behind it stands a number, for each shape another.
constexpr std::string_view kOnlyWritten = "orvane_time_written";

/// True for a date function's modifier that says what its number means: a stored time is none.
bool TellsUnit(std::string_view sModifier);
/// The text as a sentence quotes it, which tells no more than its beginning of a long one.
platform::Text ShownText(const platform::Text& sText);

/// The one of that name, behind kOnlyWritten, for texts of that shape.
engines::StatementFunction ShapeFunction(const platform::Text& sName, const platform::Text& sShape);

/// All others. Null stays null; what is no time fails with failure::kSqlError and a sentence.
std::vector<engines::StatementFunction> TimeFunctions(const TranslationSettings& settings);

}  // namespace orvane::provider::dialect
