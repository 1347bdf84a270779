// Edits, deletions and new rows among many rows that are sorted and filtered: the row that is
// changed is the one that was looked at, wherever the order puts it then, and no other one.
// ORVANE_RESULT_ROWS sets the number of rows, up to 200,000.
#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>

#include "controls/order/row_filter.h"
#include "tests/controls/editing_fixture.h"
#include "tests/fakes/until.h"

namespace orvane::controls {
namespace {

using platform::Text;

constexpr int kMostRows = 200'000;

/// An even number.
int RowsOfResult() {
  const char* const sRows = std::getenv("ORVANE_RESULT_ROWS");
  return std::clamp(sRows != nullptr ? std::atoi(sRows) : 10'000, 1'000, kMostRows) / 2 * 2;
}

class large_results : public EditingFixture {
 protected:
  large_results() {
    // Every level once, in no order.
    m_server->Run("CREATE TABLE P..Large (Id INTEGER PRIMARY KEY, Name TEXT, Level INTEGER)");
    m_server->Run(
        "INSERT INTO P..Large WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n "
        "LIMIT " +
        std::to_string(m_nRows) +
        ") SELECT i, iif(i % 2, 'odd ', 'even ') || i, i * 7919 % 200003 FROM n");
    m_query->MaxRows(0);
    Open("Large");
    // The even ones, the highest first.
    Rows().SortBy(2, false);
    AwaitOrder();
    Rows().Filter({ColumnFilter::Read("even", 1, platform::DataType::WChar, CellFormat())});
    AwaitOrder();
    Before();
  }
  void AwaitOrder() {
    ASSERT_TRUE(tests::Until([&] { return !Rows().Arranging(); }));
    Settle();
  }
  void Before() {
    ASSERT_EQ(Rows().Model().Places(), m_nRows / 2);
    for (int nPlace = 0; nPlace < 40; ++nPlace) m_ids.push_back(IdAt(nPlace));
  }
  int IdAt(int nPlace) { return std::stoi(Cell(nPlace, 0)); }
  Text LevelOf(int nId) {
    return Stored("SELECT Level FROM P..Large WHERE Id = " + std::to_string(nId));
  }
  /// All rows but these are as they were made; in number and in sum.
  void ExpectOthersUntouched(const std::set<int>& but) {
    Text sBut = "0";
    for (const int nId : but) sBut += "," + std::to_string(nId);
    EXPECT_EQ(Stored("SELECT count(*) FROM P..Large WHERE Id NOT IN (" + sBut +
                     ") AND Id <= " + std::to_string(m_nRows) +
                     " AND Level = Id * 7919 % 200003 AND Name LIKE '% ' || Id"),
              std::to_string(m_nRows - static_cast<int>(but.size())));
  }
  std::set<int> SelectedIds() {
    std::set<int> ids;
    for (const QModelIndex& index : Rows().selectionModel()->selectedIndexes()) {
      ids.insert(IdAt(index.row()));
    }
    return ids;
  }
  void ExpectInOrder() {
    for (int nPlace = 1; nPlace < 40; ++nPlace) {
      EXPECT_GE(std::stoi(Cell(nPlace - 1, 2)), std::stoi(Cell(nPlace, 2))) << nPlace;
      EXPECT_TRUE(Cell(nPlace, 1).starts_with("even")) << nPlace;
    }
  }
  void TypeLevel(int nPlace, const char* sLevel) {
    GoTo(nPlace, 2);
    Type(sLevel);
    Press(Qt::Key_Tab);
  }
  void Store() {
    Press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(tests::Until([&] { return Label("pending").empty(); }));
  }

