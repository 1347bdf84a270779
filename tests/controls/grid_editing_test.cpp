#include "controls/grid/grid_editing.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QTextEdit>

#include "controls/editing/conflict_dialog.h"
#include "tests/controls/pumps_fixture.h"
#include "tests/fakes/until.h"

namespace orvane::controls {
namespace {

using platform::Text;

class grid_editing : public PumpsFixture {};

TEST_F(grid_editing, a_value_that_is_typed_is_stored_when_its_row_is_left) {
  Open("Pumps");
  GoTo(0, 2);
  Type("99.5");
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Editor()->text(), "99.5");
  EXPECT_EQ(Stored("SELECT Flow FROM P..Pumps WHERE Id = 1"), "10.5");
  Press(Qt::Key_Return);
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_EQ(Rows().currentIndex().row(), 1);
  EXPECT_EQ(Stored("SELECT Flow FROM P..Pumps WHERE Id = 1"), "99.5");
  EXPECT_EQ(Cell(0, 2), "99.5");
  EXPECT_EQ(Mark(0), "");
  EXPECT_EQ(Label("pending"), "");
}

class computed_columns : public EditingFixture {
 protected:
  computed_columns() {
    m_server->Run(
        "CREATE TABLE P..Tanks (Id INTEGER PRIMARY KEY, Height REAL, Volume REAL AS (Height * 2), "
        "Name TEXT)");
    m_server->Run("INSERT INTO P..Tanks (Id, Height, Name) VALUES (1, 1.5, 'a'), (2, 4, 'b')");
    Open("Tanks");
  }
  static constexpr const char* kWhyNot =
      "\"Volume\" takes no value, as the table computes it from other columns; change those.";
};

TEST_F(computed_columns, are_not_typed_into_and_say_why) {
  for (const int nKey : {Qt::Key_F2, Qt::Key_Return, Qt::Key_7}) {
    GoTo(0, 1);
    EXPECT_EQ(Label("notice"), "");
    GoTo(0, 2);
    Press(nKey);
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(Label("notice"), kWhyNot);
  }
  EXPECT_FALSE(Rows().model()->index(0, 2).flags().testFlag(Qt::ItemIsEditable));
  EXPECT_FALSE(Rows().model()->index(2, 2).flags().testFlag(Qt::ItemIsEditable));
  Press(Qt::Key_0, Qt::ControlModifier);
  EXPECT_EQ(Label("pending"), "");
}

TEST_F(computed_columns, follow_what_they_are_computed_from) {
  GoTo(0, 1);
  Type("10");
  Press(Qt::Key_Return);
  EXPECT_EQ(Cell(0, 2), "20");
  GoTo(2, 1);
  Type("3");
  Press(Qt::Key_Return);
  EXPECT_EQ(Stored("SELECT Volume FROM P..Tanks ORDER BY Id"), "20\n8\n6");
  EXPECT_EQ(Label("pending"), "");
}

TEST_F(computed_columns, take_nothing_from_the_clipboard_and_nothing_beside_them_is_changed) {
  QApplication::clipboard()->setText("5\t6\tx");
  GoTo(0, 1);
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Label("notice"), std::string("Nothing was pasted. ") + kWhyNot);
  EXPECT_EQ(Label("pending"), "");
  EXPECT_EQ(Cell(0, 1), "1.5");
}

TEST_F(grid_editing, an_editor_opens_with_f2_enter_and_a_double_click) {
  Open("Pumps");
  GoTo(0, 1);
  Press(Qt::Key_F2);
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Editor()->text(), "feed");
  Press(Qt::Key_Escape);
  EXPECT_EQ(Editor(), nullptr);
  Press(Qt::Key_Return);
  ASSERT_NE(Editor(), nullptr);
  Press(Qt::Key_Escape);
  const QPoint cell = Rows().visualRect(Rows().model()->index(1, 1)).center();
  QTest::mouseClick(Rows().viewport(), Qt::LeftButton, {}, cell);
  QTest::mouseDClick(Rows().viewport(), Qt::LeftButton, {}, cell);
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Editor()->text(), "drain");
}

