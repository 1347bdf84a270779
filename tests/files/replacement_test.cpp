#include "files/replacement.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/xattr.h>

#include <system_error>
#include <utility>

#include "tests/fakes/killed_program.h"
#include "tests/fakes/processes.h"
#include "tests/files/access_list.h"
#include "tests/files/temporary_folder.h"

namespace orvane::files {
namespace {

namespace fs = std::filesystem;
using fakes::InChild;
using platform::Text;

int ErrorOf(const Text& sPath, const Text& sBytes, const ReplaceOptions& options = {}) {
  try {
    Replace(sPath, sBytes, options);
  } catch (const std::system_error& e) {
    return e.code().value();
  }
  return 0;
}

class replacement : public FolderTest {};

TEST_F(replacement, makes_a_file_that_was_not_there) {
  const Descriptor file = Replace(Path(), "new");
  EXPECT_EQ(BytesOf(Path()), "new");
  EXPECT_TRUE(IsUnderName(file, Path().c_str()));
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(replacement, leaves_whoever_reads_the_old_file_with_all_of_its_bytes) {
  WriteBytes(Path(), "all of the old");
  const Descriptor old(open(Path().c_str(), O_RDONLY | O_CLOEXEC));
  Replace(Path(), "new");
  Text sBytes;
  ASSERT_EQ(ReadAt(old, 0, 100, sBytes), 0);
  EXPECT_EQ(sBytes, "all of the old");
  EXPECT_EQ(BytesOf(Path()), "new");
}

TEST_F(replacement, gives_a_new_file_its_mode_whatever_the_umask) {
  for (const mode_t mask : {0000U, 0022U, 0777U}) {
    const mode_t before = umask(mask);
    Replace(Path("a"), "x");
    Replace(Path("b"), "x", {.mode = 0644});
    umask(before);
    EXPECT_EQ(ModeOf(Path("a")), 0600U);
    EXPECT_EQ(ModeOf(Path("b")), 0644U);
    fs::remove(Path("a"));
    fs::remove(Path("b"));
  }
}

TEST_F(replacement, keeps_the_mode_of_the_old_file) {
  WriteBytes(Path(), "old");
  ASSERT_EQ(chmod(Path().c_str(), 02640), 0);
  Replace(Path(), "new", {.mode = 0600});
  EXPECT_EQ(ModeOf(Path()), 02640U);
}

TEST_F(replacement, makes_it_like_a_new_one_where_nothing_is_to_be_kept) {
  WriteBytes(Path(), "old");
  ASSERT_EQ(chmod(Path().c_str(), 0666), 0);
  Replace(Path(), "new", {.mode = 0644, .bKeep = false});
  EXPECT_EQ(ModeOf(Path()), 0644U);
  EXPECT_EQ(BytesOf(Path()), "new");
}

TEST_F(replacement, keeps_extended_attributes) {
  WriteBytes(Path(), "old");
  if (setxattr(Path().c_str(), "user.note", "kept", 4, 0) != 0) {
    GTEST_SKIP() << "this file system has no extended attributes";
  }
  const auto before = StatusOf(Path()).st_ino;
  Replace(Path(), "new");
  char sValue[16];
  ASSERT_EQ(getxattr(Path().c_str(), "user.note", sValue, sizeof sValue), 4);
  EXPECT_EQ(Text(sValue, 4), "kept");
  EXPECT_NE(StatusOf(Path()).st_ino, before);
}

TEST_F(replacement, keeps_the_access_list) {
  WriteBytes(Path(), "old");
  if (!GiveList(Path())) GTEST_SKIP() << "this file system has no access lists";
  Replace(Path(), "new");
  EXPECT_EQ(ListOf(Path()), ListOfOne());
  EXPECT_EQ(BytesOf(Path()), "new");
}

TEST_F(replacement, takes_no_access_list_from_the_folder_that_the_old_file_had_not) {
  WriteBytes(Path(), "old");
  if (!GiveList(Folder(), kDefaultList)) GTEST_SKIP() << "this file system has no access lists";
  Replace(Path(), "new");
  EXPECT_EQ(ListOf(Path()), "");
  EXPECT_EQ(ModeOf(Path()), 0644U);
}

class replacement_of_anothers : public replacement {
 protected:
  /// A file of user 1234 that the group may write, in a folder of the group.
  void SetUp() override {
    WriteBytes(Path(), "theirs");
    if (!fakes::IsAdministrator()) GTEST_SKIP() << "only an administrator can give files away";
    ASSERT_EQ(chown(Path().c_str(), 1234, fakes::kNobody), 0);
    ASSERT_EQ(chmod(Path().c_str(), 0660), 0);
    ASSERT_EQ(chown(Folder().c_str(), 1234, fakes::kNobody), 0);
    ASSERT_EQ(chmod(Folder().c_str(), 0770), 0);
  }
  void ExpectTheirs() {
    EXPECT_EQ(StatusOf(Path()).st_uid, 1234U);
    EXPECT_EQ(StatusOf(Path()).st_gid, fakes::kNobody);
    EXPECT_EQ(ModeOf(Path()), 0660U);
    EXPECT_EQ(FilesInFolder(), 1U);
  }
};

TEST_F(replacement_of_anothers, keeps_owner_and_group_when_an_administrator_does_it) {
  const Descriptor file = Replace(Path(), "new");
  EXPECT_TRUE(file);
  EXPECT_EQ(BytesOf(Path()), "new");
  ExpectTheirs();
}

TEST_F(replacement_of_anothers, writes_the_file_itself_when_one_of_the_group_does_it) {
  for (const Text& sBytes : {Text(100000, 'x'), Text("short"), Text()}) {
    const auto before = StatusOf(Path()).st_ino;
    EXPECT_EQ(InChild([&] {
                if (!fakes::BecomeNobody()) return 1;
                return Replace(Path(), sBytes) ? 2 : 0;
              }),
              0);
    EXPECT_EQ(BytesOf(Path()), sBytes);
    EXPECT_EQ(StatusOf(Path()).st_ino, before);
    ExpectTheirs();
  }
}

TEST_F(replacement_of_anothers, leaves_it_whole_when_the_new_bytes_do_not_fit) {
  EXPECT_EQ(InChild([&] {
              if (!fakes::BecomeNobody()) return 1;
              const rlimit limit{4096, 4096};
              if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 2;
              return ErrorOf(Path(), Text(100000, 'x')) == EFBIG ? 0 : 3;
            }),
            0);
  EXPECT_EQ(BytesOf(Path()), "theirs");
  ExpectTheirs();
}

/// A disk that fails after the first bytes, at every write.
int WriteThree(const Descriptor& file, std::size_t nFrom, std::string_view sBytes) {
  WriteAt(file, nFrom, sBytes.substr(0, 3));
  return EIO;
}

TEST_F(replacement_of_anothers, that_cannot_be_put_back_leaves_the_new_bytes_whole_beside_it) {
  EXPECT_EQ(InChild([&] {
              if (!fakes::BecomeNobody()) return 1;
              try {
                Replace(Path(), "mine", {.write = WriteThree});
              } catch (const NotPutBack& e) {
                return e.code().value() == EIO ? 0 : 2;
              }
              return 3;
            }),
            0);
  EXPECT_EQ(BytesOf(Path()), "theirs");
  EXPECT_EQ(BytesOf(SuccessorOf(Path()).string()), "mine");
  const Descriptor left(open(SuccessorOf(Path()).c_str(), O_RDONLY | O_CLOEXEC));
  EXPECT_TRUE(TryLock(left));
}

/// A disk that takes half of what it is given.
int WriteHalf(const Descriptor& file, std::size_t nFrom, std::string_view sBytes) {
  WriteAt(file, nFrom, sBytes.substr(0, sBytes.size() / 2));
  return EIO;
}

/// The same, but what is put back afterwards is written.
int WriteHalfOnce(const Descriptor& file, std::size_t nFrom, std::string_view sBytes) {
  static bool s_bFailed = false;
  return std::exchange(s_bFailed, true) ? WriteAt(file, nFrom, sBytes)
                                        : WriteHalf(file, nFrom, sBytes);
}

TEST_F(replacement_of_anothers, that_fails_again_keeps_one_whole_copy) {
  const auto save = [&](const Text& sBytes, WriteFunction write) {
    return InChild([&] {
      if (!fakes::BecomeNobody()) return 1;
      const rlimit limit{4096, 4096};
      if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 2;
      try {
        Replace(Path(), sBytes, {.write = write});
      } catch (const NotPutBack&) {
        return 10;
      } catch (const std::system_error&) {
        return 20;
      }
      return 0;
    });
  };
  const auto copy = [&] { return BytesOf(SuccessorOf(Path()).string()); };
  EXPECT_EQ(save("the first", WriteHalf), 10);
  EXPECT_EQ(copy(), "the first");
  // The new bytes do not fit.
  EXPECT_EQ(save(Text(100000, 'x'), WriteAt), 20);
  EXPECT_EQ(copy(), "the first");
  EXPECT_EQ(FilesInFolder(), 2U);
  // What was put back is no whole file either.
  EXPECT_EQ(save("the second", WriteHalfOnce), 10);
  EXPECT_EQ(copy(), "the second");
  EXPECT_EQ(save("the third", WriteAt), 0);
  EXPECT_EQ(BytesOf(Path()), "the third");
  ExpectTheirs();
}

TEST_F(replacement_of_anothers, that_is_killed_after_one_that_failed_keeps_one_whole_copy) {
  int nCall = 1;
  for (auto ended = tests::Ended::Killed; ended == tests::Ended::Killed; ++nCall) {
    WriteBytes(Path(), "half");
    WriteBytes(SuccessorOf(Path()).string(), "the first");
    ASSERT_EQ(chown(SuccessorOf(Path()).c_str(), fakes::kNobody, fakes::kNobody), 0);
    ended = tests::KilledBefore(nCall, [&] {
      if (fakes::BecomeNobody()) Replace(Path(), "the second");
    });
    ASSERT_NE(ended, tests::Ended::Untraceable) << "this machine lets no process be traced";
    const Text sCopy = BytesOf(SuccessorOf(Path()).string());
    EXPECT_TRUE(BytesOf(Path()) == "the second" || sCopy == "the first" || sCopy == "the second")
        << "killed before the change " << nCall;
  }
  EXPECT_GT(nCall, 5);
  ExpectTheirs();
}

/// True for bytes that were written as a whole: of one kind, and as many as that kind has.
bool IsWhole(const Text& sBytes) {
  return !sBytes.empty() && sBytes.find_first_not_of(sBytes[0]) == Text::npos &&
         sBytes.size() == std::size_t{100000} * static_cast<unsigned char>(sBytes[0]);
}

TEST_F(replacement_of_anothers, that_is_killed_leaves_it_whole_or_its_owner_the_new_bytes) {
  const auto bytes = [](int i) {
    return Text(std::size_t{100000} * static_cast<std::size_t>(i % 20 + 1),
                static_cast<char>(i % 20 + 1));
  };
  WriteBytes(Path(), bytes(0));
  for (int iRound = 0; iRound < 20; ++iRound) {
    int pipeEnds[2];
    ASSERT_EQ(pipe(pipeEnds), 0);
    const pid_t child = fork();
    if (child == 0) {
      if (!fakes::BecomeNobody()) _exit(1);
      for (int i = 1;; ++i) {
        if (write(pipeEnds[1], "x", 1) != 1) _exit(2);
        Replace(Path(), bytes(i));
      }
    }
    char c = 0;
    for (int n = 0; n <= iRound % 4; ++n) ASSERT_EQ(read(pipeEnds[0], &c, 1), 1);
    usleep(static_cast<useconds_t>(iRound * 300));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    close(pipeEnds[0]);
    close(pipeEnds[1]);
    if (IsWhole(BytesOf(Path()))) continue;
    EXPECT_EQ(InChild([&] {
                if (setgroups(0, nullptr) != 0 || setgid(fakes::kNobody) != 0) return 1;
                if (setuid(1234) != 0) return 2;
                return IsWhole(BytesOf(SuccessorOf(Path()).string())) ? 0 : 3;
              }),
              0);
    WriteBytes(Path(), bytes(0));
  }
  Replace(Path(), "at last");
  EXPECT_EQ(BytesOf(Path()), "at last");
  ExpectTheirs();
}

TEST_F(replacement_of_anothers, is_refused_where_one_may_not_write) {
  ASSERT_EQ(chmod(Path().c_str(), 0640), 0);
  EXPECT_EQ(InChild([&] {
              if (!fakes::BecomeNobody()) return 1;
              return ErrorOf(Path(), "mine") == EACCES ? 0 : 2;
            }),
            0);
  EXPECT_EQ(BytesOf(Path()), "theirs");
}

TEST_F(replacement, keeps_symbolic_links) {
  fs::create_directory(Path("real"));
  WriteBytes(Path("real/file"), "old");
  fs::create_symlink("real/file", Path("one"));
  fs::create_symlink("one", Path("two"));
  Replace(Path("two"), "new");
  EXPECT_TRUE(fs::is_symlink(Path("one")));
  EXPECT_TRUE(fs::is_symlink(Path("two")));
  EXPECT_EQ(BytesOf(Path("real/file")), "new");
  EXPECT_FALSE(fs::exists(Path("real/.file.saving")));
}

TEST_F(replacement, of_a_circle_of_links_is_refused) {
  fs::create_symlink("b", Path("a"));
  fs::create_symlink("a", Path("b"));
  EXPECT_EQ(ErrorOf(Path("a"), "x"), ELOOP);
}

TEST_F(replacement, of_what_is_no_file_is_refused) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(ErrorOf(Path("pipe"), "x"), EINVAL);
  EXPECT_EQ(ErrorOf(Folder(), "x"), EISDIR);
}

TEST_F(replacement, clears_what_a_crash_left_and_follows_no_link_in_its_place) {
  WriteBytes(Path("other"), "other");
  fs::create_symlink("other", SuccessorOf(Path()));
  Replace(Path(), "new");
  EXPECT_EQ(BytesOf(Path()), "new");
  EXPECT_FALSE(fs::is_symlink(Path()));
  EXPECT_EQ(BytesOf(Path("other")), "other");
  WriteBytes(SuccessorOf(Path()).string(), "half");
  Replace(Path(), "newer");
  EXPECT_EQ(BytesOf(Path()), "newer");
  EXPECT_EQ(FilesInFolder(), 2U);
}

TEST_F(replacement, waits_for_nobody_who_is_replacing_the_same_file) {
  WriteBytes(SuccessorOf(Path()).string(), "half");
  const Descriptor others(open(SuccessorOf(Path()).c_str(), O_RDONLY | O_CLOEXEC));
  ASSERT_TRUE(TryLock(others));
  EXPECT_EQ(ErrorOf(Path(), "new"), EBUSY);
  EXPECT_EQ(BytesOf(SuccessorOf(Path()).string()), "half");
}

TEST_F(replacement, of_a_file_with_the_longest_name_works) {
  const Text sName = Path(Text(255, 'n'));
  Replace(sName, "one");
  Replace(sName, "two");
  EXPECT_EQ(BytesOf(sName), "two");
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(replacement, that_does_not_fit_leaves_the_old_file_whole) {
  WriteBytes(Path(), "old");
  EXPECT_EQ(InChild([&] {
              const rlimit limit{4096, 4096};
              if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
              if (ErrorOf(Path(), Text(100000, 'x')) != EFBIG) return 2;
              // What fits is written all the same.
              return ErrorOf(Path("small"), "fits");
            }),
            0);
  EXPECT_EQ(BytesOf(Path()), "old");
  EXPECT_EQ(BytesOf(Path("small")), "fits");
  EXPECT_EQ(FilesInFolder(), 2U);
}

}  // namespace
}  // namespace orvane::files
