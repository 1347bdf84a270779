#include "tests/provider/dialect/translated.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

TEST(translator_names, writes_names_of_tables_as_catalog_and_table_in_quotes) {
  EXPECT_EQ(Sql("SELECT * FROM Plant1..Data"), "SELECT * FROM \"Plant1\".\"Data\"");
  EXPECT_EQ(Sql("select * from plant1.data d"), "select * from \"Plant1\".\"Data\" d");
  EXPECT_EQ(Sql("SELECT * FROM [Plant 2]..\"Data\""), "SELECT * FROM \"Plant 2\".\"Data\"");
  EXPECT_EQ(Sql("SELECT * FROM Plant1 . . Data ;"), "SELECT * FROM \"Plant1\".\"Data\" ;");
  EXPECT_EQ(Sql("SELECT * FROM \"{0A}\"..Data"), "SELECT * FROM \"Plant1\".\"Data\"");
}

TEST(translator_names, writes_names_of_columns_behind_a_catalog) {
  EXPECT_EQ(Sql("SELECT Plant1..Data.Value, plant1.data.Tag, Plant1..Data.* FROM Plant1..Data"),
            "SELECT \"Plant1\".\"Data\".Value, \"Plant1\".\"Data\".Tag, \"Plant1\".\"Data\".* FROM "
            "\"Plant1\".\"Data\"");
}

TEST(translator_names, changes_nothing_else) {
  for (const char* const sText :
       {"SELECT 1", "VALUES (1, '*')", "SELECT '*-1h' AS t, 'a' = '*'",
        "WITH a AS (SELECT 1 AS b) SELECT b FROM a WHERE b = '*'",
        "SELECT value FROM json_each('[1]')", "SELECT CASE WHEN 1 THEN 'y' ELSE 't' END",
        "EXPLAIN QUERY PLAN SELECT 1"}) {
    EXPECT_EQ(Sql(sText), sText);
  }
  EXPECT_EQ(Sql("SELECT Tag FROM Plant1..Data WHERE Tag = '*' AND Value IN (1, 2) -- end"),
            "SELECT Tag FROM \"Plant1\".\"Data\" WHERE Tag = '*' AND Value IN (1, 2) -- end");
}

TEST(translator_names, names_the_catalogs_that_must_be_within_reach) {
  auto translation = Translated("SELECT 1 FROM Plant1..Data, plant1.Tags, [Plant 2]..Data");
  EXPECT_EQ(translation.catalogs, (std::vector<Text>{"Plant1", "Plant 2"}));
  EXPECT_EQ(translation.changedCatalog, std::nullopt);
  translation = Translated("INSERT INTO Plant1..Data SELECT * FROM [Plant 2]..Data");
  EXPECT_EQ(translation.catalogs, (std::vector<Text>{"Plant1", "Plant 2"}));
  EXPECT_EQ(translation.changedCatalog, "Plant1");
  EXPECT_TRUE(Translated("SELECT 1").catalogs.empty());
}

TEST(translator_names, leaves_a_name_in_double_quotes_a_name) {
  EXPECT_EQ(Sql("SELECT Tag FROM Plant1..Data WHERE Timestamp > \"*-1h\""),
            "There is no column \"*-1h\" (character 48 of the statement); write the name of one "
            "that the tables have; a text or a time stands between single quotes.");
}

