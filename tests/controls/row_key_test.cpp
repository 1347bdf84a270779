#include "controls/statements/row_key.h"

#include <gtest/gtest.h>

#include "tests/controls/historian_server.h"

namespace orvane::controls {
namespace {

using platform::Text;

class RowKeyTest : public testing::Test {
 protected:
  // The key of a table made so, its columns parted by blanks; or why it has none.
  Text KeyOf(const Text& sTable) {
    m_server->Run("CREATE TABLE P..T " + sTable);
    return KeyNow();
  }
  Text KeyNow(const Text& sTable = "T") {
    const RowKey key = RowKeyOf(*m_server->Connect(), "P", sTable);
    EXPECT_NE(key.columns.empty(), key.sWhyNot.empty());
    Text sKey = key.sWhyNot;
    for (const Text& sColumn : key.columns) sKey += (sKey.empty() ? "" : " ") + sColumn;
    return sKey;
  }

  std::shared_ptr<tests::HistorianServer> m_server = tests::HistorianServer::Make();
};

const Text kNoKey =
    "These rows can only be looked at: the table has no key by which one row is told from "
    "another; give it a primary key.";

TEST_F(RowKeyTest, is_the_primary_key_in_its_order) {
  EXPECT_EQ(KeyOf("(a INT NOT NULL UNIQUE, b INT, c INT, PRIMARY KEY (c, b))"), "c b");
  EXPECT_EQ(KeyNow("Data"), "Tag Timestamp");
}

TEST_F(RowKeyTest, else_the_shortest_unique_key_that_is_never_null) {
  EXPECT_EQ(KeyOf("(a INT UNIQUE, b INT NOT NULL, c TEXT NOT NULL, d INT NOT NULL UNIQUE, "
                  "UNIQUE (b, c))"),
            "d");
}

TEST_F(RowKeyTest, columns_that_may_be_null_name_no_row) {
  EXPECT_EQ(KeyOf("(a INT UNIQUE, b INT NOT NULL, UNIQUE (a, b))"), kNoKey);
}

TEST_F(RowKeyTest, indexes_of_some_rows_or_of_expressions_name_no_row) {
  m_server->Run("CREATE TABLE P..T (a INT NOT NULL, b INT NOT NULL)");
  m_server->Run("CREATE UNIQUE INDEX P..Few ON T (a) WHERE b > 5");
  m_server->Run("CREATE UNIQUE INDEX P..Worked ON T (abs(a))");
  m_server->Run("CREATE INDEX P..Many ON T (b)");
  EXPECT_EQ(KeyNow(), kNoKey);
  m_server->Run("CREATE UNIQUE INDEX P..Both ON T (b, a)");
  EXPECT_EQ(KeyNow(), "b a");
}

TEST_F(RowKeyTest, columns_that_the_table_computes_take_no_value) {
  m_server->Run("CREATE TABLE P..T (a INT PRIMARY KEY, b INT AS (a + 1), c INT AS (a) STORED, d)");
  EXPECT_EQ(RowKeyOf(*m_server->Connect(), "P", "T").computed, (std::set<Text>{"b", "c"}));
}

TEST_F(RowKeyTest, views_and_tables_of_the_historian_are_to_be_looked_at) {
  m_server->Run("CREATE VIEW P..V AS SELECT * FROM P..Tags");
  EXPECT_EQ(KeyNow("V"),
            "These rows can only be looked at: they are those of a view; edit its tables.");
  EXPECT_EQ(KeyNow("Nothing"),
            "These rows can only be looked at: they are not those of one table.");
  const RowKey key = RowKeyOf(*m_server->Connect(), "Orvane", "Historians");
  EXPECT_EQ(key.sWhyNot,
            "These rows can only be looked at: the historian keeps this table itself.");
}

}  // namespace
}  // namespace orvane::controls
