#include "provider/engines/sqlite/sqlite_errors.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cerrno>
#include <set>
#include <vector>

namespace orvane::provider::engines {
namespace {

namespace failure = platform::failure;

TEST(SqliteErrors, tell_what_others_hold) {
  for (const int nCode : {SQLITE_BUSY, SQLITE_BUSY_SNAPSHOT, SQLITE_LOCKED_SHAREDCACHE}) {
    EXPECT_TRUE(IsHeldByOthers(nCode)) << nCode;
  }
  for (const int nCode : {SQLITE_OK, SQLITE_ROW, SQLITE_PROTOCOL, SQLITE_IOERR_LOCK}) {
    EXPECT_FALSE(IsHeldByOthers(nCode)) << nCode;
  }
}

TEST(SqliteErrors, each_native_code_has_its_number) {
  const std::vector<std::pair<int, platform::Long>> cases = {
      {SQLITE_OK, 0},
      {SQLITE_ROW, 0},
      {SQLITE_DONE, 0},
      {SQLITE_ERROR, failure::kSqlError},
      {SQLITE_ERROR_MISSING_COLLSEQ, failure::kSqlError},
      {SQLITE_INTERNAL, failure::kSqlError},
      {SQLITE_PERM, failure::kNoRights},
      {SQLITE_ABORT, failure::kCancelled},
      {SQLITE_ABORT_ROLLBACK, failure::kCancelled},
      {SQLITE_BUSY, failure::kBusy},
      {SQLITE_BUSY_RECOVERY, failure::kBusy},
      {SQLITE_BUSY_SNAPSHOT, failure::kBusy},
      {SQLITE_BUSY_TIMEOUT, failure::kBusy},
      {SQLITE_LOCKED, failure::kBusy},
      {SQLITE_LOCKED_SHAREDCACHE, failure::kBusy},
      {SQLITE_NOMEM, failure::kStorage},
      {SQLITE_READONLY, failure::kNoRights},
      {SQLITE_READONLY_CANTINIT, failure::kNoRights},
      {SQLITE_READONLY_DIRECTORY, failure::kNoRights},
      {SQLITE_INTERRUPT, failure::kCancelled},
      {SQLITE_IOERR, failure::kStorage},
      {SQLITE_IOERR_READ, failure::kStorage},
      {SQLITE_IOERR_WRITE, failure::kStorage},
      {SQLITE_IOERR_SHORT_READ, failure::kNotADatabase},
      {SQLITE_IOERR_ACCESS, failure::kNoRights},
      {SQLITE_CORRUPT, failure::kNotADatabase},
      {SQLITE_CORRUPT_INDEX, failure::kNotADatabase},
      {SQLITE_FULL, failure::kStorage},
      {SQLITE_CANTOPEN, failure::kNoRights},
      {SQLITE_CANTOPEN_ISDIR, failure::kNotADatabase},
      {SQLITE_PROTOCOL, failure::kBusy},
      {SQLITE_SCHEMA, failure::kBusy},
      {SQLITE_TOOBIG, failure::kStorage},
      {SQLITE_CONSTRAINT, failure::kConstraint},
      {SQLITE_CONSTRAINT_UNIQUE, failure::kConstraint},
      {SQLITE_CONSTRAINT_PRIMARYKEY, failure::kConstraint},
      {SQLITE_CONSTRAINT_NOTNULL, failure::kConstraint},
      {SQLITE_CONSTRAINT_CHECK, failure::kConstraint},
      {SQLITE_CONSTRAINT_FOREIGNKEY, failure::kConstraint},
      {SQLITE_MISMATCH, failure::kConstraint},
      {SQLITE_MISUSE, failure::kSqlError},
      {SQLITE_NOLFS, failure::kStorage},
      {SQLITE_AUTH, failure::kNotSupported},
      {SQLITE_FORMAT, failure::kNotADatabase},
      {SQLITE_RANGE, failure::kSqlError},
      {SQLITE_NOTADB, failure::kNotADatabase},
      {12345, failure::kSqlError},
  };
  for (const auto& [nCode, lNumber] : cases) EXPECT_EQ(FailureNumberOf(nCode), lNumber) << nCode;
}

TEST(SqliteErrors, a_place_stands_behind_what_is_there) {
  EXPECT_EQ(SentenceOf(SQLITE_ERROR, "M", "why", 7),
            "The statement cannot be run: why (character 7 of the statement); correct it.");
  EXPECT_EQ(SentenceOf(SQLITE_ERROR, "M", "no such column: x", 7),
            "There is no column \"x\" (character 7 of the statement): write the name of one that "
            "the tables have; a text or a time stands between single quotes.");
}

TEST(SqliteErrors, each_kind_of_trouble_has_its_own_sentence) {
  const std::vector<std::pair<int, std::string>> cases = {
      {SQLITE_ERROR, "The statement cannot be run: why; correct it."},
      {SQLITE_READONLY,
       "The catalog \"M\" is read-only for you: ask its owner for the right to write to its file "
       "and folder."},
      {SQLITE_CANTOPEN,
       "The catalog \"M\" cannot be opened: check that you may read and write its file and "
       "folder."},
      {SQLITE_BUSY, "The catalog \"M\" is locked by another program: try again when that is done."},
      {SQLITE_INTERRUPT, "The statement was cancelled."},
      {SQLITE_NOMEM,
       "There is not enough memory for the statement: set a row limit, or narrow it down."},
      {SQLITE_FULL,
       "The catalog \"M\" has no room left on its disk, so nothing was written: make room and try "
       "again."},
      {SQLITE_IOERR_WRITE,
       "The catalog \"M\" cannot be read or written, because its disk failed (why): check the "
       "disk."},
      {SQLITE_CORRUPT, "The catalog \"M\" is damaged (why): restore its file from a copy."},
      {SQLITE_NOTADB,
       "The catalog \"M\" is in a file that is no database: name another file, or restore it from "
       "a copy."},
      {SQLITE_CONSTRAINT_UNIQUE, "A rule of the table refuses this: why; correct the row."},
      {SQLITE_AUTH,
       "The statement is refused: attaching and detaching, transactions and settings of the "
       "database are not for statements; leave them out."},
  };
  std::set<std::string> sentences;
  for (const auto& [nCode, sSentence] : cases) {
    EXPECT_EQ(SentenceOf(nCode, "The catalog \"M\"", "why"), sSentence);
    sentences.insert(sSentence);
  }
  EXPECT_EQ(sentences.size(), cases.size());
}

TEST(SqliteErrors, a_disk_without_room_is_told_by_the_system_error) {
  for (const int nCode : {SQLITE_IOERR_WRITE, SQLITE_IOERR_SHMSIZE, SQLITE_CANTOPEN}) {
    for (const int nError : {ENOSPC, EDQUOT, EFBIG}) {
      EXPECT_EQ(WithSystemError(nCode, nError), SQLITE_FULL) << nCode;
    }
    EXPECT_EQ(WithSystemError(nCode, EIO), nCode);
    EXPECT_EQ(WithSystemError(nCode, 0), nCode);
  }
  EXPECT_EQ(WithSystemError(SQLITE_BUSY, ENOSPC), SQLITE_BUSY);
}

TEST(SqliteErrors, a_missing_column_is_named_and_texts_are_told_apart) {
  const std::string sSentence =
      "There is no column \"d.Gone\": write the name of one that the tables have; a text or a time "
      "stands between single quotes.";
  EXPECT_EQ(SentenceOf(SQLITE_ERROR, "The database", "no such column: d.Gone"), sSentence);
  EXPECT_EQ(SentenceOf(SQLITE_ERROR, "The database",
                       "no such column: \"d.Gone\" - should this be a string literal in "
                       "single-quotes?"),
            sSentence);
}

TEST(SqliteErrors, a_failure_carries_source_native_code_and_sql_apart_from_its_sentence) {
  const auto failed =
      engines::FailureOf(SQLITE_CONSTRAINT_UNIQUE, "The database", "why", "INSERT 1");
  EXPECT_EQ(failed.Number(), failure::kConstraint);
  EXPECT_EQ(failed.Source(), "SQLite");
  EXPECT_EQ(failed.NativeError(), SQLITE_CONSTRAINT_UNIQUE);
  EXPECT_EQ(failed.SqlText(), "INSERT 1");
  EXPECT_EQ(failed.Description().find("INSERT"), std::string::npos);
}

}  // namespace
}  // namespace orvane::provider::engines
