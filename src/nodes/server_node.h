// One historian server: its logon settings, its open connection, its catalogs and named queries.
// Owned by a ServerNodesCollection; one thread.
#pragma once

#include <memory>

#include "nodes/counted.h"
#include "platform/console/server_tag.h"
#include "platform/historian_names.h"
#include "platform/services.h"

namespace orvane::nodes {

class CatalogNodesCollection;
class QueryNodesCollection;
class ServerNodesCollection;
class ServersNode;

/// A server is connected exactly when Connection is set. No setter compares or checks.
class ServerNode : public platform::Object,
                   public platform::ServerTag,
                   public std::enable_shared_from_this<ServerNode>,
                   private Counted {
 public:
  static std::shared_ptr<ServerNode> Create(const platform::ObjectFactoryPtr& objects);
  /// Closes an open connection.
  ~ServerNode() override;

  void Parent(const std::shared_ptr<ServerNodesCollection>& srvNodes);
  std::shared_ptr<ServersNode> ParentServersNode() const { return m_parentServersNode.lock(); }
  void ParentServersNode(const std::shared_ptr<ServersNode>& srvsNode);

  /// The provider's name in the connection string.
  const platform::Text& Provider() const noexcept { return m_sProvider; }
  void Provider(const platform::Text& sProvider);
  /// The data source. The key under which the node was filed stays what it was.
  const platform::Text& Server() const noexcept { return m_sServer; }
  void Server(const platform::Text& sServer);
  const platform::Text& User() const noexcept { return m_sUser; }
  void User(const platform::Text& sUser);
  /// Provider options that Connect appends to the connection string.
  const platform::Text& ExtendedOptions() const noexcept { return m_sExOptions; }
  void ExtendedOptions(const platform::Text& sExOptions);

  const platform::ConnectionPtr& Connection() const noexcept { return m_connection; }
  platform::ConnectionPtr OpenConnection() const override { return m_connection; }
  /// Stores silently; an earlier connection is let go, not closed.
  void Connection(const platform::ConnectionPtr& cn);

  std::shared_ptr<CatalogNodesCollection> CatalogNodes() const { return m_catalogNodes; }
  void CatalogNodesChanged();
  std::shared_ptr<QueryNodesCollection> QueryNodes() const { return m_queryNodes; }
  void QueryNodesChanged();

  /// Connects through the logon dialog, in which the user may choose the server; Server then
  /// holds the choice. An earlier connection is replaced, not closed. On failure nothing changes.
  void ConnectEx();
  /// Connects to this server with its extended options; the dialog lets no other be chosen. An
  /// earlier connection is replaced, not closed. On failure nothing changes.
  void Connect();
  /// Closes and drops the connection, if there is one. When closing fails it is kept.
  void Disconnect();
  /// Drops the cached rows of all tables; those of the named queries stay.
  void ReleaseCachedRecordsets();

  /// Creates a catalog on the server (a size in kilobytes, none below 1) and gives the identifier
  /// by which it is to be known in the tree; empty when the server did not tell its identity.
  /// Fails with 91 when not connected. A failed creation leaves the hourglass.
  void AddCatalog(platform::UserInterface& ui, const platform::Text& sName,
                  const platform::Text& sPath, platform::Long lSize, platform::Text& sCatalog);
  /// Drops the catalog on the server; the tree stays as it is.
  void RemoveCatalog(const platform::Text& sName);

  /// The saved options are the stored ones and, behind them, those of an open connection.
  void WriteProperties(platform::PropertyBag& pb, const platform::Text& sPrefix) const;
  void ReadProperties(const platform::PropertyBag& pb, const platform::Text& sPrefix);

 private:
  explicit ServerNode(platform::ObjectFactoryPtr objects);
  std::shared_ptr<CatalogNodesCollection> NewCatalogNodes();
  std::shared_ptr<QueryNodesCollection> NewQueryNodes();
  void Changed();

  platform::ObjectFactoryPtr m_objects;
  std::weak_ptr<ServerNodesCollection> m_parent;
  std::weak_ptr<ServersNode> m_parentServersNode;
  platform::Text m_sProvider = "ORVOLEDB";
  platform::Text m_sServer = platform::kDefaultServer;
  platform::Text m_sUser = "orvanesnapin";
  platform::Text m_sExOptions;
  platform::ConnectionPtr m_connection;
  std::shared_ptr<CatalogNodesCollection> m_catalogNodes;
  std::shared_ptr<QueryNodesCollection> m_queryNodes;
};

using ServerNodePtr = std::shared_ptr<ServerNode>;

}  // namespace orvane::nodes
