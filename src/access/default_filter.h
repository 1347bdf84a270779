// The filter condition proposed for the historian's time-stamped tables.
// Pure text; the times are in the historian's own syntax and are not read here.
#pragma once

#include "platform/types.h"

namespace orvane::access {

/// True when the name is the base name, or the base name behind the prefix "Orv_"; exactly so.
platform::Boolean MatchesName(const platform::Text& sName, const platform::Text& sBaseName);

/// The condition that limits the table to the time range, or the empty text when the table is not
/// a time-stamped one or both times are empty. The times go in as they are, unescaped.
platform::Text FormDefaultFilterCondition(const platform::Text& sCatalog,
                                          const platform::Text& sTable,
                                          const platform::Text& sStartTime,
                                          const platform::Text& sEndTime);

}  // namespace orvane::access
