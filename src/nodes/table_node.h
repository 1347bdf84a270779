// One table of a catalog: its table query and, while its grid is hidden, its cached rows.
// Owned by a TableNodesCollection; one thread.
#pragma once

#include <memory>

#include "nodes/counted.h"
#include "platform/services.h"

namespace orvane::nodes {

class CatalogNode;
class TableNodesCollection;

class TableNode : public platform::Object, private Counted {
 public:
  static std::shared_ptr<TableNode> Create(const platform::ObjectFactoryPtr& objects);
  /// A node that has no query until it has been read.
  static std::shared_ptr<TableNode> CreateToRead(const platform::ObjectFactoryPtr& objects);
  ~TableNode() override;

  void Parent(const std::shared_ptr<TableNodesCollection>& tblNodes);
  std::shared_ptr<CatalogNode> ParentCatalogNode() const { return m_parentCatalogNode.lock(); }
  void ParentCatalogNode(const std::shared_ptr<CatalogNode>& ctgNode);

  /// The node's own query, to be changed in place; the node learns of every change.
  const platform::TableQueryPtr& Query() const noexcept { return m_query; }

  /// Whether the default time-range filter is applied to the query.
  platform::Boolean DefaultFilterCondition() const noexcept { return m_bDefFilterCond; }
  void DefaultFilterCondition(platform::Boolean bDefFilterCond);

  /// Keeps the rows, or none, with the value that the grid handed out with them; silent.
  void SetRecordset(const platform::RecordsetPtr& rs, platform::Long lUpdatability);
  platform::RecordsetPtr GetRecordset(platform::Long& lUpdatability) const;

  void WriteProperties(platform::PropertyBag& pb, const platform::Text& sPrefix) const;
  /// Fails with 13 when the stored query is no table query.
  void ReadProperties(const platform::PropertyBag& pb, const platform::Text& sPrefix);

 private:
  explicit TableNode(platform::ObjectFactoryPtr objects);
  void Query(const platform::TableQueryPtr& query);
  void m_query_Change();
  void Changed();

  platform::ObjectFactoryPtr m_objects;
  std::weak_ptr<TableNodesCollection> m_parent;
  std::weak_ptr<CatalogNode> m_parentCatalogNode;
  platform::TableQueryPtr m_query;
  platform::Subscription m_queryChange;
  platform::Boolean m_bDefFilterCond = true;
  platform::RecordsetPtr m_recordset;
  platform::Long m_lUpdatability = 0;
};

using TableNodePtr = std::shared_ptr<TableNode>;

}  // namespace orvane::nodes
