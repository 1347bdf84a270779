#include "console/forms/qt_forms.h"

#include <utility>

#include "platform/failure.h"

namespace orvane::console {

QtForms::QtForms(Owner owner) : m_owner(std::move(owner)) {}

std::shared_ptr<platform::Form> QtForms::Load(const platform::Text& sFormName) {
  throw platform::Failure(
      platform::failure::kItemNotFound,
      "The console has no form named \"" + sFormName + "\"; ask for one that it lays out.");
}

}  // namespace orvane::console
