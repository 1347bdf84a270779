#include "tools/orvane/server_access.h"

#include <optional>

#include "access/schema_browsing.h"
#include "nodes/catalog_nodes_collection.h"
#include "nodes/met_table.h"
#include "platform/case_folding.h"
#include "platform/failure.h"
#include "tools/orvane/item_path.h"
#include "tools/orvane/statuses.h"

namespace orvane::tools {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

/// The name as the server has it, in whatever case it was written.
class NameSought {
 public:
  explicit NameSought(const Text& sName) : m_sName(sName), m_sFolded(platform::FoldCase(sName)) {}
  void Look(const Text& sName) {
    if (sName == m_sName || (!m_found && platform::FoldCase(sName) == m_sFolded)) m_found = sName;
  }
  const std::optional<Text>& Found() const { return m_found; }

 private:
  const Text& m_sName;
  Text m_sFolded;
  std::optional<Text> m_found;
};

}  // namespace

template <class Open>
void ServerAccess::WithPassword(const Text& sServer, const Open& open) const {
  try {
    return open();
  } catch (const Failure& failed) {
    const bool bRefused = failed.Number() == failure::kNoRights;
    if (!bRefused || !m_host->Logon().AskTerminal(sServer)) throw;
  }
  open();
}

platform::ConnectionPtr ServerAccess::Connect(nodes::ServerNode& server) const {
  if (!server.Connection()) WithPassword(server.Server(), [&] { server.Connect(); });
  return server.Connection();
}

nodes::ServerNodePtr ServerAccess::ConnectNew(const Text& sServer) const {
  auto server = nodes::ServerNode::Create(m_host);
  server->Server(sServer);
  WithPassword(sServer, [&] { server->ConnectEx(); });
  return server;
}

Text ServerAccess::FindCatalog(nodes::ServerNode& server, const Text& sCatalog) const {
  NameSought catalogs(sCatalog);
  access::ForEachCatalog(Connect(server), [&](const Text& sName) { catalogs.Look(sName); });
  if (!catalogs.Found()) {
    throw Ending(kNothingFound, "The server " + InSentence(server.Server()) + " has no catalog " +
                                    InSentence(sCatalog) + ".");
  }
  return *catalogs.Found();
}

ServerAccess::FoundTable ServerAccess::FindTable(const Text& sPath) const {
  const TablePath path = FindTablePath(*m_root, sPath);
  const auto cn = Connect(*path.server);
  const Text sCatalog = FindCatalog(*path.server, path.sCatalog);
  NameSought tables(path.sTable);
  access::ForEachTable(cn, sCatalog, [&](const Text& sName) { tables.Look(sName); });
  if (!tables.Found()) {
    throw Ending(kNothingFound, "The catalog " + InSentence(sCatalog) + " has no table " +
                                    InSentence(path.sTable) + ".");
  }
  auto catalog = path.server->CatalogNodes()->Item(sCatalog);
  if (!catalog) catalog = path.server->CatalogNodes()->Add(sCatalog);
  return {cn, nodes::MeetTable(*m_root, *catalog, cn, *tables.Found())};
}

}  // namespace orvane::tools
