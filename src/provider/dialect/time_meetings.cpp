// What meets what: comparisons, joins, sorting, and values on their way into columns.
#include "platform/failure.h"
#include "platform/quoting.h"
#include "provider/dialect/time_analysis.h"
#include "provider/dialect/time_functions.h"

namespace orvane::provider::dialect {

using platform::Text;

namespace {

// What a column of times may get on its own: null, a number, or now as this system writes it.
bool IsSoundDefault(const Text& sDefault) {
  if (UpperCase(sDefault) == "NULL") return true;
  if (sDefault == "unixepoch() * 1000000" || sDefault == "(unixepoch() * 1000000)") return true;
  return !sDefault.empty() && sDefault.find_first_not_of("+-0123456789") == Text::npos;
}

}  // namespace

TimeAnalysis::TimeAnalysis(const Place& place)
    : m_place(place),
      m_tree(place.tree),
      m_kinds(place.tree.expressions.size()),
      m_working(place.tree.expressions.size()) {}

void TimeAnalysis::Fail(std::size_t token, const Text& sWhat, const Text& sAdvice) const {
  FailAt(m_place.sStatement, At(token).position, sWhat, sAdvice);
}

void TimeAnalysis::Run() {
  CountSelects(m_tree.whole);
  // What is changed first: values become times before anything else sees them.
  LookAtChange();
  LookAtDefinition();
  for (const auto& query : m_tree.queries) LookAtQuery(query);
  for (const auto& scope : m_tree.scopes) LookAtScope(scope);
}

void TimeAnalysis::LookAtScope(const Scope& scope) {
  for (const auto* const source : scope.sources) {
    for (const auto* const argument : source->arguments) KindsOf(*argument);
  }
  LookAtJoins(scope);
  for (const auto& item : scope.items) {
    if (item.expr != nullptr) KindsOf(*item.expr);
  }
  for (const auto* const condition : scope.conditions) KindsOf(*condition);
  for (const auto* const sort : scope.sorts) LookAtSort(*sort, nullptr);
}

// Columns by which tables are joined are compared without being written.
void TimeAnalysis::LookAtJoins(const Scope& scope) {
  for (std::size_t i = 1; i < scope.sources.size(); ++i) {
    const Source& source = *scope.sources[i];
    for (const UsedName& used : source.usedNames) {
      // Of a bracket of tables the first that has the column is meant.
      if (HasColumn(scope, used.behind, i, At(used.token).sText)) continue;
      LookAtJoin(scope, i, {used.first, used.behind}, At(used.token).sText, used.token);
    }
    if (!source.bNatural) continue;
    const std::size_t token =
        source.query != nullptr ? source.query->range.begin : source.table.range.begin;
    for (const auto& column : ColumnsOf(source)) {
      if (column.bHidden) continue;
      LookAtJoin(scope, i, {source.firstBeside, i}, column.sName, token);
    }
  }
}

void TimeAnalysis::LookAtJoin(const Scope& scope, std::size_t joined, TokenRange before,
                              const Text& sColumn, std::size_t token) {
  if (!HasColumn(scope, before.begin, before.end, sColumn)) return;
  Kinds all = kinds::kNull;
  const auto add = [&](const Source& source) {
    Step();
    const OutputColumns& columns = ColumnsOf(source);
    if (const auto place = columns.Find(sColumn)) all |= columns[*place].kinds;
  };
  for (std::size_t i = before.begin; i < before.end; ++i) add(*scope.sources[i]);
  add(*scope.sources[joined]);
  if (IsLeft(all)) return;
  if (kinds::MixesDays(all) && !kinds::Has(all, kinds::kTimes) && Typed() == nullptr) {
    Fail(token, "Tables are joined by a date and something else",
         "join them by ON and compare dates with dates");
  }
  const bool bSound =
      kinds::IsOnly(all, kinds::kTimes) ||
      (!kinds::Has(all, kinds::kFromTimes) &&
       (!kinds::Has(all, kinds::kCounts) || kinds::IsOnly(all, kinds::kOnlyNumbers)));
  if (bSound) return;
  Fail(token, "Tables are joined by a time and something else",
       "join them by ON and compare times with times");
}

void TimeAnalysis::LookAtQuery(const Query& query) {
  OutputOf(query);
  for (const auto* const sort : query.sorts) LookAtSort(*sort, &query);
  // GROUP BY 1 means a column as well.
  for (const auto* const core : query.cores) {
    for (const auto* const sort : core->sorts) CheckNumbered(*Inside(sort), query);
  }
}

// GROUP BY, ORDER BY and the like compare the values of one expression with one another. Behind
// joined SELECTs, and by its number or name, a column of what is put out is meant.
void TimeAnalysis::LookAtSort(const Expr& expr, const Query* query) {
  Kinds kinds = kinds::kNull;
  if (query != nullptr) {
    const OutputColumns& columns = OutputOf(*query);
    const Expr& inside = *Inside(&expr);
    CheckNumbered(inside, *query);
    if (inside.kind == ExprKind::Name && inside.chain.parts.size() == 1) {
      if (const auto place = columns.Find(Part(inside.chain, 0))) {
        kinds |= columns[*place].kinds;
        if (kinds::MayMix(columns[*place].kinds) && !IsLeft(kinds)) {
          GuardOutput(*query, *place, kOnlyNumber, kinds::kOnlyNumbers);
        }
      }
      // Behind joined SELECTs a column of any of them; what they put out has met already.
      if (query->cores.size() > 1) return;
    }
  }
  kinds |= KindsOf(expr);
  if (IsLeft(kinds)) return;
  if (kinds::MixesDays(kinds) && !kinds::Has(kinds, kinds::kTimes)) {
    Convert(expr, MeantBy(kinds));
  } else if (kinds::Mixes(kinds)) {
    Convert(expr);
  } else if (kinds::MayMix(kinds)) {
    GuardNumber({&expr, nullptr, nullptr, 0, expr.range.begin});
  }
}

// A number that stands alone means the column of that place.
void TimeAnalysis::CheckNumbered(const Expr& inside, const Query& query) {
  if (inside.kind != ExprKind::Number) return;
  const OutputColumns& columns = OutputOf(query);
  const Text& sNumber = At(inside.range.begin).sText;
  const std::size_t nPlace =
      sNumber.size() < 6 ? static_cast<std::size_t>(std::stoul("0" + sNumber)) : 0;
  if (nPlace == 0 || nPlace > columns.size()) return;
  const Kinds kinds = columns[nPlace - 1].kinds;
  if (IsLeft(kinds)) return;
  if (kinds::MixesDays(kinds) && !kinds::Has(kinds, kinds::kTimes) && Typed() == nullptr) {
    FailMixedDays(inside.range.begin);
  }
  if (kinds::Mixes(kinds)) FailMixed(inside.range.begin);
  if (kinds::MayMix(kinds)) {
    GuardOutput(query, nPlace - 1, kOnlyNumber, kinds::kOnlyNumbers);
  }
}

// --- changes ---

void TimeAnalysis::LookAtChange() {
  if (m_tree.kind != StatementKind::Change) return;
  if (m_tree.bInsert) LookAtInsert();
  const OutputColumns& columns = ColumnsOf(*m_tree.targetSource);
  for (const auto& assignment : m_tree.assignments) {
    const auto values = assignment.columns.size() > 1
                            ? OperandsOf(*assignment.value)
                            : std::vector<Operand>{{assignment.value, nullptr, nullptr, 0, 0}};
    for (const auto& value : values) KindsOf(value);
    const std::size_t token = assignment.value->range.begin;
    for (std::size_t i = 0; i < assignment.columns.size() && i < values.size(); ++i) {
      const auto place = FindPlace(columns, At(assignment.columns[i]).sText);
      if (place && columns[*place].bWithoutZone && IsGivenText(values[i])) continue;
      const Kinds stored = place ? columns[*place].kinds : kinds::kNull;
      const WithoutZone clocks(*this, place && columns[*place].bWithoutZone);
      if (stored == kinds::kTime) {
        Store(values[i]);
      } else if (stored == kinds::kDay || stored == kinds::kClock) {
        StoreDay(values[i], MeantBy(stored));
      } else {
        CheckStored(KindsOf(values[i]), token);
      }
    }
  }
}

void TimeAnalysis::LookAtInsert() {
  const OutputColumns& columns = ColumnsOf(*m_tree.targetSource);
  const FoundTable* const found = m_place.names.TableOf(*m_tree.targetSource);
  std::vector<std::optional<std::size_t>> places;
  if (m_tree.targetColumns.empty()) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (!found->table.columns[i].bGenerated) places.emplace_back(i);
    }
  } else {
    for (const std::size_t token : m_tree.targetColumns) {
      places.push_back(FindPlace(columns, At(token).sText));
    }
  }
  std::set<std::size_t> given;
  if (m_tree.mainQuery != nullptr) {
    const OutputColumns& values = OutputOf(*m_tree.mainQuery);
    for (std::size_t i = 0; i < places.size(); ++i) {
      if (places[i]) given.insert(*places[i]);
      if (places[i] && columns[*places[i]].bWithoutZone && IsGivenText(*m_tree.mainQuery, i)) {
        continue;
      }
      const Kinds stored = places[i] ? columns[*places[i]].kinds : kinds::kNull;
      const WithoutZone clocks(*this, places[i] && columns[*places[i]].bWithoutZone);
      if (stored == kinds::kTime) {
        StoreOutput(*m_tree.mainQuery, i);
      } else if (stored == kinds::kDay || stored == kinds::kClock) {
        StoreDayOutput(*m_tree.mainQuery, i, MeantBy(stored));
      } else if (i < values.size()) {
        CheckStored(values[i].kinds, TokenOf(*m_tree.mainQuery, values[i]));
      }
    }
  }
  LookAtDefaults(given);
}

