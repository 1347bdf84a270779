#include "controls/grid/row_following.h"

#include <algorithm>
#include <utility>

#include "controls/grid/grid_query.h"
#include "controls/grid/grid_window.h"
#include "controls/values/tell_box.h"
#include "controls/view/row_places.h"

namespace orvane::controls {

using platform::Failure;
using platform::RecordsetPtr;
using platform::Text;

namespace {

/// What a table of samples is known by.
const FollowedRows::Key kSampleKey = {"Tag", "Timestamp"};

/// The state as it is with the rows as they came, whatever order was made of them here: that order
/// is of these rows alone.
RowsState InTheirOwnOrder(RowsState state, const RowModel& model) {
  if (model.IsAsFetched()) return state;
  const auto row = [&](int nPlace) {
    return nPlace < 0 ? -1 : static_cast<int>(model.RecordRow(nPlace));
  };
  const int nTop = state.nTopRow > 0 ? row(state.nTopRow) : -1;
  if (std::exchange(state.order, nullptr)) {
    // Who looks at the first row goes on looking at the first.
    state.first = FirstInSight{nTop, state.nTopRow};
  } else {
    state.nTopRow = std::max(0, nTop);
  }
  state.nCurrentRow = row(state.nCurrentRow);
  std::vector<CellRange> selection;
  int nRows = 0;
  for (const CellRange& range : state.selection) {
    const bool bAll = model.Places() > 1 && range.nTop == 0 && range.nBottom + 1 >= model.Places();
    const auto nLast = static_cast<int>(model.Recordset()->FetchedCount()) - 1;
    if (bAll) {
      selection.push_back({0, range.nLeft, nLast, range.nRight});
      continue;
    }
    nRows += range.nBottom - range.nTop + 1;
    if (nRows > RowPlaces::kMostFollowing) {
      // A part of what was selected would be another selection.
      selection.clear();
      break;
    }
    for (int nPlace = range.nTop; nPlace <= range.nBottom; ++nPlace) {
      selection.push_back({row(nPlace), range.nLeft, row(nPlace), range.nRight});
    }
  }
  state.selection = std::move(selection);
  return state;
}

}  // namespace

RowFollowing::RowFollowing(GridCore& core, Grid grid)
    : m_core(core),
      m_grid(std::move(grid)),
      m_follower(
          core.Window(), [this] { return MayFetch(); }, [this] { FetchOnce(); }) {}

bool RowFollowing::MayFetch() const {
  const platform::ConnectionPtr cn = m_core.Connection();
  return m_core.Recordset() && cn && cn->IsOpen() && !m_core.Running() && !m_compared.Busy() &&
         !m_core.Window().WorksOnRows() && m_grid.mayFollow();
}

void RowFollowing::FetchOnce() {
  const std::weak_ptr<char> life = m_life;
  const RecordsetPtr before = m_core.Recordset();
  GridCore::Fresh fresh;
  try {
    fresh = m_core.FetchBeneath(m_grid.query());
  } catch (const Failure& failure) {
    if (!life.expired()) Tell(failure.Number(), failure);
    return;
  } catch (const std::exception& exception) {
    if (!life.expired()) Tell(platform::failure::kComponent, exception);
    return;
  }
  if (life.expired()) return;
  m_sNoted.clear();
  const RecordsetPtr now = fresh.rs;
  std::vector<FollowedRows::Key> keys;
  const Updatability& known = m_core.Editing().Session().Updatability();
  // Of rows that can only be looked at a part of the key may be all that is known.
  if (known.bUpdate) {
    FollowedRows::Key& key = keys.emplace_back();
    for (const platform::ColumnIndex column : known.table.key) {
      key.push_back(before->FieldAt(column).Name());
    }
  }
  keys.push_back(kSampleKey);
  m_compared.Compare(before, now, keys,
                     [this, before, fresh = std::move(fresh)](const RowMoves& moves) mutable {
                       if (MayExchange(before) && CarrySteps(fresh, before)) {
                         Exchange(std::move(fresh), moves);
                       }
                     });
}

// Whatever was begun with the rows meanwhile is about those that are there.
bool RowFollowing::MayExchange(const RecordsetPtr& before) const {
  return m_core.Recordset() == before && !m_core.Running() && !m_core.Window().WorksOnRows() &&
         m_grid.mayFollow();
}

bool RowFollowing::CarrySteps(GridCore::Fresh& fresh, const RecordsetPtr& before) {
  const std::weak_ptr<char> life = m_life;
  try {
    m_core.CarrySteps(fresh);
  } catch (const std::exception& exception) {
    const auto* failure = dynamic_cast<const Failure*>(&exception);
    if (!life.expired()) {
      Tell(failure ? failure->Number() : platform::failure::kComponent, exception);
    }
    return false;
  }
  return !life.expired() && MayExchange(before);
}

void RowFollowing::Exchange(GridCore::Fresh fresh, const RowMoves& moves) {
  RowView& rows = m_core.Window().Rows();
  const RowsState state =
      FollowedRows::StateIn(InTheirOwnOrder(m_core.State(), rows.Model()), moves, *fresh.rs);
  rows.Model().NewRows(moves.fresh);
  const std::weak_ptr<char> life = m_life;
  m_core.Exchange(std::move(fresh), state);
  if (!life.expired()) m_grid.shown();
}

void RowFollowing::Tell(platform::Long lNumber, const std::exception& exception) {
  // It gave way to the user, or somebody else has the connection: the next pause is over soon.
  if (lNumber == platform::failure::kCancelled || lNumber == platform::failure::kBusy) return;
  const QString sSentence = SentenceOf(exception);
  if (platform::failure::IsLostConnection(lNumber)) {
    m_core.Window().Lost(sSentence);
  } else {
    m_core.Window().Remark(QStringLiteral("Not fetched again yet: ") + sSentence, true);
  }
  // Not once for each try.
  if (m_sNoted == exception.what()) return;
  m_sNoted = exception.what();
  m_core.Note(exception);
}

}  // namespace orvane::controls