TEST_F(grid_editing, looking_into_cells_changes_and_sends_nothing) {
  m_server->Run("UPDATE P..Pumps SET Note = '  spaced ', Flow = 0.1 WHERE Id = 1");
  Open("Pumps");
  const Text sBefore = Pumps();
  // Whatever was sent would be told apart by what somebody else wrote meanwhile.
  m_server->Run("UPDATE P..Pumps SET Name = 'renamed'");
  for (int nRow = 0; nRow < 4; ++nRow) {
    for (int nColumn = 0; nColumn < 4; ++nColumn) {
      GoTo(nRow, nColumn);
      Press(Qt::Key_F2);
      Press(Qt::Key_Tab);
      Press(Qt::Key_F2);
      Press(Qt::Key_Return);
      EXPECT_EQ(Label("pending"), "");
    }
  }
  EXPECT_EQ(Stored("SELECT Name FROM P..Pumps WHERE Id = 1"), "renamed");
  EXPECT_EQ(Rows().model()->rowCount(), 4);
}

TEST_F(grid_editing, what_is_no_value_stays_in_the_line_with_a_sentence) {
  Open("Pumps");
  GoTo(0, 2);
  Type("high");
  Press(Qt::Key_Return);
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Editor()->text(), "high");
  const auto* problem = Rows().viewport()->findChild<QLabel*>("cellProblem");
  ASSERT_NE(problem, nullptr);
  EXPECT_EQ(problem->text().toStdString(),
            "\"high\" is no number; enter digits, with \".\" as the decimal point.");
  Press(Qt::Key_Escape);
  EXPECT_EQ(Cell(0, 2), "10.5");
  EXPECT_EQ(Rows().viewport()->findChild<QLabel*>("cellProblem"), nullptr);
}

TEST_F(grid_editing, what_is_no_value_is_kept_and_not_sent_when_its_cell_is_left) {
  Open("Pumps");
  GoTo(0, 2);
  Type("high");
  const QPoint other = Rows().visualRect(Rows().model()->index(2, 1)).center();
  QTest::mouseClick(Rows().viewport(), Qt::LeftButton, {}, other);
  Settle();
  EXPECT_EQ(Cell(0, 2), "high");
  EXPECT_EQ(Mark(0), "!");
  EXPECT_EQ(Label("pending"), "1 row not stored");
  EXPECT_EQ(Stored("SELECT Flow FROM P..Pumps WHERE Id = 1"), "10.5");
  GoTo(0, 2);
  EXPECT_EQ(Label("notice"),
            "Flow: \"high\" is no number; enter digits, with \".\" as the decimal point.");
  Type("12");
  Press(Qt::Key_Return);
  EXPECT_EQ(Stored("SELECT Flow FROM P..Pumps WHERE Id = 1"), "12");
  EXPECT_EQ(Mark(0), "");
}

TEST_F(grid_editing, null_and_the_empty_text_are_two_values) {
  Open("Pumps");
  GoTo(0, 3);
  Press(Qt::Key_0, Qt::ControlModifier);
  Press(Qt::Key_Down);
  EXPECT_EQ(Stored("SELECT Note IS NULL FROM P..Pumps WHERE Id = 1"), "1");
  GoTo(1, 3);
  Type("x");
  Press(Qt::Key_Backspace);
  Press(Qt::Key_Return);
  EXPECT_EQ(Stored("SELECT Note = '' FROM P..Pumps WHERE Id = 2"), "1");
  GoTo(2, 3);
  Press(Qt::Key_F2);
  Press(Qt::Key_0, Qt::ControlModifier);
  EXPECT_EQ(Editor(), nullptr);
  Press(Qt::Key_Up);
  EXPECT_EQ(Stored("SELECT Note IS NULL FROM P..Pumps WHERE Id = 3"), "1");
}

TEST_F(grid_editing, escape_takes_the_cell_back_and_then_the_row) {
  Open("Pumps");
  GoTo(0, 1);
  Type("one");
  Press(Qt::Key_Tab);
  EXPECT_EQ(Label("pending"), "1 row not stored");
  EXPECT_EQ(Mark(0), "\u2022");
  Type("7");
  Press(Qt::Key_Escape);
  EXPECT_EQ(Cell(0, 1), "one");
  EXPECT_EQ(Cell(0, 2), "10.5");
  Press(Qt::Key_Escape);
  EXPECT_EQ(Cell(0, 1), "feed");
  EXPECT_EQ(Label("pending"), "");
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Cell(0, 1), "one");
  Press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(Cell(0, 1), "feed");
}

