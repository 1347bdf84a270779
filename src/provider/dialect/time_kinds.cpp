// What each expression is, from the bottom up.
#include <algorithm>
#include <array>

#include "platform/failure.h"
#include "provider/dialect/statement_depth.h"
#include "provider/dialect/time_analysis.h"

namespace orvane::provider::dialect {

using platform::Text;

namespace {

template <std::size_t n>
bool IsOneOf(std::string_view sName, const std::array<std::string_view, n>& names) {
  return std::find(names.begin(), names.end(), sName) != names.end();
}

constexpr std::array<std::string_view, 15> kNumberFunctions = {"LENGTH",
                                                               "INSTR",
                                                               "RANDOM",
                                                               "ROW_NUMBER",
                                                               "RANK",
                                                               "DENSE_RANK",
                                                               "NTILE",
                                                               "CHANGES",
                                                               "UNICODE",
                                                               "PERCENT_RANK",
                                                               "CUME_DIST",
                                                               "JSON_VALID",
                                                               "JSON_ARRAY_LENGTH",
                                                               "COUNT",
                                                               "TOTAL_CHANGES"};
constexpr std::array<std::string_view, 19> kCalculations = {
    "SUM", "TOTAL", "AVG",  "ABS",  "ROUND", "CEIL", "CEILING", "FLOOR", "TRUNC", "MOD",
    "POW", "POWER", "SQRT", "SIGN", "EXP",   "LN",   "LOG",     "LOG10", "LOG2"};
constexpr std::array<std::string_view, 6> kDateFunctions = {"DATE",     "TIME",      "DATETIME",
                                                            "STRFTIME", "JULIANDAY", "UNIXEPOCH"};
// What a calculation makes a number of, which then still counts from a stored time.
constexpr Kinds kCounted = kinds::kCountOfTime | kinds::kWrittenTime;

// A text in which a number of days or seconds is written, not a date.
bool WritesCount(const Text& sFormat) {
  return sFormat.find("%s") != Text::npos || sFormat.find("%J") != Text::npos;
}

}  // namespace

void TimeAnalysis::Step() {
  if (++m_nSteps % kStepsBetweenLooks == 0) m_place.deadline.Check();
}

// Behind each condition its value, and at the end one for when none holds.
std::vector<std::size_t> TimeAnalysis::ChosenByIif(std::size_t nArguments) {
  std::vector<std::size_t> chosen;
  for (std::size_t i = 1; i < nArguments; i += 2) chosen.push_back(i);
  if (nArguments > 2 && nArguments % 2 == 1) chosen.push_back(nArguments - 1);
  return chosen;
}

Kinds TimeAnalysis::KindsOf(const Expr& expr) {
  auto& known = m_kinds[expr.nNumber];
  if (known) return *known;
  // A name that two items give to one another means nothing to the engine either.
  if (m_working[expr.nNumber]) return kinds::kOther;
  Step();
  const Deeper deeper(*this, expr.range.begin);
  m_working[expr.nNumber] = true;
  const Kinds kinds = Work(expr);
  m_working[expr.nNumber] = false;
  known = kinds;
  return kinds;
}

Kinds TimeAnalysis::Work(const Expr& expr) {
  const auto look = [&] {
    for (const auto* const child : expr.children) KindsOf(*child);
  };
  switch (expr.kind) {
    case ExprKind::Null:
      return kinds::kNull;
    case ExprKind::Number:
      return kinds::kNumber;
    case ExprKind::String:
      return kinds::kAnyText;
    case ExprKind::Blob:
      return kinds::kOther;
    case ExprKind::CurrentTime:
      return kinds::kUtcText;
    case ExprKind::Name:
      return KindsOfName(expr);
    case ExprKind::Bracket:
    case ExprKind::Collate:
      return KindsOf(*expr.children[0]);
    case ExprKind::Sign: {
      const Kinds of = KindsOf(*expr.children[0]);
      // A plus does nothing to whatever stands behind it.
      if (At(expr.operation).IsSymbol("+")) return of;
      if (kinds::Has(of, kinds::kFromTimes)) return kinds::kNumberOfTime;
      if (kinds::Has(of, kCounted)) return kinds::kCountOfTime;
      return Inside(expr.children[0])->kind == ExprKind::String ? kinds::kCount : kinds::kNumber;
    }
    case ExprKind::Not:
    case ExprKind::Logic:
    case ExprKind::NullTest:
      look();
      return kinds::kCount;
    case ExprKind::Exists:
      OutputOf(*expr.query);
      return kinds::kCount;
    case ExprKind::Subquery: {
      const ColumnList& columns = OutputOf(*expr.query);
      return columns.size() == 0 ? kinds::kOther : columns[0].kinds;
    }
    case ExprKind::Row: {
      Kinds all = kinds::kNull;
      for (const auto* const child : expr.children) all |= KindsOf(*child);
      return all;
    }
    case ExprKind::Compare:
    case ExprKind::Between:
      MeetRows({expr.children.begin(), expr.children.end()}, expr.operation);
      return kinds::kCount;
    case ExprKind::In:
      MeetIn(expr);
      return kinds::kCount;
    case ExprKind::Like:
      look();
      return KindsOfLike(expr);
    case ExprKind::Case:
      return KindsOfCase(expr);
    case ExprKind::Cast:
      return KindsOfCast(expr);
    case ExprKind::Call:
      return KindsOfCall(expr);
    case ExprKind::Arithmetic:
      return KindsOfArithmetic(expr);
  }
  return kinds::kOther;
}

// What is in brackets, or beside a COLLATE or a plus.
const Expr* TimeAnalysis::Inside(const Expr* expr) const {
  while (expr->kind == ExprKind::Bracket || expr->kind == ExprKind::Collate ||
         (expr->kind == ExprKind::Sign && At(expr->operation).IsSymbol("+"))) {
    expr = expr->children[0];
  }
  return expr;
}

Kinds TimeAnalysis::KindsOfName(const Expr& expr) {
  const Found found = Find(expr.chain, expr.scope);
  if (found.column != nullptr) return found.column->kinds;
  if (found.alias != nullptr) {
    m_aliases.insert(found.alias);
    return KindsOf(*found.alias);
  }
  const Text& sName = Part(expr.chain, expr.chain.parts.size() - 1);
  for (const char* const sNumber : {"rowid", "oid", "_rowid_", "true", "false"}) {
    if (SameName(sName, sNumber)) return kinds::kCount;
  }
  // Never left to the engine: it gives columns of queries names of its own, such as "x:1" for the
  // second x, and looks up a named query's names where that is read.
  Fail(expr.range.begin, "There is no column \"" + At(expr.chain.parts.back()).sText + "\"",
       "write the name of one that the tables have; a text or a time stands between single quotes");
}

Kinds TimeAnalysis::KindsOfArithmetic(const Expr& expr) {
  const Kinds left = KindsOf(*expr.children[0]);
  const Kinds right = KindsOf(*expr.children[1]);
  const auto both = static_cast<Kinds>(left | right);
  const Token& token = At(expr.operation);
  if (token.IsSymbol("||") || token.IsSymbol("->") || token.IsSymbol("->>")) {
    if (kinds::Has(both, kinds::kFromTimes)) return kinds::kTextOfTime;
    // What a date function gave keeps its zone in a longer text.
    if (kinds::Has(both, kinds::kCountOfTime)) return kinds::kTextOfTime;
    const Kinds dates = both & (kinds::kUtcText | kinds::kWrittenTime | kinds::kZoneText);
    return dates != 0 ? dates : kinds::kAnyText;
  }
  if (token.IsSymbol("+") || token.IsSymbol("-")) return KindsOfSum(expr, left, right);
  if (kinds::Has(both, kinds::kFromTimes)) return kinds::kNumberOfTime;
  return kinds::Has(both, kCounted) ? kinds::kCountOfTime : kinds::kNumber;
}

Kinds TimeAnalysis::KindsOfSum(const Expr& expr, Kinds left, Kinds right) {
  const bool bMinus = At(expr.operation).IsSymbol("-");
  const bool bLeft = kinds::Has(left, kinds::kTimes);
  const bool bRight = kinds::Has(right, kinds::kTimes);
  const bool bText = Inside(expr.children[0])->kind == ExprKind::String ||
                     Inside(expr.children[1])->kind == ExprKind::String;
  if (bText && (bLeft || bRight)) {
    Fail(expr.operation, "A time and a text are added",
         "write one time, such as '*-1h', and compare with that");
  }
  if (bLeft && bRight) {
    const bool bTimes = kinds::IsOnly(left | right, kinds::kTimes);
    return bMinus && bTimes ? kinds::kCountOfTime : kinds::kNumberOfTime;
  }
  if (bLeft || bRight) {
    const Kinds time = bLeft ? left : right;
    const Kinds other = bLeft ? right : left;
    const bool bMoved = kinds::IsOnly(time, kinds::kTimes) && !(bMinus && bRight) &&
                        !kinds::Has(other, kinds::kFromTimes);
    return bMoved ? kinds::kShifted : kinds::kNumberOfTime;
  }
  if (kinds::Has(left | right, kinds::kFromTimes)) return kinds::kNumberOfTime;
  if (kinds::Has(left | right, kCounted)) return kinds::kCountOfTime;
  return bText ? kinds::kCount : kinds::kNumber;
}

Kinds TimeAnalysis::KindsOfLike(const Expr& expr) {
  for (const auto* const child : expr.children) {
    if (kinds::Has(KindsOf(*child), kinds::kFromTimes)) {
      Fail(expr.operation, "A time is compared with a pattern",
           "compare it with times, as in Timestamp BETWEEN 'y' AND 't'");
    }
  }
  return kinds::kCount;
}

Kinds TimeAnalysis::KindsOfCase(const Expr& expr) {
  const std::size_t first = expr.bOperand ? 1 : 0;
  const std::size_t end = expr.children.size() - (expr.bElse ? 1 : 0);
  std::vector<Operand> operands;
  if (expr.bOperand) operands = OperandsOf(*expr.children[0]);
  for (std::size_t i = first; i + 1 < end; i += 2) {
    KindsOf(*expr.children[i]);
    if (expr.bOperand) operands.push_back({expr.children[i], nullptr, nullptr, 0, expr.operation});
  }
  if (expr.bOperand) Meet(operands, expr.operation);
  Kinds all = kinds::kNull;
  for (std::size_t i = first + 1; i < end; i += 2) all |= KindsOf(*expr.children[i]);
  if (expr.bElse) all |= KindsOf(*expr.children.back());
  return all;
}

Kinds TimeAnalysis::KindsOfCast(const Expr& expr) {
  const Kinds of = KindsOf(*expr.children[0]);
  if (IsTimeType(m_tree.tokens, expr.type)) {
    const Expr& value = *expr.children[0];
    Convert(value);
    // What is kept can call no function.
    if (m_place.sKept.empty() && kinds::Has(KindsOf(value), kinds::kShifted)) MakeWhole(value);
    return kinds::kTime;
  }
  Text sType;
  for (std::size_t i = expr.type.begin; i < expr.type.end; ++i)
    sType += UpperCase(At(i).sText) + " ";
  const auto has = [&](std::string_view sWord) { return sType.find(sWord) != Text::npos; };
  const bool bNumber = has("INT") || has("REAL") || has("FLOA") || has("DOUB") ||
                       sType.starts_with("NUM") || sType.starts_with("DEC");
  const bool bText = !has("INT") && (has("CHAR") || has("CLOB") || has("TEXT"));
  if (bNumber && of == kinds::kTextOfTime) {
    const Expr& inside = *Inside(expr.children[0]);
    const bool bDate =
        inside.kind == ExprKind::Call && UpperCase(At(inside.operation).sText) == "STRFTIME";
    if (bDate) return kinds::kCountOfTime;
  }
  if (!kinds::Has(of, kinds::kFromTimes) && bNumber && kinds::Has(of, kCounted)) {
    return kinds::kCountOfTime;
  }
  if (kinds::Has(of, kinds::kFromTimes | kinds::kCountOfTime)) {
    return bNumber ? kinds::kNumberOfTime : kinds::kTextOfTime;
  }
  if (bText) {
    const Kinds dates = of & (kinds::kUtcText | kinds::kWrittenTime | kinds::kZoneText);
    return dates != 0 ? dates : kinds::kAnyText;
  }
  return bNumber ? kinds::kNumber : kinds::kOther;
}

Kinds TimeAnalysis::KindsOfCall(const Expr& expr) {
  const Text sName = UpperCase(At(expr.operation).sText);
  Kinds all = kinds::kNull;
  for (const auto* const argument : expr.children) all |= KindsOf(*argument);
  for (const auto* const condition : expr.conditions) KindsOf(*condition);
  for (const auto* const sort : expr.sorts) LookAtSort(*sort, nullptr);
  const std::size_t nArguments = expr.children.size();
  const auto at = [&](std::size_t i) {
    return i < nArguments ? KindsOf(*expr.children[i]) : kinds::kNull;
  };
  // Values of a group are compared with one another.
  const bool bGroup = nArguments == 1 && (sName == "MIN" || sName == "MAX" || expr.bDistinct);
  if (bGroup && kinds::Mixes(at(0))) Convert(*expr.children[0]);

  if (((sName == "MIN" || sName == "MAX") && nArguments > 1) || sName == "NULLIF") {
    std::vector<Operand> operands;
    for (const auto* const argument : expr.children) {
      operands.push_back({argument, nullptr, nullptr, 0, argument->range.begin});
    }
    const Kinds met = Meet(operands, expr.operation);
    // The least and the greatest are found by comparing all with one another.
    for (std::size_t i = 1; !kinds::Has(met, kinds::kTimes) && i < operands.size(); ++i) {
      for (std::size_t j = i + 1; j < operands.size(); ++j) {
        Step();
        CheckPair(operands[i], operands[j], expr.operation);
      }
    }
    return met;
  }
  if (sName == "COALESCE" || sName == "IFNULL") return all;
  if (sName == "IIF" || sName == "IF") {
    Kinds chosen = kinds::kNull;
    for (const std::size_t i : ChosenByIif(nArguments)) chosen |= at(i);
    return chosen;
  }
  if (sName == "LAG" || sName == "LEAD") return at(0) | at(2);
  if (sName == "MIN" || sName == "MAX" || sName == "FIRST_VALUE" || sName == "LAST_VALUE" ||
      sName == "NTH_VALUE" || sName == "LIKELY" || sName == "UNLIKELY" || sName == "LIKELIHOOD") {
    return at(0);
  }
  if (sName == "LIKE" || sName == "GLOB" || sName == "REGEXP" || sName == "MATCH") {
    return KindsOfLike(expr);
  }
  if (IsOneOf(sName, kDateFunctions)) return KindsOfDate(expr, sName);
  if (IsOneOf(sName, kNumberFunctions)) return kinds::kCount;
  if (sName == "TYPEOF") return kinds::kAnyText;
  if (IsOneOf(sName, kCalculations)) {
    if (kinds::Has(all, kinds::kFromTimes)) return kinds::kNumberOfTime;
    return kinds::Has(all, kCounted) ? kinds::kCountOfTime : kinds::kNumber;
  }
  if (kinds::Has(all, kinds::kFromTimes | kinds::kCountOfTime)) return kinds::kTextOfTime;
  const Kinds dates = all & (kinds::kUtcText | kinds::kWrittenTime | kinds::kZoneText);
  return dates != 0 ? dates : kinds::kAnyText;
}

// A date function reads numbers as days: a stored time is handed to it in seconds.
Kinds TimeAnalysis::KindsOfDate(const Expr& expr, const Text& sFunction) {
  const std::size_t nValue = sFunction == "STRFTIME" ? 1 : 0;
  bool bZone = false;
  bool bOfTime = false;
  if (nValue < expr.children.size()) {
    const Expr& value = *expr.children[nValue];
    Kinds of = KindsOf(value);
    bOfTime = kinds::Has(of, kinds::kFromTimes | kCounted);
    bZone = kinds::Has(of, kinds::kZoneText);
    if (kinds::Has(of, kinds::kTimes)) {
      Convert(value);
      // Whole milliseconds, counted from the year 1 so that division rounds down, and no more: the
      // function would round to the nearest.
      m_place.edits.Wrap(value.range, "((",
                         ") + 62135596800000000) / 1000 / 1000.0 - 62135596800, 'unixepoch'");
    }
  }
  for (std::size_t i = nValue + 1; i < expr.children.size(); ++i) {
    if (!KeepsUtc(*expr.children[i])) bZone = true;
  }
  if (sFunction == "JULIANDAY" || sFunction == "UNIXEPOCH") {
    return bOfTime ? kinds::kCountOfTime : kinds::kCount;
  }
  if (sFunction == "STRFTIME" && bOfTime) {
    const Expr& format = *Inside(expr.children[0]);
    const bool bKnown = format.kind == ExprKind::String;
    if (!bKnown || WritesCount(At(format.range.begin).sText)) return kinds::kTextOfTime;
  }
  if (bZone) return bOfTime ? kinds::kZoneText | kinds::kWrittenTime : kinds::kZoneText;
  return bOfTime ? kinds::kWrittenTime : kinds::kUtcText;
}

// False for 'localtime' and 'utc', and for what may turn out to be one of them.
bool TimeAnalysis::KeepsUtc(const Expr& modifier) const {
  const Expr& inside = *Inside(&modifier);
  if (inside.kind == ExprKind::Arithmetic && At(inside.operation).IsSymbol("||")) {
    return std::any_of(inside.children.begin(), inside.children.end(), [&](const auto* child) {
      const Expr& part = *Inside(child);
      if (part.kind == ExprKind::Arithmetic) return KeepsUtc(part);
      return part.kind == ExprKind::String &&
             At(part.range.begin).sText.find_first_of("+-0123456789") != Text::npos;
    });
  }
  if (inside.kind != ExprKind::String) return false;
  const Text sText = UpperCase(At(inside.range.begin).sText);
  return sText.find("LOCALTIME") == Text::npos && sText.find("UTC") == Text::npos;
}

}  // namespace orvane::provider::dialect
