#include "dialogs/add_catalog_dlg.h"

namespace orvane::dialogs {

AddCatalogDlg::AddCatalogDlg(const platform::Services& services)
    : m_form(services.forms->Load("AddCatalogDlg")),
      m_txtName(m_form->TextBox("m_txtName")),
      m_txtPath(m_form->TextBox("m_txtPath")),
      m_txtSize(m_form->TextBox("m_txtSize")),
      m_guardName(m_txtName, m_form->Button("m_btnOk")) {
  m_form->Title("Add Catalog");
  m_form->Caption("Label1").Label("Name:");
  m_form->Caption("Label2").Label("Path:");
  m_form->Caption("Label3").Label("Size:");
  m_form->Caption("Label4").Label("kilobytes");
  // Neither Enter nor Escape is bound here: a catalog is made only by pressing OK itself.
  platform::Button& btnOk = m_form->Button("m_btnOk");
  btnOk.Label("&OK");
  platform::Button& btnCancel = m_form->Button("m_btnCancel");
  btnCancel.Label("&Cancel");
  m_nameChange = m_txtName.OnChange([this] { m_txtName_Change(); });
  m_ok = btnOk.OnClick([this] { m_btnOk_Click(); });
  m_cancel = btnCancel.OnClick([this] { m_btnCancel_Click(); });
}

void AddCatalogDlg::m_txtName_Change() {
  m_guardName.Change();
}

void AddCatalogDlg::m_btnOk_Click() {
  m_bAccepted = true;
  m_form->Hide();
}

void AddCatalogDlg::m_btnCancel_Click() {
  m_form->Hide();
}

}  // namespace orvane::dialogs
