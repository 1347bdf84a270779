#include "console/document/document.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <sstream>

#include "tests/console/fake_objects.h"

namespace orvane::console {
namespace {

namespace fs = std::filesystem;
using platform::Long;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

std::unique_ptr<DocumentContent> ContentOf(const Text& sText) {
  auto content = std::make_unique<DocumentContent>();
  content->SnapIn("SnapIn").WriteProperty("text", sText);
  return content;
}

Value TextIn(const Document& document) {
  const DocumentBag* bag = document.Content().FindSnapIn("SnapIn");
  return bag ? bag->ReadProperty("text", {}) : Value();
}

Text BytesOf(const fs::path& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

void WriteBytes(const fs::path& path, const Text& sBytes) {
  std::ofstream(path, std::ios::binary) << sBytes;
}

mode_t ModeOf(const fs::path& path) {
  struct stat status {};
  EXPECT_EQ(stat(path.c_str(), &status), 0);
  return status.st_mode & 07777;
}

/// Runs the steps in a process of their own, which ends with what they return.
int InChild(const std::function<int()>& steps) {
  const pid_t child = fork();
  if (child == 0) {
    int iResult = 99;
    try {
      iResult = steps();
    } catch (...) {
    }
    _exit(iResult);
  }
  int iStatus = 0;
  waitpid(child, &iStatus, 0);
  return WIFEXITED(iStatus) ? WEXITSTATUS(iStatus) : -1;
}

class document : public testing::Test {
 protected:
  Text Path(const Text& sName = "plant.orvc") const {
    return (fs::path(m_folder.path().toStdString()) / sName).string();
  }
  /// Saves a new document of that text and lets it go.
  void Make(const Text& sText, const Text& sName = "plant.orvc") const {
    Document().SaveAs(Path(sName), ContentOf(sText));
  }
  std::size_t FilesInFolder() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(m_folder.path().toStdString()), {}));
  }

  QTemporaryDir m_folder;
};

TEST_F(document, a_new_one_is_untitled_empty_and_writable) {
  Document created;
  EXPECT_EQ(created.Name(), "Untitled");
  EXPECT_EQ(created.Path(), "");
  EXPECT_FALSE(created.IsReadOnly());
  EXPECT_EQ(created.ReadOnlyReason(), "");
  EXPECT_FALSE(created.IsChangedOnDisk());
  EXPECT_EQ(NumberOf([&] { created.Save(ContentOf("x")); }), failure::kDocument);
}

