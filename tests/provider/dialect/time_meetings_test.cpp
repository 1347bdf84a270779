// Stored times beyond WHERE: joins, sorting, values on their way into columns, definitions, views.
#include <sqlite3.h>

#include "tests/provider/dialect/plant.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

class time_meetings : public Plant {};

TEST_F(time_meetings, tables_are_joined_by_times_only) {
  Run("CREATE TABLE Plant1..Notes (Timestamp TEXT, Note TEXT)");
  Run("INSERT INTO Plant1..Notes VALUES ('2024-05-15 10:00', 'a'), ('*', 'b')");
  const Text sRefused = "Tables are joined by a time and something else";
  EXPECT_EQ(Refusal("SELECT 1 FROM Plant1..Data JOIN Plant1..Notes USING (Timestamp)"), sRefused);
  EXPECT_EQ(Refusal("SELECT 1 FROM Plant1..Notes NATURAL JOIN Plant1..Data"), sRefused);
  EXPECT_EQ(Refusal("SELECT 1 FROM Plant1..Data NATURAL LEFT JOIN (SELECT Note, Timestamp FROM "
                    "Plant1..Notes)"),
            sRefused);
  EXPECT_EQ(Refusal("UPDATE Plant1..Copy SET Value = 0 FROM Plant1..Data NATURAL JOIN "
                    "Plant1..Notes"),
            sRefused);
  EXPECT_EQ(Run("SELECT n.Note FROM Plant1..Data d JOIN Plant1..Notes n ON d.Timestamp = "
                "n.Timestamp ORDER BY n.Note"),
            "a\nb\n");
  EXPECT_EQ(Run("SELECT n.Note FROM Plant1..Notes n, Plant1..Data d WHERE n.Timestamp = "
                "d.Timestamp AND d.Value = 0"),
            "b\n");
  EXPECT_EQ(Count("Plant1..Data JOIN Plant1..Copy USING (Tag, Timestamp)"), "24 ");
  EXPECT_EQ(Count("Plant1..Data NATURAL JOIN Plant1..Copy"), "24 ");
}

TEST_F(time_meetings, a_column_by_which_tables_are_joined_comes_once) {
  // Else the columns behind it would be taken for others.
  EXPECT_EQ(Run("SELECT * FROM (SELECT Tag, Value FROM Plant1..Data WHERE Timestamp = '*') JOIN "
                "Plant1..Copy USING (Tag, Value) WHERE Timestamp >= '*'"),
            "T1|0|2024-05-15 12:00:00|Good\n");
  EXPECT_EQ(Run("SELECT * FROM (SELECT * FROM Plant1..Data NATURAL JOIN Plant1..Copy) WHERE "
                "Timestamp = '*-23h'"),
            "T1|2024-05-14 13:00:00|23|Good\n");
}

