#include "controls/grid/edits_carried.h"

#include "platform/failure.h"

namespace orvane::controls {

using platform::Failure;
using platform::RecordsetPtr;
using platform::RowsPlace;
using platform::Text;

Waits EditsCarried::WaitsFor(const char* sWhat) const {
  return {[&statements = m_statements, sWhat, life = m_statements.Life()](const auto& work) {
            if (life.expired()) return work({});
            statements.Wait(sWhat, work);
          },
          [&statements = m_statements, life = m_statements.Life()](const Text& sSliced,
                                                                   const auto& slice) {
            return life.expired() || statements.InSlices(sSliced, slice);
          }};
}

void EditsCarried::Keep(const RowsPlace& place, const EditSession& session, bool bWait) const {
  // All of it may go with the grid.
  const auto rs = RecordsetPtr(session.Recordset());
  if (!rs) return;
  const RowTable table = session.Updatability().table;
  const auto notes = session.Notes() ? session.Notes() : std::make_shared<EditNotes>();
  const auto unsent = m_unsent;
  const Waits waits = WaitsFor("Keeping the rows that are not stored");
  unsent->Keep(RowsPlace(place), *rs, table, *notes, bWait ? waits.beside : Beside());
}

std::shared_ptr<EditNotes> EditsCarried::LaidOver(const RecordsetPtr& before,
                                                  const RowsState& state, const RowsPlace& place,
                                                  platform::Recordset& rs,
                                                  const Updatability& updatability) const {
  const std::weak_ptr<void> life = m_statements.Life();
  const auto unsent = m_unsent;
  const Waits waits = WaitsFor("Looking for the rows that are not stored");
  if (!before) {
    const auto at = RowsPlace(place);
    auto notes = unsent->LaidOver(at, rs, updatability, waits);
    if (life.expired()) return nullptr;
    unsent->Drop(at);
    return notes;
  }
  if (!state.notes) return nullptr;
  const RowTable& table = state.updatability->table;
  // Where no row can be edited at all, it is not for the edited columns.
  const Text sWhyNot = updatability.bUpdate ? Text() : updatability.sWhyNot.toStdString();
  if (!CanCarryEdits(*before, table, rs, updatability.table)) {
    if (!sWhyNot.empty()) {
      throw Failure(platform::failure::kNotSupported,
                    "The rows stay as they are: some are not stored, and cannot be laid over those "
                    "that would be shown; store or discard them first. " +
                        sWhyNot);
    }
    throw Failure(platform::failure::kNotSupported,
                  "The rows stay as they are: some that are not stored have columns that would not "
                  "be shown any more; store or discard them first.");
  }
  auto notes = CarryEdits(*before, table, *state.notes, rs, updatability.table, waits);
  if (life.expired()) return nullptr;
  unsent->Drop(state.place);
  // A query that was renamed meanwhile has its rows under another name now.
  if (state.place != place) unsent->Tell(state.place, 0);
  return notes;
}

std::shared_ptr<EditNotes> EditsCarried::Steps(const EditSession& session, platform::Recordset& rs,
                                               const Updatability& updatability) const {
  // They are what they were when the search began, whatever becomes of the session.
  const auto notes = std::shared_ptr<EditNotes>(session.Notes());
  const auto before = RecordsetPtr(session.Recordset());
  if (!before || !notes || (!notes->steps.CanUndo() && !notes->steps.CanRedo())) return nullptr;
  const RowTable table = session.Updatability().table;
  const Beside beside = [&statements = m_statements, life = m_statements.Life()](const auto& work) {
    if (life.expired()) return work({});
    statements.WaitGivingWay("Looking for the rows that were edited", work);
  };
  return CarryEdits(*before, table, *notes, rs, updatability.table, {beside, {}});
}

}  // namespace orvane::controls
