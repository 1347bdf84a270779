// Each type that columns have on a PostgreSQL server, in rows that are edited: the value that was
// read finds its row again, what somebody else made of it is never overwritten, and what is typed
// is what is stored.
#include <gtest/gtest.h>

#include <limits>

#include "controls/values/value_input.h"
#include "tests/controls/catalog_faults.h"
#include "tests/controls/edited_table.h"
#include "tests/provider/conformance/postgres_under_test.h"
#include "tests/provider/engines/postgres_cluster.h"

namespace orvane::controls {
namespace {

using platform::RowIndex;
using platform::Text;
using platform::Value;
using tests::EditedTable;

class ServerTypesTest : public testing::Test {
 protected:
  void Do(const Text& sSql) {
    tests::PostgresCluster::Get().Do(tests::DatabaseOf(m_server->Server()), sSql);
  }
  /// A column "v" that holds the values, as the server reads them; behind its number.
  void Make(const Text& sType, const std::vector<Text>& values) {
    Do("DROP TABLE IF EXISTS \"P\".\"T\"; CREATE TABLE \"P\".\"T\" (id integer PRIMARY KEY, v " +
       sType + ")");
    Text sRows;
    for (std::size_t i = 0; i < values.size(); ++i) {
      sRows +=
          "INSERT INTO \"P\".\"T\" VALUES (" + std::to_string(i + 1) + ", '" + values[i] + "');";
    }
    if (!sRows.empty()) Do(sRows);
  }
  Text AsText(RowIndex row) {
    return provider::Rows(*m_server->Run(
        m_reader, "SELECT CAST(v AS TEXT) FROM P..T WHERE id = " + std::to_string(row + 1)));
  }
  /// Each value is changed into the one before it, and back as it is typed from what is shown; a
  /// value that somebody else put there stands.
  void ExpectEdited(const Text& sType, const std::vector<Text>& values, const Text& sOptions = {}) {
    SCOPED_TRACE(sType);
    Make(sType, values);
    const auto count = static_cast<RowIndex>(values.size());
    const EditedTable mine(m_server, "T", sOptions);
    const std::vector<Value> originals = ValuesOf(mine);
    std::vector<Text> texts;
    for (RowIndex row = 0; row < count; ++row) texts.push_back(AsText(row));
    for (RowIndex row = 0; row < count; ++row) {
      SCOPED_TRACE(values[static_cast<std::size_t>(row)]);
      const RowIndex from = (row + 1) % count;
      mine.rs->ValueAt(row, 1, originals[static_cast<std::size_t>(from)]);
      EXPECT_FALSE(mine.Store(row));
      EXPECT_EQ(AsText(row), texts[static_cast<std::size_t>(from)]);
      const Value& vtOriginal = originals[static_cast<std::size_t>(row)];
      mine.rs->ValueAt(row, 1, Typed(mine, vtOriginal));
      EXPECT_FALSE(mine.Store(row));
      EXPECT_EQ(AsText(row), texts[static_cast<std::size_t>(row)]);
      EXPECT_TRUE(SameValue(mine.rs->ValueAt(row, 1), vtOriginal));
      ExpectTheirsToStand(mine, row, values[static_cast<std::size_t>(from)]);
    }
    ExpectDeleted(count);
  }
  static std::vector<Value> ValuesOf(const EditedTable& table) {
    std::vector<Value> values;
    for (RowIndex row = 0; row < table.rs->RecordCount(); ++row) {
      values.push_back(table.rs->ValueAt(row, 1));
    }
    return values;
  }
  Value Typed(const EditedTable& mine, const Value& vtValue) const {
    // Nobody types the empty text where null stood.
    if (vtValue == Value("")) return vtValue;
    return m_input.Read(m_input.Shown(vtValue), ColumnTakes(mine.rs->FieldAt(1)), {});
  }
  void ExpectTheirsToStand(const EditedTable& mine, RowIndex row, const Text& sTheirs) {
    const Text sBefore = AsText(row);
    const Text sWhere = " WHERE id = " + std::to_string(row + 1);
    Do("UPDATE \"P\".\"T\" SET v = '" + sTheirs + "'" + sWhere);
    const Text sAfter = AsText(row);
    if (sAfter == sBefore) return;
    mine.rs->ValueAt(row, 1, Value());
    EXPECT_TRUE(mine.Store(row)) << "theirs was overwritten";
    EXPECT_EQ(AsText(row), sAfter);
    mine.rs->CancelUpdate(row);
  }
  /// All but the first at once, that one alone.
  void ExpectDeleted(RowIndex count) {
    const EditedTable mine(m_server, "T");
    std::vector<RowIndex> rows;
    for (RowIndex row = 1; row < count; ++row) rows.push_back(row);
    for (const RowIndex row : rows) mine.rs->Delete(row);
    const auto deleted = RowChanges(mine.cn, m_server, mine.table, 10).Delete(*mine.rs, rows);
    EXPECT_FALSE(deleted.refused) << deleted.sWhyNot;
    mine.rs->Delete(0);
    EXPECT_FALSE(mine.Store(0));
    EXPECT_EQ(m_server->Read("SELECT count(*) FROM P..T"), "0\n");
  }

