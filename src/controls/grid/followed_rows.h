// Rows that are fetched again, told from those that were there: which came new, and where the cell,
// the selection and the first row in sight have gone. Used by a table's grid while it follows what
// comes; user-interface thread.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "controls/order/rows_states.h"

namespace orvane::controls {

class FollowedRows {
 public:
  /// Of more rows than these none is told from another: they are looked at by their numbers.
  static constexpr platform::RowIndex kMostRows = 100'000;

  /// Remembers the rows and how they are looked at. A row is known by the values of its key, or
  /// where that is not among the columns, by all of its values.
  FollowedRows(const platform::Recordset& rs, RowsState state, std::vector<platform::Text> key);

  /// How the rows that took their place are to be looked at. Where the first row was in sight the
  /// first one still is, so that what comes newest first is seen.
  RowsState StateIn(const platform::Recordset& rs) const;
  /// The rows that were not there.
  std::set<platform::RowIndex> NewIn(const platform::Recordset& rs) const;

 private:
  using Rows = std::unordered_map<std::string, platform::RowIndex>;
  std::vector<platform::ColumnIndex> KeyColumns(const platform::Recordset& rs) const;
  static std::string Identity(const platform::Recordset& rs, platform::RowIndex row,
                              const std::vector<platform::ColumnIndex>& columns);
  std::optional<Rows> RowsOf(const platform::Recordset& rs) const;

  std::vector<platform::Text> m_key;
  RowsState m_state;
  std::optional<Rows> m_rows;
  std::unordered_map<platform::RowIndex, std::string> m_identities;  ///< of the rows looked at
};

}  // namespace orvane::controls
