#include "provider/session.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>
#include <thread>

#include "tests/provider/temporary_root.h"

namespace orvane::provider {
namespace {

using platform::Text;
using platform::Value;

class session : public testing::Test {
 protected:
  std::unique_ptr<ado::Session> Open(const Text& sOptions = {}) {
    HistorianProvider provider(PlaceAt(m_root.Path()));
    return provider.Open(
        ado::ConnectionSettings::Parse("Provider = ORVOLEDB; Data Source = localhost;" + sOptions),
        "", {});
  }
  static ado::StatementResult Run(ado::Session& opened, const Text& sText,
                                  platform::Long lMaxRecords = 0) {
    return opened.Execute({sText, lMaxRecords, std::chrono::seconds(0)}, {});
  }
  static Text Select(ado::Session& opened, const Text& sText) {
    return Rows(*Run(opened, sText).recordset);
  }
  static Text Failing(ado::Session& opened, const Text& sText) {
    return FailureOf([&] { Run(opened, sText); });
  }
  // A catalog Plant1 with one value each hour of the day before the fixed noon.
  std::unique_ptr<ado::Session> OpenPlant(const Text& sOptions = {}) {
    auto opened = Open(sOptions);
    Run(*opened, "CREATE DATABASE \"Plant1\" ");
    Text sInsert = "INSERT INTO Plant1..Data (Tag, Timestamp, Value) VALUES ";
    for (int i = 0; i < 24; ++i) {
      const Text sHours = std::to_string(i);
      sInsert += (i == 0 ? "" : ", ") + ("('T1', '*-" + sHours + "h', " + sHours + ".5)");
    }
    Run(*opened, sInsert);
    return opened;
  }

  TemporaryRoot m_root;
};

TEST_F(session, reads_and_writes_through_the_dialect) {
  const auto opened = OpenPlant();
  EXPECT_EQ(Select(*opened, "SELECT * FROM Plant1..Data WHERE Timestamp BETWEEN '*-1h' AND '*'"),
            "T1|2024-05-15 11:00:00|1.5|Good\nT1|2024-05-15 12:00:00|0.5|Good\n");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data WHERE Timestamp >= '*-3h'"), "4\n");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data WHERE Timestamp <= '*-20h'"), "4\n");
  EXPECT_EQ(
      Run(*opened, "UPDATE Plant1..Data SET Value = 7 WHERE Timestamp = '*'").lRecordsAffected, 1);
  EXPECT_EQ(Run(*opened, "DELETE FROM Plant1..Data WHERE Timestamp < '*-1h'").lRecordsAffected, 22);
  EXPECT_EQ(Select(*opened, "SELECT Value FROM Plant1.Data ORDER BY Timestamp"), "1.5\n7\n");
}

TEST_F(session, gives_times_as_times_also_where_the_engine_sees_numbers) {
  const auto opened = OpenPlant();
  const auto rs = Run(*opened,
                      "SELECT max(Timestamp) AS last, count(*) AS n FROM Plant1..Data GROUP BY Tag "
                      "HAVING last = '*'")
                      .recordset;
  EXPECT_EQ(Rows(*rs), "2024-05-15 12:00:00|24\n");
  EXPECT_EQ(rs->FieldAt(0).Type(), platform::DataType::DBTimeStamp);
  EXPECT_EQ(rs->FieldAt(0).Name(), "last");
  EXPECT_EQ(rs->FieldAt(1).Type(), platform::DataType::BigInt);
  EXPECT_EQ(rs->ValueAt(0, 0), Value(FixedNow()));
}

