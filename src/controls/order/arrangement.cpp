#include "controls/order/arrangement.h"

#include <algorithm>

namespace orvane::controls {

bool TakesServer(const std::vector<SortColumn>& sort, const platform::Recordset& rs) {
  return std::ranges::any_of(sort, [&](const SortColumn& by) {
    return by.column < rs.FieldCount() &&
           rs.FieldAt(by.column).TextOrder() == platform::TextOrder::Source;
  });
}

std::vector<SortColumn> SortedBy(const std::vector<SortColumn>& sort, SortColumn by, bool bAdd) {
  if (!bAdd) return {by};
  std::vector<SortColumn> columns = sort;
  const auto known = std::ranges::find(columns, by.column, &SortColumn::column);
  if (known != columns.end()) {
    known->bAscending = by.bAscending;
  } else {
    columns.push_back(by);
  }
  return columns;
}

std::vector<SortColumn> SortedByArrow(const std::vector<SortColumn>& sort,
                                      platform::ColumnIndex column, bool bAdd) {
  const auto known = std::ranges::find(sort, column, &SortColumn::column);
  if (known == sort.end()) return SortedBy(sort, {column, true}, bAdd);
  if (known->bAscending) return SortedBy(sort, {column, false}, bAdd);
  if (!bAdd) return {};
  std::vector<SortColumn> columns = sort;
  std::erase_if(columns, [&](const SortColumn& by) { return by.column == column; });
  return columns;
}

}  // namespace orvane::controls
