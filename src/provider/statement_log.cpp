#include "provider/statement_log.h"

#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <filesystem>

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

// Opening a pipe would wait for its reader, and what is written to a device is no log.
void RequireFile(const Text& sFile) {
  std::error_code error;
  const auto status = std::filesystem::status(sFile, error);
  if (std::filesystem::exists(status) && std::filesystem::is_other(status)) {
    throw platform::Failure(
        platform::failure::kStorage,
        "The log file " + sFile + " is no file but a pipe or a device; enter the path of a file.");
  }
}

}  // namespace

StatementLog::StatementLog() = default;
StatementLog::~StatementLog() = default;

void StatementLog::Open(const Text& sFile, platform::Long lLevel) {
  if (sFile.empty() || lLevel == 0) {
    m_logger.reset();
  } else if (m_logger == nullptr || sFile != m_sFile) {
    RequireFile(sFile);
    try {
      auto logger = std::make_unique<spdlog::logger>(
          "ORVOLEDB", std::make_shared<spdlog::sinks::basic_file_sink_mt>(sFile));
      logger->set_formatter(std::make_unique<spdlog::pattern_formatter>(
          "%Y-%m-%dT%H:%M:%S.%eZ [%P] %l %v", spdlog::pattern_time_type::utc));
      logger->set_level(spdlog::level::debug);
      logger->flush_on(spdlog::level::debug);
      // A full disk must not stop a statement, nor write to the terminal of the console.
      logger->set_error_handler([](const std::string&) {});
      m_logger = std::move(logger);
    } catch (const spdlog::spdlog_ex&) {
      throw platform::Failure(platform::failure::kStorage,
                              "The log file " + sFile +
                                  " cannot be opened; enter a path into a folder that you may "
                                  "write to.");
    }
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
