#include "controls/order/sort_keys.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>
#include <random>

#include "controls/order/row_filter.h"
#include "controls/order/value_keys.h"

namespace orvane::controls {
namespace {

using platform::Decimal;
using platform::Value;
using Numbers = RowOrder::Numbers;

Numbers Sorted(const std::vector<Value>& values, bool bAscending, ValueOrder order = {}) {
  SortKeys keys(values.size(), order);
  for (const Value& vtValue : values) keys.Append(vtValue);
  Numbers rows(values.size());
  std::iota(rows.begin(), rows.end(), 0U);
  const std::atomic<bool> bStop = false;
  keys.Sort(rows, bAscending, bStop);
  return rows;
}

TEST(sort_keys, numbers_go_by_value_and_null_comes_first) {
  constexpr auto kLeast = std::numeric_limits<std::int64_t>::min();
  constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
  const std::vector<Value> values{Value(std::int64_t{5}),  Value(),       Value(kMost),
                                  Value(std::int32_t{-7}), Value(kLeast), Value(true)};
  EXPECT_EQ(Sorted(values, true), (Numbers{1, 4, 3, 5, 0, 2}));
  EXPECT_EQ(Sorted(values, false), (Numbers{2, 0, 5, 3, 4, 1})) << "null comes last";
}

TEST(sort_keys, doubles_go_by_value_with_infinities_and_both_zeros_equal) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const std::vector<Value> values{Value(0.0),
                                  Value(-0.0),
                                  Value(kInfinity),
                                  Value(-1e300),
                                  Value(-kInfinity),
                                  Value(5e-324),
                                  Value(std::numeric_limits<double>::quiet_NaN())};
  EXPECT_EQ(Sorted(values, true), (Numbers{6, 4, 3, 0, 1, 5, 2}));
}

TEST(sort_keys, null_and_before_it_what_is_no_number_stand_last_where_the_source_has_them) {
  constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const ValueOrder last{platform::TextOrder::Bytes, true};
  const std::vector<Value> values{Value(),          Value(-kNoNumber), Value(kInfinity),
                                  Value(kNoNumber), Value(-1.5),       Value()};
  EXPECT_EQ(Sorted(values, true, last), (Numbers{4, 2, 1, 3, 0, 5}));
  EXPECT_EQ(Sorted(values, false, last), (Numbers{0, 5, 1, 3, 2, 4}));
  const std::vector<Value> mixed{Value("a"), Value(kNoNumber), Value(std::int64_t{1}), Value(2.5),
                                 Value(kNoNumber)};
  EXPECT_EQ(Sorted(mixed, true, last), (Numbers{2, 3, 1, 4, 0}));
  const std::vector<Value> later{Value(kNoNumber), Value(0.5), Value("a"), Value(kNoNumber)};
  EXPECT_EQ(Sorted(later, true, last), (Numbers{1, 0, 3, 2}));
}

TEST(sort_keys, texts_for_what_no_value_holds_stand_around_the_values) {
  const std::vector<Value> values{
      Value("infinity"),      Value("0044-03-15 BC"), Value(platform::Date(std::chrono::days(5))),
      Value("294276-12-31"),  Value("-infinity"),     Value("20000-01-01"),
      Value("4713-01-01 BC"), Value("0044-03-16 BC"), Value()};
  const ValueOrder beyond{platform::TextOrder::BeyondValues, true};
  EXPECT_EQ(Sorted(values, true, beyond), (Numbers{4, 6, 1, 7, 2, 5, 3, 0, 8}));
  EXPECT_EQ(Sorted({Value("NaN"), Value("Infinity"), Value(Decimal{"-7"}), Value("-Infinity")},
                   true, beyond),
            (Numbers{3, 2, 1, 0}));
}

TEST(sort_keys, integers_and_doubles_are_told_apart_where_no_double_does) {
  const std::vector<Value> values{Value(std::int64_t{9'007'199'254'740'993}),
                                  Value(9'007'199'254'740'992.0), Value(1.5),
                                  Value(std::int64_t{9'007'199'254'740'991})};
  EXPECT_EQ(Sorted(values, true), (Numbers{2, 3, 1, 0}));
}

TEST(sort_keys, decimals_of_any_length_go_by_value) {
  const std::vector<Value> values{Value(Decimal{"0.10000000000000000000000000000000002"}),
                                  Value(Decimal{"0.10000000000000000000000000000000001"}),
                                  Value(Decimal{"-3"}), Value(Decimal{"20"}), Value(0.5)};
  EXPECT_EQ(Sorted(values, true), (Numbers{2, 1, 0, 4, 3}));
}

TEST(sort_keys, decimals_compare_by_value) {
  EXPECT_EQ(CompareDecimals("1.50", "1.5"), 0);
  EXPECT_EQ(CompareDecimals("007", "7"), 0);
  EXPECT_EQ(CompareDecimals("-2", "-10"), 1);
  EXPECT_EQ(CompareDecimals("-0.1", "0.1"), -1);
  EXPECT_EQ(CompareDecimals("10", "9"), 1);
  EXPECT_EQ(CompareDecimals("0.09", "0.1"), -1);
}

TEST(sort_keys, texts_go_by_their_bytes) {
  const std::vector<Value> values{Value("pump.b"),
                                  Value("pump.B"),
                                  Value("pump."),
                                  Value("pump.\u00e4"),
                                  Value("pump.b.long one"),
                                  Value("pump.b.long onf"),
                                  Value(platform::Text("pump.\0", 6))};
  EXPECT_EQ(Sorted(values, true), (Numbers{2, 6, 1, 0, 4, 5, 3}));
}

TEST(sort_keys, kinds_stand_behind_one_another_wherever_they_come) {
  const std::vector<Value> values{Value(platform::Bytes{std::byte{1}}),
                                  Value("text"),
                                  Value(2.5),
                                  Value(),
                                  Value(platform::Date(std::chrono::days(1))),
                                  Value(std::int64_t{2}),
                                  Value(platform::Guid{{9}})};
  EXPECT_EQ(Sorted(values, true), (Numbers{3, 5, 2, 4, 1, 6, 0}));
  EXPECT_EQ(Sorted(values, false), (Numbers{0, 6, 1, 4, 2, 5, 3}));
}

TEST(sort_keys, equal_rows_stay_as_they_stand_in_both_directions) {
  std::mt19937 random(7);
  for (const int nKind : {0, 1, 2, 3}) {
    std::vector<Value> values;
    for (int n = 0; n < 2'000; ++n) {
      const auto value = static_cast<std::int64_t>(random() % 20) - 10;
      switch (nKind) {
        case 0:
          values.emplace_back(value);
          break;
        case 1:
          values.emplace_back(static_cast<double>(value) / 4);
          break;
        case 2:
          values.emplace_back("tag " + std::to_string(value));
          break;
        default:
          values.push_back(n % 2 == 0 ? Value(value) : Value(static_cast<double>(value)));
      }
      if (n % 17 == 0) values.back() = Value();
    }
    for (const bool bAscending : {true, false}) {
      Numbers expected(values.size());
      std::iota(expected.begin(), expected.end(), 0U);
      std::ranges::stable_sort(expected, [&](auto one, auto other) {
        const int nOrder = CompareValues(values[one], values[other]);
        return bAscending ? nOrder < 0 : nOrder > 0;
      });
      EXPECT_EQ(Sorted(values, bAscending), expected) << nKind << bAscending;
    }
  }
}

TEST(sort_keys, a_stopped_sort_ends_early) {
  SortKeys keys(3);
  for (const int n : {3, 2, 1}) keys.Append(Value(n));
  Numbers rows{0, 1, 2};
  const std::atomic<bool> bStop = true;
  keys.Sort(rows, true, bStop);
  EXPECT_EQ(rows, (Numbers{0, 1, 2}));
}

}  // namespace
}  // namespace orvane::controls