TEST_F(grid_editing, typing_into_the_empty_row_inserts_one) {
  Open("Pumps");
  int nInserted = 0;
  const auto inserted = m_editor->OnInsert([&] { ++nInserted; });
  GoTo(3, 1);
  Type("new");
  Press(Qt::Key_Tab);
  Type("1.5");
  EXPECT_EQ(Mark(3), "+");
  Press(Qt::Key_Return);
  EXPECT_EQ(Stored("SELECT Name, Flow FROM P..Pumps WHERE Id = 4"), "new|1.5");
  EXPECT_EQ(Cell(3, 0), "4");
  EXPECT_EQ(Rows().model()->rowCount(), 5);
  EXPECT_EQ(nInserted, 1);
  EXPECT_TRUE(m_editor->CanMove());
  m_editor->MoveLast();
  EXPECT_EQ(Rows().currentIndex().row(), 3);
}

TEST_F(grid_editing, selected_rows_are_deleted_after_one_question) {
  Open("Pumps");
  int nDeleted = 0;
  const auto deleted = m_editor->OnDelete([&] { ++nDeleted; });
  EXPECT_TRUE(m_editor->DeleteAllowed());
  PressRowNumber(0);
  PressRowNumber(1, Qt::ShiftModifier);
  EXPECT_TRUE(m_editor->RowsSelected());
  Press(Qt::Key_Delete);
  auto* box = Window()->findChild<QMessageBox*>();
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->text(), "Delete 2 rows?");
  EXPECT_EQ(Pumps().substr(0, 6), "1|feed");
  Answer("Delete");
  EXPECT_EQ(Stored("SELECT Name FROM P..Pumps"), "spare");
  EXPECT_EQ(Cell(0, 1), "spare");
  EXPECT_EQ(Rows().model()->rowCount(), 2);
  EXPECT_EQ(nDeleted, 1);
}

TEST_F(grid_editing, a_refused_deletion_tells_that_the_cell_takes_no_values_any_more) {
  Open("Pumps");
  m_server->Run("UPDATE P..Pumps SET Flow = 77 WHERE Id = 2");
  PressRowNumber(0);
  PressRowNumber(1, Qt::ShiftModifier);
  int nTold = 0;
  bool bTakes = m_editor->CanCellQuery();
  ASSERT_TRUE(bTakes);
  const auto moved = m_editor->OnRowColChange([&] {
    ++nTold;
    bTakes = m_editor->CanCellQuery();
  });
  m_editor->DeleteSelectedRows();
  Answer("Delete");
  ASSERT_FALSE(m_editor->CanCellQuery());
  EXPECT_FALSE(bTakes) << "whoever shows it was told";
  EXPECT_EQ(nTold, 1);
  try {
    m_editor->CellQuery();
    FAIL();
  } catch (const platform::Failure& failure) {
    EXPECT_EQ(failure.Description(),
              "The row is deleted and takes no values: discard the deletion, or edit another row.");
  }
  delete Window()->findChild<ConflictDialog*>();
  Press(Qt::Key_Z, Qt::ControlModifier);
  ASSERT_TRUE(m_editor->CanCellQuery());
  EXPECT_TRUE(bTakes);
  EXPECT_EQ(nTold, 2);
}

TEST_F(grid_editing, cancel_deletes_nothing) {
  Open("Pumps");
  m_editor->MoveFirst();
  m_editor->DeleteSelectedRows();
  Answer("Cancel");
  EXPECT_EQ(Stored("SELECT count(*) FROM P..Pumps"), "3");
  EXPECT_EQ(Rows().model()->rowCount(), 4);
}

TEST_F(grid_editing, a_row_that_the_server_refuses_keeps_what_was_typed) {
  Open("Pumps");
  GoTo(0, 1);
  Press(Qt::Key_0, Qt::ControlModifier);
  Press(Qt::Key_Down);
  EXPECT_EQ(Cell(0, 1), "NULL");
  EXPECT_EQ(Mark(0), "!");
  EXPECT_EQ(Label("pending"), "1 row not stored");
  GoTo(0, 1);
  EXPECT_NE(Label("notice"), "");
  EXPECT_EQ(Rows().model()->headerData(0, Qt::Vertical, Qt::ToolTipRole).toString().isEmpty(),
            false);
  Type("again");
  Press(Qt::Key_Return);
  EXPECT_EQ(Stored("SELECT Name FROM P..Pumps WHERE Id = 1"), "again");
  EXPECT_EQ(Mark(0), "");
}

