// Where failures are taken down, with the number, the source and the native error that no sentence
// shows. Offered by a host that keeps such a log, in Services; whoever shows a failure notes it
// there first. User-interface thread.
#pragma once

#include "platform/failure.h"

namespace orvane::platform {

class FailureLog {
 public:
  FailureLog() = default;
  FailureLog(const FailureLog&) = delete;
  FailureLog& operator=(const FailureLog&) = delete;
  virtual ~FailureLog() = default;

  /// Takes the failure down; fails never.
  virtual void Note(const Failure& failure) noexcept = 0;
};

}  // namespace orvane::platform
