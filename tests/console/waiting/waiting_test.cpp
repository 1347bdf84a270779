#include "console/waiting/waiting.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <atomic>
#include <thread>

#include "tests/console/waiting/waiting_fixture.h"

namespace orvane::console {
namespace {

using platform::Failure;
namespace failure = platform::failure;

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
    // Long enough for the event loop to run meanwhile.
    Gate gate;
    QTimer::singleShot(0, qApp, [&] { gate.Open(); });
    waiting.Run("Working", [&](std::stop_token) {
      gate.Pass({});
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
