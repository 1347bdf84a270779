#include "console/waiting/waiting.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "console/waiting/waiting_panel.h"
#include "platform/failure.h"

namespace orvane::console {
namespace {

using namespace std::chrono_literals;
using platform::Failure;
namespace failure = platform::failure;

/// Work that lasts until it is released or stopped.
class Gate {
 public:
  void Open() {
    {
      const std::lock_guard lock(m_mutex);
      m_bOpen = true;
    }
    m_changed.notify_all();
  }
  void Pass(std::stop_token stop) {
    std::unique_lock lock(m_mutex);
    if (!m_changed.wait(lock, stop, [this] { return m_bOpen; })) {
      throw Failure(failure::kCancelled, "Cancelled.");
    }
  }

 private:
  std::mutex m_mutex;
  std::condition_variable_any m_changed;
  bool m_bOpen = false;
};

class Window : public QMainWindow {
 public:
  Window() {
    setGeometry(0, 0, 800, 600);
    setCentralWidget(&m_edit);
    m_action.setShortcut(Qt::CTRL | Qt::Key_G);
    connect(&m_action, &QAction::triggered, this, [this] { ++m_nTriggered; });
    addAction(&m_action);
    show();
    activateWindow();
    m_edit.setFocus();
    EXPECT_TRUE(QTest::qWaitForWindowActive(this));
  }

  int Paints() const { return m_nPaints; }
  int Triggered() const { return m_nTriggered; }
  int Presses() const { return m_edit.m_nPresses; }
  QLineEdit& Edit() { return m_edit; }
  WaitingPanel* Panel() const { return findChild<WaitingPanel*>(); }

 protected:
  void paintEvent(QPaintEvent* event) override {
    ++m_nPaints;
    QMainWindow::paintEvent(event);
  }

 private:
  class CountingEdit : public QLineEdit {
   public:
    int m_nPresses = 0;

   protected:
    void mousePressEvent(QMouseEvent* event) override {
      ++m_nPresses;
      QLineEdit::mousePressEvent(event);
    }
    void wheelEvent(QWheelEvent*) override { ++m_nPresses; }
    void contextMenuEvent(QContextMenuEvent*) override { ++m_nPresses; }
  };

