#include "controls/sql_pane.h"

#include <QEvent>
#include <QFontDatabase>
#include <QPainter>
#include <algorithm>

#include "controls/cell_delegate.h"
#include "controls/sql_lexer.h"

namespace orvane::controls {

namespace {

constexpr int kLeastLines = 3;
constexpr int kMostLines = 8;
constexpr int kInset = 6;

/// A colour of that hue which can be read on the palette's base.
QColor Tinted(const QPalette& palette, int nHue) {
  const bool bDark = palette.color(QPalette::Base).lightness() < 128;
  return QColor::fromHsl(nHue, bDark ? 150 : 180, bDark ? 175 : 85);
}

/// The palette's pale text as the eye sees it on the base; the editor draws no half-transparent
/// text.
QColor Pale(const QPalette& palette) {
  const QColor pale = palette.color(QPalette::PlaceholderText);
  const QColor base = palette.color(QPalette::Base);
  const float a = pale.alphaF();
  return QColor::fromRgbF(pale.redF() * a + base.redF() * (1 - a),
                          pale.greenF() * a + base.greenF() * (1 - a),
                          pale.blueF() * a + base.blueF() * (1 - a));
}

}  // namespace

SqlPane::SqlPane(QWidget* parent) : QsciScintilla(parent), m_lexer(new SqlLexer(this)) {
  setObjectName("sqlStatement");
  setAccessibleName("SQL statement");
  setFrameShape(QFrame::NoFrame);
  setLexer(m_lexer);
  setUtf8(true);
  setReadOnly(true);
  setWrapMode(WrapWord);
  setMarginWidth(1, 0);
  setCaretWidth(0);
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
  setText(sSql);
  updateGeometry();
}

QSize SqlPane::sizeHint() const {
  return {QsciScintilla::sizeHint().width(),
          HeightOfLines(std::clamp(lines(), kLeastLines, kMostLines))};
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
  plain.setPointSizeF(font().pointSizeF() > 0 ? font().pointSizeF() : plain.pointSizeF());
  QFont bold = plain;
  bold.setBold(true);
  const QColor base = palette().color(QPalette::Base);
  const QColor text = palette().color(QPalette::Text);

  m_lexer->setDefaultFont(plain);
  m_lexer->setDefaultPaper(base);
  m_lexer->setDefaultColor(text);
  m_lexer->setFont(plain, -1);
  m_lexer->setPaper(base, -1);
  m_lexer->setColor(text, -1);
  m_lexer->setFont(bold, QsciLexerSQL::Keyword);
  m_lexer->setColor(Tinted(palette(), 220), QsciLexerSQL::Keyword);
  m_lexer->setColor(Tinted(palette(), 130), QsciLexerSQL::SingleQuotedString);
  m_lexer->setColor(Tinted(palette(), 25), QsciLexerSQL::Number);
  for (const int nStyle : {QsciLexerSQL::Comment, QsciLexerSQL::CommentLine,
                           QsciLexerSQL::CommentDoc, QsciLexerSQL::CommentLineHash}) {
    m_lexer->setColor(Pale(palette()), nStyle);
  }
  setPaper(base);
  setColor(text);
  setSelectionBackgroundColor(palette().color(QPalette::Highlight));
  setSelectionForegroundColor(palette().color(QPalette::HighlightedText));
}

int SqlPane::HeightOfLines(int nLines) const {
  return nLines * textHeight(0) + 2 * (frameWidth() + kInset);
}

}  // namespace orvane::controls
