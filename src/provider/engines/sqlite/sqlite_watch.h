// Ends a call on a database when its caller cancels or its time is up, also while it waits for a
// lock. Made for one call, on its stack.
#pragma once

#include <sqlite3.h>

#include <chrono>
#include <optional>
#include <stop_token>
#include <utility>

#include "platform/failure.h"

namespace orvane::provider::engines {

class SqliteWatch {
 public:
  using Clock = std::chrono::steady_clock;

  /// A time-out of 0 waits for ever; the lock wait limits each wait for a lock on its own.
  SqliteWatch(sqlite3* database, std::stop_token stop, std::chrono::milliseconds timeout,
              std::chrono::milliseconds lockWait);
  SqliteWatch(const SqliteWatch&) = delete;
  SqliteWatch& operator=(const SqliteWatch&) = delete;
  ~SqliteWatch();

  Clock::time_point Start() const { return m_start; }
  /// Whether the call is to end now.
  bool IsOver() const { return m_stop.stop_requested() || IsLate(); }
  /// Fails with failure::kCancelled or kTimeout when the call is to end now.
  void Check(const platform::Text& sSql = {}) const;
  /// Does the work of the call. What was interrupted, or gave up waiting for a lock, because the
  /// call is to end fails for that reason.
  template <class Work>
  auto Guard(const platform::Text& sSql, Work&& work) const {
    try {
      Check(sSql);
      return std::forward<Work>(work)();
    } catch (const platform::Failure& failed) {
      namespace failure = platform::failure;
      if (failed.Number() == failure::kCancelled || failed.Number() == failure::kBusy) Check(sSql);
      throw;
    }
  }

 private:
  bool IsLate() const { return m_deadline && Clock::now() >= *m_deadline; }
  bool WaitForLock(int nTries);

  sqlite3* m_database;
  std::stop_token m_stop;
  std::chrono::milliseconds m_timeout;
  std::chrono::milliseconds m_lockWait;
  Clock::time_point m_start = Clock::now();
  std::optional<Clock::time_point> m_deadline;
  Clock::time_point m_lockDeadline;
};

}  // namespace orvane::provider::engines
