// Waits whose caller shows what is done so far: no panel, and input for the caller's own window.
#include <gtest/gtest.h>

#include <QMenu>
#include <QPushButton>
#include <thread>

#include "console/waiting/waiting.h"
#include "tests/console/waiting/waiting_fixture.h"

namespace orvane::console {
namespace {

using namespace std::chrono_literals;
using platform::Failure;
using platform::LongOperation;

TEST(waiting_shown, ticks_on_the_callers_thread_until_the_work_is_done) {
  Waiting waiting(1h);
  Gate gate;
  int nTicks = 0;
  const auto caller = std::this_thread::get_id();
  waiting.RunShown(
      "Working", [&](const std::stop_token& stop) { gate.Pass(stop); },
      [&] {
        EXPECT_EQ(std::this_thread::get_id(), caller);
        if (++nTicks == 3) gate.Open();
        return true;
      });
  EXPECT_GE(nTicks, 3);
  const int nSoFar = nTicks;
  Gate next;
  int nNext = 0;
  waiting.RunShown(
      "Working", [&](const std::stop_token& stop) { next.Pass(stop); },
      [&] {
        if (++nNext == 3) next.Open();
        return true;
      });
  EXPECT_EQ(nTicks, nSoFar) << "while another wait ticked";
}

TEST(waiting_shown, work_that_ends_at_once_needs_no_tick) {
  Waiting waiting(1h, 1h);
  waiting.RunShown(
      "Working", [](const std::stop_token&) {},
      [] {
        ADD_FAILURE();
        return true;
      });
}

TEST(waiting_shown, has_no_panel_once_something_is_shown) {
  Window window;
  Waiting waiting(0ms);
  Gate gate;
  bool bPanelBefore = false;
  int nAfter = 0;
  waiting.RunShown(
      "Working", [&](const std::stop_token& stop) { gate.Pass(stop); },
      [&] {
        if (!bPanelBefore) {
          bPanelBefore = window.Panel() != nullptr;
          return bPanelBefore;
        }
        EXPECT_EQ(window.Panel(), nullptr);
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        if (++nAfter == 5) gate.Open();
        return true;
      });
  EXPECT_TRUE(bPanelBefore);
  EXPECT_GE(nAfter, 5);
}

TEST(waiting_shown, lets_input_into_the_window_that_shows_it_only) {
  Window window;
  QPushButton other("Other", &window);
  other.show();
  int nOther = 0;
  QObject::connect(&other, &QPushButton::clicked, &other, [&] { ++nOther; });
  Waiting waiting(1h);
  Gate gate;
  window.Edit().setProperty(LongOperation::kOwnInput, true);
  int nTicks = 0;
  const auto input = [&] {
    QTest::mouseClick(&window.Edit(), Qt::LeftButton);
    QTest::keyClick(&window.Edit(), Qt::Key_A);
    QTest::mouseClick(&other, Qt::LeftButton);
    QTest::keyClick(&window.Edit(), Qt::Key_G, Qt::ControlModifier);
    window.close();
  };
  waiting.RunShown(
      "Working", [&](const std::stop_token& stop) { gate.Pass(stop); },
      [&] {
        ++nTicks;
        if (nTicks == 1) return false;
        if (nTicks == 2) {
          // Nothing is shown yet.
          input();
          EXPECT_EQ(window.Presses(), 0);
          EXPECT_EQ(window.Edit().text(), "");
        } else if (nTicks == 3) {
          input();
          EXPECT_EQ(window.Presses(), 1);
          EXPECT_EQ(window.Edit().text(), "a");
          gate.Open();
        }
        return true;
      });
  EXPECT_GE(nTicks, 3);
  EXPECT_EQ(nOther, 0);
  EXPECT_EQ(window.Triggered(), 0);
  EXPECT_TRUE(window.isVisible());
}

TEST(waiting_shown, escape_closes_a_menu_first) {
  Window window;
  window.Edit().setProperty(LongOperation::kOwnInput, true);
  QMenu menu(&window.Edit());
  menu.addAction("Copy");
  Waiting waiting(1h);
  Gate gate;
  int nTicks = 0;
  waiting.RunShown(
      "Working", [&](const std::stop_token& stop) { gate.Pass(stop); },
      [&] {
        ++nTicks;
        if (nTicks == 2) {
          menu.popup(window.pos());
          EXPECT_TRUE(QTest::qWaitForWindowExposed(&menu));
          QTest::keyClick(&menu, Qt::Key_Escape);
          EXPECT_FALSE(menu.isVisible());
          gate.Open();
        }
        return true;
      });
  EXPECT_GE(nTicks, 2);
}

TEST(waiting_shown, escape_cancels) {
  Window window;
  Waiting waiting(1h);
  Gate never;
  int nTicks = 0;
  EXPECT_THROW(waiting.RunShown(
                   "Working", [&](const std::stop_token& stop) { never.Pass(stop); },
                   [&] {
                     if (++nTicks == 2) QTest::keyClick(&window.Edit(), Qt::Key_Escape);
                     return true;
                   }),
               Failure);
}

}  // namespace
}  // namespace orvane::console
