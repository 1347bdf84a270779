// Many rows edited, stored and deleted at once: the window goes on, it can be ended, and what is
// too much is said.
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QTreeWidget>
#include <thread>

#include "controls/editing/conflict_dialog.h"
#include "controls/editing/pending_review.h"
#include "controls/order/row_filter.h"
#include "platform/long_operation.h"
#include "tests/controls/pumps_fixture.h"
#include "tests/fakes/until.h"

namespace orvane::controls {
namespace {

using platform::RowIndex;
using platform::Text;

class many_rows : public EditingFixture {
 protected:
  void OpenMany(int nRows) {
    m_server->Run("CREATE TABLE P..Many (Id INTEGER PRIMARY KEY, Name TEXT, Level REAL)");
    m_server->Run(
        "INSERT INTO P..Many WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n "
        "LIMIT " +
        std::to_string(nRows) + ") SELECT i, 'name ' || i, i FROM n");
    m_query->MaxRows(0);
    Open("Many");
  }
  Text CountNull() { return Stored("SELECT count(*) FROM P..Many WHERE Level IS NULL"); }
  void SetLevelsToNull() {
    Rows().SelectColumn(2);
    Press(Qt::Key_0, Qt::ControlModifier);
  }
};

TEST_F(many_rows, are_stored_in_slices_with_their_progress_and_stopped_as_a_whole) {
  OpenMany(100);
  SetLevelsToNull();
  EXPECT_EQ(Label("pending"), "100 rows not stored");
  QTest::keyClick(&Rows(), Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Label("arrangement"), "Storing rows: 16 of 100\u2026");
  auto* stop = Window()->findChild<QPushButton*>("stopFetch");
  ASSERT_TRUE(stop->isVisible());
  QTest::mouseClick(stop, Qt::LeftButton);
  Settle();
  EXPECT_EQ(Label("arrangement"), "");
  EXPECT_EQ(Label("notice"), "84 rows are not stored.");
  EXPECT_EQ(CountNull(), "16") << "what was stored stays stored";
  EXPECT_EQ(Label("pending"), "84 rows not stored");
  EXPECT_EQ(Cell(50, 2), "NULL");
  QTest::keyClick(&Rows(), Qt::Key_Return, Qt::ControlModifier);
  ASSERT_TRUE(tests::Until([&] { return Label("pending").empty(); }));
  EXPECT_EQ(CountNull(), "100");
  EXPECT_EQ(Label("arrangement"), "");
}

/// Work that the user cancels.
class Cancelling final : public platform::LongOperation {
 public:
  void Run(const Text& /*sWhat*/, const std::function<void(std::stop_token)>& work) override {
    std::stop_source stop;
    if (nUntil > 0 && --nUntil == 0) stop.request_stop();
    work(stop.get_token());
  }
  int nUntil = 0;
};

TEST_F(many_rows, one_that_is_cancelled_while_it_is_sent_ends_all) {
  const auto operation = std::make_shared<Cancelling>();
  m_server->longOperation = operation;
  OpenMany(10);
  SetLevelsToNull();
  operation->nUntil = 1;
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Label("pending"), "10 rows not stored");
  EXPECT_EQ(CountNull(), "0");
  EXPECT_EQ(Mark(0), "!");
  EXPECT_EQ(Mark(1), "\u2022") << "the others were not tried";
}

TEST_F(many_rows, thousands_are_changed_undone_and_deleted_without_a_look_at_each_for_each) {
  constexpr int kRows = 30'000;
  OpenMany(kRows);
  Rows().SortBy(2, false);
  ASSERT_TRUE(tests::Until([&] { return !Rows().Arranging(); }));
  int nTold = 0;
  QObject::connect(Rows().model(), &QAbstractItemModel::dataChanged, &Rows(), [&] { ++nTold; });
  SetLevelsToNull();
  EXPECT_EQ(Label("pending"), "30,000 rows not stored");
  EXPECT_EQ(nTold, 1) << "those who look are told once";
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Label("pending"), "");
  EXPECT_EQ(nTold, 2);
  Press(Qt::Key_Y, Qt::ControlModifier);
  QTest::mouseClick(Window()->findChild<QPushButton*>("pending"), Qt::LeftButton);
  auto* review = Window()->findChild<PendingReview*>();
  ASSERT_NE(review, nullptr);
  EXPECT_EQ(review->findChild<QTreeWidget*>("pendingRows")->topLevelItemCount(), 1'000);
  EXPECT_EQ(review->findChild<QLabel*>("moreRows")->text(),
            "The first 1,000 of 30,000 rows are listed.");
  review->reject();
  int nRemoved = 0;
  QObject::connect(Rows().model(), &QAbstractItemModel::rowsRemoved, &Rows(), [&] { ++nRemoved; });
  Rows().selectAll();
  Press(Qt::Key_Delete);
  Answer("Delete");
  EXPECT_EQ(Stored("SELECT count(*) FROM P..Many"), "0");
  EXPECT_EQ(Rows().Model().Places(), 0);
  EXPECT_EQ(nRemoved, 1) << "rows that stand together go together";
}

TEST_F(many_rows, as_many_as_can_be_changed_at_once_are_changed_whatever_the_empty_row) {
  OpenMany(100'000);
  ASSERT_EQ(Rows().model()->rowCount(), 100'001);
  SetLevelsToNull();
  EXPECT_EQ(Label("pending"), "100,000 rows not stored");
}

TEST_F(many_rows, more_than_can_be_changed_at_once_is_said) {
  OpenMany(100'001);
  SetLevelsToNull();
  EXPECT_EQ(Label("pending"), "");
  EXPECT_EQ(Label("notice"),
            "Nothing was changed: more than 100,000 cells are selected; select fewer.");
  Rows().selectAll();
  Press(Qt::Key_Delete);
  EXPECT_EQ(Window()->findChild<QMessageBox*>(), nullptr);
  EXPECT_EQ(Label("notice"),
            "Nothing was deleted: more than 100,000 rows are selected; select fewer, or delete "
            "them by a query.");
  QGuiApplication::clipboard()->setText(QString("a\n").repeated(100'001));
  GoTo(0, 1);
  Press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Label("notice"),
            "Nothing was pasted. The block has more than 100,000 cells; copy fewer, or import them "
            "from a file.");
}

/// A host that has work done on a thread of its own, cancelled or not.
class OnAnotherThread final : public platform::LongOperation {
 public:
  void Run(const Text& sWhat, const std::function<void(std::stop_token)>& work) override {
    told.push_back(sWhat);
    if (meanwhile) meanwhile();
    std::stop_source stop;
    if (bCancel) stop.request_stop();
    std::exception_ptr failed;
    std::thread([&] {
      try {
        work(stop.get_token());
      } catch (...) {
        failed = std::current_exception();
      }
    }).join();
    if (failed) std::rethrow_exception(failed);
  }
  std::vector<Text> told;
  std::function<void()> meanwhile;
  bool bCancel = false;
};

class searched_rows : public many_rows {
 protected:
  searched_rows() { m_longOperation = m_beside; }
  void TypeIntoLast() {
    GoTo(29'999, 1);
    Type("kept");
    Press(Qt::Key_Tab);
  }
  std::shared_ptr<OnAnotherThread> m_beside = std::make_shared<OnAnotherThread>();
};

TEST_F(searched_rows, for_one_that_is_not_stored_are_looked_through_beside_the_window) {
  OpenMany(30'000);
  m_editor->Requery();
  EXPECT_TRUE(m_beside->told.empty()) << "nothing is looked for";
  TypeIntoLast();
  m_editor->Requery();
  EXPECT_EQ(m_beside->told, std::vector<Text>{"Looking for the rows that are not stored"});
  EXPECT_EQ(Cell(29'999, 1), "kept");
  EXPECT_EQ(Label("pending"), "1 row not stored");
}

TEST_F(searched_rows, stay_with_what_was_typed_when_that_is_cancelled) {
  OpenMany(30'000);
  TypeIntoLast();
  m_beside->bCancel = true;
  try {
    m_editor->Requery();
    FAIL() << "it was not cancelled";
  } catch (const platform::Failure& failure) {
    EXPECT_EQ(failure.Number(), platform::failure::kCancelled);
    EXPECT_EQ(Label("notice"), failure.Description());
  }
  EXPECT_EQ(Cell(29'999, 1), "kept");
  EXPECT_EQ(Label("pending"), "1 row not stored");
  m_editor->AttachRecordset({}, 0);
  EXPECT_THROW(m_editor->Requery(), platform::Failure);
  EXPECT_EQ(Rows().Model().Recordset(), nullptr);
  m_beside->bCancel = false;
  m_editor->Requery();
  EXPECT_EQ(Cell(29'999, 1), "kept") << "also what was kept while its rows were not shown";
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT Name FROM P..Many WHERE Id = 30000"), "kept");
}

TEST_F(searched_rows, are_kept_when_the_grid_goes_meanwhile) {
  OpenMany(30'000);
  TypeIntoLast();
  m_beside->meanwhile = [&] { m_editor.reset(); };
  m_editor->Requery();
  ASSERT_EQ(m_editor, nullptr);
  Settle();
  m_beside->meanwhile = nullptr;
  Open("Many");
  EXPECT_EQ(Cell(29'999, 1), "kept");
  EXPECT_EQ(Label("pending"), "1 row not stored");
}

class left_rows : public PumpsFixture {};

TEST_F(left_rows, a_row_that_a_filter_takes_away_is_left_and_stored) {
  Open("Pumps");
  GoTo(0, 1);
  Type("typed");
  Press(Qt::Key_Tab);
  EXPECT_EQ(Label("pending"), "1 row not stored");
  Rows().Filter({ColumnFilter::Equal(1, platform::Value("drain"))});
  Settle();
  EXPECT_EQ(Rows().Model().Places(), 1);
  EXPECT_EQ(Stored("SELECT Name FROM P..Pumps WHERE Id = 1"), "typed");
  EXPECT_EQ(Label("pending"), "");
}

TEST_F(left_rows, the_empty_row_alone_is_no_selected_row) {
  Open("Pumps");
  PressRowNumber(3);
  EXPECT_FALSE(m_editor->RowsSelected());
  Press(Qt::Key_Delete);
  EXPECT_EQ(Window()->findChild<QMessageBox*>(), nullptr);
  PressRowNumber(2);
  EXPECT_TRUE(m_editor->RowsSelected());
}

TEST_F(left_rows, the_delete_key_says_why_nothing_is_deleted) {
  Open("Pumps");
  GoTo(0, 1);
  Press(Qt::Key_Delete);
  EXPECT_EQ(Label("notice"),
            "No row is selected to be deleted; click its number, or press Shift+Space, first.");
  m_server->Run("CREATE VIEW P..Fast AS SELECT * FROM P..Pumps");
  m_query->Table("Fast");
  m_editor->Requery();
  const std::string sWhy = Label("readOnly");
  Press(Qt::Key_Delete);
  EXPECT_EQ(Label("notice"), sWhy);
}

TEST_F(left_rows, a_row_that_is_gone_at_the_server_is_told_of_when_it_is_settled) {
  Open("Pumps");
  int nDeleted = 0;
  const auto deleted = m_editor->OnDelete([&] { ++nDeleted; });
  m_server->Run("DELETE FROM P..Pumps WHERE Id = 1");
  GoTo(0, 1);
  Type("mine");
  Press(Qt::Key_Return);
  auto* dialog = Window()->findChild<ConflictDialog*>();
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(nDeleted, 0);
  dialog->findChild<QPushButton*>("settle")->click();
  Settle();
  EXPECT_EQ(nDeleted, 1);
  EXPECT_EQ(Rows().Model().Places(), 2);
}

TEST_F(left_rows, a_grid_may_go_while_all_is_stored_from_the_list) {
  class Watched final : public platform::LongOperation {
   public:
    void Run(const Text& /*sWhat*/, const std::function<void(std::stop_token)>& work) override {
      work({});
      if (const auto steps = std::exchange(after, nullptr)) steps();
    }
    std::function<void()> after;
  };
  const auto operation = std::make_shared<Watched>();
  m_server->longOperation = operation;
  Open("Pumps");
  GoTo(0, 2);
  Type("77");
  Press(Qt::Key_Tab);
  QTest::mouseClick(Window()->findChild<QPushButton*>("pending"), Qt::LeftButton);
  auto* review = Window()->findChild<PendingReview*>();
  ASSERT_NE(review, nullptr);
  operation->after = [&] { m_editor.reset(); };
  review->findChild<QPushButton*>("storeAll")->click();
  EXPECT_EQ(m_editor, nullptr);
  Settle();
  EXPECT_EQ(Stored("SELECT Flow FROM P..Pumps WHERE Id = 1"), "77");
}

TEST_F(left_rows, what_a_fill_leaves_out_is_counted) {
  Open("Pumps");
  // One that cannot be deleted stays marked, and takes no values.
  m_server->Run("CREATE TABLE P..Parts (Pump INTEGER REFERENCES Pumps (Id))");
  m_server->Run("UPDATE P..Pumps SET Flow = 4 WHERE Id = 2");
  PressRowNumber(1);
  Press(Qt::Key_Delete);
  Answer("Delete");
  if (auto* conflict = Window()->findChild<ConflictDialog*>()) conflict->reject();
  Settle();
  ASSERT_EQ(Rows().Model().StateAt(1), platform::RowState::Deleted);
  GoTo(0, 3);
  m_editor->CellQuery();
  auto* dialog = Window()->findChild<QDialog*>("cellQuery");
  ASSERT_NE(dialog, nullptr);
  dialog->findChild<QPlainTextEdit*>("statement")
      ->setPlainText("SELECT Name FROM P..Pumps ORDER BY Id");
  dialog->findChild<QPushButton*>("run")->click();
  Settle();
  Answer("Fill Down");
  EXPECT_EQ(Cell(0, 3), "feed");
  EXPECT_EQ(Cell(2, 3), "spare");
  EXPECT_EQ(Label("notice"), "1 of 2 cells were left as they are: they cannot be edited.");
}

TEST_F(left_rows, no_memory_is_told_in_the_program_s_own_words) {
  Open("Pumps");
  m_server->bWithoutMemory = true;
  EXPECT_THROW(m_editor->Requery(), std::bad_alloc);
  m_server->bWithoutMemory = false;
  EXPECT_EQ(Window()->findChild<QTextEdit*>("emptySentence")->toPlainText(),
            "There is not enough memory for the rows; show fewer of them or close other programs.");
}

}  // namespace
}  // namespace orvane::controls
