// Sums, differences, date functions and subqueries of stored times. The rows that are expected were
// worked out by a program of its own, on numbers of microseconds.
#include "tests/provider/dialect/forms.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

class time_forms : public Forms {};

TEST_F(time_forms, choose_the_rows_that_are_meant) {
  const Form forms[] = {
      {"Timestamp - (SELECT min(Timestamp) FROM Plant1..Copy) > 82800000000 - 7200000000 - 1",
       "0-2"},
      {"(SELECT max(Timestamp) FROM Plant1..Copy) - Timestamp BETWEEN 3600000000 AND 10800000000",
       "1-3"},
      {"abs(Timestamp - CAST('*-5h' AS TIMESTAMP)) <= 3600000000", "4-6"},
      {"(Timestamp - CAST('*' AS TIMESTAMP)) / 3600000000 = -Value", "0-23"},
      {"Timestamp - d.Timestamp = 0", "0-23"},
      {"EXISTS (SELECT 1 FROM Plant1..Copy c WHERE d.Timestamp - c.Timestamp = 7200000000 AND "
       "c.Value = 6)",
       "4"},
      {"Timestamp - Timestamp + 3600000000 * Value = 18000000000", "5"},
      {"round((julianday(Timestamp) - julianday('2024-05-15 00:00:00')) * 24) >= 10", "0-2"},
      {"unixepoch(Timestamp) / 3600 % 24 < 2", "11-12"},
      {"(unixepoch('2024-05-15 12:00:00') - unixepoch(Timestamp)) / 3600 IN (0, 7, 23)", "0,7,23"},
      {"Timestamp + 3600000000 * 2 > '*'", "0-1"},
      {"Timestamp + 1800000000 < '*-20h'", "21-23"},
      {"Timestamp + 3600000000 * Value = '*'", "0-23"},
      {"3600000000 * CAST(Value AS INTEGER) + Timestamp >= '*'", "0-23"},
      {"Timestamp - 3600000000 * Value < '*-40h'", "21-23"},
      {"Timestamp + (SELECT Value FROM Plant1..Copy WHERE Value = 1) > '*'", "0"},
      {"Timestamp + abs(-3600000000) IN ('*', '*-1h')", "1-2"},
      {"Timestamp + NULL IS NULL", "0-23"},
      {"CAST(Timestamp + 3600000000 AS TIMESTAMP) = '*-4h'", "5"},
      {"Timestamp + CAST('3600000000' AS INTEGER) = '*'", "1"},
      {"Timestamp + json_extract('[3600000000]', '$[0]') = '*'", "1"},
      {"Timestamp - length('abc') >= '*-2h'", "0-1"},
      {"date(Timestamp) < '2024-05-15'", "13-23"},
      {"date(Timestamp) >= '2024-05-15'", "0-12"},
      {"datetime(Timestamp) < '2024-05-15 03:00:00'", "10-23"},
      {"datetime(Timestamp) >= '2024-05-15 03:00:00'", "0-9"},
      {"strftime('%Y-%m', Timestamp) < '2024-05'", ""},
      {"strftime('%Y-%m', Timestamp) >= '2024-05'", "0-23"},
      {"strftime('%Y-%m-%dT%H', Timestamp) < '2024-05-15T03'", "10-23"},
      {"strftime('%Y-%m-%dT%H', Timestamp) >= '2024-05-15T03'", "0-9"},
      {"date(Timestamp, '+1 day') = '2024-05-15'", "13-23"},
      {"date(Timestamp, 'start of month') = '2024-05-01'", "0-23"},
      {"datetime(Timestamp, 'start of day') = '2024-05-14 00:00:00'", "13-23"},
      {"datetime(Timestamp, '-30 minutes') < '2024-05-14 15:00:00'", "21-23"},
      {"time(Timestamp, '+1 hour') BETWEEN '05:00:00' AND '07:00:00'", "6-8"},
      {"time(Timestamp) IN ('00:00:00', '06:00:00')", "6,12"},
      {"strftime('%j', Timestamp) = '135'", "13-23"},
      {"strftime('%w', Timestamp) = '2'", "13-23"},
      {"strftime('%H:%M', Timestamp) >= '22:00'", "13-14"},
      {"strftime('%Y', Timestamp) = '2024' AND strftime('%d', Timestamp) = '15'", "0-12"},
      {"CAST(strftime('%H', Timestamp) AS INTEGER) % 6 = 0", "0,6,12,18"},
      {"CAST(strftime('%j', Timestamp) AS REAL) > 135.5", "0-12"},
      {"julianday(Timestamp) BETWEEN julianday('2024-05-14 22:30:00') AND julianday('2024-05-15 "
       "01:30:00')",
       "11-13"},
      {"datetime(unixepoch(Timestamp), 'unixepoch') >= '2024-05-15 11:00:00'", "0-1"},
      {"datetime(Timestamp / 1000000, 'unixepoch') IS NOT NULL", "0-23"},
      {"datetime(julianday(Timestamp)) IS NOT NULL AND datetime(Timestamp) = '2024-05-15 00:00:00'",
       "12"},
      {"date(Timestamp, (SELECT '-1 day')) = '2024-05-13'", "13-23"},
      {"date(Timestamp, printf('%+d day', 1)) = '2024-05-16'", "0-12"},
      {"Timestamp = datetime(Timestamp)", "0-23"},
      {"Timestamp > datetime(Timestamp, '-1 second') AND Timestamp < datetime(Timestamp, '+1 "
       "second')",
       "0-23"},
      {"Timestamp <= datetime('2024-05-15 12:00', '-' || Value || ' hours')", "0-23"},
      {"Timestamp < datetime('2024-05-15 12:00', '-' || (Value + 1) || ' hours', '+90 minutes')",
       "0-23"},
      {"Timestamp >= date('2024-05-14', 'weekday 3')", "0-12"},
      {"Timestamp >= strftime('%Y-%m-%d %H:00:00', '2024-05-15 09:59:59')", "0-3"},
      {"Timestamp > date(1715731200, 'unixepoch')", "0-11"},
      {"Timestamp >= datetime(2460445.5)", "0-12"},
      {"Timestamp < datetime('2024-05-15T08:30:00+02:00')", "6-23"},
      {"Timestamp = '2024-05-15 03:00'", "11"},
      {"Timestamp > '2024-05-15'", "0-13"},
      {"Timestamp BETWEEN 'y' AND 't'", "14-23"},
      {"Timestamp >= 't+8h'", "0-6"},
      {"Timestamp < 'y+20h'", "19-23"},
      {"Timestamp >= '*-90m'", "0-1"},
      {"Timestamp >= '2024-05-15T11:00:00+01:00'", "0-2"},
      {"Timestamp >= CAST('2024-05-15' AS DATE)", "0-14"},
      {"NOT Timestamp >= '2024-05-14T22:00:00Z'", "15-23"},
      {"Timestamp NOT IN (SELECT Timestamp FROM Plant1..Copy WHERE Value > 2)", "0-2"},
      {"Timestamp IN (SELECT Timestamp + 3600000000 FROM Plant1..Copy WHERE Value BETWEEN 3 AND 5)",
       "2-4"},
      {"Timestamp > (SELECT Timestamp FROM Plant1..Copy ORDER BY Timestamp DESC LIMIT 1 OFFSET 3)",
       "0-2"},
      {"Timestamp >= (SELECT Timestamp FROM Plant1..Copy GROUP BY Timestamp HAVING max(Value) = 4)",
       "0-4"},
      {"Timestamp = (SELECT t FROM (SELECT Timestamp AS t, row_number() OVER (ORDER BY Timestamp) "
       "AS r FROM Plant1..Copy) WHERE r = 3)",
       "21"},
      {"Timestamp IN (SELECT lag(Timestamp) OVER (ORDER BY Timestamp) FROM Plant1..Copy)", "1-23"},
      {"Timestamp IN (SELECT lead(Timestamp, 2, '*-9h') OVER (ORDER BY Timestamp) FROM "
       "Plant1..Copy WHERE Value < 4)",
       "0-1,9"},
      {"Timestamp = (SELECT max(c.Timestamp) FROM Plant1..Copy c WHERE c.Timestamp < d.Timestamp) "
       "+ 3600000000",
       "0-22"},
      {"EXISTS (SELECT 1 FROM Plant1..Copy c JOIN Plant1..Tags t ON c.Timestamp > t.Description "
       "WHERE c.Timestamp = d.Timestamp AND t.Tag = 'T1')",
       "0-3"},
      {"EXISTS (SELECT 1 FROM Plant1..Copy NATURAL JOIN (SELECT d.Timestamp AS Timestamp) WHERE "
       "Value = 8)",
       "8"},
      {"EXISTS (SELECT 1 FROM Plant1..Tags JOIN (Plant1..Copy AS a JOIN Plant1..Copy AS b USING "
       "(Timestamp)) ON a.Timestamp = d.Timestamp WHERE b.Value = 7)",
       "7"},
      {"(SELECT count(*) FROM Plant1..Copy c WHERE c.Timestamp >= d.Timestamp) <= 3", "0-2"},
      {"(SELECT count(*) FROM Plant1..Copy c WHERE c.Timestamp BETWEEN d.Timestamp AND '*-2h') = 4",
       "5"},
      {"Timestamp > (WITH RECURSIVE r(t) AS (SELECT CAST('*' AS TIMESTAMP) UNION ALL SELECT t - "
       "3600000000 FROM r LIMIT 5) SELECT min(t) FROM r)",
       "0-3"},
      {"CASE WHEN Timestamp > '*-3h' THEN 'new' WHEN Timestamp > '*-6h' THEN 'mid' ELSE 'old' END "
       "= 'mid'",
       "3-5"},
      {"CASE date(Timestamp) WHEN '2024-05-14' THEN 1 ELSE 0 END", "13-23"},
      {"iif(Timestamp < '*-12h', Timestamp < '*-20h', Timestamp > '*-2h')", "0-1,21-23"},
      {"coalesce(nullif(Timestamp, '*-3h'), '*') = '*'", "0,3"},
      {"min(Timestamp, '*-4h', '*-6h') = '*-6h'", "0-6"},
      {"max('*-9h', Timestamp, (SELECT min(Timestamp) FROM Plant1..Copy)) = '*-9h'", "9-23"},
      {"(Timestamp > '*-5h') + (Timestamp < '*-2h') = 2", "3-4"},
      {"(Timestamp >= '*-2h') <> (Value <= 2)", ""},
      {"(Value, Timestamp) IN (SELECT Value, Timestamp FROM Plant1..Copy WHERE Timestamp > '*-3h')",
       "0-2"},
      {"(Timestamp, Value) < (SELECT '*-20h', 0)", "21-23"},
      {"Timestamp || '' = Timestamp || ''", "0-23"},
      {"Timestamp IS NOT NULL AND typeof(Timestamp) = 'integer' AND Value < 2", "0-1"},
      {"Timestamp > '*-3h' OR Timestamp IS NULL OR Timestamp = '*-9h'", "0-2,9"},
      {"Timestamp BETWEEN '*-1h' AND '*-3h'", ""},
      {"'*-3h' NOT BETWEEN Timestamp AND '*'", "0-2"},
      {"'2024-05-15 10:00' IN (SELECT Timestamp FROM Plant1..Copy WHERE Value = d.Value)", "4"},
      {"Timestamp >= (SELECT Description FROM Plant1..Tags WHERE Description LIKE '2024%')", "0-4"},
      {"Timestamp < (SELECT iif(Tag = 'T1', Description, '*') FROM Plant1..Tags WHERE Tag = d.Tag)",
       "5-23"},
      {"Tag IN (SELECT Tag FROM Plant1..Copy WHERE Timestamp < '*-23h')", ""},
      {"Value > (SELECT avg(Value) FROM Plant1..Copy WHERE Timestamp > '*-10h')", "5-23"},
      {"Value = (SELECT Value FROM Plant1..Copy ORDER BY Timestamp LIMIT 1)", "23"},
      {"Value IN (SELECT Value FROM Plant1..Copy WHERE Timestamp = d.Timestamp + 3600000000)", ""},
  };
  static_assert(std::size(forms) >= 100);
  for (const Form& form : forms) Check(form);
}

