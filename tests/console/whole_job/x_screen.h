// A screen of the test's own: an X server without a monitor and a window manager on it, both
// started on a free display and ended with the object. Used by the test program's main function,
// before the toolkit starts.
#pragma once

#include <sys/types.h>

#include <string>

namespace orvane::console {

class XScreen {
 public:
  /// Starts both and waits until windows are managed. Fails with a sentence, std::runtime_error.
  XScreen();
  ~XScreen();
  XScreen(const XScreen&) = delete;
  XScreen& operator=(const XScreen&) = delete;

  /// As in the environment variable DISPLAY.
  const std::string& Display() const { return m_sDisplay; }

 private:
  std::string m_sDisplay;
  pid_t m_server = -1;
  pid_t m_manager = -1;
};

}  // namespace orvane::console
