#include "ado/command.h"

#include <utility>

#include "platform/failure.h"

namespace orvane::ado {

using platform::Failure;
using platform::Long;
namespace failure = platform::failure;

void Command::ActiveConnection(const platform::ConnectionPtr& cn) {
  auto connection = std::dynamic_pointer_cast<Connection>(cn);
  if (cn != nullptr && connection == nullptr) {
    throw Failure(
        failure::kInvalidArgument,
        "The command cannot use this connection; give it one that this program has opened.");
  }
  m_connection = std::move(connection);
}

void Command::CommandTimeout(Long lSeconds) {
  if (lSeconds < 0) {
    throw Failure(failure::kInvalidArgument,
                  "The time-out of a command must be 0 (no time-out) or more seconds.");
  }
  m_lCommandTimeout = lSeconds;
}

void Command::MaxRecords(Long lMaxRecords) {
  if (lMaxRecords < 0) {
    throw Failure(failure::kInvalidArgument,
                  "The row limit of a command must be 0 (all rows) or more rows.");
  }
  m_lMaxRecords = lMaxRecords;
}

platform::ParameterPtr Command::CreateParameter(const platform::Text& sName,
                                                platform::DataType type,
                                                platform::ParameterDirection /*direction*/,
                                                Long lSize, const platform::Value& vtValue) {
  if (lSize < 0) {
    throw Failure(failure::kInvalidArgument,
                  "The size of a parameter must be 0 (any) or more bytes.");
  }
  return std::make_shared<Parameter>(sName, type, lSize, vtValue);
}

platform::RecordsetPtr Command::Execute(Long* lRecordsAffected, Long /*lOptions*/) {
  if (m_connection == nullptr) {
    throw Failure(failure::kObjectNotSet,
                  "The command has no connection: set its active connection first.");
  }
  // A call within another one is refused, and Cancel is about that other one again.
  const struct Restored {
    std::stop_source& stop;
    std::stop_source before;
    ~Restored() { stop = before; }
  } restored{m_stop, std::exchange(m_stop, std::stop_source())};
  StatementResult result =
      m_connection->Execute({m_sCommandText, m_lMaxRecords, std::chrono::seconds(m_lCommandTimeout),
                             m_bReadOnly, m_parameters.Values(), m_rowsExpected, m_batch},
                            {m_bKeepRows, m_bGivesWay, m_handler, m_sink, m_stop.get_token()});
  if (lRecordsAffected != nullptr) *lRecordsAffected = result.lRecordsAffected;
  return std::move(result.recordset);
}

}  // namespace orvane::ado