// In a column of another type its number would be taken for something else from then on.
void TimeAnalysis::CheckStored(Kinds kinds, std::size_t token) const {
  if (!kinds::Has(kinds, kinds::kTimes)) return;
  Fail(token, "A time is stored in a column of another type",
       "store what datetime() makes of it, or declare the column as TIMESTAMP");
}

std::size_t TimeAnalysis::TokenOf(const Query& query, const OutputColumn& column) {
  const Scope& core = *query.cores.front();
  return column.item < core.items.size() ? core.items[column.item].range.begin : query.range.begin;
}

void TimeAnalysis::LookAtDefaults(const std::set<std::size_t>& given) {
  if (Typed() != nullptr) return;
  const FoundTable* const found = m_place.names.TableOf(*m_tree.targetSource);
  for (std::size_t i = 0; i < found->table.columns.size(); ++i) {
    const KnownColumn& column = found->table.columns[i];
    if (given.contains(i) || column.bGenerated || !column.sDefault) continue;
    const bool bDay = column.content == Content::Day;
    if (bDay || column.content == Content::Clock) {
      if (IsSoundDayDefault(*column.sDefault, bDay ? Meant::Day : Meant::Clock)) continue;
      Fail(m_tree.target->parts.back(),
           "The column \"" + column.sName + "\" would get " + *column.sDefault +
               " by its default, which is no " + (bDay ? "date" : "time of day"),
           Text("list the column and give it one, such as ") + (bDay ? "'t'" : "'08:30'"));
    }
    if (column.content == Content::Time && !IsSoundDefault(*column.sDefault)) {
      Fail(m_tree.target->parts.back(),
           "The column \"" + column.sName + "\" would get a text that is no time",
           "list the column and give it a time, such as '*'");
    }
  }
}

