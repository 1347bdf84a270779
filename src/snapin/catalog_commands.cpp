// The commands of the catalogs folder, of a catalog and of a table.
#include "access/schema_browsing.h"
#include "dialogs/add_catalog_dlg.h"
#include "dialogs/table_query_dlg.h"
#include "nodes/catalog_nodes_collection.h"
#include "platform/conversions.h"
#include "snapin/node_types.h"
#include "snapin/snap_in.h"
#include "snapin/tags.h"

namespace orvane::snapin {

using platform::Long;
using platform::ScopeItemPtr;
using platform::Text;

void SnapIn::m_mnuAddCatalog_Click(const ScopeItemPtr& catalogsItem) {
  const auto server = TagAs<nodes::ServerNode>(*catalogsItem);
  dialogs::AddCatalogDlg dialog(m_services);
  dialog.ShowModal();
  if (!dialog.Accepted()) return;
  const Text sName = dialog.Name().Text();
  const Text sPath = dialog.Path().Text();
  const Text sSize = dialog.Size().Text();
  const Long lSize = sSize.empty() ? 0 : platform::TextToLong(sSize);
  m_services.ui->MousePointer(platform::kMousePointerHourglass);
  Text sCatalog;
  server->AddCatalog(*m_services.ui, sName, sPath, lSize, sCatalog);
  m_services.ui->MousePointer(platform::kMousePointerDefault);
  const auto catalog = server->CatalogNodes()->Add(sCatalog);
  if (catalogsItem->ScopeNode()->ExpandedOnce()) {
    AddCatalogScopeItem(*catalogsItem, sCatalog)->Tag(catalog);
  }
}

void SnapIn::m_mnuCatalogRemove_Click(const ScopeItemPtr& item) {
  const auto catalog = TagAs<nodes::CatalogNode>(*item);
  if (!Confirmed("Are you sure you want to remove the \"" + catalog->Catalog() + "\" catalog?",
                 "Confirm Catalog Removal")) {
    return;
  }
  const auto server = InTree(catalog->ParentServerNode());
  server->RemoveCatalog(catalog->Catalog());
  server->CatalogNodes()->Remove(catalog->Catalog());
  m_services.console->ScopeItems().Remove(item->Key());
}

void SnapIn::m_mnuQuery_Click(const ScopeItemPtr& item) {
  const auto table = TagAs<nodes::TableNode>(*item);
  const auto query = table->Query();
  dialogs::TableQueryDlg dialog(m_services);
  dialog.CatalogLabel(query->Catalog());
  dialog.TableLabel(query->Table());
  dialog.Columns(access::ColumnNames(*query, ServerOf(*table)->Connection()));
  for (Long l = 1; l <= query->Columns().Count(); ++l) {
    dialog.AddSelectedColumn(query->Columns().Item(l));
  }
  dialog.UpdateAvailableColumns();
  dialog.DefaultFilterCondition(
      Root().FormDefaultFilterCondition(query->Catalog(), query->Table()));
  if (table->DefaultFilterCondition()) {
    dialog.UseDefaultFilter(true);
  } else {
    dialog.FilterCondition(query->FilterCondition());
  }
  dialog.UpdateSortColumns();
  if (const auto criterion = query->SortCriterion()) {
    dialog.SetSortingCriteria(criterion->sColumn, criterion->bAscending);
  } else {
    dialog.NoSortingCriteria(true);
  }
  dialog.UpdateButtons();
  dialog.ShowModal();
  if (!dialog.Ok()) return;

  query->Columns().Clear();
  for (const Text& sColumn : dialog.SelectedColumns()) query->Columns().Add(sColumn);
  table->DefaultFilterCondition(dialog.UseDefaultFilter());
  query->FilterCondition(dialog.FilterCondition());
  if (dialog.NoSortingCriteria()) {
    query->SortCriterion(std::nullopt);
  } else {
    query->SortCriterion(dialog.SortingCriteria());
  }
  table->SetRecordset(nullptr, 0);
  if (m_tblEditor && IsShown(*item)) m_tblEditor->Requery();
}

}  // namespace orvane::snapin
