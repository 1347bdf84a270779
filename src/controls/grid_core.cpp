#include "controls/grid_core.h"

#include <algorithm>
#include <utility>

#include "controls/carried_edits.h"
#include "controls/grid_window.h"
#include "controls/status_strip.h"
#include "platform/conversions.h"

namespace orvane::controls {

using platform::Failure;
using platform::Long;
using platform::RecordsetPtr;
using platform::Text;
using platform::Timestamp;

namespace {

/// Says that a statement runs, as long as it lives.
class RunningMark {
 public:
  explicit RunningMark(std::shared_ptr<bool> bRunning) : m_bRunning(std::move(bRunning)) {
    *m_bRunning = true;
  }
  ~RunningMark() { *m_bRunning = false; }
  RunningMark(const RunningMark&) = delete;
  RunningMark& operator=(const RunningMark&) = delete;

 private:
  std::shared_ptr<bool> m_bRunning;
};

NoRowsTexts DoneTexts(Long lRecordsAffected) {
  QString sSentence = "The statement gives no rows.";
  if (lRecordsAffected > 0) {
    sSentence += lRecordsAffected == 1
                     ? QStringLiteral(" It changed 1 row.")
                     : QStringLiteral(" It changed %1.").arg(RowsText(lRecordsAffected));
  }
  return {"Done", sSentence};
}

}  // namespace

Timestamp MachineTime() {
  return std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
}

GridCore::GridCore(GridServices services, const QString& sName)
    : m_services(std::move(services)),
      m_events(std::make_shared<GridEvents>()),
      m_window(new GridWindow(sName, m_events, m_services.life)),
      m_format(ZoneOf(nullptr)),
      m_export(*m_window, {[this] { return m_subject; }, [this] { return Zone(); },
                           [this] { return CanFetchAgain(); },
                           [this](const platform::RowSink& sink) { return FetchAgain(sink); }}) {
  const auto tell = [window = m_window.data()](platform::Signal<> GridEvents::*event) {
    return [window, event] { window->Raise(event); };
  };
  m_editing = new GridEditing(
      *m_window,
      [this](const RecordsetPtr& rs, platform::RowIndex row, const controls::Updatability& can) {
        return Send(rs, row, can);
      },
      GridEditing::Events{tell(&GridEvents::insert), tell(&GridEvents::remove),
                          [this](platform::RowIndex rows) {
                            m_services.unsent->Tell(
                                m_sPlace, m_editing->Session().Updatability().table, rows);
                          }},
      [this](const Text& sSqlText) {
        return Ask(sSqlText, CellFilling::kMostValues, m_lQueryTimeout);
      },
      m_services.cellQueries);
}

GridCore::~GridCore() {
  KeepUnsent();
  delete m_editing.data();
  if (!m_window) return;  // whoever placed it did not take it out again
  m_window->Abandon();
  if (m_window->Raising() || *m_running) {
    m_window->hide();
    m_window->setParent(nullptr);
    m_window->deleteLater();
  } else {
    delete m_window.data();
  }
}

void GridCore::Subject(GridSubject subject) {
  m_subject = std::move(subject);
  if (!m_subject.sInto.empty()) m_window->Rows().Into(m_subject.sInto);
}

void GridCore::Connection(const platform::ConnectionPtr& cn) {
  m_connection = cn;
  FollowZone();
}

void GridCore::FollowZone() {
  if (m_connection) m_format = CellFormat(ZoneOf(m_connection));
}

void GridCore::Run(const GridQuery& query, Access access) {
  if (*m_running) FailBusy();
  m_editing->TakeTyped();
  const Shown before = WithUnsentRows();
  m_recordset.reset();
  m_editing->ShowNothing();
  m_sSqlText = query.sSqlText;
  m_lQueryTimeout = query.lQueryTimeout;
  m_window->Sql(QString::fromStdString(query.sSqlText));
  Fetched fetched;
  controls::Updatability updatability;
  std::shared_ptr<EditNotes> notes;
  // Events are handled during the fetch, and one of them may be the end of this grid.
  const std::weak_ptr<bool> life = m_running;
  try {
    fetched = Fetch(query, access);
    if (life.expired()) return;
    updatability = AskUpdatability(query.table, *fetched.rs);
    if (life.expired()) return;
    m_sPlace = PlaceOf(updatability.table);
    notes = Carried(before, *fetched.rs, updatability);
  } catch (const Failure& failure) {
    if (life.expired()) throw;
    if (access == Access::Read && failure.Number() == platform::failure::kWouldChange) {
      AskToRun(query);
      return;
    }
    ShowFailure(failure.Number(), failure.Description(), before);
    throw;
  } catch (const std::exception& exception) {
    if (life.expired()) throw;
    ShowFailure(platform::failure::kComponent, exception.what(), before);
    throw;
  }
  m_recordset = fetched.rs;
  m_origin = RowsOrigin{m_services.now(), m_connection};
  FollowZone();
  const bool bHasColumns = m_recordset->FieldCount() > 0;
  const NoRowsTexts texts = bHasColumns ? query.noRows : DoneTexts(fetched.lRecordsAffected);
  m_editing->Show(m_recordset, std::move(updatability), ValueInput(m_format.Zone()),
                  std::move(notes));
  std::optional<RowsState> state;
  if (query.following) state = query.following(*m_recordset);
  m_window->ShowRows(m_recordset, m_format, state ? &*state : nullptr, HowFetched(), texts.sTitle,
                     texts.sSentence);
}

RecordsetPtr GridCore::Ask(const Text& sSqlText, Long lMaxRows, Long lTimeout) {
  if (!m_connection || !m_services.objects) return nullptr;
  if (*m_running) FailBusy();
  const RunningMark running(m_running);
  const platform::CommandPtr command = m_services.objects->CreateCommand();
  command->ActiveConnection(m_connection);
  command->CommandText(sSqlText);
  command->MaxRecords(lMaxRows);
  command->CommandTimeout(lTimeout);
  command->ReadOnly(true);
  return command->Execute();
}

GridCore::Shown GridCore::WithUnsentRows() const {
  // Otherwise they would take memory for nothing.
  const bool bNoneCome = m_connection && !m_connection->IsOpen();
  if (!m_recordset || (!bNoneCome && m_editing->Session().Pending().empty())) return {};
  return {m_recordset, State()};
}

std::shared_ptr<EditNotes> GridCore::Carried(const Shown& before, platform::Recordset& rs,
                                             const controls::Updatability& updatability) const {
  if (!before.rs) {
    const UnsentEdits* kept = m_services.unsent->Find(m_sPlace);
    if (!kept || !CanCarryEdits(*kept->rs, kept->table, rs, updatability.table)) return nullptr;
    auto notes = CarryEdits(*kept->rs, kept->table, {}, rs, updatability.table);
    m_services.unsent->Drop(m_sPlace);
    return notes;
  }
  const RowTable& table = before.state.updatability->table;
  if (!CanCarryEdits(*before.rs, table, rs, updatability.table)) {
    throw Failure(platform::failure::kNotSupported,
                  "The rows stay as they are: some that are not stored have columns that would not "
                  "be shown any more; store or discard them first.");
  }
  return CarryEdits(*before.rs, table, *before.state.notes, rs, updatability.table);
}

Text GridCore::PlaceOf(const RowTable& table) const {
  if (table.sTable.empty() || !m_connection) return {};
  Text sServer;
  try {
    sServer = platform::ToText(m_connection->Properties().Item(platform::kDataSource).Value());
  } catch (const Failure&) {
    // A connection that names no server is the only one there is.
  }
  return sServer + '\n' + table.sCatalog + '\n' + table.sTable;
}

void GridCore::KeepUnsent() {
  if (!m_recordset || !m_editing) return;
  m_editing->TakeTyped();
  const RowTable& table = m_editing->Session().Updatability().table;
  m_services.unsent->Keep(m_sPlace, *m_recordset, table);
}

void GridCore::OnReconnected(std::function<void()> handler) {
  m_window->OfferReconnect([this, handler = std::move(handler)] { Reconnect(handler); });
}

void GridCore::Reconnect(const std::function<void()>& handler) {
  if (!m_connection || *m_running) return;
  const std::weak_ptr<bool> life = m_running;
  const auto failures = m_services.failures;
  try {
    {
      const RunningMark running(m_running);
      const platform::ConnectionPtr cn = m_connection;
      if (cn->IsOpen()) cn->Close();
      cn->Open({}, {}, {}, platform::kOptionUnspecified);
    }
    if (!life.expired()) handler();
  } catch (const std::exception& exception) {
    // The window shows the sentence; nobody is behind a button to be told.
    NoteFailure(failures, exception);
    const auto* failure = dynamic_cast<const Failure*>(&exception);
    if (!life.expired() && m_recordset && failure) {
      m_window->Lost(QString::fromStdString(failure->Description()));
    }
  }
}

void GridCore::Change(const Text& sSqlText, platform::ParameterRows rows) {
  if (*m_running) FailBusy();
  const RunningMark running(m_running);
  const platform::CommandPtr command = m_services.objects->CreateCommand();
  command->ActiveConnection(m_connection);
  command->CommandText(sSqlText);
  command->CommandTimeout(0);
  command->RowsExpected(1);
  command->Batch(std::move(rows));
  command->Execute();
}

void GridCore::FailBusy() {
  throw Failure(platform::failure::kBusy,
                "The grid is still fetching rows; wait until it is done, or cancel it.");
}

void GridCore::AskToRun(const GridQuery& query) {
  const auto run = [this, query, failures = m_services.failures] {
    try {
      Run(query, Access::Change);
    } catch (const std::exception& exception) {
      // The window shows its sentence; nobody is behind a button to be told.
      NoteFailure(failures, exception);
    }
  };
  m_window->Ask("Not run", "This query changes data. It has not been run.", "&Run Query", run);
}

void GridCore::NoteFailure(const std::shared_ptr<platform::FailureLog>& failures,
                           const std::exception& exception) {
  if (!failures) return;
  const auto* failure = dynamic_cast<const Failure*>(&exception);
  failures->Note(failure ? *failure
                         : Failure(platform::failure::kComponent, exception.what(), "grid"));
}

GridCore::Fetched GridCore::Fetch(const GridQuery& query, Access access) {
  if (!m_connection) {
    throw Failure(platform::failure::kObjectNotSet,
                  "The grid has no connection to a server; connect the server first.");
  }
  if (!m_services.objects) {
    throw Failure(platform::failure::kObjectNotSet,
                  "The grid was made without access to data; show it in a console that offers "
                  "data access.");
  }
  const RunningMark running(m_running);
  if (!query.following) {
    m_window->ShowRunning(access == Access::Read ? QStringLiteral("Fetching rows\u2026")
                                                 : QStringLiteral("Running the query\u2026"));
  }
  // The button keeps no command, and so no connection, longer than it can stop something.
  const struct Stopping {
    explicit Stopping(QPointer<GridWindow> stopped) : window(std::move(stopped)) {}
    ~Stopping() {
      if (window) window->OnCancel({});
    }
    Stopping(const Stopping&) = delete;
    Stopping& operator=(const Stopping&) = delete;
    QPointer<GridWindow> window;
  } stopping(m_window);
  const platform::CommandPtr command = m_services.objects->CreateCommand();
  command->ActiveConnection(m_connection);
  command->CommandText(query.sSqlText);
  command->MaxRecords(std::max(0, query.lMaxRows));
  command->CommandTimeout(std::max(0, query.lQueryTimeout));
  command->ReadOnly(access == Access::Read);
  // A change is made whole or not at all; of what is read any part is worth something.
  command->KeepRows(access == Access::Read);
  // Rows that are followed stay until the next ones are there.
  if (access == Access::Read && !query.following) {
    command->OnRows([this, life = std::weak_ptr<char>(m_life),
                     format = CellFormat(ZoneOf(m_connection))](const RecordsetPtr& rs) {
      if (!life.expired() && m_window) m_window->ShowComing(rs, format);
    });
    m_window->OnCancel([command] { command->Cancel(); });
  }
  Fetched fetched;
  fetched.rs = command->Execute(&fetched.lRecordsAffected);
  if (!fetched.rs) {
    throw Failure(platform::failure::kComponent,
                  "The provider gave no rowset for the statement; look for a newer version of it.");
  }
  return fetched;
}

bool GridCore::CanFetchAgain() const {
  return m_connection && m_connection->IsOpen() && m_services.objects && !m_sSqlText.empty() &&
         !*m_running;
}

platform::FetchState GridCore::FetchAgain(const platform::RowSink& sink) {
  if (*m_running) FailBusy();
  const RunningMark running(m_running);
  const platform::CommandPtr command = m_services.objects->CreateCommand();
  command->ActiveConnection(m_connection);
  command->CommandText(m_sSqlText);
  // As many rows as there are take the time they take; Cancel ends them.
  command->MaxRecords(0);
  command->CommandTimeout(0);
  command->ReadOnly(true);
  command->Sink(sink);
  return command->Execute()->State();
}

Fetching GridCore::HowFetched() const {
  if (!m_origin) return {};
  // The clock on the wall here, whatever the zone in which the server counts.
  const auto when = [now = m_services.now, fetched = m_origin->fetched] {
    const zones::TimeZone here;
    return FetchedText(here.ToLocal(fetched), here.ToLocal(now()));
  };
  return {when, m_origin};
}

controls::Updatability GridCore::AskUpdatability(const std::optional<RowTable>& table,
                                                 const platform::Recordset& rs) const {
  const platform::ConnectionPtr cn = m_connection;
  if (!table || !cn || !cn->IsOpen()) return {};
  const RunningMark running(m_running);
  return UpdatabilityOf(*cn, *table, rs);
}

Sent GridCore::Send(const RecordsetPtr& rs, platform::RowIndex row,
                    const controls::Updatability& updatability) {
  if (*m_running) return {{}, "Not stored yet: the grid is at work."};
  if (!m_connection || !m_services.objects) {
    return {{}, "Not stored: there is no connection to the server; connect it and store again."};
  }
  const RunningMark running(m_running);
  try {
    return {RowChanges(m_connection, m_services.objects, updatability.table, m_lQueryTimeout)
                .Send(*rs, row)};
  } catch (const Failure& failure) {
    return {{}, QString::fromStdString(failure.Description())};
  } catch (const std::exception& exception) {
    return {{}, QString::fromUtf8(exception.what())};
  }
}

void GridCore::Fail(const Failure& failure) {
  m_recordset.reset();
  m_editing->ShowNothing();
  ShowFailure(failure.Number(), failure.Description(), {});
  throw Failure(failure);
}

void GridCore::ShowFailure(Long lNumber, const Text& sSentence, const Shown& before) {
  if (before.rs) {
    // What is not stored is not lost to a failure either.
    Attach(before.rs, &before.state, {}, {}, std::nullopt);
    if (lNumber == platform::failure::kObjectClosed) {
      m_window->Lost(QString::fromStdString(sSentence));
    } else {
      m_window->Status().Remark(QString::fromStdString(sSentence));
    }
    return;
  }
  const bool bCancelled = lNumber == platform::failure::kCancelled;
  m_window->ShowFailure(bCancelled ? "Cancelled" : "The rows could not be fetched",
                        QString::fromStdString(sSentence));
}

void GridCore::Attach(const RecordsetPtr& rs, const RowsState* state, const Text& sSqlText,
                      const NoRowsTexts& noRows, const std::optional<RowTable>& table) {
  KeepUnsent();
  m_recordset = rs;
  FollowZone();
  m_sSqlText = state ? state->sSqlText : sSqlText;
  m_origin = state ? state->origin : std::nullopt;
  m_window->Sql(QString::fromStdString(m_sSqlText));
  const NoRowsTexts texts = rs->FieldCount() > 0 ? noRows : DoneTexts(0);
  const bool bKnown = state && state->updatability;
  const std::weak_ptr<bool> life = m_running;
  auto updatability = bKnown ? *state->updatability : AskUpdatability(table, *rs);
  if (life.expired() || m_recordset != rs) return;
  m_sPlace = bKnown ? state->sPlace : PlaceOf(updatability.table);
  m_services.unsent->Drop(m_sPlace);
  m_editing->Show(rs, std::move(updatability), ValueInput(m_format.Zone()),
                  state ? state->notes : nullptr);
  m_window->ShowRows(rs, m_format, state, HowFetched(), texts.sTitle, texts.sSentence);
}

void GridCore::Empty() {
  KeepUnsent();
  m_sPlace.clear();
  m_recordset.reset();
  m_editing->ShowNothing();
  m_window->ShowNothing();
}

RowsState GridCore::State() const {
  RowsState state = m_window->Rows().State();
  state.sSqlText = m_sSqlText;
  state.origin = m_origin;
  state.sPlace = m_sPlace;
  state.updatability =
      std::make_shared<const controls::Updatability>(m_editing->Session().Updatability());
  state.notes = m_editing->Session().Notes();
  return state;
}

}  // namespace orvane::controls
