// Texts and numbers that are made of dates and times of day: they meet what can stand beside them,
// and are refused beside anything that would be true, or false, for all rows.
#include "tests/provider/dialect/days.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

class day_texts : public Days {
 protected:
  day_texts() {
    EXPECT_EQ(Theirs("CREATE VIEW Written AS SELECT Id, trim(Day) AS t, Clock || '' AS c FROM Days;"
                     "CREATE TABLE Made (Id INTEGER, Day DATE, t TEXT AS (Day || ''), n INTEGER AS "
                     "(julianday(Day)), u TEXT AS (date(Day)));"
                     "INSERT INTO Made (Id, Day) SELECT Id, Day FROM Days"),
              SQLITE_OK);
  }
};

TEST_F(day_texts, meet_what_can_stand_beside_them) {
  const Form forms[] = {
      {"CAST(Day AS TEXT) < '2024-05-10'", "8-19"},
      {"CAST(Day AS TEXT) < (SELECT '2024-05-10')", "8-19"},
      {"'2024-05-16' <= CAST(Day AS VARCHAR(10))", "0-1"},
      {"substr(Day, 1, 7) < '2024-05'", "17-19"},
      {"substr(Day, 6, 2) = '04'", "17-19"},
      {"Day || '' >= '2024-05-16'", "0-1"},
      {"trim(Day) = '2024-05-14'", "3"},
      {"lower(Day) = upper('2024-05-14')", "3"},
      {"replace(Day, '-', '') > '20240510'", "0-6"},
      {"CAST(replace(Day, '-', '') AS INTEGER) > 20240510", "0-6"},
      {"json_extract(json_array(Day), '$[0]') < '2024-05-10'", "8-19"},
      {"EXISTS (SELECT 1 FROM json_each(json_array(d.Day)) WHERE value < '2024-05-10')", "8-19"},
      {"CAST(Day AS INTEGER) = 2024", "0-19"},
      {"CAST(substr(Day, 9, 2) AS INTEGER) > 15", "0-1,17-19"},
      {"CAST(Clock AS TEXT) < '02:00'", "0-1"},
      {"substr(Clock, 1, 2) = '10'", "10"},
      {"Day = CAST(Day AS TEXT)", "0-19"},
      {"Clock = trim(Clock)", "0-19"},
      {"CAST(Day AS TEXT) = date(Day)", "0-19"},
      {"Day || ' ' || Clock >= '2024-05-15 02:06'", "0-2"},
      {"length(Day) = 10", "0-19"},
      {"CAST(length(Day) AS TEXT) = '10'", "0-19"},
      {"strftime('%m', Day) < '05'", "17-19"},
      {"strftime('%m/%d', Day) < '05/10'", "8-19"},
      {"strftime('%Y-%m-01', Day) < '2024-05-10'", "0-19"},
      {"substr(Clock, 1, 2) < '02'", "0-1"},
      {"substr(Day, -2) > '15'", "0-1,17-19"},
      {"substr(Day, 6) < '05-10'", "8-19"},
      {"substr(Day, 6, 2) = strftime('%m', '2024-04-02')", "17-19"},
      {"replace(Day, '-', '.') < '2024.05.10'", "8-19"},
      {"'X' || Day < 'X2024-05-10'", "8-19"},
      {"'X' || Day < (SELECT 'X2024-05-10')", "8-19"},
      {"'20' || substr(Day, 3) < '2024-05-10'", "8-19"},
      {"upper(Day) < lower('2024-05-10')", "8-19"},
      {"CAST(Clock AS TEXT) < '02:00:00.5'", "0-1"},
      {"EXISTS (SELECT 1 FROM (SELECT d.Day || '' AS x) WHERE x < '2024-05-10')", "8-19"},
      {"date(Day) < 'y'", "4-19"},
      {"date(Day, '+1 day') = '*'", "3"},
      {"Day IN (SELECT date(o.Day) FROM Plant1..Days o WHERE o.Day > '*')", "0-1"},
      {"time(Clock, '+1 hour') = '02:03'", "1"},
      {"Clock IN (WITH RECURSIVE r(t) AS (SELECT min(Clock) FROM Plant1..Days UNION ALL SELECT "
       "time(t, '+63 minutes') FROM r LIMIT 3) SELECT t FROM r)",
       "0-2"},
      {"Id IN (WITH RECURSIVE r(t) AS (SELECT min(Day) FROM Plant1..Days UNION ALL SELECT "
       "strftime('%Y-%m-%d', t, '+1 day') FROM r WHERE t < 'y') SELECT Id FROM r, Plant1..Days o "
       "WHERE o.Day = r.t)",
       "3-19"},
      {"instr(Day, '-') = 5", "0-19"},
      {"typeof(CAST(Day AS TEXT)) = 'text'", "0-19"},
      {"CAST(Day AS TEXT) LIKE '2024-04-%'", "17-19"},
      {"Id = 10 AND trim(Day) < (Id + 2014) || '-05'", ""},
      {"Id = 10 AND trim(Day) < (Id + 2015) || '-05'", "10"},
      {"EXISTS (SELECT 1 FROM Plant1..Written w WHERE w.Id = d.Id AND t < '2024-05-10')", "8-19"},
      {"EXISTS (SELECT 1 FROM Plant1..Made m WHERE m.Id = d.Id AND t < '2024-05-10')", "8-19"},
      {"EXISTS (SELECT 1 FROM Plant1..Made m WHERE m.Id = d.Id AND n > 2460436)", "0-11"},
      {"EXISTS (SELECT 1 FROM Plant1..Made m WHERE m.Id = d.Id AND u < 'y')", "4-19"},
      {"Id IN (WITH RECURSIVE r(t) AS (SELECT min(Day) FROM Plant1..Days UNION ALL SELECT date(t, "
       "'+1 day') FROM r WHERE t < 'y') SELECT Id FROM r, Plant1..Days o WHERE o.Day = r.t)",
       "3-19"},
      // Without a zone of their own they are in that of the connection.
      {"EXISTS (SELECT 1 FROM Plant1..Data WHERE Value = 0 AND Timestamp > d.Day || ' 13:00')",
       "2-19"},
      {"EXISTS (SELECT 1 FROM Plant1..Data WHERE Value = 0 AND Timestamp > datetime(d.Day, '+13 "
       "hours'))",
       "3-19"},
  };
  for (const Form& form : forms) CheckDays(form);
}

