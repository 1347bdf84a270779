#include "controls/editing/undo_steps.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace orvane::controls {

using platform::ColumnIndex;
using platform::Recordset;
using platform::RowIndex;
using platform::RowState;

namespace {

// Runs the change and keeps what came of it, of one that fails as far as it went.
template <class Keep>
void ChangeAndKeep(const std::function<void()>& change, const Keep& keep) {
  try {
    change();
  } catch (...) {
    keep();
    throw;
  }
  keep();
}

}  // namespace

void UndoSteps::Change(Recordset& rs, std::span<const RowIndex> rows,
                       const std::function<void()>& change) {
  Step step;
  for (const RowIndex row : rows) step[row].before = OverlayOf(rs, row);
  ChangeAndKeep(change, [&] {
    for (auto& [row, overlays] : step) overlays.behind = OverlayOf(rs, row);
    std::erase_if(step,
                  [](const auto& entry) { return entry.second.before == entry.second.behind; });
    Push(std::move(step));
  });
}

void UndoSteps::Push(Step step) {
  if (step.empty()) return;
  m_undone.clear();
  if (m_done.size() == kMostSteps) m_done.erase(m_done.begin());
  m_done.push_back(std::move(step));
}

void UndoSteps::ChangeRow(Recordset& rs, RowIndex row, const std::function<void()>& change) {
  Overlay before = OverlayOf(rs, row);
  ChangeAndKeep(change, [&] {
    Overlay behind = OverlayOf(rs, row);
    if (before == behind) return;
    m_open->emplace_hint(m_open->end(), row, Overlays{std::move(before), std::move(behind)});
  });
}

void UndoSteps::End() {
  Push(*std::exchange(m_open, std::nullopt));
}

bool UndoSteps::TakeBack(Recordset& rs, std::size_t nMost) {
  // A new row that comes back changes its number in the steps before this one.
  std::vector<std::pair<RowIndex, RowIndex>> renumbered;
  for (; nMost > 0 && !m_open->empty(); --nMost) {
    const auto first = m_open->begin();
    const RowIndex now = Lay(rs, first->first, first->second.before);
    if (now != first->first) renumbered.emplace_back(first->first, now);
    m_open->erase(first);
  }
  Renumber(renumbered);
  if (!m_open->empty()) return false;
  m_open.reset();
  return true;
}

std::vector<RowIndex> UndoSteps::Undo(Recordset& rs) {
  if (m_done.empty()) return {};
  BeginMove(true);
  MoveSome(rs, m_moving->rows.size());
  return EndMove();
}

std::vector<RowIndex> UndoSteps::Redo(Recordset& rs) {
  if (m_undone.empty()) return {};
  BeginMove(false);
  MoveSome(rs, m_moving->rows.size());
  return EndMove();
}

std::size_t UndoSteps::RowsOfNext(bool bUndo) const {
  const auto& steps = bUndo ? m_done : m_undone;
  return steps.empty() ? 0 : steps.back().size();
}

void UndoSteps::BeginMove(bool bUndo) {
  Steps(bUndo).push_back(std::move(Steps(!bUndo).back()));
  Steps(!bUndo).pop_back();
  Moving moving{{}, 0, bUndo};
  for (const auto& [row, overlays] : Steps(bUndo).back()) moving.rows.push_back(row);
  m_moving = std::move(moving);
}

bool UndoSteps::MoveSome(Recordset& rs, std::size_t nMost) {
  Moving& moving = *m_moving;
  const Step& step = Steps(moving.bUndo).back();
  const std::size_t nEnd = std::min(moving.rows.size(), moving.nNext + nMost);
  // A row that comes back changes its number in every step, this one included.
  std::vector<std::pair<RowIndex, RowIndex>> renumbered;
  try {
    for (; moving.nNext < nEnd; ++moving.nNext) {
      RowIndex& row = moving.rows[moving.nNext];
      const Overlays& overlays = step.at(row);
      const RowIndex now = Lay(rs, row, moving.bUndo ? overlays.before : overlays.behind);
      if (now != row) renumbered.emplace_back(row, now);
      row = now;
    }
  } catch (...) {
    Renumber(renumbered);
    m_moving.reset();
    throw;
  }
  Renumber(renumbered);
  return moving.nNext == moving.rows.size();
}

