// What a wait does to the window: its panel, the pointer, and what is let in meanwhile.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QLabel>
#include <QPushButton>

#include "console/waiting/waiting.h"
#include "tests/console/waiting/waiting_fixture.h"

namespace orvane::console {
namespace {

using namespace std::chrono_literals;
using platform::Failure;
namespace failure = platform::failure;

TEST(waiting_window, shows_no_panel_before_its_time) {
  static_assert(Waiting::kBeforePanel == 500ms);
  Window window;
  Waiting waiting(24h);
  Gate gate;
  int nLooks = 0;
  bool bPanelSeen = false;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    bPanelSeen |= window.Panel() != nullptr;
    if (++nLooks >= 100) gate.Open();
  });
  timer.start(1);
  waiting.Run("Working", [&](std::stop_token stop) { gate.Pass(stop); });
  EXPECT_GE(nLooks, 100);
  EXPECT_FALSE(bPanelSeen);
}

TEST(waiting_window, shows_the_panel_of_a_long_wait_and_takes_it_away_at_the_end) {
  Window window;
  Waiting waiting;
  Gate gate;
  bool bShown = false;
  OnPanel(window, [&](WaitingPanel& panel) {
    bShown = true;
    EXPECT_TRUE(panel.isVisible());
    EXPECT_EQ(panel.findChild<QLabel*>("m_lblWhat")->text(), "Connecting to <localhost>");
    EXPECT_EQ(panel.geometry().center(), window.rect().center());
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::BusyCursor);
    gate.Open();
  });
  waiting.Run("Connecting to <localhost>", [&](std::stop_token stop) { gate.Pass(stop); });
  EXPECT_TRUE(bShown);
  EXPECT_EQ(window.Panel(), nullptr);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST(waiting_window, under_the_hourglass_the_hourglass_stays) {
  Window window;
  Waiting waiting;
  Gate gate;
  QApplication::setOverrideCursor(Qt::WaitCursor);
  auto shape = Qt::ArrowCursor;
  OnPanel(window, [&](WaitingPanel&) {
    shape = QApplication::overrideCursor()->shape();
    gate.Open();
  });
  waiting.Run("Working", [&](std::stop_token stop) { gate.Pass(stop); });
  EXPECT_EQ(shape, Qt::WaitCursor);
  ASSERT_NE(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  QApplication::restoreOverrideCursor();
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST(waiting_window, cancel_stops_the_work_and_says_so) {
  Window window;
  Waiting waiting;
  Gate gate;
  OnPanel(window, [&](WaitingPanel& panel) {
    auto* button = panel.findChild<QPushButton*>("m_btnCancel");
    EXPECT_EQ(button->text(), "Cancel");
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(button->text(), "Cancelling…");
    EXPECT_FALSE(button->isEnabled());
  });
  try {
    waiting.Run("Working", [&](std::stop_token stop) { gate.Pass(stop); });
    ADD_FAILURE() << "nothing was thrown";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Number(), failure::kCancelled);
  }
}

TEST(waiting_window, escape_cancels_once_the_panel_is_there) {
  Window window;
  Waiting waiting;
  Gate gate;
  bool bCancelled = false;
  QTimer::singleShot(50, &window, [&] { QTest::keyClick(&window.Edit(), Qt::Key_Escape); });
  OnPanel(window, [&](WaitingPanel& panel) {
    EXPECT_TRUE(panel.findChild<QPushButton*>("m_btnCancel")->isEnabled());
    QTest::keyClick(&window.Edit(), Qt::Key_Escape);
    bCancelled = true;
  });
  EXPECT_THROW(waiting.Run("Working", [&](std::stop_token stop) { gate.Pass(stop); }), Failure);
  EXPECT_TRUE(bCancelled);
}

TEST(waiting_window, the_window_keeps_painting) {
  Window window;
  Waiting waiting;
  Gate gate;
  int nTicks = 0;
  const int nPaintsBefore = window.Paints();
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    window.update();
    if (++nTicks == 20) gate.Open();
  });
  timer.start(10);
  waiting.Run("Working", [&](std::stop_token stop) { gate.Pass(stop); });
  EXPECT_EQ(nTicks, 20);
  EXPECT_GE(window.Paints() - nPaintsBefore, 15);
}

