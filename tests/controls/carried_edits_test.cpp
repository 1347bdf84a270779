#include "controls/editing/carried_edits.h"

#include <QRadioButton>

#include "controls/editing/conflict_dialog.h"
#include "controls/editing/pending_review.h"
#include "tests/controls/pumps_fixture.h"

namespace orvane::controls {
namespace {

using platform::Text;

/// What is known of rows that are not stored: a sentence, a conflict, steps to undo.
class known_of_rows : public PumpsFixture {
 protected:
  void Disconnect() {
    m_editor->AttachRecordset({}, 0);
    m_cn->Close();
    m_editor.reset();
    Open("Pumps");
  }
  std::string Tip(int nRow) {
    return Rows().model()->headerData(nRow, Qt::Vertical, Qt::ToolTipRole).toString().toStdString();
  }
};

TEST_F(known_of_rows, the_server_s_sentence_survives_a_refresh_and_a_disconnection) {
  Open("Pumps");
  GoTo(0, 1);
  Press(Qt::Key_0, Qt::ControlModifier);
  Press(Qt::Key_Down);
  const std::string sSentence = Tip(0);
  ASSERT_NE(sSentence, "");
  m_editor->Requery();
  EXPECT_EQ(Tip(0), sSentence);
  Disconnect();
  EXPECT_EQ(Tip(0), sSentence);
  m_query->FilterCondition("Id > 1");
  m_editor->Requery();
  EXPECT_TRUE(Tip(2).starts_with(sSentence)) << Tip(2);
  EXPECT_NE(Tip(2).find("not fetched again"), Text::npos);
  const std::string sBoth = Tip(2);
  m_editor->Requery();
  EXPECT_EQ(Tip(2), sBoth) << "said once";
  m_query->FilterCondition("");
  m_editor->Requery();
  EXPECT_EQ(Tip(0), sSentence) << "it was fetched again";
}

TEST_F(known_of_rows, a_conflict_survives_a_refresh_and_a_disconnection_and_is_settled_then) {
  Open("Pumps");
  m_server->Run("UPDATE P..Pumps SET Flow = 77 WHERE Id = 1");
  GoTo(0, 2);
  Type("5");
  Press(Qt::Key_Return);
  ASSERT_NE(Window()->findChild<ConflictDialog*>(), nullptr);
  Window()->findChild<ConflictDialog*>()->reject();
  Settle();
  m_server->Run("UPDATE P..Pumps SET Flow = 78 WHERE Id = 1");
  m_editor->Requery();
  EXPECT_EQ(Mark(0), "!");
  Disconnect();
  EXPECT_EQ(Mark(0), "!");
  EXPECT_EQ(Cell(0, 2), "5");
  QTest::mouseClick(Window()->findChild<QPushButton*>("pending"), Qt::LeftButton);
  auto* settle = Window()->findChild<PendingReview*>()->findChild<QPushButton*>("settleRow");
  ASSERT_TRUE(settle->isEnabled());
  settle->click();
  auto* dialog = Window()->findChild<ConflictDialog*>();
  ASSERT_NE(dialog, nullptr);
  for (auto* choice : dialog->findChildren<QRadioButton*>()) {
    if (choice->accessibleName() == "Flow, theirs") {
      EXPECT_NE(choice->text().indexOf("78"), -1) << "theirs is what was fetched last";
    }
    if (choice->accessibleName() == "Flow, mine") choice->click();
  }
  dialog->findChild<QPushButton*>("settle")->click();
  Settle();
  EXPECT_EQ(Stored("SELECT Flow FROM P..Pumps WHERE Id = 1"), "5");
}

TEST_F(known_of_rows, a_conflict_that_is_over_is_told_no_more) {
  Open("Pumps");
  m_server->Run("UPDATE P..Pumps SET Flow = 77 WHERE Id = 1");
  GoTo(0, 2);
  Type("5");
  Press(Qt::Key_Return);
  Window()->findChild<ConflictDialog*>()->reject();
  Settle();
  m_server->Run("UPDATE P..Pumps SET Flow = 10.5 WHERE Id = 1");
  m_editor->Requery();
  EXPECT_EQ(Mark(0), "\u2022");
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT Flow FROM P..Pumps WHERE Id = 1"), "5");
}

TEST_F(known_of_rows, steps_are_undone_after_a_refresh_and_a_disconnection) {
  Open("Pumps");
  GoTo(1, 1);
  Type("one");
  Press(Qt::Key_Tab);
  Type("7");
  Press(Qt::Key_Tab);
  m_server->Run("INSERT INTO P..Pumps VALUES (0, 'first', 1, 'one')");
  m_editor->Requery();
  EXPECT_EQ(Cell(2, 2), "7");
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Cell(2, 2), "3.25");
  EXPECT_EQ(Cell(2, 1), "one");
  Press(Qt::Key_Y, Qt::ControlModifier);
  EXPECT_EQ(Cell(2, 2), "7");
  Disconnect();
  Press(Qt::Key_Z, Qt::ControlModifier);
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Cell(2, 1), "drain");
  EXPECT_EQ(Cell(2, 2), "3.25");
  EXPECT_EQ(Label("pending"), "");
}

TEST_F(known_of_rows, a_row_taken_away_comes_back_by_undoing_after_a_refresh) {
  Open("Pumps");
  GoTo(3, 1);
  Type("new");
  Press(Qt::Key_Tab);
  Press(Qt::Key_Escape);
  EXPECT_EQ(Label("pending"), "");
  GoTo(0, 1);
  Type("kept");
  Press(Qt::Key_Tab);
  m_editor->Requery();
  EXPECT_EQ(Rows().Model().Places(), 3);
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Cell(0, 1), "feed");
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Cell(3, 1), "new");
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT count(*) FROM P..Pumps WHERE Name = 'new'"), "1");
}

}  // namespace
}  // namespace orvane::controls