TEST_F(session, gives_times_as_days_where_the_option_says_so) {
  const auto opened = OpenPlant("Time as Double = True;Time Zone = UTC;");
  const Text sStatement =
      "SELECT Timestamp, min(Value) FROM Plant1..Data WHERE Timestamp >= 45427.5";
  auto rs = Run(*opened, sStatement).recordset;
  EXPECT_EQ(Rows(*rs), "45427.5|0.5\n");
  EXPECT_EQ(rs->FieldAt(0).Type(), platform::DataType::Double);
  opened->PropertyValue("Time Zone", "Asia/Tokyo");
  EXPECT_EQ(Select(*opened, "SELECT max(Timestamp) FROM Plant1..Data WHERE Timestamp <= 45427.875"),
            "45427.875\n");
  opened->PropertyValue("Time as Double", false);
  EXPECT_EQ(Select(*opened, "SELECT max(Timestamp) FROM Plant1..Data"), "2024-05-15 12:00:00\n");
}

TEST_F(session, reads_days_in_its_time_zone) {
  const auto opened = OpenPlant("Time Zone = UTC;");
  const Text sStatement = "SELECT count(*) FROM Plant1..Data WHERE Timestamp >= 't'";
  EXPECT_EQ(Select(*opened, sStatement), "13\n");
  opened->PropertyValue("Time Zone", "Asia/Tokyo");
  EXPECT_EQ(Select(*opened, sStatement), "22\n");
}

TEST_F(session, tells_the_zone_in_which_it_counts) {
  const char* const sBefore = std::getenv("TZ");
  const Text sKept = sBefore != nullptr ? sBefore : "";
  setenv("TZ", "Asia/Kolkata", 1);
  const auto opened = Open();
  // What the machine's zone becomes later is not that of this connection.
  setenv("TZ", "CET-1CEST", 1);
  const auto other = Open();
  if (sBefore != nullptr) {
    setenv("TZ", sKept.c_str(), 1);
  } else {
    unsetenv("TZ");
  }
  EXPECT_EQ(opened->PropertyValue("Time Zone"), Value("Local"));
  EXPECT_EQ(opened->PropertyValue("time zone in use"), Value("Asia/Kolkata"));
  // A rule instead of a name: the zone is that of the machine, which has a name.
  EXPECT_NE(other->PropertyValue("Time Zone in Use"), Value("CET-1CEST"));
  EXPECT_NE(other->PropertyValue("Time Zone in Use"), Value(""));
  opened->PropertyValue("Time Zone", "Europe/Berlin");
  EXPECT_EQ(opened->PropertyValue("Time Zone in Use"), Value("Europe/Berlin"));
  EXPECT_EQ(FailureOf([&] { opened->PropertyValue("Time Zone in Use", "UTC"); }),
            "3808: The property \"Time Zone in Use\" can be read, but not set; set \"Time Zone\".");
}

TEST_F(session, shows_numbers_as_numbers_where_others_are_times) {
  const auto opened = OpenPlant("Time Zone = UTC;");
  for (const bool bTimeAsDouble : {false, true}) {
    opened->PropertyValue("Time as Double", bTimeAsDouble);
    EXPECT_EQ(Select(*opened, "EXPLAIN QUERY PLAN SELECT Timestamp, Timestamp FROM Plant1..Data")
                  .find('-'),
              Text::npos);
    EXPECT_EQ(Select(*opened,
                     "SELECT x FROM (SELECT Timestamp AS x FROM Plant1..Data WHERE "
                     "Timestamp = '*' UNION ALL SELECT 5) ORDER BY x"),
              "5\n1715774400000000\n");
    EXPECT_EQ(Select(*opened,
                     "SELECT 5 UNION ALL SELECT Timestamp FROM Plant1..Data WHERE "
                     "Timestamp = '*'"),
              "5\n1715774400000000\n");
  }
  opened->PropertyValue("Time as Double", false);
  EXPECT_EQ(Select(*opened,
                   "SELECT max(Timestamp) OVER (), lag(Timestamp) OVER w FROM Plant1..Data "
                   "WHERE Timestamp >= '*-1h' WINDOW w AS (ORDER BY Timestamp)"),
            "2024-05-15 12:00:00|\n2024-05-15 12:00:00|2024-05-15 11:00:00\n");
}

