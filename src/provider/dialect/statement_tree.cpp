#include "provider/dialect/statement_tree.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/failure.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

template <std::size_t n>
bool IsOneOf(const Token& token, const std::array<std::string_view, n>& words) {
  return token.kind == TokenKind::Word &&
         std::find(words.begin(), words.end(), token.sUpper) != words.end();
}

constexpr std::array<std::string_view, 8> kClauses = {"WHERE", "GROUP", "HAVING",    "ORDER",
                                                      "LIMIT", "SET",   "RETURNING", "WINDOW"};
constexpr std::array<std::string_view, 8> kJoins = {"NATURAL", "LEFT",  "RIGHT", "FULL",
                                                    "INNER",   "OUTER", "CROSS", "JOIN"};
constexpr std::array<std::string_view, 3> kCompounds = {"UNION", "INTERSECT", "EXCEPT"};
// Words that a bracket can follow without being the arguments of a function of that name.
constexpr std::array<std::string_view, 32> kOperatorWords = {
    "AND",    "OR",       "NOT",       "IN",     "IS",     "LIKE",  "GLOB", "REGEXP",
    "MATCH",  "ESCAPE",   "BETWEEN",   "WHEN",   "THEN",   "ELSE",  "CASE", "BY",
    "SELECT", "DISTINCT", "ALL",       "WHERE",  "HAVING", "ON",    "SET",  "VALUES",
    "LIMIT",  "OFFSET",   "RETURNING", "EXISTS", "FROM",   "USING", "END",  "COLLATE"};
constexpr std::array<std::string_view, 12> kArithmetic = {"||", "+", "-",  "*",  "/",  "%",
                                                          "&",  "|", "<<", ">>", "->", "->>"};
constexpr std::array<std::string_view, 8> kComparisons = {
    "=", "==", "<>", "!=", "<", ">", "<=", ">="};
// Functions that make tables and that a statement may read.
constexpr std::array<std::string_view, 3> kTableFunctions = {"JSON_EACH", "JSON_TREE",
                                                             "GENERATE_SERIES"};

Text UpperCase(Text sText) {
  std::transform(sText.begin(), sText.end(), sText.begin(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
  });
  return sText;
}

class StatementReader {
 public:
  StatementReader(std::string_view sStatement, std::vector<Token> tokens)
      : m_sStatement(sStatement) {
    m_tree.tokens = std::move(tokens);
    m_brackets = MatchBrackets(sStatement, m_tree.tokens);
    m_nEnd = m_tree.tokens.size() - 1;
  }

  StatementTree Read() {
    CheckFunctions();
    std::size_t i = 0;
    if (At(i).IsWord("EXPLAIN")) {
      m_tree.bExplain = true;
      ++i;
      if (At(i).IsWord("QUERY") && At(i + 1).IsWord("PLAN")) i += 2;
    }
    ReadMain(i);
    return std::move(m_tree);
  }

 private:
  const Token& At(std::size_t i) const { return m_tree.tokens[std::min(i, m_nEnd)]; }
  bool IsOpen(std::size_t i) const { return At(i).IsSymbol("("); }
  /// Behind the bracket that opens at i.
  std::size_t Behind(std::size_t i) const { return m_brackets[i] + 1; }
  [[noreturn]] void Fail(std::size_t i, const Text& sWhat, const Text& sAdvice) const {
    FailAt(m_sStatement, At(i).position, sWhat, sAdvice);
  }
  bool StartsQuery(std::size_t i) const {
    return At(i).IsWord("SELECT") || At(i).IsWord("WITH") || At(i).IsWord("VALUES");
  }

  Scope* NewScope(Scope* parent) {
    m_tree.scopes.emplace_back().parent = parent;
    return &m_tree.scopes.back();
  }

  // These reach what is not named as a catalog, or load code.
  void CheckFunctions() const {
    for (std::size_t i = 0; i < m_nEnd; ++i) {
      if (!At(i).IsIdentifier()) continue;
      const Text sName = UpperCase(At(i).sText);
      if (sName == "LOAD_EXTENSION" || sName.starts_with("PRAGMA_") ||
          sName.starts_with("SQLITE_DBPAGE") || sName == "FTS3_TOKENIZER") {
        Fail(i, At(i).sText + " is not available to statements", "leave it out");
      }
    }
  }

