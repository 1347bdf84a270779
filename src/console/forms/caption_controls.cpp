#include "console/forms/caption_controls.h"

#include "console/forms/spoken_name.h"

namespace orvane::console {

LabelControl::LabelControl(FormDialog& dialog) : FormControl(dialog) {
  m_widget->setTextFormat(Qt::PlainText);
}

void LabelControl::Label(const platform::Text& sLabel) {
  m_sLabel = sLabel;
  m_widget->setText(QString::fromStdString(sLabel));
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

UnitControl::UnitControl(FormDialog& dialog) : FormControl(dialog) {
  m_widget->setTextFormat(Qt::PlainText);
}

void UnitControl::Label(const platform::Text& sLabel) {
  m_sLabel = sLabel;
  m_widget->Unit(QString::fromStdString(sLabel));
}

void ValueControl::Label(const platform::Text& sLabel) {
  m_sLabel = sLabel;
  m_widget->setText(QString::fromStdString(sLabel));
}

void FrameControl::Label(const platform::Text& sLabel) {
  m_sLabel = sLabel;
  m_widget->setTitle(QString::fromStdString(sLabel));
}

}  // namespace orvane::console
