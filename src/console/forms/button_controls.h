// Button and check box on widgets.
// Used by the forms of the dialogs; user-interface thread.
#pragma once

#include <QCheckBox>
#include <QPushButton>

#include "console/forms/form_control.h"

namespace orvane::console {

class ButtonControl : public FormControl<platform::Button, QPushButton> {
 public:
  explicit ButtonControl(FormDialog& dialog);
  platform::Text Label() const override { return m_sLabel; }
  void Label(const platform::Text& sLabel) override;
  using FormControl::Enabled;
  void Enabled(platform::Boolean bEnabled) override;
  platform::Subscription OnClick(std::function<void()> handler) override;

 private:
  platform::Text m_sLabel;
  platform::Signal<> m_click;
};

class CheckBoxControl : public FormControl<platform::CheckBox, QCheckBox> {
 public:
  explicit CheckBoxControl(FormDialog& dialog);
  platform::Text Label() const override { return m_sLabel; }
  void Label(const platform::Text& sLabel) override;
  platform::Boolean Checked() const override { return m_widget->isChecked(); }
  void Checked(platform::Boolean bChecked) override;
  platform::Subscription OnClick(std::function<void()> handler) override;

 private:
  platform::Text m_sLabel;
  bool m_bSetting = false;
  platform::Signal<> m_click;
};

}  // namespace orvane::console
