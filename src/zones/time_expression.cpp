#include "zones/time_expression.h"

#include <cstdint>
#include <optional>

namespace orvane::zones {
namespace {

using namespace std::chrono;
using platform::Text;
using platform::Timestamp;

// Steps are limited long before any sum of them can leave the integers they are counted in.
constexpr std::int64_t kMaxCount = 1'000'000'000'000;

bool IsTimeDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsTimeBlank(char c) {
  return c == ' ' || c == '\t';
}
char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}
bool IsLetter(char c) {
  return Lower(c) >= 'a' && Lower(c) <= 'z';
}

enum class Unit { Second, Minute, Hour, Day, Week, Month, Year };

microseconds Span(Unit unit) {
  switch (unit) {
    case Unit::Second:
      return seconds(1);
    case Unit::Minute:
      return minutes(1);
    default:
      return hours(1);
  }
}

class TimeReader {
 public:
  TimeReader(std::string_view sText, const TimeZone& zone, Timestamp now)
      : m_sText(sText), m_zone(zone), m_now(now) {}

  std::variant<Timestamp, TimeExpressionError> Read() {
    auto time = ReadBase();
    SkipBlanks();
    while (time && m_position < m_sText.size()) {
      time = ReadStep(*time);
      SkipBlanks();
    }
    if (!time) return m_error;
    return *time;
  }

 private:
  char Peek(std::size_t nAhead = 0) const {
    return m_position + nAhead < m_sText.size() ? m_sText[m_position + nAhead] : '\0';
  }
  void SkipBlanks() {
    while (IsTimeBlank(Peek())) ++m_position;
  }
  std::nullopt_t Fail(Text sReason) { return FailAt(m_position, std::move(sReason)); }
  std::nullopt_t FailAt(std::size_t position, Text sReason) {
    m_error = {position, std::move(sReason)};
    return std::nullopt;
  }
  std::optional<Timestamp> Checked(std::optional<Timestamp> time, std::size_t position) {
    if (time && IsInRange(*time)) return time;
    return FailAt(position, "the time is outside the years 1 to 9999");
  }

  std::optional<Timestamp> ReadBase() {
    SkipBlanks();
    if (IsTimeDigit(Peek())) return ReadDateTime();
    const char c = Lower(Peek());
    if (c != '*' && c != 't' && c != 'y') {
      return Fail("it must begin with *, t, y or a date such as 2024-05-31");
    }
    ++m_position;
    if (IsLetter(Peek()) || IsTimeDigit(Peek())) return Fail("+ or - must follow");
    if (c == '*') return m_now;
    auto day = date::floor<date::days>(m_zone.ToLocal(m_now));
    if (c == 'y') day -= date::days(1);
    return Checked(m_zone.ToTimestamp(day), 0);
  }

  // Exactly nDigits digits as a number.
  std::optional<int> ReadDigits(int nDigits) {
    int nNumber = 0;
    for (int i = 0; i < nDigits; ++i, ++m_position) {
      if (!IsTimeDigit(Peek())) return std::nullopt;
      nNumber = nNumber * 10 + (Peek() - '0');
    }
    if (IsTimeDigit(Peek())) return std::nullopt;
    return nNumber;
  }

  std::optional<Timestamp> ReadDateTime() {
    const std::size_t start = m_position;
    const auto nYear = ReadDigits(4);
    if (!nYear || Peek() != '-') return FailAt(start, "a date is written as in 2024-05-31");
    ++m_position;
    const auto nMonth = ReadDigits(2);
    if (!nMonth || Peek() != '-') return FailAt(start, "a date is written as in 2024-05-31");
    ++m_position;
    const auto nDay = ReadDigits(2);
    if (!nDay) return FailAt(start, "a date is written as in 2024-05-31");
    const auto ymd = date::year{*nYear} / *nMonth / *nDay;
    if (*nYear == 0 || !ymd.ok()) return FailAt(start, "there is no such date");
    LocalTime local{date::local_days(ymd)};
    if (!StartsTimeOfDay()) return Checked(m_zone.ToTimestamp(local), start);
    ++m_position;
    const auto timeOfDay = ReadTimeOfDay();
    if (!timeOfDay) return std::nullopt;
    local += *timeOfDay;
    std::optional<minutes> offset;
    if (!ReadOffset(offset)) return std::nullopt;
    if (offset) return Checked(Timestamp(local.time_since_epoch() - *offset), start);
    return Checked(m_zone.ToTimestamp(local), start);
  }

