#include "controls/grid/followed_rows.h"

#include <algorithm>
#include <numeric>

#include "platform/conversions.h"

namespace orvane::controls {

using platform::ColumnIndex;
using platform::Recordset;
using platform::RowIndex;
using platform::Value;

FollowedRows::FollowedRows(const Recordset& rs, RowsState state, std::vector<platform::Text> key)
    : m_key(std::move(key)), m_state(std::move(state)), m_rows(RowsOf(rs)) {
  if (!m_rows) return;
  for (const auto& [sIdentity, row] : *m_rows) m_identities.emplace(row, sIdentity);
}

std::vector<ColumnIndex> FollowedRows::KeyColumns(const Recordset& rs) const {
  std::vector<ColumnIndex> columns;
  for (const platform::Text& sName : m_key) {
    for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
      if (rs.FieldAt(column).Name() == sName) {
        columns.push_back(column);
        break;
      }
    }
  }
  if (columns.empty() || columns.size() != m_key.size()) {
    columns.resize(static_cast<std::size_t>(rs.FieldCount()));
    std::iota(columns.begin(), columns.end(), 0);
  }
  return columns;
}

std::string FollowedRows::Identity(const Recordset& rs, RowIndex row,
                                   const std::vector<ColumnIndex>& columns) {
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

std::optional<FollowedRows::Rows> FollowedRows::RowsOf(const Recordset& rs) const {
  if (rs.FetchedCount() > kMostRows) return std::nullopt;
  const std::vector<ColumnIndex> columns = KeyColumns(rs);
  Rows rows;
  rows.reserve(static_cast<std::size_t>(rs.FetchedCount()));
  for (RowIndex row = 0; row < rs.FetchedCount(); ++row) {
    rows.emplace(Identity(rs, row, columns), row);
  }
  return rows;
}

RowsState FollowedRows::StateIn(const Recordset& rs) const {
  RowsState state = m_state;
  const auto rows = m_rows ? RowsOf(rs) : std::nullopt;
  const auto place = [&](int nRow) -> int {
    if (!rows) return nRow < rs.RecordCount() ? nRow : -1;
    const auto identity = m_identities.find(nRow);
    if (identity == m_identities.end()) return -1;
    const auto found = rows->find(identity->second);
    return found == rows->end() ? -1 : static_cast<int>(found->second);
  };
  state.nCurrentRow = place(m_state.nCurrentRow);
  if (state.nCurrentRow < 0 && rs.RecordCount() > 0 && m_state.nCurrentRow >= 0) {
    state.nCurrentRow =
        static_cast<int>(std::min<RowIndex>(m_state.nCurrentRow, rs.RecordCount() - 1));
  }
  state.selection.clear();
  for (const CellRange& range : m_state.selection) {
    const bool bAll = range.nTop == 0 &&
                      range.nBottom + 1 >= static_cast<int>(m_identities.size()) && m_rows &&
                      m_identities.size() > 1;
    if (bAll && rs.RecordCount() > 0) {
      state.selection.push_back(
          {0, range.nLeft, static_cast<int>(rs.RecordCount()) - 1, range.nRight});
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
  if (m_state.nTopRow > 0) {
    const int nTop = place(m_state.nTopRow);
    state.nTopRow = nTop >= 0 ? nTop : m_state.nTopRow;
  }
  return state;
}

std::set<RowIndex> FollowedRows::NewIn(const Recordset& rs) const {
  std::set<RowIndex> fresh;
  if (!m_rows || rs.FetchedCount() > kMostRows) return fresh;
  const std::vector<ColumnIndex> columns = KeyColumns(rs);
  for (RowIndex row = 0; row < rs.FetchedCount(); ++row) {
    if (!m_rows->contains(Identity(rs, row, columns))) fresh.insert(row);
  }
  return fresh;
}

}  // namespace orvane::controls
