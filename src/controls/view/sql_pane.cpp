#include "controls/view/sql_pane.h"

#include <Qsci/qscistyle.h>

#include <QClipboard>
#include <QEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QResizeEvent>
#include <algorithm>

#include "controls/view/cell_delegate.h"
#include "controls/view/faint_color.h"
#include "sql_look/sql_words.h"

namespace orvane::controls {

namespace {

constexpr int kLeastLines = 3;
constexpr int kMostLines = 8;
constexpr int kInset = 6;
/// Above those of the highlighter and of the editor itself. It is always the same one: a style that
/// is to find its number itself takes one of a few hundred of the whole process, for ever.
constexpr int kTimeStyle = QsciScintillaBase::STYLE_LASTPREDEFINED + 1;

}  // namespace

SqlPane::SqlPane(QWidget* parent) : QsciScintilla(parent), m_lexer(new sql_look::SqlWords(this)) {
  setObjectName("sqlStatement");
  setAccessibleName("SQL statement");
  setFrameShape(QFrame::NoFrame);
  setLexer(m_lexer);
  setUtf8(true);
  setReadOnly(true);
  setWrapMode(WrapWord);
  setMarginWidth(1, 0);
  setCaretWidth(0);
  setAnnotationDisplay(AnnotationStandard);
  SendScintilla(SCI_SETMARGINLEFT, 0, kInset);
  SendScintilla(SCI_SETMARGINRIGHT, 0, kInset);
  SendScintilla(SCI_SETEXTRAASCENT, 1);
  SendScintilla(SCI_SETEXTRADESCENT, 1);
  SendScintilla(SCI_SETHSCROLLBAR, 0);
  setViewportMargins(0, kInset, 0, kInset);
  setBackgroundRole(QPalette::Base);
  setAutoFillBackground(true);
  ApplyPalette();
}

void SqlPane::Sql(const QString& sSql) {
  if (text() == sSql) return;
  m_sTime.clear();
  clearAnnotations();
  setText(sSql);
  updateGeometry();
}

QSize SqlPane::sizeHint() const {
  const int nLines = SeenLines() + (m_sTime.isEmpty() ? 0 : 1);
  return {QsciScintilla::sizeHint().width(),
          HeightOfLines(std::clamp(nLines, kLeastLines, kMostLines))};
}

QSize SqlPane::minimumSizeHint() const {
  return {QsciScintilla::minimumSizeHint().width(), HeightOfLines(1)};
}

void SqlPane::changeEvent(QEvent* event) {
  QsciScintilla::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
    ApplyPalette();
  }
}

void SqlPane::focusInEvent(QFocusEvent* event) {
  QsciScintilla::focusInEvent(event);
  viewport()->update();
}

void SqlPane::focusOutEvent(QFocusEvent* event) {
  QsciScintilla::focusOutEvent(event);
  viewport()->update();
}

void SqlPane::paintEvent(QPaintEvent* event) {
  QsciScintilla::paintEvent(event);
  if (!hasFocus()) return;
  QPainter painter(viewport());
  DrawFocus(painter, viewport()->rect(), palette().color(QPalette::Highlight));
}

void SqlPane::ApplyPalette() {
  QFont plain = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  // Also of a font whose size was chosen in dots.
  plain.setPointSizeF(QFontInfo(font()).pointSizeF());
  m_lexer->Paint(palette(), plain);
  setPaper(palette().color(QPalette::Base));
  setColor(palette().color(QPalette::Text));
  setSelectionBackgroundColor(palette().color(QPalette::Highlight));
  setSelectionForegroundColor(palette().color(QPalette::HighlightedText));
  ShowTime();
}

void SqlPane::Took(const QString& sTime) {
  if (m_sTime == sTime) return;
  m_sTime = sTime;
  ShowTime();
  updateGeometry();
}

void SqlPane::ShowTime() {
  clearAnnotations();
  if (m_sTime.isEmpty()) return;
  const QColor ground = palette().color(QPalette::Base);
  const QsciStyle style(kTimeStyle, QStringLiteral("time"),
                        FaintColor(palette().color(QPalette::Text), ground), ground, font());
  annotate(lines() - 1, m_sTime, style);
}

void SqlPane::keyPressEvent(QKeyEvent* event) {
  // Of a text that is only shown, all is meant where nothing else is said.
  if (event->matches(QKeySequence::Copy) && !hasSelectedText()) {
    QGuiApplication::clipboard()->setText(text());
    return;
  }
  QsciScintilla::keyPressEvent(event);
}

void SqlPane::resizeEvent(QResizeEvent* event) {
  QsciScintilla::resizeEvent(event);
  if (event->size().width() != event->oldSize().width() && m_rewrapped) m_rewrapped();
}

int SqlPane::SeenLines() const {
  // Lines are wrapped when they are drawn, or when one is to be in sight.
  SendScintilla(SCI_ENSUREVISIBLE, static_cast<unsigned long>(lines() - 1));
  int nSeen = 0;
  // Of a longer statement no more is seen either way.
  for (int n = 0; n < lines() && nSeen < kMostLines; ++n) {
    nSeen += static_cast<int>(SendScintilla(SCI_WRAPCOUNT, static_cast<unsigned long>(n)));
  }
  return nSeen;
}

int SqlPane::HeightOfLines(int nLines) const {
  return nLines * textHeight(0) + 2 * (frameWidth() + kInset);
}

}  // namespace orvane::controls
