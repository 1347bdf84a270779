#include "nodes/catalog_node.h"

#include <utility>

#include "nodes/catalog_nodes_collection.h"
#include "nodes/table_nodes_collection.h"
#include "platform/conversions.h"

namespace orvane::nodes {

using platform::Text;

CatalogNode::CatalogNode(platform::ObjectFactoryPtr objects) : m_objects(std::move(objects)) {}

CatalogNodePtr CatalogNode::Create(const platform::ObjectFactoryPtr& objects) {
  const CatalogNodePtr node(new CatalogNode(objects));
  node->m_tableNodes = node->NewTableNodes();
  return node;
}

CatalogNode::~CatalogNode() {
  m_parent.reset();
  m_parentServerNode.reset();
  m_tableNodes.reset();
}

std::shared_ptr<TableNodesCollection> CatalogNode::NewTableNodes() {
  auto tableNodes = std::make_shared<TableNodesCollection>(m_objects);
  tableNodes->Parent(shared_from_this());
  return tableNodes;
}

void CatalogNode::Changed() {
  if (const auto parent = m_parent.lock()) parent->CatalogNodeChanged();
}

void CatalogNode::Parent(const std::shared_ptr<CatalogNodesCollection>& ctgNodes) {
  m_parent = ctgNodes;
}

void CatalogNode::ParentServerNode(const std::shared_ptr<ServerNode>& srvNode) {
  m_parentServerNode = srvNode;
}

void CatalogNode::Catalog(const Text& sCatalog) {
  m_sCatalog = sCatalog;
  Changed();
}

void CatalogNode::TableNodesChanged() {
  Changed();
}

void CatalogNode::ReleaseCachedRecordsets() {
  for (const auto& tblNode : m_tableNodes->NewEnum()) tblNode->SetRecordset(nullptr, 0);
}

void CatalogNode::WriteProperties(platform::PropertyBag& pb, const Text& sPrefix) const {
  pb.WriteProperty(sPrefix + "Catalog", m_sCatalog);
  m_tableNodes->WriteProperties(pb, sPrefix + "TableNodes_");
}

void CatalogNode::ReadProperties(const platform::PropertyBag& pb, const Text& sPrefix) {
  m_sCatalog = platform::ToText(pb.ReadProperty(sPrefix + "Catalog", ""));
  const auto tableNodes = NewTableNodes();
  tableNodes->ReadProperties(pb, sPrefix + "TableNodes_");
  m_tableNodes = tableNodes;
}

}  // namespace orvane::nodes
