// Work that gives way to the user: what he does in the meantime ends it, and nothing of it is lost.
#include <QPushButton>

#include "console/waiting/waiting.h"
#include "tests/console/waiting/waiting_fixture.h"

namespace orvane::console {
namespace {

using namespace std::chrono_literals;

class waiting_yielding : public testing::Test {
 protected:
  /// Runs something that never ends by itself, and the steps in the midst of it. True when it was
  /// stopped.
  bool Run(const std::function<void()>& steps) {
    Gate gate;
    QTimer::singleShot(0, &m_window, steps);
    try {
      m_waiting.RunGivingWay("Following", [&](const std::stop_token& stop) { gate.Pass(stop); });
    } catch (const platform::Failure& failure) {
      return failure.Number() == platform::failure::kCancelled;
    }
    return false;
  }
  static void Settle() {
    for (int n = 0; n < 9; ++n) QCoreApplication::processEvents();
  }
  std::string Text() { return m_window.Edit().text().toStdString(); }

  Window m_window;
  Waiting m_waiting{0ms};
};

TEST_F(waiting_yielding, ends_with_a_key_and_the_key_is_typed_then) {
  EXPECT_TRUE(Run([&] {
    QTest::keyClicks(&m_window.Edit(), "ab");
    EXPECT_EQ(Text(), "");
  }));
  EXPECT_EQ(Text(), "") << "whoever waited has to do with it first";
  QTest::keyClicks(&m_window.Edit(), "c");
  Settle();
  EXPECT_EQ(Text(), "abc");
  QTest::keyClicks(&m_window.Edit(), "d");
  EXPECT_EQ(Text(), "abcd");
}

TEST_F(waiting_yielding, a_click_is_done_and_takes_the_keys_along) {
  QPushButton button("Press", &m_window);
  button.setGeometry(10, 10, 90, 30);
  button.show();
  int nPressed = 0;
  QObject::connect(&button, &QPushButton::clicked, &button, [&] { ++nPressed; });
  EXPECT_TRUE(Run([&] { QTest::mouseClick(&button, Qt::LeftButton); }));
  EXPECT_EQ(nPressed, 0);
  Settle();
  EXPECT_EQ(nPressed, 1);
  EXPECT_TRUE(button.hasFocus());
}

TEST_F(waiting_yielding, a_shortcut_and_the_closing_of_a_window_are_done) {
  EXPECT_TRUE(Run([&] {
    QTest::keyClick(m_window.windowHandle(), Qt::Key_G, Qt::ControlModifier);
    m_window.close();
  }));
  EXPECT_EQ(m_window.Triggered(), 0);
  EXPECT_TRUE(m_window.isVisible());
  Settle();
  EXPECT_EQ(m_window.Triggered(), 1);
  EXPECT_FALSE(m_window.isVisible());
}

TEST_F(waiting_yielding, scrolling_and_pointing_end_nothing_and_no_panel_comes) {
  EXPECT_TRUE(Run([&] {
    QWheelEvent wheel({5, 5}, m_window.Edit().mapToGlobal(QPointF(5, 5)), {}, {0, 120}, {}, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&m_window.Edit(), &wheel);
    EXPECT_EQ(m_window.Presses(), 1) << "the wheel is at work at once";
    QTest::mouseMove(&m_window.Edit(), {7, 7});
    QTimer::singleShot(30, &m_window, [&] {
      EXPECT_TRUE(m_waiting.IsRunning());
      EXPECT_EQ(m_window.Panel(), nullptr);
      QTest::keyClick(&m_window.Edit(), Qt::Key_Escape);
    });
  }));
}

TEST_F(waiting_yielding, what_is_meant_for_a_widget_that_went_is_dropped) {
  auto* button = new QPushButton("Gone", &m_window);
  button->show();
  EXPECT_TRUE(Run([&] { QTest::mousePress(button, Qt::LeftButton); }));
  delete button;
  QTest::keyClicks(&m_window.Edit(), "x");
  Settle();
  EXPECT_EQ(Text(), "x");
}

TEST_F(waiting_yielding, within_another_run_that_one_holds_the_input_back) {
  Gate outer;
  bool bStopped = false;
  QTimer::singleShot(0, &m_window, [&] {
    bStopped = Run([&] { QTest::keyClicks(&m_window.Edit(), "a"); });
    outer.Open();
  });
  m_waiting.Run("Working", [&](const std::stop_token& stop) { outer.Pass(stop); });
  Settle();
  EXPECT_TRUE(bStopped);
  EXPECT_EQ(Text(), "");
}

}  // namespace
}  // namespace orvane::console
