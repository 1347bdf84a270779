// A time zone: calendar time and points in time, with every change of the clocks, also of those
// to come. The one conversion that the provider and the grids use; any thread.
#pragma once

#include <date/date.h>
#include <date/tz.h>

#include <optional>
#include <string_view>

#include "platform/value.h"
#include "zones/clock_rule.h"

namespace orvane::zones {

/// Calendar time as a clock on the wall shows it.
using LocalTime = date::local_time<std::chrono::microseconds>;

class TimeZone {
 public:
  /// The zone of this machine.
  TimeZone();
  /// "Local", "UTC" (both in any case, an empty text is "Local") or a name of the time zone
  /// database such as "Europe/Madrid". Fails with failure::kInvalidArgument for any other text.
  explicit TimeZone(std::string_view sName);
  /// Needs no time zone database.
  static TimeZone Utc();

  /// The name as it was asked for.
  const platform::Text& Name() const { return m_sName; }
  /// The name that the time zone database has for the zone, also of "Local".
  platform::Text NameInUse() const;

  /// What the zone's clocks are ahead of UTC at that time.
  std::chrono::seconds OffsetAt(platform::Timestamp timestamp) const;
  LocalTime ToLocal(platform::Timestamp timestamp) const;
  /// A time that the clocks skip is read as if they had not been put forward yet; of a time that
  /// comes twice the first one is meant.
  platform::Timestamp ToTimestamp(LocalTime local) const;
  /// The same of what clocks show, taken for those of this zone.
  platform::Timestamp ToTimestamp(platform::WallTime wall) const {
    return ToTimestamp(LocalTime(wall.time_since_epoch()));
  }

  /// Days since 1899-12-30 00:00 of the zone's calendar.
  double ToDays(platform::Timestamp timestamp) const;
  /// None when the number is no time of the years 1 to 9999.
  std::optional<platform::Timestamp> FromDays(double dDays) const;

 private:
  TimeZone(platform::Text sName, const date::time_zone* zone);

  platform::Text m_sName;
  const date::time_zone* m_zone;    ///< owned by the time zone database; null is UTC
  std::optional<ClockRule> m_rule;  ///< behind the last change that the database lists
};

/// True for the times that the system handles: those of the years 1 to 9999, in UTC.
bool IsInRange(platform::Timestamp timestamp);

}  // namespace orvane::zones
