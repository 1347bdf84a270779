#include "provider/engines/sqlite/sqlite_refusals.h"

#include <string_view>

#include "provider/engines/sqlite/sqlite_errors.h"
#include "provider/engines/sqlite/sqlite_statement.h"

namespace orvane::provider::engines {

using platform::Text;

SqliteRefusals::SqliteRefusals(sqlite3* database) : m_database(database) {
  sqlite3_set_authorizer(m_database, Authorize, this);
}

SqliteRefusals::~SqliteRefusals() {
  sqlite3_set_authorizer(m_database, nullptr, nullptr);
}

void SqliteRefusals::InTransaction(const Text& sSubject, const std::function<void()>& work) {
  RunOwn("BEGIN", sSubject);
  try {
    work();
    RunOwn("COMMIT", sSubject);
  } catch (const platform::Failure& failed) {
    RollBack();
    // Refused by SQLite itself only because of the transaction.
    if (failed.Description().find("cannot VACUUM") != Text::npos) {
      throw FailureOf(SQLITE_AUTH, sSubject, {}, failed.SqlText());
    }
    throw;
  } catch (...) {
    RollBack();
    throw;
  }
}

void SqliteRefusals::RunOwn(const char* sSql, const Text& sSubject) {
  m_bOwn = true;
  try {
    SqliteStatement::RunOnce(m_database, sSql, sSubject);
  } catch (...) {
    m_bOwn = false;
    throw;
  }
  m_bOwn = false;
}

// A failure may have rolled back on its own; then this has nothing left to do.
void SqliteRefusals::RollBack() noexcept {
  m_bOwn = true;
  sqlite3_exec(m_database, "ROLLBACK", nullptr, nullptr, nullptr);
  m_bOwn = false;
}

int SqliteRefusals::Authorize(void* refusals, int nAction, const char* sName, const char*,
                              const char*, const char*) {
  switch (nAction) {
    case SQLITE_TRANSACTION:
      return static_cast<const SqliteRefusals*>(refusals)->m_bOwn ? SQLITE_OK : SQLITE_DENY;
    case SQLITE_PRAGMA:
      // By which SQLite looks itself whether the rows keep the rule of a column that is added.
      return sName != nullptr && std::string_view(sName) == "quick_check" ? SQLITE_OK : SQLITE_DENY;
    case SQLITE_ATTACH:
    case SQLITE_DETACH:
    case SQLITE_SAVEPOINT:
      return SQLITE_DENY;
    default:
      return SQLITE_OK;
  }
}

}  // namespace orvane::provider::engines