TEST_F(time_forms, that_count_what_is_no_number_are_refused) {
  const char* const sAdded = "A time and a text are added (character ";
  const char* const sNoNumber =
      "'x7' is added to a time or to a number made from one, and is no number; write CAST(... AS "
      "REAL).";
  Run("CREATE TABLE Plant1..Loose (n, r REAL)");
  Run("INSERT INTO Plant1..Loose VALUES ('x7', 'x7')");
  const Form forms[] = {
      {"Timestamp + Tag >= '*'", sAdded},
      {"Timestamp - Tag >= '*'", sAdded},
      {"Tag + Timestamp >= '*'", sAdded},
      {"Timestamp + lower(Tag) > '*'", sAdded},
      {"Timestamp + '1' > '*'", sAdded},
      {"Timestamp + coalesce(Tag, 5) > '*'", sAdded},
      {"Timestamp - CURRENT_TIMESTAMP > 0", sAdded},
      {"Timestamp - datetime('now') > 0", sAdded},
      {"Timestamp - date(Timestamp) > 0", sAdded},
      {"Timestamp * Tag > 0", sAdded},
      {"Timestamp % Tag = 0", sAdded},
      {"unixepoch(Timestamp) + Tag > 5", sAdded},
      {"julianday(Timestamp) - Tag > 5", sAdded},
      {"(Timestamp - CAST('*' AS TIMESTAMP)) / Tag > 5", sAdded},
      {"Timestamp + (SELECT Tag FROM Plant1..Tags WHERE Tag = 'T1') > '*'", sAdded},
      {"Timestamp + (SELECT n FROM Plant1..Loose) > '*'", sNoNumber},
      {"Timestamp + (SELECT r FROM Plant1..Loose) > '*'", sNoNumber},
      {"(SELECT n FROM Plant1..Loose) + Timestamp > '*'", sNoNumber},
      {"unixepoch(Timestamp) * (SELECT n FROM Plant1..Loose) = 0", sNoNumber},
      {"Timestamp + json_extract('[\"x7\"]', '$[0]') > '*'", sNoNumber},
  };
  for (const Form& form : forms) CheckRefused(form);
  EXPECT_EQ(Failing("SELECT Timestamp + Tag FROM Plant1..Data"),
            "A time and a text are added (character 18 of the statement); compare two times, as in "
            "Timestamp >= '*-1h', or write CAST(... AS REAL) for a number and CAST(... AS "
            "TIMESTAMP) for a time.");
  EXPECT_EQ(Refusal("CREATE VIEW Plant1..v AS SELECT Timestamp + Tag FROM Plant1..Data"),
            "A time and a text are added");
  Run("CREATE VIEW Plant1..w AS SELECT Timestamp + Value AS t FROM Plant1..Data");
  EXPECT_EQ(Count("Plant1..w WHERE t >= '*-2h'"), "3 ");
}

