// The root of the model: query options, display switches and the list of servers.
// Owned by the snap-in object, which it tells of every persistent change; one thread.
#pragma once

#include <memory>

#include "nodes/counted.h"
#include "nodes/servers_node_owner.h"
#include "platform/grids/query_limits.h"
#include "platform/services.h"

namespace orvane::nodes {

class ServerNodesCollection;

/// No setter compares or checks; each notifies the owner after storing.
class ServersNode : public platform::Object,
                    public std::enable_shared_from_this<ServersNode>,
                    private Counted {
 public:
  /// The factory makes the connections and table queries of the whole tree.
  static std::shared_ptr<ServersNode> Create(const platform::ObjectFactoryPtr& objects);
  /// The root with all beneath it as a document keeps them; none where it keeps none. Fails as
  /// ReadProperties does.
  static std::shared_ptr<ServersNode> OfDocument(const platform::PropertyBag& pb,
                                                 const platform::ObjectFactoryPtr& objects);
  /// Has the document keep that root, or that there is none.
  static void WriteDocument(platform::PropertyBag& pb, const ServersNode* root);
  ~ServersNode() override;

  void Parent(const std::shared_ptr<ServersNodeOwner>& snpIn);

  /// Most rows fetched into a grid.
  platform::Long MaxRows() const noexcept { return m_lMaxRows; }
  void MaxRows(platform::Long lMaxRows);
  /// Time-out of a command in seconds.
  platform::Long QueryTimeout() const noexcept { return m_lQueryTimeout; }
  void QueryTimeout(platform::Long lQueryTimeout);
  /// The default time range, in the historian's time syntax; notifies once.
  void SetDefaultTimeRange(const platform::Text& sStartTime, const platform::Text& sEndTime);
  void GetDefaultTimeRange(platform::Text& sStartTime, platform::Text& sEndTime) const;
  /// Whether the grids show the SQL statement that they run.
  platform::Boolean SqlStatements() const noexcept { return m_bSqlStatements; }
  void SqlStatements(platform::Boolean bShow);
  platform::Boolean Context() const noexcept { return m_bContext; }
  void Context(platform::Boolean bShow);

  std::shared_ptr<ServerNodesCollection> ServerNodes() const { return m_serverNodes; }
  /// Called by the server list when it has changed.
  void ServerNodesChanged();

  /// The filter condition for the default time range, empty for a table without one.
  platform::Text FormDefaultFilterCondition(const platform::Text& sCatalog,
                                            const platform::Text& sTable) const;
  /// Gives the query the limits and, where it is wanted, the filter condition for the default time
  /// range.
  void ApplyQueryDefaults(platform::TableQuery& query, platform::Boolean bDefFilterCond) const;

  void WriteProperties(platform::PropertyBag& pb, const platform::Text& sPrefix) const;
  void ReadProperties(const platform::PropertyBag& pb, const platform::Text& sPrefix);

 private:
  explicit ServersNode(platform::ObjectFactoryPtr objects);
  std::shared_ptr<ServerNodesCollection> NewServerNodes();
  void Changed();

  platform::ObjectFactoryPtr m_objects;
  std::weak_ptr<ServersNodeOwner> m_parent;
  // Of a new root, and of one whose document does not say.
  static constexpr platform::Long kMaxRows = platform::kUsualMaxRows;
  static constexpr platform::Long kQueryTimeout = platform::kUsualQueryTimeout;
  static constexpr const char* kDefStartTime = "*-1h";
  static constexpr const char* kDefEndTime = "*";
  static constexpr platform::Boolean kSqlStatements = true;
  static constexpr platform::Boolean kContext = false;

  platform::Long m_lMaxRows = kMaxRows;
  platform::Long m_lQueryTimeout = kQueryTimeout;
  platform::Text m_sDefStartTime = kDefStartTime;
  platform::Text m_sDefEndTime = kDefEndTime;
  platform::Boolean m_bSqlStatements = kSqlStatements;
  platform::Boolean m_bContext = kContext;
  std::shared_ptr<ServerNodesCollection> m_serverNodes;
};

using ServersNodePtr = std::shared_ptr<ServersNode>;

}  // namespace orvane::nodes
