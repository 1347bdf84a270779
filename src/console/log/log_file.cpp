#include "console/log/log_file.h"

#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/spdlog.h>

#include <cstdlib>
#include <memory>

namespace orvane::console {

std::optional<std::filesystem::path> LogFile::StandardPath() {
  const char* sState = std::getenv("XDG_STATE_HOME");
  // A relative path there is to be ignored.
  if (sState && *sState == '/') return std::filesystem::path(sState) / "orvane/console.log";
  const char* sHome = std::getenv("HOME");
  if (!sHome || *sHome != '/') return std::nullopt;
  return std::filesystem::path(sHome) / ".local/state/orvane/console.log";
}

void LogFile::Note(const platform::Failure& failure) noexcept {
  try {
    // Opened for each line: another console may write, or lay the log aside, at any time.
    spdlog::logger logger("console", std::make_shared<spdlog::sinks::rotating_file_sink_st>(
                                         m_path.string(), kMaximumBytes, 1));
    logger.set_formatter(std::make_unique<spdlog::pattern_formatter>(
        "%Y-%m-%dT%H:%M:%S.%eZ [%P] %l %v", spdlog::pattern_time_type::utc));
    // A full disk is no reason to write to the terminal.
    logger.set_error_handler([](const std::string&) {});
    const bool bCancelled = failure.Number() == platform::failure::kCancelled;
    logger.log(bCancelled ? spdlog::level::info : spdlog::level::err,
               "number {} source \"{}\" native error {}", failure.Number(), failure.Source(),
               failure.NativeError());
    logger.flush();
  } catch (const std::exception&) {
    // There is nowhere left to tell; the user has been, or will be, in a box.
  }
}

}  // namespace orvane::console
