#include "console/forms/sql_text_control.h"

#include "console/forms/sql_view.h"

namespace orvane::console {

SqlTextControl::SqlTextControl(FormDialog& dialog) : TextControl(dialog) {
  dialog.Watch(m_widget->View(), FormDialog::EnterKey::BreaksLine);
  QObject::connect(&m_widget->View(), &QsciScintilla::textChanged, m_widget, [this] { Changed(); });
}

void SqlTextControl::Display(const QString& sText) {
  m_widget->View().setText(sText);
}

QString SqlTextControl::Displayed() const {
  return m_widget->View().text();
}

void SqlTextControl::Paint() {
  m_widget->View().PlainColor(
      ForeColor() == platform::Color{} ? QColor() : LegibleColor(ForeColor(), m_dialog.palette()));
}

}  // namespace orvane::console
