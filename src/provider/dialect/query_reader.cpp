// Queries: WITH, SELECT, VALUES, what joins them, and the tables they read.
#include <algorithm>
#include <array>
#include <utility>

#include "provider/dialect/statement_reader.h"

namespace orvane::provider::dialect {

using platform::Text;

namespace {

template <std::size_t n>
bool IsOneOf(const Token& token, const std::array<std::string_view, n>& words) {
  return token.kind == TokenKind::Word &&
         std::find(words.begin(), words.end(), token.sUpper) != words.end();
}

constexpr std::array<std::string_view, 7> kJoinWords = {"NATURAL", "LEFT",  "RIGHT", "FULL",
                                                        "INNER",   "OUTER", "CROSS"};

}  // namespace

void StatementReader::ReadWith(Scope* scope) {
  const std::size_t with = m_i;
  Expect("WITH");
  if (!TakeWord("RECURSIVE")) m_tree.plainWiths.push_back(with);
  // Each may read the others and itself: all names first.
  std::vector<std::size_t> places;
  do {
    NamedQuery named;
    if (!Peek().IsIdentifier() || IsReserved(Peek())) {
      FailHere("A name is missing", "write WITH name AS (SELECT ...)");
    }
    named.sName = Peek().sText;
    m_tree.names.push_back(m_i++);
    if (TakeSymbol("(")) {
      do {
        m_tree.names.push_back(m_i);
        named.columns.push_back(At(ExpectName()).sText);
      } while (TakeSymbol(","));
      ExpectSymbol(")");
    }
    if (!TakeWord("AS")) FailHere("A query is missing", "write WITH name AS (SELECT ...)");
    if (!TakeWord("MATERIALIZED")) TakeWords({"NOT", "MATERIALIZED"});
    if (!IsOpen() || !StartsQuery(1)) {
      FailHere("A query is missing", "write WITH name AS (SELECT ...)");
    }
    if (places.size() == 200) FailHere("There are too many named queries", "use fewer of them");
    scope->namedQueries.push_back(std::move(named));
    places.push_back(m_i);
    m_i = m_partners[m_i] + 1;
  } while (TakeSymbol(","));
  const std::size_t behind = m_i;
  // They count where they are read, not where they stand.
  Query* const outer = std::exchange(m_query, nullptr);
  Scope* const within = NewScope(scope);
  within->bClosed = true;
  for (std::size_t i = 0; i < places.size(); ++i) {
    m_i = places[i];
    Query* const query = ReadBracketedQuery(within);
    scope->namedQueries[i].query = query;
  }
  m_i = behind;
  m_query = outer;
}

Query* StatementReader::ReadBracketedQuery(Scope* parent) {
  ExpectSymbol("(");
  Query* const query = ReadQuery(parent);
  ExpectSymbol(")");
  return query;
}

Query* StatementReader::ReadQuery(Scope* parent) {
  const Deeper deeper(*this);
  Query* const query = &m_tree.queries.emplace_back();
  query->range.begin = m_i;
  if (m_query != nullptr) m_query->inner.push_back(query);
  Query* const outer = std::exchange(m_query, query);
  const int nOuterHighest = std::exchange(m_nHighest, 0);
  if (IsAt("WITH")) {
    parent = NewScope(parent);
    ReadWith(parent);
  }
  for (;;) {
    Scope* const scope = NewScope(parent);
    query->cores.push_back(scope);
    ReadCore(scope);
    if (TakeWord("UNION")) {
      if (!TakeWord("ALL")) query->bCompares = true;
    } else if (TakeWord("INTERSECT") || TakeWord("EXCEPT")) {
      query->bCompares = true;
    } else {
      break;
    }
  }
  Scope* const first = query->cores.front();
  if (IsAt("ORDER")) ReadOrder(query->sorts, first);
  ReadLimit(first);
  query->range.end = m_i;
  query->nHeight = m_nHighest;
  m_nHighest = std::max(m_nHighest, nOuterHighest);
  m_query = outer;
  return query;
}

void StatementReader::ReadCore(Scope* scope) {
  if (TakeWord("VALUES")) {
    do {
      ExpectSymbol("(");
      scope->rows.push_back(ReadList(scope));
      if (scope->rows.back().size() != scope->rows.front().size()) {
        FailHere("The rows of VALUES differ in length", "give all of them as many values");
      }
      ExpectSymbol(")");
    } while (TakeSymbol(","));
    return;
  }
  Expect("SELECT");
  scope->bDistinct = TakeWord("DISTINCT");
  if (!scope->bDistinct) TakeWord("ALL");
  ReadItems(scope);
  if (TakeWord("FROM")) ReadFrom(scope);
  ReadSelectClauses(scope);
}

void StatementReader::ReadItems(Scope* scope) {
  do {
    Item item;
    item.range.begin = m_i;
    if (TakeSymbol("*")) {
      item.star.bStar = true;
    } else {
      // A star behind a name ends the item.
      const std::size_t begin = m_i;
      if (Peek().IsIdentifier() && Peek(1).IsSymbol(".")) item.star = ReadChain();
      if (item.star.bStar) {
        AddReference(item.star, scope);
      } else {
        item.star = {};
        m_i = begin;
        item.expr = ReadExpr(scope);
      }
    }
    item.range.end = m_i;
    if (item.expr != nullptr) {
      if (TakeWord("AS")) {
        if (Peek().kind != TokenKind::String && !Peek().IsIdentifier()) FailUnexpected();
        item.sAlias = Peek().sText;
        m_tree.names.push_back(m_i++);
      } else if (IsBareAlias()) {
        item.sAlias = Peek().sText;
        m_tree.names.push_back(m_i++);
      }
    }
    scope->items.push_back(std::move(item));
  } while (TakeSymbol(","));
}

// A name without AS, which no word that goes on with the statement is.
bool StatementReader::IsBareAlias() const {
  const Token& token = Peek();
  if (token.kind == TokenKind::String) return true;
  if (!token.IsIdentifier() || IsReserved(token) || IsOneOf(token, kJoinWords)) return false;
  if (token.IsWord("INDEXED")) return false;
  return !(token.IsWord("WINDOW") && Peek(1).IsIdentifier());
}

void StatementReader::ReadSelectClauses(Scope* scope) {
  if (TakeWord("WHERE")) scope->conditions.push_back(ReadExpr(scope));
  if (TakeWords({"GROUP", "BY"})) {
    scope->bGroups = true;
    const auto groups = ReadList(scope);
    scope->sorts.insert(scope->sorts.end(), groups.begin(), groups.end());
  }
  if (TakeWord("HAVING")) {
    scope->bGroups = true;
    scope->conditions.push_back(ReadExpr(scope));
  }
  if (!TakeWord("WINDOW")) return;
  do {
    ExpectName();
    Expect("AS");
    ExpectSymbol("(");
    ReadWindow(scope->sorts, scope->conditions, scope);
    ExpectSymbol(")");
  } while (TakeSymbol(","));
}

void StatementReader::ReadOrder(std::vector<Expr*>& sorts, Scope* scope) {
  Expect("ORDER");
  Expect("BY");
  do {
    sorts.push_back(ReadExpr(scope));
    if (!TakeWord("ASC")) TakeWord("DESC");
    if (TakeWord("NULLS") && !TakeWord("FIRST")) Expect("LAST");
  } while (TakeSymbol(","));
}

void StatementReader::ReadLimit(Scope* scope) {
  if (!TakeWord("LIMIT")) return;
  scope->conditions.push_back(ReadExpr(scope));
  if (TakeWord("OFFSET") || TakeSymbol(",")) scope->conditions.push_back(ReadExpr(scope));
}

// --- the tables ---

Source& StatementReader::AddSource(Scope* scope) {
  if (scope->sources.size() >= kMostTables) {
    FailHere("Too many tables are joined", "join at most 64, or use subqueries");
  }
  Source& source = m_tree.sources.emplace_back();
  source.scope = scope;
  scope->sources.push_back(&source);
  return source;
}

void StatementReader::ReadFrom(Scope* scope) {
  const Deeper deeper(*this);
  const std::size_t firstBeside = scope->sources.size();
  bool bNatural = false;
  for (;;) {
    const std::size_t nBefore = scope->sources.size();
    ReadSource(scope, bNatural);
    if (bNatural) scope->sources.back()->firstBeside = firstBeside;
    ReadJoinCondition(scope, firstBeside, nBefore);
    bNatural = false;
    if (TakeSymbol(",")) continue;
    if (!IsOneOf(Peek(), kJoinWords) && !IsAt("JOIN")) return;
    while (IsOneOf(Peek(), kJoinWords)) {
      if (IsAt("NATURAL")) bNatural = true;
      ++m_i;
    }
    Expect("JOIN");
  }
}

void StatementReader::ReadSource(Scope* scope, bool bNatural) {
  if (IsOpen() && !StartsQuery(1)) {
    if (bNatural) FailHere("A bracket of tables is joined by NATURAL", "join by USING or ON");
    ++m_i;
    ReadFrom(scope);
    ExpectSymbol(")");
    if (IsAt("AS") || IsBareAlias()) {
      FailHere("A bracket of tables has a name", "name the tables in it");
    }
    return;
  }
  Source& source = AddSource(scope);
  source.bNatural = bNatural;
  if (IsOpen()) {
    // It does not see the tables beside it.
    source.query = ReadBracketedQuery(scope->parent);
  } else {
    source.table = ReadTableName();
    m_query->tables.push_back(&source);
    if (IsOpen()) {
      const Text& sName = At(source.table.parts.back()).sText;
      if (source.table.parts.size() != 1 ||
          !(SameName(sName, "json_each") || SameName(sName, "json_tree") ||
            SameName(sName, "generate_series"))) {
        m_i = source.table.range.begin;
        FailHere("This function makes no table", "read catalog..table, as in Plant1..Data");
      }
      source.bFunction = true;
      ++m_i;
      if (!Peek().IsSymbol(")")) source.arguments = ReadList(scope);
      ExpectSymbol(")");
    }
  }
  if (TakeWord("AS")) {
    if (Peek().kind != TokenKind::String && !Peek().IsIdentifier()) FailUnexpected();
    source.sAlias = Peek().sText;
    m_tree.names.push_back(m_i++);
  } else if (IsBareAlias()) {
    source.sAlias = Peek().sText;
    m_tree.names.push_back(m_i++);
  }
  if (TakeWords({"INDEXED", "BY"})) {
    ExpectName();
  } else {
    TakeWords({"NOT", "INDEXED"});
  }
}

void StatementReader::ReadJoinCondition(Scope* scope, std::size_t firstBeside,
                                        std::size_t firstSource) {
  if (TakeWord("USING")) {
    ExpectSymbol("(");
    do {
      const std::size_t name = ExpectName();
      // Behind a bracket of tables any of them may be meant.
      for (std::size_t i = firstSource; i < scope->sources.size(); ++i) {
        scope->sources[i]->usedNames.push_back({name, firstBeside, firstSource});
      }
    } while (TakeSymbol(","));
    ExpectSymbol(")");
  } else if (IsAt("ON") && !Peek(1).IsWord("CONFLICT")) {
    ++m_i;
    scope->conditions.push_back(ReadExpr(scope));
  }
}

}  // namespace orvane::provider::dialect