TEST_F(time_meetings, values_become_times_on_their_way_into_columns) {
  Run("DELETE FROM Plant1..Data");
  Run("INSERT INTO Plant1..Data (Tag, Value, Timestamp) SELECT Tag, 1, Description FROM "
      "Plant1..Tags WHERE Tag = 'T1'");
  Run("INSERT INTO Plant1..Data (Tag, Timestamp) VALUES ('T2', datetime('2024-05-15 08:00')), "
      "('T3', '2024-05-15' || ' 10:00'), ('T4', coalesce(NULL, '*-4h'))");
  Run("INSERT INTO Plant1..Data (Tag, Timestamp) WITH RECURSIVE n(i) AS (SELECT 5 UNION ALL SELECT "
      "i + 1 FROM n WHERE i < 6) SELECT 'T' || i, datetime(1715760000, 'unixepoch') FROM n");
  Run("INSERT INTO Plant1..Data (Tag, Timestamp) SELECT 'T7', Timestamp FROM Plant1..Copy WHERE "
      "Value = 4 UNION ALL SELECT 'T8', '*-4h'");
  Run("INSERT INTO Plant1..Data (Timestamp, Tag) VALUES ('*', 'T1') ON CONFLICT DO NOTHING");
  Run("INSERT INTO Plant1..Data (Timestamp, Tag) VALUES ('*', 'T1') ON CONFLICT (Tag, Timestamp) "
      "DO UPDATE SET Timestamp = '*-4h', Tag = 'T9' WHERE excluded.Timestamp >= '*'");
  EXPECT_EQ(Run("SELECT DISTINCT typeof(Timestamp), Timestamp, count(*) FROM Plant1..Data"),
            "integer|2024-05-15 08:00:00|9\n");
  Run("UPDATE Plant1..Data SET Timestamp = datetime('2024-05-15 09:00') WHERE Tag = 'T1'");
  Run("UPDATE Plant1..Data SET (Value, Timestamp) = (7, '*-3h') WHERE Tag = 'T2'");
  Run("UPDATE Plant1..Data SET (Value, Timestamp) = (SELECT 8, '*-3h') WHERE Tag = 'T3'");
  Run("UPDATE Plant1..Data SET Timestamp = Timestamp + 3600000000 WHERE Tag = 'T4'");
  EXPECT_EQ(Run("SELECT group_concat(Tag), Timestamp FROM Plant1..Data GROUP BY Timestamp"),
            "T5,T6,T7,T8,T9|2024-05-15 08:00:00\nT1,T2,T3,T4|2024-05-15 09:00:00\n");
}

TEST_F(time_meetings, what_is_no_time_is_not_stored_as_one) {
  const Text sNumber = "A number stands where a time is meant";
  EXPECT_EQ(Refusal("INSERT INTO Plant1..Copy (Tag, Timestamp) VALUES ('x', 5)"), sNumber);
  EXPECT_EQ(Refusal("INSERT INTO Plant1..Copy SELECT 'x', 45000.5, 1, 'Good'"), sNumber);
  EXPECT_EQ(Refusal("UPDATE Plant1..Copy SET Timestamp = 5"), sNumber);
  EXPECT_EQ(Refusal("INSERT INTO Plant1..Copy (Timestamp) VALUES ('x')"), "'x' is no time");
  EXPECT_EQ(Refusal("UPDATE Plant1..Copy SET Timestamp = Tag").substr(0, 21),
            "'T1' is compared with");
  EXPECT_EQ(Refusal("INSERT INTO Plant1..Copy (Timestamp, Tag) SELECT * FROM (SELECT Tag, 1 FROM "
                    "Plant1..Tags)"),
            "A star stands for a time and for what is none");
  EXPECT_EQ(Refusal("INSERT INTO Plant1..Copy (Tag, Timestamp) VALUES ('T1', '*') ON CONFLICT "
                    "(Tag, Timestamp) DO UPDATE SET Timestamp = excluded.Tag")
                .substr(0, 21),
            "'T1' is compared with");
  EXPECT_EQ(Refusal("INSERT INTO Plant1..Copy (Tag, Timestamp) VALUES ('T1', '*') ON CONFLICT "
                    "(Tag, Timestamp) DO UPDATE SET Value = 1 WHERE excluded.Timestamp < 5"),
            sNumber);
  EXPECT_EQ(Count("Plant1..Copy WHERE typeof(Timestamp) <> 'integer' OR Timestamp < '2000-01-01'"),
            "0 ");
}

