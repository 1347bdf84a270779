// Numbers of failures about which only whoever logs on to a server does something. Thrown by
// engines, caught by the connection layer; constants, any thread.
#pragma once

#include "platform/failure.h"

namespace orvane::platform::failure {

constexpr Long kNotEncrypted = 3813;  ///< ask: the server does not encrypt; nothing was sent to it

}  // namespace orvane::platform::failure
