// The objects of a server with which something happens while a statement hands out its rows.
#pragma once

#include <functional>
#include <utility>

#include "tests/controls/historian_server.h"

namespace orvane::tests {

/// A command as the connection layer has it, with somebody who looks between two pieces of rows.
class WatchedCommand final : public platform::Command {
 public:
  WatchedCommand(platform::CommandPtr command, std::function<void()> betweenPieces)
      : m_command(std::move(command)), m_betweenPieces(std::move(betweenPieces)) {}

  void ActiveConnection(const platform::ConnectionPtr& cn) override {
    m_command->ActiveConnection(cn);
  }
  platform::Text CommandText() const override { return m_command->CommandText(); }
  void CommandText(const platform::Text& sText) override { m_command->CommandText(sText); }
  platform::Long CommandTimeout() const override { return m_command->CommandTimeout(); }
  void CommandTimeout(platform::Long lSeconds) override { m_command->CommandTimeout(lSeconds); }
  platform::Long MaxRecords() const override { return m_command->MaxRecords(); }
  void MaxRecords(platform::Long lMaxRecords) override { m_command->MaxRecords(lMaxRecords); }
  platform::Boolean ReadOnly() const override { return m_command->ReadOnly(); }
  void ReadOnly(platform::Boolean bReadOnly) override { m_command->ReadOnly(bReadOnly); }
  platform::ParameterPtr CreateParameter(const platform::Text& sName, platform::DataType type,
                                         platform::ParameterDirection direction,
                                         platform::Long lSize,
                                         const platform::Value& vtValue) override {
    return m_command->CreateParameter(sName, type, direction, lSize, vtValue);
  }
  platform::Parameters& Parameters() override { return m_command->Parameters(); }
  void Batch(platform::ParameterRows rows) override { m_command->Batch(std::move(rows)); }
  void RowsExpected(std::optional<platform::RowIndex> rows) override {
    m_command->RowsExpected(rows);
  }
  void KeepRows(platform::Boolean bKeep) override { m_command->KeepRows(bKeep); }
  void GivesWay(platform::Boolean bGivesWay) override { m_command->GivesWay(bGivesWay); }
  void OnRows(platform::RowsHandler handler) override { m_command->OnRows(std::move(handler)); }
  void Sink(platform::RowSink sink) override {
    m_command->Sink([sink = std::move(sink), between = m_betweenPieces](const auto& rows) {
      sink(rows);
      between();
    });
  }
  void Cancel() override { m_command->Cancel(); }
  platform::RecordsetPtr Execute(platform::Long* lRecordsAffected,
                                 platform::Long lOptions) override {
    return m_command->Execute(lRecordsAffected, lOptions);
  }

 private:
  platform::CommandPtr m_command;
  std::function<void()> m_betweenPieces;
};

class WatchedObjects final : public platform::ObjectFactory {
 public:
  explicit WatchedObjects(std::shared_ptr<HistorianServer> server) : m_server(std::move(server)) {}

  platform::ConnectionPtr CreateConnection() override { return m_server->CreateConnection(); }
  platform::CommandPtr CreateCommand() override {
    return std::make_shared<WatchedCommand>(m_server->CreateCommand(), [this] {
      ++nPieces;
      if (betweenPieces) betweenPieces();
    });
  }
  platform::TableQueryPtr CreateTableQuery() override { return nullptr; }

  /// Called on the thread of the fetch, after each piece of rows that went to a sink.
  std::function<void()> betweenPieces;
  int nPieces = 0;

 private:
  std::shared_ptr<HistorianServer> m_server;
};

}  // namespace orvane::tests
