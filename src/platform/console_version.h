// Which console runs, read from the version resource of the process's executable. Both sides ask
// here, the snap-in when it is initialized and the console for its pictures, so that they agree.
// User-interface thread.
#pragma once

#include <cstdint>

#include "platform/file_version.h"
#include "platform/types.h"

namespace orvane::platform {

/// A product version in signed 16-bit parts.
struct ConsoleVersion {
  std::int16_t Minor = 0;
  std::int16_t Major = 0;
  std::int16_t Revision = 0;
  std::int16_t Build = 0;
  friend bool operator==(const ConsoleVersion&, const ConsoleVersion&) = default;
};

/// The product version of the executable that started the process; all zero when any step fails.
ConsoleVersion ReadConsoleVersion(FileVersion& functions);

/// True for 5.1.2600.0 and later. The parts are signed, so a build or, at build 2600, a revision
/// of 32768 and more counts as older.
Boolean IsConsoleAtLeast51(const ConsoleVersion& version);

}  // namespace orvane::platform
