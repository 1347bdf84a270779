#include "zones/time_expression.h"

#include <gtest/gtest.h>

#include "platform/conversions.h"

namespace orvane::zones {
namespace {

using platform::Text;
using platform::Timestamp;
using namespace std::chrono;

Timestamp Utc(int nYear, unsigned nMonth, unsigned nDay, int nHour = 0, int nMinute = 0,
              int nSecond = 0) {
  return date::sys_days(date::year{nYear} / date::month{nMonth} / date::day{nDay}) + hours(nHour) +
         minutes(nMinute) + seconds(nSecond);
}

// Wednesday noon and some, in UTC.
const Timestamp kNow = Utc(2024, 5, 15, 12, 34, 56);

Text ReadTime(std::string_view sText, std::string_view sZone = "UTC", Timestamp now = kNow) {
  const auto result = ReadTimeExpression(sText, TimeZone(sZone), now);
  if (const auto* const error = std::get_if<TimeExpressionError>(&result)) {
    return "error at " + std::to_string(error->position) + ": " + error->sReason;
  }
  return platform::ToText(std::get<Timestamp>(result));
}

struct Row {
  const char* sExpression;
  const char* sTime;
};

TEST(time_expression, reads_every_form_of_a_time) {
  const Row rows[] = {
      {"*", "2024-05-15 12:34:56"},
      {" * ", "2024-05-15 12:34:56"},
      {"t", "2024-05-15 00:00:00"},
      {"T", "2024-05-15 00:00:00"},
      {"y", "2024-05-14 00:00:00"},
      {"Y", "2024-05-14 00:00:00"},
      {"2024-02-29", "2024-02-29 00:00:00"},
      {"2024-02-29T17:45", "2024-02-29 17:45:00"},
      {"2024-02-29 17:45", "2024-02-29 17:45:00"},
      {"2024-02-29t17:45:01", "2024-02-29 17:45:01"},
      {"2024-02-29 17:45:01.25", "2024-02-29 17:45:01.25"},
      {"2024-02-29 17:45:01,25", "2024-02-29 17:45:01.25"},
      {"2024-02-29 17:45:01.1234567", "2024-02-29 17:45:01.123456"},
      {"2024-02-29T24:00", "2024-03-01 00:00:00"},
      {"2024-02-29T17:45Z", "2024-02-29 17:45:00"},
      {"2024-02-29T17:45z", "2024-02-29 17:45:00"},
      {"2024-02-29T17:45+02:00", "2024-02-29 15:45:00"},
      {"2024-02-29T17:45-0230", "2024-02-29 20:15:00"},
      {"2024-02-29T17:45+02", "2024-02-29 15:45:00"},
      {"2024-02-29T17:45+02:00-1h", "2024-02-29 14:45:00"},
      {"0001-01-01", "0001-01-01 00:00:00"},
      {"9999-12-31T23:59:59.999999", "9999-12-31 23:59:59.999999"},
  };
  for (const auto& row : rows) EXPECT_EQ(ReadTime(row.sExpression), row.sTime) << row.sExpression;
}

TEST(time_expression, adds_steps_of_every_unit_from_left_to_right) {
  const Row rows[] = {
      {"*-1h", "2024-05-15 11:34:56"},
      {"*-90s", "2024-05-15 12:33:26"},
      {"*+5m", "2024-05-15 12:39:56"},
      {"*-1d", "2024-05-14 12:34:56"},
      {"*-2w", "2024-05-01 12:34:56"},
      {"*-1mo", "2024-04-15 12:34:56"},
      {"*+1y", "2025-05-15 12:34:56"},
      {"*-1H", "2024-05-15 11:34:56"},
      {"*-1MO", "2024-04-15 12:34:56"},
      {"t+8h-30m", "2024-05-15 07:30:00"},
      {"t + 8 h - 30 m", "2024-05-15 07:30:00"},
      {"y-1y", "2023-05-14 00:00:00"},
      {"*-0.5h", "2024-05-15 12:04:56"},
      {"*+1.5s", "2024-05-15 12:34:57.5"},
      {"2024-02-29 17:45-05h", "2024-02-29 12:45:00"},
      {"2024-02-29 17:45-05 h", "2024-02-29 12:45:00"},
      {"2024-02-29-1d", "2024-02-28 00:00:00"},
      {"*-0mo", "2024-05-15 12:34:56"},
  };
  for (const auto& row : rows) EXPECT_EQ(ReadTime(row.sExpression), row.sTime) << row.sExpression;
}

TEST(time_expression, takes_the_last_day_of_a_month_that_is_too_short) {
  const Row rows[] = {
      {"2024-01-31+1mo", "2024-02-29 00:00:00"},     {"2023-01-31+1mo", "2023-02-28 00:00:00"},
      {"2024-01-31+1mo+1mo", "2024-03-29 00:00:00"}, {"2024-01-31+2mo", "2024-03-31 00:00:00"},
      {"2024-03-31-1mo", "2024-02-29 00:00:00"},     {"2024-02-29+1y", "2025-02-28 00:00:00"},
      {"2024-02-29-4y", "2020-02-29 00:00:00"},      {"2000-02-29+100y", "2100-02-28 00:00:00"},
      {"2024-12-31+2mo", "2025-02-28 00:00:00"},     {"2024-01-15-1mo", "2023-12-15 00:00:00"},
      {"2024-01-15-13mo", "2022-12-15 00:00:00"},
  };
  for (const auto& row : rows) EXPECT_EQ(ReadTime(row.sExpression), row.sTime) << row.sExpression;
}

TEST(time_expression, reads_dates_in_the_zone_of_the_connection) {
  EXPECT_EQ(ReadTime("t", "Europe/Madrid"), "2024-05-14 22:00:00");
  EXPECT_EQ(ReadTime("y", "Europe/Madrid"), "2024-05-13 22:00:00");
  EXPECT_EQ(ReadTime("2024-01-01", "Asia/Kolkata"), "2023-12-31 18:30:00");
  EXPECT_EQ(ReadTime("2024-01-01T00:00Z", "Asia/Kolkata"), "2024-01-01 00:00:00");
  // It is tomorrow already.
  EXPECT_EQ(ReadTime("t", "Asia/Tokyo", Utc(2024, 5, 15, 20)), "2024-05-15 15:00:00");
}

TEST(time_expression, counts_days_on_the_calendar_and_hours_on_the_clock_when_clocks_change) {
  // 2024-03-31: from 02:00 to 03:00. 2024-10-27: from 03:00 back to 02:00.
  const Timestamp spring = Utc(2024, 3, 31, 10);
  EXPECT_EQ(ReadTime("t", "Europe/Berlin", spring), "2024-03-30 23:00:00");
  EXPECT_EQ(ReadTime("t+1d", "Europe/Berlin", spring), "2024-03-31 22:00:00");
  EXPECT_EQ(ReadTime("t+24h", "Europe/Berlin", spring), "2024-03-31 23:00:00");
  EXPECT_EQ(ReadTime("*-1d", "Europe/Berlin", spring), "2024-03-30 11:00:00");
  const Timestamp autumn = Utc(2024, 10, 27, 10);
  EXPECT_EQ(ReadTime("t", "Europe/Berlin", autumn), "2024-10-26 22:00:00");
  EXPECT_EQ(ReadTime("t+1d", "Europe/Berlin", autumn), "2024-10-27 23:00:00");
  EXPECT_EQ(ReadTime("t+1w", "Europe/Berlin", autumn), "2024-11-02 23:00:00");
  EXPECT_EQ(ReadTime("*-1mo", "Europe/Berlin", autumn), "2024-09-27 09:00:00");
}

TEST(time_expression, reads_a_skipped_time_as_before_the_change_and_a_double_time_as_the_first) {
  EXPECT_EQ(ReadTime("2024-03-31T02:30", "Europe/Berlin"), "2024-03-31 01:30:00");
  EXPECT_EQ(ReadTime("2024-10-27T02:30", "Europe/Berlin"), "2024-10-27 00:30:00");
  // The second of the two stays what it is when nothing is added.
  EXPECT_EQ(ReadTime("*+0d", "Europe/Berlin", Utc(2024, 10, 27, 1, 30)), "2024-10-27 01:30:00");
  // A day that begins at one o'clock.
  EXPECT_EQ(ReadTime("2024-04-26", "Africa/Cairo"), "2024-04-25 22:00:00");
}

TEST(time_expression, says_where_and_why_a_text_has_no_meaning) {
  const Row rows[] = {
      {"", "error at 0: it must begin with *, t, y or a date such as 2024-05-31"},
      {"now", "error at 0: it must begin with *, t, y or a date such as 2024-05-31"},
      {"-1h", "error at 0: it must begin with *, t, y or a date such as 2024-05-31"},
      {"tomorrow", "error at 1: + or - must follow"},
      {"*1h", "error at 1: + or - must follow"},
      {"* 1h", "error at 2: + or - must follow"},
      {"*-", "error at 2: a number must follow the sign"},
      {"*-h", "error at 2: a number must follow the sign"},
      {"*--1h", "error at 2: a number must follow the sign"},
      {"*-1", "error at 3: the unit must be s, m, h, d, w, mo or y"},
      {"*-1x", "error at 3: the unit must be s, m, h, d, w, mo or y"},
      {"*-1hours", "error at 3: the unit must be s, m, h, d, w, mo or y"},
      {"*-1.h", "error at 4: a digit must follow the point"},
      {"*-1.5d", "error at 3: only s, m and h take a fraction"},
      {"*-1.5mo", "error at 3: only s, m and h take a fraction"},
      {"24-05-31", "error at 0: a date is written as in 2024-05-31"},
      {"20240531", "error at 0: a date is written as in 2024-05-31"},
      {"2024-5-31", "error at 0: a date is written as in 2024-05-31"},
      {"2024-05-311", "error at 0: a date is written as in 2024-05-31"},
      {"2024-02-30", "error at 0: there is no such date"},
      {"2023-02-29", "error at 0: there is no such date"},
      {"2024-13-01", "error at 0: there is no such date"},
      {"0000-01-01", "error at 0: there is no such date"},
      {"2024-05-31T", "error at 11: a time is written as in 17:45 or 17:45:30.25"},
      {"2024-05-31T17", "error at 11: a time is written as in 17:45 or 17:45:30.25"},
      {"2024-05-31T1:45", "error at 11: a time is written as in 17:45 or 17:45:30.25"},
      {"2024-05-31T17:45:", "error at 11: a time is written as in 17:45 or 17:45:30.25"},
      {"2024-05-31T17:60", "error at 11: there is no such time of day"},
      {"2024-05-31T24:01", "error at 11: there is no such time of day"},
      {"2024-05-31T17:45:60", "error at 11: there is no such time of day"},
      {"2024-05-31T17:45+19:00", "error at 16: an offset is at most 18 hours"},
      {"2024-05-31T17:45+01:", "error at 16: an offset is written as in +01:00"},
      {"2024-05-31 x", "error at 11: + or - must follow"},
      {"9999-12-31+1d", "error at 10: the time is outside the years 1 to 9999"},
      {"*-2025y", "error at 1: the time is outside the years 1 to 9999"},
      {"*+999999999mo", "error at 1: the time is outside the years 1 to 9999"},
      {"*+999999999w", "error at 1: the time is outside the years 1 to 9999"},
      {"*+1000000000001s", "error at 1: the number is too large"},
      {"*+1000000000000h", "error at 1: the number is too large"},
      {"*+99999999999999999999999999s", "error at 1: the number is too large"},
  };
  for (const auto& row : rows) EXPECT_EQ(ReadTime(row.sExpression), row.sTime) << row.sExpression;
}

TEST(time_expression, survives_every_text_of_three_of_its_characters) {
  const Text sCharacters = "*tyTY0129-+:.,smhdwo zZ\xC3";
  const TimeZone zone("Europe/Berlin");
  int nTimes = 0;
  for (const char a : sCharacters) {
    for (const char b : sCharacters) {
      for (const char c : sCharacters) {
        for (const char* const sHead : {"", "2024-05-31T17:45", "*-9"}) {
          const Text sText = Text(sHead) + a + b + c;
          const auto result = ReadTimeExpression(sText, zone, kNow);
          if (const auto* const error = std::get_if<TimeExpressionError>(&result)) {
            EXPECT_LE(error->position, sText.size()) << sText;
            EXPECT_FALSE(error->sReason.empty()) << sText;
          } else {
            EXPECT_TRUE(IsInRange(std::get<Timestamp>(result))) << sText;
            ++nTimes;
          }
        }
      }
    }
  }
  EXPECT_GT(nTimes, 100);
}

}  // namespace
}  // namespace orvane::zones
