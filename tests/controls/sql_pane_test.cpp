#include "controls/view/sql_pane.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

#include "console/look/contrast.h"
#include "sql_look/sql_words.h"

namespace orvane::controls {
namespace {

long StyleAt(SqlPane& pane, const char* sWord) {
  pane.recolor();
  const int nAt = static_cast<int>(pane.text().toUtf8().indexOf(sWord));
  return pane.SendScintilla(QsciScintilla::SCI_GETSTYLEAT, static_cast<unsigned long>(nAt));
}

TEST(sql_pane, shows_the_statement_and_takes_no_typing) {
  SqlPane pane;
  pane.Sql("SELECT 1");
  QTest::keyClicks(&pane, "x");
  QTest::keyClick(&pane, Qt::Key_Delete);
  EXPECT_EQ(pane.text(), "SELECT 1");
  EXPECT_TRUE(pane.isReadOnly());
  EXPECT_EQ(pane.accessibleName(), "SQL statement");
}

TEST(sql_pane, colours_the_words_of_sql_and_not_the_usual_column_names) {
  SqlPane pane;
  pane.Sql("SELECT Timestamp, Value FROM t WHERE n > 12 AND s = 'text' -- note");
  EXPECT_EQ(StyleAt(pane, "SELECT"), QsciLexerSQL::Keyword);
  EXPECT_EQ(StyleAt(pane, "WHERE"), QsciLexerSQL::Keyword);
  EXPECT_EQ(StyleAt(pane, "Timestamp"), QsciLexerSQL::Identifier);
  EXPECT_EQ(StyleAt(pane, "Value"), QsciLexerSQL::Identifier);
  EXPECT_EQ(StyleAt(pane, "12"), QsciLexerSQL::Number);
  EXPECT_EQ(StyleAt(pane, "'text'"), QsciLexerSQL::SingleQuotedString);
  EXPECT_EQ(StyleAt(pane, "-- note"), QsciLexerSQL::CommentLine);
}

TEST(sql_pane, tells_beneath_the_statement_how_long_it_took) {
  SqlPane pane;
  pane.Sql("SELECT 1\nFROM a\nWHERE b");
  const int nWithout = pane.sizeHint().height();
  pane.Took("12 ms, at 14:02:11");
  EXPECT_EQ(pane.annotation(2), "12 ms, at 14:02:11");
  EXPECT_EQ(pane.text(), "SELECT 1\nFROM a\nWHERE b") << "it is no part of the statement";
  EXPECT_GT(pane.sizeHint().height(), nWithout);
  pane.Sql("SELECT 2");
  EXPECT_EQ(pane.annotation(0), "") << "of another one nothing is known yet";
}

TEST(sql_pane, copies_the_statement_or_what_of_it_is_selected) {
  SqlPane pane;
  pane.Sql("SELECT 1\nFROM a");
  pane.Took("12 ms");
  QTest::keyClick(&pane, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "SELECT 1\nFROM a");
  pane.setSelection(1, 0, 1, 4);
  QTest::keyClick(&pane, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "FROM");
}

TEST(sql_pane, is_as_high_as_its_statement_within_bounds) {
  SqlPane pane;
  pane.Sql("SELECT 1");
  const int nLow = pane.sizeHint().height();
  pane.Sql("SELECT 1\nFROM a\nWHERE b\nORDER BY c");
  EXPECT_GT(pane.sizeHint().height(), nLow);
  // Lines as they are seen count.
  pane.Sql("SELECT " + QString("Column, ").repeated(20));
  pane.resize(4'000, 100);
  EXPECT_EQ(pane.sizeHint().height(), nLow);
  int nRewrapped = 0;
  pane.OnRewrapped([&] { ++nRewrapped; });
  pane.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&pane));
  pane.resize(pane.fontMetrics().averageCharWidth() * 30, 100);
  EXPECT_GT(nRewrapped, 0);
  EXPECT_GT(pane.sizeHint().height(), nLow);
  pane.Sql(QString("\n").repeated(8));
  const int nHigh = pane.sizeHint().height();
  pane.Sql(QString("\n").repeated(500));
  EXPECT_EQ(pane.sizeHint().height(), nHigh);
}

TEST(sql_pane, follows_the_palette) {
  SqlPane pane;
  pane.Sql("SELECT 'x'");
  QPalette dark;
  dark.setColor(QPalette::Base, QColor(20, 20, 20));
  dark.setColor(QPalette::Text, QColor(230, 230, 230));
  pane.setPalette(dark);
  const auto* lexer = pane.lexer();
  EXPECT_EQ(lexer->paper(QsciLexerSQL::Keyword), QColor(20, 20, 20));
  EXPECT_EQ(lexer->color(QsciLexerSQL::Identifier), QColor(230, 230, 230));
  EXPECT_GT(lexer->color(QsciLexerSQL::Keyword).lightness(), 128);
  QPalette light;
  light.setColor(QPalette::Base, QColor(250, 250, 250));
  light.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 102));
  pane.setPalette(light);
  EXPECT_EQ(lexer->paper(QsciLexerSQL::Keyword), QColor(250, 250, 250));
  EXPECT_LT(lexer->color(QsciLexerSQL::Keyword).lightness(), 128);
  EXPECT_LT(lexer->color(QsciLexerSQL::CommentLine).lightness(), 128);
}

