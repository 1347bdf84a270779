// Rows that are seen while they are fetched, and fetches that end early.
#include <gtest/gtest.h>

#include <QPushButton>
#include <QRegularExpression>
#include <QToolButton>

#include "controls/grid/query_results.h"
#include "platform/long_operation.h"
#include "tests/controls/grid_fixture.h"
#include "tests/fakes/until.h"

namespace orvane::controls {
namespace {

class coming_rows : public GridFixture {
 protected:
  std::unique_ptr<controls::QueryResults> Bound() {
    auto results = std::make_unique<controls::QueryResults>(Services());
    results->Connection(m_connection);
    results->SqlText("SELECT * FROM Pumps");
    return results;
  }
  std::shared_ptr<FakeRecordset> m_rs = Plant(0);
};

TEST_F(coming_rows, are_seen_and_counted_while_they_are_fetched) {
  const auto results = Bound();
  Show(*results);
  m_server.answer = m_rs;
  m_server.whileRunning = [&] {
    m_rs->Rows(1'000).State(platform::FetchState::Running);
    m_server.handler(m_rs);
    EXPECT_EQ(RowsOf(*results), 1'000);
    EXPECT_EQ(CellOf(*results, 999, 1), "row 999");
    EXPECT_EQ(Label(*results, "rowCount"), "1,000 rows so far\u2026");
    EXPECT_EQ(Label(*results, "emptyTitle"), "");
    ViewOf(*results)->GoTo(700, 1);
    m_rs->Rows(5'000);
    m_server.handler(m_rs);
    EXPECT_EQ(RowsOf(*results), 5'000);
    EXPECT_EQ(ViewOf(*results)->currentIndex().row(), 700);
    m_rs->Rows(6'000).State(platform::FetchState::Complete);
  };
  results->Execute();
  EXPECT_TRUE(m_server.bKeepRows);
  EXPECT_EQ(RowsOf(*results), 6'000);
  EXPECT_EQ(Label(*results, "rowCount"), "6,000 rows");
  EXPECT_EQ(Label(*results, "notice"), "");
  EXPECT_EQ(ViewOf(*results)->currentIndex().row(), 700) << "who looked at them goes on there";
  EXPECT_EQ(ViewOf(*results)->currentIndex().column(), 1);
}

TEST_F(coming_rows, are_told_with_the_time_so_far_and_how_many_come_in_a_second) {
  const auto results = Bound();
  Show(*results);
  m_server.answer = m_rs;
  const QRegularExpression rate(QStringLiteral("^\\d+ ms, [\\d,]+ a second$|^\\d+\\.\\d\\d s, "));
  std::string sTime;
  m_server.whileRunning = [&] {
    m_rs->State(platform::FetchState::Running);
    // Until there is a rate, however fast this machine is.
    EXPECT_TRUE(tests::Until([&] {
      m_rs->Rows(m_rs->RecordCount() + 1'000);
      m_server.handler(m_rs);
      sTime = Label(*results, "elapsed");
      return rate.match(QString::fromStdString(sTime)).hasMatch();
    })) << sTime;
    m_rs->State(platform::FetchState::Complete);
  };
  results->Execute();
  EXPECT_EQ(Label(*results, "elapsed").find("a second"), std::string::npos);
}

TEST_F(coming_rows, that_end_early_are_kept_and_say_so_as_long_as_they_are_seen) {
  auto results = Bound();
  m_rs->Rows(12'400).State(platform::FetchState::Stopped, "Stopped after 12,400 rows.");
  m_server.answer = m_rs;
  results->Execute();
  EXPECT_EQ(RowsOf(*results), 12'400);
  EXPECT_EQ(Label(*results, "notice"), "Stopped after 12,400 rows.");
  const auto rs = results->Recordset();
  results = Bound();
  results->Recordset(rs);
  EXPECT_EQ(Label(*results, "notice"), "Stopped after 12,400 rows.");
}

TEST_F(coming_rows, that_break_off_with_their_connection_offer_to_reconnect) {
  auto results = Bound();
  m_rs->Rows(12).State(platform::FetchState::Stopped, "Stopped after 12 rows. The server is gone.");
  m_rs->FetchFailure(platform::failure::kServerNotFound);
  m_server.answer = m_rs;
  results->Execute();
  const auto rs = results->Recordset();
  for (int n = 0; n < 2; ++n) {
    EXPECT_EQ(RowsOf(*results), 12);
    EXPECT_EQ(Label(*results, "notice"), "Stopped after 12 rows. The server is gone.");
    auto* offer = WindowOf(*results)->findChild<QToolButton*>("offer");
    ASSERT_TRUE(offer->isVisibleTo(WindowOf(*results)));
    EXPECT_EQ(offer->text(), "Reconnect");
    // Also when something else was looked at meanwhile.
    results = Bound();
    results->Recordset(rs);
  }
  m_server.answer = Plant(50);
  WindowOf(*results)->findChild<QToolButton*>("offer")->click();
  EXPECT_EQ(RowsOf(*results), 50);
}

TEST_F(coming_rows, of_a_lost_server_leave_those_before_them) {
  const auto results = Bound();
  m_server.answer = Plant(50);
  results->Execute();
  m_server.whileRunning = [&] {
    throw platform::Failure(platform::failure::kServerNotFound, "The server is gone.");
  };
  EXPECT_THROW(results->Execute(), platform::Failure);
  EXPECT_EQ(RowsOf(*results), 50);
  EXPECT_EQ(Label(*results, "notice"), "The server is gone.");
  // When others have come in their place, there is nothing to go back to.
  m_server.whileRunning = [&] {
    m_rs->Rows(5).State(platform::FetchState::Running);
    m_server.handler(m_rs);
    throw platform::Failure(platform::failure::kServerNotFound, "The server is gone.");
  };
  EXPECT_THROW(results->Execute(), platform::Failure);
  EXPECT_EQ(RowsOf(*results), 0);
}

TEST_F(coming_rows, can_be_stopped_by_a_button_in_the_strip) {
  const auto results = Bound();
  Show(*results);
  m_server.answer = m_rs;
  auto* stop = WindowOf(*results)->findChild<QPushButton*>("stopFetch");
  EXPECT_FALSE(stop->isVisible());
  m_server.whileRunning = [&] {
    m_rs->Rows(1'000).State(platform::FetchState::Running);
    m_server.handler(m_rs);
    EXPECT_TRUE(stop->isVisible());
    stop->click();
    stop->click();
    EXPECT_FALSE(stop->isEnabled());
  };
  results->Execute();
  EXPECT_TRUE(m_server.bCancelled);
  EXPECT_FALSE(stop->isVisible());
  m_server.bCancelled = false;
  stop->setEnabled(true);
  stop->click();
  EXPECT_FALSE(m_server.bCancelled) << "the command is let go";
  EXPECT_TRUE(WindowOf(*results)->property(platform::LongOperation::kOwnInput).toBool());
}

TEST_F(coming_rows, that_fail_leave_none_behind) {
  const auto results = Bound();
  m_server.whileRunning = [&] {
    m_rs->Rows(1'000).State(platform::FetchState::Running);
    m_server.handler(m_rs);
    Refuse();
  };
  EXPECT_THROW(results->Execute(), platform::Failure);
  EXPECT_EQ(RowsOf(*results), 0);
  EXPECT_EQ(results->Recordset(), nullptr);
}

TEST_F(coming_rows, touch_no_grid_that_is_gone) {
  auto results = Bound();
  m_server.answer = m_rs;
  m_server.whileRunning = [&] {
    results.reset();
    m_rs->Rows(1'000);
    m_server.handler(m_rs);
  };
  results->Execute();
  EXPECT_EQ(results, nullptr);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST_F(coming_rows, are_sorted_as_those_before_them_when_all_are_here) {
  const auto results = Bound();
  m_server.answer = Plant(50);
  results->Execute();
  ViewOf(*results)->SortBy(0, false);
  EXPECT_EQ(CellOf(*results, 0, 0), "49");
  m_server.answer = m_rs;
  m_server.whileRunning = [&] {
    m_rs->Rows(100).State(platform::FetchState::Running);
    m_server.handler(m_rs);
    m_rs->Rows(200).State(platform::FetchState::Complete);
  };
  results->Execute();
  EXPECT_EQ(CellOf(*results, 0, 0), "199");
  EXPECT_EQ(Label(*results, "arrangement"), "Sorted here: Number \u2193");
}

TEST_F(coming_rows, are_not_kept_of_a_statement_that_changes_data) {
  const auto results = Bound();
  m_server.answer = Plant(1);
  m_server.whileRunning = [&] {
    if (m_server.bReadOnly) {
      throw platform::Failure(platform::failure::kWouldChange, "It changes data.");
    }
  };
  results->Execute();
  m_server.handler = nullptr;
  WindowOf(*results)->findChild<QPushButton*>("emptyButton")->click();
  EXPECT_FALSE(m_server.bKeepRows);
  EXPECT_EQ(m_server.handler, nullptr);
}

TEST_F(coming_rows, can_be_stopped_after_somebody_looks_again) {
  const auto results = Bound();
  Show(*results);
  m_server.answer = Plant(5);
  results->Execute();
  // What was told of the rows before, when they were fetched, is true no more.
  m_now += std::chrono::hours(48);
  m_server.answer = m_rs;
  auto* stop = WindowOf(*results)->findChild<QPushButton*>("stopFetch");
  m_server.whileRunning = [&] {
    m_rs->Rows(1'000).State(platform::FetchState::Running);
    m_server.handler(m_rs);
    QEvent activated(QEvent::WindowActivate);
    QCoreApplication::sendEvent(WindowOf(*results), &activated);
    EXPECT_TRUE(stop->isVisible());
    EXPECT_EQ(Label(*results, "rowCount"), "1,000 rows so far\u2026");
    m_rs->State(platform::FetchState::Complete);
  };
  results->Execute();
  EXPECT_FALSE(stop->isVisible());
}

}  // namespace
}  // namespace orvane::controls
