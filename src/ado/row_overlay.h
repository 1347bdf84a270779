// What lies over the fetched rows of a recordset until it is sent: edited values, new rows, rows
// to be deleted; and what the server has made of rows that were sent since. Sparse: rows that
// nobody touched take no room and no time.
// Used by ColumnarRecordset, which knows the fetched values; one thread at a time.
#pragma once

#include <map>
#include <span>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/ado/recordset.h"

namespace orvane::ado {

class RowOverlay {
 public:
  /// True while no row is other than it was fetched.
  bool Empty() const {
    return m_pending.empty() && m_stored.empty() && m_gone.empty() && m_newCount == 0;
  }
  /// New rows ever added; their numbers are those behind the fetched rows.
  platform::RowIndex NewCount() const { return m_newCount; }
  platform::RowState StateAt(platform::RowIndex row) const;
  /// The value over the cell that was not sent yet, or null; valid until the row changes.
  const platform::Value* EditAt(platform::RowIndex row, platform::ColumnIndex column) const;
  /// What the cell holds at the server since its row was sent, or null for what was fetched; valid
  /// until the row changes.
  const platform::Value* StoredAt(platform::RowIndex row, platform::ColumnIndex column) const;
  /// The rows around that one over which no values lie or have lain, from the first up to, without,
  /// the second; both the same where some do over the row itself.
  std::pair<platform::RowIndex, platform::RowIndex> UntouchedAround(platform::RowIndex row) const;
  /// The rows with something to send, in the order of their numbers.
  std::vector<platform::RowIndex> PendingRows() const;
  bool IsPending(platform::RowIndex row) const { return m_pending.contains(row); }
  platform::RowIndex PendingCount() const {
    return static_cast<platform::RowIndex>(m_pending.size());
  }

  /// Fails with failure::kNotSupported when the row is deleted.
  void Set(platform::RowIndex row, platform::ColumnIndex column, platform::Value vtValue);
  void Restore(platform::RowIndex row, platform::ColumnIndex column);
  /// The number of the new row behind that many fetched ones.
  platform::RowIndex AddNew(platform::RowIndex fetched);
  /// A new row has nothing that the server could delete: it is cancelled.
  void Delete(platform::RowIndex row);
  void Cancel(platform::RowIndex row);
  /// The values are those of all columns, or none: then those that lie over the row.
  void Accept(platform::RowIndex row, std::span<const platform::Value> stored);

 private:
  using Cells = std::map<platform::ColumnIndex, platform::Value>;
  struct Pending {
    platform::RowState state = platform::RowState::Edited;
    Cells edits;
  };

  std::map<platform::RowIndex, Pending> m_pending;
  std::map<platform::RowIndex, Cells> m_stored;
  std::unordered_set<platform::RowIndex> m_gone;  // deleted for good
  platform::RowIndex m_newCount = 0;
};

}  // namespace orvane::ado
