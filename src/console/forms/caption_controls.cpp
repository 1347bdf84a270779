#include "console/forms/caption_controls.h"

#include "console/forms/spoken_name.h"

namespace orvane::console {

LabelControl::LabelControl(FormDialog& dialog) : CaptionControl(dialog) {
  m_widget->setTextFormat(Qt::PlainText);
}

void LabelControl::Show(const QString& sLabel) {
  m_widget->setText(sLabel);
  if (QWidget* const buddy = m_widget->buddy()) {
    buddy->setAccessibleName(SpokenName(m_widget->text()));
  }
}

void LabelControl::SetFocus() {
  m_dialog.TakeFocus(m_widget->buddy() ? *m_widget->buddy() : *m_widget);
}

void UnitLabel::Unit(const QString& sUnit) {
  setText(sUnit);
  // Brackets and letters are for the eye.
  if (m_box) m_box->setAccessibleDescription(sUnit == "[s]" ? tr("seconds") : sUnit);
}

UnitControl::UnitControl(FormDialog& dialog) : CaptionControl(dialog) {
  m_widget->setTextFormat(Qt::PlainText);
}

void UnitControl::Show(const QString& sLabel) {
  m_widget->Unit(sLabel);
}

void ValueControl::Show(const QString& sLabel) {
  m_widget->setText(sLabel);
}

void FrameControl::Show(const QString& sLabel) {
  m_widget->setTitle(sLabel);
}

}  // namespace orvane::console
