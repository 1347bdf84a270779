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
  for (const RowIndex row : rows) step[row].before = OverlayOf(rs, row);
  const auto keep = [&] {
    for (auto& [row, overlays] : step) overlays.behind = OverlayOf(rs, row);
    std::erase_if(step,
                  [](const auto& entry) { return entry.second.before == entry.second.behind; });
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
  // A row that comes back changes its number in every step, this one included.
  const std::size_t nStep = to.size() - 1;
  std::vector<RowIndex> rows;
  for (const auto& [row, overlays] : to[nStep]) rows.push_back(row);
  std::vector<std::pair<RowIndex, RowIndex>> renumbered;
  try {
    for (RowIndex& row : rows) {
      const Overlays& overlays = to[nStep].at(row);
      const RowIndex now = Lay(rs, row, bBack ? overlays.before : overlays.behind);
      if (now != row) renumbered.emplace_back(row, now);
      row = now;
    }
  } catch (...) {
    Renumber(renumbered);
    throw;
  }
  Renumber(renumbered);
  return rows;
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
  UndoSteps moved{*this};
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
