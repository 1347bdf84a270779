// What definitions of tables and views hold: types, defaults and computed columns.
#include <algorithm>

#include "platform/failure.h"
#include "platform/quoting.h"
#include "provider/dialect/time_analysis.h"

namespace orvane::provider::dialect {

using platform::Text;

Kinds TimeAnalysis::KindsOfType(platform::DataType type) {
  if (type == platform::DataType::DBTimeStamp) return kinds::kTime;
  if (type == platform::DataType::DBDate) return kinds::kDay;
  return type == platform::DataType::DBTime ? kinds::kClock : kinds::kNull;
}

void TimeAnalysis::LookAtDefinition() {
  if (m_tree.kind != StatementKind::Define) return;
  for (const auto& column : m_tree.columns) {
    if (column.computed != nullptr) LookAtComputed(column);
    const bool bTime = column.type == platform::DataType::DBTimeStamp;
    if (bTime && Typed() == nullptr) {
      // Whoever fills the table: no text gets in where it would count as greater than every time.
      m_place.edits.Wrap(
          column.range, "",
          " CHECK (typeof(" + platform::QuotedName(column.sName) + ") NOT IN ('text', 'blob'))");
    }
    const Kinds held = KindsOfType(column.type);
    if (kinds::Has(held, kinds::kDaysAndClocks) && Typed() == nullptr) {
      // A number would count as less than every date.
      m_place.edits.Wrap(
          column.range, "",
          " CHECK (typeof(" + platform::QuotedName(column.sName) + ") IN ('text', 'null'))");
    }
    if (column.initial == nullptr) continue;
    const Kinds kinds = KindsOf(*column.initial);
    const Kinds typed = KindsOfType(column.type);
    if (kinds::Has(typed, kinds::kDaysAndClocks)) Convert(*column.initial, MeantBy(typed));
    if (!bTime) continue;
    const Expr& inside = *Inside(column.initial);
    const bool bNow =
        inside.kind == ExprKind::CurrentTime && At(inside.range.begin).IsWord("CURRENT_TIMESTAMP");
    if (bNow && Typed() != nullptr) continue;
    if (bNow) {
      // The text that it is to the engine would stand in the column.
      m_place.edits.Replace(inside.range, "(unixepoch() * 1000000)");
    } else if (kinds != kinds::kNull) {
      Fail(inside.range.begin, "A time stands in " + m_place.sKept,
           "write CURRENT_TIMESTAMP, or leave the default out and give times in INSERT");
    }
  }
  if (m_tree.mainQuery == nullptr || m_tree.bView || Typed() != nullptr) return;
  const OutputColumns& columns = OutputOf(*m_tree.mainQuery);
  for (const auto& column : columns) {
    if (kinds::Has(column.kinds, kinds::kDaysAndClocks) && !IsWritten(*m_tree.mainQuery, column)) {
      const bool bDay = kinds::Has(column.kinds, kinds::kDay);
      const Text sType = bDay ? "DATE" : "TIME";
      Fail(TokenOf(*m_tree.mainQuery, column),
           Text("A table that is made from a query holds mere texts in place of ") +
               (bDay ? "dates" : "times of day"),
           "create it with a column of type " + sType + " and fill it by INSERT ... SELECT");
    }
    if (!kinds::Has(column.kinds, kinds::kFromTimes)) continue;
    Fail(TokenOf(*m_tree.mainQuery, column),
         "A table that is made from a query holds numbers in place of times",
         "create it with a column of type TIMESTAMP and fill it by INSERT ... SELECT");
  }
}

// What date() and the like give is meant as a text.
bool TimeAnalysis::IsWritten(const Query& query, const OutputColumn& column) const {
  return std::ranges::all_of(query.cores, [&](const Scope* core) {
    const Expr* const expr =
        column.item < core->items.size() ? core->items[column.item].expr : nullptr;
    return expr != nullptr && (IsSurely(*expr, Meant::Day) || IsSurely(*expr, Meant::Clock));
  });
}

// What the column is said to be is what others take it for.
void TimeAnalysis::LookAtComputed(const ColumnDefinition& column) {
  const Kinds kinds = KindsOf(*column.computed);
  const Kinds typed = KindsOfType(column.type);
  if (typed == kinds::kTime && kinds != kinds::kTime) {
    Fail(column.computed->range.begin, "A computed column of times is something else",
         "compute it from columns of times alone, or give it another type");
  }
  if (typed != kinds::kTime && kinds::Has(kinds, kinds::kFromTimes | kinds::kCountOfTime)) {
    Fail(column.computed->range.begin, "A computed column of another type is made from a time",
         "declare it as TIMESTAMP and compute a time, or compute it where it is read");
  }
  if (kinds::Has(typed, kinds::kDaysAndClocks)) Convert(*column.computed, MeantBy(typed));
}

// What a column that is none of times can be that is computed so. Whatever is made of a stored
// time, in some rows or in all, could be anything.
Kinds TimeAnalysis::ComputedOf(Kinds of) {
  if (kinds::Has(of, kinds::kFromTimes | kinds::kCountOfTime)) return kinds::kUnknown;
  if (of == kinds::kDay || of == kinds::kClock) return of;
  if (!kinds::Has(of, kinds::kWrittenTime | kinds::kMadeOfDays)) return kinds::kAnyValue;
  // Dates among others are texts as these are.
  const Kinds texts = kinds::Written(of & static_cast<Kinds>(~kinds::kCountOfDay));
  return texts | (of & (kinds::kCountOfDay | kinds::kNumbers | kinds::kOther | kinds::kAnyText |
                        kinds::kLoose));
}

// What computes with a column that is computed later counts as what could be anything.
std::map<Text, TimeAnalysis::ComputedColumn> TimeAnalysis::Computed() {
  std::map<Text, ComputedColumn> computed;
  OutputColumns columns = ColumnsOfNew();
  for (std::size_t i = 0; i < m_tree.columns.size(); ++i) {
    if (m_tree.columns[i].computed != nullptr) columns.SetKinds(i, kinds::kUnknown);
  }
  m_new = columns;
  for (std::size_t i = 0; i < m_tree.columns.size(); ++i) {
    const ColumnDefinition& column = m_tree.columns[i];
    if (column.computed == nullptr) continue;
    Kinds kinds = kinds::kUnknown;
    try {
      const Kinds of = KindsOf(*column.computed);
      const Kinds typed = KindsOfType(column.type);
      if (typed != kinds::kTime) {
        kinds = ComputedOf(of);
      } else if (kinds::IsOnly(of, kinds::kTime)) {
        kinds = kinds::kTime;
      }
      const bool bDay = kinds::Has(typed, kinds::kDaysAndClocks) &&
                        (kinds::IsOnly(of, typed) || IsSurely(*column.computed, MeantBy(typed)));
      if (bDay) kinds = typed;
    } catch (const platform::Failure& failed) {
      if (failed.Number() != platform::failure::kSqlError) throw;
      kinds = kinds::kWrong;
    }
    m_new->SetKinds(i, kinds);
    computed[UpperCase(column.sName)] = {kinds, ShapeOf(*column.computed)};
  }
  return computed;
}

}  // namespace orvane::provider::dialect
