// The memory of a statement: of its rows, and of the engine while it works.
#include "tests/provider/engines/database_folder.h"

namespace orvane::provider::engines {
namespace {

using tests::FailureOf;
using tests::Told;
namespace failure = platform::failure;

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

class SqliteMemoryTest : public tests::DatabaseFolder {
 protected:
  EngineResult RunWith(std::size_t megabytes, const std::string& sSql,
                       platform::RowIndex maxRows = 0) {
    EngineStatement statement{sSql, {}, {}, maxRows};
    statement.maxBytes = megabytes * kMegabyte;
    return m_session->Run(statement, {});
  }
  Told Fails(std::size_t megabytes, const std::string& sSql, platform::RowIndex maxRows = 0) {
    return FailureOf([&] { RunWith(megabytes, sSql, maxRows); });
  }
  static std::string Rows(const std::string& sValue, int nRows) {
    return "WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c WHERE i < " +
           std::to_string(nRows) + ") SELECT " + sValue + " FROM c";
  }

  std::unique_ptr<FileSession> m_session = Open(Make("m.db", "CREATE TABLE t(a)"));
  const Told m_expected{
      failure::kStorage,
      "There is not enough memory for the statement: set a row limit, or narrow it down."};
};

TEST_F(SqliteMemoryTest, few_rows_of_large_values_are_too_much) {
  EXPECT_EQ(Fails(16, Rows("randomblob(1000000)", 100'000), 100), m_expected);
  EXPECT_EQ(RunWith(64, Rows("randomblob(1000000)", 20), 100).recordset->RecordCount(), 20);
}

TEST_F(SqliteMemoryTest, many_small_rows_are_too_much) {
  EXPECT_EQ(Fails(16, Rows("i, i * 1.5, 'text ' || i", 10'000'000)), m_expected);
}

TEST_F(SqliteMemoryTest, a_large_value_in_many_columns_is_too_much) {
  std::string sColumns = "x";
  for (int i = 1; i < 100; ++i) sColumns += ", x";
  EXPECT_EQ(Fails(32, "WITH v(x) AS MATERIALIZED (SELECT randomblob(4000000)) SELECT " + sColumns +
                          " FROM v"),
            m_expected);
}

TEST_F(SqliteMemoryTest, one_value_is_too_much) {
  EXPECT_EQ(Fails(16, "SELECT zeroblob(100000000)"), m_expected);
  EXPECT_EQ(Fails(16, "SELECT length(randomblob(100000000))"), m_expected);
}

TEST_F(SqliteMemoryTest, what_the_engine_keeps_is_too_much) {
  EXPECT_EQ(Fails(16, "SELECT length(group_concat(x, '')) FROM (" +
                          Rows("hex(randomblob(100000)) AS x", 10'000) + ")"),
            m_expected);
  std::string sColumns;
  for (int i = 0; i < 50; ++i) sColumns += (i == 0 ? "" : " || ") + std::string("x");
  EXPECT_EQ(
      Fails(16, "SELECT length(" + sColumns + ") FROM (SELECT hex(randomblob(2000000)) AS x)"),
      m_expected);
}

TEST_F(SqliteMemoryTest, a_change_that_needs_too_much_changes_nothing) {
  EXPECT_EQ(Fails(16, "INSERT INTO t " + Rows("randomblob(1000000)", 30) + " RETURNING a"),
            m_expected);
  EXPECT_EQ(One(*m_session, "SELECT count(*) FROM t"), Value(std::int64_t{0}));
}

TEST_F(SqliteMemoryTest, nothing_is_bounded_behind_a_statement) {
  Fails(16, "SELECT zeroblob(100000000)");
  EXPECT_EQ(sqlite3_hard_heap_limit64(-1), 0);
  EXPECT_EQ(One(*m_session, "SELECT length(zeroblob(100000000))"),
            Value(std::int64_t{100'000'000}));
}

TEST_F(SqliteMemoryTest, sorting_takes_disk_and_not_memory) {
  EXPECT_EQ(RunWith(16, "SELECT count(*) FROM (" + Rows("randomblob(1000) AS x", 20'000) +
                            " ORDER BY x LIMIT 15000)")
                .recordset->RecordCount(),
            1);
}

}  // namespace
}  // namespace orvane::provider::engines