TEST_F(time_meetings, defaults_of_columns_of_times_are_times) {
  Run("CREATE TABLE Plant1..Log (Line TEXT, At TIMESTAMP DEFAULT CURRENT_TIMESTAMP)");
  Run("INSERT INTO Plant1..Log (Line) VALUES ('a')");
  Run("INSERT INTO Plant1..Log DEFAULT VALUES");
  Run("ALTER TABLE Plant1..Log ADD COLUMN Later DATETIME DEFAULT NULL");
  EXPECT_EQ(Run("SELECT count(*) FROM Plant1..Log WHERE At > '2024-01-01' AND typeof(At) = "
                "'integer' AND At BETWEEN datetime('now', '-1 day') AND datetime('now', '+1 day')"),
            "2\n");
  for (const char* const sDefault : {"'*'", "'2024-01-01'", "CURRENT_DATE", "(datetime('now'))",
                                     "5", "CURRENT_TIME", "('a' || 'b')"}) {
    EXPECT_EQ(Refusal(Text("CREATE TABLE Plant1..Bad (At DATETIME DEFAULT ") + sDefault + ")"),
              "A time stands in the definition of a table")
        << sDefault;
  }
  // A table that another program made.
  sqlite3* file = nullptr;
  ASSERT_EQ(sqlite3_open((m_root.Historian() / "catalogs" / "Plant1.db").c_str(), &file),
            SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(file,
                         "CREATE TABLE Theirs (a, At TIMESTAMP DEFAULT CURRENT_TIMESTAMP, Sum AS "
                         "(a + 1), Then_ TIMESTAMP);"
                         "CREATE TABLE Odd (a, At TIMESTAMP DEFAULT (unixepoch() || ''))",
                         nullptr, nullptr, nullptr),
            SQLITE_OK);
  sqlite3_close(file);
  EXPECT_EQ(Refusal("INSERT INTO Plant1..Theirs (a) VALUES (1)"),
            "The column \"At\" would get a text that is no time");
  EXPECT_EQ(Refusal("INSERT INTO Plant1..Theirs DEFAULT VALUES"),
            "The column \"At\" would get a text that is no time");
  EXPECT_EQ(Refusal("INSERT INTO Plant1..Odd (a) VALUES (1)"),
            "The column \"At\" would get a text that is no time");
  // A computed column takes no value.
  Run("INSERT INTO Plant1..Theirs VALUES (1, '*', '*-1h')");
  EXPECT_EQ(Run("SELECT * FROM Plant1..Theirs"), "1|2024-05-15 12:00:00|2|2024-05-15 11:00:00\n");
}

TEST_F(time_meetings, a_type_in_quotes_is_the_type_within) {
  Run("CREATE TABLE Plant1..q (a \"TIMESTAMP \" DEFAULT CURRENT_TIMESTAMP, b \" datetime(3)\")");
  EXPECT_EQ(Refusal("CREATE TABLE Plant1..r (a \"TIMESTAMP \" DEFAULT 'x')"),
            "A time stands in the definition of a table");
  Run("INSERT INTO Plant1..q (b) VALUES ('*')");
  EXPECT_EQ(Run("SELECT typeof(a), typeof(b) FROM Plant1..q WHERE a > '2024-01-01' AND b = '*'"),
            "integer|integer\n");
}

TEST_F(time_meetings, rows_are_sorted_and_grouped_by_times_only) {
  EXPECT_EQ(Run("SELECT CAST(Value AS INTEGER) FROM Plant1..Data WHERE Value < 3 ORDER BY CASE "
                "Value WHEN 1 THEN '*-9h' ELSE Timestamp END"),
            "1\n2\n0\n");
  EXPECT_EQ(Run("SELECT count(*) FROM Plant1..Data GROUP BY CASE WHEN Value < 2 THEN '*' ELSE "
                "iif(Value < 3, '*', NULL) END ORDER BY 1"),
            "3\n21\n");
  const Text sNever = "'never' is no time";
  for (const char* const sEnd :
       {"ORDER BY coalesce(Timestamp, 'never')", "GROUP BY coalesce(Timestamp, 'never')",
        "GROUP BY Tag HAVING max(coalesce(Timestamp, 'never')) > 'a'",
        "GROUP BY Tag HAVING count(DISTINCT coalesce(Timestamp, 'never')) > 1"}) {
    EXPECT_EQ(Refusal(Text("SELECT count(*) FROM Plant1..Data ") + sEnd), sNever) << sEnd;
  }
  EXPECT_EQ(Refusal("SELECT DISTINCT coalesce(Timestamp, 'never') FROM Plant1..Data"), sNever);
  EXPECT_EQ(Refusal("SELECT lag(Value) OVER (ORDER BY iif(Value > 1, Timestamp, 'never')) FROM "
                    "Plant1..Data"),
            sNever);
  EXPECT_EQ(Refusal("SELECT coalesce(Timestamp, 'never') AS x FROM Plant1..Data ORDER BY x"),
            "What is a time in some rows and something else in others meets a time");
  for (const char* const sEnd : {"GROUP BY 1", "ORDER BY 1", "ORDER BY 1 COLLATE NOCASE",
                                 "GROUP BY 1 COLLATE NOCASE", "ORDER BY (1)"}) {
    EXPECT_EQ(Refusal(Text("SELECT coalesce(Timestamp, 'never') FROM Plant1..Data ") + sEnd),
              "What is a time in some rows and something else in others meets a time")
        << sEnd;
  }
  EXPECT_EQ(Refusal("SELECT Timestamp FROM Plant1..Data UNION SELECT 'never'"), sNever);
  EXPECT_EQ(Refusal("SELECT Timestamp || '' FROM Plant1..Data HAVING max(Timestamp) > 'never'"),
            sNever);
  // To be shown only, it may be what it likes.
  EXPECT_EQ(Run("SELECT coalesce(nullif(Timestamp, '*'), 'never') FROM Plant1..Data WHERE Value = "
                "0"),
            "never\n");
  EXPECT_EQ(Run("SELECT Tag FROM Plant1..Data GROUP BY Tag HAVING max(Timestamp) >= '*' AND "
                "min(Timestamp) < datetime('2024-05-15')"),
            "T1\n");
}

