#include "dialogs/table_query_dlg.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace orvane::dialogs {
namespace {

using platform::Boolean;
using platform::Long;
using platform::Text;

constexpr platform::Color kGrey{128, 128, 128};
constexpr platform::Color kBlack{0, 0, 0};
constexpr Long kAscending = -1;
constexpr Long kDescending = 0;

Long SelectedCount(const platform::FormListView& lv) {
  Long lCount = 0;
  for (Long l = 1; l <= lv.Count(); ++l) {
    if (lv.Selected(l)) ++lCount;
  }
  return lCount;
}

/// The row behind the last one that moved is selected then, so that the same key moves it next.
void MoveSelected(platform::FormListView& lvFrom, platform::FormListView& lvTo) {
  Long lMoved = 0;
  Long lNext = 0;
  for (Long l = 1; l <= lvFrom.Count(); ++l) {
    if (!lvFrom.Selected(l)) continue;
    lvTo.Add(lvFrom.Item(l));
    lNext = l + 1 - ++lMoved;
  }
  for (Long l = lvFrom.Count(); l >= 1; --l) {
    if (lvFrom.Selected(l)) lvFrom.Remove(l);
  }
  if (lMoved > 0 && lvFrom.Count() > 0) lvFrom.Selected(std::min(lNext, lvFrom.Count()), true);
}

}  // namespace

TableQueryDlg::TableQueryDlg(const platform::Services& services)
    : m_form(services.forms->Load("TableQueryDlg")),
      m_lvAvailableCols(m_form->ListView("m_lvAvailableCols")),
      m_lvSelCols(m_form->ListView("m_lvSelCols")),
      m_txtFilterCond(m_form->TextBox("m_txtFilterCond")),
      m_chkDefaultFilterCond(m_form->CheckBox("m_chkDefaultFilterCond")),
      m_cmbSortCol(m_form->DropDownList("m_cmbSortCol")),
      m_cmbSortOrder(m_form->DropDownList("m_cmbSortOrder")),
      m_chkNoSortingCriteria(m_form->CheckBox("m_chkNoSortingCriteria")) {
  Label();
  m_cmbSortOrder.Add("Ascending", kAscending);
  m_cmbSortOrder.Add("Descending", kDescending);
  m_form->DefaultButton("m_btnOk");
  m_form->CancelButton("m_btnCancel");
  Listen();
}

void TableQueryDlg::Label() {
  m_form->Title("Table Query");
  for (const auto& [sName, sLabel] : {std::pair{"m_frmTable", "Table"},
                                      {"m_lblCatalog1", "Catalog:"},
                                      {"m_lblTable1", "Table:"},
                                      {"m_frmColumns", "Columns"},
                                      {"m_lblAvailableCols", "Available columns:"},
                                      {"m_lblSelectedCols", "Selected columns:"},
                                      {"m_frmFilterCond", "Filter condition"},
                                      {"m_frmSortingCriteria", "Sorting criteria"},
                                      {"m_lblSortCol", "Column:"},
                                      {"m_lblSortOrder", "Order:"}}) {
    m_form->Caption(sName).Label(sLabel);
  }
  m_form->Button("m_btnSelectCol").Label("Add >");
  m_form->Button("m_btnSelectAllCols").Label("Add All >>");
  m_form->Button("m_btnDeselectCol").Label("< Remove");
  m_form->Button("m_btnDeselectAllCols").Label("<< Remove All");
  m_form->Button("m_btnOk").Label("OK");
  m_form->Button("m_btnCancel").Label("&Cancel");
  m_chkDefaultFilterCond.Label("&Default");
  m_chkNoSortingCriteria.Label("&None");
}

void TableQueryDlg::Listen() {
  const auto onClick = [this](const char* sButton, void (TableQueryDlg::*handler)()) {
    m_subscriptions.push_back(
        m_form->Button(sButton).OnClick([this, handler] { (this->*handler)(); }));
  };
  onClick("m_btnSelectCol", &TableQueryDlg::m_btnSelectCol_Click);
  onClick("m_btnDeselectCol", &TableQueryDlg::m_btnDeselectCol_Click);
  onClick("m_btnSelectAllCols", &TableQueryDlg::m_btnSelectAllCols_Click);
  onClick("m_btnDeselectAllCols", &TableQueryDlg::m_btnDeselectAllCols_Click);
  onClick("m_btnOk", &TableQueryDlg::m_btnOk_Click);
  onClick("m_btnCancel", &TableQueryDlg::m_btnCancel_Click);
  m_subscriptions.push_back(m_lvAvailableCols.OnClick([this] { UpdateButtons(); }));
  m_subscriptions.push_back(m_lvSelCols.OnClick([this] { UpdateButtons(); }));
  m_subscriptions.push_back(m_lvAvailableCols.OnDblClick([this] { m_btnSelectCol_Click(); }));
  m_subscriptions.push_back(m_lvSelCols.OnDblClick([this] { m_btnDeselectCol_Click(); }));
  m_subscriptions.push_back(
      m_chkDefaultFilterCond.OnClick([this] { m_chkDefaultFilterCond_Click(); }));
  m_subscriptions.push_back(
      m_chkNoSortingCriteria.OnClick([this] { m_chkNoSortingCriteria_Click(); }));
}

