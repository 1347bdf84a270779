// Ends a call on a database when its stop is requested, also while it waits for a lock and up to
// the moment in which a change is made for good. Made for one call, on its stack.
#pragma once

#include <sqlite3.h>

#include <chrono>
#include <functional>
#include <stop_token>
#include <utility>

#include "platform/failure.h"

namespace orvane::provider::engines {

class SqliteWatch {
 public:
  /// The lock wait limits each wait for a lock on its own. A change is made for good unless
  /// mayCommit, when there is one, says no.
  SqliteWatch(sqlite3* database, std::stop_token stop, std::chrono::milliseconds lockWait,
              std::function<bool()> mayCommit = {});
  SqliteWatch(const SqliteWatch&) = delete;
  SqliteWatch& operator=(const SqliteWatch&) = delete;
  ~SqliteWatch();

  /// From now on called whenever the watch looks at the stop, on the thread of the call, until it
  /// is taken away by an empty one; false ends the statement. It must not throw.
  void OnLook(std::function<bool()> look) { m_look = std::move(look); }
  /// Fails with failure::kCancelled when the call is to end now.
  void Check(const platform::Text& sSql = {}) const;
  /// Does the work of the call. What was interrupted, gave up waiting for a lock or was not made
  /// for good because the call is to end fails for that reason.
  template <class Work>
  auto Guard(const platform::Text& sSql, Work&& work) const {
    try {
      Check(sSql);
      return std::forward<Work>(work)();
    } catch (const platform::Failure& failed) {
      namespace failure = platform::failure;
      if (m_bRefused) FailCancelled(sSql);
      if (failed.Number() == failure::kCancelled || failed.Number() == failure::kBusy) Check(sSql);
      throw;
    }
  }

 private:
  using Clock = std::chrono::steady_clock;

  [[noreturn]] static void FailCancelled(const platform::Text& sSql);
  bool GoesOn() const;
  bool WaitForLock(int nTries);
  bool RefusesCommit();

  sqlite3* m_database;
  std::stop_token m_stop;
  std::chrono::milliseconds m_lockWait;
  std::function<bool()> m_mayCommit;
  std::function<bool()> m_look;
  Clock::time_point m_lockDeadline;
  bool m_bRefused = false;
};

}  // namespace orvane::provider::engines
