// What other programs keep in columns of dates and times of day, and in views, defaults and
// computed columns over them.
#include "tests/provider/dialect/days.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

class stored_days : public Days {
 protected:
  stored_days() {
    EXPECT_EQ(
        Theirs(
            "CREATE TABLE Log (Id INTEGER PRIMARY KEY, Day DATE, At TIME, Line);"
            "INSERT INTO Log VALUES (1, '20260115', '08:30:00', 5), (2, '20261115', NULL, 'a'), "
            "(3, '20261101', '9', 'b');"
            "CREATE TABLE Keys (Day DATE PRIMARY KEY, Nr) WITHOUT ROWID;"
            "INSERT INTO Keys VALUES ('2024-05-14', 1), (x'00ff', 2);"
            "CREATE TABLE Shifts (Id INTEGER PRIMARY KEY, Day DATE);"
            "INSERT INTO Shifts VALUES (1, '2026-11-15'), (2, '2026-10-01');"
            "CREATE TABLE T (Id INTEGER PRIMARY KEY, s TEXT, y INTEGER AS (CAST(s AS DATE)), z "
            "DATE AS (s));"
            "INSERT INTO T (s) VALUES ('2024-05-31');"
            "CREATE VIEW ThisMonth AS SELECT Id, Day FROM Shifts WHERE Day >= strftime('%Y-%m-01', "
            "'2026-11-20');"
            "CREATE VIEW InYear AS SELECT Id, Day FROM Shifts WHERE Day >= '2026-11';"
            "CREATE VIEW Ints AS SELECT Id, Day FROM Log WHERE Day >= 20261101;"
            "CREATE VIEW Years AS SELECT Id FROM Shifts WHERE strftime('%Y', Day) + 0 > 2025 AND "
            "Day + 1 > 2026 AND date(Day) <> (SELECT max(Line) FROM Log);"
            "CREATE VIEW Texts AS SELECT Id, coalesce(Day, 'none') AS d FROM Shifts UNION SELECT "
            "3, 'none' ORDER BY 2;"
            "CREATE VIEW Grouped AS SELECT min(coalesce(Day, 5)) AS d, count(DISTINCT ifnull(Day, "
            "0)) AS n FROM Shifts GROUP BY substr(Day, 1, 4) > 'y';"
            "CREATE VIEW Casts AS SELECT CAST(Day AS DATE) AS d FROM Shifts;"
            "CREATE VIEW Joined AS SELECT Day FROM Shifts NATURAL JOIN (SELECT '2026-10-01' AS "
            "Day)"),
        SQLITE_OK);
  }
  static constexpr const char* kLog =
      "The column \"Day\" of the table \"Log\" in the catalog Plant1 holds 20260115 in its row 1 "
      "and no date, so nothing can be compared with it: write a date there by UPDATE ... SET "
      "\"Day\" = '2024-05-31' WHERE rowid = 1, or DELETE that row, or write CAST(\"Day\" AS "
      "INTEGER) where numbers are meant.";
};

TEST_F(stored_days, of_views_and_computed_columns_are_compared_as_they_stand) {
  EXPECT_EQ(Run("SELECT Id, Day FROM Plant1..ThisMonth"), "1|2026-11-15\n");
  EXPECT_EQ(Run("SELECT Id, Day FROM Plant1..InYear"), "1|2026-11-15\n");
  EXPECT_EQ(Run("SELECT Id, Day FROM Plant1..Ints ORDER BY Id"), "2|20261115\n3|20261101\n");
  EXPECT_EQ(Run("SELECT count(*) FROM Plant1..Ints"), "2\n");
  EXPECT_EQ(Run("SELECT Id, s, y FROM Plant1..T"), "1|2024-05-31|2024\n");
  EXPECT_EQ(Run("SELECT * FROM Plant1..T WHERE y = 2024"), "1|2024-05-31|2024|2024-05-31\n");
  EXPECT_EQ(Run("SELECT Id FROM Plant1..Years"), "1\n2\n");
  EXPECT_EQ(Run("SELECT Id FROM Plant1..Texts ORDER BY Id"), "1\n2\n3\n");
  EXPECT_EQ(Run("SELECT d, n FROM Plant1..Grouped"), "2026-10-01|2\n");
  EXPECT_EQ(Run("SELECT Day FROM Plant1..Joined"), "2026-10-01\n");
}

