// Rows, queries, statements and structures from a shell, of an embedded historian.
#include <signal.h>
#include <sys/wait.h>

#include "tests/tools/plant_program.h"

namespace orvane::tools {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class orvane_rows : public PlantProgram {};

TEST_F(orvane_rows, are_printed_as_an_export_writes_them) {
  auto ended = Rows(" --csv");
  EXPECT_EQ(ended.sErrors, "");
  EXPECT_EQ(ended.nStatus, 0);
  EXPECT_EQ(ended.sOutput,
            "Tag,Timestamp,Value,Status\r\n"
            "T2,2024-05-31 10:00:02+00:00,-7,\"two\nlines\"\r\n"
            "T1,2024-05-31 10:00:01+00:00,,\"Bad, \"\"really\"\"\"\r\n"
            "T1,2024-05-31 10:00:00+00:00,1.5,Good\r\n");
  ended = Rows(" --jsonl --limit 0");
  EXPECT_EQ(ended.nStatus, 0);
  EXPECT_THAT(ended.sOutput, EndsWith("{\"Tag\":\"T1\",\"Timestamp\":\"2024-05-31T10:00:00+00:00\","
                                      "\"Value\":1.5,\"Status\":\"Good\"}\n"));
  ended = Rows(" --sql");
  EXPECT_EQ(ended.nStatus, 0);
  EXPECT_THAT(ended.sOutput, StartsWith("INSERT INTO \"Plant1\"..\"Data\" ("));
}

TEST_F(orvane_rows, stand_in_columns_as_text) {
  const auto ended = Rows("");
  EXPECT_EQ(ended.nStatus, 0);
  EXPECT_EQ(ended.sOutput,
            "Tag  Timestamp                  Value  Status\n"
            "---  ---------                  -----  ------\n"
            "T2   2024-05-31 10:00:02+00:00     -7  two\\nlines\n"
            "T1   2024-05-31 10:00:01+00:00   NULL  Bad, \"really\"\n"
            "T1   2024-05-31 10:00:00+00:00    1.5  Good\n");
}

TEST_F(orvane_rows, are_those_of_the_default_range_or_of_the_last_hours) {
  // What was generated lies in the last two hours, what was imported does not.
  auto ended = Orvane("rows Plant.orvc LOCALHOST/plant1/data --csv --last 3h");
  EXPECT_EQ(ended.nStatus, 0) << ended.sErrors;
  EXPECT_THAT(ended.sOutput, AllOf(StartsWith("Tag,Timestamp,Value,Status\r\n"),
                                   testing::Not(HasSubstr("2024-05-31"))));
  const auto byDefault = Orvane("rows Plant.orvc localhost/Plant1/Data --csv --limit 0");
  EXPECT_THAT(byDefault.sOutput, testing::Not(HasSubstr("2024-05-31")));
  ended = Orvane("rows Plant.orvc localhost/Plant1/Tags --csv");
  EXPECT_EQ(ended.nStatus, 0);
  EXPECT_THAT(ended.sOutput, StartsWith("Tag,"));
}

TEST_F(orvane_rows, are_cut_by_the_limit) {
  const auto ended = Rows(" --csv --limit 2");
  EXPECT_EQ(ended.nStatus, 5);
  EXPECT_THAT(ended.sOutput, EndsWith("\"Bad, \"\"really\"\"\"\r\n"));
  EXPECT_EQ(ended.sErrors,
            "orvane: These are the first 2 rows only, as the row limit is 2; --limit 0 gives "
            "all.\n");
}

TEST_F(orvane_rows, have_the_limit_of_the_document) {
  WriteSample("Plant.orvc", "MaxRows\",\"integer\":100", "MaxRows\",\"integer\":1");
  Orvane("seal Plant.orvc");
  EXPECT_EQ(Rows(" --csv").nStatus, 5);
  EXPECT_EQ(Rows(" --csv --limit 0").nStatus, 0);
}

TEST_F(orvane_rows, that_are_none_still_have_their_names) {
  const auto ended =
      Orvane("rows Plant.orvc localhost/Plant1/Data --csv --from 1999-01-01 --to 1999-01-02");
  EXPECT_EQ(ended.nStatus, 1);
  EXPECT_EQ(ended.sOutput, "Tag,Timestamp,Value,Status\r\n");
  EXPECT_EQ(ended.sErrors, "orvane: No rows were found.\n");
}

TEST_F(orvane_rows, of_what_is_not_there_are_told_apart) {
  const std::pair<Text, Text> wrong[] = {
      {"elsewhere/Plant1/Data", "The document has no server \"elsewhere\""},
      {"localhost/Plant9/Data", "The server \"localhost\" has no catalog \"Plant9\"."},
      {"localhost/Plant1/None", "The catalog \"Plant1\" has no table \"None\"."}};
  for (const auto& [sPath, sSentence] : wrong) {
    const auto ended = Orvane("rows Plant.orvc '" + sPath + "'");
    EXPECT_EQ(ended.nStatus, 1) << sPath;
    EXPECT_THAT(ended.sErrors, HasSubstr(sSentence));
  }
  for (const char* const sArguments :
       {"localhost/Plant1", "localhost/Plant1/Data/x", "x", "localhost/Plant1/Data --last soon",
        "localhost/Plant1/Data --csv --sql", "localhost/Plant1/Data --limit -1",
        "localhost/Plant1/Data --last 1h --from t", "localhost/Plant1/Tags --last 1h"}) {
    const auto ended = Orvane(Text("rows Plant.orvc ") + sArguments);
    EXPECT_EQ(ended.nStatus, 2) << sArguments;
    EXPECT_EQ(ended.sOutput, "") << sArguments;
  }
}

TEST_F(orvane_rows, of_a_server_that_is_not_there_are_no_connection) {
  WriteSample("Plant.orvc", "\"Server\",\"text\":\"localhost\"", "\"Server\",\"text\":\"nowhere\"");
  Orvane("seal Plant.orvc");
  const auto ended = Orvane("rows Plant.orvc nowhere/Plant1/Data");
  EXPECT_EQ(ended.nStatus, 4) << ended.sErrors;
  EXPECT_EQ(ended.sOutput, "");
}

TEST_F(orvane_rows, of_a_query_are_read_and_change_nothing) {
  auto ended = Orvane("query Plant.orvc localhost 'plant signals, last hour (generated)' --csv");
  EXPECT_THAT(ended.sOutput, StartsWith("Tag,Samples,Lowest,Mean,Highest,Unit\r\n"))
      << ended.sErrors;
  WriteSample("Plant.orvc",
              "SELECT Timestamp, Value, Status\\nFROM Machine..Data\\nWHERE Tag = 'cpu.load' AND "
              "Timestamp >= '*-1h'\\nORDER BY Timestamp DESC",
              "DELETE FROM Plant1..Data");
  Orvane("seal Plant.orvc");
  const Text sQuery = "query Plant.orvc localhost 'Processor load, last hour'";
  ended = Orvane(sQuery);
  EXPECT_EQ(ended.nStatus, 3);
  EXPECT_EQ(ended.sErrors,
            "orvane: The statement changes data and has not been run; give --change if that is "
            "what is wanted.\n");
  EXPECT_EQ(Rows(" --csv").nStatus, 0);
  EXPECT_EQ(Orvane("query Plant.orvc localhost None").nStatus, 1);
}

TEST_F(orvane_rows, of_a_statement_come_from_the_standard_input) {
  auto ended = Shell(
      "echo 'SELECT Tag, COUNT(*) AS n FROM Plant1..Data WHERE Tag LIKE '\"'T_'\"' GROUP BY Tag "
      "ORDER BY Tag' | orvane sql Plant.orvc localhost - --csv");
  EXPECT_EQ(ended.nStatus, 0) << ended.sErrors;
  EXPECT_EQ(ended.sOutput, "Tag,n\r\nT1,2\r\nT2,1\r\n");
  const Text sDelete =
      "echo \"DELETE FROM Plant1..Data WHERE Tag = 'T1'\" | orvane sql Plant.orvc "
      "localhost - ";
  EXPECT_EQ(Shell(sDelete).nStatus, 3);
  ended = Shell(sDelete + "--change");
  EXPECT_EQ(ended.nStatus, 0);
  EXPECT_EQ(ended.sOutput, "");
  EXPECT_EQ(ended.sErrors, "Changed 2 rows.\n");
  EXPECT_EQ(Shell("echo SELEKT | orvane sql Plant.orvc localhost -").nStatus, 3);
  EXPECT_EQ(Shell("orvane sql Plant.orvc localhost - < /dev/null").nStatus, 2);
}

TEST_F(orvane_rows, take_a_password_from_a_file_descriptor) {
  // The embedded historian takes any user and looks at no password.
  auto ended = Orvane(
      "rows Plant.orvc localhost/Plant1/Tags --csv --user anna --password-fd 3 "
      "3< Plant.orvc");
  EXPECT_NE(ended.nStatus, 2);
  ended = Shell(
      "printf 'secret\\nSELECT 1 AS one' | orvane sql Plant.orvc localhost - --password-fd 0 "
      "--csv");
  EXPECT_EQ(ended.sOutput, "one\r\n1\r\n") << ended.sErrors;
  ended = Orvane("rows Plant.orvc localhost/Plant1/Tags --password-fd 17");
  EXPECT_EQ(ended.nStatus, 2);
  EXPECT_THAT(ended.sErrors, HasSubstr("cannot be read from the file descriptor 17"));
}

TEST_F(orvane_rows, end_when_their_reader_has_gone) {
  const auto ended = Shell(
      "mkfifo gone; exec 3<> gone 4> gone 3<&-; "
      "orvane rows Plant.orvc localhost/Plant1/Tags --csv >&4; echo $? > status");
  EXPECT_EQ(ended.sErrors, "");
  EXPECT_EQ(Read("status"), "141\n");
}

TEST_F(orvane_rows, are_stopped_by_an_interrupt) {
  // Without an end of its own: only a stop that reaches the statement ends it.
  Write("endless.sql",
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT i FROM n");
  const auto ended = Shell(
      "mkfifo rows; { env --default-signal=INT '" ORVANE_PROGRAM
      "' sql Plant.orvc localhost - --csv --limit 0 --timeout 0 < endless.sql > rows & } ; p=$!; "
      "exec 3< rows; read -r first <&3; kill -INT $p; cat <&3 > /dev/null; wait $p; echo $? > "
      "status");
  EXPECT_EQ(Read("status"), "130\n") << ended.sErrors;
  EXPECT_EQ(ended.sErrors, "");
}

TEST_F(orvane_rows, go_on_without_their_terminal_where_that_is_wanted) {
  Write("endless.sql",
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT i FROM n");
  Shell(
      "mkfifo rows; { nohup '" ORVANE_PROGRAM
      "' sql Plant.orvc localhost - --csv --limit 0 --timeout 0 < endless.sql > rows & } ; p=$!; "
      "exec 3< rows; read -r first <&3; kill -HUP $p; kill -TERM $p; cat <&3 > /dev/null; wait $p; "
      "echo $? > status");
  EXPECT_EQ(Read("status"), "143\n");
}

TEST_F(orvane_rows, have_a_structure) {
  auto ended = Orvane("structure Plant.orvc localhost/Plant1/Data");
  EXPECT_EQ(ended.nStatus, 0) << ended.sErrors;
  EXPECT_THAT(ended.sOutput, StartsWith("Column name  Data type"));
  EXPECT_THAT(ended.sOutput, HasSubstr("\nTimestamp    "));
  ended = Orvane("structure Plant.orvc localhost/Plant1/Data --json");
  EXPECT_EQ(ended.nStatus, 0);
  EXPECT_THAT(ended.sOutput,
              AllOf(StartsWith("{\"columns\":[{\"column\":\"Tag\",\"type\":\""),
                    HasSubstr("\"nullable\":false,\"key\":true}"), EndsWith("]}\n")));
}

TEST_F(orvane_rows, come_from_a_program_that_is_started_from_anywhere) {
  namespace fs = std::filesystem;
  fs::remove_all(m_folder / "data/orvane/components");
  fs::create_directories(m_folder / "opt/bin");
  fs::create_directories(m_folder / "path");
  fs::copy_file(ORVANE_PROGRAM, m_folder / "opt/bin/orvane");
  fs::create_symlink("../opt/bin/orvane", m_folder / "path/orvane");
  const Text sRows =
      "document=$PWD/Plant.orvc; PATH=$PWD/path:$PATH; cd /; command orvane rows "
      "\"$document\" localhost/Plant1/Tags --csv";
  EXPECT_EQ(Shell(sRows).nStatus, 7);
  component::RegisterLibrary(ORVANE_PROVIDER, m_folder / "opt/components");
  auto ended = Shell(sRows);
  EXPECT_EQ(ended.nStatus, 0) << ended.sErrors;
  EXPECT_THAT(ended.sOutput, StartsWith("Tag,"));
  fs::create_directories(m_folder / "opt/share/orvane");
  fs::rename(m_folder / "opt/components", m_folder / "opt/share/orvane/components");
  EXPECT_EQ(Shell(sRows).nStatus, 0);
}

TEST_F(orvane_rows, need_what_they_are_read_from_and_written_to) {
  auto ended = Orvane("sql Plant.orvc localhost - <&-");
  EXPECT_EQ(ended.nStatus, 2);
  EXPECT_THAT(ended.sErrors, HasSubstr("The standard input cannot be read: Bad file descriptor"));
  ended = Rows(" --csv >&-");
  EXPECT_EQ(ended.nStatus, 7);
  EXPECT_THAT(ended.sErrors, HasSubstr("The output cannot be written: Bad file descriptor"));
}

}  // namespace
}  // namespace orvane::tools
