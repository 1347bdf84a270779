// One prepared statement: made from text that holds exactly one, given its parameters, stepped to
// its end, its rows handed over in blocks. Used by the session, on the thread of the call.
#pragma once

#include <span>
#include <vector>

#include "provider/engines/engine.h"
#include "provider/engines/sqlite/sqlite_fetch.h"

namespace orvane::provider::engines {

class SqliteWatch;

class SqliteStatement {
 public:
  /// Fails for a text without a statement or with a second one behind the first. The subject is
  /// what the statement works on, for sentences. The text must outlive the statement.
  SqliteStatement(sqlite3* database, const platform::Text& sSql, const platform::Text& sSubject)
      : SqliteStatement(database, sSql, sSubject, nullptr) {}
  /// Of what a user wrote: sentences tell the places in that.
  SqliteStatement(sqlite3* database, const EngineStatement& statement,
                  const platform::Text& sSubject)
      : SqliteStatement(database, statement.sSql, sSubject, &statement) {}

  /// Gives all parameters, which must outlive the statement; fails with
  /// failure::kInvalidArgument unless there are as many as places for them.
  void Bind(std::span<const platform::Value> vtValues);

  bool ReadsOnly() const { return sqlite3_stmt_readonly(m_statement.get()) != 0; }
  /// EXPLAIN or EXPLAIN QUERY PLAN.
  bool Explains() const { return sqlite3_stmt_isexplain(m_statement.get()) != 0; }

  /// Runs the statement to its end or the row limit. Its columns have name, type by declaration,
  /// and whether their table lets them be null; a statement without rows has none. Of one that only
  /// reads and fails the receiver gets all rows before that. With a watch, rows that are wanted are
  /// handed over also while SQLite looks for the next one.
  void Fetch(const FetchLimits& limits, ado::RowReceiver& rows, SqliteWatch* watch = nullptr);
  /// All rows in a recordset; bUtf8 as in FetchLimits.
  platform::RecordsetPtr FetchAll(bool bUtf8);
  /// Runs a statement whose rows, if any, nobody wants.
  void Run();
  /// Makes it ready for other parameters.
  void Reset() { sqlite3_reset(m_statement.get()); }

  /// Makes a statement from the text and runs it.
  static void RunOnce(sqlite3* database, const platform::Text& sSql,
                      const platform::Text& sSubject) {
    SqliteStatement(database, sSql, sSubject).Run();
  }

 private:
  SqliteStatement(sqlite3* database, const platform::Text& sSql, const platform::Text& sSubject,
                  const EngineStatement* written);
  std::vector<ado::ColumnDescription> Columns() const;
  sqlite3_stmt* Prepare(std::string_view sSql, std::string_view& sRest) const;
  bool HasStatement(std::string_view sSql) const;
  [[noreturn]] void Fail(int nCode, std::size_t nPlace = 0) const;

  sqlite3* m_database;
  const platform::Text& m_sSql;
  const platform::Text& m_sSubject;
  const EngineStatement* m_written;
  SqliteStatementHandle m_statement;
};

}  // namespace orvane::provider::engines
