#include "tools/orvane_historian/catalog_database.h"

#include <fmt/format.h>

#include "platform/failure.h"
#include "provider/engines/sqlite/sqlite_errors.h"
#include "provider/engines/sqlite/sqlite_files.h"
#include "provider/engines/sqlite/sqlite_room.h"
#include "provider/engines/sqlite/sqlite_values.h"
#include "provider/historian/historian.h"

namespace orvane::tools {

using platform::Failure;
using platform::Value;
namespace engines = provider::engines;

PreparedStatement::PreparedStatement(CatalogDatabase& database, std::string_view sSql)
    : m_database(database) {
  sqlite3_stmt* statement = nullptr;
  Check(sqlite3_prepare_v2(database.Handle(), sSql.data(), static_cast<int>(sSql.size()),
                           &statement, nullptr));
  m_statement.reset(statement);
}

PreparedStatement& PreparedStatement::operator<<(const Value& vtValue) {
  Check(engines::BindValue(m_statement.get(), ++m_nParameter, vtValue, engines::Lifetime::Shorter));
  return *this;
}

bool PreparedStatement::Run() {
  m_nParameter = 0;
  const int nCode = sqlite3_step(m_statement.get());
  if (nCode == SQLITE_DONE || nCode == SQLITE_ROW) {
    sqlite3_reset(m_statement.get());
    return nCode == SQLITE_ROW;
  }
  // The reset repeats the error, which must be read before it.
  try {
    m_database.Fail();
  } catch (const Failure&) {
    sqlite3_reset(m_statement.get());
    throw;
  }
}

void PreparedStatement::Check(int nCode) {
  if (nCode != SQLITE_OK) m_database.Fail();
}

CatalogDatabase::CatalogDatabase(const provider::historian::CatalogRecord& record)
    : m_catalog(provider::historian::EngineCatalog(record, false)) {
  engines::CheckFile(m_catalog);
  auto [database, nCode] = engines::OpenDatabase(record.file.c_str(), SQLITE_OPEN_READWRITE);
  m_database = std::move(database);
  if (nCode != SQLITE_OK) Fail();
  sqlite3_busy_timeout(m_database.get(), 10'000);
  if (m_catalog.llMaxKilobytes > 0) {
    // Pages are of 4 kilobytes; the limit belongs to the connection, not to the file.
    Execute(fmt::format("PRAGMA max_page_count = {}", m_catalog.llMaxKilobytes / 4).c_str());
  }
  Execute("SELECT count(*) FROM sqlite_master");
}

void CatalogDatabase::Execute(const char* sSql) {
  if (sqlite3_exec(m_database.get(), sSql, nullptr, nullptr, nullptr) != SQLITE_OK) Fail();
}

void CatalogDatabase::InTransaction(const std::function<void()>& work) {
  Execute("BEGIN IMMEDIATE");
  try {
    work();
    Execute("COMMIT");
  } catch (...) {
    // A failure may have rolled back on its own; then this has nothing left to do.
    sqlite3_exec(m_database.get(), "ROLLBACK", nullptr, nullptr, nullptr);
    throw;
  }
}

bool CatalogDatabase::HasMoved() const {
  int nMoved = 0;
  sqlite3_file_control(m_database.get(), "main", SQLITE_FCNTL_HAS_MOVED, &nMoved);
  return nMoved != 0;
}

void CatalogDatabase::Fail() {
  sqlite3* const database = m_database.get();
  const int nCode = engines::WithSystemError(database, sqlite3_extended_errcode(database));
  const Failure failed =
      engines::FailureOf(nCode, engines::SubjectOf(m_catalog), sqlite3_errmsg(database));
  if ((nCode & engines::kPrimaryCode) == SQLITE_FULL && m_catalog.llMaxKilobytes != 0 &&
      !engines::IsDiskFirst(m_catalog)) {
    throw engines::LimitReached(m_catalog, failed);
  }
  throw Failure(failed);
}

}  // namespace orvane::tools
