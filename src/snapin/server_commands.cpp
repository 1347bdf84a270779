// The commands of the root and of a server.
#include "dialogs/options_dlg.h"
#include "nodes/catalog_nodes_collection.h"
#include "nodes/query_nodes_collection.h"
#include "nodes/server_nodes_collection.h"
#include "nodes/table_nodes_collection.h"
#include "platform/conversions.h"
#include "snapin/node_types.h"
#include "snapin/snap_in.h"
#include "snapin/tags.h"

namespace orvane::snapin {

using platform::Boolean;
using platform::ScopeItemPtr;
using platform::Text;

void SnapIn::m_mnuOptions_Click(const ScopeItemPtr&) {
  dialogs::OptionsDlg dialog(m_services);
  dialog.MaxRows().Text(platform::ToText(Root().MaxRows()));
  dialog.Timeout().Text(platform::ToText(Root().QueryTimeout()));
  Text sStartTime;
  Text sEndTime;
  Root().GetDefaultTimeRange(sStartTime, sEndTime);
  dialog.DefStartTime().Text(sStartTime);
  dialog.DefEndTime().Text(sEndTime);
  dialog.ShowModal();
  if (!dialog.Accepted()) return;
  if (const Text sMaxRows = dialog.MaxRows().Text(); !sMaxRows.empty()) {
    Root().MaxRows(platform::TextToLong(sMaxRows));
  }
  if (const Text sTimeout = dialog.Timeout().Text(); !sTimeout.empty()) {
    Root().QueryTimeout(platform::TextToLong(sTimeout));
  }
  Root().SetDefaultTimeRange(dialog.DefStartTime().Text(), dialog.DefEndTime().Text());
  ApplyOptions();
}

void SnapIn::ApplyOptions() {
  // Whatever was changed, everything is fetched anew under the options as they are now.
  for (const auto& server : Root().ServerNodes()->NewEnum()) {
    for (const auto& catalog : server->CatalogNodes()->NewEnum()) {
      for (const auto& table : catalog->TableNodes()->NewEnum()) {
        Root().ApplyQueryDefaults(*table->Query(), table->DefaultFilterCondition());
        table->SetRecordset(nullptr, 0);
      }
    }
    for (const auto& query : server->QueryNodes()->NewEnum()) query->Recordset(nullptr);
  }
}

void SnapIn::m_mnuServersConnect_Click(const ScopeItemPtr& rootItem) {
  const auto server = nodes::ServerNode::Create(m_services.objects);
  server->ConnectEx();
  Boolean bAddItem = true;
  try {
    const auto rootNode = rootItem->ScopeNode();
    if (!rootNode->ExpandedOnce()) {
      rootNode->ExpandInNameSpace();
      m_services.console->CurrentView().SelectScopeItem(rootItem);
    }
  } catch (const std::exception&) {
    // Without an expanded root there is no place for the server's item; the server itself is kept.
    bAddItem = false;
  }
  Root().ServerNodes()->Add(server);
  if (!bAddItem) return;
  m_services.console->CurrentView().SelectScopeItem(AddServerScopeItem(*rootItem, server));
}

void SnapIn::m_mnuConnect_Click(const ScopeItemPtr& item) {
  TagAs<nodes::ServerNode>(*item)->Connect();
  if (item->ScopeNode()->ExpandedOnce()) {
    ExpandServer(*item);
  } else {
    // A disconnection may have taken the expand mark from a server never expanded.
    item->ScopeNode()->HasChildren(true);
  }
  m_services.console->CurrentView().SelectScopeItem(item);
}

void SnapIn::m_mnuDisconnect_Click(const ScopeItemPtr& item) {
  const auto server = TagAs<nodes::ServerNode>(*item);
  const auto place = PlaceOf(*server);
  if (!MayLoseRows(place)) return;
  // No grid may keep rows of the connection that is about to close.
  if (m_tblEditor) m_tblEditor->AttachRecordset(nullptr, 0);
  server->ReleaseCachedRecordsets();
  server->Disconnect();
  m_services.console->ScopeItems().RemoveChildren(item->ScopeNode());
  item->ScopeNode()->HasChildren(false);
  LoseRows(place);
}

void SnapIn::m_mnuRemoveServer_Click(const ScopeItemPtr& item) {
  const auto server = TagAs<nodes::ServerNode>(*item);
  if (!Confirmed(
          "Are you sure you want to remove the \"" + server->Server() + "\" server from the tree?",
          "Confirm Server Removal")) {
    return;
  }
  const auto place = PlaceOf(*server);
  if (!MayLoseRows(place)) return;
  // Not disconnected first: the connection ends with the last reference to the node.
  Root().ServerNodes()->Remove(server->Server());
  m_services.console->ScopeItems().Remove(item->Key());
  LoseRows(place);
}

}  // namespace orvane::snapin
