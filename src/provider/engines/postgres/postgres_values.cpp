#include "provider/engines/postgres/postgres_values.h"

#include <fmt/format.h>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "platform/conversions.h"
#include "platform/failure.h"
#include "platform/stored_text.h"
#include "provider/engines/postgres/postgres_types.h"

namespace orvane::provider::engines {

using platform::DataType;
using platform::Text;
using platform::Value;
using std::chrono::days;
using std::chrono::microseconds;
using std::chrono::sys_days;
using std::chrono::year_month_day;

namespace {

// The server counts its days and microseconds from here.
constexpr sys_days kEpoch = std::chrono::year(2000) / 1 / 1;

[[noreturn]] void FailUnread(Oid type) {
  throw platform::Failure(
      platform::failure::kSqlError,
      fmt::format("The server sent a value of type {} that cannot be read: cast it to text.", type),
      "PostgreSQL");
}

// Numbers in the order of the net, one after the other.
class Reader {
 public:
  Reader(Oid type, std::string_view sBytes) : m_type(type), m_sBytes(sBytes) {}

  template <class T>
  T Next() {
    if (m_sBytes.size() < sizeof(T)) FailUnread(m_type);
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i) {
      number = number << 8U | static_cast<unsigned char>(m_sBytes[i]);
    }
    m_sBytes.remove_prefix(sizeof(T));
    return static_cast<T>(number);
  }
  /// The only number there is.
  template <class T>
  T Only() {
    if (m_sBytes.size() != sizeof(T)) FailUnread(m_type);
    return Next<T>();
  }

 private:
  Oid m_type;
  std::string_view m_sBytes;
};

bool IsShownAsDate(sys_days day) {
  constexpr sys_days kFirst = std::chrono::year(1) / 1 / 1;
  constexpr sys_days kLast = std::chrono::year(9999) / 12 / 31;
  return day >= kFirst && day <= kLast;
}

// The calendar comes again every 400 years; a year of the library's has 16 bits, the server's more.
constexpr int kYearsOfCycle = 400;
constexpr int kDaysOfCycle = 146'097;

int CyclesIn(sys_days day) {
  return std::chrono::floor<std::chrono::duration<int, std::ratio<86'400LL * kDaysOfCycle>>>(
             day.time_since_epoch())
      .count();
}

int YearOf(sys_days day) {
  const int nCycles = CyclesIn(day);
  return static_cast<int>(year_month_day(day - days(nCycles * kDaysOfCycle)).year()) +
         nCycles * kYearsOfCycle;
}