TEST(translator_names, understands_prefixed_names_where_the_option_says_so) {
  const Options prefixes{true, false};
  EXPECT_EQ(Sql("SELECT Orv_Data.Orv_Value, Orv_Plant1..Orv_Data.Tag FROM Orv_Plant1..Orv_Data "
                "WHERE Orv_Timestamp >= 't' AND Timestamp <= 't'",
                prefixes),
            "SELECT \"Data\".\"Value\", \"Plant1\".\"Data\".Tag FROM \"Plant1\".\"Data\" WHERE "
            "\"Timestamp\" >= ? AND Timestamp <= ? | 2024-05-15 00:00:00 | 2024-05-15 00:00:00");
  EXPECT_EQ(Sql("SELECT Value FROM Plant1..Data", prefixes),
            "SELECT Value FROM \"Plant1\".\"Data\"");
  // A column that is really called so keeps its name, and so does an alias.
  EXPECT_EQ(Sql("SELECT Orv_Odd, Orv_x.Tag AS Orv_Tag2 FROM Plant1..Tags Orv_x", prefixes),
            "SELECT \"Orv_Odd\", Orv_x.Tag AS Orv_Tag2 FROM \"Plant1\".\"Tags\" Orv_x");
  EXPECT_EQ(
      Sql("INSERT INTO Orv_Plant1..Orv_Data (Orv_Tag, Orv_Timestamp) VALUES ('a', 't')", prefixes),
      "INSERT INTO \"Plant1\".\"Data\" (\"Tag\", \"Timestamp\") VALUES ('a', ?) | 2024-05-15 "
      "00:00:00");
  EXPECT_EQ(Sql("CREATE TABLE Plant1..Orv_New (a)", prefixes),
            "CREATE TABLE \"Plant1\".\"New\" (a)");
  EXPECT_EQ(Sql("SELECT 1 FROM Plant1..Orv_Data"),
            "There is no table \"Orv_Data\" in the catalog Plant1 (character 23 of the statement); "
            "write the name of one that the catalog lists.");
}

TEST(translator_names, defines_tables_indexes_and_views_in_catalogs) {
  EXPECT_EQ(Sql("CREATE TABLE IF NOT EXISTS Plant1..New (Tag TEXT, Timestamp TIMESTAMP)"),
            "CREATE TABLE IF NOT EXISTS \"Plant1\".\"New\" (Tag TEXT, Timestamp TIMESTAMP CHECK "
            "(typeof(\"Timestamp\") NOT IN ('text', 'blob')))");
  EXPECT_EQ(Sql("CREATE TABLE Plant1..New AS SELECT Tag FROM [Plant 2]..Data"),
            "CREATE TABLE \"Plant1\".\"New\" AS SELECT Tag FROM \"Plant 2\".\"Data\"");
  EXPECT_EQ(Sql("DROP TABLE Plant1..Data"), "DROP TABLE \"Plant1\".\"Data\"");
  EXPECT_EQ(Sql("DROP VIEW IF EXISTS Plant1..v"), "DROP VIEW IF EXISTS \"Plant1\".\"v\"");
  EXPECT_EQ(Sql("ALTER TABLE Plant1..Data ADD COLUMN x REAL"),
            "ALTER TABLE \"Plant1\".\"Data\" ADD COLUMN x REAL");
  EXPECT_EQ(Sql("CREATE UNIQUE INDEX i ON Plant1..Data (Value)"),
            "CREATE UNIQUE INDEX \"Plant1\".\"i\" ON \"Data\" (Value)");
  EXPECT_EQ(Sql("CREATE INDEX Plant1..i ON Plant1..Data (Value)"),
            "CREATE INDEX \"Plant1\".\"i\" ON \"Data\" (Value)");
  // The text that is kept names no catalog: another program may reach the file by any name.
  EXPECT_EQ(Sql("CREATE VIEW Plant1..v AS SELECT Plant1..Data.Tag FROM Plant1..Data"),
            "CREATE VIEW \"Plant1\".\"v\" AS SELECT \"Data\".Tag FROM \"Data\"");
  EXPECT_EQ(Sql("CREATE VIEW Plant1..v AS SELECT 1 FROM [Plant 2]..Data"),
            "A view reads another catalog than its own (character 40 of the statement); read "
            "tables of Plant1 only.");
  EXPECT_EQ(Sql("CREATE VIEW Plant1..v AS SELECT 1 FROM Plant1..Data WHERE Timestamp > '*'"),
            "A time stands in a view (character 71 of the statement); compare times in the "
            "statements that read it.");
  EXPECT_EQ(Sql("CREATE INDEX Plant1..i ON [Plant 2]..Data (Value)"),
            "An index names another catalog than its table (character 27 of the statement); write "
            "the catalog once.");
}

}  // namespace
}  // namespace orvane::provider::dialect
