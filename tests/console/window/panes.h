// The panes of a window, as they are found on it. Used by the tests of whole windows;
// user-interface thread.
#pragma once

#include "console/results/result_pane.h"
#include "console/scope/scope_pane.h"

namespace orvane::console {

inline ScopePane& ScopeOf(const QWidget& window) {
  return *window.findChild<ScopePane*>();
}

inline ResultPane& ResultsOf(const QWidget& window) {
  return *window.findChild<ResultPane*>();
}

}  // namespace orvane::console