  void ReadMain(std::size_t i) {
    const Token& first = At(i);
    if (StartsQuery(i)) {
      Scope* scope = nullptr;
      std::size_t main = i;
      if (first.IsWord("WITH")) {
        scope = NewScope(nullptr);
        main = ReadWith(i, m_nEnd, scope);
      }
      if (StartsQuery(main)) {
        m_tree.mainQuery = ReadQuery({main, m_nEnd}, scope);
      } else {
        ReadChange(main, scope);
      }
    } else if (first.IsWord("CREATE") || first.IsWord("DROP") || first.IsWord("ALTER")) {
      ReadDefinition(i);
    } else {
      ReadChange(i, nullptr);
    }
  }

  void ReadChange(std::size_t i, Scope* parent) {
    m_tree.kind = StatementKind::Change;
    const Token& first = At(i);
    Scope* const scope = NewScope(parent);
    if (first.IsWord("INSERT") || first.IsWord("REPLACE")) {
      ReadInsert(i + 1, scope);
    } else if (first.IsWord("UPDATE")) {
      ReadUpdate(i + 1, scope);
    } else if (first.IsWord("DELETE")) {
      if (!At(i + 1).IsWord("FROM")) Fail(i + 1, "FROM is missing", "write DELETE FROM");
      ReadExpressions({ReadTarget(i + 2, scope), m_nEnd}, scope);
    } else {
      RefuseStatement(i);
    }
  }

  [[noreturn]] void RefuseStatement(std::size_t i) const {
    const Token& first = At(i);
    if (first.IsWord("ATTACH") || first.IsWord("DETACH")) {
      Fail(i, first.sUpper + " is not possible",
           "a catalog is reached by writing its name, as in Plant1..Data");
    }
    if (first.IsWord("PRAGMA") || first.IsWord("VACUUM") || first.IsWord("ANALYZE") ||
        first.IsWord("REINDEX")) {
      Fail(i, first.sUpper + " is not possible", "the historian does this work itself");
    }
    if (first.IsWord("BEGIN") || first.IsWord("COMMIT") || first.IsWord("END") ||
        first.IsWord("ROLLBACK") || first.IsWord("SAVEPOINT") || first.IsWord("RELEASE")) {
      Fail(i, first.sUpper + " is not possible", "every statement is a transaction of its own");
    }
    Fail(i, "No statement begins like this",
         "begin with SELECT, WITH, VALUES, INSERT, UPDATE, DELETE, CREATE, ALTER or DROP");
  }

  // --- names ---

  Chain ReadTableName(std::size_t i) const {
    Chain chain = ReadChain(m_tree.tokens, i);
    if (chain.parts.empty() || chain.bStar) {
      Fail(i, "The name of a table is missing", "write catalog..table, as in Plant1..Data");
    }
    if (chain.parts.size() > 2) {
      Fail(i, "A name has too many parts", "write catalog..table, as in Plant1..Data");
    }
    return chain;
  }

  std::size_t ReadTarget(std::size_t i, Scope* scope) {
    m_tree.target = ReadTableName(i);
    i = m_tree.target->range.end;
    Source& source = AddSource(scope);
    source.table = *m_tree.target;
    source.bTarget = true;
    m_tree.targetSource = &source;
    if (At(i).IsWord("AS") && At(i + 1).IsIdentifier()) {
      source.sAlias = At(i + 1).sText;
      i += 2;
    }
    return i;
  }

  Source& AddSource(Scope* scope) {
    Source& source = m_tree.sources.emplace_back();
    source.scope = scope;
    scope->sources.push_back(&source);
    return source;
  }

  // --- statements that change a table ---

  std::size_t SkipConflictRule(std::size_t i) const { return At(i).IsWord("OR") ? i + 2 : i; }

