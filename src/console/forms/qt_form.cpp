#include "console/forms/qt_form.h"

#include "console/forms/button_controls.h"
#include "console/look/window_in_front.h"
#include "platform/failure.h"

namespace orvane::console {

using platform::Text;

QtForm::QtForm(const Text& sName, QtForms::Owner owner, std::shared_ptr<FormPlaces> places)
    : m_sName(sName),
      m_owner(std::move(owner)),
      m_dialog(std::make_unique<FormDialog>(QString::fromStdString(sName), std::move(places))) {}

QtForm::~QtForm() = default;

void QtForm::Title(const Text& sTitle) {
  m_sTitle = sTitle;
  m_dialog->setWindowTitle(QString::fromStdString(sTitle));
}

template <class Kind>
Kind& QtForm::Get(const Text& sName, const char* sKind) const {
  const auto found = m_controls.find(sName);
  auto* const control =
      found == m_controls.end() ? nullptr : dynamic_cast<Kind*>(found->second.get());
  if (!control) {
    throw platform::Failure(platform::failure::kItemNotFound,
                            Text("There is no ") + sKind + " named \"" + sName +
                                "\" in the form \"" + m_sName +
                                "\"; ask for one that it lays out.");
  }
  return *control;
}

platform::Caption& QtForm::Caption(const Text& sName) {
  return Get<platform::Caption>(sName, "caption");
}

platform::TextBox& QtForm::TextBox(const Text& sName) {
  return Get<platform::TextBox>(sName, "text box");
}

platform::Button& QtForm::Button(const Text& sName) {
  return Get<platform::Button>(sName, "button");
}

platform::CheckBox& QtForm::CheckBox(const Text& sName) {
  return Get<platform::CheckBox>(sName, "check box");
}

platform::DropDownList& QtForm::DropDownList(const Text& sName) {
  return Get<platform::DropDownList>(sName, "drop-down list");
}

platform::FormListView& QtForm::ListView(const Text& sName) {
  return Get<platform::FormListView>(sName, "list view");
}

void QtForm::DefaultButton(const Text& sButton) {
  m_dialog->DefaultButton(Get<ButtonControl>(sButton, "button").Shown());
}

void QtForm::CancelButton(const Text& sButton) {
  m_dialog->CancelButton(Get<ButtonControl>(sButton, "button").Shown());
}

void QtForm::ShowModal() {
  QWidget* const owner = m_owner ? m_owner() : nullptr;
  m_dialog->ShowModal(owner ? owner : WindowInFront());
}

}  // namespace orvane::console
