#include "component/trusted_path.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "component/registration.h"
#include "component/registry.h"
#include "component/runtime.h"
#include "platform/failure.h"
#include "tests/component/temporary_folder.h"

namespace orvane::component {
namespace {

using platform::Failure;
using test::Fixture;
using test::TemporaryFolder;
using test::WriteText;
using testing::HasSubstr;

namespace fs = std::filesystem;

constexpr uid_t kMe = 1000;
constexpr uid_t kOther = 1001;
constexpr gid_t kMyGroup = 1000;
constexpr gid_t kUsers = 100;

/// The sentence of the failure, empty when there is none.
template <class Step>
std::string FailureOrNone(Step&& step) {
  try {
    step();
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Number(), platform::failure::kComponent);
    return failure.Description();
  }
  return {};
}

std::string RefusalOfPath(const fs::path& file) {
  return FailureOrNone([&] { RequireTrusted(file); });
}

TEST(TrustedPathTest, who_may_write_decides) {
  const Trust trust{{0, kMe}, kMyGroup};
  struct Case {
    mode_t mode;
    uid_t owner;
    gid_t group;
    bool bFolderAbove;
    bool bTrusted;
    const char* sWhat;
  };
  const Case cases[] = {
      {0644, kMe, kUsers, false, true, "my file"},
      {0755, 0, 0, true, true, "a system folder"},
      {0775, 0, kUsers, false, true, "a system folder that the administrator gave to a group"},
      {0664, kMe, kMyGroup, false, true, "my file under umask 002"},
      {0775, kMe, kMyGroup, true, true, "a folder above under umask 002"},
      {0775, kMe, kUsers, false, false, "my folder, open to a group of many"},
      {0775, kMe, kUsers, true, false, "a folder above, open to a group of many"},
      {0777, kMe, kMyGroup, true, false, "a folder above, open to all"},
      {0666, kMe, kMyGroup, false, false, "my file, open to all"},
      {0757, 0, 0, true, false, "a system folder, open to all"},
      {01777, 0, 0, true, true, "the shared folder for temporary files, above"},
      {01777, 0, 0, false, false, "the same as the folder of the file"},
      {01777, kOther, kUsers, true, false, "a shared folder of another user"},
      {0755, kOther, kUsers, true, false, "a folder of another user"},
      {0600, kOther, kMyGroup, false, false, "a file of another user"},
  };
  for (const Case& it : cases) {
    struct stat status {};
    status.st_mode = it.mode;
    status.st_uid = it.owner;
    status.st_gid = it.group;
    EXPECT_EQ(IsTrusted(status, trust, it.bFolderAbove), it.bTrusted) << it.sWhat;
  }
  struct stat ofMyGroup {};
  ofMyGroup.st_mode = 0664;
  ofMyGroup.st_uid = kMe;
  ofMyGroup.st_gid = kMyGroup;
  EXPECT_FALSE(IsTrusted(ofMyGroup, {{0, kMe}, {}}, false)) << "no group is mine alone";
}

TEST(TrustedPathTest, the_administrator_this_user_and_the_programs_owner_are_trusted) {
  const auto trust = Trust::OfProcess();
  EXPECT_TRUE(trust.owners.contains(0));
  EXPECT_TRUE(trust.owners.contains(geteuid()));
  EXPECT_LE(trust.owners.size(), 3U);
}

TEST(TrustedPathTest, a_file_its_folder_and_those_above_are_looked_at) {
  const TemporaryFolder folder;
  const fs::path file = folder / "a/b/c.so";
  WriteText(file, "");
  ASSERT_EQ(RefusalOfPath(file), "");
  for (const fs::path& culprit : {file, file.parent_path(), file.parent_path().parent_path()}) {
    const auto before = fs::status(culprit).permissions();
    fs::permissions(culprit, fs::perms::others_write, fs::perm_options::add);
    EXPECT_EQ(RefusalOfPath(file),
              "\"" + file.string() + "\" is not used, since other users can change \"" +
                  culprit.string() +
                  "\"; take their right to write away from them (chmod go-w), or install the "
                  "component where only you and the administrator can write.");
    fs::permissions(culprit, before);
  }
  EXPECT_EQ(RefusalOfPath(file), "");
}

TEST(TrustedPathTest, links_are_followed_by_way_of_their_own_folders) {
  const TemporaryFolder folder;
  WriteText(folder / "good/lib.so", "");
  fs::create_directories(folder / "open");
  fs::create_directories(folder / "mine");
  fs::create_symlink("../good", folder / "open/link");
  fs::create_symlink(folder / "open/link", folder / "mine/link");
  EXPECT_EQ(RefusalOfPath(folder / "mine/link/lib.so"), "");
  fs::permissions(folder / "open", fs::perms::others_write, fs::perm_options::add);
  EXPECT_THAT(RefusalOfPath(folder / "mine/link/lib.so"),
              HasSubstr((folder / "open").string() + "\";"));
  EXPECT_EQ(RefusalOfPath(folder / "good/lib.so"), "");
  fs::create_symlink("round", folder / "mine/round");
  EXPECT_EQ(RefusalOfPath(folder / "mine/round"), "") << "whoever opens it is told";
}

TEST(TrustedPathTest, a_sticky_folder_may_be_above_but_not_hold_the_file) {
  const TemporaryFolder folder;
  WriteText(folder / "own/lib.so", "");
  WriteText(folder / "lib.so", "");
  ASSERT_EQ(chmod(folder.Path().c_str(), 01777), 0);
  EXPECT_EQ(RefusalOfPath(folder / "own/lib.so"), "");
  EXPECT_THAT(RefusalOfPath(folder / "lib.so"), HasSubstr(folder.Path().string() + "\";"));
}

TEST(TrustedPathTest, what_stands_in_a_sticky_folder_must_have_a_trusted_owner) {
  const TemporaryFolder folder;
  WriteText(folder / "own/lib.so", "");
  ASSERT_EQ(chmod(folder.Path().c_str(), 01777), 0);
  if (geteuid() != 0) GTEST_SKIP() << "only an administrator can give files away";
  ASSERT_EQ(lchown((folder / "own").c_str(), 4711, 4711), 0);
  EXPECT_THAT(RefusalOfPath(folder / "own/lib.so"), HasSubstr((folder / "own").string() + "\";"));
  fs::create_directories(folder / "good");
  fs::create_symlink("good", folder / "link");
  WriteText(folder / "good/lib.so", "");
  EXPECT_EQ(RefusalOfPath(folder / "link/lib.so"), "");
  ASSERT_EQ(lchown((folder / "link").c_str(), 4711, 4711), 0);
  EXPECT_THAT(RefusalOfPath(folder / "link/lib.so"), HasSubstr((folder / "link").string() + "\";"));
}

TEST(TrustedPathTest, what_is_not_there_is_no_failure) {
  const TemporaryFolder folder;
  EXPECT_EQ(RefusalOfPath(folder / "absent/lib.so"), "");
}

TEST(TrustedPathTest, nothing_is_loaded_from_a_folder_that_others_can_write) {
  const TemporaryFolder folder;
  fs::create_directories(folder / "lib");
  const auto library = folder / "lib/libgood.so";
  fs::copy_file(Fixture("good"), library);
  RegisterLibrary(library, folder / "registry");
  const auto create = [&] {
    Runtime runtime{Registry({folder / "registry"})};
    runtime.CreateInstance("Fixture.Note", {});
  };
  EXPECT_EQ(FailureOrNone(create), "");
  for (const char* sFolder : {"lib", "registry"}) {
    fs::permissions(folder / sFolder, fs::perms::others_write, fs::perm_options::add);
    EXPECT_THAT(FailureOrNone(create),
                HasSubstr("since other users can change \"" + (folder / sFolder).string() + "\""));
    fs::permissions(folder / sFolder, fs::perms::others_write, fs::perm_options::remove);
  }
  fs::permissions(folder / "lib", fs::perms::others_write, fs::perm_options::add);
  EXPECT_THAT(FailureOrNone([&] { RegisterLibrary(library, folder / "other"); }),
              HasSubstr("is not used"))
      << "registering runs code of it too";
}

TEST(TrustedPathTest, a_registry_made_under_any_umask_is_used) {
  const TemporaryFolder folder;
  const mode_t before = umask(0);
  RegisterLibrary(Fixture("good"), folder / "made/when/needed");
  umask(before);
  EXPECT_EQ(FailureOrNone([&] { Registry({folder / "made/when/needed"}).Find("Fixture.Note"); }),
            "");
}

TEST(TrustedPathTest, nothing_is_registered_where_others_can_write) {
  const TemporaryFolder folder;
  fs::permissions(folder.Path(), fs::perms::others_write, fs::perm_options::add);
  EXPECT_THAT(FailureOrNone([&] { RegisterLibrary(Fixture("good"), folder.Path()); }),
              HasSubstr("is not used, since other users can change"));
  EXPECT_FALSE(fs::exists(folder / "fixture.note.json"));
}

}  // namespace
}  // namespace orvane::component
