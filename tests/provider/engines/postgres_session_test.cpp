#include <algorithm>
#include <set>
#include <thread>

#include "platform/conversions.h"
#include "provider/engines/postgres/postgres_errors.h"
#include "tests/provider/engines/postgres_fixture.h"

namespace orvane::provider::engines {
namespace {

using platform::FetchState;
using platform::RowIndex;
using platform::Text;
using platform::Value;
using testing::HasSubstr;
using tests::FailureOf;
namespace failure = platform::failure;

class PostgresSessionTest : public tests::PostgresTest {
 protected:
  PostgresSessionTest() { Do("CREATE TABLE s.t(a int PRIMARY KEY, b text)"); }

  tests::Told FailureOfText(const Text& sSql, std::vector<Value> parameters = {}) {
    return FailureOf([&] { Do(sSql, std::move(parameters)); });
  }
  EngineResult RunInto(const std::shared_ptr<tests::ScriptedRows>& rows, const Text& sSql,
                       RowIndex maxRows = 0) {
    Statement statement{sSql, {}, {}, maxRows};
    statement.rows = rows;
    return m_session->Run(statement, m_stop.get_token());
  }
  void ExpectUsable() { EXPECT_EQ(Rows("SELECT 1")->ValueAt(0, 0), Value(1)); }

