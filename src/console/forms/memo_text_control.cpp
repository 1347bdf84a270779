#include "console/forms/memo_text_control.h"

#include <QTextDocument>

namespace orvane::console {
namespace {

constexpr int kMemoCharacters = 50;
constexpr int kLinesShown = 3;
constexpr int kLeastMemoCharacters = 20;
constexpr int kLeastLines = 2;

}  // namespace

MemoEdit::MemoEdit(QWidget* parent) : QPlainTextEdit(parent) {
  setTabChangesFocus(true);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

void MemoEdit::setReadOnly(bool bReadOnly) {
  QPlainTextEdit::setReadOnly(bReadOnly);
  if (bReadOnly) {
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  }
}

QSize MemoEdit::SizeFor(int iCharacters, int iLines) const {
  const QFontMetrics metrics = fontMetrics();
  const int iEdge = 2 * (frameWidth() + static_cast<int>(document()->documentMargin()));
  return {metrics.averageCharWidth() * iCharacters + iEdge, metrics.lineSpacing() * iLines + iEdge};
}

QSize MemoEdit::sizeHint() const {
  return SizeFor(kMemoCharacters, kLinesShown);
}

QSize MemoEdit::minimumSizeHint() const {
  return SizeFor(kLeastMemoCharacters, kLeastLines);
}

MemoTextControl::MemoTextControl(FormDialog& dialog) : TextControl(dialog) {
  dialog.Watch(*m_widget, FormDialog::EnterKey::ShiftBreaksLine);
  QObject::connect(m_widget, &QPlainTextEdit::textChanged, m_widget, [this] { Changed(); });
}

QString MemoTextControl::Displayed() const {
  // Only the line ends are translated: a no-break space inside a quoted name stays one.
  QString sText = m_widget->document()->toRawText();
  for (QChar& c : sText) {
    if (c == QChar::ParagraphSeparator || c == QChar::LineSeparator) c = u'\n';
  }
  return sText;
}

}  // namespace orvane::console
