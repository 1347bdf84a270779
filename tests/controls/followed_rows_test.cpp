#include "controls/grid/followed_rows.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <optional>

#include "ado/recordset_builder.h"

namespace orvane::controls {
namespace {

using platform::DataType;
using platform::RecordsetPtr;
using platform::RowIndex;

/// Rows of a tag, newest first, from one second down to another; each value is its second.
RecordsetPtr Seconds(int nNewest, int nOldest, double offset = 0) {
  ado::RecordsetBuilder builder({{"Tag", DataType::WChar},
                                 {"Timestamp", DataType::DBTimeStamp},
                                 {"Value", DataType::Double}});
  for (int n = nNewest; n >= nOldest; --n) {
    builder.AppendRow({"a", platform::Timestamp(std::chrono::seconds(n)), n + offset});
  }
  return builder.Finish();
}

const FollowedRows::Key kKey = {"Tag", "Timestamp"};

/// Rows that were looked at somehow, and what becomes of them.
class Before {
 public:
  Before(RecordsetPtr rs, RowsState state, FollowedRows::Key key)
      : m_rs(std::move(rs)), m_state(std::move(state)), m_key(std::move(key)) {}
  RowMoves MovesTo(const RecordsetPtr& rs) const {
    FollowedRows rows;
    std::optional<RowMoves> found;
    rows.Compare(m_rs, rs, {m_key}, [&](const RowMoves& moves) { found = moves; });
    while (!found) QCoreApplication::processEvents();
    return *found;
  }
  RowsState StateIn(const RecordsetPtr& rs) const {
    return FollowedRows::StateIn(m_state, MovesTo(rs), *rs);
  }
  std::set<RowIndex> NewIn(const RecordsetPtr& rs) const { return MovesTo(rs).fresh; }

