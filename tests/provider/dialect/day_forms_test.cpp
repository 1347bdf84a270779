// Columns of types DATE and TIME: what they meet is a date, or a time of day, or refused. The rows
// that are expected were worked out by a program of its own, on the dates of a calendar.
#include <algorithm>
#include <utility>

#include "tests/provider/dialect/days.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

class day_forms : public Days {};

TEST_F(day_forms, choose_the_rows_that_are_meant) {
  const Form forms[] = {
      {"Day = '*'", "2"},
      {"Day > '*'", "0-1"},
      {"Day > '*-1h'", "0-1"},
      {"Day < 'y'", "4-19"},
      {"Day >= 't'", "0-2"},
      {"Day = '*+11h'", "1"},
      {"Day <= '*-15h'", "3-19"},
      {"Day < 't-7d'", "10-19"},
      {"Day > '*-1w'", "0-8"},
      {"Day <= '*-15d'", "17-19"},
      {"Day <> 'y'", "0-2,4-19"},
      {"Day != '2024-05-10'", "0-6,8-19"},
      {"Day = '2024-05-10'", "7"},
      {"Day = '2024-05-10 23:59'", "7"},
      {"Day = '2024-05-10T23:30:00Z'", "6"},
      {"'2024-05-10' <= Day", "0-7"},
      {"'y' > Day", "4-19"},
      {"Day IS 'y'", "3"},
      {"Day IS NOT 'y'", "0-2,4-20"},
      {"Day IS NULL", "20"},
      {"NOT Day < 't'", "0-2"},
      {"Day < ('y')", "4-19"},
      {"+Day < +'y'", "4-19"},
      {"Day < 'y' COLLATE NOCASE", "4-19"},
      {"Day COLLATE NOCASE < 'y'", "4-19"},
      {"Day < (SELECT 'y')", "4-19"},
      {"Day < coalesce(NULL, 'y')", "4-19"},
      {"coalesce(Day, 't') = 't'", "2,20"},
      {"nullif(Day, 'y') IS NULL", "3,20"},
      {"ifnull(NULL, Day) >= '*'", "0-2"},
      {"iif(Id > 10, Day, 'y') = 'y'", "0-10"},
      {"CASE WHEN Id < 5 THEN 't' ELSE Day END = Day", "2,5-19"},
      {"CASE Day WHEN 'y' THEN 1 WHEN '*' THEN 1 ELSE 0 END", "2-3"},
      {"Day BETWEEN 'y' AND '*'", "2-3"},
      {"Day NOT BETWEEN '*-5d' AND '*'", "0-1,8-19"},
      {"'t' BETWEEN Day AND Day", "2"},
      {"Day IN ('y', 't', '2024-05-01')", "2-3,16"},
      {"Day NOT IN ('y', 't')", "0-1,4-19"},
      {"Day IN (SELECT 'y' UNION SELECT 't-2d')", "3-4"},
      {"Day IN (SELECT Word FROM Plant1..Days)", "2-4,7"},
      {"Day = Word", ""},
      {"Day < Word", "3-4,6-19"},
      {"Day > (SELECT min(Word) FROM Plant1..Days)", "0-3"},
      {"(Day, Id) = ('t', 2)", "2"},
      {"(Day, Id) IN (SELECT 'y', 3)", "3"},
      {"Day = date('2024-05-15', '-3 days')", "5"},
      {"Day < date('2024-05-10')", "8-19"},
      {"Day >= datetime('2024-05-10 23:30:00')", "0-6"},
      {"Day = strftime('%Y-%m-%d', '2024-05-03 10:00')", "14"},
      {"Day = CAST('y' AS DATE)", "3"},
      {"CAST(Word AS DATE) > Day", "3-4,6-19"},
      {"max(Day, 't') = 't'", "2-19"},
      {"min('y', Day, '*-4d') = Day", "6-19"},
      {"Day = (SELECT max(Day) FROM Plant1..Days WHERE Day < '*')", "3"},
      {"date(Day, '+1 day') = '2024-05-15'", "3"},
      {"strftime('%m', Day) = '04'", "17-19"},
      {"julianday('2024-05-15') - julianday(Day) >= 10", "12-19"},
      {"Day LIKE '2024-04-%'", "17-19"},
      {"substr(Day, 1, 7) = '2024-04'", "17-19"},
      {"EXISTS (SELECT 1 FROM Plant1..Days o WHERE o.Day = d.Day AND o.Day > '*-3d')", "0-4"},
      {"Clock = '10:30'", "10"},
      {"Clock < '02:00:00'", "0-1"},
      {"Clock >= '17:51:00.000'", "17-19"},
      {"Clock BETWEEN '05:00' AND '07:30'", "5-7"},
      {"Clock IN ('00:00', '04:12', '05:00')", "0,4"},
      {"Clock > time('2024-05-15 15:00')", "15-19"},
      {"coalesce(Clock, '08:00') <= (SELECT '01:03')", "0-1"},
      {"max(Clock, '03:00') = '03:00'", "0-2"},
      {"Day > '*' OR Clock > '18:00'", "0-1,18-19"},
  };
  static_assert(std::size(forms) >= 60);
  for (const Form& form : forms) CheckDays(form);
}

