// Expressions: operators by how tightly they bind, and what they join.
#include <algorithm>
#include <array>

#include "provider/dialect/statement_reader.h"

namespace orvane::provider::dialect {

// From loose to tight.
enum class StatementReader::Level : std::uint8_t {
  None,
  Or,
  And,
  Not,
  Equal,
  Less,
  Escape,
  Bits,
  Plus,
  Times,
  Concat,
  Collate,
};

namespace {

template <std::size_t n>
bool IsSymbolOf(const Token& token, const std::array<std::string_view, n>& symbols) {
  return token.kind == TokenKind::Symbol &&
         std::find(symbols.begin(), symbols.end(), token.sText) != symbols.end();
}

constexpr std::array<std::string_view, 4> kEqual = {"=", "==", "<>", "!="};
constexpr std::array<std::string_view, 4> kLess = {"<", ">", "<=", ">="};
constexpr std::array<std::string_view, 4> kBits = {"&", "|", "<<", ">>"};
constexpr std::array<std::string_view, 2> kPlus = {"+", "-"};
constexpr std::array<std::string_view, 3> kTimes = {"*", "/", "%"};
constexpr std::array<std::string_view, 3> kConcat = {"||", "->", "->>"};

bool IsLike(const Token& token) {
  return token.IsWord("LIKE") || token.IsWord("GLOB") || token.IsWord("REGEXP") ||
         token.IsWord("MATCH");
}
bool TakesNot(const Token& token) {
  return IsLike(token) || token.IsWord("BETWEEN") || token.IsWord("IN") || token.IsWord("NULL");
}

}  // namespace

Expr* StatementReader::New(ExprKind kind, std::size_t begin, Scope* scope) {
  Expr& expr = m_tree.expressions.emplace_back();
  m_work.Step();
  expr.kind = kind;
  expr.nNumber = m_tree.expressions.size() - 1;
  expr.scope = scope;
  expr.range = {begin, m_i};
  return &expr;
}

// Its children are there and the reader stands behind it.
Expr* StatementReader::Done(Expr* expr) {
  expr->range.end = m_i;
  int nHighest = 0;
  for (const auto* const child : expr->children) {
    if (child != nullptr) nHighest = std::max(nHighest, child->nHeight);
  }
  if (expr->query != nullptr) nHighest = std::max(nHighest, expr->query->nHeight);
  // AND and OR grow by what stands at their side, as they do for the engine.
  expr->nHeight = std::max(expr->nHeight, nHighest) + 1;
  m_nHighest = std::max(m_nHighest, expr->nHeight);
  if (expr->nHeight > kMostOperators) {
    FailAt(m_sStatement, At(expr->operation).position, "Too many operators follow one another",
           "use at most 1,000, or a list such as IN (...)");
  }
  return expr;
}

Expr* StatementReader::ReadExpr(Scope* scope) {
  return ReadExpr(scope, Level::Or);
}

// What ends before AND.
Expr* StatementReader::ReadBound(Scope* scope) {
  return ReadExpr(scope, Level::Not);
}

StatementReader::Level StatementReader::LevelHere() const {
  const Token& token = Peek();
  if (token.kind == TokenKind::Symbol) {
    if (IsSymbolOf(token, kEqual)) return Level::Equal;
    if (IsSymbolOf(token, kLess)) return Level::Less;
    if (IsSymbolOf(token, kBits)) return Level::Bits;
    if (IsSymbolOf(token, kPlus)) return Level::Plus;
    if (IsSymbolOf(token, kTimes)) return Level::Times;
    if (IsSymbolOf(token, kConcat)) return Level::Concat;
    return Level::None;
  }
  if (token.kind != TokenKind::Word) return Level::None;
  if (token.IsWord("OR")) return Level::Or;
  if (token.IsWord("AND")) return Level::And;
  if (token.IsWord("NOT")) return TakesNot(Peek(1)) ? Level::Equal : Level::None;
  if (token.IsWord("IS") || token.IsWord("IN") || token.IsWord("BETWEEN") ||
      token.IsWord("ISNULL") || token.IsWord("NOTNULL") || IsLike(token)) {
    return Level::Equal;
  }
  return token.IsWord("COLLATE") ? Level::Collate : Level::None;
}

Expr* StatementReader::ReadExpr(Scope* scope, Level least) {
  const Deeper deeper(*this);
  Expr* left = ReadOperand(scope);
  for (;;) {
    const Level level = LevelHere();
    if (level == Level::None || level < least) return left;
    left = ReadBehind(left, scope, level);
  }
}

// The operator that stands here and what is at its right.
Expr* StatementReader::ReadBehind(Expr* left, Scope* scope, Level level) {
  const auto tighter = static_cast<Level>(static_cast<int>(level) + 1);
  const std::size_t operation = m_i;
  if (level == Level::Equal && Peek().kind == TokenKind::Word) return ReadNegatable(left, scope);
  ++m_i;
  if (level == Level::Or || level == Level::And) {
    Expr* const right = ReadExpr(scope, tighter);
    // A chain of one operator is one expression: however long, it is no deep tree.
    const bool bSame =
        left->kind == ExprKind::Logic && At(left->operation).sUpper == At(operation).sUpper;
    Expr* const logic = bSame ? left : New(ExprKind::Logic, left->range.begin, scope);
    if (!bSame) logic->children.push_back(left);
    logic->operation = operation;
    logic->children.push_back(right);
    return Done(logic);
  }
  ExprKind kind = ExprKind::Arithmetic;
  if (level == Level::Equal || level == Level::Less) kind = ExprKind::Compare;
  if (level == Level::Collate) kind = ExprKind::Collate;
  Expr* const expr = New(kind, left->range.begin, scope);
  expr->operation = operation;
  expr->children.push_back(left);
  if (kind == ExprKind::Collate) {
    ExpectName();
  } else {
    expr->children.push_back(ReadExpr(scope, tighter));
  }
  return Done(expr);
}

// IS, LIKE, BETWEEN, IN and tests for null.
Expr* StatementReader::ReadNegatable(Expr* left, Scope* scope) {
  const std::size_t begin = left->range.begin;
  const std::size_t operation = m_i;
  const auto make = [&](ExprKind kind) {
    Expr* const expr = New(kind, begin, scope);
    expr->operation = operation;
    expr->children.push_back(left);
    return expr;
  };
  if (TakeWord("ISNULL") || TakeWord("NOTNULL") || TakeWords({"NOT", "NULL"})) {
    return Done(make(ExprKind::NullTest));
  }
  if (TakeWord("IS")) {
    TakeWord("NOT");
    TakeWords({"DISTINCT", "FROM"});
    Expr* const expr = make(ExprKind::Compare);
    expr->children.push_back(ReadExpr(scope, Level::Less));
    return Done(expr);
  }
  TakeWord("NOT");
  if (TakeWord("BETWEEN")) {
    Expr* const expr = make(ExprKind::Between);
    expr->children.push_back(ReadBound(scope));
    Expect("AND");
    expr->children.push_back(ReadExpr(scope, Level::Less));
    return Done(expr);
  }
  if (IsAt("IN")) return ReadIn(make(ExprKind::In), scope);
  if (!IsLike(Peek())) FailUnexpected();
  ++m_i;
  Expr* const expr = make(ExprKind::Like);
  expr->children.push_back(ReadExpr(scope, Level::Less));
  if (TakeWord("ESCAPE")) expr->children.push_back(ReadExpr(scope, Level::Bits));
  return Done(expr);
}

Expr* StatementReader::ReadIn(Expr* in, Scope* scope) {
  Expect("IN");
  if (IsOpen() && StartsQuery(1)) {
    in->query = ReadBracketedQuery(scope);
  } else if (IsOpen()) {
    ++m_i;
    if (!Peek().IsSymbol(")")) {
      const auto elements = ReadList(scope);
      in->children.insert(in->children.end(), elements.begin(), elements.end());
    }
    ExpectSymbol(")");
  } else {
    // The whole of a table stands for its only column.
    Source& source = m_tree.sources.emplace_back();
    source.table = ReadTableName();
    source.scope = scope;
    m_query->tables.push_back(&source);
    if (IsOpen())
      FailHere("This function makes no table", "read catalog..table, as in Plant1..Data");
    in->table = &source;
  }
  return Done(in);
}

std::vector<Expr*> StatementReader::ReadList(Scope* scope) {
  std::vector<Expr*> list;
  do {
    list.push_back(ReadExpr(scope));
  } while (TakeSymbol(","));
  return list;
}

Expr* StatementReader::ReadOperand(Scope* scope) {
  const std::size_t begin = m_i;
  const Token& token = Peek();
  const auto prefixed = [&](ExprKind kind, Level level) {
    ++m_i;
    Expr* const expr = New(kind, begin, scope);
    expr->operation = begin;
    expr->children.push_back(ReadExpr(scope, level));
    return Done(expr);
  };
  const auto leaf = [&](ExprKind kind) {
    ++m_i;
    return New(kind, begin, scope);
  };
  switch (token.kind) {
    case TokenKind::Number:
      return leaf(ExprKind::Number);
    case TokenKind::String:
      return leaf(ExprKind::String);
    case TokenKind::Blob:
      return leaf(ExprKind::Blob);
    case TokenKind::Time:
      return leaf(ExprKind::Time);
    case TokenKind::Symbol:
      if (token.IsSymbol("(")) return ReadBracket(scope);
      if (token.IsSymbol("+") || token.IsSymbol("-") || token.IsSymbol("~")) {
        return prefixed(ExprKind::Sign, static_cast<Level>(static_cast<int>(Level::Collate) + 1));
      }
      FailUnexpected();
    case TokenKind::Word:
      break;
    case TokenKind::QuotedIdentifier:
      return ReadNameOrCall(scope);
    case TokenKind::Parameter:
      if (token.nParameter != 0) return leaf(ExprKind::Null);
      FailUnexpected();
    case TokenKind::End:
      FailUnexpected();
  }
  if (token.IsWord("NOT")) {
    if (!Peek(1).IsWord("EXISTS")) return prefixed(ExprKind::Not, Level::Not);
    ++m_i;
  }
  if (TakeWord("EXISTS")) {
    if (!IsOpen() || !StartsQuery(1)) FailUnexpected();
    Expr* const exists = New(ExprKind::Exists, begin, scope);
    exists->query = ReadBracketedQuery(scope);
    return Done(exists);
  }
  if (token.IsWord("NULL")) return leaf(ExprKind::Null);
  if (token.IsWord("CURRENT_TIMESTAMP") || token.IsWord("CURRENT_DATE") ||
      token.IsWord("CURRENT_TIME")) {
    return leaf(ExprKind::CurrentTime);
  }
  if (token.IsWord("CASE")) return ReadCase(scope);
  if (token.IsWord("CAST") && IsOpen(1)) return ReadCast(scope);
  return ReadNameOrCall(scope);
}

Expr* StatementReader::ReadBracket(Scope* scope) {
  const std::size_t begin = m_i;
  if (StartsQuery(1)) {
    Expr* const subquery = New(ExprKind::Subquery, begin, scope);
    subquery->query = ReadBracketedQuery(scope);
    return Done(subquery);
  }
  ++m_i;
  auto children = ReadList(scope);
  ExpectSymbol(")");
  Expr* const expr = New(children.size() == 1 ? ExprKind::Bracket : ExprKind::Row, begin, scope);
  expr->children = std::move(children);
  return Done(expr);
}

Expr* StatementReader::ReadCase(Scope* scope) {
  Expr* const expr = New(ExprKind::Case, m_i, scope);
  expr->operation = m_i++;
  if (!IsAt("WHEN")) {
    expr->bOperand = true;
    expr->children.push_back(ReadExpr(scope));
  }
  do {
    Expect("WHEN");
    expr->children.push_back(ReadExpr(scope));
    Expect("THEN");
    expr->children.push_back(ReadExpr(scope));
  } while (IsAt("WHEN"));
  if (TakeWord("ELSE")) {
    expr->bElse = true;
    expr->children.push_back(ReadExpr(scope));
  }
  Expect("END");
  return Done(expr);
}

}  // namespace orvane::provider::dialect
