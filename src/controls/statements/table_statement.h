// The statement that a table's grid sends: what the table's query selects, with what only the grid
// knows. The query itself stays as it is. Composed as docs/table-query.md tells; user-interface
// thread.
#pragma once

#include <optional>
#include <vector>

#include "controls/statements/time_range.h"
#include "platform/grids/table_query.h"

namespace orvane::controls {

/// What a grid adds to a table's query while it shows it.
struct Viewing {
  /// The rows come newest first unless the query has an order of its own; none where no time column
  /// is known.
  std::optional<platform::Text> timeColumn;
  /// Takes the place of what the query tells as its time filter, and joins all else. Without a time
  /// column it is none.
  std::optional<TimeRange> range;
  /// The order that was asked for in the grid, the first column counting most; takes the place of
  /// any other.
  std::vector<platform::SortCriterion> order = {};
  /// The time column may hold null, which the server takes for newer than all times: newest first
  /// then has it behind them, as what has no time is not what is looked for.
  bool bNullIsNewest = false;
};

/// The query's filter with the range in it.
platform::Text FilterWithin(const platform::TableQuery& query, const Viewing& viewing);
platform::Text StatementOf(platform::TableQuery& query, const Viewing& viewing);
/// The statement of a named query with the range and the order around it. Its text is its author's:
/// nothing is put into it, and without either it is sent as it stands.
platform::Text StatementWithin(const platform::Text& sStatement, const Viewing& viewing);

}  // namespace orvane::controls
