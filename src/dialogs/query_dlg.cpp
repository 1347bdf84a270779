#include "dialogs/query_dlg.h"

namespace orvane::dialogs {

QueryDlg::QueryDlg(const platform::Services& services)
    : m_form(services.forms->Load("QueryDlg")),
      m_txtName(m_form->TextBox("m_txtName")),
      m_txtSqlStatement(m_form->TextBox("m_txtSqlStatement")),
      m_guardName(m_txtName, m_form->Button("m_btnOk")) {
  m_form->Title("Query");
  m_form->Caption("m_lblName").Label("Name:");
  m_form->Caption("m_lblSqlStatement").Label("SQL statement:");
  platform::Button& btnOk = m_form->Button("m_btnOk");
  btnOk.Label("&OK");
  platform::Button& btnCancel = m_form->Button("m_btnCancel");
  btnCancel.Label("&Cancel");
  m_form->DefaultButton("m_btnOk");
  m_form->CancelButton("m_btnCancel");
  m_nameChange = m_txtName.OnChange([this] { m_txtName_Change(); });
  m_ok = btnOk.OnClick([this] { m_btnOk_Click(); });
  m_cancel = btnCancel.OnClick([this] { m_btnCancel_Click(); });
}

void QueryDlg::m_txtName_Change() {
  m_guardName.Change();
}

void QueryDlg::m_btnOk_Click() {
  m_bAccepted = true;
  m_form->Hide();
}

void QueryDlg::m_btnCancel_Click() {
  m_form->Hide();
}

}  // namespace orvane::dialogs
