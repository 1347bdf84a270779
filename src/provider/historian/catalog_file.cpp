#include "provider/historian/catalog_file.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <memory>
#include <random>
#include <thread>

#include "platform/failure.h"

namespace orvane::provider::historian {
namespace {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;
namespace fs = std::filesystem;

struct CloseDatabase {
  void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;

Database Open(const fs::path& file, int nFlags, int& nResult) {
  sqlite3* database = nullptr;
  nResult = sqlite3_open_v2(file.c_str(), &database, nFlags, nullptr);
  return Database(database);
}

[[noreturn]] void FailToWrite(const fs::path& file, int nSystemError, int nNativeError) {
  if (nSystemError == EACCES || nSystemError == EPERM || nSystemError == EROFS) {
    throw Failure(failure::kNoRights,
                  "You have no right to write into the folder " + file.parent_path().string() +
                      "; ask its owner for the right or choose another folder.",
                  "ORVOLEDB", nSystemError);
  }
  throw Failure(failure::kStorage,
                "The file " + file.string() +
                    " cannot be written; check that the folder exists and the disk has room.",
                "ORVOLEDB", nNativeError);
}

void Execute(sqlite3* database, const char* sSql, const fs::path& file) {
  if (sqlite3_exec(database, sSql, nullptr, nullptr, nullptr) != SQLITE_OK) {
    FailToWrite(file, sqlite3_system_errno(database), sqlite3_extended_errcode(database));
  }
}

fs::path TemporaryName(const fs::path& file) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::random_device random;
  Text sName = "." + file.filename().string() + ".";
  for (int i = 0; i < 16; ++i) sName += kDigits[random() % 16];
  return file.parent_path() / sName;
}

void RemoveFiles(const fs::path& file) {
  // The file itself last: what stands beside it must not be taken from the next one of its name.
  for (const char* const sEnd : {"-wal", "-shm", "-journal", ".recorder", ""}) {
    std::error_code ignored;
    fs::remove(fs::path(file.string() + sEnd), ignored);
  }
}

// Makes the whole file under another name and gives that.
fs::path MakeTemporary(const fs::path& file, std::string_view sStatements) {
  fs::path temporary = TemporaryName(file);
  try {
    int nResult = SQLITE_OK;
    const Database database = Open(
        temporary, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_EXCLUSIVE, nResult);
    if (nResult != SQLITE_OK) FailToWrite(file, sqlite3_system_errno(database.get()), nResult);
    Execute(database.get(), "PRAGMA journal_mode = WAL", file);
    const Text sAll = "BEGIN;" + Text(sStatements) + ";COMMIT";
    Execute(database.get(), sAll.c_str(), file);
  } catch (const Failure&) {
    RemoveFiles(temporary);
    throw;
  }
  return temporary;
}

bool IsBusy(int nResult) {
  constexpr int kPrimary = 0xFF;
  return (nResult & kPrimary) == SQLITE_BUSY || (nResult & kPrimary) == SQLITE_LOCKED;
}

// Tries for a second, or until the stop.
int WaitForOthers(void* stop, int nTries) {
  constexpr int kMostTries = 100;
  if (nTries >= kMostTries || static_cast<const std::stop_token*>(stop)->stop_requested()) return 0;
  std::this_thread::sleep_for(std::chrono::milliseconds(10));
  return 1;
}

}  // namespace

void MakeCatalogFile(const fs::path& file, std::string_view sStatements) {
  const fs::path temporary = MakeTemporary(file, sStatements);
  // Unlike a rename, a link never takes the place of a file that is there.
  const int nLinked = link(temporary.c_str(), file.c_str());
  const int nError = errno;
  RemoveFiles(temporary);
  if (nLinked == 0) return;
  if (nError == EEXIST) {
    throw Failure(failure::kKeyExists,
                  "There is a file " + file.string() +
                      " already, perhaps of a catalog that was dropped; move it away, or choose "
                      "another name or folder.");
  }
  FailToWrite(file, nError, nError);
}

void ReplaceCatalogFile(const fs::path& file, std::string_view sStatements) {
  const fs::path temporary = MakeTemporary(file, sStatements);
  RemoveFiles(file);
  if (rename(temporary.c_str(), file.c_str()) == 0) return;
  const int nError = errno;
  RemoveFiles(temporary);
  FailToWrite(file, nError, nError);
}

void RemoveCatalogFile(const fs::path& file) {
  RemoveFiles(file);
}

bool IsSoundCatalogFile(const fs::path& file) {
  int nResult = SQLITE_OK;
  const Database database = Open(file, SQLITE_OPEN_READWRITE, nResult);
  // An empty file is an undamaged database.
  for (const char* const sSql :
       {"SELECT 'ok' FROM sqlite_master LIMIT 1", "PRAGMA quick_check(1)"}) {
    bool bOk = false;
    if (nResult == SQLITE_OK) {
      nResult = sqlite3_exec(
          database.get(), sSql,
          [](void* ok, int, char** sValues, char**) {
            *static_cast<bool*>(ok) = sValues[0] != nullptr && std::string_view(sValues[0]) == "ok";
            return 0;
          },
          &bOk, nullptr);
    }
    if (!bOk && !IsBusy(nResult)) return false;
  }
  return true;
}

void HeldCatalogFile::CloseDatabase::operator()(sqlite3* database) const {
  sqlite3_close_v2(database);
}

HeldCatalogFile::HeldCatalogFile(fs::path file, DroppedFile fate, const Text& sCatalog,
                                 const std::stop_token& stop)
    : m_file(std::move(file)) {
  std::error_code ignored;
  if (!fs::exists(m_file, ignored)) return;
  const fs::path folder = m_file.parent_path();
  if (fate == DroppedFile::Goes &&
      faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
    FailToWrite(m_file, errno, errno);
  }
  int nResult = SQLITE_OK;
  Database database = Open(m_file, SQLITE_OPEN_READWRITE, nResult);
  if (nResult != SQLITE_OK) return;
  std::stop_token wait = stop;
  sqlite3_busy_handler(database.get(), WaitForOthers, &wait);
  // Leaving the log mode needs the file for oneself alone; a damaged file is in nobody's use.
  const auto run = [&](const char* sSql) {
    return sqlite3_exec(database.get(), sSql, nullptr, nullptr, nullptr);
  };
  nResult = run("PRAGMA locking_mode = EXCLUSIVE; PRAGMA journal_mode = DELETE");
  if (nResult == SQLITE_OK) nResult = run("BEGIN EXCLUSIVE");
  sqlite3_busy_handler(database.get(), nullptr, nullptr);
  if (IsBusy(nResult)) {
    if (stop.stop_requested()) throw Failure(failure::kCancelled, "The statement was cancelled.");
    throw Failure(failure::kBusy,
                  "The catalog " + sCatalog +
                      " is in use by another program; close what reads or writes it and try "
                      "again.",
                  "ORVOLEDB", nResult);
  }
  if (nResult == SQLITE_OK) m_database.reset(database.release());
}

HeldCatalogFile::~HeldCatalogFile() {
  if (m_database == nullptr) return;
  sqlite3_exec(m_database.get(),
               "ROLLBACK; PRAGMA locking_mode = NORMAL; PRAGMA journal_mode = WAL", nullptr,
               nullptr, nullptr);
}

void HeldCatalogFile::Remove() {
  RemoveFiles(m_file);
  m_database.reset();
  std::error_code ignored;
  if (fs::exists(m_file, ignored)) {
    throw Failure(failure::kStorage, "The catalog was dropped, but its file " + m_file.string() +
                                         " cannot be removed; remove it yourself.");
  }
}

const std::string_view kNewCatalog = R"(
CREATE TABLE Tags (
  Tag TEXT NOT NULL PRIMARY KEY,
  Description TEXT,
  Unit TEXT,
  Type TEXT NOT NULL DEFAULT 'number' CHECK (Type IN ('number', 'text'))
) WITHOUT ROWID;
CREATE TABLE Data (
  Tag TEXT NOT NULL,
  Timestamp TIMESTAMP NOT NULL CHECK (typeof(Timestamp) = 'integer'),
  Value REAL,
  Status TEXT NOT NULL DEFAULT 'Good',
  PRIMARY KEY (Tag, Timestamp)
) WITHOUT ROWID;
CREATE INDEX DataByTime ON Data (Timestamp);
CREATE TABLE Data2 (
  Tag TEXT NOT NULL,
  Timestamp TIMESTAMP NOT NULL CHECK (typeof(Timestamp) = 'integer'),
  Value TEXT,
  Status TEXT NOT NULL DEFAULT 'Good',
  PRIMARY KEY (Tag, Timestamp)
) WITHOUT ROWID;
CREATE INDEX Data2ByTime ON Data2 (Timestamp))";

const std::string_view kNewSystemCatalog = R"(
CREATE TABLE Historians (
  Name TEXT NOT NULL PRIMARY KEY,
  Identity GUID NOT NULL UNIQUE,
  Created TIMESTAMP NOT NULL,
  Path TEXT NOT NULL,
  SizeLimit BIGINT,
  Description TEXT NOT NULL DEFAULT ''
) WITHOUT ROWID)";

}  // namespace orvane::provider::historian
