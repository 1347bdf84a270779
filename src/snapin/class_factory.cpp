#include "snapin/class_factory.h"

#include "nodes/counted.h"
#include "snapin/snap_in.h"

namespace orvane::snapin {
platform::ObjectPtr SnapInFactory::CreateInstance(const platform::Services& services) {
  return std::make_shared<SnapIn>(services);
}

platform::Long AliveObjects() {
  return nodes::Counted::Alive();
}

}  // namespace orvane::snapin
