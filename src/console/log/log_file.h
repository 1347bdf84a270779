// The console's log: one line for each failure, in a small file in the user's state folder. Holds
// the number, the source and the native error; never a sentence, since one may quote a value, a
// statement or a connection string. Owned by the host; user-interface thread.
#pragma once

#include <filesystem>
#include <optional>

#include "platform/failure_log.h"

namespace orvane::console {

class LogFile final : public platform::FailureLog {
 public:
  /// Bytes after which a log is laid aside; one such is kept.
  static constexpr std::size_t kMaximumBytes = std::size_t{256} * 1024;

  /// The folder is made when there is something to write.
  explicit LogFile(std::filesystem::path path) : m_path(std::move(path)) {}
  /// "orvane/console.log" in $XDG_STATE_HOME, or in ~/.local/state; none without a home.
  static std::optional<std::filesystem::path> StandardPath();

  const std::filesystem::path& Path() const noexcept { return m_path; }
  /// Appends a line. A log that cannot be written keeps nobody from working.
  void Note(const platform::Failure& failure) noexcept override;

 private:
  std::filesystem::path m_path;
};

}  // namespace orvane::console