TEST_F(session, refuses_a_text_or_time_in_double_quotes) {
  const auto opened = OpenPlant();
  const auto sentence = [](const Text& sName) {
    return "3805: There is no column \"" + sName +
           "\": write the name of one that the tables have; a text or a time stands between "
           "single quotes.";
  };
  EXPECT_EQ(Failing(*opened, "SELECT \"Gone\" FROM Plant1..Data"), sentence("Gone"));
  EXPECT_EQ(Failing(*opened, "DELETE FROM Plant1..Data WHERE \"Tga\" <> 'x'"), sentence("Tga"));
  EXPECT_EQ(Failing(*opened, "SELECT Tag FROM Plant1..Data WHERE Timestamp > \"*-1h\""),
            sentence("*-1h"));
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
}

TEST_F(session, stores_nothing_of_a_change_that_fails_whatever_its_rule) {
  const auto opened = OpenPlant();
  EXPECT_EQ(Failing(*opened,
                    "INSERT OR FAIL INTO Plant1..Data (Tag, Timestamp) VALUES ('T2', "
                    "'*'), ('T1', '*')")
                .substr(0, 4),
            "3806");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
}

TEST_F(session, ends_a_wait_for_the_historian_at_the_time_out) {
  SessionPlace place = PlaceAt(m_root.Path());
  place.engine = std::make_shared<engines::SqliteEngine>(std::chrono::hours(1));
  const auto opened = HistorianProvider(place).Open(ado::ConnectionSettings::Parse(""), "", {});
  sqlite3* stranger = nullptr;
  ASSERT_EQ(sqlite3_open((m_root.Historian() / "Orvane.db").c_str(), &stranger), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(stranger, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(FailureOf([&] {
              opened->Execute({"CREATE DATABASE \"Plant1\" ", 0, std::chrono::seconds(1)}, {});
            }),
            "3804: The statement did not end within its time-out of 1 s: allow it more time.");
  sqlite3_close(stranger);
  opened->Execute({"CREATE DATABASE \"Plant1\" ", 0, std::chrono::seconds(60)}, {});
}

TEST_F(session, cuts_the_result_at_the_row_limit_and_says_so) {
  const auto opened = OpenPlant();
  auto rs = Run(*opened, "SELECT * FROM Plant1..Data", 5).recordset;
  EXPECT_EQ(rs->RecordCount(), 5);
  EXPECT_TRUE(rs->Truncated());
  opened->PropertyValue("Time as Double", true);
  rs = Run(*opened, "SELECT * FROM Plant1..Data", 5).recordset;
  EXPECT_EQ(rs->RecordCount(), 5);
  EXPECT_TRUE(rs->Truncated());
}

TEST_F(session, ends_a_statement_at_its_time_out_and_at_a_stop) {
  const auto opened = Open();
  const Text sEndless =
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT count(*) FROM n";
  EXPECT_EQ(FailureOf([&] {
              opened->Execute({sEndless, 0, std::chrono::seconds(1)}, {});
            }).substr(0, 4),
            "3804");
  // From another thread, at whatever moment of the statement.
  for (int i = 0; i < 20; ++i) {
    std::stop_source stop;
    std::thread canceller([&] { stop.request_stop(); });
    const Text sFailure = FailureOf([&] {
      opened->Execute({sEndless, 0, std::chrono::seconds(0)}, stop.get_token());
    });
    canceller.join();
    EXPECT_EQ(sFailure.substr(0, 4), "3712");
  }
  EXPECT_EQ(Select(*opened, "SELECT 1"), "1\n");
}

TEST_F(session, keeps_its_own_catalogs_from_being_changed) {
  const auto opened = Open();
  EXPECT_EQ(Failing(*opened, "DELETE FROM Orvane..Historians"),
            "3805: The catalog Orvane cannot be changed (character 13 of the statement); the "
            "historian keeps it itself; use CREATE DATABASE and DROP DATABASE.");
  EXPECT_EQ(Failing(*opened, "DROP TABLE Functions..Functions"),
            "3805: The catalog Functions cannot be changed (character 12 of the statement); it is "
            "there to be read; change a catalog of your own.");
}

TEST_F(session, changes_nothing_when_it_is_only_to_read) {
  const auto opened = OpenPlant();
  const auto read = [&](const Text& sText) {
    return FailureOf([&] { opened->Execute({sText, 0, {}, true}, {}); });
  };
  for (const char* const sText :
       {"DELETE FROM Plant1..Data", "INSERT INTO Plant1..Tags (Tag) VALUES ('a') RETURNING Tag",
        "CREATE VIEW Plant1..v AS SELECT 1", "DROP TABLE Plant1..Tags",
        "CREATE DATABASE \"Plant2\" ", "DROP DATABASE \"Plant1\""}) {
    EXPECT_EQ(read(sText),
              "3811: The statement changes data and has not been run, as only reading was asked "
              "for: run it as a change if that is what is wanted.")
        << sText;
  }
  EXPECT_EQ(read("SELECT * FROM Plant1..Data"), "no failure");
  EXPECT_EQ(read("EXPLAIN DELETE FROM Plant1..Data"), "no failure");
  EXPECT_EQ(read("DELETE FROM Orvane..Historians").substr(0, 4), "3805");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
  EXPECT_EQ(Select(*opened, "SELECT Name FROM Orvane..Historians"), "Plant1\n");
}

TEST_F(session, refuses_a_second_statement) {
  const auto opened = OpenPlant();
  EXPECT_EQ(Failing(*opened, "SELECT 1; DELETE FROM Plant1..Data"),
            "3805: A second statement begins (character 11 of the statement); send one statement "
            "at a time.");
  EXPECT_EQ(Failing(*opened, "DROP DATABASE \"x\"; DELETE FROM Plant1..Data").substr(0, 37),
            "3805: A second statement begins (char");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
}

TEST_F(session, refuses_texts_in_columns_of_times) {
  const auto opened = OpenPlant();
  EXPECT_EQ(Failing(*opened, "INSERT INTO Plant1..Data (Tag, Timestamp) VALUES ('T1', 'tomorrow')"),
            "3805: 'tomorrow' is no time (character 57 of the statement); at its character 2 + or "
            "- must follow.");
  EXPECT_EQ(Failing(*opened, "INSERT INTO Plant1..Data (Tag, Timestamp) VALUES ('T1', 'a' || 'b')")
                .substr(0, 4),
            "3806");
}

TEST_F(session, runs_every_example_of_the_catalog_of_functions) {
  const auto opened = OpenPlant();
  const auto rs = Run(*opened,
                      "SELECT Example FROM Functions..Functions UNION ALL SELECT Example FROM "
                      "Functions..TimeExpressions")
                      .recordset;
  EXPECT_GT(rs->RecordCount(), 30);
  for (platform::RowIndex row = 0; row < rs->RecordCount(); ++row) {
    const Text sExample = platform::ToText(rs->ValueAt(row, 0));
    EXPECT_EQ(Failing(*opened, sExample), "no failure") << sExample;
  }
}

TEST_F(session, creates_and_drops_catalogs) {
  const auto opened = Open();
  Run(*opened, "CREATE DATABASE \"Plant1\" ");
  Run(*opened, "CREATE DATABASE \"Plant2\" ON (SIZE=128)");
  Run(*opened, "CREATE DATABASE \"Plant3\" ON (PATH='" + m_root.Path().string() + "')");
  EXPECT_EQ(Select(*opened, "SELECT Name, SizeLimit FROM Orvane..Historians ORDER BY Name"),
            "Plant1|\nPlant2|128\nPlant3|\n");
  EXPECT_EQ(Failing(*opened, "CREATE DATABASE \"plant1\" "),
            "457: There is a catalog \"Plant1\" already; choose another name.");
  Run(*opened, "DROP DATABASE \"Plant1\"");
  EXPECT_EQ(Failing(*opened, "DROP DATABASE \"Plant1\""),
            "5: There is no catalog \"Plant1\" to drop; reload the list of catalogs.");
  EXPECT_EQ(Select(*opened, "SELECT Name FROM Orvane..Historians ORDER BY Name"),
            "Plant2\nPlant3\n");
}

TEST_F(session, keeps_a_catalog_within_its_size) {
  const auto opened = Open();
  Run(*opened, "CREATE DATABASE \"Small\" ON (SIZE=128)");
  const Text sFill =
      "INSERT INTO Small..Data2 (Tag, Timestamp, Value) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
      "SELECT i + 1 FROM n WHERE i < 2000) SELECT 'T', i, 'a text of some length to fill it' FROM "
      "n";
  const Text sFailure = Failing(*opened, sFill);
  EXPECT_EQ(sFailure.substr(0, 4), "3807");
  EXPECT_EQ(sFailure,
            "3807: The catalog \"Small\" has reached its limit of 128 kilobytes, so nothing was "
            "written: delete rows or use another catalog.");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Small..Data2"), "0\n");
  EXPECT_LE(std::filesystem::file_size(m_root.Historian() / "catalogs" / "Small.db"), 128U * 1024U);
}

TEST_F(session, knows_catalogs_by_their_identity_where_the_option_says_so) {
  const auto opened = OpenPlant("Historians By GUID = True;");
  const Text sIdentity =
      Select(*opened, "SELECT Identity FROM Orvane..Historians WHERE Name = 'Plant1'")
          .substr(0, 38);
  EXPECT_EQ(sIdentity.front(), '{');
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM \"" + sIdentity + "\"..Data"), "24\n");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM [" + sIdentity + "].Data"), "24\n");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
  opened->PropertyValue("Historians By GUID", false);
  EXPECT_EQ(Failing(*opened, "SELECT count(*) FROM \"" + sIdentity + "\"..Data").substr(0, 41),
            "3805: There is no catalog \"" + sIdentity.substr(0, 14));
  opened->PropertyValue("Historians By GUID", true);
  Run(*opened, "DROP DATABASE \"" + sIdentity + "\"");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Orvane..Historians"), "0\n");
}

