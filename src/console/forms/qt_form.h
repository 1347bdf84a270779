// A form on widgets: the window and its controls by their names. The layouts build it, whoever
// loaded it drives it. User-interface thread.
#pragma once

#include <map>
#include <memory>
#include <utility>

#include "console/forms/form_dialog.h"
#include "console/forms/qt_forms.h"

namespace orvane::console {

class QtForm : public platform::Form {
 public:
  QtForm(const platform::Text& sName, QtForms::Owner owner, std::shared_ptr<FormPlaces> places);
  ~QtForm() override;

  FormDialog& Dialog() { return *m_dialog; }
  /// Makes a control and returns its widget, for a layout to place.
  template <class Control>
  typename Control::Widget* Add(const platform::Text& sName) {
    auto control = std::make_unique<Control>(*m_dialog);
    typename Control::Widget& widget = control->Shown();
    widget.setObjectName(QString::fromStdString(sName));
    m_controls[sName] = std::move(control);
    return &widget;
  }

  platform::Text Title() const override { return m_sTitle; }
  void Title(const platform::Text& sTitle) override;
  platform::Caption& Caption(const platform::Text& sName) override;
  platform::TextBox& TextBox(const platform::Text& sName) override;
  platform::Button& Button(const platform::Text& sName) override;
  platform::CheckBox& CheckBox(const platform::Text& sName) override;
  platform::DropDownList& DropDownList(const platform::Text& sName) override;
  platform::FormListView& ListView(const platform::Text& sName) override;
  void DefaultButton(const platform::Text& sButton) override;
  void CancelButton(const platform::Text& sButton) override;
  void ShowModal() override;
  void Hide() override { m_dialog->Hide(); }

 private:
  template <class Kind>
  Kind& Get(const platform::Text& sName, const char* sKind) const;

  const platform::Text m_sName;
  const QtForms::Owner m_owner;
  platform::Text m_sTitle;
  std::map<platform::Text, std::unique_ptr<platform::FormControl>> m_controls;
  // Destroyed first: the widgets notify their controls for as long as they live.
  std::unique_ptr<FormDialog> m_dialog;
};

}  // namespace orvane::console
