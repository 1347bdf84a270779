// Several rows deleted together at a real historian: all of them or none.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <random>
#include <thread>

#include "tests/controls/edited_table.h"

namespace orvane::controls {
namespace {

using platform::RowIndex;
using platform::RowState;
using platform::Text;
using platform::Value;
using tests::EditedTable;

class RowDeletionTest : public tests::EditedTablesFixture {
 protected:
  /// Deletes the first rows, and accepts it when all went.
  static DeletedRows Delete(const EditedTable& mine, RowIndex count) {
    std::vector<RowIndex> rows;
    for (RowIndex row = 0; row < count; ++row) {
      mine.rs->Delete(row);
      rows.push_back(row);
    }
    return RowChanges(mine.cn, mine.objects, mine.table, 10).Delete(*mine.rs, rows);
  }
};

TEST_F(RowDeletionTest, rows_with_values_of_every_kind_go_together) {
  Make(
      "(id INTEGER PRIMARY KEY, a TEXT COLLATE NOCASE, r REAL, t TIMESTAMP, d DATE, c TIME, "
      "b BLOB, g GUID, n NUMERIC, l BOOLEAN, o)",
      "(1, 'a', 0.1, '2026-01-02 03:04:05.123456', '2026-01-02', '03:04:05', x'00ff', "
      "'{00112233-4455-6677-8899-AABBCCDDEEFF}', 12.5, 1, 'text'), "
      "(2, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL), "
      "(3, '', -0.0, '1970-01-01', '1969-12-31', '00:00:00', x'', NULL, -3, 0, 4), "
      "(4, 'stays', 1, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL)");
  const auto mine = Open();
  const auto deleted = Delete(mine, 3);
  EXPECT_FALSE(deleted.refused) << deleted.sWhyNot;
  EXPECT_EQ(Read("id"), "4\n");
}

TEST_F(RowDeletionTest, rows_are_told_apart_by_keys_of_several_columns) {
  Make("(a TEXT COLLATE NOCASE, t TIMESTAMP, v, PRIMARY KEY (a, t))",
       "('x', '2026-01-01', 1), ('x', '2026-01-02', 2), ('y', '2026-01-01', 3)");
  const auto mine = Open();
  EXPECT_FALSE(Delete(mine, 2).refused);
  EXPECT_EQ(Read("v"), "3\n");
}

TEST_F(RowDeletionTest, one_that_somebody_else_changed_keeps_all) {
  Make("(id INTEGER PRIMARY KEY, a TEXT COLLATE NOCASE)", "(1, 'a'), (2, 'b'), (3, 'c')");
  const auto mine = Open();
  m_server->Run("UPDATE P..T SET a = 'B' WHERE id = 2");
  const auto deleted = Delete(mine, 3);
  EXPECT_EQ(deleted.refused, 1);
  ASSERT_TRUE(deleted.conflict);
  EXPECT_EQ(deleted.conflict->theirs[1], Value("B"));
  EXPECT_EQ(Read("id"), "1\n2\n3\n");
  EXPECT_EQ(mine.rs->StateAt(0), RowState::Deleted) << "still to be sent";
}

TEST_F(RowDeletionTest, one_that_is_gone_keeps_the_others) {
  Make("(id INTEGER PRIMARY KEY, a TEXT)", "(1, 'a'), (2, 'b')");
  const auto mine = Open();
  m_server->Run("DELETE FROM P..T WHERE id = 1");
  const auto deleted = Delete(mine, 2);
  EXPECT_EQ(deleted.refused, 0);
  ASSERT_TRUE(deleted.conflict);
  EXPECT_TRUE(deleted.conflict->IsGone());
  EXPECT_EQ(Read("id"), "2\n");
}

TEST_F(RowDeletionTest, one_that_a_rule_keeps_keeps_all) {
  Make("(id INTEGER PRIMARY KEY, a TEXT)", "(1, 'a'), (2, 'b'), (3, 'c')");
  tests::Raw(m_server->CatalogFile())
      .Run(
          "CREATE TRIGGER Guard BEFORE DELETE ON T WHEN OLD.id = 2 BEGIN SELECT RAISE(ABORT, "
          "'kept'); END");
  const auto mine = Open();
  const auto deleted = Delete(mine, 3);
  EXPECT_EQ(deleted.refused, 1);
  EXPECT_FALSE(deleted.conflict);
  EXPECT_NE(deleted.sWhyNot, "");
  EXPECT_EQ(Read("id"), "1\n2\n3\n");
}

TEST_F(RowDeletionTest, a_row_that_no_value_names_keeps_all) {
  Make("(a TEXT UNIQUE NOT NULL, t TIMESTAMP)", "('x', NULL), ('y', NULL)");
  tests::Raw(m_server->CatalogFile())
      .Run("PRAGMA ignore_check_constraints = ON; UPDATE T SET t = 'no time' WHERE a = 'y'");
  const auto mine = Open();
  const auto deleted = Delete(mine, 2);
  EXPECT_EQ(deleted.refused, 1);
  EXPECT_EQ(Read("a"), "x\ny\n");
}

TEST_F(RowDeletionTest, a_killed_program_has_deleted_all_rows_or_none) {
  constexpr int kKills = 8;
  constexpr RowIndex kRows = 1'000;
  std::mt19937 random(12);
  Make("(id INTEGER PRIMARY KEY, a TEXT)");
  for (int nKill = 0; nKill < kKills; ++nKill) {
    m_server->Run("DELETE FROM P..T");
    m_server->Run(
        "INSERT INTO P..T WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < "
        "1000) SELECT i, 'row' FROM n");
    int started[2];
    ASSERT_EQ(pipe(started), 0);
    const pid_t child = fork();
    if (child == 0) {
      try {
        const EditedTable mine(m_server, "T");
        if (write(started[1], "x", 1) != 1) _exit(1);
        Delete(mine, kRows);
        pause();
      } catch (...) {
      }
      _exit(1);
    }
    close(started[1]);
    char c = 0;
    ASSERT_EQ(read(started[0], &c, 1), 1);
    close(started[0]);
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 40'000));
    kill(child, SIGKILL);
    int nStatus = 0;
    waitpid(child, &nStatus, 0);
    ASSERT_TRUE(WIFSIGNALED(nStatus));
    const Text sCount = Read("count(*)");
    EXPECT_TRUE(sCount == "0\n" || sCount == "1000\n") << sCount;
  }
}

}  // namespace
}  // namespace orvane::controls
