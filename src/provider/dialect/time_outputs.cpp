// What sources and queries put out, and where names are found.
#include <algorithm>

#include "platform/failure.h"
#include "provider/dialect/statement_depth.h"
#include "provider/dialect/time_analysis.h"

namespace orvane::provider::dialect {

using platform::Text;

namespace {

// What a name may mean that nothing can be said about.
constexpr Kinds kUnknown = kinds::kTime | kinds::kAny | kinds::kOther;

}  // namespace

const ColumnList& TimeAnalysis::ColumnsOf(const Source& source) {
  if (source.query != nullptr) return OutputOf(*source.query);
  if (source.bFunction) return ColumnsOfFunction(source);
  if (const auto* const named = m_place.names.FindNamedQuery(source)) {
    return ColumnsOfNamed(*named);
  }
  const auto* const found = m_place.names.TableOf(source);
  return found != nullptr ? ColumnsOfTable(*found) : ColumnsOfNew();
}

const ColumnList& TimeAnalysis::ColumnsOfNamed(const NamedQuery& named) {
  static const ColumnList kNone;
  if (named.query == nullptr) return kNone;
  const Output& output = ReadOutput(*named.query);
  if (named.columns.empty()) return output.columns;
  if (m_namedDone.contains(&named)) return m_named[&named];
  ColumnList columns;
  for (std::size_t i = 0; i < output.columns.size(); ++i) {
    OutputColumn column = output.columns[i];
    if (i < named.columns.size()) column.sName = named.columns[i];
    columns.Add(std::move(column));
  }
  // While it reads itself it is told anew each time.
  if (output.bDone) m_namedDone.insert(&named);
  return m_named[&named] = std::move(columns);
}

const ColumnList& TimeAnalysis::ColumnsOfTable(const FoundTable& found) {
  const auto [known, bNew] = m_tables.try_emplace(&found);
  if (!bNew) return known->second;
  ColumnList columns;
  const ViewKinds::View* view = nullptr;
  if (!found.table.sViewText.empty()) view = &m_place.views.Of(found);
  for (std::size_t i = 0; i < found.table.columns.size(); ++i) {
    const KnownColumn& column = found.table.columns[i];
    Kinds kinds = column.bText ? kinds::kAnyText : kinds::kAny;
    if (column.content == Content::Time) {
      // By what it is computed was written elsewhere, and may be no time.
      kinds = column.bGenerated ? kUnknown : kinds::kTime;
    }
    if (view != nullptr) kinds = i < view->kinds.size() ? view->kinds[i] : kUnknown;
    columns.Add({column.sName, kinds, 0});
  }
  return known->second = std::move(columns);
}

const ColumnList& TimeAnalysis::ColumnsOfFunction(const Source& source) {
  const auto [known, bNew] = m_functions.try_emplace(&source);
  if (!bNew) return known->second;
  Kinds kinds = kinds::kAny;
  for (const auto* const argument : source.arguments) {
    if (kinds::Has(KindsOf(*argument), kinds::kFromTimes)) kinds = kinds::kTextOfTime;
  }
  ColumnList columns;
  for (const char* const sName : {"key", "value", "type", "atom", "id", "parent", "fullkey", "path",
                                  "json", "root", "start", "stop", "step"}) {
    columns.Add({sName, kinds, 0});
  }
  return known->second = std::move(columns);
}

// Of the table that the statement makes.
const ColumnList& TimeAnalysis::ColumnsOfNew() {
  if (!m_new) {
    m_new.emplace();
    for (const auto& column : m_tree.columns) {
      m_new->Add({column.sName, column.bTime ? kinds::kTime : kinds::kAny, 0});
    }
  }
  return *m_new;
}

const ColumnList& TimeAnalysis::OutputOf(const Query& query) {
  return ReadOutput(query).columns;
}

const TimeAnalysis::Output& TimeAnalysis::ReadOutput(const Query& query) {
  const auto [known, bNew] = m_outputs.try_emplace(&query);
  Output& output = known->second;
  if (!bNew) {
    if (!output.bDone) {
      // It reads itself: what its SELECTs before put out.
      output.bReadsItself = true;
      output.handedOut.clear();
      for (const auto& column : output.columns) output.handedOut.push_back(column.kinds);
    }
    return output;
  }
  const Deeper deeper(*this, query.range.begin);
  ReadCores(query, output);
  JoinCores(query, output);
  if (output.bReadsItself) CheckReadingItself(query, output);
  output.bDone = true;
  return output;
}

void TimeAnalysis::ReadCores(const Query& query, Output& output) {
  for (const auto* const core : query.cores) {
    ColumnList columns = ReadCore(*core);
    if (core == query.cores.front()) {
      output.columns = columns;
    } else {
      for (std::size_t i = 0; i < output.columns.size() && i < columns.size(); ++i) {
        output.columns.AddKinds(i, columns[i].kinds);
      }
    }
    output.cores.push_back(std::move(columns));
  }
}

ColumnList TimeAnalysis::ReadCore(const Scope& core) {
  ColumnList columns;
  // Before what reads them, so that going deep into an expression does not go deeper into them.
  for (const auto* const source : core.sources) ColumnsOf(*source);
  for (const auto& row : core.rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      const Kinds kinds = KindsOf(*row[i]);
      if (i < columns.size()) {
        columns.AddKinds(i, kinds);
      } else if (&row == &core.rows.front()) {
        Append(columns, {"column" + std::to_string(i + 1), kinds, i}, row[i]->range.begin);
      }
    }
  }
  for (std::size_t i = 0; i < core.items.size(); ++i) {
    const Item& item = core.items[i];
    if (item.expr == nullptr) {
      AppendStar(core, item, i, columns);
      continue;
    }
    OutputColumn column{item.sAlias, KindsOf(*item.expr), i};
    const Expr& inside = *Inside(item.expr);
    const bool bPlus = item.expr->kind == ExprKind::Sign;
    if (item.sAlias.empty() && inside.kind == ExprKind::Name && !bPlus) {
      column.sName = At(inside.chain.parts.back()).sText;
      const Text sReal = ColumnName(inside.chain, inside.scope);
      if (!sReal.empty()) column.sName = sReal;
    } else if (item.sAlias.empty()) {
      column.sName = m_place.edits.TextOf(item.range);
    }
    Append(columns, std::move(column), item.range.begin);
  }
  return columns;
}

