// Manual pages and completions, made by the programs and tried with what reads them.
#include <array>

#include "tests/tools/orvane_program.h"

namespace orvane::tools {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr std::array kPrograms = {std::pair{"orvane", ORVANE_PROGRAM},
                                  std::pair{"orvane-historian", ORVANE_HISTORIAN},
                                  std::pair{"orvane-regsvr", ORVANE_REGSVR}};

class manual : public OrvaneProgram {
 protected:
  /// What bash offers behind these words, each on a line.
  Text Offered(const Text& sWords) const {
    Write("ask.bash", Orvane("--manual bash").sOutput + "COMP_WORDS=(orvane " + sWords +
                          ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_orvane\n"
                          "printf '%s\\n' \"${COMPREPLY[@]}\"\n");
    const auto ended = Shell("bash ask.bash");
    EXPECT_EQ(ended.sErrors, "");
    return ended.sOutput;
  }
};

TEST_F(manual, pages_are_read_without_a_warning) {
  for (const auto& [sName, sProgram] : kPrograms) {
    const auto ended = Shell("'" + Text(sProgram) +
                             "' --manual man > page; MANROFFSEQ= MANWIDTH=80 "
                             "LC_ALL=C.UTF-8 man --warnings -E UTF-8 -l -Tutf8 page | col -b");
    EXPECT_EQ(ended.nStatus, 0) << sName;
    EXPECT_EQ(ended.sErrors, "") << sName;
    EXPECT_THAT(ended.sOutput,
                AllOf(HasSubstr("NAME\n       " + Text(sName) + " "), HasSubstr("--help")));
  }
}

TEST_F(manual, of_orvane_tells_all_that_help_tells) {
  const Text sPage = Orvane("--manual man").sOutput;
  for (const char* const sTold :
       {".SS \\fBorvane rows\\fR", ".SS \\fBorvane query\\fR", ".SS \\fBorvane query rename\\fR",
        ".SS \\fBorvane catalog attach\\fR", "\\fB\\-\\-password\\-fd\\fR \\fIN\\fR",
        "5 when the row limit cut the rows"}) {
    EXPECT_THAT(sPage, HasSubstr(sTold));
  }
  EXPECT_THAT(sPage, Not(HasSubstr("\\-\\-manual")));
  EXPECT_EQ(sPage, Orvane("--manual man").sOutput);
  EXPECT_EQ(Orvane("--manual boil").nStatus, 2);
}

TEST_F(manual, completion_offers_what_can_stand_there) {
  EXPECT_EQ(Offered("s"), "seal\nsql\nstructure\nserver\n");
  EXPECT_EQ(Offered("query re"), "rename\nremove\n");
  EXPECT_EQ(Offered("server add --pass"), "--password-fd\n");
  EXPECT_EQ(Offered("rows Plant.orvc a/b/c --js"), "--jsonl\n");
  Write("Plant 1.orvc", "");
  EXPECT_EQ(Offered("rows Pl"), "Plant 1.orvc\n");
  EXPECT_EQ(Offered("rows --boil"), "\n");
}

TEST_F(manual, completions_are_what_their_shells_read) {
  for (const char* const sShell : {"bash", "zsh", "fish"}) {
    for (const auto& [sName, sProgram] : kPrograms) {
      const auto ended = Shell("'" + Text(sProgram) + "' --manual " + sShell + " > script; " +
                               sShell + " -n script");
      EXPECT_EQ(ended.nStatus, 0) << sShell << ' ' << sName;
      EXPECT_EQ(ended.sErrors, "") << sShell << ' ' << sName;
    }
  }
}

}  // namespace
}  // namespace orvane::tools
