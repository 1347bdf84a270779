// The rule by which the clocks of a zone go on when its table of changes ends: the last line of a
// file of the time zone database, such as "CET-1CEST,M3.5.0,M10.5.0/3".
// Used by TimeZone; a plain value, any thread.
#pragma once

#include <date/date.h>

#include <chrono>
#include <optional>
#include <string_view>

namespace orvane::zones {

class ClockRule {
 public:
  /// None when the text is no such rule.
  static std::optional<ClockRule> Read(std::string_view sRule);

  /// What the clocks are ahead of UTC at that time.
  std::chrono::seconds OffsetAt(date::sys_seconds time) const;
  /// The same for what a clock shows. Of a time that the clocks skip, or that comes twice, it is
  /// the offset before the change.
  std::chrono::seconds OffsetAt(date::local_seconds local) const;

 private:
  /// A day of each year and the time at which the clocks change, told in the time before.
  struct YearlyChange {
    enum class Day : std::uint8_t { OfMonth, OfYear, OfYearWithoutLeapDay };
    Day day = Day::OfMonth;
    unsigned nMonth = 1;
    unsigned nWeek = 1;  ///< 5 is the last one
    unsigned nWeekday = 0;
    int nDay = 0;  ///< of the year: from 0, or from 1 where a leap day does not count
    std::chrono::seconds time = std::chrono::hours(2);

    date::local_seconds In(date::year year) const;
  };
  class Reader;

  template <class Reached>
  std::chrono::seconds OffsetBy(date::year year, Reached reached) const;

  std::chrono::seconds m_standard{0};
  std::chrono::seconds m_daylight{0};
  bool m_bChanges = false;
  YearlyChange m_start;  ///< of the daylight saving time
  YearlyChange m_end;
};

}  // namespace orvane::zones
