#include "provider/engines/sqlite/sqlite_watch.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>

namespace orvane::provider::engines {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

// Steps of SQLite's machine between two looks at the stop: some tens of microseconds.
constexpr int kStepsBetweenLooks = 1000;
constexpr std::chrono::milliseconds kBetweenTries{10};

}  // namespace

SqliteWatch::SqliteWatch(sqlite3* database, std::stop_token stop,
                         std::chrono::milliseconds lockWait, std::function<bool()> mayCommit)
    : m_database(database),
      m_stop(std::move(stop)),
      m_lockWait(lockWait),
      m_mayCommit(std::move(mayCommit)) {
  sqlite3_progress_handler(
      m_database, kStepsBetweenLooks,
      [](void* watch) { return static_cast<const SqliteWatch*>(watch)->GoesOn() ? 0 : 1; }, this);
  sqlite3_busy_handler(
      m_database,
      [](void* watch, int nTries) {
        return static_cast<SqliteWatch*>(watch)->WaitForLock(nTries) ? 1 : 0;
      },
      this);
  sqlite3_commit_hook(
      m_database,
      [](void* watch) { return static_cast<SqliteWatch*>(watch)->RefusesCommit() ? 1 : 0; }, this);
}

SqliteWatch::~SqliteWatch() {
  sqlite3_progress_handler(m_database, 0, nullptr, nullptr);
  sqlite3_busy_handler(m_database, nullptr, nullptr);
  sqlite3_commit_hook(m_database, nullptr, nullptr);
}

bool SqliteWatch::GoesOn() const {
  return !m_stop.stop_requested() && (!m_look || m_look());
}

bool SqliteWatch::WaitForLock(int nTries) {
  const auto now = Clock::now();
  if (nTries == 0) m_lockDeadline = now + m_lockWait;
  if (now >= m_lockDeadline || m_stop.stop_requested()) return false;
  // Woken at once by a stop request, otherwise after the time.
  std::mutex mutex;
  std::condition_variable_any woken;
  std::unique_lock lock(mutex);
  woken.wait_until(lock, m_stop, std::min(m_lockDeadline, now + kBetweenTries),
                   [] { return false; });
  return !m_stop.stop_requested();
}

// SQLite asks last before a change is made for good; a stop that comes later comes too late.
bool SqliteWatch::RefusesCommit() {
  m_bRefused = m_stop.stop_requested() || (m_mayCommit && !m_mayCommit());
  return m_bRefused;
}

void SqliteWatch::Check(const Text& sSql) const {
  if (m_stop.stop_requested()) FailCancelled(sSql);
}

void SqliteWatch::FailCancelled(const Text& sSql) {
  throw Failure(failure::kCancelled, "The statement was cancelled.", "SQLite", SQLITE_INTERRUPT,
                sSql);
}

}  // namespace orvane::provider::engines
