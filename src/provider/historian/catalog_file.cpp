#include "provider/historian/catalog_file.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <random>

#include "files/attributes.h"
#include "files/private_files.h"
#include "platform/failure.h"
#include "provider/engines/sqlite/sqlite_errors.h"
#include "provider/engines/sqlite/sqlite_handle.h"

namespace orvane::provider::historian {
namespace {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;
namespace fs = std::filesystem;

constexpr std::string_view kHexDigits = "0123456789abcdef";
constexpr std::size_t kHiddenDigits = 16;
// What may stand beside a catalog's file and belongs to it.
constexpr std::array kBelongings = {"-wal", "-shm", "-journal", ".recorder"};

[[noreturn]] void FailToWrite(const fs::path& file, sqlite3* database) {
  const int nCode = engines::WithSystemError(database, sqlite3_extended_errcode(database));
  // SQLite finds some disks full without an error of the system to tell.
  const bool bFull = (nCode & engines::kPrimaryCode) == SQLITE_FULL;
  FailToWriteCatalogFile(file, bFull ? ENOSPC : sqlite3_system_errno(database), nCode);
}

void Execute(sqlite3* database, const char* sSql, const fs::path& file) {
  if (sqlite3_exec(database, sSql, nullptr, nullptr, nullptr) != SQLITE_OK) {
    FailToWrite(file, database);
  }
}

[[noreturn]] void FailThere(const fs::path& file) {
  throw Failure(failure::kKeyExists, "There is a file " + file.string() +
                                         " already; move it away, or choose another name or "
                                         "folder.");
}

bool HasNoLinks(int nSystemError) {
  return nSystemError == EPERM || nSystemError == EOPNOTSUPP || nSystemError == EMLINK ||
         nSystemError == ENOSYS;
}

// What a file of that hidden name is marked with: a number that no file has by itself.
Text MarkOf(const fs::path& hidden) {
  const Text sDigits = hidden.extension().string().substr(1);
  constexpr std::size_t kDigits = 7;
  return std::to_string(std::stol(sDigits.substr(0, kDigits), nullptr, 16) + 1);
}

// What a database says to a question; no value when it cannot say.
std::optional<Text> Told(sqlite3* database, const char* sSql) {
  Text sTold;
  const int nResult = sqlite3_exec(
      database, sSql,
      [](void* told, int, char** sValues, char**) {
        *static_cast<Text*>(told) += sValues[0] != nullptr ? sValues[0] : "";
        return 0;
      },
      &sTold, nullptr);
  return nResult == SQLITE_OK ? std::optional(sTold) : std::nullopt;
}

constexpr const char* kSchema =
    "SELECT type || ' ' || name || ' ' || coalesce(sql, '') || ';' FROM sqlite_schema ORDER BY "
    "type, name";
// The statement that tells 0 when no table has a row.
constexpr const char* kAnyRow =
    "SELECT 'SELECT EXISTS (' || group_concat('SELECT 1 FROM \"' || name || '\"', ' UNION ALL ') "
    "|| ')' FROM sqlite_schema WHERE type = 'table'";

void MarkHidden(const fs::path& hidden, const fs::path& file) {
  const auto [database, nResult] = engines::OpenDatabase(hidden.c_str(), SQLITE_OPEN_READWRITE);
  if (nResult != SQLITE_OK) FailToWrite(file, database.get());
  Execute(database.get(), ("PRAGMA user_version = " + MarkOf(hidden)).c_str(), file);
}

}  // namespace

void FailToWriteCatalogFile(const fs::path& file, int nSystemError, int nNativeError) {
  if (nSystemError == EACCES || nSystemError == EPERM || nSystemError == EROFS) {
    throw Failure(failure::kNoRights,
                  "You have no right to write into the folder " + file.parent_path().string() +
                      "; ask its owner for the right or choose another folder.",
                  "ORVOLEDB", nSystemError);
  }
  if (engines::IsNoRoom(nSystemError)) {
    throw Failure(failure::kStorage,
                  "The disk of the file " + file.string() +
                      " has no room left, so nothing was written: make room and try again.",
                  "ORVOLEDB", nNativeError);
  }
  throw Failure(failure::kStorage,
                "The file " + file.string() +
                    " cannot be written; check that the folder exists and the disk has room.",
                "ORVOLEDB", nNativeError);
}

fs::path HiddenName(const fs::path& file) {
  std::random_device random;
  Text sName = "." + file.filename().string() + ".";
  for (std::size_t i = 0; i < kHiddenDigits; ++i) sName += kHexDigits[random() % 16];
  return file.parent_path() / sName;
}

bool IsHiddenName(std::string_view sFileName) {
  for (const std::string_view sEnd : kBelongings) {
    if (sFileName.ends_with(sEnd)) sFileName.remove_suffix(sEnd.size());
  }
  const auto point = sFileName.rfind('.');
  return sFileName.starts_with('.') && point != std::string_view::npos && point > 0 &&
         sFileName.size() - point - 1 == kHiddenDigits &&
         sFileName.find_first_not_of(kHexDigits, point + 1) == std::string_view::npos;
}

void MakeHidden(const fs::path& file, const fs::path& hidden, std::string_view sStatements) {
  std::error_code error;
  files::MakePrivateFile(hidden, error);
  if (error) FailToWriteCatalogFile(file, error.value(), error.value());
  try {
    const auto [database, nResult] = engines::OpenDatabase(hidden.c_str(), SQLITE_OPEN_READWRITE);
    if (nResult != SQLITE_OK) FailToWrite(file, database.get());
    const Text sAll = "BEGIN;" + Text(sStatements) + ";COMMIT";
    Execute(database.get(), sAll.c_str(), file);
  } catch (const Failure&) {
    RemoveCatalogFile(hidden);
    throw;
  }
}

void NameHidden(const fs::path& hidden, const fs::path& file) {
  // A journal without its database would be taken for the new one's.
  for (const char* const sEnd : {"-journal", "-wal"}) {
    const fs::path belonging = file.string() + sEnd;
    std::error_code ignored;
    if (!fs::exists(file, ignored) && fs::exists(belonging, ignored)) FailThere(belonging);
  }
  // Unlike a rename, a link never takes the place of a file that is there.
  if (link(hidden.c_str(), file.c_str()) == 0) return;
  if (HasNoLinks(errno)) {
    // The file bears its hidden name within, so that it can be told without it.
    MarkHidden(hidden, file);
    if (renameat2(AT_FDCWD, hidden.c_str(), AT_FDCWD, file.c_str(), RENAME_NOREPLACE) == 0) return;
    if (errno == EINVAL || errno == ENOSYS) {
      throw Failure(failure::kStorage,
                    "The file " + file.string() +
                        " cannot be made, as its disk knows no safe way to name a new file; choose "
                        "another folder.",
                    "ORVOLEDB", errno);
    }
  }
  if (errno == EEXIST) FailThere(file);
  FailToWriteCatalogFile(file, errno, errno);
}

bool WasHidden(const fs::path& file, const fs::path& hidden, std::string_view sStatements) {
  const auto [database, nResult] = engines::OpenDatabase(file.c_str(), SQLITE_OPEN_READONLY);
  if (nResult != SQLITE_OK) return false;
  const auto [fresh, nFresh] =
      engines::OpenDatabase(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  if (nFresh != SQLITE_OK) return false;
  Execute(fresh.get(), Text(sStatements).c_str(), file);
  const auto told = Told(database.get(), kSchema);
  return Told(database.get(), "PRAGMA user_version") == MarkOf(hidden) && told &&
         told == Told(fresh.get(), kSchema) &&
         Told(database.get(), Told(database.get(), kAnyRow).value_or("").c_str()) == "0";
}

bool ReallyLiesIn(const fs::path& file, const fs::path& folder) {
  std::error_code error;
  const fs::path there = fs::weakly_canonical(file.parent_path(), error);
  if (error) return false;
  const fs::path inside = there.lexically_relative(fs::weakly_canonical(folder, error));
  return !error && !inside.empty() && *inside.begin() != "..";
}

void MakeCatalogFile(const fs::path& file, std::string_view sStatements) {
  const fs::path hidden = HiddenName(file);
  MakeHidden(file, hidden, sStatements);
  try {
    NameHidden(hidden, file);
  } catch (const Failure&) {
    RemoveCatalogFile(hidden);
    throw;
  }
  RemoveCatalogFile(hidden);
}

void ReplaceCatalogFile(const fs::path& file, std::string_view sStatements, const fs::path& like) {
  const fs::path hidden = HiddenName(file);
  MakeHidden(file, hidden, sStatements);
  const files::Descriptor made(open(hidden.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
  if (!made || !files::TakeAccess(like.string(), made)) {
    RemoveCatalogFile(hidden);
    FailToWriteCatalogFile(file, EPERM, EPERM);
  }
  RemoveCatalogFile(file);
  if (rename(hidden.c_str(), file.c_str()) == 0) return;
  const int nError = errno;
  RemoveCatalogFile(hidden);
  FailToWriteCatalogFile(file, nError, nError);
}

void HideFiles(const fs::path& file, const fs::path& hidden) {
  if (rename(file.c_str(), hidden.c_str()) != 0 && errno != ENOENT) {
    FailToWriteCatalogFile(file, errno, errno);
  }
  for (const char* const sEnd : kBelongings) {
    std::error_code ignored;
    fs::rename(file.string() + sEnd, hidden.string() + sEnd, ignored);
  }
}

void UnhideFiles(const fs::path& hidden, const fs::path& file) {
  std::error_code ignored;
  for (const char* const sEnd : kBelongings) {
    fs::rename(hidden.string() + sEnd, file.string() + sEnd, ignored);
  }
  fs::rename(hidden, file, ignored);
}

void RemoveCatalogFile(const fs::path& file) {
  std::error_code ignored;
  // The file itself last: what stands beside it must not be taken from the next one of its name.
  for (const char* const sEnd : kBelongings) fs::remove(file.string() + sEnd, ignored);
  fs::remove(file, ignored);
}

bool IsSoundCatalogFile(const fs::path& file) {
  auto [database, nResult] = engines::OpenDatabase(file.c_str(), SQLITE_OPEN_READWRITE);
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
    if (!bOk && !engines::IsHeldByOthers(nResult)) return false;
  }
  return true;
}

}  // namespace orvane::provider::historian
