#include "files/own_log.h"

#include <fcntl.h>
#include <sys/resource.h>

#include "tests/fakes/processes.h"
#include "tests/files/temporary_folder.h"

namespace orvane::files {
namespace {

namespace fs = std::filesystem;
using platform::Text;

constexpr const char* kHeader = "# a log";

class own_log : public FolderTest {
 protected:
  LogRefusal Append(const Text& sPath, const Text& sLine = "line\n") {
    const auto log = OpenOwnLog(sPath, kHeader);
    if (log.refusal == LogRefusal::None) AppendLine(log.file, sLine);
    EXPECT_EQ(log.refusal == LogRefusal::None, static_cast<bool>(log.file));
    return log.refusal;
  }
};

TEST_F(own_log, begins_a_new_file_that_is_its_owners_alone) {
  const mode_t before = umask(0);
  EXPECT_EQ(Append(Path()), LogRefusal::None);
  umask(before);
  EXPECT_EQ(BytesOf(Path()), "# a log\nline\n");
  EXPECT_EQ(ModeOf(Path()), 0600U);
}

TEST_F(own_log, makes_its_folders_for_its_owner_alone) {
  const mode_t before = umask(0);
  EXPECT_EQ(Append(Path("new/folder/log")), LogRefusal::None);
  umask(before);
  EXPECT_EQ(ModeOf(Path("new")), 0700U);
  EXPECT_EQ(ModeOf(Path("new/folder")), 0700U);
}

TEST_F(own_log, makes_no_folder_behind_a_link_of_somebody_else) {
  if (!fakes::IsAdministrator()) GTEST_SKIP() << "only an administrator can give links away";
  fs::create_directory(Path("elsewhere"));
  fs::create_directory_symlink(Path("elsewhere"), Path("link"));
  ASSERT_EQ(lchown(Path("link").c_str(), fakes::kNobody, fakes::kNobody), 0);
  EXPECT_EQ(Append(Path("link/new/log")), LogRefusal::Link);
  EXPECT_TRUE(fs::is_empty(Path("elsewhere")));
}

TEST_F(own_log, goes_on_in_a_log_of_its_kind_and_in_an_empty_file) {
  WriteBytes(Path(), "");
  Append(Path(), "one\n");
  Append(Path(), "two\n");
  EXPECT_EQ(BytesOf(Path()), "# a log\none\ntwo\n");
}

TEST_F(own_log, leaves_every_other_file_as_it_is) {
  for (const Text& sBytes :
       {Text("alias ls=rm\n"),
        Text("# a log"
             "ger\n"),
        Text("\n"), Text("# a lo\n# a log\n"), Text(" # a log\n"), Text(1, '\0')}) {
    WriteBytes(Path(), sBytes);
    EXPECT_EQ(Append(Path()), LogRefusal::NoLog);
    EXPECT_EQ(BytesOf(Path()), sBytes);
  }
}

TEST_F(own_log, completes_a_header_that_a_full_disk_cut_off) {
  EXPECT_EQ(fakes::InChild([&] {
              const rlimit limit{4, 4};
              if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
              return Append(Path()) == LogRefusal::None ? 0 : 2;
            }),
            0);
  EXPECT_EQ(BytesOf(Path()), "# a ");
  EXPECT_EQ(Append(Path()), LogRefusal::None);
  EXPECT_EQ(BytesOf(Path()), "# a log\nline\n");
}

TEST_F(own_log, follows_no_link) {
  fs::create_symlink(Path("target"), Path("link"));
  EXPECT_EQ(Append(Path("link")), LogRefusal::Link);
  EXPECT_FALSE(fs::exists(Path("target")));
  WriteBytes(Path("target"), "");
  EXPECT_EQ(Append(Path("link")), LogRefusal::Link);
  EXPECT_EQ(BytesOf(Path("target")), "");
}

TEST_F(own_log, follows_a_link_of_the_user_on_the_way) {
  fs::create_directory(Path("folder"));
  fs::create_symlink("folder", Path("mine"));
  EXPECT_EQ(Append(Path("mine/log")), LogRefusal::None);
  EXPECT_EQ(BytesOf(Path("folder/log")), "# a log\nline\n");
}

TEST_F(own_log, follows_no_link_of_another_user_on_the_way) {
  if (!fakes::IsAdministrator()) GTEST_SKIP() << "only an administrator can give links away";
  fs::create_directory(Path("folder"));
  fs::create_symlink(Path("folder"), Path("theirs"));
  ASSERT_EQ(lchown(Path("theirs").c_str(), 1234, 1234), 0);
  fs::create_symlink("theirs", Path("mine to theirs"));
  EXPECT_EQ(Append(Path("theirs/other")), LogRefusal::Link);
  EXPECT_EQ(Append(Path("mine to theirs/other")), LogRefusal::Link);
  EXPECT_FALSE(fs::exists(Path("folder/other")));
}

TEST_F(own_log, takes_no_file_that_has_other_names) {
  WriteBytes(Path("other"), "");
  fs::create_hard_link(Path("other"), Path());
  EXPECT_EQ(Append(Path()), LogRefusal::OtherNames);
  EXPECT_EQ(BytesOf(Path("other")), "");
}

TEST_F(own_log, waits_for_no_pipe_and_writes_to_no_device) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(Append(Path("pipe")), LogRefusal::NoFile);
  EXPECT_EQ(Append("/dev/null"), LogRefusal::NoFile);
}

TEST_F(own_log, tells_why_it_cannot_be_opened) {
  WriteBytes(Path(), "");
  EXPECT_EQ(OpenOwnLog(Path("file/log"), kHeader).iError, ENOTDIR);
  EXPECT_EQ(OpenOwnLog(Folder(), kHeader).iError, EISDIR);
}

}  // namespace
}  // namespace orvane::files
