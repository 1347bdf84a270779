#include "console/document/document.h"

#include "tests/console/document/document_fixture.h"

namespace orvane::console {
namespace {

using platform::Text;
using platform::Value;
namespace failure = platform::failure;

class document : public DocumentTest {};

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
  EXPECT_EQ(fakes::InChild([&] {
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

}  // namespace
}  // namespace orvane::console
