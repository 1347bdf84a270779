// When a command is to end: at its caller's stop request or when its time-out is over.
// Made by a session for one command; one thread at a time.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>

namespace orvane::provider {

class Deadline {
 public:
  /// A time-out of 0 waits for ever.
  Deadline(std::stop_token stop, std::chrono::milliseconds timeout);

  /// Fails with failure::kCancelled or kTimeout when the command is to end now.
  void Check() const;
  /// Does work that knows no time-out but a stop token, which is also stopped at the time-out.
  /// What was cancelled for that reason fails with failure::kTimeout.
  void Run(const std::function<void(std::stop_token)>& work) const;

 private:
  [[noreturn]] void FailLate(bool bClosed = false) const;

  std::stop_token m_stop;
  std::chrono::milliseconds m_timeout;
  std::optional<std::chrono::steady_clock::time_point> m_end;
};

}  // namespace orvane::provider
