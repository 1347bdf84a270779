#include "widgets/tool_tip.h"

#include <gtest/gtest.h>

#include <QTextDocument>

namespace orvane::console {
namespace {

TEST(ToolTipTest, of_a_very_long_text_has_its_beginning_and_says_where_the_rest_is) {
  const auto shownBy = [](const QString& sTip) {
    QTextDocument document;
    document.setHtml(sTip);
    return document.toPlainText().remove(QChar(0x200B));
  };
  const QString sWhole = QString(700, 'a') + "\n" + QString(700, 'b');
  EXPECT_EQ(shownBy(widgets::ToolTipOf(sWhole)).remove('\n'),
            QString(700, 'a') + QString(700, 'b'));
  const auto sCut = shownBy(widgets::ToolTipOf(QString(40'000, 'x')));
  EXPECT_TRUE(sCut.startsWith(QString(1500, 'x') + QChar(0x2026)));
  EXPECT_TRUE(sCut.contains("The first 1,500 of 40,000 characters."));
  EXPECT_TRUE(sCut.contains("Edit..."));
  EXPECT_LT(shownBy(widgets::ToolTipOf(QString("line\n").repeated(500))).count("line"), 30);
  // No word makes the tip wider than the screen.
  QTextDocument document;
  document.setHtml(widgets::ToolTipOf(QString(1000, 'w')));
  document.setTextWidth(700);
  EXPECT_LE(document.idealWidth(), 700);
}

}  // namespace
}  // namespace orvane::console
