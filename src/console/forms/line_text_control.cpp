#include "console/forms/line_text_control.h"

#include <limits>

namespace orvane::console {
namespace {

constexpr int kLeastLineCharacters = 10;

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
  return {hint.width() - qMax(0, m_iCharacters - kLeastLineCharacters) * iCharacter, hint.height()};
}

LineTextControl::LineTextControl(FormDialog& dialog) : TextControl(dialog) {
  m_widget->setMaxLength(std::numeric_limits<int>::max());
  dialog.Watch(*m_widget);
  QObject::connect(m_widget, &QLineEdit::textChanged, m_widget, [this] {
    Changed();
    Remember();
  });
  QObject::connect(m_widget, &QLineEdit::selectionChanged, m_widget, [this] { Remember(); });
  QObject::connect(m_widget, &QLineEdit::cursorPositionChanged, m_widget, [this] { Remember(); });
}

void LineTextControl::Display(const QString& sText) {
  const Look before = m_before;
  // The caret keeps its distance from the end.
  const auto iFromEnd = m_widget->text().size() - m_widget->cursorPosition();
  m_widget->setText(sText);
  if (!m_widget->hasFocus()) return;
  m_widget->setCursorPosition(static_cast<int>(qMax<qsizetype>(0, sText.size() - iFromEnd)));
  if (sText == before.sText) BringBack(before);
}

void LineTextControl::Remember() {
  m_before = {m_widget->text(), m_widget->cursorPosition(), qMax(0, m_widget->selectionStart()),
              qMax(0, m_widget->selectionEnd())};
}

void LineTextControl::BringBack(const Look& look) {
  if (look.iMarkedFrom == look.iMarkedTo) {
    m_widget->setCursorPosition(look.iCaret);
  } else if (look.iCaret == look.iMarkedFrom) {
    m_widget->setSelection(look.iMarkedTo, look.iMarkedFrom - look.iMarkedTo);
  } else {
    m_widget->setSelection(look.iMarkedFrom, look.iMarkedTo - look.iMarkedFrom);
  }
}

}  // namespace orvane::console