TEST_F(stored_days, of_views_meet_dates_as_those_of_tables_do) {
  EXPECT_EQ(Run("SELECT Id FROM Plant1..InYear WHERE Day > '*'"), "1\n");
  EXPECT_EQ(Refusal("SELECT Id FROM Plant1..InYear WHERE Day > 'soon'"), "'soon' is no date");
  EXPECT_EQ(Refusal("SELECT Id FROM Plant1..Texts WHERE d > '*'"),
            "'none' is compared with a date or stored as one, and is none: at its character 1 it "
            "must begin with *, t, y or a date such as 2024-05-31.");
  EXPECT_EQ(Failing("SELECT Id FROM Plant1..Ints WHERE Day > '*'"), kLog);
  // To the engine such a CAST makes a number of a date.
  EXPECT_EQ(Run("SELECT d FROM Plant1..Casts WHERE d > 2025"), "2026\n2026\n");
  EXPECT_EQ(Refusal("SELECT d FROM Plant1..Casts WHERE d < 'y'"),
            "A number made from a time is compared with a text");
}

// A column that other programs compute, and views over it: a stored time in some rows, the text of
// a date in others.
TEST_F(stored_days, that_are_times_in_other_rows_are_compared_with_nothing) {
  ASSERT_EQ(
      Theirs("CREATE TABLE K (Id INTEGER PRIMARY KEY, Day DATE, TS TIMESTAMP, A INTEGER, "
             "x AS (coalesce(TS, trim(Day))), x2 TEXT AS (coalesce(TS, trim(Day))), "
             "i AS (iif(A, TS, CAST(Day AS TEXT))), "
             "c AS (CASE A WHEN 1 THEN TS ELSE substr(Day, 1, 10) END), "
             "u AS (coalesce(unixepoch(TS), trim(Day))), u2 NUMERIC AS (u || ''), "
             "d AS (coalesce(TS, Day)), d2 DATE AS (coalesce(TS, Day)), Own AS (Day), "
             "t AS (Day || ''), n NUMERIC AS (trim(Day)), m INTEGER AS (CAST(substr(Day, 6, 2) AS "
             "INTEGER)), l AS (length(Day)));"
             "INSERT INTO K (Id, Day, TS, A) VALUES (1, '2024-05-14', NULL, 0), (2, NULL, "
             "1715774400000000, 1);"
             "CREATE VIEW KView AS SELECT x, x2, i, c, u, u2, d, d2 FROM K"),
      SQLITE_OK);
  for (const char* const sColumn : {"x", "x2", "i", "c", "u", "u2", "d", "d2"}) {
    for (const char* const sTable : {"K", "KView"}) {
      for (const char* const sOther : {"'y'", "'2024-05-01'", "5", "Day", "(SELECT 'y')"}) {
        const Text sStatement = Text("SELECT 1 FROM Plant1..") + sTable + " AS k, Plant1..Days " +
                                "WHERE k." + sColumn + " < " + sOther;
        EXPECT_NE(Failing(sStatement), "no failure") << sStatement;
      }
    }
    EXPECT_NE(Failing(Text("DELETE FROM Plant1..K WHERE ") + sColumn + " < 'y'"), "no failure");
    EXPECT_EQ(
        Refusal(Text("UPDATE Plant1..Days SET Mark = (SELECT ") + sColumn + " FROM Plant1..KView)"),
        "A time is stored in a column of another type")
        << sColumn;
  }
  for (const char* const sCondition :
       {"t < 'y'", "n < 'y'", "m < 'y'", "l < 'y'", "t < '31.12.2024'"}) {
    EXPECT_NE(Failing(Text("DELETE FROM Plant1..K WHERE ") + sCondition), "no failure");
  }
  EXPECT_EQ(Count("Plant1..K"), "2 ");
  EXPECT_EQ(Run("SELECT Id FROM Plant1..K WHERE Own = 'y' AND t < '2024-05-15' AND m = 5 AND l = "
                "10 AND n = '2024-05-14'"),
            "1\n");
}