// As the server writes it.
Text DayText(sys_days day) {
  const year_month_day date(day - days(CyclesIn(day) * kDaysOfCycle));
  const int nYear = YearOf(day);
  return fmt::format("{:04}-{:02}-{:02}", nYear > 0 ? nYear : 1 - nYear,
                     static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
}

const char* EraOf(sys_days day) {
  return YearOf(day) > 0 ? "" : " BC";
}

void AppendDate(ado::Column& column, std::int32_t lDays) {
  if (lDays == std::numeric_limits<std::int32_t>::max()) return column.AppendText("infinity");
  if (lDays == std::numeric_limits<std::int32_t>::min()) return column.AppendText("-infinity");
  const sys_days day = kEpoch + days(lDays);
  if (IsShownAsDate(day)) return column.AppendValue(Value(day));
  column.AppendText(DayText(day) + EraOf(day));
}

void AppendMoment(ado::Column& column, std::int64_t llMicroseconds, bool bZone) {
  if (llMicroseconds == std::numeric_limits<std::int64_t>::max()) {
    return column.AppendText("infinity");
  }
  if (llMicroseconds == std::numeric_limits<std::int64_t>::min()) {
    return column.AppendText("-infinity");
  }
  const auto since = microseconds(llMicroseconds);
  const auto whole = std::chrono::floor<days>(since);
  const sys_days day = kEpoch + whole;
  if (IsShownAsDate(day)) {
    const platform::Timestamp moment = platform::Timestamp(kEpoch) + since;
    if (bZone) return column.AppendTimestamp(moment);
    return column.AppendWallTime(platform::WallTime(moment.time_since_epoch()));
  }
  column.AppendText(DayText(day) + ' ' + platform::ToText(Value(since - whole)) +
                    (bZone ? "+00" : "") + EraOf(day));
}

void AppendNumeric(ado::Column& column, Oid type, std::string_view sBytes) {
  enum : std::uint16_t { kNegative = 0x4000, kNaN = 0xC000, kInfinity = 0xD000, kMinus = 0xF000 };
  Reader reader(type, sBytes);
  const auto nGroups = reader.Next<std::uint16_t>();
  const int nWeight = reader.Next<std::int16_t>();
  const auto nSign = reader.Next<std::uint16_t>();
  const auto nScale = reader.Next<std::uint16_t>();
  if (nSign == kNaN) return column.AppendText("NaN");
  if (nSign == kInfinity) return column.AppendText("Infinity");
  if (nSign == kMinus) return column.AppendText("-Infinity");
  // Groups of four digits; the first one stands for its number times 10000 to the weight.
  Text sDigits = nSign == kNegative ? "-" : "";
  int nGroup = 0;
  const auto group = [&]() -> int { return nGroup < nGroups ? reader.Next<std::uint16_t>() : 0; };
  if (nWeight < 0) sDigits += '0';
  for (; nGroup <= nWeight; ++nGroup) {
    sDigits += nGroup == 0 ? std::to_string(group()) : fmt::format("{:04}", group());
  }
  if (nScale > 0) {
    sDigits += '.';
    const std::size_t nEnd = sDigits.size() + nScale;
    for (int nPlace = -1; nPlace > nWeight && sDigits.size() < nEnd; --nPlace) sDigits += "0000";
    while (sDigits.size() < nEnd) {
      sDigits += fmt::format("{:04}", group());
      ++nGroup;
    }
    sDigits.resize(nEnd);
  }
  column.AppendValue(Value(platform::Decimal{std::move(sDigits)}));
}

void AppendGuid(ado::Column& column, Oid type, std::string_view sBytes) {
  platform::Guid guid;
  if (sBytes.size() != guid.bytes.size()) FailUnread(type);
  for (std::size_t i = 0; i < sBytes.size(); ++i) {
    guid.bytes[i] = static_cast<std::uint8_t>(sBytes[i]);
  }
  column.AppendValue(Value(guid));
}

// To the server all values that are no number are the same, whatever their sign and bits.
double AsOneNaN(double dValue) {
  return std::isnan(dValue) ? std::numeric_limits<double>::quiet_NaN() : dValue;
}

// A number of single precision as it is written, not as its bits look in double precision: 0.1 and
// not 0.10000000149011612.
double Widened(float fValue) {
  if (!std::isfinite(fValue)) return fValue;
  std::array<char, 32> written{};
  const auto [end, code] = std::to_chars(written.data(), written.data() + written.size(), fValue);
  double dValue = fValue;
  if (code == std::errc()) std::from_chars(written.data(), end, dValue);
  return AsOneNaN(dValue);
}

template <class T>
T NumberOf(Oid type, std::string_view sText) {
  T number{};
  const auto [end, code] = std::from_chars(sText.data(), sText.data() + sText.size(), number);
  if (code != std::errc() || end != sText.data() + sText.size()) FailUnread(type);
  return number;
}

double DoubleOf(Oid type, std::string_view sText) {
  if (sText == "NaN") return std::numeric_limits<double>::quiet_NaN();
  if (sText == "Infinity") return std::numeric_limits<double>::infinity();
  if (sText == "-Infinity") return -std::numeric_limits<double>::infinity();
  return NumberOf<double>(type, sText);
}

// "\x" and two digits for each byte.
platform::Bytes BytesOf(Oid type, std::string_view sText) {
  if (!sText.starts_with("\\x") || sText.size() % 2 != 0) FailUnread(type);
  platform::Bytes bytes;
  for (std::size_t i = 2; i < sText.size(); i += 2) {
    unsigned nByte = 0;
    const auto [end, code] = std::from_chars(sText.data() + i, sText.data() + i + 2, nByte, 16);
    if (code != std::errc() || end != sText.data() + i + 2) FailUnread(type);
    bytes.push_back(static_cast<std::byte>(nByte));
  }
  return bytes;
}

// "2026-01-31 23:59:59.123456", or with "+00" behind it; none for what is no moment from year 1 to
// 9999.
std::optional<platform::Timestamp> MomentOf(std::string_view sText, std::string_view sZone) {
  constexpr std::size_t kDate = 10;
  if (!sText.ends_with(sZone) || sText.size() < kDate + 1 || sText[kDate] != ' ') {
    return std::nullopt;
  }
  sText.remove_suffix(sZone.size());
  const Value vtDay = platform::FromStoredText(DataType::DBDate, sText.substr(0, kDate));
  const Value vtTime = platform::FromStoredText(DataType::DBTime, sText.substr(kDate + 1));
  const auto* const day = vtDay.As<platform::Date>();
  const auto* const time = vtTime.As<platform::TimeOfDay>();
  if (day == nullptr || time == nullptr) return std::nullopt;
  return platform::Timestamp(*day) + *time;
}

}  // namespace