void TableQueryDlg::CatalogLabel(const Text& sCatalog) {
  m_form->Caption("m_lblCatalog2").Label(sCatalog);
}

void TableQueryDlg::TableLabel(const Text& sTable) {
  m_form->Caption("m_lblTable2").Label(sTable);
}

std::vector<Text> TableQueryDlg::SelectedColumns() const {
  std::vector<Text> columns;
  for (Long l = 1; l <= m_lvSelCols.Count(); ++l) columns.push_back(m_lvSelCols.Item(l));
  return columns;
}

void TableQueryDlg::UpdateAvailableColumns() {
  const std::vector<Text> selected = SelectedColumns();
  const std::unordered_set<Text> names(selected.begin(), selected.end());
  m_lvAvailableCols.Clear();
  for (const Text& sColumn : m_columns) {
    if (!names.contains(sColumn)) m_lvAvailableCols.Add(sColumn);
  }
}

void TableQueryDlg::UpdateSortColumns() {
  m_cmbSortCol.Clear();
  for (const Text& sColumn : m_columns) m_cmbSortCol.Add(sColumn, 0);
}

void TableQueryDlg::SetSortingCriteria(const Text& sColumn, Boolean bAscending) {
  for (Long l = 0; l < m_cmbSortCol.Count(); ++l) {
    if (m_cmbSortCol.Item(l) == sColumn) {
      m_cmbSortCol.ListIndex(l);
      break;
    }
  }
  for (Long l = 0; l < m_cmbSortOrder.Count(); ++l) {
    if (m_cmbSortOrder.ItemData(l) == (bAscending ? kAscending : kDescending)) {
      m_cmbSortOrder.ListIndex(l);
      break;
    }
  }
}

platform::SortCriterion TableQueryDlg::SortingCriteria() const {
  const Long lColumn = m_cmbSortCol.ListIndex();
  const Long lOrder = m_cmbSortOrder.ListIndex();
  return {lColumn < 0 ? Text() : m_cmbSortCol.Item(lColumn),
          lOrder >= 0 && m_cmbSortOrder.ItemData(lOrder) != kDescending};
}

void TableQueryDlg::UpdateButtons() {
  m_form->Button("m_btnSelectCol").Enabled(SelectedCount(m_lvAvailableCols) > 0);
  m_form->Button("m_btnSelectAllCols").Enabled(m_lvAvailableCols.Count() > 0);
  m_form->Button("m_btnDeselectCol").Enabled(SelectedCount(m_lvSelCols) > 0);
  m_form->Button("m_btnDeselectAllCols").Enabled(m_lvSelCols.Count() > 0);
  m_form->Button("m_btnOk").Enabled(m_lvSelCols.Count() > 0);
}

void TableQueryDlg::m_btnSelectCol_Click() {
  MoveSelected(m_lvAvailableCols, m_lvSelCols);
  UpdateButtons();
}

void TableQueryDlg::m_btnDeselectCol_Click() {
  MoveSelected(m_lvSelCols, m_lvAvailableCols);
  UpdateButtons();
}

void TableQueryDlg::m_btnSelectAllCols_Click() {
  for (Long l = 1; l <= m_lvAvailableCols.Count(); ++l) m_lvSelCols.Add(m_lvAvailableCols.Item(l));
  m_lvAvailableCols.Clear();
  UpdateButtons();
}

void TableQueryDlg::m_btnDeselectAllCols_Click() {
  // Server order comes back, whatever the order in which the columns were chosen.
  m_lvAvailableCols.Clear();
  for (const Text& sColumn : m_columns) m_lvAvailableCols.Add(sColumn);
  m_lvSelCols.Clear();
  UpdateButtons();
}

void TableQueryDlg::m_chkDefaultFilterCond_Click() {
  if (m_chkDefaultFilterCond.Checked()) {
    m_txtFilterCond.Text(m_sDefFilterCond);
    m_txtFilterCond.ForeColor(kGrey);
    m_txtFilterCond.Locked(true);
  } else {
    m_txtFilterCond.ForeColor(kBlack);
    m_txtFilterCond.Locked(false);
    m_txtFilterCond.SetFocus();
  }
}

void TableQueryDlg::m_chkNoSortingCriteria_Click() {
  const Boolean bNone = m_chkNoSortingCriteria.Checked();
  for (platform::DropDownList* const cmb : {&m_cmbSortCol, &m_cmbSortOrder}) {
    if (bNone) {
      cmb->ListIndex(-1);
    } else if (cmb->Count() > 0) {
      cmb->ListIndex(0);
    }
    cmb->Enabled(!bNone);
  }
}

void TableQueryDlg::m_btnOk_Click() {
  m_bOk = true;
  m_form->Hide();
}

void TableQueryDlg::m_btnCancel_Click() {
  m_bOk = false;
  m_form->Hide();
}

}  // namespace orvane::dialogs
