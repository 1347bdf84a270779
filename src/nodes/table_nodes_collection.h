// The tables of a catalog, filed under their names. Owned by the catalog; one thread.
// Filled as tables are met in the schema rowset; saved with the document.
#pragma once

#include <memory>

#include "nodes/nodes_collection.h"
#include "nodes/table_node.h"
#include "platform/services.h"

namespace orvane::nodes {

class TableNodesCollection : public NodesCollection<TableNode, CatalogNode> {
 public:
  explicit TableNodesCollection(platform::ObjectFactoryPtr objects);

  /// The node at a position or of a key; none, without a failure, when there is none.
  TableNodePtr Item(const platform::Value& vtIndexKey) const;

  /// Files a new node at the end, its query set to this catalog and the table. Fails with 457 when
  /// the name is present and with 91 when no catalog owns the list.
  TableNodePtr Add(const platform::Text& sTable);

  /// Called by a node when one of its settings has changed; tells the owner.
  void TableNodeChanged();

 protected:
  NodePtr CreateNode() const override;
  void Adopt(TableNode& node) override;
  platform::Text KeyOf(const TableNode& node) const override;
  void NotifyOwner(CatalogNode& owner) override;

 private:
  platform::ObjectFactoryPtr m_objects;
};

}  // namespace orvane::nodes
