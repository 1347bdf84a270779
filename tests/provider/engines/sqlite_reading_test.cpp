// Statements that only read, and what SQLite takes for a change though it is none.
#include "tests/provider/engines/database_folder.h"

namespace orvane::provider::engines {
namespace {

using tests::FailureOf;
using tests::Raw;
using tests::Told;
namespace failure = platform::failure;

class SqliteReadingTest : public tests::DatabaseFolder {
 protected:
  EngineResult Read(const std::string& sSql) {
    EngineStatement statement{sSql, {}, {m_catalog}};
    statement.bReadOnly = true;
    return m_session->Run(statement, {});
  }
  Told ReadFails(const std::string& sSql) {
    return FailureOf([&] { Read(sSql); });
  }

  Catalog m_catalog = Make("m.db",
                           "PRAGMA journal_mode = WAL; CREATE TABLE t(a UNIQUE); INSERT INTO t "
                           "VALUES (1), (2); CREATE VIEW v AS SELECT a FROM t; CREATE TRIGGER r "
                           "INSTEAD OF INSERT ON v BEGIN INSERT INTO t VALUES (new.a); END");
  std::unique_ptr<FileSession> m_session = Open();
};

TEST_F(SqliteReadingTest, refuses_whatever_would_change_something) {
  const Told expected{failure::kWouldChange,
                      "The statement changes data and has not been run, as only reading was asked "
                      "for: run it as a change if that is what is wanted."};
  for (const char* sSql :
       {"INSERT INTO m.t VALUES (3)", "INSERT INTO m.t VALUES (3) RETURNING a",
        "INSERT INTO m.v VALUES (3)", "REPLACE INTO m.t VALUES (1)", "UPDATE m.t SET a = a",
        "UPDATE m.t SET a = 9 WHERE 0", "DELETE FROM m.t WHERE a = 99",
        "WITH c(x) AS (SELECT 1) DELETE FROM m.t WHERE a IN c",
        "INSERT INTO m.t VALUES (1) ON CONFLICT DO NOTHING", "CREATE TABLE m.u(a)",
        "CREATE TABLE IF NOT EXISTS m.u(a)", "CREATE TEMP TABLE u(a)", "DROP TABLE m.t",
        "DROP VIEW m.v", "ALTER TABLE m.t RENAME TO u", "CREATE INDEX m.i ON t(a)", "REINDEX",
        "ANALYZE", "VACUUM"}) {
    EXPECT_EQ(ReadFails(sSql), expected) << sSql;
  }
  EXPECT_EQ(Read("SELECT count(*) FROM m.t").recordset->ValueAt(0, 0), Value(std::int64_t{2}));
  EXPECT_EQ(Read("SELECT count(*) FROM m.sqlite_master").recordset->ValueAt(0, 0),
            Value(std::int64_t{4}));
}

TEST_F(SqliteReadingTest, refuses_a_change_without_waiting_for_whoever_writes) {
  Raw other(m_catalog.sPlace);
  other.Run("BEGIN IMMEDIATE");
  m_session = SqliteEngine(std::chrono::hours(1)).Open({}, {});
  EXPECT_EQ(ReadFails("DELETE FROM m.t").lNumber, failure::kWouldChange);
}

TEST_F(SqliteReadingTest, runs_what_reads) {
  EXPECT_EQ(Read("SELECT a FROM m.t").recordset->RecordCount(), 2);
  EXPECT_EQ(Read("WITH c AS (SELECT a FROM m.v) SELECT max(a) FROM c").recordset->RecordCount(), 1);
  EXPECT_EQ(Read("VALUES (1), (2), (3)").recordset->RecordCount(), 3);
}

TEST_F(SqliteReadingTest, tells_other_failures_as_they_are) {
  EXPECT_EQ(ReadFails("SELECT nix FROM m.t").lNumber, failure::kSqlError);
  EXPECT_EQ(ReadFails("DELETE FROM m.nowhere").lNumber, failure::kSqlError);
  EXPECT_EQ(ReadFails("BEGIN").lNumber, failure::kNotSupported);
  EXPECT_EQ(ReadFails("SELECT * FROM pragma_optimize(0xfffe)").lNumber, failure::kNotSupported);
}

TEST_F(SqliteReadingTest, explains_a_change_without_making_it) {
  m_session = Open(m_catalog);
  for (const char* sSql : {"EXPLAIN DELETE FROM t", "EXPLAIN QUERY PLAN DELETE FROM t",
                           "EXPLAIN INSERT INTO t VALUES (3)", "EXPLAIN CREATE TABLE u(a)"}) {
    EngineStatement statement{sSql, {}, {}};
    for (const bool bReadOnly : {false, true}) {
      statement.bReadOnly = bReadOnly;
      const auto result = m_session->Run(statement, {});
      EXPECT_GT(result.recordset->FieldCount(), 0) << sSql;
      EXPECT_EQ(result.lRecordsAffected, 0) << sSql;
    }
  }
  EXPECT_EQ(One(*m_session, "SELECT count(*) FROM t"), Value(std::int64_t{2}));
}

// Whoever writes is no reason not to explain.
TEST_F(SqliteReadingTest, explains_a_change_while_another_program_writes) {
  m_session = Open(m_catalog);
  Raw other(m_catalog.sPlace);
  other.Run("BEGIN IMMEDIATE");
  EXPECT_GT(Run(*m_session, "EXPLAIN DELETE FROM t").recordset->RecordCount(), 0);
}

}  // namespace
}  // namespace orvane::provider::engines
