// Which console hosts the snap-in, read from the version resource of the process's executable.
// Read once, when the snap-in is initialized; user-interface thread.
#pragma once

#include <cstdint>

#include "platform/file_version.h"
#include "platform/types.h"

namespace orvane::snapin {

/// A product version in signed 16-bit parts.
struct ConsoleVersion {
  std::int16_t Minor = 0;
  std::int16_t Major = 0;
  std::int16_t Revision = 0;
  std::int16_t Build = 0;
  friend bool operator==(const ConsoleVersion&, const ConsoleVersion&) = default;
};

/// The product version of the executable that started the process; all zero when any step fails.
ConsoleVersion ReadConsoleVersion(platform::FileVersion& functions);

/// True for 5.1.2600.0 and later. The parts are signed, so a build or, at build 2600, a revision
/// of 32768 and more counts as older.
platform::Boolean IsConsoleAtLeast51(const ConsoleVersion& version);

}  // namespace orvane::snapin
