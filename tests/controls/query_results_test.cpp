#include "controls/grid/query_results.h"

#include "tests/controls/failure_of.h"
#include "tests/controls/query_results_fixture.h"

namespace orvane::controls {
namespace {

using platform::Long;

class query_results : public QueryResultsFixture {};

TEST_F(query_results, a_new_one_is_empty_with_limits_100_and_60) {
  controls::QueryResults results(Services());
  EXPECT_EQ(results.QueryName(), "");
  EXPECT_EQ(results.SqlText(), "");
  EXPECT_EQ(results.MaxRows(), 100);
  EXPECT_EQ(results.QueryTimeout(), 60);
  EXPECT_EQ(results.Mode(), 0);
  EXPECT_EQ(results.Recordset(), nullptr);
  EXPECT_FALSE(results.ShowSqlStatements());
  EXPECT_FALSE(results.CanMove());
  EXPECT_FALSE(results.CanCellQuery());
  EXPECT_FALSE(results.DeleteAllowed());
  EXPECT_FALSE(results.RowsSelected());
}

TEST_F(query_results, every_property_gives_back_what_was_set) {
  const auto results = Bound();
  EXPECT_EQ(results->QueryName(), "Hot pumps");
  EXPECT_EQ(results->SqlText(), "SELECT * FROM Pumps");
  EXPECT_EQ(results->MaxRows(), 7);
  EXPECT_EQ(results->QueryTimeout(), 8);
  results->Mode(2);
  EXPECT_EQ(results->Mode(), 2);
  EXPECT_EQ(WindowOf(*results)->accessibleName(), "Results of Hot pumps");
}

TEST_F(query_results, execute_sends_the_text_with_the_limits_over_the_connection) {
  const auto results = Bound();
  results->Execute();
  EXPECT_EQ(m_server.connection, m_connection);
  EXPECT_EQ(m_server.sCommandText, "SELECT * FROM Pumps");
  EXPECT_EQ(m_server.lMaxRecords, 7);
  EXPECT_EQ(m_server.lTimeout, 8);
  EXPECT_TRUE(m_server.bReadOnly);
  EXPECT_EQ(RowsOf(*results), 50);
  EXPECT_EQ(Label(*results, "rowCount"), "50 rows");
  EXPECT_EQ(results->Recordset(), m_server.answer);
  EXPECT_TRUE(results->CanMove());
}

TEST_F(query_results, setting_a_property_runs_nothing) {
  Bound();
  EXPECT_EQ(m_server.nExecuted, 0);
}

TEST_F(query_results, execute_without_a_connection_or_a_statement_fails) {
  const auto results = Bound();
  results->Connection(nullptr);
  EXPECT_EQ(FailureNumberOf([&] { results->Execute(); }), platform::failure::kObjectNotSet);
  EXPECT_EQ(Label(*results, "emptySentence"),
            "The grid has no connection to a server; connect the server first.");
  results->Connection(m_connection);
  results->SqlText(" \n");
  EXPECT_EQ(FailureNumberOf([&] { results->Execute(); }), platform::failure::kInvalidArgument);
  EXPECT_EQ(Label(*results, "emptySentence"),
            "The query has no SQL statement; edit the query and write one.");
  EXPECT_EQ(m_server.nExecuted, 0);
}

TEST_F(query_results, a_failed_execute_passes_the_failure_on_and_leaves_no_stale_rows) {
  const auto results = Bound();
  results->Execute();
  m_server.whileRunning = [] { Refuse(); };
  EXPECT_EQ(FailureNumberOf([&] { results->Execute(); }), platform::failure::kSqlError);
  EXPECT_EQ(RowsOf(*results), 0);
  EXPECT_EQ(results->Recordset(), nullptr);
  EXPECT_EQ(Label(*results, "emptySentence"), "There is no such column; correct it.");
}

TEST_F(query_results, without_rows_names_the_query) {
  const auto results = Bound();
  m_server.answer = Plant(0);
  results->Execute();
  EXPECT_EQ(Label(*results, "emptyTitle"), "No rows");
  EXPECT_EQ(Label(*results, "emptySentence"), "The query \"Hot pumps\" found nothing.");
}

TEST_F(query_results, rows_tell_their_day_to_who_looks_at_them_after_midnight) {
  const auto results = Bound();
  results->Execute();
  EXPECT_EQ(Label(*results, "elapsed"), "12 ms, at 14:02:11");
  Now(date::local_days(date::year{2026} / 11 / 22));
  QEvent look(QEvent::WindowActivate);
  QCoreApplication::sendEvent(WindowOf(*results), &look);
  EXPECT_EQ(Label(*results, "elapsed"), "12 ms, on 2026-11-21 at 14:02:11");
}

TEST_F(query_results, a_statement_without_rows_tells_what_it_changed) {
  const auto results = Bound();
  m_server.answer =
      std::make_shared<FakeRecordset>(0, [](auto, auto) { return platform::Value(); });
  const auto sentence = [&](Long lAffected) {
    m_server.lRecordsAffected = lAffected;
    results->Execute();
    return Label(*results, "emptySentence");
  };
  EXPECT_EQ(sentence(0), "The statement gives no rows.");
  EXPECT_EQ(sentence(1), "The statement gives no rows. It changed 1 row.");
  EXPECT_EQ(sentence(1'200), "The statement gives no rows. It changed 1,200 rows.");
  EXPECT_EQ(Label(*results, "emptyTitle"), "Done");
}

TEST_F(query_results, a_fresh_one_shows_the_rows_as_they_were_left_without_a_query) {
  platform::RecordsetPtr rs;
  {
    const auto results = Bound();
    results->Execute();
    results->MoveLast();
    rs = results->Recordset();
    results->Recordset(nullptr);
    EXPECT_EQ(RowsOf(*results), 0);
  }
  const auto fresh = Bound();
  fresh->SqlText("SELECT 2");
  fresh->ShowSqlStatements(true);
  fresh->Recordset(rs);
  EXPECT_EQ(m_server.nExecuted, 1);
  EXPECT_EQ(ViewOf(*fresh)->currentIndex().row(), 49);
  EXPECT_TRUE(fresh->RowsSelected());
  EXPECT_EQ(SqlOf(*fresh), "SELECT * FROM Pumps");
}

// ---- when and over what rows were fetched

class fetched_rows : public query_results {
 protected:
  static constexpr date::local_days kDay = date::local_days(date::year{2026} / 11 / 21);
  static constexpr auto kAfternoon =
      std::chrono::hours(14) + std::chrono::minutes(2) + std::chrono::seconds(11);
};

TEST_F(fetched_rows, tell_when_also_in_a_fresh_grid_and_on_another_day) {
  Now(kDay + kAfternoon);
  auto results = Bound();
  results->Execute();
  EXPECT_EQ(Label(*results, "rowCount"), "50 rows");
  EXPECT_EQ(Label(*results, "elapsed"), "12 ms, at 14:02:11");
  EXPECT_EQ(Label(*results, "notice"), "");
  const auto rs = results->Recordset();
  Now(kDay + kAfternoon + std::chrono::hours(2));
  results = Bound();
  results->Recordset(rs);
  EXPECT_EQ(Label(*results, "elapsed"), "12 ms, at 14:02:11");
  EXPECT_EQ(results->Recordset(), rs);
  Now(kDay + date::days(1) + kAfternoon);
  results = Bound();
  results->Recordset(rs);
  EXPECT_EQ(Label(*results, "elapsed"), "12 ms, on 2026-11-21 at 14:02:11");
  results->Execute();
  EXPECT_EQ(Label(*results, "elapsed"), "12 ms, at 14:02:11");
}

TEST_F(fetched_rows, that_somebody_else_fetched_tell_no_time) {
  const auto results = Bound();
  results->Execute();
  results->Recordset(Plant(20));
  EXPECT_EQ(Label(*results, "elapsed"), "12 ms");
  EXPECT_EQ(Label(*results, "notice"), "");
}

TEST_F(fetched_rows, tell_that_their_connection_was_closed_since) {
  constexpr const char* kClosed = "Fetched over a connection since closed.";
  auto results = Bound();
  results->Execute();
  const auto rs = results->Recordset();
  m_connection->Close();
  m_connection = std::make_shared<FakeConnection>(platform::Value("UTC"));
  results = Bound();
  results->Recordset(rs);
  EXPECT_EQ(Label(*results, "notice"), kClosed);
  std::static_pointer_cast<FakeRecordset>(rs)->Truncated(true);
  results->Recordset(rs);
  EXPECT_EQ(Label(*results, "notice"),
            std::string("First 50 rows only: the row limit was reached. ") + kClosed);
  std::static_pointer_cast<FakeRecordset>(rs)->Truncated(false);
  results->Execute();
  EXPECT_EQ(Label(*results, "notice"), "");
}

TEST_F(fetched_rows, whose_connection_closes_tell_so_to_whoever_looks_at_them) {
  const auto results = Bound();
  results->Execute();
  m_connection->Close();
  EXPECT_EQ(Label(*results, "notice"), "");
  Show(*results);
  EXPECT_EQ(Label(*results, "notice"), "Fetched over a connection since closed.");
}

TEST_F(query_results, rows_never_seen_before_are_shown_from_the_first_on) {
  const auto results = Bound();
  results->ShowSqlStatements(true);
  results->Recordset(Plant(20));
  EXPECT_EQ(ViewOf(*results)->currentIndex().row(), 0);
  EXPECT_EQ(SqlOf(*results), "SELECT * FROM Pumps");
}

TEST_F(query_results, giving_none_empties_the_grid_and_lets_go_of_the_rows) {
  const auto results = Bound();
  results->Execute();
  const std::weak_ptr<platform::Recordset> rs = std::exchange(m_server.answer, nullptr);
  results->Recordset(nullptr);
  EXPECT_TRUE(rs.expired());
  EXPECT_EQ(results->Recordset(), nullptr);
}

TEST_F(query_results, what_is_not_possible_says_so) {
  const auto results = Bound();
  results->Execute();
  EXPECT_EQ(FailureNumberOf([&] { results->CellQuery(); }), platform::failure::kNotSupported);
  EXPECT_EQ(FailureNumberOf([&] { results->DeleteSelectedRows(); }),
            platform::failure::kNotSupported);
}

TEST_F(query_results, events_are_raised_exactly_when_something_happened) {
  using Counts = std::vector<int>;  // RowColChange, SelChange, HeadClick
  const auto results = Bound();
  EventCounts counts(*results);
  results->Execute();
  EXPECT_EQ(counts.Take(), (Counts{1, 0, 0}));
  results->MoveLast();
  EXPECT_EQ(counts.Take(), (Counts{1, 1, 0}));
  results->Recordset(nullptr);
  EXPECT_EQ(counts.Take(), (Counts{1, 1, 0}));
}

}  // namespace
}  // namespace orvane::controls
