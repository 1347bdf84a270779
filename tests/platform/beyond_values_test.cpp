#include "platform/beyond_values.h"

#include <gtest/gtest.h>

namespace orvane::platform {
namespace {

TEST(beyond_values, what_a_server_writes_is_taken_as_it_is) {
  const std::pair<DataType, const char*> cases[] = {
      {DataType::Numeric, "NaN"},
      {DataType::Numeric, "Infinity"},
      {DataType::Numeric, "-Infinity"},
      {DataType::DBDate, "infinity"},
      {DataType::DBDate, "-infinity"},
      {DataType::DBDate, "0044-03-15 BC"},
      {DataType::DBDate, "0001-02-29 BC"},
      {DataType::DBDate, "4713-01-01 BC"},
      {DataType::DBDate, "10000-01-01"},
      {DataType::DBDate, "5874897-12-31"},
      {DataType::WallTime, "infinity"},
      {DataType::WallTime, "20000-02-29 12:00:00.5"},
      {DataType::WallTime, "0044-03-15 00:00:00 BC"},
      {DataType::DBTimeStamp, "-infinity"},
      {DataType::DBTimeStamp, "0044-03-15 00:00:00.000001+00 BC"},
      {DataType::DBTimeStamp, "294276-12-31 23:59:59.999999+00"},
  };
  for (const auto& [type, sText] : cases) {
    EXPECT_EQ(ReadBeyond(type, sText), Value(Text(sText))) << sText;
  }
  EXPECT_EQ(ReadBeyond(DataType::Numeric, "nan"), Value("NaN"));
  EXPECT_EQ(ReadBeyond(DataType::DBTimeStamp, "Infinity"), Value("infinity"));
  EXPECT_EQ(ReadBeyond(DataType::DBTime, "24:00:00"), Value(TimeOfDay(std::chrono::hours(24))));
}

TEST(beyond_values, nothing_else_is) {
  const std::pair<DataType, const char*> cases[] = {
      {DataType::Numeric, "1"},
      {DataType::Numeric, ""},
      {DataType::Numeric, "inf"},
      {DataType::Double, "NaN"},
      {DataType::WChar, "infinity"},
      {DataType::DBDate, ""},
      {DataType::DBDate, " BC"},
      {DataType::DBDate, "2024-05-31"},
      {DataType::DBDate, "NaN"},
      {DataType::DBDate, "0001-02-30 BC"},
      {DataType::DBDate, "0002-02-29 BC"},
      {DataType::DBDate, "0000-01-01 BC"},
      {DataType::DBDate, "10000-13-01"},
      {DataType::DBDate, "010000-01-01"},
      {DataType::DBDate, "99999999999-01-01"},
      {DataType::DBDate, "10000-1-01"},
      {DataType::DBDate, "-0044-03-15"},
      {DataType::DBDate, "10000-01-01 00:00:00"},
      {DataType::WallTime, "10000-01-01"},
      {DataType::WallTime, "10000-01-01 "},
      {DataType::WallTime, "10000-01-01 24:00:00"},
      {DataType::WallTime, "10000-01-01 12:00:00+00"},
      {DataType::DBTimeStamp, "10000-01-01 12:00:00"},
      {DataType::DBTimeStamp, "10000-01-01+00"},
      {DataType::DBTimeStamp, "10000-01-01 12:00:00+01"},
      {DataType::DBTimeStamp, "+00"},
      {DataType::DBTime, "24:00:01"},
      {DataType::DBTime, "infinity"},
  };
  for (const auto& [type, sText] : cases) {
    EXPECT_EQ(ReadBeyond(type, sText), std::nullopt) << sText;
  }
}

}  // namespace
}  // namespace orvane::platform
