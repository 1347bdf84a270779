// Which row of a recordset stands where in a grid that is sorted or filtered. Made off the
// user-interface thread, never changed, shared by the model and by the states of looking at rows.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <memory_resource>
#include <optional>
#include <utility>
#include <vector>

#include "platform/ado/recordset.h"

namespace orvane::controls {

class RowOrder {
 public:
  /// A grid numbers its rows with 31 bits, so that this is wide enough.
  using Number = std::uint32_t;
  using Numbers = std::pmr::vector<Number>;

  /// The rows as they stand. `arranged` rows of the recordset were looked at for it; those that
  /// came since, as new ones do, stand behind all others. The memory is that of the rows.
  RowOrder(Numbers rows, platform::RowIndex arranged,
           std::shared_ptr<std::pmr::memory_resource> memory = nullptr)
      : m_memory(std::move(memory)), m_rows(std::move(rows)), m_arranged(arranged) {}

  RowOrder(const RowOrder&) = delete;
  RowOrder& operator=(const RowOrder&) = delete;

  /// Rows that stand in the grid, of a recordset with so many.
  platform::RowIndex Count(platform::RowIndex recordCount) const {
    return Standing() + std::max<platform::RowIndex>(0, recordCount - m_arranged);
  }
  platform::RowIndex RecordRow(platform::RowIndex place) const {
    return place < Standing() ? m_rows[static_cast<std::size_t>(place)]
                              : m_arranged + (place - Standing());
  }
  /// None for a row that was filtered out.
  std::optional<platform::RowIndex> PlaceOf(platform::RowIndex recordRow) const {
    if (recordRow >= m_arranged) return Standing() + (recordRow - m_arranged);
    const auto found = std::ranges::find(m_rows, static_cast<Number>(recordRow));
    if (found == m_rows.end()) return std::nullopt;
    return found - m_rows.begin();
  }
  /// Memory taken.
  std::size_t Bytes() const { return m_rows.capacity() * sizeof(Number); }

 private:
  platform::RowIndex Standing() const { return static_cast<platform::RowIndex>(m_rows.size()); }

  std::shared_ptr<std::pmr::memory_resource> m_memory;  ///< outlives the rows in it
  Numbers m_rows;
  platform::RowIndex m_arranged;
};

}  // namespace orvane::controls
