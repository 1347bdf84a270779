// What both grid controls do alike: keep the connection, run a statement through a command, and
// show in one window what came of it. Owned by its control; user-interface thread.
#pragma once

#include <QPointer>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "controls/cell_format.h"
#include "controls/grid_events.h"
#include "controls/grid_export.h"
#include "controls/rows_states.h"
#include "platform/failure.h"
#include "platform/services.h"

namespace orvane::controls {

class GridWindow;
struct Fetching;

platform::Timestamp MachineTime();

/// What a grid is handed when it is made.
struct GridServices {
  platform::ObjectFactoryPtr objects;
  std::shared_ptr<RowsStates> states;
  std::shared_ptr<void> life;  ///< kept as long as the grid or its window lives
  std::function<platform::Timestamp()> now = MachineTime;
  std::shared_ptr<platform::FailureLog> failures = {};  ///< or none
};

/// What a grid says when a recordset has no rows.
struct NoRowsTexts {
  QString sTitle;
  QString sSentence;
};

/// What a grid runs, and what it says when that has no rows.
struct GridQuery {
  platform::Text sSqlText;
  platform::Long lMaxRows = 0;       ///< 0 or less is no limit
  platform::Long lQueryTimeout = 0;  ///< seconds; 0 or less waits for ever
  NoRowsTexts noRows;
  /// Of rows that follow the ones shown: how they are to be looked at. Those shown stay until they
  /// have come.
  std::function<RowsState(const platform::Recordset& rs)> following = {};
};

/// What a statement may do: showing is reading, and only a press of the button lets it change.
enum class Access : std::uint8_t { Read, Change };

class GridCore {
 public:
  GridCore(GridServices services, const QString& sName);
  GridCore(const GridCore&) = delete;
  GridCore& operator=(const GridCore&) = delete;
  /// Takes the window along, unless it is in the middle of one of its own events or of a fetch:
  /// then it goes when that is over.
  ~GridCore();

  GridWindow& Window() const { return *m_window; }
  GridEvents& Events() const { return *m_events; }

  /// Rows are shown in the connection's zone of the moment they are bound; dropping a connection
  /// changes nothing that is shown.
  void Connection(const platform::ConnectionPtr& cn);
  const platform::ConnectionPtr& Connection() const { return m_connection; }
  const zones::TimeZone& Zone() const { return m_format.Zone(); }
  platform::Timestamp Now() const { return m_services.now(); }

  /// Runs the statement and shows its rows. When that fails, shows the failure's sentence in the
  /// place of rows and passes it on. A statement that may only read, but would change data, has
  /// not been run and is no failure: the window says so, with a button that runs it, once. The grid
  /// may be gone when the rows have come; then nothing is done with them.
  void Run(const GridQuery& query, Access access = Access::Read);
  /// Runs a statement that only reads, and shows nothing of it. The grid may be gone afterwards.
  platform::RecordsetPtr Ask(const platform::Text& sSqlText, platform::Long lMaxRows,
                             platform::Long lTimeout);
  /// Takes down what failed where nobody else does.
  void NoteFailure(const std::exception& exception) const {
    NoteFailure(m_services.failures, exception);
  }
  /// True while a statement runs, which handles events.
  bool Running() const { return *m_running; }
  /// Says that nothing can be asked of the connection while a statement runs.
  [[noreturn]] static void FailBusy();
  /// Passes the failure on after showing it, as Run does.
  [[noreturn]] void Fail(const platform::Failure& failure);
  /// Shows rows that were fetched before. Without a state, sSqlText tells what fetched them.
  void Attach(const platform::RecordsetPtr& rs, const RowsState* state,
              const platform::Text& sSqlText, const NoRowsTexts& noRows);
  /// Puts a failure that nobody else is told of into the log.
  void Note(const std::exception& exception) const { NoteFailure(m_services.failures, exception); }
  void Empty();
  const platform::RecordsetPtr& Recordset() const { return m_recordset; }

  /// What the rows are those of.
  void Subject(GridSubject subject) { m_subject = std::move(subject); }
  GridExport& Export() { return m_export; }

  RowsStates& States() const { return *m_services.states; }
  /// How the rows are being looked at.
  RowsState State() const;

 private:
  struct Fetched {
    platform::RecordsetPtr rs;
    platform::Long lRecordsAffected = 0;
  };
  Fetched Fetch(const GridQuery& query, Access access);
  void AskToRun(const GridQuery& query);
  /// Behind a button nobody else takes the failure down.
  static void NoteFailure(const std::shared_ptr<platform::FailureLog>& failures,
                          const std::exception& exception);
  void FollowZone();
  Fetching HowFetched() const;
  bool CanFetchAgain() const;
  /// Gives the sink all rows of the statement that is shown, which only reads.
  platform::FetchState FetchAgain(const platform::RowSink& sink);
  void ShowFailure(platform::Long lNumber, const platform::Text& sSentence);

  GridServices m_services;
  std::shared_ptr<GridEvents> m_events;
  QPointer<GridWindow> m_window;
  platform::ConnectionPtr m_connection;
  platform::RecordsetPtr m_recordset;
  platform::Text m_sSqlText;
  std::optional<RowsOrigin> m_origin;
  CellFormat m_format;
  GridSubject m_subject;
  /// True during a fetch. Whoever may outlive the grid tells by it whether that is still there.
  std::shared_ptr<bool> m_running = std::make_shared<bool>(false);
  GridExport m_export;
};

}  // namespace orvane::controls
