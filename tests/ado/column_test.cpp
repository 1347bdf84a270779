#include "ado/column.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/ado/failure_of.h"

namespace orvane::ado {
namespace {

using platform::DataType;
using platform::Value;
using namespace std::chrono_literals;

const std::vector<Value> kOneOfEach = {
    true,
    std::int32_t{-7},
    std::int64_t{9'007'199'254'740'993},
    0.1,
    platform::Decimal{"-1.10"},
    "text",
    platform::Timestamp(1'700'000'000'123'456us),
    platform::Date(std::chrono::days(-1)),
    platform::TimeOfDay(1us),
    platform::Bytes{std::byte{0}, std::byte{255}},
    platform::Guid{{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}},
};

Column ColumnOf(const std::vector<Value>& vtValues) {
  Column column;
  for (const Value& vtValue : vtValues) column.AppendValue(vtValue);
  return column;
}

void ExpectHolds(const Column& column, const std::vector<Value>& vtValues) {
  ASSERT_EQ(column.RowCount(), static_cast<platform::RowIndex>(vtValues.size()));
  for (std::size_t i = 0; i < vtValues.size(); ++i) {
    EXPECT_TRUE(column.ValueAt(static_cast<platform::RowIndex>(i)) == vtValues[i]) << "row " << i;
  }
}

TEST(Column, keeps_every_kind_as_it_was_given) {
  for (const Value& vtValue : kOneOfEach) {
    ExpectHolds(ColumnOf({vtValue, vtValue}), {vtValue, vtValue});
  }
}

TEST(Column, keeps_every_kind_between_nulls) {
  for (const Value& vtValue : kOneOfEach) {
    const std::vector<Value> vtValues = {{}, vtValue, {}, vtValue, {}};
    ExpectHolds(ColumnOf(vtValues), vtValues);
  }
}

TEST(Column, keeps_all_kinds_in_one_column) {
  ExpectHolds(ColumnOf(kOneOfEach), kOneOfEach);
}

TEST(Column, turns_mixed_after_any_kind_without_changing_what_it_held) {
  for (const Value& vtFirst : kOneOfEach) {
    for (const Value& vtSecond : kOneOfEach) {
      const std::vector<Value> vtValues = {{}, vtFirst, {}, vtSecond, vtFirst, {}, vtSecond};
      ExpectHolds(ColumnOf(vtValues), vtValues);
    }
  }
}

TEST(Column, may_start_with_any_number_of_nulls) {
  for (const std::size_t nulls : {1U, 63U, 64U, 65U, 128U, 20'000U}) {
    std::vector<Value> vtValues(nulls);
    vtValues.emplace_back(1.5);
    vtValues.emplace_back();
    vtValues.emplace_back(2.5);
    ExpectHolds(ColumnOf(vtValues), vtValues);
  }
}

TEST(Column, may_be_all_null) {
  const Column column = ColumnOf(std::vector<Value>(100));
  EXPECT_EQ(column.RowCount(), 100);
  EXPECT_TRUE(column.ValueAt(99).IsNull());
  EXPECT_EQ(column.FittingType(), DataType::Empty);
}

TEST(Column, keeps_extreme_numbers_exactly) {
  const std::vector<Value> longs = {std::numeric_limits<std::int32_t>::min(),
                                    std::numeric_limits<std::int32_t>::max()};
  const std::vector<Value> longLongs = {std::numeric_limits<std::int64_t>::min(),
                                        std::numeric_limits<std::int64_t>::max()};
  const std::vector<Value> doubles = {-std::numeric_limits<double>::infinity(),
                                      std::numeric_limits<double>::denorm_min(), 1e308};
  ExpectHolds(ColumnOf(longs), longs);
  ExpectHolds(ColumnOf(longLongs), longLongs);
  ExpectHolds(ColumnOf(doubles), doubles);
  EXPECT_TRUE(std::signbit(*ColumnOf({-0.0}).ValueAt(0).As<double>()));
}

TEST(Column, keeps_32_and_64_bit_integers_apart) {
  const Column column = ColumnOf({std::int32_t{1}, std::int64_t{1}});
  EXPECT_EQ(column.ValueAt(0).Kind(), platform::ValueKind::Long);
  EXPECT_EQ(column.ValueAt(1).Kind(), platform::ValueKind::LongLong);
  EXPECT_EQ(column.FittingType(), DataType::BigInt);
}

TEST(Column, keeps_empty_texts_zero_bytes_and_other_scripts) {
  const std::vector<Value> vtValues = {"", platform::Text("a\0b", 3), "Ωμέγα 温度 \"'",
                                       "a line\nbreak", ""};
  ExpectHolds(ColumnOf(vtValues), vtValues);
  ExpectHolds(ColumnOf({platform::Bytes{}}), {platform::Bytes{}});
}

TEST(Column, refuses_an_object) {
  Column column;
  EXPECT_EQ(tests::FailureOf([&] { column.AppendValue(std::make_shared<platform::Object>()); }),
            (tests::Told{platform::failure::kTypeMismatch,
                         "A recordset cannot hold an object: give it a plain value."}));
  EXPECT_EQ(column.RowCount(), 0);
}

TEST(Column, tells_the_type_that_fits_its_values) {
  const std::vector<std::pair<std::vector<Value>, DataType>> cases = {
      {{}, DataType::Empty},
      {{true}, DataType::Boolean},
      {{std::int32_t{1}}, DataType::Integer},
      {{std::int64_t{1}}, DataType::BigInt},
      {{1.0}, DataType::Double},
      {{platform::Decimal{"1"}}, DataType::Numeric},
      {{"x"}, DataType::WChar},
      {{platform::Timestamp{}}, DataType::DBTimeStamp},
      {{platform::Date{}}, DataType::DBDate},
      {{platform::TimeOfDay{}}, DataType::DBTime},
      {{platform::Bytes{}}, DataType::Binary},
      {{platform::Guid{}}, DataType::Guid},
      {{{}, 1.0, {}}, DataType::Double},
      {{std::int64_t{1}, 1.0}, DataType::Double},
      {{std::int64_t{1}, "x"}, DataType::WChar},
      {{std::int64_t{1}, {}, platform::Timestamp{}}, DataType::WChar},
  };
  for (const auto& [vtValues, type] : cases) EXPECT_EQ(ColumnOf(vtValues).FittingType(), type);
}

TEST(Column, grows_past_its_chunks) {
  Column texts;
  Column numbers;
  constexpr platform::RowIndex kRows = 50'000;
  for (platform::RowIndex row = 0; row < kRows; ++row) {
    texts.AppendText("tag " + std::to_string(row % 7));
    if (row % 3 == 0) {
      numbers.AppendNull();
    } else {
      numbers.AppendLongLong(row);
    }
  }
  for (platform::RowIndex row = 0; row < kRows; ++row) {
    ASSERT_TRUE(texts.ValueAt(row) == Value("tag " + std::to_string(row % 7)));
    ASSERT_TRUE(numbers.ValueAt(row) == (row % 3 == 0 ? Value() : Value(row)));
  }
}

}  // namespace
}  // namespace orvane::ado
