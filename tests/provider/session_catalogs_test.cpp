// Catalogs through a session: their names, their sizes, what is wrong with them.
#include <sqlite3.h>

#include <fstream>

#include "tests/provider/session_fixture.h"

namespace orvane::provider {
namespace {

class session_catalogs : public SessionFixture {};

TEST_F(session_catalogs, keeps_its_own_catalogs_from_being_changed) {
  const auto opened = Open();
  EXPECT_EQ(Failing(*opened, "DELETE FROM Orvane..Historians"),
            "3805: The catalog Orvane cannot be changed (character 13 of the statement); the "
            "historian keeps it itself; use CREATE DATABASE and DROP DATABASE.");
  EXPECT_EQ(Failing(*opened, "DROP TABLE Functions..Functions"),
            "3805: The catalog Functions cannot be changed (character 12 of the statement); it is "
            "there to be read; change a catalog of your own.");
}

TEST_F(session_catalogs, creates_and_drops_catalogs) {
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

TEST_F(session_catalogs, keeps_a_catalog_within_its_size) {
  const auto opened = Open();
  Run(*opened, "CREATE DATABASE \"Small\" ON (SIZE=128)");
  const Text sFill =
      "INSERT INTO Small..Data2 (Tag, Timestamp, Value) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
      "SELECT i + 1 FROM n WHERE i < 2000) SELECT 'T', datetime(i, 'unixepoch'), 'a text of some "
      "length to fill it' FROM "
      "n";
  const Text sFailure = Failing(*opened, sFill);
  EXPECT_EQ(sFailure.substr(0, 4), "3807");
  EXPECT_EQ(sFailure,
            "3807: The catalog \"Small\" has reached its limit of 128 kilobytes, so nothing was "
            "written: delete rows or use another catalog.");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Small..Data2"), "0\n");
  EXPECT_LE(std::filesystem::file_size(m_root.Historian() / "catalogs" / "Small.db"), 128U * 1024U);
}

TEST_F(session_catalogs, knows_catalogs_by_their_identity_where_the_option_says_so) {
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

TEST_F(session_catalogs, understands_prefixed_names_where_the_option_says_so) {
  const auto opened = OpenPlant("Identifier Prefixes = True;");
  EXPECT_EQ(Select(*opened,
                   "SELECT Orv_Value FROM Orv_Plant1..Orv_Data WHERE Timestamp BETWEEN '*-1h' AND "
                   "'*' ORDER BY Orv_Timestamp"),
            "1.5\n0.5\n");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Orv_Orvane..Orv_Historians"), "1\n");
  // It would get another name than the one that was typed.
  EXPECT_EQ(
      Failing(*opened, "CREATE DATABASE \"Orv_Plant2\" "),
      "5: A catalog cannot be called \"Orv_Plant2\": the prefix Orv_ has a meaning of its own; "
      "choose another name.");
  Run(*opened, "CREATE DATABASE \"Plant2\" ");
  Run(*opened, "DROP DATABASE \"Orv_Plant1\"");
  EXPECT_EQ(Select(*opened, "SELECT Name FROM Orvane..Historians"), "Plant2\n");
}

TEST_F(session_catalogs, reads_tables_and_catalogs_without_regard_to_case) {
  const auto opened = OpenPlant();
  EXPECT_EQ(Select(*opened, "select count(*) from PLANT1..DATA where TIMESTAMP = '*'"), "1\n");
}

TEST_F(session_catalogs, joins_catalogs) {
  const auto opened = OpenPlant();
  Run(*opened, "CREATE DATABASE \"Plant2\" ");
  Run(*opened, "INSERT INTO Plant2..Tags (Tag, Unit) VALUES ('T1', 'bar')");
  EXPECT_EQ(
      Select(*opened,
             "SELECT d.Value, t.Unit FROM Plant1..Data d JOIN Plant2..Tags t ON t.Tag = d.Tag "
             "WHERE d.Timestamp = '*'"),
      "0.5|bar\n");
}

TEST_F(session_catalogs, says_which_catalog_is_damaged_missing_or_locked) {
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
  ASSERT_EQ(sqlite3_exec(stranger, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(Failing(*opened, sSelect),
            "3803: The catalog \"Plant1\" is locked by another program: try again when that is "
            "done.");
  sqlite3_close(stranger);
  EXPECT_EQ(Select(*opened, sSelect), "T1\n");
}

}  // namespace
}  // namespace orvane::provider
