// A stop that can be waited for together with what comes on sockets.
// Used by the engine on PostgreSQL, on the stack of whoever waits; one thread beside the one that
// requests the stop.
#pragma once

#include <poll.h>

#include <chrono>
#include <stop_token>

#include "files/descriptor.h"

namespace orvane::provider::engines {

class StopSignal {
 public:
  static constexpr std::chrono::milliseconds kForever{-1};

  explicit StopSignal(const std::stop_token& stop);

  /// Waits until the file has one of the events, the stop is requested or the time is over. A stop
  /// ends one wait, which is the next one where it was requested before. True when the file has
  /// something.
  bool WaitFor(int file, short nEvents, std::chrono::milliseconds atMost) const;

 private:
  struct Ring {
    int file;
    void operator()() const noexcept;
  };

  // Before the callback, whose end waits for whoever rings: the number is no other file's till
  // then.
  files::Descriptor m_bell;  ///< readable when the stop is requested; of -1 where there is no room
  std::stop_callback<Ring> m_callback;
};

}  // namespace orvane::provider::engines