TEST_F(session, understands_prefixed_names_where_the_option_says_so) {
  const auto opened = OpenPlant("Identifier Prefixes = True;");
  EXPECT_EQ(Select(*opened,
                   "SELECT Orv_Value FROM Orv_Plant1..Orv_Data WHERE Timestamp BETWEEN '*-1h' AND "
                   "'*' ORDER BY Orv_Timestamp"),
            "1.5\n0.5\n");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Orv_Orvane..Orv_Historians"), "1\n");
  Run(*opened, "CREATE DATABASE \"Orv_Plant2\" ");
  Run(*opened, "DROP DATABASE \"Orv_Plant1\"");
  EXPECT_EQ(Select(*opened, "SELECT Name FROM Orvane..Historians"), "Plant2\n");
}

TEST_F(session, reads_tables_and_catalogs_without_regard_to_case) {
  const auto opened = OpenPlant();
  EXPECT_EQ(Select(*opened, "select count(*) from PLANT1..DATA where TIMESTAMP = '*'"), "1\n");
}

TEST_F(session, joins_catalogs) {
  const auto opened = OpenPlant();
  Run(*opened, "CREATE DATABASE \"Plant2\" ");
  Run(*opened, "INSERT INTO Plant2..Tags (Tag, Unit) VALUES ('T1', 'bar')");
  EXPECT_EQ(
      Select(*opened,
             "SELECT d.Value, t.Unit FROM Plant1..Data d JOIN Plant2..Tags t ON t.Tag = d.Tag "
             "WHERE d.Timestamp = '*'"),
      "0.5|bar\n");
}

