#include "provider/engines/sqlite/sqlite_watch.h"

#include <fmt/format.h>

#include <algorithm>
#include <condition_variable>
#include <mutex>

namespace orvane::provider::engines {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

// Steps of SQLite's machine between two looks at the clock: some tens of microseconds.
constexpr int kStepsBetweenLooks = 1000;
constexpr std::chrono::milliseconds kBetweenTries{10};

Text InWords(std::chrono::milliseconds timeout) {
  if (timeout.count() % 1000 != 0) return fmt::format("{} milliseconds", timeout.count());
  const auto seconds = timeout.count() / 1000;
  return fmt::format("{} second{}", seconds, seconds == 1 ? "" : "s");
}

}  // namespace

SqliteWatch::SqliteWatch(sqlite3* database, std::stop_token stop, std::chrono::milliseconds timeout,
                         std::chrono::milliseconds lockWait)
    : m_database(database), m_stop(std::move(stop)), m_timeout(timeout), m_lockWait(lockWait) {
  if (timeout.count() > 0) m_deadline = m_start + timeout;
  sqlite3_progress_handler(
      m_database, kStepsBetweenLooks,
      [](void* watch) { return static_cast<SqliteWatch*>(watch)->IsOver() ? 1 : 0; }, this);
  sqlite3_busy_handler(
      m_database,
      [](void* watch, int nTries) {
        return static_cast<SqliteWatch*>(watch)->WaitForLock(nTries) ? 1 : 0;
      },
      this);
}

SqliteWatch::~SqliteWatch() {
  sqlite3_progress_handler(m_database, 0, nullptr, nullptr);
  sqlite3_busy_handler(m_database, nullptr, nullptr);
}

bool SqliteWatch::WaitForLock(int nTries) {
  const auto now = Clock::now();
  if (nTries == 0) m_lockDeadline = now + m_lockWait;
  const auto last = m_deadline ? std::min(*m_deadline, m_lockDeadline) : m_lockDeadline;
  if (now >= last || m_stop.stop_requested()) return false;
  // Woken at once by a stop request, otherwise after the time.
  std::mutex mutex;
  std::condition_variable_any woken;
  std::unique_lock lock(mutex);
  woken.wait_until(lock, m_stop, std::min(last, now + kBetweenTries), [] { return false; });
  return !m_stop.stop_requested();
}

void SqliteWatch::Check(const Text& sSql) const {
  if (m_stop.stop_requested()) {
    throw Failure(failure::kCancelled, "The statement was cancelled.", "SQLite", SQLITE_INTERRUPT,
                  sSql);
  }
  if (IsLate()) {
    throw Failure(failure::kTimeout,
                  fmt::format("The statement did not end within its time-out of {}: narrow it "
                              "down, or allow it more time.",
                              InWords(m_timeout)),
                  "SQLite", SQLITE_INTERRUPT, sSql);
  }
}

}  // namespace orvane::provider::engines
