#include <signal.h>
#include <sys/sysmacros.h>

#include <cerrno>

#include "console/document/document_lock.h"
#include "tests/console/document/document_fixture.h"

namespace orvane::console {
namespace {

using platform::Text;
using platform::Value;
namespace failure = platform::failure;

class document_shared : public DocumentTest {};

TEST_F(document_shared, a_second_opener_gets_it_read_only) {
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

TEST_F(document_shared, stays_held_through_a_save) {
  Document holder;
  holder.SaveAs(Path(), ContentOf("1"));
  EXPECT_TRUE(Document::Open(Path())->IsReadOnly());
  holder.Save(ContentOf("2"));
  EXPECT_TRUE(Document::Open(Path())->IsReadOnly());
}

TEST_F(document_shared, is_free_again_when_its_holder_is_gone) {
  {
    Document holder;
    holder.SaveAs(Path(), ContentOf("x"));
  }
  EXPECT_FALSE(Document::Open(Path())->IsReadOnly());
}

TEST_F(document_shared, is_free_again_when_its_holder_crashed) {
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

TEST_F(document_shared, a_read_only_one_can_be_saved_elsewhere_and_goes_on_there) {
  Make("first");
  const auto holder = Document::Open(Path());
  const auto second = Document::Open(Path());
  second->SaveAs(Path("copy.orvc"), ContentOf("copy"));
  EXPECT_FALSE(second->IsReadOnly());
  EXPECT_EQ(second->Name(), "copy");
  second->Save(ContentOf("copy 2"));
  EXPECT_EQ(TextIn(*holder), Value("first"));
}

TEST_F(document_shared, saving_over_one_that_another_console_holds_is_refused) {
  Make("theirs");
  const auto holder = Document::Open(Path());
  Document mine;
  const Text sSentence = SentenceOf([&] { mine.SaveAs(Path(), ContentOf("mine")); });
  EXPECT_NE(sSentence.find("it is open by "), Text::npos) << sSentence;
  EXPECT_EQ(mine.Path(), "");
  EXPECT_EQ(TextIn(*holder), Value("theirs"));
  EXPECT_FALSE(holder->IsChangedOnDisk());
}

TEST_F(document_shared, saving_over_a_free_one_takes_it) {
  Make("old");
  Document mine;
  mine.SaveAs(Path(), ContentOf("mine"));
  EXPECT_TRUE(Document::Open(Path())->IsReadOnly());
  EXPECT_EQ(TextIn(mine), Value("mine"));
}

TEST_F(document_shared, a_save_does_not_replace_one_that_another_console_holds_under_its_name) {
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

TEST_F(document_shared, opening_the_one_that_is_open_reads_it_again_and_keeps_the_hold) {
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

TEST_F(document_shared, opening_the_one_that_is_open_leaves_it_when_the_file_is_damaged) {
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

TEST_F(document_shared, opening_a_read_only_one_again_takes_it_when_it_is_free) {
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

TEST_F(document_shared, a_file_system_without_locks_keeps_nobody_from_writing) {
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

TEST_F(document_shared, two_consoles_saving_one_after_the_other_never_mix) {
  Make("0");
  for (int i = 1; i <= 5; ++i) {
    const Text sText = std::to_string(i);
    EXPECT_EQ(fakes::InChild([&] {
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
