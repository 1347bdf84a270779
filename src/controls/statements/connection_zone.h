// The zone in which a connection counts: its times are told by the clocks of that one. Used by the
// grids and by programs without a window; on the thread of the connection.
#pragma once

#include "platform/ado/connection.h"
#include "zones/time_zone.h"

namespace orvane::controls {

/// The zone in which the connection counts: its property "Time Zone in Use", or where there is none
/// "Time Zone"; UTC when this machine knows no zone of that name. Without a connection or a
/// property the zone of this machine.
zones::TimeZone ZoneOf(const platform::ConnectionPtr& cn);

}  // namespace orvane::controls
