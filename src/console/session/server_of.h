// Which server an item of the tree belongs to, whether it is connected, and as whom: read from the
// tags that stand for servers. User-interface thread.
#pragma once

#include <optional>

#include "platform/console/server_tag.h"

namespace orvane::console {

class ScopeTreeItem;

struct ShownServer {
  platform::Text sName;
  platform::Text sUser;  ///< empty when not connected, or when the connection does not tell
  bool bConnected = false;
  /// Whether the connection is encrypted, and to whom, in words; empty as sUser.
  platform::Text sLink{};
};

/// The server of the item or of an item above it; none for an item above all servers.
std::optional<ShownServer> ServerOf(const ScopeTreeItem& item);

}  // namespace orvane::console
