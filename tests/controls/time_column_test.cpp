#include "controls/statements/time_column.h"

#include <gtest/gtest.h>

#include "tests/controls/schema_connection.h"

namespace orvane::controls {
namespace {

using platform::DataType;
using platform::Value;

TEST(TimeColumnTest, is_the_column_timestamp_whatever_stands_before_it) {
  SchemaConnection cn({{"Created", DataType::DBTimeStamp},
                       {"Value", DataType::Double},
                       {"Timestamp", DataType::DBTimeStamp}});
  EXPECT_EQ(TimeColumnOf(cn, "Machine", "Data").name, "Timestamp");
  EXPECT_EQ(cn.asked, (std::vector<Value>{"Machine", Value(), "Data"}));
}

TEST(TimeColumnTest, is_otherwise_the_first_of_dates_with_times) {
  SchemaConnection cn({{"Timestamp", DataType::WChar},
                       {"Day", DataType::DBDate},
                       {"Created", DataType::DBTimeStamp},
                       {"Seen", DataType::DBTimeStamp}});
  EXPECT_EQ(TimeColumnOf(cn, "", "Data").name, "Created");
  EXPECT_EQ(cn.asked, (std::vector<Value>{Value(), Value(), "Data"}));
}

TEST(TimeColumnTest, is_none_where_nothing_tells_when) {
  SchemaConnection cn({{"Timestamp", DataType::Double}, {"Tag", DataType::WChar}});
  EXPECT_EQ(TimeColumnOf(cn, "Machine", "Data").name, std::nullopt);
  FakeConnection silent;
  EXPECT_EQ(TimeColumnOf(silent, "Machine", "Data").name, std::nullopt);
}

TEST(TimeColumnTest, rows_have_it_by_the_same_rule) {
  FakeRecordset rs(0, {});
  EXPECT_EQ(TimeColumnOf(rs), std::nullopt);
  rs.Column("Value", DataType::Double).Column("Created", DataType::DBTimeStamp);
  EXPECT_EQ(TimeColumnOf(rs), 1);
  rs.Column("Timestamp", DataType::DBTimeStamp);
  EXPECT_EQ(TimeColumnOf(rs), 2);
}

}  // namespace
}  // namespace orvane::controls
