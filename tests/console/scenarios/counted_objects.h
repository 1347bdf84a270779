// The host's data objects, with a count of the statements that are sent through them. For the
// driver of the scenarios; one thread.
#pragma once

#include <memory>
#include <utility>

#include "platform/services.h"

namespace orvane::console {

using platform::Boolean;
using platform::Long;
using platform::Text;

/// Counts what is sent through it.
class CountedCommand final : public platform::Command {
 public:
  CountedCommand(platform::CommandPtr command, std::shared_ptr<Long> count)
      : m_command(std::move(command)), m_count(std::move(count)) {}

  void ActiveConnection(const platform::ConnectionPtr& cn) override {
    m_command->ActiveConnection(cn);
  }
  Text CommandText() const override { return m_command->CommandText(); }
  void CommandText(const Text& sText) override { m_command->CommandText(sText); }
  Long CommandTimeout() const override { return m_command->CommandTimeout(); }
  void CommandTimeout(Long lSeconds) override { m_command->CommandTimeout(lSeconds); }
  Long MaxRecords() const override { return m_command->MaxRecords(); }
  void MaxRecords(Long lMaxRecords) override { m_command->MaxRecords(lMaxRecords); }
  platform::Boolean ReadOnly() const override { return m_command->ReadOnly(); }
  void ReadOnly(platform::Boolean bReadOnly) override { m_command->ReadOnly(bReadOnly); }
  platform::ParameterPtr CreateParameter(const Text& sName, platform::DataType type,
                                         platform::ParameterDirection direction, Long lSize,
                                         const platform::Value& vtValue) override {
    return m_command->CreateParameter(sName, type, direction, lSize, vtValue);
  }
  platform::Parameters& Parameters() override { return m_command->Parameters(); }
  void Batch(platform::ParameterRows rows) override { m_command->Batch(std::move(rows)); }
  void RowsExpected(std::optional<platform::RowIndex> rows) override {
    m_command->RowsExpected(rows);
  }
  void KeepRows(Boolean bKeep) override { m_command->KeepRows(bKeep); }
  void OnRows(platform::RowsHandler handler) override { m_command->OnRows(std::move(handler)); }
  void Sink(platform::RowSink sink) override { m_command->Sink(std::move(sink)); }
  platform::RecordsetPtr Execute(Long* lRecordsAffected, Long lOptions) override {
    ++*m_count;
    return m_command->Execute(lRecordsAffected, lOptions);
  }

 private:
  platform::CommandPtr m_command;
  std::shared_ptr<Long> m_count;
};

class CountingFactory final : public platform::ObjectFactory {
 public:
  CountingFactory(platform::ObjectFactoryPtr objects, std::shared_ptr<Long> count)
      : m_objects(std::move(objects)), m_count(std::move(count)) {}

  platform::ConnectionPtr CreateConnection() override { return m_objects->CreateConnection(); }
  platform::CommandPtr CreateCommand() override {
    return std::make_shared<CountedCommand>(m_objects->CreateCommand(), m_count);
  }
  platform::TableQueryPtr CreateTableQuery() override { return m_objects->CreateTableQuery(); }

 private:
  platform::ObjectFactoryPtr m_objects;
  std::shared_ptr<Long> m_count;
};

}  // namespace orvane::console