TEST_F(day_forms, that_are_no_dates_are_refused) {
  const char* const sNumber = "A number stands where a date is meant (character ";
  const char* const sNoDay = "This is not understood as a date (character ";
  const char* const sCounted = "A date or a time of day is counted with (character ";
  const char* const sNoClock = "'*' is no time of day (character ";
  Run("CREATE TABLE Plant1..Loose (n, x TEXT)");
  Run("INSERT INTO Plant1..Loose VALUES (5, 'soon')");
  const Form forms[] = {
      {"Day > 5", sNumber},
      {"Day > -5", sNumber},
      {"Day > 45427.5", sNumber},
      {"Day IN ('y', 5)", sNumber},
      {"Day BETWEEN 'y' AND 20240515", sNumber},
      {"coalesce(Day, 0) > 'y'", sNumber},
      {"CASE Day WHEN 1 THEN 1 END", sNumber},
      {"Clock > 5", "A number stands where a time of day is meant (character "},
      {"Day < 'sometime'", "'sometime' is no date (character "},
      {"Day < ''", "'' is no date (character "},
      {"Day < '2024-02-30'", "'2024-02-30' is no date (character "},
      {"Day < (SELECT 'soon')",
       "'soon' is compared with a date or stored as one, and is none: at "},
      {"Day < (SELECT n FROM Plant1..Loose)",
       "5 is compared with a date or stored as one, and is none: write a date such as "
       "'2024-05-31'."},
      {"Day < (SELECT x FROM Plant1..Loose)",
       "'soon' is compared with a date or stored as one, and is none: at its character 1 it must "
       "begin with *, t, y or a date such as 2024-05-31."},
      {"Day < json_extract('[5]', '$[0]')", "5 is compared with a date or stored as one"},
      {"Day < x'31'", sNoDay},
      {"Day < (1 = 1)", sNumber},
      {"Day < length(Word)", sNumber},
      {"Day < TRUE", sNumber},
      {"Day < Id", "0 is compared with a date or stored as one"},
      {"Day < time('now')", sNoDay},
      {"Day < strftime('%H', 'now')", sNoDay},
      {"Day < datetime('now', 'localtime')", "The zone of this time is not known (character "},
      {"Day < Clock", "A date meets a time of day (character "},
      {"Day + 1 > '*'", sCounted},
      {"Day - Day = 0", sCounted},
      {"-Day < 0", sCounted},
      {"abs(Day) > 0", sCounted},
      {"Clock < '*'", sNoClock},
      {"Clock < ('*')", sNoClock},
      {"Clock < 'y'", "'y' is no time of day (character "},
      {"Clock < '25:00'", "'25:00' is no time of day (character "},
      {"Clock < '9:00'", "'9:00' is no time of day (character "},
      {"Clock < Word",
       "'y' is compared with a time of day or stored as one, and is none: write one such as "
       "'08:30' "
       "or '08:30:15'."},
      {"Clock < datetime('now')", "'20"},
      {"Clock + 1 > '*'", sCounted},
      {"Id IN (SELECT Id FROM Plant1..Days ORDER BY coalesce(Day, 'none'))",
       "'none' is no date (character "},
      {"Id IN (SELECT max(Id) FROM Plant1..Days GROUP BY coalesce(Day, 5))", sNumber},
      {"Id IN (SELECT min(coalesce(Day, 'none')) FROM Plant1..Days)",
       "'none' is no date (character "},
      {"Id IN (SELECT 1 FROM (SELECT Day FROM Plant1..Days UNION SELECT 'none'))",
       "'none' is no date (character "},
      {"Id IN (SELECT 1 FROM Plant1..Days JOIN (SELECT 'y' AS Day) USING (Day))",
       "Tables are joined by a date and something else (character "},
      {"Id IN (SELECT 1 FROM Plant1..Days NATURAL JOIN (SELECT 'y' AS Day))",
       "Tables are joined by a date and something else (character "},
  };
  static_assert(std::size(forms) >= 40);
  for (const Form& form : forms) CheckDaysRefused(form);
}

