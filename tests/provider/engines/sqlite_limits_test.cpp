#include <thread>

#include "provider/deadline.h"
#include "tests/fakes/gate.h"
#include "tests/provider/engines/database_folder.h"

namespace orvane::provider::engines {
namespace {

using tests::FailureOf;
using tests::Raw;
using tests::SqlCall;
using tests::Told;
namespace failure = platform::failure;
using namespace std::chrono_literals;

constexpr const char* kEndless =
    "WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c) SELECT count(*) FROM c";

class SqliteLimitsTest : public tests::DatabaseFolder {
 protected:
  static EngineResult RunWithin(FileSession& session, const std::string& sSql,
                                std::chrono::milliseconds timeout, std::stop_token stop = {}) {
    return RunWithin(session, EngineStatement{sSql, {}, {}}, timeout, std::move(stop));
  }
  static EngineResult RunWithin(FileSession& session, const EngineStatement& statement,
                                std::chrono::milliseconds timeout, std::stop_token stop = {}) {
    EngineResult result;
    Deadline(std::move(stop), timeout).Run([&](const std::stop_token& untilThen) {
      result = session.Run(statement, untilThen);
    });
    return result;
  }
  // How the statement fails that is cancelled by another thread once it has called "called()".
  Told CancelledOnceStarted(const std::string& sSql) {
    fakes::Gate started;
    const SqlCall call([&] { started.Open(); });
    const auto session = Open();
    std::stop_source stop;
    const std::jthread canceller([&] {
      started.Wait();
      stop.request_stop();
    });
    const Told told = FailureOf([&] { RunWithin(*session, sSql, 0ms, stop.get_token()); });
    EXPECT_TRUE(One(*session, "SELECT 1") == Value(std::int64_t{1}));
    return told;
  }
};

TEST_F(SqliteLimitsTest, a_row_limit_does_not_fetch_the_rest) {
  const auto rs = Open()
                      ->Run({"WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c) "
                             "SELECT x FROM c",
                             {},
                             {},
                             1000},
                            {})
                      .recordset;
  EXPECT_EQ(rs->RecordCount(), 1000);
  EXPECT_TRUE(rs->Truncated());
}

TEST_F(SqliteLimitsTest, a_statement_ends_at_its_time_out) {
  const auto session = Open();
  EXPECT_EQ(FailureOf([&] { RunWithin(*session, kEndless, 20ms); }).lNumber, failure::kTimeout);
  EXPECT_TRUE(One(*session, "SELECT 1") == Value(std::int64_t{1}));
}

TEST_F(SqliteLimitsTest, a_time_out_also_ends_the_wait_for_a_lock) {
  const Catalog catalog = Make("m.db", "CREATE TABLE t(a)");
  Raw other(catalog.sPlace);
  other.Run("BEGIN IMMEDIATE");
  const auto session = SqliteEngine(1h).Open(catalog, {});
  EXPECT_EQ(FailureOf([&] { RunWithin(*session, "DELETE FROM t", 20ms); }).lNumber,
            failure::kTimeout);
}

TEST_F(SqliteLimitsTest, a_changing_statement_past_its_time_out_has_changed_nothing) {
  const auto session = Open(Make("m.db", "CREATE TABLE t(a)"));
  EXPECT_EQ(FailureOf([&] {
              RunWithin(*session,
                        "WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c) INSERT "
                        "INTO t SELECT x FROM c",
                        20ms);
            }).lNumber,
            failure::kTimeout);
  EXPECT_TRUE(One(*session, "SELECT count(*) FROM t") == Value(std::int64_t{0}));
}

TEST_F(SqliteLimitsTest, a_running_statement_is_cancelled_from_another_thread) {
  EXPECT_EQ(
      CancelledOnceStarted("WITH RECURSIVE c(x) AS (SELECT called() UNION ALL SELECT x + 1 FROM "
                           "c) SELECT count(*) FROM c"),
      (Told{failure::kCancelled, "The statement was cancelled."}));
}

TEST_F(SqliteLimitsTest, rows_are_no_longer_fetched_when_cancelled_between_them) {
  EXPECT_EQ(CancelledOnceStarted("WITH RECURSIVE c(x) AS (SELECT called() UNION ALL SELECT x FROM "
                                 "c) SELECT x FROM c")
                .lNumber,
            failure::kCancelled);
}

TEST_F(SqliteLimitsTest, a_wait_for_a_lock_is_cancelled_from_another_thread) {
  const Catalog catalog = Make("m.db", "CREATE TABLE t(a)");
  const auto session = SqliteEngine(1h).Open(catalog, {});
  Raw other(catalog.sPlace);
  other.Run("BEGIN IMMEDIATE");
  std::stop_source stop;
  // Whether this comes before the wait or in it, nothing else ends the statement within the hour.
  const std::jthread canceller([&] { stop.request_stop(); });
  EXPECT_EQ(FailureOf([&] { RunWithin(*session, "DELETE FROM t", 0ms, stop.get_token()); }).lNumber,
            failure::kCancelled);
}

TEST_F(SqliteLimitsTest, a_statement_cancelled_beforehand_does_not_run) {
  const auto session = Open(Make("m.db", "CREATE TABLE t(a)"));
  std::stop_source stop;
  stop.request_stop();
  EXPECT_EQ(FailureOf([&] {
              RunWithin(*session, "INSERT INTO t VALUES (1)", 0ms, stop.get_token());
            }).lNumber,
            failure::kCancelled);
  EXPECT_TRUE(One(*session, "SELECT count(*) FROM t") == Value(std::int64_t{0}));
}

TEST_F(SqliteLimitsTest, a_cancelled_statement_lets_go_of_its_catalogs) {
  const Catalog one = Make("one.db", "CREATE TABLE t(a); INSERT INTO t VALUES (1)");
  const auto session = Open();
  EXPECT_EQ(FailureOf([&] {
              RunWithin(*session, EngineStatement{kEndless, {}, {one}}, 20ms);
            }).lNumber,
            failure::kTimeout);
  EXPECT_EQ(RunFails(*session, "SELECT * FROM one.t").lNumber, failure::kSqlError);
  EXPECT_EQ(session->Run({"SELECT * FROM one.t", {}, {one}}, {}).recordset->RecordCount(), 1);
}

TEST_F(SqliteLimitsTest, a_lock_is_waited_for_and_then_told) {
  const Catalog catalog = Make("m.db", "CREATE TABLE t(a)");
  Raw other(catalog.sPlace);
  other.Run("BEGIN IMMEDIATE");
  const auto session = Open(catalog);
  EXPECT_EQ(RunFails(*session, "DELETE FROM t"),
            (Told{failure::kBusy,
                  "The catalog \"m\" is locked by another program: try again when that is done."}));
  other.Run("COMMIT");
  EXPECT_EQ(RunFails(*session, "DELETE FROM t").lNumber, 0);
}

TEST_F(SqliteLimitsTest, a_lock_given_back_in_time_is_no_failure) {
  const Catalog catalog = Make("m.db", "CREATE TABLE t(a)");
  Raw other(catalog.sPlace);
  other.Run("BEGIN IMMEDIATE");
  const auto session = SqliteEngine(1h).Open(catalog, {});
  const std::jthread releaser([&] { other.Run("COMMIT"); });
  EXPECT_EQ(RunFails(*session, "DELETE FROM t").lNumber, 0);
}

}  // namespace
}  // namespace orvane::provider::engines
