// One prepared statement: made from text that holds exactly one, given its parameters, stepped to
// its end into a recordset builder. Used by the session, on the thread of the call.
#pragma once

#include <sqlite3.h>

#include <memory>
#include <span>

#include "ado/recordset_builder.h"

namespace orvane::provider::engines {

class SqliteStatement {
 public:
  /// Fails for a text without a statement or with a second one behind the first. The subject is
  /// what the statement works on, for sentences. The text must outlive the statement.
  SqliteStatement(sqlite3* database, const platform::Text& sSql, const platform::Text& sSubject);

  /// Gives all parameters, which must outlive the statement; fails with
  /// failure::kInvalidArgument unless there are as many as places for them.
  void Bind(std::span<const platform::Value> vtValues);

  bool HasRows() const { return sqlite3_column_count(m_statement.get()) != 0; }
  bool ReadsOnly() const { return sqlite3_stmt_readonly(m_statement.get()) != 0; }
  /// EXPLAIN or EXPLAIN QUERY PLAN.
  bool Explains() const { return sqlite3_stmt_isexplain(m_statement.get()) != 0; }
  /// The columns with name, type by declaration, and whether their table lets them be null.
  std::vector<ado::ColumnDescription> Columns() const;

  /// Appends the rows, at most as many as the limit when that is not 0; true when there was at
  /// least one row more. bUtf8 tells that the database keeps its texts in UTF-8.
  bool Fetch(ado::RecordsetBuilder& builder, platform::RowIndex maxRows, bool bUtf8);
  /// Runs a statement without rows.
  void Run();

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };

  sqlite3_stmt* Prepare(std::string_view sSql, std::string_view& sRest) const;
  bool HasStatement(std::string_view sSql) const;
  [[noreturn]] void Fail(int nCode) const;

  sqlite3* m_database;
  const platform::Text& m_sSql;
  const platform::Text& m_sSubject;
  std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
};

}  // namespace orvane::provider::engines