  void ReadInsert(std::size_t i, Scope* scope) {
    i = SkipConflictRule(i);
    if (!At(i).IsWord("INTO")) Fail(i, "INTO is missing", "write INSERT INTO");
    i = ReadTarget(i + 1, scope);
    if (IsOpen(i) && !StartsQuery(i + 1)) {
      for (const auto& column : Split({i + 1, m_brackets[i]})) {
        if (column.end - column.begin != 1 || !At(column.begin).IsIdentifier()) {
          Fail(column.begin, "The name of a column is missing", "list names of columns only");
        }
        m_tree.targetColumns.push_back(At(column.begin).sText);
        AddReference(ReadChain(m_tree.tokens, column.begin), scope);
      }
      i = Behind(i);
    }
    if (At(i).IsWord("VALUES")) {
      i = ReadRows(i + 1, scope);
    } else if (StartsQuery(i)) {
      const std::size_t end = EndOfInsertedQuery(i);
      const Query* const query = ReadQuery({i, end}, scope->parent);
      for (const auto* const core : query->cores) AddAssignments(core->items);
      i = end;
    }
    ReadExpressions({i, m_nEnd}, scope);
  }

  std::size_t ReadRows(std::size_t i, Scope* scope) {
    while (IsOpen(i)) {
      const TokenRange row{i + 1, m_brackets[i]};
      AddAssignments(Split(row));
      ReadExpressions(row, scope);
      i = Behind(i);
      if (!At(i).IsSymbol(",")) break;
      ++i;
    }
    return i;
  }

  void AddAssignments(const std::vector<TokenRange>& values) {
    for (std::size_t column = 0; column < values.size(); ++column) {
      m_tree.assignments.push_back({values[column], column});
    }
  }

  std::size_t EndOfInsertedQuery(std::size_t i) const {
    for (; i < m_nEnd; ++i) {
      if (IsOpen(i)) i = m_brackets[i];
      if (At(i).IsWord("RETURNING")) return i;
      if (At(i).IsWord("ON") && At(i + 1).IsWord("CONFLICT")) return i;
    }
    return i;
  }

  void ReadUpdate(std::size_t i, Scope* scope) {
    i = ReadTarget(SkipConflictRule(i), scope);
    const std::size_t from = FindClause({i, m_nEnd}, "FROM");
    ReadExpressions({i, from}, scope);
    if (from < m_nEnd) i = ReadFrom({from + 1, m_nEnd}, scope);
    if (from < m_nEnd) ReadExpressions({i, m_nEnd}, scope);
  }

  // --- statements that define ---

  void ReadDefinition(std::size_t i) {
    m_tree.kind = StatementKind::Define;
    const bool bCreate = At(i).IsWord("CREATE");
    const bool bAlter = At(i).IsWord("ALTER");
    ++i;
    if (At(i).IsWord("TEMP") || At(i).IsWord("TEMPORARY")) {
      Fail(i, At(i).sUpper + " is not possible", "tables live in catalogs; write catalog..table");
    }
    const bool bUnique = At(i).IsWord("UNIQUE");
    if (bUnique) ++i;
    const std::size_t what = i++;
    const bool bTable = At(what).IsWord("TABLE");
    const bool bIndex = At(what).IsWord("INDEX");
    const bool bView = At(what).IsWord("VIEW");
    if (!(bTable || bIndex || bView) || (bUnique && !(bIndex && bCreate)) || (bAlter && !bTable)) {
      Fail(what, "This cannot be created, altered or dropped",
           "create and drop a TABLE, an INDEX, a VIEW or a DATABASE, or alter a TABLE");
    }
    if (At(i).IsWord("IF")) i += At(i + 1).IsWord("NOT") ? 3U : 2U;
    m_tree.target = ReadTableName(i);
    i = m_tree.target->range.end;
    if (!bCreate) return;
    if (bIndex) {
      if (!At(i).IsWord("ON")) Fail(i, "ON is missing", "write CREATE INDEX name ON table");
      m_tree.indexedTable = ReadTableName(i + 1);
      return;
    }
    m_tree.bView = bView;
    if (bView && IsOpen(i)) i = Behind(i);
    if (At(i).IsWord("AS")) ReadQuery({i + 1, m_nEnd}, nullptr);
  }

  // --- queries ---

