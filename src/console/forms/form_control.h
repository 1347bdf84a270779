// What every control of a form has over its widget. The widget is a child of the form's window and
// carries the control's name.
#pragma once

#include <QString>
#include <type_traits>

#include "console/forms/form_dialog.h"
#include "platform/forms/forms.h"

namespace orvane::console {

template <class Interface, class W>
class FormControl : public Interface {
 public:
  using Widget = W;

  explicit FormControl(FormDialog& dialog) : m_dialog(dialog), m_widget(new W(&dialog)) {}

  W& Shown() const { return *m_widget; }

  platform::Boolean Enabled() const override { return m_widget->isEnabledTo(&m_dialog); }
  void Enabled(platform::Boolean bEnabled) override { m_widget->setEnabled(bEnabled); }
  void SetFocus() override { m_dialog.TakeFocus(*m_widget); }

 protected:
  FormDialog& m_dialog;
  W* const m_widget;
};

/// Marks, while it lives, that a widget's change comes from the form's owner and not its user.
class Setting {
 public:
  explicit Setting(bool& bSetting) : m_bSetting(bSetting), m_bBefore(bSetting) {
    m_bSetting = true;
  }
  Setting(const Setting&) = delete;
  Setting& operator=(const Setting&) = delete;
  ~Setting() { m_bSetting = m_bBefore; }

 private:
  bool& m_bSetting;
  const bool m_bBefore;
};

}  // namespace orvane::console
