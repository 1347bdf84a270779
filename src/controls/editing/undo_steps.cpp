#include "controls/editing/undo_steps.h"

#include <algorithm>

namespace orvane::controls {

using platform::ColumnIndex;
using platform::Recordset;
using platform::RowIndex;
using platform::RowState;

void UndoSteps::Change(Recordset& rs, std::span<const RowIndex> rows,
                       const std::function<void()>& change) {
  Step step;
  for (const RowIndex row : rows) step.push_back({row, OverlayOf(rs, row), {}});
  const auto keep = [&] {
    for (Row& row : step) row.behind = OverlayOf(rs, row.row);
    std::erase_if(step, [](const Row& row) { return row.before == row.behind; });
    if (step.empty()) return;
    m_undone.clear();
    if (m_done.size() == kMostSteps) m_done.erase(m_done.begin());
    m_done.push_back(std::move(step));
  };
  try {
    change();
  } catch (...) {
    keep();
    throw;
  }
  keep();
}

std::vector<RowIndex> UndoSteps::Undo(Recordset& rs) {
  return Move(rs, m_done, m_undone, true);
}

std::vector<RowIndex> UndoSteps::Redo(Recordset& rs) {
  return Move(rs, m_undone, m_done, false);
}

std::vector<RowIndex> UndoSteps::Move(Recordset& rs, std::vector<Step>& from, std::vector<Step>& to,
                                      bool bBack) {
  if (from.empty()) return {};
  to.push_back(std::move(from.back()));
  from.pop_back();
  // By place: a row that comes back changes its number in every step, this one included.
  const std::size_t nStep = to.size() - 1;
  std::vector<RowIndex> rows;
  for (std::size_t n = 0; n < to[nStep].size(); ++n) {
    const Overlay overlay = bBack ? to[nStep][n].before : to[nStep][n].behind;
    Lay(rs, to[nStep][n].row, overlay);
    rows.push_back(to[nStep][n].row);
  }
  return rows;
}

void UndoSteps::Forget(RowIndex row) {
  for (auto* steps : {&m_done, &m_undone}) {
    for (Step& step : *steps) {
      std::erase_if(step, [row](const Row& entry) { return entry.row == row; });
    }
    std::erase_if(*steps, [](const Step& step) { return step.empty(); });
  }
}

void UndoSteps::Clear() {
  m_done.clear();
  m_undone.clear();
}

std::set<RowIndex> UndoSteps::Rows() const {
  std::set<RowIndex> rows;
  for (const auto* steps : {&m_done, &m_undone}) {
    for (const Step& step : *steps) {
      for (const Row& entry : step) rows.insert(entry.row);
    }
  }
  return rows;
}

UndoSteps UndoSteps::Moved(const std::unordered_map<RowIndex, RowIndex>& rows,
                           const std::vector<std::optional<ColumnIndex>>& columns) const {
  UndoSteps moved{*this};
  for (auto* steps : {&moved.m_done, &moved.m_undone}) {
    for (Step& step : *steps) {
      std::erase_if(step, [&](const Row& entry) { return !rows.contains(entry.row); });
      for (Row& entry : step) {
        entry.row = rows.at(entry.row);
        for (auto* edits : {&entry.before.edits, &entry.behind.edits}) {
          for (auto& [column, vtValue] : *edits) {
            const auto& to = columns[static_cast<std::size_t>(column)];
            if (!to) return {};
            column = *to;
          }
          // As they are compared with what lies over a row.
          std::ranges::sort(*edits, {}, &std::pair<ColumnIndex, platform::Value>::first);
        }
      }
    }
    std::erase_if(*steps, [](const Step& step) { return step.empty(); });
  }
  return moved;
}

UndoSteps::Overlay UndoSteps::OverlayOf(const Recordset& rs, RowIndex row) {
  Overlay overlay;
  if (row >= rs.RecordCount()) return overlay;
  overlay.state = rs.StateAt(row);
  // A new row that was taken away has nothing pending any more, and cannot come back as it is.
  if (overlay.state == RowState::Deleted && !std::ranges::binary_search(rs.PendingRows(), row)) {
    return {};
  }
  overlay.bThere = true;
  for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
    if (rs.IsEdited(row, column)) overlay.edits.emplace_back(column, rs.ValueAt(row, column));
  }
  return overlay;
}

void UndoSteps::Lay(Recordset& rs, RowIndex row, const Overlay& overlay) {
  const bool bWasThere = OverlayOf(rs, row).bThere;
  if (!overlay.bThere) {
    if (bWasThere) rs.CancelUpdate(row);
    return;
  }
  if (!bWasThere) {
    const RowIndex now = rs.AddNew();
    Renumber(row, now);
    row = now;
  } else if (rs.StateAt(row) == RowState::New) {
    for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) rs.Restore(row, column);
  } else {
    rs.CancelUpdate(row);
  }
  for (const auto& [column, vtValue] : overlay.edits) rs.ValueAt(row, column, vtValue);
  if (overlay.state == RowState::Deleted) rs.Delete(row);
}

void UndoSteps::Renumber(RowIndex row, RowIndex now) {
  for (auto* steps : {&m_done, &m_undone}) {
    for (Step& step : *steps) {
      for (Row& entry : step) {
        if (entry.row == row) entry.row = now;
      }
    }
  }
}

}  // namespace orvane::controls
