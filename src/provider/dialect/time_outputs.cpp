// What sources and queries put out; where their names are found is in time_names.cpp.
#include <algorithm>

#include "platform/failure.h"
#include "provider/dialect/time_analysis.h"
#include "provider/dialect/time_functions.h"

namespace orvane::provider::dialect {

using platform::Text;

namespace {

// Of a column by its type alone; kNull for a type that tells nothing here.
Kinds KindsOfContent(Content content) {
  if (content == Content::Time) return kinds::kTime;
  if (content == Content::Day) return kinds::kDay;
  return content == Content::Clock ? kinds::kClock : kinds::kNull;
}

// What was computed as its column keeps it.
Kinds KeptIn(const KnownColumn& column, Kinds computed, const Text& sShape) {
  if (kinds::IsOnly(computed, kinds::kDaysAndClocks) ||
      !kinds::Has(computed, kinds::kDates | kinds::kCounts) || column.bAsGiven) {
    return computed;
  }
  if (column.bText) return kinds::Written(computed);
  // A column of numbers makes one of a text that looks like one.
  const bool bText = kinds::Has(computed, kinds::kCounts) || LooksLikeNoNumber(sShape);
  return bText ? computed : kinds::kAnyValue;
}

// To the engine no column of a query is called like a truth value: such a word is a number.
Text NameAt(std::size_t nPlace, Text sName) {
  const bool bTruth = SameName(sName, "true") || SameName(sName, "false");
  return bTruth ? "column" + std::to_string(nPlace + 1) : std::move(sName);
}

}  // namespace

const OutputColumns& TimeAnalysis::ColumnsOf(const Source& source) {
  if (source.query != nullptr) return OutputOf(*source.query);
  if (source.bFunction) return ColumnsOfFunction(source);
  if (const auto* const named = m_place.names.FindNamedQuery(source)) {
    return ColumnsOfNamed(*named);
  }
  const auto* const found = m_place.names.TableOf(source);
  return found != nullptr ? ColumnsOfTable(*found) : ColumnsOfNew();
}

const OutputColumns& TimeAnalysis::ColumnsOfNamed(const NamedQuery& named) {
  static const OutputColumns kNone;
  if (named.query == nullptr) return kNone;
  const Output& output = ReadOutput(*named.query);
  if (named.columns.empty()) return output.columns;
  if (m_namedDone.contains(&named)) return m_named[&named];
  OutputColumns columns;
  for (std::size_t i = 0; i < output.columns.size(); ++i) {
    OutputColumn column = output.columns[i];
    if (i < named.columns.size()) column.sName = NameAt(i, named.columns[i]);
    columns.Add(std::move(column));
  }
  // While it reads itself it is told anew each time.
  if (output.bDone) m_namedDone.insert(&named);
  return m_named[&named] = std::move(columns);
}

const OutputColumns& TimeAnalysis::ColumnsOfTable(const FoundTable& found) {
  const auto [known, bNew] = m_tables.try_emplace(&found);
  if (!bNew) return known->second;
  OutputColumns columns;
  const bool bTold = Typed() != nullptr;  // by the types of its columns alone
  const ViewKinds::View* const view =
      found.table.bView && !bTold ? &m_place.views.Of(found) : nullptr;
  for (std::size_t i = 0; i < found.table.columns.size(); ++i) {
    const KnownColumn& column = found.table.columns[i];
    const Kinds typed = KindsOfContent(column.content);
    Kinds kinds = column.bText ? kinds::kAnyText : kinds::kAnyValue;
    Text sShape;
    if (typed != kinds::kNull) kinds = typed;
    if (column.bGenerated && !bTold) {
      // By what it is computed may have been written elsewhere.
      const auto& computed = m_place.views.Computed(found);
      const auto told = computed.find(UpperCase(column.sName));
      if (told == computed.end()) {
        kinds = kinds::kUnknown;
      } else {
        const bool bDay = kinds::Has(typed, kinds::kDaysAndClocks);
        const Kinds kept = KeptIn(column, told->second.kinds, told->second.sShape);
        if (bDay && (kept == kinds::kAnyValue || kinds::IsOnly(kept, kinds::kOnlyTexts))) {
          kinds = typed | kinds::kAnyValue;
        } else if (kept != kinds::kAnyValue) {
          kinds = kept;
          if (kinds::Has(kept, kinds::kDates)) sShape = told->second.sShape;
        }
      }
    }
    if (view != nullptr) {
      kinds = i < view->kinds.size() ? view->kinds[i] : kinds::kUnknown;
      if (i < view->shapes.size()) sShape = view->shapes[i];
    }
    columns.Add({column.sName, kinds, 0, false, column.bWithoutZone, std::move(sShape)});
  }
  return known->second = std::move(columns);
}

const OutputColumns& TimeAnalysis::ColumnsOfFunction(const Source& source) {
  const auto [known, bNew] = m_functions.try_emplace(&source);
  if (!bNew) return known->second;
  Kinds of = kinds::kNull;
  for (const auto* const argument : source.arguments) of |= KindsOf(*argument);
  OutputColumns columns;
  // A star stands for those that are not hidden.
  const auto add = [&](std::initializer_list<const char*> names, Kinds kinds, bool bHidden) {
    for (const char* const sName : names) columns.Add({sName, kinds, 0, bHidden});
  };
  if (SameName(At(source.table.parts.back()).sText, "generate_series")) {
    constexpr Kinds kOf = kinds::kCounted | kinds::kDaysAndClocks;
    Kinds kinds = kinds::Has(of, kOf) ? kinds::Counted(of) : kinds::kNumber;
    if (kinds::Has(of, kinds::kFromTimes)) kinds = kinds::kNumberOfTime;
    add({"value"}, kinds, false);
    add({"start", "stop", "step"}, kinds, true);
  } else {
    constexpr Kinds kMade = kinds::kWrittenTime | kinds::kOfDay;
    Kinds kinds = kinds::kAnyValue | (kinds::Written(of) & kMade);
    if (kinds::Has(of, kinds::kFromTimes | kinds::kCountOfTime)) kinds = kinds::kTextOfTime;
    add({"key", "value", "type", "atom", "id", "parent", "fullkey", "path"}, kinds, false);
    add({"json", "root"}, kinds, true);
  }
  return known->second = std::move(columns);
}

// Of the table that the statement makes.
const OutputColumns& TimeAnalysis::ColumnsOfNew() {
  if (!m_new) {
    m_new.emplace();
    for (const auto& column : m_tree.columns) {
      const Kinds typed = KindsOfType(column.type);
      m_new->Add({column.sName, typed != kinds::kNull ? typed : kinds::kAnyValue, 0});
    }
  }
  return *m_new;
}

const OutputColumns& TimeAnalysis::OutputOf(const Query& query) {
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
    OutputColumns columns = ReadCore(*core);
    if (core == query.cores.front()) {
      output.columns = columns;
    } else {
      for (std::size_t i = 0; i < output.columns.size() && i < columns.size(); ++i) {
        output.columns.Join(i, columns[i]);
      }
    }
    output.cores.push_back(std::move(columns));
  }
}

