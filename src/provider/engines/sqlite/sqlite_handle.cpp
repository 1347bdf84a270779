#include "provider/engines/sqlite/sqlite_handle.h"

#include "provider/engines/sqlite/sqlite_journals.h"

namespace orvane::provider::engines {

OpenedDatabase OpenDatabase(const char* sName, int nFlags) {
  sqlite3* database = nullptr;
  const int nCode =
      sqlite3_open_v2(sName, &database, nFlags | SQLITE_OPEN_EXRESCODE, SharedJournals());
  return {SqliteHandle(database), nCode};
}

}  // namespace orvane::provider::engines
