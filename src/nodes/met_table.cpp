#include "nodes/met_table.h"

#include "access/schema_browsing.h"
#include "nodes/table_nodes_collection.h"

namespace orvane::nodes {

TableNodePtr MeetTable(const ServersNode& root, CatalogNode& catalog,
                       const platform::ConnectionPtr& cn, const platform::Text& sTable) {
  auto table = catalog.TableNodes()->Item(sTable);
  if (!table) {
    table = catalog.TableNodes()->Add(sTable);
    root.ApplyQueryDefaults(*table->Query(), table->DefaultFilterCondition());
  }
  access::GetTableColumns(*table->Query(), cn);
  return table;
}

}  // namespace orvane::nodes