  std::stop_source m_stop;
  std::shared_ptr<tests::ScriptedRows> m_rows = std::make_shared<tests::ScriptedRows>();
};

TEST_F(PostgresSessionTest, gives_columns_also_without_rows) {
  const auto rs = Rows("SELECT a, b FROM s.t");
  EXPECT_EQ(rs->RecordCount(), 0);
  EXPECT_EQ(rs->FieldAt(1).Name(), "b");
  EXPECT_EQ(Do("CREATE TABLE s.u(a int)").recordset->FieldCount(), 0);
}

TEST_F(PostgresSessionTest, rows_come_in_small_blocks_first) {
  RunInto(m_rows, "SELECT n FROM generate_series(1, 20000) AS n");
  EXPECT_EQ(m_rows->blocks,
            (std::vector<RowIndex>{128, 256, 512, 1024, 2048, 4096, 4096, 4096, 3744}));
  EXPECT_TRUE(m_rows->bReads);
  EXPECT_EQ(m_rows->Recordset()->State(), FetchState::Complete);
  EXPECT_EQ(m_rows->Recordset()->ValueAt(19'999, 0), Value(20'000));
}

TEST_F(PostgresSessionTest, rows_come_when_they_are_wanted_although_the_next_is_far) {
  std::thread wants([&] {
    while (m_rows->blocks.empty()) {
      m_rows->Wanted() = true;
      std::this_thread::yield();
    }
    m_stop.request_stop();
  });
  const auto failed = FailureOf([&] {
    // The server sends when it has eight kilobytes.
    RunInto(m_rows,
            "SELECT repeat('x', 9000) FROM generate_series(1, 3) AS n WHERE n < 3 OR "
            "pg_sleep(600) IS NULL");
  });
  wants.join();
  EXPECT_EQ(failed.lNumber, failure::kCancelled);
  EXPECT_EQ(m_rows->Recordset()->RecordCount(), 2);
  ExpectUsable();
}

TEST_F(PostgresSessionTest, a_row_limit_ends_a_reading_statement) {
  RunInto(m_rows, "SELECT generate_series(1, 1000000000)", 10);
  EXPECT_EQ(m_rows->Recordset()->RecordCount(), 10);
  EXPECT_EQ(m_rows->Recordset()->State(), FetchState::Truncated);
  ExpectUsable();
  RunInto(m_rows = std::make_shared<tests::ScriptedRows>(), "SELECT 1", 1);
  EXPECT_EQ(m_rows->Recordset()->State(), FetchState::Complete);
}

TEST_F(PostgresSessionTest, a_row_limit_does_not_end_a_change) {
  RunInto(m_rows, "INSERT INTO s.t SELECT n FROM generate_series(1, 50) AS n RETURNING a", 10);
  EXPECT_EQ(m_rows->Recordset()->RecordCount(), 10);
  EXPECT_EQ(m_rows->Recordset()->State(), FetchState::Truncated);
  EXPECT_FALSE(m_rows->bReads);
  EXPECT_EQ(Stored("SELECT count(*) FROM s.t"), Value(std::int64_t{50}));
}

TEST_F(PostgresSessionTest, changes_are_counted_and_stored) {
  EXPECT_EQ(Do("INSERT INTO s.t VALUES (1, 'a'), (2, 'b')").lRecordsAffected, 2);
  EXPECT_EQ(Do("UPDATE s.t SET b = ? WHERE a = ?", {Value("it's; --"), Value(2)}).lRecordsAffected,
            1);
  EXPECT_EQ(Stored("SELECT b FROM s.t WHERE a = 2"), Value("it's; --"));
  EXPECT_EQ(Do("SELECT * FROM s.t").lRecordsAffected, 0);
}

TEST_F(PostgresSessionTest, what_may_only_read_is_not_run_when_it_would_change) {
  Do("CREATE FUNCTION s.f() RETURNS int LANGUAGE sql AS 'INSERT INTO s.t VALUES (9) RETURNING a'");
  for (const char* const sSql :
       {"INSERT INTO s.t VALUES (1)", "WITH x AS (DELETE FROM s.t RETURNING a) SELECT * FROM x",
        "SELECT s.f()", "CREATE TABLE s.u(a int)", "EXPLAIN ANALYZE INSERT INTO s.t VALUES (1)",
        "DO 'BEGIN INSERT INTO s.t VALUES (1); END'", "SELECT 1 INTO s.v"}) {
    Statement statement{sSql, {}, {}};
    statement.bReadOnly = true;
    EXPECT_EQ(FailureOf([&] { m_session->Run(statement, {}); }).lNumber, failure::kWouldChange)
        << sSql;
  }
  EXPECT_EQ(Stored("SELECT count(*) FROM s.t"), Value(std::int64_t{0}));
  // Without that they run, and once.
  EXPECT_EQ(Rows("SELECT s.f()")->ValueAt(0, 0), Value(9));
  EXPECT_EQ(Stored("SELECT count(*) FROM s.t"), Value(std::int64_t{1}));
}

TEST_F(PostgresSessionTest, another_number_of_rows_than_expected_is_undone) {
  Do("INSERT INTO s.t VALUES (1, 'a'), (2, 'a')");
  Statement statement{"UPDATE s.t SET b = 'x' WHERE b = 'a'", {}, {}};
  statement.rowsExpected = 1;
  EXPECT_EQ(FailureOf([&] { m_session->Run(statement, {}); }).lNumber, failure::kConflict);
  EXPECT_EQ(Stored("SELECT count(*) FROM s.t WHERE b = 'a'"), Value(std::int64_t{2}));
}

TEST_F(PostgresSessionTest, a_batch_is_stored_whole_or_not_at_all) {
  int nRow = 0;
  int nRows = 100;
  Statement statement{"INSERT INTO s.t VALUES (?, ?)", {}, {}};
  statement.batch = [&](std::vector<Value>& row) {
    if (nRow == nRows) return false;
    row = {Value(nRow), nRow % 3 == 0 ? Value() : Value("n" + std::to_string(nRow))};
    ++nRow;
    return true;
  };
  EXPECT_EQ(m_session->Run(statement, {}).lRecordsAffected, 100);
  EXPECT_EQ(Stored("SELECT count(*) FROM s.t WHERE b IS NULL"), Value(std::int64_t{34}));
  nRow = 50;
  nRows = 150;
  EXPECT_EQ(FailureOf([&] { m_session->Run(statement, {}); }).lNumber, failure::kConstraint);
  EXPECT_EQ(Stored("SELECT count(*) FROM s.t"), Value(std::int64_t{100}));
}

TEST_F(PostgresSessionTest, what_fails_says_what_and_where) {
  EXPECT_EQ(FailureOfText("SELECT ?, nothing FROM s.t WHERE a = ?", {Value(1), Value(2)}).sSentence,
            "The statement cannot be run: column \"nothing\" does not exist (character 11 of the "
            "statement); correct it.");
  EXPECT_EQ(FailureOfText("SELECT '\xC3\xA4', FRM").lNumber, failure::kSqlError);
  EXPECT_THAT(FailureOfText("SELECT '\xC3\xA4', x").sSentence,
              HasSubstr("(character 13 of the statement);"));
  EXPECT_THAT(FailureOfText("SELECT lowr('A')").sSentence, HasSubstr("; no function matches"));
  EXPECT_EQ(FailureOfText("INSERT INTO s.t VALUES (1), (1)").lNumber, failure::kConstraint);
  EXPECT_EQ(FailureOfText("SELECT 1; SELECT 2").lNumber, failure::kSqlError);
  EXPECT_EQ(FailureOfText("VACUUM s.t").lNumber, failure::kNotSupported);
  EXPECT_EQ(FailureOfText("SELECT ?", {}).lNumber, failure::kSqlError);
  EXPECT_EQ(FailureOfText("SELECT 1", {Value(1)}).sSentence,
            "The statement takes 0 parameters, but 1 were given; give one value for each.");
  ExpectUsable();
}

TEST_F(PostgresSessionTest, what_is_not_for_statements_is_refused) {
  for (const char* const sSql :
       {"COMMIT", "/* a /* b */ */ begin", "-- x\n ; Rollback", "SET search_path = s",
        "COPY s.t FROM STDIN", "copy s.t to program 'touch /tmp/x'", "DISCARD ALL", "LISTEN a",
        "PREPARE p AS SELECT 1", "SAVEPOINT x", "LOAD 'x'", "UNLISTEN *"}) {
    EXPECT_EQ(FailureOfText(sSql).lNumber, failure::kNotSupported) << sSql;
  }
  EXPECT_EQ(FailureOfText("DO 'BEGIN COMMIT; END'").lNumber, failure::kSqlError);
  ExpectUsable();
}

bool IsRefused(const Abilities& can, const Text& sName) {
  Text sUpper;
  for (const char c : sName) sUpper += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return std::ranges::any_of(can.refusedNames, [&](std::string_view sRefused) {
    if (!sRefused.ends_with('*')) return sUpper == sRefused;
    return sUpper.starts_with(sRefused.substr(0, sRefused.size() - 1));
  });
}

// Everything of the server's that may do more than give a value is either refused or known to do no
// harm, whatever reads.
TEST_F(PostgresSessionTest, no_function_reaches_beyond_its_transaction) {
  const std::set<Text> harmless = {
      // What gives a value that changes, or looks at what the server does.
      "amvalidate", "clock_timestamp", "current_query", "currtid2", "gen_random_uuid", "random",
      "setseed", "timeofday", "txid_status", "pg_blocking_pids", "pg_collation_actual_version",
      "pg_current_wal_flush_lsn", "pg_current_wal_insert_lsn", "pg_current_wal_lsn",
      "pg_database_collation_actual_version", "pg_database_size", "pg_get_backend_memory_contexts",
      "pg_get_multixact_members", "pg_get_shmem_allocations", "pg_get_wal_replay_pause_state",
      "pg_get_wal_resource_managers", "pg_indexes_size", "pg_is_in_recovery",
      "pg_is_wal_replay_paused", "pg_isolation_test_session_is_blocked", "pg_jit_available",
      "pg_last_committed_xact", "pg_last_wal_receive_lsn", "pg_last_wal_replay_lsn",
      "pg_last_xact_replay_timestamp", "pg_lock_status", "pg_notification_queue_usage",
      "pg_partition_ancestors", "pg_partition_tree", "pg_prepared_xact", "pg_relation_size",
      "pg_safe_snapshot_blocking_pids", "pg_sequence_last_value",
      "pg_show_replication_origin_status", "pg_stat_clear_snapshot", "pg_stat_force_next_flush",
      "pg_stat_have_stats", "pg_table_size", "pg_tablespace_size", "pg_total_relation_size",
      "pg_xact_commit_timestamp", "pg_xact_commit_timestamp_origin", "pg_xact_status",
      // What can be cancelled.
      "pg_sleep", "pg_sleep_for", "pg_sleep_until",
      // What numbers rows, and is refused to readers by the server.
      "currval", "lastval", "nextval", "setval",
      // What only the server itself can call.
      "bernoulli", "brinhandler", "bthandler", "dsnowball_init", "dsnowball_lexize", "ginhandler",
      "gisthandler", "hashhandler", "heap_tableam_handler", "plpgsql_call_handler",
      "plpgsql_inline_handler", "plpgsql_validator", "spghandler", "system"};
  const auto rs = Rows(
      "SELECT DISTINCT proname::text FROM pg_proc WHERE provolatile = 'v' AND pronamespace = "
      "'pg_catalog'::regnamespace AND prorettype <> ALL ('{trigger,event_trigger}'::regtype[]) AND "
      "proname !~ '^pg_stat_get_'");
  EXPECT_GT(rs->RecordCount(), 150);
  for (RowIndex row = 0; row < rs->RecordCount(); ++row) {
    const Text sName = platform::ToText(rs->ValueAt(row, 0));
    EXPECT_NE(IsRefused(m_session->Can(), sName), harmless.contains(sName)) << sName;
  }
  for (const char* const sName :
       {"table_to_xml", "schema_to_xml_and_xmlschema", "database_to_xmlschema", "pg_stop_backup",
        "pg_logdir_ls", "pg_file_write", "dblink_exec", "pg_file_settings"}) {
    EXPECT_TRUE(IsRefused(m_session->Can(), sName)) << sName;
  }
  for (const char* const sName : {"now",
                                  "count",
                                  "max",
                                  "coalesce",
                                  "current_setting",
                                  "xmlagg",
                                  "xpath",
                                  "pg_typeof",
                                  "pg_size_pretty",
                                  "pg_get_viewdef",
                                  "pg_stat_activity",
                                  "pg_locks",
                                  "pg_tables",
                                  "ts_rank",
                                  "log",
                                  "logs",
                                  "load",
                                  "position",
                                  "to_tsvector",
                                  "generate_series"}) {
    EXPECT_FALSE(IsRefused(m_session->Can(), sName)) << sName;
  }
}

TEST_F(PostgresSessionTest, hints_can_be_followed_by_whoever_reads_them) {
  Text sDeep = "1";
  for (int i = 0; i < 20'000; ++i) sDeep = "abs(" + sDeep + ")";
  const Text sTooDeep = FailureOfText("SELECT " + sDeep).sSentence;
  EXPECT_THAT(sTooDeep, HasSubstr("ask for less, or write it in a simpler way"));
  EXPECT_THAT(sTooDeep, testing::Not(HasSubstr("max_stack_depth")));
  const Text sTypes = FailureOfText("SELECT 1 WHERE now() > 'a'::text").sSentence;
  EXPECT_THAT(sTypes, HasSubstr("write CAST(... AS type) where a value is of another one"));
  EXPECT_THAT(sTypes, testing::Not(HasSubstr("explicit type casts")));
  ExpectUsable();
}

TEST_F(PostgresSessionTest, a_refused_right_is_named) {
  Do("DROP ROLE IF EXISTS guest");
  Do("CREATE ROLE guest LOGIN");
  Do("GRANT USAGE ON SCHEMA s TO guest");
  const auto guest = Open(tests::PostgresCluster::Get().Address(), "guest");
  const auto failed = FailureOf([&] { guest->Run({"SELECT * FROM s.t", {}, {}}, {}); });
  EXPECT_EQ(failed.lNumber, failure::kNoRights);
  EXPECT_THAT(failed.sSentence, HasSubstr("permission denied for table t"));
  EXPECT_EQ(guest->Schema({"s", {}}, {}, {}).size(), 1U);
  Do("DROP OWNED BY guest");
  Do("DROP ROLE guest");
}

TEST_F(PostgresSessionTest, a_stop_ends_a_statement_and_changes_nothing) {
  std::thread stops([&] { m_stop.request_stop(); });
  Statement statement{"INSERT INTO s.t SELECT 1 FROM pg_sleep(600)", {}, {}};
  const auto failed = FailureOf([&] { m_session->Run(statement, m_stop.get_token()); });
  stops.join();
  EXPECT_EQ(failed.lNumber, failure::kCancelled);
  EXPECT_EQ(Stored("SELECT count(*) FROM s.t"), Value(std::int64_t{0}));
  ExpectUsable();
}

// Nobody may be left to tell it.
TEST_F(PostgresSessionTest, a_server_knows_the_time_out_of_its_statement) {
  const auto known = [this](std::chrono::milliseconds timeout) {
    Statement statement{"SELECT current_setting('statement_timeout')", {}, {}};
    statement.timeout = timeout;
    return m_session->Run(statement, {}).recordset->ValueAt(0, 0);
  };
  EXPECT_EQ(known(std::chrono::milliseconds(2500)), Value("7500ms"));
  EXPECT_EQ(known(std::chrono::hours(10'000)), Value("2147483647ms"));
  EXPECT_EQ(known({}), Value("0"));
}

TEST_F(PostgresSessionTest, a_statement_that_the_server_ends_says_so) {
  Do("DROP ROLE IF EXISTS guest");
  Do("CREATE ROLE guest LOGIN");
  Do("ALTER ROLE guest SET statement_timeout = '20ms'");
  const auto guest = Open(tests::PostgresCluster::Get().Address(), "guest");
  const auto failed = FailureOf([&] { guest->Run({"SELECT pg_sleep(600)", {}, {}}, {}); });
  EXPECT_EQ(failed.lNumber, failure::kTimeout);
  EXPECT_THAT(failed.sSentence,
              testing::EndsWith(" ended the statement before it was done (canceling statement due "
                                "to statement timeout): ask for less, or ask its administrator to "
                                "allow it more time."));
  Do("DROP ROLE guest");
}

TEST_F(PostgresSessionTest, a_stop_up_to_the_commit_changes_nothing) {
  Statement statement{"INSERT INTO s.t VALUES (1)", {}, {}};
  statement.mayCommit = [] { return false; };
  EXPECT_EQ(FailureOf([&] { m_session->Run(statement, {}); }).lNumber, failure::kCancelled);
  statement.mayCommit = [&] {
    m_stop.request_stop();
    return true;
  };
  // That one comes too late.
  EXPECT_EQ(m_session->Run(statement, m_stop.get_token()).lRecordsAffected, 1);
  EXPECT_EQ(Stored("SELECT count(*) FROM s.t"), Value(std::int64_t{1}));
}

TEST_F(PostgresSessionTest, a_receiver_that_fails_ends_the_statement) {
  m_rows->onTake = [] { throw platform::Failure(failure::kStorage, "full"); };
  const auto failed = FailureOf([&] { RunInto(m_rows, "SELECT generate_series(1, 1000000000)"); });
  EXPECT_EQ(failed.sSentence, "full");
  ExpectUsable();
}

TEST_F(PostgresSessionTest, more_values_than_can_be_sent_are_refused_before) {
  const auto insert = [this](std::size_t nValues) {
    Text sSql = "INSERT INTO s.t(a) VALUES (?)";
    for (std::size_t n = 1; n < nValues; ++n) sSql += ", (?)";
    std::vector<Value> values;
    for (std::size_t n = 0; n < nValues; ++n) values.emplace_back(static_cast<platform::Long>(n));
    return FailureOfText(sSql, std::move(values));
  };
  constexpr std::size_t kMost = 7'000;
  for (const std::size_t nValues : {kMost + 1, std::size_t{7'500}, std::size_t{65'536}}) {
    const auto told = insert(nValues);
    EXPECT_EQ(told.lNumber, failure::kSqlError);
    EXPECT_EQ(told.sSentence, "The statement has " + std::to_string(nValues) +
                                  " times and values, more than the 7000 that a PostgreSQL server "
                                  "is sent in one; send it in several statements, or put them into "
                                  "a table and join that.");
    ExpectUsable();
  }
  EXPECT_EQ(insert(kMost).sSentence, "");
  EXPECT_EQ(Stored("SELECT count(*)::int FROM s.t"), Value(static_cast<platform::Long>(kMost)));
}

TEST_F(PostgresSessionTest, what_is_more_than_the_server_does_at_once_says_so) {
  Text sColumns = "a";
  for (int n = 0; n < 2000; ++n) sColumns += ", a";
  const auto told = FailureOfText("SELECT " + sColumns + " FROM s.t");
  EXPECT_EQ(told.lNumber, failure::kSqlError);
  EXPECT_THAT(told.sSentence, testing::StartsWith("The statement is more than the server at "));
  EXPECT_THAT(told.sSentence, testing::EndsWith("(target lists can have at most 1664 entries): ask "
                                                "for less, or write it in a simpler way."));
  ExpectUsable();
}

TEST(PostgresErrors, without_a_state_tell_of_memory) {
  const PostgresResult own(PQmakeEmptyPGresult(nullptr, PGRES_FATAL_ERROR));
  EXPECT_THROW(ErrorOf(own.get()), std::bad_alloc);
}

TEST_F(PostgresSessionTest, closed_says_so) {
  m_session->Close();
  m_session->Close();
  EXPECT_EQ(FailureOfText("SELECT 1").lNumber, failure::kObjectClosed);
  m_session = Open();
}

}  // namespace
}  // namespace orvane::provider::engines