  // Behind the list of named queries.
  std::size_t ReadWith(std::size_t i, std::size_t end, Scope* scope) {
    ++i;
    if (At(i).IsWord("RECURSIVE")) ++i;
    std::vector<TokenRange> ranges;
    while (i < end) {
      NamedQuery named;
      if (!At(i).IsIdentifier()) Fail(i, "A name is missing", "write WITH name AS (SELECT ...)");
      named.sName = At(i++).sText;
      if (IsOpen(i)) {
        for (const auto& column : Split({i + 1, m_brackets[i]})) {
          named.columns.push_back(At(column.begin).sText);
        }
        i = Behind(i);
      }
      if (At(i).IsWord("AS")) ++i;
      if (At(i).IsWord("NOT")) ++i;
      if (At(i).IsWord("MATERIALIZED")) ++i;
      if (!IsOpen(i)) Fail(i, "A query is missing", "write WITH name AS (SELECT ...)");
      if (ranges.size() == 200) Fail(i, "There are too many named queries", "use fewer of them");
      scope->namedQueries.push_back(std::move(named));
      ranges.push_back({i + 1, m_brackets[i]});
      i = Behind(i);
      if (!At(i).IsSymbol(",")) break;
      ++i;
    }
    // Each may read the others and itself.
    for (std::size_t query = 0; query < ranges.size(); ++query) {
      Query* const read = ReadQuery(ranges[query], scope);
      scope->namedQueries[query].query = read;
    }
    return i;
  }

  Query* ReadQuery(TokenRange range, Scope* parent) {
    // Far deeper than any statement is written, and far from the end of the stack.
    if (++m_nDepth > 100) Fail(range.begin, "Queries are nested too deeply", "nest fewer of them");
    Query* const query = &m_tree.queries.emplace_back();
    std::size_t i = range.begin;
    if (At(i).IsWord("WITH")) {
      parent = NewScope(parent);
      i = ReadWith(i, range.end, parent);
    }
    while (i < range.end) {
      std::size_t end = i;
      while (end < range.end && !IsOneOf(At(end), kCompounds)) {
        end = IsOpen(end) ? Behind(end) : end + 1;
      }
      Scope* const scope = NewScope(parent);
      query->cores.push_back(scope);
      ReadCore({i, end}, scope);
      i = end;
      if (i < range.end) ++i;
      if (At(i).IsWord("ALL")) ++i;
    }
    --m_nDepth;
    return query;
  }

  void ReadCore(TokenRange range, Scope* scope) {
    if (!At(range.begin).IsWord("SELECT")) {
      ReadExpressions(range, scope);
      return;
    }
    std::size_t i = range.begin + 1;
    if (At(i).IsWord("DISTINCT") || At(i).IsWord("ALL")) ++i;
    const std::size_t from = FindClause({i, range.end}, "FROM");
    std::size_t itemsEnd = i;
    while (itemsEnd < from && !IsOneOf(At(itemsEnd), kClauses)) {
      itemsEnd = IsOpen(itemsEnd) ? Behind(itemsEnd) : itemsEnd + 1;
    }
    scope->items = Split({i, itemsEnd});
    ReadExpressions({i, from}, scope);
    if (from >= range.end) return;
    i = ReadFrom({from + 1, range.end}, scope);
    ReadExpressions({i, range.end}, scope);
  }

  // The place of the word outside of brackets, or the range's end. IS DISTINCT FROM is no clause.
  std::size_t FindClause(TokenRange range, std::string_view sWord) const {
    for (std::size_t i = range.begin; i < range.end; ++i) {
      if (IsOpen(i)) {
        i = m_brackets[i];
      } else if (At(i).IsWord(sWord) && !(i >= 2 && At(i - 1).IsWord("DISTINCT") &&
                                          (At(i - 2).IsWord("IS") || At(i - 2).IsWord("NOT")))) {
        return i;
      }
    }
    return range.end;
  }

  // Behind the list of tables.
  std::size_t ReadFrom(TokenRange range, Scope* scope) {
    std::size_t i = range.begin;
    while (i < range.end) {
      i = ReadSource({i, range.end}, scope);
      i = ReadJoinCondition({i, range.end}, scope);
      if (i >= range.end) break;
      if (At(i).IsSymbol(",")) {
        ++i;
      } else if (IsOneOf(At(i), kJoins)) {
        while (i < range.end && IsOneOf(At(i), kJoins)) ++i;
      } else {
        break;
      }
    }
    return i;
  }

