#include "controls/order/rows_states.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace orvane::controls {

using platform::Long;
using platform::Recordset;

Long RowsStates::Keep(const Recordset& rs, RowsState state) {
  const Identity identity = IdentityOf(rs);
  const auto known = std::ranges::find_if(
      m_states, [&](const auto& entry) { return entry.second.identity == identity; });
  if (known != m_states.end()) {
    known->second.state = std::move(state);
    LetOrdersGo(known->first);
    return known->first;
  }
  if (m_states.size() >= kMaxStates) m_states.erase(m_states.begin());
  const Long lNumber = FreeNumber();
  m_states.insert_or_assign(lNumber, Entry{identity, std::move(state)});
  LetOrdersGo(lNumber);
  return lNumber;
}

void RowsStates::LetOrdersGo(Long lKept) {
  std::size_t bytes = 0;
  for (const auto& [lNumber, entry] : m_states) {
    if (entry.state.order) bytes += entry.state.order->Bytes();
  }
  for (auto& [lNumber, entry] : m_states) {
    if (bytes <= kMostOrderBytes) return;
    if (!entry.state.order || lNumber == lKept) continue;
    bytes -= entry.state.order->Bytes();
    entry.state.order.reset();
    entry.state.bOrderLost = true;
  }
}

const RowsState* RowsStates::Find(Long lNumber, const Recordset& rs) const {
  const auto found = m_states.find(lNumber);
  if (found == m_states.end() || found->second.identity != IdentityOf(rs)) return nullptr;
  return &found->second.state;
}

const RowsState* RowsStates::Find(const Recordset& rs) const {
  const Identity identity = IdentityOf(rs);
  for (const auto& [lNumber, entry] : m_states) {
    if (entry.identity == identity) return &entry.state;
  }
  return nullptr;
}

RowsStates::Identity RowsStates::IdentityOf(const Recordset& rs) {
  return {&rs, rs.FetchedCount(), rs.FieldCount(), rs.Elapsed()};
}

Long RowsStates::FreeNumber() {
  do {
    m_lLast = m_lLast == std::numeric_limits<Long>::max() ? 1 : m_lLast + 1;
  } while (m_states.contains(m_lLast));
  return m_lLast;
}

}  // namespace orvane::controls
