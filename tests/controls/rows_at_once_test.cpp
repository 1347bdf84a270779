// Things that happen at one time in a grid on a real historian: a row that is sent while somebody
// goes on typing, an order that is there while a cell is typed, several rows deleted together.
#include "controls/editing/conflict_dialog.h"
#include "controls/order/row_arranger.h"
#include "platform/long_operation.h"
#include "tests/controls/pumps_fixture.h"
#include "tests/fakes/until.h"

namespace orvane::controls {
namespace {

using platform::Text;

class rows_at_once : public PumpsFixture {
 protected:
  void Mark(int nFirst, int nLast) {
    PressRowNumber(nFirst);
    PressRowNumber(nLast, Qt::ShiftModifier);
    Press(Qt::Key_Delete);
  }
};

TEST_F(rows_at_once, what_is_typed_stays_in_its_line_when_an_order_is_there) {
  m_server->Run(
      "INSERT INTO P..Pumps SELECT i, 'many', 1, NULL FROM (WITH RECURSIVE n(i) AS (SELECT 4 UNION "
      "ALL SELECT i + 1 FROM n WHERE i < 25000) SELECT i FROM n)");
  m_query->MaxRows(0);
  Open("Pumps");
  Rows().SortBy(0, false);
  ASSERT_TRUE(Rows().Arranging());
  GoTo(0, 2);
  Type("7");
  // Were it not held, the order would be there before others of the same rows are.
  for (int n = 0; n < 3; ++n) {
    RowArranger others(nullptr);
    bool bThere = false;
    others.Arrange(Rows().Model().Recordset(), {{{0, false}}, false, {}}, CellFormat(),
                   [&](const auto&, const QString&) { bThere = true; });
    ASSERT_FALSE(bThere) << "so many rows are sorted beside the window";
    EXPECT_TRUE(tests::Until([&] { return bThere; }));
  }
  EXPECT_TRUE(Rows().Arranging());
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Editor()->text(), "7");
  Type("8");
  Press(Qt::Key_Tab);
  EXPECT_TRUE(tests::Until([&] { return !Rows().Arranging(); }));
  EXPECT_EQ(Cell(0, 0), "25000");
  EXPECT_EQ(Label("pending"), "1 row not stored");
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT Flow FROM P..Pumps WHERE Id = 1"), "78");
}

TEST_F(rows_at_once, sorting_takes_what_is_being_typed) {
  Open("Pumps");
  GoTo(0, 2);
  Type("77");
  Rows().SortBy(1, true);
  Settle();
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_EQ(Label("pending"), "1 row not stored");
  EXPECT_EQ(Cell(0, 1), "drain");
  EXPECT_EQ(Cell(1, 2), "77");
  EXPECT_EQ(Rows().currentIndex().row(), 1) << "who types stays with his row";
}

TEST_F(rows_at_once, of_rows_deleted_together_one_that_was_changed_keeps_all) {
  Open("Pumps");
  int nDeleted = 0;
  const auto deleted = m_editor->OnDelete([&] { ++nDeleted; });
  m_server->Run("UPDATE P..Pumps SET Flow = 4 WHERE Id = 2");
  Mark(0, 2);
  Answer("Delete");
  EXPECT_EQ(Stored("SELECT count(*) FROM P..Pumps"), "3") << "half of them is not what was asked";
  EXPECT_EQ(nDeleted, 0);
  EXPECT_EQ(Label("pending"), "3 rows not stored");
  for (int n = 0; n < 3; ++n) EXPECT_EQ(PumpsFixture::Mark(n), "!") << n;
  auto* dialog = Window()->findChild<ConflictDialog*>();
  ASSERT_NE(dialog, nullptr);
  dialog->done(ConflictDialog::kDelete);
  Settle();
  EXPECT_EQ(Stored("SELECT Id FROM P..Pumps"), "1\n3");
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(Stored("SELECT count(*) FROM P..Pumps"), "0");
  EXPECT_EQ(Label("pending"), "");
  EXPECT_EQ(Rows().Model().Places(), 0);
  EXPECT_EQ(nDeleted, 2) << "one for the row that was settled, one for the others";
}

TEST_F(rows_at_once, rows_never_stored_are_deleted_with_those_that_were) {
  Open("Pumps");
  int nDeleted = 0;
  const auto deleted = m_editor->OnDelete([&] { ++nDeleted; });
  GoTo(3, 1);
  Press(Qt::Key_0, Qt::ControlModifier);
  Type("new");
  Press(Qt::Key_Tab);
  Mark(2, 3);
  Answer("Delete");
  EXPECT_EQ(nDeleted, 1);
  EXPECT_EQ(Stored("SELECT Id FROM P..Pumps"), "1\n2");
  EXPECT_EQ(Rows().Model().Places(), 2);
}

/// Runs the work at once, and looks at the rows before.
class LookingOperation final : public platform::LongOperation {
 public:
  void Run(const Text&, const std::function<void(std::stop_token)>& work) override {
    if (look) look();
    work({});
  }
  std::function<void()> look;
};

TEST_F(rows_at_once, keys_are_kept_while_a_row_is_sent_and_at_no_other_time) {
  const auto operation = std::make_shared<LookingOperation>();
  m_server->longOperation = operation;
  Open("Pumps");
  std::vector<bool> kept;
  operation->look = [&] {
    kept.push_back(Rows().property(platform::LongOperation::kKeepsKeys).toBool());
  };
  m_editor->Requery();
  EXPECT_EQ(std::ranges::count(kept, true), 0);
  kept.clear();
  GoTo(0, 2);
  Type("5");
  Press(Qt::Key_Return);
  EXPECT_FALSE(kept.empty());
  EXPECT_EQ(std::ranges::count(kept, false), 0);
  EXPECT_FALSE(Rows().property(platform::LongOperation::kKeepsKeys).toBool());
  kept.clear();
  PressRowNumber(1);
  Press(Qt::Key_Delete);
  Answer("Delete");
  EXPECT_FALSE(kept.empty());
  EXPECT_EQ(std::ranges::count(kept, false), 0);
}

TEST_F(rows_at_once, a_row_left_while_the_grid_is_at_work_is_sent_after_that) {
  const auto operation = std::make_shared<LookingOperation>();
  m_server->longOperation = operation;
  Open("Pumps");
  GoTo(0, 2);
  bool bLeft = false;
  operation->look = [&] {
    if (std::exchange(bLeft, true)) return;
    // The second row is typed and left in the midst of the first one's way to the server.
    Settle();
    GoTo(1, 2);
    Type("6");
    Press(Qt::Key_Return);
    EXPECT_EQ(Stored("SELECT Flow FROM P..Pumps WHERE Id = 2"), "3.25");
    EXPECT_EQ(PumpsFixture::Mark(1), "\u2022") << "it is not refused";
  };
  Type("5");
  Press(Qt::Key_Return);
  EXPECT_TRUE(bLeft);
  EXPECT_TRUE(tests::Until([&] { return Label("pending").empty(); }));
  EXPECT_EQ(Stored("SELECT Flow FROM P..Pumps ORDER BY Id"), "5\n6\n0");
}

}  // namespace
}  // namespace orvane::controls
