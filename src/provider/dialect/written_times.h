// How the engine's strftime writes times: whether such texts sort as the times do, and what texts
// can be among them.
// Used by the analysis of times. Pure functions, on any thread.
#pragma once

#include <string_view>

#include "platform/types.h"

namespace orvane::provider::dialect {

struct WrittenFormat {
  bool bKnown = false;     ///< everything in it is known, and as long in each text
  bool bFromYear = false;  ///< begins with the year
  bool bSorts = false;     ///< goes from what is greater to what is less
  platform::Text sShape;   ///< 0 for each digit; anything else stands for itself
};

WrittenFormat ReadFormat(std::string_view sFormat);

/// True when the text can be the beginning of what is written so; behind a whole date more may
/// stand.
bool CanBegin(const WrittenFormat& format, std::string_view sText);

/// True for a text that can be compared with written times of which the format is not known.
bool BeginsAsWritten(std::string_view sText);

/// True for a text that begins with a year, a dash and a digit.
bool BeginsAsDate(std::string_view sText);

}  // namespace orvane::provider::dialect
