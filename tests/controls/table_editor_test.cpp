#include "controls/grid/table_editor.h"

#include <QLabel>
#include <QLayout>
#include <QMenu>
#include <QPointer>
#include <QScrollBar>
#include <QToolButton>

#include "tests/controls/failure_of.h"
#include "tests/controls/table_editor_fixture.h"

namespace orvane::controls {
namespace {

using platform::Long;

class table_editor : public TableEditorFixture {};

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
  const char* sWhyNot = "These rows can only be looked at: they are not those of one table.";
  refused([&] { editor->CellQuery(); }, sWhyNot);
  refused([&] { editor->DeleteSelectedRows(); }, sWhyNot);
  EXPECT_FALSE(editor->CanCellQuery());
  EXPECT_FALSE(editor->DeleteAllowed());
  EXPECT_EQ(RowsOf(*editor), 50);
  editor->AttachRecordset(nullptr, 0);
  refused([&] { editor->CellQuery(); },
          "There is no cell to be filled from a query; go to one first.");
  refused([&] { editor->DeleteSelectedRows(); }, "There are no rows to delete; fetch them first.");
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

TEST_F(table_editor, may_be_dropped_by_whoever_hears_of_rows_that_are_attached) {
  auto editor = Bound();
  const auto heard = editor->OnRowColChange([&] { editor.reset(); });
  const QPointer<QWidget> window = WindowOf(*editor);
  editor->AttachRecordset(Plant(5), 0);
  EXPECT_EQ(editor, nullptr);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(window.isNull());
}

TEST_F(table_editor, that_was_dropped_leaves_nothing_to_press) {
  auto editor = Bound();
  Show(*editor);
  editor->Requery();
  const auto close = [&] {
    m_connection->Close();
    throw platform::Failure(platform::failure::kObjectClosed, "It is closed.");
  };
  m_connection->Close();
  m_server.whileRunning = close;
  EXPECT_THROW(editor->Requery(), platform::Failure);
  const QPointer<QWidget> window = WindowOf(*editor);
  auto* offer = window->findChild<QToolButton*>("offer");
  EXPECT_FALSE(offer->isHidden());
  RowView* view = ViewOf(*editor);
  const auto heard = editor->OnRowColChange([&] { editor.reset(); });
  // The rows stay, so that they are told of before the failure is.
  EXPECT_THROW(editor->Requery(), platform::Failure);
  EXPECT_EQ(editor, nullptr);
  ASSERT_FALSE(window.isNull()) << "it goes when its event is over";
  EXPECT_TRUE(offer->isHidden());
  offer->click();
  QMenu menu;
  view->Commands().Fill(menu);
  EXPECT_TRUE(menu.actions().isEmpty());
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(window.isNull());
}

}  // namespace
}  // namespace orvane::controls
