#include "provider/deadline.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>

#include "tests/provider/temporary_root.h"

namespace orvane::provider {
namespace {

using namespace std::chrono_literals;

// Works until it is stopped and says so, as an engine does.
void WorkUntilStopped(const std::stop_token& stop) {
  std::mutex mutex;
  std::condition_variable_any woken;
  std::unique_lock lock(mutex);
  woken.wait(lock, stop, [] { return false; });
  throw platform::Failure(platform::failure::kCancelled, "The statement was cancelled.");
}

TEST(deadline, ends_work_at_its_time_out_and_says_so) {
  const Deadline deadline({}, 20ms);
  EXPECT_EQ(FailureOf([&] { Deadline({}, 1h).Check(); }), "no failure");
  EXPECT_EQ(FailureOf([&] { deadline.Run(WorkUntilStopped); }),
            "3804: The statement did not end within its time-out of 20 milliseconds: allow it more "
            "time, or ask for less.");
  EXPECT_EQ(FailureOf([&] { deadline.Check(); }).substr(0, 4), "3804");
}

TEST(deadline, says_so_when_the_connection_went_with_the_work) {
  EXPECT_EQ(
      FailureOf([] {
        Deadline({}, 20ms).Run([](const std::stop_token& stop) {
          try {
            WorkUntilStopped(stop);
          } catch (const platform::Failure& failed) {
            throw platform::Failure(failed.Number(), "", "", platform::failure::kObjectClosed);
          }
        });
      }),
      "3804: The statement did not end within its time-out of 20 milliseconds, and the server "
      "did not answer, so that the connection is closed: connect again, and allow it more "
      "time, or ask for less.");
}

TEST(deadline, ends_work_at_its_callers_stop) {
  for (const auto timeout : {0ms, 3'600'000ms}) {
    std::stop_source stop;
    const Deadline deadline(stop.get_token(), timeout);
    EXPECT_EQ(FailureOf([&] {
                deadline.Run([&](std::stop_token token) {
                  stop.request_stop();
                  WorkUntilStopped(token);
                });
              }),
              "3712: The statement was cancelled.");
    EXPECT_EQ(FailureOf([&] { deadline.Check(); }), "3712: The statement was cancelled.");
  }
}

// What happened is told: work that was done all the same is done.
TEST(deadline, leaves_work_alone_that_ends_behind_it) {
  const Deadline deadline({}, 1ms);
  bool bDone = false;
  deadline.Run([&](const std::stop_token& token) {
    FailureOf([&] { WorkUntilStopped(token); });
    bDone = true;
  });
  EXPECT_TRUE(bDone);
}

TEST(deadline, leaves_other_failures_and_work_in_time_alone) {
  const Deadline deadline({}, 3'600'000ms);
  bool bDone = false;
  deadline.Run([&](const std::stop_token& token) { bDone = !token.stop_requested(); });
  EXPECT_TRUE(bDone);
  EXPECT_EQ(FailureOf([&] {
              deadline.Run([](const std::stop_token&) { throw platform::Failure(457, "There."); });
            }),
            "457: There.");
}

}  // namespace
}  // namespace orvane::provider