TEST_F(day_texts, are_refused_beside_anything_else) {
  const char* const sWritten = "A written time is compared with something else (character ";
  const char* const sStar = "'*' is compared with a written time; compare the time or the date";
  const char* const sNumber = "A number made from a time is compared with a text (character ";
  const char* const sSorts = "Texts of this format do not sort as their times do (character ";
  const char* const sItself =
      "A query that reads itself begins with other values than it goes on (character ";
  const Form forms[] = {
      {"CAST(Day AS TEXT) < 'y'", sWritten},
      {"CAST(Day AS VARCHAR(10)) > '*'", sWritten},
      {"CAST(CAST(Day AS TEXT) AS TEXT) > '*'", sWritten},
      {"'y' > substr(Day, 1, 10)", sWritten},
      {"Day || '' < 'y'", sWritten},
      {"'x' || Day > '*'", sWritten},
      {"Day || Clock > '*'", sWritten},
      {"trim(Day) < 'y'", sWritten},
      {"lower(upper(Day)) < 'y'", sWritten},
      {"printf('%s', Day) < 'y'", sWritten},
      {"format('%10s', Day) < '2024'", sSorts},
      {"quote(Day) < '2024'", sSorts},
      {"hex(Day) < '2024'", sSorts},
      {"concat('x', Day) < '2024'", sSorts},
      {"substr(Day, Id, 2) < '31'", sSorts},
      {"substr(json_extract(json_array(Day), '$[0]'), 9) < '31'", sSorts},
      {"CAST(unixepoch(Day) AS TEXT) < '2024-05-01'", sSorts},
      {"strftime('%s', Day) < '2024-05-01'", sSorts},
      {"CAST(Day AS TEXT) < '31.12.2024'", sWritten},
      {"CAST(Day AS TEXT) < '2'", sWritten},
      {"json_extract(json_array(Day), '$[0]') < '31.12.2024'", sWritten},
      {"CAST(Clock AS TEXT) < '8:00'", sWritten},
      {"CAST(Clock AS TEXT) < '8'", sWritten},
      {"substr(Clock, 1, 2) < '8'", sWritten},
      {"substr(Clock, 1, 2) < '31.12.2024'", sWritten},
      {"strftime('%m', Day) < '6'", sWritten},
      {"substr(Day, 6, 2) < '6'", sWritten},
      {"substr(Clock, 9, 3) < 'y'", sSorts},
      {"substr(Day, 6, 2) = '6'", sWritten},
      {"replace(Day, '-', '') < '2024-05-10'", sWritten},
      {"'X' || Day < '2024-05-10'", sWritten},
      {"EXISTS (SELECT 1 FROM Plant1..Written WHERE t < '31.12.2024')", sWritten},
      {"trim(Day) < (SELECT '31.12.2024')", "'31.12.2024' is compared with a written time"},
      {"trim(Clock) < (SELECT '8:00')", "'8:00' is compared with a written time"},
      {"trim(Day) < Id || '2024'", "'02024' is compared with a written time"},
      {"'X' || Day < Word", "'y' is compared with a written time"},
      {"replace(Day, '-', '') > 20990101", sWritten},
      {"json_extract(json_array(Day), '$[0]') < 'y'", sWritten},
      {"json_array(Day) ->> 0 < 'y'", sWritten},
      {"json_object('d', Day) ->> 'd' < 'y'", sWritten},
      {"EXISTS (SELECT 1 FROM json_each(json_array(d.Day)) WHERE value < 'y')", sWritten},
      {"EXISTS (SELECT 1 FROM json_tree(json_array(d.Clock)) WHERE atom < 'y')", sWritten},
      {"(SELECT group_concat(Day) FROM Plant1..Days) < 'y'", sWritten},
      {"(SELECT json_group_array(Day) FROM Plant1..Days) < 'y'", sWritten},
      {"(SELECT max(CAST(Day AS TEXT)) FROM Plant1..Days) < 'y'", sWritten},
      {"(SELECT first_value(Day || '') OVER () FROM Plant1..Days) < 'y'", sWritten},
      {"coalesce(CAST(Day AS TEXT), '2024') < 'y'", sWritten},
      {"CASE WHEN Id > 5 THEN Day || '' ELSE substr(Day, 1, 4) END < 'y'", sWritten},
      {"iif(Id > 5, Day, '2024') || '' < 'y'", sWritten},
      {"EXISTS (SELECT 1 FROM (SELECT Day || '' AS t FROM Plant1..Days) WHERE t < 'y')", sWritten},
      {"EXISTS (WITH q(t) AS (SELECT trim(Day) FROM Plant1..Days) SELECT 1 FROM q WHERE t < 'y')",
       sWritten},
      {"EXISTS (SELECT 1 FROM Plant1..Written WHERE t < 'y')", sWritten},
      {"EXISTS (SELECT 1 FROM Plant1..Written WHERE c < 'y')", sWritten},
      {"EXISTS (SELECT 1 FROM Plant1..Made WHERE t < 'y')", sWritten},
      {"trim(Day) BETWEEN 'a' AND 'z'", sWritten},
      {"trim(Day) NOT IN ('y')", sWritten},
      {"max(trim(Day), 'y') > '2024'", sWritten},
      {"nullif(trim(Day), 'y') IS NULL", sWritten},
      {"CASE trim(Day) WHEN 'y' THEN 1 END", sWritten},
      {"(trim(Day), 1) < ('y', 2)", sWritten},
      {"CAST(Clock AS TEXT) > '*'", sWritten},
      {"Clock || '' < 'y'", sWritten},
      {"CAST(Clock AS TEXT) < '2024-05-01'", sWritten},
      {"substr(Clock, 1, 5) < '2024-05-01'", sWritten},
      {"upper(Day) > lower('*')", sStar},
      {"trim(Day) > coalesce(NULL, '*')", sStar},
      {"trim(Day) > (SELECT '*')", sStar},
      {"trim(Clock) > lower('*')", sStar},
      {"trim(Day) < Word", "'y' is compared with a written time; compare the time or the date"},
      {"trim(Day) < (SELECT max(Value) FROM Plant1..Data)", "23 is compared with a written time"},
      {"CAST(Day AS INTEGER) < 'y'", sNumber},
      {"CAST(Day AS BOOLEAN) < 'y'", sNumber},
      {"CAST(trim(Day) AS REAL) < 'y'", sNumber},
      {"trim(Day) + 0 < 'y'", sNumber},
      {"length(Day) < 'y'", sNumber},
      {"CAST(Day AS BLOB) > '*'", sWritten},
      {"CAST(Day AS BLOB) > '2024'", "A row of bytes is compared with a written time"},
      {"CAST(Day AS TEXT) < CAST(Clock AS TEXT)",
       "A part of a time is compared with a whole one (character "},
      {"Day < CAST(Clock AS TEXT)", "This is not understood as a date (character "},
      {"Clock < trim(Day)", "'2024-05-17' is compared with a time of day or stored as one"},
      {"Id IN (WITH RECURSIVE r(t) AS (SELECT Day FROM Plant1..Days UNION ALL SELECT 'z' || t FROM "
       "r WHERE t < 'y') SELECT 1 FROM r)",
       sItself},
      {"Id IN (WITH RECURSIVE r(x, k) AS (SELECT min(Day), 0 FROM Plant1..Days UNION ALL SELECT "
       "strftime('%Y', x), x < '2024-01-01' FROM r LIMIT 3) SELECT k FROM r)",
       sItself},
      {"Id IN (WITH RECURSIVE r(x, k) AS (SELECT min(Day), 0 FROM Plant1..Days UNION ALL SELECT "
       "datetime(x, '+1 day'), x = 'y' FROM r LIMIT 3) SELECT k FROM r)",
       sItself},
      {"Id IN (WITH RECURSIVE r(x, k) AS (SELECT min(Clock), 0 FROM Plant1..Days UNION ALL SELECT "
       "strftime('%H', x), x < '08:00' FROM r LIMIT 3) SELECT k FROM r)",
       sItself},
      {"Id IN (WITH RECURSIVE r(x, k) AS (SELECT '', 0 UNION ALL SELECT trim(Day), x < 'y' FROM r, "
       "Plant1..Days LIMIT 3) SELECT k FROM r)",
       sItself},
      {"Id IN (WITH RECURSIVE r(x, k) AS (SELECT NULL, 0 UNION ALL SELECT date(Timestamp), x < 'y' "
       "FROM r, Plant1..Data LIMIT 3) SELECT k FROM r)",
       sItself},
  };
  for (const Form& form : forms) CheckDaysRefused(form);
}

