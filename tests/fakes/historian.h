// A historian in memory and the data access to it: connections, commands, schema rowsets.
// Everything asked of it goes into a log, and every step can be told to fail.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/services.h"
#include "tests/fakes/parameters.h"
#include "tests/fakes/recordset.h"
#include "tests/fakes/table_query.h"
#include "tests/scenarios/driver.h"

namespace orvane::fakes {

/// The world behind the connections. Shared by everything made for it.
class FakeHistorian {
 public:
  using Text = platform::Text;
  using Value = platform::Value;
  using Restrictions = std::span<const Value>;

  std::vector<scenarios::ServerSetup> servers;
  /// Calls in their order: "ConnectionString ...", "Prompt 1", "Open string|user|password|options",
  /// "Close", "OpenSchema number(restriction,restriction)", "Execute text".
  std::vector<Text> log;
  int nLogons = 0;
  int nStatements = 0;
  bool bCancelLogon = false;
  std::optional<Text> sChosenServer;  ///< what the user picks in the logon dialog
  bool bFailClose = false;
  bool bFailDataSource = false;
  /// Replaces what a schema rowset would be, or throws.
  std::map<platform::SchemaNumber, std::function<platform::RecordsetPtr(Restrictions)>> schemas;
  /// The provider's own properties with their values.
  std::vector<std::pair<Text, Value>> options{
      {"Log File", "orv.log"},  {"Log Level", platform::Long{2}}, {"Identifier Prefixes", false},
      {"Time as Double", true}, {"Time Zone", Value()},           {"Historians By GUID", false}};
  /// Answers the statements that are no table's rows, or throws; none leaves it to the tables.
  std::function<platform::RecordsetPtr(const Text&)> onExecute;
  std::function<void(const Text&)> onClose;  ///< told of the server when a connection closes

  scenarios::ServerSetup* Server(const Text& sName) { return Find(servers, sName); }
  scenarios::TableSetup* Table(const Text& sServer, const Text& sCatalog, const Text& sTable) {
    auto* server = Server(sServer);
    auto* catalog = server ? Find(server->catalogs, sCatalog) : nullptr;
    return catalog ? Find(catalog->tables, sTable) : nullptr;
  }

  template <class T>
  static T* Find(std::vector<T>& items, const Text& sName) {
    const auto item =
        std::find_if(items.begin(), items.end(), [&](const T& t) { return t.sName == sName; });
    return item == items.end() ? nullptr : &*item;
  }
};

using FakeHistorianPtr = std::shared_ptr<FakeHistorian>;

class FakeConnection : public platform::Connection {
 public:
  using Text = platform::Text;
  using PValue = platform::Value;

  explicit FakeConnection(FakeHistorianPtr historian)
      : m_historian(std::move(historian)), m_properties(*this) {}

  Text ConnectionString() const override { return m_sConnectionString; }
  void ConnectionString(const Text& sConnectionString) override {
    m_historian->log.push_back("ConnectionString " + sConnectionString);
    m_sConnectionString = sConnectionString;
  }
  platform::Properties& Properties() override { return m_properties; }
  void Open(const Text& sConnectionString, const Text& sUserId, const Text& sPassword,
            platform::Long lOptions) override {
    m_historian->log.push_back("Open " + sConnectionString + "|" + sUserId + "|" + sPassword + "|" +
                               std::to_string(lOptions));
    ++m_historian->nLogons;
    if (m_historian->bCancelLogon) {
      throw platform::Failure(platform::failure::kCancelled, "The logon was cancelled.");
    }
    const Text sMark = "Data Source = ";
    const std::size_t nBegin = sConnectionString.find(sMark) + sMark.size();
    m_sServer = sConnectionString.substr(nBegin, sConnectionString.find(';', nBegin) - nBegin);
    const bool bSelectable = sConnectionString.find("Disable Server Selection") == Text::npos;
    if (bSelectable && m_historian->sChosenServer) m_sServer = *m_historian->sChosenServer;
    if (!m_historian->Server(m_sServer)) {
      throw platform::Failure(platform::failure::kServerNotFound,
                              "The server \"" + m_sServer + "\" is unknown; check its name.");
    }
    m_bOpen = true;
  }
  void Close() override {
    m_historian->log.emplace_back("Close");
    if (m_historian->bFailClose) throw platform::Failure(3704, "The connection cannot be closed.");
    if (m_historian->onClose) m_historian->onClose(m_sServer);
    m_bOpen = false;
  }
  platform::Boolean IsOpen() const override { return m_bOpen; }

  platform::RecordsetPtr OpenSchema(platform::SchemaNumber schema,
                                    std::span<const PValue> vtRestrictions) override {
    Text sLog = "OpenSchema " + std::to_string(static_cast<int>(schema)) + "(";
    for (std::size_t i = 0; i < vtRestrictions.size(); ++i) {
      sLog += (i == 0 ? "" : ",") +
              (vtRestrictions[i].IsNull() ? "null" : platform::ToText(vtRestrictions[i]));
    }
    m_historian->log.push_back(sLog + ")");
    if (!m_bOpen) throw platform::Failure(3704, "The connection is closed.");
    if (const auto own = m_historian->schemas.find(schema); own != m_historian->schemas.end()) {
      return own->second(vtRestrictions);
    }
    return Schema(schema, vtRestrictions);
  }

