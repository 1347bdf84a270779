// Many rows of values by one statement: how they go to the server, and what breaks on the way.
#include "platform/row_failure.h"
#include "provider/engines/postgres/postgres_arrays.h"
#include "tests/provider/engines/postgres_fixture.h"

namespace orvane::provider::engines {
namespace {

using platform::Text;
using platform::Value;
using testing::HasSubstr;
using tests::FailureOf;
namespace failure = platform::failure;

TEST(postgres_arrays, only_a_plain_insert_of_one_row_takes_many_at_once) {
  const auto read = [](const Text& sSql) -> Text {
    const auto insert = ReadInsert(NumberParameters(sSql, true));
    return insert ? insert->sBefore + "|" + insert->sTable + "|" + insert->sBehind : "";
  };
  EXPECT_EQ(read("INSERT INTO \"s\".\"a\"\"b\" (\"x\", y) VALUES (?, ?)"),
            "INSERT INTO \"s\".\"a\"\"b\" (\"x\", y) |\"s\".\"a\"\"b\"|");
  EXPECT_EQ(read("insert into t values(?) on conflict do nothing"),
            "insert into t |t|on conflict do nothing");
  EXPECT_EQ(read("INSERT INTO t VALUES (?) ON CONFLICT (\"a\", b) DO UPDATE SET b = excluded.b"),
            "INSERT INTO t |t|ON CONFLICT (\"a\", b) DO UPDATE SET b = excluded.b");
  for (const char* const sSql :
       {"INSERT INTO t VALUES (?), (?)", "INSERT INTO t VALUES (?, 1)",
        "INSERT INTO t VALUES (?::int)", "INSERT INTO t VALUES (?) RETURNING a",
        "INSERT INTO t AS x VALUES (?)", "INSERT INTO t SELECT 1 UNION VALUES (?)",
        "INSERT INTO t(a) VALUES (?) ON CONFLICT (a) DO UPDATE SET a = ?",
        "INSERT INTO t(a) VALUES (?) ON CONFLICT (a) DO UPDATE SET b = (SELECT count(*) FROM t)",
        "INSERT INTO t(a) VALUES (?) ON CONFLICT (f(a)) DO NOTHING", "UPDATE t SET a = ?",
        "INSERT INTO t DEFAULT VALUES", "INSERT INTO \"t VALUES (?)", "INSERT INTO t (a VALUES (?)",
        "INSERT INTO t VALUES (?); SELECT 1", "INSERT INTO t OVERRIDING SYSTEM VALUE VALUES (?)",
        "INSERT INTO t VALUES (? /**/)"}) {
    EXPECT_EQ(read(sSql), "") << sSql;
  }
}

class PostgresBatchTest : public tests::PostgresTest {
 protected:
  PostgresBatchTest() { Do("CREATE TABLE s.t(a int PRIMARY KEY, b text)"); }