TEST_F(day_forms, are_stored_as_dates) {
  const Text sHead = "INSERT INTO Plant1..Days (Id, Day, Clock) ";
  Run(sHead + "VALUES (30, '*', '07:05'), (31, '*+11h', NULL), (32, NULL, '07:05:06.500')");
  Run(sHead + "SELECT 33, 't-1mo', CURRENT_TIME");
  Run(sHead +
      "SELECT 34, Word, time(Timestamp) FROM Plant1..Days, Plant1..Data WHERE Id = 1 AND "
      "Value = 1");
  Run(sHead + "SELECT 35, datetime('2024-05-15 23:00:00'), NULL");
  Run("UPDATE Plant1..Days SET Day = 'y', Clock = '08:00' WHERE Id = 0");
  Run("UPDATE Plant1..Days SET (Day, Clock) = ('2024-01-01', '09:00:00') WHERE Id = 1");
  Run("UPDATE Plant1..Days SET Day = date(Timestamp) FROM Plant1..Data WHERE Id = 2 AND Value = "
      "20");
  Run("INSERT INTO Plant1..Days (Id, Day) VALUES (3, 't') ON CONFLICT (Id) DO UPDATE SET Day = "
      "excluded.Day");
  EXPECT_EQ(
      Run("SELECT Id, Day, CASE WHEN Id <> 33 THEN Clock END FROM Plant1..Days WHERE Id >= 30 "
          "OR Id < 4 ORDER BY Id"),
      "0|2024-05-14|08:00:00\n1|2024-01-01|09:00:00\n2|2024-05-14|02:06:00\n"
      "3|2024-05-15|03:09:00\n30|2024-05-15|07:05:00\n31|2024-05-16|\n32||07:05:06.5\n"
      "33|2024-04-15|\n34|2024-05-10|11:00:00\n35|2024-05-16|\n");
  EXPECT_EQ(Run("SELECT DISTINCT typeof(Day), length(Day) FROM Plant1..Days WHERE Day IS NOT NULL"),
            "text|10\n");
}

TEST_F(day_forms, that_are_stored_must_be_dates) {
  const Text sHead = "INSERT INTO Plant1..Days (Id, Day, Clock) ";
  EXPECT_EQ(Refusal(sHead + "VALUES (30, 'soon', NULL)"), "'soon' is no date");
  EXPECT_EQ(Refusal(sHead + "VALUES (30, 5, NULL)"), "A number stands where a date is meant");
  EXPECT_EQ(Refusal(sHead + "VALUES (30, NULL, '*')"), "'*' is no time of day");
  EXPECT_EQ(Refusal(sHead + "SELECT 30, Timestamp, NULL FROM Plant1..Data"),
            "A time is stored in a column of dates");
  EXPECT_EQ(Refusal(sHead + "SELECT 30, NULL, Timestamp FROM Plant1..Data"),
            "A time is stored in a column of times of day");
  EXPECT_EQ(Refusal(sHead + "SELECT * FROM (SELECT 30, Word, Clock FROM Plant1..Days)"),
            "A star stands for a date and for what is none");
  EXPECT_EQ(Refusal(sHead + "SELECT 30, n, NULL FROM (SELECT 'soon' AS n)"),
            "'soon' is compared with a date or stored as one, and is none: at its character 1 it "
            "must begin with *, t, y or a date such as 2024-05-31.");
  EXPECT_EQ(Refusal("UPDATE Plant1..Days SET Day = 'soon'"), "'soon' is no date");
  EXPECT_EQ(Refusal("UPDATE Plant1..Days SET Day = Id"),
            "0 is compared with a date or stored as one, and is none: write a date such as "
            "'2024-05-31'.");
  EXPECT_EQ(Refusal("UPDATE Plant1..Days SET Day = Clock"), "A date meets a time of day");
  EXPECT_EQ(Ids("Day = Day AND Mark IS NULL"), Expanded("0-19"));
  EXPECT_EQ(Count("Plant1..Days"), "21 ");
}

