#include "zones/time_zone.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/failure.h"

namespace orvane::zones {
namespace {

using platform::Timestamp;
using namespace std::chrono;

TEST(time_zone, is_known_as_local_utc_or_by_its_name) {
  EXPECT_EQ(TimeZone().Name(), "Local");
  EXPECT_EQ(TimeZone("").Name(), "Local");
  EXPECT_EQ(TimeZone("local").Name(), "Local");
  EXPECT_EQ(TimeZone("utc").Name(), "UTC");
  EXPECT_EQ(TimeZone("America/New_York").Name(), "America/New_York");
}

TEST(time_zone, refuses_an_unknown_name_with_a_sentence) {
  for (const char* const sName : {"Mars/Olympus", "europe/madrid ", "../etc/passwd", "UTC\n"}) {
    try {
      const TimeZone zone{std::string_view(sName)};
      FAIL() << sName;
    } catch (const platform::Failure& failure) {
      EXPECT_EQ(failure.Number(), platform::failure::kInvalidArgument);
      EXPECT_EQ(failure.Description(), "There is no time zone \"" + platform::Text(sName) +
                                           "\"; enter Local, UTC or a name such as Europe/Madrid.");
    }
  }
}

TEST(time_zone, follows_the_variable_of_the_environment_where_it_is_set) {
  const char* const sBefore = std::getenv("TZ");
  const platform::Text sKept = sBefore != nullptr ? sBefore : "";
  setenv("TZ", ":Asia/Kolkata", 1);
  const TimeZone zone("Local");
  if (sBefore != nullptr) {
    setenv("TZ", sKept.c_str(), 1);
  } else {
    unsetenv("TZ");
  }
  EXPECT_EQ(zone.ToTimestamp(LocalTime(date::local_days(date::year{2024} / 1 / 2))),
            Timestamp(sys_days(year{2024} / 1 / 1) + hours(18) + minutes(30)));
}

TEST(time_zone, is_utc_without_a_database) {
  const TimeZone utc = TimeZone::Utc();
  EXPECT_EQ(utc.Name(), "UTC");
  EXPECT_EQ(utc.NameInUse(), "Etc/UTC");
  const Timestamp time = sys_days(year{2024} / 7 / 1) + hours(6) + microseconds(1);
  EXPECT_EQ(utc.ToLocal(time).time_since_epoch(), time.time_since_epoch());
  EXPECT_EQ(utc.ToTimestamp(utc.ToLocal(time)), time);
}

TEST(time_zone, keeps_daylight_saving_time_when_the_list_of_changes_has_ended) {
  const TimeZone madrid("Europe/Madrid");
  EXPECT_EQ(madrid.OffsetAt(sys_days(year{2038} / 1 / 15)), hours(1));
  EXPECT_EQ(madrid.OffsetAt(sys_days(year{2038} / 7 / 15)), hours(2));
  EXPECT_EQ(madrid.OffsetAt(sys_days(year{9999} / 7 / 15)), hours(2));
  EXPECT_EQ(TimeZone("Asia/Kolkata").OffsetAt(sys_days(year{2500} / 7 / 15)), minutes(330));
}

TEST(time_zone, gets_every_hour_of_a_far_year_back_from_its_clocks) {
  for (const char* const sName : {"Europe/Dublin", "America/Santiago", "Antarctica/Troll"}) {
    const TimeZone zone{std::string_view(sName)};
    Timestamp twice{};
    for (Timestamp time = sys_days(year{2400} / 1 / 1); time < sys_days(year{2401} / 1 / 1);
         time += hours(1)) {
      const auto read = zone.ToTimestamp(zone.ToLocal(time));
      // What comes twice is read as the first of the two.
      if (read != time) twice = time;
      EXPECT_TRUE(read == time || zone.ToLocal(read) == zone.ToLocal(time)) << sName;
      EXPECT_LE(read, time) << sName;
    }
    EXPECT_NE(twice, Timestamp{}) << sName;
  }
}

TEST(time_zone, knows_an_offset_for_every_time_there_is) {
  for (const char* const sName : {"UTC", "Europe/Madrid", "Asia/Kolkata", "Africa/Casablanca"}) {
    const TimeZone zone{std::string_view(sName)};
    for (const auto time : {Timestamp::min(), Timestamp::max(), Timestamp{}}) {
      EXPECT_LE(std::abs(zone.OffsetAt(time).count()), 15 * 3600) << sName;
    }
  }
}

TEST(time_zone, counts_days_from_the_end_of_1899_on_its_own_calendar) {
  EXPECT_EQ(TimeZone("UTC").ToDays(Timestamp(sys_days(year{1899} / 12 / 30))), 0.0);
  EXPECT_EQ(TimeZone("UTC").ToDays(Timestamp(sys_days(year{1970} / 1 / 1))), 25569.0);
  EXPECT_EQ(TimeZone("UTC").ToDays(Timestamp(sys_days(year{2024} / 1 / 1) + hours(6))), 45292.25);
  EXPECT_EQ(TimeZone("Asia/Tokyo").ToDays(Timestamp(sys_days(year{2024} / 1 / 1))), 45292.375);
  EXPECT_EQ(TimeZone("UTC").ToDays(Timestamp(sys_days(year{1899} / 12 / 29) + hours(12))), -0.5);
}

TEST(time_zone, gets_every_microsecond_back_from_its_number_of_days) {
  const TimeZone zone("Europe/Berlin");
  const Timestamp start = sys_days(year{2024} / 5 / 31) + hours(17);
  for (int i = 0; i < 100000; ++i) {
    const Timestamp time = start + microseconds(i * 7919);
    ASSERT_EQ(zone.FromDays(zone.ToDays(time)), time);
  }
}

TEST(time_zone, refuses_numbers_of_days_that_are_no_times) {
  const TimeZone zone("UTC");
  EXPECT_EQ(zone.FromDays(3.0e6), std::nullopt);
  EXPECT_EQ(zone.FromDays(-1.0e6), std::nullopt);
  EXPECT_EQ(zone.FromDays(1.0e300), std::nullopt);
  EXPECT_EQ(zone.FromDays(std::numeric_limits<double>::infinity()), std::nullopt);
  EXPECT_EQ(zone.FromDays(std::numeric_limits<double>::quiet_NaN()), std::nullopt);
}

}  // namespace
}  // namespace orvane::zones
