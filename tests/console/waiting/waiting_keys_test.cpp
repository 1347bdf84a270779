// Keys that come while something runs that nobody is told of, where they are to be kept.
#include <QDialog>
#include <QPushButton>

#include "console/waiting/waiting.h"
#include "platform/long_operation.h"
#include "tests/console/waiting/waiting_fixture.h"

namespace orvane::console {
namespace {

using platform::LongOperation;
using namespace std::chrono_literals;

class waiting_keys : public testing::Test {
 protected:
  waiting_keys() { m_window.Edit().setProperty(LongOperation::kKeepsKeys, true); }

  /// Runs something, and the steps in the midst of it.
  void Run(const std::function<void()>& steps) {
    Gate gate;
    QTimer::singleShot(0, &m_window, [&] {
      steps();
      gate.Open();
    });
    m_waiting.Run("Working", [&](const std::stop_token& stop) { gate.Pass(stop); });
  }
  static void Type(QWidget& widget, const char* sText) { QTest::keyClicks(&widget, sText); }
  std::string Text() { return m_window.Edit().text().toStdString(); }
  static void Settle() {
    for (int n = 0; n < 3; ++n) QCoreApplication::processEvents();
  }

  Window m_window;
  Waiting m_waiting{1h};
};

TEST_F(waiting_keys, are_typed_when_nothing_runs_any_more) {
  Run([&] {
    Type(m_window.Edit(), "abc");
    EXPECT_EQ(Text(), "");
  });
  EXPECT_EQ(Text(), "") << "whoever waited has to do with it first";
  // What is typed from now on stands behind.
  Type(m_window.Edit(), "d");
  EXPECT_EQ(Text(), "");
  Settle();
  EXPECT_EQ(Text(), "abcd");
  Type(m_window.Edit(), "e");
  EXPECT_EQ(Text(), "abcde");
}

TEST_F(waiting_keys, wait_for_the_last_of_several_runs) {
  Run([&] { Type(m_window.Edit(), "ab"); });
  Run([&] {
    Settle();
    EXPECT_EQ(Text(), "");
    Type(m_window.Edit(), "c");
  });
  Settle();
  EXPECT_EQ(Text(), "abc");
}

TEST_F(waiting_keys, are_kept_nowhere_else) {
  QLineEdit other(&m_window);
  other.show();
  Run([&] { Type(other, "x"); });
  m_window.Edit().setProperty(LongOperation::kKeepsKeys, false);
  Run([&] { Type(m_window.Edit(), "y"); });
  Settle();
  EXPECT_EQ(other.text(), "");
  EXPECT_EQ(Text(), "");
}

TEST_F(waiting_keys, behind_a_click_that_was_held_back_are_not_typed_elsewhere) {
  Run([&] {
    Type(m_window.Edit(), "a");
    QTest::mouseClick(&m_window.Edit(), Qt::LeftButton);
    Type(m_window.Edit(), "b");
  });
  Settle();
  EXPECT_EQ(Text(), "a");
}

TEST_F(waiting_keys, come_before_a_click_that_follows) {
  Run([&] { Type(m_window.Edit(), "ab"); });
  QTest::mouseClick(&m_window.Edit(), Qt::LeftButton);
  EXPECT_EQ(Text(), "ab");
}

TEST_F(waiting_keys, answer_no_question_that_came_up_meanwhile) {
  QDialog question(&m_window);
  QPushButton yes("Yes", &question);
  bool bPressed = false;
  QObject::connect(&yes, &QPushButton::clicked, &yes, [&] { bPressed = true; });
  Run([&] { Type(m_window.Edit(), " a"); });
  question.open();
  yes.setFocus();
  Settle();
  EXPECT_FALSE(bPressed);
  EXPECT_EQ(Text(), "");
}

TEST_F(waiting_keys, go_with_the_widget_that_keeps_them) {
  auto* line = new QLineEdit(&m_window);
  line->setProperty(LongOperation::kKeepsKeys, true);
  line->show();
  Run([&] {
    Type(*line, "a");
    delete line;
  });
  Settle();
  Type(m_window.Edit(), "b");
  EXPECT_EQ(Text(), "b");
}

TEST_F(waiting_keys, are_held_back_once_a_panel_tells_of_the_run) {
  Waiting waiting(20ms);
  Gate gate;
  OnPanel(m_window, [&](WaitingPanel&) {
    Type(m_window.Edit(), "x");
    gate.Open();
  });
  waiting.Run("Working", [&](const std::stop_token& stop) { gate.Pass(stop); });
  Settle();
  EXPECT_EQ(Text(), "");
}

}  // namespace
}  // namespace orvane::console
