#include "nodes/catalog_nodes_collection.h"

#include <utility>

#include "nodes/server_node.h"

namespace orvane::nodes {

using platform::Text;

CatalogNodesCollection::CatalogNodesCollection(platform::ObjectFactoryPtr objects)
    : NodesCollection("CatalogNode"), m_objects(std::move(objects)) {}

CatalogNodePtr CatalogNodesCollection::Item(const platform::Value& vtIndexKey) const {
  return Items().Probe(vtIndexKey);
}

CatalogNodePtr CatalogNodesCollection::Add(const Text& sCatalog) {
  const CatalogNodePtr node = CreateNode();
  node->Catalog(sCatalog);
  Items().Add(sCatalog, node);
  Adopt(*node);
  Changed();
  return node;
}

void CatalogNodesCollection::CatalogNodeChanged() {
  Changed();
}

CatalogNodesCollection::NodePtr CatalogNodesCollection::CreateNode() const {
  return CatalogNode::Create(m_objects);
}

void CatalogNodesCollection::Adopt(CatalogNode& node) {
  node.Parent(std::static_pointer_cast<CatalogNodesCollection>(shared_from_this()));
  node.ParentServerNode(Owner());
}

Text CatalogNodesCollection::KeyOf(const CatalogNode& node) const {
  return node.Catalog();
}

void CatalogNodesCollection::NotifyOwner(ServerNode& owner) {
  owner.CatalogNodesChanged();
}

}  // namespace orvane::nodes
