#include "provider/engines/sqlite/sqlite_files.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <utility>
#include <vector>

#include "platform/failure.h"
#include "provider/engines/sqlite/sqlite_errors.h"
#include "provider/engines/sqlite/sqlite_handle.h"

namespace orvane::provider::engines {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

// Bytes 18 and 19 of a database tell how it is written and read.
constexpr int kModePlace = 18;
constexpr std::array<unsigned char, 2> kLogMode = {2, 2};

// Read through SQLite: a descriptor of one's own would, when it is closed, let go of the locks that
// other connections of this process hold on the file.
bool IsInLogMode(const Text& sPath) {
  sqlite3_vfs* const vfs = sqlite3_vfs_find(nullptr);
  // As large and as aligned as this file system's SQLite wants it.
  const std::size_t nWords = static_cast<std::size_t>(vfs->szOsFile) / sizeof(std::max_align_t) + 1;
  std::vector<std::max_align_t> memory(nWords);
  auto* const file = reinterpret_cast<sqlite3_file*>(memory.data());
  // The name is read to the second of two zero bytes.
  const Text sName = sPath + Text(2, '\0');
  int nFlags = 0;
  if (vfs->xOpen(vfs, sName.c_str(), file, SQLITE_OPEN_READONLY | SQLITE_OPEN_MAIN_DB, &nFlags) !=
      SQLITE_OK) {
    return false;
  }
  std::array<unsigned char, 2> mode{};
  const int nRead = file->pMethods->xRead(file, mode.data(), mode.size(), kModePlace);
  file->pMethods->xClose(file);
  return nRead == SQLITE_OK && mode == kLogMode;
}

// Opens the file for writing and does the work there; what fails is left to whoever opens it next.
template <class Work>
void Try(const Text& sPath, Work&& work) {
  const OpenedDatabase opened = OpenDatabase(sPath.c_str(), SQLITE_OPEN_READWRITE);
  if (opened.nCode != SQLITE_OK) return;
  std::forward<Work>(work)([&](const char* sSql) {
    return sqlite3_exec(opened.database.get(), sSql, nullptr, nullptr, nullptr);
  });
}

// Takes back what was half done. False when the journal that tells it is kept from this user.
bool TakeBack(const Text& sPath, const std::filesystem::path& journal) {
  bool bReached = true;
  Try(sPath, [&](const auto& run) {
    // Is refused while a writer lives, whose journal that is.
    const int nCode = run("BEGIN IMMEDIATE");
    bReached = (nCode & kPrimaryCode) != SQLITE_CANTOPEN;
    if (nCode != SQLITE_OK) return;
    // One in which nothing had been written down yet is left over even then, and is nobody's.
    std::error_code ignored;
    std::filesystem::remove(journal, ignored);
    run("ROLLBACK");
  });
  return bReached || ::faccessat(AT_FDCWD, journal.c_str(), R_OK | W_OK, AT_EACCESS) == 0 ||
         errno != EACCES;
}

bool IsOwner(const Text& sPath) {
  struct stat file {};
  return ::geteuid() == 0 || (::stat(sPath.c_str(), &file) == 0 && file.st_uid == ::geteuid());
}

}  // namespace

Text SubjectOf(const Catalog& catalog) {
  if (!catalog.sName.empty()) return fmt::format("The catalog \"{}\"", catalog.sName);
  if (!catalog.sPlace.empty()) return fmt::format("The database \"{}\"", catalog.sPlace);
  return "The database";
}

void CheckFile(const Catalog& catalog) {
  std::error_code error;
  const auto status = std::filesystem::status(catalog.sPlace, error);
  const auto fail = [&](platform::Long lNumber, std::string_view sWhat) {
    throw Failure(lNumber,
                  fmt::format("{} cannot be opened: {}.", SubjectOf(catalog),
                              fmt::format(fmt::runtime(sWhat), catalog.sPlace)),
                  "SQLite", error.value());
  };
  if (error == std::errc::permission_denied) {
    fail(failure::kNoRights,
         "you have no right to the folder of its file \"{}\"; ask its owner for it");
  }
  if (status.type() == std::filesystem::file_type::not_found) {
    fail(failure::kServerNotFound, "there is no file \"{}\"; restore it from a copy");
  }
  if (status.type() != std::filesystem::file_type::regular) {
    fail(failure::kNotADatabase,
         "\"{}\" is no file; move it away and restore the file from a copy");
  }
  if (::faccessat(AT_FDCWD, catalog.sPlace.c_str(), R_OK, AT_EACCESS) != 0) {
    error.assign(errno, std::generic_category());
    fail(failure::kNoRights, "you have no right to read its file \"{}\"; ask its owner for it");
  }
  if (IsInLogMode(catalog.sPlace)) {
    if (!IsOwner(catalog.sPlace)) {
      fail(
          failure::kNoRights,
          "its file \"{}\" is as an older version left it, so that reading it would lock its owner "
          "out; ask its owner to open it once");
    }
    Try(catalog.sPlace, [](const auto& run) { run("PRAGMA journal_mode = DELETE"); });
  }
  const std::filesystem::path journal = catalog.sPlace + "-journal";
  if (std::filesystem::exists(journal, error) &&
      ::faccessat(AT_FDCWD, catalog.sPlace.c_str(), W_OK, AT_EACCESS) == 0 &&
      !TakeBack(catalog.sPlace, journal)) {
    throw Failure(
        failure::kNoRights,
        fmt::format("{} cannot be opened: a program of another user broke off in the "
                    "middle of a change, and you have no right to its journal \"{}\"; ask "
                    "the owner of that file to open the catalog once, or an administrator "
                    "for the right to it.",
                    SubjectOf(catalog), journal.string()),
        "SQLite", EACCES);
  }
}

Text UriOf(const Catalog& catalog) {
  Text sUri = "file://";
  for (const char character : std::filesystem::absolute(catalog.sPlace).string()) {
    switch (character) {
      case '%':
        sUri += "%25";
        break;
      case '?':
        sUri += "%3f";
        break;
      case '#':
        sUri += "%23";
        break;
      default:
        sUri += character;
    }
  }
  return sUri + (catalog.bReadOnly ? "?mode=ro" : "?mode=rw");
}

}  // namespace orvane::provider::engines
