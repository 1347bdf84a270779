// Rows exported from a shell, and rows that are watched.
#include "tests/tools/plant_program.h"
#include "tests/tools/terminal_run.h"

namespace orvane::tools {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class orvane_exports : public PlantProgram {
 protected:
  Ended Export(const Text& sArguments) const {
    return Orvane("export Plant.orvc localhost/Plant1/Data " + sArguments + kThatDay);
  }
  Text OnTerminal(const Text& sLine) const { return RunOnTerminal(InFolder(sLine)).sSeen; }
};

TEST_F(orvane_exports, have_the_form_that_the_name_of_the_file_tells) {
  for (const auto& [sFile, sOption] : {std::pair{"rows.csv", "--csv"},
                                       {"rows.jsonl", "--jsonl"},
                                       {"rows.SQL", "--sql"},
                                       {"rows.txt", "--text"},
                                       {"rows", "--csv"}}) {
    const auto ended = Export(sFile);
    EXPECT_EQ(ended.nStatus, 0) << ended.sErrors;
    EXPECT_EQ(ended.sOutput, "Exported 3 rows to " + Text(sFile) + ".\n");
    EXPECT_EQ(ended.sErrors, "");
    EXPECT_EQ(Read(sFile), Rows(Text(" ") + sOption).sOutput) << sFile;
  }
  EXPECT_EQ(Export("rows.csv --jsonl").nStatus, 0);
  EXPECT_EQ(Read("rows.csv"), Read("rows.jsonl"));
  EXPECT_EQ(Export("rows.csv --separator semicolon --no-names").nStatus, 0);
  EXPECT_THAT(Read("rows.csv"), AllOf(StartsWith("T2;2024-05-31 10:00:02+00:00;-7;\"two\n"),
                                      EndsWith(";1.5;Good\r\n")));
}

TEST_F(orvane_exports, are_marked_where_they_were_cut) {
  Write("rows.csv", "old");
  const auto ended = Export("rows.csv --limit 2");
  EXPECT_EQ(ended.nStatus, 5);
  EXPECT_EQ(ended.sOutput, "Exported 2 rows to ./rows (first 2 rows).csv.\n");
  EXPECT_EQ(Read("rows.csv"), "old");
  EXPECT_EQ(Read("rows (first 2 rows).csv"), Rows(" --csv --limit 2").sOutput);
}

TEST_F(orvane_exports, ignore_the_limit_of_the_document) {
  WriteSample("Plant.orvc", "MaxRows\",\"integer\":100", "MaxRows\",\"integer\":1");
  Orvane("seal Plant.orvc");
  EXPECT_EQ(Export("rows.csv").nStatus, 0);
}

TEST_F(orvane_exports, of_a_query_and_of_nothing) {
  auto ended = Shell(
      "echo \"SELECT Tag FROM Plant1..Data WHERE Tag = 'T2'\" | orvane query add Plant.orvc "
      "localhost Q; orvane export Plant.orvc localhost --query q out.csv");
  EXPECT_EQ(Read("out.csv"), "Tag\r\nT2\r\n") << ended.sErrors;
  ended =
      Orvane("export Plant.orvc localhost/Plant1/Data none.csv --from 1999-01-01 --to 1999-01-02");
  EXPECT_EQ(ended.nStatus, 1);
  EXPECT_EQ(Read("none.csv"), "Tag,Timestamp,Value,Status\r\n");
  ended = Orvane("export Plant.orvc localhost --query q out.csv --last 1h");
  EXPECT_EQ(ended.nStatus, 2);
  EXPECT_THAT(ended.sErrors, HasSubstr("The statement of a query has its times in it"));
}

TEST_F(orvane_exports, that_fail_leave_no_file) {
  EXPECT_EQ(Orvane("export Plant.orvc localhost/Plant1/Data nowhere/rows.csv").nStatus, 7);
  Shell(
      "echo 'SELECT no FROM Plant1..Data' | orvane query add Plant.orvc localhost Q; mkdir out; "
      "orvane export Plant.orvc localhost --query Q out/rows.csv");
  EXPECT_TRUE(std::filesystem::is_empty(m_folder / "out"));
}

TEST_F(orvane_exports, tell_a_terminal_how_far_they_are) {
  const Text sSeen = OnTerminal("orvane export Plant.orvc localhost/Plant1/Data rows.csv" +
                                Text(kThatDay) + " > told");
  EXPECT_THAT(sSeen, HasSubstr("\r\x1B[K3 rows so far"));
  EXPECT_THAT(sSeen, EndsWith("\r\x1B[K"));
  EXPECT_EQ(Read("told"), "Exported 3 rows to rows.csv.\n");
}

TEST_F(orvane_exports, watched_rows_take_the_place_of_those_before_on_a_screen) {
  const Text sWatch =
      "orvane watch Plant.orvc localhost/Plant1/Data --every 0 --times 2 --csv " + Text(kThatDay);
  const Text sScreen =
      "\x1B[H\x1B[2J\x1B[3JTag,Timestamp,Value,\r\nT2,2024-05-31 10:00:\r\nlines\"\r\r\n";
  EXPECT_EQ(OnTerminal(sWatch), sScreen + sScreen);
  const auto ended = Shell(sWatch);
  EXPECT_EQ(ended.nStatus, 0);
  const Text sRows = Rows(" --csv").sOutput;
  EXPECT_EQ(ended.sOutput, sRows + "\n" + sRows);
}

TEST_F(orvane_exports, watched_rows_say_that_they_are_cut) {
  const auto ended =
      Orvane("watch Plant.orvc localhost/Plant1/Data --times 1 --limit 2" + Text(kThatDay));
  EXPECT_EQ(ended.nStatus, 5);
  EXPECT_THAT(ended.sOutput, EndsWith("\n(the first 2 rows only)\n"));
}

TEST_F(orvane_exports, watching_ends_with_its_reader) {
  const auto ended = Shell(
      "{ orvane watch Plant.orvc localhost/Plant1/Tags --every 0 --csv; echo $? > status; } | head "
      "-n 1");
  EXPECT_THAT(ended.sOutput, StartsWith("Tag,"));
  EXPECT_EQ(ended.sErrors, "");
  EXPECT_EQ(Read("status"), "141\n");
}

}  // namespace
}  // namespace orvane::tools
