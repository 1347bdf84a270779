#include "files/attributes.h"

#include <fcntl.h>

#include <functional>
#include <vector>

#include "files/access_list.h"
#include "tests/fakes/processes.h"
#include "tests/files/access_list.h"
#include "tests/files/temporary_folder.h"

namespace orvane::files {
namespace {

class attributes : public FolderTest {
 protected:
  void SetUp() override {
    WriteBytes(Path("old"), "old");
    WriteBytes(Path("new"), "new");
    ASSERT_EQ(chmod(Path("new").c_str(), 0600), 0);
  }
  static Descriptor Opened(const std::string& sPath) {
    return Descriptor(open(sPath.c_str(), O_RDWR | O_CLOEXEC));
  }
};

TEST_F(attributes, access_is_taken_over_and_nothing_else) {
  ASSERT_EQ(chmod(Path("old").c_str(), 04754), 0);
  const auto before = StatusOf(Path("new"));
  EXPECT_TRUE(TakeAccess(Path("old"), Opened(Path("new"))));
  EXPECT_EQ(ModeOf(Path("new")), 0644U);
  EXPECT_EQ(StatusOf(Path("new")).st_uid, before.st_uid);
  EXPECT_EQ(StatusOf(Path("new")).st_gid, StatusOf(Path("old")).st_gid);
  EXPECT_EQ(BytesOf(Path("new")), "new");
}

TEST_F(attributes, access_lists_are_taken_over_with_it) {
  if (!GiveList(Path("old"))) GTEST_SKIP() << "this file system has no access lists";
  EXPECT_TRUE(TakeAccess(Path("old"), Opened(Path("new"))));
  EXPECT_EQ(ListOf(Path("new")), ListOfOne());
  EXPECT_EQ(ModeOf(Path("new")), 0660U);
}

TEST_F(attributes, access_lists_that_the_old_file_has_not_are_taken_away) {
  if (!GiveList(Path("new"))) GTEST_SKIP() << "this file system has no access lists";
  EXPECT_TRUE(TakeAccess(Path("old"), Opened(Path("new"))));
  EXPECT_EQ(ListOf(Path("new")), "");
  EXPECT_EQ(ModeOf(Path("new")), ModeOf(Path("old")));
}

TEST_F(attributes, a_group_is_given_by_one_who_is_in_it_only) {
  if (!fakes::IsAdministrator()) GTEST_SKIP() << "only an administrator can become somebody else";
  constexpr gid_t kGroup = 65530;
  ASSERT_EQ(chown(Path("old").c_str(), 1234, kGroup), 0);
  ASSERT_EQ(chmod(Path("old").c_str(), 0640), 0);
  ASSERT_EQ(chown(Path("new").c_str(), fakes::kNobody, fakes::kNobody), 0);
  ASSERT_EQ(chmod(Folder().c_str(), 0755), 0);
  const auto take = [&](const std::vector<gid_t>& groups) {
    return fakes::InChild([&] {
      if (setgroups(groups.size(), groups.data()) != 0 || setgid(fakes::kNobody) != 0 ||
          setuid(fakes::kNobody) != 0) {
        return 2;
      }
      return TakeAccess(Path("old"), Opened(Path("new"))) ? 0 : 1;
    });
  };
  EXPECT_EQ(take({}), 1);
  EXPECT_EQ(ModeOf(Path("new")), 0600U);
  EXPECT_EQ(take({kGroup}), 0);
  EXPECT_EQ(ModeOf(Path("new")), 0640U);
  EXPECT_EQ(StatusOf(Path("new")).st_uid, fakes::kNobody);
  EXPECT_EQ(StatusOf(Path("new")).st_gid, kGroup);
}

TEST_F(attributes, who_may_use_a_file_is_listed_where_its_group_cannot_be_given) {
  if (!fakes::IsAdministrator()) GTEST_SKIP() << "only an administrator can become somebody else";
  constexpr uid_t kOwner = 65531;
  constexpr gid_t kGroup = 65530;
  constexpr uid_t kNamed = 1234;  // in the list
  constexpr uid_t kOther = 4321;
  if (!GiveList(Path("old"))) GTEST_SKIP() << "this file system has no access lists";
  ASSERT_EQ(chown(Path("old").c_str(), kOwner, kGroup), 0);
  ASSERT_EQ(chown(Path("new").c_str(), fakes::kNobody, fakes::kNobody), 0);
  ASSERT_EQ(chmod(Path("new").c_str(), 0660), 0);
  ASSERT_EQ(chmod(Folder().c_str(), 0755), 0);
  const auto as = [&](uid_t user, gid_t group, const std::function<bool()>& work) {
    return fakes::InChild([&] {
      if (setgroups(0, nullptr) != 0 || setgid(group) != 0 || setuid(user) != 0) return 2;
      return work() ? 0 : 1;
    });
  };
  ASSERT_EQ(as(fakes::kNobody, fakes::kNobody,
               [&] { return ListAccess(Path("old"), Opened(Path("new"))); }),
            0);
  const auto may = [&](uid_t user, gid_t group) {
    std::string sMay;
    if (as(user, group, [&] { return access(Path("new").c_str(), R_OK) == 0; }) == 0) sMay += "r";
    if (as(user, group, [&] { return access(Path("new").c_str(), W_OK) == 0; }) == 0) sMay += "w";
    return sMay;
  };
  EXPECT_EQ(may(fakes::kNobody, 1), "rw");
  EXPECT_EQ(may(kOwner, 1), "rw");
  EXPECT_EQ(may(kNamed, 1), "rw");
  EXPECT_EQ(may(kOther, kGroup), "r");
  EXPECT_EQ(may(kOther, fakes::kNobody), "");
  EXPECT_EQ(may(kOther, 1), "");
  // The same by the mode alone, with the others in it.
  ASSERT_EQ(removexattr(Path("old").c_str(), kAccessList), 0);
  ASSERT_EQ(chmod(Path("old").c_str(), 0664), 0);
  ASSERT_EQ(as(fakes::kNobody, fakes::kNobody,
               [&] { return ListAccess(Path("old"), Opened(Path("new"))); }),
            0);
  EXPECT_EQ(may(kOwner, 1), "rw");
  EXPECT_EQ(may(kOther, kGroup), "rw");
  EXPECT_EQ(may(kNamed, 1), "r");
}

TEST_F(attributes, all_of_them_are_taken_over_by_an_administrator) {
  if (!fakes::IsAdministrator()) GTEST_SKIP() << "only an administrator can give files away";
  ASSERT_EQ(chown(Path("old").c_str(), 1234, 65530), 0);
  ASSERT_EQ(chmod(Path("old").c_str(), 02640), 0);
  EXPECT_TRUE(TakeAttributes(Opened(Path("old")), Opened(Path("new"))));
  EXPECT_EQ(ModeOf(Path("new")), 02640U);
  EXPECT_EQ(StatusOf(Path("new")).st_uid, 1234U);
  EXPECT_EQ(StatusOf(Path("new")).st_gid, 65530U);
}

}  // namespace
}  // namespace orvane::files