void TimeAnalysis::Append(ColumnList& to, OutputColumn column, std::size_t token) {
  if (to.size() >= kMostColumns || ++m_nColumns > kMostColumnsInAll) {
    Fail(token, "There are too many columns", "choose at most 2,000 by their names");
  }
  Step();
  to.Add(std::move(column));
}

void TimeAnalysis::AppendStar(const Scope& core, const Item& item, std::size_t itemNumber,
                              ColumnList& to) {
  const bool bAll = item.star.parts.empty();
  for (std::size_t i = 0; i < core.sources.size(); ++i) {
    const Source& source = *core.sources[i];
    if (!bAll && !m_place.names.IsQualifier(source, item.star, item.star.parts.size())) continue;
    for (const auto& column : ColumnsOf(source)) {
      Step();
      // A column by which tables are joined comes once.
      if (bAll && IsShared(core, i, column.sName)) continue;
      Append(to, {column.sName, column.kinds, itemNumber}, item.range.begin);
    }
  }
}

// True when the source was joined by that column to one before it.
bool TimeAnalysis::IsShared(const Scope& core, std::size_t place, const Text& sColumn) {
  const Source& source = *core.sources[place];
  if (!source.bNatural && source.usedNames.empty()) return false;
  const bool bUsed = source.bNatural || std::any_of(source.usedNames.begin(),
                                                    source.usedNames.end(), [&](std::size_t token) {
                                                      Step();
                                                      return SameName(At(token).sText, sColumn);
                                                    });
  if (!bUsed) return false;
  for (std::size_t before = 0; before < place; ++before) {
    Step();
    if (ColumnsOf(*core.sources[before]).Find(sColumn)) return true;
  }
  return false;
}

// Where SELECTs are joined, all of a column are times or none is: texts become times. Numbers may
// stand beside times.
void TimeAnalysis::JoinCores(const Query& query, Output& output) {
  for (std::size_t i = 0; i < output.columns.size(); ++i) {
    const Kinds kinds = output.columns[i].kinds;
    if (!kinds::Mixes(kinds)) continue;
    const bool bRows = !query.cores.front()->rows.empty() && query.cores.front()->rows.size() > 1;
    const bool bJoined = query.cores.size() > 1 || bRows;
    const bool bDistinct = std::any_of(query.cores.begin(), query.cores.end(),
                                       [](const auto* core) { return core->bDistinct; });
    if (kinds::Has(kinds, kinds::kTimes) && (bJoined || bDistinct)) {
      ConvertOutput(query, i);
    } else if (query.bCompares || bDistinct) {
      FailMixed(query.range.begin);
    }
  }
}

