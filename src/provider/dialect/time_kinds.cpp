// What each expression is, from the bottom up.
#include "platform/failure.h"
#include "provider/dialect/time_analysis.h"

namespace orvane::provider::dialect {

using platform::Text;

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
  const Kinds kinds = Shaped(expr, Work(expr));
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
    case ExprKind::Time:
      return kinds::kTime;
    case ExprKind::CurrentTime:
      return At(expr.range.begin).IsWord("CURRENT_TIME") ? kinds::kUtcText | kinds::kPart
                                                         : kinds::kUtcText;
    case ExprKind::Name:
      return KindsOfName(expr);
    case ExprKind::Bracket:
      return KindsOf(*expr.children[0]);
    case ExprKind::Collate: {
      const Kinds of = KindsOf(*expr.children[0]);
      if (kinds::Has(of, kinds::kTimes | kinds::kDaysAndClocks)) DropOrder(expr);
      return of;
    }
    case ExprKind::Sign: {
      const Kinds of = KindsOf(*expr.children[0]);
      // A plus does nothing to whatever stands behind it.
      if (At(expr.operation).IsSymbol("+")) {
        if (kinds::Has(of, kinds::kTimes | kinds::kDaysAndClocks)) DropPlus(expr);
        return of;
      }
      if (kinds::Has(of, kinds::kDaysAndClocks)) return KindsOfDaySum(expr, of, kinds::kNumber);
      if (kinds::Has(of, kinds::kFromTimes)) return kinds::kNumberOfTime;
      if (kinds::Has(of, kinds::kCounted)) return kinds::Counted(of);
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
      const OutputColumns& columns = OutputOf(*expr.query);
      return columns.size() == 0 ? kinds::kOther : columns[0].kinds;
    }
    case ExprKind::Row: {
      Kinds all = kinds::kNull;
      for (const auto* const child : expr.children) all |= KindsOf(*child);
      return all;
    }
    case ExprKind::Compare:
    case ExprKind::Between: {
      const Token& token = At(expr.operation);
      const bool bSame = expr.kind == ExprKind::Compare && !token.IsSymbol("<") &&
                         !token.IsSymbol("<=") && !token.IsSymbol(">") && !token.IsSymbol(">=");
      MeetRows({expr.children.begin(), expr.children.end()}, expr.operation,
               bSame ? Comparison::Same : Comparison::Order);
      return kinds::kCount;
    }
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
  if (found.column != nullptr) {
    if (kinds::Has(found.column->kinds, kinds::kWrong)) {
      Fail(expr.range.begin,
           "The column \"" + found.column->sName + "\" compares times with something else",
           "leave it out");
    }
    return found.column->kinds;
  }
  if (found.alias != nullptr) {
    m_aliases.insert(found.alias->expr);
    return KindsOf(*found.alias->expr);
  }
  if (NumbersRows(expr.chain, expr.scope)) return kinds::kCount;
  // In quotes they are names.
  const Token& token = At(expr.chain.parts.back());
  if (expr.chain.parts.size() == 1 && (token.IsWord("TRUE") || token.IsWord("FALSE"))) {
    return kinds::kCount;
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
    // What a date function gave keeps its zone in a longer text.
    if (kinds::Has(both, kinds::kFromTimes | kinds::kCountOfTime)) return kinds::kTextOfTime;
    if (!token.IsSymbol("||")) return kinds::kAnyValue | kinds::Written(both);
    // How it begins, its left side tells.
    constexpr Kinds kFormat = kinds::kPart | kinds::kUnsorted;
    const Kinds dates = (kinds::Written(both) & ~kFormat) | (kinds::Written(left) & kFormat);
    return dates != 0 ? dates : kinds::kAnyText;
  }
  if (kinds::Has(both, kinds::kDaysAndClocks) &&
      !(Typed() != nullptr && kinds::Has(both, kinds::kFromTimes))) {
    return KindsOfDaySum(expr, left, right);
  }
  LookAtCounted(expr, *expr.children[0], right);
  LookAtCounted(expr, *expr.children[1], left);
  if (token.IsSymbol("+") || token.IsSymbol("-")) return KindsOfSum(expr, left, right);
  if (kinds::Has(both, kinds::kFromTimes)) return kinds::kNumberOfTime;
  return kinds::Has(both, kinds::kCounted) ? kinds::Counted(both) : kinds::kNumber;
}

