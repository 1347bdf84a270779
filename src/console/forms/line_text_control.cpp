#include "console/forms/line_text_control.h"

#include <limits>

namespace orvane::console {
namespace {

constexpr int kLeastCharacters = 10;

}  // namespace

void SizedLineEdit::Characters(int iCharacters, bool bMayGrow) {
  m_iCharacters = iCharacters;
  setSizePolicy(bMayGrow ? QSizePolicy::Expanding : QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize SizedLineEdit::sizeHint() const {
  const QSize hint = QLineEdit::sizeHint();
  // The toolkit's own hint is 17 characters wide.
  const int iCharacter = fontMetrics().horizontalAdvance(QLatin1Char('x'));
  return {hint.width() + (m_iCharacters - 17) * iCharacter, hint.height()};
}

QSize SizedLineEdit::minimumSizeHint() const {
  const QSize hint = sizeHint();
  const int iCharacter = fontMetrics().horizontalAdvance(QLatin1Char('x'));
  return {hint.width() - qMax(0, m_iCharacters - kLeastCharacters) * iCharacter, hint.height()};
}

LineTextControl::LineTextControl(FormDialog& dialog) : TextControl(dialog) {
  m_widget->setMaxLength(std::numeric_limits<int>::max());
  dialog.Watch(*m_widget);
  QObject::connect(m_widget, &QLineEdit::textChanged, m_widget, [this] { Changed(); });
}

void LineTextControl::Display(const QString& sText) {
  // The caret keeps its distance from the end, so that a refused key leaves it where it was.
  const auto iFromEnd = m_widget->text().size() - m_widget->cursorPosition();
  m_widget->setText(sText);
  if (m_widget->hasFocus()) {
    m_widget->setCursorPosition(static_cast<int>(qMax<qsizetype>(0, sText.size() - iFromEnd)));
  }
}

}  // namespace orvane::console