  const int m_nRows = RowsOfResult();
  std::vector<int> m_ids;  ///< of the first rows in sight, as they stood
};

TEST_F(large_results, an_edited_row_that_moves_is_the_one_that_was_seen_and_keeps_the_keys) {
  const int nMoved = m_ids[5];
  TypeLevel(5, "1");
  EXPECT_EQ(Label("pending"), "1 row not stored");
  Store();
  EXPECT_EQ(LevelOf(nMoved), "1");
  ExpectOthersUntouched({nMoved});
  Rows().ArrangeNow();
  AwaitOrder();
  const int nPlace = Rows().currentIndex().row();
  EXPECT_EQ(IdAt(nPlace), nMoved) << "the keys go with the row";
  EXPECT_GT(nPlace, m_nRows / 2 - 10);
  EXPECT_EQ(IdAt(5), m_ids[6]);
  ExpectInOrder();
  // From where it is now it is edited again, out of the filter's sight.
  GoTo(nPlace, 1);
  Type("gone");
  Press(Qt::Key_Tab);
  Store();
  EXPECT_EQ(Stored("SELECT Name FROM P..Large WHERE Id = " + std::to_string(nMoved)), "gone");
  Rows().ArrangeNow();
  AwaitOrder();
  EXPECT_EQ(Rows().Model().Places(), m_nRows / 2 - 1);
  ExpectOthersUntouched({nMoved});
}

TEST_F(large_results, edits_and_deletions_far_apart_are_each_stored_in_their_row) {
  constexpr int kEdits = 30;
  const int nPlaces = m_nRows / 2;
  std::set<int> touched;
  Text sExpected;
  std::map<int, int> levels;
  for (int n = 0; n < kEdits; ++n) {
    // From the end and from the beginning in turn; each row is sent when the next one is gone to.
    const int nFrom = n * (nPlaces / kEdits) / 2;
    const int nPlace = n % 2 == 0 ? nPlaces - 1 - nFrom : nFrom;
    levels[IdAt(nPlace)] = 1'000'000 + n;
    TypeLevel(nPlace, std::to_string(1'000'000 + n).c_str());
  }
  Store();
  for (const auto& [nId, nLevel] : levels) {
    touched.insert(nId);
    sExpected += std::to_string(nId) + "|" + std::to_string(nLevel) + "\n";
  }
  sExpected.pop_back();
  EXPECT_EQ(Stored("SELECT Id, Level FROM P..Large WHERE Level >= 1000000 ORDER BY Id"), sExpected);
  ExpectOthersUntouched(touched);
  std::set<int> gone;
  QItemSelection selection;
  for (const int nPlace : {7, nPlaces / 3, nPlaces / 2, nPlaces - 8}) {
    gone.insert(IdAt(nPlace));
    const auto* const model = Rows().model();
    selection.select(model->index(nPlace, 0), model->index(nPlace, 2));
  }
  GoTo(7, 0);
  Rows().selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  Press(Qt::Key_Delete);
  ASSERT_EQ(Window()->findChild<QMessageBox*>()->text(), "Delete 4 rows?");
  Answer("Delete");
  ASSERT_TRUE(tests::Until([&] { return Rows().Model().Places() == nPlaces - 4; }));
  EXPECT_EQ(Stored("SELECT count(*) FROM P..Large"), std::to_string(m_nRows - 4));
  touched.insert(gone.begin(), gone.end());
  ExpectOthersUntouched(touched);
}

TEST_F(large_results, rows_that_are_deleted_are_those_that_were_selected) {
  const std::set<int> chosen{m_ids[2], m_ids[3], m_ids[6]};
  const auto choose = [this] {
    PressRowNumber(2);
    PressRowNumber(3, Qt::ShiftModifier);
    PressRowNumber(6, Qt::ControlModifier);
  };
  choose();
  ASSERT_EQ(SelectedIds(), chosen);
  // The other way round they stand at the end, and are selected still.
  Rows().SortBy(2, true);
  AwaitOrder();
  EXPECT_EQ(SelectedIds(), chosen);
  EXPECT_GT(Rows().currentIndex().row(), m_nRows / 2 - 10);
  m_editor->Requery();
  Rows().SortBy(2, false);
  AwaitOrder();
  GoTo(0, 0);
  choose();
  ASSERT_EQ(SelectedIds(), chosen);
  Press(Qt::Key_Delete);
  ASSERT_EQ(Window()->findChild<QMessageBox*>()->text(), "Delete 3 rows?");
  Answer("Delete");
  ASSERT_TRUE(tests::Until([&] { return Rows().Model().Places() == m_nRows / 2 - 3; }));
  EXPECT_EQ(IdAt(2), m_ids[4]);
  EXPECT_EQ(IdAt(4), m_ids[7]);
  EXPECT_EQ(Stored("SELECT count(*) FROM P..Large"), std::to_string(m_nRows - 3));
  ExpectOthersUntouched(chosen);
}

TEST_F(large_results, a_new_row_an_undone_edit_and_a_refresh_lose_nothing) {
  const int nPlaces = Rows().Model().Places();
  TypeLevel(3, "5");
  TypeLevel(3, "6");
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Cell(3, 2), "5");
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Label("pending"), "");
  Press(Qt::Key_Y, Qt::ControlModifier);
  EXPECT_EQ(Cell(3, 2), "5");
  EXPECT_EQ(IdAt(3), m_ids[3]);
  // Not stored yet it outlives the fetch, the order and the filter.
  m_editor->Requery();
  AwaitOrder();
  EXPECT_EQ(Label("pending"), "1 row not stored");
  EXPECT_EQ(LevelOf(m_ids[3]), std::to_string(m_ids[3] * 7919LL % 200'003));
  Store();
  EXPECT_EQ(LevelOf(m_ids[3]), "5");
  GoTo(Rows().Model().Places(), 0);
  for (const char* const sText : {"200001", "even new", "300000"}) {
    Type(sText);
    Press(Qt::Key_Tab);
  }
  Store();
  EXPECT_EQ(Stored("SELECT * FROM P..Large WHERE Id > 200000"), "200001|even new|300000");
  Rows().ArrangeNow();
  AwaitOrder();
  EXPECT_EQ(Rows().Model().Places(), nPlaces + 1);
  m_editor->Requery();
  AwaitOrder();
  EXPECT_EQ(Rows().Model().Places(), nPlaces + 1);
  EXPECT_EQ(IdAt(0), 200'001) << "fetched anew it stands where the order has it";
  EXPECT_EQ(IdAt(1), m_ids[0]);
  ExpectInOrder();
  ExpectOthersUntouched({m_ids[3]});
}

}  // namespace
}  // namespace orvane::controls
