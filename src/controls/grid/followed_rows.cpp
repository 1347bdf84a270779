#include "controls/grid/followed_rows.h"

#include <QElapsedTimer>
#include <algorithm>
#include <limits>
#include <numeric>
#include <string>
#include <unordered_map>
#include <utility>

#include "platform/conversions.h"

namespace orvane::controls {

using platform::ColumnIndex;
using platform::Recordset;
using platform::RowIndex;
using platform::Value;

namespace {

/// Short enough that nobody sees a picture late.
constexpr qint64 kComparedMs = 8;
constexpr RowIndex kComparedBetweenClocks = 64;

/// Empty where one of them is not among the columns.
std::vector<ColumnIndex> ColumnsNamed(const Recordset& rs, const FollowedRows::Key& key) {
  std::vector<ColumnIndex> columns;
  for (const platform::Text& sName : key) {
    ColumnIndex column = 0;
    while (column < rs.FieldCount() && rs.FieldAt(column).Name() != sName) ++column;
    if (column == rs.FieldCount()) return {};
    columns.push_back(column);
  }
  return columns;
}

std::vector<ColumnIndex> AllColumnsOf(const Recordset& rs) {
  std::vector<ColumnIndex> columns(static_cast<std::size_t>(rs.FieldCount()));
  std::iota(columns.begin(), columns.end(), 0);
  return columns;
}

std::string IdentityOf(const Recordset& rs, RowIndex row, const std::vector<ColumnIndex>& columns) {
  std::string sIdentity;
  for (const ColumnIndex column : columns) {
    const Value vt = rs.OriginalAt(row, column);
    // The length keeps "a" and "bc" from "ab" and "c", the kind a number from its digits.
    const platform::Text sText = vt.IsNull() ? platform::Text() : platform::ToText(vt);
    sIdentity.append(std::to_string(static_cast<int>(vt.Kind()))).append(1, ':');
    sIdentity.append(std::to_string(sText.size())).append(1, ':').append(sText);
  }
  return sIdentity;
}

}  // namespace

struct FollowedRows::Work {
  platform::RecordsetPtr before;
  platform::RecordsetPtr now;
  std::vector<ColumnIndex> columnsBefore;
  std::vector<ColumnIndex> columnsNow;
  Done done;
  RowIndex rowsBefore = 0;
  RowIndex rowsNow = 0;
  RowIndex read = 0;  ///< of the rows now, and then of those before
  std::unordered_map<std::string, std::int32_t> places;
  std::vector<std::int32_t> first;  ///< of each row now the first one that is known by the same
  std::vector<bool> known;          ///< of each row now
  RowMoves moves;

