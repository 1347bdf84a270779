// The catalogs of a server, filed under their names. Owned by the server; one thread.
// Filled as catalogs are met in the schema rowset; saved with the document.
#pragma once

#include <memory>

#include "nodes/catalog_node.h"
#include "nodes/nodes_collection.h"
#include "platform/services.h"

namespace orvane::nodes {

class CatalogNodesCollection : public NodesCollection<CatalogNode, ServerNode> {
 public:
  explicit CatalogNodesCollection(platform::ObjectFactoryPtr objects);

  /// The node at a position or of a key; none, without a failure, when there is none.
  CatalogNodePtr Item(const platform::Value& vtIndexKey) const;

  /// Files a new node at the end. Fails with 457 when the name is present.
  CatalogNodePtr Add(const platform::Text& sCatalog);

  /// Called by a node when one of its settings has changed; tells the owner.
  void CatalogNodeChanged();

 protected:
  NodePtr CreateNode() const override;
  void Adopt(CatalogNode& node) override;
  platform::Text KeyOf(const CatalogNode& node) const override;
  void NotifyOwner(ServerNode& owner) override;

 private:
  platform::ObjectFactoryPtr m_objects;
};

}  // namespace orvane::nodes
