// Making, attaching and filling historians from a shell.
#include "tests/tools/historian_program.h"

namespace orvane::tools {
namespace {

using platform::Text;
using testing::EndsWith;
using testing::HasSubstr;

using historian_program = HistorianProgram;

TEST_F(historian_program, makes_a_historian_and_finds_it_again) {
  const Text sFolder = m_root.Historian().string();
  auto outcome = Run({"init"});
  EXPECT_EQ(outcome.nStatus, 0);
  EXPECT_EQ(outcome.sOutput, "Made the historian localhost in " + sFolder + ".\n");
  outcome = Run({"init"});
  EXPECT_EQ(outcome.nStatus, 0);
  EXPECT_EQ(outcome.sOutput, "Found the historian localhost in " + sFolder + ".\n");
  EXPECT_EQ(Run({"init", "Plant7"}).nStatus, 0);
  EXPECT_TRUE(std::filesystem::exists(m_root.Historian("Plant7") / "Orvane.db"));
}

TEST_F(historian_program, makes_one_that_is_gone_again_only_when_it_is_told_to) {
  ASSERT_EQ(Run({"init"}).nStatus, 0);
  std::filesystem::remove_all(m_root.Historian());
  const auto outcome = Run({"generate", "--hours", "1"});
  EXPECT_EQ(outcome.nStatus, 1);
  EXPECT_EQ(outcome.sErrors,
            "The historian \"localhost\" was in the folder " + m_root.Historian().string() +
                " and is gone: bring that back (its disk may not be mounted), or make a new, empty "
                "one with \"orvane-historian init localhost\".\n");
  EXPECT_FALSE(std::filesystem::exists(m_root.Historian()));
  EXPECT_EQ(Run({"init", "localhost"}).nStatus, 0);
  EXPECT_EQ(Run({"generate", "--hours", "1"}).nStatus, 0);
}

TEST_F(historian_program, says_that_a_historian_has_lost_its_list_of_catalogs) {
  ASSERT_EQ(Run({"init"}).nStatus, 0);
  std::filesystem::resize_file(m_root.Historian() / "Orvane.db", 0);
  const auto outcome = Run({"init"});
  EXPECT_EQ(outcome.nStatus, 1);
  EXPECT_EQ(outcome.sOutput, "");
  EXPECT_THAT(outcome.sErrors, HasSubstr("has lost its list of catalogs; restore it from a copy"));
}

TEST_F(historian_program, lets_go_of_a_catalog_and_takes_it_in_again) {
  MakePlant();
  const Text sFile = (m_root.Historian() / "catalogs" / "Plant1.db").string();
  auto outcome = Run({"detach", "plant1"});
  EXPECT_EQ(outcome.sErrors, "");
  EXPECT_EQ(outcome.sOutput, "Detached the catalog Plant1; its file stays in " + sFile + ".\n");
  EXPECT_EQ(Select("SELECT count(*) FROM Orvane..Historians"), "0\n");
  outcome = Run({"attach", "Plant2", sFile});
  EXPECT_EQ(outcome.sErrors, "");
  EXPECT_EQ(outcome.sOutput, "Attached the catalog Plant2 in " + sFile + ".\n");
  EXPECT_EQ(Select("SELECT count(*) FROM Plant2..Tags"), "0\n");
  outcome = Run({"attach", "Plant3", sFile});
  EXPECT_EQ(outcome.nStatus, 1);
  EXPECT_THAT(outcome.sErrors, HasSubstr("is that of the catalog \"Plant2\" already"));
}

TEST_F(historian_program, says_what_is_wrong_with_a_historian) {
  WriteFile("historians", "x");
  const auto outcome = Run({"init"});
  EXPECT_EQ(outcome.nStatus, 1);
  EXPECT_EQ(outcome.sOutput, "");
  EXPECT_THAT(outcome.sErrors, HasSubstr("cannot be made"));
}

TEST_F(historian_program, tells_how_it_is_called) {
  auto outcome = Run({"--help"});
  EXPECT_EQ(outcome.nStatus, 0);
  for (const char* const sCommand :
       {"init", "attach", "detach", "import", "record", "generate", "--root"}) {
    EXPECT_THAT(outcome.sOutput, HasSubstr(sCommand));
  }
  for (const std::vector<Text>& arguments : {std::vector<Text>{},
                                             {"boil"},
                                             {"import"},
                                             {"attach", "Plant1"},
                                             {"record", "--count", "none"},
                                             {"record", "--once", "--count", "2"},
                                             {"generate", "--hours", "0"}}) {
    outcome = Run(arguments);
    EXPECT_EQ(outcome.nStatus, 1);
    EXPECT_EQ(outcome.sOutput, "");
    EXPECT_THAT(outcome.sErrors, EndsWith("; see orvane-historian --help.\n"));
    EXPECT_EQ(std::count(outcome.sErrors.begin(), outcome.sErrors.end(), '\n'), 1);
  }
  EXPECT_EQ(Run({"record", "--boil"}).sErrors,
            "The following argument was not expected: --boil; see orvane-historian --help.\n");
}

TEST_F(historian_program, generates_the_same_signals_every_time) {
  const std::vector<Text> arguments = {"generate", "--hours", "1", "--step", "60"};
  auto outcome = Run(arguments);
  EXPECT_EQ(outcome.sErrors, "");
  EXPECT_EQ(outcome.nStatus, 0);
  const Text sFirst = Select(
      "SELECT Tag, Timestamp, Value FROM Plant1..Data WHERE Tag = "
      "'TIC201.PV' ORDER BY Timestamp");
  EXPECT_EQ(Select("SELECT count(*) FROM Plant1..Tags WHERE Description LIKE '%(generated)'"),
            Select("SELECT count(*) FROM Plant1..Tags"));
  EXPECT_NE(Select("SELECT count(*) FROM Plant1..Data2"), "0\n");
  Open()->Execute({"DELETE FROM Plant1..Data", 0, {}}, {});
  EXPECT_EQ(Run(arguments).nStatus, 0);
  const Text sAgain = Select(
      "SELECT Tag, Timestamp, Value FROM Plant1..Data WHERE Tag = "
      "'TIC201.PV' ORDER BY Timestamp");
  // A minute may have ended between the two.
  EXPECT_NE(sAgain.find(sFirst.substr(sFirst.find('\n') + 1)), Text::npos);
  outcome = Run(arguments);
  EXPECT_THAT(outcome.sOutput,
              testing::AnyOf("Generated 0 values in Plant1.\n", "Generated 8 values in Plant1.\n",
                             "Generated 9 values in Plant1.\n"));
}

TEST_F(historian_program, generates_nothing_into_a_catalog_that_somebody_else_has_made) {
  MakePlant();
  const auto execute = [&](const Text& sText) { Open()->Execute({sText, 0, {}}, {}); };
  const Text sKeptAway =
      "The catalog \"Plant1\" holds no generated signals, so none were written into it; name "
      "another "
      "one, such as \"orvane-historian generate --catalog Invented\".\n";
  const auto expectKeptAway = [&] {
    const auto outcome = Run({"generate", "--hours", "1"});
    EXPECT_EQ(outcome.nStatus, 2);
    EXPECT_EQ(outcome.sOutput, "");
    EXPECT_EQ(outcome.sErrors, sKeptAway);
  };
  expectKeptAway();
  // Nor with rows and tags in it, whatever they are called.
  execute(
      "INSERT INTO Plant1..Tags (Tag, Description) VALUES ('TIC201.PV', 'Reactor temperature')");
  execute("INSERT INTO Plant1..Data (Tag, Timestamp, Value) VALUES ('TIC201.PV', '2001-01-01', 1)");
  expectKeptAway();
  EXPECT_EQ(Select("SELECT count(*) FROM Plant1..Data"), "1\n");
  EXPECT_EQ(Select("SELECT Description FROM Plant1..Tags"), "Reactor temperature\n");
  execute("DROP TABLE Plant1..Tags");
  expectKeptAway();
  // What the sentence advises.
  const auto outcome = Run({"generate", "--hours", "1", "--catalog", "Invented"});
  EXPECT_EQ(outcome.sErrors, "");
  EXPECT_EQ(outcome.nStatus, 0);
}

TEST_F(historian_program, generates_into_its_own_catalog_and_leaves_what_others_put_there) {
  ASSERT_EQ(Run({"generate", "--hours", "1", "--step", "60"}).nStatus, 0);
  const auto execute = [&](const Text& sText) { Open()->Execute({sText, 0, {}}, {}); };
  execute("UPDATE Plant1..Tags SET Description = 'Mine' WHERE Tag = 'TIC201.PV'");
  execute("DELETE FROM Plant1..Data WHERE Tag IN ('TIC201.PV', 'PI202.PV')");
  execute("UPDATE Plant1..Data SET Value = -1 WHERE Tag = 'EI402.PV'");
  const Text sMine = "SELECT count(*) FROM Plant1..Data WHERE Value = -1";
  const Text sBefore = Select(sMine);
  ASSERT_EQ(Run({"generate", "--hours", "1", "--step", "60"}).nStatus, 0);
  EXPECT_EQ(Select(sMine), sBefore);
  EXPECT_EQ(Select("SELECT count(*) FROM Plant1..Data WHERE Tag = 'TIC201.PV'"), "0\n");
  EXPECT_NE(Select("SELECT count(*) FROM Plant1..Data WHERE Tag = 'PI202.PV'"), "0\n");
  // Made and never filled, as a crash leaves it.
  for (const char* const sTable : {"Tags", "Data", "Data2"}) {
    execute("DELETE FROM Plant1.." + Text(sTable));
  }
  EXPECT_EQ(Run({"generate", "--hours", "1"}).nStatus, 0);
  EXPECT_NE(Select("SELECT count(*) FROM Plant1..Data"), "0\n");
  // By its signals it is known as well, whatever has become of its description.
  const Text sFile = (m_root.Historian() / "catalogs" / "Plant1.db").string();
  ASSERT_EQ(Run({"detach", "Plant1"}).nStatus, 0);
  ASSERT_EQ(Run({"attach", "Plant1", sFile}).nStatus, 0);
  EXPECT_EQ(Run({"generate", "--hours", "1"}).nStatus, 0);
}

}  // namespace
}  // namespace orvane::tools
