#include "controls/sql_text.h"

#include "platform/quoting.h"

namespace orvane::controls {

using platform::QuotedName;
using platform::Text;

namespace {

bool IsBlank(const Text& sText) {
  return sText.find_first_not_of(" \t\r\n") == Text::npos;
}

}  // namespace

Text TableInSql(const Text& sCatalog, const Text& sTable) {
  return (sCatalog.empty() ? Text() : QuotedName(sCatalog) + "..") + QuotedName(sTable);
}

Text BothConditions(const Text& sFirst, const Text& sSecond) {
  if (IsBlank(sFirst)) return sSecond;
  if (IsBlank(sSecond)) return sFirst;
  // The brackets keep an OR together; a comment at a condition's end must not swallow them.
  return "(\n" + sFirst + "\n) AND (\n" + sSecond + "\n)";
}

Text ComposeSelect(const TableSelection& selection) {
  Text sSql = "SELECT ";
  if (selection.columns.empty()) {
    sSql += '*';
  } else {
    Text sSeparator;
    for (const Text& sColumn : selection.columns) {
      sSql += sSeparator + QuotedName(sColumn);
      sSeparator = ", ";
    }
  }

  sSql += "\nFROM " + TableInSql(selection.sCatalog, selection.sTable);

  if (!IsBlank(selection.sFilterCondition)) sSql += "\nWHERE " + selection.sFilterCondition;
  // A sort column that the server lost leaves a criterion without a name: the builder has no entry
  // for it. There is nothing to sort by then; an empty name would only be refused.
  Text sSort;
  for (const platform::SortCriterion& criterion : selection.sort) {
    if (criterion.sColumn.empty()) continue;
    sSort += (sSort.empty() ? "" : ", ") + QuotedName(criterion.sColumn) +
             (criterion.bAscending ? " ASC" : " DESC");
  }
  // On a line of its own: a filter may end in a comment that runs to the end of its line.
  if (!sSort.empty()) sSql += "\nORDER BY " + sSort;
  return sSql;
}

}  // namespace orvane::controls