TEST_F(time_meetings, views_keep_what_is_a_time) {
  Run("CREATE VIEW Plant1..Last AS SELECT Tag, max(Timestamp) AS At, Tag || '!' AS Loud FROM "
      "Plant1..Data GROUP BY Tag");
  Run("CREATE VIEW Plant1..Renamed(a, b, c) AS SELECT * FROM Plant1..Last");
  EXPECT_EQ(Run("SELECT At FROM Plant1..Last WHERE At >= '*' AND Loud > 'a' OR At < '*-1h'"), "");
  EXPECT_EQ(Run("SELECT * FROM Plant1..Last WHERE At >= '*' AND Loud > 'T'"),
            "T1|2024-05-15 12:00:00|T1!\n");
  EXPECT_EQ(Run("SELECT b FROM Plant1..Renamed WHERE b >= datetime('2024-05-15 12:00')"),
            "2024-05-15 12:00:00\n");
  EXPECT_EQ(Refusal("SELECT b FROM Plant1..Renamed WHERE b > 5"),
            "A number stands where a time is meant");
  const Text sKept = "A time stands in a view";
  for (const char* const sWhere :
       {"Timestamp > '*'", "Timestamp > datetime('now')", "Timestamp > Tag",
        "Timestamp IN (SELECT Description FROM Plant1..Tags)"}) {
    EXPECT_EQ(Refusal(Text("CREATE VIEW Plant1..v AS SELECT 1 FROM Plant1..Data WHERE ") + sWhere),
              sKept)
        << sWhere;
  }
  Run("CREATE VIEW Plant1..Days AS SELECT date(Timestamp) AS Day, count(*) AS n FROM Plant1..Data "
      "GROUP BY 1");
  EXPECT_EQ(Run("SELECT * FROM Plant1..Days WHERE Day >= '2024-05-15'"), "2024-05-15|13\n");
}