// --- comparisons ---

// A row of values, or a query that gives one, meets another element by element.
std::vector<TimeAnalysis::Operand> TimeAnalysis::OperandsOf(const Expr& expr) {
  std::vector<Operand> operands;
  const Expr& inside = *Inside(&expr);
  if (inside.kind == ExprKind::Row) {
    for (const auto* const child : inside.children) {
      operands.push_back({child, nullptr, nullptr, 0, child->range.begin});
    }
  } else if (inside.kind == ExprKind::Subquery && OutputOf(*inside.query).size() > 1) {
    for (std::size_t i = 0; i < OutputOf(*inside.query).size(); ++i) {
      operands.push_back({nullptr, inside.query, nullptr, i, inside.range.begin});
    }
  } else {
    operands.push_back({&expr, nullptr, nullptr, 0, expr.range.begin});
  }
  return operands;
}

Kinds TimeAnalysis::KindsOf(const Operand& operand) {
  if (operand.expr != nullptr) return KindsOf(*operand.expr);
  const OutputColumns& columns =
      operand.query != nullptr ? OutputOf(*operand.query) : ColumnsOf(*operand.table);
  return operand.column < columns.size() ? columns[operand.column].kinds : kinds::kOther;
}

void TimeAnalysis::MeetRows(const std::vector<const Expr*>& sides, std::size_t token,
                            Comparison how) {
  std::vector<std::vector<Operand>> rows;
  for (const auto* const side : sides) {
    KindsOf(*side);
    rows.push_back(OperandsOf(*side));
    if (rows.back().size() != rows.front().size()) {
      Fail(token, "Rows of different lengths are compared", "give all of them as many values");
    }
  }
  for (std::size_t i = 0; i < rows.front().size(); ++i) {
    std::vector<Operand> meeting;
    for (const auto& row : rows) meeting.push_back(row[i]);
    Meet(meeting, token, how);
  }
}

