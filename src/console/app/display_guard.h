// Turns the abort of a toolkit that finds no display into one sentence and an exit status. For
// main: lives while the application object is made. Main thread only.
#pragma once

namespace orvane::console {

/// The exit status when no window can be shown.
constexpr int kNoDisplayStatus = 69;

class DisplayGuard {
 public:
  DisplayGuard();
  DisplayGuard(const DisplayGuard&) = delete;
  DisplayGuard& operator=(const DisplayGuard&) = delete;
  ~DisplayGuard();
};

}  // namespace orvane::console
