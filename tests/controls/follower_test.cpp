#include "controls/grid/follower.h"

#include <gtest/gtest.h>

#include <QDialog>
#include <QTest>

#include "tests/controls/struck_clock.h"

namespace orvane::controls {
namespace {

using std::chrono::seconds;

class follower : public testing::Test {
 protected:
  follower() { m_window.show(); }
  QWidget m_window;
  bool m_bMayRun = true;
  int m_nRuns = 0;
  std::function<void()> m_whileRunning;
  std::unique_ptr<Follower> m_follower = std::make_unique<Follower>(
      m_window, [this] { return m_bMayRun; },
      [this] {
        ++m_nRuns;
        if (m_whileRunning) m_whileRunning();
      });
};

TEST_F(follower, runs_when_a_pause_is_over_and_not_otherwise) {
  m_follower->PauseOver();
  EXPECT_EQ(m_nRuns, 0);
  m_follower->Every(seconds(3600));
  EXPECT_EQ(m_nRuns, 0);
  m_follower->PauseOver();
  m_follower->PauseOver();
  EXPECT_EQ(m_nRuns, 2);
  m_follower->Every(std::nullopt);
  m_follower->PauseOver();
  EXPECT_EQ(m_nRuns, 2);
}

TEST_F(follower, pauses_by_its_clock) {
  auto* clock = m_window.findChild<QTimer*>("pause");
  EXPECT_FALSE(clock->isActive());
  m_follower->Every(seconds(7));
  for (int n = 1; n <= 2; ++n) {
    ASSERT_TRUE(clock->isActive());
    EXPECT_TRUE(clock->isSingleShot()) << "the next pause begins when the run has ended";
    EXPECT_EQ(clock->intervalAsDuration(), seconds(7));
    m_whileRunning = [&] { EXPECT_FALSE(clock->isActive()); };
    StrikeNow(*clock);
    EXPECT_EQ(m_nRuns, n);
  }
  m_follower->Every(std::nullopt);
  EXPECT_FALSE(clock->isActive());
}

TEST_F(follower, never_runs_twice_at_once) {
  m_follower->Every(seconds(3600));
  m_whileRunning = [this] { m_follower->PauseOver(); };
  m_follower->PauseOver();
  EXPECT_EQ(m_nRuns, 1);
  m_whileRunning = {};
  m_follower->PauseOver();
  EXPECT_EQ(m_nRuns, 2);
}

TEST_F(follower, waits_while_it_may_not_or_nobody_sees_it) {
  m_follower->Every(seconds(3600));
  m_bMayRun = false;
  m_follower->PauseOver();
  m_bMayRun = true;
  m_window.hide();
  m_follower->PauseOver();
  EXPECT_EQ(m_nRuns, 0);
  m_window.show();
  {
    QDialog question(&m_window);
    question.setModal(true);
    question.show();
    m_follower->PauseOver();
    EXPECT_EQ(m_nRuns, 0);
  }
  m_follower->PauseOver();
  EXPECT_EQ(m_nRuns, 1);
}

TEST_F(follower, may_go_while_it_runs) {
  m_follower->Every(seconds(3600));
  m_whileRunning = [this] { m_follower.reset(); };
  m_follower->PauseOver();
  EXPECT_EQ(m_nRuns, 1);
}

}  // namespace
}  // namespace orvane::controls
