#include "access/default_filter.h"

#include <gtest/gtest.h>

namespace orvane::access {
namespace {

TEST(default_filter, both_times_make_a_range) {
  EXPECT_EQ(FormDefaultFilterCondition("Plant1", "Data", "S", "E"),
            "Timestamp BETWEEN 'S' AND 'E'");
}

TEST(default_filter, a_start_alone_is_a_lower_limit) {
  EXPECT_EQ(FormDefaultFilterCondition("Plant1", "Orv_Data2", "S", ""), "Timestamp >= 'S'");
}

TEST(default_filter, an_end_alone_is_an_upper_limit) {
  EXPECT_EQ(FormDefaultFilterCondition("Plant1", "Data", "", "E"), "Timestamp <= 'E'");
}

TEST(default_filter, without_times_there_is_none) {
  EXPECT_EQ(FormDefaultFilterCondition("Plant1", "Data", "", ""), "");
}

TEST(default_filter, the_system_catalog_gets_none) {
  EXPECT_EQ(FormDefaultFilterCondition("Orvane", "Data", "S", "E"), "");
  EXPECT_EQ(FormDefaultFilterCondition("Orv_Orvane", "Data", "S", "E"), "");
}

TEST(default_filter, only_the_time_stamped_tables_get_one) {
  EXPECT_EQ(FormDefaultFilterCondition("Plant1", "data", "S", "E"), "");
  EXPECT_EQ(FormDefaultFilterCondition("Plant1", "Data3", "S", "E"), "");
  EXPECT_EQ(FormDefaultFilterCondition("Plant1", "Orv_Orv_Data", "S", "E"), "");
  EXPECT_NE(FormDefaultFilterCondition("Plant1", "Data2", "S", "E"), "");
  EXPECT_NE(FormDefaultFilterCondition("Plant1", "Orv_Data", "S", "E"), "");
}

TEST(default_filter, an_unnamed_catalog_gets_none) {
  EXPECT_EQ(FormDefaultFilterCondition("", "Data", "S", "E"), "");
}

TEST(default_filter, another_case_of_the_system_catalog_is_another_catalog) {
  EXPECT_EQ(FormDefaultFilterCondition("orvane", "Data", "S", ""), "Timestamp >= 'S'");
}

TEST(default_filter, the_times_go_in_unescaped) {
  EXPECT_EQ(FormDefaultFilterCondition("P", "Data", "it's", ""), "Timestamp >= 'it's'");
}

TEST(default_filter, a_name_matches_itself_and_itself_behind_the_prefix) {
  EXPECT_TRUE(MatchesName("Data", "Data"));
  EXPECT_TRUE(MatchesName("Orv_Data", "Data"));
  EXPECT_FALSE(MatchesName("orv_Data", "Data"));
  EXPECT_FALSE(MatchesName("DATA", "Data"));
  EXPECT_FALSE(MatchesName("Data ", "Data"));
}

}  // namespace
}  // namespace orvane::access
