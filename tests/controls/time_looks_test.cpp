// The bar of times above a grid, the statement and the trend, in each look: nothing is cut or lies
// over something else, no text ends early, and all can be read.
#include <QComboBox>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>
#include <QToolBar>
#include <QToolButton>

#include "controls/view/sql_pane.h"
#include "sql_look/sql_words.h"
#include "tests/controls/grid_looks.h"
#include "tests/fakes/until.h"
#include "trend/trend_plot.h"
#include "trend/trend_view.h"

namespace orvane::controls {
namespace {

// A grid of 612 dots has letters twice as large, too.
constexpr GridLook kTimeLooks[] = {{"usual", 10, 1, false, kSmallGrid},
                                   {"dark", 10, 1, true, kSmallGrid},
                                   {"double_letters", 20, 1, false, kSmallGrid},
                                   {"double_letters_dark", 20, 1, true, kSmallGrid},
                                   {"triple_dots", 10, 3, false, kSmallGrid}};

class time_looks : public GridLooks {
 protected:
  time_looks() {
    m_server->Run(
        "INSERT INTO P..Data (Tag, Timestamp, Value) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
        "SELECT i + 1 FROM n WHERE i < 40) SELECT iif(i % 2, 'Boiler 1 pressure', 'Boiler 2 "
        "pressure'), CAST('2026-11-21 14:00:00' AS TIMESTAMP) + i * 60000000, i * 1000.5 FROM n");
    OpenIn("Data");
  }
  /// All of the text has its place.
  static void ExpectRoomFor(const QWidget& widget, const QString& sText, int nBeside) {
    EXPECT_GE(widget.width() - nBeside, widget.fontMetrics().horizontalAdvance(sText))
        << sText.toStdString();
    EXPECT_GE(widget.height(), widget.fontMetrics().height()) << sText.toStdString();
  }
  /// Text that lies somewhere in the picture: it stands out from its ground, and touches no edge
  /// beyond which it might go on.
  void ExpectTextIn(QWidget& widget, const QRect& place, const char* sWhat) {
    const QImage whole = Drawn(widget);
    const int nRatio = GetParam().nRatio;
    const QImage picture = whole.copy(QRect(place.topLeft() * nRatio, place.size() * nRatio));
    const QColor ground = picture.pixelColor(0, 0);
    double dBest = 1;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        dBest = std::max(dBest, console::Contrast(picture.pixelColor(x, y), ground));
      }
    }
    EXPECT_GE(dBest, kReadable) << sWhat;
  }
};

/// The lines of the statement and of the time beneath it, or eight of them.
static void ExpectAllLinesIn(const SqlPane& pane) {
  int nLines = 1;
  for (int n = 0; n < pane.lines(); ++n) {
    nLines += static_cast<int>(
        pane.SendScintilla(QsciScintilla::SCI_WRAPCOUNT, static_cast<unsigned long>(n)));
  }
  EXPECT_LE(std::min(nLines, 8) * pane.textHeight(0), pane.viewport()->height())
      << nLines << " lines";
}

TEST_P(time_looks, of_the_time_bar) {
  auto& bar = Part("timeBar");
  EXPECT_TRUE(Window()->rect().contains(QRect(bar.mapTo(Window(), QPoint()), bar.size())));
  auto& ranges = Part<QComboBox>("timeRange");
  QStyleOptionComboBox option;
  option.initFrom(&ranges);
  const QRect text = ranges.style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                    QStyle::SC_ComboBoxEditField, &ranges);
  for (int n = 0; n < ranges.count(); ++n) {
    ExpectRoomFor(ranges, ranges.itemText(n), ranges.width() - text.width());
  }
  auto& from = Part<QLineEdit>("timeFrom");
  from.setFocus();
  from.setText("2024-05-31 12:00:00");
  Part<QLineEdit>("timeTo").setText("2024-06-01 12:00:00");
  for (QLineEdit* const box : {&from, &Part<QLineEdit>("timeTo")}) {
    const QMargins margins = box->textMargins();
    ExpectRoomFor(*box, box->text(), 8 + margins.left() + margins.right());
    box->deselect();
    Rows().setFocus();
    ExpectRead(*box, kReadable);
  }
  QWidget* const parts = from.parentWidget()->parentWidget();
  for (QWidget* const part : parts->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
    if (!part->isVisible()) continue;
    EXPECT_TRUE(parts->rect().contains(part->geometry())) << "a part of the bar is cut";
    ExpectApart(*part);
    for (QToolButton* const button : part->findChildren<QToolButton*>()) {
      if (button->isEnabled()) ExpectRead(*button, kReadable);
    }
    for (QLabel* const label : part->findChildren<QLabel*>()) {
      ExpectRoomFor(*label, label->text().remove(u'&'), 0);
      ExpectRead(*label, kReadable);
    }
  }
  ExpectRead(Part("follow"), kReadable);
  ExpectRead(Part("followSeconds"), kReadable);
}

