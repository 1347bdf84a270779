// Data access without a server, for tests of the grids: a recordset of any size whose cells are
// made when they are asked for and counted, and a command that tells what it was given.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "platform/failure.h"
#include "platform/services.h"
#include "tests/fakes/parameters.h"

namespace orvane::controls {

class FakeField : public platform::Field {
 public:
  FakeField(platform::Text sName, platform::DataType type, platform::Boolean bNullable = true)
      : m_sName(std::move(sName)), m_type(type), m_bNullable(bNullable) {}
  const platform::Text& Name() const override { return m_sName; }
  platform::DataType Type() const override { return m_type; }
  platform::Boolean Nullable() const override { return m_bNullable; }
  platform::Value Value() const override { return {}; }

 private:
  platform::Text m_sName;
  platform::DataType m_type;
  platform::Boolean m_bNullable;
};

class FakeRecordset : public platform::Recordset, private platform::Fields {
 public:
  using Maker = std::function<platform::Value(platform::RowIndex, platform::ColumnIndex)>;

  FakeRecordset(platform::RowIndex rows, Maker maker) : m_rows(rows), m_maker(std::move(maker)) {}

  FakeRecordset& Column(platform::Text sName, platform::DataType type,
                        platform::Boolean bNullable = true) {
    m_fields.push_back(std::make_unique<FakeField>(std::move(sName), type, bNullable));
    return *this;
  }
  /// As rows come while they are fetched.
  FakeRecordset& Rows(platform::RowIndex rows) {
    m_rows = rows;
    return *this;
  }
  FakeRecordset& Truncated(platform::Boolean bTruncated) {
    m_bTruncated = bTruncated;
    return *this;
  }
  FakeRecordset& State(platform::FetchState state, platform::Text sRemark = {}) {
    m_state = state;
    m_sRemark = std::move(sRemark);
    return *this;
  }
  platform::FetchState State() const override {
    return m_state.value_or(platform::Recordset::State());
  }
  platform::Text FetchRemark() const override { return m_sRemark; }
  FakeRecordset& FetchFailure(platform::Long lNumber) {
    m_lFailure = lNumber;
    return *this;
  }
  platform::Long FetchFailure() const override { return m_lFailure; }
  FakeRecordset& Elapsed(std::chrono::microseconds elapsed) {
    m_elapsed = elapsed;
    return *this;
  }

  /// Number of cells that were asked for since the last call, and their rows.
  std::size_t TakeCellsAsked() const { return std::exchange(m_nAsked, 0U); }
  std::set<platform::RowIndex> TakeRowsAsked() const { return std::exchange(m_rowsAsked, {}); }

  platform::Fields& Fields() override { return *this; }
  platform::Boolean Eof() const override { return m_position >= m_rows; }
  platform::Boolean Bof() const override { return m_rows == 0; }
  void MoveNext() override { ++m_position; }
  void MoveFirst() override { m_position = 0; }
  void MoveLast() override { m_position = m_rows - 1; }
  platform::RowIndex Position() const override { return m_position; }
  void Position(platform::RowIndex row) override { m_position = row; }
  platform::RowIndex RecordCount() const override { return m_rows; }
  platform::ColumnIndex FieldCount() const override {
    return static_cast<platform::ColumnIndex>(m_fields.size());
  }
  const platform::Field& FieldAt(platform::ColumnIndex column) const override {
    return *m_fields.at(static_cast<std::size_t>(column));
  }
  platform::Value ValueAt(platform::RowIndex row, platform::ColumnIndex column) const override {
    ++m_nAsked;
    m_rowsAsked.insert(row);
    return m_maker(row, column);
  }
  platform::Boolean Truncated() const override { return m_bTruncated; }
  std::chrono::microseconds Elapsed() const override { return m_elapsed; }

 private:
  platform::Long Count() const override { return FieldCount(); }
  platform::Field& Item(const platform::Value&) override { return *m_fields.front(); }

