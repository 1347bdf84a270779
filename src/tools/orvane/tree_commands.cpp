#include "tools/orvane/tree_commands.h"

#include <utility>

#include "nodes/catalog_node.h"
#include "nodes/catalog_nodes_collection.h"
#include "nodes/query_node.h"
#include "nodes/query_nodes_collection.h"
#include "nodes/server_node.h"
#include "nodes/server_nodes_collection.h"
#include "nodes/table_node.h"
#include "nodes/table_nodes_collection.h"
#include "platform/conversions.h"
#include "platform/json_text.h"
#include "platform/one_line.h"
#include "platform/utf8.h"
#include "tools/orvane/statuses.h"

namespace orvane::tools {

using platform::Text;

namespace {

void AppendLine(Text& sTo, std::size_t nDepth, const Text& sName) {
  sTo.append(2 * nDepth, ' ').append(platform::OneLine(sName)).append("\n");
}

void AppendServer(Text& sTo, const nodes::ServerNode& server) {
  AppendLine(sTo, 0, server.Server());
  AppendLine(sTo, 1, "Catalogs");
  for (const auto& catalog : server.CatalogNodes()->NewEnum()) {
    AppendLine(sTo, 2, catalog->Catalog());
    for (const auto& table : catalog->TableNodes()->NewEnum()) {
      AppendLine(sTo, 3, table->Query()->Table());
    }
  }
  AppendLine(sTo, 1, "Queries");
  for (const auto& query : server.QueryNodes()->NewEnum()) AppendLine(sTo, 2, query->QueryName());
}

/// Appends the members of a list with commas between them.
template <class Nodes, class Append>
void AppendList(Text& sTo, const Nodes& nodes, Append append) {
  sTo += '[';
  const char* sComma = "";
  for (const auto& node : nodes.NewEnum()) {
    sTo += std::exchange(sComma, ",");
    append(*node);
  }
  sTo += ']';
}

void AppendMember(Text& sTo, const char* sName, const Text& sText) {
  sTo.append("\"").append(sName).append("\":");
  AppendJson(sTo, sText);
}

void AppendServerJson(Text& sTo, const nodes::ServerNode& server) {
  sTo += '{';
  AppendMember(sTo, "server", server.Server());
  sTo += ',';
  AppendMember(sTo, "provider", server.Provider());
  sTo += ',';
  AppendMember(sTo, "user", server.User());
  sTo += ",\"catalogs\":";
  AppendList(sTo, *server.CatalogNodes(), [&](const nodes::CatalogNode& catalog) {
    sTo += '{';
    AppendMember(sTo, "catalog", catalog.Catalog());
    sTo += ",\"tables\":";
    AppendList(sTo, *catalog.TableNodes(),
               [&](const nodes::TableNode& table) { AppendJson(sTo, table.Query()->Table()); });
    sTo += '}';
  });
  sTo += ",\"queries\":";
  AppendList(sTo, *server.QueryNodes(), [&](const nodes::QueryNode& query) {
    sTo += '{';
    AppendMember(sTo, "query", query.QueryName());
    sTo += ',';
    AppendMember(sTo, "sql", query.Query());
    sTo += '}';
  });
  sTo += '}';
}

const char* JsonOf(bool bValue) {
  return bValue ? "true" : "false";
}

}  // namespace

void AppendJson(Text& sTo, const Text& sText) {
  if (platform::IsUtf8(sText)) return platform::AppendJsonString(sTo, sText);
  platform::Bytes bytes;
  for (const char c : sText) bytes.push_back(static_cast<std::byte>(c));
  sTo.append("{\"bytes\":\"").append(platform::ToText(platform::Value(bytes))).append("\"}");
}

void Tree(const nodes::ServersNode& root, bool bJson, Output& output) {
  const nodes::ServerNodesCollection& servers = *root.ServerNodes();
  Text& sOut = output.Buffer();
  if (bJson) {
    sOut += "{\"servers\":";
    AppendList(sOut, servers, [&](const nodes::ServerNode& server) {
      AppendServerJson(sOut, server);
      output.FlushLarge();
    });
    sOut += "}\n";
  } else {
    for (const auto& server : servers.NewEnum()) {
      AppendServer(sOut, *server);
      output.FlushLarge();
    }
  }
  output.Flush();
  if (servers.Count() == 0) throw Ending(kNothingFound, "The document has no server.");
}

void Options(const nodes::ServersNode& root, bool bJson, Output& output) {
  Text sStart;
  Text sEnd;
  root.GetDefaultTimeRange(sStart, sEnd);
  Text& sOut = output.Buffer();
  if (bJson) {
    sOut += "{\"maxRows\":" + std::to_string(root.MaxRows()) +
            ",\"queryTimeout\":" + std::to_string(root.QueryTimeout()) + ",";
    AppendMember(sOut, "startTime", sStart);
    sOut += ',';
    AppendMember(sOut, "endTime", sEnd);
    sOut += Text(",\"sqlStatements\":") + JsonOf(root.SqlStatements()) +
            ",\"context\":" + JsonOf(root.Context()) + "}\n";
    return;
  }
  sOut += "maximum rows: " + std::to_string(root.MaxRows()) +
          "\nquery time-out: " + std::to_string(root.QueryTimeout()) +
          " s\nstart time: " + platform::OneLine(sStart) +
          "\nend time: " + platform::OneLine(sEnd) +
          "\nSQL statements: " + (root.SqlStatements() ? "shown" : "hidden") +
          "\ncontext: " + (root.Context() ? "shown" : "hidden") + "\n";
}

}  // namespace orvane::tools
