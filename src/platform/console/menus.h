// Context menus, as the snap-in describes them and the console shows them.
// Valid while the console builds or runs the menu; user-interface thread.
#pragma once

#include <vector>

#include "platform/types.h"

namespace orvane::platform {

struct MenuItem {
  Text sName;     ///< the item's member name; clicks are reported under it
  Text sCaption;  ///< as shown; "..." means that a dialog follows
  Boolean bEnabled = true;
  Text sStatusText = {};  ///< said while the item is pointed at and while it is at work; or empty
};

/// A top-level menu with its items in order.
struct Menu {
  Text sName;
  Text sCaption;
  std::vector<MenuItem> items;
};

/// The menu that the console is building.
class ContextMenu {
 public:
  ContextMenu() = default;
  ContextMenu(const ContextMenu&) = delete;
  ContextMenu& operator=(const ContextMenu&) = delete;
  virtual ~ContextMenu() = default;

  virtual void AddMenu(const Menu& menu) = 0;
};

}  // namespace orvane::platform