TEST(sql_pane, the_time_can_be_read_in_any_palette) {
  for (const auto& [nText, nBase] : {std::pair(230, 20), std::pair(30, 255), std::pair(255, 90)}) {
    SqlPane pane;
    QPalette palette;
    palette.setColor(QPalette::Base, QColor(nBase, nBase, nBase));
    palette.setColor(QPalette::Text, QColor(nText, nText, nText));
    // What some desktops have for it can hardly be told from the ground.
    palette.setColor(QPalette::PlaceholderText, QColor(nBase, nBase, nBase / 2));
    pane.setPalette(palette);
    pane.Sql({});
    pane.Took("12 ms, at 14:02:11");
    pane.resize(300, 100);
    pane.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&pane));
    pane.clearFocus();
    const QImage picture = pane.viewport()->grab().toImage();
    double dBest = 1;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        dBest = std::max(
            dBest, console::Contrast(picture.pixelColor(x, y), palette.color(QPalette::Base)));
      }
    }
    EXPECT_GE(dBest, 4.5) << nText << " on " << nBase;
  }
}

TEST(sql_pane, tells_the_time_of_the_hundredth_fetch_as_that_of_the_first) {
  SqlPane pane;
  pane.Sql("SELECT 1");
  pane.resize(300, 100);
  pane.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&pane));
  pane.clearFocus();
  const auto picture = [&] { return pane.viewport()->grab().toImage(); };
  const QImage none = picture();
  const auto style = [&] { return pane.SendScintilla(QsciScintilla::SCI_ANNOTATIONGETSTYLE, 0UL); };
  pane.Took("last");
  const QImage last = picture();
  const long nStyle = style();
  EXPECT_NE(last, none);
  EXPECT_GT(nStyle, QsciScintilla::STYLE_LASTPREDEFINED) << "no style of the statement";
  EXPECT_LE(nStyle, QsciScintilla::STYLE_MAX);
  for (int n = 0; n < 300; ++n) pane.Took(QString::number(n));
  pane.Took("last");
  EXPECT_EQ(picture(), last);
  EXPECT_EQ(style(), nStyle);
}

TEST(sql_pane, shows_that_it_has_the_keys) {
  SqlPane pane;
  QPalette palette = pane.palette();
  palette.setColor(QPalette::Base, QColor(255, 255, 255));
  palette.setColor(QPalette::Highlight, QColor(200, 40, 40));
  pane.setPalette(palette);
  pane.resize(300, 100);
  pane.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&pane));
  pane.clearFocus();
  const auto corner = [&] { return pane.viewport()->grab().toImage().pixelColor(0, 0); };
  EXPECT_EQ(corner(), QColor(255, 255, 255));
  pane.activateWindow();
  pane.setFocus();
  ASSERT_TRUE(pane.hasFocus());
  EXPECT_EQ(corner(), QColor(200, 40, 40));
}

}  // namespace
}  // namespace orvane::controls