// What is wrong with a time, and what is to be pressed, each in as many lines as it needs.
TEST_P(time_looks, of_what_the_time_bar_tells) {
  auto& from = Part<QLineEdit>("timeFrom");
  for (const char* const sTyped : {"*-1x", "2024-05-31 12:00"}) {
    from.setFocus();
    from.selectAll();
    QTest::keyClicks(&from, sTyped);
    Settle();
    auto& told = Part<QLabel>("timeTold");
    EXPECT_FALSE(told.text().isEmpty());
    EXPECT_GE(told.height(), told.heightForWidth(told.width())) << told.text().toStdString();
    EXPECT_TRUE(Window()->rect().contains(QRect(told.mapTo(Window(), QPoint()), told.size())));
    ExpectRead(told, kReadable);
  }
}

TEST_P(time_looks, of_the_statement) {
  m_editor->ShowSqlStatements(true);
  Settle();
  auto& pane = Part<SqlPane>("sqlStatement");
  // As large as the letters around it.
  const QFontInfo around(Rows().font());
  EXPECT_NEAR(QFontInfo(pane.lexer()->font(QsciLexerSQL::Identifier)).pixelSize(),
              around.pixelSize(), 2);
  for (const int nStyle :
       {QsciLexerSQL::Default, QsciLexerSQL::Keyword, QsciLexerSQL::Number,
        QsciLexerSQL::SingleQuotedString, QsciLexerSQL::DoubleQuotedString, QsciLexerSQL::Operator,
        QsciLexerSQL::Identifier, QsciLexerSQL::Comment, QsciLexerSQL::CommentLine}) {
    EXPECT_GE(console::Contrast(pane.lexer()->color(nStyle), pane.lexer()->paper(nStyle)),
              kReadable)
        << nStyle;
  }
  // Every line of it and the time beneath it are in sight, from the first letter to the last.
  EXPECT_EQ(pane.firstVisibleLine(), 0);
  ExpectAllLinesIn(pane);
  // Also where they wrap, up to as many as a pane has.
  Window()->resize(GetParam().size.width() * 2 / 3, GetParam().size.height());
  Settle();
  Settle();
  ExpectAllLinesIn(pane);
  Window()->resize(GetParam().size);
  Settle();
  Settle();
  int nLines = 1;  // the time's
  for (int n = 0; n < pane.lines(); ++n) {
    nLines += static_cast<int>(
        pane.SendScintilla(QsciScintilla::SCI_WRAPCOUNT, static_cast<unsigned long>(n)));
  }
  EXPECT_FALSE(pane.annotation(pane.lines() - 1).isEmpty()) << "the time that it took";
  const int nLine = pane.textHeight(0);
  EXPECT_LE(nLines * nLine, pane.viewport()->height()) << nLines << " lines";
  EXPECT_GE(nLine, QFontMetrics(pane.lexer()->font(QsciLexerSQL::Keyword)).height());
  const QPoint place = pane.viewport()->mapTo(&pane, QPoint());
  for (int n = 0; n + 1 < nLines; ++n) {
    ExpectTextIn(
        pane, {place.x() + 2, place.y() + n * nLine + 2, pane.viewport()->width() - 4, nLine - 4},
        ("line " + std::to_string(n)).c_str());
  }
}

// Of a bar that would take most of a low window the ranges stay, with a button for the others.
TEST_P(time_looks, of_the_time_bar_in_a_low_window) {
  const int nLine = Window()->fontMetrics().height();
  Window()->resize(GetParam().size.width(), 9 * nLine);
  Settle();
  auto& more = Part<QToolButton>("timeMore");
  auto& from = *Window()->findChild<QLineEdit*>("timeFrom");
  EXPECT_FALSE(from.isVisible());
  EXPECT_FALSE(Window()->findChild<QWidget*>("follow")->isVisible());
  ExpectApart(*more.parentWidget());
  ExpectRead(more, kReadable);
  EXPECT_GE(Rows().viewport()->height(), nLine) << "a row is in sight";
  QTest::mouseClick(&more, Qt::LeftButton);
  Settle();
  EXPECT_TRUE(from.isVisible());
  QTest::mouseClick(&more, Qt::LeftButton);
  Settle();
  EXPECT_FALSE(from.isVisible());
  Window()->resize(GetParam().size.width(), 40 * nLine);
  Settle();
  EXPECT_TRUE(from.isVisible());
  EXPECT_FALSE(more.isVisible());
}

