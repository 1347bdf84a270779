#include "trend/trend_axis_ticker.h"

#include <array>
#include <cstdint>

#include "trend/trend_data.h"

namespace orvane::trend {

namespace {

using std::chrono::microseconds;
using zones::LocalTime;

constexpr std::int64_t kSecond = 1'000'000;
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;

/// Distances of marks shorter than a month, in microseconds.
constexpr std::array<std::int64_t, 40> kSteps = {
    1,        2,           5,           10,           20,           50,
    100,      200,         500,         1'000,        2'000,        5'000,
    10'000,   20'000,      50'000,      100'000,      200'000,      500'000,
    kSecond,  2 * kSecond, 5 * kSecond, 10 * kSecond, 15 * kSecond, 30 * kSecond,
    kMinute,  2 * kMinute, 5 * kMinute, 10 * kMinute, 15 * kMinute, 30 * kMinute,
    kHour,    2 * kHour,   3 * kHour,   6 * kHour,    12 * kHour,   kDay,
    2 * kDay, 4 * kDay,    7 * kDay,    14 * kDay};
constexpr std::array<int, 11> kMonths = {1, 3, 6, 12, 24, 60, 120, 600, 1200, 6000, 24000};
constexpr std::int64_t kMonth = 30 * kDay;

QString Label(LocalTime time, std::int64_t step) {
  const auto day = date::floor<date::days>(time);
  if (step >= kMonth) return QString::fromStdString(date::format("%Y-%m", day));
  const QString sDay = QString::fromStdString(date::format("%F", day));
  if (step >= kDay) return sDay;
  if (step >= kMinute) {
    return QString::fromStdString(date::format("%H:%M", date::floor<std::chrono::minutes>(time))) +
           u'\n' + sDay;
  }
  if (step >= kSecond) {
    return QString::fromStdString(date::format("%T", date::floor<std::chrono::seconds>(time))) +
           u'\n' + sDay;
  }
  QString sTime = QString::fromStdString(date::format("%T", time));
  while (sTime.endsWith(u'0')) sTime.chop(1);
  if (sTime.endsWith(u'.')) sTime.chop(1);
  return sTime + u'\n' + sDay;
}

LocalTime MonthAt(int nMonth) {
  return date::local_days(date::year{nMonth / 12} /
                          date::month{static_cast<unsigned>(nMonth % 12) + 1} / 1);
}

int MonthOf(LocalTime time) {
  const date::year_month_day ymd(date::floor<date::days>(time));
  return int{ymd.year()} * 12 + static_cast<int>(unsigned{ymd.month()}) - 1;
}

}  // namespace

void TrendAxisTicker::generate(const QCPRange& range, const QLocale& /*locale*/,
                               QChar /*formatChar*/, int /*precision*/, QVector<double>& ticks,
                               QVector<double>* subTicks, QVector<QString>* tickLabels) {
  ticks.clear();
  if (subTicks) subTicks->clear();
  if (tickLabels) tickLabels->clear();
  const double least = range.size() / m_nMarks;
  const LocalTime from = m_zone.ToLocal(TimestampOf(range.lower));
  const LocalTime to = m_zone.ToLocal(TimestampOf(range.upper));
  const auto add = [&](LocalTime time, std::int64_t step) {
    const double tick = TrendTime(m_zone.ToTimestamp(time));
    if (!range.contains(tick)) return;
    ticks.append(tick);
    if (tickLabels) tickLabels->append(Label(time, step));
  };
  for (const std::int64_t step : kSteps) {
    if (static_cast<double>(step) < least) continue;
    const std::int64_t begin = from.time_since_epoch().count();
    std::int64_t mark = begin - ((begin % step) + step) % step;
    for (; mark <= to.time_since_epoch().count(); mark += step)
      add(LocalTime(microseconds(mark)), step);
    return;
  }
  for (const int nMonths : kMonths) {
    if (static_cast<double>(nMonths) * static_cast<double>(kMonth) < least &&
        nMonths != kMonths.back()) {
      continue;
    }
    for (int n = MonthOf(from) / nMonths * nMonths; n <= MonthOf(to); n += nMonths) {
      add(MonthAt(n), nMonths * kMonth);
    }
    return;
  }
}

}  // namespace orvane::trend
