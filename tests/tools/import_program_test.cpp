// orvane-historian import.
#include <sys/resource.h>

#include "tests/fakes/killed_program.h"
#include "tests/tools/historian_program.h"

namespace orvane::tools {
namespace {

using platform::Text;

using import_program = HistorianProgram;

TEST_F(import_program, imports_rows_with_checked_types) {
  MakePlant();
  const auto outcome = Import(
      "\xEF\xBB\xBFtag,timestamp,Value,Status\r\n"
      "T1,2024-05-31 10:00:00,1.5,Good\r\n"
      "\"T,\"\"2\"\"\",2024-05-31T12:00:00+02:00,,\"Bad\nsensor\"\r\n");
  EXPECT_EQ(outcome.sErrors, "");
  EXPECT_EQ(outcome.nStatus, 0);
  EXPECT_EQ(outcome.sOutput, "Imported 2 rows into Plant1..Data.\n");
  EXPECT_EQ(Select("SELECT * FROM Plant1..Data ORDER BY Tag"),
            "T,\"2\"|2024-05-31 10:00:00||Bad\nsensor\nT1|2024-05-31 10:00:00|1.5|Good\n");
}

TEST_F(import_program, names_the_bad_line_and_imports_nothing_at_all) {
  MakePlant();
  const Text sGood = "Tag,Timestamp,Value\nT1,2024-05-31,1\n\"a\nb\",2024-05-31,2\n";
  const std::pair<Text, Text> rows[] = {
      {"T2,2024-05-31,abc\n", "Line 5: \"abc\" is not a number for the column Value"},
      {"T2,2024-05-31,nan\n",
       "Line 5: The database keeps no value that is no number (NaN): give a number or null"},
      {"T2,2024-02-30,1\n",
       "Line 5: \"2024-02-30\" is not a time such as 2024-05-31 17:45:30 for the column Timestamp"},
      {"T2,2024-05-31\n", "Line 5: it has 2 fields, but the first line names 3 columns"},
      {"T2,2024-05-31,1,x\n", "Line 5: it has 4 fields, but the first line names 3 columns"},
      {"T2,2024-05-31,\"1\n", "Line 5: a quote is opened and never closed"},
      {"T2,2024-05-31,1\xFF\n", "Line 5: a field is no UTF-8 text"},
      {"T1,2024-05-31,1\n",
       "Line 5: A rule of the table refuses this: UNIQUE constraint failed: Data.Tag, "
       "Data.Timestamp; correct the row"},
      {",2024-05-31,1\n",
       "Line 5: A rule of the table refuses this: NOT NULL constraint failed: Data.Tag; correct "
       "the row"},
  };
  for (const auto& [sLine, sFailure] : rows) {
    const auto outcome = Import(sGood + sLine);
    EXPECT_EQ(outcome.nStatus, 1);
    EXPECT_EQ(outcome.sErrors, sFailure + "; nothing was imported.\n");
    EXPECT_EQ(outcome.sOutput, "");
    EXPECT_EQ(Select("SELECT count(*) FROM Plant1..Data"), "0\n");
  }
}

TEST_F(import_program, says_that_a_file_may_not_become_so_large_instead_of_dying) {
  MakePlant();
  Text sRows = "Tag,Timestamp,Value\n";
  for (int i = 0; i < 20000; ++i) sRows += "T" + std::to_string(i) + ",2024-05-31,1\n";
  const Text sFile = WriteFile("rows.csv", sRows);
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const rlimit small{65'536, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  const pid_t process = Start({"import", sFile, "--catalog", "Plant1", "--table", "Data"});
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
  const Outcome outcome = End(process);
  EXPECT_EQ(outcome.nStatus, 1);
  EXPECT_NE(outcome.sErrors.find("has no room left on its disk"), Text::npos) << outcome.sErrors;
  EXPECT_EQ(Select("SELECT count(*) FROM Plant1..Data"), "0\n");
}

TEST_F(import_program, killed_at_any_moment_has_imported_all_rows_or_none) {
  MakePlant();
  const Text sFile = WriteFile("rows.csv", "Tag,Timestamp,Value\na,2024-05-31,1\nb,*,2\nc,t,3\n");
  const Text sRoot = m_root.Path().string();
  int nCall = 1;
  for (auto ended = tests::Ended::Killed; ended == tests::Ended::Killed; ++nCall) {
    ended = tests::KilledBefore(nCall, [&] {
      execl(ORVANE_HISTORIAN, ORVANE_HISTORIAN, "--root", sRoot.c_str(), "import", sFile.c_str(),
            "--catalog", "Plant1", "--table", "Data", nullptr);
    });
    ASSERT_NE(ended, tests::Ended::Untraceable) << "this machine lets no process be traced";
    const Text sRows = Select("SELECT count(*), sum(Value) FROM Plant1..Data");
    const bool bAll = sRows == "3|6\n";
    EXPECT_TRUE(bAll || sRows == "0|\n") << "killed before the change " << nCall << ": " << sRows;
    if (ended != tests::Ended::Killed) EXPECT_TRUE(bAll);
    if (bAll) Select("DELETE FROM Plant1..Data");
  }
  EXPECT_GT(nCall, 8);
}

TEST_F(import_program, refuses_headers_tables_and_files_that_do_not_fit) {
  MakePlant();
  EXPECT_EQ(Import("Tag,Color\n").sErrors,
            "Line 1: there is no column \"Color\" in the table Data; nothing was imported.\n");
  EXPECT_EQ(Import("Tag,tag\n").sErrors,
            "Line 1: the column \"tag\" is named twice; nothing was imported.\n");
  EXPECT_EQ(Import("").sErrors,
            "The file is empty; its first line must name columns of the table.\n");
  EXPECT_EQ(Import("a\n", "Nothing").sErrors,
            "There is no table \"Nothing\" in the catalog Plant1; name one that it has.\n");
  const Text sFile = WriteFile("rows.csv", "Name\nx\n");
  EXPECT_EQ(Run({"import", sFile, "--catalog", "Nowhere", "--table", "Data"}).sErrors,
            "There is no catalog \"Nowhere\" on this server; create it first, for example in the "
            "console.\n");
  EXPECT_EQ(Run({"import", sFile, "--catalog", "Orvane", "--table", "Historians"}).sErrors,
            "The catalog Orvane belongs to the historian itself; name one of your own.\n");
  EXPECT_EQ(Run({"import", "/nowhere.csv", "--catalog", "Plant1", "--table", "Data"}).sErrors,
            "The file /nowhere.csv cannot be read: No such file or directory; name another one.\n");
  EXPECT_EQ(
      Run({"import", sFile, "--catalog", "Plant1", "--table", "Data", "--server", "Far"}).sErrors,
      "There is no historian \"Far\" on this machine; make it with \"orvane-historian init Far\" "
      "or choose another server.\n");
}

TEST_F(import_program, gives_no_row_up_for_another_whatever_the_table_says) {
  MakePlant();
  for (const char* const sRule : {"REPLACE", "IGNORE"}) {
    Select("CREATE TABLE Plant1..T (k TEXT PRIMARY KEY ON CONFLICT " + Text(sRule) + ", a TEXT)");
    Select("INSERT INTO Plant1..T VALUES ('y', '2')");
    const auto outcome = Import("k,a\nx,1\ny,mine\n", "T");
    EXPECT_EQ(outcome.nStatus, 1);
    EXPECT_EQ(outcome.sErrors,
              "Line 3: A rule of the table refuses this: UNIQUE constraint failed: T.k; correct "
              "the row; nothing was imported.\n");
    EXPECT_EQ(Select("SELECT * FROM Plant1..T"), "y|2\n") << sRule;
    Select("DROP TABLE Plant1..T");
  }
}

TEST_F(import_program, replaces_rows_when_it_is_told_to) {
  MakePlant();
  const Text sFile = WriteFile("rows.csv", "Tag,Unit\nT1,bar\n");
  const std::vector<Text> arguments = {"import",  sFile,  "--catalog", "Plant1",
                                       "--table", "Tags", "--replace"};
  EXPECT_EQ(Run(arguments).nStatus, 0);
  EXPECT_EQ(Run(arguments).nStatus, 0);
  EXPECT_EQ(Select("SELECT Tag, Unit FROM Plant1..Tags"), "T1|bar\n");
}

}  // namespace
}  // namespace orvane::tools