TEST_F(time_forms, that_say_twice_what_a_number_means_are_refused) {
  const Text sTold = " says what a number means, and a stored time is a time already";
  for (const char* const sModifier : {"unixepoch", "UnixEpoch", "auto", "julianday"}) {
    const Text sQuoted = "'" + Text(sModifier) + "'";
    for (const Text& sCall :
         {"datetime(Timestamp, " + sQuoted + ")", "date(Timestamp + 5, '+1 day', " + sQuoted + ")",
          "strftime('%H', Timestamp, (" + sQuoted + "))",
          "julianday(Timestamp, " + sQuoted + ")"}) {
      EXPECT_EQ(Refusal("DELETE FROM Plant1..Data WHERE " + sCall + " IS NULL"), sQuoted + sTold)
          << sCall;
    }
    EXPECT_EQ(Failing("SELECT date(Timestamp, (SELECT " + sQuoted + ")) FROM Plant1..Data"),
              sQuoted + sTold + "; leave it out.");
  }
  EXPECT_EQ(Failing("SELECT datetime(Timestamp, 'unixepoch') FROM Plant1..Data"),
            "'unixepoch'" + sTold + " (character 28 of the statement); leave it out.");
  EXPECT_EQ(Run("SELECT datetime(1715774400, 'unixepoch'), datetime(unixepoch(Timestamp), 'auto'), "
                "date(Timestamp, NULL) FROM Plant1..Data WHERE Timestamp = '*'"),
            "2024-05-15 12:00:00|2024-05-15 12:00:00|\n");
  EXPECT_EQ(Count("Plant1..Data"), "24 ");
}

