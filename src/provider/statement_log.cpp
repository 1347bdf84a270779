#include "provider/statement_log.h"

#include <fcntl.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/base_sink.h>
#include <spdlog/spdlog.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <mutex>

namespace orvane::provider {
namespace {

using platform::Text;

// A line of the log stays one line.
Text OneLine(std::string_view sText) {
  Text sLine;
  for (const char c : sText) {
    if (c == '\n') {
      sLine += "\\n";
    } else if (c == '\r') {
      sLine += "\\r";
    } else {
      sLine += c;
    }
  }
  return sLine;
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

[[noreturn]] void FailNoFile(const Text& sFile) {
  throw platform::Failure(
      platform::failure::kStorage,
      "The log file " + sFile + " is no file but a pipe or a device; enter the path of a file.");
}

[[noreturn]] void FailToOpen(const Text& sFile) {
  throw platform::Failure(
      platform::failure::kStorage,
      "The log file " + sFile +
          " cannot be opened; enter a path into a folder that you may write to.",
      "ORVOLEDB", errno);
}

// What is written to a pipe or a device is no log, and opening a pipe would wait for its reader: so
// nothing waits here, and what was opened is looked at rather than what the path led to before.
File OpenForAppending(const Text& sFile) {
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(sFile).parent_path(), ignored);
  constexpr mode_t kForAll = 0666;
  const int nFile = open(
      sFile.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, kForAll);
  // A pipe that nobody reads, or a socket.
  if (nFile < 0 && errno == ENXIO) FailNoFile(sFile);
  if (nFile < 0) FailToOpen(sFile);
  struct stat status {};
  const bool bRegular = fstat(nFile, &status) == 0 && S_ISREG(status.st_mode);
  File file(bRegular ? fdopen(nFile, "ab") : nullptr);
  if (file == nullptr) close(nFile);
  if (!bRegular) FailNoFile(sFile);
  if (file == nullptr) FailToOpen(sFile);
  return file;
}

// Writes into a file that is open already.
class OpenFileSink final : public spdlog::sinks::base_sink<std::mutex> {
 public:
  explicit OpenFileSink(File file) : m_file(std::move(file)) {}

 private:
  void sink_it_(const spdlog::details::log_msg& message) override {
    spdlog::memory_buf_t line;
    formatter_->format(message, line);
    if (std::fwrite(line.data(), 1, line.size(), m_file.get()) != line.size()) {
      spdlog::throw_spdlog_ex("The log cannot be written", errno);
    }
  }
  void flush_() override { std::fflush(m_file.get()); }

  File m_file;
};

}  // namespace

StatementLog::StatementLog() = default;
StatementLog::~StatementLog() = default;

void StatementLog::Open(const Text& sFile, platform::Long lLevel) {
  if (sFile.empty() || lLevel == 0) {
    m_logger.reset();
  } else if (m_logger == nullptr || sFile != m_sFile) {
    auto logger = std::make_unique<spdlog::logger>(
        "ORVOLEDB", std::make_shared<OpenFileSink>(OpenForAppending(sFile)));
    logger->set_formatter(std::make_unique<spdlog::pattern_formatter>(
        "%Y-%m-%dT%H:%M:%S.%eZ [%P] %l %v", spdlog::pattern_time_type::utc));
    logger->set_level(spdlog::level::debug);
    logger->flush_on(spdlog::level::debug);
    // A full disk must not stop a statement, nor write to the terminal of the console.
    logger->set_error_handler([](const std::string&) {});
    m_logger = std::move(logger);
  }
  m_sFile = sFile;
  m_lLevel = lLevel;
}

void StatementLog::Statement(std::string_view sText) {
  if (m_logger != nullptr && m_lLevel >= 2) m_logger->info("{}", OneLine(sText));
}

void StatementLog::Detail(std::string_view sText) {
  if (m_logger != nullptr && m_lLevel >= 3) m_logger->debug("{}", OneLine(sText));
}

void StatementLog::Failed(const platform::Failure& failed) {
  if (m_logger == nullptr || m_lLevel < 1) return;
  m_logger->error("{} ({}, native {}, {}) {}", OneLine(failed.Description()), failed.Number(),
                  failed.NativeError(), failed.Source(), OneLine(failed.SqlText()));
}

}  // namespace orvane::provider
