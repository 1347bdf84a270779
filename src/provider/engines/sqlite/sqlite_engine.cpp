#include "provider/engines/sqlite/sqlite_engine.h"

#include "provider/engines/sqlite/sqlite_errors.h"
#include "provider/engines/sqlite/sqlite_files.h"
#include "provider/engines/sqlite/sqlite_session.h"
#include "provider/engines/sqlite/sqlite_statement.h"
#include "provider/engines/sqlite/sqlite_watch.h"

namespace orvane::provider::engines {

using platform::Text;

namespace {

SqliteHandle OpenHandle(const Catalog& main) {
  // Calls of a session come one at a time, so SQLite need not lock each of its functions.
  constexpr int kFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX;
  const Text sName = main.sPlace.empty() ? ":memory:" : UriOf(main);
  auto [handle, nCode] = OpenDatabase(sName.c_str(), kFlags);
  sqlite3* const database = handle.get();
  if (nCode != SQLITE_OK) {
    throw FailureOf(WithSystemError(database, nCode), SubjectOf(main), sqlite3_errmsg(database));
  }
  sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_FKEY, 1, nullptr);
  // Otherwise a misspelled name in double quotes is a text, which every row then equals or not.
  sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  return std::move(handle);
}

// SQLite opens late: only reading tells whether this is a database, and one free to be read. All
// catalogs of a session keep their texts in the encoding of its own database.
bool IsUtf8(sqlite3* database, const Text& sSubject) {
  const Text sSql = "PRAGMA encoding";
  SqliteStatement statement(database, sSql, sSubject);
  return statement.FetchAll(false)->ValueAt(0, 0) == platform::Value("UTF-8");
}

}  // namespace

std::unique_ptr<FileSession> SqliteEngine::Open(const Catalog& main, std::stop_token stop) {
  if (!main.sPlace.empty()) CheckFile(main);
  SqliteHandle database = OpenHandle(main);
  bool bUtf8 = false;
  {
    const SqliteWatch watch(database.get(), std::move(stop), m_lockWait);
    watch.Guard({}, [&] { bUtf8 = IsUtf8(database.get(), SubjectOf(main)); });
  }
  return std::make_unique<SqliteSession>(std::move(database), main, m_lockWait, bUtf8);
}

}  // namespace orvane::provider::engines
