// Servers, catalogs and queries of a document changed from a shell, on an embedded historian.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "tests/tools/orvane_program.h"
#include "tests/tools/terminal_run.h"

namespace orvane::tools {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class orvane_changes : public OrvaneProgram {
 protected:
  orvane_changes() {
    component::RegisterLibrary(ORVANE_PROVIDER, m_folder / "data/orvane/components");
    WriteSample("Plant.orvc");
    const auto made = Shell("'" ORVANE_HISTORIAN "' init");
    EXPECT_EQ(made.nStatus, 0) << made.sErrors;
  }

  Text Tree() const { return Orvane("tree Plant.orvc").sOutput; }
  /// Status and what was told.
  void Expect(const Text& sLine, int nStatus, const Text& sTold) const {
    const auto ended = Shell(sLine);
    EXPECT_EQ(ended.nStatus, nStatus) << sLine;
    EXPECT_EQ(nStatus == 0 ? ended.sOutput : ended.sErrors, sTold) << sLine;
    EXPECT_EQ(nStatus == 0 ? ended.sErrors : ended.sOutput, "") << sLine;
    EXPECT_EQ(Orvane("check Plant.orvc").nStatus, 0) << sLine;
  }
};

TEST_F(orvane_changes, add_a_query_and_give_it_another_text_and_name) {
  Expect("printf 'SELECT 1 AS one\\n' | orvane query add Plant.orvc localhost One", 0,
         "Added the query \"One\".\n");
  EXPECT_EQ(Orvane("query Plant.orvc localhost one --csv").sOutput, "one\r\n1\r\n");
  Expect("echo 'SELECT 2 AS two' | orvane query edit Plant.orvc LOCALHOST one", 0,
         "Changed the query \"One\".\n");
  Expect("orvane query rename Plant.orvc localhost One 'add'", 0,
         "The query \"One\" is called \"add\" now.\n");
  EXPECT_EQ(Orvane("query Plant.orvc localhost add --csv").sOutput, "two\r\n2\r\n");
  EXPECT_THAT(Tree(), EndsWith("    Plant signals, last hour (generated)\n    add\n"));
  Expect("orvane query remove Plant.orvc localhost add --yes", 0, "Removed the query \"add\".\n");
  // Added and removed, it leaves the document as it was.
  WriteSample("Sample.orvc");
  EXPECT_EQ(Read("Plant.orvc"), Read("Sample.orvc"));
}

TEST_F(orvane_changes, keep_a_query_at_its_place_under_another_name) {
  EXPECT_EQ(Orvane("query rename Plant.orvc localhost 'Processor load, last hour' Load").nStatus,
            0);
  EXPECT_THAT(Tree(), HasSubstr("  Queries\n    Load\n    Latest value"));
  // The same name in another case is its own.
  EXPECT_EQ(Orvane("query rename Plant.orvc localhost Load load").nStatus, 0);
  EXPECT_THAT(Tree(), HasSubstr("  Queries\n    load\n    Latest value"));
}

TEST_F(orvane_changes, refuse_what_the_window_refuses_and_leave_the_document) {
  const Text sBefore = Read("Plant.orvc");
  const Text sTaken =
      "orvane: The server \"localhost\" has a query \"LATEST value of every tag\" already; choose "
      "another name.\n";
  Expect("orvane query add Plant.orvc localhost 'LATEST value of every tag' < /dev/null", 2,
         sTaken);
  Expect(
      "orvane query rename Plant.orvc localhost 'Processor load, last hour' 'LATEST value of every "
      "tag'",
      2, sTaken);
  Expect("orvane query add Plant.orvc nowhere Q < /dev/null", 1,
         "orvane: The document has no server \"nowhere\"; \"orvane tree\" tells which it has.\n");
  Expect("orvane query remove Plant.orvc localhost None --yes", 1,
         "orvane: The server \"localhost\" has no query \"None\"; \"orvane tree\" tells which it "
         "has.\n");
  Expect("orvane server add Plant.orvc LocalHost", 2,
         "orvane: The document has a server \"LocalHost\" already; remove that first, or name "
         "another one.\n");
  EXPECT_EQ(Orvane("query add Plant.orvc localhost '' < /dev/null").nStatus, 2);
  EXPECT_EQ(Orvane("query boil Plant.orvc localhost").nStatus, 6) << "a document of that name";
  EXPECT_EQ(Orvane("catalog Plant.orvc").nStatus, 2);
  EXPECT_EQ(Read("Plant.orvc"), sBefore);
}

TEST_F(orvane_changes, ask_before_they_remove_something) {
  const Text sBefore = Read("Plant.orvc");
  Expect("setsid -w '" ORVANE_PROGRAM "' server remove Plant.orvc localhost < /dev/null", 2,
         "orvane: There is no terminal to ask on whether this is meant; give --yes.\n");
  EXPECT_EQ(Read("Plant.orvc"), sBefore);
  Expect("orvane server remove Plant.orvc LOCALHOST --yes", 0,
         "Removed the server \"localhost\".\n");
  EXPECT_EQ(Orvane("tree Plant.orvc").nStatus, 1);
  Expect("orvane server add Plant.orvc localhost", 0, "Added the server \"localhost\".\n");
  EXPECT_EQ(Tree(), "localhost\n  Catalogs\n  Queries\n");
  // Nothing of the connection is kept.
  EXPECT_THAT(Read("Plant.orvc"), HasSubstr("{\"name\":\"ExtendedOptions\",\"text\":\"\"}"));
}

TEST_F(orvane_changes, are_made_when_the_terminal_says_so) {
  const Text sQuestion =
      "Are you sure you want to remove the \"localhost\" server from the tree? (y/n) ";
  const Text sRemove = InFolder("orvane server remove Plant.orvc localhost; echo status $?");
  EXPECT_THAT(RunOnTerminal(sRemove, {{sQuestion, "n\n"}}).sSeen,
              EndsWith("orvane: Nothing was changed.\r\nstatus 1\r\n"));
  EXPECT_THAT(Tree(), HasSubstr("localhost"));
  EXPECT_THAT(RunOnTerminal(sRemove, {{sQuestion, "y\n"}}).sSeen, EndsWith("status 0\r\n"));
  EXPECT_EQ(Orvane("tree Plant.orvc").nStatus, 1);
}

TEST_F(orvane_changes, make_drop_and_take_in_catalogs_on_the_server) {
  Expect("orvane catalog create Plant.orvc localhost Mill --size 128", 0,
         "Made the catalog \"Mill\" on the server \"localhost\".\n");
  EXPECT_THAT(Tree(), HasSubstr("  Catalogs\n    Mill\n"));
  EXPECT_EQ(Orvane("rows Plant.orvc localhost/Mill/Tags --csv").nStatus, 1);
  Expect("orvane catalog create Plant.orvc localhost mill", 3,
         "orvane: There is a catalog \"Mill\" already; choose another name.\n");
  Expect("orvane catalog remove Plant.orvc localhost mill --yes", 0,
         "Removed the catalog \"Mill\" from the server \"localhost\".\n");
  EXPECT_THAT(Tree(), Not(HasSubstr("Mill")));
  Expect("orvane catalog remove Plant.orvc localhost Mill --yes", 1,
         "orvane: The server \"localhost\" has no catalog \"Mill\".\n");

  Shell("mkdir far; chmod go-w far");
  EXPECT_EQ(Orvane("catalog create Plant.orvc localhost Far --path \"$PWD/far\"").nStatus, 0);
  EXPECT_EQ(Orvane("catalog remove Plant.orvc localhost Far --yes").nStatus, 0);
  Expect(
      "cd far; ln -s ../Plant.orvc; orvane catalog attach Plant.orvc localhost Near Far.db; cd ..",
      0, "Attached the catalog \"Near\" to the server \"localhost\".\n");
  EXPECT_EQ(Orvane("rows Plant.orvc localhost/Near/Tags --csv").nStatus, 1);
  EXPECT_THAT(Orvane("catalog attach Plant.orvc localhost New none.db").sErrors,
              HasSubstr("none.db"));
}

TEST_F(orvane_changes, of_a_document_that_a_console_has_touch_nothing) {
  const int nFile = open((m_folder / "Plant.orvc").c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(flock(nFile, LOCK_EX | LOCK_NB), 0);
  const Text sBefore = Read("Plant.orvc");
  const auto ended = Orvane("catalog create Plant.orvc localhost Mill");
  EXPECT_EQ(ended.nStatus, 6);
  EXPECT_THAT(ended.sErrors,
              AllOf(HasSubstr("it is already open by "), EndsWith(" Nothing was changed.\n")));
  EXPECT_EQ(Read("Plant.orvc"), sBefore);
  close(nFile);
  EXPECT_EQ(Orvane("rows Plant.orvc localhost/Mill/Tags").nStatus, 1) << "no such catalog";
}

TEST_F(orvane_changes, keep_all_else_that_the_document_has) {
  Text sContent = Read("Plant.orvc");
  sContent.insert(sContent.find("{\"section\":\"end\"}"),
                  "{\"class\":\"Others.SnapIn\",\"section\":\"snap-in\"}\n"
                  "{\"name\":\"Theirs\",\"object\":\"Others.Thing\",\"state\":\"kept\"}\n"
                  "{\"section\":\"view\"}\n{\"name\":\"Mark\",\"text\":\"kept\"}\n");
  Write("Plant.orvc", sContent);
  // Whoever made the object is not there, so that it is kept as it lies.
  EXPECT_EQ(Orvane("seal Plant.orvc").nStatus, 0);
  EXPECT_EQ(Shell("orvane query add Plant.orvc localhost Q < /dev/null").nStatus, 0);
  EXPECT_THAT(
      Read("Plant.orvc"),
      AllOf(HasSubstr("{\"name\":\"Theirs\",\"object\":\"Others.Thing\",\"state\":\"kept\"}"),
            HasSubstr("{\"name\":\"Mark\",\"text\":\"kept\"}")));
}

}  // namespace
}  // namespace orvane::tools
