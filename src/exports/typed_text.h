// Texts as values of a column's type, checked strictly.
// Used by imports; pure.
#pragma once

#include <optional>
#include <string_view>

#include "platform/ado/recordset.h"
#include "zones/time_zone.h"

namespace orvane::exports {

/// The value as the column stores it, or none when the text is no value of the type. Times are
/// time expressions, read in the zone at the moment "now". In a column of decimals that rounds,
/// what a double or a 64-bit integer holds is one of them; in any other every digit is kept.
std::optional<platform::Value> ReadTyped(platform::DataType type, std::string_view sText,
                                         const zones::TimeZone& zone, platform::Timestamp now,
                                         bool bRounds = true);

/// The type in words, with its article: "a whole number".
std::string_view TypeInWords(platform::DataType type);

}  // namespace orvane::exports
