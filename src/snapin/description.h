// How the snap-in describes itself to the console and to the component registry.
// Used by the snap-in object and the entry points; constant.
#pragma once

#include "platform/component.h"
#include "platform/console/snap_in.h"

namespace orvane::snapin {

/// The static description: node types with their fixed identities, images and result views.
platform::SnapInDescription StaticDescription();

/// The one class of the component.
platform::ComponentDescription RegisteredClass();

}  // namespace orvane::snapin
