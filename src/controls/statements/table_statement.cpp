#include "controls/statements/table_statement.h"

#include <vector>

#include "controls/statements/sql_text.h"

namespace orvane::controls {

using platform::Text;

namespace {

/// Whether a range of time leaves null out.
bool HasRange(const platform::TableQuery& query, const Viewing& viewing) {
  const Text& sColumn = *viewing.timeColumn;
  return (viewing.range && !ConditionOf(*viewing.range, sColumn).empty()) ||
         RangeIn(query.TimeFilter(), sColumn) || RangeIn(query.FilterCondition(), sColumn);
}

}  // namespace

Text FilterWithin(const platform::TableQuery& query, const Viewing& viewing) {
  Text sOwn = query.FilterCondition();
  if (!viewing.timeColumn || !viewing.range) return sOwn;
  const Text sTimeFilter = query.TimeFilter();
  // A range on another column says something else.
  if (RangeIn(sTimeFilter, *viewing.timeColumn)) sOwn = WithoutCondition(sOwn, sTimeFilter);
  return BothConditions(sOwn, ConditionOf(*viewing.range, *viewing.timeColumn));
}

Text StatementWithin(const Text& sStatement, const Viewing& viewing) {
  const bool bRange = viewing.timeColumn && viewing.range;
  const Text sRange = bRange ? ConditionOf(*viewing.range, *viewing.timeColumn) : Text();
  if (sRange.empty() && viewing.order.empty()) return sStatement;
  return ComposeWithin(sStatement, sRange, viewing.order);
}

Text StatementOf(platform::TableQuery& query, const Viewing& viewing) {
  std::vector<Text> columns;
  for (platform::Long l = 1; l <= query.Columns().Count(); ++l) {
    columns.push_back(query.Columns().Item(l));
  }
  std::vector<platform::SortCriterion> sort = viewing.order;
  if (const auto own = query.SortCriterion(); sort.empty() && own) sort.push_back(*own);
  const bool bNewestFirst = sort.empty() && viewing.timeColumn;
  if (bNewestFirst) sort.push_back({*viewing.timeColumn, false});
  Text sSql =
      ComposeSelect({query.Catalog(), query.Table(), columns, FilterWithin(query, viewing), sort});
  // Only where it is needed: no index stands in that order unless it was made so.
  if (bNewestFirst && viewing.bNullIsNewest && !HasRange(query, viewing)) sSql += " NULLS LAST";
  return sSql;
}

}  // namespace orvane::controls
