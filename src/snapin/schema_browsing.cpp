// What the scope tree and the structure view show of a server's schema.
#include "access/schema_browsing.h"

#include "nodes/catalog_nodes_collection.h"
#include "snapin/node_types.h"
#include "snapin/snap_in.h"
#include "snapin/tags.h"

namespace orvane::snapin {

using platform::ScopeItem;
using platform::Text;

void SnapIn::PopulateCatalogs(ScopeItem& item) {
  const auto server = TagAs<nodes::ServerNode>(item);
  access::ForEachCatalog(server->Connection(), [&](const Text& sCatalog) {
    const auto child = AddCatalogScopeItem(item, sCatalog);
    auto catalog = server->CatalogNodes()->Item(sCatalog);
    if (!catalog) catalog = server->CatalogNodes()->Add(sCatalog);
    child->Tag(catalog);
  });
}

platform::ScopeItemPtr SnapIn::AddCatalogScopeItem(ScopeItem& catalogsItem, const Text& sCatalog) {
  auto item =
      AddScopeItem(node_type::kCatalog, catalogsItem.Key() + "." + sCatalog, catalogsItem, true);
  item->DisplayName(sCatalog);
  SetNameColumn(*item);
  return item;
}

void SnapIn::PopulateTables(ScopeItem& item) {
  const auto catalog = TagAs<nodes::CatalogNode>(item);
  const auto cn = InTree(catalog->ParentServerNode())->Connection();
  access::ForEachTable(cn, catalog->Catalog(),
                       [&](const Text& sTable) { AddTableScopeItem(item, *catalog, cn, sTable); });
}

void SnapIn::ShowTableStructure(platform::ResultView& view, const nodes::TableNode& table) {
  const auto catalog = InTree(table.ParentCatalogNode());
  const auto server = InTree(catalog->ParentServerNode());
  access::ForEachStructureRow(
      server->Connection(), catalog->Catalog(), table.Query()->Table(),
      [&](const access::TableStructureRow& row) {
        auto& item =
            view.ListItems().Add(row.sColumn, row.bKey ? image::kKeyColumn : image::kColumn);
        item.ListSubItems().Add(1, "Column name", row.sColumn);
        item.ListSubItems().Add(2, "Data type", row.sTypeName);
        item.ListSubItems().Add(3, "Is nullable?", row.nullable() ? "yes" : "no");
      });
}

}  // namespace orvane::snapin
