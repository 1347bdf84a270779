// What was undone while rows are followed: each fetch leaves it to be redone, and what was done to
// be undone, as a refresh does.
#include <QCheckBox>
#include <QTimer>

#include "platform/long_operation.h"
#include "tests/controls/editing_fixture.h"
#include "tests/controls/struck_clock.h"
#include "tests/fakes/until.h"

namespace orvane::controls {
namespace {

class followed_steps : public EditingFixture {
 protected:
  followed_steps() {
    m_server->Run(
        "CREATE TABLE P..Samples (Tag TEXT, Timestamp TIMESTAMP, Value REAL, PRIMARY KEY (Tag, "
        "Timestamp))");
    Insert(1, 20);
    m_query->MaxRows(0);
  }
  void Insert(int nFirst, int nLast) {
    m_server->Run("INSERT INTO P..Samples WITH RECURSIVE n(i) AS (SELECT " +
                  std::to_string(nFirst) + " UNION ALL SELECT i + 1 FROM n WHERE i < " +
                  std::to_string(nLast) + ") SELECT 'a', datetime(i, 'unixepoch'), i FROM n");
  }
  void FollowOnce() {
    auto* follow = Window()->findChild<QCheckBox*>("follow");
    if (!follow->isChecked()) follow->click();
    auto* pause = Window()->findChild<QTimer*>("pause");
    ASSERT_TRUE(pause->isActive());
    StrikeNow(*pause);
    Settle();
  }
  void Undo() { Press(Qt::Key_Z, Qt::ControlModifier); }
  void Redo() { Press(Qt::Key_Y, Qt::ControlModifier); }
  void Set(int nRow, const char* sValue) {
    GoTo(nRow, 2);
    Type(sValue);
    Press(Qt::Key_Tab);
  }
};

TEST_F(followed_steps, are_redone_and_undone_after_each_fetch) {
  Open("Samples");
  ASSERT_EQ(Cell(0, 2), "20") << "newest first";
  Set(0, "77");
  Set(0, "78");
  Undo();
  Undo();
  ASSERT_EQ(Label("pending"), "");
  Insert(21, 22);
  FollowOnce();
  ASSERT_EQ(Cell(2, 2), "20") << "rows have come";
  Insert(23, 23);
  FollowOnce();
  ASSERT_EQ(Cell(3, 2), "20");
  Redo();
  EXPECT_EQ(Cell(3, 2), "77") << "the same row, wherever it stands";
  Redo();
  EXPECT_EQ(Cell(3, 2), "78");
  Undo();
  Undo();
  EXPECT_EQ(Cell(3, 2), "20");
  EXPECT_EQ(Label("pending"), "");
}

TEST_F(followed_steps, of_a_row_that_was_never_added_come_back_too) {
  Open("Samples");
  GoTo(20, 0);
  Type("new");
  Press(Qt::Key_Tab);
  Undo();
  ASSERT_EQ(Rows().Model().Places(), 20);
  FollowOnce();
  EXPECT_EQ(Rows().Model().Places(), 20);
  Redo();
  EXPECT_EQ(Rows().Model().Places(), 21);
  EXPECT_EQ(Cell(20, 0), "new");
}

/// What looks for rows is ended by what the user does.
class UserComesFirst final : public platform::LongOperation {
 public:
  void Run(const platform::Text& /*sWhat*/,
           const std::function<void(std::stop_token)>& work) override {
    work({});
  }
  void RunGivingWay(const platform::Text& /*sWhat*/,
                    const std::function<void(std::stop_token)>& work) override {
    ++nRuns;
    std::stop_source stop;
    if (bUserActs) stop.request_stop();
    work(stop.get_token());
  }
  int nRuns = 0;
  bool bUserActs = false;
};

TEST_F(followed_steps, among_many_rows_are_looked_for_beside_the_window_and_give_way) {
  Insert(21, 12'000);
  const auto operation = std::make_shared<UserComesFirst>();
  m_longOperation = operation;
  Open("Samples");
  Set(0, "77");
  Undo();
  const auto rs = Rows().Model().Recordset();
  operation->bUserActs = true;
  FollowOnce();
  ASSERT_TRUE(tests::Until([&] { return operation->nRuns > 0; }));
  EXPECT_EQ(Rows().Model().Recordset(), rs) << "what was fetched is dropped";
  EXPECT_EQ(Label("notice"), "");
  operation->bUserActs = false;
  FollowOnce();
  ASSERT_TRUE(tests::Until([&] { return Rows().Model().Recordset() != rs; }));
  Redo();
  EXPECT_EQ(Cell(0, 2), "77");
}

}  // namespace
}  // namespace orvane::controls
