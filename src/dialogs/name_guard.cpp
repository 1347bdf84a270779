#include "dialogs/name_guard.h"

namespace orvane::dialogs {

NameGuard::NameGuard(platform::TextBox& txtName, platform::Button& btnOk)
    : m_txtName(txtName), m_btnOk(btnOk) {
  m_btnOk.Enabled(false);
}

void NameGuard::Change() {
  m_btnOk.Enabled(!m_txtName.Text().empty());
}

}  // namespace orvane::dialogs
