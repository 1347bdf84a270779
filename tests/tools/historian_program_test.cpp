// The program orvane-historian as it is called from a shell.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <spawn.h>
#include <sqlite3.h>
#include <sys/wait.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <thread>

#include "tests/provider/temporary_root.h"

extern char** environ;

namespace orvane::tools {
namespace {

using platform::Text;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

struct Outcome {
  int nStatus = -1;
  Text sOutput;
  Text sErrors;
};

class historian_program : public testing::Test {
 protected:
  // Starts the program with its output in files, whose names begin with the prefix.
  pid_t Start(std::vector<Text> arguments, const Text& sPrefix = {}) {
    arguments.insert(arguments.begin(), {ORVANE_HISTORIAN, "--root", m_root.Path().string()});
    std::vector<char*> pointers;
    for (auto& sArgument : arguments) pointers.push_back(sArgument.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    const auto redirect = [&](int nFile, const Text& sName) {
      posix_spawn_file_actions_addopen(&actions, nFile, (m_root.Path() / (sPrefix + sName)).c_str(),
                                       O_WRONLY | O_CREAT | O_TRUNC, 0644);
    };
    redirect(1, "output");
    redirect(2, "errors");
    pid_t process = 0;
    EXPECT_EQ(posix_spawn(&process, ORVANE_HISTORIAN, &actions, nullptr, pointers.data(), environ),
              0);
    posix_spawn_file_actions_destroy(&actions);
    return process;
  }
  Outcome End(pid_t process, const Text& sPrefix = {}) {
    int nStatus = 0;
    waitpid(process, &nStatus, 0);
    return {WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1, ReadFile(sPrefix + "output"),
            ReadFile(sPrefix + "errors")};
  }
  Outcome Run(std::vector<Text> arguments) { return End(Start(std::move(arguments))); }

  Text ReadFile(const Text& sName) const {
    std::ostringstream content;
    content << std::ifstream(m_root.Path() / sName).rdbuf();
    return content.str();
  }
  Text WriteFile(const char* sName, const Text& sContent) const {
    std::ofstream(m_root.Path() / sName, std::ios::binary) << sContent;
    return (m_root.Path() / sName).string();
  }
  std::unique_ptr<ado::Session> Open() const {
    provider::HistorianProvider provider(provider::PlaceAt(m_root.Path()));
    return provider.Open(ado::ConnectionSettings::Parse(""), "", {});
  }
  Text Select(const Text& sText) const {
    return provider::Rows(*Open()->Execute({sText, 0, {}}, {}).recordset);
  }
  static constexpr const char* kSamples = "SELECT count(*) FROM Machine..Data WHERE Tag = 'load.1'";
  // False as well while the catalog is not there.
  bool HasMoreSamples(int nThan) const {
    try {
      return std::stoi(Select(kSamples)) > nThan;
    } catch (const platform::Failure&) {
      return false;
    }
  }
  void MakePlant() const { Open()->Execute({"CREATE DATABASE \"Plant1\" ", 0, {}}, {}); }
  Outcome Import(const Text& sContent, const Text& sTable = "Data") {
    return Run({"import", WriteFile("rows.csv", sContent), "--catalog", "Plant1", "--table", sTable,
                "--time-zone", "UTC"});
  }

  provider::TemporaryRoot m_root;
};

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
  for (const char* const sCommand : {"init", "import", "record", "generate", "--root"}) {
    EXPECT_THAT(outcome.sOutput, HasSubstr(sCommand));
  }
  for (const std::vector<Text>& arguments : {std::vector<Text>{},
                                             {"boil"},
                                             {"import"},
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

TEST_F(historian_program, imports_rows_with_checked_types) {
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

TEST_F(historian_program, names_the_bad_line_and_imports_nothing_at_all) {
  MakePlant();
  const Text sGood = "Tag,Timestamp,Value\nT1,2024-05-31,1\n\"a\nb\",2024-05-31,2\n";
  const std::pair<Text, Text> rows[] = {
      {"T2,2024-05-31,abc\n", "Line 5: \"abc\" is not a number for the column Value"},
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

TEST_F(historian_program, refuses_headers_tables_and_files_that_do_not_fit) {
  MakePlant();
  EXPECT_EQ(Import("Tag,Color\n").sErrors,
            "Line 1: the table Data has no column \"Color\"; nothing was imported.\n");
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

TEST_F(historian_program, replaces_rows_when_it_is_told_to) {
  MakePlant();
  const Text sFile = WriteFile("rows.csv", "Tag,Unit\nT1,bar\n");
  const std::vector<Text> arguments = {"import",  sFile,  "--catalog", "Plant1",
                                       "--table", "Tags", "--replace"};
  EXPECT_EQ(Run(arguments).nStatus, 0);
  EXPECT_EQ(Run(arguments).nStatus, 0);
  EXPECT_EQ(Select("SELECT Tag, Unit FROM Plant1..Tags"), "T1|bar\n");
}

TEST_F(historian_program, records_this_machine) {
  const auto outcome = Run({"record", "--count", "2"});
  EXPECT_EQ(outcome.sErrors, "");
  EXPECT_EQ(outcome.nStatus, 0);
  EXPECT_EQ(outcome.sOutput, "Recorded 2 samples into Machine.\n");
  EXPECT_EQ(Select("SELECT count(*) FROM Machine..Data WHERE Tag = 'memory.used'"), "2\n");
  EXPECT_EQ(Select("SELECT Unit, Type FROM Machine..Tags WHERE Tag = 'load.1'"),
            "processes|number\n");
  EXPECT_EQ(Select("SELECT count(DISTINCT Tag) - (SELECT count(*) FROM Machine..Tags) FROM "
                   "Machine..Data"),
            "0\n");
}

TEST_F(historian_program, forgets_rows_that_are_older_than_it_keeps) {
  ASSERT_EQ(Run({"record", "--once"}).nStatus, 0);
  Open()->Execute(
      {"INSERT INTO Machine..Data (Tag, Timestamp, Value) VALUES ('old', '2001-01-01', 1)", 0, {}},
      {});
  ASSERT_EQ(Run({"record", "--once", "--keep", "0"}).nStatus, 0);
  EXPECT_EQ(Select("SELECT count(*) FROM Machine..Data WHERE Tag = 'old'"), "1\n");
  ASSERT_EQ(Run({"record", "--once", "--keep", "1h"}).nStatus, 0);
  EXPECT_EQ(Select("SELECT count(*) FROM Machine..Data WHERE Tag = 'old'"), "0\n");
  EXPECT_EQ(Select("SELECT count(*) FROM Machine..Data WHERE Tag = 'load.1'"), "3\n");
  EXPECT_EQ(
      Run({"record", "--once", "--keep", "soon"}).sErrors,
      "\"soon\" is no time to keep rows; write a number and s, m, h, d or w, such as 7d, or 0 "
      "to keep all.\n");
}

// Ends when the catalog has rows of a recorder that has just been started.
template <class Test>
void AwaitRows(Test&& hasRows) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (!hasRows() && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
}

TEST_F(historian_program, stops_cleanly_at_a_signal) {
  for (const int nSignal : {SIGTERM, SIGINT}) {
    const pid_t process = Start({"record"});
    AwaitRows([&] {
      try {
        return Select("SELECT count(*) FROM Machine..Data") != "0\n";
      } catch (const platform::Failure&) {
        return false;
      }
    });
    // One recorder at a time; its output goes where that of the first one went.
    kill(process, nSignal);
    const auto outcome = End(process);
    EXPECT_EQ(outcome.nStatus, 0);
    EXPECT_THAT(outcome.sOutput, StartsWith("Recorded "));
    EXPECT_EQ(outcome.sErrors, "");
    Open()->Execute({"DELETE FROM Machine..Data", 0, {}}, {});
  }
}

TEST_F(historian_program, lets_one_recorder_at_a_time_into_a_catalog) {
  const pid_t process = Start({"record"});
  AwaitRows([&] {
    return std::filesystem::exists(m_root.Historian() / "catalogs" / "Machine.db.recorder");
  });
  Outcome second;
  AwaitRows([&] {
    second = Run({"record", "--once"});
    return second.nStatus == 1;
  });
  kill(process, SIGTERM);
  End(process);
  EXPECT_EQ(second.sErrors,
            "Another recorder is at work on the catalog Machine; stop it first or record into "
            "another catalog.\n");
}

TEST_F(historian_program, takes_over_from_a_recorder_that_ends) {
  const pid_t first = Start({"record"});
  AwaitRows([&] { return HasMoreSamples(0); });
  const pid_t second = Start({"record"}, "second-");
  AwaitRows([&] { return !ReadFile("second-output").empty(); });
  EXPECT_EQ(ReadFile("second-output"),
            "Another recorder is at work on the catalog Machine; this one takes over when that "
            "ends.\n");
  kill(first, SIGTERM);
  EXPECT_EQ(End(first).nStatus, 0);
  const int nBefore = std::stoi(Select(kSamples));
  AwaitRows([&] { return HasMoreSamples(nBefore); });
  EXPECT_TRUE(HasMoreSamples(nBefore));
  kill(second, SIGTERM);
  const auto outcome = End(second, "second-");
  EXPECT_EQ(outcome.nStatus, 0);
  EXPECT_EQ(outcome.sErrors, "");
  EXPECT_THAT(outcome.sOutput, testing::ContainsRegex("\nRecorded [1-9][0-9]* samples? into"));
}

TEST_F(historian_program, a_recorder_that_waits_for_another_one_stops_at_a_signal) {
  const pid_t first = Start({"record"});
  AwaitRows([&] { return HasMoreSamples(0); });
  const pid_t second = Start({"record"}, "second-");
  AwaitRows([&] { return !ReadFile("second-output").empty(); });
  kill(second, SIGINT);
  const auto outcome = End(second, "second-");
  EXPECT_EQ(outcome.nStatus, 0);
  EXPECT_THAT(outcome.sOutput, EndsWith("\nRecorded 0 samples into Machine.\n"));
  kill(first, SIGTERM);
  EXPECT_EQ(End(first).nStatus, 0);
}

TEST_F(historian_program, loses_no_sample_while_another_program_holds_a_lock) {
  ASSERT_EQ(Run({"record", "--once"}).nStatus, 0);
  sqlite3* stranger = nullptr;
  ASSERT_EQ(sqlite3_open((m_root.Historian() / "catalogs" / "Machine.db").c_str(), &stranger),
            SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(stranger, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  const pid_t process = Start({"record", "--count", "3"});
  // The recorder meets the lock with at least its first sample.
  std::this_thread::sleep_for(std::chrono::milliseconds(2500));
  ASSERT_EQ(sqlite3_exec(stranger, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(stranger);
  const auto outcome = End(process);
  EXPECT_EQ(outcome.sErrors, "");
  EXPECT_EQ(outcome.nStatus, 0);
  EXPECT_EQ(Select("SELECT count(*) FROM Machine..Data WHERE Tag = 'load.1'"), "4\n");
}

TEST_F(historian_program, keeps_recording_when_the_catalog_has_room_again) {
  Open()->Execute({"CREATE DATABASE \"Small\" ON (SIZE=64)", 0, {}}, {});
  const auto opened = Open();
  const auto execute = [&](const Text& sText) { opened->Execute({sText, 0, {}}, {}); };
  const auto fill = [&](const Text& sTable, const Text& sTag, const Text& sValue) {
    for (int i = 0;; ++i) {
      const Text sNumber = std::to_string(i);
      try {
        execute("INSERT INTO Small.." + sTable + " (Tag, Timestamp, Value) VALUES ('" + sTag +
                "' || printf('%0150d', " + sNumber + "), datetime(" + sNumber + ", 'unixepoch'), " +
                sValue + ")");
      } catch (const platform::Failure& failed) {
        ASSERT_EQ(failed.Number(), platform::failure::kStorage);
        return;
      }
    }
  };
  fill("Data2", "", "hex(zeroblob(1500))");
  // Nor is room left in the pages that the table has already, wherever a counter's row belongs.
  for (const char* const sTag : {"a", "cpu", "disk", "load", "memory", "net", "z"}) {
    fill("Data", sTag, "0");
  }
  const pid_t process = Start({"record", "--catalog", "Small", "--count", "3"});
  AwaitRows([&] { return !ReadFile("errors").empty(); });
  AwaitRows([&] {
    try {
      execute("DELETE FROM Small..Data2");
      return true;
    } catch (const platform::Failure&) {
      return false;  // the recorder is just trying
    }
  });
  const auto outcome = End(process);
  EXPECT_EQ(outcome.nStatus, 0);
  EXPECT_EQ(outcome.sErrors,
            "The catalog \"Small\" has reached its limit of 64 kilobytes, so nothing was written: "
            "delete rows or use another catalog. The recorder keeps trying.\n");
  EXPECT_EQ(Select("SELECT count(*) FROM Small..Data WHERE Tag = 'load.1'"), "3\n");
  // What was described while nothing could be written is described now.
  EXPECT_EQ(Select("SELECT count(DISTINCT Tag) - (SELECT count(*) FROM Small..Tags) FROM "
                   "Small..Data WHERE length(Tag) < 100"),
            "0\n");
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

}  // namespace
}  // namespace orvane::tools
