#include "provider/engines/postgres/postgres_cancel.h"

#include <pthread.h>
#include <unistd.h>

#include <array>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>

#include "provider/engines/postgres/postgres_handle.h"

namespace orvane::provider::engines {

// libpq asks by a connection of its own, and waits for its end however long that takes. A thread
// that waits so cannot be told to stop, and may not be left behind either: the library may be
// unloaded, or the program end, before it is done. It can be taken down where it waits, as what
// it is in then may be called by a handler of signals: it holds no lock and no memory, but a
// file, and that is one of the thread's own.
void AskToEnd(PGconn* connection, std::chrono::milliseconds patience) noexcept {
  const PostgresCancel cancel(PQgetCancel(connection));
  if (cancel == nullptr) return;
  std::mutex mutex;
  std::condition_variable answered;
  bool bAnswered = false;
  try {
    std::thread asks([&] {
      constexpr unsigned kBehindStandardFiles = 3;
      close_range(kBehindStandardFiles, ~0U, CLOSE_RANGE_UNSHARE);
      std::array<char, 256> sError{};
      PQcancel(cancel.get(), sError.data(), static_cast<int>(sError.size()));
      const std::lock_guard lock(mutex);
      bAnswered = true;
      answered.notify_all();
    });
    {
      std::unique_lock lock(mutex);
      if (!answered.wait_for(lock, patience, [&] { return bAnswered; })) {
        pthread_cancel(asks.native_handle());
      }
    }
    asks.join();
  } catch (const std::exception&) {
    // Without room for a thread nobody is asked; the statement goes on to its end or its limit.
  }
}

}  // namespace orvane::provider::engines
