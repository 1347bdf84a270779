// How the texts are written that are made of times and dates, as far as that can be told: what a
// format writes goes on through functions, subqueries and names.
#include <algorithm>
#include <charconv>

#include "provider/dialect/time_analysis.h"

namespace orvane::provider::dialect {

using platform::Text;

namespace {

// Long enough for every format; what is longer is known by its beginning.
constexpr std::size_t kLongest = 100;

Text Replaced(Text sShape, const Text& sOld, const Text& sNew) {
  for (auto at = sShape.find(sOld); at != Text::npos; at = sShape.find(sOld, at + sNew.size())) {
    sShape.replace(at, sOld.size(), sNew);
    if (sShape.size() > kLongest) return {};
  }
  return sShape;
}

// Of the engine's, by a count from 1 or, when it is less, from the end.
Text PartOf(const Text& sShape, int nFirst, std::optional<int> length) {
  const auto nSize = static_cast<int>(sShape.size());
  if (nFirst < 0 && sShape.ends_with(kAnythingFollows)) return {};
  const int nBegin = nFirst > 0 ? nFirst - 1 : nSize + nFirst;
  if (nFirst == 0 || nBegin < 0 || nBegin >= nSize || (length && *length < 1)) return {};
  const auto begin = static_cast<std::size_t>(nBegin);
  // What may be anything tells nothing of how it begins.
  if (sShape[begin] == kAnythingFollows) return {};
  return length ? sShape.substr(begin, static_cast<std::size_t>(*length)) : sShape.substr(begin);
}

// As lower() and upper() make them; digits stay what they are.
Text InCase(Text sShape, bool bUpper) {
  for (char& c : sShape) {
    if (bUpper && c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    if (!bUpper && c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return sShape;
}

Text Trimmed(const Text& sShape, bool bLeft, bool bRight) {
  std::size_t nBegin = 0;
  std::size_t nEnd = sShape.size();
  while (bLeft && nBegin < nEnd && sShape[nBegin] == ' ') ++nBegin;
  while (bRight && nEnd > nBegin && sShape[nEnd - 1] == ' ') --nEnd;
  return sShape.substr(nBegin, nEnd - nBegin);
}

}  // namespace

// Remembers how the expression is written, by which it is known how such texts sort.
Kinds TimeAnalysis::Shaped(const Expr& expr, Kinds kinds) {
  if (!kinds::Has(kinds, kinds::kDates | kinds::kDaysAndClocks)) return kinds;
  Text sShape;
  if (kinds == kinds::kDay) {
    sShape = kDayShape;
  } else if (kinds == kinds::kClock) {
    sShape = kClockShape;
  } else if (!kinds::Has(kinds, kinds::kOther | kinds::kDaysAndClocks)) {
    sShape = MadeShape(expr);
  }
  if (sShape.empty()) return kinds;
  if (sShape.size() > kLongest) sShape = sShape.substr(0, kLongest) + kAnythingFollows;
  if (!kinds::Has(kinds, kinds::kDaysAndClocks)) {
    kinds &= static_cast<Kinds>(~(kinds::kPart | kinds::kUnsorted));
    if (!BeginsWithYear(sShape)) kinds |= kinds::kPart;
    if (!SortsAsTimes(sShape)) kinds |= kinds::kUnsorted;
  }
  m_shapes[expr.nNumber] = std::move(sShape);
  return kinds;
}

const Text& TimeAnalysis::ShapeOf(const Expr& expr) const {
  static const Text kUnknown;
  const auto known = m_shapes.find(expr.nNumber);
  return known != m_shapes.end() ? known->second : kUnknown;
}

Text TimeAnalysis::ShapeOf(const Operand& operand) {
  if (operand.expr != nullptr) return ShapeOf(*operand.expr);
  const OutputColumns& columns =
      operand.query != nullptr ? OutputOf(*operand.query) : ColumnsOf(*operand.table);
  return operand.column < columns.size() ? columns[operand.column].sShape : Text();
}

// Those that are known.
std::vector<Text> TimeAnalysis::ShapesOf(const std::vector<Operand>& operands) {
  std::vector<Text> shapes;
  for (const auto& operand : operands) {
    Text sShape = ShapeOf(operand);
    if (!sShape.empty()) shapes.push_back(std::move(sShape));
  }
  return shapes;
}

Text TimeAnalysis::MadeShape(const Expr& expr) {
  switch (expr.kind) {
    case ExprKind::CurrentTime:
      if (At(expr.range.begin).IsWord("CURRENT_TIME")) return ShapeOfFormat("%T");
      return ShapeOfFormat(At(expr.range.begin).IsWord("CURRENT_DATE") ? "%F" : "%F %T");
    case ExprKind::Name: {
      const Found found = Find(expr.chain, expr.scope);
      if (found.column != nullptr) return found.column->sShape;
      return found.alias != nullptr ? ShapeOf(*found.alias->expr) : Text();
    }
    case ExprKind::Bracket:
    case ExprKind::Collate:
    case ExprKind::Sign:
    case ExprKind::Cast:
      return ShapeOf(*expr.children[0]);
    case ExprKind::Subquery: {
      const OutputColumns& columns = OutputOf(*expr.query);
      return columns.size() == 0 ? Text() : columns[0].sShape;
    }
    case ExprKind::Case: {
      std::vector<const Expr*> results;
      const std::size_t end = expr.children.size() - (expr.bElse ? 1 : 0);
      for (std::size_t i = expr.bOperand ? 2 : 1; i < end; i += 2) {
        results.push_back(expr.children[i]);
      }
      if (expr.bElse) results.push_back(expr.children.back());
      return CommonShape(results);
    }
    case ExprKind::Arithmetic: {
      if (!At(expr.operation).IsSymbol("||")) return {};
      Text sShape = ShapeOfPart(*expr.children[0]);
      if (sShape.empty() || sShape.ends_with(kAnythingFollows)) return sShape;
      const Text sBehind = ShapeOfPart(*expr.children[1]);
      return sShape + (sBehind.empty() ? Text(1, kAnythingFollows) : sBehind);
    }
    case ExprKind::Call:
      return ShapeOfCall(expr);
    default:
      return {};
  }
}

// Of what a longer text is put together of.
Text TimeAnalysis::ShapeOfPart(const Expr& expr) const {
  const Expr& inside = *Inside(&expr);
  if (inside.kind != ExprKind::String) return ShapeOf(expr);
  return ShapeOfText(At(inside.range.begin).sText);
}

// Of which one comes out, whichever it is.
Text TimeAnalysis::CommonShape(const std::vector<const Expr*>& exprs) {
  std::optional<Text> common;
  for (const Expr* const expr : exprs) {
    if (KindsOf(*expr) == kinds::kNull) continue;
    const Text& sShape = ShapeOf(*expr);
    if (common && *common != sShape) return {};
    common = sShape;
  }
  return common.value_or(Text());
}

Text TimeAnalysis::ShapeOfCall(const Expr& expr) {
  const Text sName = UpperCase(At(expr.operation).sText);
  const auto is = [&](std::initializer_list<std::string_view> names) {
    return std::ranges::find(names, sName) != names.end();
  };
  const auto literal = [&](std::size_t i) -> const Text* {
    const Expr& inside = *Inside(expr.children[i]);
    return inside.kind == ExprKind::String ? &At(inside.range.begin).sText : nullptr;
  };
  const auto& arguments = expr.children;
  if (sName == "DATE") return Text(kDayShape);
  if (sName == "TIME") return ShapeOfFormat("%T");
  if (sName == "DATETIME") return ShapeOfFormat("%F %T");
  if (arguments.empty()) return {};
  if (sName == "STRFTIME") return literal(0) != nullptr ? ShapeOfFormat(*literal(0)) : Text();
  const Text& sFirst = ShapeOf(*arguments[0]);
  if (is({"COALESCE", "IFNULL"})) return CommonShape({arguments.begin(), arguments.end()});
  if (is({"MIN", "MAX"}) && arguments.size() > 1) {
    return CommonShape({arguments.begin(), arguments.end()});
  }
  if (is({"IIF", "IF"})) {
    std::vector<const Expr*> chosen;
    for (const std::size_t i : ChosenByIif(arguments.size())) chosen.push_back(arguments[i]);
    return CommonShape(chosen);
  }
  if (is({"LAG", "LEAD"}) && arguments.size() > 2) {
    return CommonShape({arguments[0], arguments[2]});
  }
  if (is({"MIN", "MAX", "FIRST_VALUE", "LAST_VALUE", "NTH_VALUE", "LAG", "LEAD", "LIKELY",
          "UNLIKELY", "LIKELIHOOD", "NULLIF"})) {
    return sFirst;
  }
  if (is({"LOWER", "UPPER"})) return InCase(sFirst, sName == "UPPER");
  if (is({"TRIM", "LTRIM", "RTRIM"}) && arguments.size() == 1) {
    return Trimmed(sFirst, sName != "RTRIM", sName != "LTRIM");
  }
  if (is({"SUBSTR", "SUBSTRING"}) && arguments.size() > 1) {
    const auto first = NumberIn(*arguments[1]);
    const auto length = arguments.size() > 2 ? NumberIn(*arguments[2]) : std::nullopt;
    if (!first || (arguments.size() > 2 && !length)) return {};
    return PartOf(sFirst, *first, length);
  }
  if (sName == "REPLACE" && arguments.size() > 2 && literal(1) != nullptr &&
      literal(2) != nullptr) {
    const Text sOld = ShapeOfText(*literal(1));
    const bool bDigit = sOld.find_first_of("0123456789") != Text::npos;
    if (sOld.empty() || bDigit || ShapeOfText(*literal(2)) != *literal(2)) return {};
    return Replaced(sFirst, sOld, *literal(2));
  }
  if (is({"PRINTF", "FORMAT"}) && arguments.size() == 2 && literal(0) != nullptr &&
      *literal(0) == "%s") {
    return ShapeOf(*arguments[1]);
  }
  return {};
}

// A whole number that is written out.
std::optional<int> TimeAnalysis::NumberIn(const Expr& expr) const {
  const Expr* inside = Inside(&expr);
  const bool bMinus = inside->kind == ExprKind::Sign && At(inside->operation).IsSymbol("-");
  if (bMinus) inside = Inside(inside->children[0]);
  if (inside->kind != ExprKind::Number) return std::nullopt;
  const Text& sNumber = At(inside->range.begin).sText;
  int nNumber = 0;
  const auto read = std::from_chars(sNumber.data(), sNumber.data() + sNumber.size(), nNumber);
  if (read.ec != std::errc() || read.ptr != sNumber.data() + sNumber.size()) return std::nullopt;
  return bMinus ? -nNumber : nNumber;
}

}  // namespace orvane::provider::dialect
