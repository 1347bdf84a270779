#include "controls/statements/connection_zone.h"

#include "platform/ado/extended_options.h"
#include "platform/conversions.h"
#include "platform/failure.h"

namespace orvane::controls {

using platform::Text;

namespace {

/// The property as text, empty where the connection has none of that name.
Text PropertyText(platform::Connection& cn, const char* sName) {
  try {
    return platform::ToText(cn.Properties().Item(platform::Value(sName)).Value());
  } catch (const platform::Failure&) {
    return {};
  }
}

}  // namespace

zones::TimeZone ZoneOf(const platform::ConnectionPtr& cn) {
  if (!cn) return {};
  // What "Local" comes to is the provider's to say: it read the times of the statement.
  Text sZone = PropertyText(*cn, platform::kTimeZoneInUse);
  if (sZone.empty()) sZone = PropertyText(*cn, platform::kTimeZoneOption);
  try {
    // A provider without either leaves times to the machine's habit.
    return zones::TimeZone(sZone == "Etc/UTC" ? "UTC" : sZone);
  } catch (const platform::Failure&) {
    // What cannot be found is shown in a zone that is the same everywhere, and the columns'
    // tooltips tell so.
    return zones::TimeZone::Utc();
  }
}

}  // namespace orvane::controls
