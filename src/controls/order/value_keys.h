// Values that are kept as texts, as they compare: decimals of any length, and what a column of
// times or numbers has for values that its kind does not hold ("infinity", years before the first
// one). Used by what sorts and filters rows; pure functions, any thread.
#pragma once

#include <string>
#include <string_view>

#include "platform/ado/recordset.h"

namespace orvane::controls {

/// -1, 0 or 1 as the first decimal is less than, equal to or greater than the second; both as
/// canonical digits, however many.
int CompareDecimals(std::string_view sOne, std::string_view sOther);

/// Less than 0, 0 or more than 0, in the order of the column that they are texts of; by their bytes
/// where only the source knows it.
int CompareTexts(std::string_view sOne, std::string_view sOther, platform::TextOrder order);

/// True of a text that stands for a value before all that the column's kind holds.
bool IsBeforeValues(std::string_view sText);
/// The text as one whose bytes compare as what it stands for does, among those before the column's
/// values or among those behind them.
std::string BeyondKey(std::string_view sText);

}  // namespace orvane::controls
