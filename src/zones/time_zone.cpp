#include "zones/time_zone.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "platform/case_folding.h"
#include "platform/failure.h"

namespace orvane::zones {
namespace {

using namespace std::chrono;
using platform::Text;
using platform::Timestamp;

constexpr const char* kUtc = "Etc/UTC";
constexpr date::local_days kDayZero = date::local_days(date::year{1899} / 12 / 30);
// Extended precision: a double of days is just fine enough to hold a microsecond.
constexpr long double kMicrosecondsOfDay = 86'400'000'000.0L;
// A period that ends later than this has no end in the table of changes.
constexpr date::sys_seconds kNoEnd = date::sys_days(date::year{20'000} / 1 / 1);

const date::time_zone* FindZone(std::string_view sName) {
  try {
    return date::locate_zone(sName);
  } catch (const std::runtime_error&) {
    return nullptr;
  }
}

// TZ wins over the machine's setting, as for every other program; a machine without a setting
// counts in UTC.
const date::time_zone* ZoneOfMachine() {
  if (const char* const sVariable = std::getenv("TZ"); sVariable != nullptr && *sVariable != 0) {
    const std::string_view sName(sVariable + (*sVariable == ':' ? 1 : 0));
    if (const auto* const zone = FindZone(sName)) return zone;
  }
  try {
    return date::current_zone();
  } catch (const std::runtime_error&) {
    return nullptr;
  }
}

/// The rule in the last line of the zone's file. The library reads the table of changes before it,
/// which ends in 2037 at the latest where a rule goes on.
std::optional<ClockRule> RuleOf(const Text& sZone) {
  std::ifstream file("/usr/share/zoneinfo/" + sZone, std::ios::binary);
  const Text sContent{std::istreambuf_iterator<char>(file), {}};
  // Files of the first version have no such line.
  if (!sContent.starts_with("TZif") || sContent.size() < 6 || sContent[4] < '2' ||
      sContent.back() != '\n') {
    return std::nullopt;
  }
  const auto nStart = sContent.rfind('\n', sContent.size() - 2) + 1;
  return ClockRule::Read(std::string_view(sContent).substr(nStart, sContent.size() - 1 - nStart));
}

}  // namespace

TimeZone::TimeZone(Text sName, const date::time_zone* zone)
    : m_sName(std::move(sName)), m_zone(zone) {
  if (m_zone != nullptr) m_rule = RuleOf(m_zone->name());
}

TimeZone::TimeZone() : TimeZone("Local", ZoneOfMachine()) {}

TimeZone TimeZone::Utc() {
  return {"UTC", nullptr};
}

TimeZone::TimeZone(std::string_view sName) : m_zone(nullptr) {
  const Text sFolded = platform::FoldCase(sName);
  if (sFolded.empty() || sFolded == "local") {
    *this = TimeZone();
  } else if (sFolded == "utc") {
    *this = Utc();
  } else if (const auto* const zone = FindZone(sName)) {
    *this = TimeZone(Text(sName), zone);
  } else {
    throw platform::Failure(platform::failure::kInvalidArgument,
                            "There is no time zone \"" + Text(sName) +
                                "\"; enter Local, UTC or a name such as Europe/Madrid.");
  }
}

Text TimeZone::NameInUse() const {
  return m_zone != nullptr ? m_zone->name() : kUtc;
}

seconds TimeZone::OffsetAt(Timestamp timestamp) const {
  if (m_zone == nullptr) return seconds(0);
  const auto time = date::floor<seconds>(timestamp);
  const auto period = m_zone->get_info(time);
  return m_rule && period.end > kNoEnd ? m_rule->OffsetAt(time) : period.offset;
}

LocalTime TimeZone::ToLocal(Timestamp timestamp) const {
  return LocalTime(timestamp.time_since_epoch() + OffsetAt(timestamp));
}

Timestamp TimeZone::ToTimestamp(LocalTime local) const {
  const Timestamp asUtc(local.time_since_epoch());
  if (m_zone == nullptr) return asUtc;
  const auto period = m_zone->get_info(local).first;
  const bool bBehindTable = m_rule && period.end > kNoEnd;
  return asUtc - (bBehindTable ? m_rule->OffsetAt(date::floor<seconds>(local)) : period.offset);
}

double TimeZone::ToDays(Timestamp timestamp) const {
  const auto sinceZero = ToLocal(timestamp) - kDayZero;
  return static_cast<double>(static_cast<long double>(sinceZero.count()) / kMicrosecondsOfDay);
}

std::optional<Timestamp> TimeZone::FromDays(double dDays) const {
  const long double dMicroseconds = std::round(dDays * kMicrosecondsOfDay);
  // More than the years 1 to 9999, and far from what the integer can hold.
  if (!(std::abs(dMicroseconds) < 4.0e17L)) return std::nullopt;
  const auto local =
      LocalTime(kDayZero) + microseconds(static_cast<microseconds::rep>(dMicroseconds));
  const auto timestamp = ToTimestamp(local);
  if (!IsInRange(timestamp)) return std::nullopt;
  return timestamp;
}

bool IsInRange(Timestamp timestamp) {
  constexpr Timestamp kFirst = sys_days(year{1} / 1 / 1);
  constexpr Timestamp kEnd = sys_days(year{10000} / 1 / 1);
  return timestamp >= kFirst && timestamp < kEnd;
}

}  // namespace orvane::zones