TEST_F(day_forms, are_read_in_the_zone_of_the_connection) {
  EXPECT_EQ(Ids("Day = '*+11h'"), "1 ");
  m_session->PropertyValue("Time Zone", "UTC");
  EXPECT_EQ(Ids("Day = '*+11h'"), "2 ");
  EXPECT_EQ(Ids("Day = datetime('2024-05-15 23:00:00')"), "2 ");
  m_session->PropertyValue("Time Zone", "Asia/Tokyo");
  EXPECT_EQ(Ids("Day = '*+4h'"), "1 ");
  EXPECT_EQ(Ids("Day = datetime('2024-05-15 15:00:00')"), "1 ");
  EXPECT_EQ(Ids("Day = '2024-05-15'"), "2 ");
  EXPECT_EQ(Ids("Day = date('2024-05-15 23:00:00')"), "2 ");
  // Days as numbers are for times alone.
  m_session->PropertyValue("Time as Double", true);
  EXPECT_EQ(Refusal("DELETE FROM Plant1..Days WHERE Day > 45427"),
            "A number stands where a date is meant");
}

TEST_F(day_forms, meet_times_as_their_midnight) {
  EXPECT_EQ(
      OnOneLine(Run("SELECT CAST(Value AS INTEGER) FROM Plant1..Data, Plant1..Days WHERE Id = "
                    "2 AND Timestamp < Day ORDER BY Value")),
      Expanded("15-23"));
  for (const Text& sDay : {"Day", "date(Day)", "(SELECT date(Day))", "strftime('%Y-%m-%d', Day)"}) {
    EXPECT_EQ(OnOneLine(Run("SELECT CAST(Value AS INTEGER) FROM Plant1..Data, Plant1..Days WHERE "
                            "Id = 3 AND Timestamp >= " +
                            sDay + " AND Timestamp < date(Day, '+1 day') ORDER BY Value")),
              Expanded("15-23"))
        << sDay;
  }
  EXPECT_EQ(Refusal("SELECT 1 FROM Plant1..Data, Plant1..Days WHERE Timestamp < Clock"),
            "This is not understood as a time");
}

TEST_F(day_forms, of_parameters_are_what_they_are) {
  const auto run = [&](const Text& sSql, std::vector<platform::Value> vtValues) {
    ado::Statement statement{sSql, 0, std::chrono::seconds(0)};
    statement.parameters = std::move(vtValues);
    return Rows(*m_session->Execute(statement, {}).recordset);
  };
  const platform::Date day = std::chrono::year{2024} / 5 / 15;
  const Text sSelect = "SELECT Id FROM Plant1..Days WHERE Day = ?";
  EXPECT_EQ(run(sSelect, {day}), "2\n");
  EXPECT_EQ(run(sSelect, {"2024-05-15"}), "2\n");
  EXPECT_EQ(run(sSelect, {"*"}), "2\n");
  EXPECT_EQ(run(sSelect + " AND Day = ? COLLATE BINARY", {day, day}), "2\n");
  EXPECT_EQ(
      run("SELECT Id FROM Plant1..Days WHERE Clock = ?", {platform::TimeOfDay(2268000000 * 5)}),
      "3\n");
  run("UPDATE Plant1..Days SET Day = ?, Clock = ? WHERE Id = ? AND Day = ? COLLATE BINARY",
      {day, platform::TimeOfDay(1500000), 5, "2024-05-12"});
  EXPECT_EQ(Run("SELECT Day, Clock FROM Plant1..Days WHERE Id = 5"), "2024-05-15|00:00:01.5\n");
  const Text sFailure = FailureOf([&] { run(sSelect, {7}); });
  EXPECT_NE(sFailure.find("A number stands where a date is meant"), Text::npos) << sFailure;
}