class trend_looks : public time_looks {};

TEST_P(trend_looks, of_the_trend) {
  Press(Qt::Key_F4, Qt::ShiftModifier);
  const auto& view = static_cast<trend::TrendView&>(Part("trend"));
  ASSERT_TRUE(tests::Until([&] { return !view.IsReading(); }));
  auto& plot = static_cast<trend::TrendPlot&>(Part("trendPlot"));
  plot.setFocus();
  QTest::keyClick(&plot, Qt::Key_Right);
  plot.replot(QCustomPlot::rpImmediateRefresh);
  Settle();
  // Its buttons, those behind the mark for more apart.
  auto& bar = Part<QToolBar>("trendBar");
  int nButtons = 0;
  for (QToolButton* const button : bar.findChildren<QToolButton*>()) {
    if (!button->isVisible()) continue;
    ++nButtons;
    EXPECT_TRUE(bar.rect().contains(button->geometry())) << button->text().toStdString();
    EXPECT_GE(button->width(), button->sizeHint().width()) << button->text().toStdString();
    if (!button->text().isEmpty() && button->isEnabled()) ExpectRead(*button, kReadable);
  }
  EXPECT_GE(nButtons, 3);
  // The numbers at its axes.
  for (const QCPAxis* const axis : {plot.xAxis, plot.axisRect()->axis(QCPAxis::atLeft)}) {
    ASSERT_NE(axis, nullptr);
    EXPECT_EQ(axis->tickLabelFont(), plot.font());
    EXPECT_GE(console::Contrast(axis->tickLabelColor(), plot.palette().color(QPalette::Base)),
              kReadable);
  }
  const QRect within = plot.axisRect()->rect();
  EXPECT_GE(within.width(), plot.width() / 2) << "half of the width is the lines'";
  EXPECT_GE(within.height(), 3 * plot.fontMetrics().height());
  ExpectTextIn(
      plot,
      {within.left(), within.bottom() + 2, within.width(), plot.height() - within.bottom() - 4},
      "times");
  ExpectTextIn(plot, {2, within.top(), within.left() - 4, within.height()}, "values");
  // Labels that go on beyond the window would have dots at its edge.
  const QImage picture = Drawn(plot);
  const QColor ground = picture.pixelColor(picture.width() / 2, 0);
  int nAtEdge = 0;
  for (int y = within.bottom() + 2; y < plot.height(); ++y) {
    for (const int x : {0, plot.width() - 1}) {
      const int nRatio = GetParam().nRatio;
      nAtEdge += console::Contrast(picture.pixelColor(x * nRatio, y * nRatio), ground) >=
                 console::kLeastContrast;
    }
  }
  EXPECT_EQ(nAtEdge, 0);
  // The values at the cursor, each in its line.
  auto& list = Part<QTableView>("trendValues");
  ASSERT_EQ(list.model()->rowCount(), 2);
  EXPECT_GE(list.rowHeight(0), list.fontMetrics().height());
  EXPECT_TRUE(list.viewport()->rect().contains(list.visualRect(list.model()->index(0, 0))))
      << "the first line is in sight";
  for (int n = 0; n < list.model()->columnCount(); ++n) {
    const QString sName = list.model()->headerData(n, Qt::Horizontal).toString();
    EXPECT_GE(list.columnWidth(n), list.fontMetrics().horizontalAdvance(sName))
        << sName.toStdString();
    const QString sText = list.model()->index(0, n).data().toString();
    EXPECT_GE(list.columnWidth(n), list.fontMetrics().horizontalAdvance(sText))
        << sText.toStdString();
  }
}

INSTANTIATE_TEST_SUITE_P(looks, trend_looks, testing::ValuesIn(kTimeLooks),
                         [](const auto& tested) { return std::string(tested.param.sName); });
INSTANTIATE_TEST_SUITE_P(looks, time_looks, testing::ValuesIn(kTimeLooks),
                         [](const auto& tested) { return std::string(tested.param.sName); });

}  // namespace
}  // namespace orvane::controls