  FakeHistorian& Historian() { return *m_historian; }
  const Text& ServerName() const { return m_sServer; }

 private:
  class FakeProperty : public platform::Property {
   public:
    FakeProperty(FakeConnection& owner, Text sName) : m_owner(owner), m_sName(std::move(sName)) {}
    const Text& Name() const override { return m_sName; }
    PValue Value() const override {
      if (m_sName == "Data Source") {
        if (m_owner.m_historian->bFailDataSource) {
          throw platform::Failure(3265, "The data source cannot be read.");
        }
        return m_owner.m_sServer;
      }
      for (const auto& [sName, vtValue] : m_owner.m_historian->options) {
        if (sName == m_sName) return vtValue;
      }
      return m_vtValue;
    }
    void Value(const PValue& vtValue) override {
      m_owner.m_historian->log.push_back(m_sName + " " + platform::ToText(vtValue));
      m_vtValue = vtValue;
    }

   private:
    FakeConnection& m_owner;
    Text m_sName;
    PValue m_vtValue;
  };

  class FakeProperties : public platform::Properties {
   public:
    explicit FakeProperties(FakeConnection& owner) : m_owner(owner) {}
    platform::Long Count() const override { return static_cast<platform::Long>(m_items.size()); }
    platform::Property& Item(const PValue& vtIndexName) override {
      const Text sName = platform::ToText(vtIndexName);
      const auto& options = m_owner.m_historian->options;
      const bool bOption = std::any_of(options.begin(), options.end(),
                                       [&](const auto& option) { return option.first == sName; });
      if (!bOption && sName != "Prompt" && sName != "Data Source") {
        throw platform::Failure(platform::failure::kItemNotFound,
                                "The provider has no property \"" + sName + "\"; check its name.");
      }
      auto& item = m_items[sName];
      if (!item) item = std::make_unique<FakeProperty>(m_owner, sName);
      return *item;
    }

   private:
    FakeConnection& m_owner;
    std::map<Text, std::unique_ptr<FakeProperty>> m_items;
  };

  static platform::RecordsetPtr Rows(std::vector<FakeColumn> columns,
                                     std::vector<FakeRecordset::Row> rows) {
    return std::make_shared<FakeRecordset>(std::move(columns), std::move(rows));
  }

  platform::RecordsetPtr Schema(platform::SchemaNumber schema, std::span<const PValue> wanted) {
    using platform::Long;
    const auto text = [&](std::size_t i) {
      return i < wanted.size() ? platform::ToText(wanted[i]) : Text();
    };
    std::vector<FakeRecordset::Row> rows;
    auto& catalogs = m_historian->Server(m_sServer)->catalogs;
    auto* catalog = FakeHistorian::Find(catalogs, text(0));
    auto* table = m_historian->Table(m_sServer, text(0), text(2));
    switch (schema) {
      case platform::SchemaNumber::Catalogs:
        for (const auto& item : catalogs) rows.push_back({item.sName});
        return Rows({{"CATALOG_NAME"}}, rows);
      case platform::SchemaNumber::Tables:
        if (catalog) {
          for (const auto& item : catalog->tables) rows.push_back({item.sName});
        }
        return Rows({{"TABLE_NAME"}}, rows);
      case platform::SchemaNumber::Columns:
        if (table) {
          for (const auto& column : table->columns) {
            rows.push_back({column.sName, static_cast<Long>(column.type), column.bNullable});
          }
        }
        return Rows({{"COLUMN_NAME"}, {"DATA_TYPE"}, {"IS_NULLABLE"}}, rows);
      case platform::SchemaNumber::PrimaryKeys:
        if (table) {
          for (const auto& column : table->columns) {
            if (column.bKey) rows.push_back({column.sName});
          }
        }
        return Rows({{"COLUMN_NAME"}}, rows);
      case platform::SchemaNumber::Indexes:
        // The snap-in asks for none.
        return Rows({{"INDEX_NAME"}}, {});
      case platform::SchemaNumber::ProviderTypes:
        return Rows({{"DATA_TYPE"}, {"BEST_MATCH"}, {"TYPE_NAME"}}, {{Long{3}, false, "smallint"},
                                                                     {Long{3}, true, "integer"},
                                                                     {Long{3}, true, "int"},
                                                                     {Long{5}, true, "double"},
                                                                     {Long{130}, true, "text"},
                                                                     {Long{135}, true, "timestamp"},
                                                                     {Long{72}, false, "guid"}});
    }
    return Rows({}, {});
  }

  FakeHistorianPtr m_historian;
  FakeProperties m_properties;
  Text m_sConnectionString;
  Text m_sServer;
  bool m_bOpen = false;
};

class FakeCommand : public platform::Command {
 public:
  using Text = platform::Text;
  using Long = platform::Long;

