// A log that is appended to: only to a file that is new, empty or a log of the same kind, which its
// first line tells. So a name that comes from somebody else makes no file but a log longer.
// Used by the provider's statement log; any thread, one at a time.
#pragma once

#include <cstdint>
#include <string_view>

#include "files/descriptor.h"

namespace orvane::files {

/// Why a file is not appended to.
enum class LogRefusal : std::uint8_t {
  None,
  NotOpened,   ///< the system says no; the error number tells why
  NoFile,      ///< a pipe or a device
  Link,        ///< a symbolic link, or on the way to it one of another user
  OtherNames,  ///< a file that has other names (hard links)
  NoLog,       ///< a file that begins otherwise
};

struct OpenedLog {
  Descriptor file;
  LogRefusal refusal = LogRefusal::None;
  int iError = 0;
};

/// Opens the file for appending whole lines and writes the header, one line without its end, when
/// the file is new or empty. A new file is its owner's alone, whatever the umask, and so are the
/// folders that are made for it. Waits for nothing.
OpenedLog OpenOwnLog(const platform::Text& sPath, std::string_view sHeader);

/// Appends a line, which comes with its end. What does not fit is left out: a full disk must stop
/// nobody's work.
void AppendLine(const Descriptor& file, std::string_view sLine) noexcept;

}  // namespace orvane::files
