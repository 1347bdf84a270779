// The modal dialog for a named query: its name and its SQL text.
// One command may show the same dialog again and again, until the name is free.
#pragma once

#include <memory>

#include "dialogs/name_guard.h"
#include "platform/services.h"

namespace orvane::dialogs {

class QueryDlg {
 public:
  /// Takes the form from the services.
  explicit QueryDlg(const platform::Services& services);

  platform::TextBox& Name() { return m_txtName; }
  platform::TextBox& SqlStatement() { return m_txtSqlStatement; }

  /// Shows the dialog until OK or Cancel was pressed.
  void ShowModal() { m_form->ShowModal(); }
  /// True once OK was pressed; the caller clears it before it shows the dialog again.
  platform::Boolean Accepted() const { return m_bAccepted; }
  void Accepted(platform::Boolean bAccepted) { m_bAccepted = bAccepted; }

 private:
  void m_txtName_Change();
  void m_btnOk_Click();
  void m_btnCancel_Click();

  std::shared_ptr<platform::Form> m_form;
  platform::TextBox& m_txtName;
  platform::TextBox& m_txtSqlStatement;
  platform::Boolean m_bAccepted = false;
  NameGuard m_guardName;
  platform::Subscription m_nameChange;
  platform::Subscription m_ok;
  platform::Subscription m_cancel;
};

}  // namespace orvane::dialogs
