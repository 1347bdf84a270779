#include "controls/order/row_order.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>

namespace orvane::controls {
namespace {

using platform::RowIndex;

/// Each row where the order says, and none that was left out. A look at all rows for each of so
/// many would not end.
void ExpectPlaces(const RowOrder& order, RowIndex arranged, RowIndex standing) {
  std::vector<bool> stands(static_cast<std::size_t>(arranged));
  for (RowIndex place = 0; place < standing; ++place) {
    const RowIndex row = order.RecordRow(place);
    stands[static_cast<std::size_t>(row)] = true;
    ASSERT_EQ(order.PlaceOf(row), place);
  }
  for (RowIndex row = 0; row < arranged; ++row) {
    ASSERT_EQ(order.PlaceOf(row).has_value(), stands[static_cast<std::size_t>(row)]);
  }
  EXPECT_EQ(order.PlaceOf(arranged + 2), standing + 2) << "what came since stands behind all";
}

RowOrder::Numbers EveryNth(RowIndex rows, RowIndex n) {
  RowOrder::Numbers numbers;
  for (RowIndex row = 0; row < rows; row += n) {
    numbers.push_back(static_cast<RowOrder::Number>(row));
  }
  return numbers;
}

constexpr RowIndex kManyRows = 100'000;

TEST(row_order, tells_where_each_of_many_rows_stands) {
  std::mt19937 random(20261122);
  for (const RowIndex n : {1, 3}) {
    RowOrder::Numbers rows = EveryNth(kManyRows, n);
    const RowIndex standing = std::ssize(rows);
    std::ranges::shuffle(rows, random);
    RowOrder::Numbers byRow = RowOrder::ByRow(rows, kManyRows, false);
    ExpectPlaces(RowOrder(std::move(rows), std::move(byRow), kManyRows), kManyRows, standing);
  }
}

TEST(row_order, that_a_filter_leaves_needs_nothing_more_for_that) {
  const RowOrder order(EveryNth(kManyRows, 3), {}, kManyRows);
  EXPECT_LE(order.Bytes(), std::size_t{kManyRows} * sizeof(RowOrder::Number));
  ExpectPlaces(order, kManyRows, (kManyRows + 2) / 3);
}

TEST(row_order, takes_memory_for_the_rows_that_stand_and_for_no_others) {
  RowOrder::Numbers rows{7, 3};
  RowOrder::Numbers byRow = RowOrder::ByRow(rows, kManyRows, false);
  const RowOrder order(std::move(rows), std::move(byRow), kManyRows);
  EXPECT_LE(order.Bytes(), 64U);
  EXPECT_EQ(order.PlaceOf(3), 1);
  EXPECT_EQ(order.PlaceOf(7), 0);
  EXPECT_EQ(order.PlaceOf(5), std::nullopt);
}

TEST(row_order, is_not_worked_out_when_it_is_stopped) {
  const RowOrder::Numbers rows{2, 1, 0};
  EXPECT_EQ(RowOrder::ByRow(rows, 3, true), (RowOrder::Numbers{0, 0, 0}));
  EXPECT_EQ(RowOrder::ByRow(rows, 9, true), (RowOrder::Numbers{0, 1, 2}));
}

}  // namespace
}  // namespace orvane::controls