  std::size_t ReadSource(TokenRange range, Scope* scope) {
    std::size_t i = range.begin;
    Source* source = nullptr;
    if (IsOpen(i)) {
      const TokenRange inner{i + 1, m_brackets[i]};
      i = Behind(i);
      if (StartsQuery(inner.begin)) {
        source = &AddSource(scope);
        source->query = ReadQuery(inner, scope);
      } else {
        if (++m_nDepth > 100) Fail(i, "Tables are nested too deeply", "nest fewer of them");
        ReadFrom(inner, scope);
        --m_nDepth;
        return i;
      }
    } else {
      source = &AddSource(scope);
      source->table = ReadTableName(i);
      i = source->table.range.end;
      if (IsOpen(i)) {
        if (source->table.parts.size() != 1 ||
            std::find(kTableFunctions.begin(), kTableFunctions.end(),
                      UpperCase(At(source->table.parts[0]).sText)) == kTableFunctions.end()) {
          Fail(range.begin, "This function makes no table",
               "read catalog..table, as in Plant1..Data");
        }
        source->bFunction = true;
        ReadExpressions({i + 1, m_brackets[i]}, scope);
        i = Behind(i);
      }
    }
    if (At(i).IsWord("AS")) ++i;
    if (i < range.end && At(i).IsIdentifier() && !IsOneOf(At(i), kClauses) &&
        !IsOneOf(At(i), kJoins) && !IsOneOf(At(i), kCompounds) && !At(i).IsWord("ON") &&
        !At(i).IsWord("USING") && !At(i).IsWord("INDEXED") && !At(i).IsWord("NOT")) {
      source->sAlias = At(i++).sText;
    }
    if (At(i).IsWord("INDEXED")) {
      i += 3;
    } else if (At(i).IsWord("NOT") && At(i + 1).IsWord("INDEXED")) {
      i += 2;
    }
    return std::min(i, range.end);
  }

  std::size_t ReadJoinCondition(TokenRange range, Scope* scope) {
    std::size_t i = range.begin;
    if (At(i).IsWord("USING") && IsOpen(i + 1)) {
      ReadExpressions({i + 2, m_brackets[i + 1]}, scope);
      return Behind(i + 1);
    }
    if (!At(i).IsWord("ON")) return i;
    const std::size_t begin = ++i;
    while (i < range.end && !At(i).IsSymbol(",") && !IsOneOf(At(i), kClauses) &&
           !(IsOneOf(At(i), kJoins) && !IsOpen(i + 1))) {
      i = IsOpen(i) ? Behind(i) : i + 1;
    }
    ReadExpressions({begin, i}, scope);
    return i;
  }

  // --- expressions ---

  void AddReference(Chain chain, Scope* scope) {
    m_tree.references.push_back({std::move(chain), scope});
  }

  void ReadExpressions(TokenRange range, Scope* scope) {
    for (std::size_t i = range.begin; i < range.end;) {
      if (IsOpen(i) && StartsQuery(i + 1)) {
        ReadQuery({i + 1, m_brackets[i]}, scope);
        i = Behind(i);
        continue;
      }
      ReadComparison(i, range, scope);
      if (At(i).IsWord("IN") && At(i + 1).IsIdentifier()) {
        // The whole of a table stands for its only column.
        Source& source = m_tree.sources.emplace_back();
        source.table = ReadTableName(i + 1);
        source.scope = scope;
        i = source.table.range.end;
        continue;
      }
      const Chain chain = ReadChain(m_tree.tokens, i);
      if (chain.parts.empty()) {
        ++i;
        continue;
      }
      if (!(chain.parts.size() == 1 && IsOpen(chain.range.end))) AddReference(chain, scope);
      i = chain.range.end;
    }
  }