  void ActiveConnection(const platform::ConnectionPtr& cn) override {
    m_connection = std::dynamic_pointer_cast<FakeConnection>(cn);
  }
  Text CommandText() const override { return m_sText; }
  void CommandText(const Text& sText) override { m_sText = sText; }
  Long CommandTimeout() const override { return m_lTimeout; }
  void CommandTimeout(Long lSeconds) override { m_lTimeout = lSeconds; }
  Long MaxRecords() const override { return m_lMaxRecords; }
  void MaxRecords(Long lMaxRecords) override { m_lMaxRecords = lMaxRecords; }
  platform::Boolean ReadOnly() const override { return m_bReadOnly; }
  void ReadOnly(platform::Boolean bReadOnly) override { m_bReadOnly = bReadOnly; }

  platform::ParameterPtr CreateParameter(const Text& sName, platform::DataType type,
                                         platform::ParameterDirection, Long,
                                         const platform::Value& vtValue) override {
    return std::make_shared<FakeParameter>(sName, type, vtValue);
  }
  platform::Parameters& Parameters() override { return m_parameters; }
  void Batch(platform::ParameterRows) override {}
  void RowsExpected(std::optional<platform::RowIndex>) override {}
  void KeepRows(platform::Boolean) override {}
  void OnRows(platform::RowsHandler) override {}
  void Sink(platform::RowSink) override {}

  /// Understands "... FROM catalog..table ..." and gives the whole table up to the row limit, and
  /// the statements that create and drop a catalog.
  platform::RecordsetPtr Execute(Long* lRecordsAffected, Long) override {
    if (lRecordsAffected) *lRecordsAffected = 0;
    if (!m_connection || !m_connection->IsOpen()) {
      throw platform::Failure(platform::failure::kObjectClosed, "The connection is closed.");
    }
    FakeHistorian& historian = m_connection->Historian();
    historian.log.push_back("Execute " + m_sText);
    ++historian.nStatements;
    if (historian.onExecute) {
      if (auto recordset = historian.onExecute(m_sText)) return recordset;
    }
    if (RunsOnCatalogs(*historian.Server(m_connection->ServerName()))) return nullptr;
    const std::size_t nFrom = m_sText.find(" FROM ");
    const std::size_t nDots = m_sText.find("..", nFrom);
    if (nFrom == Text::npos || nDots == Text::npos) Fail();
    const Text sCatalog = m_sText.substr(nFrom + 6, nDots - nFrom - 6);
    const Text sTable = m_sText.substr(nDots + 2, m_sText.find(' ', nDots) - nDots - 2);
    const auto* table = historian.Table(m_connection->ServerName(), sCatalog, sTable);
    if (!table) Fail();
    std::vector<FakeColumn> columns;
    for (const auto& column : table->columns) columns.push_back({column.sName, column.type});
    auto rows = table->rows;
    const auto nLimit = static_cast<std::size_t>(m_lMaxRecords);
    if (nLimit != 0 && rows.size() > nLimit) rows.resize(nLimit);
    return std::make_shared<FakeRecordset>(columns, rows);
  }

 private:
  [[noreturn]] void Fail() const {
    throw platform::Failure(platform::failure::kSqlError, "The statement cannot be run.");
  }
  /// Creates or drops the catalog that the statement names; false when it is another statement.
  bool RunsOnCatalogs(scenarios::ServerSetup& server) const {
    const bool bCreate = m_sText.starts_with("CREATE DATABASE \"");
    if (!bCreate && !m_sText.starts_with("DROP DATABASE \"")) return false;
    if (m_bReadOnly) {
      throw platform::Failure(platform::failure::kWouldChange, "The statement changes data.");
    }
    const std::size_t nBegin = m_sText.find('"') + 1;
    const Text sName = m_sText.substr(nBegin, m_sText.find('"', nBegin) - nBegin);
    const bool bThere = FakeHistorian::Find(server.catalogs, sName) != nullptr;
    if (bThere == bCreate) Fail();
    if (bCreate) {
      server.catalogs.push_back({sName, {}});
    } else {
      std::erase_if(server.catalogs, [&](const auto& catalog) { return catalog.sName == sName; });
    }
    return true;
  }

  std::shared_ptr<FakeConnection> m_connection;
  FakeParameters m_parameters;
  Text m_sText;
  Long m_lTimeout = 30;
  Long m_lMaxRecords = 0;
  bool m_bReadOnly = false;
};

class FakeObjects : public platform::ObjectFactory {
 public:
  explicit FakeObjects(FakeHistorianPtr historian) : m_historian(std::move(historian)) {}
  platform::ConnectionPtr CreateConnection() override {
    return std::make_shared<FakeConnection>(m_historian);
  }
  platform::CommandPtr CreateCommand() override { return std::make_shared<FakeCommand>(); }
  platform::TableQueryPtr CreateTableQuery() override { return std::make_shared<FakeTableQuery>(); }

 private:
  FakeHistorianPtr m_historian;
};

}  // namespace orvane::fakes