TEST_F(day_texts, are_refused_with_what_can_be_done) {
  EXPECT_EQ(Failing("DELETE FROM Plant1..Days WHERE CAST(Day AS TEXT) < 'y'"),
            "A written time is compared with something else (character 52 of the statement); "
            "compare the date or the time of day itself, as in Day >= 'y', or write a text of the "
            "same format.");
  EXPECT_EQ(Failing("DELETE FROM Plant1..Data WHERE CAST(date(Timestamp) AS TEXT) < 'y'"),
            "A written time is compared with something else (character 64 of the statement); "
            "compare the time itself, as in Timestamp >= '*-1h', or write a text of the same "
            "format.");
  EXPECT_EQ(Hours("CAST(date(Timestamp) AS TEXT) < '2024-05-15'"), Expanded("13-23"));
  EXPECT_EQ(Failing("DELETE FROM Plant1..Data WHERE strftime('%H', Timestamp) > 5"),
            "A written time is compared with something else (character 60 of the statement); "
            "compare the time itself, as in Timestamp >= '*-1h', or write CAST(... AS INTEGER) for "
            "a number.");
  EXPECT_EQ(Hours("CAST(strftime('%H', Timestamp) AS INTEGER) > 21"), Expanded("13-14"));
  EXPECT_EQ(Refusal("DELETE FROM Plant1..Data WHERE date(Timestamp) > lower('*')"),
            "'*' is compared with a written time; compare the time or the date itself, as in "
            "Timestamp >= '*-1h', or with a text of the same format.");
}

