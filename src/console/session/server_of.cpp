#include "console/session/server_of.h"

#include "console/session/scope_tree_item.h"
#include "platform/ado/extended_options.h"

namespace orvane::console {

using platform::Text;

namespace {

Text TextOf(platform::Connection& connection, const char* sProperty) {
  try {
    const auto vtText = connection.Properties().Item(Text(sProperty)).Value();
    const auto* sText = vtText.As<Text>();
    return sText ? *sText : Text();
  } catch (const std::exception&) {
    // A provider need not know its user, nor how it gets there.
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
    server.sUser = TextOf(*connection, "User ID");
    server.sLink = TextOf(*connection, platform::kLinkInUse);
  }
  return server;
}

}  // namespace orvane::console
