// What the console offers a snap-in besides the objects that its events carry.
// Implemented by the host, handed over in Services; user-interface thread.
#pragma once

#include "platform/console/scope_items.h"
#include "platform/console/toolbar.h"
#include "platform/console/views.h"

namespace orvane::platform {

class Console {
 public:
  Console() = default;
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;
  virtual ~Console() = default;

  virtual platform::ScopeItems& ScopeItems() = 0;
  /// Display name of the static node.
  virtual void StaticNodeDisplayName(const Text& sDisplayName) = 0;
  virtual View& CurrentView() = 0;
  /// The view shown in the result pane, or none.
  virtual std::shared_ptr<ResultView> CurrentResultView() = 0;
  /// An empty toolbar with the button images of the snap-in.
  virtual ToolbarPtr CreateToolbar() = 0;
};

}  // namespace orvane::platform
