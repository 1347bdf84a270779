// The logon prompt's contract: the connection layer asks, the host shows the dialog.
// Called on the user-interface thread while a connection is being opened.
#pragma once

#include <vector>

#include "platform/types.h"

namespace orvane::ado {

struct LogonRequest {
  platform::Text sServer;
  platform::Text sUser;
  platform::Text sPassword;  ///< wiped by the connection layer as soon as the session is open
  platform::Boolean bServerSelectable = true;
  std::vector<platform::Text> knownServers;
};

class LogonPrompt {
 public:
  LogonPrompt() = default;
  LogonPrompt(const LogonPrompt&) = delete;
  LogonPrompt& operator=(const LogonPrompt&) = delete;
  virtual ~LogonPrompt() = default;

  /// Shows the dialog, filled from the request; on OK puts what was chosen into the request and
  /// returns true, on Cancel returns false and leaves the request alone.
  virtual platform::Boolean Ask(LogonRequest& request) = 0;
  /// Whether to log on to the server although what is sent to it, the password included, can be
  /// read on the way. Nothing has been sent so far. Whoever is not asked has not said yes.
  virtual platform::Boolean MayGoUnencrypted(const platform::Text& /*sServer*/) { return false; }
};

}  // namespace orvane::ado
