// Catalogs through a session: their names, their sizes, what is wrong with them.
#include <sqlite3.h>

#include <fstream>

#include "tests/provider/session_fixture.h"

namespace orvane::provider {
namespace {

class session_catalogs : public SessionFixture {};

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
