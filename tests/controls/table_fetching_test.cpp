// How a table's grid asks the server for rows, and what it says of what came.
#include <stdexcept>

#include "tests/controls/failure_of.h"
#include "tests/controls/schema_connection.h"
#include "tests/controls/table_editor_fixture.h"
#include "tests/fakes/until.h"

namespace orvane::controls {
namespace {

using platform::Long;
using platform::Value;

class table_fetching : public TableEditorFixture {};

TEST_F(table_fetching, requery_sends_the_query_with_its_limits_over_the_connection) {
  const auto editor = Bound();
  editor->Requery();
  EXPECT_EQ(m_server.nExecuted, 1);
  EXPECT_EQ(m_server.connection, m_connection);
  EXPECT_EQ(m_server.sCommandText, "SELECT *\nFROM \"Machine\"..\"Data\"");
  EXPECT_EQ(m_server.lMaxRecords, 7);
  EXPECT_TRUE(m_server.bReadOnly);
  EXPECT_EQ(m_server.lTimeout, 8);
}

TEST_F(table_fetching, a_table_with_a_time_column_comes_newest_first_and_says_so) {
  const auto cn = std::make_shared<SchemaConnection>(SchemaConnection::Columns{
      {"Tag", platform::DataType::WChar}, {"Timestamp", platform::DataType::DBTimeStamp}});
  controls::TableEditor editor(Services());
  editor.ShowSqlStatements(true);
  editor.Connection(cn);
  editor.TableQuery(m_query);
  const platform::Text sState = m_query->WriteState();
  editor.Requery();
  const platform::Text sSql = "SELECT *\nFROM \"Machine\"..\"Data\"\nORDER BY \"Timestamp\" DESC";
  EXPECT_EQ(m_server.sCommandText, sSql);
  EXPECT_EQ(SqlOf(editor), sSql);
  EXPECT_EQ(m_query->WriteState(), sState);
  EXPECT_EQ(cn->nAsked, 1);
  m_query->SortCriterion(platform::SortCriterion{"Tag", true});
  editor.Requery();
  EXPECT_EQ(m_server.sCommandText, "SELECT *\nFROM \"Machine\"..\"Data\"\nORDER BY \"Tag\" ASC");
  EXPECT_EQ(cn->nAsked, 1) << "with an order of its own there is nothing to ask";
}

TEST_F(table_fetching, a_table_that_cannot_be_described_is_asked_for_its_rows_all_the_same) {
  const auto cn = std::make_shared<SchemaConnection>(SchemaConnection::Columns{});
  controls::TableEditor editor(Services());
  editor.Connection(cn);
  editor.TableQuery(m_query);
  cn->whileAsked = [] { Refuse(); };
  editor.Requery();
  EXPECT_EQ(m_server.sCommandText, "SELECT *\nFROM \"Machine\"..\"Data\"");
  cn->whileAsked = [] {
    throw platform::Failure(platform::failure::kCancelled, "It was cancelled.");
  };
  m_server.nExecuted = 0;
  EXPECT_EQ(FailureNumberOf([&] { editor.Requery(); }), platform::failure::kCancelled);
  EXPECT_EQ(m_server.nExecuted, 0);
  EXPECT_EQ(Label(editor, "emptyTitle"), "Cancelled");
}

TEST_F(table_fetching, may_go_or_be_asked_again_while_the_server_describes_the_table) {
  const auto cn = std::make_shared<SchemaConnection>(SchemaConnection::Columns{});
  auto editor = std::make_unique<controls::TableEditor>(Services());
  editor->Connection(cn);
  editor->TableQuery(m_query);
  cn->whileAsked = [&] {
    EXPECT_EQ(FailureNumberOf([&] { editor->Requery(); }), platform::failure::kBusy);
  };
  editor->Requery();
  EXPECT_EQ(m_server.nExecuted, 1);
  cn->whileAsked = [&] { editor.reset(); };
  editor->Requery();
  EXPECT_EQ(m_server.nExecuted, 1);
}

TEST_F(table_fetching, limits_below_zero_are_none) {
  m_query->MaxRows(-1);
  m_query->QueryTimeout(-1);
  Bound()->Requery();
  EXPECT_EQ(m_server.lMaxRecords, 0);
  EXPECT_EQ(m_server.lTimeout, 0);
}

TEST_F(table_fetching, requery_shows_the_rows_their_number_and_the_time_taken) {
  const auto editor = Bound();
  editor->Requery();
  EXPECT_EQ(RowsOf(*editor), 50);
  EXPECT_EQ(CellOf(*editor, 49, 1), "row 49");
  EXPECT_EQ(Label(*editor, "rowCount"), "50 rows");
  EXPECT_EQ(Label(*editor, "elapsed"), "12 ms, at 14:02:11");
  EXPECT_EQ(Label(*editor, "notice"), "");
  EXPECT_EQ(Label(*editor, "position"), "Row 1 of 50");
  EXPECT_EQ(Label(*editor, "emptyTitle"), "");
  EXPECT_TRUE(editor->CanMove());
}

TEST_F(table_fetching, says_when_the_row_limit_cut_the_rows) {
  const auto editor = Bound();
  const auto rs = Plant(100);
  rs->Truncated(true);
  m_server.answer = rs;
  editor->Requery();
  EXPECT_EQ(Label(*editor, "notice"), "First 100 rows only: the row limit was reached.");
  const auto one = Plant(1);
  one->Truncated(true);
  m_server.answer = one;
  editor->Requery();
  EXPECT_EQ(Label(*editor, "notice"), "First row only: the row limit was reached.");
}

TEST_F(table_fetching, without_rows_says_which_filter_left_none) {
  const auto editor = Bound();
  m_server.answer = Plant(0);
  editor->Requery();
  EXPECT_EQ(Label(*editor, "emptyTitle"), "No rows");
  EXPECT_EQ(Label(*editor, "emptySentence"), "The table is empty.");
  EXPECT_EQ(Label(*editor, "rowCount"), "0 rows");
  EXPECT_FALSE(editor->CanMove());
  m_query->FilterCondition("Value > 1");
  editor->Requery();
  EXPECT_EQ(Label(*editor, "emptySentence"), "The filter is: Value > 1");
}

TEST_F(table_fetching, times_are_shown_in_the_zone_of_the_connection) {
  const auto editor = Bound();
  editor->Requery();
  EXPECT_EQ(CellOf(*editor, 0, 3), "2023-11-14 22:13:20");
  editor->Connection(std::make_shared<FakeConnection>(Value("Asia/Tokyo")));
  editor->Requery();
  EXPECT_EQ(CellOf(*editor, 0, 3), "2023-11-15 07:13:20");
}

TEST_F(table_fetching, follows_the_zone_of_an_open_connection_with_the_next_rows) {
  const auto editor = Bound();
  editor->Requery();
  m_connection->Properties().Item(Value("Time Zone")).Value(Value("Asia/Tokyo"));
  editor->Requery();
  EXPECT_EQ(CellOf(*editor, 0, 3), "2023-11-15 07:13:20");
}

TEST_F(table_fetching, dropping_the_connection_keeps_what_is_shown) {
  const auto editor = Bound();
  editor->Connection(std::make_shared<FakeConnection>(Value("Asia/Tokyo")));
  editor->Requery();
  editor->Connection(nullptr);
  EXPECT_EQ(CellOf(*editor, 0, 3), "2023-11-15 07:13:20");
}

TEST_F(table_fetching, holds_no_connection_that_was_dropped) {
  const auto editor = Bound();
  editor->Requery();
  editor->Connection(nullptr);
  m_server.connection.reset();
  EXPECT_EQ(m_connection.use_count(), 1);
}

TEST_F(table_fetching, requery_without_a_connection_fails_and_says_so_in_the_grid) {
  const auto editor = Bound();
  editor->Requery();
  editor->Connection(nullptr);
  EXPECT_EQ(FailureNumberOf([&] { editor->Requery(); }), platform::failure::kObjectNotSet);
  const platform::Text sSentence =
      "The grid has no connection to a server; connect the server first.";
  EXPECT_EQ(SentenceOf([&] { editor->Requery(); }), sSentence);
  EXPECT_EQ(Label(*editor, "emptySentence"), sSentence);
  EXPECT_EQ(RowsOf(*editor), 0);
}

TEST_F(table_fetching, requery_without_a_query_a_table_or_data_access_fails) {
  controls::TableEditor withoutQuery(Services());
  withoutQuery.Connection(m_connection);
  EXPECT_EQ(FailureNumberOf([&] { withoutQuery.Requery(); }), platform::failure::kObjectNotSet);
  EXPECT_EQ(SentenceOf([&] { withoutQuery.Requery(); }),
            "The grid has no table to show; select a table first.");
  m_query->Table("");
  EXPECT_EQ(FailureNumberOf([&] { Bound()->Requery(); }), platform::failure::kInvalidArgument);
  m_query->Table("Data");
  controls::TableEditor withoutAccess({nullptr, m_states, m_life});
  withoutAccess.Connection(m_connection);
  withoutAccess.TableQuery(m_query);
  EXPECT_EQ(FailureNumberOf([&] { withoutAccess.Requery(); }), platform::failure::kObjectNotSet);
  EXPECT_EQ(m_server.nExecuted, 0);
}

TEST_F(table_fetching, a_failed_requery_passes_the_failure_on_and_leaves_no_stale_rows) {
  const auto editor = Bound();
  editor->Requery();
  m_server.whileRunning = [] { Refuse(); };
  try {
    editor->Requery();
    ADD_FAILURE() << "the failure was kept";
  } catch (const platform::Failure& failure) {
    EXPECT_EQ(failure.Number(), platform::failure::kSqlError);
    EXPECT_EQ(failure.Source(), "engine");
    EXPECT_EQ(failure.NativeError(), 1);
  }
  EXPECT_EQ(RowsOf(*editor), 0);
  EXPECT_FALSE(editor->CanMove());
  EXPECT_EQ(Label(*editor, "emptyTitle"), "The rows could not be fetched");
  EXPECT_EQ(Label(*editor, "emptySentence"), "There is no such column; correct it.");
  EXPECT_EQ(Label(*editor, "rowCount"), "No rows");
  Long lUpdatability = 5;
  EXPECT_EQ(editor->DetachRecordset(lUpdatability), nullptr);
  EXPECT_EQ(lUpdatability, 0);
}

TEST_F(table_fetching, works_again_after_a_failure) {
  const auto editor = Bound();
  m_server.whileRunning = [] { Refuse(); };
  EXPECT_NE(FailureNumberOf([&] { editor->Requery(); }), 0);
  m_server.whileRunning = nullptr;
  editor->Requery();
  EXPECT_EQ(RowsOf(*editor), 50);
  EXPECT_EQ(Label(*editor, "emptyTitle"), "");
}

TEST_F(table_fetching, a_cancelled_requery_says_cancelled) {
  const auto editor = Bound();
  m_server.whileRunning = [] {
    throw platform::Failure(platform::failure::kCancelled, "The query was cancelled.");
  };
  EXPECT_EQ(FailureNumberOf([&] { editor->Requery(); }), platform::failure::kCancelled);
  EXPECT_EQ(Label(*editor, "emptyTitle"), "Cancelled");
  EXPECT_EQ(Label(*editor, "emptySentence"), "The query was cancelled.");
}

TEST_F(table_fetching, an_exception_of_another_kind_is_shown_and_passed_on_too) {
  const auto editor = Bound();
  m_server.whileRunning = [] { throw std::runtime_error("out of luck"); };
  EXPECT_THROW(editor->Requery(), std::runtime_error);
  EXPECT_EQ(Label(*editor, "emptySentence"), "out of luck");
}

TEST_F(table_fetching, a_provider_that_gives_no_rowset_is_a_failure) {
  const auto editor = Bound();
  m_server.answer = nullptr;
  EXPECT_EQ(FailureNumberOf([&] { editor->Requery(); }), platform::failure::kComponent);
}

TEST_F(table_fetching,
       while_rows_are_fetched_the_old_ones_are_not_seen_and_a_second_requery_fails) {
  const auto editor = Bound();
  editor->Requery();
  const std::weak_ptr<platform::Recordset> old = m_server.answer;
  m_server.answer = Plant(3);
  Long lInner = 0;
  m_server.whileRunning = [&] {
    EXPECT_EQ(RowsOf(*editor), 0);
    EXPECT_EQ(Label(*editor, "rowCount"), "Fetching rows…");
    lInner = FailureNumberOf([&] { editor->Requery(); });
    m_server.handler(m_server.answer);
    EXPECT_TRUE(old.expired()) << "the first ones that come take their room";
  };
  editor->Requery();
  EXPECT_EQ(lInner, platform::failure::kBusy);
  EXPECT_EQ(m_server.nExecuted, 2);
  EXPECT_EQ(RowsOf(*editor), 3);
}

TEST_F(table_fetching, a_short_wait_is_not_seen_and_a_long_one_is) {
  const auto editor = Bound();
  editor->Requery();
  Show(*editor);
  m_server.whileRunning = [&] {
    EXPECT_FALSE(ViewOf(*editor)->updatesEnabled());
    EXPECT_TRUE(tests::Until([&] { return ViewOf(*editor)->updatesEnabled(); }));
    EXPECT_EQ(Label(*editor, "emptyTitle"), "Fetching rows…");
  };
  editor->Requery();
  EXPECT_TRUE(ViewOf(*editor)->updatesEnabled());
}

TEST_F(table_fetching, the_statement_of_a_failed_requery_is_shown) {
  const auto editor = Bound();
  editor->ShowSqlStatements(true);
  m_server.whileRunning = [] { Refuse(); };
  EXPECT_NE(FailureNumberOf([&] { editor->Requery(); }), 0);
  EXPECT_EQ(SqlOf(*editor), "SELECT *\nFROM \"Machine\"..\"Data\"");
}

}  // namespace
}  // namespace orvane::controls
