// The catalogs that a statement names.
#include "tests/provider/engines/database_folder.h"

namespace orvane::provider::engines {
namespace {

using platform::Value;
using tests::Big;
using tests::FailureOf;
using tests::Raw;
using tests::Told;
namespace failure = platform::failure;

class SqliteAttachmentsTest : public tests::DatabaseFolder {};

TEST_F(SqliteAttachmentsTest, reaches_the_catalogs_that_a_statement_names_and_only_then) {
  const Catalog one = Make("one.db", "CREATE TABLE t(a); INSERT INTO t VALUES (1)");
  const Catalog two = Make("two.db", "CREATE TABLE t(a); INSERT INTO t VALUES (2)");
  const auto session = Open();
  const auto rs =
      session
          ->Run({"SELECT one.t.a, two.t.a FROM one.t, two.t WHERE two.t.a = ?", {2}, {one, two}},
                {})
          .recordset;
  EXPECT_TRUE(rs->ValueAt(0, 0) == Big(1));
  EXPECT_TRUE(rs->ValueAt(0, 1) == Big(2));
  EXPECT_EQ(RunFails(*session, "SELECT * FROM one.t").lNumber, failure::kSqlError);
  // Nothing holds the files any more: another program may take one for itself alone.
  Raw(one.sPlace).Run("BEGIN EXCLUSIVE; DROP TABLE t; COMMIT");
}

TEST_F(SqliteAttachmentsTest, lets_go_of_catalogs_when_the_statement_fails) {
  const Catalog one = Make("one.db", "CREATE TABLE t(a)");
  const auto session = Open();
  EXPECT_EQ(FailureOf([&] {
              session->Run({"SELECT nix FROM one.t", {}, {one}}, {});
            }).lNumber,
            failure::kSqlError);
  EXPECT_EQ(RunFails(*session, "SELECT * FROM one.t").lNumber, failure::kSqlError);
  session->Run({"SELECT * FROM one.t", {}, {one}}, {});
}

TEST_F(SqliteAttachmentsTest, reaches_catalogs_with_any_name) {
  for (const std::string sName : {"Größe", "with blank", "quo\"te", "semi;colon", "sel'ect"}) {
    Catalog catalog = Make("m.db", "CREATE TABLE IF NOT EXISTS t(a)");
    catalog.sName = sName;
    std::string sQuoted = sName == "quo\"te" ? "quo\"\"te" : sName;
    const auto session = Open();
    EXPECT_EQ(session->Run({"SELECT * FROM \"" + sQuoted + "\".t", {}, {catalog}}, {})
                  .recordset->FieldCount(),
              1)
        << sName;
  }
}

TEST_F(SqliteAttachmentsTest, a_catalog_named_twice_is_attached_once) {
  const Catalog one = Make("one.db", "CREATE TABLE t(a)");
  Catalog upper = one;
  upper.sName = "ONE";
  EXPECT_EQ(Open()->Run({"SELECT * FROM one.t", {}, {one, upper}}, {}).recordset->FieldCount(), 1);
}

TEST_F(SqliteAttachmentsTest, a_catalog_that_is_missing_foreign_or_locked_is_told_by_name) {
  const Catalog good = Make("good.db", "CREATE TABLE t(a)");
  std::ofstream(PathOf("foreign.db")) << std::string(5000, 'x');
  const Catalog locked = Make("locked.db", "CREATE TABLE t(a)");
  Raw other(locked.sPlace);
  other.Run("BEGIN EXCLUSIVE");
  const auto session = Open();
  const auto fails = [&](const Catalog& catalog) {
    return FailureOf([&] { session->Run({"SELECT 1", {}, {good, catalog}}, {}); });
  };
  EXPECT_EQ(fails({"Absent", PathOf("absent.db")}),
            (Told{failure::kServerNotFound,
                  "The catalog \"Absent\" cannot be opened: there is no "
                  "file \"" +
                      PathOf("absent.db") + "\"; restore it from a copy."}));
  EXPECT_EQ(fails({"Foreign", PathOf("foreign.db")}),
            (Told{failure::kNotADatabase,
                  "The catalog \"Foreign\" is in a file that is no database: name another file, or "
                  "restore it from a copy."}));
  EXPECT_EQ(fails(locked),
            (Told{failure::kBusy,
                  "The catalog \"locked\" is locked by another program: try again when that is "
                  "done."}));
  session->Run({"SELECT * FROM good.t", {}, {good}}, {});
}

TEST_F(SqliteAttachmentsTest, of_several_catalogs_a_lock_is_told_for_all) {
  const Catalog one = Make("one.db", "PRAGMA journal_mode = WAL; CREATE TABLE t(a)");
  const Catalog two = Make("two.db", "CREATE TABLE t(a)");
  Raw other(one.sPlace);
  other.Run("BEGIN IMMEDIATE");
  EXPECT_EQ(FailureOf([&] {
              Open()->Run({"DELETE FROM one.t", {}, {one, two}}, {});
            }),
            (Told{failure::kBusy,
                  "One of the catalogs \"one\", \"two\" is locked by another program: try again "
                  "when that is done."}));
}

TEST_F(SqliteAttachmentsTest, a_catalog_attached_read_only_refuses_to_be_written) {
  Catalog catalog = Make("m.db", "CREATE TABLE t(a)");
  catalog.bReadOnly = true;
  EXPECT_EQ(FailureOf([&] {
              Open()->Run({"INSERT INTO m.t VALUES (1)", {}, {catalog}}, {});
            }),
            (Told{failure::kNoRights,
                  "The catalog \"m\" is read-only for you: ask its owner for the right to write to "
                  "its file and folder."}));
}

}  // namespace
}  // namespace orvane::provider::engines