  /// Numbers from 1 to the last with a text each.
  std::int64_t Insert(std::int64_t llLast, const std::function<void(std::int64_t)>& atNumber = {},
                      const std::stop_token& stop = {}, const Text& sBehind = {}) {
    Statement statement{"INSERT INTO s.t (a, b) VALUES (?, ?)" + sBehind, {}, {}};
    statement.batch = [&, llNumber = std::int64_t{0}](std::vector<Value>& values) mutable {
      if (++llNumber > llLast) return false;
      if (atNumber) atNumber(llNumber);
      values = {llNumber, "n" + std::to_string(llNumber)};
      return true;
    };
    return m_session->Run(statement, stop).lRecordsAffected;
  }
  std::int64_t Count() { return *Stored("SELECT count(*) FROM s.t").As<std::int64_t>(); }
  /// Of the commands that have stored the rows.
  std::int64_t Commands() {
    return *Stored("SELECT count(DISTINCT (xmin::text, cmin::text)) FROM s.t").As<std::int64_t>();
  }
};

TEST_F(PostgresBatchTest, many_rows_go_in_few_commands) {
  EXPECT_EQ(Insert(10'000), 10'000);
  EXPECT_EQ(Count(), 10'000);
  EXPECT_LT(Commands(), 100);
  EXPECT_EQ(Stored("SELECT b FROM s.t WHERE a = 9999"), Value("n9999"));
}

// What looks at each row by itself is given each by itself.
TEST_F(PostgresBatchTest, rows_go_one_by_one_where_that_may_make_a_difference) {
  const std::pair<const char*, const char*> cases[] = {
      {"CREATE FUNCTION s.f() RETURNS trigger LANGUAGE plpgsql AS 'BEGIN RETURN new; END'; CREATE "
       "TRIGGER x BEFORE INSERT ON s.t FOR EACH ROW EXECUTE FUNCTION s.f()",
       "DROP TRIGGER x ON s.t"},
      {"CREATE TRIGGER x AFTER INSERT ON s.t EXECUTE FUNCTION s.f()", "DROP TRIGGER x ON s.t"},
      {"CREATE RULE x AS ON INSERT TO s.t DO ALSO NOTHING", "DROP RULE x ON s.t"},
      {"ALTER TABLE s.t ENABLE ROW LEVEL SECURITY", "ALTER TABLE s.t DISABLE ROW LEVEL SECURITY"},
      {"CREATE FUNCTION s.n() RETURNS text LANGUAGE sql AS 'SELECT count(*)::text FROM s.t'; ALTER "
       "TABLE s.t ADD c text DEFAULT s.n()",
       "ALTER TABLE s.t DROP c"},
      {"ALTER TABLE s.t ADD CONSTRAINT k CHECK (s.n() <> '')", "ALTER TABLE s.t DROP CONSTRAINT k"},
      {"CREATE DOMAIN s.short AS varchar(6); ALTER TABLE s.t ALTER b TYPE s.short",
       "ALTER TABLE s.t ALTER b TYPE text"}};
  for (const auto& [sMake, sEnd] : cases) {
    tests::PostgresCluster::Get().Do("postgres", sMake);
    EXPECT_EQ(Insert(500), 500) << sMake;
    EXPECT_EQ(Commands(), 500) << sMake;
    tests::PostgresCluster::Get().Do("postgres", Text("TRUNCATE s.t; ") + sEnd);
  }
}

TEST_F(PostgresBatchTest, a_row_of_two_with_one_key_replaces_the_one_before) {
  Statement statement{
      "INSERT INTO s.t (a, b) VALUES (?, ?) ON CONFLICT (a) DO UPDATE SET b = excluded.b", {}, {}};
  statement.rowsExpected = 1;
  statement.batch = [nRow = 0](std::vector<Value>& values) mutable {
    if (++nRow > 5000) return false;
    values = {nRow / 2, "n" + std::to_string(nRow)};
    return true;
  };
  EXPECT_EQ(m_session->Run(statement, {}).lRecordsAffected, 5000);
  EXPECT_EQ(Stored("SELECT b FROM s.t WHERE a = 1234"), Value("n2469"));
}

// Told with the sentence that the row alone would get.
TEST_F(PostgresBatchTest, a_text_that_is_too_long_is_told_with_its_row) {
  Do("ALTER TABLE s.t ALTER b TYPE varchar(5)");
  try {
    Insert(20'000);
    FAIL();
  } catch (const platform::RowFailure& failed) {
    EXPECT_EQ(failed.Row(), 10'000);
    EXPECT_STREQ(failed.what(),
                 "The statement cannot be run: value too long for type character varying(5); "
                 "correct it.");
  }
  EXPECT_EQ(Count(), 0);
}

// It never gets to the server, but those before it do, and may be refused first.
TEST_F(PostgresBatchTest, a_text_that_no_server_keeps_is_told_with_its_row) {
  for (const std::int64_t llTwice : {9000, 7000}) {
    Statement statement{"INSERT INTO s.t (a, b) VALUES (?, ?)", {}, {}};
    statement.batch = [&, llRow = std::int64_t{0}](std::vector<Value>& values) mutable {
      ++llRow;
      values = {llRow == llTwice ? 1 : llRow, llRow == 8000 ? Text(1, '\0') : Text("x")};
      return llRow <= 10'000;
    };
    try {
      m_session->Run(statement, {});
      FAIL();
    } catch (const platform::RowFailure& failed) {
      EXPECT_EQ(failed.Row(), std::min<std::int64_t>(llTwice, 8000));
      EXPECT_EQ(failed.Number(), llTwice < 8000 ? failure::kConstraint : failure::kTypeMismatch);
    }
    EXPECT_EQ(Count(), 0);
  }
}

TEST_F(PostgresBatchTest, a_stop_ends_rows_that_wait_for_another_program) {
  Insert(1);
  std::stop_source stop;
  PGconn* const other = PQconnectdb(tests::PostgresCluster::Get().Address().c_str());
  PQclear(PQexec(other, "BEGIN; INSERT INTO s.t VALUES (5000)"));
  Do("DELETE FROM s.t");
  const auto failed = FailureOf([&] {
    Insert(
        10'000,
        [&](std::int64_t llNumber) {
          if (llNumber == 10'000) stop.request_stop();
        },
        stop.get_token());
  });
  EXPECT_EQ(failed.lNumber, failure::kCancelled);
  PQfinish(other);
  EXPECT_EQ(Count(), 0);
  EXPECT_EQ(Insert(100), 100) << "the session goes on";
}

// Whatever has been sent already: nothing of it stays.
TEST_F(PostgresBatchTest, a_link_that_breaks_leaves_nothing) {
  for (const std::int64_t llBreaks : {1, 64, 65, 4160, 7000, 9999}) {
    m_session = Open();
    const auto process = Rows("SELECT pg_backend_pid()")->ValueAt(0, 0);
    const auto failed = FailureOf([&] {
      Insert(10'000, [&](std::int64_t llNumber) {
        if (llNumber == llBreaks) {
          m_other->Run({"SELECT pg_terminate_backend(?, 10000)", {process}, {}}, {});
        }
      });
    });
    EXPECT_EQ(failed.lNumber, failure::kObjectClosed) << llBreaks;
    EXPECT_THAT(failed.sSentence, HasSubstr("was lost (")) << llBreaks;
    EXPECT_EQ(Count(), 0) << llBreaks;
    EXPECT_EQ(FailureOf([&] { Do("SELECT 1"); }).lNumber, failure::kObjectClosed);
  }
  m_session = Open();
}

}  // namespace
}  // namespace orvane::provider::engines