void PressEverything(Window& window) {
  QTest::mouseClick(&window.Edit(), Qt::LeftButton);
  QTest::mouseDClick(&window.Edit(), Qt::LeftButton);
  QTest::keyClicks(&window.Edit(), "typed");
  QTest::keyClick(&window, Qt::Key_G, Qt::ControlModifier);
  QWheelEvent wheel({5, 5}, window.Edit().mapToGlobal(QPointF(5, 5)), {}, {0, 120}, Qt::NoButton,
                    Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&window.Edit(), &wheel);
  QContextMenuEvent menu(QContextMenuEvent::Mouse, {5, 5}, window.Edit().mapToGlobal(QPoint(5, 5)));
  QApplication::sendEvent(&window.Edit(), &menu);
}

TEST(waiting_window, lets_no_input_in_before_and_behind_the_panel) {
  Window window;
  Waiting waiting;
  Gate gate;
  int nRounds = 0;
  QTimer::singleShot(50, &window, [&] {
    EXPECT_EQ(window.Panel(), nullptr);
    PressEverything(window);
    ++nRounds;
  });
  OnPanel(window, [&](WaitingPanel&) {
    PressEverything(window);
    ++nRounds;
    gate.Open();
  });
  waiting.Run("Working", [&](std::stop_token stop) { gate.Pass(stop); });
  EXPECT_EQ(nRounds, 2);
  EXPECT_EQ(window.Presses(), 0);
  EXPECT_EQ(window.Edit().text(), "");
  EXPECT_EQ(window.Triggered(), 0);

  PressEverything(window);
  EXPECT_GE(window.Presses(), 3);
  EXPECT_EQ(window.Edit().text(), "typed");
  EXPECT_EQ(window.Triggered(), 1);
}

TEST(waiting_window, lets_no_window_close) {
  Window window;
  Waiting waiting;
  Gate gate;
  bool bAsked = false;
  QTimer::singleShot(50, &window, [&] {
    EXPECT_FALSE(window.close());
    QApplication::quit();
    bAsked = true;
    gate.Open();
  });
  waiting.Run("Working", [&](std::stop_token stop) { gate.Pass(stop); });
  EXPECT_TRUE(bAsked);
  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(window.close());
}

TEST(waiting_window, leaves_the_focus_where_it_is) {
  Window window;
  Waiting waiting;
  Gate gate;
  OnPanel(window, [&](WaitingPanel& panel) {
    EXPECT_TRUE(window.Edit().hasFocus());
    QTest::mouseClick(panel.findChild<QPushButton*>("m_btnCancel"), Qt::LeftButton);
    EXPECT_TRUE(window.Edit().hasFocus());
  });
  EXPECT_THROW(waiting.Run("Working", [&](std::stop_token stop) { gate.Pass(stop); }), Failure);
  EXPECT_TRUE(window.Edit().hasFocus());
}

TEST(waiting_window, a_box_that_opens_meanwhile_can_be_answered_when_the_work_is_done) {
  Window window;
  Waiting waiting;
  Gate gate;
  bool bAnswered = false;
  QTimer::singleShot(30, &window, [&] {
    QDialog box(&window);
    QTimer::singleShot(0, &box, [&] { gate.Open(); });
    QTimer presses;
    QObject::connect(&presses, &QTimer::timeout, &box,
                     [&] { QTest::keyClick(&box, Qt::Key_Escape); });
    presses.start(20);
    box.exec();
    bAnswered = true;
  });
  waiting.Run("Working", [&](std::stop_token) { gate.Pass({}); });
  EXPECT_TRUE(bAnswered);
}

TEST(waiting_window, the_panel_stands_alone_when_the_window_is_too_small) {
  Window window;
  Waiting waiting;
  Gate gate;
  bool bShown = false;
  QDialog small(&window);
  small.resize(120, 40);
  small.setModal(true);
  small.show();
  OnPanel(window, [&](WaitingPanel& panel) {
    EXPECT_TRUE(panel.isWindow());
    EXPECT_EQ(panel.windowModality(), Qt::ApplicationModal);
    // Closing it is a cancel too.
    EXPECT_FALSE(panel.close());
    bShown = true;
  });
  EXPECT_THROW(waiting.Run("Working", [&](std::stop_token stop) { gate.Pass(stop); }), Failure);
  EXPECT_TRUE(bShown);
}

TEST(waiting_window, a_panel_whose_window_dies_goes_with_it) {
  auto window = std::make_unique<Window>();
  Waiting waiting;
  Gate gate;
  OnPanel(*window, [&](WaitingPanel&) {
    QTimer::singleShot(0, qApp, [&] {
      window.reset();
      gate.Open();
    });
  });
  waiting.Run("Working", [&](std::stop_token stop) { gate.Pass(stop); });
  EXPECT_EQ(window, nullptr);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

}  // namespace
}  // namespace orvane::console
