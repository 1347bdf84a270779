// The command: one statement with its limits, run on a connection of this layer.
// Made by the host's object factory; one thread at a time.
#pragma once

#include <memory>
#include <optional>
#include <stop_token>

#include "ado/connection.h"
#include "ado/parameters.h"

namespace orvane::ado {

class Command final : public platform::Command {
 public:
  /// Fails with failure::kInvalidArgument for a connection that is not of this layer; null takes
  /// the connection away.
  void ActiveConnection(const platform::ConnectionPtr& cn) override;
  platform::Text CommandText() const override { return m_sCommandText; }
  void CommandText(const platform::Text& sCommandText) override { m_sCommandText = sCommandText; }
  platform::Long CommandTimeout() const override { return m_lCommandTimeout; }
  /// Fails with failure::kInvalidArgument below 0.
  void CommandTimeout(platform::Long lSeconds) override;
  platform::Long MaxRecords() const override { return m_lMaxRecords; }
  /// Fails with failure::kInvalidArgument below 0.
  void MaxRecords(platform::Long lMaxRecords) override;
  platform::Boolean ReadOnly() const override { return m_bReadOnly; }
  void ReadOnly(platform::Boolean bReadOnly) override { m_bReadOnly = bReadOnly; }
  /// Fails with failure::kInvalidArgument for a negative size, and as a Parameter does.
  platform::ParameterPtr CreateParameter(const platform::Text& sName, platform::DataType type,
                                         platform::ParameterDirection direction,
                                         platform::Long lSize,
                                         const platform::Value& vtValue) override;
  ado::Parameters& Parameters() override { return m_parameters; }
  void Batch(platform::ParameterRows rows) override { m_batch = std::move(rows); }
  void RowsExpected(std::optional<platform::RowIndex> rows) override { m_rowsExpected = rows; }
  void KeepRows(platform::Boolean bKeep) override { m_bKeepRows = bKeep; }
  void GivesWay(platform::Boolean bGivesWay) override { m_bGivesWay = bGivesWay; }
  void OnRows(platform::RowsHandler handler) override { m_handler = std::move(handler); }
  void Sink(platform::RowSink sink) override { m_sink = std::move(sink); }
  void Cancel() override { m_stop.request_stop(); }
  /// Fails with failure::kObjectNotSet without a connection, with kObjectClosed on a closed one.
  platform::RecordsetPtr Execute(platform::Long* lRecordsAffected = nullptr,
                                 platform::Long lOptions = platform::kOptionUnspecified) override;

 private:
  std::shared_ptr<Connection> m_connection;
  platform::Text m_sCommandText;
  platform::Long m_lCommandTimeout = 30;
  platform::Long m_lMaxRecords = 0;
  platform::Boolean m_bReadOnly = false;
  ado::Parameters m_parameters;
  platform::ParameterRows m_batch;
  std::optional<platform::RowIndex> m_rowsExpected;
  platform::Boolean m_bKeepRows = false;
  platform::Boolean m_bGivesWay = false;
  platform::RowsHandler m_handler;
  platform::RowSink m_sink;
  std::stop_source m_stop;  // of the statement that runs
};

}  // namespace orvane::ado