TEST_F(time_meetings, views_of_other_programs_are_looked_through) {
  sqlite3* file = nullptr;
  ASSERT_EQ(sqlite3_open((m_root.Historian() / "catalogs" / "Plant1.db").c_str(), &file),
            SQLITE_OK);
  ASSERT_EQ(
      sqlite3_exec(file,
                   "CREATE VIEW Wrong AS SELECT * FROM Data WHERE Timestamp < datetime('now', "
                   "'-30 days'); CREATE VIEW Fine AS SELECT max(Timestamp) AS At FROM "
                   "Data; CREATE VIEW OverWrong AS SELECT Tag FROM Wrong; CREATE VIEW "
                   "Gone AS SELECT * FROM Missing",
                   nullptr, nullptr, nullptr),
      SQLITE_OK);
  sqlite3_close(file);
  EXPECT_EQ(Refusal("SELECT * FROM Plant1..Wrong"),
            "The view \"Wrong\" compares times with something else");
  EXPECT_EQ(
      Failing("SELECT * FROM Plant1..Wrong"),
      "The view \"Wrong\" compares times with something else (character 15 of the statement); "
      "make another one without: A time stands in a view (character 59 of the statement); "
      "compare times in the statements that read it.");
  EXPECT_EQ(Refusal("DELETE FROM Plant1..Data WHERE Tag IN (SELECT Tag FROM Plant1..OverWrong)"),
            "The view \"OverWrong\" compares times with something else");
  EXPECT_EQ(Run("SELECT At FROM Plant1..Fine WHERE At >= '*'"), "2024-05-15 12:00:00\n");
  EXPECT_EQ(Failing("SELECT * FROM Plant1..Gone").substr(0, 30), "The statement cannot be run: n");
}

TEST_F(time_meetings, definitions_hold_no_times_that_others_could_not_read) {
  EXPECT_EQ(Refusal("CREATE TABLE Plant1..t (a TIMESTAMP CHECK (a > '2024-01-01'))"),
            "A time stands in the definition of a table");
  EXPECT_EQ(Refusal("CREATE TABLE Plant1..t (a TIMESTAMP, b TEXT, CHECK (a > b))"),
            "A time stands in the definition of a table");
  EXPECT_EQ(Refusal("ALTER TABLE Plant1..Copy ADD COLUMN x AS (Timestamp > 'a')"),
            "A time stands in the definition of a table");
  EXPECT_EQ(Refusal("CREATE INDEX Plant1..i ON Copy (Value) WHERE Timestamp > '2024-01-01'"),
            "A time stands in an index");
  EXPECT_EQ(Refusal("CREATE TABLE Plant1..t AS SELECT Tag, max(Timestamp) FROM Plant1..Data"),
            "A table that is made from a query holds numbers in place of times");
  Run("CREATE TABLE Plant1..t (a TIMESTAMP, b TIMESTAMP, n REAL CHECK (n > 0), CHECK (a <= b))");
  Run("CREATE TABLE Plant1..u AS SELECT Tag, Value FROM Plant1..Data");
  Run("INSERT INTO Plant1..t VALUES ('*-1h', '*', 1)");
  EXPECT_EQ(Failing("INSERT INTO Plant1..t VALUES ('*', '*-1h', 1)").substr(0, 15),
            "A rule of the t");
}

TEST_F(time_meetings, queries_that_read_themselves_stay_with_times) {
  EXPECT_EQ(Run("WITH RECURSIVE r(t) AS (SELECT CAST('*' AS TIMESTAMP) UNION ALL SELECT t - "
                "3600000000 FROM r WHERE t > '*-2h') SELECT count(*), min(t) FROM r"),
            "3|2024-05-15 10:00:00\n");
  EXPECT_EQ(Run("WITH RECURSIVE r(t) AS (SELECT max(Timestamp) FROM Plant1..Data UNION ALL SELECT "
                "(SELECT max(Timestamp) FROM Plant1..Data WHERE Timestamp < t) FROM r WHERE t > "
                "'*-2h') SELECT t FROM r"),
            "2024-05-15 12:00:00\n2024-05-15 11:00:00\n2024-05-15 10:00:00\n");
  EXPECT_EQ(Refusal("WITH RECURSIVE r(t) AS (SELECT 'x' UNION ALL SELECT Timestamp FROM r, "
                    "Plant1..Data WHERE t < 'abc') SELECT * FROM r"),
            "'x' is no time");
  EXPECT_EQ(Refusal("WITH RECURSIVE r(t) AS (SELECT NULL UNION ALL SELECT Timestamp FROM r, "
                    "Plant1..Data WHERE t < 'abc') SELECT * FROM r"),
            "A query that reads itself begins with other values than it goes on");
}

