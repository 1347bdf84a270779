#include <signal.h>
#include <sys/resource.h>

#include <random>

#include "console/document/document_file.h"
#include "tests/console/document/document_fixture.h"
#include "tests/fakes/killed_program.h"
#include "tests/fakes/small_disk.h"

namespace orvane::console {
namespace {

using platform::Long;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

class document_saved : public DocumentTest {};

TEST_F(document_saved, a_save_keeps_the_mode_of_the_file) {
  Make("x");
  ASSERT_EQ(chmod(Path().c_str(), 0640), 0);
  Document::Open(Path())->Save(ContentOf("y"));
  EXPECT_EQ(StatusOf(Path()).st_mode & 07777U, 0640U);
}

TEST_F(document_saved, a_new_file_is_its_users_alone_whatever_the_umask) {
  for (const mode_t mask : {0U, 022U, 0777U}) {
    const mode_t before = umask(mask);
    Make("x");
    umask(before);
    EXPECT_EQ(StatusOf(Path()).st_mode & 07777U, 0600U);
    fs::remove(Path());
  }
}

TEST_F(document_saved, a_save_through_symbolic_links_keeps_them) {
  fs::create_directory(Path("real"));
  Make("x", "real/plant.orvc");
  fs::create_symlink("real/plant.orvc", Path("one.orvc"));
  fs::create_symlink("one.orvc", Path("two.orvc"));
  Document::Open(Path("two.orvc"))->Save(ContentOf("y"));
  EXPECT_TRUE(fs::is_symlink(Path("one.orvc")));
  EXPECT_TRUE(fs::is_symlink(Path("two.orvc")));
  EXPECT_EQ(TextIn(*Document::Open(Path("real/plant.orvc"))), Value("y"));
}

TEST_F(document_saved, a_save_to_a_link_without_a_target_makes_the_target) {
  fs::create_symlink("target.orvc", Path("link.orvc"));
  Make("x", "link.orvc");
  EXPECT_TRUE(fs::is_symlink(Path("link.orvc")));
  EXPECT_EQ(TextIn(*Document::Open(Path("target.orvc"))), Value("x"));
}

TEST_F(document_saved, what_a_crash_left_beside_it_is_cleared_by_the_next_save) {
  Make("x");
  WriteBytes(Path(".plant.orvc.saving"), "half a docu");
  Document::Open(Path())->Save(ContentOf("y"));
  EXPECT_EQ(FilesInFolder(), 1U);
  EXPECT_EQ(TextIn(*Document::Open(Path())), Value("y"));
}

TEST_F(document_saved, a_save_that_does_not_fit_leaves_the_old_file_whole) {
  Make("old");
  const Text sBefore = BytesOf(Path());
  const int iResult = fakes::InChild([&] {
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

TEST_F(document_saved, one_without_the_right_to_write_it_is_read_only) {
  Make("x");
  ASSERT_EQ(chmod(m_folder.path().toLocal8Bit().constData(), 0777), 0);
  ASSERT_EQ(chmod(Path().c_str(), 0444), 0);
  EXPECT_EQ(fakes::InChild([&] {
              if (!fakes::BecomeNobody()) return 1;
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

TEST_F(document_saved, one_of_another_user_of_the_group_stays_his) {
  if (!fakes::IsAdministrator()) GTEST_SKIP() << "only an administrator can give files away";
  Make("theirs");
  ASSERT_EQ(chown(Path().c_str(), 1234, fakes::kNobody), 0);
  ASSERT_EQ(chmod(Path().c_str(), 0660), 0);
  ASSERT_EQ(chmod(m_folder.path().toLocal8Bit().constData(), 0777), 0);
  EXPECT_EQ(fakes::InChild([&] {
              if (!fakes::BecomeNobody()) return 1;
              const auto opened = Document::Open(Path());
              opened->Save(ContentOf("ours, and longer than before"));
              opened->Save(ContentOf("ours"));
              if (opened->IsChangedOnDisk()) return 2;
              // The hold on it stays as well.
              return Document::Open(Path())->IsReadOnly() ? 0 : 3;
            }),
            0);
  EXPECT_EQ(TextIn(*Document::Open(Path())), Value("ours"));
  EXPECT_EQ(StatusOf(Path()).st_uid, 1234U);
  EXPECT_EQ(StatusOf(Path()).st_gid, fakes::kNobody);
  EXPECT_EQ(StatusOf(Path()).st_mode & 07777U, 0660U);
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(document_saved, one_that_a_failing_disk_leaves_in_part_is_told_and_offered_whole) {
  if (!fakes::IsAdministrator()) GTEST_SKIP() << "only an administrator can give files away";
  Make("ours, and longer than before", "other.orvc");
  const Text sNew = BytesOf(Path("other.orvc"));
  fs::remove(Path("other.orvc"));
  Make("theirs");
  ASSERT_EQ(chown(Path().c_str(), 1234, fakes::kNobody), 0);
  ASSERT_EQ(chmod(Path().c_str(), 0660), 0);
  ASSERT_EQ(chmod(m_folder.path().toLocal8Bit().constData(), 0777), 0);
  const auto writeHalf = [](const files::Descriptor& file, std::size_t nFrom,
                            std::string_view sBytes) {
    files::WriteAt(file, nFrom, sBytes.substr(0, sBytes.size() / 2));
    return EIO;
  };
  EXPECT_EQ(fakes::InChild([&] {
              if (!fakes::BecomeNobody()) return 1;
              const auto file = DocumentFile::Open(Path(), flock, writeHalf);
              return SentenceOf([&] { file->Replace(sNew); }) ==
                             "The document " + Path() +
                                 " was saved only in part, and what was there could not be put "
                                 "back: Input/output error; what you saved is whole in " +
                                 Path(".plant.orvc.saving") +
                                 ": save it under another name, or open the document again, which "
                                 "offers that."
                         ? 0
                         : 2;
            }),
            0);
  std::optional<DocumentDoubt> asked;
  const auto opened = Document::Open(Path(), {}, nullptr, [&](DocumentDoubt doubt) {
    asked = doubt;
    return true;
  });
  EXPECT_EQ(asked, DocumentDoubt::SaveBrokenOff);
  EXPECT_EQ(TextIn(*opened), Value("ours, and longer than before"));
}

TEST_F(document_saved, one_whose_save_broke_off_is_offered_as_it_was_to_become) {
  Make("new", "other.orvc");
  const Text sNew = BytesOf(Path("other.orvc"));
  Make("old, which was longer");
  const Text sTorn = sNew.substr(0, sNew.size() / 2) + Text(50, '\0');
  WriteBytes(Path(), sTorn);
  WriteBytes(Path(".plant.orvc.saving"), sNew);
  std::optional<DocumentDoubt> asked;
  EXPECT_EQ(Document::Open(Path(), {}, nullptr,
                           [&](DocumentDoubt doubt) {
                             asked = doubt;
                             return false;
                           }),
            nullptr);
  EXPECT_EQ(asked, DocumentDoubt::SaveBrokenOff);
  const auto opened = Document::Open(Path(), {}, nullptr, [](DocumentDoubt) { return true; });
  EXPECT_EQ(TextIn(*opened), Value("new"));
  EXPECT_TRUE(opened->IsUnsaved());
  EXPECT_FALSE(opened->IsChangedOnDisk());
  EXPECT_EQ(BytesOf(Path()), sTorn);
  opened->Save(ContentOf("saved again"));
  EXPECT_EQ(TextIn(*Document::Open(Path())), Value("saved again"));
  EXPECT_EQ(FilesInFolder(), 2U);
}

TEST_F(document_saved, one_changed_beside_a_broken_save_can_be_opened_either_way) {
  Make("saved", "other.orvc");
  Make("old");
  Text sEdited = BytesOf(Path());
  sEdited.replace(sEdited.find("old"), 3, "edited");
  WriteBytes(Path(), sEdited);
  WriteBytes(Path(".plant.orvc.saving"), BytesOf(Path("other.orvc")));
  std::vector<DocumentDoubt> asked;
  const auto opened = Document::Open(Path(), {}, nullptr, [&](DocumentDoubt doubt) {
    asked.push_back(doubt);
    return doubt == DocumentDoubt::ChangedOutside;
  });
  EXPECT_EQ(asked, (std::vector{DocumentDoubt::SaveBrokenOff, DocumentDoubt::ChangedOutside}));
  EXPECT_EQ(TextIn(*opened), Value("edited"));
  EXPECT_TRUE(opened->IsUnsaved());
}

TEST_F(document_saved, what_is_half_beside_a_damaged_one_does_not_help_it) {
  Make("new", "other.orvc");
  const Text sNew = BytesOf(Path("other.orvc"));
  WriteBytes(Path(), sNew.substr(0, sNew.size() / 2));
  WriteBytes(Path(".plant.orvc.saving"), sNew.substr(0, sNew.size() / 3));
  EXPECT_NE(SentenceOf([&] { Document::Open(Path()); }).find(" is damaged: "), Text::npos);
}

TEST_F(document_saved, what_is_beside_a_whole_one_is_not_looked_at) {
  Make("new", "other.orvc");
  Make("old");
  WriteBytes(Path(".plant.orvc.saving"), BytesOf(Path("other.orvc")));
  const auto opened = Document::Open(Path());
  EXPECT_EQ(TextIn(*opened), Value("old"));
  EXPECT_FALSE(opened->IsUnsaved());
}

TEST_F(document_saved, one_in_a_folder_without_rights_is_read_only) {
  Make("x");
  ASSERT_EQ(chmod(Path().c_str(), 0666), 0);
  ASSERT_EQ(chmod(m_folder.path().toLocal8Bit().constData(), 0555), 0);
  EXPECT_EQ(fakes::InChild([&] {
              if (!fakes::BecomeNobody()) return 1;
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

TEST_F(document_saved, one_without_the_right_to_read_it_gives_a_sentence) {
  Make("x");
  ASSERT_EQ(chmod(m_folder.path().toLocal8Bit().constData(), 0755), 0);
  ASSERT_EQ(chmod(Path().c_str(), 0), 0);
  EXPECT_EQ(fakes::InChild([&] {
              if (!fakes::BecomeNobody()) return 1;
              return SentenceOf([&] {
                       Document::Open(Path());
                     }).find("cannot be read: Permission denied") != Text::npos
                         ? 0
                         : 2;
            }),
            0);
}

// A document that was not there before, and one that is replaced.
TEST_F(document_saved, a_kill_between_any_two_steps_of_a_save_leaves_the_old_or_the_new_one) {
  for (const bool bThere : {true, false}) {
    int nStep = 1;
    for (auto ended = tests::Ended::Killed; ended == tests::Ended::Killed; ++nStep) {
      SCOPED_TRACE("killed before step " + std::to_string(nStep));
      fs::remove(Path());
      if (bThere) Make("old");
      ended =
          tests::KilledBefore(nStep,
                              [&] {
                                if (!bThere)
                                  return Document().SaveAs(Path(), ContentOf(Text(100'000, 'n')));
                                const auto opened = Document::Open(Path());
                                tests::CountFromHere();
                                opened->Save(ContentOf(Text(100'000, 'n')));
                              },
                              {&tests::ChangesFiles, bThere});
      ASSERT_NE(ended, tests::Ended::Untraceable) << "this machine lets no process be traced";
      if (bThere || fs::exists(Path())) {
        const auto left = Document::Open(Path());
        const Text sLeft = *TextIn(*left).As<Text>();
        EXPECT_TRUE(sLeft == Text(100'000, 'n') ||
                    (ended == tests::Ended::Killed && sLeft == "old"))
            << sLeft.size();
        EXPECT_FALSE(left->IsReadOnly());
        EXPECT_FALSE(left->IsUnsaved());
      } else {
        EXPECT_EQ(ended, tests::Ended::Killed);
      }
      // What it left beside the document goes with the next save.
      Make("next");
      EXPECT_EQ(FilesInFolder(), 1U);
    }
    EXPECT_GT(nStep, 3);
  }
}

// Where this process may have a disk of its own, which is as small as it likes.
TEST_F(document_saved, a_save_on_a_full_disk_leaves_the_old_one_whole) {
  constexpr int kNoDisk = 90;
  const int nEnded = fakes::InChild([&] {
    if (!tests::MountSmallDisk(m_folder.path().toLocal8Bit().constData())) return kNoDisk;
    Make("old");
    const Text sBefore = BytesOf(Path());
    const auto opened = Document::Open(Path());
    const Text sSentence = SentenceOf([&] { opened->Save(ContentOf(Text(200'000, 'x'))); });
    if (sSentence.find("No space left on device; what was there is untouched") == Text::npos) {
      return 1;
    }
    if (BytesOf(Path()) != sBefore || FilesInFolder() != 1) return 2;
    if (TextIn(*opened) != Value("old")) return 3;
    // What fits is saved all the same.
    opened->Save(ContentOf("new"));
    return TextIn(*Document::Open(Path())) == Value("new") && FilesInFolder() == 1 ? 0 : 4;
  });
  if (nEnded == kNoDisk) GTEST_SKIP() << "this process may have no disk of its own";
  EXPECT_EQ(nEnded, 0);
}

TEST_F(document_saved, a_kill_during_a_save_leaves_the_old_or_the_new_one) {
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
    // What one save left, and the next one before it was as far.
    EXPECT_LE(FilesInFolder(), 3U);
    nSeen = std::max(nSeen, iLast);
  }
  EXPECT_GE(nSeen, 3);
  Document::Open(Path())->Save(ContentOf("at last"));
  EXPECT_EQ(FilesInFolder(), 1U);
}

}  // namespace
}  // namespace orvane::console
