// Ctrl+C and other requests to end: what runs is stopped where it runs, also on a server. A second
// one, and one while nothing runs, ends the program at once. A request that is ignored when the
// program starts stays ignored.
// Made first by the program, before there are other threads; Run is called on one thread.
#pragma once

#include <signal.h>

#include <mutex>
#include <thread>

#include "platform/long_operation.h"

namespace orvane::tools {

class Interruption final : public platform::LongOperation {
 public:
  Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;
  ~Interruption() override;

  /// Does the work on this thread.
  void Run(const platform::Text& sWhat, const std::function<void(std::stop_token)>& work) override;
  /// The status of a program that was ended by the request, or 0 while there was none.
  int ExitStatus() const;

 private:
  void Listen();

  mutable std::mutex m_mutex;
  std::stop_source m_stop{std::nostopstate};  // of what runs
  int m_nSignal = 0;
  bool m_bEnding = false;
  sigset_t m_signals{};
  std::thread m_listener;
};

}  // namespace orvane::tools
