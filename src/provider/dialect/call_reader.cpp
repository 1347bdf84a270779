// Names, calls with their windows, casts and types.
#include "provider/dialect/statement_reader.h"

namespace orvane::provider::dialect {

Expr* StatementReader::ReadCast(Scope* scope) {
  Expr* const expr = New(ExprKind::Cast, m_i, scope);
  expr->operation = m_i;
  m_i += 2;
  expr->children.push_back(ReadExpr(scope));
  Expect("AS");
  expr->type = ReadType();
  ExpectSymbol(")");
  return Done(expr);
}

// Words, and numbers in brackets behind them; may be empty.
TokenRange StatementReader::ReadType() {
  TokenRange type{m_i, m_i};
  while (Peek().kind == TokenKind::String ||
         (Peek().IsIdentifier() && !IsReserved(Peek()) && !IsAt("GENERATED"))) {
    ++m_i;
  }
  if (m_i > type.begin && IsOpen()) m_i = m_partners[m_i] + 1;
  type.end = m_i;
  if (!type.empty()) m_tree.types.push_back(type);
  return type;
}

Expr* StatementReader::ReadNameOrCall(Scope* scope) {
  if (IsReserved(Peek())) FailUnexpected();
  const std::size_t begin = m_i;
  Expr* const expr = New(ExprKind::Name, begin, scope);
  expr->operation = begin;
  if (IsOpen(1)) {
    expr->kind = ExprKind::Call;
    ReadCall(expr, scope);
    return Done(expr);
  }
  expr->chain = ReadChain();
  if (expr->chain.bStar) FailUnexpected();
  AddReference(expr->chain, scope);
  return Done(expr);
}

void StatementReader::ReadCall(Expr* call, Scope* scope) {
  m_i += 2;
  if (TakeSymbol("*")) {
    // count(*)
  } else if (!Peek().IsSymbol(")")) {
    call->bDistinct = TakeWord("DISTINCT");
    if (!call->bDistinct) TakeWord("ALL");
    call->children = ReadList(scope);
    if (IsAt("ORDER")) ReadOrder(call->sorts, scope);
  }
  ExpectSymbol(")");
  if (IsAt("FILTER") && IsOpen(1)) {
    m_i += 2;
    Expect("WHERE");
    call->conditions.push_back(ReadExpr(scope));
    ExpectSymbol(")");
  }
  if (!IsAt("OVER")) return;
  if (IsOpen(1)) {
    m_i += 2;
    ReadWindow(call->sorts, call->conditions, scope);
    ExpectSymbol(")");
  } else if (Peek(1).IsIdentifier()) {
    m_i += 2;
  }
}

// What stands between the brackets behind OVER, or of a window that has a name.
void StatementReader::ReadWindow(std::vector<Expr*>& sorts, std::vector<Expr*>& conditions,
                                 Scope* scope) {
  if (Peek().IsIdentifier() && !IsReserved(Peek()) && !IsAt("PARTITION") && !IsAt("RANGE") &&
      !IsAt("ROWS") && !IsAt("GROUPS")) {
    ++m_i;
  }
  if (TakeWords({"PARTITION", "BY"})) {
    const auto parts = ReadList(scope);
    sorts.insert(sorts.end(), parts.begin(), parts.end());
  }
  if (IsAt("ORDER")) ReadOrder(sorts, scope);
  if (!TakeWord("RANGE") && !TakeWord("ROWS") && !TakeWord("GROUPS")) return;
  if (TakeWord("BETWEEN")) {
    ReadFrameBound(conditions, scope);
    Expect("AND");
  }
  ReadFrameBound(conditions, scope);
  if (TakeWord("EXCLUDE")) {
    if (!TakeWords({"NO", "OTHERS"}) && !TakeWords({"CURRENT", "ROW"}) && !TakeWord("GROUP") &&
        !TakeWord("TIES")) {
      FailUnexpected();
    }
  }
}

void StatementReader::ReadFrameBound(std::vector<Expr*>& conditions, Scope* scope) {
  if (TakeWords({"CURRENT", "ROW"})) return;
  if (!TakeWord("UNBOUNDED")) conditions.push_back(ReadBound(scope));
  if (!TakeWord("PRECEDING") && !TakeWord("FOLLOWING")) FailUnexpected();
}

}  // namespace orvane::provider::dialect
