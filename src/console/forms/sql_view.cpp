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

struct Colors {
  QColor keyword;
  QColor number;
  QColor text;
  QColor name;
  QColor comment;
};

QColor Between(const QColor& one, const QColor& other) {
  return {(one.red() + other.red()) / 2, (one.green() + other.green()) / 2,
          (one.blue() + other.blue()) / 2};
}

Colors ColorsFor(const QPalette& palette) {
  if (palette.color(QPalette::Base).lightness() >= 128) {
    return {QColor(0x0b, 0x53, 0x94), QColor(0x8a, 0x45, 0x00), QColor(0x1c, 0x6b, 0x2a),
            QColor(0x6a, 0x2f, 0x7a), QColor(0x66, 0x66, 0x66)};
  }
  return {QColor(0x7f, 0xb4, 0xe8), QColor(0xe0, 0xa8, 0x6a), QColor(0x8f, 0xcf, 0x8f),
          QColor(0xcf, 0xa0, 0xdc), QColor(0xa0, 0xa0, 0xa0)};
}

}  // namespace

const char* SqlWords::keywords(int iSet) const {
  if (iSet != 1) return nullptr;
  return "add all alter and any as asc avg begin between by case cast check coalesce collate "
         "commit "
         "constraint count create cross current_date current_time current_timestamp database "
         "default "
         "delete desc distinct drop else end escape except exists false fetch first foreign from "
         "full "
         "group having in index inner insert intersect into is join key last left like limit max "
         "min "
         "natural not null nulls offset on only or order outer over partition primary references "
         "right rollback row rows select set some sum table then top transaction true union unique "
         "update using values view when where with";
}

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
  m_lexer.setDefaultFont(textFont);
  m_lexer.setDefaultPaper(paper);
  m_lexer.setDefaultColor(ink);
  m_lexer.setFont(textFont);
  m_lexer.setPaper(paper);
  m_lexer.setColor(ink);
  if (!m_plainColor.isValid()) {
    const Colors set = ColorsFor(colors);
    m_lexer.setColor(set.keyword, QsciLexerSQL::Keyword);
    m_lexer.setColor(set.number, QsciLexerSQL::Number);
    m_lexer.setColor(set.text, QsciLexerSQL::SingleQuotedString);
    m_lexer.setColor(set.name, QsciLexerSQL::DoubleQuotedString);
    m_lexer.setColor(set.name, QsciLexerSQL::QuotedIdentifier);
    for (const int iStyle :
         {QsciLexerSQL::Comment, QsciLexerSQL::CommentLine, QsciLexerSQL::CommentDoc}) {
      m_lexer.setColor(set.comment, iStyle);
    }
    QFont keywordFont = textFont;
    keywordFont.setBold(true);
    m_lexer.setFont(keywordFont, QsciLexerSQL::Keyword);
  }
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
