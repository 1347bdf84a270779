#include "nodes/query_nodes_collection.h"

#include "nodes/server_node.h"

namespace orvane::nodes {

using platform::Text;

QueryNodesCollection::QueryNodesCollection() : NodesCollection("QueryNode") {}

QueryNodePtr QueryNodesCollection::Item(const platform::Value& vtIndexKey) const {
  return Items().Item(vtIndexKey);
}

QueryNodePtr QueryNodesCollection::Add(const Text& sName, const Text& sQuery) {
  const QueryNodePtr node = CreateNode();
  node->QueryName(sName);
  node->Query(sQuery);
  Items().Add(KeyOf(*node), node);
  Adopt(*node);
  Changed();
  return node;
}

platform::Long QueryNodesCollection::Find(const Text& sQueryName) const {
  // Keys ignore case and stay what they were when a name changes; names are compared exactly.
  platform::Long lPosition = 0;
  for (const QueryNodePtr& query : NewEnum()) {
    ++lPosition;
    if (query->QueryName() == sQueryName) return lPosition;
  }
  return -1;
}

platform::Boolean QueryNodesCollection::Holds(const QueryNodePtr& qrNode) const {
  return qrNode && Items().Probe(Find(qrNode->QueryName())) == qrNode;
}

void QueryNodesCollection::Insert(const QueryNodePtr& qrNode, platform::Long lIndexBefore) {
  if (!qrNode) FailNoItem();
  if (lIndexBefore <= Count()) {
    Items().Insert(KeyOf(*qrNode), qrNode, lIndexBefore);
  } else {
    Items().Add(KeyOf(*qrNode), qrNode);
  }
}

void QueryNodesCollection::Refile(const QueryNodePtr& qrNode, const Text& sName,
                                  const Text& sQuery) {
  platform::Long lPosition = Count() + 1;
  if (Holds(qrNode)) {
    lPosition = Find(qrNode->QueryName());
    Remove(qrNode->QueryName());
  }
  qrNode->QueryName(sName);
  qrNode->Query(sQuery);
  Insert(qrNode, lPosition);
}

void QueryNodesCollection::QueryNodeChanged() {
  Changed();
}

QueryNodesCollection::NodePtr QueryNodesCollection::CreateNode() const {
  return std::make_shared<QueryNode>();
}

void QueryNodesCollection::Adopt(QueryNode& node) {
  node.Parent(std::static_pointer_cast<QueryNodesCollection>(shared_from_this()));
  node.ParentServerNode(Owner());
}

Text QueryNodesCollection::KeyOf(const QueryNode& node) const {
  return node.QueryName();
}

void QueryNodesCollection::NotifyOwner(ServerNode& owner) {
  owner.QueryNodesChanged();
}

}  // namespace orvane::nodes
