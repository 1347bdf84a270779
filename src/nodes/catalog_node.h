// One catalog of a server, with its tables. Owned by a CatalogNodesCollection; one thread.
// The tree shows it, its folders carry it; saved with the document.
#pragma once

#include <memory>

#include "nodes/counted.h"
#include "platform/services.h"

namespace orvane::nodes {

class CatalogNodesCollection;
class ServerNode;
class TableNodesCollection;

class CatalogNode : public platform::Object,
                    public std::enable_shared_from_this<CatalogNode>,
                    private Counted {
 public:
  static std::shared_ptr<CatalogNode> Create(const platform::ObjectFactoryPtr& objects);
  ~CatalogNode() override;

  void Parent(const std::shared_ptr<CatalogNodesCollection>& ctgNodes);
  std::shared_ptr<ServerNode> ParentServerNode() const { return m_parentServerNode.lock(); }
  void ParentServerNode(const std::shared_ptr<ServerNode>& srvNode);

  /// The catalog's name.
  const platform::Text& Catalog() const noexcept { return m_sCatalog; }
  void Catalog(const platform::Text& sCatalog);

  std::shared_ptr<TableNodesCollection> TableNodes() const { return m_tableNodes; }
  void TableNodesChanged();
  /// Drops the cached rows of all tables.
  void ReleaseCachedRecordsets();

  void WriteProperties(platform::PropertyBag& pb, const platform::Text& sPrefix) const;
  void ReadProperties(const platform::PropertyBag& pb, const platform::Text& sPrefix);

 private:
  explicit CatalogNode(platform::ObjectFactoryPtr objects);
  std::shared_ptr<TableNodesCollection> NewTableNodes();
  void Changed();

  platform::ObjectFactoryPtr m_objects;
  std::weak_ptr<CatalogNodesCollection> m_parent;
  std::weak_ptr<ServerNode> m_parentServerNode;
  platform::Text m_sCatalog;
  std::shared_ptr<TableNodesCollection> m_tableNodes;
};

using CatalogNodePtr = std::shared_ptr<CatalogNode>;

}  // namespace orvane::nodes
