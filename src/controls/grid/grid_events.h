// The notifications of one grid, shared by the control, which hands them to listeners, and its
// window, where they arise. User-interface thread.
#pragma once

#include "platform/signal.h"

namespace orvane::controls {

struct GridEvents {
  platform::Signal<> headClick;
  platform::Signal<> rowColChange;
  platform::Signal<> selChange;
  platform::Signal<> insert;
  platform::Signal<> remove;
  platform::Signal<> filterKept;
};

}  // namespace orvane::controls
