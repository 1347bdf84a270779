// orvane-historian record.
#include "tests/tools/historian_program.h"

namespace orvane::tools {
namespace {

using platform::Text;
using testing::EndsWith;
using testing::StartsWith;

class recorder_program : public HistorianProgram {
 protected:
  void Do(const Text& sText) const { Open()->Execute({sText, 0, {}}, {}); }
  // A value long ago.
  void Insert(const Text& sTag) const {
    Do("INSERT INTO Machine..Data (Tag, Timestamp, Value) VALUES ('" + sTag +
       "', '2001-01-01', 1)");
  }
};

TEST_F(recorder_program, records_this_machine) {
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

TEST_F(recorder_program, forgets_rows_of_its_own_that_are_older_than_it_keeps) {
  ASSERT_EQ(Run({"record", "--once"}).nStatus, 0);
  // Of a disk that was there once, too.
  Do("INSERT INTO Machine..Tags (Tag, Description) VALUES ('disk.sdz.read', 'Read from disk sdz')");
  for (const char* const sTag : {"load.1", "cpu.load", "disk.sdz.read"}) Insert(sTag);
  const Text sOld = "SELECT count(*) FROM Machine..Data WHERE Timestamp < '2002-01-01'";
  ASSERT_EQ(Run({"record", "--once", "--keep", "0"}).nStatus, 0);
  EXPECT_EQ(Select(sOld), "3\n");
  ASSERT_EQ(Run({"record", "--once", "--keep", "1h"}).nStatus, 0);
  EXPECT_EQ(Select(sOld), "0\n");
  EXPECT_EQ(Select("SELECT count(*) FROM Machine..Data WHERE Tag = 'load.1'"), "3\n");
  EXPECT_EQ(
      Run({"record", "--once", "--keep", "soon"}).sErrors,
      "\"soon\" is no time to keep rows; write a number and s, m, h, d or w, such as 7d, or 0 "
      "to keep all.\n");
}

TEST_F(recorder_program, keeps_rows_and_tags_that_somebody_else_has_made) {
  Open()->Execute({"CREATE DATABASE \"Machine\" ", 0, {}}, {});
  // One that no counter has, two of names that counters have, one that looks like a device.
  Do("INSERT INTO Machine..Tags (Tag, Description) VALUES ('FIC1', 'Read from disk FIC1'), "
     "('load.5', 'Load of the crane'), ('disk.sdz.read', 'Read by Ann')");
  for (const char* const sTag : {"FIC1", "load.5", "load.15", "disk.sdz.read"}) Insert(sTag);
  const Text sTags = Select("SELECT Tag, Description FROM Machine..Tags ORDER BY Tag");
  for (int i = 0; i < 2; ++i) {
    const auto outcome = Run({"record", "--once", "--keep", "1h"});
    EXPECT_EQ(outcome.sErrors, "");
    EXPECT_EQ(outcome.nStatus, 0);
  }
  EXPECT_EQ(Select("SELECT Tag FROM Machine..Data WHERE Timestamp < '2002-01-01' ORDER BY Tag"),
            "FIC1\ndisk.sdz.read\nload.15\nload.5\n");
  EXPECT_EQ(Select("SELECT Tag, Description FROM Machine..Tags WHERE Tag IN ('FIC1', 'load.5', "
                   "'load.15', 'disk.sdz.read') ORDER BY Tag"),
            sTags);
  EXPECT_EQ(Select("SELECT count(*) FROM Machine..Data WHERE Tag = 'load.1'"), "2\n");
}

TEST_F(recorder_program, stops_cleanly_at_a_signal) {
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

TEST_F(recorder_program, lets_one_recorder_at_a_time_into_a_catalog) {
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

TEST_F(recorder_program, takes_over_from_a_recorder_that_ends) {
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

TEST_F(recorder_program, a_recorder_that_waits_for_another_one_stops_at_a_signal) {
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

TEST_F(recorder_program, loses_no_sample_while_another_program_holds_a_lock) {
  ASSERT_EQ(Run({"record", "--once"}).nStatus, 0);
  const auto file = m_root.Historian() / "catalogs" / "Machine.db";
  sqlite3* stranger = nullptr;
  ASSERT_EQ(sqlite3_open(file.c_str(), &stranger), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(stranger, "BEGIN; SELECT * FROM Tags", nullptr, nullptr, nullptr),
            SQLITE_OK);
  const pid_t process = Start({"record", "--count", "3"});
  // With the stranger still reading, a journal that comes and goes is a change that was given up.
  const std::filesystem::path journal = file.string() + "-journal";
  AwaitRows([&] { return std::filesystem::exists(journal); });
  AwaitRows([&] { return !std::filesystem::exists(journal); });
  ASSERT_EQ(sqlite3_exec(stranger, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(stranger);
  const auto outcome = End(process);
  EXPECT_EQ(outcome.sErrors, "");
  EXPECT_EQ(outcome.nStatus, 0);
  EXPECT_EQ(Select("SELECT count(*) FROM Machine..Data WHERE Tag = 'load.1'"), "4\n");
}

TEST_F(recorder_program, keeps_recording_when_the_catalog_has_room_again) {
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

TEST_F(recorder_program, goes_on_in_the_file_that_has_taken_the_catalogs_place) {
  ASSERT_EQ(Run({"record", "--once"}).nStatus, 0);
  const auto file = m_root.Historian() / "catalogs" / "Machine.db";
  const auto copy = m_root.Path() / "copy.db";
  std::filesystem::copy_file(file, copy);
  const pid_t process = Start({"record"});
  AwaitRows([&] { return HasMoreSamples(1); });
  std::filesystem::rename(copy, file);
  AwaitRows([&] { return HasMoreSamples(2); });
  EXPECT_TRUE(HasMoreSamples(2));
  kill(process, SIGTERM);
  const auto outcome = End(process);
  EXPECT_EQ(outcome.nStatus, 0);
  EXPECT_EQ(outcome.sErrors,
            "The file " + file.string() +
                " of the catalog Machine was removed or replaced; the recorder looks for the "
                "catalog anew.\n");
}

TEST_F(recorder_program, ends_when_the_catalogs_file_is_gone) {
  const pid_t process = Start({"record"});
  AwaitRows([&] { return HasMoreSamples(0); });
  const auto file = m_root.Historian() / "catalogs" / "Machine.db";
  std::filesystem::remove(file);
  const auto outcome = End(process);
  EXPECT_EQ(outcome.nStatus, 1);
  EXPECT_EQ(outcome.sErrors, "The file " + file.string() +
                                 " of the catalog Machine was removed or replaced; the recorder "
                                 "looks for the catalog anew.\nThe catalog \"Machine\" cannot be "
                                 "opened: there is no file \"" +
                                 file.string() + "\"; restore it from a copy.\n");
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(recorder_program, keeps_its_catalog_from_being_dropped_or_detached) {
  const pid_t process = Start({"record"});
  AwaitRows([&] { return HasMoreSamples(0); });
  const Text sInUse =
      "The catalog Machine is in use by another program; close what reads or writes it and try "
      "again.";
  EXPECT_EQ(provider::FailureOf([&] {
              Open()->Execute({"DROP DATABASE \"Machine\"", 0, {}}, {});
            }),
            "3803: " + sInUse);
  EXPECT_EQ(Run({"detach", "Machine"}, "detach-").sErrors, sInUse + "\n");
  kill(process, SIGTERM);
  EXPECT_EQ(End(process).nStatus, 0);
  Open()->Execute({"DROP DATABASE \"Machine\"", 0, {}}, {});
  EXPECT_TRUE(std::filesystem::is_empty(m_root.Historian() / "catalogs"));
}

}  // namespace
}  // namespace orvane::tools
