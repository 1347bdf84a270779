#include "dialogs/name_guard.h"

namespace orvane::dialogs {

NameGuard::NameGuard(platform::TextBox& txtName, platform::Button& btnOk)
    : m_change(txtName.OnChange([&txtName, &btnOk] { btnOk.Enabled(!txtName.Text().empty()); })) {
  btnOk.Enabled(false);
}

}  // namespace orvane::dialogs
