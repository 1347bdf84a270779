// The command of a table: its query, put together in the builder.
#include "access/schema_browsing.h"
#include "dialogs/table_query_dlg.h"
#include "snapin/snap_in.h"
#include "snapin/tags.h"

namespace orvane::snapin {

using platform::Long;
using platform::ScopeItemPtr;
using platform::Text;

void SnapIn::m_mnuQuery_Click(const ScopeItemPtr& item) {
  const auto table = TagAs<nodes::TableNode>(*item);
  const auto query = table->Query();
  dialogs::TableQueryDlg dialog(m_services);
  dialog.CatalogLabel(query->Catalog());
  dialog.TableLabel(query->Table());
  dialog.Columns(access::ColumnNames(*query, ServerOf(*table)->Connection()));
  for (Long l = 1; l <= query->Columns().Count(); ++l) {
    dialog.AddSelectedColumn(query->Columns().Item(l));
  }
  dialog.UpdateAvailableColumns();
  dialog.DefaultFilterCondition(
      Root().FormDefaultFilterCondition(query->Catalog(), query->Table()));
  if (table->DefaultFilterCondition()) {
    dialog.UseDefaultFilter(true);
  } else {
    dialog.FilterCondition(query->FilterCondition());
  }
  dialog.UpdateSortColumns();
  if (const auto criterion = query->SortCriterion()) {
    dialog.SetSortingCriteria(criterion->sColumn, criterion->bAscending);
  } else {
    dialog.NoSortingCriteria(true);
  }
  dialog.UpdateButtons();
  dialog.ShowModal();
  if (!dialog.Ok()) return;

  query->Columns().Clear();
  for (const Text& sColumn : dialog.SelectedColumns()) query->Columns().Add(sColumn);
  table->DefaultFilterCondition(dialog.UseDefaultFilter());
  query->FilterCondition(dialog.FilterCondition());
  if (dialog.NoSortingCriteria()) {
    query->SortCriterion(std::nullopt);
  } else {
    query->SortCriterion(dialog.SortingCriteria());
  }
  table->SetRecordset(nullptr, 0);
  if (m_tblEditor && IsShown(*item)) m_tblEditor->Requery();
}

}  // namespace orvane::snapin
