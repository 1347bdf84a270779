// Editing a row in its form, by keys; what was stored is read back over another connection.
#include <QTableView>
#include <QToolButton>

#include "tests/controls/pumps_fixture.h"

namespace orvane::controls {
namespace {

using platform::Text;

class form_editing : public PumpsFixture {
 protected:
  void OpenForm(const Text& sTable) {
    Open(sTable);
    QTest::keyClick(&Rows(), Qt::Key_F4);
    Settle();  // it is laid out
    ASSERT_TRUE(Lines().isVisible());
  }
  QTableView& Lines() { return *Window()->findChild<QTableView*>("formLines"); }
  QLineEdit* LineEditor() { return Lines().findChild<QLineEdit*>("cellEditor"); }
  void GoToLine(int nLine) {
    Lines().setFocus();
    Lines().setCurrentIndex(Lines().model()->index(nLine, 1));
  }
  void PressLine(int nKey, Qt::KeyboardModifiers modifiers = {}) {
    QWidget* target = LineEditor();
    if (!target) target = &Lines();
    QTest::keyClick(target, static_cast<Qt::Key>(nKey), modifiers);
    Settle();
  }
  void TypeLine(const QString& sText) {
    for (const QChar c : sText) {
      QWidget* target = LineEditor();
      if (!target) target = &Lines();
      QTest::keyClick(target, c.toLatin1());
    }
  }
  std::string Line(int nLine) {
    return Lines().model()->index(nLine, 1).data().toString().toStdString();
  }
};

TEST_F(form_editing, a_value_that_is_typed_is_stored_when_the_row_is_left) {
  OpenForm("Pumps");
  GoToLine(1);
  TypeLine("renamed");
  ASSERT_NE(LineEditor(), nullptr);
  EXPECT_EQ(Label("pending"), "");
  PressLine(Qt::Key_Return);
  EXPECT_EQ(LineEditor(), nullptr);
  // Enter goes on to the next column.
  EXPECT_EQ(Lines().currentIndex().row(), 2);
  EXPECT_EQ(Line(1), "renamed");
  EXPECT_EQ(Cell(0, 1), "renamed");
  EXPECT_EQ(Label("pending"), "1 row not stored");
  TypeLine("7.5");
  PressLine(Qt::Key_Tab);
  EXPECT_EQ(Lines().currentIndex().row(), 3);
  EXPECT_EQ(Stored("SELECT Name, Flow FROM P..Pumps WHERE Id = 1"), "feed|10.5");
  PressLine(Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(Stored("SELECT Name, Flow FROM P..Pumps WHERE Id = 1"), "renamed|7.5");
  EXPECT_EQ(Line(1), "drain");
}

TEST_F(form_editing, what_is_no_value_stays_in_the_line_with_a_sentence) {
  OpenForm("Pumps");
  GoToLine(2);
  PressLine(Qt::Key_F2);
  ASSERT_NE(LineEditor(), nullptr);
  EXPECT_EQ(LineEditor()->text(), "10.5");
  LineEditor()->selectAll();
  TypeLine("high");
  PressLine(Qt::Key_Return);
  ASSERT_NE(LineEditor(), nullptr);
  const auto* problem = Lines().viewport()->findChild<QLabel*>("cellProblem");
  ASSERT_NE(problem, nullptr);
  EXPECT_EQ(problem->text().toStdString(),
            "\"high\" is no number; enter digits, with \".\" as the decimal point.");
  PressLine(Qt::Key_Escape);
  EXPECT_EQ(LineEditor(), nullptr);
  EXPECT_TRUE(Lines().isVisible());
  EXPECT_EQ(Line(2), "10.5");
}

TEST_F(form_editing, what_is_being_typed_goes_to_its_own_row) {
  OpenForm("Pumps");
  GoToLine(1);
  TypeLine("first");
  auto* next = Window()->findChild<QToolButton*>("formNext");
  QTest::mouseClick(next, Qt::LeftButton);
  Settle();
  EXPECT_EQ(Stored("SELECT Name FROM P..Pumps ORDER BY Id"), "first\ndrain\nspare");
  TypeLine("second");
  // As the snap-in runs the query again.
  m_editor->Requery();
  EXPECT_EQ(Cell(1, 1), "second");
  EXPECT_EQ(Label("pending"), "1 row not stored");
  m_editor.reset();
  EXPECT_NE(m_unsent->Find({"localhost", "P", "Pumps"}), nullptr);
}

TEST_F(form_editing, null_undo_and_storing_have_their_usual_keys) {
  OpenForm("Pumps");
  GoToLine(3);
  PressLine(Qt::Key_0, Qt::ControlModifier);
  EXPECT_EQ(Line(3), "NULL");
  PressLine(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Line(3), "old");
  PressLine(Qt::Key_Y, Qt::ControlModifier);
  EXPECT_EQ(Line(3), "NULL");
  PressLine(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT Note IS NULL FROM P..Pumps WHERE Id = 1"), "1");
  EXPECT_EQ(Label("pending"), "");
}

TEST_F(form_editing, a_row_is_added_in_the_form) {
  OpenForm("Pumps");
  GoTo(3, 1);
  GoToLine(1);
  TypeLine("fourth");
  PressLine(Qt::Key_Return);
  EXPECT_EQ(Rows().model()->rowCount(), 5);
  PressLine(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT Name FROM P..Pumps WHERE Id > 3"), "fourth");
}

TEST_F(form_editing, of_two_hundred_columns_the_one_that_is_found_is_edited) {
  Text sColumns = "Id INTEGER PRIMARY KEY";
  for (int n = 0; n < 200; ++n) sColumns += ", C" + std::to_string(n) + " TEXT";
  m_server->Run("CREATE TABLE P..Wide (" + sColumns + ")");
  m_server->Run("INSERT INTO P..Wide (Id, C137) VALUES (1, 'before')");
  OpenForm("Wide");
  EXPECT_EQ(Lines().model()->rowCount(), 201);
  auto* filter = Window()->findChild<QLineEdit*>("formFilter");
  filter->setFocus();
  QTest::keyClicks(filter, "c137");
  ASSERT_EQ(Lines().model()->rowCount(), 1);
  QTest::keyClick(filter, Qt::Key_Return);
  GoToLine(0);
  TypeLine("after");
  PressLine(Qt::Key_Return);
  PressLine(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT C137, C136 IS NULL, C138 IS NULL FROM P..Wide"), "after|1|1");
}

TEST_F(form_editing, looking_into_lines_changes_and_sends_nothing) {
  OpenForm("Pumps");
  const Text sBefore = Pumps();
  for (int nLine = 0; nLine < 4; ++nLine) {
    GoToLine(nLine);
    PressLine(Qt::Key_F2);
    ASSERT_NE(LineEditor(), nullptr);
    PressLine(Qt::Key_Return);
  }
  EXPECT_EQ(Label("pending"), "");
  PressLine(Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(Pumps(), sBefore);
}

TEST_F(form_editing, rows_that_can_only_be_looked_at_are_not_edited) {
  m_server->Run("CREATE VIEW P..Seen AS SELECT Id, Name FROM P..Pumps");
  OpenForm("Seen");
  GoToLine(1);
  TypeLine("x");
  EXPECT_EQ(LineEditor(), nullptr);
  PressLine(Qt::Key_Return);
  EXPECT_EQ(LineEditor(), nullptr);
  EXPECT_EQ(Rows().currentIndex().column(), 1);
}

}  // namespace
}  // namespace orvane::controls