// What the query saw of itself is what it puts out.
void TimeAnalysis::CheckReadingItself(const Query& query, const Output& output) const {
  for (std::size_t i = 0; i < output.columns.size(); ++i) {
    const Kinds told = i < output.handedOut.size() ? output.handedOut[i] : kinds::kNull;
    auto news = static_cast<Kinds>(output.columns[i].kinds ^ told);
    // A time goes on as a time that is moved on.
    if (told == kinds::kTime && !TimeAsDouble()) {
      news &= static_cast<Kinds>(~kinds::kShifted);
    }
    if (news != 0 && kinds::Has(output.columns[i].kinds | told, kinds::kFromTimes)) {
      Fail(query.range.begin, "A query that reads itself begins with other values than it goes on",
           "begin with a time, as in SELECT CAST('t' AS TIMESTAMP)");
    }
  }
}

// --- names ---

std::optional<std::size_t> TimeAnalysis::FindPlace(const ColumnList& columns,
                                                   const Text& sName) const {
  auto place = columns.Find(sName);
  if (!place && m_place.names.Prefixes()) place = columns.Find(WithoutPrefix(sName));
  return place;
}

TimeAnalysis::Found TimeAnalysis::FindIn(const Chain& chain, const Scope& scope) {
  const Text& sColumn = Part(chain, chain.parts.size() - 1);
  const std::size_t nQualifiers = chain.parts.size() - 1;
  for (const auto* const source : scope.sources) {
    Step();
    // The row that an INSERT could not put in goes by a name of its own.
    const bool bRefused =
        nQualifiers == 1 && source->bTarget && SameName(Part(chain, 0), "excluded");
    if (nQualifiers > 0 && !bRefused && !m_place.names.IsQualifier(*source, chain, nQualifiers)) {
      continue;
    }
    const ColumnList& columns = ColumnsOf(*source);
    if (const auto place = FindPlace(columns, sColumn)) return {&columns[*place], nullptr};
  }
  if (nQualifiers > 0) return {};
  // What the items put out has no name yet while they are worked out.
  const bool bInItems = !scope.items.empty() &&
                        chain.range.begin >= scope.items.front().range.begin &&
                        chain.range.begin < scope.items.back().range.end;
  if (bInItems) return {};
  for (const auto& item : scope.items) {
    if (item.expr != nullptr && !item.sAlias.empty() && SameName(item.sAlias, sColumn)) {
      return {nullptr, item.expr};
    }
  }
  return {};
}

TimeAnalysis::Found TimeAnalysis::Find(const Chain& chain, const Scope* scope) {
  for (; scope != nullptr && !scope->bClosed; scope = scope->parent) {
    const Found found = FindIn(chain, *scope);
    if (found.column != nullptr || found.alias != nullptr) return found;
  }
  return {};
}

Text TimeAnalysis::ColumnName(const Chain& chain, const Scope* scope) {
  const Found found = Find(chain, scope);
  return found.column != nullptr ? found.column->sName : Text();
}

// --- work ---

std::size_t TimeAnalysis::SelectsOf(const Query& query) {
  return CountSelects(query);
}

// A named query counts wherever it is read.
std::size_t TimeAnalysis::CountSelects(const Query& query) {
  const auto [known, bNew] = m_selects.try_emplace(&query, 1);
  if (!bNew) return known->second;
  const Deeper deeper(*this, query.range.begin);
  std::size_t nSelects = query.cores.size();
  for (const auto* const inner : query.inner) nSelects += CountSelects(*inner);
  for (const auto* const source : query.tables) {
    if (const auto* const named = m_place.names.FindNamedQuery(*source)) {
      if (named->query != nullptr) nSelects += CountSelects(*named->query);
    } else if (const auto* const found = m_place.names.TableOf(*source);
               found != nullptr && !found->table.sViewText.empty()) {
      const auto& view = m_place.views.Of(*found);
      if (!view.sFailure.empty()) {
        Fail(source->table.range.begin,
             "The view \"" + found->table.sName + "\" compares times with something else",
             "drop it and make it without: " + view.sFailure);
      }
      nSelects += view.nSelects;
    }
    if (nSelects > kMostSelects) {
      Fail(source->table.range.begin, "Named queries and views are read too many times",
           "read each of them less often");
    }
  }
  if (nSelects > kMostSelects) {
    Fail(query.range.begin, "There are too many queries in one another", "use fewer of them");
  }
  return m_selects[&query] = nSelects;
}

}  // namespace orvane::provider::dialect
