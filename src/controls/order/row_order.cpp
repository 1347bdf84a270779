#include "controls/order/row_order.h"

#include <numeric>

namespace orvane::controls {

using platform::RowIndex;

RowOrder::Numbers RowOrder::ByRow(const Numbers& rows, RowIndex arranged,
                                  const std::atomic<bool>& bStop) {
  struct Stopped {};
  const auto endWhenStopped = [&] {
    if (bStop.load(std::memory_order_relaxed)) throw Stopped();
  };
  Numbers byRow(rows.size(), rows.get_allocator());
  try {
    if (static_cast<RowIndex>(rows.size()) == arranged) {
      // None is left out, so that each has its number for a place.
      for (std::size_t place = 0; place < rows.size(); ++place) {
        endWhenStopped();
        byRow[rows[place]] = static_cast<Number>(place);
      }
      return byRow;
    }
    std::iota(byRow.begin(), byRow.end(), Number{0});
    std::ranges::sort(byRow, [&](Number one, Number other) {
      endWhenStopped();
      return rows[one] < rows[other];
    });
  } catch (const Stopped&) {
    // Nobody waits for it any more.
  }
  return byRow;
}

std::optional<RowIndex> RowOrder::PlaceOf(RowIndex recordRow) const {
  if (recordRow >= m_arranged) return Standing() + (recordRow - m_arranged);
  const auto row = static_cast<Number>(recordRow);
  if (m_byRow.empty()) {
    const auto found = std::ranges::lower_bound(m_rows, row);
    if (found == m_rows.end() || *found != row) return std::nullopt;
    return found - m_rows.begin();
  }
  const auto rowAt = [this](Number place) { return m_rows[place]; };
  const auto found = std::ranges::lower_bound(m_byRow, row, {}, rowAt);
  if (found == m_byRow.end() || rowAt(*found) != row) return std::nullopt;
  return RowIndex{*found};
}

}  // namespace orvane::controls
