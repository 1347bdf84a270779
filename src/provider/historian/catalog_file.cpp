#include "provider/historian/catalog_file.h"

#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <random>

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
  for (const char* const sEnd : {"", "-wal", "-shm", "-journal", ".recorder"}) {
    std::error_code ignored;
    fs::remove(fs::path(file.string() + sEnd), ignored);
  }
}

}  // namespace

void MakeCatalogFile(const fs::path& file, std::string_view sStatements) {
  const fs::path temporary = TemporaryName(file);
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
  // Unlike a rename, a link never takes the place of a file that is there.
  const int nLinked = link(temporary.c_str(), file.c_str());
  const int nError = errno;
  RemoveFiles(temporary);
  if (nLinked == 0) return;
  if (nError == EEXIST) {
    throw Failure(failure::kKeyExists, "There is a file " + file.string() +
                                           " already; move it away or choose another name.");
  }
  FailToWrite(file, nError, nError);
}

void RemoveCatalogFile(const fs::path& file, const Text& sCatalog) {
  std::error_code ignored;
  if (!fs::exists(file, ignored)) return;
  int nResult = SQLITE_OK;
  const Database database = Open(file, SQLITE_OPEN_READWRITE, nResult);
  if (nResult == SQLITE_OK) {
    sqlite3_busy_timeout(database.get(), 1000);
    // Leaving the log mode needs the file for oneself alone; a damaged file is in nobody's use.
    const int nChanged =
        sqlite3_exec(database.get(),
                     "PRAGMA locking_mode = EXCLUSIVE; PRAGMA journal_mode = DELETE", nullptr,
                     nullptr, nullptr) == SQLITE_OK
            ? sqlite3_exec(database.get(), "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr)
            : sqlite3_errcode(database.get());
    if ((nChanged & 0xFF) == SQLITE_BUSY || (nChanged & 0xFF) == SQLITE_LOCKED) {
      throw Failure(failure::kBusy,
                    "The catalog " + sCatalog +
                        " is in use by another program; close what reads or writes it and try "
                        "again.",
                    "ORVOLEDB", nChanged);
    }
  }
  if (unlink(file.c_str()) != 0 && errno != ENOENT) FailToWrite(file, errno, errno);
  RemoveFiles(file);
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
