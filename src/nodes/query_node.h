// One named SQL query of a server and the rows last fetched for it.
// Owned by a QueryNodesCollection; one thread.
#pragma once

#include <memory>

#include "nodes/counted.h"
#include "platform/ado/recordset.h"
#include "platform/property_bag.h"

namespace orvane::nodes {

class QueryNodesCollection;
class ServerNode;

class QueryNode : public platform::Object, private Counted {
 public:
  QueryNode() = default;
  ~QueryNode() override;

  void Parent(const std::shared_ptr<QueryNodesCollection>& qrNodes);
  std::shared_ptr<ServerNode> ParentServerNode() const { return m_parentServerNode.lock(); }
  void ParentServerNode(const std::shared_ptr<ServerNode>& srvNode);

  const platform::Text& QueryName() const noexcept { return m_sQueryName; }
  void QueryName(const platform::Text& sName);
  /// The SQL statement.
  const platform::Text& Query() const noexcept { return m_sQuery; }
  void Query(const platform::Text& sQuery);
  const platform::RecordsetPtr& Recordset() const noexcept { return m_recordset; }
  /// Keeps the rows, or none; silent.
  void Recordset(const platform::RecordsetPtr& rs);

  void WriteProperties(platform::PropertyBag& pb, const platform::Text& sPrefix) const;
  void ReadProperties(const platform::PropertyBag& pb, const platform::Text& sPrefix);

 private:
  void Changed();

  std::weak_ptr<QueryNodesCollection> m_parent;
  std::weak_ptr<ServerNode> m_parentServerNode;
  platform::Text m_sQueryName;
  platform::Text m_sQuery;
  platform::RecordsetPtr m_recordset;
};

using QueryNodePtr = std::shared_ptr<QueryNode>;

}  // namespace orvane::nodes
