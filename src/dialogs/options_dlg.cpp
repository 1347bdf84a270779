#include "dialogs/options_dlg.h"

namespace orvane::dialogs {

OptionsDlg::OptionsDlg(const platform::Services& services)
    : m_ui(services.ui),
      m_form(services.forms->Load("OptionsDlg")),
      m_txtMaxRows(m_form->TextBox("m_txtMaxRows")),
      m_txtTimeout(m_form->TextBox("m_txtTimeout")),
      m_txtDefStartTime(m_form->TextBox("m_txtDefStartTime")),
      m_txtDefEndTime(m_form->TextBox("m_txtDefEndTime")),
      m_guardMaxRows(m_txtMaxRows, *m_ui),
      m_guardTimeout(m_txtTimeout, *m_ui) {
  m_form->Title("Options");
  m_form->Caption("m_frmQueryLimits").Label("Query Limits");
  m_form->Caption("m_lblMaxRows").Label("Maximum number of rows:");
  m_form->Caption("m_lblTimeout").Label("Timeout:");
  m_form->Caption("m_lblSeconds").Label("[s]");
  m_form->Caption("m_frmDefTimeRange").Label("Default Time Range");
  m_form->Caption("m_lblDefStartTime").Label("Start time:");
  m_form->Caption("m_lblDefEndTime").Label("End time:");
  platform::Button& btnOk = m_form->Button("m_btnOK");
  btnOk.Label("OK");
  platform::Button& btnCancel = m_form->Button("m_btnCancel");
  btnCancel.Label("Cancel");
  // Enter accepts, but Escape is bound to nothing here.
  m_form->DefaultButton("m_btnOK");
  m_maxRowsChange = m_txtMaxRows.OnChange([this] { m_txtMaxRows_Change(); });
  m_timeoutChange = m_txtTimeout.OnChange([this] { m_txtTimeout_Change(); });
  m_ok = btnOk.OnClick([this] { m_btnOk_Click(); });
  m_cancel = btnCancel.OnClick([this] { m_btnCancel_Click(); });
}

void OptionsDlg::m_txtMaxRows_Change() {
  m_guardMaxRows.Change();
}

void OptionsDlg::m_txtTimeout_Change() {
  m_guardTimeout.Change();
}

void OptionsDlg::m_btnOk_Click() {
  m_bAccepted = true;
  m_form->Hide();
}

void OptionsDlg::m_btnCancel_Click() {
  m_form->Hide();
}

}  // namespace orvane::dialogs
