#include "provider/engines/sqlite/sqlite_engine.h"

#include <thread>

#include "tests/provider/engines/database_folder.h"

namespace orvane::provider::engines {
namespace {

using tests::AsNobody;
using tests::FailureOf;
using tests::Raw;
using tests::Told;
namespace failure = platform::failure;

class SqliteEngineTest : public tests::DatabaseFolder {
 protected:
  Told OpenFails(const std::string& sFile) {
    return FailureOf([&] { Open({"M", PathOf(sFile)}); });
  }
};

TEST_F(SqliteEngineTest, opens_a_file_and_reads_it) {
  const auto session = Open(Make("m.db", "CREATE TABLE t(a); INSERT INTO t VALUES (7)"));
  EXPECT_TRUE(One(*session, "SELECT a FROM t") == Value(std::int64_t{7}));
}

TEST_F(SqliteEngineTest, opens_without_a_file) {
  const auto session = Open();
  EXPECT_TRUE(One(*session, "SELECT 1") == Value(std::int64_t{1}));
}

TEST_F(SqliteEngineTest, opens_files_with_any_name) {
  for (const std::string sFile : {"größe 温度.db", "a?b=c#d%20e&f.db", "quote'\".db", "a;b.db"}) {
    const auto session = Open(Make(sFile, "CREATE TABLE t(a)"));
    EXPECT_EQ(Run(*session, "SELECT * FROM t").recordset->FieldCount(), 1) << sFile;
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 4);
}

TEST_F(SqliteEngineTest, never_makes_a_file_by_opening_it) {
  EXPECT_EQ(
      OpenFails("absent.db"),
      (Told{failure::kServerNotFound, "The catalog \"M\" cannot be opened: there is no file \"" +
                                          PathOf("absent.db") + "\"; restore it from a copy."}));
  EXPECT_EQ(OpenFails("no/folder.db").lNumber, failure::kServerNotFound);
  EXPECT_FALSE(std::filesystem::exists(PathOf("absent.db")));
}

TEST_F(SqliteEngineTest, a_folder_is_no_database) {
  std::filesystem::create_directory(PathOf("folder"));
  EXPECT_EQ(OpenFails("folder"),
            (Told{failure::kNotADatabase,
                  "The catalog \"M\" cannot be opened: \"" + PathOf("folder") +
                      "\" is no file; move it away and restore the file from a copy."}));
}

TEST_F(SqliteEngineTest, a_foreign_file_is_no_database) {
  std::ofstream(PathOf("foreign.db")) << std::string(5000, 'x');
  EXPECT_EQ(OpenFails("foreign.db"),
            (Told{failure::kNotADatabase,
                  "The catalog \"M\" is in a file that is no database: name another file, or "
                  "restore it from a copy."}));
}

TEST_F(SqliteEngineTest, a_damaged_database_is_told) {
  const Catalog catalog = Make("m.db",
                               "CREATE TABLE t(a); WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL "
                               "SELECT x + 1 FROM c LIMIT 5000) INSERT INTO t SELECT x FROM c");
  std::fstream file(catalog.sPlace, std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(4096);
  file << std::string(16384, '\xEE');
  file.close();
  const auto session = Open(catalog);
  const Told told = RunFails(*session, "SELECT * FROM t");
  EXPECT_EQ(told.lNumber, failure::kNotADatabase);
  EXPECT_EQ(told.sSentence,
            "The catalog \"m\" is damaged (database disk image is malformed): restore its file "
            "from a copy.");
}

TEST_F(SqliteEngineTest, a_file_without_the_right_to_read_is_told) {
  const Catalog catalog = Make("m.db", "CREATE TABLE t(a)");
  ::chmod(catalog.sPlace.c_str(), 0);
  const AsNobody nobody;
  EXPECT_EQ(OpenFails("m.db"), (Told{failure::kNoRights,
                                     "The catalog \"M\" cannot be opened: you have no right to "
                                     "read its file \"" +
                                         catalog.sPlace + "\"; ask its owner for it."}));
}

TEST_F(SqliteEngineTest, a_folder_without_rights_is_told) {
  const Catalog catalog = Make("m.db", "CREATE TABLE t(a)");
  ::chmod(folder.c_str(), 0);
  const AsNobody nobody;
  EXPECT_EQ(OpenFails("m.db"), (Told{failure::kNoRights,
                                     "The catalog \"M\" cannot be opened: you have no right to the "
                                     "folder of its file \"" +
                                         catalog.sPlace + "\"; ask its owner for it."}));
}

TEST_F(SqliteEngineTest, a_file_without_the_right_to_write_can_be_read_only) {
  const Catalog catalog = Make("m.db", "CREATE TABLE t(a); INSERT INTO t VALUES (7)");
  ::chmod(catalog.sPlace.c_str(), 0444);
  const AsNobody nobody;
  const auto session = Open(catalog);
  EXPECT_TRUE(One(*session, "SELECT a FROM t") == Value(std::int64_t{7}));
  EXPECT_EQ(RunFails(*session, "INSERT INTO t VALUES (8)"),
            (Told{failure::kNoRights,
                  "The catalog \"m\" is read-only for you: ask its owner for the right to write to "
                  "its file and folder."}));
}

TEST_F(SqliteEngineTest, a_catalog_opened_read_only_refuses_to_be_written) {
  Catalog catalog = Make("m.db", "CREATE TABLE t(a); INSERT INTO t VALUES (7)");
  catalog.bReadOnly = true;
  const auto session = Open(catalog);
  EXPECT_EQ(RunFails(*session, "DELETE FROM t").lNumber, failure::kNoRights);
  EXPECT_TRUE(One(*session, "SELECT count(*) FROM t") == Value(std::int64_t{1}));
}

TEST_F(SqliteEngineTest, a_locked_database_is_told) {
  const Catalog catalog = Make("m.db", "CREATE TABLE t(a)");
  Raw other(catalog.sPlace);
  other.Run("BEGIN EXCLUSIVE");
  EXPECT_EQ(OpenFails("m.db"),
            (Told{failure::kBusy,
                  "The catalog \"M\" is locked by another program: try again when that is done."}));
  other.Run("COMMIT");
  EXPECT_EQ(OpenFails("m.db").lNumber, 0);
}

TEST_F(SqliteEngineTest, opening_can_be_cancelled_while_it_waits_for_a_lock) {
  const Catalog catalog = Make("m.db", "CREATE TABLE t(a)");
  Raw other(catalog.sPlace);
  other.Run("BEGIN EXCLUSIVE");
  std::stop_source stop;
  const std::jthread canceller([&] { stop.request_stop(); });
  SqliteEngine engine(std::chrono::hours(1));
  EXPECT_EQ(FailureOf([&] { engine.Open(catalog, stop.get_token()); }),
            (Told{failure::kCancelled, "The statement was cancelled."}));
}

}  // namespace
}  // namespace orvane::provider::engines
