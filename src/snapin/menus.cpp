// The context menu of each node type, and the way from a clicked item to its handler.
#include "snapin/node_types.h"
#include "snapin/snap_in.h"
#include "snapin/tags.h"

namespace orvane::snapin {

using platform::Boolean;
using platform::Long;
using platform::Menu;
using platform::ScopeItem;
using platform::ScopeItemPtr;
using platform::Text;

namespace {

Menu ServerMenu(const nodes::ServerNode& server) {
  const Boolean bConnected = server.Connection() != nullptr;
  return {"m_mnuServer",
          "Server",
          {{"m_mnuConnect", "Connect...", !bConnected},
           {"m_mnuDisconnect", "Disconnect", bConnected},
           {"m_mnuRemoveServer", "Remove"}}};
}

/// The system's own catalogs cannot be removed. Compared exactly: one of another case is a user's.
Boolean IsSystemCatalog(const nodes::CatalogNode& catalog) {
  return catalog.Catalog() == "Functions" || catalog.Catalog() == "Orvane";
}

void AddMenuOf(const ScopeItem& item, platform::ContextMenu& menu) {
  const Text sNodeType = item.NodeTypeName();
  if (sNodeType == node_type::kServers) {
    menu.AddMenu({"m_mnuServers",
                  "Servers",
                  {{"m_mnuServersConnect", "Connect..."}, {"m_mnuOptions", "Options..."}}});
  } else if (sNodeType == node_type::kServer) {
    menu.AddMenu(ServerMenu(*TagAs<nodes::ServerNode>(item)));
  } else if (sNodeType == node_type::kCatalogs) {
    menu.AddMenu({"m_mnuCatalogs", "Catalogs", {{"m_mnuAddCatalog", "Add Catalog..."}}});
  } else if (sNodeType == node_type::kCatalog) {
    if (IsSystemCatalog(*TagAs<nodes::CatalogNode>(item))) return;
    menu.AddMenu({"m_mnuCatalog", "Catalog", {{"m_mnuCatalogRemove", "Remove"}}});
  } else if (sNodeType == node_type::kTable) {
    menu.AddMenu({"m_mnuTable", "Table", {{"m_mnuQuery", "Query..."}}});
  } else if (sNodeType == node_type::kQueries) {
    menu.AddMenu({"m_mnuQueries", "Queries", {{"m_mnuNewQuery", "New Query..."}}});
  } else if (sNodeType == node_type::kQuery) {
    menu.AddMenu({"m_mnuQuery2", "Query", {{"m_mnuEdit", "Edit..."}, {"m_mnuRemove", "Remove"}}});
  }
}

}  // namespace

void SnapIn::Views_AddTopMenuItems(platform::View&, const platform::Selection& selection,
                                   platform::ContextMenu& menu, Boolean bInsertionAllowed) {
  Guard([&] {
    if (!bInsertionAllowed || selection.ScopeItemCount() < 1) return;
    AddMenuOf(*selection.ScopeItem(1), menu);
  });
}

void SnapIn::Menu_Click(const Text& sMenuItem, Long, const platform::Selection& selection) {
  using Handler = void (SnapIn::*)(const ScopeItemPtr&);
  static constexpr std::pair<const char*, Handler> kHandlers[] = {
      {"m_mnuServersConnect", &SnapIn::m_mnuServersConnect_Click},
      {"m_mnuOptions", &SnapIn::m_mnuOptions_Click},
      {"m_mnuConnect", &SnapIn::m_mnuConnect_Click},
      {"m_mnuDisconnect", &SnapIn::m_mnuDisconnect_Click},
      {"m_mnuRemoveServer", &SnapIn::m_mnuRemoveServer_Click},
      {"m_mnuAddCatalog", &SnapIn::m_mnuAddCatalog_Click},
      {"m_mnuCatalogRemove", &SnapIn::m_mnuCatalogRemove_Click},
      {"m_mnuQuery", &SnapIn::m_mnuQuery_Click},
      {"m_mnuNewQuery", &SnapIn::m_mnuNewQuery_Click},
      {"m_mnuEdit", &SnapIn::m_mnuEdit_Click},
      {"m_mnuRemove", &SnapIn::m_mnuRemove_Click},
  };
  Guard([&] {
    if (selection.Type() != platform::kSelectionSingleScopeItem) return;
    for (const auto& [sName, handler] : kHandlers) {
      if (sMenuItem == sName) (this->*handler)(selection.ScopeItem(1));
    }
  });
}

}  // namespace orvane::snapin