  bool IsDone() const { return read == rowsNow + rowsBefore; }
  void ReadRow() {
    const RowIndex row = read++;
    if (row < rowsNow) {
      const auto place = static_cast<std::int32_t>(row);
      first.push_back(places.emplace(IdentityOf(*now, row, columnsNow), place).first->second);
      return;
    }
    const auto found = places.find(IdentityOf(*before, row - rowsNow, columnsBefore));
    moves.places.push_back(found == places.end() ? -1 : found->second);
    if (found != places.end()) known[static_cast<std::size_t>(found->second)] = true;
  }
  void FindFresh() {
    for (std::size_t n = 0; n < first.size(); ++n) {
      if (known[static_cast<std::size_t>(first[n])]) continue;
      moves.fresh.insert(moves.fresh.end(), static_cast<RowIndex>(n));
    }
  }
};

FollowedRows::FollowedRows(QObject* parent) : QObject(parent) {
  m_slices.setInterval(0);
  connect(&m_slices, &QTimer::timeout, this, [this] { Slice(); });
}

FollowedRows::~FollowedRows() = default;

void FollowedRows::Compare(platform::RecordsetPtr before, platform::RecordsetPtr now,
                           const std::vector<Key>& keys, Done done) {
  m_slices.stop();
  m_work.reset();
  const RowIndex rowsBefore = before->FetchedCount();
  const RowIndex rowsNow = now->FetchedCount();
  if (rowsBefore > kMostRows || rowsNow > kMostRows) {
    RowMoves moves;
    moves.rowsBefore = rowsBefore;
    return done(moves);
  }
  m_work = std::make_unique<Work>();
  for (const Key& key : keys) {
    m_work->columnsBefore = ColumnsNamed(*before, key);
    m_work->columnsNow = ColumnsNamed(*now, key);
    if (!m_work->columnsBefore.empty() && !m_work->columnsNow.empty()) break;
  }
  if (m_work->columnsBefore.empty() || m_work->columnsNow.empty()) {
    m_work->columnsBefore = AllColumnsOf(*before);
    m_work->columnsNow = AllColumnsOf(*now);
  }
  m_work->before = std::move(before);
  m_work->now = std::move(now);
  m_work->done = std::move(done);
  m_work->rowsBefore = rowsBefore;
  m_work->rowsNow = rowsNow;
  m_work->known.resize(static_cast<std::size_t>(rowsNow));
  m_work->moves.bKnown = true;
  m_work->moves.rowsBefore = rowsBefore;
  if (rowsBefore + rowsNow <= kAtOnce) {
    Slice();
  } else {
    m_slices.start();
  }
}

void FollowedRows::Slice() {
  Work& work = *m_work;
  QElapsedTimer timer;
  timer.start();
  while (!work.IsDone()) {
    const bool bLook = m_slices.isActive() && work.read % kComparedBetweenClocks == 0;
    if (bLook && timer.elapsed() >= kComparedMs) return;
    work.ReadRow();
  }
  m_slices.stop();
  work.FindFresh();
  // The handler may be the end of this.
  const std::unique_ptr<Work> done = std::move(m_work);
  done->done(done->moves);
}

RowsState FollowedRows::StateIn(const RowsState& before, const RowMoves& moves,
                                const Recordset& rs) {
  RowsState state = before;
  const auto count =
      static_cast<int>(std::min<RowIndex>(rs.RecordCount(), std::numeric_limits<int>::max() - 1));
  const auto place = [&](int nRow) -> int {
    if (nRow < 0) return -1;
    if (!moves.bKnown) return nRow < count ? nRow : -1;
    const auto row = static_cast<std::size_t>(nRow);
    return row < moves.places.size() ? moves.places[row] : -1;
  };
  state.nCurrentRow = place(before.nCurrentRow);
  if (state.nCurrentRow < 0 && before.nCurrentRow >= 0) {
    state.nCurrentRow = std::min(before.nCurrentRow, count - 1);
  }
  state.selection.clear();
  for (const CellRange& range : before.selection) {
    const bool bAll =
        moves.rowsBefore > 1 && range.nTop == 0 && range.nBottom + 1 >= moves.rowsBefore;
    if (bAll) {
      if (count > 0) state.selection.push_back({0, range.nLeft, count - 1, range.nRight});
      continue;
    }
    if (!moves.bKnown) {
      // Their numbers are all that is known of them.
      if (range.nTop < count) {
        state.selection.push_back(
            {range.nTop, range.nLeft, std::min(range.nBottom, count - 1), range.nRight});
      }
      continue;
    }
    for (int nRow = range.nTop; nRow <= range.nBottom; ++nRow) {
      const int nPlace = place(nRow);
      if (nPlace < 0) continue;
      if (!state.selection.empty() && state.selection.back().nBottom + 1 == nPlace &&
          state.selection.back().nLeft == range.nLeft &&
          state.selection.back().nRight == range.nRight) {
        state.selection.back().nBottom = nPlace;
      } else {
        state.selection.push_back({nPlace, range.nLeft, nPlace, range.nRight});
      }
    }
  }
  if (state.first) {
    state.first->row = place(static_cast<int>(state.first->row));
  } else if (before.nTopRow > 0) {
    const int nTop = place(before.nTopRow);
    state.nTopRow = nTop >= 0 ? nTop : before.nTopRow;
  }
  return state;
}

}  // namespace orvane::controls
