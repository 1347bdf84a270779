// The functions that read values as times while a statement runs, for what the translator cannot
// know: texts of columns, and what date functions give.
// Named by the translator in the engine's text and brought along with it.
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

/// All of them. Null stays null; what is no time fails with failure::kSqlError and a sentence.
std::vector<engines::StatementFunction> TimeFunctions(const TranslationSettings& settings);

}  // namespace orvane::provider::dialect
