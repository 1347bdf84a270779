// The provider's extended options of a server, as text for its next connection string.
// Formed by the model when a server is saved. Reads the properties of its open connection, and so
// runs on the thread of that connection.
#pragma once

#include "platform/ado/connection.h"

namespace orvane::access {

/// The stored options, followed by the six current ones of the connection when there is one. The
/// new set goes behind the old one, whatever that holds: the provider lets the last value win.
/// Fails as the connection does when it lacks one of the six properties.
platform::Text FormExtendedOptions(const platform::Text& sStored,
                                   const platform::ConnectionPtr& cn);

}  // namespace orvane::access