TEST_F(session, makes_and_reads_views_and_tables_of_ones_own) {
  const auto opened = OpenPlant();
  Run(*opened, "CREATE VIEW Plant1..Recent AS SELECT Tag, Timestamp FROM Plant1..Data");
  EXPECT_EQ(Select(*opened, "SELECT Timestamp FROM Plant1..Recent WHERE Timestamp >= '*'"),
            "2024-05-15 12:00:00\n");
  Run(*opened, "CREATE TABLE Plant1..Notes (Id INTEGER PRIMARY KEY, At TIMESTAMP, Note TEXT)");
  Run(*opened, "CREATE INDEX NotesByTime ON Plant1..Notes (At)");
  Run(*opened, "INSERT INTO Plant1..Notes (At, Note) VALUES ('2024-01-01T00:00Z', 'x')");
  EXPECT_EQ(Select(*opened, "SELECT * FROM Plant1..Notes WHERE At < '*'"),
            "1|2024-01-01 00:00:00|x\n");
  Run(*opened, "DROP TABLE Plant1..Notes");
  EXPECT_EQ(Failing(*opened, "SELECT * FROM Plant1..Notes"),
            "3805: There is no table \"Notes\" in the catalog Plant1 (character 23 of the "
            "statement); write the name of one that the catalog lists.");
}

