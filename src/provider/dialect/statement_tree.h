// A statement of historian SQL as far as the dialect needs to know it: its scopes with the tables
// they read, the names and the comparisons in them. Everything else stays text.
// Made by ReadStatement, used by the translator.
#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "provider/dialect/lexer.h"

namespace orvane::provider::dialect {

/// Tokens from begin up to, without, end.
struct TokenRange {
  std::size_t begin = 0;
  std::size_t end = 0;
  bool empty() const { return begin >= end; }
};

/// Names joined by dots, such as Plant1..Data or d.Value.
struct Chain {
  TokenRange range;
  std::vector<std::size_t> parts;  ///< the tokens of the names
  bool bDoubleDot = false;         ///< two dots behind the first name: it is a catalog
  bool bStar = false;              ///< ends in ".*"
};

struct Query;
struct Scope;

/// A table that a scope reads.
struct Source {
  Chain table;             ///< unless it is a subquery
  platform::Text sAlias;   ///< empty when it has none
  Query* query = nullptr;  ///< of a subquery
  Scope* scope = nullptr;  ///< where it stands
  bool bFunction = false;  ///< a table that a function makes
  bool bTarget = false;    ///< the table that the statement changes
};

/// A named subquery: WITH name (columns) AS (query).
struct NamedQuery {
  platform::Text sName;
  std::vector<platform::Text> columns;
  Query* query = nullptr;
};

/// What names are looked up in: one SELECT, or a statement that changes a table, or a WITH.
struct Scope {
  Scope* parent = nullptr;
  std::vector<Source*> sources;
  std::vector<NamedQuery> namedQueries;
  std::vector<TokenRange> items;  ///< what a SELECT puts out
};

/// SELECTs joined by UNION and the like; of VALUES, the scope has no items.
struct Query {
  std::vector<Scope*> cores;
};

/// Two operands that meet in a comparison or an assignment.
struct Comparison {
  TokenRange left;
  TokenRange right;
  Scope* scope = nullptr;
};

/// A value on its way into a column of the target.
struct Assignment {
  TokenRange value;
  std::size_t column = 0;  ///< place in the target's column list
};

struct Reference {
  Chain chain;
  Scope* scope = nullptr;
};

enum class StatementKind : std::uint8_t {
  Query,   ///< changes nothing
  Change,  ///< INSERT, REPLACE, UPDATE, DELETE
  Define,  ///< CREATE, ALTER, DROP of tables, indexes and views
};

/// Pointers inside lead to the tree's own parts.
struct StatementTree {
  StatementKind kind = StatementKind::Query;
  bool bExplain = false;  ///< tells how the statement would run instead of running it
  std::vector<Token> tokens;
  std::deque<Scope> scopes;
  std::deque<Query> queries;
  std::deque<Source> sources;
  std::vector<Comparison> comparisons;
  std::vector<Reference> references;

  Query* mainQuery = nullptr;                 ///< of a statement that is a query
  std::optional<Chain> target;                ///< what is changed or defined
  Source* targetSource = nullptr;             ///< the same as a table with columns, for kind Change
  std::vector<platform::Text> targetColumns;  ///< as listed by INSERT; empty lists all
  std::vector<Assignment> assignments;
  bool bView = false;  ///< the statement makes a view
  /// CREATE INDEX ... ON: the indexed table; the index itself is the target.
  std::optional<Chain> indexedTable;
};

/// Reads one statement. Fails with failure::kSqlError for what is no single statement, for
/// brackets that do not match, and for statements and functions that are not let through.
StatementTree ReadStatement(std::string_view sStatement, std::vector<Token> tokens);

/// Reads the names joined by dots that begin at the token; no parts when there are none.
Chain ReadChain(const std::vector<Token>& tokens, std::size_t position);

/// The number of the bracket that matches the one at the token.
std::vector<std::size_t> MatchBrackets(std::string_view sStatement,
                                       const std::vector<Token>& tokens);

/// The parts between commas outside of inner brackets.
std::vector<TokenRange> SplitAtCommas(const std::vector<Token>& tokens,
                                      const std::vector<std::size_t>& brackets, TokenRange range);

}  // namespace orvane::provider::dialect
