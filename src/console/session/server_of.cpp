#include "console/session/server_of.h"

#include "console/session/scope_tree_item.h"

namespace orvane::console {

using platform::Text;

namespace {

Text UserOf(platform::Connection& connection) {
  try {
    const auto vtUser = connection.Properties().Item(Text("User ID")).Value();
    const auto* sUser = vtUser.As<Text>();
    return sUser ? *sUser : Text();
  } catch (const std::exception&) {
    // A provider need not know its user.
    return {};
  }
}

}  // namespace

std::optional<ShownServer> ServerOf(const ScopeTreeItem& item) {
  const auto* at = &item;
  while (at && at->Server() == ServerState::None) at = at->Parent();
  if (!at) return std::nullopt;
  ShownServer server{at->Name(), {}, false};
  const auto tag = at->Tag();
  const auto* serverTag = dynamic_cast<const platform::ServerTag*>(tag.get());
  if (const auto connection = serverTag ? serverTag->OpenConnection() : nullptr) {
    server.bConnected = true;
    server.sUser = UserOf(*connection);
  }
  return server;
}

}  // namespace orvane::console
