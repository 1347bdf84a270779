// Rows that were edited and are not stored: hidden, fetched anew, refused, settled and given up.
#include <QRadioButton>
#include <QTreeWidget>

#include "controls/editing/conflict_dialog.h"
#include "controls/editing/pending_review.h"
#include "tests/controls/failure_of.h"
#include "tests/controls/pumps_fixture.h"

namespace orvane::controls {
namespace {

using platform::Long;
using platform::RecordsetPtr;
using platform::Text;

class unsent_rows : public PumpsFixture {};

TEST_F(unsent_rows, pending_rows_survive_that_the_view_is_hidden) {
  Open("Pumps");
  GoTo(0, 1);
  Type("kept");
  Press(Qt::Key_Tab);
  Long lUpdatability = 0;
  const RecordsetPtr rs = m_editor->DetachRecordset(lUpdatability);
  m_editor->AttachRecordset({}, 0);
  EXPECT_EQ(Label("pending"), "");
  m_editor = std::make_unique<controls::TableEditor>(Services());
  m_editor->Connection(m_cn);
  m_editor->TableQuery(m_query);
  m_editor->AttachRecordset(rs, lUpdatability);
  Show();
  EXPECT_EQ(Cell(0, 1), "kept");
  EXPECT_EQ(Label("pending"), "1 row not stored");
  EXPECT_TRUE(m_editor->DeleteAllowed());
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT Name FROM P..Pumps WHERE Id = 1"), "kept");
}

TEST_F(unsent_rows, a_refresh_carries_what_is_not_stored_to_the_new_rows) {
  Open("Pumps");
  GoTo(3, 1);
  Type("new");
  Press(Qt::Key_Tab);
  GoTo(1, 2);
  // Left without being sent: typed into while nothing lets the event loop run.
  m_editor->Requery();
  EXPECT_EQ(Label("pending"), "1 row not stored");
  GoTo(1, 2);
  Type("4.5");
  m_server->Run("INSERT INTO P..Pumps VALUES (0, 'first', 1, 'one')");
  m_editor->Requery();
  EXPECT_EQ(Label("pending"), "2 rows not stored");
  EXPECT_EQ(Cell(2, 1), "drain");
  EXPECT_EQ(Cell(2, 2), "4.5");
  EXPECT_EQ(Mark(2), "\u2022");
  EXPECT_EQ(Cell(4, 1), "new");
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT Flow FROM P..Pumps WHERE Id = 2"), "4.5");
  EXPECT_EQ(Stored("SELECT Id FROM P..Pumps WHERE Name = 'new'"), "4");
}

TEST_F(unsent_rows, a_row_that_is_not_fetched_again_is_kept_and_told) {
  Open("Pumps");
  GoTo(0, 1);
  Type("kept");
  Press(Qt::Key_Tab);
  m_query->FilterCondition("Id > 1");
  m_editor->Requery();
  EXPECT_EQ(Cell(0, 1), "drain");
  EXPECT_EQ(Cell(2, 0), "1");
  EXPECT_EQ(Cell(2, 1), "kept");
  EXPECT_EQ(Mark(2), "!");
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT Name FROM P..Pumps WHERE Id = 1"), "kept");
}

TEST_F(unsent_rows, what_others_changed_before_a_refresh_is_not_overwritten_after_it) {
  Open("Pumps");
  GoTo(0, 2);
  Type("5");
  Press(Qt::Key_Tab);
  m_server->Run("UPDATE P..Pumps SET Flow = 77 WHERE Id = 1");
  m_editor->Requery();
  EXPECT_EQ(Cell(0, 2), "5");
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT Flow FROM P..Pumps WHERE Id = 1"), "77");
  EXPECT_EQ(Mark(0), "!");
}

TEST_F(unsent_rows, rows_that_are_not_stored_stay_when_others_cannot_be_fetched) {
  Open("Pumps");
  GoTo(0, 1);
  Type("kept");
  m_query->FilterCondition("Nonsense = 1");
  EXPECT_THROW(m_editor->Requery(), platform::Failure);
  EXPECT_EQ(Cell(0, 1), "kept");
  EXPECT_EQ(Label("pending"), "1 row not stored");
  EXPECT_NE(Label("notice"), "");
  m_query->FilterCondition("");
  m_query->Columns().Add("Id");
  EXPECT_THROW(m_editor->Requery(), platform::Failure);
  EXPECT_EQ(Cell(0, 1), "kept");
}

class ToldRows final : public platform::UnsentRows {
 public:
  void Tell(const platform::RowsPlace& table, platform::RowIndex rows) override {
    told = table.sTable + " " + std::to_string(rows);
    place = table;
  }
  Long Round(const platform::RowsPlace&) const override { return lRound; }
  platform::Boolean MayLose(const platform::RowsPlace&) override { return true; }
  void Lose(const platform::RowsPlace&) override { ++lRound; }
  Text told;
  platform::RowsPlace place;
  Long lRound = 0;
};

TEST_F(unsent_rows, what_is_not_stored_comes_back_after_a_disconnection) {
  const auto host = std::make_shared<ToldRows>();
  m_unsent->Host(host);
  Open("Pumps");
  GoTo(0, 1);
  Type("kept");
  Press(Qt::Key_Tab);
  EXPECT_EQ(host->told, "Pumps 1");
  // As the snap-in disconnects the server of the table that is shown.
  m_editor->AttachRecordset({}, 0);
  EXPECT_EQ(host->told, "Pumps 1");
  m_cn->Close();
  m_editor.reset();
  Open("Pumps");
  EXPECT_EQ(Cell(0, 1), "kept");
  EXPECT_EQ(Label("pending"), "1 row not stored");
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT Name FROM P..Pumps WHERE Id = 1"), "kept");
  EXPECT_EQ(host->told, "Pumps 0");
}

TEST_F(unsent_rows, what_is_not_stored_outlives_a_query_that_does_not_show_it) {
  const auto host = std::make_shared<ToldRows>();
  m_unsent->Host(host);
  Open("Pumps");
  GoTo(0, 1);
  Type("kept");
  Press(Qt::Key_Tab);
  m_editor->AttachRecordset({}, 0);
  m_query->Columns().Add("Id");
  EXPECT_THROW(m_editor->Requery(), platform::Failure);
  EXPECT_EQ(host->told, "Pumps 1");
  m_editor.reset();
  EXPECT_EQ(host->told, "Pumps 1");
  m_query->Columns().Clear();
  Open("Pumps");
  EXPECT_EQ(Cell(0, 1), "kept");
}

TEST_F(unsent_rows, why_what_is_not_stored_has_no_place_is_told) {
  const Text sNumbers =
      "These rows can only be looked at: times are shown as numbers, which are not exact; switch "
      "off \"Time as Double\" in the server's extended options.";
  Open("Pumps");
  GoTo(0, 1);
  Type("kept");
  Press(Qt::Key_Tab);
  m_editor->Connection(m_server->Connect("Time as Double = True"));
  EXPECT_EQ(SentenceOf([&] { m_editor->Requery(); }),
            "The rows stay as they are: some are not stored, and cannot be laid over those that "
            "would be shown; store or discard them first. " +
                sNumbers);
  EXPECT_EQ(Cell(0, 1), "kept");
  m_editor->AttachRecordset({}, 0);
  EXPECT_EQ(SentenceOf([&] { m_editor->Requery(); }),
            "Rows of this table were edited and are not stored, and cannot be laid over those that "
            "would be shown; disconnecting its server discards them. " +
                sNumbers);
  m_editor.reset();
  Open("Pumps");
  EXPECT_EQ(Cell(0, 1), "kept");
}

TEST_F(unsent_rows, what_was_given_up_does_not_come_back) {
  const auto host = std::make_shared<ToldRows>();
  m_unsent->Host(host);
  Open("Pumps");
  GoTo(0, 1);
  Type("kept");
  m_editor.reset();
  EXPECT_EQ(host->told, "Pumps 1");
  ++host->lRound;
  Open("Pumps");
  EXPECT_EQ(Cell(0, 1), "feed");
}

TEST_F(unsent_rows, what_was_given_up_while_hidden_lies_over_no_row) {
  const auto host = std::make_shared<ToldRows>();
  m_unsent->Host(host);
  Open("Pumps");
  GoTo(0, 1);
  Type("kept");
  Press(Qt::Key_Tab);
  Long lUpdatability = 0;
  const auto rs = m_editor->DetachRecordset(lUpdatability);
  m_editor->AttachRecordset({}, 0);
  host->Lose({});
  m_editor->AttachRecordset(rs, lUpdatability);
  EXPECT_EQ(Cell(0, 1), "feed");
  EXPECT_EQ(Label("pending"), "");
  EXPECT_EQ(host->told, "Pumps 0");
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Cell(0, 1), "feed");
}

TEST_F(unsent_rows, what_is_being_typed_is_told_of_before_it_is_a_value) {
  const auto host = std::make_shared<ToldRows>();
  m_unsent->Host(host);
  Open("Pumps");
  GoTo(0, 1);
  Press(Qt::Key_F2);
  EXPECT_EQ(host->told, "Pumps 0") << "looking is not typing";
  Type("x");
  EXPECT_EQ(host->told, "Pumps 1");
  EXPECT_EQ(host->place, (platform::RowsPlace{"localhost", "P", "Pumps"}));
  Press(Qt::Key_Escape);
  EXPECT_EQ(host->told, "Pumps 0");
  Type("y");
  Press(Qt::Key_Tab);
  EXPECT_EQ(host->told, "Pumps 1");
  Type("7");
  EXPECT_EQ(host->told, "Pumps 1") << "another cell of the same row";
}

TEST_F(unsent_rows, a_conflict_is_settled_value_by_value) {
  Open("Pumps");
  m_server->Run("UPDATE P..Pumps SET Flow = 77, Note = 'theirs' WHERE Id = 1");
  GoTo(0, 1);
  Type("mine");
  Press(Qt::Key_Tab);
  Type("5");
  Press(Qt::Key_Return);
  auto* dialog = Window()->findChild<ConflictDialog*>();
  ASSERT_NE(dialog, nullptr);
  auto* store = dialog->findChild<QPushButton*>("settle");
  ASSERT_NE(store, nullptr);
  // Both have changed the flow: that is to be chosen.
  EXPECT_FALSE(store->isEnabled());
  for (auto* choice : dialog->findChildren<QRadioButton*>()) {
    if (choice->accessibleName() == "Flow, theirs") choice->click();
  }
  EXPECT_TRUE(store->isEnabled());
  store->click();
  Settle();
  EXPECT_EQ(Pumps().substr(0, Pumps().find('\n')), "1|mine|77|theirs");
  EXPECT_EQ(Label("pending"), "");
  EXPECT_EQ(Cell(0, 3), "theirs");
}

TEST_F(unsent_rows, a_row_that_is_gone_can_be_added_anew) {
  Open("Pumps");
  m_server->Run("DELETE FROM P..Pumps WHERE Id = 1");
  GoTo(0, 1);
  Type("mine");
  Press(Qt::Key_Return);
  auto* dialog = Window()->findChild<ConflictDialog*>();
  ASSERT_NE(dialog, nullptr);
  for (auto* button : dialog->findChildren<QPushButton*>()) {
    if (button->text() == "Add as &New Row") button->click();
  }
  Settle();
  EXPECT_EQ(Stored("SELECT Name, Note FROM P..Pumps WHERE Id = 1"), "mine|old");
}

TEST_F(unsent_rows, rows_that_are_not_stored_are_listed_and_discarded) {
  Open("Pumps");
  GoTo(0, 2);
  Type("99");
  Press(Qt::Key_Tab);
  auto* pending = Window()->findChild<QPushButton*>("pending");
  QTest::mouseClick(pending, Qt::LeftButton);
  auto* review = Window()->findChild<PendingReview*>();
  ASSERT_NE(review, nullptr);
  const auto* list = review->findChild<QTreeWidget*>("pendingRows");
  ASSERT_EQ(list->topLevelItemCount(), 1);
  EXPECT_EQ(list->topLevelItem(0)->text(1).toStdString(), "1, Flow: 10.5 \u2192 99");
  review->findChild<QPushButton*>("discardRows")->click();
  Settle();
  EXPECT_EQ(Cell(0, 2), "10.5");
  EXPECT_EQ(Label("pending"), "");
  EXPECT_EQ(Window()->findChild<PendingReview*>(), nullptr);
}

TEST_F(unsent_rows, all_of_them_are_discarded_whatever_is_marked_in_the_list) {
  Open("Pumps");
  GoTo(0, 1);
  Press(Qt::Key_Down, Qt::ShiftModifier);
  Press(Qt::Key_0, Qt::ControlModifier);
  ASSERT_EQ(Label("pending"), "2 rows not stored");
  QTest::mouseClick(Window()->findChild<QPushButton*>("pending"), Qt::LeftButton);
  auto* review = Window()->findChild<PendingReview*>();
  ASSERT_NE(review, nullptr);
  EXPECT_EQ(review->findChild<QTreeWidget*>("pendingRows")->selectedItems().size(), 1);
  QTest::mouseClick(review->findChild<QPushButton*>("discardAll"), Qt::LeftButton);
  Settle();
  EXPECT_EQ(Label("pending"), "");
  EXPECT_EQ(Window()->findChild<PendingReview*>(), nullptr);
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Label("pending"), "2 rows not stored") << "as one step";
}

