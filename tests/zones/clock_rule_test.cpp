#include "zones/clock_rule.h"

#include <gtest/gtest.h>

#include <string>

namespace orvane::zones {
namespace {

using namespace std::chrono_literals;
using date::local_days;
using date::sys_days;
using date::year;
using std::chrono::seconds;

seconds At(const char* sRule, date::sys_seconds time) {
  const auto rule = ClockRule::Read(sRule);
  EXPECT_TRUE(rule) << sRule;
  return rule ? rule->OffsetAt(time) : seconds(-1);
}
seconds AtLocal(const char* sRule, date::local_seconds local) {
  const auto rule = ClockRule::Read(sRule);
  EXPECT_TRUE(rule) << sRule;
  return rule ? rule->OffsetAt(local) : seconds(-1);
}

constexpr const char* kMadrid = "CET-1CEST,M3.5.0,M10.5.0/3";

TEST(clock_rule, without_changes_is_one_offset) {
  EXPECT_EQ(At("IST-5:30", sys_days(year{2100} / 7 / 1)), 5h + 30min);
  EXPECT_EQ(At("<-03>3", sys_days(year{2100} / 7 / 1)), -3h);
  EXPECT_EQ(At("<+1245>-12:45:30", sys_days(year{2100} / 7 / 1)), 12h + 45min + 30s);
  EXPECT_EQ(AtLocal("UTC0", local_days(year{2100} / 7 / 1)), 0s);
}

TEST(clock_rule, changes_at_the_second) {
  const auto start = sys_days(year{2100} / 3 / 28) + 1h;
  const auto end = sys_days(year{2100} / 10 / 31) + 1h;
  EXPECT_EQ(At(kMadrid, start - 1s), 1h);
  EXPECT_EQ(At(kMadrid, start), 2h);
  EXPECT_EQ(At(kMadrid, end - 1s), 2h);
  EXPECT_EQ(At(kMadrid, end), 1h);
}

TEST(clock_rule, takes_the_offset_before_for_what_is_skipped_or_comes_twice) {
  const auto skipped = local_days(year{2100} / 3 / 28) + 2h;
  EXPECT_EQ(AtLocal(kMadrid, skipped - 1s), 1h);
  EXPECT_EQ(AtLocal(kMadrid, skipped), 1h);
  EXPECT_EQ(AtLocal(kMadrid, skipped + 59min), 1h);
  EXPECT_EQ(AtLocal(kMadrid, skipped + 1h), 2h);
  const auto twice = local_days(year{2100} / 10 / 31) + 2h;
  EXPECT_EQ(AtLocal(kMadrid, twice), 2h);
  EXPECT_EQ(AtLocal(kMadrid, twice + 1h - 1s), 2h);
  EXPECT_EQ(AtLocal(kMadrid, twice + 1h), 1h);
}

TEST(clock_rule, goes_around_the_turn_of_the_year_in_the_south) {
  constexpr const char* kSantiago = "<-04>4<-03>,M9.1.6/24,M4.1.6/24";
  EXPECT_EQ(At(kSantiago, sys_days(year{2100} / 12 / 31) + 23h), -3h);
  EXPECT_EQ(At(kSantiago, sys_days(year{2101} / 1 / 1)), -3h);
  EXPECT_EQ(At(kSantiago, sys_days(year{2101} / 7 / 1)), -4h);
}

TEST(clock_rule, knows_a_daylight_saving_time_that_is_behind_and_times_before_midnight) {
  EXPECT_EQ(At("IST-1GMT0,M10.5.0,M3.5.0/1", sys_days(year{2100} / 1 / 1)), 0s);
  EXPECT_EQ(At("IST-1GMT0,M10.5.0,M3.5.0/1", sys_days(year{2100} / 7 / 1)), 1h);
  constexpr const char* kNuuk = "<-02>2<-01>,M3.5.0/-1,M10.5.0/0";
  const auto start = sys_days(year{2100} / 3 / 28) + 1h;  // 23:00 of the day before, there
  EXPECT_EQ(At(kNuuk, start - 1s), -2h);
  EXPECT_EQ(At(kNuuk, start), -1h);
}

TEST(clock_rule, counts_days_of_the_year_with_and_without_leap_days) {
  const auto march1 = sys_days(year{2104} / 3 / 1);
  EXPECT_EQ(At("AAA0BBB,J60/0,J300/0", march1 - 1s), 0s);
  EXPECT_EQ(At("AAA0BBB,J60/0,J300/0", march1), 1h);
  EXPECT_EQ(At("AAA0BBB,59/0,299/0", march1 - 24h), 1h);
  EXPECT_EQ(At("AAA0BBB,59/0,299/0", march1 - 24h - 1s), 0s);
}

TEST(clock_rule, lasts_the_whole_year_where_its_end_is_its_start) {
  for (int nDay = 0; nDay < 366; nDay += 5) {
    const auto day = date::days(nDay);
    EXPECT_EQ(At("EST5EDT,0/0,J365/25", sys_days(year{2103} / 1 / 1) + day), -4h) << nDay;
  }
}

TEST(clock_rule, is_the_same_in_every_cycle_of_the_calendar) {
  for (const int nYears : {-400 * 300, -400, 400, 8000, 400 * 700}) {
    const auto apart = date::days(146'097) * (nYears / 400);
    for (const int nMonth : {1, 7}) {
      const auto time = sys_days(year{2100} / nMonth / 1);
      EXPECT_EQ(At(kMadrid, time), At(kMadrid, time + apart)) << nYears;
    }
  }
}

TEST(clock_rule, refuses_what_is_no_rule) {
  for (const char* const sRule : {"",
                                  "CET",
                                  "-1",
                                  "CET-1CEST",
                                  "CET-1CEST,",
                                  "CET-1CEST,M3.5.0",
                                  "CET-1CEST,M3.5.0,",
                                  "CET-1CEST,M3.5.0,M10.5.0/3x",
                                  "CET-1CEST,M13.5.0,M10.5.0",
                                  "CET-1CEST,M0.5.0,M10.5.0",
                                  "CET-1CEST,M3.6.0,M10.5.0",
                                  "CET-1CEST,M3.0.0,M10.5.0",
                                  "CET-1CEST,M3.5.7,M10.5.0",
                                  "CET-1CEST,J0,J5",
                                  "CET-1CEST,J366,J5",
                                  "CET-1CEST,366,5",
                                  "CET-1CEST,-1,5",
                                  "<+01-1",
                                  "<>-1",
                                  "CET-200",
                                  "CET--1",
                                  "CET-1:60",
                                  "CET-99999999999999999999",
                                  "CET-1 ",
                                  "CET-1CEST,M3.5.0,M10.5.0,",
                                  "\n",
                                  ":Europe/Madrid"}) {
    EXPECT_FALSE(ClockRule::Read(sRule)) << sRule;
  }
}

}  // namespace
}  // namespace orvane::zones
