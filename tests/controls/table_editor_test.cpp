#include "controls/table_editor.h"

#include <QLabel>
#include <QLayout>
#include <QScrollBar>
#include <stdexcept>

#include "controls/table_query.h"
#include "tests/controls/failure_of.h"
#include "tests/controls/grid_fixture.h"
#include "tests/controls/schema_connection.h"

namespace orvane::controls {
namespace {

using platform::Long;
using platform::Value;

class table_editor : public GridFixture {
 protected:
  table_editor() {
    m_query->Catalog("Machine");
    m_query->Table("Data");
    m_query->MaxRows(7);
    m_query->QueryTimeout(8);
    m_server.answer = Plant(50);
  }
  /// A grid as the snap-in binds it.
  std::unique_ptr<controls::TableEditor> Bound() {
    auto editor = std::make_unique<controls::TableEditor>(Services());
    editor->Connection(m_connection);
    editor->TableQuery(m_query);
    return editor;
  }
  std::shared_ptr<controls::TableQuery> m_query = std::make_shared<controls::TableQuery>();
};

TEST_F(table_editor, a_new_one_is_empty_and_can_do_nothing) {
  controls::TableEditor editor(Services());
  EXPECT_FALSE(editor.ShowSqlStatements());
  EXPECT_EQ(editor.Mode(), 0);
  EXPECT_FALSE(editor.CanMove());
  EXPECT_FALSE(editor.CanSort());
  EXPECT_FALSE(editor.CanCellQuery());
  EXPECT_FALSE(editor.DeleteAllowed());
  EXPECT_FALSE(editor.RowsSelected());
  EXPECT_EQ(RowsOf(editor), 0);
  EXPECT_EQ(Label(editor, "rowCount"), "");
  EXPECT_EQ(WindowOf(editor)->accessibleName(), "Table rows");
}

TEST_F(table_editor, lends_its_status_line_and_has_it_back) {
  const auto editor = Bound();
  editor->Requery();
  auto* window = WindowOf(*editor);
  QWidget bar;
  auto* line = static_cast<QWidget*>(editor->LendStatusLine());
  ASSERT_NE(line, nullptr);
  line->setParent(&bar);
  editor->Requery();
  ASSERT_NE(line->findChild<QLabel*>("rowCount"), nullptr);
  EXPECT_EQ(line->findChild<QLabel*>("rowCount")->text(), "50 rows");
  editor->TakeStatusLineBack();
  EXPECT_EQ(line->parentWidget(), window);
  EXPECT_GE(window->layout()->indexOf(line), 0);
  EXPECT_TRUE(line->isVisibleTo(window));
}

TEST_F(table_editor, keeps_its_mode) {
  controls::TableEditor editor(Services());
  editor.Mode(3);
  EXPECT_EQ(editor.Mode(), 3);
}

TEST_F(table_editor, requery_sends_the_query_with_its_limits_over_the_connection) {
  const auto editor = Bound();
  editor->Requery();
  EXPECT_EQ(m_server.nExecuted, 1);
  EXPECT_EQ(m_server.connection, m_connection);
  EXPECT_EQ(m_server.sCommandText, "SELECT *\nFROM \"Machine\"..\"Data\"");
  EXPECT_EQ(m_server.lMaxRecords, 7);
  EXPECT_TRUE(m_server.bReadOnly);
  EXPECT_EQ(m_server.lTimeout, 8);
}

TEST_F(table_editor, a_table_with_a_time_column_comes_newest_first_and_says_so) {
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

TEST_F(table_editor, a_table_that_cannot_be_described_is_asked_for_its_rows_all_the_same) {
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

TEST_F(table_editor, may_go_or_be_asked_again_while_the_server_describes_the_table) {
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

TEST_F(table_editor, limits_below_zero_are_none) {
  m_query->MaxRows(-1);
  m_query->QueryTimeout(-1);
  Bound()->Requery();
  EXPECT_EQ(m_server.lMaxRecords, 0);
  EXPECT_EQ(m_server.lTimeout, 0);
}

TEST_F(table_editor, requery_shows_the_rows_their_number_and_the_time_taken) {
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

TEST_F(table_editor, says_when_the_row_limit_cut_the_rows) {
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

TEST_F(table_editor, without_rows_says_which_filter_left_none) {
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

TEST_F(table_editor, times_are_shown_in_the_zone_of_the_connection) {
  const auto editor = Bound();
  editor->Requery();
  EXPECT_EQ(CellOf(*editor, 0, 3), "2023-11-14 22:13:20");
  editor->Connection(std::make_shared<FakeConnection>(Value("Asia/Tokyo")));
  editor->Requery();
  EXPECT_EQ(CellOf(*editor, 0, 3), "2023-11-15 07:13:20");
}

TEST_F(table_editor, follows_the_zone_of_an_open_connection_with_the_next_rows) {
  const auto editor = Bound();
  editor->Requery();
  m_connection->Properties().Item(Value("Time Zone")).Value(Value("Asia/Tokyo"));
  editor->Requery();
  EXPECT_EQ(CellOf(*editor, 0, 3), "2023-11-15 07:13:20");
}

TEST_F(table_editor, dropping_the_connection_keeps_what_is_shown) {
  const auto editor = Bound();
  editor->Connection(std::make_shared<FakeConnection>(Value("Asia/Tokyo")));
  editor->Requery();
  editor->Connection(nullptr);
  EXPECT_EQ(CellOf(*editor, 0, 3), "2023-11-15 07:13:20");
}

TEST_F(table_editor, holds_no_connection_that_was_dropped) {
  const auto editor = Bound();
  editor->Requery();
  editor->Connection(nullptr);
  m_server.connection.reset();
  EXPECT_EQ(m_connection.use_count(), 1);
}

TEST_F(table_editor, requery_without_a_connection_fails_and_says_so_in_the_grid) {
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

TEST_F(table_editor, requery_without_a_query_a_table_or_data_access_fails) {
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

TEST_F(table_editor, a_failed_requery_passes_the_failure_on_and_leaves_no_stale_rows) {
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

TEST_F(table_editor, works_again_after_a_failure) {
  const auto editor = Bound();
  m_server.whileRunning = [] { Refuse(); };
  EXPECT_NE(FailureNumberOf([&] { editor->Requery(); }), 0);
  m_server.whileRunning = nullptr;
  editor->Requery();
  EXPECT_EQ(RowsOf(*editor), 50);
  EXPECT_EQ(Label(*editor, "emptyTitle"), "");
}

TEST_F(table_editor, a_cancelled_requery_says_cancelled) {
  const auto editor = Bound();
  m_server.whileRunning = [] {
    throw platform::Failure(platform::failure::kCancelled, "The query was cancelled.");
  };
  EXPECT_EQ(FailureNumberOf([&] { editor->Requery(); }), platform::failure::kCancelled);
  EXPECT_EQ(Label(*editor, "emptyTitle"), "Cancelled");
  EXPECT_EQ(Label(*editor, "emptySentence"), "The query was cancelled.");
}

TEST_F(table_editor, an_exception_of_another_kind_is_shown_and_passed_on_too) {
  const auto editor = Bound();
  m_server.whileRunning = [] { throw std::runtime_error("out of luck"); };
  EXPECT_THROW(editor->Requery(), std::runtime_error);
  EXPECT_EQ(Label(*editor, "emptySentence"), "out of luck");
}

TEST_F(table_editor, a_provider_that_gives_no_rowset_is_a_failure) {
  const auto editor = Bound();
  m_server.answer = nullptr;
  EXPECT_EQ(FailureNumberOf([&] { editor->Requery(); }), platform::failure::kComponent);
}

TEST_F(table_editor, while_rows_are_fetched_the_old_ones_are_gone_and_a_second_requery_fails) {
  const auto editor = Bound();
  editor->Requery();
  const std::weak_ptr<platform::Recordset> old = m_server.answer;
  m_server.answer = Plant(3);
  Long lInner = 0;
  m_server.whileRunning = [&] {
    EXPECT_TRUE(old.expired());
    EXPECT_EQ(RowsOf(*editor), 0);
    EXPECT_EQ(Label(*editor, "rowCount"), "Fetching rows…");
    lInner = FailureNumberOf([&] { editor->Requery(); });
  };
  editor->Requery();
  EXPECT_EQ(lInner, platform::failure::kBusy);
  EXPECT_EQ(m_server.nExecuted, 2);
  EXPECT_EQ(RowsOf(*editor), 3);
}

TEST_F(table_editor, a_short_wait_is_not_seen_and_a_long_one_is) {
  const auto editor = Bound();
  editor->Requery();
  Show(*editor);
  m_server.whileRunning = [&] {
    EXPECT_FALSE(ViewOf(*editor)->updatesEnabled());
    EXPECT_TRUE(QTest::qWaitFor([&] { return ViewOf(*editor)->updatesEnabled(); }));
    EXPECT_EQ(Label(*editor, "emptyTitle"), "Fetching rows…");
  };
  editor->Requery();
  EXPECT_TRUE(ViewOf(*editor)->updatesEnabled());
}

TEST_F(table_editor, detaching_hands_out_the_rows_and_keeps_showing_them) {
  const auto editor = Bound();
  editor->Requery();
  Long lUpdatability = 0;
  EXPECT_EQ(editor->DetachRecordset(lUpdatability), m_server.answer);
  EXPECT_NE(lUpdatability, 0);
  EXPECT_EQ(RowsOf(*editor), 50);
}

TEST_F(table_editor, attaching_none_empties_the_grid_and_lets_go_of_the_rows) {
  const auto editor = Bound();
  editor->Requery();
  const std::weak_ptr<platform::Recordset> rs = std::exchange(m_server.answer, nullptr);
  editor->AttachRecordset(nullptr, 0);
  EXPECT_TRUE(rs.expired());
  EXPECT_EQ(RowsOf(*editor), 0);
  EXPECT_FALSE(editor->CanMove());
  EXPECT_EQ(Label(*editor, "rowCount"), "");
  EXPECT_EQ(Label(*editor, "emptyTitle"), "");
  Long lUpdatability = 5;
  EXPECT_EQ(editor->DetachRecordset(lUpdatability), nullptr);
  EXPECT_EQ(lUpdatability, 0);
}

TEST_F(table_editor, a_fresh_one_shows_the_rows_as_they_were_left_without_a_query) {
  Long lUpdatability = 0;
  platform::RecordsetPtr rs;
  m_server.answer = Plant(1'000);
  {
    const auto editor = Bound();
    Show(*editor);
    editor->Requery();
    ViewOf(*editor)->verticalScrollBar()->setValue(300);
    ClickCell(*editor, 302, 1);
    ViewOf(*editor)->ColumnWidth(1, 234);
    rs = editor->DetachRecordset(lUpdatability);
    editor->AttachRecordset(nullptr, 0);
    editor->Connection(nullptr);
  }
  const platform::Text sSqlBefore = m_query->SqlText();
  m_query->FilterCondition("changed = 1");
  const auto fresh = Bound();
  fresh->ShowSqlStatements(true);
  fresh->AttachRecordset(rs, lUpdatability);
  Show(*fresh);
  QCoreApplication::processEvents();
  EXPECT_EQ(m_server.nExecuted, 1);
  EXPECT_EQ(ViewOf(*fresh)->currentIndex().row(), 302);
  EXPECT_EQ(ViewOf(*fresh)->currentIndex().column(), 1);
  EXPECT_TRUE(ViewOf(*fresh)->selectionModel()->isSelected(ViewOf(*fresh)->currentIndex()));
  EXPECT_EQ(ViewOf(*fresh)->verticalScrollBar()->value(), 300);
  EXPECT_EQ(ViewOf(*fresh)->ColumnWidth(1), 234);
  EXPECT_EQ(Label(*fresh, "rowCount"), "1,000 rows");
  EXPECT_EQ(Label(*fresh, "elapsed"), "12 ms, at 14:02:11");
  EXPECT_EQ(SqlOf(*fresh), sSqlBefore);
}

TEST_F(table_editor, rows_with_an_unknown_number_are_shown_from_the_first_on) {
  const auto editor = Bound();
  editor->Requery();
  editor->MoveLast();
  Long lUpdatability = 0;
  const auto rs = editor->DetachRecordset(lUpdatability);
  for (const Long lNumber : {0, -1, lUpdatability + 1}) {
    editor->AttachRecordset(rs, lNumber);
    EXPECT_EQ(ViewOf(*editor)->currentIndex().row(), 0) << lNumber;
  }
  editor->AttachRecordset(Plant(50), lUpdatability);
  EXPECT_EQ(ViewOf(*editor)->currentIndex().row(), 0);
  editor->AttachRecordset(rs, lUpdatability);
  EXPECT_EQ(ViewOf(*editor)->currentIndex().row(), 49);
}

TEST_F(table_editor, rows_can_be_attached_before_there_is_a_query) {
  controls::TableEditor editor(Services());
  editor.AttachRecordset(Plant(0), 0);
  EXPECT_EQ(Label(editor, "emptyTitle"), "No rows");
}

TEST_F(table_editor, the_statement_is_shown_when_switched_on) {
  const auto editor = Bound();
  editor->Requery();
  EXPECT_EQ(SqlOf(*editor), "(hidden)");
  editor->ShowSqlStatements(true);
  EXPECT_TRUE(editor->ShowSqlStatements());
  EXPECT_EQ(SqlOf(*editor), "SELECT *\nFROM \"Machine\"..\"Data\"");
  Show(*editor);
  EXPECT_GE(PaneOf(*editor).height(), PaneOf(*editor).minimumSizeHint().height());
  EXPECT_LT(PaneOf(*editor).height(), 150);
  editor->ShowSqlStatements(false);
  EXPECT_EQ(SqlOf(*editor), "(hidden)");
}

TEST_F(table_editor, the_statement_of_a_failed_requery_is_shown) {
  const auto editor = Bound();
  editor->ShowSqlStatements(true);
  m_server.whileRunning = [] { Refuse(); };
  EXPECT_NE(FailureNumberOf([&] { editor->Requery(); }), 0);
  EXPECT_EQ(SqlOf(*editor), "SELECT *\nFROM \"Machine\"..\"Data\"");
}

TEST_F(table_editor, moves_to_the_first_and_the_last_row_and_selects_it) {
  const auto editor = Bound();
  editor->Requery();
  Show(*editor);
  ClickCell(*editor, 3, 2);
  editor->MoveLast();
  EXPECT_EQ(ViewOf(*editor)->currentIndex(), ViewOf(*editor)->model()->index(49, 2));
  EXPECT_TRUE(editor->RowsSelected());
  EXPECT_EQ(Label(*editor, "position"), "Row 50 of 50");
  editor->MoveFirst();
  EXPECT_EQ(ViewOf(*editor)->currentIndex(), ViewOf(*editor)->model()->index(0, 2));
  EXPECT_TRUE(editor->RowsSelected());
}

TEST_F(table_editor, moving_without_rows_does_nothing) {
  const auto editor = Bound();
  editor->MoveFirst();
  editor->MoveLast();
  m_server.answer = Plant(0);
  editor->Requery();
  editor->MoveFirst();
  editor->MoveLast();
  EXPECT_FALSE(editor->RowsSelected());
}

TEST_F(table_editor, what_is_not_possible_says_so) {
  const auto editor = Bound();
  editor->Requery();
  const auto refused = [&](auto call, const platform::Text& sSentence) {
    EXPECT_EQ(FailureNumberOf(call), platform::failure::kNotSupported);
    EXPECT_EQ(SentenceOf(call), sSentence);
  };
  refused([&] { editor->CellQuery(); },
          "Filling a cell from a query is not possible in this grid; its rows can only be looked "
          "at.");
  refused([&] { editor->DeleteSelectedRows(); },
          "Deleting rows is not possible in this grid; its rows can only be looked at.");
  EXPECT_FALSE(editor->CanCellQuery());
  EXPECT_FALSE(editor->DeleteAllowed());
  EXPECT_EQ(RowsOf(*editor), 50);
}

TEST_F(table_editor, events_are_raised_exactly_when_something_happened) {
  using Counts = std::vector<int>;  // RowColChange, SelChange, HeadClick
  const auto editor = Bound();
  EventCounts counts(*editor);
  EXPECT_EQ(counts.Take(), (Counts{0, 0, 0}));
  editor->Requery();
  EXPECT_EQ(counts.Take(), (Counts{1, 0, 0}));
  Show(*editor);
  EXPECT_EQ(counts.Take(), (Counts{0, 0, 0}));
  ClickCell(*editor, 2, 1);
  EXPECT_EQ(counts.Take(), (Counts{1, 1, 0}));
  ClickCell(*editor, 2, 1);
  EXPECT_EQ(counts.Take(), (Counts{0, 0, 0}));
  QTest::keyClick(ViewOf(*editor), Qt::Key_Down);
  EXPECT_EQ(counts.Take(), (Counts{1, 1, 0}));
  ClickRowNumber(*editor, 4);
  EXPECT_EQ(counts.Take(), (Counts{1, 1, 0}));
  ClickColumnName(*editor, 2);
  EXPECT_EQ(counts.Take(), (Counts{1, 1, 1}));
  editor->MoveLast();
  EXPECT_EQ(counts.Take(), (Counts{1, 1, 0}));
  editor->MoveLast();
  EXPECT_EQ(counts.Take(), (Counts{0, 0, 0}));
  editor->Requery();
  EXPECT_EQ(counts.Take(), (Counts{1, 1, 0}));
  editor->AttachRecordset(nullptr, 0);
  EXPECT_EQ(counts.Take(), (Counts{1, 0, 0}));
  editor->AttachRecordset(nullptr, 0);
  EXPECT_EQ(counts.Take(), (Counts{0, 0, 0}));
}

TEST_F(table_editor, a_listener_of_new_rows_sees_them) {
  const auto editor = Bound();
  bool bCanMove = false;
  const auto subscription = editor->OnRowColChange([&] { bCanMove = editor->CanMove(); });
  editor->Requery();
  EXPECT_TRUE(bCanMove);
  m_server.whileRunning = [] { Refuse(); };
  EXPECT_NE(FailureNumberOf([&] { editor->Requery(); }), 0);
  EXPECT_FALSE(bCanMove);
}

TEST_F(table_editor, may_be_destroyed_by_its_own_event) {
  auto editor = Bound();
  editor->Requery();
  Show(*editor);
  const auto subscription = editor->OnRowColChange([&] { editor.reset(); });
  ClickCell(*editor, 2, 1);
  EXPECT_EQ(editor, nullptr);
  EXPECT_GT(m_life.use_count(), 1);  // the window waits for the end of the click
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(m_life.use_count(), 1);
}

TEST_F(table_editor, takes_its_window_along) {
  auto editor = Bound();
  QPointer<QWidget> window(WindowOf(*editor));
  editor.reset();
  EXPECT_TRUE(window.isNull());
  EXPECT_EQ(m_life.use_count(), 1);
}

TEST_F(table_editor, survives_that_its_window_went_with_the_place_it_was_put_into) {
  auto place = std::make_unique<QWidget>();
  auto editor = Bound();
  WindowOf(*editor)->setParent(place.get());
  place.reset();
  editor.reset();
  EXPECT_EQ(m_life.use_count(), 1);
}

}  // namespace
}  // namespace orvane::controls
