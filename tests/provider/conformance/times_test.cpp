// Times: how they are read and how they come out.
#include <tuple>

#include "tests/provider/conformance/conformance.h"

namespace orvane::provider::conformance {
namespace {

class times : public Conformance {};

ORVANE_ON_EVERY_ENGINE(times);

TEST_P(times, gives_times_as_times_also_where_the_engine_sees_numbers) {
  const auto opened = OpenPlant();
  const auto rs = Run(*opened,
                      "SELECT max(Timestamp) AS last, count(*) AS n FROM Plant1..Data GROUP BY Tag "
                      "HAVING max(Timestamp) = '*'")
                      .recordset;
  EXPECT_EQ(Rows(*rs), "2024-05-15 12:00:00|24\n");
  EXPECT_EQ(rs->FieldAt(0).Type(), platform::DataType::DBTimeStamp);
  EXPECT_EQ(rs->FieldAt(0).Name(), "last");
  EXPECT_EQ(rs->FieldAt(1).Type(), platform::DataType::BigInt);
  EXPECT_EQ(rs->ValueAt(0, 0), Value(FixedNow()));
}

TEST_P(times, gives_times_as_days_where_the_option_says_so) {
  const auto opened = OpenPlant("Time as Double = True;Time Zone = UTC;");
  const Text sStatement = "SELECT Timestamp, Value FROM Plant1..Data WHERE Timestamp >= 45427.5";
  auto rs = Run(*opened, sStatement).recordset;
  EXPECT_EQ(Rows(*rs), "45427.5|0.5\n");
  EXPECT_EQ(rs->FieldAt(0).Type(), platform::DataType::Double);
  opened->PropertyValue("Time Zone", "Asia/Tokyo");
  EXPECT_EQ(Select(*opened, "SELECT max(Timestamp) FROM Plant1..Data WHERE Timestamp <= 45427.875"),
            "45427.875\n");
  opened->PropertyValue("Time as Double", false);
  EXPECT_EQ(Select(*opened, "SELECT max(Timestamp) FROM Plant1..Data"), "2024-05-15 12:00:00\n");
}

TEST_P(times, reads_days_in_its_time_zone) {
  const auto opened = OpenPlant("Time Zone = UTC;");
  const Text sStatement = "SELECT count(*) FROM Plant1..Data WHERE Timestamp >= 't'";
  EXPECT_EQ(Select(*opened, sStatement), "13\n");
  opened->PropertyValue("Time Zone", "Asia/Tokyo");
  EXPECT_EQ(Select(*opened, sStatement), "22\n");
}

TEST_P(times, are_times_behind_windows_and_subqueries) {
  const auto opened = OpenPlant("Time Zone = UTC;");
  EXPECT_EQ(Select(*opened,
                   "SELECT max(Timestamp) OVER (), lag(Timestamp) OVER w FROM Plant1..Data "
                   "WHERE Timestamp >= '*-1h' WINDOW w AS (ORDER BY Timestamp)"),
            "2024-05-15 12:00:00|\n2024-05-15 12:00:00|2024-05-15 11:00:00\n");
  EXPECT_EQ(Select(*opened,
                   "WITH recent AS (SELECT Timestamp AS t FROM Plant1..Data WHERE Timestamp > "
                   "'*-2h') SELECT t FROM recent WHERE t < '*' ORDER BY t"),
            "2024-05-15 11:00:00\n");
}

TEST_P(times, have_a_type_of_four_words_as_well) {
  const auto opened = OpenPlant("Time Zone = UTC;");
  Run(*opened,
      "CREATE TABLE Plant1..Stamped (Id INTEGER PRIMARY KEY, At TIMESTAMP WITH TIME ZONE)");
  Run(*opened, "INSERT INTO Plant1..Stamped VALUES (1, '*'), (2, '*-1h')");
  EXPECT_EQ(Select(*opened, "SELECT Id, At FROM Plant1..Stamped WHERE At < '*'"),
            "2|2024-05-15 11:00:00\n");
}

TEST_P(times, are_read_from_texts_while_a_statement_runs) {
  const auto opened = OpenPlant("Time Zone = UTC;");
  Run(*opened, "INSERT INTO Plant1..Tags (Tag, Description) VALUES ('T1', '*-1h')");
  const Text sStatement =
      "SELECT Value FROM Plant1..Data WHERE Timestamp IN (SELECT Description FROM Plant1..Tags)";
  if (Differs(Difference::kNoStatementTimes)) {
    EXPECT_EQ(Failing(*opened, sStatement).substr(0, 4), "3805");
  } else {
    EXPECT_EQ(Select(*opened, sStatement), "1.5\n");
  }
}

TEST_P(times, that_are_moved_on_are_shown_as_all_others) {
  const auto opened = OpenPlant("Time Zone = UTC;");
  const Text sStatement =
      "SELECT Timestamp + 3600000000, max(Timestamp, Timestamp + 1) FROM Plant1..Data WHERE "
      "Timestamp = '*'";
  EXPECT_EQ(Select(*opened, sStatement), "2024-05-15 13:00:00|2024-05-15 12:00:00.000001\n");
  opened->PropertyValue("Time as Double", true);
  const auto rs = Run(*opened,
                      "SELECT Timestamp + 10800000000 FROM Plant1..Data WHERE Timestamp >= "
                      "45427.5")
                      .recordset;
  EXPECT_EQ(Rows(*rs), "45427.625\n");
  EXPECT_EQ(rs->FieldAt(0).Type(), platform::DataType::Double);
}

TEST_P(times, are_understood_however_the_other_side_is_written) {
  const auto opened = OpenPlant("Time Zone = UTC;");
  for (const char* const sCondition :
       {"+Timestamp >= '*-2h'", "Timestamp >= (SELECT '*-2h')",
        "Timestamp >= '*-2h' COLLATE NOCASE", "Timestamp COLLATE NOCASE >= ('*-2h')",
        "max(Timestamp, '*-2h') = Timestamp", "min(Timestamp, '*-2h', '*') = '*-2h'",
        "Timestamp >= coalesce(NULL, '*-2h')", "Timestamp >= CASE WHEN 1 = 1 THEN '*-2h' END",
        "Timestamp BETWEEN +'*-2h' AND '*'"}) {
    EXPECT_EQ(Select(*opened, Text("SELECT count(*) FROM Plant1..Data WHERE ") + sCondition), "3\n")
        << sCondition;
  }
  const Text sText = "SELECT 1 FROM Plant1..Data WHERE Timestamp < Tag";
  EXPECT_EQ(Failing(*opened, sText),
            Differs(Difference::kNoStatementTimes)
                ? "3805: A text meets a time, and this server reads none while a statement runs "
                  "(character 46 of the statement); write one between single quotes, such as "
                  "'*-1h', or CAST(... AS TIMESTAMP) around a text as the server writes it."
                : "3805: 'T1' is compared with a time or stored as one, and is none: at its "
                  "character 2 + or - must follow.");
}

TEST_P(times, of_days_meet_what_is_read_as_a_date) {
  const auto opened = OpenPlant("Time Zone = Europe/Madrid;");
  Run(*opened,
      "CREATE TABLE Plant1..Days (Id INTEGER PRIMARY KEY, Day DATE, Clock TIME, Note TEXT)");
  Run(*opened,
      "INSERT INTO Plant1..Days VALUES (1, 'y', '08:30', 'a'), (2, '*', '09:00:00', 'b'), "
      "(3, '2024-05-16', NULL, 'c'), (4, NULL, '10:15:30.5', 'd')");
  EXPECT_EQ(Select(*opened, "SELECT * FROM Plant1..Days ORDER BY Id"),
            "1|2024-05-14|08:30:00|a\n2|2024-05-15|09:00:00|b\n3|2024-05-16||c\n"
            "4||10:15:30.5|d\n");
  const std::pair<const char*, const char*> forms[] = {
      {"Day = '*'", "2\n"},
      {"Day = '*+11h'", "3\n"},
      {"Day < 't'", "1\n"},
      {"'y' = Day", "1\n"},
      {"Day >= '*-1d' AND Day < 't+1d'", "1\n2\n"},
      {"Day BETWEEN 'y' AND '*'", "1\n2\n"},
      {"Day NOT IN ('y', 't')", "3\n"},
      {"Day IN (SELECT 'y' UNION SELECT '2024-05-16')", "1\n3\n"},
      {"Day = (SELECT 'y')", "1\n"},
      {"+Day <> 'y'", "2\n3\n"},
      {"Day < 't' COLLATE NOCASE", "1\n"},
      {"coalesce(Day, 'y') = 'y'", "1\n4\n"},
      {"nullif(Day, 'y') IS NULL", "1\n4\n"},
      {"CASE Day WHEN 'y' THEN 1 WHEN '*' THEN 1 ELSE 0 END = 1", "1\n2\n"},
      {"max(Day, 't') = Day", "2\n3\n"},
      {"Day = CAST('y' AS DATE)", "1\n"},
      {"Day = '2024-05-15'", "2\n"},
      {"Day = '2024-05-15 23:59'", "2\n"},
      {"Day = date('2024-05-15 10:00')", "2\n"},
      {"date(Day) = '2024-05-15'", "2\n"},
      {"Day IN (SELECT date(Day, '+1 day') FROM Plant1..Days)", "2\n3\n"},
      {"substr(date(Day), 1, 7) = '2024-05'", "1\n2\n3\n"},
      {"CAST(Day AS TEXT) < '2024-05-15'", "1\n"},
      {"substr(CAST(Day AS TEXT), 9) < '15'", "1\n"},
      {"strftime('%m-%d', Day) < '05-15'", "1\n"},
      {"CAST(Clock AS TEXT) < '09:00'", "1\n"},
      {"Clock < '09:00'", "1\n"},
      {"Clock IN ('08:30', '09:00')", "1\n2\n"},
      {"Clock > time('2024-05-15 09:30')", "4\n"},
  };
  for (const auto& [sCondition, sIds] : forms) {
    EXPECT_EQ(Failing(*opened, Text("SELECT Id FROM Plant1..Days WHERE ") + sCondition),
              "no failure")
        << sCondition;
    EXPECT_EQ(
        Select(*opened, Text("SELECT Id FROM Plant1..Days WHERE ") + sCondition + " ORDER BY Id"),
        sIds)
        << sCondition;
  }
  for (const char* const sCondition :
       {"CAST(Day AS TEXT) < '31.12.2024'", "CAST(Clock AS TEXT) < '8:00'",
        "strftime('%m', Day) < '6'", "lower(CAST(Day AS TEXT)) < '31.12.2024'",
        "Id IN (SELECT Id FROM (SELECT Id, CAST(Day AS TEXT) x FROM Plant1..Days) y WHERE x < '2')",
        "date(Day) < 'soon'", "Day > 5", "Day = -5", "Clock = 5", "Clock < 'soon'", "Day < 'soon'",
        "Day < Note", "Day = Clock", "Day < x'31'"}) {
    EXPECT_EQ(Failing(*opened, Text("DELETE FROM Plant1..Days WHERE ") + sCondition).substr(0, 5),
              "3805:")
        << sCondition;
  }
  Run(*opened, "UPDATE Plant1..Days SET Day = '*-1w' WHERE Day = 'y'");
  EXPECT_EQ(Run(*opened, "DELETE FROM Plant1..Days WHERE Day < 't-6d'").lRecordsAffected, 1);
  const platform::Date day = std::chrono::year{2024} / 5 / 16;
  EXPECT_EQ(With(*opened, "UPDATE Plant1..Days SET Day = ?, Clock = ? WHERE Day = ? COLLATE BINARY",
                 {day, platform::TimeOfDay(0), day})
                .lRecordsAffected,
            1);
  // Only what is asked for as it is written need not be a date.
  EXPECT_NE(FailureOf([&] {
              With(*opened, "DELETE FROM Plant1..Days WHERE Day > ? COLLATE BINARY", {5});
            }).find("A number stands where a date is meant"),
            Text::npos);
}

TEST_P(times, meet_dates_as_the_midnight_of_the_zone) {
  const auto opened = OpenPlant("Time Zone = Europe/Madrid;");
  Run(*opened, "CREATE TABLE Plant1..Days (Id INTEGER PRIMARY KEY, Day DATE)");
  Run(*opened, "INSERT INTO Plant1..Days VALUES (1, '2024-05-14'), (2, '2024-05-15')");
  Run(*opened, "CREATE TABLE Plant1..Moments (Id INTEGER PRIMARY KEY, At TIMESTAMP)");
  Run(*opened,
      "INSERT INTO Plant1..Moments VALUES (1, '2024-05-14T21:59:00Z'), (2, "
      "'2024-05-14T22:00:00Z'), "
      "(3, '2024-05-15T00:00:00Z')");
  const std::pair<const char*, const char*> forms[] = {
      {"At < Day", "1\n"},
      {"At >= Day", "2\n3\n"},
      {"Day = At", "2\n"},
      {"At BETWEEN Day AND '2024-05-15T01:00:00Z'", "2\n3\n"},
      {"At IN (SELECT Day FROM Plant1..Days)", "2\n"},
      {"At < (SELECT max(Day) FROM Plant1..Days)", "1\n"},
      {"At < coalesce(NULL, Day)", "1\n"},
      {"At < CASE WHEN d.Id = 2 THEN Day END", "1\n"},
      {"At = CAST(Day AS TIMESTAMP)", "2\n"},
      {"At < CAST('2024-05-15' AS DATE)", "1\n"},
      {"max(At, Day) = Day", "1\n2\n"},
      {"At < date(Day)", "1\n"},
      {"At >= date(Day, '+1 day')", ""},
      {"At >= date(Day, '-1 day') AND At < Day", "1\n"},
  };
  for (const auto& [sCondition, sIds] : forms) {
    const Text sStatement =
        Text("SELECT m.Id FROM Plant1..Moments AS m, Plant1..Days AS d WHERE d.Id = 2 AND ") +
        sCondition + " ORDER BY m.Id";
    EXPECT_EQ(Failing(*opened, sStatement), "no failure") << sCondition;
    EXPECT_EQ(Select(*opened, sStatement), sIds) << sCondition;
  }
  Run(*opened, "INSERT INTO Plant1..Moments SELECT Id + 10, Day FROM Plant1..Days");
  EXPECT_EQ(Select(*opened, "SELECT At FROM Plant1..Moments WHERE Id > 10 ORDER BY Id"),
            "2024-05-13 22:00:00\n2024-05-14 22:00:00\n");
  EXPECT_EQ(
      Run(*opened,
          "DELETE FROM Plant1..Moments WHERE At < (SELECT Day FROM Plant1..Days WHERE Id = 2)")
          .lRecordsAffected,
      2);
}

TEST_P(times, of_which_the_day_is_meant_have_that_of_the_zone) {
  const auto opened = OpenPlant("Time Zone = Europe/Madrid;");
  Run(*opened, "CREATE TABLE Plant1..Days (Id INTEGER PRIMARY KEY, Day DATE)");
  Run(*opened,
      "INSERT INTO Plant1..Days VALUES (1, '2024-05-15'), (2, '2024-05-16'), "
      "(3, datetime('2024-05-16 23:00:00'))");
  const std::pair<const char*, const char*> forms[] = {
      {"Day = datetime('2024-05-15 23:00:00')", "2\n"},
      {"Day = CAST(datetime('2024-05-15 23:00:00') AS DATE)", "2\n"},
      {"Day <= strftime('%Y-%m-%d %H:%M', '2024-05-15 21:59:00')", "1\n"},
      {"Day IN (SELECT datetime('2024-05-15 22:00:00'))", "2\n"},
      {"Day = date('2024-05-15 23:00:00')", "1\n"},
      {"Day = '2024-05-17'", "3\n"},
  };
  for (const auto& [sCondition, sIds] : forms) {
    const Text sStatement =
        Text("SELECT Id FROM Plant1..Days WHERE ") + sCondition + " ORDER BY Id";
    EXPECT_EQ(Failing(*opened, sStatement), "no failure") << sCondition;
    EXPECT_EQ(Select(*opened, sStatement), sIds) << sCondition;
  }
  // Clocks were put forward at this midnight, and back over that one.
  opened->PropertyValue("Time Zone", "Atlantic/Azores");
  Run(*opened, "INSERT INTO Plant1..Days VALUES (4, '2024-03-31'), (5, '2024-10-27')");
  EXPECT_EQ(
      Select(*opened, "SELECT CAST(Day AS TIMESTAMP) FROM Plant1..Days WHERE Id > 3 ORDER BY Id"),
      "2024-03-31 01:00:00\n2024-10-27 00:00:00\n");
  // The first of two is meant, also where clocks go back from 00:01; a day may begin without one.
  const std::tuple<const char*, const char*, const char*> midnights[] = {
      {"Atlantic/Azores", "2024-10-27", "2024-10-27T00:00:00Z"},
      {"America/St_Johns", "2010-11-07", "2010-11-07T02:30:00Z"},
      {"America/St_Johns", "2010-03-14", "2010-03-14T03:30:00Z"},
      {"America/Sao_Paulo", "2018-11-04", "2018-11-04T03:00:00Z"},
      {"America/Sao_Paulo", "2018-02-18", "2018-02-18T03:00:00Z"},
      {"America/Nuuk", "2022-03-27", "2022-03-27T02:00:00Z"},
      {"America/Scoresbysund", "2022-03-27", "2022-03-27T01:00:00Z"},
      {"America/Nuuk", "2024-03-31", "2024-03-31T01:00:00Z"},
  };
  for (const auto& [sZone, sDay, sMoment] : midnights) {
    opened->PropertyValue("Time Zone", Text(sZone));
    EXPECT_EQ(
        Select(*opened, Text("SELECT CAST(CAST('") + sDay + "' AS DATE) AS TIMESTAMP) = CAST('" +
                            sMoment + "' AS TIMESTAMP) FROM Plant1..Days WHERE Id = 1"),
        Select(*opened, "SELECT 1 = 1 FROM Plant1..Days WHERE Id = 1"))
        << sZone << ' ' << sDay;
  }
}

// Whose day it would be is not written there.
TEST_P(times, are_cast_to_no_day) {
  const auto opened = OpenPlant("Time Zone = Europe/Madrid;");
  for (const char* const sCast :
       {"CAST(Timestamp AS DATE)", "CAST(Timestamp AS TIME)", "CAST(max(Timestamp) AS DATE)",
        "CAST(Timestamp + 5 AS DATE)", "(SELECT CAST(Timestamp AS DATE))"}) {
    const Text sText = Text("SELECT ") + sCast + " FROM Plant1..Data";
    const std::size_t place = sText.find(sCast[5] == 'm' ? "max(" : "Timestamp") + 1;
    EXPECT_EQ(Failing(*opened, sText),
              "3805: A time is cast to a date or a time of day (character " +
                  std::to_string(place) +
                  " of the statement); write date(...) for its date, time(...) for its time of "
                  "day, both in UTC.");
  }
  EXPECT_EQ(Failing(*opened, "DELETE FROM Plant1..Data WHERE CAST(Timestamp AS DATE) = 't'")
                .substr(0, 47),
            "3805: A time is cast to a date or a time of day");
  EXPECT_EQ(
      Select(*opened, "SELECT DISTINCT CAST(date(Timestamp) AS DATE) FROM Plant1..Data ORDER BY 1"),
      "2024-05-14\n2024-05-15\n");
}

TEST_P(times, that_are_none_are_told_with_their_place) {
  const auto opened = OpenPlant();
  EXPECT_EQ(Failing(*opened, "INSERT INTO Plant1..Data (Tag, Timestamp) VALUES ('T1', 'tomorrow')"),
            "3805: 'tomorrow' is no time (character 57 of the statement); at its character 2 + or "
            "- must follow.");
}

}  // namespace
}  // namespace orvane::provider::conformance