  platform::RowIndex m_rows;
  Maker m_maker;
  std::vector<std::unique_ptr<FakeField>> m_fields;
  platform::RowIndex m_position = 0;
  platform::Boolean m_bTruncated = false;
  std::optional<platform::FetchState> m_state;
  platform::Text m_sRemark;
  platform::Long m_lFailure = 0;
  std::chrono::microseconds m_elapsed{0};
  mutable std::size_t m_nAsked = 0;
  mutable std::set<platform::RowIndex> m_rowsAsked;
};

/// Rows of a number, a text, a flag and a time: "row N" in the second column, and in the third null
/// in every third row.
inline std::shared_ptr<FakeRecordset> Plant(platform::RowIndex rows) {
  using platform::DataType;
  auto rs = std::make_shared<FakeRecordset>(
      rows, [](platform::RowIndex row, platform::ColumnIndex column) -> platform::Value {
        switch (column) {
          case 0:
            return row;
          case 1:
            return platform::Text("row " + std::to_string(row));
          case 2:
            return row % 3 == 0 ? platform::Value() : platform::Value(row % 2 == 0);
          default:
            return platform::Timestamp(std::chrono::seconds(1'700'000'000 + row));
        }
      });
  rs->Column("Number", DataType::BigInt, false)
      .Column("Name", DataType::WChar)
      .Column("Flag", DataType::Boolean)
      .Column("Timestamp", DataType::DBTimeStamp)
      .Elapsed(std::chrono::microseconds(12'345));
  return rs;
}

/// One row of one column.
inline std::shared_ptr<FakeRecordset> OneCell(platform::Value vtValue) {
  auto rs = std::make_shared<FakeRecordset>(1, [vtValue](auto, auto) { return vtValue; });
  rs->Column("a", platform::DataType::BigInt);
  return rs;
}

class FakeProperty : public platform::Property {
 public:
  explicit FakeProperty(platform::Value vtValue) : m_vtValue(std::move(vtValue)) {}
  const platform::Text& Name() const override { return m_sName; }
  platform::Value Value() const override { return m_vtValue; }
  void Value(const platform::Value& vtValue) override { m_vtValue = vtValue; }

 private:
  platform::Text m_sName = "Time Zone";
  platform::Value m_vtValue;
};

/// An open connection with or without the properties "Time Zone" and "Time Zone in Use".
class FakeConnection : public platform::Connection, private platform::Properties {
 public:
  explicit FakeConnection(std::optional<platform::Value> vtZone = std::nullopt,
                          std::optional<platform::Value> vtZoneInUse = std::nullopt) {
    if (vtZone) m_zone.emplace(*vtZone);
    if (vtZoneInUse) m_zoneInUse.emplace(*vtZoneInUse);
  }
  platform::Text ConnectionString() const override { return {}; }
  void ConnectionString(const platform::Text&) override {}
  platform::Properties& Properties() override { return *this; }
  void Open(const platform::Text&, const platform::Text&, const platform::Text&,
            platform::Long) override {
    m_bOpen = true;
  }
  void Close() override { m_bOpen = false; }
  platform::Boolean IsOpen() const override { return m_bOpen; }
  platform::RecordsetPtr OpenSchema(platform::SchemaNumber,
                                    std::span<const platform::Value>) override {
    return nullptr;
  }

 private:
  platform::Long Count() const override { return m_zone ? 1 : 0; }
  platform::Property& Item(const platform::Value& vtIndexName) override {
    if (m_zoneInUse && vtIndexName == platform::Value("Time Zone in Use")) return *m_zoneInUse;
    if (!m_zone || vtIndexName != platform::Value("Time Zone")) {
      throw platform::Failure(platform::failure::kItemNotFound, "There is no such property.");
    }
    return *m_zone;
  }
  platform::Boolean m_bOpen = true;
  std::optional<FakeProperty> m_zone;
  std::optional<FakeProperty> m_zoneInUse;
};

/// What the last command was given, and what it answers.
struct FakeServer {
  int nExecuted = 0;
  platform::ConnectionPtr connection;
  platform::Text sCommandText;
  platform::Long lTimeout = -1;
  platform::Long lMaxRecords = -1;
  bool bReadOnly = false;
  fakes::FakeParameters parameters;  ///< of the last command
  platform::ParameterRows batch;
  std::optional<platform::RowIndex> rowsExpected;
  bool bKeepRows = false;
  bool bGivesWay = false;
  bool bCancelled = false;
  platform::RowsHandler handler;
  platform::RowSink sink;
  platform::Long lRecordsAffected = 0;
  platform::RecordsetPtr answer;
  std::function<void()> whileRunning;
};

class FakeCommand : public platform::Command {
 public:
  explicit FakeCommand(FakeServer& server) : m_server(server) {}
  FakeCommand(const FakeCommand&) = delete;
  FakeCommand& operator=(const FakeCommand&) = delete;
  /// What the grid gave it goes with it: the library may be unloaded before the server.
  ~FakeCommand() override {
    m_server.handler = nullptr;
    m_server.sink = nullptr;
  }
  void ActiveConnection(const platform::ConnectionPtr& cn) override { m_server.connection = cn; }
  platform::Text CommandText() const override { return m_server.sCommandText; }
  void CommandText(const platform::Text& sText) override { m_server.sCommandText = sText; }
  platform::Long CommandTimeout() const override { return m_server.lTimeout; }
  void CommandTimeout(platform::Long lSeconds) override { m_server.lTimeout = lSeconds; }
  platform::Long MaxRecords() const override { return m_server.lMaxRecords; }
  void MaxRecords(platform::Long lMaxRecords) override { m_server.lMaxRecords = lMaxRecords; }
  platform::Boolean ReadOnly() const override { return m_server.bReadOnly; }
  void ReadOnly(platform::Boolean bReadOnly) override { m_server.bReadOnly = bReadOnly; }
  platform::ParameterPtr CreateParameter(const platform::Text& sName, platform::DataType type,
                                         platform::ParameterDirection, platform::Long,
                                         const platform::Value& vtValue) override {
    return std::make_shared<fakes::FakeParameter>(sName, type, vtValue);
  }
  platform::Parameters& Parameters() override { return m_server.parameters; }
  void Batch(platform::ParameterRows rows) override { m_server.batch = std::move(rows); }
  void RowsExpected(std::optional<platform::RowIndex> rows) override {
    m_server.rowsExpected = rows;
  }
  void KeepRows(platform::Boolean bKeep) override { m_server.bKeepRows = bKeep; }
  void GivesWay(platform::Boolean bGivesWay) override { m_server.bGivesWay = bGivesWay; }
  void Cancel() override { m_server.bCancelled = true; }
  void OnRows(platform::RowsHandler handler) override { m_server.handler = std::move(handler); }
  void Sink(platform::RowSink sink) override { m_server.sink = std::move(sink); }
  platform::RecordsetPtr Execute(platform::Long* lRecordsAffected, platform::Long) override {
    ++m_server.nExecuted;
    if (m_server.whileRunning) m_server.whileRunning();
    if (lRecordsAffected) *lRecordsAffected = m_server.lRecordsAffected;
    return m_server.answer;
  }

 private:
  FakeServer& m_server;
};

class FakeFailures : public platform::FailureLog {
 public:
  void Note(const platform::Failure& failure) noexcept override { noted.push_back(failure); }
  std::vector<platform::Failure> noted;
};

class FakeObjects : public platform::ObjectFactory {
 public:
  explicit FakeObjects(FakeServer& server) : m_server(server) {}
  platform::ConnectionPtr CreateConnection() override { return nullptr; }
  platform::CommandPtr CreateCommand() override {
    m_server.parameters.Clear();
    m_server.bKeepRows = m_server.bGivesWay = false;
    return std::make_shared<FakeCommand>(m_server);
  }
  platform::TableQueryPtr CreateTableQuery() override { return nullptr; }

 private:
  FakeServer& m_server;
};

}  // namespace orvane::controls
