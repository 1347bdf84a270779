// Several statements that are made for good together.
#include "tests/provider/engines/database_folder.h"

namespace orvane::provider::engines {
namespace {

using platform::Value;
using tests::Big;
using tests::FailureOf;
using tests::Raw;
using tests::Told;
namespace failure = platform::failure;

class SqliteTransactionTest : public tests::DatabaseFolder {};

TEST_F(SqliteTransactionTest, a_transaction_does_all_of_the_work) {
  const Catalog one = Make("one.db", "CREATE TABLE t(a)");
  const auto session = Open();
  session->InTransaction({&one, 1},
                         [&] {
                           for (int i = 0; i < 3; ++i)
                             session->Run({"INSERT INTO one.t VALUES (?)", {i}, {one}}, {});
                         },
                         {});
  EXPECT_TRUE(One(*Open(one), "SELECT count(*) FROM t") == Big(3));
  EXPECT_EQ(RunFails(*session, "SELECT * FROM one.t").lNumber, failure::kSqlError);
}

TEST_F(SqliteTransactionTest, a_transaction_whose_work_fails_leaves_nothing) {
  const auto session = Open(Make("m.db", "CREATE TABLE t(a)"));
  EXPECT_EQ(FailureOf([&] {
              session->InTransaction({},
                                     [&] {
                                       Run(*session, "INSERT INTO t VALUES (1)");
                                       Run(*session, "INSERT INTO nowhere VALUES (1)");
                                     },
                                     {});
            }).lNumber,
            failure::kSqlError);
  EXPECT_TRUE(One(*session, "SELECT count(*) FROM t") == Big(0));
  session->InTransaction({}, [&] { Run(*session, "INSERT INTO t VALUES (1)"); }, {});
  EXPECT_TRUE(One(*session, "SELECT count(*) FROM t") == Big(1));
}

TEST_F(SqliteTransactionTest, a_transaction_cancelled_before_its_end_leaves_nothing) {
  const auto session = Open(Make("m.db", "CREATE TABLE t(a)"));
  std::stop_source stop;
  EXPECT_EQ(FailureOf([&] {
              session->InTransaction(
                  {},
                  [&] {
                    Run(*session, "INSERT INTO t VALUES (1)");
                    stop.request_stop();
                  },
                  stop.get_token());
            }).lNumber,
            failure::kCancelled);
  EXPECT_TRUE(One(*session, "SELECT count(*) FROM t") == Big(0));
}

TEST_F(SqliteTransactionTest, a_catalog_cannot_join_a_transaction_later) {
  const Catalog one = Make("one.db", "CREATE TABLE t(a)");
  const auto session = Open();
  EXPECT_EQ(FailureOf([&] {
              session->InTransaction({},
                                     [&] {
                                       session->Run({"SELECT * FROM one.t", {}, {one}}, {});
                                     },
                                     {});
            }),
            (Told{failure::kInvalidArgument,
                  "The catalog \"one\" is not part of the transaction: name it when the "
                  "transaction begins."}));
  session->Run({"SELECT * FROM one.t", {}, {one}}, {});
}

TEST_F(SqliteTransactionTest, a_transaction_waits_for_no_lock_for_ever) {
  const Catalog one = Make("one.db", "CREATE TABLE t(a)");
  Raw other(one.sPlace);
  other.Run("BEGIN IMMEDIATE");
  bool bWorked = false;
  EXPECT_EQ(FailureOf([&] { Open(one)->InTransaction({}, [&] { bWorked = true; }, {}); }).lNumber,
            failure::kBusy);
  EXPECT_FALSE(bWorked);
}

}  // namespace
}  // namespace orvane::provider::engines
