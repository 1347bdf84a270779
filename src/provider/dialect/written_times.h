// How the engine's strftime writes times: the shapes of such texts, whether they sort as the times
// do, and what texts can be among them.
// In a shape a character up to "\6" stands for a digit: of the year, the month, the day, the hour,
// the minute or the second. At its end "\7" means that anything may follow. All else stands for
// itself. An empty shape is one that is not known.
// Used by the analysis of times and by the functions that it lets the engine call. Pure functions,
// on any thread.
#pragma once

#include <string_view>

#include "platform/types.h"

namespace orvane::provider::dialect {

/// What strftime writes in that format; empty when something in it is not known.
platform::Text ShapeOfFormat(std::string_view sFormat);
/// The text as a shape, each character of which stands for itself; empty when none can.
platform::Text ShapeOfText(const platform::Text& sText);

/// Of dates and of times of day as columns hold them, which may have fractions of seconds.
constexpr std::string_view kDayShape = "\1\1\1\1-\2\2-\3\3";
constexpr std::string_view kClockShape = "\4\4:\5\5:\6\6\7";
/// Where nothing is known but that a text begins with the year, or does not.
constexpr std::string_view kWholeShape = "\1\1\1\1\7";
constexpr std::string_view kPartShape = "\4\4";
constexpr char kAnythingFollows = '\7';

bool BeginsWithYear(std::string_view sShape);
/// True when it goes from what is greater to what is less.
bool SortsAsTimes(std::string_view sShape);
/// True when a column of numbers keeps such a text as it is.
bool LooksLikeNoNumber(std::string_view sShape);

/// True when the text can come before or behind what is written so: its first field is whole, and
/// the others are as far as they go. Behind a whole date, and behind ':', more may stand.
bool CanBegin(std::string_view sShape, std::string_view sText);
/// True when the text can be one of those that are written so.
bool CanBe(std::string_view sShape, std::string_view sText);

/// True when texts of the two shapes can be told by which comes first, as far as the shorter goes.
bool HaveOneFormat(std::string_view sShape, std::string_view sOther);

/// True for a text that can be the same as a written time of which the shape is not known.
bool BeginsAsWritten(std::string_view sText);

/// True for a text that begins with a year, a dash and a digit.
bool BeginsAsDate(std::string_view sText);

}  // namespace orvane::provider::dialect
