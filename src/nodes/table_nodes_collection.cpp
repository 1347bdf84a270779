#include "nodes/table_nodes_collection.h"

#include <utility>

#include "nodes/catalog_node.h"
#include "platform/failure.h"

namespace orvane::nodes {

using platform::Text;

TableNodesCollection::TableNodesCollection(platform::ObjectFactoryPtr objects)
    : NodesCollection("TableNode"), m_objects(std::move(objects)) {}

TableNodePtr TableNodesCollection::Item(const platform::Value& vtIndexKey) const {
  return Items().Probe(vtIndexKey);
}

TableNodePtr TableNodesCollection::Add(const Text& sTable) {
  const TableNodePtr node = TableNode::Create(m_objects);
  const auto ctgNode = Owner();
  if (!ctgNode) {
    throw platform::Failure(platform::failure::kObjectNotSet,
                            "The catalog of the table \"" + sTable +
                                "\" is no longer in the tree; reload its server, or "
                                "select another catalog.");
  }
  node->Query()->Catalog(ctgNode->Catalog());
  node->Query()->Table(sTable);
  Items().Add(sTable, node);
  Adopt(*node);
  Changed();
  return node;
}

void TableNodesCollection::TableNodeChanged() {
  Changed();
}

TableNodesCollection::NodePtr TableNodesCollection::CreateNode() const {
  return TableNode::CreateToRead(m_objects);
}

void TableNodesCollection::Adopt(TableNode& node) {
  node.Parent(std::static_pointer_cast<TableNodesCollection>(shared_from_this()));
  node.ParentCatalogNode(Owner());
}

Text TableNodesCollection::KeyOf(const TableNode& node) const {
  return node.Query()->Table();
}

void TableNodesCollection::NotifyOwner(CatalogNode& owner) {
  owner.TableNodesChanged();
}

}  // namespace orvane::nodes