TEST_F(time_meetings, named_queries_see_no_column_around_them) {
  EXPECT_EQ(Refusal("WITH q AS (SELECT 1 FROM Plant1..Tags WHERE Timestamp < '2024-01-01') DELETE "
                    "FROM Plant1..Data WHERE EXISTS (SELECT 1 FROM q)"),
            "There is no column \"Timestamp\"");
  EXPECT_EQ(Refusal("WITH q AS (SELECT d.Timestamp < '2024-01-01' FROM Plant1..Tags) SELECT * FROM "
                    "Plant1..Data d, q"),
            "There is no column \"Timestamp\"");
  EXPECT_EQ(Refusal("DELETE FROM Plant1..Data WHERE (1, 'a') = (SELECT Timestamp < '2024-01-01', "
                    "'a' AS Timestamp FROM Plant1..Tags)"),
            "no failure");
  EXPECT_EQ(Count("Plant1..Data"), "24 ");
  EXPECT_EQ(Run("WITH a AS (SELECT max(Timestamp) AS t FROM Plant1..Data), b AS (SELECT t FROM a "
                "WHERE t >= '*') SELECT t FROM b"),
            "2024-05-15 12:00:00\n");
}

TEST_F(time_meetings, computed_columns_are_what_they_are_said_to_be) {
  const Text sMade = "A computed column of another type is made from a time";
  const Text sElse = "A computed column of times is something else";
  EXPECT_EQ(Refusal("ALTER TABLE Plant1..Copy ADD COLUMN x AS (Timestamp)"), sMade);
  EXPECT_EQ(Refusal("ALTER TABLE Plant1..Copy ADD COLUMN x REAL AS (julianday(Timestamp))"), sMade);
  EXPECT_EQ(Refusal("ALTER TABLE Plant1..Copy ADD COLUMN x TEXT AS (Timestamp || '')"), sMade);
  EXPECT_EQ(Refusal("ALTER TABLE Plant1..Copy ADD COLUMN x TIMESTAMP AS (Tag)"), sElse);
  EXPECT_EQ(Refusal("CREATE TABLE Plant1..t (a TEXT, t TIMESTAMP GENERATED ALWAYS AS (a))"), sElse);
  EXPECT_EQ(Refusal("CREATE TABLE Plant1..t (a TIMESTAMP, t DATETIME AS (a + 0.5))"), sElse);
  EXPECT_EQ(Refusal("CREATE TABLE Plant1..t (a TIMESTAMP, t INTEGER AS (max(a, a)) STORED)"),
            sMade);
  Run("CREATE TABLE Plant1..t (a TIMESTAMP, n REAL, t TIMESTAMP AS (a), m AS (n + 1))");
  Run("INSERT INTO Plant1..t VALUES ('*', 1)");
  EXPECT_EQ(Run("SELECT a, m FROM Plant1..t WHERE m < 3"), "2024-05-15 12:00:00|2\n");
  EXPECT_EQ(Run("SELECT count(*) FROM Plant1..t WHERE t >= '*' AND t < '*+1h'"), "1\n");
}

TEST_F(time_meetings, times_go_into_columns_of_times_only) {
  const Text sOther = "A time is stored in a column of another type";
  Run("CREATE TABLE Plant1..n (a TEXT, b INTEGER, c)");
  EXPECT_EQ(Refusal("INSERT INTO Plant1..n (a) SELECT Timestamp FROM Plant1..Copy"), sOther);
  EXPECT_EQ(Refusal("INSERT INTO Plant1..n SELECT 'x', max(Timestamp), 1 FROM Plant1..Copy"),
            sOther);
  EXPECT_EQ(Refusal("INSERT INTO Plant1..n (c, b) SELECT 1, Timestamp + 1 FROM Plant1..Copy"),
            sOther);
  EXPECT_EQ(Refusal("INSERT INTO Plant1..n (rowid) SELECT Timestamp FROM Plant1..Copy"), sOther);
  EXPECT_EQ(Refusal("INSERT INTO Plant1..n (c) VALUES ((SELECT max(Timestamp) FROM Plant1..Copy))"),
            sOther);
  EXPECT_EQ(Refusal("UPDATE Plant1..Copy SET Status = Timestamp"), sOther);
  EXPECT_EQ(Refusal("UPDATE Plant1..Copy SET (Value, Status) = (SELECT 1, Timestamp)"), sOther);
  EXPECT_EQ(Count("Plant1..n"), "0 ");
  Run("INSERT INTO Plant1..n SELECT datetime(Timestamp), CAST(Timestamp AS INTEGER), "
      "CAST(Timestamp AS TEXT) FROM Plant1..Copy WHERE Value = 0");
  EXPECT_EQ(Run("SELECT a, b, c FROM Plant1..n"),
            "2024-05-15 12:00:00|1715774400000000|1715774400000000\n");
}

