#include "controls/values/tip_text.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QTextDocument>

namespace orvane::controls {
namespace {

constexpr const char* kHow = "Ctrl+C copies it.";

QString Plain(const QString& sTip) {
  QTextDocument document;
  document.setHtml(sTip);
  return document.toPlainText();
}
std::string Tip(const QString& sWhole) {
  return Plain(TipText(sWhole, kHow)).toStdString();
}

TEST(tip_text, is_the_text_as_it_stands_when_it_is_short) {
  EXPECT_EQ(Tip("a <b> & c\n  d"), "a <b> & c\n  d");
  EXPECT_EQ(Tip(QString(1499, u'x') + u' ').size(), 1499U + 24 * 3 + 1) << "with places to break";
}

TEST(tip_text, says_how_long_the_whole_is_of_which_it_has_the_beginning) {
  const auto sTip = Plain(TipText(QString(1'500, u' '), kHow, 20'000'002)).toStdString();
  EXPECT_TRUE(sTip.ends_with("The first 1,500 of 20,000,002 characters. Ctrl+C copies it."))
      << sTip;
}

TEST(tip_text, says_how_much_of_a_long_text_it_shows_and_where_to_see_the_rest) {
  const std::string sTip = Tip(QStringLiteral("word ").repeated(2'000));
  EXPECT_TRUE(sTip.starts_with("word word "));
  EXPECT_TRUE(sTip.ends_with("\u2026\nThe first 1,500 of 10,000 characters. Ctrl+C copies it."))
      << sTip;
}

TEST(tip_text, shows_no_more_lines_than_a_screen_has) {
  const QString sTip = TipText(QStringLiteral("x\n").repeated(700), kHow);
  EXPECT_LT(Plain(sTip).count(u'\n'), 25);
  EXPECT_TRUE(sTip.contains("The first 39 of 1,400 characters."));
}

TEST(tip_text, cuts_no_character_in_two) {
  const QString sFace = QString::fromUtf8("\xF0\x9F\x98\x80");
  const QString sTip = TipText(u'x' + sFace.repeated(1'000), kHow);
  EXPECT_FALSE(sTip.toUtf8().contains("\xEF\xBF\xBD"));
  EXPECT_TRUE(sTip.contains("The first 1,499 of 2,001 characters."));
}

TEST(tip_text, is_no_wider_than_a_screen_whatever_the_words) {
  for (const QString& sText : {QString(1'400, u'W'), QString(100'000, u'W')}) {
    QLabel label(TipText(sText, kHow));
    label.setWordWrap(true);
    EXPECT_LT(label.minimumSizeHint().width(), 1'000);
  }
}

}  // namespace
}  // namespace orvane::controls