TEST_F(time_forms, count_differences_in_days_where_times_are_shown_as_days) {
  const Text sDifference =
      "SELECT a.Timestamp - b.Timestamp FROM Plant1..Data a, Plant1..Data b WHERE a.Value = 0 AND "
      "b.Value = 6";
  EXPECT_EQ(Run(sDifference), "21600000000\n");
  Run("CREATE VIEW Plant1..v AS SELECT max(Timestamp) - min(Timestamp) AS span FROM Plant1..Data");
  m_session->PropertyValue("Time as Double", true);
  EXPECT_EQ(Run(sDifference), "0.25\n");
  EXPECT_EQ(Run("SELECT (SELECT Timestamp FROM Plant1..Data WHERE Value = 0) - (SELECT Timestamp "
                "FROM Plant1..Data WHERE Value = 6)"),
            "0.25\n");
  EXPECT_EQ(Run("SELECT 2 * (max(Timestamp) - min(Timestamp)) + 1 FROM Plant1..Data WHERE Value IN "
                "(0, 12)"),
            "2\n");
  EXPECT_EQ(Hours("Timestamp - (SELECT min(Timestamp) FROM Plant1..Copy) >= 0.75"),
            Expanded("0-5"));
  EXPECT_EQ(Refusal("SELECT (Timestamp + 1) - Timestamp FROM Plant1..Data"),
            "A number is added to a time, and it is not known whether it means days");
  // What is kept means the same to all who read it.
  EXPECT_EQ(Run("SELECT span FROM Plant1..v"), "82800000000\n");
}

