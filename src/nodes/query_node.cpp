#include "nodes/query_node.h"

#include "nodes/query_nodes_collection.h"
#include "platform/conversions.h"

namespace orvane::nodes {

using platform::Text;

QueryNode::~QueryNode() {
  m_parent.reset();
  m_parentServerNode.reset();
  m_recordset.reset();
}

void QueryNode::Changed() {
  if (const auto parent = m_parent.lock()) parent->QueryNodeChanged();
}

void QueryNode::Parent(const std::shared_ptr<QueryNodesCollection>& qrNodes) {
  m_parent = qrNodes;
}

void QueryNode::ParentServerNode(const std::shared_ptr<ServerNode>& srvNode) {
  m_parentServerNode = srvNode;
}

void QueryNode::QueryName(const Text& sName) {
  m_sQueryName = sName;
  Changed();
}

void QueryNode::Query(const Text& sQuery) {
  m_sQuery = sQuery;
  Changed();
}

void QueryNode::Recordset(const platform::RecordsetPtr& rs) {
  m_recordset = rs;
}

void QueryNode::WriteProperties(platform::PropertyBag& pb, const Text& sPrefix) const {
  pb.WriteProperty(sPrefix + "QueryName", m_sQueryName);
  pb.WriteProperty(sPrefix + "Query", m_sQuery);
}

void QueryNode::ReadProperties(const platform::PropertyBag& pb, const Text& sPrefix) {
  m_sQueryName = platform::ToText(pb.ReadProperty(sPrefix + "QueryName", ""));
  m_sQuery = platform::ToText(pb.ReadProperty(sPrefix + "Query", ""));
}

}  // namespace orvane::nodes
