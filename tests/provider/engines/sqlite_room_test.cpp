// Disks that refuse to be written: which sentence tells why.
#include "provider/engines/sqlite/sqlite_room.h"

#include <cerrno>

#include "tests/provider/engines/database_folder.h"
#include "tests/provider/engines/refusing_disk.h"

namespace orvane::provider::engines {
namespace {

using tests::FailureOf;
using tests::RefusingDisk;
using tests::Told;
namespace failure = platform::failure;

class SqliteRoomTest : public tests::DatabaseFolder {
 protected:
  Told Fails(int nError, const std::string& sSql) {
    const RefusingDisk disk(nError);
    return RunFails(*m_session, sSql);
  }

  std::unique_ptr<FileSession> m_session =
      Open(Make("m.db", "PRAGMA journal_mode = WAL; CREATE TABLE t(a)"));
};

TEST_F(SqliteRoomTest, a_full_disk_is_called_full_whatever_the_system_calls_it) {
  for (const int nError : {ENOSPC, EDQUOT, EFBIG}) {
    EXPECT_EQ(Fails(nError, "INSERT INTO t VALUES (1)"),
              (Told{failure::kStorage,
                    "The catalog \"m\" has no room left on its disk, so nothing was written: make "
                    "room and try again."}))
        << nError;
  }
  EXPECT_EQ(One(*m_session, "SELECT count(*) FROM t"), Value(std::int64_t{0}));
}

TEST_F(SqliteRoomTest, a_disk_that_fails_is_not_called_full) {
  const Told told = Fails(EIO, "INSERT INTO t VALUES (1)");
  EXPECT_EQ(told.lNumber, failure::kStorage);
  EXPECT_NE(told.sSentence.find("because its disk failed"), std::string::npos) << told.sSentence;
}

TEST_F(SqliteRoomTest, what_only_reads_lacks_room_for_temporary_files) {
  EXPECT_EQ(
      Fails(ENOSPC,
            "WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c WHERE i < 20000) "
            "SELECT randomblob(1000) AS x FROM c ORDER BY x"),
      (Told{failure::kStorage,
            "The disk of temporary files has no room left for the statement: make room there, "
            "or narrow the statement down."}));
}

TEST_F(SqliteRoomTest, a_catalog_within_a_limit_is_told_apart_from_a_full_disk) {
  const platform::Failure full(failure::kStorage, "full", "SQLite", SQLITE_FULL);
  Catalog catalog{"m", PathOf("m.db"), false, 128};
  EXPECT_EQ(FailureOf([&] {
              FailWithoutRoom(full, {&catalog, 1}, false);
            }).sSentence,
            "The catalog \"m\" has reached its limit of 128 kilobytes, so nothing was written: "
            "delete rows or use another catalog.");
  // A disk that has less room than the catalog may grow, and a file system without any.
  const std::uint64_t room = std::filesystem::space(folder).available;
  catalog.llMaxKilobytes = static_cast<std::int64_t>(room / 1024 * 2);
  EXPECT_TRUE(IsDiskFirst(catalog));
  catalog.sPlace = "/proc/version";
  EXPECT_TRUE(IsDiskFirst(catalog));
  EXPECT_EQ(FailureOf([&] { FailWithoutRoom(full, {&catalog, 1}, false); }).sSentence, "full");
}

}  // namespace
}  // namespace orvane::provider::engines