TEST_F(stored_days, of_views_meet_nothing_that_is_made_of_a_stored_time) {
  ASSERT_EQ(Theirs("CREATE TABLE Both (Id INTEGER PRIMARY KEY, Day DATE, TS TIMESTAMP);"
                   "INSERT INTO Both VALUES (1, '2024-05-14', 1715774400000000)"),
            SQLITE_OK);
  const char* const wrong[] = {"CAST(TS AS INTEGER) < Day",
                               "TS || '' < Day",
                               "TS / 2 < substr(Day, 1, 4)",
                               "unixepoch(TS) < Day",
                               "unixepoch(TS) < trim(Day)",
                               "TS + Day < 'y'",
                               "-TS < Day",
                               "Day IN (SELECT TS || '' FROM Both)",
                               "coalesce(TS || '', Day) < 'y'",
                               "CASE Day WHEN TS || '' THEN 0 ELSE 1 END",
                               "max(Day, TS || '') = Day",
                               "strftime('%s', TS) < Day",
                               "EXISTS (SELECT Day UNION SELECT TS || '')",
                               "Id IN (SELECT min(coalesce(Day, TS || '')) FROM Both)"};
  for (const char* const sCondition : wrong) {
    ASSERT_EQ(Theirs(Text("DROP VIEW IF EXISTS V; CREATE VIEW V AS SELECT Id FROM Both WHERE ") +
                     sCondition),
              SQLITE_OK);
    EXPECT_EQ(Refusal("SELECT * FROM Plant1..V"),
              "The view \"V\" compares times with something else")
        << sCondition;
  }
  const char* const harmless[] = {"date(TS) = date(Day, '+1 day')",
                                  "julianday(TS) > julianday(Day) AND length(Day) = 10",
                                  "strftime('%s', Day) > '17' AND Day + 1 > 2020",
                                  "strftime('%Y', TS) = substr(Day, 1, 4)",
                                  "Day < 'y'",
                                  "CAST(Day AS BLOB) > 'a' OR trim(Day) > ''"};
  for (const char* const sCondition : harmless) {
    ASSERT_EQ(Theirs(Text("DROP VIEW IF EXISTS V; CREATE VIEW V AS SELECT Id FROM Both WHERE ") +
                     sCondition),
              SQLITE_OK);
    EXPECT_EQ(Failing("SELECT * FROM Plant1..V"), "no failure") << sCondition;
  }
}

TEST_F(stored_days, that_are_computed_are_put_right_where_they_come_from) {
  ASSERT_EQ(Theirs("CREATE TABLE C (Id INTEGER PRIMARY KEY, n INTEGER, YD DATE AS (n));"
                   "INSERT INTO C (Id, n) VALUES (1, 20240514)"),
            SQLITE_OK);
  EXPECT_EQ(
      Failing("SELECT Id FROM Plant1..C WHERE YD < 'y'"),
      "The column \"YD\" of the table \"C\" in the catalog Plant1 holds 20240514 in its row 1 "
      "and no date, so nothing can be compared with it: change what it is computed from "
      "WHERE rowid = 1, or DELETE that row, or write CAST(\"YD\" AS INTEGER) where numbers "
      "are meant.");
  Run("CREATE TABLE Plant1..Y (Day DATE, M INTEGER AS (CAST(substr(Day, 6, 2) AS INTEGER)), L "
      "INTEGER AS (length(Day)), N INTEGER AS (julianday(Day) - 2460000))");
  Run("INSERT INTO Plant1..Y VALUES ('y')");
  EXPECT_EQ(Run("SELECT M, L FROM Plant1..Y WHERE M = 5 AND L > 9 AND N < 1000"), "5|10\n");
  EXPECT_EQ(Failing("DELETE FROM Plant1..Y WHERE M < 'y'"),
            "A number made from a time is compared with a text (character 31 of the statement); "
            "compare the date or the time of day itself, as in Day >= 'y', or write a number.");
}

