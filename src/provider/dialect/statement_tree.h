// A statement of historian SQL as a tree: its queries with the tables they read, and its
// expressions. Made by StatementReader; read by the translator. Pointers inside lead to the tree's
// own parts.
#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "platform/ado/recordset.h"
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
struct Source;

enum class ExprKind : std::uint8_t {
  Null,
  Number,
  String,
  Blob,
  Time,         ///< a parameter that is a point in time
  CurrentTime,  ///< CURRENT_TIMESTAMP, CURRENT_DATE, CURRENT_TIME
  Name,
  Sign,        ///< + - ~ before the child
  Not,         ///< NOT before the child
  Arithmetic,  ///< also || and ->
  Logic,       ///< children joined by AND or OR
  Compare,     ///< two children; also IS
  Like,        ///< LIKE, GLOB, REGEXP, MATCH: text, pattern, what escapes
  Between,     ///< three children
  In,          ///< the first child among the others, or in the query or the table
  Case,        ///< operand where bOperand, pairs of WHEN and THEN, ELSE where bElse
  Cast,
  Collate,
  Call,
  Row,
  Bracket,
  Subquery,
  Exists,
  NullTest,
};

struct Expr {
  ExprKind kind = ExprKind::Null;
  bool bOperand = false;
  bool bElse = false;
  bool bDistinct = false;
  int nHeight = 1;
  std::size_t nNumber = 0;  ///< its place among the tree's expressions
  TokenRange range;
  std::size_t operation = 0;  ///< token of the operator, or of the function's name
  Scope* scope = nullptr;     ///< where names are looked up
  std::vector<Expr*> children;
  std::vector<Expr*> sorts;       ///< of a call: by what its rows are parted and ordered
  std::vector<Expr*> conditions;  ///< of a call: FILTER and the bounds of a window
  Query* query = nullptr;
  const Source* table = nullptr;  ///< of IN table
  Chain chain;                    ///< of a name
  TokenRange type;                ///< of CAST
};

/// USING: a column by which a table is joined to tables of its scope, from first up to behind.
struct UsedName {
  std::size_t token = 0;
  std::size_t first = 0;
  std::size_t behind = 0;
};

/// A table that a scope reads.
struct Source {
  Chain table;                      ///< unless it is a subquery
  platform::Text sAlias;            ///< empty when it has none
  Query* query = nullptr;           ///< of a subquery
  Scope* scope = nullptr;           ///< where it stands
  bool bFunction = false;           ///< a table that a function makes
  bool bTarget = false;             ///< the table that the statement changes
  bool bNatural = false;            ///< joined by the columns that it shares with those before
  std::size_t firstBeside = 0;      ///< of the scope's tables the first in the same brackets
  std::vector<Expr*> arguments;     ///< of the function
  std::vector<UsedName> usedNames;  ///< USING
};

/// A named subquery: WITH name (columns) AS (query).
struct NamedQuery {
  platform::Text sName;
  std::vector<platform::Text> columns;
  Query* query = nullptr;
};

/// What a SELECT puts out: an expression, or all columns of all sources or of one.
struct Item {
  Expr* expr = nullptr;  ///< null for a star
  Chain star;            ///< the name before ".*"; without parts for a bare star
  platform::Text sAlias;
  TokenRange range;
};

/// What names are looked up in: one SELECT, or a statement that changes a table, or a WITH.
struct Scope {
  Scope* parent = nullptr;
  bool bDistinct = false;
  bool bGroups = false;  ///< GROUP BY or HAVING
  bool bClosed = false;  ///< of named queries: they see no columns around them
  std::vector<Source*> sources;
  std::vector<NamedQuery> namedQueries;
  std::vector<Item> items;
  std::vector<std::vector<Expr*>> rows;  ///< of VALUES
  std::vector<Expr*> conditions;         ///< WHERE, HAVING, ON, LIMIT
  std::vector<Expr*> sorts;              ///< GROUP BY, ORDER BY, windows
};

/// SELECTs joined by UNION and the like.
struct Query {
  TokenRange range;
  std::vector<Scope*> cores;
  bool bCompares = false;             ///< a join of its SELECTs other than UNION ALL
  int nHeight = 0;                    ///< of its highest expression
  std::vector<const Query*> inner;    ///< subqueries within, those of WITH left out
  std::vector<const Source*> tables;  ///< tables and named queries that it reads itself
  std::vector<Expr*> sorts;           ///< ORDER BY behind them all
};

/// A value on its way into columns of the target: one, or as many as its row or query gives.
struct Assignment {
  std::vector<std::size_t> columns;  ///< tokens of their names
  Expr* value = nullptr;
};

/// A column as CREATE TABLE or ALTER TABLE describes it.
struct ColumnDefinition {
  platform::Text sName;
  TokenRange range;
  platform::DataType type = platform::DataType::Empty;
  Expr* initial = nullptr;   ///< DEFAULT
  Expr* computed = nullptr;  ///< AS (...)
};

/// REFERENCES: the tokens of a table in the catalog of the target, and of its columns.
struct ReferredTable {
  std::size_t table = 0;
  std::vector<std::size_t> columns;
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

struct StatementTree {
  StatementKind kind = StatementKind::Query;
  bool bExplain = false;  ///< tells how the statement would run instead of running it
  std::vector<Token> tokens;
  std::deque<Scope> scopes;
  std::deque<Query> queries;
  std::deque<Source> sources;
  std::deque<Expr> expressions;
  std::vector<Reference> references;  ///< all names of columns
  std::vector<std::size_t> names;     ///< tokens of names that are given, and of keys' columns
  std::vector<ReferredTable> referredTables;
  std::vector<TokenRange> types;        ///< of columns and casts
  std::vector<std::size_t> plainWiths;  ///< WITH without RECURSIVE before named queries
  TokenRange storage;                   ///< behind the columns of a table: how its rows are kept

  Query whole;                     ///< holds as inner what stands in no other query
  Query* mainQuery = nullptr;      ///< of a query, of INSERT, and of what is made from one
  Scope* changeScope = nullptr;    ///< of a statement that changes a table
  std::optional<Chain> target;     ///< what is changed or defined
  Source* targetSource = nullptr;  ///< the same as a table with columns, for kind Change
  bool bInsert = false;
  std::vector<std::size_t> targetColumns;  ///< as listed by INSERT; empty lists all
  std::vector<Assignment> assignments;     ///< of SET
  bool bView = false;                      ///< the statement makes a view
  bool bIndex = false;                     ///< the statement makes an index
  bool bOfIndex = false;                   ///< it makes or drops one
  bool bCreate = false;                    ///< what is defined is new
  std::optional<std::size_t> newName;      ///< ALTER TABLE ... RENAME TO: token of the name
  std::vector<ColumnDefinition> columns;   ///< of the table that is made or altered
  /// CREATE INDEX ... ON: the indexed table; the index itself is the target.
  std::optional<Chain> indexedTable;
};

/// What a type as it is written holds, as engines::TypeOfDeclaration tells; Empty for none.
platform::DataType DeclaredType(std::string_view sStatement, const std::vector<Token>& tokens,
                                TokenRange type);

}  // namespace orvane::provider::dialect
