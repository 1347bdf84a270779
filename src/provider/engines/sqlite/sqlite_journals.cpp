#include "provider/engines/sqlite/sqlite_journals.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <string>

#include "files/access_list.h"
#include "files/attributes.h"

namespace orvane::provider::engines {
namespace {

void Share(const char* sJournal, const char* sDatabase) {
  const files::Descriptor journal(open(sJournal, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  struct stat made {};
  // Only what was just made: a file that somebody has put in its place is not opened to others.
  if (!journal || fstat(journal.Get(), &made) != 0 || made.st_size != 0 || made.st_nlink != 1) {
    return;
  }
  if (files::TakeAccess(sDatabase, journal) || files::ListAccess(sDatabase, journal)) return;
  // SQLite has opened it to its maker's group, which may be nobody's who knows the database. One
  // that cannot be shared does its work all the same.
  constexpr mode_t kNotTheGroup = 0707;
  fchmod(journal.Get(), made.st_mode & kNotTheGroup);
}

class JournalSharing {
 public:
  JournalSharing() : m_base(sqlite3_vfs_find(nullptr)), m_vfs(*m_base) {
    // A library that holds another one of these may be in the same process.
    m_sName = "orvane-" + std::to_string(reinterpret_cast<std::uintptr_t>(this));
    m_vfs.zName = m_sName.c_str();
    m_vfs.pNext = nullptr;
    m_vfs.xOpen = Open;
    sqlite3_vfs_register(&m_vfs, 0);
  }
  JournalSharing(const JournalSharing&) = delete;
  JournalSharing& operator=(const JournalSharing&) = delete;
  ~JournalSharing() { sqlite3_vfs_unregister(&m_vfs); }

  const char* Name() const { return m_sName.c_str(); }

  static JournalSharing& The() {
    static JournalSharing sharing;
    return sharing;
  }

 private:
  static int Open(sqlite3_vfs*, const char* sName, sqlite3_file* file, int nFlags,
                  int* nResultFlags) {
    sqlite3_vfs* const base = The().m_base;
    const int nCode = base->xOpen(base, sName, file, nFlags, nResultFlags);
    constexpr int kNew = SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_CREATE;
    if (nCode == SQLITE_OK && (nFlags & kNew) == kNew)
      Share(sName, sqlite3_filename_database(sName));
    return nCode;
  }

  sqlite3_vfs* m_base;
  sqlite3_vfs m_vfs;
  std::string m_sName;
};

}  // namespace

const char* SharedJournals() {
  return JournalSharing::The().Name();
}

}  // namespace orvane::provider::engines
