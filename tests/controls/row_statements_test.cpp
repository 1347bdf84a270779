// The statements by which rows are changed, as a real historian runs them.
#include "controls/statements/row_statements.h"

#include "tests/controls/edited_table.h"

namespace orvane::controls {
namespace {

using platform::RowIndex;
using platform::RowState;
using platform::Text;
using platform::Value;
using tests::EditedTable;

class RowStatementsTest : public tests::EditedTablesFixture {};

TEST_F(RowStatementsTest, a_row_of_very_many_columns_is_stored_and_deleted) {
  Text sColumns;
  for (int i = 0; i < 1900; ++i) sColumns += ", c" + std::to_string(i) + " TEXT DEFAULT 'd'";
  Make("(id INTEGER PRIMARY KEY" + sColumns + ")");
  auto mine = Open();
  const RowIndex row = mine.rs->AddNew();
  ASSERT_FALSE(mine.Store(row));
  for (platform::ColumnIndex column = 1; column <= 1900; ++column) {
    mine.rs->ValueAt(row, column, "mine");
  }
  EXPECT_FALSE(mine.Store(row));
  EXPECT_EQ(Read("c1899"), "mine\n");
  mine.rs->Delete(row);
  EXPECT_FALSE(mine.Store(row));
  EXPECT_EQ(Read("count(*)"), "0\n");
}

TEST_F(RowStatementsTest, a_row_is_found_by_the_index_of_its_key) {
  m_server->Run("CREATE TABLE P..T (k TEXT COLLATE NOCASE NOT NULL PRIMARY KEY, a TEXT)");
  m_server->Run("INSERT INTO P..T VALUES ('k', 'a')");
  m_server->Run("INSERT INTO P..Data (Tag, Timestamp, Value) VALUES ('T1', '*', 1)");
  for (const char* const sTable : {"T", "Data"}) {
    const auto mine = Open(sTable);
    const platform::ColumnIndex changed[] = {mine.rs->FieldCount() - 1};
    RowStatement deletion{DeleteEachRow(mine.table, *mine.rs), {}};
    for (const Value& vtValue : ValuesOfDeleted(mine.table, *mine.rs, 0)) {
      deletion.values.push_back({platform::DataType::Empty, vtValue});
    }
    for (const RowStatement& statement : {UpdateRow(mine.table, *mine.rs, 0, changed), deletion}) {
      const auto command = m_server->CreateCommand();
      command->ActiveConnection(mine.cn);
      command->CommandText("EXPLAIN QUERY PLAN " + statement.sSql);
      for (const TypedValue& value : statement.values) {
        command->Parameters().Append(command->CreateParameter(
            {}, value.type, platform::ParameterDirection::Input, 0, value.vtValue));
      }
      const Text sPlan = provider::Rows(*command->Execute());
      EXPECT_NE(sPlan.find("SEARCH"), Text::npos) << sPlan;
      EXPECT_EQ(sPlan.find("SCAN"), Text::npos) << sPlan;
    }
  }
}

TEST_F(RowStatementsTest, names_with_a_prefix_lead_to_the_same_rows) {
  Make("(id INTEGER PRIMARY KEY, a TEXT)", "(1, 'a')");
  auto mine = Open("Orv_T", "Identifier Prefixes = True;");
  ASSERT_EQ(mine.table.key.size(), 1U);
  mine.rs->ValueAt(0, 1, "mine");
  EXPECT_FALSE(mine.Store(0));
  EXPECT_EQ(mine.rs->StateAt(0), RowState::Fetched);
  EXPECT_EQ(Read(), "1|mine\n");
}

TEST_F(RowStatementsTest, statements_hold_no_values) {
  Make("(id INTEGER PRIMARY KEY, a TEXT)", "(1, 'secret')");
  auto mine = Open();
  mine.rs->ValueAt(0, 1, "also secret");
  const platform::ColumnIndex columns[] = {1};
  const RowStatement update = UpdateRow(mine.table, *mine.rs, 0, columns);
  EXPECT_EQ(update.sSql,
            "UPDATE \"P\"..\"T\" SET \"a\" = ? WHERE \"id\" = ? AND \"a\" = ? COLLATE BINARY");
  ASSERT_EQ(update.values.size(), 3U);
  EXPECT_EQ(update.values[1].vtValue, Value(std::int64_t{1}));
  EXPECT_EQ(update.values[1].type, platform::DataType::BigInt);
  EXPECT_EQ(DeleteEachRow(mine.table, *mine.rs),
            "DELETE FROM \"P\"..\"T\" WHERE \"id\" = ? AND \"id\" IS ? COLLATE BINARY AND "
            "\"a\" IS ? COLLATE BINARY");
}

TEST_F(RowStatementsTest, names_of_any_characters_are_quoted) {
  m_server->Run("CREATE TABLE P..\"T \"\"?'\" (\"k \"\"?\" INTEGER PRIMARY KEY, \"sel?ect\" TEXT)");
  auto mine = Open("T \"?'");
  const RowIndex row = mine.rs->AddNew();
  mine.rs->ValueAt(row, 1, "'");
  EXPECT_FALSE(mine.Store(row));
  mine.rs->ValueAt(row, 1, "?");
  EXPECT_FALSE(mine.Store(row));
  EXPECT_EQ(m_server->Read("SELECT * FROM P..\"T \"\"?'\""), "1|?\n");
}

TEST_F(RowStatementsTest, only_columns_of_the_table_are_sent_and_read) {
  Make("(id INTEGER PRIMARY KEY, a INT)", "(1, 5)");
  EditedTable mine(m_server, "T", {}, "SELECT a * 2 AS twice, a AS b, id FROM P..T",
                   {"", "a", "id"});
  mine.rs->ValueAt(0, 1, 7);
  EXPECT_FALSE(mine.Store(0));
  EXPECT_EQ(Read(), "1|7\n");
  EXPECT_EQ(mine.rs->ValueAt(0, 0), Value(std::int64_t{10}));
  EXPECT_EQ(mine.rs->ValueAt(0, 1), Value(7));
  mine.rs->Delete(0);
  EXPECT_FALSE(mine.Store(0));
}

}  // namespace
}  // namespace orvane::controls
