#include "tools/orvane/server_commands.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iostream>
#include <system_error>
#include <utility>

#include "access/schema_browsing.h"
#include "controls/statements/connection_zone.h"
#include "controls/statements/sql_text.h"
#include "controls/statements/table_statement.h"
#include "controls/statements/time_column.h"
#include "exports/aligned_lines.h"
#include "nodes/catalog_nodes_collection.h"
#include "nodes/met_table.h"
#include "nodes/query_node.h"
#include "nodes/query_nodes_collection.h"
#include "platform/case_folding.h"
#include "platform/failure.h"
#include "platform/one_line.h"
#include "platform/quoting.h"
#include "tools/orvane/item_path.h"
#include "tools/orvane/statuses.h"
#include "tools/orvane/tree_commands.h"

namespace orvane::tools {

using platform::Failure;
using platform::Text;
namespace failure = platform::failure;

namespace {

constexpr std::size_t kLongestStatement = std::size_t{1} << 26;

Text Quoted(const Text& sName) {
  return platform::InQuotes(platform::OneLine(sName));
}

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

nodes::QueryNodePtr FindQuery(const nodes::ServerNode& server, const Text& sName) {
  const Text sFolded = platform::FoldCase(sName);
  for (const auto& query : server.QueryNodes()->NewEnum()) {
    if (platform::FoldCase(query->QueryName()) == sFolded) return query;
  }
  return nullptr;
}

bool IsBlank(const Text& sText) {
  return sText.find_first_not_of(" \t\r\n") == Text::npos;
}

Text RowsInWords(platform::RowIndex rows) {
  return std::to_string(rows) + (rows == 1 ? " row" : " rows");
}

}  // namespace

Text StandardInput() {
  Text sAll;
  char buffer[65536];
  for (;;) {
    const ssize_t n = read(STDIN_FILENO, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) {
      throw Ending(kWrongUse, "The standard input cannot be read: " +
                                  std::generic_category().message(errno) + "; give it another.");
    }
    if (n == 0) return sAll;
    sAll.append(buffer, static_cast<std::size_t>(n));
    if (sAll.size() > kLongestStatement) {
      throw Ending(kWrongUse, "What stands on the standard input is too long for a statement.");
    }
  }
}

platform::ConnectionPtr ServerCommands::Connect(nodes::ServerNode& server) {
  try {
    server.Connect();
    return server.Connection();
  } catch (const Failure& failed) {
    const bool bRefused = failed.Number() == failure::kNoRights;
    if (!bRefused || !m_host->Logon().AskTerminal(server.Server())) throw;
  }
  server.Connect();
  return server.Connection();
}

ServerCommands::FoundTable ServerCommands::Find(const Text& sPath) {
  const TablePath path = FindTablePath(*m_root, sPath);
  const auto cn = Connect(*path.server);
  NameSought catalogs(path.sCatalog);
  access::ForEachCatalog(cn, [&](const Text& sName) { catalogs.Look(sName); });
  if (!catalogs.Found()) {
    throw Ending(kNothingFound, "The server " + Quoted(path.server->Server()) + " has no catalog " +
                                    Quoted(path.sCatalog) + ".");
  }
  const Text sCatalog = *catalogs.Found();
  NameSought tables(path.sTable);
  access::ForEachTable(cn, sCatalog, [&](const Text& sName) { tables.Look(sName); });
  if (!tables.Found()) {
    throw Ending(kNothingFound,
                 "The catalog " + Quoted(sCatalog) + " has no table " + Quoted(path.sTable) + ".");
  }
  auto catalog = path.server->CatalogNodes()->Item(sCatalog);
  if (!catalog) catalog = path.server->CatalogNodes()->Add(sCatalog);
  return {cn, nodes::MeetTable(*m_root, *catalog, cn, *tables.Found())};
}

void ServerCommands::Rows(const Text& sPath, const RowWishes& wishes) {
  const FoundTable found = Find(sPath);
  platform::TableQuery& query = *found.table->Query();
  controls::Viewing viewing;
  viewing.range = wishes.range;
  // As in the grid: with an order of its own the table needs none by its times.
  if (!query.SortCriterion() || wishes.range) {
    viewing.timeColumn = controls::TimeColumnOf(*found.cn, query.Catalog(), query.Table());
  }
  if (wishes.range && !viewing.timeColumn) {
    throw Ending(kWrongUse, "The table " + Quoted(query.Table()) +
                                " has no column of times; leave --last, --from and --to away.");
  }
  Fetch(
      found.cn,
      {controls::StatementOf(query, viewing), controls::TableInSql(query.Catalog(), query.Table()),
       query.MaxRows(), query.QueryTimeout()},
      wishes);
}

void ServerCommands::Query(const Text& sServer, const Text& sQuery, const RowWishes& wishes) {
  const auto server = FindServer(*m_root, sServer);
  const auto query = FindQuery(*server, sQuery);
  if (!query) {
    throw Ending(kNothingFound, "The server " + Quoted(server->Server()) + " has no query " +
                                    Quoted(sQuery) + "; \"orvane tree\" tells which it has.");
  }
  if (IsBlank(query->Query())) {
    throw Ending(kNothingFound, "The query " + Quoted(query->QueryName()) +
                                    " has no SQL statement; write one in the console.");
  }
  Fetch(Connect(*server),
        {query->Query(), platform::QuotedName(query->QueryName()), m_root->MaxRows(),
         m_root->QueryTimeout()},
        wishes);
}

void ServerCommands::Sql(const Text& sServer, const std::function<Text()>& statement,
                         const RowWishes& wishes) {
  const auto cn = Connect(*FindServer(*m_root, sServer));
  const Text sSql = statement();
  if (IsBlank(sSql)) {
    throw Ending(kWrongUse, "There is no SQL statement on the standard input; write one there.");
  }
  Fetch(cn, {sSql, platform::QuotedName("Rows"), m_root->MaxRows(), m_root->QueryTimeout()},
        wishes);
}

void ServerCommands::Fetch(const platform::ConnectionPtr& cn, const Asked& asked,
                           const RowWishes& wishes) {
  exports::WriterOptions options;
  options.zone = controls::ZoneOf(cn);
  options.sInto = asked.sInto;
  RowOutput rows(wishes.form, std::move(options), m_output);
  const auto command = m_host->CreateCommand();
  command->ActiveConnection(cn);
  command->CommandText(asked.sSql);
  const platform::Long lLimit = std::max(0, wishes.lLimit.value_or(asked.lLimit));
  command->MaxRecords(lLimit);
  command->CommandTimeout(std::max(0, wishes.lTimeout.value_or(asked.lTimeout)));
  command->ReadOnly(!wishes.bChange);
  command->Sink([&rows](const platform::RecordsetPtr& rs) { rows.Rows(*rs); });
  platform::Long lChanged = 0;
  platform::RecordsetPtr rs;
  try {
    rs = command->Execute(&lChanged);
  } catch (const Failure& failed) {
    if (failed.Number() != failure::kWouldChange) throw;
    throw Ending(kRefused,
                 "The statement changes data and has not been run; give --change if that is what "
                 "is wanted.");
  }
  rows.End(*rs);
  if (rs->FieldCount() == 0) {
    std::cerr << "Changed " << RowsInWords(std::max(0, lChanged)) << ".\n";
  } else if (rs->State() == platform::FetchState::Truncated) {
    throw Ending(kCut, "These are the first " + RowsInWords(rows.Count()) +
                           " only, as the row limit is " + std::to_string(lLimit) +
                           "; --limit 0 gives all.");
  } else if (rows.Count() == 0) {
    throw Ending(kNothingFound, "No rows were found.");
  }
}

void ServerCommands::Structure(const Text& sPath, bool bJson) {
  const FoundTable found = Find(sPath);
  const platform::TableQuery& query = *found.table->Query();
  Text& sOut = m_output.Buffer();
  exports::AlignedLines lines({false, false, false, false});
  if (bJson) {
    sOut += "{\"columns\":[";
  } else {
    lines.Add({"Column name", "Data type", "Is nullable?", "Key"}, sOut);
  }
  const char* sComma = "";
  access::ForEachStructureRow(
      found.cn, query.Catalog(), query.Table(), [&](const access::TableStructureRow& row) {
        const bool bNullable = row.nullable();
        if (!bJson) {
          return lines.Add({platform::OneLine(row.sColumn), platform::OneLine(row.sTypeName),
                            bNullable ? "yes" : "no", row.bKey ? "yes" : "no"},
                           sOut);
        }
        sOut.append(std::exchange(sComma, ",")).append("{\"column\":");
        AppendJson(sOut, row.sColumn);
        sOut += ",\"type\":";
        AppendJson(sOut, row.sTypeName);
        sOut.append(",\"nullable\":").append(bNullable ? "true" : "false");
        sOut.append(",\"key\":").append(row.bKey ? "true" : "false").append("}");
      });
  if (bJson) sOut += "]}\n";
  lines.End(sOut);
}

}  // namespace orvane::tools
