// The list views. The console lists child items by itself; only a table's structure is filled in.
#include "access/schema_browsing.h"
#include "nodes/catalog_node.h"
#include "snapin/node_types.h"
#include "snapin/snap_in.h"
#include "snapin/tags.h"

namespace orvane::snapin {

void SnapIn::ResultViews_Initialize(platform::ResultView& view) {
  Guard([&] {
    const auto item = InTree(view.ScopeItem());
    if (item->NodeTypeName() == node_type::kTable &&
        view.Name() == view_name::kTableStructureList) {
      ShowTableStructure(view, *TagAs<nodes::TableNode>(*item));
    }
  });
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