TEST_F(stored_days, that_are_numbers_end_what_relies_on_them) {
  const char* const statements[] = {
      "SELECT Id FROM Plant1..Log WHERE Day < '2020-01-01'",
      "SELECT Id FROM Plant1..Log l WHERE NOT l.day >= 'y'",
      "SELECT Id FROM Plant1..Log WHERE Day BETWEEN 'y' AND '*'",
      "SELECT Id FROM Plant1..Log WHERE '*' IN (Day)",
      "SELECT Id FROM Plant1..Log WHERE Day IS NOT date(Day)",
      "SELECT Id FROM Plant1..Log WHERE substr(Day, 1, 4) < '2020'",
      "SELECT date(Day) FROM Plant1..Log",
      "SELECT max(Day) FROM Plant1..Log",
      "DELETE FROM Plant1..Log WHERE Day < '2020-01-01'",
      "UPDATE Plant1..Log SET Line = 'x' WHERE Day < '*'",
      "UPDATE Plant1..Days SET Day = (SELECT Day FROM Plant1..Log)",
      "INSERT INTO Plant1..Days (Id, Day) SELECT Id + 50, Day FROM Plant1..Log",
      "DELETE FROM Plant1..Days WHERE Day > (SELECT min(Day) FROM Plant1..Log)",
      "DELETE FROM Plant1..Data WHERE Timestamp > (SELECT min(Day) FROM Plant1..Log)",
      "SELECT 1 FROM (SELECT * FROM Plant1..Log) WHERE Day < '*'",
      "WITH q AS (SELECT Day AS d FROM Plant1..Log) SELECT 1 FROM q WHERE d < '*'",
      "SELECT 1 FROM Plant1..Days JOIN Plant1..Log USING (Day)",
  };
  for (const char* const sStatement : statements)
    EXPECT_EQ(Failing(sStatement), kLog) << sStatement;
  EXPECT_EQ(Failing("SELECT Id FROM Plant1..Log WHERE At < '10:00'"),
            "The column \"At\" of the table \"Log\" in the catalog Plant1 holds 9 in its row 3 and "
            "no time of day, so nothing can be compared with it: write a time of day there by "
            "UPDATE ... SET \"At\" = '08:30' WHERE rowid = 3, or DELETE that row, or write "
            "CAST(\"At\" AS INTEGER) where numbers are meant.");
  EXPECT_NE(Failing("SELECT Nr FROM Plant1..Keys WHERE Day < '*'")
                .find("holds X'00FF' in one of its rows and no date"),
            Text::npos);
  EXPECT_EQ(Count("Plant1..Log"), "3 ");
}

TEST_F(stored_days, that_are_numbers_are_shown_and_read_as_numbers) {
  EXPECT_EQ(Run("SELECT Id, Day FROM Plant1..Log ORDER BY Day"),
            "1|20260115\n3|20261101\n2|20261115\n");
  EXPECT_EQ(Run("SELECT Id FROM Plant1..Log WHERE CAST(Day AS INTEGER) > 20261101"), "2\n");
  EXPECT_EQ(Run("SELECT Id FROM Plant1..Log WHERE CAST(Day AS INTEGER) < 20261101"), "1\n");
  EXPECT_EQ(Run("SELECT count(*) FROM Plant1..Log WHERE typeof(Day) = 'integer' AND Day IS NOT "
                "NULL"),
            "3\n");
  EXPECT_EQ(Run("SELECT Day FROM Plant1..Log WHERE Id = 2"), "20261115\n");
}

