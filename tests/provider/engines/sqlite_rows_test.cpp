// Rows on their way out of the engine: in blocks, soon, and of a statement that breaks off all that
// came before.
#include <random>

#include "tests/fakes/scripted_rows.h"
#include "tests/provider/engines/database_folder.h"

namespace orvane::provider::engines {
namespace {

using platform::FetchState;
using platform::RowIndex;
using tests::Big;
using tests::FailureOf;
using tests::Told;
namespace failure = platform::failure;

const std::string kNumbers =
    "WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c WHERE i < ";

class SqliteRowsTest : public tests::DatabaseFolder {
 protected:
  SqliteRowsTest() : m_call([this] { m_called(); }) {
    m_session = Open(Make("m.db", "CREATE TABLE t(a)"));
  }

  EngineResult RunInto(const std::shared_ptr<tests::ScriptedRows>& rows, const std::string& sSql,
                       RowIndex maxRows = 0, std::size_t maxBytes = 0) {
    EngineStatement statement{sSql, {}, {}, maxRows};
    statement.maxBytes = maxBytes;
    statement.rows = rows;
    return m_session->Run(statement, m_stop.get_token());
  }
  static void ExpectNumbers(const platform::Recordset& rs, RowIndex count) {
    ASSERT_EQ(rs.RecordCount(), count);
    for (RowIndex row = 0; row < count; ++row) ASSERT_TRUE(rs.ValueAt(row, 0) == Big(row + 1));
  }

