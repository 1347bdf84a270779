// Waits for the other threads of the process to be gone. For main: declared before the
// application object, so that it acts after it. Main thread only.
#pragma once

#include <chrono>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <thread>

namespace orvane::console {

/// The toolkit's drawing threads are told to end with the application, but not joined: what they
/// keep goes at their very end, which may come when the process is already being torn down.
class ThreadsEnd {
 public:
  ThreadsEnd() = default;
  ThreadsEnd(const ThreadsEnd&) = delete;
  ThreadsEnd& operator=(const ThreadsEnd&) = delete;
  /// Returns when the calling thread is the only one, after two seconds at the latest.
  ~ThreadsEnd() {
    const auto latest = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (Threads() > 1 && std::chrono::steady_clock::now() < latest) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }

 private:
  static std::ptrdiff_t Threads() {
    std::error_code error;
    const std::filesystem::directory_iterator tasks("/proc/self/task", error);
    return error ? 1 : std::distance(begin(tasks), end(tasks));
  }
};

}  // namespace orvane::console