void TimeAnalysis::MeetIn(const Expr& expr) {
  if (expr.query == nullptr && expr.table == nullptr) {
    // Of a list each element meets the first, so all of them are of one kind.
    MeetRows({expr.children.begin(), expr.children.end()}, expr.operation, Comparison::Same);
    return;
  }
  KindsOf(*expr.children[0]);
  const auto left = OperandsOf(*expr.children[0]);
  for (std::size_t i = 0; i < left.size(); ++i) {
    const std::size_t token =
        expr.query != nullptr ? expr.query->range.begin : expr.table->table.range.begin;
    Meet({left[i], {nullptr, expr.query, expr.table, i, token}}, expr.operation, Comparison::Same);
  }
}

// Where one is a time all become times, and what they are then is told.
Kinds TimeAnalysis::Meet(const std::vector<Operand>& operands, std::size_t token, Comparison how) {
  Kinds all = kinds::kNull;
  for (const auto& operand : operands) all |= KindsOf(operand);
  if (kinds::Has(all, kinds::kTimes)) {
    if (MeetsAsText(operands)) return kinds::kTime;
    const WithoutZone clocks(*this, MeetsClocks(operands));
    ExpectTimes(operands);
    for (const auto& operand : operands) Convert(operand, Meant::Time);
    return kinds::kTime | (all & kinds::kShifted);
  }
  if (kinds::Has(all, kinds::kDaysAndClocks)) {
    if (IsLeft(all)) return all;
    const Meant meant = MeantBy(all);
    for (const auto& operand : operands) {
      if (how == Comparison::Same && IsAsWritten(operand)) continue;
      Convert(operand, meant);
      // What is asked for exactly may be what another program has left there.
      if (how == Comparison::Order && operand.expr != nullptr) GuardGiven(*operand.expr, meant);
    }
    return KindsOf(meant);
  }
  // Each of the others meets the first.
  for (std::size_t i = 1; i < operands.size(); ++i) {
    CheckMeeting({operands[0], operands[i]}, token, how);
  }
  return all;
}

}  // namespace orvane::provider::dialect
