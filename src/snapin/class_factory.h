// Makes snap-in objects for the console, and knows how many objects of the component are alive.
// Used by the entry points and by the tests; user-interface thread.
#pragma once

#include "platform/component.h"

namespace orvane::snapin {

class SnapInFactory : public platform::ClassFactory {
 public:
  /// A new SnapIn over the services; fails as its constructor does.
  platform::ObjectPtr CreateInstance(const platform::Services& services) override;
};

/// Snap-in objects and nodes that somebody still holds.
platform::Long AliveObjects();

}  // namespace orvane::snapin