  void ReadComparison(std::size_t i, TokenRange range, Scope* scope) {
    const Token& token = At(i);
    if (token.kind == TokenKind::Symbol) {
      if (std::find(kComparisons.begin(), kComparisons.end(), token.sText) != kComparisons.end()) {
        Compare(OperandBefore(i, range), OperandBehind(i + 1, range), scope);
      }
    } else if (token.IsWord("IS")) {
      std::size_t right = i + 1;
      if (At(right).IsWord("NOT")) ++right;
      if (At(right).IsWord("DISTINCT") && At(right + 1).IsWord("FROM")) right += 2;
      Compare(OperandBefore(i, range), OperandBehind(right, range), scope);
    } else if (token.IsWord("IN") && IsOpen(i + 1) && !StartsQuery(i + 2)) {
      const TokenRange left = OperandBefore(BeforeNot(i), range);
      for (const auto& element : Split({i + 2, m_brackets[i + 1]})) {
        if (OperandBehind(element.begin, element).end == element.end) {
          Compare(left, element, scope);
        }
      }
    } else if (token.IsWord("BETWEEN")) {
      const TokenRange left = OperandBefore(BeforeNot(i), range);
      const std::size_t mid = FindAnd({i + 1, range.end});
      const TokenRange low = OperandBehind(i + 1, {i + 1, mid});
      if (low.end == mid) Compare(left, low, scope);
      if (mid < range.end) Compare(left, OperandBehind(mid + 1, range), scope);
    }
  }

  // In "x NOT IN", the NOT belongs to the operator.
  std::size_t BeforeNot(std::size_t i) const {
    return i > 0 && At(i - 1).IsWord("NOT") ? i - 1 : i;
  }

  std::size_t FindAnd(TokenRange range) const {
    std::size_t nInner = 0;
    for (std::size_t i = range.begin; i < range.end; ++i) {
      if (IsOpen(i)) i = m_brackets[i];
      if (At(i).IsWord("BETWEEN")) ++nInner;
      if (At(i).IsWord("AND") && nInner-- == 0) return i;
    }
    return range.end;
  }

  void Compare(TokenRange left, TokenRange right, Scope* scope) {
    if (left.empty() || right.empty()) return;
    // Rows of values meet element by element.
    if (IsRow(left) && IsRow(right)) {
      const auto lefts = Split({left.begin + 1, left.end - 1});
      const auto rights = Split({right.begin + 1, right.end - 1});
      if (lefts.size() == rights.size() && lefts.size() > 1) {
        for (std::size_t i = 0; i < lefts.size(); ++i) {
          m_tree.comparisons.push_back({lefts[i], rights[i], scope});
        }
        return;
      }
    }
    m_tree.comparisons.push_back({left, right, scope});
  }

  bool IsRow(TokenRange range) const {
    return IsOpen(range.begin) && m_brackets[range.begin] == range.end - 1;
  }

  bool IsArithmetic(std::size_t i) const {
    return At(i).kind == TokenKind::Symbol &&
           std::find(kArithmetic.begin(), kArithmetic.end(), At(i).sText) != kArithmetic.end();
  }

  // The one operand that ends before the token, empty when it is a part of something larger.
  TokenRange OperandBefore(std::size_t end, TokenRange range) const {
    if (end <= range.begin) return {};
    std::size_t begin = end - 1;
    const Token& last = At(begin);
    if (last.IsSymbol(")")) {
      begin = m_brackets[begin];
      if (begin > range.begin && At(begin - 1).IsIdentifier() &&
          !IsOneOf(At(begin - 1), kOperatorWords)) {
        --begin;
      }
    } else if (last.IsIdentifier()) {
      while (begin > range.begin && At(begin - 1).IsSymbol(".")) {
        std::size_t dots = begin - 1;
        if (dots > range.begin && At(dots - 1).IsSymbol(".")) --dots;
        if (dots == range.begin || !At(dots - 1).IsIdentifier()) break;
        begin = dots - 1;
      }
    } else if (last.kind == TokenKind::Number) {
      begin = WithSign(begin, range);
    } else if (last.kind != TokenKind::String) {
      return {};
    }
    if (begin < range.begin) return {};
    if (begin > range.begin && (IsArithmetic(begin - 1) || At(begin - 1).IsWord("COLLATE"))) {
      return {};
    }
    return {begin, end};
  }