TEST_F(day_texts, that_read_themselves_are_refused_with_what_to_begin_with) {
  const auto advice = [&](const Text& sBegin, const Text& sGoesOn) {
    const Text sFailure =
        Failing("WITH RECURSIVE r(x) AS (SELECT " + sBegin + " UNION ALL SELECT " + sGoesOn +
                " FROM r, Plant1..Days, Plant1..Data) SELECT 1 FROM r");
    return sFailure.substr(sFailure.find(';') + 2);
  };
  EXPECT_EQ(advice("min(Day) FROM Plant1..Days", "strftime('%Y', x)"),
            "begin with a date and go on with what date() gives.");
  EXPECT_EQ(advice("min(Clock) FROM Plant1..Days", "strftime('%H', x)"),
            "begin with a time of day and go on with what time() gives.");
  EXPECT_EQ(advice("''", "datetime(Timestamp)"),
            "begin with what the same function makes of a time.");
  EXPECT_EQ(advice("0", "unixepoch(Timestamp)"),
            "begin with what the same function makes of a time.");
  EXPECT_EQ(advice("NULL", "Timestamp"), "begin with a time, as in SELECT CAST('t' AS TIMESTAMP).");
}

TEST_F(day_texts, are_no_columns_of_a_table_that_is_made_from_a_query) {
  EXPECT_EQ(Failing("CREATE TABLE Plant1..m AS SELECT Id, Day FROM Plant1..Days"),
            "A table that is made from a query holds mere texts in place of dates (character 38 of "
            "the statement); create it with a column of type DATE and fill it by INSERT ... "
            "SELECT.");
  EXPECT_EQ(Refusal("CREATE TABLE Plant1..m AS SELECT max(Clock) FROM Plant1..Days"),
            "A table that is made from a query holds mere texts in place of times of day");
  Run("CREATE TABLE Plant1..m AS SELECT Id, CAST(Day AS TEXT) AS t, date(Day, '+1 day') AS n FROM "
      "Plant1..Days");
  EXPECT_EQ(Run("SELECT t, n FROM Plant1..m WHERE Id = 3"), "2024-05-14|2024-05-15\n");
}

}  // namespace
}  // namespace orvane::provider::dialect
