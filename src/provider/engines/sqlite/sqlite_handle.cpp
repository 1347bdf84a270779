#include "provider/engines/sqlite/sqlite_handle.h"

#include <signal.h>

#include "provider/engines/sqlite/sqlite_journals.h"

namespace orvane::provider::engines {
namespace {

// A write that would make a file larger than its user may have one ends the whole program, unless
// the signal is ignored: then it fails like one to a full disk. Whoever handles it goes on to.
bool LetLargeFilesFail() {
  struct sigaction before {};
  if (sigaction(SIGXFSZ, nullptr, &before) != 0) return false;
  return before.sa_handler != SIG_DFL || signal(SIGXFSZ, SIG_IGN) != SIG_ERR;
}

}  // namespace

OpenedDatabase OpenDatabase(const char* sName, int nFlags) {
  [[maybe_unused]] static const bool bFail = LetLargeFilesFail();
  sqlite3* database = nullptr;
  const int nCode =
      sqlite3_open_v2(sName, &database, nFlags | SQLITE_OPEN_EXRESCODE, SharedJournals());
  return {SqliteHandle(database), nCode};
}

}  // namespace orvane::provider::engines
