// Waiting belongs to the host: slow engine calls run through this.
// Implemented by the host, used by the connection layer; called on the user-interface thread.
#pragma once

#include <functional>
#include <stop_token>

#include "platform/types.h"

namespace orvane::platform {

class LongOperation {
 public:
  LongOperation() = default;
  LongOperation(const LongOperation&) = delete;
  LongOperation& operator=(const LongOperation&) = delete;
  virtual ~LongOperation() = default;

  /// Runs the work and returns when it is done, passing on what it throws. A host with a window
  /// runs it off the user-interface thread, keeps the window painting, lets nothing else in, and
  /// requests stop when the user presses Cancel; the work then ends as soon as it can with a
  /// Failure of number failure::kCancelled. The work must not touch the user interface.
  virtual void Run(const Text& sWhat, const std::function<void(std::stop_token)>& work) = 0;
  /// As Run, for a caller that shows what its work has done so far: calls tick on the thread of the
  /// caller some fifty times a second while the work runs, the first time soon. While tick returns
  /// true the caller's own window tells that something runs, and how to stop it: nothing is laid
  /// over it, and windows with the property kOwnInput get the user's input. tick must not throw. A
  /// host that handles nothing during a run calls no tick.
  virtual void RunShown(const Text& sWhat, const std::function<void(std::stop_token)>& work,
                        const std::function<bool()>& /*tick*/) {
    Run(sWhat, work);
  }
  /// As Run, for work that nobody asked for just now: no panel tells of it, and what the user does
  /// in the meantime requests stop and takes effect when the work has ended.
  virtual void RunGivingWay(const Text& sWhat, const std::function<void(std::stop_token)>& work) {
    Run(sWhat, work);
  }
  /// Name of a toolkit's property, True at a window, with all in it, that may be used while it
  /// shows what its own statement fetches.
  static constexpr const char* kOwnInput = "orvaneOwnInput";
  /// Name of a toolkit's property, True at a widget, with all in it, for which keys are kept that
  /// come while something runs and nothing tells of it: they are typed when it is done.
  static constexpr const char* kKeepsKeys = "orvaneKeepsKeys";
  /// True on the user-interface thread while a run has not returned: what is handled meanwhile must
  /// not destroy who waits. A host that handles nothing during a run has nothing to tell.
  virtual bool IsRunning() const { return false; }
};

}  // namespace orvane::platform
