// Holds threads up until it is opened, and lets through whoever comes later. The standard library's
// semaphores of GCC 12 can miss that they were released.
#pragma once

#include <condition_variable>
#include <mutex>

namespace orvane::fakes {

class Gate {
 public:
  void Open() {
    const std::lock_guard lock(m_mutex);
    m_bOpen = true;
    m_opened.notify_all();
  }
  void Wait() {
    std::unique_lock lock(m_mutex);
    m_opened.wait(lock, [this] { return m_bOpen; });
  }

 private:
  std::mutex m_mutex;
  std::condition_variable m_opened;
  bool m_bOpen = false;
};

}  // namespace orvane::fakes
