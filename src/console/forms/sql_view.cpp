#include "console/forms/sql_view.h"

#include <Qsci/qscicommandset.h>

#include <QEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <QPalette>

namespace orvane::console {
namespace {

constexpr int kCharactersShown = 64;
constexpr int kLinesShown = 12;
constexpr int kLeastCharacters = 30;
constexpr int kLeastLines = 4;
constexpr int kIndent = 4;
constexpr int kTextIndent = 6;

QColor Between(const QColor& one, const QColor& other) {
  return {(one.red() + other.red()) / 2, (one.green() + other.green()) / 2,
          (one.blue() + other.blue()) / 2};
}

}  // namespace

SqlView::SqlView(QWidget* parent) : QsciScintilla(parent) {
  setUtf8(true);
  setEolMode(EolUnix);
  setLexer(&m_lexer);
  setIndentationsUseTabs(false);
  setTabWidth(kIndent);
  setAutoIndent(true);
  setWrapMode(WrapWord);
  setScrollWidth(1);
  setScrollWidthTracking(true);
  setBraceMatching(SloppyBraceMatch);
  setSelectionToEol(false);
  setMarginType(0, NumberMargin);
  setMarginWidth(1, 0);
  SendScintilla(SCI_SETMARGINLEFT, 0, kTextIndent);
  QsciCommandSet* const commands = standardCommands();
  commands->find(QsciCommand::ParaDown)->setKey(0);
  commands->find(QsciCommand::ParaUp)->setKey(0);
  commands->find(QsciCommand::Tab)->setAlternateKey((Qt::CTRL | Qt::Key_BracketRight).toCombined());
  commands->find(QsciCommand::Backtab)
      ->setAlternateKey((Qt::CTRL | Qt::Key_BracketLeft).toCombined());
  connect(this, &QsciScintilla::linesChanged, this, [this] { NumberLines(); });
  Paint();
}

SqlView::~SqlView() {
  setLexer(nullptr);
}

void SqlView::PlainColor(const QColor& color) {
  m_plainColor = color;
  Paint();
}

QFont SqlView::TextFont() const {
  QFont textFont = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  // A desktop may count the size of its letters in dots; the editor knows points alone.
  textFont.setPointSizeF(QFontInfo(font()).pointSizeF());
  return textFont;
}

void SqlView::Paint() {
  m_bPainting = true;
  const QPalette& colors = palette();
  const QColor paper = colors.color(QPalette::Base);
  const QColor ink = m_plainColor.isValid() ? m_plainColor : colors.color(QPalette::Text);
  const QFont textFont = TextFont();
  m_lexer.Paint(colors, textFont, m_plainColor);
  setCaretForegroundColor(colors.color(QPalette::Text));
  setSelectionBackgroundColor(colors.color(QPalette::Highlight));
  setSelectionForegroundColor(colors.color(QPalette::HighlightedText));
  setMatchedBraceBackgroundColor(colors.color(QPalette::AlternateBase));
  setMatchedBraceForegroundColor(ink);
  setUnmatchedBraceBackgroundColor(paper);
  setUnmatchedBraceForegroundColor(ink);
  setMarginsFont(textFont);
  setMarginsBackgroundColor(colors.color(QPalette::AlternateBase));
  setMarginsForegroundColor(Between(colors.color(QPalette::Text), paper));
  NumberLines();
  m_bPainting = false;
}

void SqlView::NumberLines() {
  const auto nDigits = qMax<qsizetype>(2, QString::number(lines()).size());
  setMarginWidth(0, QString(nDigits, u'9') + u' ');
}

QSize SqlView::SizeFor(int iCharacters, int iLines) const {
  const QFontMetrics metrics(TextFont());
  const int iEdge = 2 * frameWidth();
  return {metrics.averageCharWidth() * iCharacters + iEdge, metrics.lineSpacing() * iLines + iEdge};
}

QSize SqlView::sizeHint() const {
  return SizeFor(kCharactersShown, kLinesShown);
}

QSize SqlView::minimumSizeHint() const {
  return SizeFor(kLeastCharacters, kLeastLines);
}

bool SqlView::focusNextPrevChild(bool bNext) {
  // NOLINTNEXTLINE(bugprone-parent-virtual-call): the editor's own would keep Tab to itself.
  return QWidget::focusNextPrevChild(bNext);
}

void SqlView::changeEvent(QEvent* event) {
  QsciScintilla::changeEvent(event);
  const QEvent::Type type = event->type();
  if (!m_bPainting && (type == QEvent::PaletteChange || type == QEvent::FontChange)) Paint();
}

}  // namespace orvane::console
