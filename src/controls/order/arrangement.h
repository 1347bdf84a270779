// How the rows of a grid are to stand: by which columns they are sorted, and which of them are
// seen. Kept by the view of the rows and with the state of looking at them; a plain value.
#pragma once

#include <vector>

#include "controls/order/row_filter.h"

namespace orvane::controls {

struct SortColumn {
  platform::ColumnIndex column = 0;
  bool bAscending = true;
  friend bool operator==(const SortColumn&, const SortColumn&) = default;
};

struct Arrangement {
  std::vector<SortColumn> sort;  ///< the first one counts most
  /// The rows came sorted from the server: only there are all of them, or what their order is.
  bool bSortedByServer = false;
  std::vector<ColumnFilter> filters;

  bool IsNone() const { return sort.empty() && filters.empty(); }
  /// Nothing is to be done here.
  bool NeedsNoWork() const { return filters.empty() && (sort.empty() || bSortedByServer); }
};

/// True where one of the columns has texts that only the server puts in its order.
bool TakesServer(const std::vector<SortColumn>& sort, const platform::Recordset& rs);

/// By what is sorted when somebody chooses a column: by it alone, or with bAdd by it after those
/// that are sorted by already.
std::vector<SortColumn> SortedBy(const std::vector<SortColumn>& sort, SortColumn by, bool bAdd);
/// The same for a press on a column's arrow: up, down, and as the rows came.
std::vector<SortColumn> SortedByArrow(const std::vector<SortColumn>& sort,
                                      platform::ColumnIndex column, bool bAdd);

}  // namespace orvane::controls
