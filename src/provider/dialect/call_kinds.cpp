// What each call of a function is, by its name and what it is given.
#include <algorithm>
#include <array>

#include "provider/dialect/time_analysis.h"
#include "provider/dialect/time_functions.h"

namespace orvane::provider::dialect {

using platform::Text;

namespace {

template <std::size_t n>
bool IsOneOf(std::string_view sName, const std::array<std::string_view, n>& names) {
  return std::find(names.begin(), names.end(), sName) != names.end();
}

constexpr std::array<std::string_view, 10> kCounts = {
    "RANDOM",  "ROW_NUMBER",   "RANK",      "DENSE_RANK", "NTILE",
    "CHANGES", "PERCENT_RANK", "CUME_DIST", "COUNT",      "TOTAL_CHANGES"};
constexpr std::array<std::string_view, 5> kMeasures = {"LENGTH", "INSTR", "UNICODE", "JSON_VALID",
                                                       "JSON_ARRAY_LENGTH"};
constexpr std::array<std::string_view, 19> kCalculations = {
    "SUM", "TOTAL", "AVG",  "ABS",  "ROUND", "CEIL", "CEILING", "FLOOR", "TRUNC", "MOD",
    "POW", "POWER", "SQRT", "SIGN", "EXP",   "LN",   "LOG",     "LOG10", "LOG2"};
constexpr std::array<std::string_view, 6> kDateFunctions = {"DATE",     "TIME",      "DATETIME",
                                                            "STRFTIME", "JULIANDAY", "UNIXEPOCH"};
// What gives texts, or null, whatever it is given; and what gives texts when it is given texts.
constexpr std::array<std::string_view, 15> kTextFunctions = {
    "LOWER", "UPPER", "TRIM", "LTRIM",        "RTRIM",      "REPLACE", "PRINTF",   "FORMAT",
    "HEX",   "QUOTE", "CHAR", "GROUP_CONCAT", "STRING_AGG", "CONCAT",  "CONCAT_WS"};
constexpr std::array<std::string_view, 2> kTextOfTextFunctions = {"SUBSTR", "SUBSTRING"};

// A text in which a number of days or seconds is written, not a date.
bool WritesCount(const Text& sFormat) {
  return sFormat.find("%s") != Text::npos || sFormat.find("%J") != Text::npos;
}

}  // namespace

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
  const bool bGroup =
      nArguments == 1 && (sName == "MIN" || sName == "MAX" || expr.bDistinct) && !IsLeft(at(0));
  if (bGroup && kinds::MixesDays(at(0)) && !kinds::Has(at(0), kinds::kTimes)) {
    Convert(*expr.children[0], MeantBy(at(0)));
  } else if (bGroup && kinds::Mixes(at(0))) {
    Convert(*expr.children[0]);
  } else if (bGroup && kinds::MayMix(at(0))) {
    GuardNumber({expr.children[0], nullptr, nullptr, 0, expr.children[0]->range.begin});
  }

