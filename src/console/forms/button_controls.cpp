#include "console/forms/button_controls.h"

#include <utility>

namespace orvane::console {

ButtonControl::ButtonControl(FormDialog& dialog) : FormControl(dialog) {
  m_widget->setAutoDefault(false);
  dialog.Watch(*m_widget);
  QObject::connect(m_widget, &QPushButton::clicked, m_widget,
                   [this] { m_dialog.Run([this] { m_click.Raise(); }); });
}

void ButtonControl::Label(const platform::Text& sLabel) {
  m_sLabel = sLabel;
  m_widget->setText(QString::fromStdString(sLabel));
}

void ButtonControl::Enabled(platform::Boolean bEnabled) {
  if (!bEnabled) m_dialog.BeforeDisabling(*m_widget);
  FormControl::Enabled(bEnabled);
}

platform::Subscription ButtonControl::OnClick(std::function<void()> handler) {
  return m_click.Connect(std::move(handler));
}

CheckBoxControl::CheckBoxControl(FormDialog& dialog) : FormControl(dialog) {
  dialog.Watch(*m_widget);
  QObject::connect(m_widget, &QCheckBox::toggled, m_widget, [this] {
    if (!m_bSetting) m_dialog.Run([this] { m_click.Raise(); });
  });
}

void CheckBoxControl::Label(const platform::Text& sLabel) {
  m_sLabel = sLabel;
  m_widget->setText(QString::fromStdString(sLabel));
}

void CheckBoxControl::Checked(platform::Boolean bChecked) {
  if (bChecked == m_widget->isChecked()) return;
  {
    const Setting setting(m_bSetting);
    m_widget->setChecked(bChecked);
  }
  m_click.Raise();
}

platform::Subscription CheckBoxControl::OnClick(std::function<void()> handler) {
  return m_click.Connect(std::move(handler));
}

}  // namespace orvane::console
