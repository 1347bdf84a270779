// The console's tree: what is beneath each item, under which keys and in which order.
#include "access/schema_browsing.h"
#include "nodes/catalog_nodes_collection.h"
#include "nodes/met_table.h"
#include "nodes/query_nodes_collection.h"
#include "nodes/server_nodes_collection.h"
#include "snapin/node_types.h"
#include "snapin/snap_in.h"
#include "snapin/tags.h"

namespace orvane::snapin {

using platform::Boolean;
using platform::ScopeItem;
using platform::ScopeItemPtr;
using platform::Text;

void SnapIn::ScopeItems_Initialize(const ScopeItemPtr& item) {
  Guard([&] {
    if (item->NodeTypeName() != node_type::kServers) return;
    if (!m_root) InstallRoot(nodes::ServersNode::Create(m_services.objects));
    item->Tag(m_root);
  });
}

Boolean SnapIn::ScopeItems_Expand(const ScopeItemPtr& item) {
  return Guard([&] {
    const Text sNodeType = item->NodeTypeName();
    if (sNodeType == node_type::kServers) {
      ExpandServers(*item);
    } else if (sNodeType == node_type::kServer) {
      ExpandServer(*item);
    } else if (sNodeType == node_type::kCatalogs) {
      PopulateCatalogs(*item);
    } else if (sNodeType == node_type::kCatalog) {
      PopulateTables(*item);
    } else if (sNodeType == node_type::kQueries) {
      ExpandQueries(*item);
    }
  });
}

ScopeItemPtr SnapIn::AddScopeItem(const char* sNodeType, const Text& sKey, ScopeItem& parent,
                                  Boolean bHasChildren) {
  ScopeItemPtr item =
      m_services.console->ScopeItems().Add(sNodeType, sKey, parent.ScopeNode(), bHasChildren);
  // The console finds the node of a reopened document again by its identifier.
  item->NodeId(sKey);
  return item;
}

void SnapIn::SetNameColumn(ScopeItem& item) {
  item.ColumnHeaders().Clear();
  item.ListSubItems().Clear();
  item.ColumnHeaders().Add(1, "Name", "Name", kNameWidth);
  item.ListSubItems().Add(1, "Name", item.DisplayName());
}

void SnapIn::ExpandServers(ScopeItem& item) {
  for (const auto& server : Root().ServerNodes()->NewEnum()) {
    AddServerScopeItem(item, server);
  }
}

ScopeItemPtr SnapIn::AddServerScopeItem(ScopeItem& rootItem, const nodes::ServerNodePtr& server) {
  auto item = AddScopeItem(node_type::kServer, server->Server(), rootItem, true);
  item->DisplayName(server->Server());
  SetNameColumn(*item);
  item->Tag(server);
  return item;
}

void SnapIn::ExpandServer(ScopeItem& item) {
  const auto server = TagAs<nodes::ServerNode>(item);
  try {
    if (!server->Connection()) server->Connect();
  } catch (const std::exception&) {
    item.ScopeNode()->HasChildren(false);
    throw;
  }
  const auto catalogs = AddScopeItem(node_type::kCatalogs, item.Key() + ".Catalogs", item, true);
  SetNameColumn(*catalogs);
  catalogs->Tag(server);
  // The queries are known without asking the server; the console asks for them all the same.
  const auto queries = AddScopeItem(node_type::kQueries, item.Key() + ".Queries", item, false);
  SetNameColumn(*queries);
  queries->Tag(server);
}

void SnapIn::PopulateCatalogs(ScopeItem& item) {
  const auto server = TagAs<nodes::ServerNode>(item);
  bool bNameless = false;
  access::ForEachCatalog(server->Connection(), [&](const Text& sCatalog) {
    const auto child = AddCatalogScopeItem(item, sCatalog);
    auto catalog = server->CatalogNodes()->Item(sCatalog);
    if (!catalog) catalog = server->CatalogNodes()->Add(sCatalog);
    child->Tag(catalog);
    bNameless = bNameless || sCatalog.empty();
  });
  if (bNameless) return;
  // No server lists one without a name: without an item it could never leave its document.
  if (const auto catalog = server->CatalogNodes()->Item(Text())) {
    AddCatalogScopeItem(item, Text())->Tag(catalog);
  }
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
  // A document may bring a catalog without a name: asked for that, a server lists those of all.
  if (catalog->Catalog().empty()) return;
  const auto cn = InTree(catalog->ParentServerNode())->Connection();
  access::ForEachTable(cn, catalog->Catalog(),
                       [&](const Text& sTable) { AddTableScopeItem(item, *catalog, cn, sTable); });
}

void SnapIn::AddTableScopeItem(ScopeItem& catalogItem, nodes::CatalogNode& catalog,
                               const platform::ConnectionPtr& cn, const Text& sTable) {
  const auto item =
      AddScopeItem(node_type::kTable, catalogItem.Key() + "." + sTable, catalogItem, false);
  item->DisplayName(sTable);
  SetNameColumn(*item);
  item->Tag(nodes::MeetTable(Root(), catalog, cn, sTable));
}

void SnapIn::ExpandQueries(ScopeItem& item) {
  const auto server = TagAs<nodes::ServerNode>(item);
  for (const auto& query : server->QueryNodes()->NewEnum()) AddQueryScopeItem(item, query);
}

void SnapIn::AddQueryScopeItem(ScopeItem& queriesItem, const nodes::QueryNodePtr& query) {
  const auto item = AddScopeItem(node_type::kQuery, queriesItem.Key() + "." + query->QueryName(),
                                 queriesItem, false);
  item->DisplayName(query->QueryName());
  item->ColumnHeaders().Clear();
  item->ColumnHeaders().Add(1, "Name", "Name", kNameWidth);
  item->ColumnHeaders().Add(2, "Query", "Query", kQueryWidth);
  item->ListSubItems().Clear();
  item->ListSubItems().Add(1, "Name", query->QueryName());
  item->ListSubItems().Add(2, "Query", query->Query());
  item->Tag(query);
}

}  // namespace orvane::snapin
