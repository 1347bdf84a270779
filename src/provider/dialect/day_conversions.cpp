// How what meets a date or a time of day becomes one. Columns of these types hold texts, which the
// engine would compare with anything: every text is greater than every number, and '*' is less than
// every date.
#include "platform/conversions.h"
#include "platform/failure.h"
#include "platform/quoting.h"
#include "platform/stored_text.h"
#include "provider/dialect/days_and_clocks.h"
#include "provider/dialect/time_analysis.h"
#include "provider/dialect/time_functions.h"

namespace orvane::provider::dialect {

using platform::Text;
using platform::Value;

namespace {

bool WritesDay(std::string_view sFormat, bool bDay) {
  return bDay ? sFormat == "%Y-%m-%d" || sFormat == "%F" : sFormat == "%H:%M:%S" || sFormat == "%T";
}

}  // namespace

TimeAnalysis::Meant TimeAnalysis::MeantBy(Kinds kinds) {
  return kinds::Has(kinds, kinds::kDay) ? Meant::Day : Meant::Clock;
}

Kinds TimeAnalysis::KindsOf(Meant meant) {
  if (meant == Meant::Time) return kinds::kTimes;
  return meant == Meant::Day ? kinds::kDay : kinds::kClock;
}

void TimeAnalysis::FailDayNumber(std::size_t token, Meant meant) const {
  if (meant == Meant::Day) {
    Fail(token, "A number stands where a date is meant",
         "write a date between single quotes, such as '2024-05-31', or a time such as '*-1d'");
  }
  Fail(token, "A number stands where a time of day is meant",
       "write one between single quotes, such as '08:30'");
}

void TimeAnalysis::FailNoDay(std::size_t token, Meant meant) const {
  if (meant == Meant::Day) {
    Fail(token, "This is not understood as a date",
         "write a date between single quotes, such as '2024-05-31', or what date() gives");
  }
  Fail(token, "This is not understood as a time of day",
       "write one between single quotes, such as '08:30', or what time() gives");
}

void TimeAnalysis::FailMixedDays(std::size_t token) const {
  Fail(token, "What is a date in some rows and something else in others meets a date",
       "make it a date where it comes from, by CAST(... AS DATE)");
}

// A column may be asked for exactly what is written there, as by those who edit its rows.
bool TimeAnalysis::IsAsWritten(const Operand& operand) const {
  if (operand.expr == nullptr || operand.expr->kind != ExprKind::Collate) return false;
  if (!At(operand.expr->operation + 1).IsWord("BINARY")) return false;
  const auto& range = Inside(operand.expr)->range;
  return range.end - range.begin == 1 && At(range.begin).nParameter != 0;
}

void TimeAnalysis::ConvertToDay(const Expr& expr, Meant meant) {
  const Kinds kinds = KindsOf(expr);
  const Kinds own = KindsOf(meant);
  if (kinds::IsOnly(kinds, own)) return;
  if (m_place.bStored) {
    // Dates are compared as they stand there, but with nothing that is made of a stored time.
    CheckLeft(kinds, expr.range.begin);
    return;
  }
  if (IsSurely(expr, meant)) {
    if (Typed() == nullptr) return;
    const std::string_view sBehind =
        meant == Meant::Day ? Typed()->sDayBehind : Typed()->sClockBehind;
    m_place.edits.Wrap(expr.range, "(", ")" + Text(sBehind));
  } else if (!ConvertParts(expr, kinds, meant)) {
    WrapDay(expr, kinds, meant);
  }
  SetKinds(expr, own);
}

// What date(), time() and the like give is a date or null, whatever they are given.
bool TimeAnalysis::IsSurely(const Expr& expr, Meant meant) const {
  const Expr& inside = *Inside(&expr);
  const bool bDay = meant == Meant::Day;
  if (inside.kind == ExprKind::CurrentTime) {
    return At(inside.range.begin).IsWord(bDay ? "CURRENT_DATE" : "CURRENT_TIME");
  }
  if (inside.kind != ExprKind::Call) return false;
  const Text sName = UpperCase(At(inside.operation).sText);
  if (sName == (bDay ? "DATE" : "TIME")) return true;
  if (sName != "STRFTIME" || inside.children.empty()) return false;
  const Expr& format = *Inside(inside.children[0]);
  if (format.kind != ExprKind::String) return false;
  return WritesDay(At(format.range.begin).sText, bDay);
}

// What date() makes of a date, which a server that knows types takes for a text.
bool TimeAnalysis::IsDayOfDay(const Expr& expr) {
  const Expr& inside = *Inside(&expr);
  if (inside.kind != ExprKind::Call || !IsSurely(inside, Meant::Day)) return false;
  const std::size_t nValue = UpperCase(At(inside.operation).sText) == "STRFTIME" ? 1 : 0;
  return nValue < inside.children.size() && KindsOf(*inside.children[nValue]) == kinds::kDay;
}

void TimeAnalysis::ConvertDayText(const Expr& expr, Meant meant) {
  const Token& token = At(expr.range.begin);
  Value vtDay;
  if (meant == Meant::Day) {
    const auto& zone = m_place.settings.zone;
    const auto day = ReadDay(token.sText, zone, zone, m_place.settings.now);
    if (const auto* const error = std::get_if<zones::TimeExpressionError>(&day)) {
      // A server that knows dates may know this one as well.
      if (Typed() != nullptr) return;
      Fail(expr.range.begin, ShownText(token.sText) + " is no date",
           "at its character " + CharacterNumber(token.sText, error->position) + " " +
               error->sReason);
    }
    vtDay = std::get<platform::Date>(day);
  } else {
    if (Typed() != nullptr) return;
    const auto clock = ReadClock(token.sText);
    if (!clock) {
      Fail(expr.range.begin, ShownText(token.sText) + " is no time of day",
           "write one such as '08:30' or '08:30:15'");
    }
    vtDay = *clock;
  }
  if (platform::ToText(vtDay) == token.sText) return;
  if (m_place.sKept.empty()) {
    m_place.edits.Bind(expr.range, vtDay);
  } else if (meant == Meant::Clock) {
    m_place.edits.Replace(expr.range, platform::QuotedText(platform::ToText(vtDay)));
  } else {
    Fail(expr.range.begin, "A day that is told by the clock stands in " + m_place.sKept,
         "write a date such as '2024-05-31', or compare dates in the statements that read it");
  }
}

// Lets the engine call a function that reads the value when the statement runs.
void TimeAnalysis::WrapDay(const Expr& expr, Kinds kinds, Meant meant) {
  const std::size_t token = expr.range.begin;
  const bool bDay = meant == Meant::Day;
  if (Typed() != nullptr) {
    // All else the server itself compares with dates, or refuses.
    const Expr& inside = *Inside(&expr);
    if (bDay && IsMomentInUtc(inside, kinds)) {
      WrapInZone(expr, Typed()->dayInZone);
      return;
    }
    const bool bNumber =
        inside.kind == ExprKind::Number ||
        (inside.kind == ExprKind::Sign && inside.children[0]->kind == ExprKind::Number);
    if (bNumber) FailDayNumber(token, meant);
    if (kinds::Has(kinds, kinds::kText)) {
      FailUnread(token, bDay ? "a date" : "a time of day", bDay ? "'*'" : "'08:30'",
                 bDay ? "DATE" : "TIME");
    }
    return;
  }
  if (bDay && kinds::Has(kinds, kinds::kClock)) {
    Fail(token, "A date meets a time of day",
         "compare dates with dates, and times of day with times of day");
  }
  if (kinds != kinds::kNull && kinds::IsOnly(kinds, kinds::kNumbers)) FailDayNumber(token, meant);
  if (kinds::Has(kinds, kinds::kFromTimes | kinds::kCount | kinds::kCounts | kinds::kOther) ||
      (bDay && kinds::Has(kinds, kinds::kPart))) {
    FailNoDay(token, meant);
  }
  if (bDay && kinds::Has(kinds, kinds::kZoneText)) {
    Fail(token, "The zone of this time is not known",
         "write date() around it, or leave out 'localtime' and 'utc'");
  }
  const bool bUtc = bDay && kinds::Has(kinds, kinds::kUtcText | kinds::kWrittenTime);
  if (bUtc && !kinds::IsOnly(kinds, kinds::kUtcDates | kinds::kDay)) FailMixedDays(token);
  if (!m_place.sKept.empty()) {
    // What is kept can call no function.
    Fail(token, "What may be no date meets one in " + m_place.sKept,
         "write date(...) for a date, time(...) for a time of day");
  }
  const std::string_view sDay = bUtc ? kReadDayUtc : kReadDay;
  m_place.edits.Wrap(expr.range, Text(bDay ? sDay : kReadClock) + "(", ")");
  m_bCalls = true;
}

// What datetime() and the like give is a moment in UTC: its day is that of the connection's zone.
// Of another text it is not known whether it is a date alone.
bool TimeAnalysis::IsMomentInUtc(const Expr& inside, Kinds kinds) const {
  if (!kinds::Has(kinds, kinds::kUtcText | kinds::kWrittenTime) ||
      !kinds::IsOnly(kinds, kinds::kUtcDates) || kinds::Has(kinds, kinds::kPart)) {
    return false;
  }
  if (inside.kind == ExprKind::CurrentTime) {
    return At(inside.range.begin).IsWord("CURRENT_TIMESTAMP");
  }
  constexpr std::size_t kDate = 10;
  const Text& sShape = ShapeOf(inside);
  return inside.kind == ExprKind::Call && SortsAsTimes(sShape) && sShape.size() > kDate;
}

// Writes the value into a form of the server's that names the connection's zone.
void TimeAnalysis::WrapInZone(const Expr& expr, const engines::ZoneForm& form) {
  if (!m_place.sKept.empty()) {
    Fail(expr.range.begin, "What may be no date meets one in " + m_place.sKept,
         "write date(...) for a date, time(...) for a time of day");
  }
  const Text sZone = platform::QuotedText(m_place.settings.zone.NameInUse());
  m_place.edits.WrapAround(expr.range, Text(form.sBefore),
                           Text(form.sBehind) + sZone + Text(form.sBehindZone));
}

// To the engine such a CAST makes a number of what the text begins with.
Kinds TimeAnalysis::KindsOfDayCast(const Expr& expr, Meant meant) {
  const Expr& value = *expr.children[0];
  const Kinds of = KindsOf(value);
  const bool bTime = kinds::Has(of, kinds::kFromTimes);
  // Its day depends on a zone, and a server would take its own; one without a zone shows it.
  if (bTime && !m_place.bStored && !IsWithoutZone(value)) {
    Fail(value.range.begin, "A time is cast to a date or a time of day",
         "write date(...) for its date, time(...) for its time of day, both in UTC");
  }
  if (Typed() != nullptr) {
    // A text of its rows it reads by itself.
    const bool bText = kinds::Has(of, kinds::kText) && Inside(&value)->kind != ExprKind::String;
    if (!bTime && !bText) Convert(value, meant);
    return KindsOf(meant);
  }
  // What another program keeps is the number that it is to the engine.
  if (m_place.bStored) {
    if (bTime) return kinds::kNumberOfTime;
    constexpr Kinds kOfTimes = kinds::kCounted | kinds::kDaysAndClocks;
    return kinds::Has(of, kOfTimes) ? kinds::Counted(of) : kinds::kOther;
  }
  Convert(value, meant);
  m_place.edits.Replace({expr.range.begin, expr.range.begin + 1}, "");
  m_place.edits.Replace({expr.type.begin - 1, expr.type.end}, "");
  return KindsOf(meant);
}

// The engine would count a date as the number that it begins with, its year.
Kinds TimeAnalysis::KindsOfDaySum(const Expr& expr, Kinds left, Kinds right) const {
  if (m_place.bStored) {
    const auto both = static_cast<Kinds>(left | right);
    return kinds::Has(both, kinds::kFromTimes) ? kinds::kNumberOfTime : kinds::Counted(both);
  }
  if (Typed() == nullptr) {
    Fail(expr.operation, "A date or a time of day is counted with",
         "write date(..., '+1 day') for another date, and julianday(...) - julianday(...) for the "
         "days between two");
  }
  if (expr.kind != ExprKind::Arithmetic) return kinds::kAnyValue;
  const auto bNumber = [](Kinds kinds) {
    return kinds != kinds::kNull && kinds::IsOnly(kinds, kinds::kNumbers);
  };
  const Token& token = At(expr.operation);
  const bool bMoved =
      (left == kinds::kDay && bNumber(right) && (token.IsSymbol("+") || token.IsSymbol("-"))) ||
      (right == kinds::kDay && bNumber(left) && token.IsSymbol("+"));
  return bMoved ? kinds::kDay : kinds::kAnyValue;
}

// --- on the way into columns ---

void TimeAnalysis::StoreDay(const Operand& operand, Meant meant) {
  if (operand.expr == nullptr) {
    StoreDayOutput(*operand.query, operand.column, meant);
    return;
  }
  if (kinds::Has(KindsOf(operand), kinds::kTimes)) FailStoredDay(operand.expr->range.begin, meant);
  Convert(operand, meant);
  GuardGiven(*operand.expr, meant);
}

void TimeAnalysis::StoreDayOutput(const Query& query, std::size_t column, Meant meant) {
  const OutputColumns& columns = OutputOf(query);
  if (column >= columns.size()) return;
  if (kinds::Has(columns[column].kinds, kinds::kTimes)) {
    FailStoredDay(TokenOf(query, columns[column]), meant);
  }
  ConvertOutput(query, column, meant);
  for (const auto* const core : query.cores) {
    for (const auto& row : core->rows) {
      if (column < row.size()) GuardGiven(*row[column], meant);
    }
  }
}

void TimeAnalysis::FailStoredDay(std::size_t token, Meant meant) const {
  const bool bDay = meant == Meant::Day;
  Fail(token, Text("A time is stored in a column of ") + (bDay ? "dates" : "times of day"),
       Text("store what ") + (bDay ? "date()" : "time()") +
           " makes of it, or declare the column as TIMESTAMP");
}

// Null by a parameter is any value where the statement runs once for each row of them.
void TimeAnalysis::GuardGiven(const Expr& expr, Meant meant) {
  const bool bGiven = expr.kind == ExprKind::Null && At(expr.range.begin).nParameter != 0;
  if (!bGiven || Typed() != nullptr) return;
  m_place.edits.Wrap(expr.range, Text(meant == Meant::Day ? kReadDay : kReadClock) + "(", ")");
  m_bCalls = true;
}

namespace {

// True for one call of a function that gives dates, or times of day, whatever it is given.
bool GivesDay(const Text& sDefault, bool bDay, StatementWork& work) {
  std::vector<Token> tokens;
  try {
    tokens = ReadTokens(sDefault, work);
  } catch (const platform::Failure& failed) {
    if (failed.Number() != platform::failure::kSqlError) throw;
    return false;
  }
  std::erase_if(tokens, [](const Token& token) { return token.kind == TokenKind::End; });
  while (tokens.size() > 2 && tokens.front().IsSymbol("(") && tokens.back().IsSymbol(")")) {
    tokens.erase(tokens.begin());
    tokens.pop_back();
  }
  if (tokens.size() == 1) return tokens.front().IsWord(bDay ? "CURRENT_DATE" : "CURRENT_TIME");
  if (tokens.size() < 3 || !tokens[1].IsSymbol("(")) return false;
  int nDepth = 0;
  for (std::size_t i = 1; i < tokens.size(); ++i) {
    nDepth += tokens[i].IsSymbol("(") ? 1 : tokens[i].IsSymbol(")") ? -1 : 0;
    if (nDepth == 0 && i + 1 != tokens.size()) return false;
  }
  if (nDepth != 0) return false;
  if (tokens.front().IsWord(bDay ? "DATE" : "TIME")) return true;
  return tokens.front().IsWord("STRFTIME") && tokens[2].kind == TokenKind::String &&
         WritesDay(tokens[2].sText, bDay);
}

}  // namespace

// What a row gets that names no value.
bool TimeAnalysis::IsSoundDayDefault(const Text& sDefault, Meant meant) const {
  const bool bDay = meant == Meant::Day;
  const Text sUpper = UpperCase(sDefault);
  if (sUpper == "NULL" || sUpper == (bDay ? "CURRENT_DATE" : "CURRENT_TIME")) return true;
  if (sDefault.size() > 2 && sDefault.front() == '\'' && sDefault.back() == '\'') {
    const auto type = bDay ? platform::DataType::DBDate : platform::DataType::DBTime;
    const Value vtDay = platform::FromStoredText(type, sDefault.substr(1, sDefault.size() - 2));
    return vtDay.As<Text>() == nullptr;
  }
  return GivesDay(sDefault, bDay, m_place.work);
}

}  // namespace orvane::provider::dialect
