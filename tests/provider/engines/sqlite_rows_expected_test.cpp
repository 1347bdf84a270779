// Statements that must change a given number of rows: any other number changes nothing.
#include "tests/fakes/killed_program.h"
#include "tests/provider/engines/database_folder.h"

namespace orvane::provider::engines {
namespace {

using tests::Big;
using tests::Ended;
using tests::FailureOf;
using tests::Told;
namespace failure = platform::failure;

class SqliteRowsExpectedTest : public tests::DatabaseFolder {
 protected:
  static Told Expecting(FileSession& session, const std::string& sSql,
                        platform::RowIndex rowsExpected) {
    EngineStatement statement{sSql, {}, {}};
    statement.rowsExpected = rowsExpected;
    return FailureOf([&] { session.Run(statement, {}); });
  }
  static Told Undone(int nRows, int nExpected) {
    return {failure::kConflict,
            "The statement would have changed " + std::to_string(nRows) + " rows instead of " +
                std::to_string(nExpected) +
                " and was undone: read the rows again, then repeat the change."};
  }
};

TEST_F(SqliteRowsExpectedTest, any_other_number_is_undone) {
  const auto session = Open(Make("m.db", "CREATE TABLE t(a); INSERT INTO t VALUES (1), (2), (2)"));
  EXPECT_EQ(Expecting(*session, "UPDATE t SET a = 9 WHERE a = 2", 1), Undone(2, 1));
  EXPECT_EQ(Expecting(*session, "UPDATE t SET a = 9 WHERE a = 7", 1), Undone(0, 1));
  EXPECT_EQ(Expecting(*session, "DELETE FROM t", 1), Undone(3, 1));
  EXPECT_EQ(Expecting(*session, "INSERT INTO t VALUES (4), (5) RETURNING a", 1), Undone(2, 1));
  EXPECT_EQ(Expecting(*session, "UPDATE t SET a = 9 WHERE a = 1", 0), Undone(1, 0));
  EXPECT_TRUE(One(*session, "SELECT sum(a) FROM t") == Big(5));
  EXPECT_EQ(Expecting(*session, "UPDATE t SET a = 9 WHERE a = 2", 2), Told());
  EXPECT_TRUE(One(*session, "SELECT sum(a) FROM t") == Big(19));
}

TEST_F(SqliteRowsExpectedTest, what_only_reads_changes_no_row_also_behind_a_change) {
  const auto session = Open(Make("m.db", "CREATE TABLE t(a); INSERT INTO t VALUES (1)"));
  Run(*session, "UPDATE t SET a = 2");
  EXPECT_EQ(Expecting(*session, "SELECT a FROM t", 1), Undone(0, 1));
  EXPECT_EQ(Expecting(*session, "SELECT a FROM t", 0), Told());
}

TEST_F(SqliteRowsExpectedTest, what_triggers_and_foreign_keys_change_does_not_count_but_is_undone) {
  const auto session =
      Open(Make("m.db",
                "CREATE TABLE t(a PRIMARY KEY); CREATE TABLE log(a);"
                "CREATE TABLE part(a REFERENCES t(a) ON DELETE CASCADE);"
                "CREATE TRIGGER tr AFTER DELETE ON t BEGIN INSERT INTO log "
                "VALUES (old.a), (old.a); END;"
                "INSERT INTO t VALUES (1), (2); INSERT INTO part VALUES (1), (1)"));
  EXPECT_EQ(Expecting(*session, "DELETE FROM t WHERE a = 1", 1), Told());
  EXPECT_TRUE(One(*session, "SELECT count(*) FROM log") == Big(2));
  EXPECT_TRUE(One(*session, "SELECT count(*) FROM part") == Big(0));
  EXPECT_EQ(Expecting(*session, "DELETE FROM t WHERE a = 2", 2), Undone(1, 2));
  EXPECT_TRUE(One(*session, "SELECT count(*) FROM log") == Big(2));
  EXPECT_TRUE(One(*session, "SELECT count(*) FROM t") == Big(1));
}

TEST_F(SqliteRowsExpectedTest, a_killed_program_leaves_the_row_whole_or_not_at_all) {
  constexpr int kMost = 500;
  const std::string sTables =
      "CREATE TABLE t(id INTEGER PRIMARY KEY, a, b); CREATE INDEX i ON t(a);"
      "CREATE TABLE log(a); CREATE TRIGGER tr AFTER UPDATE ON t BEGIN INSERT INTO log VALUES "
      "(new.a); END; INSERT INTO t VALUES (1, 'old', zeroblob(20000))";
  for (int nCall = 1;; ++nCall) {
    ASSERT_LT(nCall, kMost) << "the change does not come to its end";
    std::filesystem::remove(PathOf("m.db"));
    std::filesystem::remove(PathOf("m.db-journal"));
    const Catalog catalog = Make("m.db", sTables);
    const Ended ended = tests::KilledBefore(nCall, [&] {
      EngineStatement statement{
          "UPDATE t SET a = 'new', b = randomblob(20000) WHERE id = 1 AND a = 'old'", {}, {}};
      statement.rowsExpected = 1;
      Open(catalog)->Run(statement, {});
    });
    ASSERT_NE(ended, Ended::Untraceable) << "this machine lets no process be traced";
    const auto session = Open(catalog);
    const bool bNew = One(*session, "SELECT a FROM t WHERE id = 1") == Value("new");
    EXPECT_TRUE(One(*session, "SELECT b <> zeroblob(20000) FROM t") == Big(bNew ? 1 : 0)) << nCall;
    EXPECT_TRUE(One(*session, "SELECT count(*) FROM log") == Big(bNew ? 1 : 0)) << nCall;
    EXPECT_TRUE(One(*session, "SELECT count(*) FROM t INDEXED BY i WHERE a = 'new'") ==
                Big(bNew ? 1 : 0))
        << nCall;
    if (ended == Ended::ByItself) {
      EXPECT_TRUE(bNew);
      EXPECT_GT(nCall, 5);
      return;
    }
  }
}

}  // namespace
}  // namespace orvane::provider::engines