TEST_F(stored_days, that_are_numbers_are_put_right_by_hand_and_in_a_grid) {
  Run("UPDATE Plant1..Log SET \"Day\" = '2026-01-15' WHERE rowid = 1");
  const auto run = [&](const Text& sSql, std::vector<platform::Value> vtValues) {
    ado::Statement statement{sSql, 0, std::chrono::seconds(0)};
    statement.parameters = std::move(vtValues);
    statement.rowsExpected = 1;
    m_session->Execute(statement, {});
  };
  run("UPDATE Plant1..Log SET Day = ? WHERE Id = ? AND Day = ? COLLATE BINARY",
      {platform::Date(std::chrono::year{2026} / 11 / 15), 2, std::int64_t{20261115}});
  run("DELETE FROM Plant1..Log WHERE Id = ? AND Day IS ? COLLATE BINARY AND At IS ? COLLATE BINARY",
      {3, std::int64_t{20261101}, std::int64_t{9}});
  EXPECT_EQ(Run("SELECT Id FROM Plant1..Log WHERE Day < '2026-06-01'"), "1\n");
}

TEST_F(stored_days, of_tables_made_here_are_no_numbers_whoever_fills_them) {
  Run("CREATE TABLE Plant1..Own (Nr INTEGER PRIMARY KEY, \"Day of\" DATE, At TIME)");
  Run("ALTER TABLE Plant1..Own ADD COLUMN Later DATE DEFAULT '2024-05-31'");
  Run("INSERT INTO Plant1..Own VALUES (1, 'y', '08:30', NULL)");
  EXPECT_EQ(Theirs("INSERT INTO Own VALUES (2, '20241231', NULL, NULL)"), SQLITE_CONSTRAINT);
  EXPECT_EQ(Theirs("INSERT INTO Own VALUES (2, NULL, 830, NULL)"), SQLITE_CONSTRAINT);
  EXPECT_EQ(Theirs("INSERT INTO Own VALUES (2, NULL, NULL, x'00')"), SQLITE_CONSTRAINT);
  EXPECT_EQ(Theirs("INSERT INTO Own (Nr, \"Day of\") VALUES (2, '2024-01-01')"), SQLITE_OK);
  EXPECT_EQ(Run("SELECT Nr, Later FROM Plant1..Own WHERE \"Day of\" < 'y'"), "2|2024-05-31\n");
  // So that nothing needs to be looked at.
  ASSERT_EQ(Theirs("PRAGMA ignore_check_constraints = 1; INSERT INTO Own (Nr, At) VALUES (3, 5)"),
            SQLITE_OK);
  EXPECT_EQ(Run("SELECT Nr FROM Plant1..Own WHERE At = '08:30'"), "1\n");
}

TEST_F(stored_days, by_default_must_be_dates) {
  const std::pair<const char*, bool> defaults[] = {
      {"(datetime('now'))", false},
      {"(unixepoch('now'))", false},
      {"(date('now') || '')", false},
      {"(strftime('%Y', 'now'))", false},
      {"(time('now'))", false},
      {"(1 + (2))", false},
      {"'soon'", false},
      {"(date('now', 'start of month'))", true},
      {"((date('now', ('-1 day'))))", true},
      {"(strftime('%Y-%m-%d', 'now'))", true},
      {"(CURRENT_DATE)", true},
      {"'2024-05-31'", true},
      {"NULL", true},
  };
  for (const auto& [sDefault, bSound] : defaults) {
    ASSERT_EQ(Theirs(Text("DROP TABLE IF EXISTS D; CREATE TABLE D (Id INTEGER, Day DATE DEFAULT ") +
                     sDefault + ")"),
              SQLITE_OK);
    const Text sFailure = Failing("INSERT INTO Plant1..D (Id) VALUES (1)");
    EXPECT_EQ(sFailure == "no failure", bSound) << sDefault << ": " << sFailure;
  }
  ASSERT_EQ(Theirs("CREATE TABLE C (Id INTEGER, At TIME DEFAULT (time('now')), Day DATE DEFAULT "
                   "(datetime('now')))"),
            SQLITE_OK);
  EXPECT_EQ(Failing("INSERT INTO Plant1..C (Id) VALUES (1)"),
            "The column \"Day\" would get datetime('now') by its default, which is no date "
            "(character 21 of the statement); list the column and give it one, such as 't'.");
}

}  // namespace
}  // namespace orvane::provider::dialect
