#include "controls/grid/cell_filling.h"

#include <new>

#include "controls/editing/cell_query_dialog.h"
#include "tests/controls/pumps_fixture.h"
#include "tests/controls/table_time_fixture.h"

namespace orvane::controls {
namespace {

using platform::Text;

class cell_filling : public PumpsFixture {
 protected:
  /// As somebody does it from the toolbar, in the current cell.
  void Fill(const char* sStatement) {
    Settle();  // a row that was left before is stored
    m_editor->CellQuery();
    auto* dialog = Window()->findChild<CellQueryDialog*>();
    ASSERT_NE(dialog, nullptr);
    dialog->findChild<QPlainTextEdit*>("statement")->setPlainText(sStatement);
    dialog->findChild<QPushButton*>("run")->click();
    Settle();
  }
};

TEST_F(cell_filling, a_query_fills_the_current_cell_with_its_first_value) {
  Open("Pumps");
  GoTo(0, 2);
  EXPECT_TRUE(m_editor->CanCellQuery());
  m_editor->CellQuery();
  QPointer<CellQueryDialog> dialog = Window()->findChild<CellQueryDialog*>();
  ASSERT_NE(dialog, nullptr);
  auto* statement = dialog->findChild<QPlainTextEdit*>("statement");
  const auto run = [&](const QString& sStatement) {
    statement->setPlainText(sStatement);
    dialog->findChild<QPushButton*>("run")->click();
    Settle();
    return dialog ? dialog->findChild<QLabel*>("sentence")->text().toStdString() : "";
  };
  EXPECT_EQ(run("SELECT Flow FROM P..Pumps WHERE Id = 99"),
            "The statement gave no value; the cell stays as it is.");
  EXPECT_EQ(run("SELECT Name FROM P..Pumps WHERE Id = 1"),
            "\"feed\" is no number; enter digits, with \".\" as the decimal point.");
  EXPECT_EQ(run("DELETE FROM P..Pumps"),
            "The statement would change data; only one that reads can fill a cell.");
  EXPECT_EQ(Stored("SELECT count(*) FROM P..Pumps"), "3");
  run("SELECT Flow * 2 FROM P..Pumps WHERE Id = 2");
  EXPECT_EQ(Window()->findChild<CellQueryDialog*>(), nullptr);
  EXPECT_EQ(Cell(0, 2), "6.5");
  EXPECT_EQ(Label("pending"), "1 row not stored");
  Press(Qt::Key_Down);
  EXPECT_EQ(Stored("SELECT Flow FROM P..Pumps WHERE Id = 1"), "6.5");
  m_editor->CellQuery();
  dialog = Window()->findChild<CellQueryDialog*>();
  EXPECT_EQ(dialog->Statement(), "SELECT Flow * 2 FROM P..Pumps WHERE Id = 2");
}

TEST_F(cell_filling, a_cell_that_takes_no_query_says_why) {
  const auto refused = [this] {
    try {
      m_editor->CellQuery();
    } catch (const platform::Failure& failure) {
      EXPECT_EQ(failure.Number(), platform::failure::kNotSupported);
      return failure.Description();
    }
    return Text("nothing was refused");
  };
  m_server->Run("CREATE VIEW P..Fast AS SELECT * FROM P..Pumps");
  Open("Fast");
  EXPECT_EQ(refused(),
            "These rows can only be looked at: they are those of a view; edit its tables.");
  EXPECT_THROW(m_editor->DeleteSelectedRows(), platform::Failure);
  m_server->Run(
      "CREATE TABLE P..Twice (Id INTEGER PRIMARY KEY, N INTEGER, Twice INTEGER GENERATED ALWAYS AS "
      "(N * 2))");
  m_server->Run("INSERT INTO P..Twice (Id, N) VALUES (1, 1)");
  Open("Twice");
  GoTo(0, 2);
  EXPECT_EQ(refused(),
            "\"Twice\" takes no value, as the table computes it from other columns; change those.");
  GoTo(0, 1);
  m_editor->CellQuery();
  EXPECT_NE(Window()->findChild<CellQueryDialog*>(), nullptr);
}

TEST_F(cell_filling, the_first_of_several_values_goes_in_and_the_others_after_a_question) {
  Open("Pumps");
  GoTo(0, 3);
  Fill("SELECT Name FROM P..Pumps ORDER BY Id");
  EXPECT_EQ(Cell(0, 3), "feed") << "before the question is answered";
  EXPECT_EQ(Cell(1, 3), "NULL");
  auto* box = Window()->findChild<QMessageBox*>("fillDown");
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->text(),
            "The statement gave 3 values, and the first is in the cell. Fill the 2 cells beneath "
            "with the others?");
  Answer("Fill Down");
  EXPECT_EQ(Cell(1, 3), "drain");
  EXPECT_EQ(Cell(2, 3), "spare");
  EXPECT_EQ(Rows().model()->rowCount(), 4);
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Cell(0, 3), "feed");
  EXPECT_EQ(Cell(1, 3), "NULL");
  EXPECT_EQ(Cell(2, 3), "");
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Label("pending"), "");
}

