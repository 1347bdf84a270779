// The result pane, as the model has it: what is shown of the selected item.
#include <algorithm>
#include <utility>

#include "tests/snapin/tree_model_rules.h"

namespace orvane::snapin::model {

namespace {

constexpr const char* kStructureView = "TableStructureListView";
constexpr const char* kEditorView = "TableEditorOcxView";
constexpr const char* kResultsView = "QueryResultsOcxView";

/// Catalog and table of "SELECT * FROM catalog..table"; empty for another text.
std::pair<Text, Text> Source(const Text& sSql) {
  const Text sStart = "SELECT * FROM ";
  const std::size_t nDots = sSql.find("..");
  if (!sSql.starts_with(sStart) || nDots == Text::npos) return {};
  return {sSql.substr(sStart.size(), nDots - sStart.size()), sSql.substr(nDots + 2)};
}

}  // namespace

void TreeModel::Select(const ItemPtr& item, bool bGrid) {
  Hide();
  Text sDefault = "DefaultListView";
  if (item->sType == "Table") sDefault = kEditorView;
  if (item->sType == "Query") sDefault = kResultsView;
  if (item->sType == "Queries") sDefault = "QueriesListView";
  Show(item, sDefault, bGrid);
}

void TreeModel::ShowView(const Text& sViewName, bool bGrid) {
  const ItemPtr item = viewItem;
  Hide();
  Show(item, sViewName, bGrid);
}

void TreeModel::Show(const ItemPtr& item, const Text& sViewName, bool bGrid) {
  viewItem = item;
  sView = sViewName;
  if (item->sType == "Table" && sViewName == kStructureView) {
    Guard([&] {
      const auto table = TagOf<Table>(*item);
      const auto line = Alive(Alive(table->catalog)->server)->line;
      if (!line || !line->bOpen) return;
      if (m_world.schemaFault && m_world.schemaFault->nRow < 0 &&
          m_world.schemaFault->schema == SchemaNumber::Columns) {
        return;
      }
      m_world.ForEachName(SchemaNumber::Columns, line, table->sCatalog, table->sName,
                          [](const Text&) {});
    });
  }
  const bool bEditor = sViewName == kEditorView;
  const bool bResults = sViewName == kResultsView;
  Guard([&] {
    if (item->sType == "Table") {
      if (!bEditor || !bGrid) return tblEditor.reset();
      const auto table = TagOf<Table>(*item);
      tblEditor = std::make_shared<Grid>();
      tblEditor->bSql = NeedRoot().bSql;
      tblEditor->line = Alive(Alive(table->catalog)->server)->line;
      tblEditor->sCatalog = table->sCatalog;
      tblEditor->sTable = table->sName;
      if (table->bRows) {
        tblEditor->bRows = true;
      } else {
        RequeryTable();
      }
    } else if (item->sType == "Query") {
      if (!bResults || !bGrid) return qrResults.reset();
      const auto query = TagOf<Query>(*item);
      qrResults = std::make_shared<Grid>();
      qrResults->bSql = NeedRoot().bSql;
      qrResults->line = Alive(query->server)->line;
      qrResults->sName = query->sName;
      qrResults->sSql = query->sSql;
      if (query->bRows) {
        qrResults->bRows = true;
      } else {
        ExecuteQuery();
      }
    }
  });
  m_bRefreshOffered = tblEditor || qrResults;
  m_nToolbarKind = tblEditor ? 1 : qrResults ? 2 : 0;
}

void TreeModel::Hide() {
  if (!viewItem) return;
  Guard([&] {
    if (viewItem->sType == "Table" && tblEditor) {
      Refuse(tblEditor, "DetachRecordset");
      TagOf<Table>(*viewItem)->bRows = tblEditor->bRows;
      Refuse(tblEditor, "AttachRecordset none 0");
      tblEditor.reset();
    } else if (viewItem->sType == "Query" && qrResults) {
      TagOf<Query>(*viewItem)->bRows = qrResults->bRows;
      Refuse(qrResults, "Recordset none");
      qrResults.reset();
    }
  });
  viewItem.reset();
  for (const GridPtr& left : {tblEditor, qrResults}) {
    if (left) left->bShown = false;
  }
}

void TreeModel::RequeryTable() {
  Refuse(tblEditor, "Requery");
  m_world.Run(tblEditor->line, tblEditor->sCatalog, tblEditor->sTable);
  tblEditor->bRows = true;
}

void TreeModel::ExecuteQuery() {
  Refuse(qrResults, "Execute");
  const auto [sCatalog, sTable] = Source(qrResults->sSql);
  m_world.Run(qrResults->line, sCatalog, sTable);
  qrResults->bRows = true;
}

void TreeModel::Refresh() {
  Guard([&] {
    if (tblEditor) RequeryTable();
    if (qrResults) ExecuteQuery();
  });
}

void TreeModel::Press(const Text& sKey) {
  Guard([&] {
    if (sKey == "Sql") {
      NeedRoot().bSql = !NeedRoot().bSql;
      if (tblEditor) {
        tblEditor->bSql = root->bSql;
      } else if (qrResults) {
        qrResults->bSql = root->bSql;
      }
    } else if (sKey == "Context") {
      NeedRoot().bContext = !NeedRoot().bContext;
    } else if (tblEditor || qrResults) {
      const GridPtr& grid = tblEditor ? tblEditor : qrResults;
      if (sKey == "Delete") Refuse(grid, "DeleteSelectedRows");
      if (sKey == "MoveFirst") Refuse(grid, "MoveFirst");
      if (sKey == "SortAsc" && tblEditor) Refuse(grid, "SortAscending");
    }
  });
}

}  // namespace orvane::snapin::model
