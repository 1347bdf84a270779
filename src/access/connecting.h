// Connection strings and the opening of a connection, as a server node asks for them.
// Pure text and one call sequence; failures of the connection layer pass through unchanged.
#pragma once

#include "platform/services.h"

namespace orvane::access {

/// "Provider = P; Data Source = S;": the logon dialog may change the server.
platform::Text FormConnectExString(const platform::Text& sProvider, const platform::Text& sServer);

/// The same with "Disable Server Selection = True;" and the extended options directly behind it.
/// Nothing is quoted or escaped.
platform::Text FormConnectString(const platform::Text& sProvider, const platform::Text& sServer,
                                 const platform::Text& sExOptions);

/// A new connection, opened with the string and the user, always through the logon dialog and
/// never with a password.
platform::ConnectionPtr OpenWithPrompt(platform::ObjectFactory& objects,
                                       const platform::Text& sConnectionString,
                                       const platform::Text& sUser);

/// The server that an open connection was made to.
platform::Text DataSource(platform::Connection& cn);

}  // namespace orvane::access
