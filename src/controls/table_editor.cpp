#include "controls/table_editor.h"

#include <utility>

namespace orvane::controls {

using platform::Failure;
using platform::Long;
using platform::RecordsetPtr;
using platform::Text;

TableEditor::TableEditor(GridServices services) : GridControl(std::move(services), "Table rows") {}

void TableEditor::TableQuery(const platform::TableQueryPtr& query) {
  m_query = query;
}

void TableEditor::Requery() {
  if (!m_query) {
    m_core.Fail(Failure(platform::failure::kObjectNotSet,
                        "The grid has no table to show; select a table first."));
  }
  if (m_query->Table().empty()) {
    m_core.Fail(Failure(platform::failure::kInvalidArgument,
                        "The table's query names no table; remove its server from the tree "
                        "and connect it anew."));
  }
  m_core.Run({m_query->SqlText(), m_query->MaxRows(), m_query->QueryTimeout(), TextsWithoutRows()});
}

void TableEditor::AttachRecordset(const RecordsetPtr& rs, Long lUpdatability) {
  if (!rs) return m_core.Empty();
  m_core.Attach(rs, m_core.States().Find(lUpdatability, *rs), m_query ? m_query->SqlText() : Text(),
                TextsWithoutRows());
}

RecordsetPtr TableEditor::DetachRecordset(Long& lUpdatability) {
  const RecordsetPtr& rs = m_core.Recordset();
  lUpdatability = rs ? m_core.States().Keep(*rs, m_core.State()) : 0;
  return rs;
}

platform::Subscription TableEditor::OnHeadClick(std::function<void()> handler) {
  return m_core.Events().headClick.Connect(std::move(handler));
}

NoRowsTexts TableEditor::TextsWithoutRows() const {
  const Text sFilter = m_query ? m_query->FilterCondition() : Text();
  if (sFilter.empty()) return {"No rows", "The table is empty."};
  return {"No rows", "The filter is: " + QString::fromStdString(sFilter)};
}

}  // namespace orvane::controls
