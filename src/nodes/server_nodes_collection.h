// The servers of the root, filed under their names. Owned by the root; one thread.
// Filled by the administrator; saved with the document.
#pragma once

#include <memory>

#include "nodes/nodes_collection.h"
#include "nodes/server_node.h"
#include "platform/services.h"

namespace orvane::nodes {

class ServerNodesCollection : public NodesCollection<ServerNode, ServersNode> {
 public:
  explicit ServerNodesCollection(platform::ObjectFactoryPtr objects);

  /// The node at a position or of a key; none, without a failure, when there is none.
  ServerNodePtr Item(const platform::Value& vtIndexKey) const;

  /// Files the node at the end under its Server and makes it part of the tree. Fails with 457,
  /// leaving list and node as they were, when the name is present, and with 91 without a node.
  void Add(const ServerNodePtr& srvNode);

  /// Called by a node when one of its settings has changed; tells the owner.
  void ServerNodeChanged();

 protected:
  NodePtr CreateNode() const override;
  void Adopt(ServerNode& node) override;
  platform::Text KeyOf(const ServerNode& node) const override;
  void NotifyOwner(ServersNode& owner) override;

 private:
  platform::ObjectFactoryPtr m_objects;
};

}  // namespace orvane::nodes
