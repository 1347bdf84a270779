// An engine that notes what it is asked for and answers what the test says.
#pragma once

#include "ado/recordset_builder.h"
#include "platform/failure.h"
#include "provider/engines/engine.h"

namespace orvane::provider {

/// What a fake engine was asked for, and what it has.
struct FakeServer {
  platform::Text sPrefix;  ///< of the data sources that it serves
  std::vector<platform::Text> known{};
  engines::Abilities abilities{};
  std::vector<engines::Catalog> catalogs{};
  std::vector<engines::TableSchema> tables{};
  std::vector<engines::TypeSchema> types{};

  std::vector<platform::Text> asked{};
  std::vector<engines::EngineStatement> statements{};
};

class FakeEngineSession final : public engines::EngineSession {
 public:
  using Text = platform::Text;

  explicit FakeEngineSession(FakeServer& server) : m_server(server) {}

  engines::Abilities Can() const override { return m_server.abilities; }
  std::span<const engines::TypeSchema> Types() const override { return m_server.types; }
  std::vector<engines::Catalog> Catalogs(std::stop_token /*stop*/) override {
    return m_server.catalogs;
  }
  void CreateCatalog(const engines::NewCatalog& catalog, std::stop_token /*stop*/) override {
    m_server.asked.push_back("create " + catalog.sName + " at " + catalog.sPath + " of " +
                             std::to_string(catalog.llKilobytes));
  }
  void DropCatalog(const Text& sName, std::stop_token /*stop*/) override {
    m_server.asked.push_back("drop " + sName);
  }
  engines::EngineResult Run(const engines::EngineStatement& statement,
                            std::stop_token /*stop*/) override {
    m_server.statements.push_back(statement);
    statement.rows->Begin({}, true);
    statement.rows->End(false);
    return {};
  }
  std::vector<engines::TableSchema> Schema(const engines::Catalog& catalog,
                                           const engines::SchemaRequest& /*request*/,
                                           std::stop_token /*stop*/) override {
    m_server.asked.push_back("schema of " + catalog.sName + " at " + catalog.sPlace);
    return m_server.tables;
  }
  void Close() override { m_server.asked.push_back("close"); }

 private:
  FakeServer& m_server;
};

class FakeEngine final : public engines::Engine {
 public:
  using Text = platform::Text;

  /// The server must outlive this.
  explicit FakeEngine(FakeServer& server) : m_server(server) {}

  platform::Boolean Serves(const Text& sDataSource) const override {
    return sDataSource.starts_with(m_server.sPrefix);
  }
  std::vector<Text> KnownServers() const override { return m_server.known; }
  std::unique_ptr<engines::EngineSession> Open(const engines::Logon& logon, const Text& sPassword,
                                               std::stop_token /*stop*/) override {
    m_server.asked.push_back("open " + logon.sDataSource + " for " + logon.sUser + " with " +
                             sPassword);
    return std::make_unique<FakeEngineSession>(m_server);
  }

 private:
  FakeServer& m_server;
};

}  // namespace orvane::provider
