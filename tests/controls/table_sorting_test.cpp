// Sorting in a table's grid: here where all rows are, at the server where the row limit cut them.
#include <gtest/gtest.h>

#include <utility>

#include "controls/grid/table_editor.h"
#include "controls/statements/table_query.h"
#include "tests/controls/failure_of.h"
#include "tests/controls/grid_fixture.h"
#include "tests/controls/query_results_fixture.h"

namespace orvane::controls {
namespace {

class table_sorting : public GridFixture {
 protected:
  table_sorting() {
    m_query->Catalog("Plant");
    m_query->Table("Data");
    m_server.answer = Plant(50);
  }
  std::unique_ptr<controls::TableEditor> Shown() {
    auto editor = std::make_unique<controls::TableEditor>(Services());
    editor->Connection(m_connection);
    editor->TableQuery(m_query);
    editor->Requery();
    return editor;
  }
  std::shared_ptr<controls::TableQuery> m_query = std::make_shared<controls::TableQuery>();
};

TEST_F(table_sorting, is_possible_where_there_is_a_current_cell) {
  controls::TableEditor empty(Services());
  EXPECT_FALSE(empty.CanSort());
  EXPECT_EQ(FailureNumberOf([&] { empty.SortAscending(); }), platform::failure::kNotSupported);
  EXPECT_EQ(SentenceOf([&] { empty.SortDescending(); }),
            "There is no column to sort by; go to a cell of the column first.");
  const auto editor = Shown();
  EXPECT_TRUE(editor->CanSort());
  m_server.whileRunning = [&] { EXPECT_FALSE(editor->CanSort()); };
  editor->Requery();
}

TEST_F(table_sorting, is_done_here_where_all_rows_are) {
  const auto editor = Shown();
  const auto sState = m_query->WriteState();
  const int nExecuted = m_server.nExecuted;
  ViewOf(*editor)->GoTo(3, 1);
  editor->SortDescending();
  EXPECT_EQ(CellOf(*editor, 0, 1), "row 9");
  EXPECT_EQ(CellOf(*editor, 1, 1), "row 8");
  EXPECT_EQ(CellOf(*editor, 2, 1), "row 7") << "in the order of texts";
  EXPECT_EQ(Label(*editor, "arrangement"), "Sorted here: Name \u2193");
  editor->SortAscending();
  EXPECT_EQ(CellOf(*editor, 0, 1), "row 0");
  EXPECT_EQ(CellOf(*editor, 2, 1), "row 10");
  EXPECT_EQ(Label(*editor, "arrangement"), "Sorted here: Name \u2191");
  EXPECT_EQ(m_server.nExecuted, nExecuted);
  EXPECT_EQ(m_query->WriteState(), sState);
}

TEST_F(table_sorting, is_done_by_the_server_where_the_row_limit_cut_the_rows) {
  std::static_pointer_cast<FakeRecordset>(m_server.answer)->Truncated(true);
  m_query->SortCriterion(platform::SortCriterion{"Number", true});
  const auto sState = m_query->WriteState();
  const auto editor = Shown();
  ViewOf(*editor)->GoTo(3, 1);
  editor->SortDescending();
  EXPECT_EQ(m_server.sCommandText, "SELECT *\nFROM \"Plant\"..\"Data\"\nORDER BY \"Name\" DESC");
  EXPECT_EQ(CellOf(*editor, 0, 1), "row 0") << "as the server gave them";
  EXPECT_EQ(ViewOf(*editor)->currentIndex().row(), 0);
  EXPECT_EQ(ViewOf(*editor)->currentIndex().column(), 1) << "who sorts again sorts by the same";
  EXPECT_EQ(Label(*editor, "arrangement"), "Sorted by the server: Name \u2193");
  EXPECT_EQ(m_query->WriteState(), sState);
  editor->Requery();
  EXPECT_EQ(Label(*editor, "arrangement"), "Sorted by the server: Name \u2193");
  EXPECT_NE(m_server.sCommandText.find("\"Name\" DESC"), platform::Text::npos);
  ViewOf(*editor)->Sort({});
  EXPECT_NE(m_server.sCommandText.find("\"Number\" ASC"), platform::Text::npos)
      << "without an order of the grid's own the query's is back";
  EXPECT_EQ(Label(*editor, "arrangement"), "");
}

TEST_F(table_sorting, is_asked_of_the_server_by_as_many_columns_as_were_chosen) {
  std::static_pointer_cast<FakeRecordset>(m_server.answer)->Truncated(true);
  const auto editor = Shown();
  ViewOf(*editor)->SortBy(1, false);
  ViewOf(*editor)->SortBy(0, true, true);
  EXPECT_EQ(m_server.sCommandText,
            "SELECT *\nFROM \"Plant\"..\"Data\"\nORDER BY \"Name\" DESC, \"Number\" ASC");
  EXPECT_EQ(Label(*editor, "arrangement"), "Sorted by the server: Name \u2193, Number \u2191");
}

TEST_F(table_sorting, is_done_here_where_the_server_is_gone) {
  std::static_pointer_cast<FakeRecordset>(m_server.answer)->Truncated(true);
  const auto editor = Shown();
  const int nExecuted = m_server.nExecuted;
  m_connection->Close();
  ViewOf(*editor)->GoTo(3, 0);
  editor->SortDescending();
  EXPECT_EQ(m_server.nExecuted, nExecuted);
  EXPECT_EQ(CellOf(*editor, 0, 0), "49");
  EXPECT_EQ(Label(*editor, "arrangement"), "Only the rows here are sorted: Number \u2193");
}

TEST_F(table_sorting, is_done_here_where_no_name_tells_the_server_the_column) {
  for (const char* const sName : {"", "number"}) {
    const auto rs = std::make_shared<FakeRecordset>(
        5, [](platform::RowIndex row, platform::ColumnIndex) { return platform::Value(row); });
    rs->Column("Number", platform::DataType::Integer).Column(sName, platform::DataType::Integer);
    rs->Truncated(true);
    m_server.answer = rs;
    const auto editor = Shown();
    const int nExecuted = m_server.nExecuted;
    ViewOf(*editor)->SortBy(1, false);
    EXPECT_EQ(m_server.nExecuted, nExecuted);
    EXPECT_TRUE(Label(*editor, "arrangement").starts_with("Only the rows here are sorted: "))
        << Label(*editor, "arrangement");
  }
}

TEST_F(table_sorting, of_the_server_stays_told_until_it_is_another_one) {
  std::static_pointer_cast<FakeRecordset>(m_server.answer)->Truncated(true);
  const auto editor = Shown();
  ViewOf(*editor)->SortBy(1, false);
  m_connection->Close();
  ViewOf(*editor)->Sort({});
  EXPECT_EQ(Label(*editor, "arrangement"), "Sorted by the server: Name \u2193");
  EXPECT_EQ(Label(*editor, "notice"),
            "The rows stay in the server's order: the connection is closed; reconnect first.");
  ViewOf(*editor)->SortBy(0, false);
  EXPECT_EQ(Label(*editor, "arrangement"), "Only the rows here are sorted: Number \u2193");
  m_connection->Open({}, {}, {}, platform::kOptionUnspecified);
  editor->Requery();
  EXPECT_NE(m_server.sCommandText.find("ORDER BY \"Number\" DESC"), platform::Text::npos)
      << m_server.sCommandText;
  EXPECT_EQ(Label(*editor, "arrangement"), "Sorted by the server: Number \u2193");
}

TEST_F(table_sorting, goes_where_the_query_is_given_another_order) {
  for (const bool bTruncated : {true, false}) {
    m_query->SortCriterion(platform::SortCriterion{"Number", true});
    std::static_pointer_cast<FakeRecordset>(m_server.answer)->Truncated(bTruncated);
    const auto editor = Shown();
    ViewOf(*editor)->SortBy(1, false);
    editor->Requery();
    EXPECT_NE(Label(*editor, "arrangement"), "") << "the same query fetched anew keeps it";
    m_query->SortCriterion(platform::SortCriterion{"Number", false});
    editor->Requery();
    EXPECT_EQ(m_server.sCommandText,
              "SELECT *\nFROM \"Plant\"..\"Data\"\nORDER BY \"Number\" DESC");
    EXPECT_EQ(Label(*editor, "arrangement"), "");
    EXPECT_EQ(CellOf(*editor, 0, 1), "row 0") << "as the server gave them";
    ViewOf(*editor)->SortBy(1, false);
    m_query->SortCriterion(std::nullopt);
    editor->Requery();
    EXPECT_EQ(m_server.sCommandText.find("\"Name\""), platform::Text::npos);
    EXPECT_EQ(Label(*editor, "arrangement"), "");
  }
}

TEST_F(table_sorting, goes_so_too_where_the_rows_were_hidden_meanwhile) {
  std::static_pointer_cast<FakeRecordset>(m_server.answer)->Truncated(true);
  auto editor = Shown();
  ViewOf(*editor)->SortBy(1, false);
  platform::Long lState = 0;
  const auto rs = editor->DetachRecordset(lState);
  editor = std::make_unique<controls::TableEditor>(Services());
  editor->Connection(m_connection);
  editor->TableQuery(m_query);
  editor->AttachRecordset(rs, lState);
  EXPECT_EQ(Label(*editor, "arrangement"), "Sorted by the server: Name \u2193");
  m_query->SortCriterion(platform::SortCriterion{"Number", true});
  editor->Requery();
  EXPECT_NE(m_server.sCommandText.find("ORDER BY \"Number\" ASC"), platform::Text::npos)
      << m_server.sCommandText;
  EXPECT_EQ(Label(*editor, "arrangement"), "");
}

TEST_F(table_sorting, is_asked_of_the_server_when_a_refresh_cuts_rows_that_were_sorted_here) {
  const auto editor = Shown();
  ViewOf(*editor)->SortBy(1, false);
  ASSERT_EQ(Label(*editor, "arrangement"), "Sorted here: Name \u2193");
  std::static_pointer_cast<FakeRecordset>(m_server.answer)->Truncated(true);
  const int nExecuted = m_server.nExecuted;
  editor->Requery();
  EXPECT_EQ(m_server.nExecuted, nExecuted + 2);
  EXPECT_NE(m_server.sCommandText.find("ORDER BY \"Name\" DESC"), platform::Text::npos)
      << m_server.sCommandText;
  EXPECT_EQ(Label(*editor, "arrangement"), "Sorted by the server: Name \u2193");
  editor->Requery();
  EXPECT_EQ(m_server.nExecuted, nExecuted + 3);
}

TEST_F(table_sorting, chosen_while_rows_come_is_asked_of_the_server_where_the_limit_cut_them) {
  const auto editor = Shown();
  const auto rs = Plant(0);
  m_server.answer = rs;
  bool bChosen = false;
  m_server.whileRunning = [&] {
    if (std::exchange(bChosen, true)) return;
    rs->Rows(50).State(platform::FetchState::Running);
    m_server.handler(rs);
    ViewOf(*editor)->SortBy(1, false);
    EXPECT_EQ(m_server.nExecuted, 2) << "no other statement while one runs";
    rs->State(platform::FetchState::Truncated);
  };
  editor->Requery();
  EXPECT_NE(m_server.sCommandText.find("ORDER BY \"Name\" DESC"), platform::Text::npos)
      << m_server.sCommandText;
  EXPECT_EQ(Label(*editor, "arrangement"), "Sorted by the server: Name \u2193");
}

TEST_F(table_sorting, that_the_server_refuses_after_a_refresh_is_not_asked_again_and_again) {
  const auto editor = Shown();
  ViewOf(*editor)->SortBy(1, false);
  std::static_pointer_cast<FakeRecordset>(m_server.answer)->Truncated(true);
  m_server.whileRunning = [this] {
    if (m_server.sCommandText.find("\"Name\"") != platform::Text::npos) Refuse();
  };
  editor->Requery();
  EXPECT_EQ(Label(*editor, "arrangement"), "Only the rows here are sorted: Name \u2193");
  EXPECT_EQ(CellOf(*editor, 0, 1), "row 9");
  const int nExecuted = m_server.nExecuted;
  editor->Requery();
  EXPECT_EQ(m_server.nExecuted, nExecuted + 1);
}

TEST_F(table_sorting, that_the_server_refuses_leaves_rows_and_marks_as_they_were) {
  std::static_pointer_cast<FakeRecordset>(m_server.answer)->Truncated(true);
  const auto editor = Shown();
  ViewOf(*editor)->SortBy(0, false);
  ASSERT_EQ(Label(*editor, "arrangement"), "Sorted by the server: Number \u2193");
  ViewOf(*editor)->GoTo(3, 1);
  m_server.whileRunning = [] { Refuse(); };
  editor->SortDescending();
  EXPECT_EQ(RowsOf(*editor), 50);
  EXPECT_EQ(ViewOf(*editor)->currentIndex().row(), 3);
  EXPECT_EQ(Label(*editor, "notice"), "There is no such column; correct it.");
  EXPECT_EQ(Label(*editor, "arrangement"), "Sorted by the server: Number \u2193");
  EXPECT_EQ(ViewOf(*editor)->Arranged().sort, (std::vector<SortColumn>{{0, false}}));
  EXPECT_EQ(m_failures->noted.size(), 1U);
  m_server.whileRunning = nullptr;
  editor->Requery();
  EXPECT_NE(m_server.sCommandText.find("ORDER BY \"Number\" DESC"), platform::Text::npos)
      << m_server.sCommandText;
  EXPECT_EQ(Label(*editor, "arrangement"), "Sorted by the server: Number \u2193");
}

/// The same of a named query's rows: its text is its author's, and the order stands around it.
class query_sorting : public QueryResultsFixture {
 protected:
  query_sorting() {
    std::static_pointer_cast<FakeRecordset>(m_server.answer)->Truncated(true);
    m_results->Execute();
  }
  std::unique_ptr<controls::QueryResults> m_results = Bound();
};

TEST_F(query_sorting, is_asked_of_the_server_where_the_row_limit_cut_the_rows) {
  ViewOf(*m_results)->SortBy(1, false);
  EXPECT_EQ(m_server.sCommandText,
            "SELECT *\nFROM (\nSELECT * FROM Pumps\n)\nORDER BY \"Name\" DESC");
  EXPECT_EQ(m_server.lMaxRecords, 7);
  EXPECT_EQ(CellOf(*m_results, 0, 1), "row 0") << "as the server gave them";
  EXPECT_EQ(Label(*m_results, "arrangement"), "Sorted by the server: Name \u2193");
  m_results->Execute();
  EXPECT_NE(m_server.sCommandText.find("ORDER BY"), platform::Text::npos) << "also anew";
  const auto rs = m_results->Recordset();
  const auto other = Bound();
  other->Recordset(rs);
  other->Execute();
  EXPECT_NE(m_server.sCommandText.find("ORDER BY"), platform::Text::npos) << "also in another grid";
  ViewOf(*m_results)->Sort({});
  EXPECT_EQ(m_server.sCommandText, "SELECT * FROM Pumps");
  EXPECT_EQ(Label(*m_results, "arrangement"), "");
}

TEST_F(query_sorting, goes_with_the_text_that_it_stood_around) {
  ViewOf(*m_results)->SortBy(1, false);
  ASSERT_EQ(Label(*m_results, "arrangement"), "Sorted by the server: Name \u2193");
  m_results->SqlText("SELECT * FROM Other");
  m_results->Execute();
  EXPECT_EQ(m_server.sCommandText, "SELECT * FROM Other");
  EXPECT_EQ(Label(*m_results, "arrangement"), "");
  EXPECT_TRUE(ViewOf(*m_results)->Arranged().sort.empty());
}

TEST_F(query_sorting, that_the_server_cannot_read_is_of_the_rows_here_and_says_so) {
  m_server.whileRunning = [this] {
    if (m_server.sCommandText.starts_with("EXPLAIN")) Refuse();
  };
  ViewOf(*m_results)->SortBy(1, false);
  EXPECT_EQ(CellOf(*m_results, 0, 1), "row 9");
  EXPECT_EQ(Label(*m_results, "arrangement"), "Only the rows here are sorted: Name \u2193");
  const int nExecuted = m_server.nExecuted;
  m_results->Execute();
  EXPECT_EQ(m_server.nExecuted, nExecuted + 1);
  EXPECT_EQ(m_server.sCommandText, "SELECT * FROM Pumps");
}

TEST_F(query_sorting, that_the_server_refuses_leaves_the_rows) {
  m_server.whileRunning = [this] {
    if (!m_server.sCommandText.starts_with("EXPLAIN")) Refuse();
  };
  ViewOf(*m_results)->SortBy(1, false);
  EXPECT_EQ(RowsOf(*m_results), 50);
  EXPECT_EQ(Label(*m_results, "notice"), "There is no such column; correct it.");
  EXPECT_EQ(Label(*m_results, "arrangement"), "");
}

TEST_F(table_sorting, may_be_the_end_of_the_grid) {
  std::static_pointer_cast<FakeRecordset>(m_server.answer)->Truncated(true);
  auto editor = Shown();
  m_server.whileRunning = [&] { editor.reset(); };
  editor->SortDescending();
  EXPECT_EQ(editor, nullptr);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(m_life.use_count(), 1);
}

TEST_F(table_sorting, raises_the_events_of_a_click_on_a_name) {
  const auto editor = Shown();
  Show(*editor);
  EventCounts counts(*editor);
  ClickColumnName(*editor, 1);
  counts.Take();
  QTest::mouseClick(ViewOf(*editor)->Names().viewport(), Qt::LeftButton, {},
                    ViewOf(*editor)->Names().ArrowOf(1).center());
  const auto taken = counts.Take();
  EXPECT_EQ(taken.at(2), 1) << "HeadClick";
  EXPECT_EQ(ViewOf(*editor)->Arranged().sort.size(), 1U);
  editor->Requery();
  EXPECT_EQ(counts.Take(), (std::vector<int>{1, 1, 0})) << "the order is no exchange of its own";
}

}  // namespace
}  // namespace orvane::controls