TEST_F(grid_editing, a_row_that_somebody_else_changed_is_not_overwritten) {
  Open("Pumps");
  m_server->Run("UPDATE P..Pumps SET Flow = 77 WHERE Id = 1");
  GoTo(0, 2);
  Type("5");
  Press(Qt::Key_Return);
  EXPECT_EQ(Stored("SELECT Flow FROM P..Pumps WHERE Id = 1"), "77");
  EXPECT_EQ(Cell(0, 2), "5");
  EXPECT_EQ(Mark(0), "!");
  const auto* which = Window()->findChild<QLabel*>("which");
  ASSERT_NE(which, nullptr);
  EXPECT_EQ(which->text(), "Id: 1") << "the question tells which row it is";
}

TEST_F(grid_editing, rows_of_a_view_or_without_a_key_can_only_be_looked_at) {
  m_server->Run("CREATE VIEW P..Fast AS SELECT * FROM P..Pumps");
  Open("Fast");
  EXPECT_FALSE(m_editor->DeleteAllowed());
  EXPECT_EQ(Label("readOnly"),
            "These rows can only be looked at: they are those of a view; edit its tables.");
  GoTo(0, 1);
  Type("x");
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_EQ(Label("notice"),
            "These rows can only be looked at: they are those of a view; edit its tables.");
  EXPECT_EQ(Label("readOnly"), "") << "it is said once";
  EXPECT_EQ(Rows().model()->rowCount(), 3);
}

TEST_F(grid_editing, rows_whose_key_is_not_shown_can_only_be_looked_at) {
  m_query->Columns().Add("Name");
  Open("Pumps");
  EXPECT_FALSE(m_editor->DeleteAllowed());
  EXPECT_EQ(Label("readOnly"),
            "These rows can only be looked at: the column \"Id\", which tells them apart, is not "
            "shown; choose it in the query.");
}

TEST_F(grid_editing, rows_whose_times_are_numbers_can_only_be_looked_at) {
  Open("Pumps", "Time as Double = True;");
  EXPECT_FALSE(m_editor->DeleteAllowed());
  EXPECT_NE(Label("readOnly").find("switch off \"Time as Double\""), Text::npos);
}

TEST_F(grid_editing, what_is_being_typed_outlives_an_order_that_comes_meanwhile) {
  m_server->Run("CREATE TABLE P..Many (Id INTEGER PRIMARY KEY, Name TEXT)");
  m_server->Run(
      "INSERT INTO P..Many WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT "
      "30000) SELECT i, 'name ' || (i % 100) FROM n");
  m_query->MaxRows(0);
  Open("Many");
  GoTo(2, 1);
  Rows().SortBy(1, false);
  ASSERT_TRUE(Rows().Arranging());
  Type("typed");
  ASSERT_NE(Editor(), nullptr);
  QTest::keyClick(Editor(), Qt::Key_Tab);
  ASSERT_TRUE(tests::Until([&] { return !Rows().Arranging(); }));
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT Name FROM P..Many WHERE Id = 3"), "typed");
}

TEST_F(grid_editing, a_table_without_rows_has_the_menu_of_rows) {
  m_server->Run("DELETE FROM P..Pumps");
  Open("Pumps");
  auto* sentence = Window()->findChild<QTextEdit*>("emptySentence");
  ASSERT_TRUE(sentence->isVisible());
  QContextMenuEvent asked(QContextMenuEvent::Mouse, {5, 5}, sentence->mapToGlobal(QPoint(5, 5)));
  QApplication::sendEvent(sentence->viewport(), &asked);
  auto* menu = Rows().findChild<QMenu*>();
  ASSERT_NE(menu, nullptr) << "also over the sentence that lies over the rows";
  QStringList enabled;
  for (const QAction* action : menu->actions()) {
    if (action->isEnabled() && !action->isSeparator())
      enabled << action->text().section(u'\t', 0, 0).remove(u'&');
  }
  for (const char* sWanted :
       {"Add a Row", "Paste", "Export Rows\u2026", "Import Rows\u2026", "Filter Row", "Columns"}) {
    EXPECT_TRUE(enabled.contains(QString::fromUtf8(sWanted))) << sWanted;
  }
  menu->close();
  QApplication::clipboard()->setText("7\tnew\t1.5");
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Cell(0, 1), "new");
  EXPECT_FALSE(sentence->isVisible()) << "it would cover what was pasted";
}

TEST_F(grid_editing, a_row_is_added_by_a_key) {
  Open("Pumps");
  Press(Qt::Key_Insert);
  EXPECT_EQ(Rows().currentIndex().row(), 3);
  Type("7");
  Press(Qt::Key_Tab);
  EXPECT_EQ(Cell(3, 0), "7");
}

}  // namespace
}  // namespace orvane::controls
