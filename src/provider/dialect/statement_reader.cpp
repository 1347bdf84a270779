#include "provider/dialect/statement_reader.h"

#include <algorithm>
#include <array>
#include <utility>

#include "provider/engines/declared_types.h"

namespace orvane::provider::dialect {

using platform::Text;

namespace {

// What SQLite takes for a name although it has a meaning elsewhere is not among these.
constexpr std::array<std::string_view, 59> kReserved = {
    "ADD",         "ALL",          "ALTER",        "AND",        "AS",     "BETWEEN", "CASE",
    "CHECK",       "COLLATE",      "COMMIT",       "CONSTRAINT", "CREATE", "DEFAULT", "DEFERRABLE",
    "DELETE",      "DISTINCT",     "DROP",         "ELSE",       "ESCAPE", "EXCEPT",  "EXISTS",
    "FOREIGN",     "FROM",         "GROUP",        "HAVING",     "IN",     "INDEX",   "INSERT",
    "INTERSECT",   "INTO",         "IS",           "ISNULL",     "JOIN",   "LIMIT",   "NOT",
    "NOTHING",     "NOTNULL",      "NULL",         "ON",         "OR",     "ORDER",   "PRIMARY",
    "REFERENCES",  "RETURNING",    "SELECT",       "SET",        "TABLE",  "THEN",    "TO",
    "TRANSACTION", "UNION",        "UNIQUE",       "UPDATE",     "USING",  "VALUES",  "WHEN",
    "WHERE",       "CURRENT_DATE", "AUTOINCREMENT"};

}  // namespace

bool IsReserved(const Token& token) {
  return token.kind == TokenKind::Word &&
         std::find(kReserved.begin(), kReserved.end(), token.sUpper) != kReserved.end();
}

platform::DataType DeclaredType(std::string_view sStatement, const std::vector<Token>& tokens,
                                TokenRange type) {
  if (type.empty()) return platform::DataType::Empty;
  const Token& first = tokens[type.begin];
  const Token& last = tokens[type.end - 1];
  // As the engine keeps it: all of the text, of what stands in quotes what is within.
  const bool bQuoted = first.kind == TokenKind::QuotedIdentifier || first.kind == TokenKind::String;
  const std::string_view sDeclared =
      bQuoted ? std::string_view(first.sText)
              : sStatement.substr(first.position, last.position + last.length - first.position);
  return engines::TypeOfDeclaration(sDeclared);
}

StatementReader::StatementReader(std::string_view sStatement, std::vector<Token> tokens,
                                 StatementWork& work)
    : m_sStatement(sStatement), m_work(work) {
  m_tree.tokens = std::move(tokens);
  m_nEnd = m_tree.tokens.size() - 1;
  CheckTokens();
}

// The brackets are matched before anything is read, so that reading never goes deeper than they do.
void StatementReader::CheckTokens() {
  m_partners.resize(m_tree.tokens.size());
  std::vector<std::size_t> open;
  for (std::size_t i = 0; i < m_nEnd; ++i) {
    const Token& token = At(i);
    m_work.Step();
    if (token.IsSymbol("(")) {
      open.push_back(i);
    } else if (token.IsSymbol(")")) {
      if (open.empty()) {
        FailAt(m_sStatement, token.position, "A bracket closes that was never opened",
               "remove it or open it before");
      }
      m_partners[open.back()] = i;
      m_partners[i] = open.back();
      open.pop_back();
    }
  }
  if (!open.empty()) {
    FailAt(m_sStatement, At(open.back()).position, "A bracket is never closed", "close it with )");
  }
}

StatementTree StatementReader::Read() {
  if (TakeWord("EXPLAIN")) {
    m_tree.bExplain = true;
    TakeWords({"QUERY", "PLAN"});
  }
  m_query = &m_tree.whole;
  ReadMain();
  ExpectEnd();
  return std::move(m_tree);
}

bool StatementReader::StartsQuery(std::size_t nAhead) const {
  return Peek(nAhead).IsWord("SELECT") || Peek(nAhead).IsWord("WITH") ||
         Peek(nAhead).IsWord("VALUES");
}

bool StatementReader::TakeWord(std::string_view sWord) {
  if (!Peek().IsWord(sWord)) return false;
  ++m_i;
  return true;
}

// All of them or none.
bool StatementReader::TakeWords(std::initializer_list<std::string_view> words) {
  std::size_t nAhead = 0;
  for (const auto sWord : words) {
    if (!Peek(nAhead++).IsWord(sWord)) return false;
  }
  m_i += nAhead;
  return true;
}

bool StatementReader::TakeSymbol(std::string_view sSymbol) {
  if (!Peek().IsSymbol(sSymbol)) return false;
  ++m_i;
  return true;
}

void StatementReader::Expect(std::string_view sWord) {
  if (!TakeWord(sWord)) {
    FailHere(Text(sWord) + " is missing", "write " + Text(sWord) + " here");
  }
}

void StatementReader::ExpectSymbol(std::string_view sSymbol) {
  if (!TakeSymbol(sSymbol)) FailUnexpected();
}

std::size_t StatementReader::ExpectName() {
  if (!Peek().IsIdentifier() || IsReserved(Peek())) FailUnexpected();
  return m_i++;
}

void StatementReader::ExpectEnd() {
  if (Peek().kind != TokenKind::End) FailUnexpected();
}

void StatementReader::FailHere(const Text& sWhat, const Text& sAdvice) const {
  FailAt(m_sStatement, Peek().position, sWhat, sAdvice);
}

void StatementReader::FailUnexpected() const {
  const Token& token = Peek();
  if (token.kind == TokenKind::End) FailHere("The statement ends too early", "complete it");
  const Text sFound(m_sStatement.substr(token.position, std::min<std::size_t>(token.length, 40)));
  FailHere("\"" + sFound + "\" is not expected here", "correct the statement before or at it");
}

Scope* StatementReader::NewScope(Scope* parent) {
  m_tree.scopes.emplace_back().parent = parent;
  return &m_tree.scopes.back();
}

Chain StatementReader::ReadChain() {
  Chain chain;
  chain.range = {m_i, m_i};
  while (Peek().IsIdentifier()) {
    chain.parts.push_back(m_i++);
    chain.range.end = m_i;
    if (!TakeSymbol(".")) break;
    if (chain.parts.size() == 1 && TakeSymbol(".")) chain.bDoubleDot = true;
    if (TakeSymbol("*")) {
      chain.bStar = true;
      chain.range.end = m_i;
      break;
    }
    if (!Peek().IsIdentifier()) FailUnexpected();
  }
  return chain;
}

Chain StatementReader::ReadTableName() {
  const std::size_t begin = m_i;
  Chain chain;
  if (!IsReserved(Peek())) chain = ReadChain();
  if (chain.parts.empty() || chain.bStar) {
    m_i = begin;
    FailHere("The name of a table is missing", "write catalog..table, as in Plant1..Data");
  }
  if (chain.parts.size() > 2) {
    m_i = begin;
    FailHere("A name has too many parts", "write catalog..table, as in Plant1..Data");
  }
  return chain;
}

void StatementReader::AddReference(const Chain& chain, Scope* scope) {
  m_tree.references.push_back({chain, scope});
}

void StatementReader::ReadMain() {
  if (StartsQuery()) {
    Scope* scope = nullptr;
    if (IsAt("WITH")) {
      scope = NewScope(nullptr);
      ReadWith(scope);
    }
    if (StartsQuery()) {
      m_tree.mainQuery = ReadQuery(scope);
    } else {
      ReadChange(scope);
    }
  } else if (IsAt("CREATE") || IsAt("DROP") || IsAt("ALTER")) {
    ReadDefinition();
  } else {
    ReadChange(nullptr);
  }
}

void StatementReader::RefuseStatement() const {
  const Token& first = Peek();
  const auto isOneOf = [&](std::initializer_list<std::string_view> words) {
    return std::any_of(words.begin(), words.end(), [&](auto sWord) { return first.IsWord(sWord); });
  };
  if (isOneOf({"ATTACH", "DETACH"})) {
    FailHere(first.sUpper + " is not possible",
             "a catalog is reached by writing its name, as in Plant1..Data");
  }
  if (isOneOf({"PRAGMA", "VACUUM", "ANALYZE", "REINDEX"})) {
    FailHere(first.sUpper + " is not possible", "the historian does this work itself");
  }
  if (isOneOf({"BEGIN", "COMMIT", "END", "ROLLBACK", "SAVEPOINT", "RELEASE"})) {
    FailHere(first.sUpper + " is not possible", "every statement is a transaction of its own");
  }
  FailHere("No statement begins like this",
           "begin with SELECT, WITH, VALUES, INSERT, UPDATE, DELETE, CREATE, ALTER or DROP");
}

}  // namespace orvane::provider::dialect
