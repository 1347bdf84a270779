#include "nodes/servers_node.h"

#include <utility>

#include "access/default_filter.h"
#include "nodes/server_nodes_collection.h"
#include "platform/conversions.h"

namespace orvane::nodes {

using platform::Boolean;
using platform::Long;
using platform::Text;

namespace {

constexpr const char* kRootFlag = "ServersNode";
constexpr const char* kRootPrefix = "ServersNode_";

}  // namespace

ServersNode::ServersNode(platform::ObjectFactoryPtr objects) : m_objects(std::move(objects)) {}

ServersNodePtr ServersNode::Create(const platform::ObjectFactoryPtr& objects) {
  const ServersNodePtr node(new ServersNode(objects));
  node->m_serverNodes = node->NewServerNodes();
  return node;
}

ServersNodePtr ServersNode::OfDocument(const platform::PropertyBag& pb,
                                       const platform::ObjectFactoryPtr& objects) {
  if (!platform::ToBoolean(pb.ReadProperty(kRootFlag, false))) return nullptr;
  auto node = Create(objects);
  node->ReadProperties(pb, kRootPrefix);
  return node;
}

void ServersNode::WriteDocument(platform::PropertyBag& pb, const ServersNode* root) {
  pb.WriteProperty(kRootFlag, root != nullptr);
  if (root) root->WriteProperties(pb, kRootPrefix);
}

ServersNode::~ServersNode() {
  m_parent.reset();
  m_serverNodes.reset();
}

std::shared_ptr<ServerNodesCollection> ServersNode::NewServerNodes() {
  auto serverNodes = std::make_shared<ServerNodesCollection>(m_objects);
  serverNodes->Parent(shared_from_this());
  return serverNodes;
}

void ServersNode::Changed() {
  if (const auto parent = m_parent.lock()) parent->ServersNodeChanged();
}

void ServersNode::Parent(const std::shared_ptr<ServersNodeOwner>& snpIn) {
  m_parent = snpIn;
}

void ServersNode::MaxRows(Long lMaxRows) {
  m_lMaxRows = lMaxRows;
  Changed();
}

void ServersNode::QueryTimeout(Long lQueryTimeout) {
  m_lQueryTimeout = lQueryTimeout;
  Changed();
}

void ServersNode::SetDefaultTimeRange(const Text& sStartTime, const Text& sEndTime) {
  m_sDefStartTime = sStartTime;
  m_sDefEndTime = sEndTime;
  Changed();
}

void ServersNode::GetDefaultTimeRange(Text& sStartTime, Text& sEndTime) const {
  sStartTime = m_sDefStartTime;
  sEndTime = m_sDefEndTime;
}

void ServersNode::SqlStatements(Boolean bShow) {
  m_bSqlStatements = bShow;
  Changed();
}

void ServersNode::Context(Boolean bShow) {
  m_bContext = bShow;
  Changed();
}

void ServersNode::ServerNodesChanged() {
  Changed();
}

Text ServersNode::FormDefaultFilterCondition(const Text& sCatalog, const Text& sTable) const {
  return access::FormDefaultFilterCondition(sCatalog, sTable, m_sDefStartTime, m_sDefEndTime);
}

void ServersNode::ApplyQueryDefaults(platform::TableQuery& query, Boolean bDefFilterCond) const {
  query.MaxRows(m_lMaxRows);
  query.QueryTimeout(m_lQueryTimeout);
  if (bDefFilterCond) {
    query.FilterCondition(FormDefaultFilterCondition(query.Catalog(), query.Table()));
  }
}

void ServersNode::WriteProperties(platform::PropertyBag& pb, const Text& sPrefix) const {
  pb.WriteProperty(sPrefix + "MaxRows", m_lMaxRows);
  pb.WriteProperty(sPrefix + "QueryTimeout", m_lQueryTimeout);
  pb.WriteProperty(sPrefix + "DefaultStartTime", m_sDefStartTime);
  pb.WriteProperty(sPrefix + "DefaultEndTime", m_sDefEndTime);
  pb.WriteProperty(sPrefix + "SqlStatements", m_bSqlStatements);
  pb.WriteProperty(sPrefix + "Context", m_bContext);
  m_serverNodes->WriteProperties(pb, sPrefix + "ServerNodes_");
}

void ServersNode::ReadProperties(const platform::PropertyBag& pb, const Text& sPrefix) {
  m_lMaxRows = platform::ToLong(pb.ReadProperty(sPrefix + "MaxRows", kMaxRows));
  m_lQueryTimeout = platform::ToLong(pb.ReadProperty(sPrefix + "QueryTimeout", kQueryTimeout));
  m_sDefStartTime = platform::ToText(pb.ReadProperty(sPrefix + "DefaultStartTime", kDefStartTime));
  m_sDefEndTime = platform::ToText(pb.ReadProperty(sPrefix + "DefaultEndTime", kDefEndTime));
  m_bSqlStatements =
      platform::ToBoolean(pb.ReadProperty(sPrefix + "SqlStatements", kSqlStatements));
  m_bContext = platform::ToBoolean(pb.ReadProperty(sPrefix + "Context", kContext));
  const auto serverNodes = NewServerNodes();
  serverNodes->ReadProperties(pb, sPrefix + "ServerNodes_");
  m_serverNodes = serverNodes;
}

}  // namespace orvane::nodes
