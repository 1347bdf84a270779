// The modal dialog for a new catalog: its name, the path of its storage and its size.
// Created by the Add Catalog command for one use. The texts are not checked here: the command
// converts the size, the server judges the rest.
#pragma once

#include <memory>

#include "dialogs/name_guard.h"
#include "platform/services.h"

namespace orvane::dialogs {

class AddCatalogDlg {
 public:
  /// Takes the form from the services.
  explicit AddCatalogDlg(const platform::Services& services);

  platform::TextBox& Name() { return m_txtName; }
  platform::TextBox& Path() { return m_txtPath; }
  /// Kilobytes, as typed.
  platform::TextBox& Size() { return m_txtSize; }

  /// Shows the dialog until OK or Cancel was pressed.
  void ShowModal() { m_form->ShowModal(); }
  /// True once OK was pressed.
  platform::Boolean Accepted() const { return m_bAccepted; }

 private:
  void m_txtName_Change();
  void m_btnOk_Click();
  void m_btnCancel_Click();

  std::shared_ptr<platform::Form> m_form;
  platform::TextBox& m_txtName;
  platform::TextBox& m_txtPath;
  platform::TextBox& m_txtSize;
  platform::Boolean m_bAccepted = false;
  NameGuard m_guardName;
  platform::Subscription m_nameChange;
  platform::Subscription m_ok;
  platform::Subscription m_cancel;
};

}  // namespace orvane::dialogs
