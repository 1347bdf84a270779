#include "controls/table_editor.h"

#include <utility>

#include "controls/sql_text.h"
#include "controls/time_column.h"

namespace orvane::controls {

using platform::Failure;
using platform::Long;
using platform::RecordsetPtr;
using platform::Text;

TableEditor::TableEditor(GridServices services) : GridControl(std::move(services), "Table rows") {}

void TableEditor::TableQuery(const platform::TableQueryPtr& query) {
  m_query = query;
  if (!query) return;
  m_core.Subject({query->Table(), TableInSql(query->Catalog(), query->Table())});
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
  if (m_core.Running() || *m_asking) GridCore::FailBusy();
  if (!LearnTimeColumn()) return;
  m_core.Run({StatementOf(*m_query, m_viewing), m_query->MaxRows(), m_query->QueryTimeout(),
              TextsWithoutRows()});
}

bool TableEditor::LearnTimeColumn() {
  m_viewing.timeColumn.reset();
  if (m_query->SortCriterion() || !m_core.Connection()) return true;
  const std::weak_ptr<bool> life = m_asking;
  std::optional<Text> column;
  try {
    const struct Asking {
      explicit Asking(std::shared_ptr<bool> bAsking) : b(std::move(bAsking)) { *b = true; }
      ~Asking() { *b = false; }
      Asking(const Asking&) = delete;
      Asking& operator=(const Asking&) = delete;
      std::shared_ptr<bool> b;
    } asking(m_asking);
    const platform::ConnectionPtr cn = m_core.Connection();
    column = TimeColumnOf(*cn, m_query->Catalog(), m_query->Table());
  } catch (const Failure& failure) {
    // Whatever else is wrong, the statement will tell.
    if (!life.expired() && failure.Number() == platform::failure::kCancelled) m_core.Fail(failure);
  } catch (const std::exception&) {
  }
  if (life.expired()) return false;
  m_viewing.timeColumn = std::move(column);
  return true;
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