  std::shared_ptr<tests::HistorianServer> m_server =
      tests::HistorianServer::Make(provider::conformance::PostgresUnderTest());
  const platform::ConnectionPtr m_reader = m_server->Connect();
  const ValueInput m_input;
};

TEST_F(ServerTypesTest, numbers) {
  const std::vector<Text> special = {"NaN", "Infinity", "-Infinity", "0", "-0"};
  auto single = special;
  single.insert(single.end(), {"0.1", "16777216", "1234567", "3.4028235e38", "1e-45",
                               "1.17549435e-38", "-8388609.5", "0.3", "123456.79"});
  ExpectEdited("real", single);
  auto twice = special;
  twice.insert(twice.end(), {"0.1", "0.10000000149011612", "5e-324", "1.7976931348623157e308",
                             "9007199254740993", "1e22"});
  ExpectEdited("double precision", twice);
  ExpectEdited("numeric", {"NaN", "Infinity", "-Infinity", "0", "0.00", "1.50", "1.5", "-1e-30",
                           "123456789012345678901234567890.123456789012345678901234567890"});
  ExpectEdited("numeric(10, 2)", {"1.50", "0", "-99999999.99", "NaN"});
  ExpectEdited("smallint", {"-32768", "32767", "0"});
  ExpectEdited("integer", {"-2147483648", "2147483647"});
  ExpectEdited("bigint", {"-9223372036854775808", "9223372036854775807", "9007199254740993"});
  ExpectEdited("boolean", {"true", "false"});
  ExpectEdited("money", {"1.50", "-2"});
}

TEST_F(ServerTypesTest, times) {
  ExpectEdited("timestamptz",
               {"2026-01-31 23:59:59.123456+00", "0001-01-01 00:00:00+00", "infinity",
                "9999-12-31 23:59:59.999999+00", "-infinity", "0044-03-15 12:00:00+00 BC",
                "20000-01-01 00:00:00.5+00"},
               "Time Zone = Europe/Berlin;");
  // Of no zone: the clocks of the connection's are no matter.
  ExpectEdited("timestamp",
               {"2026-07-31 23:59:59.123456", "infinity", "-infinity", "2026-01-31",
                "0044-03-15 12:00:00 BC", "20000-01-01"},
               "Time Zone = Europe/Berlin;");
  ExpectEdited("date", {"2024-02-29", "0001-01-01", "9999-12-31", "infinity", "-infinity",
                        "0044-03-15 BC", "12345-06-07"});
  ExpectEdited("time", {"00:00:00", "23:59:59.999999", "12:00:00.1", "24:00:00"});
  ExpectEdited("timetz", {"12:00:00+02", "12:00:00-08:30"});
  ExpectEdited("interval", {"1 year 2 mons -3 days 04:05:06.789", "00:00:00.000001", "-1 days"});
}

TEST_F(ServerTypesTest, a_time_without_an_end_is_a_key_and_stored_in_a_new_row) {
  Do("CREATE TABLE \"P\".\"T\" (k timestamptz PRIMARY KEY, v timestamptz NOT NULL); INSERT INTO "
     "\"P\".\"T\" VALUES ('infinity', '-infinity')");
  const EditedTable mine(m_server, "T");
  mine.rs->ValueAt(0, 1, "infinity");
  EXPECT_FALSE(mine.Store(0));
  const RowIndex row = mine.rs->AddNew();
  mine.rs->ValueAt(row, 0, "-infinity");
  mine.rs->ValueAt(row, 1, "0044-03-15 12:00:00+00 BC");
  EXPECT_FALSE(mine.Store(row));
  EXPECT_EQ(mine.rs->OriginalAt(row, 0), Value("-infinity"));
  EXPECT_EQ(m_server->Read("SELECT * FROM P..T ORDER BY k"),
            "-infinity|0044-03-15 12:00:00+00 BC\ninfinity|infinity\n");
  for (const RowIndex one : {RowIndex{0}, row}) {
    mine.rs->Delete(one);
    EXPECT_FALSE(mine.Store(one));
  }
  EXPECT_EQ(m_server->Read("SELECT count(*) FROM P..T"), "0\n");
}

TEST_F(ServerTypesTest, what_is_no_time_is_none_in_a_statement_that_is_typed) {
  Make("timestamptz", {"infinity"});
  EXPECT_TRUE(provider::FailureOf([&] {
                m_server->Run("SELECT * FROM P..T WHERE v = 'soon'");
              }).starts_with("3805: "));
}

TEST_F(ServerTypesTest, a_new_row_of_a_time_without_a_zone_keeps_it_as_it_is) {
  Make("timestamp", {});
  const EditedTable mine(m_server, "T", "Time Zone = Europe/Berlin;");
  const RowIndex row = mine.rs->AddNew();
  mine.rs->ValueAt(row, 0, 1);
  mine.rs->ValueAt(row, 1, "2026-07-31 12:00:00");
  EXPECT_FALSE(mine.Store(row));
  EXPECT_EQ(AsText(0), "2026-07-31 12:00:00\n");
}

TEST_F(ServerTypesTest, texts_of_any_type) {
  ExpectEdited("text", {"", " ", "NULL", "a\nb", "a''b", "0x00", "*-1h", "é", "É"});
  ExpectEdited("varchar(5)", {"ab", "AB", "ab "});
  ExpectEdited("char(5)", {"ab", "AB", "", "abcde"});
  Do("CREATE EXTENSION citext SCHEMA \"P\"; CREATE TYPE \"P\".mood AS ENUM ('sad', 'ok', 'oK'); "
     "CREATE DOMAIN \"P\".share AS real CHECK (VALUE <= 1); CREATE DOMAIN \"P\".word AS text; "
     "CREATE TYPE \"P\".pair AS (a integer, b text)");
  ExpectEdited("\"P\".citext", {"ab", "AB", "Ab"});
  ExpectEdited("\"P\".mood", {"sad", "ok", "oK"});
  ExpectEdited("\"P\".share", {"0.1", "0.3", "-0"});
  ExpectEdited("\"P\".word", {"a", "A"});
  ExpectEdited("\"P\".pair", {"(1,a)", "(1,\"a b\")", "(,)"});
  ExpectEdited("json", {"{\"a\": 1}", "{\"a\":1}", "null", "[1, 2]"});
  ExpectEdited("jsonb", {"{\"a\": 1}", "[]", "null", "1.0", "1"});
  ExpectEdited("xml", {"<a/>", "<a></a>", "text"});
  ExpectEdited("integer[]", {"{1,2}", "{}", "{NULL}", "{{1},{2}}"});
  ExpectEdited("text[]", {"{a,\"b c\"}", "{\"\"}", "{\"NULL\",NULL}"});
  ExpectEdited("real[]", {"{0.1,NaN}", "{-0}", "{0}"});
  ExpectEdited("int4range", {"[1,3)", "empty", "(,)"});
  ExpectEdited("inet", {"10.0.0.1", "10.0.0.1/8", "::1"});
  ExpectEdited("point", {"(0.1,2)", "(-0,0)"});
  ExpectEdited("bit varying", {"101", "", "0"});
  ExpectEdited("tsvector", {"a b", "a"});
}

TEST_F(ServerTypesTest, bytes_and_identifiers) {
  ExpectEdited("bytea", {"\\x", "\\x00ff", "\\x27225c"});
  ExpectEdited("uuid",
               {"00112233-4455-6677-8899-aabbccddeeff", "00000000-0000-0000-0000-000000000000"});
}

// By the number as it is shown, which is not the one that its column holds in double precision.
TEST_F(ServerTypesTest, a_key_of_single_precision_names_its_row) {
  Do("CREATE TABLE \"P\".\"T\" (k real PRIMARY KEY, v text); INSERT INTO \"P\".\"T\" VALUES (0.1, "
     "'a'), (0.3, 'b'), ('-0', 'c'), ('NaN', 'd')");
  const EditedTable mine(m_server, "T");
  ASSERT_EQ(mine.table.key.size(), 1U);
  for (RowIndex row = 0; row < 4; ++row) {
    mine.rs->ValueAt(row, 1, "mine");
    EXPECT_FALSE(mine.Store(row)) << row;
    EXPECT_EQ(mine.rs->OriginalAt(row, 1), Value("mine"));
  }
  mine.rs->ValueAt(0, 0, 0.7);
  EXPECT_FALSE(mine.Store(0));
  EXPECT_EQ(mine.rs->OriginalAt(0, 0), Value(0.7));
  EXPECT_EQ(m_server->Read("SELECT CAST(k AS TEXT) FROM P..T ORDER BY k"), "-0\n0.3\n0.7\nNaN\n");
  const RowIndex row = mine.rs->AddNew();
  mine.rs->ValueAt(row, 0, 0.9);
  EXPECT_FALSE(mine.Store(row));
  EXPECT_EQ(mine.rs->ValueAt(row, 0), Value(0.9));
  std::vector<RowIndex> rows = {0, 1, 2, 3};
  for (const RowIndex one : rows) mine.rs->Delete(one);
  EXPECT_FALSE(RowChanges(mine.cn, m_server, mine.table, 10).Delete(*mine.rs, rows).refused);
  EXPECT_EQ(m_server->Read("SELECT CAST(k AS TEXT) FROM P..T"), "0.9\n");
}

TEST_F(ServerTypesTest, a_number_that_the_column_cannot_hold_is_refused_and_stays_typed) {
  Make("real", {"0.1"});
  const EditedTable mine(m_server, "T");
  for (const double dMine : {1e300, 1e-300}) {
    mine.rs->ValueAt(0, 1, dMine);
    EXPECT_NE(provider::FailureOf([&] { mine.Store(0); }), "no failure");
    EXPECT_EQ(mine.rs->ValueAt(0, 1), Value(dMine));
    EXPECT_EQ(AsText(0), "0.1\n");
  }
}

}  // namespace
}  // namespace orvane::controls
