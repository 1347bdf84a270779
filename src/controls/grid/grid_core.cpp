#include "controls/grid/grid_core.h"

#include <algorithm>
#include <utility>

#include "controls/grid/grid_trend.h"
#include "controls/grid/grid_window.h"
#include "controls/statements/connection_zone.h"
#include "controls/values/tell_box.h"
#include "controls/view/status_strip.h"
#include "platform/conversions.h"

namespace orvane::controls {

using platform::Failure;
using platform::Long;
using platform::RecordsetPtr;
using platform::Text;
using platform::Timestamp;

namespace {

constexpr const char* kNoneFetched = "The rows could not be fetched";

NoRowsTexts DoneTexts(Long lRecordsAffected) {
  QString sSentence = "The statement gives no rows.";
  if (lRecordsAffected > 0) {
    sSentence += lRecordsAffected == 1
                     ? QStringLiteral(" It changed 1 row.")
                     : QStringLiteral(" It changed %1.").arg(RowsText(lRecordsAffected));
  }
  return {"Done", sSentence};
}

bool HaveSameColumns(const platform::Recordset& one, const platform::Recordset& other) {
  if (one.FieldCount() != other.FieldCount()) return false;
  for (platform::ColumnIndex column = 0; column < one.FieldCount(); ++column) {
    const platform::Field& field = one.FieldAt(column);
    const platform::Field& same = other.FieldAt(column);
    if (field.Name() != same.Name() || field.Type() != same.Type()) return false;
  }
  return one.Source().columns == other.Source().columns;
}

}  // namespace

Timestamp MachineTime() {
  return std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
}

GridCore::GridCore(GridServices services, const QString& sName)
    : m_services(std::move(services)),
      m_statements(m_services.objects, m_services.longOperation),
      m_carried(m_statements, m_services.unsent),
      m_events(std::make_shared<GridEvents>()),
      m_window(new GridWindow(sName, m_events, m_services.life)),
      m_format(ZoneOf(nullptr)),
      m_export(*m_window, {[this] { return m_subject; }, [this] { return Zone(); },
                           [this] { return m_statements.CanFetchAgain(m_sSqlText); },
                           [this](const platform::RowSink& sink) {
                             return m_statements.FetchAgain(m_sSqlText, sink);
                           },
                           [this, life = m_statements.Life()](const Text& sWhat, const auto& work) {
                             if (life.expired()) return work({});
                             m_statements.Wait(sWhat, work);
                           }}) {
  const auto tell = [window = m_window.data()](platform::Signal<> GridEvents::*event) {
    return [window, event] { window->Raise(event); };
  };
  m_editing = new GridEditing(
      *m_window,
      RowOutbox::Server{[this](const RecordsetPtr& rs, platform::RowIndex row,
                               const controls::Updatability& can) {
                          return m_statements.Send(rs, row, can, m_lQueryTimeout);
                        },
                        [this](const RecordsetPtr& rs, const std::vector<platform::RowIndex>& rows,
                               const controls::Updatability& can) {
                          return m_statements.Delete(rs, rows, can, m_lQueryTimeout);
                        }},
      GridEditing::Events{
          tell(&GridEvents::insert), tell(&GridEvents::remove),
          [this](platform::RowIndex rows) { m_services.unsent->Tell(m_place, rows); }},
      [this](const Text& sSqlText) {
        return Ask(sSqlText, CellFilling::kMostValues, m_lQueryTimeout);
      },
      m_services.cellQueries);
  const Waits waits = m_carried.WaitsFor("Reading what is to be pasted");
  m_editing->Session().InSlices(waits.slices);
  m_editing->Filling().ReadBeside(waits.beside);
}

GridCore::~GridCore() {
  KeepUnsent();
  delete m_editing.data();
  if (!m_window) return;  // whoever placed it did not take it out again
  m_window->Abandon();
  if (m_window->Raising() || Running()) {
    m_window->hide();
    m_window->setParent(nullptr);
    m_window->deleteLater();
  } else {
    delete m_window.data();
  }
}

void GridCore::Subject(GridSubject subject) {
  m_subject = std::move(subject);
  if (!m_subject.sInto.empty()) m_window->Rows().Copier().Into(m_subject.sInto);
}

void GridCore::Connection(const platform::ConnectionPtr& cn) {
  m_statements.Connection(cn);
  FollowZone();
}

void GridCore::FollowZone() {
  if (Connection()) m_format = CellFormat(ZoneOf(Connection()));
}

void GridCore::Run(const GridQuery& query, Access access) {
  if (Running()) FailBusy();
  // Events are handled from here on, and one of them may be the end of this grid.
  const std::weak_ptr<void> life = m_statements.Life();
  // Also for the case that the grid goes while the rows are fetched.
  KeepUnsent(true);
  if (life.expired()) return;
  const auto before = std::make_shared<Shown>(ShownNow());
  if (query.sorted) m_window->Rows().SortedByServer(*query.sorted);
  m_recordset.reset();
  m_editing->ShowNothing();
  m_sSqlText = query.sSqlText;
  m_lQueryTimeout = query.lQueryTimeout;
  m_window->Sql(QString::fromStdString(query.sSqlText));
  GridStatements::Fetched fetched;
  controls::Updatability updatability;
  std::shared_ptr<EditNotes> notes;
  Text sLost;
  // When the first rows have come, those before them would take memory for nothing.
  const auto coming = [before] {
    if (!before->IsUnsent()) *before = {};
  };
  try {
    fetched = m_statements.Fetch(query, access, *m_window, coming);
    if (life.expired()) return;
    try {
      updatability = m_statements.Updatability(query, *fetched.rs);
    } catch (const Failure& failure) {
      const bool bLost = platform::failure::IsLostConnection(failure.Number());
      if (life.expired() || !bLost || before->IsUnsent()) throw;
      // The rows have come all the same.
      sLost = failure.Description();
      updatability.sWhyNot =
          "These rows can only be looked at: the connection was lost; reconnect first.";
    }
    if (life.expired()) return;
    m_place = PlaceOf(updatability.table);
    notes = m_carried.LaidOver(before->rs, before->state, m_place, *fetched.rs, updatability);
    if (life.expired()) return;
  } catch (const Failure& failure) {
    if (life.expired()) throw;
    if (access == Access::Read && failure.Number() == platform::failure::kWouldChange) {
      AskToRun(query);
      return;
    }
    ShowFailure(failure.Number(), failure.Description(), *before, query.sorted.has_value());
    throw;
  } catch (const std::exception& exception) {
    if (life.expired()) throw;
    ShowFailure(platform::failure::kComponent, SentenceOf(exception).toStdString(), *before,
                query.sorted.has_value());
    throw;
  }
  m_window->Trend().ForgetUnits();
  ShowFetched(fetched.rs, std::move(updatability), std::move(notes), nullptr,
              fetched.rs->FieldCount() > 0 ? query.noRows : DoneTexts(fetched.lRecordsAffected));
  if (!life.expired() && !sLost.empty()) m_window->Lost(QString::fromStdString(sLost));
}

void GridCore::ShowFetched(const RecordsetPtr& rs, controls::Updatability updatability,
                           std::shared_ptr<EditNotes> notes, const RowsState* state,
                           const NoRowsTexts& texts) {
  m_recordset = rs;
  m_origin = RowsOrigin{m_services.now(), Connection()};
  FollowZone();
  m_editing->Show(rs, std::move(updatability), ValueInput(m_format.Zone()), std::move(notes));
  m_window->ShowRows(rs, m_format, state, HowFetched(), texts.sTitle, texts.sSentence);
}

GridCore::Fresh GridCore::FetchBeneath(const GridQuery& query) {
  const std::weak_ptr<void> life = m_statements.Life();
  Fresh fresh{m_statements.FetchBeneath(query).rs, {}, query.sSqlText, query.noRows};
  if (life.expired()) return fresh;
  // What the server has said of a table is not asked again and again.
  const controls::Updatability& known = m_editing->Session().Updatability();
  const bool bKnown =
      m_recordset && !known.table.sTable.empty() && HaveSameColumns(*m_recordset, *fresh.rs);
  fresh.updatability = bKnown ? known : m_statements.Updatability(query, *fresh.rs);
  return fresh;
}

void GridCore::Exchange(Fresh fresh, const RowsState& state) {
  m_sSqlText = fresh.sSqlText;
  m_window->Sql(QString::fromStdString(fresh.sSqlText));
  m_place = PlaceOf(fresh.updatability.table);
  ShowFetched(fresh.rs, std::move(fresh.updatability), std::move(fresh.notes), &state,
              fresh.rs->FieldCount() > 0 ? fresh.noRows : DoneTexts(0));
}

GridCore::Shown GridCore::ShownNow() const {
  if (!m_recordset) return {};
  return {m_recordset, State()};
}

platform::RowsPlace GridCore::PlaceOf(const RowTable& table) const {
  if (table.sTable.empty() || !Connection()) return {};
  Text sServer;
  try {
    sServer = platform::ToText(Connection()->Properties().Item(platform::kDataSource).Value());
  } catch (const Failure&) {
    // A connection that names no server is the only one there is.
  }
  return {sServer, table.sCatalog, table.sTable, m_sQuery};
}

void GridCore::KeepUnsent(bool bWait) {
  if (!m_recordset || !m_editing) return;
  m_editing->TakeTyped();
  m_carried.Keep(m_place, m_editing->Session(), bWait);
}

void GridCore::OnReconnected(std::function<void()> handler) {
  m_window->OfferReconnect([this, handler = std::move(handler)] { Reconnect(handler); });
}

void GridCore::Reconnect(const std::function<void()>& handler) {
  if (!Connection() || Running()) return;
  const std::weak_ptr<void> life = m_statements.Life();
  const auto failures = m_services.failures;
  bool bOpened = false;
  try {
    m_statements.Reopen();
    bOpened = true;
    if (!life.expired()) handler();
  } catch (const std::exception& exception) {
    // The window shows the sentence; nobody is behind a button to be told.
    NoteFailure(failures, exception);
    if (bOpened || life.expired()) return;
    if (m_recordset) {
      m_window->Lost(SentenceOf(exception));
    } else {
      m_window->ShowFailure(kNoneFetched, SentenceOf(exception), true);
    }
  }
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
                         : Failure(platform::failure::kComponent,
                                   SentenceOf(exception).toStdString(), "grid"));
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

void GridCore::Fail(const Failure& failure) {
  m_editing->TakeTyped();
  const Shown before = ShownNow();
  m_recordset.reset();
  m_editing->ShowNothing();
  ShowFailure(failure.Number(), failure.Description(), before);
  throw Failure(failure);
}

void GridCore::ShowFailure(Long lNumber, const Text& sSentence, const Shown& before,
                           bool bSameRows) {
  const bool bLost = platform::failure::IsLostConnection(lNumber);
  if (before.rs &&
      (bSameRows || bLost || before.IsUnsent() || (Connection() && !Connection()->IsOpen()))) {
    // What is not stored is not lost to a failure either, nor what cannot be had again.
    const std::weak_ptr<void> life = m_statements.Life();
    Attach(before.rs, &before.state, {}, {}, std::nullopt);
    if (life.expired()) return;  // whoever heard of the rows has dropped the grid
    if (bLost) {
      m_window->Lost(QString::fromStdString(sSentence));
    } else {
      m_window->Status().Remark(QString::fromStdString(sSentence));
    }
    return;
  }
  const bool bCancelled = lNumber == platform::failure::kCancelled;
  m_window->ShowFailure(bCancelled ? "Cancelled" : kNoneFetched, QString::fromStdString(sSentence),
                        bLost);
}

void GridCore::Attach(const RecordsetPtr& rs, const RowsState* state, const Text& sSqlText,
                      const NoRowsTexts& noRows, const std::optional<RowTable>& table) {
  const std::weak_ptr<void> life = m_statements.Life();
  KeepUnsent(true);
  if (life.expired()) return;
  m_recordset = rs;
  FollowZone();
  m_sSqlText = state ? state->sSqlText : sSqlText;
  m_origin = state ? state->origin : std::nullopt;
  m_window->Sql(QString::fromStdString(m_sSqlText));
  const NoRowsTexts texts = rs->FieldCount() > 0 ? noRows : DoneTexts(0);
  const bool bKnown = state && state->updatability;
  auto updatability = bKnown ? *state->updatability : m_statements.Updatability(table, *rs);
  if (life.expired() || m_recordset != rs) return;
  m_place = bKnown ? state->place : PlaceOf(updatability.table);
  m_services.unsent->Drop(m_place);
  std::shared_ptr<EditNotes> notes = state ? state->notes : nullptr;
  if (bKnown && state->lRound != m_services.unsent->Round(m_place)) {
    // What lies over them was given up while they were hidden.
    for (const platform::RowIndex row : rs->PendingRows()) rs->CancelUpdate(row);
    notes = nullptr;
  }
  m_editing->Show(rs, std::move(updatability), ValueInput(m_format.Zone()), std::move(notes));
  m_window->ShowRows(rs, m_format, state, HowFetched(), texts.sTitle, texts.sSentence);
}

void GridCore::Empty() {
  const std::weak_ptr<void> life = m_statements.Life();
  KeepUnsent(true);
  if (life.expired()) return;
  m_place = {};
  m_recordset.reset();
  m_editing->ShowNothing();
  m_window->ShowNothing();
}

RowsState GridCore::State() const {
  RowsState state = m_window->Rows().State();
  state.sSqlText = m_sSqlText;
  state.origin = m_origin;
  state.place = m_place;
  state.lRound = m_services.unsent->Round(m_place);
  state.updatability =
      std::make_shared<const controls::Updatability>(m_editing->Session().Updatability());
  state.notes = m_editing->Session().Notes();
  return state;
}

}  // namespace orvane::controls
