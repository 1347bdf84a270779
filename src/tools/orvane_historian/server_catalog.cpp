#include "tools/orvane_historian/server_catalog.h"

#include <algorithm>
#include <utility>

#include "ado/secret.h"
#include "platform/failure.h"
#include "platform/quoting.h"
#include "provider/engines/postgres/postgres_engine.h"
#include "provider/engines/same_catalog.h"
#include "tools/terminal/silent_terminal.h"

namespace orvane::tools {

using platform::Failure;
using platform::Text;
using platform::Value;
namespace engines = provider::engines;
namespace failure = platform::failure;

namespace {

// Does the work without a password, and where the server wants one with that of the terminal.
template <class Work>
auto WithPassword(Text& sPassword, Work&& work) {
  try {
    return work(sPassword);
  } catch (const Failure& refused) {
    if (refused.Number() != failure::kNoRights || !sPassword.empty()) throw;
    sPassword = AskedPassword("Password: ");
    if (sPassword.empty()) throw;
  }
  return work(sPassword);
}

}  // namespace

bool IsServerAddress(const Text& sServer) {
  return engines::PostgresEngine().Serves(sServer);
}

void MakeServerHistorian(const Text& sServer) {
  Text sPassword;
  const ado::WipeAtEnd wipe(sPassword);
  WithPassword(sPassword, [&](const Text& sTyped) {
    engines::PostgresEngine().MakeHistorian({sServer, {}}, sTyped, {});
  });
}

ServerCatalog::ServerCatalog(Text sServer, Text sCatalog, bool bMake)
    : m_sServer(std::move(sServer)), m_sName(std::move(sCatalog)), m_bMake(bMake) {
  try {
    Open();
  } catch (...) {
    ado::Wipe(m_sPassword);
    throw;
  }
}

ServerCatalog::~ServerCatalog() {
  ado::Wipe(m_sPassword);
}

void ServerCatalog::Open() {
  m_session = WithPassword(m_sPassword, [&](const Text& sTyped) {
    return engines::PostgresEngine().Open({m_sServer, {}}, sTyped, {});
  });
  for (;;) {
    for (const auto& catalog : m_session->Catalogs({})) {
      if (!engines::IsSameCatalog(catalog.sName, m_sName)) continue;
      if (catalog.bSystem) {
        throw Failure(failure::kInvalidArgument, "The catalog " + catalog.sName +
                                                     " belongs to the historian itself; name one "
                                                     "of your own.");
      }
      m_catalog = catalog;
      return;
    }
    if (!m_bMake || m_bNew) {
      throw Failure(failure::kInvalidArgument, "There is no catalog \"" + m_sName +
                                                   "\" on this server; create it first, for "
                                                   "example in the console.");
    }
    m_session->CreateCatalog({m_sName, {}, 0}, {});
    m_bNew = true;
  }
}

void ServerCatalog::Reopen() {
  m_bMake = false;
  Open();
}

bool ServerCatalog::Has(const Text& sTable) {
  return !m_session->Schema(m_catalog, {sTable, false, false}, {}).empty();
}

engines::TableSchema ServerCatalog::Table(const Text& sTable) {
  auto tables = m_session->Schema(m_catalog, {sTable, true, true}, {});
  if (tables.empty()) {
    throw Failure(failure::kInvalidArgument, "There is no table \"" + sTable +
                                                 "\" in the catalog " + m_catalog.sName +
                                                 "; name one that it has.");
  }
  return std::move(tables.front());
}

Text ServerCatalog::Named(const Text& sTable) const {
  return platform::QuotedName(m_catalog.sName) + "." + platform::QuotedName(sTable);
}

engines::EngineStatement ServerCatalog::Statement(const Text& sSql) const {
  engines::EngineStatement statement;
  statement.sSql = sSql;
  statement.catalogs = {m_catalog};
  return statement;
}

platform::RecordsetPtr ServerCatalog::Ask(const Text& sSql, std::vector<Value> parameters) {
  auto statement = Statement(sSql);
  statement.parameters = std::move(parameters);
  return m_session->Run(statement, {}).recordset;
}

std::int64_t ServerCatalog::Run(const Text& sSql, platform::ParameterRows rows) {
  auto statement = Statement(sSql);
  statement.batch = std::move(rows);
  return m_session->Run(statement, {}).lRecordsAffected;
}

}  // namespace orvane::tools
