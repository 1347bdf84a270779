// Which column of a table tells when its rows happened: what its rows are ordered by unless
// somebody chose an order, and what a range of time is about. Used by the table's grid;
// user-interface thread.
#pragma once

#include <optional>

#include "platform/ado/connection.h"

namespace orvane::controls {

/// The name of the table's time column: "Timestamp" where it is one, otherwise the first column of
/// dates with times; none where there is no such column. Asks the server once and fails as that
/// does.
std::optional<platform::Text> TimeColumnOf(platform::Connection& cn, const platform::Text& sCatalog,
                                           const platform::Text& sTable);

/// The same of rows that are here.
std::optional<platform::ColumnIndex> TimeColumnOf(const platform::Recordset& rs);

}  // namespace orvane::controls
