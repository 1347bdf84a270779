// A server that vanishes while its rows are looked at and edited: the rows stay, the strip says
// what happened, and the button beside it goes on.
#include <QToolButton>

#include "tests/controls/pumps_fixture.h"

namespace orvane::controls {
namespace {

using platform::Text;

class lost_server : public PumpsFixture {
 protected:
  /// The catalog's file is gone until it is put back.
  void TakeFile() { std::filesystem::rename(m_server->CatalogFile(), Aside()); }
  void PutFileBack() { std::filesystem::rename(Aside(), m_server->CatalogFile()); }
  std::filesystem::path Aside() const { return m_server->CatalogFile().string() + ".aside"; }
  void FailToRefresh() {
    try {
      m_editor->Requery();
      ADD_FAILURE();
    } catch (const platform::Failure& failed) {
      EXPECT_EQ(failed.Number(), platform::failure::kServerNotFound);
      m_sSentence = failed.Description();
    }
  }
  QToolButton* Offer() { return Window()->findChild<QToolButton*>("offer"); }
  void Reconnect() {
    ASSERT_TRUE(Offer()->isVisibleTo(Window()));
    EXPECT_EQ(Offer()->text(), "Reconnect");
    QTest::mouseClick(Offer(), Qt::LeftButton);
    Settle();
  }

  Text m_sSentence;
};

TEST_F(lost_server, leaves_the_rows_and_the_reason_until_it_is_there_again) {
  Open("Pumps");
  GoTo(2, 1);
  TakeFile();
  FailToRefresh();
  EXPECT_EQ(Rows().Model().Places(), 3);
  EXPECT_EQ(Cell(2, 1), "spare");
  EXPECT_EQ(Rows().currentIndex().row(), 2);
  EXPECT_EQ(Label("notice"), m_sSentence);
  Press(Qt::Key_Up);
  EXPECT_EQ(Label("notice"), m_sSentence) << "it is about all of the rows";
  Reconnect();
  EXPECT_EQ(Rows().Model().Places(), 3);
  EXPECT_EQ(Label("notice"), m_sSentence) << "it is still gone";
  PutFileBack();
  m_server->Run("UPDATE P..Pumps SET Name = 'other' WHERE Id = 3");
  Reconnect();
  EXPECT_EQ(Cell(2, 1), "other");
  EXPECT_EQ(Label("notice"), "");
  EXPECT_FALSE(Offer()->isVisibleTo(Window()));
}

TEST_F(lost_server, is_told_before_the_row_limit) {
  m_query->MaxRows(2);
  Open("Pumps");
  TakeFile();
  FailToRefresh();
  EXPECT_EQ(Label("notice"), m_sSentence + " First 2 rows only: the row limit was reached.");
  PutFileBack();
}

TEST_F(lost_server, leaves_the_edits_which_are_stored_after_reconnecting) {
  Open("Pumps");
  GoTo(0, 1);
  Type("kept");
  Press(Qt::Key_Tab);
  TakeFile();
  FailToRefresh();
  EXPECT_EQ(Cell(0, 1), "kept");
  EXPECT_EQ(Label("pending"), "1 row not stored");
  PutFileBack();
  Reconnect();
  EXPECT_EQ(Cell(0, 1), "kept");
  EXPECT_EQ(Label("pending"), "1 row not stored");
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT Name FROM P..Pumps WHERE Id = 1"), "kept");
  EXPECT_EQ(Label("pending"), "");
}

TEST_F(lost_server, that_is_found_out_by_a_row_keeps_what_was_typed_in_all) {
  Open("Pumps");
  TakeFile();
  GoTo(0, 1);
  Type("one");
  Press(Qt::Key_Return);
  EXPECT_EQ(Mark(0), "!");
  EXPECT_EQ(Cell(0, 1), "one");
  EXPECT_TRUE(Label("notice").find("P.db") != Text::npos) << Label("notice");
  EXPECT_TRUE(Offer()->isVisibleTo(Window()));
  Type("two");
  Press(Qt::Key_Return);
  EXPECT_EQ(Label("pending"), "2 rows not stored");
  PutFileBack();
  Reconnect();
  EXPECT_EQ(Cell(0, 1), "one");
  EXPECT_EQ(Cell(1, 1), "two");
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Label("pending"), "");
  EXPECT_EQ(Stored("SELECT Name FROM P..Pumps ORDER BY Id"), "one\ntwo\nspare");
}

TEST_F(lost_server, before_the_first_row_came_can_be_tried_again) {
  TakeFile();
  EXPECT_THROW(Open("Pumps"), platform::Failure);
  Show();
  auto* again = Window()->findChild<QPushButton*>("emptyButton");
  ASSERT_TRUE(again->isVisibleTo(Window()));
  EXPECT_EQ(again->text(), "&Reconnect");
  QTest::mouseClick(again, Qt::LeftButton);
  EXPECT_TRUE(again->isVisibleTo(Window()));
  PutFileBack();
  QTest::mouseClick(again, Qt::LeftButton);
  EXPECT_EQ(Rows().Model().Places(), 3);
}

TEST_F(lost_server, any_other_failure_leaves_no_rows_that_are_stored) {
  Open("Pumps");
  m_server->Run("DROP TABLE P..Pumps");
  EXPECT_THROW(m_editor->Requery(), platform::Failure);
  EXPECT_EQ(Rows().Model().Places(), 0);
}

}  // namespace
}  // namespace orvane::controls
