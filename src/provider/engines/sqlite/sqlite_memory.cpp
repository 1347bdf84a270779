#include "provider/engines/sqlite/sqlite_memory.h"

#include <algorithm>
#include <limits>
#include <mutex>

namespace orvane::provider::engines {
namespace {

// What the statements that run now may take together, and what there was when the first began.
struct Bounded {
  std::mutex mutex;
  std::size_t nStatements = 0;
  sqlite3_int64 base = 0;
  sqlite3_int64 sum = 0;

  void Set() const {
    const sqlite3_int64 limit = nStatements == 0 ? 0 : base + sum;
    sqlite3_hard_heap_limit64(limit);
    sqlite3_soft_heap_limit64(limit);
  }
};

Bounded& All() {
  static Bounded all;
  return all;
}

}  // namespace

SqliteMemory::SqliteMemory(sqlite3* database, std::size_t maxBytes)
    : m_database(database), m_maxBytes(maxBytes) {
  if (m_maxBytes == 0) return;
  // One value cannot need more than all of it, and is refused without being begun.
  sqlite3_limit(
      m_database, SQLITE_LIMIT_LENGTH,
      static_cast<int>(std::min<std::size_t>(m_maxBytes, std::numeric_limits<int>::max())));
  Bounded& all = All();
  const std::lock_guard lock(all.mutex);
  if (all.nStatements++ == 0) all.base = sqlite3_memory_used();
  all.sum += static_cast<sqlite3_int64>(m_maxBytes);
  all.Set();
}

SqliteMemory::~SqliteMemory() {
  if (m_maxBytes == 0) return;
  sqlite3_limit(m_database, SQLITE_LIMIT_LENGTH, std::numeric_limits<int>::max());
  Bounded& all = All();
  const std::lock_guard lock(all.mutex);
  --all.nStatements;
  all.sum -= static_cast<sqlite3_int64>(m_maxBytes);
  all.Set();
}

}  // namespace orvane::provider::engines