TEST_F(session, says_which_catalog_is_damaged_missing_or_locked) {
  const auto opened = OpenPlant();
  const auto file = m_root.Historian() / "catalogs" / "Plant1.db";
  const auto away = m_root.Historian() / "away.db";
  const Text sSelect = "SELECT Tag FROM Plant1..Data WHERE Timestamp = '*'";
  std::filesystem::rename(file, away);
  EXPECT_EQ(Failing(*opened, sSelect),
            "3800: The catalog \"Plant1\" cannot be opened: there is no file \"" + file.string() +
                "\"; restore it from a copy.");
  std::ofstream(file) << Text(8192, 'x');
  EXPECT_EQ(Failing(*opened, sSelect),
            "3802: The catalog \"Plant1\" is in a file that is no database: name another file, or "
            "restore it from a copy.");
  std::filesystem::rename(away, file);
  sqlite3* stranger = nullptr;
  ASSERT_EQ(sqlite3_open(file.c_str(), &stranger), SQLITE_OK);
  ASSERT_EQ(
      sqlite3_exec(stranger, "PRAGMA locking_mode = EXCLUSIVE; BEGIN IMMEDIATE; CREATE TABLE x (a)",
                   nullptr, nullptr, nullptr),
      SQLITE_OK);
  EXPECT_EQ(Failing(*opened, sSelect),
            "3803: The catalog \"Plant1\" is locked by another program: try again when that is "
            "done.");
  sqlite3_close(stranger);
  EXPECT_EQ(Select(*opened, sSelect), "T1\n");
}

// A recorder writes while the console reads.
TEST_F(session, reads_while_another_program_writes) {
  const auto opened = OpenPlant();
  sqlite3* stranger = nullptr;
  ASSERT_EQ(sqlite3_open((m_root.Historian() / "catalogs" / "Plant1.db").c_str(), &stranger),
            SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(stranger, "BEGIN IMMEDIATE; DELETE FROM Data", nullptr, nullptr, nullptr),
            SQLITE_OK);
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
  EXPECT_EQ(Failing(*opened, "DELETE FROM Plant1..Data").substr(0, 4), "3803");
  ASSERT_EQ(sqlite3_exec(stranger, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(stranger);
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "0\n");
}

TEST_F(session, is_closed_once_and_for_all) {
  const auto opened = OpenPlant();
  const auto rs = Run(*opened, "SELECT Tag FROM Plant1..Data WHERE Timestamp = '*'").recordset;
  opened->Close();
  opened->Close();
  EXPECT_EQ(Rows(*rs), "T1\n");
  EXPECT_EQ(Failing(*opened, "SELECT 1"), "3704: The connection is closed; connect again.");
  EXPECT_EQ(opened->PropertyValue("Log Level"), Value(0));
}

TEST_F(session, offers_the_options_and_servers_of_its_provider) {
  HistorianProvider provider(PlaceAt(m_root.Path()));
  EXPECT_EQ(provider.Properties().size(), 7U);
  EXPECT_EQ(provider.Properties().front().sName, "Log File");
  EXPECT_EQ(provider.Properties().back().sName, "Time Zone in Use");
  EXPECT_EQ(provider.KnownServers(), std::vector<Text>{"localhost"});
}

}  // namespace
}  // namespace orvane::provider
