// The six extended options of a connection: their names, their published order, what "Time Zone"
// comes to, and the text in which a saved server carries them.
// Used by the provider, which offers them, the model, which saves them, and the host, which knows
// them again; any thread.
#pragma once

#include <array>
#include <functional>

#include "platform/value.h"

namespace orvane::platform {

inline constexpr const char* kLogFileOption = "Log File";
inline constexpr const char* kLogLevelOption = "Log Level";
inline constexpr const char* kIdentifierPrefixesOption = "Identifier Prefixes";
inline constexpr const char* kTimeAsDoubleOption = "Time as Double";
inline constexpr const char* kTimeZoneOption = "Time Zone";
inline constexpr const char* kHistoriansByGuidOption = "Historians By GUID";

/// Beside the options, read only: the zone in which a connection counts, by its name in the time
/// zone database.
inline constexpr const char* kTimeZoneInUse = "Time Zone in Use";
/// The same: whether what is sent to the server is encrypted, and to whom, in words; empty over
/// a socket of this machine.
inline constexpr const char* kLinkInUse = "Link in Use";

inline constexpr std::array kExtendedOptions = {
    kLogFileOption,      kLogLevelOption, kIdentifierPrefixesOption,
    kTimeAsDoubleOption, kTimeZoneOption, kHistoriansByGuidOption};

/// "Name = value;" of each option in the published order. The values are asked for in that order;
/// a failure of asking passes through.
Text ExtendedOptionsText(const std::function<Value(const char* sName)>& valueOf);

}  // namespace orvane::platform