 private:
  RecordsetPtr m_rs;
  RowsState m_state;
  FollowedRows::Key m_key;
};

TEST(FollowedRowsTest, cell_selection_and_scrolling_go_with_their_rows) {
  RowsState state;
  state.nCurrentRow = 3;
  state.nCurrentColumn = 2;
  state.selection = {{2, 0, 4, 2}};
  state.nTopRow = 2;
  const Before before(Seconds(20, 11), state, kKey);
  const RowsState after = before.StateIn(Seconds(25, 12));
  EXPECT_EQ(after.nCurrentRow, 8);
  EXPECT_EQ(after.nCurrentColumn, 2);
  EXPECT_EQ(after.selection, (std::vector<CellRange>{{7, 0, 9, 2}}));
  EXPECT_EQ(after.nTopRow, 7);
}

TEST(FollowedRowsTest, who_looks_at_the_first_row_goes_on_looking_at_the_first) {
  RowsState state;
  state.nCurrentRow = 0;
  const Before before(Seconds(20, 11), state, kKey);
  const RowsState after = before.StateIn(Seconds(25, 12));
  EXPECT_EQ(after.nTopRow, 0);
  EXPECT_EQ(after.nCurrentRow, 5);
}

TEST(FollowedRowsTest, rows_that_went_are_selected_no_more) {
  RowsState state;
  state.nCurrentRow = 9;
  state.selection = {{8, 1, 9, 1}, {0, 1, 0, 1}};
  const Before before(Seconds(20, 11), state, kKey);
  const RowsState after = before.StateIn(Seconds(22, 12));
  EXPECT_EQ(after.selection, (std::vector<CellRange>{{10, 1, 10, 1}, {2, 1, 2, 1}}));
  EXPECT_EQ(after.nCurrentRow, 9) << "the cell stays where it was";
  EXPECT_EQ(before.StateIn(Seconds(3, 4)).nCurrentRow, -1);
}

TEST(FollowedRowsTest, all_stay_all) {
  RowsState state;
  state.selection = {{0, 0, 9, 2}};
  const Before before(Seconds(20, 11), state, kKey);
  EXPECT_EQ(before.StateIn(Seconds(22, 11)).selection, (std::vector<CellRange>{{0, 0, 11, 2}}));
}

TEST(FollowedRowsTest, knows_which_rows_came_new) {
  const Before before(Seconds(20, 11), {}, kKey);
  EXPECT_EQ(before.NewIn(Seconds(22, 12)), (std::set<RowIndex>{0, 1}));
  EXPECT_TRUE(before.NewIn(Seconds(20, 11)).empty());
  EXPECT_TRUE(before.NewIn(Seconds(20, 11, 0.5)).empty()) << "a row is known by its key";
}

TEST(FollowedRowsTest, without_its_key_a_row_is_all_of_its_values) {
  const Before before(Seconds(20, 11), {}, {"Tag", "Id"});
  EXPECT_TRUE(before.NewIn(Seconds(20, 11)).empty());
  EXPECT_EQ(before.NewIn(Seconds(20, 11, 0.5)).size(), 10U);
}

TEST(FollowedRowsTest, a_row_is_known_by_the_first_key_that_both_have) {
  const RecordsetPtr before = Seconds(20, 11);
  const RecordsetPtr now = Seconds(22, 13, 2);
  const auto places = [&](const std::vector<FollowedRows::Key>& keys) {
    FollowedRows rows;
    std::vector<std::int32_t> found;
    rows.Compare(before, now, keys, [&](const RowMoves& moves) { found = moves.places; });
    return found.front();
  };
  EXPECT_EQ(places({{"Value"}, kKey}), 4) << "its time has changed";
  EXPECT_EQ(places({{}, kKey}), 2);
  EXPECT_EQ(places({{"Value", "Id"}, kKey}), 2);
}

TEST(FollowedRowsTest, of_too_many_rows_none_is_told_from_another) {
  RowsState state;
  state.nCurrentRow = 7;
  const Before before(Seconds(100'001, 1), state, kKey);
  EXPECT_TRUE(before.NewIn(Seconds(100'005, 5)).empty());
  EXPECT_EQ(before.StateIn(Seconds(100'005, 5)).nCurrentRow, 7);
}

TEST(FollowedRowsTest, many_rows_are_compared_in_slices_and_the_last_that_were_asked_for_count) {
  const RecordsetPtr before = Seconds(60'000, 1);
  const RecordsetPtr after = Seconds(60'002, 3);
  FollowedRows rows;
  int nDone = 0;
  rows.Compare(before, after, {kKey}, [&](const RowMoves&) { ++nDone; });
  EXPECT_TRUE(rows.Busy()) << "the window goes on in the meantime";
  EXPECT_EQ(nDone, 0);
  RowMoves moves;
  rows.Compare(before, after, {kKey}, [&](const RowMoves& found) {
    moves = found;
    nDone += 10;
  });
  int nSlices = 0;
  for (; rows.Busy(); ++nSlices) QCoreApplication::processEvents();
  EXPECT_EQ(nDone, 10);
  EXPECT_GT(nSlices, 1);
  EXPECT_EQ(moves.fresh, (std::set<RowIndex>{0, 1}));
  ASSERT_EQ(moves.places.size(), 60'000U);
  EXPECT_EQ(moves.places[0], 2);
  EXPECT_EQ(moves.places[59'997], 59'999);
  EXPECT_EQ(moves.places[59'998], -1);
}

TEST(FollowedRowsTest, rows_without_a_key_that_are_alike_are_not_new_again) {
  ado::RecordsetBuilder builder({{"A", DataType::WChar}});
  for (const char* sText : {"x", "x", "y"}) builder.AppendRow({sText});
  const RecordsetPtr rs = builder.Finish();
  EXPECT_TRUE(Before(rs, {}, kKey).NewIn(rs).empty());
}

TEST(FollowedRowsTest, a_column_of_many_rows_stays_selected_by_its_numbers) {
  RowsState state;
  state.selection = {{0, 1, 100'000, 1}, {100'000, 2, 100'000, 2}};
  const Before before(Seconds(100'001, 1), state, kKey);
  EXPECT_EQ(before.StateIn(Seconds(50, 1)).selection, (std::vector<CellRange>{{0, 1, 49, 1}}));
  EXPECT_EQ(before.StateIn(Seconds(100'003, 1)).selection.front(), (CellRange{0, 1, 100'002, 1}))
      << "all stay all";
}

}  // namespace
}  // namespace orvane::controls
