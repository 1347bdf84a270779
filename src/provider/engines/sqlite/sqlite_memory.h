// Bounds the memory that SQLite takes for one statement. SQLite counts for the whole process, so
// statements that run at the same time share what they may take together.
// Made for one statement, on its stack; any thread.
#pragma once

#include <cstddef>

#include "provider/engines/sqlite/sqlite_handle.h"

namespace orvane::provider::engines {

class SqliteMemory {
 public:
  /// From now on the statement's database gets that many bytes beside what SQLite has already, and
  /// SQLITE_NOMEM or SQLITE_TOOBIG for more; 0 bounds nothing.
  SqliteMemory(sqlite3* database, std::size_t maxBytes);
  SqliteMemory(const SqliteMemory&) = delete;
  SqliteMemory& operator=(const SqliteMemory&) = delete;
  ~SqliteMemory();

 private:
  sqlite3* m_database;
  std::size_t m_maxBytes;
};

}  // namespace orvane::provider::engines
