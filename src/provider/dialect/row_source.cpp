#include "provider/dialect/row_source.h"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>

namespace orvane::provider::dialect {

using platform::RowSource;
using platform::Text;

namespace {

// Functions of the values of one row. Any other one may make one row of all that there are.
constexpr std::array<std::string_view, 70> kOfOneRow = {
    "ABS",       "ACOS",         "ASIN",         "ATAN",        "ATAN2",     "CEIL",
    "CEILING",   "CHAR",         "COALESCE",     "CONCAT",      "CONCAT_WS", "COS",
    "DATE",      "DATETIME",     "DEGREES",      "EXP",         "FLOOR",     "FORMAT",
    "GLOB",      "HEX",          "IF",           "IFNULL",      "IIF",       "INSTR",
    "JSON",      "JSON_ARRAY",   "JSON_EXTRACT", "JSON_OBJECT", "JSON_TYPE", "JSON_VALID",
    "JULIANDAY", "LENGTH",       "LIKE",         "LIKELIHOOD",  "LIKELY",    "LN",
    "LOG",       "LOG10",        "LOG2",         "LOWER",       "LTRIM",     "MOD",
    "NULLIF",    "OCTET_LENGTH", "PI",           "POW",         "POWER",     "PRINTF",
    "QUOTE",     "RADIANS",      "RANDOM",       "REPLACE",     "ROUND",     "RTRIM",
    "SIGN",      "SIN",          "SQRT",         "STRFTIME",    "SUBSTR",    "SUBSTRING",
    "TAN",       "TIME",         "TRIM",         "TRUNC",       "TYPEOF",    "UNHEX",
    "UNICODE",   "UNIXEPOCH",    "UNLIKELY",     "UPPER"};

bool IsOfOneRow(const StatementTree& tree, const Expr& call) {
  const Text sName = UpperCase(tree.tokens[call.operation].sText);
  // Of one value these are the least and the greatest of all rows.
  if (sName == "MIN" || sName == "MAX") return call.children.size() > 1;
  return std::ranges::find(kOfOneRow, std::string_view(sName)) != kOfOneRow.end();
}

// From the beginning of the first to the end of the last.
template <class Parts, class RangeOfPart>
TokenRange Spanned(const Parts& parts, RangeOfPart rangeOf) {
  return parts.empty() ? TokenRange()
                       : TokenRange{rangeOf(parts.front()).begin, rangeOf(parts.back()).end};
}

// Also those that stand in a subquery: what they count may be the rows around it.
bool WorksOutOverRows(const StatementTree& tree, const Query& query) {
  const TokenRange items =
      Spanned(query.cores.front()->items, [](const Item& item) { return item.range; });
  const TokenRange sorts = Spanned(query.sorts, [](const Expr* sort) { return sort->range; });
  const auto isWithin = [](const Expr& expr, TokenRange range) {
    return expr.range.begin >= range.begin && expr.range.begin < range.end;
  };
  return std::ranges::any_of(tree.expressions, [&](const Expr& expr) {
    return expr.kind == ExprKind::Call && (isWithin(expr, items) || isWithin(expr, sorts)) &&
           !IsOfOneRow(tree, expr);
  });
}

// What makes something else than rows of a table; nothing where nothing does.
std::string_view WhyNone(const StatementTree& tree, const TableNames& names) {
  if (tree.bExplain) return "they tell how a statement would run.";
  if (tree.kind != StatementKind::Query || tree.mainQuery == nullptr) {
    return "they are what a change gave back; read them by a query.";
  }
  const Query& query = *tree.mainQuery;
  const Scope& core = *query.cores.front();
  if (query.cores.size() > 1) {
    return "the query puts the rows of several SELECTs together; read one table.";
  }
  if (core.parent != nullptr && !core.parent->namedQueries.empty()) {
    return "the query reads named queries (WITH); name the table itself behind FROM.";
  }
  if (core.sources.empty()) return "the query reads no table.";
  if (core.sources.size() > 1) {
    return "the query joins several tables; read one of them.";
  }
  const Source& source = *core.sources.front();
  if (source.query != nullptr) {
    return "the query reads a subquery; name the table itself behind FROM.";
  }
  if (names.TableOf(source) == nullptr) return "the query reads no table.";
  if (core.bDistinct) {
    return "the query shows equal rows once (DISTINCT); read the rows themselves.";
  }
  if (core.bGroups) {
    return "the query makes one row of several (GROUP BY); read the rows themselves.";
  }
  if (WorksOutOverRows(tree, query)) {
    return "the query works values out over several rows; read the rows themselves.";
  }
  return {};
}

}  // namespace

RowSource SourceOf(const StatementTree& tree, const TableNames& names, TimeAnalysis& times) {
  RowSource source;
  if (const std::string_view sWhyNone = WhyNone(tree, names); !sWhyNone.empty()) {
    source.sWhyNone = "These rows can only be looked at: " + Text(sWhyNone);
    return source;
  }
  const Scope& core = *tree.mainQuery->cores.front();
  const FoundTable& found = *names.TableOf(*core.sources.front());
  source.sCatalog = found.catalog.sName;
  source.sTable = found.table.sName;
  std::set<Text> seen;
  const auto add = [&](const Text& sName) {
    source.columns.push_back(seen.insert(sName).second ? sName : Text());
  };
  for (const auto& item : core.items) {
    if (item.expr == nullptr) {
      for (const auto& column : found.table.columns) add(column.sName);
    } else if (item.expr->kind == ExprKind::Name) {
      add(times.ColumnName(item.expr->chain, item.expr->scope));
    } else {
      add({});
    }
  }
  return source;
}

}  // namespace orvane::provider::dialect
