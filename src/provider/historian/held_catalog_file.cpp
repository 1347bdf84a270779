#include "provider/historian/held_catalog_file.h"

#include <chrono>
#include <thread>

#include "platform/failure.h"
#include "provider/engines/sqlite/sqlite_errors.h"

namespace orvane::provider::historian {
namespace {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

// Tries for a second, or until the stop.
int WaitForOthers(void* stop, int nTries) {
  constexpr int kMostTries = 100;
  if (nTries >= kMostTries || static_cast<const std::stop_token*>(stop)->stop_requested()) return 0;
  std::this_thread::sleep_for(std::chrono::milliseconds(10));
  return 1;
}

[[noreturn]] void FailInUse(const Text& sCatalog, int nResult) {
  throw Failure(failure::kBusy,
                "The catalog " + sCatalog +
                    " is in use by another program; close what reads or writes it and try "
                    "again.",
                "ORVOLEDB", nResult);
}

}  // namespace

HeldCatalogFile::HeldCatalogFile(const std::filesystem::path& file, const Text& sCatalog,
                                 const std::stop_token& stop) {
  std::error_code ignored;
  if (!std::filesystem::exists(file, ignored)) return;
  m_recorder.emplace(file, RecorderLock::File::Found);
  if (!m_recorder->Take()) FailInUse(sCatalog, SQLITE_BUSY);
  auto [opened, nResult] = engines::OpenDatabase(file.c_str(), SQLITE_OPEN_READWRITE);
  if (nResult != SQLITE_OK) return;
  sqlite3* const database = opened.get();
  std::stop_token wait = stop;
  sqlite3_busy_handler(database, WaitForOthers, &wait);
  // An older version's log mode is left first, for which everyone else must have closed the file;
  // a damaged file is in nobody's use.
  nResult = sqlite3_exec(database,
                         "PRAGMA locking_mode = EXCLUSIVE; PRAGMA journal_mode = DELETE; "
                         "BEGIN EXCLUSIVE",
                         nullptr, nullptr, nullptr);
  sqlite3_busy_handler(database, nullptr, nullptr);
  if (engines::IsHeldByOthers(nResult)) {
    if (stop.stop_requested()) throw Failure(failure::kCancelled, "The statement was cancelled.");
    FailInUse(sCatalog, nResult);
  }
  if (nResult == SQLITE_OK) m_database = std::move(opened);
}

}  // namespace orvane::provider::historian
