// The modal dialog for the query limits and the default time range.
// Created by the Options command for one use: filled, shown, read and dropped.
#pragma once

#include <memory>

#include "dialogs/numeric_guard.h"
#include "platform/services.h"

namespace orvane::dialogs {

class OptionsDlg {
 public:
  /// Takes the form and the beep from the services.
  explicit OptionsDlg(const platform::Services& services);

  /// The boxes, to be filled before and read after the dialog was shown.
  platform::TextBox& MaxRows() { return m_txtMaxRows; }
  platform::TextBox& Timeout() { return m_txtTimeout; }
  platform::TextBox& DefStartTime() { return m_txtDefStartTime; }
  platform::TextBox& DefEndTime() { return m_txtDefEndTime; }

  /// Shows the dialog until OK or Cancel was pressed.
  void ShowModal() { m_form->ShowModal(); }
  /// True once OK was pressed.
  platform::Boolean Accepted() const { return m_bAccepted; }

 private:
  void m_txtMaxRows_Change();
  void m_txtTimeout_Change();
  void m_btnOk_Click();
  void m_btnCancel_Click();

  std::shared_ptr<platform::UserInterface> m_ui;
  std::shared_ptr<platform::Form> m_form;
  platform::TextBox& m_txtMaxRows;
  platform::TextBox& m_txtTimeout;
  platform::TextBox& m_txtDefStartTime;
  platform::TextBox& m_txtDefEndTime;
  platform::Boolean m_bAccepted = false;
  NumericGuard m_guardMaxRows;
  NumericGuard m_guardTimeout;
  platform::Subscription m_maxRowsChange;
  platform::Subscription m_timeoutChange;
  platform::Subscription m_ok;
  platform::Subscription m_cancel;
};

}  // namespace orvane::dialogs