  QAction m_action;
  CountingEdit m_edit;
  int m_nPaints = 0;
  int m_nTriggered = 0;
};

/// Calls the steps once the panel is on the window.
void OnPanel(Window& window, const std::function<void(WaitingPanel&)>& steps) {
  auto* timer = new QTimer(&window);
  QObject::connect(timer, &QTimer::timeout, &window, [&window, timer, steps] {
    WaitingPanel* panel = window.Panel();
    if (!panel) return;
    timer->stop();
    timer->deleteLater();
    steps(*panel);
  });
  timer->start(5);
}

TEST(waiting, runs_the_work_on_another_thread_and_returns_when_it_is_done) {
  Waiting waiting;
  std::thread::id worker;
  waiting.Run("Working", [&](std::stop_token stop) {
    worker = std::this_thread::get_id();
    EXPECT_TRUE(stop.stop_possible());
    EXPECT_FALSE(stop.stop_requested());
  });
  EXPECT_NE(worker, std::thread::id());
  EXPECT_NE(worker, std::this_thread::get_id());
}

TEST(waiting, tells_that_it_runs_until_it_is_done_however_that_ends) {
  Waiting waiting;
  EXPECT_FALSE(waiting.IsRunning());
  bool bRunning = false;
  EXPECT_THROW(waiting.Run("Working",
                           [&](std::stop_token) {
                             bRunning = waiting.IsRunning();
                             throw Failure(5, "Short.");
                           }),
               Failure);
  EXPECT_TRUE(bRunning);
  EXPECT_FALSE(waiting.IsRunning());
}

TEST(waiting, passes_on_what_the_work_throws) {
  Waiting waiting;
  EXPECT_THROW(waiting.Run("Working", [](std::stop_token) { throw Failure(5, "Short."); }),
               Failure);
  try {
    waiting.Run("Working", [](std::stop_token) {
      std::this_thread::sleep_for(30ms);
      throw Failure(failure::kSqlError, "Long.");
    });
    ADD_FAILURE() << "nothing was thrown";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Number(), failure::kSqlError);
    EXPECT_EQ(failure.Description(), "Long.");
  }
  int nRuns = 0;
  waiting.Run("Working", [&](std::stop_token) { ++nRuns; });
  EXPECT_EQ(nRuns, 1);
}

TEST(waiting, shows_no_panel_before_its_time) {
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

TEST(waiting, shows_the_panel_of_a_long_wait_and_takes_it_away_at_the_end) {
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

TEST(waiting, under_the_hourglass_the_hourglass_stays) {
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

TEST(waiting, cancel_stops_the_work_and_says_so) {
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

TEST(waiting, escape_cancels_once_the_panel_is_there) {
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

TEST(waiting, work_that_ends_in_spite_of_a_cancel_has_its_result) {
  Window window;
  Waiting waiting;
  Gate gate;
  OnPanel(window, [&](WaitingPanel&) {
    QTest::keyClick(&window.Edit(), Qt::Key_Escape);
    gate.Open();
  });
  int nResult = 0;
  waiting.Run("Working", [&](std::stop_token) {
    gate.Pass({});
    nResult = 42;
  });
  EXPECT_EQ(nResult, 42);
}

TEST(waiting, the_window_keeps_painting) {
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

TEST(waiting, lets_no_input_in_before_and_behind_the_panel) {
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

TEST(waiting, lets_no_window_close) {
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

TEST(waiting, leaves_the_focus_where_it_is) {
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

TEST(waiting, a_run_inside_a_pending_event_is_safe) {
  Window window;
  Waiting waiting;
  Gate outer;
  std::atomic<bool> bOuterDone = false;
  std::vector<std::string> done;
  QTimer::singleShot(30, &window, [&] {
    waiting.Run("Inner", [&](std::stop_token) {
      // The outer work ends while the inner one is still running.
      outer.Open();
      while (!bOuterDone) std::this_thread::yield();
    });
    done.emplace_back("inner");
  });
  waiting.Run("Outer", [&](std::stop_token stop) {
    outer.Pass(stop);
    bOuterDone = true;
  });
  done.emplace_back("outer");
  EXPECT_EQ(done, (std::vector<std::string>{"inner", "outer"}));
}

TEST(waiting, a_run_inside_the_work_runs_where_it_is_and_stops_with_it) {
  Waiting waiting;
  bool bSame = false;
  Window window;
  OnPanel(window, [&](WaitingPanel&) { QTest::keyClick(&window.Edit(), Qt::Key_Escape); });
  Gate never;
  EXPECT_THROW(waiting.Run("Outer",
                           [&](std::stop_token) {
                             const auto thread = std::this_thread::get_id();
                             waiting.Run("Inner", [&](std::stop_token stop) {
                               bSame = std::this_thread::get_id() == thread;
                               never.Pass(stop);
                             });
                           }),
               Failure);
  EXPECT_TRUE(bSame);
}

TEST(waiting, a_run_on_another_thread_runs_there) {
  Waiting waiting;
  bool bSame = false;
  std::thread thread([&] {
    waiting.Run("Working", [&, own = std::this_thread::get_id()](std::stop_token stop) {
      bSame = std::this_thread::get_id() == own;
      EXPECT_FALSE(stop.stop_requested());
    });
  });
  thread.join();
  EXPECT_TRUE(bSame);
}

TEST(waiting, a_box_that_opens_meanwhile_can_be_answered_when_the_work_is_done) {
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

TEST(waiting, the_panel_stands_alone_when_the_window_is_too_small) {
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

TEST(waiting, a_panel_whose_window_dies_goes_with_it) {
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

TEST(waiting, ten_thousand_short_runs_use_one_thread) {
  Waiting waiting;
  std::thread::id first;
  int nElsewhere = 0;
  for (int i = 0; i < 10000; ++i) {
    waiting.Run("Working", [&](std::stop_token) {
      if (i == 0) first = std::this_thread::get_id();
      if (std::this_thread::get_id() != first) ++nElsewhere;
    });
  }
  EXPECT_EQ(nElsewhere, 0);
}

}  // namespace
}  // namespace orvane::console
