#include "controls/statements/sql_text.h"

#include <string_view>

#include "platform/quoting.h"

namespace orvane::controls {

using platform::QuotedName;
using platform::Text;

namespace {

bool IsBlank(const Text& sText) {
  return sText.find_first_not_of(" \t\r\n") == Text::npos;
}

/// Behind the text, name or comment that begins at the place; behind one character of anything
/// else.
std::size_t Behind(const Text& sSql, std::size_t at) {
  const auto to = [&](std::string_view sEnd) {
    const std::size_t found = sSql.find(sEnd, at + 1);
    return found == Text::npos ? sSql.size() : found + sEnd.size();
  };
  if (sSql[at] == '\'' || sSql[at] == '"') return to({&sSql[at], 1});
  if (sSql.compare(at, 2, "--") == 0) return to("\n");
  if (sSql.compare(at, 2, "/*") == 0) {
    const std::size_t found = sSql.find("*/", at + 2);
    return found == Text::npos ? sSql.size() : found + 2;
  }
  return at + 1;
}

/// Without a semicolon that has nothing but blanks and comments behind it.
Text WithoutEnd(Text sSql) {
  std::size_t semicolon = Text::npos;
  for (std::size_t at = 0; at < sSql.size();) {
    const bool bComment = sSql.compare(at, 2, "--") == 0 || sSql.compare(at, 2, "/*") == 0;
    if (sSql[at] == ';') {
      semicolon = at;
    } else if (!bComment && !IsBlank(sSql.substr(at, 1))) {
      semicolon = Text::npos;
    }
    at = Behind(sSql, at);
  }
  if (semicolon != Text::npos) sSql.erase(semicolon, 1);
  return sSql;
}

/// A line of its own for the order, as a filter may end in a comment that runs to the end of its
/// line. A sort column that the server lost leaves a criterion without a name: the builder has no
/// entry for it. There is nothing to sort by then; an empty name would only be refused.
Text OrderOf(const std::vector<platform::SortCriterion>& sort) {
  Text sSort;
  for (const platform::SortCriterion& criterion : sort) {
    if (criterion.sColumn.empty()) continue;
    sSort += (sSort.empty() ? "" : ", ") + QuotedName(criterion.sColumn) +
             (criterion.bAscending ? " ASC" : " DESC");
  }
  return sSort.empty() ? sSort : "\nORDER BY " + sSort;
}

}  // namespace

Text ComposeWithin(const Text& sStatement, const Text& sCondition,
                   const std::vector<platform::SortCriterion>& sort) {
  // On lines of its own: it may end in a comment.
  Text sSql = "SELECT *\nFROM (\n" + WithoutEnd(sStatement) + "\n)";
  if (!sCondition.empty()) sSql += "\nWHERE " + sCondition;
  return sSql + OrderOf(sort);
}

Text TableInSql(const Text& sCatalog, const Text& sTable) {
  return (sCatalog.empty() ? Text() : QuotedName(sCatalog) + "..") + QuotedName(sTable);
}

Text BothConditions(const Text& sFirst, const Text& sSecond) {
  if (IsBlank(sFirst)) return sSecond;
  if (IsBlank(sSecond)) return sFirst;
  // The brackets keep an OR together; a comment at a condition's end must not swallow them.
  return "(\n" + sFirst + "\n) AND (\n" + sSecond + "\n)";
}

Text WithoutCondition(const Text& sBoth, const Text& sSecond) {
  if (sBoth == sSecond) return {};
  constexpr std::string_view kBegin = "(\n";
  const Text sEnd = "\n) AND (\n" + sSecond + "\n)";
  const bool bJoined = sBoth.size() > kBegin.size() + sEnd.size() && sBoth.starts_with(kBegin) &&
                       sBoth.ends_with(sEnd);
  return bJoined ? sBoth.substr(kBegin.size(), sBoth.size() - kBegin.size() - sEnd.size()) : sBoth;
}

Text ComposeCount(const Text& sTable, const Text& sFilterCondition) {
  const Text sSql = "SELECT count(*)\nFROM " + sTable;
  return IsBlank(sFilterCondition) ? sSql : sSql + "\nWHERE " + sFilterCondition;
}

Text ComposeInsert(const Text& sTable, const std::vector<Text>& columns) {
  Text sNames;
  Text sMarks;
  for (const Text& sColumn : columns) {
    sNames += (sNames.empty() ? "" : ", ") + QuotedName(sColumn);
    sMarks += sMarks.empty() ? "?" : ", ?";
  }
  return "INSERT INTO " + sTable + " (" + sNames + ") VALUES (" + sMarks + ")";
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
  return sSql + OrderOf(selection.sort);
}

}  // namespace orvane::controls