TEST_F(cell_filling, whoever_declines_keeps_the_first_value) {
  Open("Pumps");
  for (const bool bEscape : {false, true}) {
    GoTo(1, 3);
    Fill("SELECT Name FROM P..Pumps ORDER BY Id");
    if (bEscape) {
      QTest::keyClick(Window()->findChild<QMessageBox*>("fillDown"), Qt::Key_Escape);
      Settle();
    } else {
      Answer("First Only");
    }
    EXPECT_EQ(Cell(1, 3), "feed");
    EXPECT_EQ(Cell(2, 3), "");
    EXPECT_EQ(Label("pending"), "1 row not stored");
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Label("pending"), "");
  }
}

TEST_F(cell_filling, says_why_only_the_first_value_was_taken) {
  Open("Pumps");
  GoTo(0, 2);
  Fill("SELECT 7 UNION ALL SELECT 'high'");
  EXPECT_EQ(Cell(0, 2), "7");
  EXPECT_EQ(
      Label("notice"),
      "Only the first value was taken. \"high\" is no number; enter digits, with \".\" as the "
      "decimal point.");
  GoTo(2, 3);
  Fill("SELECT 'a' UNION ALL SELECT 'b'");
  EXPECT_EQ(Cell(2, 3), "a");
  EXPECT_EQ(Label("notice"),
            "Only the first value was taken. The statement gave 2, but no row stands beneath this "
            "one.");
  GoTo(0, 3);
  Fill(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 10001) SELECT i FROM "
      "n");
  EXPECT_EQ(Cell(0, 3), "1");
  EXPECT_EQ(
      Label("notice"),
      "Only the first value was taken. The statement gives more than 10,000 values; narrow it "
      "down.");
  EXPECT_EQ(Window()->findChild<QMessageBox*>(), nullptr);
}

TEST_F(cell_filling, what_is_copied_is_pasted_back_exactly) {
  m_server->Run(
      "UPDATE P..Pumps SET Note = 'two\nlines\tand \"quotes\"', Name = 'NULL' WHERE Id = 1");
  Open("Pumps");
  Rows().selectAll();
  Press(Qt::Key_C, Qt::ControlModifier);
  GoTo(0, 0);
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Label("pending"), "");
  EXPECT_EQ(Rows().model()->rowCount(), 4);
}

TEST_F(cell_filling, a_block_is_pasted_whole_or_not_at_all) {
  Open("Pumps");
  QGuiApplication::clipboard()->setText("one\t1.5\ttext\ntwo\thigh\t\"\"\n");
  GoTo(0, 1);
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Label("pending"), "");
  EXPECT_EQ(Label("notice"),
            "Nothing was pasted. \"high\" is no number; enter digits, with \".\" as the decimal "
            "point.");
  QGuiApplication::clipboard()->setText("one\t1.5\t\"a\nb\"\ntwo\t\t\"\"\n");
  GoTo(2, 1);
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Label("pending"), "2 rows not stored");
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT Name, Flow, Note = 'a' || char(10) || 'b' FROM P..Pumps WHERE Id = 3"),
            "one|1.5|1");
  EXPECT_EQ(Stored("SELECT Name, Flow IS NULL, Note = '' FROM P..Pumps WHERE Id = 4"), "two|1|1");
  QGuiApplication::clipboard()->setText("1\t2\t3\t4\t5");
  GoTo(0, 0);
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_NE(Label("notice").find("more columns than there are"), Text::npos);
}

class filling_without_memory : public TableTimeFixture {};

TEST_F(filling_without_memory, is_told_in_the_dialog) {
  m_editor->Connection(std::make_shared<KeyedConnection>(
      SchemaConnection::Columns{{"Tag", platform::DataType::WChar},
                                {"Timestamp", platform::DataType::DBTimeStamp},
                                {"Value", platform::DataType::Double}},
      "Timestamp"));
  m_editor->TableQuery(m_query);
  Show(*m_editor);
  m_editor->Requery();
  ViewOf(*m_editor)->GoTo(0, 2);
  m_editor->CellQuery();
  auto* dialog = WindowOf(*m_editor)->findChild<CellQueryDialog*>();
  ASSERT_NE(dialog, nullptr);
  dialog->findChild<QPlainTextEdit*>("statement")->setPlainText("SELECT 1");
  m_server.whileRunning = [] { throw std::bad_alloc(); };
  dialog->findChild<QPushButton*>("run")->click();
  EXPECT_EQ(dialog->findChild<QLabel*>("sentence")->text(),
            "There is not enough memory for the rows; show fewer of them or close other programs.");
}

}  // namespace
}  // namespace orvane::controls
