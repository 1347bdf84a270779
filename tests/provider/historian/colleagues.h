// Users of one group who share a historian, for the tests of what each of them may do.
#pragma once

#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <exception>

#include "tests/provider/historian/historian_fixture.h"

namespace orvane::provider::historian {

constexpr uid_t kOwner = 65531;
constexpr uid_t kColleague = 65532;
constexpr gid_t kGroup = 65530;
constexpr gid_t kColleaguesGroup = 65529;

/// Does the work as that user of the group, where root runs the tests, otherwise as the same user,
/// and ends like a killed program, with all still open. Gives what the work has returned: an exit
/// status.
template <class Work>
int As(uid_t user, Work&& work, gid_t group = kGroup) {
  const pid_t child = fork();
  if (child == 0) {
    umask(0);
    int nStatus = 99;
    if (geteuid() != 0 || (setgroups(1, &kGroup) == 0 && setgid(group) == 0 && setuid(user) == 0)) {
      try {
        nStatus = work();
      } catch (const std::exception&) {
        nStatus = 98;
      }
    }
    _exit(nStatus);
  }
  int nStatus = 0;
  waitpid(child, &nStatus, 0);
  return WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1;
}

class ColleaguesFixture : public HistorianFixture {
 protected:
  // Only an administrator can become somebody else.
  const bool m_bAdministrator = geteuid() == 0;

  void GiveRootToOwner() const {
    if (m_bAdministrator) {
      ASSERT_EQ(chown(m_root.Path().c_str(), kOwner, kGroup), 0);
    }
  }
  void ShareWithGroup(mode_t nFiles = 0660) const { Share(0770, nFiles); }
  void Share(mode_t nFolders, mode_t nFiles) const {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(m_root.Path())) {
      ASSERT_EQ(chmod(entry.path().c_str(), entry.is_directory() ? nFolders : nFiles), 0);
    }
    ASSERT_EQ(chmod(m_root.Path().c_str(), nFolders), 0);
  }
  int CreatePlantAsOwner() {
    return As(kOwner, [&] { return Open()->CreateCatalog("Plant1", "", 0, {}).sName != "Plant1"; });
  }
};

}  // namespace orvane::provider::historian
