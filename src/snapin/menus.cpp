// The context menu of each node type: what its commands are called, when they are offered and what
// runs when one is picked.
#include "platform/historian_names.h"
#include "snapin/node_types.h"
#include "snapin/snap_in.h"
#include "snapin/tags.h"

namespace orvane::snapin {

using platform::Boolean;
using platform::Long;
using platform::ScopeItem;
using platform::Text;

namespace {

Boolean Always(const ScopeItem&) {
  return true;
}

Boolean IsConnected(const ScopeItem& item) {
  return TagAs<nodes::ServerNode>(item)->Connection() != nullptr;
}

Boolean IsDisconnected(const ScopeItem& item) {
  return !IsConnected(item);
}

const char* FateOfCatalog(const ScopeItem& item) {
  // One without a name is none of the server's: only the document brought it.
  if (TagAs<nodes::CatalogNode>(item)->Catalog().empty()) {
    return "Takes the catalog out of this document; without a name it stands for none of the "
           "server's, and nothing is dropped.";
  }
  return "Drops the catalog on the server. "
         "Its file is deleted when it lies with the historian; one at a path of its own stays.";
}

/// The system's own catalogs cannot be removed. Compared exactly: one of another case is a user's.
Boolean IsUsersCatalog(const ScopeItem& item) {
  const Text sCatalog = TagAs<nodes::CatalogNode>(item)->Catalog();
  return sCatalog != platform::kFunctionsCatalog && sCatalog != platform::kSystemCatalog;
}

}  // namespace

/// A command is here with its handler or not at all.
const std::vector<SnapIn::NodeMenu>& SnapIn::Menus() {
  static const std::vector<NodeMenu> menus{
      {node_type::kServers,
       "m_mnuServers",
       "Servers",
       Always,
       {{"m_mnuServersConnect", "Connect...", Always, &SnapIn::m_mnuServersConnect_Click},
        {"m_mnuOptions", "Options...", Always, &SnapIn::m_mnuOptions_Click}}},
      {node_type::kServer,
       "m_mnuServer",
       "Server",
       Always,
       {{"m_mnuConnect", "Connect...", IsDisconnected, &SnapIn::m_mnuConnect_Click},
        {"m_mnuDisconnect", "Disconnect", IsConnected, &SnapIn::m_mnuDisconnect_Click},
        {"m_mnuRemoveServer", "Remove", Always, &SnapIn::m_mnuRemoveServer_Click}}},
      {node_type::kCatalogs,
       "m_mnuCatalogs",
       "Catalogs",
       Always,
       {{"m_mnuAddCatalog", "Add Catalog...", Always, &SnapIn::m_mnuAddCatalog_Click}}},
      {node_type::kCatalog,
       "m_mnuCatalog",
       "Catalog",
       IsUsersCatalog,
       {{"m_mnuCatalogRemove", "Remove", Always, &SnapIn::m_mnuCatalogRemove_Click,
         FateOfCatalog}}},
      {node_type::kTable,
       "m_mnuTable",
       "Table",
       Always,
       {{"m_mnuQuery", "Query...", Always, &SnapIn::m_mnuQuery_Click}}},
      {node_type::kQueries,
       "m_mnuQueries",
       "Queries",
       Always,
       {{"m_mnuNewQuery", "New Query...", Always, &SnapIn::m_mnuNewQuery_Click}}},
      {node_type::kQuery,
       "m_mnuQuery2",
       "Query",
       Always,
       {{"m_mnuEdit", "Edit...", Always, &SnapIn::m_mnuEdit_Click},
        {"m_mnuRemove", "Remove", Always, &SnapIn::m_mnuRemove_Click}}}};
  return menus;
}

void SnapIn::Views_AddTopMenuItems(platform::View&, const platform::Selection& selection,
                                   platform::ContextMenu& menu, Boolean bInsertionAllowed) {
  Guard([&] {
    if (!bInsertionAllowed || selection.ScopeItemCount() < 1) return;
    const auto item = selection.ScopeItem(1);
    const Text sNodeType = item->NodeTypeName();
    for (const auto& offered : Menus()) {
      if (sNodeType != offered.sNodeType || !offered.isOffered(*item)) continue;
      platform::Menu top{offered.sName, offered.sCaption, {}};
      for (const auto& command : offered.commands) {
        top.items.push_back(
            {command.sName, command.sCaption, command.isEnabled(*item), command.statusText(*item)});
      }
      menu.AddMenu(top);
    }
  });
}

void SnapIn::Menu_Click(const Text& sMenuItem, Long, const platform::Selection& selection) {
  Guard([&] {
    if (selection.Type() != platform::kSelectionSingleScopeItem) return;
    for (const auto& menu : Menus()) {
      for (const auto& command : menu.commands) {
        if (sMenuItem == command.sName) return (this->*command.handler)(selection.ScopeItem(1));
      }
    }
  });
}

}  // namespace orvane::snapin
