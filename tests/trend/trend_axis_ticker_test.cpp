#include "trend/trend_axis_ticker.h"

#include <gtest/gtest.h>

#include "trend/trend_data.h"

namespace orvane::trend {
namespace {

using std::chrono::hours;
using std::chrono::microseconds;

/// The marks' texts, the lines of one joined by a blank.
QStringList Marks(platform::Timestamp from, microseconds span,
                  const char* sZone = "Europe/Madrid") {
  TrendAxisTicker ticker{zones::TimeZone(sZone)};
  QVector<double> ticks;
  QVector<QString> labels;
  ticker.generate({TrendTime(from), TrendTime(from + span)}, QLocale::c(), 'g', 6, ticks, nullptr,
                  &labels);
  EXPECT_EQ(ticks.size(), labels.size());
  EXPECT_TRUE(std::ranges::is_sorted(ticks));
  QStringList texts;
  for (qsizetype n = 0; n < ticks.size(); ++n) {
    EXPECT_GE(ticks[n], TrendTime(from));
    EXPECT_LE(ticks[n], TrendTime(from + span));
    texts << QString(labels[n]).replace(u'\n', u' ');
  }
  return texts;
}

platform::Timestamp Day(int nYear, unsigned nMonth, unsigned nDay) {
  return date::sys_days(date::year{nYear} / date::month{nMonth} / date::day{nDay});
}

TEST(TrendAxisTickerTest, marks_round_times_of_the_zone_s_clocks) {
  EXPECT_EQ(
      Marks(Day(2024, 5, 15) + hours(10), hours(1)),
      (QStringList{"12:00 2024-05-15", "12:10 2024-05-15", "12:20 2024-05-15", "12:30 2024-05-15",
                   "12:40 2024-05-15", "12:50 2024-05-15", "13:00 2024-05-15"}));
  EXPECT_EQ(Marks(Day(2024, 5, 15) + microseconds(1'000), microseconds(2'000)).size(), 5);
}

TEST(TrendAxisTickerTest, marks_days_and_months_of_the_calendar) {
  EXPECT_EQ(Marks(Day(2024, 3, 29), hours(24 * 4)),
            (QStringList{"2024-03-30", "2024-03-31", "2024-04-01", "2024-04-02"}));
  EXPECT_EQ(Marks(Day(2023, 12, 15), hours(24 * 150)),
            (QStringList{"2024-01", "2024-02", "2024-03", "2024-04", "2024-05"}));
}

TEST(TrendAxisTickerTest, has_few_marks_however_long_or_short_the_times_are) {
  for (double span = 1'000; span < 3e17; span *= 3) {
    const auto marks =
        Marks(Day(2024, 5, 15), microseconds(static_cast<std::int64_t>(span)), "UTC");
    EXPECT_LE(marks.size(), 20) << span;
  }
}

}  // namespace
}  // namespace orvane::trend