  std::function<void()> m_called = [] {};
  tests::SqlCall m_call;
  std::stop_source m_stop;
  std::unique_ptr<FileSession> m_session;
  std::shared_ptr<tests::ScriptedRows> m_rows = std::make_shared<tests::ScriptedRows>();
};

TEST_F(SqliteRowsTest, come_in_small_blocks_first) {
  EXPECT_EQ(RunInto(m_rows, kNumbers + "20000) SELECT i FROM c").recordset, nullptr);
  EXPECT_EQ(m_rows->blocks,
            (std::vector<RowIndex>{128, 256, 512, 1024, 2048, 4096, 4096, 4096, 3744}));
  EXPECT_TRUE(m_rows->bReads);
  EXPECT_EQ(m_rows->Recordset()->State(), FetchState::Complete);
  ExpectNumbers(*m_rows->Recordset(), 20'000);
}

TEST_F(SqliteRowsTest, of_large_values_come_in_blocks_of_few) {
  RunInto(m_rows, kNumbers + "10) SELECT zeroblob(400000) FROM c");
  EXPECT_EQ(m_rows->blocks, (std::vector<RowIndex>{3, 3, 3, 1}));
}

TEST_F(SqliteRowsTest, come_at_once_when_they_are_wanted) {
  m_called = [this, nCalls = 0]() mutable {
    if (++nCalls == 10) m_rows->Wanted() = true;
  };
  RunInto(m_rows, kNumbers + "50) SELECT i, called() FROM c");
  EXPECT_EQ(m_rows->blocks, (std::vector<RowIndex>{10, 40}));
  EXPECT_FALSE(m_rows->Wanted());
}

TEST_F(SqliteRowsTest, come_while_the_engine_looks_for_the_next_one) {
  m_called = [this, nCalls = 0]() mutable {
    if (++nCalls == 10) m_rows->Wanted() = true;
    if (nCalls > 10 && m_rows->blocks.size() == 1) m_stop.request_stop();
  };
  EXPECT_EQ(FailureOf([&] {
              RunInto(m_rows, kNumbers + "1000000) SELECT i FROM c WHERE i = 1 OR called() = 0");
            }).lNumber,
            failure::kCancelled);
  ExpectNumbers(*m_rows->Recordset(), 1);
}

TEST_F(SqliteRowsTest, that_nobody_can_take_between_two_rows_end_the_statement) {
  m_called = [this] { m_rows->Wanted() = true; };
  m_rows->onTake = [] { throw platform::Failure(failure::kStorage, "Full."); };
  EXPECT_EQ(FailureOf([&] {
              RunInto(m_rows, kNumbers + "1000000) SELECT i FROM c WHERE i = 1 OR called() = 0");
            }),
            (Told{failure::kStorage, "Full."}));
}

TEST_F(SqliteRowsTest, of_a_statement_that_is_stopped_are_its_first_ones) {
  std::mt19937 random(7);
  for (int run = 0; run < 40; ++run) {
    m_rows = std::make_shared<tests::ScriptedRows>();
    m_stop = {};
    const int nStop = std::uniform_int_distribution(1, 20'000)(random);
    m_called = [&, nCalls = 0]() mutable {
      if (++nCalls == nStop) m_stop.request_stop();
      if (nCalls % 997 == 0) m_rows->Wanted() = true;
    };
    EXPECT_EQ(FailureOf([&] {
                RunInto(m_rows, kNumbers + "1000000) SELECT i, called(), 'x' || i FROM c");
              }).lNumber,
              failure::kCancelled);
    const auto rs = m_rows->Recordset();
    const RowIndex count = rs->RecordCount();
    // SQLite looks at the stop every thousand of its own steps.
    EXPECT_GE(count, nStop - 1);
    EXPECT_LT(count, nStop + 1000);
    ExpectNumbers(*rs, count);
    EXPECT_TRUE(rs->ValueAt(count - 1, 2) == platform::Value("x" + std::to_string(count)));
  }
}

TEST_F(SqliteRowsTest, before_one_that_breaks_off_in_its_middle_are_whole) {
  EXPECT_EQ(FailureOf([&] {
              RunInto(m_rows,
                      kNumbers +
                          "100) SELECT i, NULLIF(i, 3), iif(i < 10, 'x', hex(zeroblob(600000))), "
                          "iif(i < 10, NULL, hex(zeroblob(600000))) FROM c",
                      0, std::size_t{2} << 20);
            }).lNumber,
            failure::kStorage);
  ExpectNumbers(*m_rows->Recordset(), 9);
  EXPECT_TRUE(m_rows->Recordset()->ValueAt(2, 1).IsNull());
  EXPECT_TRUE(m_rows->Recordset()->ValueAt(8, 2) == platform::Value("x"));
}

TEST_F(SqliteRowsTest, before_a_failure_of_the_statement_are_handed_over) {
  EXPECT_EQ(FailureOf([&] {
              RunInto(m_rows, kNumbers + "100) SELECT i, json(iif(i < 60, '{}', 'broken')) FROM c");
            }).lNumber,
            failure::kSqlError);
  ExpectNumbers(*m_rows->Recordset(), 59);
}

TEST_F(SqliteRowsTest, behind_the_row_limit_are_known_of) {
  RunInto(m_rows, kNumbers + "1000) SELECT i FROM c", 200);
  EXPECT_EQ(m_rows->Recordset()->State(), FetchState::Truncated);
  ExpectNumbers(*m_rows->Recordset(), 200);
}

TEST_F(SqliteRowsTest, that_are_none_leave_the_columns) {
  RunInto(m_rows, "SELECT a, 1 AS b FROM t");
  EXPECT_TRUE(m_rows->blocks.empty());
  EXPECT_EQ(m_rows->Recordset()->FieldAt(1).Name(), "b");
  EXPECT_EQ(m_rows->Recordset()->State(), FetchState::Complete);
}

TEST_F(SqliteRowsTest, of_a_change_are_told_to_be_of_one) {
  EXPECT_EQ(RunInto(m_rows, "INSERT INTO t VALUES (1), (2)").lRecordsAffected, 2);
  EXPECT_FALSE(m_rows->bReads);
  EXPECT_EQ(m_rows->Recordset()->FieldCount(), 0);
  RunInto(m_rows, "UPDATE t SET a = a RETURNING a");
  EXPECT_FALSE(m_rows->bReads);
  ExpectNumbers(*m_rows->Recordset(), 2);
  RunInto(m_rows, "EXPLAIN DELETE FROM t");
  EXPECT_TRUE(m_rows->bReads);
}

TEST_F(SqliteRowsTest, may_change_their_kind_in_the_middle_of_a_column) {
  RunInto(m_rows, kNumbers +
                      "9000) SELECT CASE WHEN i < 3000 THEN NULL WHEN i < 6000 THEN i "
                      "WHEN i < 8000 THEN i * 0.5 ELSE 'x' || i END FROM c");
  const auto rs = m_rows->Recordset();
  EXPECT_EQ(rs->FieldAt(0).Type(), platform::DataType::WChar);
  EXPECT_TRUE(rs->ValueAt(2998, 0).IsNull());
  EXPECT_TRUE(rs->ValueAt(2999, 0) == Big(3000));
  EXPECT_TRUE(rs->ValueAt(5998, 0) == Big(5999));
  EXPECT_TRUE(rs->ValueAt(5999, 0) == platform::Value(3000.0));
  EXPECT_TRUE(rs->ValueAt(8999, 0) == platform::Value("x9000"));
}

}  // namespace
}  // namespace orvane::provider::engines
