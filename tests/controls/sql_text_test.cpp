#include "controls/statements/sql_text.h"

#include <gtest/gtest.h>

namespace orvane::controls {
namespace {

using platform::SortCriterion;
using platform::Text;

class sql_text : public testing::Test {
 protected:
  Text Compose() const {
    return ComposeSelect({m_sCatalog, m_sTable, m_columns, m_sFilter, m_sort});
  }
  Text m_sCatalog = "Plant1";
  Text m_sTable = "Data";
  std::vector<Text> m_columns;
  Text m_sFilter;
  std::vector<SortCriterion> m_sort;
};

TEST_F(sql_text, without_chosen_columns_all_are_selected) {
  EXPECT_EQ(Compose(), "SELECT *\nFROM \"Plant1\"..\"Data\"");
}

TEST_F(sql_text, has_a_clause_a_line_in_the_order_select_from_where_order_by) {
  m_columns = {"Timestamp", "Value"};
  m_sFilter = "Timestamp BETWEEN '*-1h' AND '*'";
  m_sort = {SortCriterion{"Timestamp", true}};
  EXPECT_EQ(Compose(),
            "SELECT \"Timestamp\", \"Value\"\n"
            "FROM \"Plant1\"..\"Data\"\n"
            "WHERE Timestamp BETWEEN '*-1h' AND '*'\n"
            "ORDER BY \"Timestamp\" ASC");
}

TEST_F(sql_text, a_descending_sort_says_so) {
  m_sort = {SortCriterion{"Value", false}};
  EXPECT_EQ(Compose(), "SELECT *\nFROM \"Plant1\"..\"Data\"\nORDER BY \"Value\" DESC");
}

TEST_F(sql_text, a_sort_without_a_column_is_no_sort) {
  for (const bool bAscending : {true, false}) {
    m_sort = {SortCriterion{"", bAscending}};
    EXPECT_EQ(Compose(), "SELECT *\nFROM \"Plant1\"..\"Data\"");
  }
  m_sort = {SortCriterion{" ", true}};
  EXPECT_EQ(Compose(), "SELECT *\nFROM \"Plant1\"..\"Data\"\nORDER BY \" \" ASC");
}

TEST_F(sql_text, without_a_catalog_the_table_stands_alone) {
  m_sCatalog = "";
  EXPECT_EQ(Compose(), "SELECT *\nFROM \"Data\"");
}

TEST_F(sql_text, a_filter_of_blanks_is_no_filter) {
  m_sFilter = " \t\r\n";
  EXPECT_EQ(Compose(), "SELECT *\nFROM \"Plant1\"..\"Data\"");
}

TEST_F(sql_text, a_filter_stands_as_it_is_written) {
  m_sFilter = "  a = 'it''s' OR b > 1\n AND c ";
  EXPECT_EQ(Compose(),
            "SELECT *\nFROM \"Plant1\"..\"Data\"\nWHERE   a = 'it''s' OR b > 1\n AND c ");
}

TEST_F(sql_text, a_line_comment_in_the_filter_does_not_swallow_the_order) {
  m_sFilter = "Value > 1 -- only the high ones";
  m_sort = {SortCriterion{"Value", true}};
  EXPECT_EQ(Compose(),
            "SELECT *\nFROM \"Plant1\"..\"Data\"\n"
            "WHERE Value > 1 -- only the high ones\n"
            "ORDER BY \"Value\" ASC");
}

TEST_F(sql_text, names_are_quoted_and_their_quotes_doubled) {
  m_sCatalog = "My \"plant\"";
  m_sTable = "Größe, 温度";
  m_columns = {"a\"", "select", "two\nlines"};
  m_sort = {SortCriterion{"a\"", true}};
  EXPECT_EQ(Compose(),
            "SELECT \"a\"\"\", \"select\", \"two\nlines\"\n"
            "FROM \"My \"\"plant\"\"\"..\"Größe, 温度\"\n"
            "ORDER BY \"a\"\"\" ASC");
}

TEST_F(sql_text, an_order_stands_around_a_statement) {
  EXPECT_EQ(ComposeWithin("SELECT 1 -- one", "", {{"a", false}, {"b", true}}),
            "SELECT *\nFROM (\nSELECT 1 -- one\n)\nORDER BY \"a\" DESC, \"b\" ASC");
  EXPECT_EQ(ComposeWithin("SELECT 1;", "c", {{"a", true}}),
            "SELECT *\nFROM (\nSELECT 1\n)\nWHERE c\nORDER BY \"a\" ASC");
}

TEST_F(sql_text, a_condition_stands_around_a_statement_without_its_end) {
  const auto inner = [](const char* sSql) {
    const platform::Text sAll = ComposeWithin(sSql, "c");
    EXPECT_TRUE(sAll.starts_with("SELECT *\nFROM (\n")) << sAll;
    EXPECT_TRUE(sAll.ends_with("\n)\nWHERE c")) << sAll;
    return sAll.substr(16, sAll.size() - 16 - 10);
  };
  EXPECT_EQ(inner("SELECT 1"), "SELECT 1");
  EXPECT_EQ(inner("SELECT 1 ;\n"), "SELECT 1 \n");
  EXPECT_EQ(inner("SELECT 1; -- one; two"), "SELECT 1 -- one; two");
  EXPECT_EQ(inner("SELECT 1; /* ; */ "), "SELECT 1 /* ; */ ");
  EXPECT_EQ(inner("SELECT ';'"), "SELECT ';'");
  EXPECT_EQ(inner("SELECT \";\", 'it''s;'"), "SELECT \";\", 'it''s;'");
  EXPECT_EQ(inner("SELECT 1 -- one;"), "SELECT 1 -- one;");
  EXPECT_EQ(inner("SELECT 1; SELECT 2"), "SELECT 1; SELECT 2") << "the server refuses that";
  EXPECT_EQ(inner("SELECT ';"), "SELECT ';");
  EXPECT_EQ(inner("SELECT 1 /*;"), "SELECT 1 /*;");
  EXPECT_EQ(inner(""), "");
}

}  // namespace
}  // namespace orvane::controls