TEST_F(unsent_rows, enter_presses_the_button_of_the_list_that_has_the_focus) {
  Open("Pumps");
  GoTo(0, 2);
  Type("99");
  Press(Qt::Key_Tab);
  QTest::mouseClick(Window()->findChild<QPushButton*>("pending"), Qt::LeftButton);
  auto* review = Window()->findChild<PendingReview*>();
  ASSERT_NE(review, nullptr);
  QTest::keyClick(review->findChild<QPushButton*>("discardRows"), Qt::Key_Return);
  Settle();
  EXPECT_EQ(Cell(0, 2), "10.5");
  EXPECT_EQ(Label("pending"), "");
}

TEST_F(unsent_rows, enter_in_the_list_of_them_closes_it) {
  Open("Pumps");
  GoTo(0, 2);
  Type("99");
  Press(Qt::Key_Tab);
  QTest::mouseClick(Window()->findChild<QPushButton*>("pending"), Qt::LeftButton);
  auto* list = Window()->findChild<QTreeWidget*>("pendingRows");
  ASSERT_NE(list, nullptr);
  QTest::keyClick(list, Qt::Key_Return);
  Settle();
  EXPECT_EQ(Window()->findChild<PendingReview*>(), nullptr);
  EXPECT_EQ(Cell(0, 2), "99");
  EXPECT_EQ(Label("pending"), "1 row not stored");
}