void AppendBinary(ado::Column& column, Oid type, std::string_view sBytes) {
  Reader reader(type, sBytes);
  switch (static_cast<PostgresType>(type)) {
    case PostgresType::Bool:
      return column.AppendBoolean(reader.Only<std::uint8_t>() != 0);
    case PostgresType::Int2:
      return column.AppendLong(reader.Only<std::int16_t>());
    case PostgresType::Int4:
      return column.AppendLong(reader.Only<std::int32_t>());
    case PostgresType::Int8:
      return column.AppendLongLong(reader.Only<std::int64_t>());
    case PostgresType::Oid:
      return column.AppendLongLong(reader.Only<std::uint32_t>());
    case PostgresType::Float4:
      return column.AppendDouble(Widened(std::bit_cast<float>(reader.Only<std::uint32_t>())));
    case PostgresType::Float8:
      return column.AppendDouble(AsOneNaN(std::bit_cast<double>(reader.Only<std::uint64_t>())));
    case PostgresType::Bytea:
      return column.AppendBytes(std::as_bytes(std::span(sBytes)));
    case PostgresType::Date:
      return AppendDate(column, reader.Only<std::int32_t>());
    case PostgresType::Time:
      return column.AppendValue(Value(microseconds(reader.Only<std::int64_t>())));
    case PostgresType::Timestamp:
      return AppendMoment(column, reader.Only<std::int64_t>(), false);
    case PostgresType::TimestampTz:
      return AppendMoment(column, reader.Only<std::int64_t>(), true);
    case PostgresType::Numeric:
      return AppendNumeric(column, type, sBytes);
    case PostgresType::Uuid:
      return AppendGuid(column, type, sBytes);
    case PostgresType::Jsonb:
      // A version, and the text.
      if (reader.Next<std::uint8_t>() != 1) FailUnread(type);
      return column.AppendText(sBytes.substr(1));
    default:
      return column.AppendText(sBytes);
  }
}

void AppendTextForm(ado::Column& column, Oid type, std::string_view sText) {
  switch (static_cast<PostgresType>(type)) {
    case PostgresType::Bool:
      return column.AppendBoolean(sText == "t");
    case PostgresType::Int2:
    case PostgresType::Int4:
      return column.AppendLong(NumberOf<std::int32_t>(type, sText));
    case PostgresType::Int8:
    case PostgresType::Oid:
      return column.AppendLongLong(NumberOf<std::int64_t>(type, sText));
    case PostgresType::Float4:
    case PostgresType::Float8:
      return column.AppendDouble(DoubleOf(type, sText));
    case PostgresType::Bytea:
      return column.AppendBytes(BytesOf(type, sText));
    case PostgresType::Date:
      return column.AppendValue(platform::FromStoredText(DataType::DBDate, sText));
    case PostgresType::Time:
      if (sText == "24:00:00") return column.AppendValue(Value(microseconds(days(1))));
      return column.AppendValue(platform::FromStoredText(DataType::DBTime, sText));
    case PostgresType::TimestampTz:
      if (const auto moment = MomentOf(sText, "+00")) return column.AppendTimestamp(*moment);
      return column.AppendText(sText);
    case PostgresType::Timestamp:
      if (const auto moment = MomentOf(sText, "")) {
        return column.AppendWallTime(platform::WallTime(moment->time_since_epoch()));
      }
      return column.AppendText(sText);
    case PostgresType::Numeric:
      if (sText == "NaN" || sText.ends_with("Infinity")) return column.AppendText(sText);
      return column.AppendValue(Value(platform::Decimal{Text(sText)}));
    case PostgresType::Uuid: {
      Text sGuid = "{";
      for (const char character : sText) {
        const bool bLower = character >= 'a' && character <= 'f';
        sGuid += bLower ? static_cast<char>(character - 'a' + 'A') : character;
      }
      return column.AppendValue(platform::FromStoredText(DataType::Guid, sGuid + '}'));
    }
    default:
      return column.AppendText(sText);
  }
}

}  // namespace orvane::provider::engines
