// A historian of its own for one test, reached as a grid reaches it: connections and commands of
// the connection layer, the provider and its engine behind them, real files or a real server
// beneath.
#pragma once

#include <memory>
#include <new>

#include "ado/command.h"
#include "ado/connection.h"
#include "platform/services.h"
#include "tests/provider/conformance/embedded_under_test.h"
#include "tests/provider/temporary_root.h"

namespace orvane::tests {

class HistorianServer final : public platform::ObjectFactory,
                              public std::enable_shared_from_this<HistorianServer> {
 public:
  using Engine = provider::conformance::EngineUnderTest;

  explicit HistorianServer(std::shared_ptr<provider::conformance::TestServer> server)
      : m_server(std::move(server)) {}
  /// With a catalog "P" that is empty but for its usual tables.
  static std::shared_ptr<HistorianServer> Make(
      const Engine& engine = provider::conformance::EmbeddedUnderTest()) {
    auto server = std::make_shared<HistorianServer>(engine.start());
    server->Run("CREATE DATABASE \"P\" ");
    return server;
  }

  platform::ConnectionPtr CreateConnection() override {
    return std::make_shared<ado::Connection>(
        ado::ConnectionServices{std::make_shared<Providers>(m_server), nullptr, longOperation});
  }
  platform::CommandPtr CreateCommand() override {
    if (bWithoutMemory) throw std::bad_alloc();
    return std::make_shared<ado::Command>();
  }
  platform::TableQueryPtr CreateTableQuery() override { return nullptr; }

  platform::ConnectionPtr Connect(const platform::Text& sOptions = {}) {
    const auto cn = CreateConnection();
    cn->ConnectionString("Provider = ORVOLEDB; Data Source = " + m_server->TrustingSource() + "; " +
                         sOptions);
    constexpr platform::Long kNeverPrompt = 4;
    cn->Properties().Item("Prompt").Value(kNeverPrompt);
    cn->Open({}, {}, {}, platform::kOptionUnspecified);
    return cn;
  }
  platform::RecordsetPtr Run(const platform::ConnectionPtr& cn, const platform::Text& sSql) {
    const auto command = CreateCommand();
    command->ActiveConnection(cn);
    command->CommandText(sSql);
    return command->Execute();
  }
  /// On a connection of its own.
  platform::RecordsetPtr Run(const platform::Text& sSql) { return Run(Connect(), sSql); }
  /// What another connection reads: cells parted by "|", rows by a line break.
  platform::Text Read(const platform::Text& sSql) { return provider::Rows(*Run(sSql)); }
  /// Of the embedded engine.
  std::filesystem::path CatalogFile() const {
    return std::filesystem::path(m_server->Path()) / "historians/localhost/catalogs/P.db";
  }
  const provider::conformance::TestServer& Server() const { return *m_server; }

  std::shared_ptr<platform::LongOperation> longOperation;  ///< of connections to come
  bool bWithoutMemory = false;

 private:
  class Providers final : public ado::ProviderSource {
   public:
    explicit Providers(std::shared_ptr<provider::conformance::TestServer> server)
        : m_server(std::move(server)) {}
    std::shared_ptr<ado::Provider> Find(std::string_view) override {
      return std::make_shared<provider::HistorianProvider>(
          provider::SessionPlace{{m_server->Engine()}, provider::FixedNow});
    }

   private:
    std::shared_ptr<provider::conformance::TestServer> m_server;
  };

  std::shared_ptr<provider::conformance::TestServer> m_server;
};

}  // namespace orvane::tests