  bool StartsTimeOfDay() const {
    return Lower(Peek()) == 't' || (Peek() == ' ' && IsTimeDigit(Peek(1)));
  }

  std::optional<microseconds> ReadTimeOfDay() {
    const std::size_t start = m_position;
    const auto fail = [&] { return FailAt(start, "a time is written as in 17:45 or 17:45:30.25"); };
    const auto nHour = ReadDigits(2);
    if (!nHour || Peek() != ':') return fail();
    ++m_position;
    const auto nMinute = ReadDigits(2);
    if (!nMinute) return fail();
    int nSecond = 0;
    microseconds fraction{0};
    if (Peek() == ':') {
      ++m_position;
      const auto nRead = ReadDigits(2);
      if (!nRead) return fail();
      nSecond = *nRead;
      if (Peek() == '.' || Peek() == ',') {
        ++m_position;
        if (!IsTimeDigit(Peek())) return fail();
        fraction = ReadFraction();
      }
    }
    const microseconds time = hours(*nHour) + minutes(*nMinute) + seconds(nSecond) + fraction;
    // The end of a day may be written as 24:00.
    if (*nMinute > 59 || nSecond > 59 || time > hours(24)) {
      return FailAt(start, "there is no such time of day");
    }
    return time;
  }

  // The digits behind the point as parts of one second; what is finer than a microsecond is cut.
  microseconds ReadFraction() {
    std::int64_t llFraction = 0;
    std::int64_t llUnit = 100'000;
    for (; IsTimeDigit(Peek()); ++m_position, llUnit /= 10) llFraction += llUnit * (Peek() - '0');
    return microseconds(llFraction);
  }

  // "Z", "+01:00", "+0100" or "+01" directly behind the time; "-05h" is a step already.
  bool ReadOffset(std::optional<minutes>& offset) {
    if (Lower(Peek()) == 'z') {
      ++m_position;
      offset = minutes(0);
      return true;
    }
    if ((Peek() != '+' && Peek() != '-') || !IsTimeDigit(Peek(1)) || !IsTimeDigit(Peek(2)))
      return true;
    const std::size_t start = m_position;
    const bool bNegative = Peek() == '-';
    std::size_t nLength = 3;
    const std::size_t nMinutes = Peek(3) == ':' ? 4 : 3;
    if (IsTimeDigit(Peek(nMinutes)) && IsTimeDigit(Peek(nMinutes + 1))) nLength = nMinutes + 2;
    if (nLength == 3 && Peek(3) == ':') {
      FailAt(start, "an offset is written as in +01:00");
      return false;
    }
    const char cNext = Peek(nLength);
    if (IsTimeDigit(cNext) || IsLetter(cNext) || cNext == '.' || StepUnitFollows(nLength))
      return true;
    const auto digit = [&](std::size_t nAhead) { return Peek(nAhead) - '0'; };
    const int nHours = digit(1) * 10 + digit(2);
    const int nMinute = nLength == 3 ? 0 : digit(nMinutes) * 10 + digit(nMinutes + 1);
    if (nHours > 18 || nMinute > 59) {
      FailAt(start, "an offset is at most 18 hours");
      return false;
    }
    offset = minutes((nHours * 60 + nMinute) * (bNegative ? -1 : 1));
    m_position += nLength;
    return true;
  }

  // "-05 h": blanks, then a unit.
  bool StepUnitFollows(std::size_t nAhead) const {
    while (IsTimeBlank(Peek(nAhead))) ++nAhead;
    return IsLetter(Peek(nAhead));
  }