TEST_F(day_forms, of_rows_of_parameters_are_looked_at_while_they_come) {
  const auto store = [&](std::vector<platform::Value> vtValues) {
    ado::Statement statement{"INSERT INTO Plant1..Days (Id, Day, Clock) VALUES (?, ?, ?)", 0,
                             std::chrono::seconds(0)};
    bool bGiven = false;
    statement.batch = [&](std::vector<platform::Value>& row) {
      if (bGiven) return false;
      row = vtValues;
      return bGiven = true;
    };
    m_session->Execute(statement, {});
  };
  store({40, platform::Date(std::chrono::year{2024} / 5 / 1), platform::TimeOfDay(0)});
  store({41, "y", platform::Value()});
  EXPECT_EQ(
      FailureOf([&] {
        store({42, "soon", platform::Value()});
      }),
      "3805: 'soon' is compared with a date or stored as one, and is none: at its character 1 "
      "it must begin with *, t, y or a date such as 2024-05-31.");
  EXPECT_EQ(Run("SELECT Id, Day, Clock FROM Plant1..Days WHERE Id >= 40"),
            "40|2024-05-01|00:00:00\n41|2024-05-14|\n");
}

TEST_F(day_forms, rows_of_parameters_are_compared_as_dates) {
  const auto deletes = [&](const platform::Value& vtDay) {
    ado::Statement statement{"DELETE FROM Plant1..Days WHERE Day < ? AND Id < 40"};
    statement.batch = [vtDay, bGiven = false](std::vector<platform::Value>& row) mutable {
      row = {vtDay};
      return !std::exchange(bGiven, true);
    };
    return m_session->Execute(statement, {}).lRecordsAffected;
  };
  const Text sBefore = Ids("Day < 'y'");
  EXPECT_EQ(FailureOf([&] { deletes("soon"); }).substr(0, 45),
            "3805: 'soon' is compared with a date or store");
  EXPECT_EQ(Ids("Day < 'y'"), sBefore);
  EXPECT_EQ(deletes("y"), std::ranges::count(sBefore, ' '));
  EXPECT_EQ(Ids("Day < 'y'"), "");
}

TEST_F(day_forms, that_another_program_stored_wrongly_are_compared_as_they_are_and_put_right) {
  ASSERT_EQ(Theirs("UPDATE Days SET Day = 'soon' WHERE Id = 3"), SQLITE_OK);
  EXPECT_EQ(Ids("Day > '*'"), "0 1 3 ");
  EXPECT_EQ(Ids("Day IS NOT date(Day)"), "3 ");
  EXPECT_EQ(Run("SELECT Day FROM Plant1..Days WHERE Id = 3"), "soon\n");
  // As a grid does it.
  ado::Statement statement{
      "UPDATE Plant1..Days SET Day = ? WHERE Id = ? AND Day = ? COLLATE BINARY", 0,
      std::chrono::seconds(0)};
  statement.parameters = {platform::Date(std::chrono::year{2024} / 5 / 14), 3, "soon"};
  statement.rowsExpected = 1;
  m_session->Execute(statement, {});
  EXPECT_EQ(Ids("Day > '*'"), "0 1 ");
}

