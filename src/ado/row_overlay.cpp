#include "ado/row_overlay.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

#include "platform/failure.h"

namespace orvane::ado {

using platform::ColumnIndex;
using platform::RowIndex;
using platform::RowState;
using platform::Value;

RowState RowOverlay::StateAt(RowIndex row) const {
  if (const auto found = m_pending.find(row); found != m_pending.end()) return found->second.state;
  return m_gone.contains(row) ? RowState::Deleted : RowState::Fetched;
}

const Value* RowOverlay::EditAt(RowIndex row, ColumnIndex column) const {
  const auto found = m_pending.find(row);
  if (found == m_pending.end()) return nullptr;
  const auto cell = found->second.edits.find(column);
  return cell == found->second.edits.end() ? nullptr : &cell->second;
}

const Value* RowOverlay::StoredAt(RowIndex row, ColumnIndex column) const {
  const auto found = m_stored.find(row);
  if (found == m_stored.end()) return nullptr;
  const auto cell = found->second.find(column);
  return cell == found->second.end() ? nullptr : &cell->second;
}

std::pair<RowIndex, RowIndex> RowOverlay::UntouchedAround(RowIndex row) const {
  if (m_pending.contains(row) || m_stored.contains(row)) return {row, row};
  RowIndex begin = 0;
  RowIndex end = std::numeric_limits<RowIndex>::max();
  const auto leaveOut = [&](RowIndex touched) {
    if (touched < row) begin = std::max(begin, touched + 1);
    if (touched > row) end = std::min(end, touched);
  };
  const auto leaveOutOf = [&](const auto& rows) {
    const auto next = rows.lower_bound(row);
    if (next != rows.end()) leaveOut(next->first);
    if (next != rows.begin()) leaveOut(std::prev(next)->first);
  };
  leaveOutOf(m_pending);
  leaveOutOf(m_stored);
  return {begin, end};
}

std::vector<RowIndex> RowOverlay::PendingRows() const {
  std::vector<RowIndex> rows;
  rows.reserve(m_pending.size());
  for (const auto& [row, pending] : m_pending) rows.push_back(row);
  return rows;
}

void RowOverlay::Set(RowIndex row, ColumnIndex column, Value vtValue) {
  if (StateAt(row) == RowState::Deleted) {
    throw platform::Failure(
        platform::failure::kNotSupported,
        "The row is deleted and takes no values: discard the deletion, or edit another row.");
  }
  m_pending[row].edits.insert_or_assign(column, std::move(vtValue));
}

void RowOverlay::Restore(RowIndex row, ColumnIndex column) {
  const auto found = m_pending.find(row);
  if (found == m_pending.end()) return;
  found->second.edits.erase(column);
  if (found->second.state == RowState::Edited && found->second.edits.empty()) {
    m_pending.erase(found);
  }
}

RowIndex RowOverlay::AddNew(RowIndex fetched) {
  const RowIndex row = fetched + m_newCount;
  m_pending[row].state = RowState::New;
  ++m_newCount;
  return row;
}

void RowOverlay::Delete(RowIndex row) {
  switch (StateAt(row)) {
    case RowState::New:
      Cancel(row);
      break;
    case RowState::Fetched:
    case RowState::Edited:
      m_pending[row].state = RowState::Deleted;
      break;
    case RowState::Deleted:
      break;
  }
}

void RowOverlay::Cancel(RowIndex row) {
  if (StateAt(row) == RowState::New) m_gone.insert(row);
  m_pending.erase(row);
}

void RowOverlay::Accept(RowIndex row, std::span<const Value> stored) {
  if (StateAt(row) == RowState::Deleted) {
    m_gone.insert(row);
    m_pending.erase(row);
    return;
  }
  Cells edits;
  if (const auto found = m_pending.find(row); found != m_pending.end()) {
    edits = std::move(found->second.edits);
    m_pending.erase(found);
  }
  Cells& cells = m_stored[row];
  if (stored.empty()) {
    for (auto& [column, vtValue] : edits) cells.insert_or_assign(column, std::move(vtValue));
  }
  for (std::size_t i = 0; i < stored.size(); ++i) {
    cells.insert_or_assign(static_cast<ColumnIndex>(i), stored[i]);
  }
}

}  // namespace orvane::ado
