// How what meets a stored time becomes a time itself.
#include <charconv>

#include "platform/beyond_values.h"
#include "platform/failure.h"
#include "platform/quoting.h"
#include "provider/dialect/time_analysis.h"
#include "provider/dialect/time_functions.h"
#include "zones/time_expression.h"

namespace orvane::provider::dialect {

using platform::Text;
using platform::Timestamp;
using platform::Value;

namespace {

// "Z", or "+01:00": steps have a unit and no colon.
bool SaysOffset(std::string_view sText) {
  const auto isDigit = [&](std::size_t n) {
    return n < sText.size() && sText[n] >= '0' && sText[n] <= '9';
  };
  for (std::size_t n = 0; n < sText.size(); ++n) {
    if (sText[n] == 'Z' || sText[n] == 'z') return true;
    const bool bSign = sText[n] == '+' || sText[n] == '-';
    if (bSign && isDigit(n + 1) && isDigit(n + 2) && n + 3 < sText.size() && sText[n + 3] == ':') {
      return true;
    }
  }
  return false;
}

}  // namespace

void TimeAnalysis::FailMixed(std::size_t token) const {
  Fail(token, "What is a time in some rows and something else in others meets a time",
       "make it a time where it comes from, by CAST(... AS TIMESTAMP)");
}

void TimeAnalysis::FailNumber(std::size_t token) const {
  Fail(token, "A number stands where a time is meant",
       "write a time between single quotes, such as '*-1h'");
}

void TimeAnalysis::FailShifted(std::size_t token) const {
  Fail(token, "A number is added to a time, and it is not known whether it means days",
       "write one time, such as '*-1h', or set Time as Double to False");
}

// A server that knows types takes no text for a time while a statement runs.
void TimeAnalysis::FailUnread(std::size_t token, std::string_view sWhat, std::string_view sSuch,
                              std::string_view sType) const {
  Fail(token, "A text meets " + Text(sWhat) + ", and this server reads none while a statement runs",
       "write one between single quotes, such as " + Text(sSuch) + ", or CAST(... AS " +
           Text(sType) + ") around a text as the server writes it");
}

// What is kept is read by others too, who know nothing of these times.
void TimeAnalysis::CheckKept(const Expr& expr) const {
  if (m_place.sKept.empty()) return;
  Fail(expr.range.begin, "A time stands in " + m_place.sKept,
       "compare times in the statements that read it");
}

void TimeAnalysis::Convert(const Operand& operand, Meant meant) {
  if (operand.expr != nullptr) {
    Convert(*operand.expr, meant);
  } else if (operand.query != nullptr) {
    ConvertOutput(*operand.query, operand.column, meant);
  } else if (!kinds::IsOnly(KindsOf(operand), KindsOf(meant))) {
    if (meant != Meant::Time && m_place.bStored) CheckLeft(KindsOf(operand), operand.token);
    if (meant != Meant::Time && (Typed() != nullptr || m_place.bStored)) return;
    Fail(operand.token,
         Text("The column of a table meets a ") + (meant == Meant::Time ? "time" : "date"),
         "write (SELECT column FROM table) in place of the table");
  }
}

void TimeAnalysis::Convert(const Expr& expr, Meant meant) {
  if (meant != Meant::Time) {
    ConvertToDay(expr, meant);
    return;
  }
  const Kinds kinds = KindsOf(expr);
  if (kinds::IsOnly(kinds, kinds::kTime)) return;
  if (kinds::IsOnly(kinds, kinds::kTimes)) {
    if (TimeAsDouble()) FailShifted(expr.range.begin);
    return;
  }
  if (!ConvertParts(expr, kinds, meant)) {
    CheckKept(expr);
    Wrap(expr, kinds);
  }
  SetKinds(expr, kinds::kTime | (kinds & kinds::kShifted));
}

// What only picks one of its parts is a time when they are. False when that is not so.
bool TimeAnalysis::ConvertParts(const Expr& expr, Kinds kinds, Meant meant) {
  switch (expr.kind) {
    case ExprKind::Collate:
      DropOrder(expr);
      [[fallthrough]];
    case ExprKind::Bracket:
      Convert(*expr.children[0], meant);
      return true;
    case ExprKind::String:
      if (meant == Meant::Time) {
        ConvertText(expr);
      } else {
        ConvertDayText(expr, meant);
      }
      return true;
    case ExprKind::Number:
      if (meant != Meant::Time) return false;
      ConvertNumber(expr, expr, false);
      return true;
    case ExprKind::Sign: {
      const Expr& number = *expr.children[0];
      const bool bNumber = number.kind == ExprKind::Number && !At(expr.operation).IsSymbol("~");
      if (bNumber && meant == Meant::Time) {
        ConvertNumber(expr, number, At(expr.operation).IsSymbol("-"));
        return true;
      }
      if (!At(expr.operation).IsSymbol("+")) return false;
      DropPlus(expr);
      Convert(number, meant);
      return true;
    }
    case ExprKind::Case: {
      const std::size_t first = expr.bOperand ? 2 : 1;
      const std::size_t end = expr.children.size() - (expr.bElse ? 1 : 0);
      for (std::size_t i = first; i < end; i += 2) Convert(*expr.children[i], meant);
      if (expr.bElse) Convert(*expr.children.back(), meant);
      return true;
    }
    case ExprKind::Subquery:
      // Texts of one kind are read where they come out, unless nothing can be read then.
      if ((Typed() == nullptr || !kinds::Has(kinds, kinds::kText)) &&
          (kinds::IsOnly(kinds, kinds::kAnyText | kinds::kAnyValue | kinds::kOfDay) ||
           kinds::IsOnly(kinds, kinds::kUtcDates))) {
        return false;
      }
      ConvertOutput(*expr.query, 0, meant);
      return true;
    case ExprKind::Call:
      return ConvertCall(expr, meant);
    default:
      return false;
  }
}

// Types that are no texts have no such order on a server that knows types.
void TimeAnalysis::DropOrder(const Expr& collate) {
  if (Typed() == nullptr) return;
  m_place.edits.Replace({collate.operation, collate.operation + 2}, "");
}

// Nor have they a plus, which does nothing.
void TimeAnalysis::DropPlus(const Expr& plus) {
  if (Typed() == nullptr) return;
  m_place.edits.Replace({plus.operation, plus.operation + 1}, "");
}

// False for a call that makes another value of what it is given.
bool TimeAnalysis::ConvertCall(const Expr& expr, Meant meant) {
  const Text sName = UpperCase(At(expr.operation).sText);
  std::vector<std::size_t> parts;
  const bool bMany = expr.children.size() > 1;
  if (sName == "COALESCE" || sName == "IFNULL" || sName == "NULLIF" ||
      ((sName == "MIN" || sName == "MAX") && bMany)) {
    for (std::size_t i = 0; i < expr.children.size(); ++i) parts.push_back(i);
  } else if (sName == "IIF" || sName == "IF") {
    parts = ChosenByIif(expr.children.size());
  } else if (sName == "LAG" || sName == "LEAD") {
    parts = {0, 2};
  } else if (sName == "LIKELY" || sName == "UNLIKELY" || sName == "LIKELIHOOD" || sName == "MIN" ||
             sName == "MAX" || sName == "FIRST_VALUE" || sName == "LAST_VALUE" ||
             sName == "NTH_VALUE") {
    parts = {0};
  } else {
    return false;
  }
  for (const std::size_t part : parts) {
    if (part < expr.children.size()) Convert(*expr.children[part], meant);
  }
  return true;
}

void TimeAnalysis::ConvertText(const Expr& expr) {
  CheckKept(expr);
  const Token& token = At(expr.range.begin);
  const Text& sText = token.sText;
  // Out of a row of the server's own.
  const bool bMayBeBeyond = token.nParameter != 0 && Typed() != nullptr && Typed()->bTimesBeyond;
  if (bMayBeBeyond && platform::ReadBeyond(platform::DataType::DBTimeStamp, sText)) return;
  // By clocks it is worked out as they show it, also where they skip an hour or show it twice.
  const bool bClocks = m_bClocks && !SaysOffset(sText);
  const auto& settings = m_place.settings;
  const auto time = bClocks ? zones::ReadTimeExpression(
                                  sText, zones::TimeZone::Utc(),
                                  Timestamp(settings.zone.ToLocal(settings.now).time_since_epoch()))
                            : zones::ReadTimeExpression(sText, settings.zone, settings.now);
  if (const auto* const error = std::get_if<zones::TimeExpressionError>(&time)) {
    Fail(expr.range.begin, ShownText(sText) + " is no time",
         "at its character " + CharacterNumber(sText, error->position) + " " + error->sReason);
  }
  if (!bClocks) return Bind(expr, std::get<Timestamp>(time));
  m_place.edits.Bind(expr.range,
                     Value(platform::WallTime(std::get<Timestamp>(time).time_since_epoch())));
}

// Lets the engine call a function that reads the value as a time when the statement runs.
void TimeAnalysis::Wrap(const Expr& expr, Kinds kinds) {
  const std::size_t token = expr.range.begin;
  if (kinds::Has(kinds, kinds::kTimes)) FailMixed(token);
  if (kinds::Has(kinds, kinds::kNumberOfTime | kinds::kTextOfTime)) {
    Fail(token, "What was made from a time is compared with something else",
         "compare the time itself, as in Timestamp >= '*-1h'");
  }
  if (kinds::Has(kinds, kinds::kZoneText)) {
    Fail(token, "The zone of this time is not known",
         "leave out 'localtime' and 'utc': times are compared whatever their zone");
  }
  if (kinds::Has(kinds, kinds::kCount | kinds::kCounts | kinds::kOther | kinds::kClock)) {
    Fail(token, "This is not understood as a time",
         "write a time between single quotes, such as '*-1h', or what datetime() gives");
  }
  const bool bUtc = kinds::Has(kinds, kinds::kUtcText | kinds::kWrittenTime);
  if (bUtc && !kinds::IsOnly(kinds, kinds::kUtcDates)) FailMixed(token);
  if (kinds::IsOnly(kinds, kinds::kNumber) && !TimeAsDouble()) FailNumber(token);
  if (Typed() != nullptr) {
    if (kinds::Has(kinds, kinds::kText)) FailUnread(token, "a time", "'*-1h'", "TIMESTAMP");
    if (IsDayOfDay(expr)) return WrapInZone(expr, Typed()->midnightInZone);
    if (bUtc) m_place.edits.Wrap(expr.range, "(", ")" + Text(Typed()->sTimeBehind));
    if (kinds::IsOnly(kinds, kinds::kDay) && kinds != kinds::kNull) {
      WrapInZone(expr, Typed()->midnightInZone);
    } else if (kinds::Has(kinds, kinds::kDay)) {
      FailMixed(token);
    }
    return;
  }
  m_place.edits.Wrap(expr.range, Text(bUtc ? kReadUtc : kReadTime) + "(", ")");
  m_bCalls = true;
}

// A column that is read through a function has the function's text as its name, unless it is given
// another: what asks for it by name would find a column of the same name around the query.
void TimeAnalysis::KeepNames() {
  std::set<const Query*> read;
  for (const auto& source : m_tree.sources) read.insert(source.query);
  for (const auto& scope : m_tree.scopes) {
    for (const auto& named : scope.namedQueries) {
      if (named.columns.empty()) read.insert(named.query);
    }
  }
  for (const auto& query : m_tree.queries) {
    const bool bShown = m_tree.kind == StatementKind::Query && &query == m_tree.mainQuery;
    if (query.cores.size() == 1 && !bShown && !read.contains(&query)) continue;
    const Scope& core = *query.cores.front();
    for (const auto& column : OutputOf(query)) {
      if (column.item >= core.items.size()) continue;
      const Item& item = core.items[column.item];
      if (item.expr == nullptr || !item.sAlias.empty()) continue;
      // Any other keeps its heading as it is.
      if (bShown && item.expr->kind != ExprKind::Name) continue;
      const Expr& named = *NamedBy(item.expr);
      if (named.kind != ExprKind::Name || !m_place.edits.Wraps(item.range)) continue;
      // What it has from around it, others in it may mean by that name.
      if (FindIn(named.chain, core).column != nullptr) {
        m_place.edits.Wrap(item.range, "", " AS " + platform::QuotedName(column.sName));
      } else if (read.contains(&query)) {
        Fail(item.range.begin, "A column that becomes a time has no name of its own",
             "give it one by AS");
      }
    }
  }
}

// --- on the way into columns ---

void TimeAnalysis::Store(const Operand& operand) {
  if (operand.expr == nullptr) {
    StoreOutput(*operand.query, operand.column);
    return;
  }
  Convert(*operand.expr);
  if (kinds::Has(KindsOf(*operand.expr), kinds::kShifted)) MakeWhole(*operand.expr);
}

void TimeAnalysis::StoreOutput(const Query& query, std::size_t column) {
  ConvertOutput(query, column, Meant::Time);
  const Output& output = m_outputs[&query];
  for (std::size_t i = 0; i < query.cores.size() && i < output.cores.size(); ++i) {
    const Scope& core = *query.cores[i];
    for (const auto& row : core.rows) {
      const bool bShifted =
          column < row.size() && kinds::Has(KindsOf(*row[column]), kinds::kShifted);
      if (bShifted) MakeWhole(*row[column]);
    }
    if (!core.rows.empty() || column >= output.cores[i].size()) continue;
    const OutputColumn& out = output.cores[i][column];
    if (!kinds::Has(out.kinds, kinds::kShifted)) continue;
    const Item& item = core.items[out.item];
    if (item.expr == nullptr) {
      Fail(item.range.begin, "A star stands for a time to which something was added",
           "name the columns that are stored");
    }
    MakeWhole(*item.expr);
  }
}

// What was added may have led to a part of a microsecond, or out of all years.
void TimeAnalysis::MakeWhole(const Expr& expr) {
  if (Typed() != nullptr) return;
  m_place.edits.Wrap(expr.range, Text(kWholeTime) + "(", ")");
  m_bCalls = true;
}

void TimeAnalysis::Bind(const Expr& expr, Timestamp time) {
  if (!m_bClocks) return m_place.edits.Bind(expr.range, Value(time));
  const auto shown = m_place.settings.zone.ToLocal(time).time_since_epoch();
  m_place.edits.Bind(expr.range, Value(platform::WallTime(shown)));
}

void TimeAnalysis::ConvertNumber(const Expr& expr, const Expr& number, bool bNegative) {
  CheckKept(expr);
  if (!TimeAsDouble()) FailNumber(expr.range.begin);
  const Text& sNumber = At(number.range.begin).sText;
  double dDays = 0;
  const char* const end = sNumber.data() + sNumber.size();
  const auto read = std::from_chars(sNumber.data(), end, dDays);
  const auto time = read.ec == std::errc() && read.ptr == end
                        ? m_place.settings.zone.FromDays(bNegative ? -dDays : dDays)
                        : std::nullopt;
  if (!time) {
    Fail(expr.range.begin, sNumber + " is no time", "write a number of days since 1899-12-30");
  }
  Bind(expr, *time);
}

void TimeAnalysis::ConvertOutput(const Query& query, std::size_t column, Meant meant) {
  const Kinds sound = KindsOf(meant);
  const bool bTime = meant == Meant::Time;
  // It may be asked for while the query is worked out.
  if (!m_outputs.contains(&query)) OutputOf(query);
  Output& output = m_outputs[&query];
  if (column >= output.columns.size()) return;
  if (!bTime && m_place.bStored) {
    CheckLeft(output.columns[column].kinds, query.range.begin);
    return;
  }
  for (std::size_t i = 0; i < query.cores.size() && i < output.cores.size(); ++i) {
    const Scope& core = *query.cores[i];
    for (const auto& row : core.rows) {
      if (column < row.size()) Convert(*row[column], meant);
    }
    if (!core.rows.empty() || column >= output.cores[i].size()) continue;
    const OutputColumn& out = output.cores[i][column];
    const Item& item = core.items[out.item];
    if (item.expr == nullptr) {
      if (kinds::IsOnly(out.kinds, sound) || (!bTime && Typed() != nullptr)) continue;
      const Text sWhat = bTime ? "time" : "date";
      Fail(item.range.begin, "A star stands for a " + sWhat + " and for what is none",
           "name the columns, and write CAST(... AS " + Text(bTime ? "TIMESTAMP" : "DATE") +
               ") where a " + sWhat + " is meant");
    }
    if (bTime && m_aliases.contains(item.expr) && !kinds::IsOnly(KindsOf(*item.expr), sound)) {
      FailMixed(item.range.begin);
    }
    Convert(*item.expr, meant);
  }
  const Kinds shifted = bTime ? output.columns[column].kinds & kinds::kShifted : kinds::kNull;
  output.columns.SetKinds(column, (bTime ? kinds::kTime : sound) | shifted);
}

}  // namespace orvane::provider::dialect
