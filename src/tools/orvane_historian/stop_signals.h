// SIGTERM and SIGINT, waited for instead of handled: what runs until it is told to stop ends its
// work first. Used by the recorders; one thread.
#pragma once

#include <signal.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace orvane::tools {

class StopSignals {
 public:
  StopSignals() {
    sigemptyset(&m_signals);
    sigaddset(&m_signals, SIGTERM);
    sigaddset(&m_signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &m_signals, nullptr);
  }
  /// True when one came before the time.
  bool WaitUntil(std::chrono::steady_clock::time_point time) const {
    using namespace std::chrono;
    for (;;) {
      const auto left = std::max(time - steady_clock::now(), steady_clock::duration::zero());
      const auto whole = duration_cast<seconds>(left);
      timespec wait{};
      wait.tv_sec = static_cast<time_t>(whole.count());
      wait.tv_nsec = static_cast<long>(duration_cast<nanoseconds>(left - whole).count());
      if (sigtimedwait(&m_signals, nullptr, &wait) > 0) return true;
      if (errno == EAGAIN) return false;
    }
  }

 private:
  sigset_t m_signals{};
};

}  // namespace orvane::tools