  if (((sName == "MIN" || sName == "MAX") && nArguments > 1) || sName == "NULLIF") {
    std::vector<Operand> operands;
    for (const auto* const argument : expr.children) {
      operands.push_back({argument, nullptr, nullptr, 0, argument->range.begin});
    }
    const Comparison how = sName == "NULLIF" ? Comparison::Same : Comparison::Order;
    const Kinds met = Meet(operands, expr.operation, how);
    // The least and the greatest are found by comparing all with one another.
    if (!kinds::Has(met, kinds::kTimes | kinds::kDaysAndClocks)) {
      CheckMeeting(operands, expr.operation, how);
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
  if (IsOneOf(sName, kCounts)) return kinds::kCount;
  if (IsOneOf(sName, kMeasures)) {
    // One text is looked for in the other.
    if (sName == "INSTR") KindsOfLike(expr);
    constexpr Kinds kOfTimes = kinds::kFromTimes | kinds::kCounted | kinds::kDaysAndClocks;
    return kinds::Has(all, kOfTimes) ? kinds::Counted(all) : kinds::kCount;
  }
  if (sName == "TYPEOF") return kinds::kAnyText;
  if (IsOneOf(sName, kCalculations)) {
    if (kinds::Has(all, kinds::kDaysAndClocks)) {
      const Kinds counted = KindsOfDaySum(expr, all, kinds::kNumber);
      if (!kinds::Has(all, kinds::kFromTimes)) return counted;
    }
    if (kinds::Has(all, kinds::kFromTimes)) return kinds::kNumberOfTime;
    return kinds::Has(all, kinds::kCounted) ? kinds::Counted(all) : kinds::kNumber;
  }
  if (kinds::Has(all, kinds::kFromTimes | kinds::kCountOfTime)) return kinds::kTextOfTime;
  const bool bText = IsOneOf(sName, kTextFunctions);
  const Kinds dates = kinds::Written(all);
  if (dates == 0) return bText ? kinds::kAnyText : kinds::kAnyValue;
  if (IsOneOf(sName, kTextOfTextFunctions)) {
    // From its beginning on it begins as the text does, else as nobody can tell; unless its shape
    // is known.
    const bool bBegin = nArguments > 1 && NumberIn(*expr.children[1]) == 1;
    return bBegin ? dates : dates | kinds::kPart | kinds::kUnsorted;
  }
  if (!KeepsBeginning(expr, sName)) return dates | kinds::kUnsorted;
  return bText ? dates : dates | kinds::kAnyValue;
}

// False for what may write something else before the first text that it is given.
bool TimeAnalysis::KeepsBeginning(const Expr& expr, const Text& sFunction) {
  constexpr std::array<std::string_view, 4> kBefore = {"HEX", "QUOTE", "CHAR", "CONCAT_WS"};
  if (IsOneOf(sFunction, kBefore)) return false;
  if (sFunction == "CONCAT") {
    return kinds::Has(KindsOf(*expr.children[0]), kinds::kDates | kinds::kDaysAndClocks);
  }
  if (sFunction != "PRINTF" && sFunction != "FORMAT") return true;
  const Expr& format = *Inside(expr.children[0]);
  return format.kind == ExprKind::String && At(format.range.begin).sText.starts_with("%s");
}

// A date function reads numbers as days: a stored time is handed to it in seconds.
Kinds TimeAnalysis::KindsOfDate(const Expr& expr, const Text& sFunction) {
  const std::size_t nValue = sFunction == "STRFTIME" ? 1 : 0;
  bool bZone = false;
  Kinds of = kinds::kNull;
  if (nValue < expr.children.size()) {
    const Expr& value = *expr.children[nValue];
    of = KindsOf(value);
    bZone = kinds::Has(of, kinds::kZoneText);
    if (kinds::Has(of, kinds::kTimes) && Typed() == nullptr) {
      Convert(value);
      LookAtModifiers(expr, nValue + 1);
      // Whole milliseconds, counted from the year 1 so that division rounds down, and no more: the
      // function would round to the nearest.
      m_place.edits.Wrap(value.range, "((",
                         ") + 62135596800000000) / 1000 / 1000.0 - 62135596800, 'unixepoch'");
    }
  }
  for (std::size_t i = nValue + 1; i < expr.children.size(); ++i) {
    if (!KeepsUtc(*expr.children[i])) bZone = true;
  }
  const bool bOfTime = kinds::Has(of, kinds::kMadeOfTimes);
  const bool bOfDay = kinds::Has(of, kinds::kMadeOfDays);
  if (sFunction == "JULIANDAY" || sFunction == "UNIXEPOCH") {
    return bOfTime || bOfDay ? kinds::Counted(of) : kinds::kCount;
  }
  // What date() makes of a date is a date, and what time() makes of a time of day one.
  for (const Meant meant : {Meant::Day, Meant::Clock}) {
    if (of == KindsOf(meant) && IsSurely(expr, meant) && Typed() == nullptr) return of;
  }
  if (sFunction == "STRFTIME" && (bOfTime || bOfDay)) {
    const Expr& format = *Inside(expr.children[0]);
    const bool bKnown = format.kind == ExprKind::String;
    if (!bKnown || WritesCount(At(format.range.begin).sText)) {
      return bOfTime ? kinds::kTextOfTime : kinds::Written(kinds::kCountOfDay);
    }
  }
  Kinds kinds = bOfTime ? kinds::kWrittenTime : kinds::kUtcText;
  if (bZone) kinds = kinds::kZoneText | (kinds & kinds::kWrittenTime);
  if (bOfDay) kinds |= kinds::kOfDay;
  // Unless its shape is known.
  return kinds | kinds::kPart | kinds::kUnsorted;
}

// The engine gives null for all rows where it is told twice what a number means.
void TimeAnalysis::LookAtModifiers(const Expr& expr, std::size_t first) {
  for (std::size_t i = first; i < expr.children.size(); ++i) {
    const Expr& modifier = *Inside(expr.children[i]);
    if (modifier.kind == ExprKind::String) {
      const Text& sText = At(modifier.range.begin).sText;
      if (!TellsUnit(sText)) continue;
      Fail(modifier.range.begin,
           ShownText(sText) + " says what a number means, and a stored time is a time already",
           "leave it out");
    }
    if (KindsOf(modifier) == kinds::kNull || !m_place.sKept.empty()) continue;
    Guard(*expr.children[i], kOnlyModifier, kinds::kNull);
  }
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
