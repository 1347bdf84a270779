#include "tests/provider/engines/database_folder.h"

namespace orvane::provider::engines {
namespace {

using platform::DataType;
using platform::Text;
using tests::FailureOf;
namespace failure = platform::failure;

class SqliteSchemaTest : public tests::DatabaseFolder {
 protected:
  std::vector<TableSchema> SchemaOf(const std::string& sSql, const SchemaRequest& request = {}) {
    return Open()->Schema(Make("m.db", sSql), request, {});
  }
  static std::vector<Text> NamesOf(const std::vector<TableSchema>& tables) {
    std::vector<Text> names;
    for (const TableSchema& table : tables) names.push_back(table.sName);
    return names;
  }
};

TEST_F(SqliteSchemaTest, describes_a_table_with_all_of_its_columns) {
  const auto tables = SchemaOf(
      "CREATE TABLE Data(Tag TEXT NOT NULL, Timestamp TIMESTAMP NOT NULL, Value REAL, Status INT "
      "DEFAULT 0, PRIMARY KEY (Timestamp, Tag))");
  ASSERT_EQ(tables.size(), 1U);
  EXPECT_EQ(tables[0].sName, "Data");
  EXPECT_FALSE(tables[0].bView);
  const auto& columns = tables[0].columns;
  ASSERT_EQ(columns.size(), 4U);
  EXPECT_EQ(columns[0].sName, "Tag");
  EXPECT_EQ(columns[0].sDeclaredType, "TEXT");
  EXPECT_EQ(columns[0].type, DataType::WChar);
  EXPECT_FALSE(columns[0].bNullable);
  EXPECT_EQ(columns[0].lKeyOrdinal, 2);
  EXPECT_EQ(columns[0].sDefault, std::nullopt);
  EXPECT_EQ(columns[1].type, DataType::DBTimeStamp);
  EXPECT_EQ(columns[1].lKeyOrdinal, 1);
  EXPECT_TRUE(columns[2].bNullable);
  EXPECT_EQ(columns[2].lKeyOrdinal, 0);
  EXPECT_EQ(columns[3].sDefault, "0");
}

TEST_F(SqliteSchemaTest, lists_tables_and_views_by_name_without_the_engines_own) {
  const auto tables = SchemaOf(
      "CREATE TABLE b(n INTEGER PRIMARY KEY AUTOINCREMENT); CREATE TABLE \"Ärger\"(a); CREATE "
      "TABLE "
      "A(a); CREATE VIEW c AS SELECT * FROM b; CREATE INDEX i ON A(a); CREATE TABLE sqlites(a)");
  EXPECT_EQ(NamesOf(tables), (std::vector<Text>{"A", "b", "c", "sqlites", "Ärger"}));
  EXPECT_TRUE(tables[2].bView);
  EXPECT_EQ(tables[2].columns.at(0).sName, "n");
}

TEST_F(SqliteSchemaTest, of_keys_only_the_row_number_and_what_says_so_refuse_null) {
  const auto tables = SchemaOf(
      "CREATE TABLE a(k INTEGER PRIMARY KEY); CREATE TABLE b(k TEXT PRIMARY KEY); CREATE TABLE c(k "
      "TEXT PRIMARY KEY) WITHOUT ROWID; CREATE TABLE d(k INTEGER, l INTEGER, PRIMARY KEY (k, l))");
  EXPECT_FALSE(tables.at(0).columns[0].bNullable);
  EXPECT_TRUE(tables.at(1).columns[0].bNullable);
  EXPECT_FALSE(tables.at(2).columns[0].bNullable);
  EXPECT_TRUE(tables.at(3).columns[0].bNullable);
}

TEST_F(SqliteSchemaTest, describes_one_table_by_its_whole_name_in_any_case) {
  const std::string sSql =
      "CREATE TABLE Data(a); CREATE TABLE Data2(a); CREATE TABLE \"D'\"\"\"(x)";
  EXPECT_EQ(NamesOf(SchemaOf(sSql, {"Data", true})), std::vector<Text>{"Data"});
  const Catalog catalog{"m", PathOf("m.db")};
  EXPECT_EQ(NamesOf(Open()->Schema(catalog, {"data", true}, {})), std::vector<Text>{"Data"});
  EXPECT_TRUE(Open()->Schema(catalog, {"D%", true}, {}).empty());
  EXPECT_EQ(Open()->Schema(catalog, {"D'\"", true}, {}).at(0).columns.at(0).sName, "x");
}

TEST_F(SqliteSchemaTest, lists_tables_without_columns_when_asked) {
  const auto tables = SchemaOf("CREATE TABLE a(x); CREATE TABLE b(x)", {std::nullopt, false});
  EXPECT_EQ(NamesOf(tables), (std::vector<Text>{"a", "b"}));
  EXPECT_TRUE(tables[0].columns.empty());
}

TEST_F(SqliteSchemaTest, a_view_over_something_that_is_gone_spoils_nothing_but_itself) {
  const auto tables = SchemaOf(
      "CREATE TABLE a(x, y); CREATE TABLE gone(z); CREATE VIEW broken AS SELECT z FROM gone; "
      "CREATE "
      "TABLE c(x); DROP TABLE gone");
  EXPECT_EQ(NamesOf(tables), (std::vector<Text>{"a", "broken", "c"}));
  EXPECT_EQ(tables[0].columns.size(), 2U);
  EXPECT_TRUE(tables[1].bView);
  EXPECT_TRUE(tables[1].columns.empty());
  EXPECT_EQ(tables[2].columns.size(), 1U);
}

TEST_F(SqliteSchemaTest, views_beside_a_broken_one_keep_their_columns) {
  const auto tables = SchemaOf(
      "CREATE TABLE gone(z); CREATE VIEW broken AS SELECT z FROM gone; CREATE TABLE a(x, y);"
      "CREATE VIEW whole AS SELECT y FROM a; DROP TABLE gone");
  EXPECT_EQ(NamesOf(tables), (std::vector<Text>{"a", "broken", "whole"}));
  EXPECT_TRUE(tables[2].bView);
  ASSERT_EQ(tables[2].columns.size(), 1U);
  EXPECT_EQ(tables[2].columns[0].sName, "y");
}

TEST_F(SqliteSchemaTest, generated_columns_are_columns) {
  const auto tables = SchemaOf("CREATE TABLE a(x INT, y INT GENERATED ALWAYS AS (x + 1))");
  EXPECT_EQ(tables.at(0).columns.at(1).sName, "y");
}

TEST_F(SqliteSchemaTest, a_column_without_a_declared_type_has_none) {
  const auto tables = SchemaOf("CREATE TABLE a(x)");
  EXPECT_EQ(tables.at(0).columns.at(0).sDeclaredType, "");
  EXPECT_EQ(tables.at(0).columns.at(0).type, DataType::Empty);
}

TEST_F(SqliteSchemaTest, an_empty_catalog_has_no_tables) {
  EXPECT_TRUE(Open()->Schema(Make("new.db", "PRAGMA journal_mode = WAL"), {}, {}).empty());
}

TEST_F(SqliteSchemaTest, describes_the_sessions_own_database_too) {
  const Catalog catalog = Make("m.db", "CREATE TABLE a(x)");
  EXPECT_EQ(Open(catalog)->Schema(catalog, {}, {}).at(0).columns.at(0).sName, "x");
}

TEST_F(SqliteSchemaTest, lets_go_of_the_catalog_and_tells_a_missing_one) {
  const Catalog catalog = Make("m.db", "CREATE TABLE a(x)");
  const auto session = Open();
  session->Schema(catalog, {}, {});
  EXPECT_EQ(RunFails(*session, "SELECT * FROM m.a").lNumber, failure::kSqlError);
  EXPECT_EQ(FailureOf([&] {
              session->Schema({"x", PathOf("x.db")}, {}, {});
            }).lNumber,
            failure::kServerNotFound);
}

TEST_F(SqliteSchemaTest, can_be_cancelled) {
  const Catalog catalog = Make("m.db", "CREATE TABLE a(x)");
  std::stop_source stop;
  stop.request_stop();
  EXPECT_EQ(FailureOf([&] { Open()->Schema(catalog, {}, stop.get_token()); }).lNumber,
            failure::kCancelled);
}

TEST_F(SqliteSchemaTest, lists_thousands_of_tables_with_their_columns) {
  std::string sSql = "BEGIN;";
  for (int i = 0; i < 2'000; ++i) {
    sSql += "CREATE TABLE t" + std::to_string(i) + "(a INTEGER PRIMARY KEY, b TEXT, c REAL);";
  }
  const auto tables = SchemaOf(sSql + "COMMIT");
  ASSERT_EQ(tables.size(), 2'000U);
  for (const TableSchema& table : tables) ASSERT_EQ(table.columns.size(), 3U);
}

}  // namespace
}  // namespace orvane::provider::engines
