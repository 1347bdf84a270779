// The forms of the components' dialogs on widgets: lays out the controls by their names and decides
// nothing; what a dialog does is said by whoever loads its form. User-interface thread.
#pragma once

#include <functional>

#include "console/forms/form_dialog.h"
#include "platform/forms/forms.h"

class QWidget;

namespace orvane::console {

class QtForms : public platform::Forms {
 public:
  /// The window over which forms are shown, asked for each time; null means the one in front.
  using Owner = std::function<QWidget*()>;

  explicit QtForms(Owner owner = {});

  /// Knows "OptionsDlg", "QueryDlg", "AddCatalogDlg" and "TableQueryDlg"; fails with
  /// failure::kItemNotFound for any other name. A form may outlive this object and the window. It
  /// stands where the last one of its name did, as long as this object lives.
  std::shared_ptr<platform::Form> Load(const platform::Text& sFormName) override;

 private:
  Owner m_owner;
  std::shared_ptr<FormPlaces> m_places;
};

}  // namespace orvane::console
