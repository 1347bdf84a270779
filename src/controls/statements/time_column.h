// Which column of a table tells when its rows happened: what its rows are ordered by unless
// somebody chose an order, and what a range of time is about. Used by the table's grid;
// user-interface thread.
#pragma once

#include <optional>

#include "platform/ado/connection.h"
#include "zones/time_zone.h"

namespace orvane::controls {

/// The time column of a table.
struct TableTimeColumn {
  std::optional<platform::Text> name;  ///< none where the table has none
  bool bNullIsNewest = false;          ///< it may hold null, which the server puts behind all times
};

/// The table's time column: "Timestamp" where it is one, otherwise the first column of dates with
/// times. Where times are given as numbers, only the name tells them. Asks the server once and
/// fails as that does.
TableTimeColumn TimeColumnOf(platform::Connection& cn, const platform::Text& sCatalog,
                             const platform::Text& sTable);

/// The same of rows that are here.
std::optional<platform::ColumnIndex> TimeColumnOf(const platform::Recordset& rs);

/// The point in time that a cell of such a column means: days since 1899-12-30 by the clocks of the
/// zone where it is a number. None for anything else.
std::optional<platform::Timestamp> TimeIn(const platform::Value& vt, const zones::TimeZone& zone);

/// True where the connection gives times as numbers of days.
bool GivesTimesAsNumbers(platform::Connection& cn);

}  // namespace orvane::controls
