#include "controls/statements/column_names.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/controls/failure_of.h"

namespace orvane::controls {
namespace {

class column_names : public testing::Test {
 protected:
  int m_nChanges = 0;
  ColumnNames m_columns{[this] { ++m_nChanges; }};
};

TEST_F(column_names, keep_the_order_of_adding_and_count_from_1) {
  m_columns.Add("Value");
  m_columns.Add("Timestamp");
  EXPECT_EQ(m_columns.Count(), 2);
  EXPECT_EQ(m_columns.Item(1), "Value");
  EXPECT_EQ(m_columns.Item(2), "Timestamp");
}

TEST_F(column_names, are_unique_as_written) {
  m_columns.Add("Value");
  m_columns.Add("value");
  m_columns.Add("");
  EXPECT_EQ(m_columns.Count(), 3);
  EXPECT_EQ(FailureNumberOf([&] { m_columns.Add("Value"); }), 457);
  EXPECT_EQ(m_columns.Count(), 3);
  EXPECT_EQ(SentenceOf([&] { m_columns.Add("Value"); }),
            "The column \"Value\" is already in the query; each column can be selected once.");
}

TEST_F(column_names, a_position_outside_the_list_fails_with_9) {
  m_columns.Add("Value");
  for (const platform::Long lIndex : {0, 2, -1, std::numeric_limits<platform::Long>::max(),
                                      std::numeric_limits<platform::Long>::min()}) {
    EXPECT_EQ(FailureNumberOf([&] { static_cast<void>(m_columns.Item(lIndex)); }), 9) << lIndex;
    EXPECT_EQ(FailureNumberOf([&] { m_columns.Remove(lIndex); }), 9) << lIndex;
  }
  EXPECT_EQ(m_columns.Count(), 1);
}

TEST_F(column_names, a_removed_name_can_be_added_again) {
  m_columns.Add("a");
  m_columns.Add("b");
  m_columns.Add("c");
  m_columns.Remove(2);
  EXPECT_EQ(m_columns.Item(2), "c");
  m_columns.Add("b");
  EXPECT_EQ(m_columns.Item(3), "b");
  m_columns.Clear();
  EXPECT_EQ(m_columns.Count(), 0);
  m_columns.Add("a");
  EXPECT_EQ(m_columns.Count(), 1);
}

TEST_F(column_names, every_change_is_told_once_and_a_failed_one_not_at_all) {
  m_columns.Add("a");
  EXPECT_EQ(m_nChanges, 1);
  m_columns.Remove(1);
  EXPECT_EQ(m_nChanges, 2);
  m_columns.Clear();
  EXPECT_EQ(m_nChanges, 3);
  m_columns.Add("a");
  EXPECT_EQ(m_nChanges, 4);
  EXPECT_EQ(FailureNumberOf([&] { m_columns.Add("a"); }), 457);
  EXPECT_EQ(FailureNumberOf([&] { m_columns.Remove(2); }), 9);
  EXPECT_EQ(m_nChanges, 4);
}

TEST_F(column_names, restoring_tells_nobody) {
  m_columns.Restore({"a", "b"});
  EXPECT_EQ(m_nChanges, 0);
  EXPECT_EQ(m_columns.Count(), 2);
  EXPECT_EQ(FailureNumberOf([&] { m_columns.Add("b"); }), 457);
}

}  // namespace
}  // namespace orvane::controls
