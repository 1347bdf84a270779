// Every form in which a stored time can be compared. The rows that are expected were worked out on
// the numbers of microseconds: of the row "n hours ago" that is 1715774400000000 - n * 3600000000.
#include "tests/provider/dialect/forms.h"

namespace orvane::provider::dialect {
namespace {

class time_comparisons : public Forms {};

TEST_F(time_comparisons, choose_the_rows_that_are_meant) {
  const Form forms[] = {
      {"Timestamp >= '2024-05-15 10:00'", "0-4"},
      {"Timestamp >= ('2024-05-15 10:00')", "0-4"},
      {"Timestamp >= '2024-05-15T08:00:00Z'", "0-4"},
      {"Timestamp >= '2024-05-15 10:00' COLLATE NOCASE", "0-4"},
      {"'2024-05-15 10:00' <= Timestamp", "0-4"},
      {"d.\"timestamp\" == '*'", "0"},
      {"Timestamp IS NULL OR [Timestamp] = '*'", "0"},
      {"+Timestamp >= '2024-05-15 10:00'", "0-4"},
      {"Timestamp + 0 >= '2024-05-15 10:00'", "0-4"},
      {"Timestamp - 3600000000 >= '2024-05-15 10:00'", "0-3"},
      {"likely(Timestamp) >= likely('*-2h')", "0-2"},
      {"NOT (Timestamp < '*-2h' OR Timestamp > '*-1h')", "1-2"},
      {"(Timestamp >= '*-2h') = 1", "0-2"},
      {"Timestamp NOTNULL AND Timestamp <> '*' AND Timestamp != '*-1h' AND Value < 4", "2-3"},
      // What the engine's date functions give is in UTC.
      {"Timestamp >= datetime('2024-05-15 08:00:00')", "0-4"},
      {"Timestamp >= datetime('2024-05-15', '+8 hours')", "0-4"},
      {"Timestamp >= datetime('2024-05-15 08:00', '-' || '1' || ' hours')", "0-5"},
      {"Timestamp >= date('2024-05-15')", "0-12"},
      {"Timestamp >= strftime('%Y-%m-%dT%H:%M', '2024-05-15 08:00')", "0-4"},
      {"Timestamp >= replace(datetime('2024-05-15 08:00:00'), ' ', 'T')", "0-4"},
      {"Timestamp >= date('2024-05-15') || ' 06:00'", "0-6"},
      {"Timestamp < datetime('now', '-30 years')", ""},
      {"Timestamp > datetime('now', '-30 years')", "0-23"},
      {"Timestamp < CURRENT_TIMESTAMP AND Timestamp < CURRENT_DATE", "0-23"},
      {"Timestamp >= CURRENT_TIMESTAMP", ""},
      // A stored time is handed to them as they read it.
      {"datetime(Timestamp) >= '2024-05-15 08:00:00'", "0-4"},
      {"date(Timestamp) = '2024-05-14'", "13-23"},
      {"strftime('%H', Timestamp) = '03'", "9"},
      {"CAST(strftime('%H', Timestamp) AS INTEGER) BETWEEN 6 AND 8", "4-6"},
      {"datetime(Timestamp, '+1 hour') = datetime('2024-05-15 12:00:00')", "1"},
      {"Timestamp = datetime(Timestamp, '+0 days')", "0-23"},
      {"unixepoch(Timestamp) >= 1715774400 - 7200", "0-2"},
      // BETWEEN, IN, rows.
      {"Timestamp BETWEEN '*-3h' AND '*-1h'", "1-3"},
      {"Timestamp BETWEEN datetime('2024-05-15 08:00') AND '*-1h'", "1-4"},
      {"Timestamp NOT BETWEEN '*-20h' AND coalesce(NULL, '*')", "21-23"},
      {"'*-2h' BETWEEN Timestamp AND '*'", "2-23"},
      {"Timestamp IN ('*', '*-2h')", "0,2"},
      {"Timestamp NOT IN ('*', '*-1h')", "2-23"},
      {"Timestamp IN (datetime('2024-05-15 11:00'), '*')", "0-1"},
      {"'*-2h' IN (Timestamp, '*-5h')", "2"},
      {"Timestamp IN (SELECT '*-2h')", "2"},
      {"Timestamp IN (VALUES ('*'), ('*-1h'))", "0-1"},
      {"Timestamp IN (SELECT Description FROM Plant1..Tags WHERE Tag = 'T1')", "4"},
      {"Timestamp IN (SELECT DISTINCT Description FROM Plant1..Tags t WHERE t.Tag = d.Tag)", "4"},
      {"'*-2h' IN (SELECT Timestamp FROM Plant1..Copy) AND Value < 2", "0-1"},
      {"Timestamp IN (SELECT max(Timestamp) FROM Plant1..Copy)", "0"},
      {"Timestamp IN (SELECT value FROM json_each('[\"*\", \"*-1h\"]'))", "0-1"},
      {"(Tag, Timestamp) = ('T1', '*')", "0"},
      {"(Timestamp, Tag) > ('*-2h', 'A')", "0-2"},
      {"(Tag, Timestamp) = (SELECT Tag, '*-5h' FROM Plant1..Tags WHERE Tag = 'T1')", "5"},
      {"(Tag, Timestamp) IN (SELECT 'T1', '*-5h')", "5"},
      {"(Tag, Timestamp) IN (VALUES ('T1', '*-5h'), ('T1', '*'))", "0,5"},
      {"(Timestamp, Value) BETWEEN ('*-2h', 2) AND ('*', 0)", "0-2"},
      {"Timestamp IS '*'", "0"},
      {"Timestamp IS NOT '*'", "1-23"},
      {"Timestamp IS DISTINCT FROM '*'", "1-23"},
      {"'*-3h' IS NOT DISTINCT FROM Timestamp", "3"},
      // What picks one of several.
      {"Timestamp >= CASE WHEN 1 THEN '*-2h' ELSE '*' END", "0-2"},
      {"CASE Timestamp WHEN '*' THEN 1 WHEN '*-1h' THEN 1 END", "0-1"},
      {"CASE WHEN Timestamp >= '*-2h' THEN 1 ELSE 0 END", "0-2"},
      {"CASE WHEN Value > 2 THEN Timestamp ELSE '*-9h' END = '*-9h'", "0-2,9"},
      {"Timestamp >= coalesce(NULL, '*-2h')", "0-2"},
      {"coalesce(Timestamp, '*') >= '*-2h'", "0-2"},
      {"ifnull(Timestamp, '*-9h') = '*'", "0"},
      {"nullif(Timestamp, '*') IS NULL", "0"},
      {"Timestamp = nullif('*', '*-1h')", "0"},
      {"iif(Value > 2, Timestamp, '*') = '*'", "0-2"},
      {"max(Timestamp, '*-2h') = '*-2h'", "2-23"},
      {"min(Timestamp, datetime('2024-05-15 10:00')) = datetime('2024-05-15 10:00')", "0-2"},
      // Texts that are known only when the statement runs.
      {"Timestamp >= CAST('2024-05-15 10:00' AS TIMESTAMP)", "0-4"},
      {"Timestamp >= CAST('2024-05-15 10:00' AS TEXT)", "0-4"},
      {"Timestamp >= '2024-05-15' || ' 10:00'", "0-4"},
      {"Timestamp >= substr('2024-05-15 10:00:00 and so on', 1, 19)", "0-4"},
      {"Timestamp >= printf('%s', '*-2h')", "0-2"},
      {"Timestamp >= json_extract('[\"2024-05-15 10:00\"]', '$[0]')", "0-4"},
      // Subqueries, named queries, joined SELECTs.
      {"Timestamp >= (SELECT '2024-05-15 10:00')", "0-4"},
      {"Timestamp >= (SELECT Description FROM Plant1..Tags WHERE Tag = 'T1')", "0-4"},
      {"Timestamp >= (SELECT max(Description) FROM Plant1..Tags WHERE Tag = 'T1')", "0-4"},
      {"Timestamp >= (SELECT x FROM (SELECT datetime('2024-05-15 08:00:00') AS x))", "0-4"},
      {"Timestamp >= (WITH w(x) AS (SELECT '2024-05-15 10:00') SELECT x FROM w)", "0-4"},
      {"Timestamp = (SELECT max(Timestamp) FROM Plant1..Copy)", "0"},
      {"Timestamp = (SELECT coalesce(max(Timestamp), '*') FROM Plant1..Copy WHERE Value = 3)", "3"},
      {"Timestamp IN (WITH w AS (SELECT '*' AS x UNION ALL SELECT '*-1h') SELECT x FROM w)", "0-1"},
      {"Timestamp IN (SELECT Timestamp FROM Plant1..Copy WHERE Value = 3 UNION SELECT '*')", "0,3"},
      {"Timestamp IN (SELECT '*' INTERSECT SELECT Timestamp FROM Plant1..Copy)", "0"},
      {"Timestamp IN (SELECT Timestamp FROM Plant1..Copy EXCEPT SELECT '*')", "1-23"},
      {"EXISTS (SELECT 1 FROM Plant1..Tags t WHERE t.Tag = d.Tag AND d.Timestamp >= t.Description)",
       "0-4"},
      {"EXISTS (SELECT 1 FROM Plant1..Copy c WHERE c.Timestamp = d.Timestamp AND "
       "c.Timestamp >= '*-1h')",
       "0-1"},
      {"Timestamp - (SELECT min(Timestamp) FROM Plant1..Copy) <= 3600000000", "22-23"},
      {"Timestamp / 3600000000 % 24 = 3", "9"},
      // Numbers made from times meet numbers, and columns that may hold them.
      {"julianday(Timestamp) >= 2460446 AND round(julianday(Timestamp), 2) < 2460447", "0"},
      {"unixepoch(Timestamp) >= unixepoch('2024-05-15 10:00:00')", "0-2"},
      {"unixepoch(Timestamp) - 1715774400 = -3600 * Value", "0-23"},
      {"CAST(strftime('%s', Timestamp) AS INTEGER) >= 1715774400 - 7200", "0-2"},
      {"coalesce(unixepoch(Timestamp), Value) >= 1715774400", "0"},
      {"min(unixepoch(Timestamp), Value, 5) < 2", "0-1"},
      // Names in a WITH query are its own; items see no names of one another.
      {"EXISTS (WITH q AS (SELECT Timestamp AS t FROM Plant1..Copy) SELECT 1 FROM q WHERE q.t = "
       "d.Timestamp AND q.t >= '*-1h')",
       "0-1"},
      {"(0, 'a') = (SELECT Timestamp < '*-2h', 'a' AS Timestamp FROM Plant1..Tags)", "0-2"},
  };
  static_assert(std::size(forms) >= 60);
  for (const Form& form : forms) Check(form);
}

TEST_F(time_comparisons, take_numbers_for_days_where_the_connection_does) {
  m_session->PropertyValue("Time as Double", true);
  // Day 45427 is 2024-05-15; noon of the zone is two hours before that of UTC.
  const Form forms[] = {
      {"Timestamp >= 45427.5", "0-2"},
      {"45427.5 <= Timestamp", "0-2"},
      {"Timestamp >= +45427.5 AND Timestamp > -1", "0-2"},
      {"Timestamp >= 45427 + 0.5", "0-2"},
      {"Timestamp >= CAST('45427.5' AS REAL)", "0-2"},
      {"Timestamp >= (SELECT 45427.5)", "0-2"},
      {"Timestamp >= julianday('2024-05-15 09:30:00') - 2415018.5", "0-4"},
      {"Timestamp IN (45427.5, '*')", "0,2"},
      {"Timestamp IN (SELECT 45427.5 UNION SELECT Timestamp FROM Plant1..Copy WHERE Value = 0)",
       "0,2"},
      {"Timestamp BETWEEN 45427 AND 45427.25", "8-14"},
      {"Timestamp >= Value + 45427.5 AND Value = 0", "0"},
      {"coalesce(Timestamp, 1) >= 45427.5", "0-2"},
      {"Timestamp >= '2024-05-15 12:00'", "0-2"},
  };
  for (const Form& form : forms) Check(form);
  const Form refused[] = {
      {"Timestamp >= julianday('now')", "This is not understood as a time (character"},
      {"Timestamp >= unixepoch('now')", "This is not understood as a time (character"},
      {"Timestamp + 1 >= 45427.5", "A number is added to a time, and it is not known"},
      {"Timestamp / 2 > 5", "What was made from a time is compared with something else (char"},
      {"Timestamp > 9e99", "9e99 is no time (character"},
      {"Timestamp > 9e9 * 9e9", "8.1e+19 is compared with a time or stored as one, and is none"},
  };
  for (const Form& form : refused) CheckRefused(form);
}

TEST_F(time_comparisons, are_refused_where_they_can_mean_no_time) {
  const char* const sNumber = "A number stands where a time is meant (character ";
  const char* const sMade = "What was made from a time is compared with something else (character ";
  const char* const sCounted = "A number made from a time is compared with a text (character ";
  const char* const sPattern = "A time is compared with a pattern (character ";
  const char* const sNot = "This is not understood as a time (character ";
  const char* const sZone = "The zone of this time is not known (character ";
  const char* const sWritten = "A written time is compared with something else (character ";
  const Form forms[] = {
      {"Timestamp > 'rubbish'", "'rubbish' is no time (character "},
      {"Timestamp > 45292.25", sNumber},
      {"-5 < Timestamp", sNumber},
      {"Timestamp >= 1 - 1", sNumber},
      {"Timestamp BETWEEN 1 AND '*'", sNumber},
      {"Timestamp IN ('*', 5)", sNumber},
      {"Timestamp + 0 > 5", sNumber},
      {"max(Timestamp, 1) > '*'", sNumber},
      {"coalesce(Timestamp, 0) > '*'", sNumber},
      {"coalesce(Timestamp, 'never') > '*'", "'never' is no time (character "},
      {"Timestamp LIKE '2024%'", sPattern},
      {"Timestamp NOT GLOB '2024*'", sPattern},
      {"'1' LIKE Timestamp", sPattern},
      {"like('2024%', Timestamp)", sPattern},
      {"Timestamp || '' > '2024'", sMade},
      {"lower(Timestamp) > 'a'", sMade},
      {"quote(Timestamp) > '1'", sMade},
      {"Timestamp * 1 > '2024'", sMade},
      {"-Timestamp < '2024'", sMade},
      {"abs(Timestamp) > '2024'", sMade},
      {"CAST(Timestamp AS TEXT) > '2024'", sMade},
      {"CAST(Timestamp AS INTEGER) > '2024'", sMade},
      {"CAST(Timestamp AS INTEGER) + 1 > Tag", sMade},
      {"Timestamp > (SELECT avg(Timestamp) FROM Plant1..Copy)", sMade},
      {"(SELECT total(Timestamp) FROM Plant1..Copy) > 'a'", sMade},
      {"hex(Timestamp) IN ('a', 'b')", sMade},
      {"julianday(Timestamp) < date('now', '-30 days')", sCounted},
      {"unixepoch(Timestamp) < '2024-01-01'", sCounted},
      {"'2024-01-01' > unixepoch(Timestamp)", sCounted},
      {"Timestamp - Timestamp < '1h'", sCounted},
      {"round(julianday(Timestamp), 1) < '2024-01-01'", sCounted},
      {"-unixepoch(Timestamp) < '2024-01-01'", sCounted},
      {"unixepoch(Timestamp) + 1 < CURRENT_DATE", sCounted},
      {"unixepoch(Timestamp) / 60 IN ('a', 'b')", sCounted},
      {"CAST(strftime('%s', Timestamp) AS INTEGER) < '2024-01-01'", sCounted},
      {"strftime('%Y', Timestamp) + 0 < '2024-01-01'", sCounted},
      {"unixepoch(datetime(Timestamp)) < lower('2024-01-01')", sCounted},
      {"coalesce(unixepoch(Timestamp), 0) < Tag", sCounted},
      {"unixepoch(Timestamp) < (SELECT Tag FROM Plant1..Tags LIMIT 1)", sCounted},
      {"(SELECT max(unixepoch(Timestamp)) FROM Plant1..Copy) < '2024-01-01'", sCounted},
      {"unixepoch(Timestamp) BETWEEN '2024-01-01' AND '2025-01-01'", sCounted},
      {"min(5, unixepoch(Timestamp), '2024-01-01') > 1", sCounted},
      {"iif(Value < 0, 1, Value < 0, 2, unixepoch(Timestamp)) < '2024-01-01'", sCounted},
      {"CASE unixepoch(Timestamp) WHEN 'a' THEN 0 ELSE 1 END", sCounted},
      {"(1, unixepoch(Timestamp)) < (1, '2024-01-01')", sCounted},
      {"nullif(unixepoch(Timestamp), 'a') IS NOT NULL", sCounted},
      {"unixepoch(Timestamp) < x'00'", sCounted},
      {"(SELECT unixepoch(Timestamp) FROM Plant1..Copy INTERSECT SELECT 'a') IS NULL",
       "What is a time in some rows and something else in others meets a time (character "},
      {"strftime(Tag, Timestamp) < 'a'", sMade},
      {"strftime('%s', Timestamp) < '2024-01-01'", sMade},
      {"CAST(unixepoch(Timestamp) AS TEXT) < '2024-01-01'", sMade},
      {"unixepoch(Timestamp) || '' < '2024-01-01'", sMade},
      {"EXISTS (WITH q AS (SELECT 1 FROM Plant1..Tags WHERE Timestamp < '2024-01-01') SELECT 1 "
       "FROM q)",
       "There is no column \"Timestamp\" (character "},
      {"(1, 'a') = (SELECT x < '2024-01-01', 'a' AS x FROM Plant1..Tags)",
       "There is no column \"x\" (character "},
      {"Timestamp > x'00'", sNot},
      {"Timestamp = (Value > 2)", sNot},
      {"Timestamp > unixepoch('now')", sNot},
      {"Timestamp > julianday('now')", sNot},
      {"Timestamp > '*' - '1h'", sNot},
      {"Timestamp > length(Tag)", sNot},
      {"Timestamp > -'5'", sNot},
      {"Timestamp + '1h' > '*'", "A time and a text are added (character "},
      {"Timestamp > datetime('now', 'localtime')", sZone},
      {"Timestamp > datetime('now', Tag)", sZone},
      {"Timestamp > datetime('now', 'local' || 'time')", sZone},
      {"Timestamp > substr(datetime('now', 'utc'), 1, 10)", sZone},
      {"datetime(Timestamp) > '*-1h'", sWritten},
      {"'t' < date(Timestamp)", sWritten},
      {"strftime('%H', Timestamp) > 5", sWritten},
      {"Timestamp > Tag", "'T1' is compared with a time or stored as one, and is none: at its "},
      {"Timestamp > Value", "23 is compared with a time or stored as one, and is none: write a "},
      {"Timestamp > Status || '1'", "'Good1' is compared with a time or stored as one, and is no"},
      {"Timestamp > CURRENT_TIME", "'"},
      {"Timestamp > time('now')", "'"},
      {"Timestamp > strftime('%s', 'now')", "'"},
      {"Timestamp IN (SELECT Description FROM Plant1..Tags)", "'none' is compared with a time"},
      {"Timestamp IN (SELECT * FROM (SELECT Tag FROM Plant1..Tags))",
       "A star stands for a time and for what is none (character "},
      {"Timestamp > (SELECT max(x) FROM (SELECT '2024' AS x UNION SELECT datetime('now')))",
       "What is a time in some rows and something else in others meets a time (character "},
      {"Timestamp IN (SELECT Tag AS x FROM Plant1..Tags WHERE x > 'a')", "'"},
  };
  for (const Form& form : forms) CheckRefused(form);
}

}  // namespace
}  // namespace orvane::provider::dialect