TEST_F(time_meetings, what_is_added_to_a_time_ends_in_a_whole_microsecond) {
  Run("UPDATE Plant1..Copy SET Timestamp = Timestamp + 0.6");
  Run("UPDATE Plant1..Copy SET Timestamp = coalesce(Timestamp + 0.6, '*') WHERE Value = 0");
  Run("UPDATE Plant1..Copy SET (Status, Timestamp) = (SELECT 'x', Timestamp + 0.6)");
  Run("INSERT INTO Plant1..Copy (Tag, Timestamp) SELECT 'T2', Timestamp + 0.5 FROM Plant1..Data");
  Run("INSERT INTO Plant1..Copy (Tag, Timestamp) SELECT 'T3', max(Timestamp + 0.5, Timestamp) FROM "
      "Plant1..Data");
  Run("INSERT INTO Plant1..Copy (Tag, Timestamp) SELECT 'T4', CAST(Timestamp + 0.5 AS TIMESTAMP) "
      "FROM Plant1..Data");
  EXPECT_EQ(Run("SELECT DISTINCT typeof(Timestamp) FROM Plant1..Copy"), "integer\n");
  EXPECT_EQ(
      Refusal("INSERT INTO Plant1..Copy (Tag, Timestamp) SELECT * FROM (SELECT 'T5', Timestamp "
              "+ 0.5 FROM Plant1..Data)"),
      "A star stands for a time to which something was added");
  for (const char* const sMuch : {"9e18", "-9e18", "9000000000000000000", "9e999"}) {
    const Text sFailure = Failing(Text("UPDATE Plant1..Data SET Timestamp = Timestamp + ") + sMuch);
    EXPECT_NE(sFailure.find("add a number of microseconds that ends in"), Text::npos) << sFailure;
  }
  EXPECT_EQ(Count("Plant1..Data WHERE Timestamp BETWEEN '*-23h' AND '*'"), "24 ");
}

TEST_F(time_meetings, no_text_is_looked_for_in_a_time) {
  const Text sRefused = "A time is compared with a pattern";
  EXPECT_EQ(Refusal("DELETE FROM Plant1..Data WHERE instr(Timestamp, '2023') = 0"), sRefused);
  EXPECT_EQ(Refusal("DELETE FROM Plant1..Data WHERE NOT instr('2024-05-15', +Timestamp)"),
            sRefused);
  EXPECT_EQ(Count("Plant1..Data WHERE instr(date(Timestamp), '05-14')"), "11 ");
}

TEST_F(time_meetings, ordinary_comparisons_keep_the_index) {
  for (const char* const sWhere :
       {"Timestamp BETWEEN '*-1h' AND '*'", "Timestamp >= 't'", "Timestamp <= 't'",
        "Timestamp > datetime('2024-05-15')", "Timestamp = coalesce(NULL, '*')"}) {
    const Text sPlan = Run(Text("EXPLAIN QUERY PLAN SELECT Tag FROM Plant1..Data WHERE ") + sWhere);
    EXPECT_NE(sPlan.find("SEARCH Plant1.Data USING"), Text::npos) << sWhere << sPlan;
    EXPECT_NE(sPlan.find("DataByTime"), Text::npos) << sWhere << sPlan;
  }
}

}  // namespace
}  // namespace orvane::provider::dialect
