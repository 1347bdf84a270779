// The log of a connection: what it did and what failed, one line each, in the file that the
// option "Log File" names. Never holds a password: a connection's string is not written.
#pragma once

#include <chrono>
#include <memory>
#include <string_view>

#include "platform/failure.h"

namespace spdlog {
class logger;
}

namespace orvane::provider {

class StatementLog {
 public:
  StatementLog();
  StatementLog(const StatementLog&) = delete;
  StatementLog& operator=(const StatementLog&) = delete;
  ~StatementLog();

  /// Appends to the file from now on; an empty path or the level 0 closes it. The file is new or
  /// empty, or begins as such a log; no link is followed. Fails with failure::kStorage, leaving the
  /// log as it was, when the file cannot be opened or is something else.
  void Open(const platform::Text& sFile, platform::Long lLevel);

  /// Level 2.
  void Statement(std::string_view sText);
  /// Level 2, behind the statement: what came of it, and how long that took.
  void Done(platform::RowIndex rows, platform::Long lChanged, std::chrono::milliseconds took);
  /// Level 3.
  void Detail(std::string_view sText);
  /// Level 1.
  void Failed(const platform::Failure& failed);

 private:
  platform::Text m_sFile;
  platform::Long m_lLevel = 0;
  std::unique_ptr<spdlog::logger> m_logger;  ///< null while nothing is logged
};

}  // namespace orvane::provider
