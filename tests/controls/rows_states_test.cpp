#include "controls/order/rows_states.h"

#include <gtest/gtest.h>

#include "tests/controls/fake_data.h"

namespace orvane::controls {
namespace {

RowsState AtRow(int nRow) {
  RowsState state;
  state.nCurrentRow = nRow;
  return state;
}

TEST(rows_states, a_state_is_found_by_its_number_and_its_recordset) {
  RowsStates states;
  const auto rs = Plant(10);
  const auto other = Plant(10);
  const auto lNumber = states.Keep(*rs, AtRow(3));
  EXPECT_NE(lNumber, 0);
  ASSERT_NE(states.Find(lNumber, *rs), nullptr);
  EXPECT_EQ(states.Find(lNumber, *rs)->nCurrentRow, 3);
  EXPECT_EQ(states.Find(*rs)->nCurrentRow, 3);
  EXPECT_EQ(states.Find(lNumber, *other), nullptr);
  EXPECT_EQ(states.Find(*other), nullptr);
  EXPECT_EQ(states.Find(0, *rs), nullptr);
  EXPECT_EQ(states.Find(lNumber + 1, *rs), nullptr);
  EXPECT_EQ(states.Find(-1, *rs), nullptr);
}

TEST(rows_states, a_recordset_has_one_number_and_its_latest_state) {
  RowsStates states;
  const auto rs = Plant(10);
  const auto lFirst = states.Keep(*rs, AtRow(3));
  EXPECT_EQ(states.Keep(*rs, AtRow(5)), lFirst);
  EXPECT_EQ(states.Find(lFirst, *rs)->nCurrentRow, 5);
}

TEST(rows_states, different_recordsets_have_different_numbers) {
  RowsStates states;
  const auto a = Plant(1);
  const auto b = Plant(1);
  EXPECT_NE(states.Keep(*a, {}), states.Keep(*b, {}));
}

TEST(rows_states, an_address_that_is_used_again_is_told_from_the_first) {
  RowsStates states;
  std::optional<FakeRecordset> place;
  const auto maker = [](auto, auto) { return platform::Value(); };
  place.emplace(10, maker);
  place->Elapsed(std::chrono::microseconds(1));
  const auto lNumber = states.Keep(*place, AtRow(3));
  place.emplace(10, maker);
  place->Elapsed(std::chrono::microseconds(2));
  EXPECT_EQ(states.Find(lNumber, *place), nullptr);
  EXPECT_EQ(states.Find(*place), nullptr);
  place.emplace(11, maker);
  place->Elapsed(std::chrono::microseconds(1));
  EXPECT_EQ(states.Find(lNumber, *place), nullptr);
}

TEST(rows_states, the_oldest_go_when_there_are_too_many) {
  RowsStates states;
  std::vector<std::shared_ptr<FakeRecordset>> recordsets;
  for (std::size_t n = 0; n <= RowsStates::kMaxStates; ++n) {
    recordsets.push_back(Plant(1));
    states.Keep(*recordsets.back(), AtRow(static_cast<int>(n)));
  }
  EXPECT_EQ(states.Find(*recordsets.front()), nullptr);
  EXPECT_NE(states.Find(*recordsets[1]), nullptr);
  EXPECT_NE(states.Find(*recordsets.back()), nullptr);
}

TEST(rows_states, let_go_of_the_oldest_orders_that_take_too_much_memory) {
  RowsStates states;
  const auto keep = [&](const platform::Recordset& rs) {
    RowsState state;
    RowOrder::Numbers rows(RowsStates::kMostOrderBytes / sizeof(RowOrder::Number) / 2);
    const auto arranged = static_cast<platform::RowIndex>(rows.size());
    state.order = std::make_shared<const RowOrder>(std::move(rows), RowOrder::Numbers(), arranged);
    return states.Keep(rs, std::move(state));
  };
  const auto first = Plant(1);
  const auto second = Plant(2);
  const auto third = Plant(3);
  const auto lFirst = keep(*first);
  const auto lSecond = keep(*second);
  EXPECT_NE(states.Find(lFirst, *first)->order, nullptr);
  const auto lThird = keep(*third);
  EXPECT_EQ(states.Find(lFirst, *first)->order, nullptr);
  EXPECT_NE(states.Find(lSecond, *second)->order, nullptr);
  EXPECT_NE(states.Find(lThird, *third)->order, nullptr);
}

}  // namespace
}  // namespace orvane::controls
