// The owners of what SQLite hands out, an open database and a prepared statement, and the one way
// to open a database. For everyone in the provider and the programs beside it who speaks to SQLite;
// any thread.
#pragma once

#include <sqlite3.h>

#include <memory>

namespace orvane::provider::engines {

struct CloseDatabase {
  void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};
/// Closes the database at its end, at the latest when the last statement on it is gone.
using SqliteHandle = std::unique_ptr<sqlite3, CloseDatabase>;

struct FinalizeStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using SqliteStatementHandle = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

/// An open database, or why it is none: the handle then tells the rest, and is empty only without
/// memory.
struct OpenedDatabase {
  SqliteHandle database;
  int nCode = SQLITE_OK;  ///< SQLITE_OK when it is open
};

/// Opens the file, or the URI where the flags say so. Result codes are extended ones.
OpenedDatabase OpenDatabase(const char* sName, int nFlags);

}  // namespace orvane::provider::engines
