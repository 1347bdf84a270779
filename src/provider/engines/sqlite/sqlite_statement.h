// One prepared statement: made from text that holds exactly one, given its parameters, stepped to
// its end into a recordset builder. Used by the session, on the thread of the call.
#pragma once

#include <span>

#include "ado/recordset_builder.h"
#include "provider/engines/sqlite/sqlite_handle.h"

namespace orvane::provider::engines {

/// How far a statement's rows are fetched, and how its database keeps texts.
struct FetchLimits {
  platform::RowIndex maxRows = 0;  ///< 0 fetches all rows
  std::size_t maxBytes = 0;        ///< that the rows may take; 0 is no limit
  bool bUtf8 = false;              ///< texts are kept in UTF-8
};

/// The rows that were fetched, not finished yet.
struct FetchedRows {
  ado::RecordsetBuilder builder;
  bool bTruncated = false;  ///< there was at least one row more

  platform::RecordsetPtr Finish(std::chrono::microseconds elapsed = {}) {
    return builder.Finish(bTruncated, elapsed);
  }
};

class SqliteStatement {
 public:
  /// Fails for a text without a statement or with a second one behind the first. The subject is
  /// what the statement works on, for sentences. The text must outlive the statement.
  SqliteStatement(sqlite3* database, const platform::Text& sSql, const platform::Text& sSubject);

  /// Gives all parameters, which must outlive the statement; fails with
  /// failure::kInvalidArgument unless there are as many as places for them.
  void Bind(std::span<const platform::Value> vtValues);

  bool ReadsOnly() const { return sqlite3_stmt_readonly(m_statement.get()) != 0; }
  /// EXPLAIN or EXPLAIN QUERY PLAN.
  bool Explains() const { return sqlite3_stmt_isexplain(m_statement.get()) != 0; }

  /// Runs the statement to its end or the row limit. Its columns have name, type by declaration,
  /// and whether their table lets them be null; a statement without rows has none.
  FetchedRows Fetch(const FetchLimits& limits);
  /// Runs a statement whose rows, if any, nobody wants.
  void Run();

  /// Makes a statement from the text and runs it.
  static void RunOnce(sqlite3* database, const platform::Text& sSql,
                      const platform::Text& sSubject) {
    SqliteStatement(database, sSql, sSubject).Run();
  }

 private:
  std::vector<ado::ColumnDescription> Columns() const;
  sqlite3_stmt* Prepare(std::string_view sSql, std::string_view& sRest) const;
  bool HasStatement(std::string_view sSql) const;
  [[noreturn]] void Fail(int nCode) const;

  sqlite3* m_database;
  const platform::Text& m_sSql;
  const platform::Text& m_sSubject;
  SqliteStatementHandle m_statement;
};

}  // namespace orvane::provider::engines
