#include "nodes/table_node.h"

#include <utility>

#include "nodes/table_nodes_collection.h"
#include "platform/conversions.h"
#include "platform/failure.h"

namespace orvane::nodes {

using platform::Boolean;
using platform::Long;
using platform::RecordsetPtr;
using platform::TableQueryPtr;
using platform::Text;

TableNode::TableNode(platform::ObjectFactoryPtr objects) : m_objects(std::move(objects)) {}

TableNodePtr TableNode::Create(const platform::ObjectFactoryPtr& objects) {
  auto node = CreateToRead(objects);
  node->Query(objects->CreateTableQuery());
  return node;
}

TableNodePtr TableNode::CreateToRead(const platform::ObjectFactoryPtr& objects) {
  return TableNodePtr(new TableNode(objects));
}

TableNode::~TableNode() {
  m_parent.reset();
  m_parentCatalogNode.reset();
  m_queryChange.Drop();
  m_query.reset();
  m_recordset.reset();
}

void TableNode::Query(const TableQueryPtr& query) {
  m_queryChange = query->OnChange([this] { m_query_Change(); });
  m_query = query;
  m_query->FilterIsDefault(m_bDefFilterCond);
}

void TableNode::m_query_Change() {
  Changed();
}

void TableNode::Changed() {
  if (const auto parent = m_parent.lock()) parent->TableNodeChanged();
}

void TableNode::Parent(const std::shared_ptr<TableNodesCollection>& tblNodes) {
  m_parent = tblNodes;
}

void TableNode::ParentCatalogNode(const std::shared_ptr<CatalogNode>& ctgNode) {
  m_parentCatalogNode = ctgNode;
}

void TableNode::DefaultFilterCondition(Boolean bDefFilterCond) {
  m_bDefFilterCond = bDefFilterCond;
  if (m_query) m_query->FilterIsDefault(m_bDefFilterCond);
  Changed();
}

void TableNode::SetRecordset(const RecordsetPtr& rs, Long lUpdatability) {
  m_recordset = rs;
  m_lUpdatability = lUpdatability;
}

RecordsetPtr TableNode::GetRecordset(Long& lUpdatability) const {
  lUpdatability = m_lUpdatability;
  return m_recordset;
}

void TableNode::WriteProperties(platform::PropertyBag& pb, const Text& sPrefix) const {
  pb.WriteProperty(sPrefix + "Query", m_query);
  pb.WriteProperty(sPrefix + "DefaultFilterCondition", m_bDefFilterCond);
}

void TableNode::ReadProperties(const platform::PropertyBag& pb, const Text& sPrefix) {
  // A bag stores no Null, so that it says that there is none; an empty query is made only then.
  platform::Value vtQuery = pb.ReadProperty(sPrefix + "Query", platform::Value());
  if (vtQuery.IsNull()) vtQuery = m_objects->CreateTableQuery();
  const auto* object = vtQuery.As<platform::ObjectPtr>();
  const auto query = object ? std::dynamic_pointer_cast<platform::TableQuery>(*object) : nullptr;
  if (!query) {
    throw platform::Failure(platform::failure::kTypeMismatch,
                            "The saved query of a table is no table query; restore the document "
                            "from a copy.");
  }
  m_bDefFilterCond = platform::ToBoolean(pb.ReadProperty(sPrefix + "DefaultFilterCondition", true));
  Query(query);
}

}  // namespace orvane::nodes
