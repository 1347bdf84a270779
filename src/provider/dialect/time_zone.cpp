#include "provider/dialect/time_zone.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

#include "platform/case_folding.h"
#include "platform/failure.h"

namespace orvane::provider::dialect {
namespace {

using namespace std::chrono;
using platform::Text;
using platform::Timestamp;

constexpr date::local_days kDayZero = date::local_days(date::year{1899} / 12 / 30);
// Extended precision: a double of days is just fine enough to hold a microsecond.
constexpr long double kMicrosecondsOfDay = 86'400'000'000.0L;

const date::time_zone* FindZone(std::string_view sName) {
  try {
    return date::locate_zone(sName);
  } catch (const std::runtime_error&) {
    return nullptr;
  }
}

const date::time_zone& Utc() {
  const auto* const zone = FindZone("Etc/UTC");
  return zone != nullptr ? *zone : *date::locate_zone("UTC");
}

// TZ wins over the machine's setting, as for every other program; a machine without a setting
// counts in UTC.
const date::time_zone& ZoneOfMachine() {
  if (const char* const sVariable = std::getenv("TZ"); sVariable != nullptr && *sVariable != 0) {
    const std::string_view sName(sVariable + (*sVariable == ':' ? 1 : 0));
    if (const auto* const zone = FindZone(sName)) return *zone;
  }
  try {
    return *date::current_zone();
  } catch (const std::runtime_error&) {
    return Utc();
  }
}

}  // namespace

TimeZone::TimeZone() : TimeZone("Local") {}

TimeZone::TimeZone(std::string_view sName) : m_sName(sName), m_zone(nullptr) {
  const Text sFolded = platform::FoldCase(sName);
  if (sFolded.empty() || sFolded == "local") {
    m_sName = "Local";
    m_zone = &ZoneOfMachine();
  } else if (sFolded == "utc") {
    m_sName = "UTC";
    m_zone = &Utc();
  } else {
    m_zone = FindZone(sName);
  }
  if (m_zone == nullptr) {
    throw platform::Failure(platform::failure::kInvalidArgument,
                            "There is no time zone \"" + m_sName +
                                "\"; enter Local, UTC or a name such as Europe/Madrid.");
  }
}

LocalTime TimeZone::ToLocal(Timestamp timestamp) const {
  return LocalTime(timestamp.time_since_epoch() + m_zone->get_info(timestamp).offset);
}

Timestamp TimeZone::ToTimestamp(LocalTime local) const {
  return Timestamp(local.time_since_epoch() - m_zone->get_info(local).first.offset);
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

}  // namespace orvane::provider::dialect
