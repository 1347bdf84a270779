// The grids in the result pane: bound to their node when shown, their rows kept on it when hidden.
#include "snapin/node_types.h"
#include "snapin/snap_in.h"
#include "snapin/tags.h"

namespace orvane::snapin {

using platform::Long;
using platform::ResultView;

namespace {

/// The view's control as a grid of that kind; none when there is no such control.
template <class Grid>
std::shared_ptr<Grid> ControlAs(const ResultView& view) {
  std::shared_ptr<Grid> grid;
  Suppressed([&] { grid = std::dynamic_pointer_cast<Grid>(view.Control()); });
  return grid;
}

}  // namespace

void SnapIn::ResultViews_InitializeControl(ResultView& view) {
  Guard([&] {
    const auto item = InTree(view.ScopeItem());
    // An item that stands for nothing is told of when its view is shown, and once.
    if (item->NodeTypeName() == node_type::kTable) {
      if (const auto grid = ControlAs<platform::TableEditor>(view)) grid->Mode(0);
    } else if (item->NodeTypeName() == node_type::kQuery) {
      if (const auto grid = ControlAs<platform::QueryResults>(view)) grid->Mode(0);
    }
  });
}

void SnapIn::ResultViews_Activate(ResultView& view) {
  Guard([&] {
    const auto sNodeType = InTree(view.ScopeItem())->NodeTypeName();
    if (sNodeType == node_type::kTable) {
      ActivateTable(view);
    } else if (sNodeType == node_type::kQuery) {
      ActivateQuery(view);
    }
  });
}

void SnapIn::ActivateTable(ResultView& view) {
  const auto grid = ControlAs<platform::TableEditor>(view);
  if (!grid) return TableEditor(nullptr);
  const auto table = TagAs<nodes::TableNode>(*view.ScopeItem());
  TableEditor(grid);
  m_tblEditorEvents.push_back(grid->OnFilterKept([kept = std::weak_ptr(table)] {
    // Neither new options nor the query builder put the default filter back.
    if (const auto node = kept.lock()) node->DefaultFilterCondition(false);
  }));
  m_tblEditor->ShowSqlStatements(Root().SqlStatements());
  m_tblEditor->Connection(ServerOf(*table)->Connection());
  m_tblEditor->TableQuery(table->Query());
  Long lUpdatability = 0;
  if (const auto rs = table->GetRecordset(lUpdatability)) {
    m_tblEditor->AttachRecordset(rs, lUpdatability);
  } else {
    m_tblEditor->Requery();
  }
}

void SnapIn::ActivateQuery(ResultView& view) {
  const auto grid = ControlAs<platform::QueryResults>(view);
  if (!grid) return QueryResults(nullptr);
  const auto query = TagAs<nodes::QueryNode>(*view.ScopeItem());
  QueryResults(grid);
  m_qrResults->ShowSqlStatements(Root().SqlStatements());
  m_qrResults->Connection(InTree(query->ParentServerNode())->Connection());
  m_qrResults->QueryName(query->QueryName());
  m_qrResults->SqlText(query->Query());
  // A named query always takes the current limits; a table's travel inside its own query.
  m_qrResults->MaxRows(Root().MaxRows());
  m_qrResults->QueryTimeout(Root().QueryTimeout());
  if (const auto rs = query->Recordset()) {
    m_qrResults->Recordset(rs);
  } else {
    m_qrResults->Execute();
  }
}

void SnapIn::ResultViews_Deactivate(ResultView& view) {
  Guard([&] {
    const auto item = InTree(view.ScopeItem());
    const auto sNodeType = item->NodeTypeName();
    if (sNodeType == node_type::kTable && m_tblEditor) {
      Long lUpdatability = 0;
      const auto rs = m_tblEditor->DetachRecordset(lUpdatability);
      TagAs<nodes::TableNode>(*item)->SetRecordset(rs, lUpdatability);
      m_tblEditor->AttachRecordset(nullptr, 0);
      m_tblEditor->Connection(nullptr);
      TableEditor(nullptr);
    } else if (sNodeType == node_type::kQuery && m_qrResults) {
      TagAs<nodes::QueryNode>(*item)->Recordset(m_qrResults->Recordset());
      m_qrResults->Recordset(nullptr);
      m_qrResults->Connection(nullptr);
      QueryResults(nullptr);
    }
  });
}

void SnapIn::TableEditor(const platform::TableEditorPtr& grid) {
  m_tblEditor = grid;
  m_tblEditorEvents = ListenTo(grid, ToolbarKind::Table);
  if (!grid) return;
  m_tblEditorEvents.push_back(grid->OnHeadClick([this] { ButtonStates(ToolbarKind::Table); }));
}

void SnapIn::QueryResults(const platform::QueryResultsPtr& grid) {
  m_qrResults = grid;
  m_qrResultsEvents = ListenTo(grid, ToolbarKind::Query);
}

std::vector<platform::Subscription> SnapIn::ListenTo(const std::shared_ptr<platform::Grid>& grid,
                                                     ToolbarKind kind) {
  std::vector<platform::Subscription> events;
  if (!grid) return events;
  const auto setButtons = [this, kind] { ButtonStates(kind); };
  events.push_back(grid->OnRowColChange(setButtons));
  events.push_back(grid->OnSelChange(setButtons));
  events.push_back(grid->OnInsert(setButtons));
  events.push_back(grid->OnDelete(setButtons));
  return events;
}

}  // namespace orvane::snapin