// Whose name a column has that was given none: to the engine a plus makes another column of it.
const Expr* TimeAnalysis::NamedBy(const Expr* expr) {
  while (expr->kind == ExprKind::Bracket || expr->kind == ExprKind::Collate) {
    expr = expr->children[0];
  }
  return expr;
}

OutputColumns TimeAnalysis::ReadCore(const Scope& core) {
  OutputColumns columns;
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
    column.bWithoutZone = IsWithoutZone(*item.expr);
    column.sShape = ShapeOf(*item.expr);
    const Expr& named = *NamedBy(item.expr);
    if (item.sAlias.empty() && named.kind == ExprKind::Name) {
      column.sName = At(named.chain.parts.back()).sText;
      const Text sReal = ColumnName(named.chain, named.scope);
      if (!sReal.empty()) column.sName = sReal;
    } else if (item.sAlias.empty()) {
      column.sName = m_place.edits.TextOf(item.range);
    }
    Append(columns, std::move(column), item.range.begin);
  }
  return columns;
}

void TimeAnalysis::Append(OutputColumns& to, OutputColumn column, std::size_t token) {
  if (to.size() >= kMostColumns || ++m_nColumns > kMostColumnsInAll) {
    Fail(token, "There are too many columns", "choose at most 2,000 by their names");
  }
  Step();
  column.sName = NameAt(to.size(), std::move(column.sName));
  to.Add(std::move(column));
}

void TimeAnalysis::AppendStar(const Scope& core, const Item& item, std::size_t itemNumber,
                              OutputColumns& to) {
  const bool bAll = item.star.parts.empty();
  for (std::size_t i = 0; i < core.sources.size(); ++i) {
    const Source& source = *core.sources[i];
    if (!bAll && !m_place.names.IsQualifier(source, item.star, item.star.parts.size())) continue;
    for (const auto& column : ColumnsOf(source)) {
      Step();
      if (column.bHidden) continue;
      // A column by which tables are joined comes once.
      if (bAll && IsShared(core, i, column.sName)) continue;
      OutputColumn shown = column;
      shown.item = itemNumber;
      Append(to, std::move(shown), item.range.begin);
    }
  }
}

