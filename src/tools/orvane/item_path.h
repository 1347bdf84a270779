// What the command line names in the tree: SERVER/CATALOG/TABLE.
// Used by the commands that ask a server; pure functions.
#pragma once

#include "nodes/query_node.h"
#include "nodes/server_node.h"
#include "nodes/servers_node.h"

namespace orvane::tools {

/// The name as a sentence tells it.
platform::Text InSentence(const platform::Text& sName);

struct TablePath {
  nodes::ServerNodePtr server;
  platform::Text sCatalog;
  platform::Text sTable;
};

/// The server of that name. Fails with an Ending where the document has none.
nodes::ServerNodePtr FindServer(const nodes::ServersNode& root, const platform::Text& sServer);
/// The query of that name, in whatever case it was written. Fails with an Ending where the server
/// has none.
nodes::QueryNodePtr FindQuery(const nodes::ServerNode& server, const platform::Text& sName);
/// A server of the document may have slashes in its name as they are; in the other names a
/// backslash stands before each slash and backslash. Fails with an Ending.
TablePath FindTablePath(const nodes::ServersNode& root, const platform::Text& sPath);

}  // namespace orvane::tools
