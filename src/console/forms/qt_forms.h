// The forms of the components' dialogs on widgets: lays out the controls by their names and decides
// nothing; what a dialog does is said by whoever loads its form. User-interface thread.
#pragma once

#include <functional>

#include "platform/forms/forms.h"

class QWidget;

namespace orvane::console {

class QtForms : public platform::Forms {
 public:
  /// The window over which forms are shown, asked for each time; null means the one in front.
  using Owner = std::function<QWidget*()>;

  explicit QtForms(Owner owner = {});

  /// Knows "OptionsDlg", "QueryDlg", "AddCatalogDlg" and "TableQueryDlg"; fails with
  /// failure::kItemNotFound for any other name. A form may outlive this object and the window.
  std::shared_ptr<platform::Form> Load(const platform::Text& sFormName) override;

 private:
  Owner m_owner;
};

}  // namespace orvane::console
