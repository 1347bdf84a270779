#include "provider/statement_log.h"

#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/base_sink.h>
#include <spdlog/spdlog.h>

#include <mutex>

#include "files/own_log.h"
#include "platform/one_line.h"

namespace orvane::provider {
namespace {

using platform::Text;

// The first line of a log. Every line begins as a comment does, so that a log is none of what other
// programs run or obey, whatever it is called.
constexpr std::string_view kHeader = "# ORVANE statement log";
constexpr const char* kPattern = "# %Y-%m-%dT%H:%M:%S.%eZ [%P] %l %v";

[[noreturn]] void Fail(const Text& sFile, const char* sWhy, int iError = 0) {
  throw platform::Failure(platform::failure::kStorage, "The log file " + sFile + " " + sWhy,
                          "ORVOLEDB", iError);
}

files::Descriptor OpenForAppending(const Text& sFile) {
  auto opened = files::OpenOwnLog(sFile, kHeader);
  switch (opened.refusal) {
    case files::LogRefusal::None:
      break;
    case files::LogRefusal::NotOpened:
      Fail(sFile,
           "cannot be opened; name one in the server's extended options that lies in a folder "
           "that you may write to.",
           opened.iError);
    case files::LogRefusal::NoFile:
      Fail(sFile,
           "is no file but a pipe or a device; name a file in the server's extended "
           "options.");
    case files::LogRefusal::Link:
      Fail(sFile,
           "is a symbolic link, or another user's link leads to it; name the file itself in the "
           "server's extended options.");
    case files::LogRefusal::OtherNames:
      Fail(sFile,
           "has other names as well (hard links); name a new file in the server's extended "
           "options.");
    case files::LogRefusal::NoLog:
      Fail(sFile,
           "holds something else than a log of statements, which is left as it is; name a new "
           "file in the server's extended options.");
  }
  return std::move(opened.file);
}

// Writes into a file that is open already.
class OpenFileSink final : public spdlog::sinks::base_sink<std::mutex> {
 public:
  explicit OpenFileSink(files::Descriptor file) : m_file(std::move(file)) {}

 private:
  void sink_it_(const spdlog::details::log_msg& message) override {
    spdlog::memory_buf_t line;
    formatter_->format(message, line);
    files::AppendLine(m_file, {line.data(), line.size()});
  }
  void flush_() override {}

  files::Descriptor m_file;
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
    logger->set_formatter(
        std::make_unique<spdlog::pattern_formatter>(kPattern, spdlog::pattern_time_type::utc));
    logger->set_level(spdlog::level::debug);
    logger->flush_on(spdlog::level::debug);
    // What goes wrong in writing must not reach the terminal of the console.
    logger->set_error_handler([](const std::string&) {});
    m_logger = std::move(logger);
  }
  m_sFile = sFile;
  m_lLevel = lLevel;
}

void StatementLog::Statement(std::string_view sText) {
  if (m_logger != nullptr && m_lLevel >= 2) m_logger->info("{}", platform::OneLine(sText));
}

void StatementLog::Done(platform::RowIndex rows, platform::Long lChanged,
                        std::chrono::milliseconds took) {
  if (m_logger == nullptr || m_lLevel < 2) return;
  m_logger->info("{} rows, {} changed, {} ms", rows, lChanged, took.count());
}

void StatementLog::Detail(std::string_view sText) {
  if (m_logger != nullptr && m_lLevel >= 3) m_logger->debug("{}", platform::OneLine(sText));
}

void StatementLog::Failed(const platform::Failure& failed) {
  if (m_logger == nullptr || m_lLevel < 1) return;
  m_logger->error("{} ({}, native {}, {}) {}", platform::OneLine(failed.Description()),
                  failed.Number(), failed.NativeError(), platform::OneLine(failed.Source()),
                  platform::OneLine(failed.SqlText()));
}

}  // namespace orvane::provider
