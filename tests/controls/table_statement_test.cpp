#include "controls/statements/table_statement.h"

#include <gtest/gtest.h>

#include "controls/statements/sql_text.h"
#include "controls/statements/table_query.h"

namespace orvane::controls {
namespace {

using platform::Text;

class table_statement : public testing::Test {
 protected:
  table_statement() {
    m_query.Catalog("Machine");
    m_query.Table("Data");
  }
  /// What stands behind the table's name.
  Text Behind(const Viewing& viewing) {
    const Text sBegin = "SELECT *\nFROM \"Machine\"..\"Data\"";
    const Text sText = StatementOf(m_query, viewing);
    EXPECT_TRUE(sText.starts_with(sBegin)) << sText;
    return sText.substr(sBegin.size());
  }
  controls::TableQuery m_query;
  const TimeRange m_lastHour{"*-1h", "*"};
};

TEST_F(table_statement, is_the_query_s_own_where_the_grid_adds_nothing) {
  m_query.Columns().Add("Value");
  m_query.FilterCondition("Value > 1");
  EXPECT_EQ(StatementOf(m_query, {}), m_query.SqlText());
  m_query.SortCriterion(platform::SortCriterion{"Value", true});
  EXPECT_EQ(StatementOf(m_query, {}), m_query.SqlText());
}

TEST_F(table_statement, comes_newest_first_and_leaves_the_query_as_it_is) {
  EXPECT_EQ(Behind({"Timestamp", {}}), "\nORDER BY \"Timestamp\" DESC");
  EXPECT_EQ(m_query.SortCriterion(), std::nullopt);
  EXPECT_EQ(m_query.SqlText(), "SELECT *\nFROM \"Machine\"..\"Data\"");
}

TEST_F(table_statement, has_rows_without_a_time_behind_the_others_also_where_null_is_greatest) {
  const Viewing viewing{"Timestamp", {}, {}, true};
  EXPECT_EQ(Behind(viewing), "\nORDER BY \"Timestamp\" DESC NULLS LAST");
  EXPECT_EQ(Behind({"Timestamp", {}, {{"Tag", false}}, true}), "\nORDER BY \"Tag\" DESC");
  EXPECT_EQ(Behind({"Timestamp", TimeRange{"", ""}, {}, true}),
            "\nORDER BY \"Timestamp\" DESC NULLS LAST");
  // Null is in no range, and any index serves the order.
  EXPECT_EQ(Behind({"Timestamp", m_lastHour, {}, true}),
            "\nWHERE \"Timestamp\" BETWEEN '*-1h' AND '*'\nORDER BY \"Timestamp\" DESC");
  m_query.FilterCondition("Timestamp >= '*-1d'");
  EXPECT_EQ(Behind(viewing), "\nWHERE Timestamp >= '*-1d'\nORDER BY \"Timestamp\" DESC");
  m_query.FilterCondition("Other >= '*-1d'");
  EXPECT_EQ(Behind(viewing), "\nWHERE Other >= '*-1d'\nORDER BY \"Timestamp\" DESC NULLS LAST");
  m_query.SortCriterion(platform::SortCriterion{"Timestamp", false});
  EXPECT_EQ(Behind(viewing), "\nWHERE Other >= '*-1d'\nORDER BY \"Timestamp\" DESC");
}

TEST_F(table_statement, has_the_order_of_the_grid_before_any_other) {
  m_query.SortCriterion(platform::SortCriterion{"Value", true});
  EXPECT_EQ(Behind({"Timestamp", {}, {{"Tag", false}, {"Value", false}}}),
            "\nORDER BY \"Tag\" DESC, \"Value\" DESC");
}

TEST_F(table_statement, keeps_an_order_of_the_query_s_own) {
  m_query.SortCriterion(platform::SortCriterion{"Value", true});
  EXPECT_EQ(Behind({"Timestamp", {}}), "\nORDER BY \"Value\" ASC");
  m_query.SortCriterion(platform::SortCriterion{"", true});
  EXPECT_EQ(Behind({"Timestamp", {}}), "");
}

TEST_F(table_statement, a_range_takes_the_place_of_the_default_filter) {
  m_query.FilterCondition("Timestamp BETWEEN '*-7d' AND '*'");
  m_query.FilterIsDefault(true);
  EXPECT_EQ(Behind({"Timestamp", m_lastHour}),
            "\nWHERE \"Timestamp\" BETWEEN '*-1h' AND '*'\nORDER BY \"Timestamp\" DESC");
  EXPECT_EQ(Behind({"Timestamp", TimeRange()}), "\nORDER BY \"Timestamp\" DESC");
}

TEST_F(table_statement, a_range_narrows_one_that_is_somebody_s_own) {
  m_query.FilterCondition("Timestamp >= '2026-01-01'");
  EXPECT_EQ(Behind({"Timestamp", m_lastHour}),
            "\nWHERE (\nTimestamp >= '2026-01-01'\n) AND (\n"
            "\"Timestamp\" BETWEEN '*-1h' AND '*'\n)\nORDER BY \"Timestamp\" DESC");
  EXPECT_EQ(Behind({"Timestamp", TimeRange()}),
            "\nWHERE Timestamp >= '2026-01-01'\nORDER BY \"Timestamp\" DESC");
}

TEST_F(table_statement, a_range_takes_the_place_of_the_one_that_was_kept) {
  const Text sKept = "\"Timestamp\" >= '*-7d'";
  for (const Text sOwn : {"", "Timestamp >= '2026-01-01'", "Value > 1 -- high"}) {
    m_query.FilterCondition(BothConditions(sOwn, sKept));
    m_query.TimeFilter(sKept);
    EXPECT_EQ(FilterWithin(m_query, {"Timestamp", m_lastHour}),
              BothConditions(sOwn, "\"Timestamp\" BETWEEN '*-1h' AND '*'"));
    EXPECT_EQ(FilterWithin(m_query, {"Timestamp", TimeRange()}), sOwn);
    EXPECT_EQ(FilterWithin(m_query, {"At", m_lastHour}),
              BothConditions(BothConditions(sOwn, sKept), "\"At\" BETWEEN '*-1h' AND '*'"))
        << "a range on another column stays";
  }
}

TEST_F(table_statement, a_range_joins_a_filter_of_the_table_s_own) {
  m_query.FilterCondition("Value > 1 OR Tag = 'a' -- the high ones");
  EXPECT_EQ(Behind({"Timestamp", m_lastHour}),
            "\nWHERE (\nValue > 1 OR Tag = 'a' -- the high ones\n) AND (\n"
            "\"Timestamp\" BETWEEN '*-1h' AND '*'\n)\nORDER BY \"Timestamp\" DESC");
  EXPECT_EQ(Behind({"Timestamp", TimeRange()}),
            "\nWHERE Value > 1 OR Tag = 'a' -- the high ones\nORDER BY \"Timestamp\" DESC");
}

TEST_F(table_statement, without_a_time_column_a_range_is_none) {
  m_query.FilterCondition("Value > 1");
  EXPECT_EQ(Behind({std::nullopt, m_lastHour}), "\nWHERE Value > 1");
}

TEST_F(table_statement, blank_conditions_join_nothing) {
  EXPECT_EQ(BothConditions(" \n", "b"), "b");
  EXPECT_EQ(BothConditions("a", ""), "a");
  EXPECT_EQ(BothConditions("", ""), "");
}

TEST_F(table_statement, only_what_was_joined_is_taken_apart) {
  EXPECT_EQ(WithoutCondition(BothConditions("a", "b"), "b"), "a");
  EXPECT_EQ(WithoutCondition("b", "b"), "");
  for (const Text sOther : {"", "a", "(\na\n) AND (\nc\n)", "(\n) AND (\nb\n)", "x) AND (\nb\n)"}) {
    EXPECT_EQ(WithoutCondition(sOther, "b"), sOther);
  }
}

}  // namespace
}  // namespace orvane::controls