TEST_F(day_forms, that_are_given_are_compared_as_they_are_written) {
  const auto count = [&](const platform::Value& vtValue) {
    ado::Statement statement{"SELECT Id FROM Plant1..Days WHERE Day = ? COLLATE BINARY", 0,
                             std::chrono::seconds(0)};
    statement.parameters = {vtValue};
    return Rows(*m_session->Execute(statement, {}).recordset);
  };
  EXPECT_EQ(count(std::int64_t{5}), "");
  EXPECT_EQ(count(-2.5), "");
  EXPECT_EQ(count(platform::Bytes{std::byte{1}}), "");
  EXPECT_EQ(count("2024-05-15"), "2\n");
  ado::Statement sum{"SELECT Id FROM Plant1..Days WHERE Day = (? + 1) COLLATE BINARY", 0,
                     std::chrono::seconds(0)};
  sum.parameters = {std::int64_t{5}};
  EXPECT_NE(FailureOf([&] { m_session->Execute(sum, {}); }).find("A number stands where a date"),
            Text::npos);
  ado::Statement less{"DELETE FROM Plant1..Days WHERE Day > ? COLLATE BINARY", 0,
                      std::chrono::seconds(0)};
  less.parameters = {std::int64_t{5}};
  EXPECT_NE(FailureOf([&] { m_session->Execute(less, {}); }).find("A number stands where a date"),
            Text::npos);
  EXPECT_EQ(Refusal("SELECT Id FROM Plant1..Days WHERE Day = 5 COLLATE BINARY"),
            "A number stands where a date is meant");
}

TEST_F(day_forms, stand_in_definitions_as_they_are_written) {
  Run("CREATE VIEW Plant1..Recent AS SELECT Id, Day FROM Plant1..Days WHERE Day >= '2024-05-14' "
      "AND Clock < '05:00'");
  Run("CREATE INDEX Plant1..DayIndex ON Days (Day) WHERE Day > '2024-01-01'");
  Run("CREATE VIEW Plant1..Moving AS SELECT Id FROM Plant1..Days WHERE Day >= date('now', '-7 "
      "days')");
  EXPECT_EQ(OnOneLine(Run("SELECT Id FROM Plant1..Recent WHERE Day < '*'")), "3 ");
  EXPECT_EQ(Refusal("CREATE VIEW Plant1..v AS SELECT * FROM Plant1..Days WHERE Day > 'y'"),
            "A day that is told by the clock stands in a view");
  EXPECT_EQ(Refusal("CREATE VIEW Plant1..v AS SELECT * FROM Plant1..Days WHERE Day > Word"),
            "What may be no date meets one in a view");
  Run("CREATE TABLE Plant1..Made (Id INTEGER PRIMARY KEY, Day DATE DEFAULT CURRENT_DATE CHECK (Day "
      "> '2000-01-01'), Clock TIME DEFAULT '08:30', Text DATE DEFAULT '2024-05-31', Month TEXT AS "
      "(strftime('%m', Text)), Next DATE AS (date(Text, '+1 day')))");
  Run("INSERT INTO Plant1..Made (Id) VALUES (1)");
  Run("CREATE VIEW Plant1..Cast1 AS SELECT CAST('2024-05-14' AS DATE) AS d, CAST(Day AS DATE) AS e "
      "FROM Plant1..Days WHERE Id = 1");
  EXPECT_EQ(Run("SELECT d, e FROM Plant1..Cast1"), "2024-05-14|2024-05-16\n");
  EXPECT_EQ(Refusal("CREATE VIEW Plant1..v AS SELECT CAST(Word AS DATE) AS d FROM Plant1..Days"),
            "What may be no date meets one in a view");
  EXPECT_EQ(Run("SELECT Clock, Text, Month, Next FROM Plant1..Made WHERE Next > '2024-05-31'"),
            "08:30:00|2024-05-31|05|2024-06-01\n");
  for (const Text& sDefault : {"5", "'soon'", "'*'", "CURRENT_TIMESTAMP", "CURRENT_TIME"}) {
    EXPECT_NE(Failing("CREATE TABLE Plant1..m (d DATE DEFAULT " + sDefault + ")"), "no failure")
        << sDefault;
  }
  EXPECT_EQ(Refusal("CREATE TABLE Plant1..m (t TEXT, d DATE AS (t))"),
            "What may be no date meets one in the definition of a table");
}

}  // namespace
}  // namespace orvane::provider::dialect
