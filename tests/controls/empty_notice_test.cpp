#include "controls/view/empty_notice.h"

#include <gtest/gtest.h>

#include <QScrollBar>
#include <QTest>

#include "tests/fakes/until.h"

namespace orvane::controls {
namespace {

class empty_notice : public testing::Test {
 protected:
  empty_notice() {
    m_notice.resize(400, 300);
    m_notice.show();
  }
  SentenceView& Sentence() { return *m_notice.findChild<SentenceView*>("emptySentence"); }
  QPushButton& Button() { return *m_notice.findChild<QPushButton*>("emptyButton"); }

  EmptyNotice m_notice;
};

TEST_F(empty_notice, takes_the_room_that_its_sentence_needs) {
  m_notice.Say("No rows", "The table is empty.");
  EXPECT_LT(Sentence().height(), 60);
  EXPECT_FALSE(Sentence().verticalScrollBar()->isVisible());
  m_notice.Say("No rows", {});
  EXPECT_FALSE(Sentence().isVisible());
}

TEST_F(empty_notice, breaks_words_of_any_length) {
  m_notice.Say("Failed", "There is no column " + QString(300, u'W') + "; correct it.");
  EXPECT_EQ(Sentence().horizontalScrollBar()->maximum(), 0);
  EXPECT_LE(m_notice.minimumSizeHint().width(), 200);
  EXPECT_TRUE(Sentence().toPlainText().contains(QString(300, u'W'))) << "whole, to be copied";
}

TEST_F(empty_notice, scrolls_what_is_too_long_and_leaves_the_button_in_sight) {
  m_notice.Ask("Not run", QStringLiteral("word ").repeated(1'500), "&Run", [] {});
  EXPECT_TRUE(tests::Until([this] { return Sentence().verticalScrollBar()->isVisible(); }));
  EXPECT_TRUE(m_notice.rect().contains(Button().geometry()));
  m_notice.Say("No rows", QString(5'000'000, u'x'));
  EXPECT_EQ(Sentence().toPlainText().size(), 10'001);
}

TEST_F(empty_notice, calls_its_action_once_and_not_when_something_else_is_said) {
  int nCalled = 0;
  m_notice.Ask("Not run", "It changes data.", "&Run", [&] { ++nCalled; });
  Button().click();
  Button().click();
  EXPECT_EQ(nCalled, 1);
  m_notice.Ask("Not run", "It changes data.", "&Run", [&] { ++nCalled; });
  m_notice.Say("No rows", {});
  EXPECT_FALSE(Button().isVisible());
  Button().click();
  EXPECT_EQ(nCalled, 1);
}

TEST_F(empty_notice, shows_that_its_button_has_the_keys) {
  QPalette palette;
  palette.setColor(QPalette::Highlight, QColor(200, 40, 40));
  Button().setPalette(palette);
  m_notice.Ask("Not run", "It changes data.", "&Run", [] {});
  const auto edge = [&] { return Button().grab().toImage().pixelColor(0, Button().height() / 2); };
  EXPECT_NE(edge(), QColor(200, 40, 40));
  m_notice.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&m_notice));
  Button().setFocus();
  ASSERT_TRUE(Button().hasFocus());
  EXPECT_EQ(edge(), QColor(200, 40, 40));
}

}  // namespace
}  // namespace orvane::controls
