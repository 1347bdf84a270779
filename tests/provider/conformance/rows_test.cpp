// Rows of statements: how many, of which types, and what a change tells of its own.
#include <thread>

#include "tests/provider/conformance/conformance.h"

namespace orvane::provider::conformance {
namespace {

using platform::DataType;

class rows : public Conformance {};

ORVANE_ON_EVERY_ENGINE(rows);

TEST_P(rows, are_cut_at_the_limit_only_when_there_was_one_more) {
  const auto opened = OpenPlant();
  struct Case {
    platform::Long lLimit;
    platform::RowIndex rows;
    bool bTruncated;
  };
  for (const Case& limited :
       {Case{0, 24, false}, {1, 1, true}, {23, 23, true}, {24, 24, false}, {25, 24, false}}) {
    const auto rs = Run(*opened, "SELECT Value FROM Plant1..Data", limited.lLimit).recordset;
    EXPECT_EQ(rs->RecordCount(), limited.rows) << limited.lLimit;
    EXPECT_EQ(rs->Truncated(), limited.bTruncated) << limited.lLimit;
  }
  const auto none = Run(*opened, "SELECT Value FROM Plant1..Data WHERE Value < 0", 1).recordset;
  EXPECT_EQ(none->RecordCount(), 0);
  EXPECT_FALSE(none->Truncated());
  EXPECT_EQ(none->FieldAt(0).Name(), "Value");
  EXPECT_EQ(none->FieldAt(0).Type(), DataType::Double);
}

TEST_P(rows, have_the_types_that_their_columns_were_declared_with) {
  const auto opened = Open();
  Run(*opened, "CREATE DATABASE \"P\" ");
  Run(*opened,
      "CREATE TABLE P..T (a INT, b BIGINT, c DOUBLE, d BOOLEAN, e GUID, f BLOB, g VARCHAR(20), h "
      "DATE, i TIME, j TIMESTAMP)");
  const std::vector<DataType> types = {DataType::Integer,    DataType::BigInt, DataType::Double,
                                       DataType::Boolean,    DataType::Guid,   DataType::Binary,
                                       DataType::WChar,      DataType::DBDate, DataType::DBTime,
                                       DataType::DBTimeStamp};
  for (const bool bRow : {false, true}) {
    const auto rs = Run(*opened, "SELECT * FROM P..T").recordset;
    ASSERT_EQ(rs->FieldCount(), static_cast<platform::ColumnIndex>(types.size()));
    for (std::size_t i = 0; i < types.size(); ++i) {
      const auto column = static_cast<platform::ColumnIndex>(i);
      EXPECT_EQ(rs->FieldAt(column).Type(), types[i]) << rs->FieldAt(column).Name();
      if (!bRow) continue;
      EXPECT_TRUE(rs->ValueAt(0, column).IsNull());
    }
    if (!bRow) Run(*opened, "INSERT INTO P..T (a) VALUES (NULL)");
  }
}

TEST_P(rows, tell_where_null_stands_and_by_what_their_texts_are_put_in_order) {
  const auto opened = Open();
  Run(*opened, "CREATE DATABASE \"P\" ");
  Run(*opened, "CREATE TABLE P..T (a VARCHAR(20), n INT)");
  for (const char* sRow : {"('b', 1)", "('B', 2)", "(NULL, NULL)", "('a ', 3)", "('a', 4)"}) {
    Run(*opened, Text("INSERT INTO P..T VALUES ") + sRow);
  }
  for (const Text sColumn : {"a", "n"}) {
    for (const bool bAscending : {true, false}) {
      const auto rs = Run(*opened, "SELECT " + sColumn + " FROM P..T ORDER BY " + sColumn +
                                       (bAscending ? " ASC" : " DESC"))
                          .recordset;
      ASSERT_EQ(rs->RecordCount(), 5);
      const bool bLast = bAscending == rs->FieldAt(0).NullIsLast();
      EXPECT_TRUE(rs->ValueAt(bLast ? 4 : 0, 0).IsNull()) << sColumn << bAscending;
      if (rs->FieldAt(0).TextOrder() != platform::TextOrder::Bytes || !bAscending) continue;
      for (platform::RowIndex row = bLast ? 1 : 2; row < (bLast ? 4 : 5); ++row) {
        const Value vtBefore = rs->ValueAt(row - 1, 0);
        const Value vtThis = rs->ValueAt(row, 0);
        if (vtThis.As<Text>() != nullptr) EXPECT_LE(*vtBefore.As<Text>(), *vtThis.As<Text>());
      }
    }
  }
}

TEST_P(rows, of_a_change_are_counted_for_that_statement_only) {
  const auto opened = OpenPlant();
  EXPECT_EQ(Run(*opened, "UPDATE Plant1..Data SET Value = 1").lRecordsAffected, 24);
  EXPECT_EQ(Run(*opened, "SELECT * FROM Plant1..Data").lRecordsAffected, 0);
  EXPECT_EQ(Run(*opened, "DELETE FROM Plant1..Data WHERE Value > 1").lRecordsAffected, 0);
  const auto create = Run(*opened, "CREATE TABLE Plant1..T (a INT)");
  EXPECT_EQ(create.lRecordsAffected, 0);
  EXPECT_EQ(create.recordset->FieldCount(), 0);
}

TEST_P(rows, may_come_of_a_change_too) {
  const auto opened = OpenPlant();
  const auto result =
      Run(*opened,
          "UPDATE Plant1..Data SET Value = 7 WHERE Timestamp >= '*-1h' RETURNING Value, Timestamp");
  EXPECT_EQ(result.lRecordsAffected, 2);
  ASSERT_EQ(result.recordset->RecordCount(), 2);
  EXPECT_EQ(result.recordset->FieldAt(1).Type(), DataType::DBTimeStamp);
  // All of the change is made, however few of its rows are asked for.
  EXPECT_EQ(Run(*opened, "DELETE FROM Plant1..Data RETURNING Value", 3).recordset->RecordCount(),
            3);
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "0\n");
}

TEST_P(rows, that_a_rule_refuses_are_told_so_and_not_stored) {
  const auto opened = OpenPlant();
  Run(*opened,
      "CREATE TABLE Plant1..T (a INT PRIMARY KEY, b INT NOT NULL, c INT CHECK (c > 0), d INT "
      "UNIQUE)");
  Run(*opened, "INSERT INTO Plant1..T VALUES (1, 1, 1, 1)");
  for (const char* const sRow : {"(1, 1, 1, 2)", "(2, NULL, 1, 2)", "(2, 1, 0, 2)", "(2, 1, 1, 1)",
                                 "(3, 1, 1, 3), (3, 1, 1, 4)"}) {
    EXPECT_EQ(Failing(*opened, Text("INSERT INTO Plant1..T VALUES ") + sRow).substr(0, 4), "3806")
        << sRow;
  }
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..T"), "1\n");
}

// What a grid sends for an edited row.
TEST_P(rows, are_found_by_their_key_and_all_their_originals) {
  const auto opened = Open();
  Run(*opened, "CREATE DATABASE \"P\" ");
  Run(*opened,
      "CREATE TABLE P..\"odd \"\"table\" (\"a.b\" TEXT PRIMARY KEY, v DOUBLE, t TIMESTAMP)");
  With(*opened, "INSERT INTO \"P\"..\"odd \"\"table\" (\"a.b\", v, t) VALUES (?, ?, ?)",
       {"x", 1.5, FixedNow()});
  ado::Statement update{
      "UPDATE \"P\"..\"odd \"\"table\" SET v = ? WHERE \"a.b\" = ? AND \"a.b\" = ? COLLATE BINARY "
      "AND "
      "v = ? AND t = ?"};
  update.rowsExpected = 1;
  update.parameters = {2.5, "X", "X", 1.5, FixedNow()};
  EXPECT_EQ(FailureOf([&] { opened->Execute(update, {}); }).substr(0, 4), "3812");
  update.parameters = {2.5, "x", "x", 1.5, FixedNow()};
  EXPECT_EQ(opened->Execute(update, {}).lRecordsAffected, 1);
  EXPECT_EQ(FailureOf([&] { opened->Execute(update, {}); }).substr(0, 4), "3812");
  EXPECT_EQ(Select(*opened, "SELECT v FROM P..\"odd \"\"table\" WHERE \"a.b\" = 'x'"), "2.5\n");
}

TEST_P(rows, outlive_their_session_and_come_on_any_thread) {
  auto opened = OpenPlant();
  platform::RecordsetPtr rs;
  std::thread([&] {
    rs = Run(*opened, "SELECT Value FROM Plant1..Data WHERE Timestamp = '*'").recordset;
  }).join();
  std::thread([&] { opened.reset(); }).join();
  EXPECT_EQ(Rows(*rs), "0.5\n");
}

TEST_P(rows, hold_texts_of_every_script) {
  const auto opened = OpenPlant();
  const Text sText = "\xC3\x84rger \xE2\x82\xAC \xF0\x9F\x9A\x80 '\"\\%_;--/*";
  With(*opened, "INSERT INTO Plant1..Tags (Tag, Unit) VALUES (?, ?)", {sText, ""});
  const auto rs = Run(*opened, "SELECT Tag, Unit, Description FROM Plant1..Tags").recordset;
  EXPECT_EQ(rs->ValueAt(0, 0), Value(sText));
  EXPECT_EQ(rs->ValueAt(0, 1), Value(""));
  EXPECT_TRUE(rs->ValueAt(0, 2).IsNull());
}

}  // namespace
}  // namespace orvane::provider::conformance
