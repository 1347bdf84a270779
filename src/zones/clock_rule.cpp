#include "zones/clock_rule.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace orvane::zones {

using namespace std::chrono_literals;
using std::chrono::seconds;

namespace {

// The calendar repeats after so many days, the weekdays included.
constexpr date::days kCycle{146'097};

/// The same day and time of the calendar in the years 2000 to 2399, so that no time of the machine
/// is outside the years that can be counted.
template <class Clock>
std::chrono::time_point<Clock, seconds> WithinCycle(std::chrono::time_point<Clock, seconds> time) {
  constexpr auto kFirst = date::sys_days(date::year{2000} / 1 / 1).time_since_epoch();
  const seconds sinceFirst = time.time_since_epoch() - kFirst;
  const seconds cycle = kCycle;
  const seconds rest = sinceFirst % cycle;
  return std::chrono::time_point<Clock, seconds>(kFirst + rest + (rest < 0s ? cycle : seconds(0)));
}

}  // namespace

/// Reads the rule from left to right; what is asked for and not there makes the whole unreadable.
class ClockRule::Reader {
 public:
  explicit Reader(std::string_view sText) : m_sText(sText) {}

  bool Failed() const { return m_bFailed; }
  bool AtEnd() const { return m_sText.empty(); }

  bool Take(char c) {
    if (m_sText.empty() || m_sText.front() != c) return false;
    m_sText.remove_prefix(1);
    return true;
  }
  void Need(char c) {
    if (!Take(c)) m_bFailed = true;
  }
  bool NextIs(char c) const { return !m_sText.empty() && m_sText.front() == c; }

  int Number(int nMost) {
    int nNumber = 0;
    const auto [end, error] =
        std::from_chars(m_sText.data(), m_sText.data() + m_sText.size(), nNumber);
    const bool bDigits = !m_sText.empty() && m_sText.front() != '-';
    if (!bDigits || error != std::errc() || nNumber > nMost) {
      m_bFailed = true;
      return 0;
    }
    m_sText.remove_prefix(static_cast<std::size_t>(end - m_sText.data()));
    return nNumber;
  }

  /// The name of a time, which is of no use here: letters, or anything between angles.
  void SkipName() {
    const auto nEnd = Take('<') ? m_sText.find('>')
                                : std::min(m_sText.find_first_of("+-0123456789,"), m_sText.size());
    if (nEnd == 0 || nEnd == std::string_view::npos) {
      m_bFailed = true;
      return;
    }
    const bool bAngles = nEnd < m_sText.size() && m_sText[nEnd] == '>';
    m_sText.remove_prefix(nEnd + (bAngles ? 1 : 0));
  }

  /// Up to a week of hours, as files of the database have it, though older rules end at 24.
  seconds Time() {
    const bool bNegative = Take('-');
    if (!bNegative) Take('+');
    seconds time = std::chrono::hours(Number(167));
    if (Take(':')) time += std::chrono::minutes(Number(59));
    if (Take(':')) time += seconds(Number(59));
    return bNegative ? -time : time;
  }

  YearlyChange Change() {
    YearlyChange change;
    if (Take('M')) {
      change.nMonth = static_cast<unsigned>(Number(12));
      Need('.');
      change.nWeek = static_cast<unsigned>(Number(5));
      Need('.');
      change.nWeekday = static_cast<unsigned>(Number(6));
      if (change.nMonth == 0 || change.nWeek == 0) m_bFailed = true;
    } else if (Take('J')) {
      change.day = YearlyChange::Day::OfYearWithoutLeapDay;
      change.nDay = Number(365);
      if (change.nDay == 0) m_bFailed = true;
    } else {
      change.day = YearlyChange::Day::OfYear;
      change.nDay = Number(365);
    }
    if (Take('/')) change.time = Time();
    return change;
  }

 private:
  std::string_view m_sText;
  bool m_bFailed = false;
};

std::optional<ClockRule> ClockRule::Read(std::string_view sRule) {
  ClockRule rule;
  Reader reader(sRule);
  reader.SkipName();
  // Written the other way round: what has to be added to come to UTC.
  rule.m_standard = -reader.Time();
  if (!reader.AtEnd() && !reader.Failed()) {
    rule.m_bChanges = true;
    reader.SkipName();
    rule.m_daylight = reader.NextIs(',') ? rule.m_standard + 1h : -reader.Time();
    reader.Need(',');
    rule.m_start = reader.Change();
    reader.Need(',');
    rule.m_end = reader.Change();
  }
  if (reader.Failed() || !reader.AtEnd()) return std::nullopt;
  return rule;
}

date::local_seconds ClockRule::YearlyChange::In(date::year year) const {
  date::local_days date;
  switch (day) {
    case Day::OfMonth: {
      const auto month = year / date::month(nMonth);
      const date::weekday weekday(nWeekday);
      date = nWeek == 5 ? date::local_days(month / weekday[date::last])
                        : date::local_days(month / weekday[nWeek]);
      break;
    }
    case Day::OfYear:
      date = date::local_days(year / 1 / 1) + date::days(nDay);
      break;
    case Day::OfYearWithoutLeapDay:
      date = date::local_days(year / 1 / 1) +
             date::days(nDay - 1 + (year.is_leap() && nDay > 59 ? 1 : 0));
      break;
  }
  return date + time;
}

/// The offset after the last change that was reached; the years around are looked at as well, since
/// a change near the turn of the year may fall into another year of UTC.
template <class Reached>
seconds ClockRule::OffsetBy(date::year year, Reached reached) const {
  struct Change {
    date::sys_seconds at;
    seconds before;
    seconds after;
  };
  std::array<Change, 6> changes;
  std::size_t n = 0;
  for (const auto y : {year - date::years(1), year, year + date::years(1)}) {
    // An end and a start at the same moment are no daylight saving time that lasts no time, but
    // one that never ends: the start comes second.
    changes[n++] = {date::sys_seconds(m_end.In(y).time_since_epoch() - m_daylight), m_daylight,
                    m_standard};
    changes[n++] = {date::sys_seconds(m_start.In(y).time_since_epoch() - m_standard), m_standard,
                    m_daylight};
  }
  std::ranges::stable_sort(changes, {}, &Change::at);
  seconds offset = changes.front().before;
  for (const Change& change : changes) {
    if (reached(change.at, change.before, change.after)) offset = change.after;
  }
  return offset;
}

seconds ClockRule::OffsetAt(date::sys_seconds time) const {
  if (!m_bChanges) return m_standard;
  const auto within = WithinCycle(time);
  const auto year = date::year_month_day(date::floor<date::days>(within)).year();
  return OffsetBy(year, [&](date::sys_seconds at, seconds, seconds) { return at <= within; });
}

seconds ClockRule::OffsetAt(date::local_seconds local) const {
  if (!m_bChanges) return m_standard;
  const auto within = WithinCycle(local);
  const auto year = date::year_month_day(date::floor<date::days>(within)).year();
  return OffsetBy(year, [&](date::sys_seconds at, seconds before, seconds after) {
    return at.time_since_epoch() + std::max(before, after) <= within.time_since_epoch();
  });
}

}  // namespace orvane::zones