// True when the source was joined by that column to one before it.
bool TimeAnalysis::IsShared(const Scope& core, std::size_t place, const Text& sColumn) {
  const Source& source = *core.sources[place];
  if (source.bNatural && HasColumn(core, source.firstBeside, place, sColumn)) return true;
  return std::ranges::any_of(source.usedNames, [&](const UsedName& used) {
    Step();
    return SameName(At(used.token).sText, sColumn) &&
           HasColumn(core, used.first, used.behind, sColumn) &&
           !HasColumn(core, used.behind, place, sColumn);
  });
}

// Of the tables from begin up to end any.
bool TimeAnalysis::HasColumn(const Scope& scope, std::size_t begin, std::size_t end,
                             const Text& sColumn) {
  for (std::size_t i = begin; i < end; ++i) {
    Step();
    if (ColumnsOf(*scope.sources[i]).Find(sColumn)) return true;
  }
  return false;
}

// Where SELECTs are joined, all of a column are times or none is: texts become times. Numbers may
// stand beside times.
void TimeAnalysis::JoinCores(const Query& query, Output& output) {
  for (std::size_t i = 0; i < output.columns.size(); ++i) {
    const Kinds kinds = output.columns[i].kinds;
    const bool bDays = kinds::MixesDays(kinds) && !kinds::Has(kinds, kinds::kTimes);
    if (!kinds::Mixes(kinds) && !kinds::MayMix(kinds) && !bDays) continue;
    if (IsLeft(kinds)) continue;
    const bool bRows = !query.cores.front()->rows.empty() && query.cores.front()->rows.size() > 1;
    const bool bJoined = query.cores.size() > 1 || bRows;
    const bool bDistinct = std::any_of(query.cores.begin(), query.cores.end(),
                                       [](const auto* core) { return core->bDistinct; });
    const bool bCompares = query.bCompares || bDistinct;
    if (bDays) {
      // A server that knows types has one for each column.
      if (bCompares || (bJoined && Typed() != nullptr)) ConvertOutput(query, i, MeantBy(kinds));
    } else if (!kinds::Mixes(kinds)) {
      if (bCompares) GuardOutput(query, i, kOnlyNumber, kinds::kOnlyNumbers);
    } else if (kinds::Has(kinds, kinds::kTimes) && (bJoined || bDistinct)) {
      ConvertOutput(query, i, Meant::Time);
    } else if (bCompares) {
      FailMixed(query.range.begin);
    }
  }
}

// What the query saw of itself is what it puts out: what it compares would be something else.
void TimeAnalysis::CheckReadingItself(const Query& query, const Output& output) const {
  for (std::size_t i = 0; i < output.columns.size(); ++i) {
    const Kinds told = i < output.handedOut.size() ? output.handedOut[i] : kinds::kNull;
    Kinds news = kinds::kNull;
    for (std::size_t n = 0; n < output.cores.size(); ++n) {
      if (i >= output.cores[n].size()) continue;
      const OutputColumn& column = output.cores[n][i];
      const Scope& core = *query.cores[n];
      const Expr* const expr =
          column.item < core.items.size() ? core.items[column.item].expr : nullptr;
      // What certainly is a date goes on with dates.
      const bool bDay = kinds::Has(told, kinds::kDaysAndClocks) && expr != nullptr &&
                        IsSurely(*expr, MeantBy(told));
      if (!bDay) news |= column.kinds & static_cast<Kinds>(~told);
    }
    // A time goes on as a time that is moved on.
    if (told == kinds::kTime && !TimeAsDouble()) news &= static_cast<Kinds>(~kinds::kShifted);
    if (news != kinds::kNull) CheckNews(query, told | news);
  }
}

// In what is stored dates are compared as they stand, and a server that knows types has one for
// each column.
void TimeAnalysis::CheckNews(const Query& query, Kinds all) const {
  Text sAdvice;
  if (kinds::Has(all, kinds::kFromTimes)) {
    sAdvice = "begin with a time, as in SELECT CAST('t' AS TIMESTAMP)";
  } else if (m_place.bStored) {
    return;
  } else if (kinds::Has(all, kinds::kWrittenTime | kinds::kCountOfTime)) {
    sAdvice = "begin with what the same function makes of a time";
  } else if (Typed() != nullptr || !kinds::Has(all, kinds::kMadeOfDays)) {
    return;
  } else if (kinds::Has(all, kinds::kClock)) {
    sAdvice = "begin with a time of day and go on with what time() gives";
  } else {
    sAdvice = "begin with a date and go on with what date() gives";
  }
  Fail(query.range.begin, "A query that reads itself begins with other values than it goes on",
       sAdvice);
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
               found != nullptr && found->table.bView && Typed() == nullptr) {
      const auto& view = m_place.views.Of(*found);
      if (!view.sFailure.empty()) {
        Fail(source->table.range.begin,
             "The view \"" + found->table.sName + "\" compares times with something else",
             "make another one without: " + view.sFailure);
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
