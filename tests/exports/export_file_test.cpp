#include "exports/export_file.h"

#include <sys/file.h>
#include <sys/resource.h>
#include <sys/xattr.h>

#include <functional>

#include "files/replacement.h"
#include "platform/failure.h"
#include "tests/fakes/killed_program.h"
#include "tests/fakes/processes.h"
#include "tests/fakes/small_disk.h"
#include "tests/files/access_list.h"
#include "tests/files/temporary_folder.h"

namespace orvane::exports {
namespace {

class ExportFileTest : public files::FolderTest {
 protected:
  void Export(const std::string& sPath, const std::string& sBytes = "new") const {
    ExportFile file(sPath);
    file.Write(sBytes);
    file.Finish();
  }
  static std::string Refusal(const std::function<void()>& work) {
    try {
      work();
    } catch (const platform::Failure& failed) {
      EXPECT_EQ(failed.Number(), platform::failure::kStorage);
      return failed.Description();
    }
    return "";
  }
  std::string Hidden(const std::string& sEnd) const {
    return files::Beside(Path(), sEnd.c_str()).string();
  }
};

TEST_F(ExportFileTest, is_there_when_it_is_finished) {
  ExportFile file(Path());
  file.Write("a\r\n");
  file.Write("b\r\n");
  EXPECT_FALSE(std::filesystem::exists(Path()));
  file.Finish();
  EXPECT_EQ(BytesOf(Path()), "a\r\nb\r\n");
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(ExportFileTest, leaves_nothing_when_it_is_not_finished) {
  {
    ExportFile file(Path());
    file.Write("a");
  }
  EXPECT_EQ(FilesInFolder(), 0U);
}

TEST_F(ExportFileTest, keeps_what_stood_there_until_it_is_finished) {
  WriteBytes(Path(), "old");
  ASSERT_EQ(chmod(Path().c_str(), 0640), 0);
  {
    ExportFile file(Path());
    file.Write("new");
  }
  EXPECT_EQ(BytesOf(Path()), "old");
  ExportFile file(Path());
  file.Write("new");
  file.Finish();
  EXPECT_EQ(BytesOf(Path()), "new");
  EXPECT_EQ(FilesInFolder(), 1U);
  EXPECT_EQ(StatusOf(Path()).st_mode & 0777U, 0640U);
}

TEST_F(ExportFileTest, takes_a_mark_and_a_free_name) {
  for (const char* sName : {"rows (first 100 rows).csv", "rows (first 100 rows) (2).csv"}) {
    ExportFile file(Path("rows.csv"));
    file.Write("a");
    EXPECT_EQ(file.FinishMarked(" (first 100 rows)"), Path(sName));
    EXPECT_EQ(BytesOf(Path(sName)), "a");
  }
  EXPECT_FALSE(std::filesystem::exists(Path("rows.csv")));
}

TEST_F(ExportFileTest, says_where_it_cannot_be_written) {
  try {
    ExportFile file(Path("none/rows.csv"));
    FAIL();
  } catch (const platform::Failure& failed) {
    EXPECT_EQ(failed.Number(), platform::failure::kStorage);
    EXPECT_EQ(failed.Description(),
              "The file " + Path("none/rows.csv") +
                  " cannot be written; check that the folder exists and the disk has room.");
  }
}

TEST_F(ExportFileTest, says_that_the_disk_is_full_and_keeps_the_old_file) {
  WriteBytes(Path(), "old");
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const rlimit small{4096, before.rlim_max};
  {
    ExportFile file(Path());
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    try {
      file.Write(std::string(8192, 'x'));
      ADD_FAILURE();
    } catch (const platform::Failure& failed) {
      EXPECT_EQ(failed.Description(),
                "The disk of the file " + Path() +
                    " has no room left, so nothing was written: make room and try again.");
    }
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
  }
  EXPECT_EQ(BytesOf(Path()), "old");
  EXPECT_EQ(FilesInFolder(), 1U);
}

// Where this process may have a disk of its own, which is as small as it likes.
TEST_F(ExportFileTest, fills_a_real_disk_and_leaves_it_as_it_was) {
  constexpr int kNoDisk = 90;
  const int nEnded = fakes::InChild([&] {
    if (!tests::MountSmallDisk(Folder())) return kNoDisk;
    WriteBytes(Path(), "old");
    int nEnd = 1;
    try {
      ExportFile file(Path());
      for (int i = 0; i < 64; ++i) file.Write(std::string(4096, 'x'));
    } catch (const platform::Failure& failed) {
      const bool bTold = failed.NativeError() == ENOSPC &&
                         failed.Description() ==
                             "The disk of the file " + Path() +
                                 " has no room left, so nothing was written: make room and try "
                                 "again.";
      nEnd = bTold ? 0 : 2;
    }
    if (BytesOf(Path()) != "old" || FilesInFolder() != 1U) return 3;
    // The room is there again.
    Export(Path(), std::string(32'768, 'y'));
    return BytesOf(Path()).size() == 32'768U ? nEnd : 4;
  });
  if (nEnded == kNoDisk) GTEST_SKIP() << "this process may have no disk of its own";
  EXPECT_EQ(nEnded, 0);
}

TEST_F(ExportFileTest, says_that_a_folder_may_not_be_written) {
  ASSERT_EQ(chmod(Folder().c_str(), 0555), 0);
  EXPECT_EQ(fakes::InChild([&] {
              if (!fakes::BecomeNobody()) return 1;
              return Refusal([&] { ExportFile file(Path()); }) ==
                             "You have no right to write into the folder " + Folder() +
                                 "; ask its owner for the right or choose another folder."
                         ? 0
                         : 2;
            }),
            0);
  ASSERT_EQ(chmod(Folder().c_str(), 0755), 0);
  EXPECT_EQ(FilesInFolder(), 0U);
}

TEST_F(ExportFileTest, replaces_the_file_behind_a_link_and_not_the_link) {
  std::filesystem::create_directory(Path("far"));
  WriteBytes(Path("far/real.csv"), "old");
  std::filesystem::create_symlink("far/real.csv", Path("link.csv"));
  std::filesystem::create_symlink("link.csv", Path("link to link.csv"));
  std::filesystem::create_symlink("far/none.csv", Path("dangling.csv"));
  Export(Path("link to link.csv"));
  Export(Path("dangling.csv"));
  EXPECT_TRUE(std::filesystem::is_symlink(Path("link to link.csv")));
  EXPECT_TRUE(std::filesystem::is_symlink(Path("link.csv")));
  EXPECT_EQ(BytesOf(Path("far/real.csv")), "new");
  EXPECT_EQ(BytesOf(Path("far/none.csv")), "new");
}

TEST_F(ExportFileTest, keeps_extended_attributes_and_the_access_list) {
  WriteBytes(Path(), "old");
  if (setxattr(Path().c_str(), "user.note", "kept", 4, 0) != 0) {
    GTEST_SKIP() << "this file system has no extended attributes";
  }
  if (!files::GiveList(Path())) GTEST_SKIP() << "this file system has no access lists";
  Export(Path());
  char sValue[16];
  ASSERT_EQ(getxattr(Path().c_str(), "user.note", sValue, sizeof sValue), 4);
  EXPECT_EQ(std::string(sValue, 4), "kept");
  EXPECT_EQ(files::ListOf(Path()), files::ListOfOne());
  EXPECT_EQ(BytesOf(Path()), "new");
}

TEST_F(ExportFileTest, is_marked_open_to_those_who_may_use_the_wanted_one) {
  WriteBytes(Path(), "old");
  ASSERT_EQ(chmod(Path().c_str(), 0600), 0);
  ExportFile file(Path());
  EXPECT_EQ(ModeOf(file.FinishMarked(" (2)")), 0600U);
  EXPECT_EQ(BytesOf(Path()), "old");
}

TEST_F(ExportFileTest, keeps_owner_and_group_or_refuses_before_the_first_row) {
  if (!fakes::IsAdministrator()) GTEST_SKIP() << "only an administrator can give files away";
  constexpr uid_t kOwner = 1234;
  WriteBytes(Path(), "theirs");
  ASSERT_EQ(chown(Path().c_str(), kOwner, fakes::kNobody), 0);
  ASSERT_EQ(chmod(Path().c_str(), 0660), 0);
  ASSERT_EQ(chmod(Folder().c_str(), 0777), 0);
  const auto refusal = [&](const std::string& sRefusal) {
    return fakes::InChild([&] {
      if (!fakes::BecomeNobody()) return 1;
      return Refusal([&] { ExportFile file(Path()); }) == sRefusal ? 0 : 2;
    });
  };
  EXPECT_EQ(refusal("To replace the file " + Path() +
                    " would change its owner, group or access rights; choose another name or "
                    "folder."),
            0);
  ASSERT_EQ(chmod(Path().c_str(), 0640), 0);
  EXPECT_EQ(
      refusal("You have no right to write the file " + Path() + "; choose another name or folder."),
      0);
  EXPECT_EQ(BytesOf(Path()), "theirs");
  Export(Path());
  EXPECT_EQ(BytesOf(Path()), "new");
  EXPECT_EQ(StatusOf(Path()).st_uid, kOwner);
  EXPECT_EQ(StatusOf(Path()).st_gid, fakes::kNobody);
  EXPECT_EQ(ModeOf(Path()), 0640U);
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(ExportFileTest, replaces_files_only) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  std::filesystem::create_directory(Path("folder"));
  for (const std::string& sPath : {Path("pipe"), Path("folder")}) {
    EXPECT_EQ(Refusal([&] { ExportFile file(sPath); }),
              "The name " + sPath +
                  " stands for a folder, a device or the like and no file; choose another name.");
  }
  std::filesystem::create_symlink("loop", Path("loop"));
  EXPECT_NE(Refusal([&] { ExportFile file(Path("loop")); }), "");
  EXPECT_EQ(FilesInFolder(), 3U);
}

TEST_F(ExportFileTest, replaces_no_device) {
  if (!fakes::IsAdministrator()) GTEST_SKIP() << "only an administrator may write beside devices";
  EXPECT_EQ(Refusal([&] { ExportFile file("/dev/full"); }),
            "The name /dev/full stands for a folder, a device or the like and no file; choose "
            "another name.");
}

TEST_F(ExportFileTest, may_be_called_as_long_as_names_are) {
  const std::string sPath = Path(std::string(255, 'x'));
  Export(sPath, "old");
  Export(sPath);
  EXPECT_EQ(BytesOf(sPath), "new");
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(ExportFileTest, killed_at_any_moment_leaves_the_old_file_or_the_new_one_whole) {
  int nCall = 1;
  for (auto ended = tests::Ended::Killed; ended == tests::Ended::Killed; ++nCall) {
    WriteBytes(Path(), "old");
    ended = tests::KilledBefore(nCall, [&] { Export(Path()); });
    ASSERT_NE(ended, tests::Ended::Untraceable) << "this machine lets no process be traced";
    EXPECT_EQ(BytesOf(Path()), ended == tests::Ended::Killed ? "old" : "new")
        << "killed before the change " << nCall;
    Export(Path(), "newer");
    EXPECT_EQ(BytesOf(Path()), "newer");
    EXPECT_EQ(FilesInFolder(), 1U) << "killed before the change " << nCall;
  }
  EXPECT_GT(nCall, 4);
}

TEST_F(ExportFileTest, takes_no_name_that_another_export_is_using) {
  WriteBytes(Path(), "old");
  WriteBytes(Hidden(".0.exporting"), "another's");
  const files::Descriptor other(open(Hidden(".0.exporting").c_str(), O_RDONLY | O_CLOEXEC));
  ASSERT_EQ(flock(other.Get(), LOCK_EX | LOCK_NB), 0);
  Export(Path());
  EXPECT_EQ(BytesOf(Path()), "new");
  EXPECT_EQ(BytesOf(Hidden(".0.exporting")), "another's");
  EXPECT_EQ(FilesInFolder(), 2U);
}

}  // namespace
}  // namespace orvane::exports
