#include "tests/provider/engines/database_folder.h"

namespace orvane::provider::engines {
namespace {

using platform::Value;
using tests::Big;
using tests::FailureOf;
using tests::Told;
namespace failure = platform::failure;

class SqliteSessionTest : public tests::DatabaseFolder {};

// One statement.

TEST_F(SqliteSessionTest, takes_blanks_comments_and_semicolons_around_the_statement) {
  const auto session = Open();
  for (const char* sSql :
       {"SELECT 7", "SELECT 7;", "  SELECT 7 ; ; \n", "SELECT 7 -- done", "SELECT 7; -- done\n",
        "SELECT 7; /* done */ ;", "/* first */ SELECT 7", "; SELECT 7", "-- first\nSELECT 7;"}) {
    EXPECT_TRUE(One(*session, sSql) == Big(7)) << sSql;
  }
}

TEST_F(SqliteSessionTest, refuses_a_second_statement_and_runs_neither) {
  const auto session = Open(Make("m.db", "CREATE TABLE t(a)"));
  const Told expected{failure::kSqlError,
                      "The text holds more than one statement: run them one at a time."};
  for (const char* sSql :
       {"INSERT INTO t VALUES (1); INSERT INTO t VALUES (2)",
        "INSERT INTO t VALUES (1);;DROP TABLE t;", "INSERT INTO t VALUES (1); /**/ SELECT 1",
        "INSERT INTO t VALUES (1); nonsense", "INSERT INTO t VALUES (1); '"}) {
    EXPECT_EQ(RunFails(*session, sSql), expected) << sSql;
  }
  EXPECT_TRUE(One(*session, "SELECT count(*) FROM t") == Big(0));
}

TEST_F(SqliteSessionTest, refuses_a_text_without_a_statement) {
  const auto session = Open();
  const Told expected{failure::kSqlError,
                      "There is no statement to run: the text is empty; write one."};
  for (const char* sSql : {"", "  \n", ";", " ; ;", "-- nothing", "/* nothing */"}) {
    EXPECT_EQ(RunFails(*session, sSql), expected) << sSql;
  }
}

TEST_F(SqliteSessionTest, refuses_a_zero_byte_that_would_hide_what_is_behind_it) {
  const auto session = Open();
  EXPECT_EQ(RunFails(*session, std::string("SELECT 1\0; DROP TABLE t", 23)),
            (Told{failure::kSqlError,
                  "The statement cannot be run: it holds a zero byte; remove that."}));
}

TEST_F(SqliteSessionTest, tells_what_is_wrong_with_a_statement_and_keeps_its_text_apart) {
  const auto session = Open();
  EXPECT_EQ(RunFails(*session, "SELEC 1"),
            (Told{failure::kSqlError,
                  "The statement cannot be run: near \"SELEC\": syntax error (character 1 of the "
                  "statement); correct it."}));
  EXPECT_EQ(RunFails(*session, "SELECT * FROM nowhere"),
            (Told{failure::kSqlError,
                  "The statement cannot be run: no such table: nowhere; correct it."}));
  try {
    Run(*session, "SELECT * FROM nowhere");
    FAIL();
  } catch (const platform::Failure& failed) {
    EXPECT_EQ(failed.SqlText(), "SELECT * FROM nowhere");
    EXPECT_EQ(failed.Source(), "SQLite");
    EXPECT_EQ(failed.NativeError(), SQLITE_ERROR);
  }
}

TEST_F(SqliteSessionTest, refuses_what_would_change_the_session) {
  const Catalog catalog = Make("m.db", "CREATE TABLE t(a)");
  const auto session = Open(catalog);
  const Told expected{
      failure::kNotSupported,
      "The statement is refused: attaching and detaching, transactions and settings "
      "of the database are not for statements; leave them out."};
  for (const std::string& sSql :
       {"ATTACH '" + PathOf("x.db") + "' AS x", std::string("DETACH main"), std::string("BEGIN"),
        std::string("COMMIT"), std::string("ROLLBACK"), std::string("SAVEPOINT s"),
        std::string("RELEASE s"), std::string("PRAGMA journal_mode = OFF"),
        std::string("PRAGMA foreign_keys = OFF"), "VACUUM INTO '" + PathOf("x.db") + "'"}) {
    EXPECT_EQ(RunFails(*session, sSql), expected) << sSql;
  }
  EXPECT_FALSE(std::filesystem::exists(PathOf("x.db")));
}

// Rows affected.

TEST_F(SqliteSessionTest, a_statement_without_rows_gives_a_recordset_without_fields) {
  const auto session = Open(Make("m.db", "CREATE TABLE t(a)"));
  const auto result = Run(*session, "INSERT INTO t VALUES (1), (2), (3)");
  EXPECT_EQ(result.lRecordsAffected, 3);
  EXPECT_EQ(result.recordset->FieldCount(), 0);
  EXPECT_TRUE(result.recordset->Eof());
}

TEST_F(SqliteSessionTest, a_statement_that_fails_has_changed_nothing) {
  const auto session = Open(Make("m.db", "CREATE TABLE t(a UNIQUE)"));
  EXPECT_EQ(
      RunFails(*session, "INSERT INTO t VALUES (1), (2), (1)"),
      (Told{failure::kConstraint,
            "A rule of the table refuses this: UNIQUE constraint failed: t.a; correct the row."}));
  EXPECT_TRUE(One(*session, "SELECT count(*) FROM t") == Big(0));
}

TEST_F(SqliteSessionTest, a_statement_that_fails_has_changed_nothing_whatever_its_rule) {
  const auto session = Open(Make("m.db",
                                 "CREATE TABLE t(a UNIQUE); INSERT INTO t VALUES (1), (2), (4);"
                                 "CREATE TABLE u(a UNIQUE ON CONFLICT FAIL)"));
  for (const char* const sSql :
       {"INSERT OR FAIL INTO t VALUES (7), (8), (1)", "INSERT OR ROLLBACK INTO t VALUES (7), (1)",
        "UPDATE OR FAIL t SET a = a + 2", "INSERT INTO u VALUES (1), (2), (1)",
        "INSERT INTO u VALUES (1), (1) RETURNING a"}) {
    EXPECT_EQ(RunFails(*session, sSql).lNumber, failure::kConstraint) << sSql;
  }
  EXPECT_TRUE(One(*session, "SELECT group_concat(a) FROM t") == Value("1,2,4"));
  EXPECT_TRUE(One(*session, "SELECT count(*) FROM u") == Big(0));
  EXPECT_EQ(Run(*session, "INSERT OR IGNORE INTO t VALUES (1), (9)").lRecordsAffected, 1);
}

TEST_F(SqliteSessionTest, a_name_in_double_quotes_is_never_a_text) {
  const auto session = Open(Make("m.db", "CREATE TABLE t(a); INSERT INTO t VALUES (1), (2)"));
  const auto expected = [](const std::string& sPlace) {
    return Told{failure::kSqlError,
                "There is no column \"Gone\" (character " + sPlace +
                    " of the statement): write the name of one that the tables have; a text or a "
                    "time stands between single quotes."};
  };
  EXPECT_EQ(RunFails(*session, "SELECT \"Gone\" FROM t"), expected("8"));
  EXPECT_EQ(RunFails(*session, "DELETE FROM t WHERE \"Gone\" <> 'x'"), expected("21"));
  EXPECT_EQ(RunFails(*session, "CREATE INDEX i ON t(\"Gone\" || 'x')").lNumber, failure::kSqlError);
  EXPECT_TRUE(One(*session, "SELECT count(*) FROM t") == Big(2));
}

TEST_F(SqliteSessionTest, keeps_the_rules_of_foreign_keys) {
  const auto session =
      Open(Make("m.db", "CREATE TABLE p(a PRIMARY KEY); CREATE TABLE c(a REFERENCES p(a))"));
  EXPECT_EQ(RunFails(*session, "INSERT INTO c VALUES (1)").lNumber, failure::kConstraint);
}

TEST_F(SqliteSessionTest, a_full_disk_is_told_and_changes_nothing) {
  const Catalog catalog = Make("m.db", "CREATE TABLE t(a)");
  // Stands in for the end of the disk: the file may not grow past these pages.
  sqlite3_auto_extension(reinterpret_cast<void (*)()>(+[](sqlite3* database, char**, const void*) {
    return sqlite3_exec(database, "PRAGMA max_page_count = 3", nullptr, nullptr, nullptr);
  }));
  const auto session = Open(catalog);
  sqlite3_reset_auto_extension();
  EXPECT_EQ(RunFails(*session, "INSERT INTO t VALUES (zeroblob(100000))"),
            (Told{failure::kStorage,
                  "The catalog \"m\" has no room left on its disk, so nothing was written: make "
                  "room and try again."}));
  EXPECT_TRUE(One(*session, "SELECT count(*) FROM t") == Big(0));
}

// Closing.

TEST_F(SqliteSessionTest, a_recordset_outlives_its_session) {
  auto session = Open(Make("m.db", "CREATE TABLE t(a); INSERT INTO t VALUES ('kept')"));
  const auto rs = Run(*session, "SELECT a FROM t").recordset;
  session->Close();
  session.reset();
  std::filesystem::remove_all(folder);
  EXPECT_TRUE(rs->ValueAt(0, 0) == Value("kept"));
}

TEST_F(SqliteSessionTest, a_closed_session_runs_nothing_and_closes_again) {
  const auto session = Open();
  session->Close();
  session->Close();
  const Told expected{failure::kObjectClosed, "The session is closed: connect again."};
  EXPECT_EQ(RunFails(*session, "SELECT 1"), expected);
  EXPECT_EQ(FailureOf([&] { session->Schema({}, {}, {}); }), expected);
  EXPECT_EQ(FailureOf([&] { session->InTransaction({}, [] {}, {}); }), expected);
}

}  // namespace
}  // namespace orvane::provider::engines
