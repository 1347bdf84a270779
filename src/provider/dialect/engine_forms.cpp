#include "provider/dialect/engine_forms.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

#include "platform/exact_number.h"

namespace orvane::provider::dialect {

using platform::Text;

namespace {

// What an order is told of, out of its brackets.
const Expr& BehindOrder(const Expr& side) {
  const Expr* inner = &side;
  while (inner->kind == ExprKind::Collate || inner->kind == ExprKind::Bracket) {
    inner = inner->children.front();
  }
  return *inner;
}

bool IsBeyondDoubles(const Text& sNumber) {
  const auto digits = platform::ReadDigits(sNumber);
  if (!digits || digits->exponent < std::numeric_limits<double>::max_exponent10) return false;
  double dNumber = 0;
  const char* const end = sNumber.data() + sNumber.size();
  return std::from_chars(sNumber.data(), end, dNumber).ec == std::errc::result_out_of_range;
}

}  // namespace

void EngineForms::Write() {
  // What stands in another one first.
  for (auto expr = m_tree.expressions.rbegin(); expr != m_tree.expressions.rend(); ++expr) {
    WriteExpression(*expr);
  }
  if (m_tree.bIndex) WriteIndex();
  NameSubqueries();
  for (const TokenRange type : m_tree.types) WriteType(type);
  // Any named query may read itself.
  for (const std::size_t i : m_tree.plainWiths) m_edits.Replace({i, i + 1}, "WITH RECURSIVE");
  if (m_tree.bExplain && At(1).IsWord("QUERY") && At(2).IsWord("PLAN")) {
    m_edits.Replace({1, 3}, "");
  }
  if (!m_tree.storage.empty()) m_edits.Replace(m_tree.storage, "");
}

// Such a server wants a name for each subquery that stands among tables.
void EngineForms::NameSubqueries() {
  std::size_t n = 0;
  for (const Source& source : m_tree.sources) {
    ++n;
    if (source.query == nullptr || !source.sAlias.empty()) continue;
    // With the bracket that closes it.
    const TokenRange bracketed{source.query->range.begin, source.query->range.end + 1};
    m_edits.WrapAround(bracketed, "", " AS \"subquery " + std::to_string(n) + '"');
  }
}

// What is worked out stands in brackets among an index's columns.
void EngineForms::WriteIndex() {
  for (const Expr* const part : m_tree.changeScope->conditions) {
    if (part->kind == ExprKind::Name || part->kind == ExprKind::Collate) continue;
    m_edits.WrapAround(part->range, "(", ")");
  }
}

void EngineForms::WriteExpression(const Expr& expr) {
  const std::size_t operation = expr.operation;
  switch (expr.kind) {
    case ExprKind::Compare:
      return WriteCompare(expr);
    case ExprKind::NullTest:
      if (At(operation).IsWord("NOT")) m_edits.Replace({operation, operation + 2}, "IS NOT NULL");
      return;
    case ExprKind::Like:
      // Without regard to case.
      for (const std::size_t i : {operation, operation + 1}) {
        if (At(i).IsWord("LIKE")) return m_edits.Replace({i, i + 1}, "ILIKE");
      }
      return;
    case ExprKind::Collate:
      if (At(operation + 1).IsWord("BINARY")) {
        m_edits.Replace({operation + 1, operation + 2}, Text(m_form.sBinaryOrder));
      }
      return;
    case ExprKind::Blob: {
      if (At(expr.range.begin).nParameter != 0) return;
      // "x'" before the digits, "'" behind them.
      const Text& sToken = At(expr.range.begin).sText;
      const Text sBytes = sToken.substr(2, sToken.size() - 3);
      m_edits.Replace(expr.range, Text(m_form.sBytesBefore) + sBytes + Text(m_form.sBytesBehind));
      return;
    }
    case ExprKind::Cast:
      return WriteInfinity(expr);
    case ExprKind::Call:
      return WriteCall(expr);
    default:
      return;
  }
}

// CAST(-9e999 AS DOUBLE): the engine may refuse a number beyond all doubles.
void EngineForms::WriteInfinity(const Expr& cast) {
  const Expr* number = cast.children.front();
  while (number->kind == ExprKind::Bracket || number->kind == ExprKind::Sign) {
    number = number->children.front();
  }
  const bool bDouble = !cast.type.empty() && At(cast.type.begin).IsWord("DOUBLE");
  if (!bDouble || number->kind != ExprKind::Number) return;
  if (IsBeyondDoubles(At(number->range.begin).sText)) {
    m_edits.Replace(number->range, Text(m_form.sInfinity));
  }
}

void EngineForms::WriteCompare(const Expr& expr) {
  const std::size_t operation = expr.operation;
  const Token& token = At(operation);
  const bool bIs = token.IsWord("IS");
  if (token.IsSymbol("==")) m_edits.Replace({operation, operation + 1}, "=");
  if (bIs || token.IsSymbol("=") || token.IsSymbol("==") || token.IsSymbol("<>") ||
      token.IsSymbol("!=")) {
    // Types that are no texts have no such order.
    bool bBinary = false;
    for (const Expr* const side : expr.children) bBinary = DropBinaryOrder(*side) || bBinary;
    if (bBinary && IsOfColumn(expr)) return WriteSameBytes(expr);
  }
  if (!bIs) return;
  const bool bNot = At(operation + 1).IsWord("NOT");
  const std::size_t behind = operation + (bNot ? 2 : 1);
  if (At(behind).IsWord("DISTINCT") || IsWordBehindIs(behind)) return;
  m_edits.Replace({operation, behind}, bNot ? "IS DISTINCT FROM" : "IS NOT DISTINCT FROM");
}

bool EngineForms::IsWordBehindIs(std::size_t i) const {
  return At(i).IsWord("NULL") || At(i).IsWord("TRUE") || At(i).IsWord("FALSE");
}

// A column compared with a value or another column, where a subquery may stand.
bool EngineForms::IsOfColumn(const Expr& compare) const {
  if (m_form.sSameBytes.empty() || (m_tree.kind == StatementKind::Define && !m_tree.bView)) {
    return false;
  }
  bool bColumn = false;
  for (const Expr* side : compare.children) {
    side = &BehindOrder(*side);
    if (!side->children.empty() || side->query != nullptr || side->kind == ExprKind::Call) {
      return false;
    }
    bColumn = bColumn || side->kind == ExprKind::Name;
  }
  return bColumn;
}

void EngineForms::WriteSameBytes(const Expr& compare) {
  const std::size_t operation = compare.operation;
  const bool bIs = At(operation).IsWord("IS");
  bool bNot = At(operation).IsSymbol("<>") || At(operation).IsSymbol("!=");
  std::size_t behind = operation + 1;
  if (bIs) {
    if (At(behind).IsWord("NOT")) {
      bNot = true;
      ++behind;
    }
    if (At(behind).IsWord("DISTINCT")) {
      bNot = !bNot;
      behind += 2;
    }
    if (IsWordBehindIs(behind)) return;
  }
  const bool bColumn = BehindOrder(*compare.children.front()).kind == ExprKind::Name;
  const std::string_view sOfColumn = bIs ? m_form.sColumnSameBytesOrNull : m_form.sColumnSameBytes;
  const std::string_view sOfAny = bIs ? m_form.sSameBytesOrNull : m_form.sSameBytes;
  const std::string_view sForm = bColumn ? sOfColumn : sOfAny;
  const std::size_t nFirst = sForm.find("{}");
  const std::size_t nSecond = sForm.find("{}", nFirst + 2);
  m_edits.Replace({operation, behind}, Text(sForm.substr(nFirst + 2, nSecond - nFirst - 2)));
  m_edits.WrapAround(compare.range, (bNot ? "(NOT (" : "(") + Text(sForm.substr(0, nFirst)),
                     Text(sForm.substr(nSecond + 2)) + (bNot ? "))" : ")"));
}

bool EngineForms::DropBinaryOrder(const Expr& side) {
  if (side.kind != ExprKind::Collate || !At(side.operation + 1).IsWord("BINARY")) return false;
  m_edits.Replace({side.operation, side.operation + 2}, "");
  return true;
}

void EngineForms::WriteCall(const Expr& call) {
  const Text sName = UpperCase(At(call.operation).sText);
  for (const auto& form : m_form.calls) {
    if (form.sName == sName && form.nArguments == call.children.size()) {
      return WriteCall(call, form);
    }
  }
  if (call.children.size() > 1 && (sName == "MAX" || sName == "MIN")) {
    return WriteChoice(call, sName == "MAX" ? m_form.sGreatest : m_form.sLeast);
  }
  for (const auto& form : m_form.patterns) {
    if (form.sName == sName && !call.children.empty()) return WritePattern(call, form);
  }
}

void EngineForms::WriteCall(const Expr& call, const engines::CallForm& form) {
  const std::size_t name = call.operation;
  if (form.nArguments == 0) return m_edits.Replace({name, name + 3}, Text(form.sText));
  std::string_view sLeft = form.sText;
  const auto take = [&](std::string_view sEnd) {
    const std::size_t nEnd = std::min(sLeft.find(sEnd), sLeft.size());
    const Text sTaken(sLeft.substr(0, nEnd));
    sLeft.remove_prefix(std::min(nEnd + sEnd.size(), sLeft.size()));
    return sTaken;
  };
  // DISTINCT stays behind the bracket and before the argument.
  m_edits.Replace({name, name + 2}, take("(") + "(");
  Text sBefore = take("{}");
  for (std::size_t i = 0; i < call.children.size(); ++i) {
    const TokenRange argument = call.children[i]->range;
    const Text sBehind = take("{}");
    const bool bLast = i + 1 == call.children.size();
    m_edits.WrapAround(argument, sBefore, bLast ? sBehind : "");
    sBefore.clear();
    if (!bLast) m_edits.Replace({argument.end, argument.end + 1}, sBehind);
  }
  if (!form.sBefore.empty()) {
    m_edits.WrapAround(call.range, Text(form.sBefore), Text(form.sBehind));
  }
}

// Of several values the greatest or the least.
void EngineForms::WriteChoice(const Expr& call, std::string_view sForm) {
  Text sValues = "({})";
  for (std::size_t i = 1; i < call.children.size(); ++i) sValues += ", ({})";
  const std::size_t nPlace = sForm.find("{}");
  const Text sText = Text(sForm.substr(0, nPlace)) + sValues + Text(sForm.substr(nPlace + 2));
  WriteCall(call, {{}, call.children.size(), sText});
}

void EngineForms::WritePattern(const Expr& call, const engines::PatternForm& form) {
  const Expr& pattern = *call.children.front();
  const std::size_t nArguments = call.children.size() - 1;
  const auto pieces = pattern.kind == ExprKind::String
                          ? form.write(At(pattern.range.begin).sText, nArguments)
                          : std::nullopt;
  if (!pieces) {
    FailAt(m_sStatement, At(pattern.range.begin).position,
           "This server cannot write such a pattern",
           "write a text with %s, %d and %.2f for numbers, or %Y-%m-%d for times, and a value for "
           "each");
  }
  const TokenRange begin{call.operation, pattern.range.end + (nArguments > 0 ? 1 : 0)};
  m_edits.Replace(begin, pieces->front());
  for (std::size_t i = 1; i <= nArguments; ++i) {
    const TokenRange argument = call.children[i]->range;
    if (i == nArguments) {
      m_edits.WrapAround(argument, "", pieces->at(i));
    } else {
      m_edits.Replace({argument.end, argument.end + 1}, pieces->at(i));
    }
  }
}

void EngineForms::WriteType(TokenRange type) {
  Text sName;
  std::size_t end = type.begin;
  for (; end < type.end && !At(end).IsSymbol("("); ++end) {
    sName += (sName.empty() ? "" : " ") + UpperCase(At(end).sText);
  }
  const auto form = std::ranges::find(m_form.types, sName, &engines::TypeForm::sName);
  if (form == m_form.types.end()) return;
  m_edits.Replace({type.begin, form->bLength ? end : type.end}, Text(form->sText));
}

}  // namespace orvane::provider::dialect
