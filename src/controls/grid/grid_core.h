// What both grid controls do alike: keep the connection, run a statement through a command, and
// show in one window what came of it. Owned by its control; user-interface thread.
#pragma once

#include <QPointer>
#include <functional>
#include <memory>
#include <optional>

#include "controls/editing/unsent_stash.h"
#include "controls/grid/edits_carried.h"
#include "controls/grid/grid_editing.h"
#include "controls/grid/grid_events.h"
#include "controls/grid/grid_export.h"
#include "controls/grid/grid_statements.h"
#include "controls/order/rows_states.h"
#include "controls/values/cell_format.h"
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
  std::shared_ptr<UnsentStash> unsent = std::make_shared<UnsentStash>();
  /// The statements that filled cells last.
  std::shared_ptr<QStringList> cellQueries = std::make_shared<QStringList>();
  std::shared_ptr<platform::LongOperation> longOperation = {};  ///< or none
};

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
  const platform::ConnectionPtr& Connection() const { return m_statements.Connection(); }
  const zones::TimeZone& Zone() const { return m_format.Zone(); }
  platform::Timestamp Now() const { return m_services.now(); }

  /// Runs the statement and shows its rows. When that fails, shows the failure's sentence in the
  /// place of rows and passes it on. A statement that may only read, but would change data, has
  /// not been run and is no failure: the window says so, with a button that runs it, once. The grid
  /// may be gone when the rows have come; then nothing is done with them.
  void Run(const GridQuery& query, Access access = Access::Read);
  /// Rows that are not shown yet, and what may be done with them.
  struct Fresh {
    platform::RecordsetPtr rs;
    controls::Updatability updatability;
    platform::Text sSqlText;
    NoRowsTexts noRows;
    std::shared_ptr<EditNotes> notes = {};  ///< what can be undone of them
  };
  /// Fetches rows beneath those that are shown, which stay, and gives way to the user. Fails as the
  /// server does, and shows nothing of that. The grid may be gone afterwards.
  Fresh FetchBeneath(const GridQuery& query);
  /// Gives these what can be undone and redone of the rows that are shown, which have no edits. It
  /// gives way to the user, and fails with failure::kCancelled then. The grid may be gone
  /// afterwards.
  void CarrySteps(Fresh& fresh) const {
    fresh.notes = m_carried.Steps(m_editing->Session(), *fresh.rs, fresh.updatability);
  }
  /// Shows these in the place of others without edits.
  void Exchange(Fresh fresh, const RowsState& state);
  /// Runs a statement that only reads, and shows nothing of it. The grid may be gone afterwards.
  platform::RecordsetPtr Ask(const platform::Text& sSqlText, platform::Long lMaxRows,
                             platform::Long lTimeout) {
    return m_statements.Ask(sSqlText, lMaxRows, lTimeout);
  }
  /// Runs a statement that changes one row for each of these rows of values, all of them or none,
  /// however long it takes; shows nothing of it. The grid may be gone afterwards.
  void Change(const platform::Text& sSqlText, platform::ParameterRows rows) {
    m_statements.Change(sSqlText, std::move(rows));
  }
  /// Opens the connection again where it is gone, and calls the handler when that is done. Offered
  /// beneath rows that were fetched over it.
  void OnReconnected(std::function<void()> handler);
  /// True while a statement runs, which handles events.
  bool Running() const { return m_statements.Running(); }
  /// Says that nothing can be asked of the connection while a statement runs.
  [[noreturn]] static void FailBusy() { GridStatements::FailBusy(); }
  /// Passes the failure on after showing it, as Run does.
  [[noreturn]] void Fail(const platform::Failure& failure);
  /// Shows rows that were fetched before. Without a state, sSqlText tells what fetched them.
  void Attach(const platform::RecordsetPtr& rs, const RowsState* state,
              const platform::Text& sSqlText, const NoRowsTexts& noRows,
              const std::optional<RowTable>& table);
  /// Puts a failure that nobody else is told of into the log.
  void Note(const std::exception& exception) const { NoteFailure(m_services.failures, exception); }
  void Empty();
  const platform::RecordsetPtr& Recordset() const { return m_recordset; }
  GridEditing& Editing() const { return *m_editing; }

  /// What the rows are those of.
  void Subject(GridSubject subject);
  /// The named query whose rows these are: what is not stored of them is kept apart from what is
  /// not stored of the table's own.
  void Query(const platform::Text& sQuery) { m_sQuery = sQuery; }
  GridExport& Export() { return m_export; }

  RowsStates& States() const { return *m_services.states; }
  /// Keeps what is not stored, also what is being typed, for the rows may go. With bWait events are
  /// handled where it is much, and the grid may be gone afterwards.
  void KeepUnsent(bool bWait = false);
  /// How the rows are being looked at.
  RowsState State() const;

 private:
  void ShowFetched(const platform::RecordsetPtr& rs, controls::Updatability updatability,
                   std::shared_ptr<EditNotes> notes, const RowsState* state,
                   const NoRowsTexts& texts);
  void AskToRun(const GridQuery& query);
  void Reconnect(const std::function<void()>& handler);
  /// Behind a button nobody else takes the failure down.
  static void NoteFailure(const std::shared_ptr<platform::FailureLog>& failures,
                          const std::exception& exception);
  void FollowZone();
  Fetching HowFetched() const;
  /// Rows that are shown while others are fetched in their place, or none.
  struct Shown {
    platform::RecordsetPtr rs;
    RowsState state;
    bool IsUnsent() const { return rs && rs->PendingCount() > 0; }
  };
  Shown ShownNow() const;
  /// Without a table where there is none.
  platform::RowsPlace PlaceOf(const RowTable& table) const;
  /// In the place of rows, unless there were some and they are not stored, or no others can be
  /// had: then these stay.
  void ShowFailure(platform::Long lNumber, const platform::Text& sSentence, const Shown& before,
                   bool bSameRows = false);

  GridServices m_services;
  GridStatements m_statements;
  EditsCarried m_carried;
  std::shared_ptr<GridEvents> m_events;
  QPointer<GridWindow> m_window;
  QPointer<GridEditing> m_editing;
  platform::RecordsetPtr m_recordset;
  platform::Text m_sSqlText;
  platform::Long m_lQueryTimeout = 30;  ///< seconds, also of what is sent
  platform::Text m_sQuery;
  platform::RowsPlace m_place;  ///< of the table whose rows are shown; none without a table
  std::optional<RowsOrigin> m_origin;
  CellFormat m_format;
  GridSubject m_subject;
  GridExport m_export;
};

}  // namespace orvane::controls
