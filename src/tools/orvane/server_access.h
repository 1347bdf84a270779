// The way to the servers of a document: connected, with a password that is asked for where the
// server wants one, and looked through for catalogs and tables.
// Used by the commands that ask servers; each call fails with an Ending or as the server does. One
// thread.
#pragma once

#include "nodes/server_node.h"
#include "nodes/servers_node.h"
#include "nodes/table_node.h"
#include "tools/orvane/data_host.h"

namespace orvane::tools {

class ServerAccess {
 public:
  struct FoundTable {
    platform::ConnectionPtr cn;
    nodes::TableNodePtr table;
  };

  ServerAccess(nodes::ServersNodePtr root, std::shared_ptr<DataHost> host)
      : m_root(std::move(root)), m_host(std::move(host)) {}

  nodes::ServersNode& Root() const { return *m_root; }
  DataHost& Host() const { return *m_host; }

  platform::ConnectionPtr Connect(nodes::ServerNode& server) const;
  /// A server that the document does not have yet, connected, by the name that it tells itself.
  nodes::ServerNodePtr ConnectNew(const platform::Text& sServer) const;
  /// The catalog's name as the server has it.
  platform::Text FindCatalog(nodes::ServerNode& server, const platform::Text& sCatalog) const;
  FoundTable FindTable(const platform::Text& sPath) const;

 private:
  /// Does it again with a password where it is refused without.
  template <class Open>
  void WithPassword(const platform::Text& sServer, const Open& open) const;

  nodes::ServersNodePtr m_root;
  std::shared_ptr<DataHost> m_host;
};

}  // namespace orvane::tools