void UndoSteps::TurnBack() {
  Moving& moving = *m_moving;
  moving.rows.resize(moving.nNext);
  std::ranges::sort(moving.rows);
  moving.nNext = 0;
  moving.bUndo = !moving.bUndo;
  Steps(moving.bUndo).push_back(std::move(Steps(!moving.bUndo).back()));
  Steps(!moving.bUndo).pop_back();
}

std::vector<RowIndex> UndoSteps::EndMove() {
  return std::move(std::exchange(m_moving, std::nullopt)->rows);
}

// There may be many rows and many steps, but hardly ever steps of many rows.
void UndoSteps::Forget(std::span<const RowIndex> rows) {
  for (auto* steps : {&m_done, &m_undone}) {
    for (Step& step : *steps) {
      if (step.size() < rows.size()) {
        std::erase_if(
            step, [&](const auto& entry) { return std::ranges::binary_search(rows, entry.first); });
      } else {
        for (const RowIndex row : rows) step.erase(row);
      }
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
      for (const auto& [row, overlays] : step) rows.insert(row);
    }
  }
  return rows;
}

UndoSteps UndoSteps::Moved(const std::unordered_map<RowIndex, RowIndex>& rows,
                           const std::vector<std::optional<ColumnIndex>>& columns) const {
  UndoSteps moved;
  moved.m_done = m_done;
  moved.m_undone = m_undone;
  for (auto* steps : {&moved.m_done, &moved.m_undone}) {
    for (Step& step : *steps) {
      Step other;
      for (auto& [row, overlays] : step) {
        const auto to = rows.find(row);
        if (to == rows.end()) continue;
        for (auto* edits : {&overlays.before.edits, &overlays.behind.edits}) {
          for (auto& [column, vtValue] : *edits) {
            const auto& columnTo = columns[static_cast<std::size_t>(column)];
            if (!columnTo) return {};
            column = *columnTo;
          }
          // As they are compared with what lies over a row.
          std::ranges::sort(*edits, {}, &std::pair<ColumnIndex, platform::Value>::first);
        }
        other.emplace(to->second, std::move(overlays));
      }
      step = std::move(other);
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
  if (overlay.state == RowState::Deleted && !rs.IsPending(row)) {
    return {};
  }
  overlay.bThere = true;
  for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
    if (rs.IsEdited(row, column)) overlay.edits.emplace_back(column, rs.ValueAt(row, column));
  }
  return overlay;
}

RowIndex UndoSteps::Lay(Recordset& rs, RowIndex row, const Overlay& overlay) {
  const bool bWasThere = OverlayOf(rs, row).bThere;
  if (!overlay.bThere) {
    if (bWasThere) rs.CancelUpdate(row);
    return row;
  }
  if (!bWasThere) {
    row = rs.AddNew();
  } else if (rs.StateAt(row) == RowState::New) {
    for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) rs.Restore(row, column);
  } else {
    rs.CancelUpdate(row);
  }
  for (const auto& [column, vtValue] : overlay.edits) rs.ValueAt(row, column, vtValue);
  if (overlay.state == RowState::Deleted) rs.Delete(row);
  return row;
}

void UndoSteps::Renumber(std::span<const std::pair<RowIndex, RowIndex>> rows) {
  if (rows.empty()) return;
  const auto before = &std::pair<RowIndex, RowIndex>::first;
  for (auto* steps : {&m_done, &m_undone}) {
    for (Step& step : *steps) {
      Step renumbered;
      const auto move = [&](Step::iterator entry, RowIndex now) {
        auto node = step.extract(entry);
        node.key() = now;
        renumbered.insert(std::move(node));
      };
      if (step.size() < rows.size()) {
        for (auto entry = step.begin(); entry != step.end();) {
          const auto at = entry++;
          const auto found = std::ranges::lower_bound(rows, at->first, {}, before);
          if (found != rows.end() && found->first == at->first) move(at, found->second);
        }
      } else {
        for (const auto& [row, now] : rows) {
          if (const auto at = step.find(row); at != step.end()) move(at, now);
        }
      }
      step.merge(renumbered);
    }
  }
}

}  // namespace orvane::controls
