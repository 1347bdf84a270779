// The journals of catalogs that several users change: whoever may write one may take back what a
// killed colleague left half done.
#include <fstream>

#include "provider/engines/sqlite/sqlite_handle.h"
#include "tests/fakes/killed_program.h"
#include "tests/files/access_list.h"
#include "tests/provider/historian/colleagues.h"

namespace orvane::provider::historian {
namespace {

using platform::Text;
namespace fs = std::filesystem;

class shared_journals : public ColleaguesFixture {
 protected:
  void SetUp() override {
    if (!m_bAdministrator) GTEST_SKIP() << "only an administrator can become somebody else";
    GiveRootToOwner();
    ASSERT_EQ(CreatePlantAsOwner(), 0);
    ShareWithGroup();
  }
  int Write() { return Rows(*Open()->Find("Plant1", {})) == "1" ? 0 : 1; }
  // A colleague whose own group is another one is killed before the n-th change that he makes.
  tests::Ended KillColleague(int nCall, bool bOfGroup = true) {
    return tests::KilledBefore(nCall, [&] {
      if (setgroups(bOfGroup ? 1 : 0, &kGroup) != 0 || setgid(kColleaguesGroup) != 0 ||
          setuid(kColleague) != 0) {
        _exit(1);
      }
      Write();
    });
  }

  fs::path m_file = m_root.Historian() / "catalogs" / "Plant1.db";
  fs::path m_journal = m_file.string() + "-journal";
};

TEST_F(shared_journals, of_a_killed_colleague_are_taken_back_by_the_owner) {
  int nJournals = 0;
  int nCall = 1;
  for (;; ++nCall) {
    const tests::Ended ended = KillColleague(nCall);
    ASSERT_NE(ended, tests::Ended::Untraceable) << "this machine lets no process be traced";
    struct stat journal {};
    if (stat(m_journal.c_str(), &journal) == 0 && journal.st_size > 0) {
      ++nJournals;
      EXPECT_EQ(journal.st_uid, kColleague);
      EXPECT_EQ(journal.st_gid, kGroup);
      EXPECT_EQ(journal.st_mode & 07777U, 0660U);
    }
    EXPECT_EQ(As(kOwner, [&] { return Write(); }), 0) << "killed before the change " << nCall;
    EXPECT_FALSE(fs::exists(m_journal));
    if (ended != tests::Ended::Killed) break;
  }
  EXPECT_GT(nJournals, 2);
}

TEST_F(shared_journals, of_one_who_is_not_of_the_group_are_taken_back_by_the_owner) {
  Share(0777, 0666);
  ASSERT_EQ(chmod(m_file.c_str(), 0600), 0);
  // The catalog's own list names the colleague.
  if (!files::GiveList(m_file.string(), files::kAccessList, kColleague)) {
    GTEST_SKIP() << "this file system has no access lists";
  }
  int nJournals = 0;
  for (int nCall = 1;; ++nCall) {
    const tests::Ended ended = KillColleague(nCall, false);
    if (fs::exists(m_journal) && fs::file_size(m_journal) > 0) ++nJournals;
    ASSERT_EQ(As(kOwner, [&] { return Write(); }), 0) << "killed before the change " << nCall;
    if (ended != tests::Ended::Killed) break;
  }
  EXPECT_GT(nJournals, 2);
}

TEST_F(shared_journals, open_no_file_that_was_put_in_their_place) {
  const fs::path secret = m_file.parent_path() / "secret";
  EXPECT_EQ(As(
                kOwner,
                [&] {
                  const auto opened = engines::OpenDatabase(m_file.c_str(), SQLITE_OPEN_READWRITE);
                  std::ofstream(secret).flush();
                  fs::create_hard_link(secret, m_journal);
                  return sqlite3_exec(opened.database.get(),
                                      "BEGIN; INSERT INTO Tags (Tag) VALUES ('T')", nullptr,
                                      nullptr, nullptr);
                },
                kColleaguesGroup),
            0);
  struct stat status {};
  ASSERT_EQ(stat(secret.c_str(), &status), 0);
  EXPECT_GT(status.st_size, 0);
  EXPECT_EQ(status.st_gid, kColleaguesGroup);
}

TEST_F(shared_journals, that_are_kept_from_the_owner_are_named) {
  for (int nCall = 1; !fs::exists(m_journal) || fs::file_size(m_journal) < 1024; ++nCall) {
    ASSERT_EQ(KillColleague(nCall), tests::Ended::Killed);
  }
  // As older versions left it in a folder that is not of the group.
  ASSERT_EQ(chown(m_journal.c_str(), kColleague, kColleaguesGroup), 0);
  EXPECT_EQ(As(kOwner,
               [&] {
                 const Text sFailure = FailureOf([&] { Write(); });
                 return sFailure ==
                                "3801: The catalog \"Plant1\" cannot be opened: a program of "
                                "another user broke off in the middle of a change, and you "
                                "have no right to its journal \"" +
                                    m_journal.string() +
                                    "\"; ask the owner of that file to open the catalog once, "
                                    "or an administrator for the right to it."
                            ? 0
                            : 1;
               }),
            0);
  EXPECT_EQ(As(
                kColleague, [&] { return Write(); }, kColleaguesGroup),
            0);
  EXPECT_EQ(As(kOwner, [&] { return Write(); }), 0);
}

}  // namespace
}  // namespace orvane::provider::historian