TEST_F(time_forms, of_joins_look_at_the_tables_that_are_joined) {
  Run("CREATE TABLE Plant1..Notes (Timestamp TEXT, Note TEXT)");
  Run("INSERT INTO Plant1..Notes VALUES ('noon', 'a')");
  const Text sInside = "(Plant1..Data d JOIN Plant1..Copy c USING (Timestamp, Tag))";
  EXPECT_EQ(Count("Plant1..Notes n, " + sInside), "24 ");
  EXPECT_EQ(Count("Plant1..Notes n JOIN " + sInside + " ON d.Timestamp >= '*-2h'"), "3 ");
  EXPECT_EQ(Count("Plant1..Notes n, (Plant1..Data d NATURAL JOIN Plant1..Copy c)"), "24 ");
  EXPECT_EQ(Run("SELECT * FROM Plant1..Notes n, (Plant1..Data d NATURAL JOIN Plant1..Copy c) WHERE "
                "d.Timestamp = '*'"),
            "noon|a|T1|2024-05-15 12:00:00|0|Good\n");
  EXPECT_EQ(Run("SELECT * FROM (SELECT * FROM Plant1..Notes n, (Plant1..Data d JOIN Plant1..Copy c "
                "USING (Tag, Timestamp, Value))) WHERE Value = 0"),
            "noon|a|T1|2024-05-15 12:00:00|0|Good|Good\n");
  const Text sRefused = "Tables are joined by a time and something else";
  EXPECT_EQ(Refusal("SELECT 1 FROM Plant1..Notes n JOIN " + sInside + " USING (Timestamp)"),
            sRefused);
  EXPECT_EQ(Refusal("SELECT 1 FROM Plant1..Tags t, (Plant1..Data d NATURAL JOIN Plant1..Notes n)"),
            sRefused);
  EXPECT_EQ(Refusal("SELECT 1 FROM (Plant1..Notes n, Plant1..Tags t) JOIN Plant1..Data d USING "
                    "(Timestamp)"),
            sRefused);
}

TEST_F(time_forms, of_what_is_returned_stand_in_its_headings) {
  const auto headings = [&](const Text& sStatement) {
    const auto rs = m_session->Execute({sStatement, 0, std::chrono::seconds(0)}, {}).recordset;
    Text sHeadings;
    for (platform::ColumnIndex i = 0; i < rs->FieldCount(); ++i) {
      sHeadings += rs->FieldAt(i).Name() + "|";
    }
    return sHeadings;
  };
  const Text sReturning =
      " RETURNING Timestamp, Timestamp > '*-1h', date(Timestamp) AS d, Value + 1, Value";
  const Text sExpected = "Timestamp|Timestamp > '*-1h'|d|Value + 1|Value|";
  EXPECT_EQ(headings("UPDATE Plant1..Data SET Value = 0 WHERE Value = 0" + sReturning), sExpected);
  EXPECT_EQ(headings("INSERT INTO Plant1..Data VALUES ('T2', '*', 1, 'x')" + sReturning),
            sExpected);
  EXPECT_EQ(headings("DELETE FROM Plant1..Data WHERE Tag = 'T2'" + sReturning), sExpected);
}

}  // namespace
}  // namespace orvane::provider::dialect
