#include "nodes/server_nodes_collection.h"

#include <utility>

#include "nodes/servers_node.h"

namespace orvane::nodes {

using platform::Text;

ServerNodesCollection::ServerNodesCollection(platform::ObjectFactoryPtr objects)
    : NodesCollection("ServerNode"), m_objects(std::move(objects)) {}

ServerNodePtr ServerNodesCollection::Item(const platform::Value& vtIndexKey) const {
  return Items().Probe(vtIndexKey);
}

void ServerNodesCollection::Add(const ServerNodePtr& srvNode) {
  if (!srvNode) FailNoItem();
  Items().Add(KeyOf(*srvNode), srvNode);
  Adopt(*srvNode);
  Changed();
}

void ServerNodesCollection::ServerNodeChanged() {
  Changed();
}

ServerNodesCollection::NodePtr ServerNodesCollection::CreateNode() const {
  return ServerNode::Create(m_objects);
}

void ServerNodesCollection::Adopt(ServerNode& node) {
  node.Parent(std::static_pointer_cast<ServerNodesCollection>(shared_from_this()));
  node.ParentServersNode(Owner());
}

Text ServerNodesCollection::KeyOf(const ServerNode& node) const {
  return node.Server();
}

void ServerNodesCollection::NotifyOwner(ServersNode& owner) {
  owner.ServerNodesChanged();
}

}  // namespace orvane::nodes
