#include "console/forms/qt_forms.h"

#include <array>
#include <utility>

#include "console/forms/form_layouts.h"
#include "platform/failure.h"

namespace orvane::console {
namespace {

struct Layout {
  const char* sFormName;
  void (*layOut)(QtForm& form);
};

constexpr std::array kLayouts{Layout{"OptionsDlg", LayOutOptions}, Layout{"QueryDlg", LayOutQuery},
                              Layout{"AddCatalogDlg", LayOutAddCatalog},
                              Layout{"TableQueryDlg", LayOutTableQuery}};

}  // namespace

QtForms::QtForms(Owner owner)
    : m_owner(std::move(owner)), m_places(std::make_shared<FormPlaces>()) {}

std::shared_ptr<platform::Form> QtForms::Load(const platform::Text& sFormName) {
  for (const Layout& layout : kLayouts) {
    if (sFormName != layout.sFormName) continue;
    auto form = std::make_shared<QtForm>(sFormName, m_owner, m_places);
    layout.layOut(*form);
    return form;
  }
  throw platform::Failure(
      platform::failure::kItemNotFound,
      "The console has no form named \"" + sFormName + "\"; ask for one that it lays out.");
}

}  // namespace orvane::console
