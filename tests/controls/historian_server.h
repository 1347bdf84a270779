// A historian of its own for one test, reached as a grid reaches it: connections and commands of
// the connection layer, the provider and its engine behind them, real files beneath.
#pragma once

#include <memory>
#include <new>

#include "ado/command.h"
#include "ado/connection.h"
#include "platform/services.h"
#include "tests/provider/temporary_root.h"

namespace orvane::tests {

class HistorianServer final : public platform::ObjectFactory,
                              public std::enable_shared_from_this<HistorianServer> {
 public:
  /// With a catalog "P" that is empty but for its usual tables.
  static std::shared_ptr<HistorianServer> Make() {
    auto server = std::make_shared<HistorianServer>();
    server->Run("CREATE DATABASE \"P\" ");
    return server;
  }

  platform::ConnectionPtr CreateConnection() override {
    return std::make_shared<ado::Connection>(ado::ConnectionServices{
        std::make_shared<Providers>(m_root.Path()), nullptr, longOperation});
  }
  platform::CommandPtr CreateCommand() override {
    if (bWithoutMemory) throw std::bad_alloc();
    return std::make_shared<ado::Command>();
  }
  platform::TableQueryPtr CreateTableQuery() override { return nullptr; }

  platform::ConnectionPtr Connect(const platform::Text& sOptions = {}) {
    const auto cn = CreateConnection();
    cn->ConnectionString("Provider = ORVOLEDB; Data Source = localhost;" + sOptions);
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
  std::filesystem::path CatalogFile() const { return m_root.Historian() / "catalogs" / "P.db"; }

  std::shared_ptr<platform::LongOperation> longOperation;  ///< of connections to come
  bool bWithoutMemory = false;

 private:
  class Providers final : public ado::ProviderSource {
   public:
    explicit Providers(std::filesystem::path root) : m_root(std::move(root)) {}
    std::shared_ptr<ado::Provider> Find(std::string_view) override {
      return std::make_shared<provider::HistorianProvider>(provider::PlaceAt(m_root));
    }

   private:
    std::filesystem::path m_root;
  };

  provider::TemporaryRoot m_root;
};

}  // namespace orvane::tests
