#include "provider/engines/postgres/postgres_schema.h"

#include "tests/provider/engines/postgres_fixture.h"

namespace orvane::provider::engines {
namespace {

using platform::DataType;
using platform::Text;
using testing::ElementsAre;
using testing::HasSubstr;

class PostgresSchemaTest : public tests::PostgresTest {
 protected:
  std::vector<TableSchema> Tables(const SchemaRequest& request = {}) const {
    return m_session->Schema({"s", {}}, request, {});
  }
};

TEST_F(PostgresSchemaTest, describes_a_table_with_all_of_its_columns) {
  Do("CREATE DOMAIN s.positive AS float8 CHECK (VALUE > 0)");
  Do("CREATE TABLE s.\"Data\"(\"Tag\" text NOT NULL, \"Timestamp\" timestamptz NOT NULL, \"Value\" "
     "s.positive, \"Status\" int DEFAULT 0, gone int, twice float8 GENERATED ALWAYS AS (\"Status\" "
     "* "
     "2) STORED, id bigint GENERATED ALWAYS AS IDENTITY, price numeric(10,2), PRIMARY KEY "
     "(\"Timestamp\", \"Tag\"))");
  Do("ALTER TABLE s.\"Data\" DROP COLUMN gone");
  const auto tables = Tables();
  ASSERT_EQ(tables.size(), 1U);
  EXPECT_EQ(tables[0].sName, "Data");
  EXPECT_FALSE(tables[0].bView);
  const auto& columns = tables[0].columns;
  ASSERT_EQ(columns.size(), 7U);
  EXPECT_EQ(columns[0].sName, "Tag");
  EXPECT_EQ(columns[0].sDeclaredType, "text");
  EXPECT_EQ(columns[0].type, DataType::WChar);
  EXPECT_FALSE(columns[0].bNullable);
  EXPECT_EQ(columns[0].lKeyOrdinal, 2);
  EXPECT_EQ(columns[0].sDefault, std::nullopt);
  EXPECT_EQ(columns[1].type, DataType::DBTimeStamp);
  EXPECT_EQ(columns[1].sDeclaredType, "timestamp with time zone");
  EXPECT_EQ(columns[1].lKeyOrdinal, 1);
  EXPECT_EQ(columns[2].type, DataType::Double);
  EXPECT_EQ(columns[2].sDeclaredType, "s.positive");
  EXPECT_TRUE(columns[2].bNullable);
  EXPECT_EQ(columns[2].lKeyOrdinal, 0);
  EXPECT_EQ(columns[3].sDefault, "0");
  EXPECT_FALSE(columns[3].bGenerated);
  EXPECT_TRUE(columns[4].bGenerated);
  EXPECT_EQ(columns[4].sDefault, std::nullopt);
  EXPECT_TRUE(columns[5].bGenerated);
  EXPECT_EQ(columns[6].sDeclaredType, "numeric(10,2)");
}

TEST_F(PostgresSchemaTest, lists_tables_and_views_of_every_kind_by_name) {
  Do("CREATE TABLE s.b(n int)");
  Do("CREATE TABLE s.\"A\"()");
  Do("CREATE VIEW s.c AS SELECT n, n + 1 AS m FROM s.b");
  Do("CREATE MATERIALIZED VIEW s.e AS SELECT n FROM s.b");
  Do("CREATE TABLE s.d(n int) PARTITION BY RANGE (n)");
  Do("CREATE TABLE s.d1 PARTITION OF s.d FOR VALUES FROM (0) TO (9)");
  Do("CREATE FOREIGN DATA WRAPPER nothing");
  Do("CREATE SERVER elsewhere FOREIGN DATA WRAPPER nothing");
  Do("CREATE FOREIGN TABLE s.f(n int) SERVER elsewhere");
  Do("CREATE SEQUENCE s.no_table");
  for (const bool bColumns : {true, false}) {
    std::vector<Text> names;
    for (const TableSchema& table : Tables({{}, bColumns})) {
      names.push_back(table.sName + (table.bView ? " (view)" : ""));
      EXPECT_EQ(table.columns.empty(), !bColumns || table.sName == "A");
    }
    EXPECT_THAT(names, ElementsAre("A", "b", "c (view)", "d", "d1", "e (view)", "f"));
  }
  Do("DROP FOREIGN DATA WRAPPER nothing CASCADE");
}

TEST_F(PostgresSchemaTest, describes_one_table_whatever_the_case_of_its_name) {
  Do("CREATE TABLE s.\"Data\"(n int)");
  Do("CREATE TABLE s.data2(n int)");
  const auto tables = Tables({"DATA"});
  ASSERT_EQ(tables.size(), 1U);
  EXPECT_EQ(tables[0].sName, "Data");
  EXPECT_TRUE(Tables({"x' OR '1'='1"}).empty());
}

TEST_F(PostgresSchemaTest, describes_indexes_in_their_order) {
  Do("CREATE TABLE s.t(a int PRIMARY KEY, b int NOT NULL, c text)");
  Do("CREATE TABLE s.u(a int)");
  Do("CREATE INDEX z ON s.t(b DESC, lower(c)) INCLUDE (a)");
  Do("CREATE UNIQUE INDEX part ON s.t(b) WHERE b > 0");
  const auto tables = Tables({{}, true, true});
  ASSERT_EQ(tables.size(), 2U);
  const auto& indexes = tables[0].indexes;
  ASSERT_EQ(indexes.size(), 3U);
  EXPECT_EQ(indexes[0].sName, "part");
  EXPECT_TRUE(indexes[0].bUnique);
  EXPECT_THAT(indexes[0].sFilter.value_or(""), HasSubstr("(b > 0)"));
  EXPECT_TRUE(indexes[1].bPrimaryKey);
  EXPECT_EQ(indexes[1].sFilter, std::nullopt);
  EXPECT_EQ(indexes[2].sName, "z");
  ASSERT_EQ(indexes[2].parts.size(), 2U);
  EXPECT_EQ(indexes[2].parts[0].sColumn, "b");
  EXPECT_TRUE(indexes[2].parts[0].bDescending);
  EXPECT_EQ(indexes[2].parts[1].sColumn, std::nullopt);
  EXPECT_TRUE(tables[1].indexes.empty());
}

TEST_F(PostgresSchemaTest, of_any_number_of_tables_takes_three_statements_at_most) {
  tests::PostgresCluster::Get().Do(
      "postgres",
      "DO 'BEGIN FOR n IN 1..300 LOOP EXECUTE format(''CREATE TABLE s.t%s(a int PRIMARY KEY, b "
      "text)'', n); END LOOP; END'");
  int nStatements = 0;
  TableColumns columns;
  const auto tables = ReadPostgresSchema(
      "s", {{}, true, true},
      [&](const Text& sSql, std::vector<platform::Value> parameters) {
        ++nStatements;
        return Rows(sSql, std::move(parameters));
      },
      columns);
  EXPECT_EQ(tables.size(), 300U);
  EXPECT_EQ(tables.back().indexes.size(), 1U);
  EXPECT_LE(nStatements, 3);
}

TEST_F(PostgresSchemaTest, of_a_schema_that_is_not_there_is_empty) {
  EXPECT_TRUE(m_session->Schema({"nowhere", {}}, {}, {}).empty());
}

}  // namespace
}  // namespace orvane::provider::engines