Kinds TimeAnalysis::KindsOfSum(const Expr& expr, Kinds left, Kinds right) {
  const bool bMinus = At(expr.operation).IsSymbol("-");
  const bool bLeft = kinds::Has(left, kinds::kTimes);
  const bool bRight = kinds::Has(right, kinds::kTimes);
  const bool bText = Inside(expr.children[0])->kind == ExprKind::String ||
                     Inside(expr.children[1])->kind == ExprKind::String;
  if (bLeft && bRight) {
    if (!bMinus || !kinds::IsOnly(left | right, kinds::kTimes)) return kinds::kNumberOfTime;
    CountInUnit(expr, left | right);
    return kinds::kCountOfTime;
  }
  if (bLeft || bRight) {
    const Kinds time = bLeft ? left : right;
    const Kinds other = bLeft ? right : left;
    const bool bMoved = kinds::IsOnly(time, kinds::kTimes) && !(bMinus && bRight) &&
                        !kinds::Has(other, kinds::kFromTimes);
    if (bMoved && Typed() != nullptr) {
      const Expr& moved = *expr.children[bLeft ? 1 : 0];
      m_place.edits.Wrap(moved.range, "((", ")" + Text(Typed()->sMicroseconds) + ")");
    }
    return bMoved ? kinds::kShifted : kinds::kNumberOfTime;
  }
  if (kinds::Has(left | right, kinds::kFromTimes)) return kinds::kNumberOfTime;
  if (kinds::Has(left | right, kinds::kCounted)) return kinds::Counted(left | right);
  return bText ? kinds::kCount : kinds::kNumber;
}

// A connection that shows times as days counts what lies between two of them in days as well. What
// is kept counts the same for all connections.
void TimeAnalysis::CountInUnit(const Expr& difference, Kinds times) {
  if (Typed() != nullptr) {
    const Text sUnit = TimeAsDouble() && m_place.sKept.empty() ? " / 86400000000.0" : "::bigint";
    m_place.edits.Wrap(difference.range, "(" + Text(Typed()->sBetweenBefore),
                       Text(Typed()->sBetweenBehind) + sUnit + ")");
    return;
  }
  if (!TimeAsDouble() || !m_place.sKept.empty()) return;
  if (kinds::Has(times, kinds::kShifted)) FailShifted(difference.range.begin);
  m_place.edits.Wrap(difference.range, "((", ") / 86400000000.0)");
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
  if (expr.bOperand) Meet(operands, expr.operation, Comparison::Same);
  Kinds all = kinds::kNull;
  for (std::size_t i = first + 1; i < end; i += 2) all |= KindsOf(*expr.children[i]);
  if (expr.bElse) all |= KindsOf(*expr.children.back());
  return all;
}

Kinds TimeAnalysis::KindsOfCast(const Expr& expr) {
  const Kinds of = KindsOf(*expr.children[0]);
  const Kinds typed = KindsOfType(DeclaredType(m_place.sStatement, m_tree.tokens, expr.type));
  if (kinds::Has(typed, kinds::kDaysAndClocks)) return KindsOfDayCast(expr, MeantBy(typed));
  if (typed == kinds::kTime) {
    const Expr& value = *expr.children[0];
    // A text of its rows a server that knows types reads by itself.
    const bool bText = kinds::Has(of, kinds::kText) && Inside(&value)->kind != ExprKind::String;
    if (bText && Typed() != nullptr) return kinds::kTime;
    Convert(value);
    if (!kinds::Has(KindsOf(value), kinds::kShifted)) return kinds::kTime;
    // What is kept can call no function: what reads it makes it whole.
    if (!m_place.sKept.empty()) return kinds::kTime | kinds::kShifted;
    MakeWhole(value);
    return kinds::kTime;
  }
  Text sType;
  for (std::size_t i = expr.type.begin; i < expr.type.end; ++i)
    sType += UpperCase(At(i).sText) + " ";
  const auto has = [&](std::string_view sWord) { return sType.find(sWord) != Text::npos; };
  // In the order in which the engine looks for these words.
  const bool bText = !has("INT") && (has("CHAR") || has("CLOB") || has("TEXT"));
  const bool bBytes = !has("INT") && !bText && has("BLOB");
  const bool bNumber = !bText && !bBytes &&
                       (has("INT") || has("REAL") || has("FLOA") || has("DOUB") ||
                        sType.starts_with("NUM") || sType.starts_with("DEC"));
  if (bNumber && of == kinds::kTextOfTime) {
    const Expr& inside = *Inside(expr.children[0]);
    const bool bDate =
        inside.kind == ExprKind::Call && UpperCase(At(inside.operation).sText) == "STRFTIME";
    if (bDate) return kinds::Counted(of);
  }
  if (kinds::Has(of, kinds::kFromTimes)) {
    return bNumber ? kinds::kNumberOfTime : kinds::kTextOfTime;
  }
  const bool bOfDay = kinds::Has(of, kinds::kMadeOfDays);
  // To the engine a type that it does not know means a number as well.
  if (bNumber ? bOfDay || kinds::Has(of, kinds::kCounted) : bOfDay && !bText && !bBytes) {
    return kinds::Counted(of);
  }
  if (kinds::Has(of, kinds::kCountOfTime)) return kinds::kTextOfTime;
  // Bytes are greater than every text.
  if (bOfDay && bBytes) return kinds::kOther | kinds::kOfDay;
  if (bText) {
    const Kinds dates = kinds::Written(of);
    return dates != 0 ? dates : kinds::kAnyText;
  }
  return bNumber ? kinds::kNumber : kinds::kOther;
}

}  // namespace orvane::provider::dialect
