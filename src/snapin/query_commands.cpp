// The commands of the queries folder and of a named query.
#include "dialogs/query_dlg.h"
#include "nodes/query_nodes_collection.h"
#include "snapin/node_types.h"
#include "snapin/snap_in.h"
#include "snapin/tags.h"

namespace orvane::snapin {

using platform::Boolean;
using platform::ScopeItem;
using platform::ScopeItemPtr;
using platform::Text;

namespace {

constexpr const char* kNameTaken = "Query with the specified name already exists.";

/// Shows the dialog once more; false when the administrator gave up.
Boolean Ask(dialogs::QueryDlg& dialog) {
  dialog.Accepted(false);
  dialog.ShowModal();
  return dialog.Accepted();
}

/// Key of the folder that holds the query's item. The item's own name is what its key ends in; the
/// query's may be another since a rename that failed.
Text FolderKey(const ScopeItem& item) {
  const Text sKey = item.Key();
  return sKey.substr(0, sKey.size() - item.DisplayName().size() - 1);
}

void NameItem(ScopeItem& item, const Text& sFolderKey, const Text& sName) {
  item.Key(sFolderKey + "." + sName);
  item.NodeId(item.Key());
  item.DisplayName(sName);
}

}  // namespace

platform::RowsPlace SnapIn::PlaceOf(const nodes::QueryNode& query, const Text& sName) {
  auto place = PlaceOf(*InTree(query.ParentServerNode()));
  place.sQuery = sName;
  return place;
}

void SnapIn::m_mnuNewQuery_Click(const ScopeItemPtr& queriesItem) {
  const auto server = TagAs<nodes::ServerNode>(*queriesItem);
  dialogs::QueryDlg dialog(m_services);
  nodes::QueryNodePtr query;
  while (!query) {
    if (!Ask(dialog)) return;
    const Text sName = dialog.Name().Text();
    const Text sSqlText = dialog.SqlStatement().Text();
    const auto queries = server->QueryNodes();
    // Whatever keeps the list from taking the query counts as a name that is taken.
    Suppressed([&] { query = queries->Add(sName, sSqlText); });
    if (!query) ShowError(m_services, {platform::failure::kKeyExists, kNameTaken, "snapin"});
  }
  if (queriesItem->ScopeNode()->ExpandedOnce()) AddQueryScopeItem(*queriesItem, query);
  queriesItem->ScopeNode()->HasChildren(true);
}

void SnapIn::m_mnuEdit_Click(const ScopeItemPtr& item) {
  const auto query = TagAs<nodes::QueryNode>(*item);
  const auto queries = InTree(query->ParentServerNode())->QueryNodes();
  const Text sOldName = query->QueryName();
  dialogs::QueryDlg dialog(m_services);
  dialog.Name().Text(sOldName);
  dialog.SqlStatement().Text(query->Query());
  Text sNewName;
  for (;;) {
    if (!Ask(dialog)) return;
    sNewName = dialog.Name().Text();
    if (sNewName == sOldName || queries->Find(sNewName) == -1) break;
    ShowError(m_services, {platform::failure::kKeyExists, kNameTaken, "snapin"});
  }
  // What is kept of it beside its rows is kept under its name.
  const auto place = PlaceOf(*query, sOldName);
  const Boolean bLeavesRows = sNewName != sOldName && !IsShown(*item);
  if (bLeavesRows && !MayLoseRows(place)) return;
  const Text sFolderKey = FolderKey(*item);
  if (sNewName != sOldName || !queries->Holds(query)) {
    // A name that differs from another query's in case alone passed the exact search, but is
    // refused here: the query then stays out of the list, under its new name, while its item
    // remains.
    queries->Refile(query, sNewName, dialog.SqlStatement().Text());
    // One that comes back may find its folder without a mark, as that of an empty list.
    if (const auto folder = m_services.console->ScopeItems().Item(sFolderKey)) {
      folder->ScopeNode()->HasChildren(true);
    }
    NameItem(*item, sFolderKey, sNewName);
  } else {
    query->Query(dialog.SqlStatement().Text());
    // An earlier rename may have found its key taken, which may be free by now.
    if (!m_services.console->ScopeItems().Item(sFolderKey + "." + sNewName)) {
      NameItem(*item, sFolderKey, sNewName);
    }
  }
  query->Recordset(nullptr);
  if (bLeavesRows) LoseRows(place);
  item->ListSubItems().Add(1, "Name", query->QueryName());
  item->ListSubItems().Add(2, "Query", query->Query());
  if (!m_qrResults || !IsShown(*item)) return;
  if (m_qrResults->QueryName() != query->QueryName()) m_qrResults->QueryName(query->QueryName());
  // A new name alone runs nothing; a text that is accepted is run, also as it was.
  if (sNewName != sOldName && m_qrResults->SqlText() == query->Query()) return;
  // The rows shown are those of the old text, and would be kept for the query when it is left.
  m_qrResults->SqlText(query->Query());
  m_qrResults->Execute();
}

void SnapIn::m_mnuRemove_Click(const ScopeItemPtr& item) {
  const auto query = TagAs<nodes::QueryNode>(*item);
  const Text sName = query->QueryName();
  if (!Confirmed("Are you sure you want to remove the \"" + sName + "\" query?",
                 "Confirm Query Removal")) {
    return;
  }
  const auto place = PlaceOf(*query, sName);
  if (!MayLoseRows(place)) return;
  const auto queries = InTree(query->ParentServerNode())->QueryNodes();
  const Text sFolderKey = FolderKey(*item);
  // One that an earlier refusal left out of the list has nothing there that is to go with it.
  if (queries->Holds(query)) queries->Remove(sName);
  m_services.console->ScopeItems().Remove(item->Key());
  LoseRows(place);
  if (queries->Count() > 0) return;
  if (const auto folder = m_services.console->ScopeItems().Item(sFolderKey)) {
    folder->ScopeNode()->HasChildren(false);
  }
}

}  // namespace orvane::snapin
