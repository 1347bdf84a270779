// Documents from a shell: checked, sealed, their tree and their options.
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "files/replacement.h"
#include "tests/tools/orvane_program.h"

namespace orvane::tools {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kLimit = "\"MaxRows\",\"integer\":100";
constexpr const char* kOtherLimit = "\"MaxRows\",\"integer\":200";

class orvane_document : public OrvaneProgram {};

TEST_F(orvane_document, is_found_whole) {
  WriteSample("Plant.orvc");
  const auto ended = Orvane("check Plant.orvc");
  EXPECT_EQ(ended.nStatus, 0);
  EXPECT_EQ(ended.sOutput, "The document Plant.orvc is whole.\n");
  EXPECT_EQ(ended.sErrors, "");
}

TEST_F(orvane_document, tells_its_first_wrong_line) {
  WriteSample("Plant.orvc", "\"boolean\":false", "\"boolean\":maybe");
  const auto ended = Orvane("check Plant.orvc");
  EXPECT_EQ(ended.nStatus, 6);
  EXPECT_EQ(ended.sOutput, "");
  EXPECT_THAT(ended.sErrors, HasSubstr("is damaged: line 10 is no JSON object in UTF-8"));
}

TEST_F(orvane_document, tells_where_it_was_changed_outside) {
  WriteSample("Plant.orvc", "\"User\",\"text\":\"orvanesnapin\"", "\"User\",\"text\":\"anna\"");
  const auto ended = Orvane("check Plant.orvc");
  EXPECT_EQ(ended.nStatus, 6);
  EXPECT_THAT(ended.sErrors, HasSubstr("was changed outside since it was saved: the first seal "
                                       "that does not fit is that of what begins at line 13;"));
}

TEST_F(orvane_document, tells_the_line_of_an_object_that_cannot_be_made) {
  WriteSample("Plant.orvc", "{\"name\":\"Context\"",
              "{\"name\":\"Rest\",\"object\":\"orvoledbctls.tablequery\",\"state\":\"x\"}"
              "\n{\"name\":\"Context\"");
  const auto ended = Orvane("check Plant.orvc");
  EXPECT_EQ(ended.nStatus, 6);
  EXPECT_THAT(ended.sErrors, HasSubstr("holds at line 10 an object that cannot be made. The saved "
                                       "table query cannot be read: it is damaged."));
}

TEST_F(orvane_document, tells_that_its_servers_do_not_fit_together) {
  WriteSample("Plant.orvc", "ServerNodeCount\",\"integer\":1", "ServerNodeCount\",\"text\":\"x\"");
  const auto ended = Orvane("check Plant.orvc");
  EXPECT_EQ(ended.nStatus, 6);
  EXPECT_THAT(Orvane("seal Plant.orvc").sErrors, HasSubstr("does not fit together"));
}

TEST_F(orvane_document, is_sealed_after_an_edit_by_hand) {
  WriteSample("Plant.orvc", kLimit, kOtherLimit);
  EXPECT_EQ(Orvane("options Plant.orvc").nStatus, 6);
  const auto ended = Orvane("seal Plant.orvc");
  EXPECT_EQ(ended.sErrors, "");
  EXPECT_EQ(ended.nStatus, 0);
  EXPECT_EQ(ended.sOutput, "Sealed the document Plant.orvc.\n");
  EXPECT_EQ(Orvane("check Plant.orvc").nStatus, 0);
  EXPECT_THAT(Orvane("options Plant.orvc").sOutput, StartsWith("maximum rows: 200\n"));
  // Whole again by taking the edit back: nothing but that line and its seal was written.
  WriteSample("Other.orvc");
  Shell("sed -i 's/MaxRows\",\"integer\":200/MaxRows\",\"integer\":100/' Plant.orvc");
  Orvane("seal Plant.orvc");
  EXPECT_EQ(Read("Plant.orvc"), Read("Other.orvc"));
}

TEST_F(orvane_document, keeps_what_it_is_when_it_is_sealed) {
  WriteSample("Real.orvc", kLimit, kOtherLimit);
  Shell("chmod 0640 Real.orvc; ln -s Real.orvc Plant.orvc");
  EXPECT_EQ(Orvane("seal Plant.orvc").nStatus, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(m_folder / "Plant.orvc"));
  EXPECT_EQ(Orvane("check Real.orvc").nStatus, 0);
  struct stat status {};
  ASSERT_EQ(stat((m_folder / "Real.orvc").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(orvane_document, with_fitting_seals_is_not_written) {
  WriteSample("Plant.orvc");
  struct stat before {};
  struct stat after {};
  ASSERT_EQ(stat((m_folder / "Plant.orvc").c_str(), &before), 0);
  EXPECT_THAT(Orvane("seal Plant.orvc").sOutput, EndsWith("fit; nothing was written.\n"));
  ASSERT_EQ(stat((m_folder / "Plant.orvc").c_str(), &after), 0);
  EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST_F(orvane_document, that_a_console_has_is_read_but_not_sealed) {
  WriteSample("Plant.orvc", kLimit, kOtherLimit);
  const int nFile = open((m_folder / "Plant.orvc").c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(flock(nFile, LOCK_EX | LOCK_NB), 0);
  const Text sBefore = Read("Plant.orvc");
  const auto ended = Orvane("seal Plant.orvc");
  EXPECT_EQ(ended.nStatus, 6);
  EXPECT_THAT(ended.sErrors, HasSubstr("it is already open by "));
  EXPECT_EQ(Read("Plant.orvc"), sBefore);
  EXPECT_THAT(Orvane("check Plant.orvc").sErrors, HasSubstr("at line 4;"));
  WriteSample("Whole.orvc");
  const int nWhole = open((m_folder / "Whole.orvc").c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(flock(nWhole, LOCK_EX | LOCK_NB), 0);
  EXPECT_EQ(Orvane("tree Whole.orvc").nStatus, 0);
  close(nWhole);
  close(nFile);
}

TEST_F(orvane_document, that_is_only_half_saved_is_for_the_console) {
  WriteSample("Plant.orvc");
  const Text sWhole = Read("Plant.orvc");
  Write("Plant.orvc", sWhole.substr(0, sWhole.size() / 2));
  std::ofstream(files::SuccessorOf(m_folder / "Plant.orvc"), std::ios::binary) << sWhole;
  for (const char* const sCommand : {"check", "seal", "tree"}) {
    const auto ended = Orvane(Text(sCommand) + " Plant.orvc");
    EXPECT_EQ(ended.nStatus, 6) << sCommand;
    EXPECT_THAT(ended.sErrors, HasSubstr("a save of it was broken off")) << sCommand;
  }
  EXPECT_EQ(Read("Plant.orvc"), sWhole.substr(0, sWhole.size() / 2));
}

TEST_F(orvane_document, prints_its_tree) {
  WriteSample("Plant.orvc", "localhost", "line\\nbreak");
  Orvane("seal Plant.orvc");
  auto ended = Orvane("tree Plant.orvc");
  EXPECT_EQ(ended.nStatus, 0);
  EXPECT_THAT(ended.sOutput, StartsWith("line\\nbreak\n  Catalogs\n  Queries\n    Processor load, "
                                        "last hour\n    Latest value of every tag\n"));
  ended = Orvane("tree --json Plant.orvc");
  EXPECT_EQ(ended.nStatus, 0);
  EXPECT_THAT(ended.sOutput,
              StartsWith("{\"servers\":[{\"server\":\"line\\nbreak\",\"provider\":\"ORVOLEDB\","
                         "\"user\":\"orvanesnapin\",\"catalogs\":[],\"queries\":[{\"query\":"
                         "\"Processor load, last hour\",\"sql\":\"SELECT "));
  EXPECT_THAT(ended.sOutput, EndsWith("\"}]}]}\n"));
}

TEST_F(orvane_document, without_servers_has_no_tree) {
  Write("Plant.orvc", "{\"format\":\"orvane-console\",\"version\":3}\n{\"section\":\"end\"}\n");
  Orvane("seal Plant.orvc");
  const auto ended = Orvane("tree Plant.orvc");
  EXPECT_EQ(ended.nStatus, 1);
  EXPECT_EQ(ended.sOutput, "");
  EXPECT_EQ(ended.sErrors, "orvane: The document has no server.\n");
  EXPECT_EQ(Orvane("tree --json Plant.orvc").sOutput, "{\"servers\":[]}\n");
}

TEST_F(orvane_document, prints_its_options) {
  WriteSample("Plant.orvc");
  EXPECT_EQ(Orvane("options Plant.orvc").sOutput,
            "maximum rows: 100\nquery time-out: 60 s\nstart time: *-1h\nend time: *\n"
            "SQL statements: shown\ncontext: hidden\n");
  EXPECT_EQ(Orvane("options Plant.orvc --json").sOutput,
            "{\"maxRows\":100,\"queryTimeout\":60,\"startTime\":\"*-1h\",\"endTime\":\"*\","
            "\"sqlStatements\":true,\"context\":false}\n");
}

class orvane_program : public OrvaneProgram {};

TEST_F(orvane_program, is_linked_without_what_could_show_anything) {
  const auto ended = Shell("ldd '" ORVANE_PROGRAM "' '" ORVANE_PROVIDER "'");
  EXPECT_EQ(ended.nStatus, 0) << ended.sErrors;
  EXPECT_THAT(ended.sOutput, HasSubstr("libQt6Core"));
  for (const char* const sLibrary : {"Gui", "Widgets", "Svg", "PrintSupport", "DBus"}) {
    EXPECT_THAT(ended.sOutput, Not(HasSubstr(Text("libQt6") + sLibrary)));
  }
  for (const char* const sLibrary : {"libX11", "libxcb", "libGL", "wayland"}) {
    EXPECT_THAT(ended.sOutput, Not(HasSubstr(sLibrary)));
  }
}

TEST_F(orvane_program, tells_how_it_is_called) {
  auto ended = Orvane("--help");
  EXPECT_EQ(ended.nStatus, 0);
  for (const char* const sCommand : {"check", "seal", "tree", "options", "--registry"}) {
    EXPECT_THAT(ended.sOutput, HasSubstr(sCommand));
  }
  for (const char* const sArguments : {"", "boil", "tree", "tree a b", "options a --xml"}) {
    ended = Orvane(sArguments);
    EXPECT_EQ(ended.nStatus, 2) << sArguments;
    EXPECT_EQ(ended.sOutput, "") << sArguments;
    EXPECT_THAT(ended.sErrors, StartsWith("orvane: ")) << sArguments;
    EXPECT_THAT(ended.sErrors, EndsWith("; see orvane --help.\n")) << sArguments;
  }
}

TEST_F(orvane_program, says_what_is_no_document) {
  Write("notes.txt", "buy milk\n");
  EXPECT_THAT(Orvane("check notes.txt").sErrors, HasSubstr("is no document of ORVANE Console"));
  EXPECT_EQ(Orvane("check notes.txt").nStatus, 6);
  EXPECT_EQ(Orvane("check .").nStatus, 6);
  EXPECT_THAT(Orvane("tree none.orvc").sErrors, HasSubstr("No such file"));
}

TEST_F(orvane_program, ends_quietly_when_nobody_reads) {
  WriteSample("Plant.orvc");
  const auto ended = Shell(
      "mkfifo gone; exec 3<> gone 4> gone 3<&-; "
      "orvane tree Plant.orvc >&4; echo $? > status");
  EXPECT_EQ(ended.sErrors, "");
  EXPECT_EQ(Read("status"), "141\n");
}

TEST_F(orvane_program, says_that_its_output_cannot_be_written) {
  WriteSample("Plant.orvc");
  const auto ended = Orvane("options Plant.orvc > /dev/full");
  EXPECT_EQ(ended.nStatus, 7);
  EXPECT_THAT(ended.sErrors, HasSubstr("The output cannot be written: No space left"));
}

}  // namespace
}  // namespace orvane::tools
