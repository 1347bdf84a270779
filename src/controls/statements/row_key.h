// Which columns of a table identify one row of it: its primary key, or a unique key whose columns
// are never null; and which ones a new row cannot do without. Asked for by whoever lets rows be
// edited; user-interface thread.
#pragma once

#include <optional>
#include <set>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"

namespace orvane::controls {

struct RowKey {
  std::vector<platform::Text> columns;  ///< in the key's order; empty when there is none
  std::set<platform::Text> computed{};  ///< columns that take no value, as the table computes them
  platform::Text sWhyNot;               ///< then one sentence
  bool bNoTable = false;                ///< it is a view, or kept by the historian itself
};

/// True when the current row of the columns' schema rowset is of a column that takes no value. A
/// server that does not tell takes any.
bool IsComputed(const platform::RecordsetPtr& columns);
/// Its flags (platform::column_flags); none where the server tells none.
std::optional<platform::Long> FlagsOfColumn(const platform::RecordsetPtr& columns);

/// Asks the server by its schema rowsets, and fails as that does.
RowKey RowKeyOf(platform::Connection& cn, const platform::Text& sCatalog,
                const platform::Text& sTable);

/// The columns of the table that a new row must name a value for: they are never null, and the
/// server has none for them. Asks and fails likewise.
std::vector<platform::Text> NeededColumns(platform::Connection& cn, const platform::Text& sCatalog,
                                          const platform::Text& sTable);

}  // namespace orvane::controls