TEST_F(unsent_rows, an_edit_stays_where_nothing_can_be_asked) {
  Open("Pumps");
  GoTo(0, 2);
  Type("77");
  m_editor->TableQuery(nullptr);
  EXPECT_THROW(m_editor->Requery(), platform::Failure);
  EXPECT_EQ(Cell(0, 2), "77");
  EXPECT_EQ(Label("pending"), "1 row not stored");
}

/// Tells when a command is made.
class WatchedObjects : public platform::ObjectFactory {
 public:
  WatchedObjects(platform::ObjectFactoryPtr objects, std::function<void()> made)
      : m_objects(std::move(objects)), m_made(std::move(made)) {}
  platform::ConnectionPtr CreateConnection() override { return m_objects->CreateConnection(); }
  platform::CommandPtr CreateCommand() override {
    m_made();
    return m_objects->CreateCommand();
  }
  platform::TableQueryPtr CreateTableQuery() override { return m_objects->CreateTableQuery(); }

 private:
  platform::ObjectFactoryPtr m_objects;
  std::function<void()> m_made;
};

TEST_F(unsent_rows, an_edit_survives_a_grid_that_goes_while_it_fetches) {
  Open("Pumps");
  UnsentStash during;
  GridServices services = Services();
  services.objects = std::make_shared<WatchedObjects>(m_server, [&] { during = *m_unsent; });
  m_editor = std::make_unique<controls::TableEditor>(std::move(services));
  m_editor->Connection(m_cn);
  m_editor->TableQuery(m_query);
  m_editor->Requery();
  Show();
  GoTo(0, 2);
  Type("77");
  m_editor->Requery();
  EXPECT_EQ(Cell(0, 2), "77");
  EXPECT_EQ(Label("pending"), "1 row not stored");
  Press(Qt::Key_Escape);
  EXPECT_EQ(Label("pending"), "");
  m_editor->Requery();
  EXPECT_EQ(Label("pending"), "") << "what came into the grid is kept no more";
  GoTo(0, 2);
  Type("78");
  m_editor->Requery();
  // The grid is gone in the middle: all there is now is what was kept then.
  const UnsentStash kept = during;
  Press(Qt::Key_Escape);
  m_editor.reset();
  *m_unsent = kept;
  Open("Pumps");
  EXPECT_EQ(Cell(0, 2), "78");
  EXPECT_EQ(Label("pending"), "1 row not stored");
}

}  // namespace
}  // namespace orvane::controls
