// The commands of the catalogs folder and of a catalog.
#include "dialogs/add_catalog_dlg.h"
#include "nodes/catalog_nodes_collection.h"
#include "platform/conversions.h"
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
  // One without a name is none of the server's: only the document brought it.
  const bool bDropped = !catalog->Catalog().empty();
  const auto place = PlaceOf(*server, catalog->Catalog());
  if (bDropped && !MayLoseRows(place)) return;
  if (bDropped) server->RemoveCatalog(catalog->Catalog());
  server->CatalogNodes()->Remove(catalog->Catalog());
  m_services.console->ScopeItems().Remove(item->Key());
  if (bDropped) LoseRows(place);
}

}  // namespace orvane::snapin
