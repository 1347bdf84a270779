#include "trend/trend_data.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/trend/trend_rows.h"

namespace orvane::trend {
namespace {

using ado::RecordsetBuilder;
using platform::DataType;
using platform::RecordsetPtr;
using platform::Value;

std::vector<TrendLine> LinesOf(const RecordsetPtr& rs, platform::RowIndex slice = 1'000'000) {
  const auto columns = TrendColumns::Of(*rs);
  EXPECT_TRUE(columns);
  TrendReader reader(rs, *columns);
  while (reader.Read(slice)) {
  }
  EXPECT_EQ(reader.Progress(), 1.0);
  reader.Finish();
  return reader.TakeLines();
}

std::vector<platform::Text> Names(const std::vector<TrendLine>& lines) {
  std::vector<platform::Text> names;
  for (const TrendLine& line : lines) names.push_back(line.sName);
  return names;
}

TEST(TrendDataTest, a_tag_has_a_line) {
  const auto lines = LinesOf(TwoTags(20), 7);
  ASSERT_EQ(Names(lines), (std::vector<platform::Text>{"a", "b"}));
  ASSERT_EQ(lines[0].series.Size(), 20U);
  EXPECT_EQ(lines[0].series.TimeAt(0), TrendTime(Second(0)));
  EXPECT_EQ(lines[0].series.ValueAt(19), 19);
  EXPECT_TRUE(std::isnan(lines[1].series.ValueAt(9)));
  EXPECT_EQ(lines[1].series.ValueAt(10), -5);
}

TEST(TrendDataTest, without_tags_a_number_column_has_a_line) {
  RecordsetBuilder builder({{"When", DataType::DBTimeStamp},
                            {"Count", DataType::BigInt},
                            {"Exact", DataType::Numeric},
                            {"Note", DataType::WChar}});
  builder.AppendRow({Second(0), std::int64_t{7}, platform::Decimal{"-12.5"}, "x"});
  builder.AppendRow({Second(1), Value(), platform::Decimal{"3"}, "y"});
  const auto lines = LinesOf(builder.Finish());
  ASSERT_EQ(Names(lines), (std::vector<platform::Text>{"Count", "Exact"}));
  EXPECT_EQ(lines[0].series.ValueAt(0), 7);
  EXPECT_TRUE(std::isnan(lines[0].series.ValueAt(1)));
  EXPECT_EQ(lines[1].series.ValueAt(0), -12.5);
  EXPECT_EQ(lines[1].series.ValueAt(1), 3);
}

TEST(TrendDataTest, what_is_stored_goes_with_what_no_double_says) {
  RecordsetBuilder builder({{"When", DataType::DBTimeStamp},
                            {"Count", DataType::BigInt},
                            {"Exact", DataType::Numeric},
                            {"Value", DataType::Double}});
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const auto decimal = [](const char* sDigits) { return platform::Decimal{sDigits}; };
  builder.AppendRow(
      {Second(0), std::int64_t{9'007'199'254'740'993}, decimal("0.12345678901234567890123"), 0.1});
  builder.AppendRow(
      {Second(1), std::numeric_limits<std::int64_t>::min(), decimal("12.50"), -kInfinity});
  builder.AppendRow({Second(2), std::int64_t{100'000}, decimal("9007199254740993"), 1e5});
  builder.AppendRow({Second(3), Value(), decimal(("1" + std::string(400, '0')).c_str()),
                     std::numeric_limits<double>::quiet_NaN()});
  const auto lines = LinesOf(builder.Finish());
  const auto stored = [&](std::size_t line) {
    platform::Text sAll;
    for (std::size_t n = 0; n < 4; ++n) sAll += lines[line].StoredText(n).substr(0, 25) + "|";
    return sAll;
  };
  EXPECT_EQ(stored(0), "9007199254740993|-9223372036854775808|100000||");
  EXPECT_EQ(stored(1), "0.12345678901234567890123||9007199254740993|1000000000000000000000000|");
  EXPECT_EQ(lines[1].StoredText(3).size(), 401U);
  EXPECT_EQ(stored(2), "|-inf||nan|");
  EXPECT_TRUE(std::isnan(lines[1].series.ValueAt(3))) << "no double is that large";
}

TEST(TrendDataTest, a_tag_with_several_numbers_has_a_line_for_each) {
  RecordsetBuilder builder({{"TAG", DataType::WChar},
                            {"Timestamp", DataType::DBTimeStamp},
                            {"Low", DataType::Double},
                            {"High", DataType::Double},
                            {"Unit", DataType::WChar}});
  builder.AppendRow({"a", Second(0), 1.0, 2.0, "bar"});
  const auto lines = LinesOf(builder.Finish());
  EXPECT_EQ(Names(lines), (std::vector<platform::Text>{"a, Low", "a, High"}));
  EXPECT_EQ(lines[0].sUnit, "bar");
  EXPECT_EQ(lines[1].sUnit, "bar");
}

TEST(TrendDataTest, another_text_column_tells_whose_when_times_stand_more_than_once) {
  const auto rows = [](bool bAtOnce) {
    RecordsetBuilder builder({{"Pump", DataType::WChar},
                              {"Timestamp", DataType::DBTimeStamp},
                              {"Value", DataType::Double}});
    for (int n = 0; n < 10; ++n) {
      builder.AppendRow({n % 2 == 0 ? "P1" : "P2", Second(bAtOnce ? n / 2 : n), 1.0 * n});
    }
    return builder.Finish();
  };
  EXPECT_EQ(Names(LinesOf(rows(true))), (std::vector<platform::Text>{"P1", "P2"}));
  EXPECT_EQ(Names(LinesOf(rows(false))), (std::vector<platform::Text>{"Value"}));
}

TEST(TrendDataTest, needs_a_time_and_a_number) {
  const auto columns = [](DataType first, DataType second) {
    return TrendColumns::Of(*RecordsetBuilder({{"A", first}, {"B", second}}).Finish()).has_value();
  };
  EXPECT_TRUE(columns(DataType::DBTimeStamp, DataType::Integer));
  EXPECT_FALSE(columns(DataType::DBTimeStamp, DataType::WChar));
  EXPECT_FALSE(columns(DataType::DBDate, DataType::Double));
}

TEST(TrendDataTest, more_tags_than_can_be_told_apart_are_counted) {
  RecordsetBuilder builder({{"Tag", DataType::WChar},
                            {"Timestamp", DataType::DBTimeStamp},
                            {"Value", DataType::Double}});
  for (int n = 0; n < 100; ++n) builder.AppendRow({"t" + std::to_string(n % 40), Second(n), 1.0});
  const auto rs = builder.Finish();
  TrendReader reader(rs, *TrendColumns::Of(*rs));
  EXPECT_FALSE(reader.Read(1'000));
  EXPECT_EQ(reader.TagsLeftOut(), 8U);
  EXPECT_EQ(reader.TakeLines().size(), TrendReader::kMostLines);
}

TEST(TrendDataTest, rows_without_a_time_and_deleted_ones_are_left_out) {
  RecordsetBuilder builder({{"Timestamp", DataType::DBTimeStamp}, {"Value", DataType::Double}});
  builder.AppendRow({Second(0), 1.0});
  builder.AppendRow({Value(), 2.0});
  builder.AppendRow({Second(2), 3.0});
  const auto rs = builder.Finish();
  rs->Delete(2);
  rs->ValueAt(0, 1, 9.0);
  const auto lines = LinesOf(rs);
  ASSERT_EQ(lines[0].series.Size(), 1U);
  EXPECT_EQ(lines[0].series.ValueAt(0), 9) << "what is edited is what is seen";
}

}  // namespace
}  // namespace orvane::trend
