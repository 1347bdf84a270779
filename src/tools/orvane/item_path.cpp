#include "tools/orvane/item_path.h"

#include <vector>

#include "nodes/query_nodes_collection.h"
#include "nodes/server_nodes_collection.h"
#include "platform/case_folding.h"
#include "platform/one_line.h"
#include "platform/quoting.h"
#include "tools/orvane/statuses.h"

namespace orvane::tools {

using platform::Text;

namespace {

[[noreturn]] void FailWithoutServer(const Text& sServer) {
  throw Ending(kNothingFound, "The document has no server " + InSentence(sServer) +
                                  "; \"orvane tree\" tells which it has.");
}

/// The names between the slashes.
std::vector<Text> PartsOf(const Text& sPath) {
  std::vector<Text> parts(1);
  for (std::size_t n = 0; n < sPath.size(); ++n) {
    if (sPath[n] == '/') {
      parts.emplace_back();
      continue;
    }
    if (sPath[n] == '\\' && n + 1 < sPath.size()) ++n;
    parts.back() += sPath[n];
  }
  return parts;
}

}  // namespace

Text InSentence(const Text& sName) {
  return platform::InQuotes(platform::OneLine(sName));
}

nodes::ServerNodePtr FindServer(const nodes::ServersNode& root, const Text& sServer) {
  auto server = root.ServerNodes()->Item(sServer);
  if (!server) FailWithoutServer(sServer);
  return server;
}

nodes::QueryNodePtr FindQuery(const nodes::ServerNode& server, const Text& sName) {
  const Text sFolded = platform::FoldCase(sName);
  for (const auto& query : server.QueryNodes()->NewEnum()) {
    if (platform::FoldCase(query->QueryName()) == sFolded) return query;
  }
  throw Ending(kNothingFound, "The server " + InSentence(server.Server()) + " has no query " +
                                  InSentence(sName) + "; \"orvane tree\" tells which it has.");
}

TablePath FindTablePath(const nodes::ServersNode& root, const Text& sPath) {
  TablePath found;
  std::size_t nLongest = 0;
  const Text sFolded = platform::FoldCase(sPath);
  for (const auto& server : root.ServerNodes()->NewEnum()) {
    const Text& sServer = server->Server();
    // Folding may change how long a name is, so that the path is cut by the slash behind it.
    if (!sFolded.starts_with(platform::FoldCase(sServer) + "/")) continue;
    for (std::size_t n = sPath.find('/'); n != Text::npos; n = sPath.find('/', n + 1)) {
      if (n + 1 <= nLongest) continue;
      if (platform::FoldCase(sPath.substr(0, n)) != platform::FoldCase(sServer)) continue;
      nLongest = n + 1;
      found.server = server;
    }
  }
  const auto parts = PartsOf(sPath.substr(nLongest));
  const std::size_t nWanted = found.server ? 2 : 3;
  if (parts.size() < nWanted || (found.server && parts.size() > nWanted)) {
    throw Ending(kWrongUse, InSentence(sPath) +
                                " names no table; write it as SERVER/CATALOG/TABLE, with a "
                                "backslash before each slash within a catalog's or table's name.");
  }
  if (!found.server) FailWithoutServer(parts.front());
  found.sCatalog = parts[0];
  found.sTable = parts[1];
  return found;
}

}  // namespace orvane::tools
