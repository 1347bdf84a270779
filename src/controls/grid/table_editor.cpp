#include "controls/grid/table_editor.h"

#include <utility>

#include "controls/statements/sql_text.h"

namespace orvane::controls {

using platform::Failure;
using platform::Long;
using platform::RecordsetPtr;
using platform::Text;

TableEditor::TableEditor(GridServices services)
    : GridControl(std::move(services), "Table rows"),
      m_order(m_core, {[this](const ServerOrder::Criteria&) { return m_query != nullptr; },
                       [this](const std::vector<SortColumn>& columns) { Fetch(&columns); }}),
      m_time(m_core, {[this] { return m_query; }, [this] { Requery(); }, [this] { return Sent(); },
                      [this] { return !Editing() && m_query && !m_query->Table().empty(); }}),
      m_import(m_core,
               {[this] { return m_query; }, [this] { Requery(); }, [this] { return !Editing(); }}),
      m_count(m_core, [this] { return Counted(); }) {
  m_core.OnReconnected([this] { Requery(); });
}

void TableEditor::TableQuery(const platform::TableQueryPtr& query) {
  m_order.Forget();
  m_query = query;
  m_criterion.reset();
  m_time.Forget();
  if (!query) return;
  m_core.Subject({query->Table(), TableInSql(query->Catalog(), query->Table())});
}

void TableEditor::Requery() {
  Fetch(nullptr);
}

void TableEditor::Fetch(const std::vector<SortColumn>* sorted) {
  if (!m_query) {
    m_core.Fail(Failure(platform::failure::kObjectNotSet,
                        "The grid has no table to show; select a table first."));
  }
  if (m_query->Table().empty()) {
    m_core.Fail(Failure(platform::failure::kInvalidArgument,
                        "The table's query names no table; remove its server from the tree "
                        "and connect it anew."));
  }
  if (m_core.Running()) GridCore::FailBusy();
  if (!m_time.Learn()) return;
  const std::weak_ptr<int> life = m_life;
  FollowCriterion();
  GridQuery query = Sent();
  if (sorted) query.sorted = *sorted;
  m_core.Run(query);
  if (life.expired()) return;
  m_time.RowsShown();
  m_order.RowsFetched();
}

void TableEditor::FollowCriterion() {
  const Criterion criterion = m_query->SortCriterion();
  if (m_criterion && *m_criterion != criterion) {
    m_order.Forget();
    // Also one that was made here.
    m_core.Window().Rows().SortedByServer({});
  }
  m_criterion = criterion;
}

GridQuery TableEditor::Sent() const {
  Viewing viewing = m_time.View();
  viewing.order = m_order.Now();
  return {StatementOf(*m_query, viewing), m_query->MaxRows(), m_query->QueryTimeout(),
          TextsWithoutRows(), TableOfRows()};
}

// ---- order

platform::Boolean TableEditor::CanSort() const {
  const RowView& rows = m_core.Window().Rows();
  return rows.currentIndex().isValid() && !m_core.Running();
}

void TableEditor::SortByCurrent(bool bAscending) {
  if (!CanSort()) {
    throw Failure(platform::failure::kNotSupported,
                  "There is no column to sort by; go to a cell of the column first.");
  }
  RowView& rows = m_core.Window().Rows();
  rows.SortBy(rows.currentIndex().column(), bAscending);
}

void TableEditor::AttachRecordset(const RecordsetPtr& rs, Long lUpdatability) {
  if (!rs) return m_core.Empty();
  const RowsState* found = m_core.States().Find(lUpdatability, *rs);
  // Whoever hears of the rows may keep other states meanwhile, or drop the grid.
  const auto state = found ? std::optional(*found) : std::nullopt;
  const std::weak_ptr<int> life = m_life;
  if (!state) m_order.Forget();
  m_core.Attach(rs, state ? &*state : nullptr, m_query ? m_query->SqlText() : Text(),
                TextsWithoutRows(), TableOfRows());
  if (life.expired()) return;
  m_time.Restore(state ? &*state : nullptr);
  m_order.Now(state ? state->viewing.order : ServerOrder::Criteria());
  m_criterion = state ? state->criterion : std::nullopt;
}

RecordsetPtr TableEditor::DetachRecordset(Long& lUpdatability) {
  // Of many rows that handles events, and one of them may be the end of this grid.
  const std::weak_ptr<int> life = m_life;
  lUpdatability = 0;
  m_core.KeepUnsent(true);
  if (life.expired()) return nullptr;
  const RecordsetPtr& rs = m_core.Recordset();
  RowsState state = m_core.State();
  m_time.Keep(state);
  state.viewing.order = m_order.Now();
  state.criterion = m_criterion;
  lUpdatability = rs ? m_core.States().Keep(*rs, std::move(state)) : 0;
  return rs;
}

RowCount::Counted TableEditor::Counted() const {
  if (!m_query || m_query->Table().empty()) return {};
  return {TableInSql(m_query->Catalog(), m_query->Table()), FilterWithin(*m_query, m_time.View())};
}

bool TableEditor::Editing() const {
  return m_core.Editing().IsTyping() || m_core.Editing().Session().PendingCount() > 0;
}

platform::Subscription TableEditor::OnHeadClick(std::function<void()> handler) {
  return m_core.Events().headClick.Connect(std::move(handler));
}

platform::Subscription TableEditor::OnFilterKept(std::function<void()> handler) {
  return m_core.Events().filterKept.Connect(std::move(handler));
}

std::optional<RowTable> TableEditor::TableOfRows() const {
  if (!m_query || m_query->Table().empty()) return std::nullopt;
  return RowTable{m_query->Catalog(), m_query->Table(), {}};
}

NoRowsTexts TableEditor::TextsWithoutRows() const {
  const Text sFilter = m_query ? FilterWithin(*m_query, m_time.View()) : Text();
  if (sFilter.empty()) return {"No rows", "The table is empty."};
  return {"No rows", "The filter is: " + QString::fromStdString(sFilter)};
}

}  // namespace orvane::controls
