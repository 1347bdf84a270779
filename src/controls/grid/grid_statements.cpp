#include "controls/grid/grid_statements.h"

#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

#include "controls/grid/grid_window.h"
#include "controls/statements/connection_zone.h"
#include "controls/statements/row_changes.h"
#include "controls/values/tell_box.h"
#include "platform/failure.h"

namespace orvane::controls {

using platform::ConnectionPtr;
using platform::Failure;
using platform::Long;
using platform::RecordsetPtr;
using platform::Text;

namespace {

/// Says that a statement runs, as long as it lives; within another one it changes nothing.
class RunningMark {
 public:
  explicit RunningMark(std::shared_ptr<bool> bRunning)
      : m_bRunning(std::move(bRunning)), m_bBefore(std::exchange(*m_bRunning, true)) {}
  ~RunningMark() { *m_bRunning = m_bBefore; }
  RunningMark(const RunningMark&) = delete;
  RunningMark& operator=(const RunningMark&) = delete;

 private:
  std::shared_ptr<bool> m_bRunning;
  bool m_bBefore;
};

/// The button that stops a fetch keeps no command, and so no connection, longer than it can stop
/// something.
class StopButton {
 public:
  explicit StopButton(GridWindow& window) : m_window(&window) {}
  ~StopButton() {
    if (m_window) m_window->OnCancel({});
  }
  StopButton(const StopButton&) = delete;
  StopButton& operator=(const StopButton&) = delete;