  // A sign belongs to the number unless there is something to subtract from.
  std::size_t WithSign(std::size_t number, TokenRange range) const {
    if (number == range.begin) return number;
    const Token& sign = At(number - 1);
    if (!sign.IsSymbol("-") && !sign.IsSymbol("+")) return number;
    if (number - 1 == range.begin) return number - 1;
    const Token& before = At(number - 2);
    const bool bOperator = (before.kind == TokenKind::Symbol && !before.IsSymbol(")")) ||
                           IsOneOf(before, kOperatorWords);
    return bOperator ? number - 1 : number;
  }

  TokenRange OperandBehind(std::size_t begin, TokenRange range) const {
    if (begin >= range.end) return {};
    std::size_t end = begin + 1;
    const Token& first = At(begin);
    if (IsOpen(begin)) {
      end = Behind(begin);
    } else if (first.IsIdentifier()) {
      end = ReadChain(m_tree.tokens, begin).range.end;
      if (IsOpen(end)) end = Behind(end);
    } else if (first.IsSymbol("-") || first.IsSymbol("+")) {
      if (At(begin + 1).kind != TokenKind::Number) return {};
      end = begin + 2;
    } else if (first.kind != TokenKind::String && first.kind != TokenKind::Number) {
      return {};
    }
    if (end > range.end) return {};
    if (end < range.end && (IsArithmetic(end) || At(end).IsWord("COLLATE"))) return {};
    return {begin, end};
  }

  std::vector<TokenRange> Split(TokenRange range) const {
    return SplitAtCommas(m_tree.tokens, m_brackets, range);
  }

  std::string_view m_sStatement;
  StatementTree m_tree;
  std::vector<std::size_t> m_brackets;
  std::size_t m_nEnd = 0;
  int m_nDepth = 0;
};

}  // namespace

StatementTree ReadStatement(std::string_view sStatement, std::vector<Token> tokens) {
  return StatementReader(sStatement, std::move(tokens)).Read();
}

Chain ReadChain(const std::vector<Token>& tokens, std::size_t position) {
  Chain chain;
  chain.range = {position, position};
  std::size_t i = position;
  while (i < tokens.size() && tokens[i].IsIdentifier()) {
    chain.parts.push_back(i++);
    chain.range.end = i;
    if (!tokens[i].IsSymbol(".")) break;
    ++i;
    if (tokens[i].IsSymbol(".") && chain.parts.size() == 1) {
      chain.bDoubleDot = true;
      ++i;
    }
    if (tokens[i].IsSymbol("*")) {
      chain.bStar = true;
      chain.range.end = i + 1;
      break;
    }
  }
  return chain;
}

std::vector<std::size_t> MatchBrackets(std::string_view sStatement,
                                       const std::vector<Token>& tokens) {
  std::vector<std::size_t> brackets(tokens.size(), 0);
  std::vector<std::size_t> open;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (tokens[i].IsSymbol("(")) {
      open.push_back(i);
    } else if (tokens[i].IsSymbol(")")) {
      if (open.empty()) {
        FailAt(sStatement, tokens[i].position, "A bracket closes that was never opened",
               "remove it or open it before");
      }
      brackets[open.back()] = i;
      brackets[i] = open.back();
      open.pop_back();
    }
  }
  if (!open.empty()) {
    FailAt(sStatement, tokens[open.back()].position, "A bracket is never closed",
           "close it with )");
  }
  return brackets;
}

std::vector<TokenRange> SplitAtCommas(const std::vector<Token>& tokens,
                                      const std::vector<std::size_t>& brackets, TokenRange range) {
  std::vector<TokenRange> parts;
  if (range.empty()) return parts;
  std::size_t begin = range.begin;
  for (std::size_t i = range.begin; i < range.end; ++i) {
    if (tokens[i].IsSymbol("(")) {
      i = brackets[i];
    } else if (tokens[i].IsSymbol(",")) {
      parts.push_back({begin, i});
      begin = i + 1;
    }
  }
  parts.push_back({begin, range.end});
  return parts;
}

}  // namespace orvane::provider::dialect
