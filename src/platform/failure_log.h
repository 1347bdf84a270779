// Where failures are taken down, with the number, the source and the native error that no sentence
// shows. A host that keeps such a log lets its UserInterface be one as well; whoever shows a
// failure notes it there first. User-interface thread.
#pragma once

#include "platform/failure.h"
#include "platform/user_interface.h"

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

/// Notes the failure where this user interface keeps a log.
inline void NoteFailure(UserInterface& ui, const Failure& failure) {
  if (auto* log = dynamic_cast<FailureLog*>(&ui)) log->Note(failure);
}

}  // namespace orvane::platform