  std::optional<Timestamp> ReadStep(Timestamp time) {
    const std::size_t start = m_position;
    if (Peek() != '+' && Peek() != '-') return Fail("+ or - must follow");
    const std::int64_t llSign = Peek() == '-' ? -1 : 1;
    ++m_position;
    SkipBlanks();
    if (!IsTimeDigit(Peek())) return Fail("a number must follow the sign");
    std::int64_t llCount = 0;
    for (; IsTimeDigit(Peek()); ++m_position) {
      llCount = llCount * 10 + (Peek() - '0');
      if (llCount > kMaxCount) return FailAt(start, "the number is too large");
    }
    microseconds fraction{0};
    const std::size_t point = m_position;
    const bool bFraction = Peek() == '.';
    if (bFraction) {
      ++m_position;
      if (!IsTimeDigit(Peek())) return Fail("a digit must follow the point");
      fraction = ReadFraction();
    }
    SkipBlanks();
    const auto unit = ReadUnit();
    if (!unit) return std::nullopt;
    if (bFraction && *unit > Unit::Hour) {
      return FailAt(point, "only s, m and h take a fraction");
    }
    if (*unit <= Unit::Hour) {
      const microseconds span = Span(*unit);
      if (llCount > kMaxCount / duration_cast<seconds>(span).count()) {
        return FailAt(start, "the number is too large");
      }
      return Checked(
          time + llSign * (llCount * span + fraction * duration_cast<seconds>(span).count()),
          start);
    }
    return Checked(AddOnCalendar(time, llSign * llCount, *unit), start);
  }

  std::optional<Unit> ReadUnit() {
    const std::size_t start = m_position;
    Text sUnit;
    for (; IsLetter(Peek()); ++m_position) sUnit += Lower(Peek());
    if (sUnit == "s") return Unit::Second;
    if (sUnit == "m") return Unit::Minute;
    if (sUnit == "h") return Unit::Hour;
    if (sUnit == "d") return Unit::Day;
    if (sUnit == "w") return Unit::Week;
    if (sUnit == "mo") return Unit::Month;
    if (sUnit == "y") return Unit::Year;
    return FailAt(start, "the unit must be s, m, h, d, w, mo or y");
  }

  std::optional<Timestamp> AddOnCalendar(Timestamp time, std::int64_t llCount, Unit unit) {
    // Nothing to add must not move a time that the clocks show twice.
    if (llCount == 0) return time;
    // No step leads from a valid year to a valid year over more than these.
    constexpr std::int64_t kMaxDays = 4'000'000;
    const std::int64_t llDays = unit == Unit::Week ? llCount * 7 : llCount;
    if (llDays > kMaxDays || llDays < -kMaxDays) return std::nullopt;
    const LocalTime local = m_zone.ToLocal(time);
    const auto day = date::floor<date::days>(local);
    const auto timeOfDay = local - day;
    if (unit == Unit::Day || unit == Unit::Week) {
      return m_zone.ToTimestamp(day + date::days(static_cast<int>(llDays)) + timeOfDay);
    }
    const date::year_month_day ymd(day);
    const int nMonths = (int{ymd.year()} * 12 + static_cast<int>(unsigned{ymd.month()}) - 1);
    const std::int64_t llReached = nMonths + (unit == Unit::Year ? llCount * 12 : llCount);
    if (llReached < 0 || llReached / 12 > 9999) return std::nullopt;
    const auto month = date::year{static_cast<int>(llReached / 12)} /
                       date::month{static_cast<unsigned>(llReached % 12) + 1};
    auto reached = month / ymd.day();
    if (!reached.ok()) reached = month / date::last;
    return m_zone.ToTimestamp(date::local_days(reached) + timeOfDay);
  }

  std::string_view m_sText;
  const TimeZone& m_zone;
  Timestamp m_now;
  std::size_t m_position = 0;
  TimeExpressionError m_error;
};

}  // namespace

std::variant<Timestamp, TimeExpressionError> ReadTimeExpression(std::string_view sText,
                                                                const TimeZone& zone,
                                                                Timestamp now) {
  return TimeReader(sText, zone, now).Read();
}

}  // namespace orvane::zones
