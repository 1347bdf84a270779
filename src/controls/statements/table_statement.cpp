#include "controls/statements/table_statement.h"

#include <vector>

#include "controls/statements/sql_text.h"

namespace orvane::controls {

using platform::Text;

Text FilterWithin(const Text& sFilter, const Viewing& viewing) {
  if (!viewing.timeColumn || !viewing.range) return sFilter;
  const Text sRange = ConditionOf(*viewing.range, *viewing.timeColumn);
  if (RangeIn(sFilter, *viewing.timeColumn)) return sRange;
  return BothConditions(sFilter, sRange);
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
  if (sort.empty() && viewing.timeColumn) sort.push_back({*viewing.timeColumn, false});
  return ComposeSelect({query.Catalog(), query.Table(), columns,
                        FilterWithin(query.FilterCondition(), viewing), sort});
}

}  // namespace orvane::controls
