// Which row of a recordset stands where in a grid that is sorted or filtered. Made off the
// user-interface thread where there are many, never changed, shared by the model and by the states
// of looking at rows.
#pragma once

#include <algorithm>
#include <atomic>
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
  /// came since, as new ones do, stand behind all others. `byRow` is what ByRow gives of them, or
  /// nothing where they stand in the order of their numbers. The memory is that of the rows.
  RowOrder(Numbers rows, Numbers byRow, platform::RowIndex arranged,
           std::shared_ptr<std::pmr::memory_resource> memory = nullptr)
      : m_memory(std::move(memory)),
        m_rows(std::move(rows)),
        m_byRow(std::move(byRow)),
        m_arranged(arranged) {}

  RowOrder(const RowOrder&) = delete;
  RowOrder& operator=(const RowOrder&) = delete;

  /// The places of the rows by their numbers, in the memory of the rows, so that a row is found
  /// among them. Takes as long as the rows are many; something else comes of it when it is stopped.
  static Numbers ByRow(const Numbers& rows, platform::RowIndex arranged,
                       const std::atomic<bool>& bStop);

  /// Rows that stand in the grid, of a recordset with so many.
  platform::RowIndex Count(platform::RowIndex recordCount) const {
    return Standing() + std::max<platform::RowIndex>(0, recordCount - m_arranged);
  }
  platform::RowIndex RecordRow(platform::RowIndex place) const {
    return place < Standing() ? m_rows[static_cast<std::size_t>(place)]
                              : m_arranged + (place - Standing());
  }
  /// None for a row that was filtered out. Takes no longer for many rows.
  std::optional<platform::RowIndex> PlaceOf(platform::RowIndex recordRow) const;
  /// Memory taken.
  std::size_t Bytes() const { return (m_rows.capacity() + m_byRow.capacity()) * sizeof(Number); }

 private:
  platform::RowIndex Standing() const { return static_cast<platform::RowIndex>(m_rows.size()); }

  std::shared_ptr<std::pmr::memory_resource> m_memory;  ///< outlives the rows in it
  Numbers m_rows;
  Numbers m_byRow;
  platform::RowIndex m_arranged;
};

}  // namespace orvane::controls
