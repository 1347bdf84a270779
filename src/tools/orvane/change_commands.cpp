#include "tools/orvane/change_commands.h"

#include <filesystem>
#include <iostream>
#include <utility>

#include "nodes/catalog_nodes_collection.h"
#include "nodes/query_nodes_collection.h"
#include "nodes/server_nodes_collection.h"
#include "platform/failure.h"
#include "platform/quoting.h"
#include "tools/orvane/item_path.h"
#include "tools/orvane/row_source.h"
#include "tools/orvane/statuses.h"
#include "tools/terminal/silent_terminal.h"

namespace orvane::tools {

using platform::Failure;
using platform::Text;

namespace {

/// What the model says to the user is told beside the results.
class ToldInterface final : public platform::UserInterface {
 public:
  platform::MsgBoxResult MsgBox(const Text& sText, platform::MsgBoxButtons /*buttons*/,
                                platform::MsgBoxIcon /*icon*/, const Text& /*sTitle*/) override {
    std::cerr << "orvane: " << sText << '\n';
    return platform::MsgBoxResult::Ok;
  }
  platform::Long MousePointer() const override { return platform::kMousePointerDefault; }
  void MousePointer(platform::Long /*lPointer*/) override {}
  void Beep() override {}
  void DoEvents() override {}
};

[[noreturn]] void RefuseTaken(const nodes::ServerNode& server, const Text& sQuery) {
  throw Ending(kWrongUse, "The server " + InSentence(server.Server()) + " has a query " +
                              InSentence(sQuery) + " already; choose another name.");
}

/// Files the query; a name that is taken is refused.
template <class File>
void FileQuery(const nodes::ServerNode& server, const Text& sQuery, const File& file) {
  try {
    file();
  } catch (const Failure& failed) {
    if (failed.Number() != platform::failure::kKeyExists) throw;
    RefuseTaken(server, sQuery);
  }
}

}  // namespace

Text StatementOfQuery() {
  Text sSql = StandardInput();
  if (sSql.ends_with('\n')) sSql.pop_back();
  if (sSql.ends_with('\r')) sSql.pop_back();
  return sSql;
}

ChangeCommands::ChangeCommands(const Text& sDocument, const std::shared_ptr<DataHost>& host,
                               bool bConfirmed, Output& output)
    : m_change(sDocument, host),
      m_access(m_change.Root(), host),
      m_bConfirmed(bConfirmed),
      m_output(output) {}

void ChangeCommands::Confirm(const Text& sQuestion) const {
  if (m_bConfirmed) return;
  const auto answer = AskedLine(sQuestion + " (y/n) ");
  if (!answer) {
    throw Ending(kWrongUse, "There is no terminal to ask on whether this is meant; give --yes.");
  }
  if (*answer != "y" && *answer != "Y") throw Ending(kNothingFound, "Nothing was changed.");
}

void ChangeCommands::Done(const Text& sSentence) {
  m_change.Save();
  m_output.Write(sSentence + "\n");
}

// ---- servers

void ChangeCommands::AddServer(const Text& sServer) {
  const auto servers = m_access.Root().ServerNodes();
  const auto refuse = [](const Text& sName) {
    throw Ending(kWrongUse, "The document has a server " + InSentence(sName) +
                                " already; remove that first, or name another one.");
  };
  if (servers->Item(sServer)) refuse(sServer);
  const auto server = m_access.ConnectNew(sServer);
  if (servers->Item(server->Server())) refuse(server->Server());
  servers->Add(server);
  Done("Added the server " + InSentence(server->Server()) + ".");
}

void ChangeCommands::RemoveServer(const Text& sServer) {
  const auto server = FindServer(m_access.Root(), sServer);
  Confirm("Are you sure you want to remove the " + InSentence(server->Server()) +
          " server from the tree?");
  m_access.Root().ServerNodes()->Remove(server->Server());
  Done("Removed the server " + InSentence(server->Server()) + ".");
}

// ---- catalogs

void ChangeCommands::KeepCatalog(const nodes::ServerNode& server, const Text& sCatalog) const {
  // One that the document has already was dropped on the server by somebody else.
  const auto catalogs = server.CatalogNodes();
  if (!catalogs->Item(sCatalog)) catalogs->Add(sCatalog);
}

void ChangeCommands::CreateCatalog(const Text& sServer, const Text& sCatalog, const Text& sPath,
                                   platform::Long lSize) {
  const auto server = FindServer(m_access.Root(), sServer);
  m_access.Connect(*server);
  ToldInterface told;
  Text sKnownAs;
  server->AddCatalog(told, sCatalog, sPath, lSize, sKnownAs);
  if (!sKnownAs.empty()) KeepCatalog(*server, sKnownAs);
  Done("Made the catalog " + InSentence(sCatalog) + " on the server " +
       InSentence(server->Server()) + ".");
}

void ChangeCommands::AttachCatalog(const Text& sServer, const Text& sCatalog, const Text& sFile) {
  const auto server = FindServer(m_access.Root(), sServer);
  const auto command = m_access.Host().CreateCommand();
  command->ActiveConnection(m_access.Connect(*server));
  const Text sPath = std::filesystem::absolute(sFile).lexically_normal().string();
  command->CommandText("CREATE DATABASE " + platform::QuotedName(sCatalog) +
                       " ON (FILE=" + platform::QuotedText(sPath) + ")");
  command->Execute();
  KeepCatalog(*server, sCatalog);
  Done("Attached the catalog " + InSentence(sCatalog) + " to the server " +
       InSentence(server->Server()) + ".");
}

void ChangeCommands::RemoveCatalog(const Text& sServer, const Text& sCatalog) {
  const auto server = FindServer(m_access.Root(), sServer);
  const Text sFound = m_access.FindCatalog(*server, sCatalog);
  Confirm("Are you sure you want to remove the " + InSentence(sFound) + " catalog?");
  server->RemoveCatalog(sFound);
  const auto catalogs = server->CatalogNodes();
  if (catalogs->Item(sFound)) catalogs->Remove(sFound);
  Done("Removed the catalog " + InSentence(sFound) + " from the server " +
       InSentence(server->Server()) + ".");
}

// ---- queries

void ChangeCommands::AddQuery(const Text& sServer, const Text& sQuery, const Text& sSql) {
  const auto server = FindServer(m_access.Root(), sServer);
  FileQuery(*server, sQuery, [&] { server->QueryNodes()->Add(sQuery, sSql); });
  Done("Added the query " + InSentence(sQuery) + ".");
}

void ChangeCommands::EditQuery(const Text& sServer, const Text& sQuery, const Text& sSql) {
  const auto query = FindQuery(*FindServer(m_access.Root(), sServer), sQuery);
  query->Query(sSql);
  Done("Changed the query " + InSentence(query->QueryName()) + ".");
}

void ChangeCommands::RenameQuery(const Text& sServer, const Text& sQuery, const Text& sNewName) {
  const auto server = FindServer(m_access.Root(), sServer);
  const auto query = FindQuery(*server, sQuery);
  FileQuery(*server, sNewName,
            [&] { server->QueryNodes()->Refile(query, sNewName, query->Query()); });
  Done("The query " + InSentence(sQuery) + " is called " + InSentence(sNewName) + " now.");
}

void ChangeCommands::RemoveQuery(const Text& sServer, const Text& sQuery) {
  const auto server = FindServer(m_access.Root(), sServer);
  const auto query = FindQuery(*server, sQuery);
  Confirm("Are you sure you want to remove the " + InSentence(query->QueryName()) + " query?");
  server->QueryNodes()->Remove(query->QueryName());
  Done("Removed the query " + InSentence(query->QueryName()) + ".");
}

}  // namespace orvane::tools
