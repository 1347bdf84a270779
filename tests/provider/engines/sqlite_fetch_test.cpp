#include <cmath>
#include <limits>

#include "platform/conversions.h"
#include "tests/provider/engines/database_folder.h"

namespace orvane::provider::engines {
namespace {

using platform::DataType;
using platform::Text;
using platform::Value;
using tests::Big;
using tests::FailureOf;
using tests::Told;
namespace failure = platform::failure;
using namespace std::chrono_literals;

class SqliteFetchTest : public tests::DatabaseFolder {
 protected:
  std::unique_ptr<FileSession> OpenOn(const std::string& sSql) { return Open(Make("m.db", sSql)); }
};

TEST_F(SqliteFetchTest, columns_come_out_in_their_declared_types) {
  const auto session = OpenOn(
      "CREATE TABLE t(i INTEGER, s INT, r REAL, x TEXT, ts TIMESTAMP, b BOOLEAN, d DATE, "
      "tm TIME, g GUID, bl BLOB, n NUMERIC, plain)");
  const platform::Guid guid{{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}};
  const std::vector<Value> vtRow = {Big(9'007'199'254'740'993),
                                    std::int32_t{-5},
                                    0.1,
                                    "text",
                                    platform::Timestamp(1'700'000'000'123'456us),
                                    true,
                                    platform::Date(std::chrono::days(19000)),
                                    platform::TimeOfDay(3'723'000'001us),
                                    guid,
                                    platform::Bytes{std::byte{0}, std::byte{0xFF}},
                                    Big(12),
                                    "plain"};
  Run(*session, "INSERT INTO t VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)", vtRow);
  const auto rs = Run(*session, "SELECT * FROM t").recordset;
  const std::vector<DataType> types = {DataType::BigInt, DataType::Integer,     DataType::Double,
                                       DataType::WChar,  DataType::DBTimeStamp, DataType::Boolean,
                                       DataType::DBDate, DataType::DBTime,      DataType::Guid,
                                       DataType::Binary, DataType::Numeric,     DataType::WChar};
  ASSERT_EQ(rs->FieldCount(), static_cast<platform::ColumnIndex>(vtRow.size()));
  for (platform::ColumnIndex i = 0; i < rs->FieldCount(); ++i) {
    const auto at = static_cast<std::size_t>(i);
    EXPECT_EQ(rs->FieldAt(i).Type(), types[at]) << rs->FieldAt(i).Name();
    EXPECT_TRUE(rs->ValueAt(0, i) == vtRow[at]) << rs->FieldAt(i).Name();
  }
}

TEST_F(SqliteFetchTest, a_timestamp_is_stored_as_microseconds_since_1970) {
  const auto session = OpenOn("CREATE TABLE t(ts TIMESTAMP)");
  Run(*session, "INSERT INTO t VALUES (?)", {platform::Timestamp(-1us)});
  EXPECT_TRUE(One(*session, "SELECT typeof(ts) || ts FROM t") == Value("integer-1"));
  EXPECT_TRUE(One(*session, "SELECT ts FROM t WHERE ts = ?", {platform::Timestamp(-1us)}) ==
              Value(platform::Timestamp(-1us)));
}

TEST_F(SqliteFetchTest, every_value_stays_what_it_is_in_a_column_of_another_type) {
  const auto session = OpenOn(
      "CREATE TABLE t(n INTEGER PRIMARY KEY, v TIMESTAMP); INSERT INTO t(v) VALUES (1), (NULL), "
      "('2024-01-01'), (1.5), (x'00FF'), (9223372036854775807)");
  const auto rs = Run(*session, "SELECT v FROM t ORDER BY n").recordset;
  EXPECT_EQ(rs->FieldAt(0).Type(), DataType::DBTimeStamp);
  const std::vector<Value> expected = {
      platform::Timestamp(1us),
      {},
      "2024-01-01",
      1.5,
      platform::Bytes{std::byte{0}, std::byte{0xFF}},
      platform::Timestamp(std::chrono::microseconds(std::numeric_limits<std::int64_t>::max()))};
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_TRUE(rs->ValueAt(static_cast<platform::RowIndex>(i), 0) == expected[i]) << i;
  }
}

TEST_F(SqliteFetchTest, what_does_not_fit_a_short_integer_or_a_boolean_stays_64_bit) {
  const auto session = OpenOn(
      "CREATE TABLE t(i INT, b BOOLEAN); INSERT INTO t VALUES (2147483647, 0), (2147483648, 2), "
      "(-2147483648, -1), (-2147483649, 1)");
  const auto rs = Run(*session, "SELECT i, b FROM t").recordset;
  EXPECT_TRUE(rs->ValueAt(0, 0) == Value(2147483647));
  EXPECT_TRUE(rs->ValueAt(1, 0) == Big(2147483648));
  EXPECT_TRUE(rs->ValueAt(2, 0) == Value(std::numeric_limits<std::int32_t>::min()));
  EXPECT_TRUE(rs->ValueAt(3, 0) == Big(-2147483649));
  EXPECT_TRUE(rs->ValueAt(0, 1) == Value(false));
  EXPECT_TRUE(rs->ValueAt(1, 1) == Big(2));
  EXPECT_TRUE(rs->ValueAt(2, 1) == Big(-1));
  EXPECT_TRUE(rs->ValueAt(3, 1) == Value(true));
}

TEST_F(SqliteFetchTest, a_column_may_start_all_null) {
  const auto session = OpenOn(
      "CREATE TABLE t(a REAL); WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c "
      "LIMIT 1000) INSERT INTO t SELECT NULL FROM c; INSERT INTO t VALUES (2.5)");
  const auto rs = Run(*session, "SELECT a FROM t").recordset;
  EXPECT_TRUE(rs->ValueAt(999, 0).IsNull());
  EXPECT_TRUE(rs->ValueAt(1000, 0) == Value(2.5));
}

TEST_F(SqliteFetchTest, an_expression_has_the_type_of_its_values) {
  const auto session = Open();
  const auto rs =
      Run(*session, "SELECT 1 + 1 AS i, 1.5 AS r, 'x' AS s, NULL AS n, x'00' AS b").recordset;
  EXPECT_EQ(rs->FieldAt(0).Type(), DataType::BigInt);
  EXPECT_EQ(rs->FieldAt(1).Type(), DataType::Double);
  EXPECT_EQ(rs->FieldAt(2).Type(), DataType::WChar);
  EXPECT_EQ(rs->FieldAt(3).Type(), DataType::Empty);
  EXPECT_EQ(rs->FieldAt(4).Type(), DataType::Binary);
}

TEST_F(SqliteFetchTest, an_empty_rowset_keeps_names_and_declared_types) {
  const auto session = OpenOn("CREATE TABLE t(\"Zeit Größe\" TIMESTAMP, b TEXT)");
  const auto rs = Run(*session, "SELECT * FROM t").recordset;
  EXPECT_EQ(rs->RecordCount(), 0);
  EXPECT_EQ(rs->FieldAt(0).Name(), "Zeit Größe");
  EXPECT_EQ(rs->FieldAt(0).Type(), DataType::DBTimeStamp);
  EXPECT_TRUE(rs->Eof());
}

TEST_F(SqliteFetchTest, a_field_is_not_nullable_only_when_its_column_refuses_null) {
  const auto session = OpenOn("CREATE TABLE t(a TEXT NOT NULL, b TEXT)");
  const auto rs = Run(*session, "SELECT a, b, a || b, x.a FROM t AS x").recordset;
  EXPECT_FALSE(rs->FieldAt(0).Nullable());
  EXPECT_TRUE(rs->FieldAt(1).Nullable());
  EXPECT_TRUE(rs->FieldAt(2).Nullable());
  EXPECT_FALSE(rs->FieldAt(3).Nullable());
}

TEST_F(SqliteFetchTest, texts_of_every_script_and_zero_bytes_come_back_whole) {
  const auto session = OpenOn("CREATE TABLE t(n INTEGER PRIMARY KEY, a TEXT)");
  const std::vector<Text> texts = {"",
                                   "Ωμέγα 温度 🌡",
                                   "it's \"quoted\";--",
                                   "line\r\nbreak",
                                   Text("a\0b", 3),
                                   Text(100'000, 'x')};
  for (const Text& sText : texts) Run(*session, "INSERT INTO t(a) VALUES (?)", {sText});
  const auto rs = Run(*session, "SELECT a FROM t ORDER BY n").recordset;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_TRUE(rs->ValueAt(static_cast<platform::RowIndex>(i), 0) == Value(texts[i])) << i;
  }
}

TEST_F(SqliteFetchTest, texts_of_a_database_in_another_encoding_come_out_in_utf8) {
  const auto session = OpenOn("PRAGMA encoding = 'UTF-16'; CREATE TABLE t(n INTEGER, a TEXT)");
  const std::vector<Text> texts = {"", "Ωμέγα 温度 🌡", "plain"};
  for (const Text& sText : texts) Run(*session, "INSERT INTO t(a) VALUES (?)", {sText});
  const auto rs = Run(*session, "SELECT a FROM t ORDER BY rowid").recordset;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_TRUE(rs->ValueAt(static_cast<platform::RowIndex>(i), 0) == Value(texts[i])) << i;
  }
}

TEST_F(SqliteFetchTest, a_text_that_stays_the_same_in_every_row_stays_a_text) {
  const auto session = OpenOn("CREATE TABLE t(n); INSERT INTO t VALUES (1), (2), (3)");
  const auto rs = Run(*session, "SELECT 'same', n, typeof('same'), 'same' || n FROM t").recordset;
  for (platform::RowIndex row = 0; row < 3; ++row) {
    EXPECT_TRUE(rs->ValueAt(row, 0) == Value("same"));
    EXPECT_TRUE(rs->ValueAt(row, 2) == Value("text"));
    EXPECT_TRUE(rs->ValueAt(row, 3) == Value("same" + std::to_string(row + 1)));
  }
}

TEST_F(SqliteFetchTest, an_empty_blob_is_not_null) {
  const auto session = OpenOn("CREATE TABLE t(a BLOB)");
  Run(*session, "INSERT INTO t VALUES (?)", {platform::Bytes{}});
  EXPECT_TRUE(One(*session, "SELECT a FROM t") == Value(platform::Bytes{}));
}

TEST_F(SqliteFetchTest, numbers_at_their_limits_come_back_exactly) {
  const auto session = OpenOn("CREATE TABLE t(n INTEGER PRIMARY KEY, a)");
  const std::vector<Value> vtValues = {
      Big(std::numeric_limits<std::int64_t>::min()), Big(std::numeric_limits<std::int64_t>::max()),
      std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min(),
      -std::numeric_limits<double>::infinity()};
  for (const Value& vtValue : vtValues) Run(*session, "INSERT INTO t(a) VALUES (?)", {vtValue});
  const auto rs = Run(*session, "SELECT a FROM t ORDER BY n").recordset;
  for (std::size_t i = 0; i < vtValues.size(); ++i) {
    EXPECT_TRUE(rs->ValueAt(static_cast<platform::RowIndex>(i), 0) == vtValues[i]) << i;
  }
}

TEST_F(SqliteFetchTest, a_decimal_is_bound_with_all_its_digits) {
  const auto session = OpenOn("CREATE TABLE t(a TEXT)");
  Run(*session, "INSERT INTO t VALUES (?)", {platform::Decimal{"-0.10"}});
  EXPECT_TRUE(One(*session, "SELECT a FROM t") == Value("-0.10"));
}

TEST_F(SqliteFetchTest, parameters_are_values_and_never_sql) {
  const auto session = OpenOn("CREATE TABLE t(a TEXT)");
  const Text sNasty = "'); DROP TABLE t; --";
  Run(*session, "INSERT INTO t VALUES (?)", {sNasty});
  EXPECT_TRUE(One(*session, "SELECT a FROM t WHERE a = ?", {sNasty}) == Value(sNasty));
}

TEST_F(SqliteFetchTest, as_many_parameters_as_places_are_needed) {
  const auto session = Open();
  EXPECT_EQ(FailureOf([&] { Run(*session, "SELECT ?, ?", {1}); }),
            (Told{failure::kInvalidArgument,
                  "The statement takes 2 parameters, but 1 were given; give one value for each."}));
  EXPECT_EQ(FailureOf([&] { Run(*session, "SELECT 1", {1}); }).lNumber, failure::kInvalidArgument);
  EXPECT_EQ(FailureOf([&] { Run(*session, "SELECT ?", {std::make_shared<platform::Object>()}); }),
            (Told{failure::kTypeMismatch,
                  "Parameter 1 is an object, which no database can hold: give a plain value."}));
}

TEST_F(SqliteFetchTest, every_kind_of_value_can_be_a_parameter) {
  const auto session = Open();
  const auto rs = Run(*session, "SELECT ?, ?, ?, ?, ?, ?",
                      {{},
                       false,
                       std::int32_t{7},
                       Big(8),
                       platform::Date(std::chrono::days(0)),
                       platform::TimeOfDay(1s)})
                      .recordset;
  EXPECT_TRUE(rs->ValueAt(0, 0).IsNull());
  EXPECT_TRUE(rs->ValueAt(0, 1) == Big(0));
  EXPECT_TRUE(rs->ValueAt(0, 2) == Big(7));
  EXPECT_TRUE(rs->ValueAt(0, 3) == Big(8));
  EXPECT_TRUE(rs->ValueAt(0, 4) == Value("1970-01-01"));
  EXPECT_TRUE(rs->ValueAt(0, 5) == Value("00:00:01"));
}

TEST_F(SqliteFetchTest, a_million_rows_are_reached_by_number) {
  const auto session = Open();
  const auto rs = Run(*session,
                      "WITH RECURSIVE c(x) AS (SELECT 0 UNION ALL SELECT x + 1 FROM c LIMIT "
                      "1000000) SELECT x, 'tag' || (x % 10), x / 2.0 FROM c")
                      .recordset;
  ASSERT_EQ(rs->RecordCount(), 1'000'000);
  for (const platform::RowIndex row : {0, 1, 8191, 8192, 500'000, 999'999}) {
    EXPECT_TRUE(rs->ValueAt(row, 0) == Big(row));
    EXPECT_TRUE(rs->ValueAt(row, 1) == Value("tag" + std::to_string(row % 10)));
    EXPECT_TRUE(rs->ValueAt(row, 2) == Value(static_cast<double>(row) / 2));
  }
  EXPECT_GT(rs->Elapsed().count(), 0);
}

}  // namespace
}  // namespace orvane::provider::engines
