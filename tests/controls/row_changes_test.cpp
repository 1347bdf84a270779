// Rows stored at a real historian; other connections read what came of it.
#include "controls/statements/row_changes.h"

#include <gtest/gtest.h>

#include <limits>

#include "controls/statements/row_key.h"
#include "tests/controls/edited_table.h"

namespace orvane::controls {
namespace {

using platform::RowIndex;
using platform::RowState;
using platform::Text;
using platform::Value;
using provider::FailureOf;
using tests::EditedTable;

class RowChangesTest : public tests::EditedTablesFixture {};

TEST_F(RowChangesTest, an_edited_cell_is_stored_and_the_rest_of_the_row_left_alone) {
  Make("(id INTEGER PRIMARY KEY, a TEXT, b TEXT)", "(1, 'a', 'b'), (2, 'a', 'b')");
  auto mine = Open();
  m_server->Run("UPDATE P..T SET b = 'theirs' WHERE id = 1");
  mine.rs->ValueAt(0, 1, "mine");
  EXPECT_FALSE(mine.Store(0));
  EXPECT_EQ(Read(), "1|mine|theirs\n2|a|b\n");
  EXPECT_EQ(mine.rs->StateAt(0), RowState::Fetched);
  EXPECT_EQ(mine.rs->OriginalAt(0, 2), Value("theirs"));
}

TEST_F(RowChangesTest, a_value_equal_to_the_original_sends_nothing) {
  Make("(id INTEGER PRIMARY KEY, a TEXT)", "(1, 'a')");
  auto mine = Open();
  m_server->Run("UPDATE P..T SET a = 'theirs'");
  mine.rs->ValueAt(0, 1, "a");
  EXPECT_FALSE(mine.Store(0));
  EXPECT_EQ(Read(), "1|theirs\n");
}

TEST_F(RowChangesTest, what_somebody_else_changed_is_told_and_not_overwritten) {
  Make("(id INTEGER PRIMARY KEY, a TEXT, b TEXT, c TEXT)", "(1, 'a', 'b', 'c')");
  auto mine = Open();
  m_server->Run("UPDATE P..T SET a = 'theirs', c = NULL");
  mine.rs->ValueAt(0, 1, "mine");
  mine.rs->ValueAt(0, 2, "also mine");
  const auto conflict = mine.Store(0);
  ASSERT_TRUE(conflict);
  EXPECT_EQ(Read(), "1|theirs|b|\n");
  EXPECT_EQ(mine.rs->ValueAt(0, 1), Value("mine"));
  EXPECT_EQ(conflict->sSentence,
            "Somebody else has changed this row since it was read: choose which values are to "
            "stay.");
  ASSERT_EQ(conflict->columns.size(), 3U);
  const ColumnConflict& both = conflict->columns[0];
  EXPECT_EQ(both.column, 1);
  EXPECT_EQ(both.vtMine, Value("mine"));
  EXPECT_EQ(both.vtOriginal, Value("a"));
  EXPECT_EQ(both.vtTheirs, Value("theirs"));
  EXPECT_TRUE(both.bMine && both.bTheirs);
  EXPECT_TRUE(conflict->columns[1].bMine && !conflict->columns[1].bTheirs);
  EXPECT_TRUE(!conflict->columns[2].bMine && conflict->columns[2].bTheirs);
}

TEST_F(RowChangesTest, a_conflict_is_settled_value_by_value_and_sent_again) {
  Make("(id INTEGER PRIMARY KEY, a TEXT, b TEXT)", "(1, 'a', 'b')");
  auto mine = Open();
  m_server->Run("UPDATE P..T SET a = 'theirs', b = 'theirs'");
  mine.rs->ValueAt(0, 1, "mine");
  mine.rs->ValueAt(0, 2, "mine");
  const auto conflict = mine.Store(0);
  ASSERT_TRUE(conflict);
  const platform::ColumnIndex kept[] = {2};
  Settle(*mine.rs, 0, *conflict, kept);
  EXPECT_EQ(mine.rs->OriginalAt(0, 1), Value("theirs"));
  EXPECT_FALSE(mine.rs->IsEdited(0, 1));
  EXPECT_FALSE(mine.Store(0));
  EXPECT_EQ(Read(), "1|theirs|mine\n");
}

TEST_F(RowChangesTest, a_row_that_is_gone_is_told) {
  Make("(id INTEGER PRIMARY KEY, a TEXT)", "(1, 'a'), (2, 'b')");
  auto mine = Open();
  m_server->Run("DELETE FROM P..T WHERE id = 1");
  mine.rs->ValueAt(0, 1, "mine");
  const auto conflict = mine.Store(0);
  ASSERT_TRUE(conflict);
  EXPECT_TRUE(conflict->IsGone());
  EXPECT_EQ(conflict->sSentence,
            "Somebody else has deleted this row, or has changed its key, since it was read: "
            "discard what was typed, or add it as a new row.");
  EXPECT_EQ(conflict->columns.size(), 1U);
  Settle(*mine.rs, 0, *conflict, {});
  EXPECT_EQ(mine.rs->StateAt(0), RowState::Deleted);
  EXPECT_TRUE(mine.rs->PendingRows().empty());
  EXPECT_EQ(Read(), "2|b\n");
}

TEST_F(RowChangesTest, a_changed_case_is_a_change_whatever_the_column_compares) {
  Make("(k TEXT COLLATE NOCASE PRIMARY KEY, a TEXT COLLATE NOCASE, b TEXT COLLATE RTRIM)",
       "('Key', 'abc', 'x')");
  auto mine = Open();
  m_server->Run("UPDATE P..T SET a = 'ABC'");
  mine.rs->ValueAt(0, 1, "mine");
  EXPECT_TRUE(mine.Store(0));
  EXPECT_EQ(Read(), "Key|ABC|x\n");
  m_server->Run("UPDATE P..T SET a = 'abc', b = 'x  '");
  mine.rs->CancelUpdate(0);
  mine.rs->ValueAt(0, 2, "mine");
  EXPECT_TRUE(mine.Store(0));
  m_server->Run("UPDATE P..T SET k = 'KEY', b = 'x'");
  EXPECT_TRUE(mine.Store(0));
  EXPECT_EQ(Read(), "KEY|abc|x\n");
}

TEST_F(RowChangesTest, never_changes_two_rows_of_one_key) {
  // The column takes for equal what its only key tells apart.
  m_server->Run("CREATE TABLE P..T (k TEXT COLLATE NOCASE NOT NULL, a TEXT)");
  m_server->Run("CREATE UNIQUE INDEX P..I ON T (k COLLATE BINARY)");
  m_server->Run("INSERT INTO P..T VALUES ('a', '1'), ('A', '1')");
  auto mine = Open();
  mine.rs->ValueAt(1, 1, "mine");
  EXPECT_FALSE(mine.Store(1));
  EXPECT_EQ(Read(), "a|1\nA|mine\n");
}

TEST_F(RowChangesTest, a_key_is_edited_by_its_original_and_read_back_by_the_new_one) {
  Make("(k TEXT PRIMARY KEY, a TEXT)", "('old', 'a'), ('taken', 'b')");
  auto mine = Open();
  mine.rs->ValueAt(0, 0, "new");
  EXPECT_FALSE(mine.Store(0));
  EXPECT_EQ(mine.rs->OriginalAt(0, 0), Value("new"));
  mine.rs->ValueAt(0, 0, "taken");
  EXPECT_TRUE(FailureOf([&] { mine.Store(0); }).starts_with("3806: A rule of the table refuses"));
  EXPECT_EQ(mine.rs->ValueAt(0, 0), Value("taken"));
  EXPECT_EQ(Read(), "new|a\ntaken|b\n");
}

// As another program made them.
constexpr const char* const kTablesThatGiveRowsUp[] = {
    "(k TEXT PRIMARY KEY ON CONFLICT REPLACE, a TEXT)",
    "(k TEXT PRIMARY KEY ON CONFLICT IGNORE, a TEXT)",
    "(k TEXT, a TEXT, PRIMARY KEY (k) on /* so */ conflict replace)",
    "(a TEXT, k TEXT NOT NULL, CONSTRAINT \"a'b\" UNIQUE (k) ON CONFLICT REPLACE)",
    "(k TEXT PRIMARY KEY, a TEXT UNIQUE ON CONFLICT REPLACE)",
    "(k TEXT PRIMARY KEY ON CONFLICT REPLACE, a TEXT, t TIMESTAMP) WITHOUT ROWID"};

TEST_F(RowChangesTest, no_row_is_given_up_for_another_whatever_the_table_says) {
  for (const Text& sTable : kTablesThatGiveRowsUp) {
    tests::Raw(m_server->CatalogFile())
        .Run("DROP TABLE IF EXISTS T; CREATE TABLE T " + sTable +
             "; INSERT INTO T (k, a) VALUES ('x', '1'), ('y', '2')");
    auto mine = Open();
    const platform::ColumnIndex k = mine.rs->FieldAt(0).Name() == "k" ? 0 : 1;
    const RowIndex x = mine.rs->ValueAt(0, k) == Value("x") ? 0 : 1;
    mine.rs->ValueAt(x, k, "y");
    mine.rs->ValueAt(x, 1 - k, "2");
    EXPECT_TRUE(FailureOf([&] { mine.Store(x); }).starts_with("3806: A rule of the table refuses"))
        << sTable;
    const RowIndex row = mine.rs->AddNew();
    mine.rs->ValueAt(row, k, "y");
    mine.rs->ValueAt(row, 1 - k, "2");
    EXPECT_TRUE(
        FailureOf([&] { mine.Store(row); }).starts_with("3806: A rule of the table refuses"))
        << sTable;
    EXPECT_EQ(Read("k, a"), "x|1\ny|2\n") << sTable;
  }
}

TEST_F(RowChangesTest, a_null_becomes_the_default_where_the_table_says_so) {
  tests::Raw(m_server->CatalogFile())
      .Run(
          "CREATE TABLE T (k TEXT PRIMARY KEY, a TEXT NOT NULL ON CONFLICT REPLACE DEFAULT 'd');"
          "INSERT INTO T VALUES ('x', '1')");
  auto mine = Open();
  mine.rs->ValueAt(0, 1, Value());
  EXPECT_FALSE(mine.Store(0));
  EXPECT_EQ(mine.rs->ValueAt(0, 1), Value("d"));
}

TEST_F(RowChangesTest, triggers_go_on_replacing_rows_of_their_own_tables) {
  Make("(k TEXT PRIMARY KEY, a TEXT)", "('x', '1')");
  tests::Raw(m_server->CatalogFile())
      .Run(
          "CREATE TABLE Last (k TEXT PRIMARY KEY, a TEXT); INSERT INTO Last VALUES ('x', '0');"
          "CREATE TRIGGER tr AFTER UPDATE ON T BEGIN INSERT OR REPLACE INTO Last VALUES (new.k, "
          "new.a); END");
  auto mine = Open();
  mine.rs->ValueAt(0, 1, "mine");
  EXPECT_FALSE(mine.Store(0));
  EXPECT_EQ(m_server->Read("SELECT * FROM P..Last"), "x|mine\n");
}

TEST_F(RowChangesTest, a_row_with_a_null_in_its_key_is_refused) {
  Make("(k TEXT PRIMARY KEY, a TEXT)", "(NULL, '1'), (NULL, '1')");
  auto mine = Open();
  mine.rs->ValueAt(0, 1, "mine");
  EXPECT_EQ(FailureOf([&] { mine.Store(0); }),
            "3808: The row cannot be told from others, as its key \"k\" is null: change it by a "
            "statement in the query editor.");
  EXPECT_EQ(Read(), "|1\n|1\n");
}

TEST_F(RowChangesTest, what_the_server_makes_of_a_value_is_shown) {
  Make("(id INTEGER PRIMARY KEY, a INT, b TEXT)", "(1, 1, 'x')");
  // As another program leaves it.
  tests::Raw(m_server->CatalogFile())
      .Run(
          "CREATE TRIGGER tr AFTER UPDATE OF a ON T BEGIN UPDATE T SET b = 'by trigger' WHERE id "
          "= new.id; END");
  auto mine = Open();
  mine.rs->ValueAt(0, 1, "7");
  EXPECT_FALSE(mine.Store(0));
  EXPECT_EQ(mine.rs->ValueAt(0, 1), Value(7));
  EXPECT_EQ(mine.rs->ValueAt(0, 2), Value("by trigger"));
}

TEST_F(RowChangesTest, a_new_row_gets_its_defaults_and_its_key) {
  Make("(id INTEGER PRIMARY KEY, a TEXT DEFAULT 'default', b TEXT DEFAULT 'other')");
  auto mine = Open();
  const RowIndex row = mine.rs->AddNew();
  mine.rs->ValueAt(row, 2, Value());
  EXPECT_FALSE(mine.Store(row));
  EXPECT_EQ(Read("id, a, b IS NULL"), "1|default|1\n");
  EXPECT_EQ(mine.rs->ValueAt(row, 0), Value(std::int64_t{1}));
  EXPECT_EQ(mine.rs->ValueAt(row, 1), Value("default"));
  EXPECT_EQ(mine.rs->StateAt(row), RowState::Fetched);
  // And is an ordinary row from then on.
  mine.rs->ValueAt(row, 1, "edited");
  EXPECT_FALSE(mine.Store(row));
  EXPECT_EQ(Read("a"), "edited\n");
  const RowIndex empty = mine.rs->AddNew();
  EXPECT_FALSE(mine.Store(empty));
  EXPECT_EQ(mine.rs->ValueAt(empty, 0), Value(std::int64_t{2}));
  EXPECT_EQ(mine.rs->ValueAt(empty, 2), Value("other"));
}

TEST_F(RowChangesTest, a_new_row_is_read_back_by_a_key_that_holds_a_time) {
  auto mine = Open("Data");
  const RowIndex row = mine.rs->AddNew();
  const platform::Timestamp time = provider::FixedNow() + std::chrono::microseconds(1);
  mine.rs->ValueAt(row, 0, "T1");
  mine.rs->ValueAt(row, 1, time);
  mine.rs->ValueAt(row, 2, 0.1);
  EXPECT_FALSE(mine.Store(row));
  EXPECT_EQ(mine.rs->ValueAt(row, 1), Value(time));
  EXPECT_EQ(mine.rs->ValueAt(row, 3), Value("Good"));
  EXPECT_EQ(m_server->Read("SELECT * FROM P..Data"), "T1|2024-05-15 12:00:00.000001|0.1|Good\n");
}

TEST_F(RowChangesTest, a_new_row_that_the_table_refuses_stays_as_it_was_typed) {
  Make("(k TEXT PRIMARY KEY, a INT NOT NULL)", "('a', 1)");
  auto mine = Open();
  const RowIndex row = mine.rs->AddNew();
  mine.rs->ValueAt(row, 0, "a");
  mine.rs->ValueAt(row, 1, 5);
  EXPECT_TRUE(FailureOf([&] { mine.Store(row); }).starts_with("3806: "));
  EXPECT_EQ(mine.rs->StateAt(row), RowState::New);
  EXPECT_EQ(mine.rs->ValueAt(row, 1), Value(5));
  EXPECT_EQ(Read(), "a|1\n");
}

TEST_F(RowChangesTest, a_row_is_deleted_only_as_it_was_read) {
  Make("(id INTEGER PRIMARY KEY, a TEXT, b BLOB)", "(1, 'a', x'00'), (2, NULL, NULL)");
  auto mine = Open();
  m_server->Run("UPDATE P..T SET b = x'01' WHERE id = 1");
  mine.rs->Delete(0);
  const auto conflict = mine.Store(0);
  ASSERT_TRUE(conflict);
  EXPECT_EQ(conflict->sSentence,
            "Somebody else has changed this row since it was read: look at what it holds now, "
            "then delete it or keep it.");
  ASSERT_EQ(conflict->columns.size(), 1U);
  EXPECT_EQ(conflict->columns[0].column, 2);
  EXPECT_EQ(Read("count(*)"), "2\n");
  Settle(*mine.rs, 0, *conflict, {}, true);
  EXPECT_EQ(mine.rs->PendingRows(), (std::vector<RowIndex>{0}));
  EXPECT_FALSE(mine.Store(0));
  mine.rs->Delete(1);
  EXPECT_FALSE(mine.Store(1));
  EXPECT_EQ(Read("count(*)"), "0\n");
  EXPECT_TRUE(mine.rs->PendingRows().empty());
  EXPECT_EQ(mine.rs->StateAt(0), RowState::Deleted);
}

TEST_F(RowChangesTest, a_row_that_is_to_be_kept_is_shown_as_it_is_now) {
  Make("(id INTEGER PRIMARY KEY, a TEXT)", "(1, 'a')");
  auto mine = Open();
  m_server->Run("UPDATE P..T SET a = 'theirs'");
  mine.rs->Delete(0);
  const auto conflict = mine.Store(0);
  ASSERT_TRUE(conflict);
  Settle(*mine.rs, 0, *conflict, {});
  EXPECT_EQ(mine.rs->StateAt(0), RowState::Fetched);
  EXPECT_EQ(mine.rs->ValueAt(0, 1), Value("theirs"));
}

TEST_F(RowChangesTest, every_original_finds_its_row_again) {
  const double dTiny = 5e-324;
  m_server->Run(
      "CREATE TABLE P..T (id INTEGER PRIMARY KEY, d DOUBLE, t TIMESTAMP, dt DATE, tm TIME, g GUID, "
      "b BLOB, x TEXT, n DECIMAL(20, 4), l BIGINT, f BOOLEAN, any)");
  auto mine = Open();
  const platform::Guid guid{{1, 2, 3}};
  const std::vector<std::vector<Value>> rows = {
      {1, dTiny, platform::Timestamp(std::chrono::microseconds(-1)),
       platform::Date(std::chrono::year{2024} / 2 / 29), platform::TimeOfDay(1), guid,
       platform::Bytes(2), Text("\0'?", 3), platform::Decimal{"0.1"},
       std::numeric_limits<std::int64_t>::min(), true, "5"},
      {2, -0.0, Value(), Value(), Value(), Value(), platform::Bytes(), "", Value(), Value(),
       Value(), -0.0},
      {3, std::numeric_limits<double>::infinity(), platform::Timestamp(), Value(), Value(), Value(),
       Value(), "NULL", Value(), Value(), false, platform::Bytes(1)}};
  for (const auto& values : rows) {
    const RowIndex row = mine.rs->AddNew();
    for (std::size_t i = 0; i < values.size(); ++i) {
      mine.rs->ValueAt(row, static_cast<platform::ColumnIndex>(i), values[i]);
    }
    ASSERT_FALSE(mine.Store(row));
  }
  auto again = Open();
  for (RowIndex row = 0; row < again.rs->RecordCount(); ++row) {
    for (platform::ColumnIndex column = 1; column < again.rs->FieldCount(); ++column) {
      again.rs->ValueAt(row, column, Value());
      EXPECT_FALSE(again.Store(row)) << row << ' ' << column;
      again.rs->ValueAt(row, column, mine.rs->ValueAt(row, column));
      EXPECT_FALSE(again.Store(row)) << row << ' ' << column;
    }
    again.rs->Delete(row);
    EXPECT_FALSE(again.Store(row)) << row;
  }
  EXPECT_EQ(Read("count(*)"), "0\n");
}

TEST_F(RowChangesTest, a_change_that_was_stored_is_stored_also_when_nothing_can_be_read_back) {
  Make("(id INTEGER PRIMARY KEY, a TEXT)", "(1, 'a')");
  tests::Raw(m_server->CatalogFile())
      .Run("CREATE TRIGGER tr AFTER UPDATE ON T BEGIN UPDATE T SET id = 77 WHERE id = 1; END");
  auto mine = Open();
  mine.rs->ValueAt(0, 1, "mine");
  EXPECT_FALSE(mine.Store(0));
  EXPECT_EQ(mine.rs->OriginalAt(0, 1), Value("mine"));
  EXPECT_EQ(Read(), "77|mine\n");
}

}  // namespace
}  // namespace orvane::controls
