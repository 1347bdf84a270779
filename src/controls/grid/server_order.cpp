#include "controls/grid/server_order.h"

#include <utility>

#include "controls/grid/grid_core.h"
#include "controls/grid/grid_window.h"
#include "platform/case_folding.h"

namespace orvane::controls {

using platform::RecordsetPtr;

namespace {

/// Whether the name means this column and no other one, to any server.
bool IsTold(const platform::Recordset& rs, platform::ColumnIndex column) {
  const platform::Text sName = platform::FoldCase(rs.FieldAt(column).Name());
  if (sName.empty()) return false;
  for (platform::ColumnIndex other = 0; other < rs.FieldCount(); ++other) {
    if (other != column && platform::FoldCase(rs.FieldAt(other).Name()) == sName) return false;
  }
  return true;
}

}  // namespace

ServerOrder::ServerOrder(GridCore& core, Grid grid) : m_core(core), m_grid(std::move(grid)) {
  core.Window().Rows().OnSort(
      [this](const std::vector<SortColumn>& columns) { return Sort(columns); });
}

void ServerOrder::Forget() {
  m_order.clear();
  m_asked.clear();
  RowView& rows = m_core.Window().Rows();
  if (rows.Arranged().bSortedByServer) rows.SortedByServer({});
}

QString ServerOrder::WhyNotAsked() const {
  const platform::ConnectionPtr cn = m_core.Connection();
  if (!cn || !cn->IsOpen()) return "the connection is closed; reconnect first.";
  // What is not stored would be lost with the rows it lies over.
  if (m_core.Recordset()->PendingCount() > 0) {
    return "some are not stored; store or discard these first.";
  }
  return {};
}

bool ServerOrder::Sort(const std::vector<SortColumn>& columns) {
  const RecordsetPtr rs = m_core.Recordset();
  if (!rs || m_core.Running()) return false;
  const bool bSortsAll = !TakesServer(columns, *rs) || (m_grid.costsEdits && m_grid.costsEdits());
  const bool bAllAreHere = rs->State() == platform::FetchState::Complete && bSortsAll;
  if (bAllAreHere && m_order.empty()) return false;
  if (const QString sWhyNot = WhyNotAsked(); !sWhyNot.isEmpty()) {
    if (!columns.empty()) return SortHere();
    // How they stood before, only the server knows.
    m_core.Window().Remark("The rows stay in the server's order: " + sWhyNot, true);
    return true;
  }
  Criteria order;
  for (const SortColumn& column : columns) {
    if (!IsTold(*rs, column.column)) return SortHere();
    order.push_back({rs->FieldAt(column.column).Name(), column.bAscending});
  }
  const std::weak_ptr<int> life = m_life;
  const bool bTakes = m_grid.takes(order);
  if (life.expired() || m_core.Recordset() != rs) return true;
  m_asked = columns;
  if (!bTakes) return SortHere();
  Criteria before = std::exchange(m_order, std::move(order));
  try {
    m_grid.fetch(columns);
  } catch (const std::exception& exception) {
    // The rows stand as before, and the grid shows the sentence; nobody is behind an arrow to be
    // told.
    if (life.expired()) return true;
    m_order = std::move(before);
    m_core.Note(exception);
  }
  return true;
}

void ServerOrder::RowsFetched() {
  const RecordsetPtr rs = m_core.Recordset();
  if (!rs || rs->State() != platform::FetchState::Truncated) return;
  const Arrangement& arranged = m_core.Window().Rows().Arranged();
  const std::vector<SortColumn> columns = arranged.sort;
  if (columns.empty() || arranged.bSortedByServer || columns == m_asked) return;
  if (WhyNotAsked().isEmpty()) Sort(columns);
}

bool ServerOrder::SortHere() {
  // Rows to come are not asked for in an order that these do not stand in any more.
  m_order.clear();
  return false;
}

}  // namespace orvane::controls
