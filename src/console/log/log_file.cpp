#include "console/log/log_file.h"

#include <fcntl.h>
#include <spdlog/pattern_formatter.h>
#include <sys/stat.h>

#include <string>

#include "files/own_log.h"
#include "files/private_files.h"
#include "platform/one_line.h"
#include "platform/user_folders.h"

namespace orvane::console {

namespace {

/// A new one is its user's alone, whatever the umask.
files::Descriptor OpenToAppend(const std::filesystem::path& path) {
  constexpr int kFlags = O_WRONLY | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  constexpr mode_t kOwners = S_IRUSR | S_IWUSR;
  files::Descriptor made(open(path.c_str(), kFlags | O_CREAT | O_EXCL, kOwners));
  if (made) {
    fchmod(made.Get(), kOwners);
    return made;
  }
  return files::Descriptor(open(path.c_str(), kFlags));
}

}  // namespace

std::optional<std::filesystem::path> LogFile::StandardPath() {
  const auto state = platform::UserStateFolder();
  if (!state) return std::nullopt;
  return *state / "console.log";
}

void LogFile::Note(const platform::Failure& failure) noexcept {
  try {
    spdlog::pattern_formatter formatter("%Y-%m-%dT%H:%M:%S.%eZ [%P] %l %v",
                                        spdlog::pattern_time_type::utc);
    const bool bCancelled = failure.Number() == platform::failure::kCancelled;
    const std::string sLine =
        fmt::format("number {} source \"{}\" native error {}", failure.Number(),
                    platform::OneLine(failure.Source()), failure.NativeError());
    spdlog::memory_buf_t line;
    formatter.format({"console", bCancelled ? spdlog::level::info : spdlog::level::err, sLine},
                     line);
    std::error_code ignored;
    files::MakePrivateFolders(m_path.parent_path(), ignored);
    // Opened for each line: another console may write, or lay the log aside, at any time.
    if (std::filesystem::file_size(m_path, ignored) >= kMaximumBytes && !ignored) {
      auto aside = m_path;
      std::filesystem::rename(m_path, aside.replace_extension(".1.log"), ignored);
    }
    files::AppendLine(OpenToAppend(m_path), {line.data(), line.size()});
  } catch (const std::exception&) {
    // There is nowhere left to tell; the user has been, or will be, in a box.
  }
}

}  // namespace orvane::console
