// The engine on SQLite files. A TIMESTAMP column holds whole microseconds since 1970-01-01
// 00:00:00 UTC as INTEGER; DATE, TIME and GUID columns hold the texts that the general
// value-to-text rule writes; BOOLEAN columns hold 0 and 1. A value that is stored otherwise comes
// out as it is stored. INTEGER and BIGINT come out in 64 bits, the shorter integer types in 32.
// Used by the historian store and by sessions.
#pragma once

#include <chrono>

#include "provider/engines/file_engine.h"

namespace orvane::provider::engines {

class SqliteEngine final : public FileEngine {
 public:
  /// Waits at most this long for a lock that another program holds.
  explicit SqliteEngine(std::chrono::milliseconds lockWait = std::chrono::seconds(5))
      : m_lockWait(lockWait) {}

  /// Opens an existing file, never makes one. Fails with kServerNotFound,
  /// kNoRights, kNotADatabase, kBusy or kStorage.
  std::unique_ptr<FileSession> Open(const Catalog& main, std::stop_token stop) override;

 private:
  std::chrono::milliseconds m_lockWait;
};

}  // namespace orvane::provider::engines
