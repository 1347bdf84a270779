// The modal table query builder: which columns, which filter, which sort.
// The Query command of a table fills it in the order of the operations below, shows it and
// writes what was chosen back into the table's query.
#pragma once

#include <memory>
#include <vector>

#include "platform/services.h"

namespace orvane::dialogs {

class TableQueryDlg {
 public:
  /// Takes the form from the services.
  explicit TableQueryDlg(const platform::Services& services);

  /// The table's columns in server order.
  void Columns(std::vector<platform::Text> columns) { m_columns = std::move(columns); }
  void CatalogLabel(const platform::Text& sCatalog);
  void TableLabel(const platform::Text& sTable);

  /// The chosen columns, in the order chosen.
  void AddSelectedColumn(const platform::Text& sColumn) { m_lvSelCols.Add(sColumn); }
  std::vector<platform::Text> SelectedColumns() const;
  /// Lists, in server order, every column that is not among the chosen ones.
  void UpdateAvailableColumns();

  void DefaultFilterCondition(const platform::Text& sCondition) { m_sDefFilterCond = sCondition; }
  /// Whether the default filter condition is used; checking it shows the text, grey and locked.
  platform::Boolean UseDefaultFilter() const { return m_chkDefaultFilterCond.Checked(); }
  void UseDefaultFilter(platform::Boolean bUse) { m_chkDefaultFilterCond.Checked(bUse); }
  platform::Text FilterCondition() const { return m_txtFilterCond.Text(); }
  void FilterCondition(const platform::Text& sCondition) { m_txtFilterCond.Text(sCondition); }

  /// Offers every column of the table for sorting.
  void UpdateSortColumns();
  void SetSortingCriteria(const platform::Text& sColumn, platform::Boolean bAscending);
  platform::Boolean NoSortingCriteria() const { return m_chkNoSortingCriteria.Checked(); }
  void NoSortingCriteria(platform::Boolean bNone) { m_chkNoSortingCriteria.Checked(bNone); }
  /// What the two boxes show; the column is empty while none is chosen.
  platform::SortCriterion SortingCriteria() const;

  /// Enables the buttons as the two lists allow.
  void UpdateButtons();
  /// Shows the dialog until OK or Cancel was pressed.
  void ShowModal() { m_form->ShowModal(); }
  /// True only after OK.
  platform::Boolean Ok() const { return m_bOk; }

 private:
  void Label();
  void Listen();
  void m_btnSelectCol_Click();
  void m_btnDeselectCol_Click();
  void m_btnSelectAllCols_Click();
  void m_btnDeselectAllCols_Click();
  void m_chkDefaultFilterCond_Click();
  void m_chkNoSortingCriteria_Click();
  void m_btnOk_Click();
  void m_btnCancel_Click();

  std::shared_ptr<platform::Form> m_form;
  platform::FormListView& m_lvAvailableCols;
  platform::FormListView& m_lvSelCols;
  platform::TextBox& m_txtFilterCond;
  platform::CheckBox& m_chkDefaultFilterCond;
  platform::DropDownList& m_cmbSortCol;
  platform::DropDownList& m_cmbSortOrder;
  platform::CheckBox& m_chkNoSortingCriteria;
  std::vector<platform::Text> m_columns;
  platform::Text m_sDefFilterCond;
  platform::Boolean m_bOk = false;
  std::vector<platform::Subscription> m_subscriptions;
};

}  // namespace orvane::dialogs
