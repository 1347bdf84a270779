#include "tools/orvane_historian/catalog_database.h"

#include <fmt/format.h>

#include "platform/failure.h"
#include "provider/engines/sqlite/sqlite_errors.h"
#include "provider/engines/sqlite/sqlite_files.h"
#include "provider/historian/historian.h"

namespace orvane::tools {

using platform::Failure;
using platform::Value;

PreparedStatement::PreparedStatement(CatalogDatabase& database, std::string_view sSql)
    : m_database(database) {
  sqlite3_stmt* statement = nullptr;
  Check(sqlite3_prepare_v2(database.Handle(), sSql.data(), static_cast<int>(sSql.size()),
                           &statement, nullptr));
  m_statement.reset(statement);
}

PreparedStatement& PreparedStatement::operator<<(std::string_view sText) {
  Check(sqlite3_bind_text64(m_statement.get(), ++m_nParameter, sText.data(), sText.size(),
                            SQLITE_TRANSIENT, SQLITE_UTF8));
  return *this;
}

PreparedStatement& PreparedStatement::operator<<(double dValue) {
  Check(sqlite3_bind_double(m_statement.get(), ++m_nParameter, dValue));
  return *this;
}

PreparedStatement& PreparedStatement::operator<<(std::int64_t llValue) {
  Check(sqlite3_bind_int64(m_statement.get(), ++m_nParameter, llValue));
  return *this;
}

PreparedStatement& PreparedStatement::operator<<(const Value& vtValue) {
  if (const auto* const sText = vtValue.As<platform::Text>()) return *this << *sText;
  if (const auto* const dValue = vtValue.As<double>()) return *this << *dValue;
  if (const auto* const llValue = vtValue.As<std::int64_t>()) return *this << *llValue;
  if (const auto* const time = vtValue.As<platform::Timestamp>()) {
    return *this << static_cast<std::int64_t>(time->time_since_epoch().count());
  }
  ++m_nParameter;
  if (const auto* const bytes = vtValue.As<platform::Bytes>()) {
    Check(bytes->empty() ? sqlite3_bind_zeroblob(m_statement.get(), m_nParameter, 0)
                         : sqlite3_bind_blob64(m_statement.get(), m_nParameter, bytes->data(),
                                               bytes->size(), SQLITE_TRANSIENT));
  } else {
    Check(sqlite3_bind_null(m_statement.get(), m_nParameter));
  }
  return *this;
}

void PreparedStatement::Run() {
  m_nParameter = 0;
  const int nCode = sqlite3_step(m_statement.get());
  if (nCode == SQLITE_DONE || nCode == SQLITE_ROW) {
    sqlite3_reset(m_statement.get());
    return;
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
    : m_sSubject("The catalog \"" + record.sName + "\""), m_llKilobytes(record.llKilobytes) {
  provider::engines::CheckFile(provider::historian::EngineCatalog(record, false));
  sqlite3* database = nullptr;
  const int nCode = sqlite3_open_v2(record.file.c_str(), &database,
                                    SQLITE_OPEN_READWRITE | SQLITE_OPEN_EXRESCODE, nullptr);
  m_database.reset(database);
  if (nCode != SQLITE_OK) Fail();
  sqlite3_busy_timeout(database, 10'000);
  if (m_llKilobytes > 0) {
    // Pages are of 4 kilobytes; the limit belongs to the connection, not to the file.
    Execute(fmt::format("PRAGMA max_page_count = {}", m_llKilobytes / 4).c_str());
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
  const int nCode = sqlite3_extended_errcode(m_database.get());
  if ((nCode & 0xFF) == SQLITE_FULL && m_llKilobytes > 0) {
    throw Failure(platform::failure::kStorage,
                  fmt::format("{} has reached its limit of {} kilobytes, so nothing was written: "
                              "delete rows or use another catalog.",
                              m_sSubject, m_llKilobytes));
  }
  throw provider::engines::FailureOf(nCode, m_sSubject, sqlite3_errmsg(m_database.get()));
}

}  // namespace orvane::tools
