// The limits of what is asked of a server, where nobody has told others. Used by the snap-in's
// options and by the grids; constants.
#pragma once

#include "platform/types.h"

namespace orvane::platform {

inline constexpr Long kUsualMaxRows = 100;      ///< rows; 0 takes all
inline constexpr Long kUsualQueryTimeout = 60;  ///< seconds; 0 waits for ever

}  // namespace orvane::platform