TEST_F(document, is_opened_as_it_was_saved) {
  {
    Document saved;
    saved.SaveAs(Path(), ContentOf("first"));
    EXPECT_EQ(saved.Name(), "plant");
    EXPECT_EQ(saved.Path(), Path());
    EXPECT_EQ(TextIn(saved), Value("first"));
    saved.Save(ContentOf("second"));
  }
  const auto opened = Document::Open(Path());
  EXPECT_EQ(opened->Name(), "plant");
  EXPECT_FALSE(opened->IsReadOnly());
  EXPECT_EQ(TextIn(*opened), Value("second"));
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(document, a_name_keeps_its_dots) {
  Document saved;
  saved.SaveAs(Path("line 1.2 Süd.orvc"), ContentOf("x"));
  EXPECT_EQ(saved.Name(), "line 1.2 Süd");
}

TEST_F(document, creates_persisted_objects_when_they_are_read) {
  Document saved(CreateFakeObject);
  auto content = saved.NewContent();
  content->SnapIn("SnapIn").WriteProperty("o", std::make_shared<FakeObject>("state"));
  saved.SaveAs(Path(), std::move(content));
  EXPECT_EQ(StateOf(saved.Content().SnapIn("SnapIn"), "o"), "state");
  const auto opened = Document::Open(
      Path("../" + fs::path(Path()).parent_path().filename().string() + "/plant.orvc"),
      CreateFakeObject);
  EXPECT_EQ(StateOf(opened->Content().SnapIn("SnapIn"), "o"), "state");
  EXPECT_EQ(opened->Path(), Path());
}

TEST_F(document, one_that_is_missing_gives_a_sentence) {
  EXPECT_EQ(SentenceOf([&] { Document::Open(Path()); }),
            "The document " + Path() +
                " cannot be read: No such file or directory; look at the file and your rights on "
                "it.");
}

TEST_F(document, a_folder_or_a_pipe_is_none) {
  EXPECT_NE(
      SentenceOf([&] { Document::Open(m_folder.path().toStdString()); }).find("it is no file"),
      Text::npos);
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  EXPECT_NE(SentenceOf([&] { Document::Open(Path("pipe")); }).find("it is no file"), Text::npos);
}

TEST_F(document, a_damaged_or_newer_one_is_refused_and_left_untouched) {
  for (const Text& sBytes :
       {Text("damaged"), Text("{\"format\":\"orvane-console\",\"version\":2}\n")}) {
    WriteBytes(Path(), sBytes);
    EXPECT_EQ(NumberOf([&] { Document::Open(Path()); }), failure::kDocument);
    EXPECT_EQ(BytesOf(Path()), sBytes);
  }
  Make("mended");
  EXPECT_EQ(TextIn(*Document::Open(Path())), Value("mended"));
}

TEST_F(document, a_second_opener_gets_it_read_only) {
  Make("first");
  const auto first = Document::Open(Path());
  const auto second = Document::Open(Path());
  EXPECT_FALSE(first->IsReadOnly());
  EXPECT_TRUE(second->IsReadOnly());
  EXPECT_EQ(TextIn(*second), Value("first"));
  EXPECT_TRUE(second->ReadOnlyReason().starts_with(
      "The document is read-only here because it is already open by "));
  EXPECT_EQ(SentenceOf([&] { second->Save(ContentOf("second")); }),
            second->ReadOnlyReason() + " Save it under another name.");
  EXPECT_EQ(TextIn(*second), Value("first"));
  first->Save(ContentOf("still mine"));
  EXPECT_EQ(TextIn(*Document::Open(Path())), Value("still mine"));
}

TEST_F(document, stays_held_through_a_save) {
  Document holder;
  holder.SaveAs(Path(), ContentOf("1"));
  EXPECT_TRUE(Document::Open(Path())->IsReadOnly());
  holder.Save(ContentOf("2"));
  EXPECT_TRUE(Document::Open(Path())->IsReadOnly());
}

TEST_F(document, is_free_again_when_its_holder_is_gone) {
  {
    Document holder;
    holder.SaveAs(Path(), ContentOf("x"));
  }
  EXPECT_FALSE(Document::Open(Path())->IsReadOnly());
}

TEST_F(document, is_free_again_when_its_holder_crashed) {
  Make("x");
  int pipeEnds[2];
  ASSERT_EQ(pipe(pipeEnds), 0);
  const pid_t child = fork();
  if (child == 0) {
    const auto held = Document::Open(Path());
    const char cState = held->IsReadOnly() ? 'r' : 'w';
    if (write(pipeEnds[1], &cState, 1) == 1) pause();
    _exit(1);
  }
  char cState = 0;
  ASSERT_EQ(read(pipeEnds[0], &cState, 1), 1);
  EXPECT_EQ(cState, 'w');
  EXPECT_TRUE(Document::Open(Path())->IsReadOnly());
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_FALSE(Document::Open(Path())->IsReadOnly());
  close(pipeEnds[0]);
  close(pipeEnds[1]);
}

TEST_F(document, a_read_only_one_can_be_saved_elsewhere_and_goes_on_there) {
  Make("first");
  const auto holder = Document::Open(Path());
  const auto second = Document::Open(Path());
  second->SaveAs(Path("copy.orvc"), ContentOf("copy"));
  EXPECT_FALSE(second->IsReadOnly());
  EXPECT_EQ(second->Name(), "copy");
  second->Save(ContentOf("copy 2"));
  EXPECT_EQ(TextIn(*holder), Value("first"));
}

TEST_F(document, saving_over_one_that_another_console_holds_is_refused) {
  Make("theirs");
  const auto holder = Document::Open(Path());
  Document mine;
  const Text sSentence = SentenceOf([&] { mine.SaveAs(Path(), ContentOf("mine")); });
  EXPECT_NE(sSentence.find("it is open by "), Text::npos) << sSentence;
  EXPECT_EQ(mine.Path(), "");
  EXPECT_EQ(TextIn(*holder), Value("theirs"));
  EXPECT_FALSE(holder->IsChangedOnDisk());
}

TEST_F(document, saving_over_a_free_one_takes_it) {
  Make("old");
  Document mine;
  mine.SaveAs(Path(), ContentOf("mine"));
  EXPECT_TRUE(Document::Open(Path())->IsReadOnly());
  EXPECT_EQ(TextIn(mine), Value("mine"));
}

TEST_F(document, saving_as_itself_is_a_save) {
  Make("old");
  fs::create_symlink(Path(), Path("link.orvc"));
  const auto opened = Document::Open(Path());
  opened->SaveAs(Path(), ContentOf("new"));
  opened->SaveAs(Path("link.orvc"), ContentOf("newer"));
  EXPECT_TRUE(fs::is_symlink(Path("link.orvc")));
  EXPECT_FALSE(opened->IsChangedOnDisk());
  EXPECT_EQ(TextIn(*Document::Open(Path())), Value("newer"));
}

TEST_F(document, saving_as_itself_overwrites_no_change_of_another_program_unasked) {
  Make("mine");
  const auto opened = Document::Open(Path());
  Make("theirs, longer", "other.orvc");
  fs::rename(Path("other.orvc"), Path());
  EXPECT_TRUE(opened->IsOwnFile(Path()));
  EXPECT_FALSE(opened->IsOwnFile(Path("other.orvc")));
  EXPECT_NE(SentenceOf([&] {
              opened->SaveAs(Path(), ContentOf("new"));
            }).find("was changed by another program since it was opened"),
            Text::npos);
  EXPECT_EQ(TextIn(*Document::Open(Path())), Value("theirs, longer"));
  opened->SaveAs(Path(), ContentOf("new"), true);
  EXPECT_EQ(TextIn(*Document::Open(Path())), Value("new"));
}

TEST_F(document, a_save_does_not_replace_one_that_another_console_holds_under_its_name) {
  Make("mine");
  const auto opened = Document::Open(Path());
  Make("theirs", "other.orvc");
  fs::rename(Path("other.orvc"), Path());
  auto holder = Document::Open(Path());
  ASSERT_FALSE(holder->IsReadOnly());
  EXPECT_NE(SentenceOf([&] { opened->Save(ContentOf("new"), true); }).find("it is open by "),
            Text::npos);
  EXPECT_EQ(TextIn(*opened), Value("mine"));
  EXPECT_FALSE(holder->IsChangedOnDisk());
  holder.reset();
  opened->Save(ContentOf("new"), true);
  EXPECT_EQ(TextIn(*Document::Open(Path())), Value("new"));
}

TEST_F(document, opening_the_one_that_is_open_reads_it_again_and_keeps_the_hold) {
  Make("mine");
  auto opened = Document::Open(Path());
  Document().SaveAs(Path("other.orvc"), ContentOf("edited by hand"));
  WriteBytes(Path(), BytesOf(Path("other.orvc")));
  const auto again = Document::Open(Path(), {}, opened.get());
  opened.reset();
  EXPECT_EQ(TextIn(*again), Value("edited by hand"));
  EXPECT_FALSE(again->IsReadOnly());
  EXPECT_FALSE(again->IsChangedOnDisk());
  EXPECT_TRUE(Document::Open(Path())->IsReadOnly());
  again->Save(ContentOf("saved"));
  EXPECT_EQ(TextIn(*Document::Open(Path())), Value("saved"));
}

TEST_F(document, opening_the_one_that_is_open_leaves_it_when_the_file_is_damaged) {
  Make("mine");
  const auto opened = Document::Open(Path());
  const Text sWhole = BytesOf(Path());
  WriteBytes(Path(), sWhole.substr(0, sWhole.size() / 2) + "x");
  EXPECT_EQ(NumberOf([&] { Document::Open(Path(), {}, opened.get()); }), failure::kDocument);
  EXPECT_EQ(TextIn(*opened), Value("mine"));
  EXPECT_FALSE(opened->IsReadOnly());
  EXPECT_TRUE(opened->IsChangedOnDisk());
  opened->Save(ContentOf("whole again"), true);
  EXPECT_EQ(TextIn(*Document::Open(Path())), Value("whole again"));
}

TEST_F(document, opening_a_read_only_one_again_takes_it_when_it_is_free) {
  Make("x");
  auto holder = Document::Open(Path());
  const auto second = Document::Open(Path());
  holder.reset();
  EXPECT_FALSE(Document::Open(Path(), {}, second.get())->IsReadOnly());
}

int NoLocksHere(int /*iDescriptor*/, int /*iOperation*/) {
  errno = ENOLCK;
  return -1;
}

TEST_F(document, a_file_system_without_locks_keeps_nobody_from_writing) {
  Make("old");
  const auto file = DocumentFile::Open(Path(), NoLocksHere);
  EXPECT_FALSE(file->IsReadOnly()) << file->ReadOnlyReason();
  WriteBytes(Path(".plant.orvc.saving"), "half a docu");
  file->Replace("new");
  EXPECT_EQ(BytesOf(Path()), "new");
  DocumentFile::Create(Path(), "newer", NoLocksHere);
  EXPECT_EQ(BytesOf(Path()), "newer");
  DocumentFile::Create(Path("first.orvc"), "first", NoLocksHere);
  EXPECT_EQ(BytesOf(Path("first.orvc")), "first");
  EXPECT_EQ(FilesInFolder(), 2U);
}

TEST_F(document, a_file_of_absurd_size_is_refused_before_it_is_read) {
  Make("x");
  fs::resize_file(Path(), std::uintmax_t{1} << 40);
  EXPECT_EQ(SentenceOf([&] { Document::Open(Path()); }),
            "The document " + Path() +
                " cannot be read: it is larger than 1024 megabytes, which no document is; look at "
                "the file and your rights on it.");
  EXPECT_EQ(NumberOf([&] { Document::Open(Path()); }), failure::kDocument);
}

TEST_F(document, a_large_file_of_another_kind_is_told_by_its_first_line) {
  WriteBytes(Path(), "{\"format\":\"other\"}\n");
  fs::resize_file(Path(), std::uintmax_t{1} << 40);
  EXPECT_EQ(SentenceOf([&] { Document::Open(Path()); }),
            "The file " + Path() + " is no document of ORVANE Console; open another one.");
  WriteBytes(Path("zeros"), "");
  fs::resize_file(Path("zeros"), std::uintmax_t{1} << 40);
  EXPECT_EQ(SentenceOf([&] { Document::Open(Path("zeros")); }),
            "The file " + Path("zeros") + " is no document of ORVANE Console; open another one.");
}

TEST_F(document, what_fails_without_a_sentence_fails_with_one) {
  Make("x");
  EXPECT_EQ(InChild([&] {
              const auto gone = m_folder.filePath("gone").toStdString();
              fs::create_directory(gone);
              fs::current_path(gone);
              fs::remove(gone);
              const Text sSentence = SentenceOf([&] { Document::Open("plant.orvc"); });
              return sSentence.starts_with("The document plant.orvc cannot be read: ") &&
                             sSentence.ends_with("; look at its folder and try again.")
                         ? 0
                         : 1;
            }),
            0);
}

TEST_F(document, notices_that_another_program_changed_it) {
  Make("mine");
  const auto opened = Document::Open(Path());
  EXPECT_FALSE(opened->IsChangedOnDisk());
  WriteBytes(Path(), "theirs, longer than before");
  EXPECT_TRUE(opened->IsChangedOnDisk());
  EXPECT_NE(SentenceOf([&] {
              opened->Save(ContentOf("new"));
            }).find("was changed by another program since it was opened"),
            Text::npos);
  EXPECT_EQ(BytesOf(Path()), "theirs, longer than before");
  opened->Save(ContentOf("new"), true);
  EXPECT_FALSE(opened->IsChangedOnDisk());
  EXPECT_EQ(TextIn(*opened), Value("new"));
}

TEST_F(document, notices_that_another_program_replaced_it) {
  Make("mine");
  const auto opened = Document::Open(Path());
  Make("theirs", "other.orvc");
  fs::rename(Path("other.orvc"), Path());
  EXPECT_TRUE(opened->IsChangedOnDisk());
}

TEST_F(document, the_same_bytes_written_again_are_no_change) {
  Make("mine");
  const auto opened = Document::Open(Path());
  const Text sBytes = BytesOf(Path());
  fs::remove(Path());
  WriteBytes(Path(), sBytes);
  EXPECT_FALSE(opened->IsChangedOnDisk());
}

TEST_F(document, one_that_was_removed_is_written_again) {
  Make("mine");
  const auto opened = Document::Open(Path());
  fs::remove(Path());
  opened->Save(ContentOf("again"));
  EXPECT_EQ(TextIn(*Document::Open(Path())), Value("again"));
}

TEST_F(document, a_save_keeps_the_mode_of_the_file) {
  Make("x");
  ASSERT_EQ(chmod(Path().c_str(), 0640), 0);
  Document::Open(Path())->Save(ContentOf("y"));
  EXPECT_EQ(ModeOf(Path()), 0640U);
}

TEST_F(document, a_new_file_gets_the_usual_mode) {
  const mode_t before = umask(027);
  Make("x");
  umask(before);
  EXPECT_EQ(ModeOf(Path()), 0640U);
}

TEST_F(document, a_save_through_symbolic_links_keeps_them) {
  fs::create_directory(Path("real"));
  Make("x", "real/plant.orvc");
  fs::create_symlink("real/plant.orvc", Path("one.orvc"));
  fs::create_symlink("one.orvc", Path("two.orvc"));
  Document::Open(Path("two.orvc"))->Save(ContentOf("y"));
  EXPECT_TRUE(fs::is_symlink(Path("one.orvc")));
  EXPECT_TRUE(fs::is_symlink(Path("two.orvc")));
  EXPECT_EQ(TextIn(*Document::Open(Path("real/plant.orvc"))), Value("y"));
}

TEST_F(document, a_save_to_a_link_without_a_target_makes_the_target) {
  fs::create_symlink("target.orvc", Path("link.orvc"));
  Make("x", "link.orvc");
  EXPECT_TRUE(fs::is_symlink(Path("link.orvc")));
  EXPECT_EQ(TextIn(*Document::Open(Path("target.orvc"))), Value("x"));
}

TEST_F(document, what_a_crash_left_beside_it_is_cleared_by_the_next_save) {
  Make("x");
  WriteBytes(Path(".plant.orvc.saving"), "half a docu");
  Document::Open(Path())->Save(ContentOf("y"));
  EXPECT_EQ(FilesInFolder(), 1U);
  EXPECT_EQ(TextIn(*Document::Open(Path())), Value("y"));
}

TEST_F(document, a_save_that_does_not_fit_leaves_the_old_file_whole) {
  Make("old");
  const Text sBefore = BytesOf(Path());
  const int iResult = InChild([&] {
    const auto opened = Document::Open(Path());
    const rlimit limit{4096, 4096};
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
    const Text sSentence = SentenceOf([&] { opened->Save(ContentOf(Text(100000, 'x'))); });
    if (sSentence != "The document " + Path() +
                         " cannot be saved: File too large; what was there is untouched, save it "
                         "elsewhere or put that right first.") {
      return 2;
    }
    if (TextIn(*opened) != Value("old")) return 3;
    if (FilesInFolder() != 1) return 4;
    // What fits is saved all the same.
    opened->Save(ContentOf("new"));
    return TextIn(*Document::Open(Path())) == Value("new") ? 0 : 5;
  });
  EXPECT_EQ(iResult, 0);
  EXPECT_NE(BytesOf(Path()), sBefore);
}

/// Gives up the rights of an administrator, who may write everywhere.
bool BecomeNobody() {
  if (geteuid() != 0) return true;
  constexpr uid_t kNobody = 65534;
  return setgid(kNobody) == 0 && setuid(kNobody) == 0;
}

TEST_F(document, one_without_the_right_to_write_it_is_read_only) {
  Make("x");
  ASSERT_EQ(chmod(m_folder.path().toLocal8Bit().constData(), 0777), 0);
  ASSERT_EQ(chmod(Path().c_str(), 0444), 0);
  EXPECT_EQ(InChild([&] {
              if (!BecomeNobody()) return 1;
              auto opened = Document::Open(Path());
              if (TextIn(*opened) != Value("x")) return 2;
              if (opened->ReadOnlyReason() !=
                  "The document is read-only here because you have no right to write the file.") {
                return 3;
              }
              opened.reset();
              // Not even by way of the folder, which may be written.
              Document other;
              if (SentenceOf([&] {
                    other.SaveAs(Path(), ContentOf("y"));
                  }).find("cannot be saved: Permission denied") == Text::npos) {
                return 4;
              }
              return FilesInFolder() == 1 ? 0 : 5;
            }),
            0);
}

TEST_F(document, one_in_a_folder_without_rights_is_read_only) {
  Make("x");
  ASSERT_EQ(chmod(Path().c_str(), 0666), 0);
  ASSERT_EQ(chmod(m_folder.path().toLocal8Bit().constData(), 0555), 0);
  EXPECT_EQ(InChild([&] {
              if (!BecomeNobody()) return 1;
              const auto opened = Document::Open(Path());
              if (opened->ReadOnlyReason() !=
                  "The document is read-only here because you have no right to write in its "
                  "folder.") {
                return 2;
              }
              Document other;
              return SentenceOf([&] {
                       other.SaveAs(Path("new.orvc"), ContentOf("y"));
                     }).find("cannot be saved: Permission denied") != Text::npos
                         ? 0
                         : 3;
            }),
            0);
  ASSERT_EQ(chmod(m_folder.path().toLocal8Bit().constData(), 0755), 0);
}

TEST_F(document, one_without_the_right_to_read_it_gives_a_sentence) {
  Make("x");
  ASSERT_EQ(chmod(m_folder.path().toLocal8Bit().constData(), 0755), 0);
  ASSERT_EQ(chmod(Path().c_str(), 0), 0);
  EXPECT_EQ(InChild([&] {
              if (!BecomeNobody()) return 1;
              return SentenceOf([&] {
                       Document::Open(Path());
                     }).find("cannot be read: Permission denied") != Text::npos
                         ? 0
                         : 2;
            }),
            0);
}

TEST_F(document, a_kill_during_a_save_leaves_the_old_or_the_new_one) {
  Make("0");
  std::mt19937 random(20240229);
  std::uniform_int_distribution<int> delay(0, 6000);
  int nSeen = 0;
  for (int iRound = 0; iRound < 40; ++iRound) {
    const Text sBefore = *TextIn(*Document::Open(Path())).As<Text>();
    int pipeEnds[2];
    ASSERT_EQ(pipe(pipeEnds), 0);
    const pid_t child = fork();
    if (child == 0) {
      close(pipeEnds[0]);
      const auto opened = Document::Open(Path());
      for (int i = 1;; ++i) {
        auto content = ContentOf(std::to_string(i));
        for (int iProperty = 0; iProperty < 300; ++iProperty) {
          content->SnapIn("SnapIn").WriteProperty("property " + std::to_string(iProperty), Long{i});
        }
        // The number tells what is being saved; the old one was told before.
        if (write(pipeEnds[1], &i, sizeof i) != sizeof i) _exit(1);
        opened->Save(std::move(content));
      }
    }
    close(pipeEnds[1]);
    // The kill falls into the first, second or third save, or a later one, however slow they are.
    int iFirst = 0;
    for (int n = 0; n <= iRound % 3; ++n) {
      ASSERT_EQ(read(pipeEnds[0], &iFirst, sizeof iFirst), static_cast<ssize_t>(sizeof iFirst));
    }
    usleep(static_cast<useconds_t>(delay(random)));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    int iLast = iFirst;
    for (int i = 0; read(pipeEnds[0], &i, sizeof i) == static_cast<ssize_t>(sizeof i);) iLast = i;
    close(pipeEnds[0]);

    const auto left = Document::Open(Path());
    EXPECT_FALSE(left->IsReadOnly());
    const Text sLeft = *TextIn(*left).As<Text>();
    const Text sOld = iLast == 1 ? sBefore : std::to_string(iLast - 1);
    EXPECT_TRUE(sLeft == sOld || sLeft == std::to_string(iLast)) << sLeft << " of " << iLast;
    EXPECT_LE(FilesInFolder(), 2U);
    nSeen = std::max(nSeen, iLast);
  }
  EXPECT_GE(nSeen, 3);
}

TEST_F(document, two_consoles_saving_one_after_the_other_never_mix) {
  Make("0");
  for (int i = 1; i <= 5; ++i) {
    const Text sText = std::to_string(i);
    EXPECT_EQ(InChild([&] {
                const auto opened = Document::Open(Path());
                opened->Save(ContentOf(sText));
                return 0;
              }),
              0);
    EXPECT_EQ(TextIn(*Document::Open(Path())), Value(sText));
  }
}

TEST(lock_owner, is_found_by_the_identity_of_the_file) {
  struct stat status {};
  status.st_dev = makedev(8, 1);
  status.st_ino = 1835021;
  const Text sLocks =
      "1: POSIX  ADVISORY  WRITE 100 08:01:1835021 0 EOF\n"
      "2: FLOCK  ADVISORY  WRITE 200 08:02:1835021 0 EOF\n"
      "3: FLOCK  ADVISORY  WRITE 4711 08:01:1835021 0 EOF\n"
      "3: -> FLOCK  ADVISORY  WRITE 300 08:01:1835021 0 EOF\n";
  EXPECT_EQ(FindLockOwner(sLocks, status), 4711);
  status.st_ino = 5;
  EXPECT_EQ(FindLockOwner(sLocks, status), std::nullopt);
  EXPECT_EQ(FindLockOwner("", status), std::nullopt);
  EXPECT_EQ(FindLockOwner("1: FLOCK ADVISORY WRITE -1 08:01:5 0 EOF", status), std::nullopt);
}

}  // namespace
}  // namespace orvane::console
