// Under which names columns are found, and shown, where times are among them.
#include "tests/provider/dialect/forms.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

class column_names : public Plant {};

TEST_F(column_names, columns_of_queries_hide_behind_no_name) {
  const Text sFrom =
      "SELECT 1 FROM (SELECT a.Timestamp, b.Timestamp, (a.Timestamp), max(a.Timestamp) FROM "
      "Plant1..Data a, Plant1..Data b) WHERE ";
  EXPECT_EQ(Refusal(sFrom + "\"Timestamp:1\" < 'x'"), "There is no column \"Timestamp:1\"");
  EXPECT_EQ(Refusal(sFrom + "\"max(a.Timestamp)\" < 'x'"), "'x' is no time");
  EXPECT_EQ(Refusal(sFrom + "Timestamp < 'x'"), "'x' is no time");
  EXPECT_EQ(Refusal("SELECT 1 FROM (SELECT (Timestamp) FROM Plant1..Data) WHERE Timestamp < 'x'"),
            "'x' is no time");
  EXPECT_EQ(Run("SELECT count(*) FROM (SELECT (Timestamp) FROM Plant1..Data) WHERE Timestamp < "
                "'*-20h'"),
            "3\n");
}

TEST_F(column_names, a_column_that_becomes_a_time_keeps_its_name) {
  Run("CREATE TABLE Plant1..Notes (Timestamp TEXT, Note TEXT)");
  Run("INSERT INTO Plant1..Notes VALUES ('2024-05-15 10:00', 'a')");
  const Text sJoined =
      "(SELECT Timestamp FROM Plant1..Notes UNION SELECT Timestamp FROM Plant1..Copy)";
  EXPECT_EQ(Count(sJoined + " WHERE Timestamp > '*-3h'"), "3 ");
  EXPECT_EQ(Run("WITH j AS " + sJoined + " SELECT max(j.Timestamp) FROM j"),
            "2024-05-15 12:00:00\n");
  // It is not taken for the column around the query.
  EXPECT_EQ(Hours("EXISTS (SELECT 1 FROM " + sJoined + " WHERE Timestamp > '*-1h')"),
            Expanded("0-23"));
  const Text sSorted =
      "SELECT (n.Timestamp) FROM Plant1..Notes n UNION SELECT Timestamp FROM Plant1..Copy WHERE "
      "Value = 0 ORDER BY Timestamp";
  EXPECT_EQ(Run("SELECT * FROM (" + sSorted + ")"), "2024-05-15 08:00:00\n2024-05-15 12:00:00\n");
  const auto rs = m_session
                      ->Execute({"SELECT n.timestamp FROM Plant1..Notes n UNION SELECT Timestamp "
                                 "FROM Plant1..Copy ORDER BY Timestamp",
                                 1, std::chrono::seconds(0)},
                                {})
                      .recordset;
  EXPECT_EQ(rs->FieldAt(0).Name(), "Timestamp");
  // What is asked for beside it would mean another one.
  EXPECT_EQ(Refusal("SELECT (SELECT count(*) FROM (SELECT Description FROM Plant1..Notes WHERE "
                    "Description = 'none' UNION SELECT Timestamp FROM Plant1..Data)) FROM "
                    "Plant1..Tags"),
            "A column that becomes a time has no name of its own");
}

TEST_F(column_names, a_column_behind_a_plus_has_another_name) {
  Run("CREATE TABLE Plant1..Notes (Timestamp TEXT, Note TEXT)");
  Run("INSERT INTO Plant1..Notes VALUES ('2024-05-15 10:00', 'a')");
  // The name means the column around the query, which is a time.
  for (const char* const sItem : {"+Timestamp", "(+Timestamp)", "(+Timestamp) COLLATE NOCASE"}) {
    EXPECT_EQ(Hours(Text("EXISTS (SELECT 1 FROM (SELECT ") + sItem +
                    " FROM Plant1..Notes) WHERE Timestamp > '*-2h')"),
              Expanded("0-1"))
        << sItem;
  }
}

TEST_F(column_names, no_column_of_a_query_is_true) {
  const Text sFrom = "(SELECT Timestamp AS \"true\" FROM Plant1..Data) WHERE ";
  EXPECT_EQ(Count(sFrom + "true = 1"), "24 ");
  EXPECT_EQ(Count(sFrom + "column1 > '*-2h'"), "2 ");
  EXPECT_EQ(Run("WITH q(a, \"False\") AS (SELECT 1, Timestamp FROM Plant1..Data) SELECT count(*) "
                "FROM q WHERE column2 > '*-2h' AND NOT false"),
            "2\n");
  // It is not taken for the text of that name around the query either.
  EXPECT_EQ(Run("SELECT DISTINCT (SELECT count(*) FROM " + sFrom +
                "column1 > '*-2h') FROM (VALUES ('x'), ('y'))"),
            "2\n");
}

TEST_F(column_names, headings_stay_as_they_were_written) {
  const auto rs =
      m_session
          ->Execute({"SELECT '*' UNION SELECT Timestamp FROM Plant1..Data WHERE Value = "
                     "0",
                     0, std::chrono::seconds(0)},
                    {})
          .recordset;
  EXPECT_EQ(rs->FieldAt(0).Name(), "'*'");
  EXPECT_EQ(Rows(*rs), "2024-05-15 12:00:00\n");
  const auto days = m_session
                        ->Execute({"SELECT date(Timestamp), max(Timestamp, '*') AS m FROM "
                                   "Plant1..Data LIMIT 1",
                                   0, std::chrono::seconds(0)},
                                  {})
                        .recordset;
  EXPECT_EQ(days->FieldAt(0).Name(), "date(Timestamp)");
  EXPECT_EQ(days->FieldAt(1).Type(), platform::DataType::DBTimeStamp);
}

}  // namespace
}  // namespace orvane::provider::dialect