 private:
  QPointer<GridWindow> m_window;
};

}  // namespace

void GridStatements::FailBusy() {
  throw Failure(platform::failure::kBusy,
                "The grid is still fetching rows; wait until it is done, or cancel it.");
}

platform::CommandPtr GridStatements::Command(const Text& sSqlText) const {
  platform::CommandPtr command = m_objects->CreateCommand();
  command->ActiveConnection(m_connection);
  command->CommandText(sSqlText);
  return command;
}

platform::CommandPtr GridStatements::CommandFor(const GridQuery& query, Access access) const {
  if (!m_connection) {
    throw Failure(platform::failure::kObjectNotSet,
                  "The grid has no connection to a server; connect the server first.");
  }
  if (!m_objects) {
    throw Failure(platform::failure::kObjectNotSet,
                  "The grid was made without access to data; show it in a console that offers "
                  "data access.");
  }
  platform::CommandPtr command = Command(query.sSqlText);
  command->MaxRecords(std::max(0, query.lMaxRows));
  command->CommandTimeout(std::max(0, query.lQueryTimeout));
  command->ReadOnly(access == Access::Read);
  return command;
}

GridStatements::Fetched GridStatements::Execute(platform::Command& command) {
  Fetched fetched;
  fetched.rs = command.Execute(&fetched.lRecordsAffected);
  if (!fetched.rs) {
    throw Failure(platform::failure::kComponent,
                  "The provider gave no rowset for the statement; look for a newer version of it.");
  }
  return fetched;
}

GridStatements::Fetched GridStatements::Fetch(const GridQuery& query, Access access,
                                              GridWindow& window, std::function<void()> coming) {
  const platform::CommandPtr command = CommandFor(query, access);
  const RunningMark running(m_running);
  window.ShowRunning(access == Access::Read ? QStringLiteral("Fetching rows\u2026")
                                            : QStringLiteral("Running the query\u2026"));
  const StopButton stop(window);
  // A change is made whole or not at all; of what is read any part is worth something.
  command->KeepRows(access == Access::Read);
  if (access == Access::Read) {
    command->OnRows([life = Life(), shown = QPointer<GridWindow>(&window),
                     format = CellFormat(ZoneOf(m_connection)),
                     coming = std::move(coming)](const RecordsetPtr& rs) {
      if (!life.expired() && shown) shown->ShowComing(rs, format);
      coming();
    });
    window.OnCancel([command] { command->Cancel(); });
  }
  return Execute(*command);
}

GridStatements::Fetched GridStatements::FetchBeneath(const GridQuery& query) {
  if (*m_running) FailBusy();
  const platform::CommandPtr command = CommandFor(query, Access::Read);
  const RunningMark running(m_running);
  command->GivesWay(true);
  return Execute(*command);
}

RecordsetPtr GridStatements::Ask(const Text& sSqlText, Long lMaxRows, Long lTimeout) {
  if (!m_connection || !m_objects) return nullptr;
  if (*m_running) FailBusy();
  const RunningMark running(m_running);
  const platform::CommandPtr command = Command(sSqlText);
  command->MaxRecords(lMaxRows);
  command->CommandTimeout(lTimeout);
  command->ReadOnly(true);
  return command->Execute();
}

void GridStatements::Change(const Text& sSqlText, platform::ParameterRows rows) {
  if (*m_running) FailBusy();
  const RunningMark running(m_running);
  const platform::CommandPtr command = Command(sSqlText);
  command->CommandTimeout(0);
  command->RowsExpected(1);
  command->Batch(std::move(rows));
  command->Execute();
}

bool GridStatements::CanFetchAgain(const Text& sSqlText) const {
  return m_connection && m_connection->IsOpen() && m_objects && !sSqlText.empty() && !*m_running;
}

platform::FetchState GridStatements::FetchAgain(const Text& sSqlText,
                                                const platform::RowSink& sink) {
  if (*m_running) FailBusy();
  const RunningMark running(m_running);
  const platform::CommandPtr command = Command(sSqlText);
  // As many rows as there are take the time they take; Cancel ends them.
  command->MaxRecords(0);
  command->CommandTimeout(0);
  command->ReadOnly(true);
  bool bCame = false;
  command->Sink([&](const platform::RecordsetPtr& rows) {
    bCame = true;
    sink(rows);
  });
  const platform::RecordsetPtr rs = command->Execute();
  // Where there are no rows there are still columns.
  if (!bCame) sink(rs);
  return rs->State();
}

controls::Updatability GridStatements::Updatability(const std::optional<RowTable>& table,
                                                    const platform::Recordset& rs) const {
  const platform::RowSource& source = rs.Source();
  if (!table && source.sTable.empty()) {
    return {.sWhyNot = QString::fromStdString(source.sWhyNone)};
  }
  const ConnectionPtr cn = m_connection;
  if (!cn) {
    return {.sWhyNot =
                "These rows can only be looked at: there is no connection to the server; connect "
                "it first."};
  }
  if (!cn->IsOpen()) {
    return {.sWhyNot =
                "These rows can only be looked at: the connection is closed; reconnect first."};
  }
  const RunningMark running(m_running);
  return UpdatabilityOf(
      *cn, table ? *table : RowTable{source.sCatalog, source.sTable, {}, source.columns}, rs);
}

controls::Updatability GridStatements::Updatability(const GridQuery& query,
                                                    const platform::Recordset& rs) const {
  controls::Updatability updatability = Updatability(query.table, rs);
  if (!updatability.bUpdate && !query.sWhyNotEdited.empty()) {
    updatability.sWhyNot = QString::fromStdString(query.sWhyNotEdited);
  }
  return updatability;
}

template <class Answer, class Call>
Answer GridStatements::Answered(const Call& ask) {
  Answer answer;
  if (*m_running) {
    answer.bBusy = true;
    return answer;
  }
  if (!m_connection || !m_objects) {
    answer.sWhyNot =
        "Not stored: there is no connection to the server; connect it and store again.";
    return answer;
  }
  const RunningMark running(m_running);
  try {
    ask(answer);
  } catch (const Failure& failure) {
    answer.sWhyNot = QString::fromStdString(failure.Description());
    answer.bLost = platform::failure::IsLostConnection(failure.Number());
    answer.bCancelled = failure.Number() == platform::failure::kCancelled;
  } catch (const std::exception& exception) {
    answer.sWhyNot = SentenceOf(exception);
  }
  return answer;
}

Sent GridStatements::Send(const RecordsetPtr& rs, platform::RowIndex row,
                          const controls::Updatability& updatability, Long lTimeout) {
  return Answered<Sent>([&](Sent& sent) {
    sent.answer = RowChanges(m_connection, m_objects, updatability.table, lTimeout).Send(*rs, row);
  });
}

SentDeletion GridStatements::Delete(const RecordsetPtr& rs,
                                    const std::vector<platform::RowIndex>& rows,
                                    const controls::Updatability& updatability, Long lTimeout) {
  return Answered<SentDeletion>([&](SentDeletion& sent) {
    sent.answer = RowChanges(m_connection, m_objects, updatability.table, lTimeout)
                      .Delete(*rs, rows, [this](const auto& work) {
                        Wait("Reading the rows to be deleted", work);
                      });
  });
}

void GridStatements::Wait(const Text& sWhat,
                          const std::function<void(std::stop_token)>& work) const {
  if (!m_longOperation) return work({});
  const RunningMark running(m_running);
  // Whoever waits may go with the grid while events are handled.
  const auto operation = m_longOperation;
  operation->Run(sWhat, work);
}

void GridStatements::WaitGivingWay(const Text& sWhat,
                                   const std::function<void(std::stop_token)>& work) const {
  if (!m_longOperation) return work({});
  const RunningMark running(m_running);
  const auto operation = m_longOperation;
  operation->RunGivingWay(sWhat, work);
}

bool GridStatements::InSlices(const Text& sWhat, const std::function<bool()>& slice) const {
  if (!m_longOperation) {
    while (!slice()) {
    }
    return true;
  }
  const RunningMark running(m_running);
  const auto operation = m_longOperation;
  const auto here = std::this_thread::get_id();
  std::mutex mutex;
  std::condition_variable_any changed;
  bool bDone = false;
  std::exception_ptr failed;
  const auto runSlice = [&] {
    bool bLast = true;
    try {
      bLast = slice();
    } catch (...) {
      failed = std::current_exception();
    }
    if (!bLast) return false;
    {
      const std::lock_guard lock(mutex);
      bDone = true;
    }
    changed.notify_all();
    return true;
  };
  // The host handles events as long as its worker waits.
  QTimer slices;
  slices.callOnTimeout([&] {
    if (runSlice()) slices.stop();
  });
  slices.start(0);
  try {
    operation->Run(sWhat, [&](const std::stop_token& stop) {
      if (std::this_thread::get_id() == here) {
        while (!stop.stop_requested() && !runSlice()) {
        }
      } else {
        std::unique_lock lock(mutex);
        changed.wait(lock, stop, [&] { return bDone; });
      }
    });
  } catch (const Failure& cancelled) {
    if (cancelled.Number() != platform::failure::kCancelled) throw;
  }
  slices.stop();
  if (failed) std::rethrow_exception(failed);
  return bDone;
}

void GridStatements::Reopen() {
  if (*m_running) FailBusy();
  const RunningMark running(m_running);
  const ConnectionPtr cn = m_connection;
  if (cn->IsOpen()) cn->Close();
  cn->Open({}, {}, {}, platform::kOptionUnspecified);
}

}  // namespace orvane::controls
