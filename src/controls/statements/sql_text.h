// The SQL text that a table's grid sends, composed from what its query chooses.
// The composition is described in docs/table-query.md.
#pragma once

#include <vector>

#include "platform/grids/table_query.h"

namespace orvane::controls {

/// What a SELECT over one table is made of.
struct TableSelection {
  const platform::Text& sCatalog;
  const platform::Text& sTable;
  const std::vector<platform::Text>& columns;
  const platform::Text& sFilterCondition;
  const std::vector<platform::SortCriterion>& sort;  ///< the first one counts most
};

/// The table with its catalog, quoted.
platform::Text TableInSql(const platform::Text& sCatalog, const platform::Text& sTable);

/// What both conditions say at once, each in brackets and on lines of its own; where one of them is
/// blank, the other.
platform::Text BothConditions(const platform::Text& sFirst, const platform::Text& sSecond);

/// What is left of BothConditions without its second one; all of what is no such text.
platform::Text WithoutCondition(const platform::Text& sBoth, const platform::Text& sSecond);

/// The rows of a statement that meet the condition, which may be empty, in the order: what the
/// statement says is put into brackets as it is written, without the semicolon at its end.
platform::Text ComposeWithin(const platform::Text& sStatement, const platform::Text& sCondition,
                             const std::vector<platform::SortCriterion>& sort = {});

/// How many rows of the table, named as SQL has it, meet the filter, which may be blank.
platform::Text ComposeCount(const platform::Text& sTable, const platform::Text& sFilterCondition);

/// Inserts a row into the table, named as SQL has it, with a "?" for each of the columns.
platform::Text ComposeInsert(const platform::Text& sTable,
                             const std::vector<platform::Text>& columns);

/// One statement, a clause a line. The filter stands as it is written, alone in its lines.
platform::Text ComposeSelect(const TableSelection& selection);

}  // namespace orvane::controls
