#include "provider/dialect/translator.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <random>

#include "platform/conversions.h"
#include "platform/failure.h"
#include "provider/dialect/lexer.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;
using platform::Timestamp;
using namespace std::chrono;

// Two catalogs of the usual tables, and the two that the historian keeps.
class Schema final : public SchemaSource {
 public:
  std::optional<KnownCatalog> FindCatalog(const Text& sName) override {
    if (SameName(sName, "{0A}")) return KnownCatalog{"Plant1", {}};
    for (const char* const sKnown : {"Plant1", "Plant 2"}) {
      if (SameName(sName, sKnown) || SameName(sName, Text(kIdentifierPrefix) + sKnown)) {
        return KnownCatalog{sKnown, {}};
      }
    }
    if (SameName(sName, "Functions")) return KnownCatalog{"Functions", "change another one"};
    return std::nullopt;
  }
  std::optional<KnownTable> FindTable(const KnownCatalog&, const Text& sTable) override {
    if (SameName(sTable, "Data")) {
      return KnownTable{"Data", {{"Tag"}, {"Timestamp", Content::Time}, {"Value"}, {"Status"}}};
    }
    if (SameName(sTable, "Tags")) {
      return KnownTable{"Tags",
                        {{"Tag"}, {"Description"}, {"Orv_Odd"}, {"Created", Content::Time}}};
    }
    return std::nullopt;
  }
};

struct Options {
  bool bPrefixes = false;
  bool bTimeAsDouble = false;
};

Translation Translated(std::string_view sStatement, Options options = {}) {
  Schema schema;
  const TranslationSettings settings{zones::TimeZone("UTC"),
                                     sys_days(year{2024} / 5 / 15) + hours(12), options.bPrefixes,
                                     options.bTimeAsDouble};
  return Translate(sStatement, schema, settings);
}

// The SQL with its parameters behind it.
Text Sql(std::string_view sStatement, Options options = {}) {
  try {
    const auto translation = Translated(sStatement, options);
    Text sText = translation.sSql;
    for (const auto& parameter : translation.parameters) {
      sText += " | " + platform::ToText(parameter);
    }
    return sText;
  } catch (const platform::Failure& failure) {
    EXPECT_EQ(failure.Number(), platform::failure::kSqlError) << failure.Description();
    return failure.Description();
  }
}

TEST(translator, writes_names_of_tables_as_catalog_and_table_in_quotes) {
  EXPECT_EQ(Sql("SELECT * FROM Plant1..Data"), "SELECT * FROM \"Plant1\".\"Data\"");
  EXPECT_EQ(Sql("select * from plant1.data d"), "select * from \"Plant1\".\"Data\" d");
  EXPECT_EQ(Sql("SELECT * FROM [Plant 2]..\"Data\""), "SELECT * FROM \"Plant 2\".\"Data\"");
  EXPECT_EQ(Sql("SELECT * FROM Plant1 . . Data ;"), "SELECT * FROM \"Plant1\".\"Data\" ;");
  EXPECT_EQ(Sql("SELECT * FROM \"{0A}\"..Data"), "SELECT * FROM \"Plant1\".\"Data\"");
}

TEST(translator, writes_names_of_columns_behind_a_catalog) {
  EXPECT_EQ(Sql("SELECT Plant1..Data.Value, plant1.data.Tag, Plant1..Data.* FROM Plant1..Data"),
            "SELECT \"Plant1\".\"Data\".Value, \"Plant1\".\"data\".Tag, \"Plant1\".\"Data\".* FROM "
            "\"Plant1\".\"Data\"");
}

TEST(translator, changes_nothing_else) {
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

TEST(translator, reads_the_default_filter_conditions) {
  const Text sHead = "SELECT * FROM Plant1..Data WHERE ";
  const Text sOut = "SELECT * FROM \"Plant1\".\"Data\" WHERE ";
  EXPECT_EQ(Sql(sHead + "Timestamp BETWEEN '*-1h' AND '*'"),
            sOut + "Timestamp BETWEEN ? AND ? | 2024-05-15 11:00:00 | 2024-05-15 12:00:00");
  EXPECT_EQ(Sql(sHead + "Timestamp >= 't'"), sOut + "Timestamp >= ? | 2024-05-15 00:00:00");
  EXPECT_EQ(Sql(sHead + "Timestamp <= '2024-05-01'"),
            sOut + "Timestamp <= ? | 2024-05-01 00:00:00");
  EXPECT_EQ(Sql(sHead + "(Timestamp BETWEEN '*-1h' AND '*') ORDER BY Timestamp"),
            sOut +
                "(Timestamp BETWEEN ? AND ?) ORDER BY Timestamp | 2024-05-15 11:00:00 | "
                "2024-05-15 12:00:00");
}

TEST(translator, takes_a_time_in_every_comparison_on_either_side) {
  const Text sHead = "SELECT 1 FROM Plant1..Data AS d WHERE ";
  const Text sOut = "SELECT 1 FROM \"Plant1\".\"Data\" AS d WHERE ";
  const Text sTime = " | 2024-05-15 00:00:00";
  for (const char* const sOperator : {"=", "==", "<>", "!=", "<", ">", "<=", ">=", "IS", "IS NOT",
                                      "IS DISTINCT FROM", "IS NOT DISTINCT FROM"}) {
    const Text sMid = Text(" ") + sOperator + " ";
    EXPECT_EQ(Sql(sHead + "Timestamp" + sMid + "'t'"), sOut + "Timestamp" + sMid + "?" + sTime);
    EXPECT_EQ(Sql(sHead + "'t'" + sMid + "Timestamp"), sOut + "?" + sMid + "Timestamp" + sTime);
    EXPECT_EQ(Sql(sHead + "[d].\"timestamp\"" + sMid + "('t')"),
              sOut + "[d].\"timestamp\"" + sMid + "(?)" + sTime);
  }
  EXPECT_EQ(Sql(sHead + "Timestamp IN ('t', 't')"), sOut + "Timestamp IN (?, ?)" + sTime + sTime);
  EXPECT_EQ(Sql(sHead + "d.Timestamp NOT IN ('t')"), sOut + "d.Timestamp NOT IN (?)" + sTime);
  EXPECT_EQ(Sql(sHead + "'t' IN (Timestamp, 5)"), sOut + "? IN (Timestamp, 5)" + sTime);
  EXPECT_EQ(Sql(sHead + "Timestamp NOT BETWEEN 't' AND 5 AND Tag = 't'"),
            sOut + "Timestamp NOT BETWEEN ? AND 5 AND Tag = 't'" + sTime);
  EXPECT_EQ(Sql(sHead + "'t' BETWEEN Timestamp AND d.Timestamp"),
            sOut + "? BETWEEN Timestamp AND d.Timestamp" + sTime);
  EXPECT_EQ(Sql(sHead + "Timestamp BETWEEN (1 + 2) * 3 AND 't'"),
            sOut + "Timestamp BETWEEN (1 + 2) * 3 AND ?" + sTime);
  EXPECT_EQ(Sql(sHead + "(Tag, Timestamp) = ('t', 't')"),
            sOut + "(Tag, Timestamp) = ('t', ?)" + sTime);
  EXPECT_EQ(Sql(sHead + "max(Timestamp) > 't' OR (((Timestamp))) < 't'"),
            sOut + "max(Timestamp) > ? OR (((Timestamp))) < ?" + sTime + sTime);
}

TEST(translator, leaves_a_text_that_is_only_part_of_an_operand) {
  const Text sHead = "SELECT 1 FROM Plant1..Data WHERE ";
  const Text sOut = "SELECT 1 FROM \"Plant1\".\"Data\" WHERE ";
  for (const char* const sText :
       {"Timestamp = 'a' || 'b'", "'a' || 'b' = Timestamp", "Timestamp + 1 = 't'",
        "1 + Timestamp = 't'", "Timestamp = 't' COLLATE NOCASE", "lower(Timestamp) = 't'",
        "max(Timestamp, 1) = 't'", "Timestamp = lower('t')", "Timestamp LIKE 't'"}) {
    EXPECT_EQ(Sql(sHead + sText), sOut + sText);
  }
}

TEST(translator, finds_time_columns_through_aliases_joins_and_subqueries) {
  const Text sTime = " | 2024-05-15 00:00:00";
  const Text sD = "\"Plant1\".\"Data\"";
  const Text sT = "\"Plant1\".\"Tags\"";
  EXPECT_EQ(Sql("SELECT 1 FROM Plant1..Data a JOIN Plant1..Tags b ON a.Tag = b.Tag AND "
                "b.Created > 't' WHERE Created < 't'"),
            "SELECT 1 FROM " + sD + " a JOIN " + sT +
                " b ON a.Tag = b.Tag AND b.Created > ? WHERE Created < ?" + sTime + sTime);
  EXPECT_EQ(Sql("SELECT 1 FROM (Plant1..Data a LEFT OUTER JOIN Plant1..Tags b USING (Tag)), "
                "Plant1..Tags c WHERE c.Created = 't'"),
            "SELECT 1 FROM (" + sD + " a LEFT OUTER JOIN " + sT + " b USING (Tag)), " + sT +
                " c WHERE c.Created = ?" + sTime);
  EXPECT_EQ(Sql("SELECT 1 FROM (SELECT Timestamp AS x, Tag y FROM Plant1..Data) q WHERE q.x = 't' "
                "AND y = 't'"),
            "SELECT 1 FROM (SELECT Timestamp AS x, Tag y FROM " + sD +
                ") q WHERE q.x = ? AND y = 't'" + sTime);
  EXPECT_EQ(Sql("SELECT 1 FROM (SELECT * FROM Plant1..Data UNION ALL SELECT d.* FROM "
                "Plant1..Data d) WHERE Timestamp = 't'"),
            "SELECT 1 FROM (SELECT * FROM " + sD + " UNION ALL SELECT d.* FROM " + sD +
                " d) WHERE Timestamp = ?" + sTime);
  EXPECT_EQ(Sql("WITH q(a, b) AS (SELECT Tag, max(Timestamp) FROM Plant1..Data) SELECT * FROM q "
                "WHERE b > 't' AND a > 't'"),
            "WITH q(a, b) AS (SELECT Tag, max(Timestamp) FROM " + sD +
                ") SELECT * FROM q WHERE b > ? AND a > 't'" + sTime);
  EXPECT_EQ(Sql("SELECT 1 FROM Plant1..Data d WHERE EXISTS (SELECT 1 FROM Plant1..Tags WHERE "
                "d.Timestamp > 't')"),
            "SELECT 1 FROM " + sD + " d WHERE EXISTS (SELECT 1 FROM " + sT +
                " WHERE d.Timestamp > ?)" + sTime);
  EXPECT_EQ(
      Sql("SELECT Tag, max(Timestamp) AS last FROM Plant1..Data GROUP BY Tag HAVING last > "
          "'t'"),
      "SELECT Tag, max(Timestamp) AS last FROM " + sD + " GROUP BY Tag HAVING last > ?" + sTime);
  EXPECT_EQ(Sql("SELECT 1 FROM Plant1..Data WHERE Tag IN Plant1..Tags AND Timestamp = 't'"),
            "SELECT 1 FROM " + sD + " WHERE Tag IN " + sT + " AND Timestamp = ?" + sTime);
  // A column of the inner query hides that of the outer one.
  EXPECT_EQ(Sql("SELECT 1 FROM Plant1..Data d WHERE EXISTS (SELECT 1 FROM (SELECT Tag AS Timestamp "
                "FROM Plant1..Tags) d WHERE d.Timestamp = 'x')"),
            "SELECT 1 FROM " + sD +
                " d WHERE EXISTS (SELECT 1 FROM (SELECT Tag AS Timestamp FROM " + sT +
                ") d WHERE d.Timestamp = 'x')");
}

TEST(translator, ends_with_queries_that_read_themselves) {
  EXPECT_EQ(Sql("WITH RECURSIVE q AS (SELECT * FROM q WHERE a = 't') SELECT a FROM q"),
            "WITH RECURSIVE q AS (SELECT * FROM q WHERE a = 't') SELECT a FROM q");
  EXPECT_EQ(Sql("WITH a AS (SELECT x FROM b), b AS (SELECT x FROM a) SELECT x FROM a WHERE x = "
                "'t'"),
            "WITH a AS (SELECT x FROM b), b AS (SELECT x FROM a) SELECT x FROM a WHERE x = 't'");
  EXPECT_EQ(Sql("SELECT a AS b, b AS a WHERE a = 't'"), "SELECT a AS b, b AS a WHERE a = 't'");
}

TEST(translator, takes_times_on_their_way_into_a_table) {
  const Text sTime = " | 2024-05-15 00:00:00";
  EXPECT_EQ(Sql("INSERT INTO Plant1..Data VALUES ('t', 't', 1, 't'), ('t', ('t'), 2, NULL)"),
            "INSERT INTO \"Plant1\".\"Data\" VALUES ('t', ?, 1, 't'), ('t', (?), 2, NULL)" + sTime +
                sTime);
  EXPECT_EQ(
      Sql("INSERT OR IGNORE INTO Plant1..Data (\"Timestamp\", Tag) VALUES ('t', 't')"),
      "INSERT OR IGNORE INTO \"Plant1\".\"Data\" (\"Timestamp\", Tag) VALUES (?, 't')" + sTime);
  EXPECT_EQ(Sql("INSERT INTO Plant1..Data (Tag, Timestamp) SELECT Tag, 't' FROM Plant1..Tags ON "
                "CONFLICT DO NOTHING"),
            "INSERT INTO \"Plant1\".\"Data\" (Tag, Timestamp) SELECT Tag, ? FROM "
            "\"Plant1\".\"Tags\" ON CONFLICT DO NOTHING" +
                sTime);
  EXPECT_EQ(
      Sql("REPLACE INTO Plant1..Data (Tag, Timestamp) VALUES ('a', 't') RETURNING Tag"),
      "REPLACE INTO \"Plant1\".\"Data\" (Tag, Timestamp) VALUES ('a', ?) RETURNING Tag" + sTime);
  EXPECT_EQ(Sql("UPDATE Plant1..Data SET Tag = 't', Timestamp = 't' WHERE Timestamp = 't'"),
            "UPDATE \"Plant1\".\"Data\" SET Tag = 't', Timestamp = ? WHERE Timestamp = ?" + sTime +
                sTime);
  EXPECT_EQ(Sql("UPDATE Plant1..Data SET Value = 1 FROM Plant1..Tags g WHERE g.Created = 't'"),
            "UPDATE \"Plant1\".\"Data\" SET Value = 1 FROM \"Plant1\".\"Tags\" g WHERE g.Created = "
            "?" +
                sTime);
  EXPECT_EQ(Sql("DELETE FROM Plant1..Data WHERE Timestamp < 't'"),
            "DELETE FROM \"Plant1\".\"Data\" WHERE Timestamp < ?" + sTime);
}

TEST(translator, names_the_catalogs_that_must_be_within_reach) {
  auto translation = Translated("SELECT 1 FROM Plant1..Data, plant1.Tags, [Plant 2]..Data");
  EXPECT_EQ(translation.catalogs, (std::vector<Text>{"Plant1", "Plant 2"}));
  EXPECT_EQ(translation.changedCatalog, std::nullopt);
  translation = Translated("INSERT INTO Plant1..Data SELECT * FROM [Plant 2]..Data");
  EXPECT_EQ(translation.catalogs, (std::vector<Text>{"Plant1", "Plant 2"}));
  EXPECT_EQ(translation.changedCatalog, "Plant1");
  EXPECT_TRUE(Translated("SELECT 1").catalogs.empty());
}

// "t" for a column of times, "m" for one that mixes, "0" for one of null, "-" for any other.
Text Columns(std::string_view sStatement) {
  Text sColumns;
  for (const Content content : Translated(sStatement).columns) {
    sColumns += "-0tm"[static_cast<std::size_t>(content)];
  }
  return sColumns;
}

TEST(translator, tells_which_columns_of_the_result_hold_times) {
  EXPECT_EQ(Columns("SELECT *, max(Timestamp), Value, (Timestamp) x, Tag || 'a' FROM Plant1..Data"),
            "-t--t-t-");
  EXPECT_EQ(
      Columns("SELECT max(DISTINCT Timestamp), ifnull(min(Timestamp), Timestamp), "
              "coalesce(Timestamp, 0), count(Timestamp), max(Timestamp, 5) FROM Plant1..Data"),
      "tt---");
  EXPECT_EQ(Columns("DELETE FROM Plant1..Data"), "");
}

TEST(translator, finds_times_behind_window_functions) {
  EXPECT_EQ(Columns("SELECT max(Timestamp) OVER (PARTITION BY Tag), lag(Timestamp) OVER w, "
                    "lead(Timestamp, 2, NULL) OVER w AS a, lag(Timestamp, 1, 0) OVER w, "
                    "first_value(Timestamp) OVER w b, last_value(Timestamp) OVER w, "
                    "nth_value(Timestamp, 2) OVER w, count(Timestamp) OVER w, "
                    "min(Timestamp) FILTER (WHERE Value > 0) OVER (ORDER BY Tag), "
                    "max(Timestamp) OVER w + 1 FROM Plant1..Data WINDOW w AS (ORDER BY Tag)"),
            "ttt-ttt-t-");
  EXPECT_EQ(Sql("SELECT a FROM (SELECT lag(Timestamp) OVER w a FROM Plant1..Data WINDOW w AS "
                "(ORDER BY Tag)) WHERE a >= 't'"),
            "SELECT a FROM (SELECT lag(Timestamp) OVER w a FROM \"Plant1\".\"Data\" WINDOW w AS "
            "(ORDER BY Tag)) WHERE a >= ? | 2024-05-15 00:00:00");
}

TEST(translator, calls_a_column_of_a_compound_a_time_when_all_of_it_is_one) {
  EXPECT_EQ(Columns("SELECT min(Timestamp), 1 FROM Plant1..Data UNION SELECT 1, 2"), "m-");
  EXPECT_EQ(Columns("SELECT 1 UNION ALL SELECT Timestamp FROM Plant1..Data"), "m");
  EXPECT_EQ(Columns("SELECT Timestamp FROM Plant1..Data UNION VALUES (1)"), "m");
  EXPECT_EQ(Columns("SELECT Timestamp FROM Plant1..Data UNION ALL SELECT max(Created) FROM "
                    "Plant1..Tags UNION ALL SELECT NULL"),
            "t");
  EXPECT_EQ(Columns("SELECT NULL, NULL UNION SELECT Timestamp, NULL FROM Plant1..Data"), "t0");
  EXPECT_EQ(Columns("SELECT x FROM (SELECT Timestamp x FROM Plant1..Data UNION SELECT 1)"), "m");
  EXPECT_EQ(Columns("WITH RECURSIVE r(t, n) AS (SELECT min(Timestamp), 0 FROM Plant1..Data UNION "
                    "ALL SELECT t, n + 1 FROM r WHERE n < 5) SELECT t, n FROM r"),
            "t-");
}

TEST(translator, calls_nothing_a_time_in_what_explains_a_statement) {
  EXPECT_EQ(Columns("EXPLAIN SELECT Timestamp FROM Plant1..Data"), "");
  EXPECT_EQ(Columns("EXPLAIN QUERY PLAN SELECT Timestamp, Timestamp FROM Plant1..Data"), "");
}

TEST(translator, leaves_a_name_in_double_quotes_a_name) {
  EXPECT_EQ(Sql("SELECT Tag FROM Plant1..Data WHERE Timestamp > \"*-1h\""),
            "SELECT Tag FROM \"Plant1\".\"Data\" WHERE Timestamp > \"*-1h\"");
}

TEST(translator, understands_prefixed_names_where_the_option_says_so) {
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

TEST(translator, compares_numbers_of_days_where_the_option_says_so) {
  const Options doubles{false, true};
  const Text sHead = "SELECT 1 FROM Plant1..Data WHERE ";
  const Text sOut = "SELECT 1 FROM \"Plant1\".\"Data\" WHERE ";
  EXPECT_EQ(Sql(sHead + "Timestamp > 45292.25 AND Value > 1", doubles),
            sOut + "Timestamp > ? AND Value > 1 | 2024-01-01 06:00:00");
  EXPECT_EQ(Sql(sHead + "-1 < Timestamp AND Timestamp > 't'", doubles),
            sOut + "? < Timestamp AND Timestamp > ? | 1899-12-29 00:00:00 | 2024-05-15 00:00:00");
  EXPECT_EQ(Sql(sHead + "Timestamp > 1 - 1", doubles), sOut + "Timestamp > 1 - 1");
  EXPECT_EQ(Sql(sHead + "Timestamp > 9e99", doubles),
            "9e99 is no time (character 46 of the statement); write a number of days since "
            "1899-12-30.");
  EXPECT_EQ(Sql(sHead + "Timestamp > 45292.25"), sOut + "Timestamp > 45292.25");
}

TEST(translator, defines_tables_indexes_and_views_in_catalogs) {
  EXPECT_EQ(Sql("CREATE TABLE IF NOT EXISTS Plant1..New (Tag TEXT, Timestamp TIMESTAMP)"),
            "CREATE TABLE IF NOT EXISTS \"Plant1\".\"New\" (Tag TEXT, Timestamp TIMESTAMP)");
  EXPECT_EQ(Sql("CREATE TABLE Plant1..New AS SELECT * FROM [Plant 2]..Data"),
            "CREATE TABLE \"Plant1\".\"New\" AS SELECT * FROM \"Plant 2\".\"Data\"");
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

TEST(translator, says_where_and_why_a_statement_is_refused) {
  const std::pair<const char*, const char*> rows[] = {
      {"SELECT * FROM Data",
       "The name \"Data\" stands without a catalog (character 15 of the statement); write "
       "catalog..Data, for example Plant1..Data."},
      {"INSERT INTO Data VALUES (1)",
       "The name \"Data\" stands without a catalog (character 13 of the statement); write "
       "catalog..Data, for example Plant1..Data."},
      {"SELECT * FROM Nowhere..Data",
       "There is no catalog \"Nowhere\" (character 15 of the statement); write the name of one "
       "that "
       "the server lists."},
      {"SELECT * FROM main.Data",
       "There is no catalog \"main\" (character 15 of the statement); write the name of one that "
       "the server lists."},
      {"SELECT * FROM Plant1..Nothing",
       "There is no table \"Nothing\" in the catalog Plant1 (character 23 of the statement); write "
       "the name of one that the catalog lists."},
      {"SELECT * FROM Plant1..sqlite_master",
       "There is no table \"sqlite_master\" in the catalog Plant1 (character 23 of the statement); "
       "write the name of one that the catalog lists."},
      {"SELECT * FROM sqlite_master",
       "The name \"sqlite_master\" stands without a catalog (character 15 of the statement); write "
       "catalog..sqlite_master, for example Plant1..sqlite_master."},
      {"SELECT * FROM Plant1.x.Data",
       "A name has too many parts (character 15 of the statement); write catalog..table, as in "
       "Plant1..Data."},
      {"SELECT Plant1..Data FROM Plant1..Data",
       "A column is not named as it should be (character 8 of the statement); write "
       "catalog..table.column, alias.column or column."},
      {"SELECT 1 FROM Plant1..Data WHERE Timestamp > 'yesterday'",
       "'yesterday' is no time (character 46 of the statement); at its character 2 + or - must "
       "follow."},
      {"SELECT 1 FROM Plant1..Data WHERE '*-1x' < Timestamp",
       "'*-1x' is no time (character 34 of the statement); at its character 4 the unit must be s, "
       "m, h, d, w, mo or y."},
      {"DELETE FROM Functions..Data",
       "The catalog Functions cannot be changed (character 13 of the statement); change another "
       "one."},
      {"DROP TABLE Functions..Data",
       "The catalog Functions cannot be changed (character 12 of the statement); change another "
       "one."},
      {"ATTACH 'x' AS y",
       "ATTACH is not possible (character 1 of the statement); a catalog is reached by writing its "
       "name, as in Plant1..Data."},
      {"DETACH y",
       "DETACH is not possible (character 1 of the statement); a catalog is reached by writing its "
       "name, as in Plant1..Data."},
      {"PRAGMA writable_schema = 1",
       "PRAGMA is not possible (character 1 of the statement); the historian does this work "
       "itself."},
      {"vacuum",
       "VACUUM is not possible (character 1 of the statement); the historian does this work "
       "itself."},
      {"BEGIN",
       "BEGIN is not possible (character 1 of the statement); every statement is a transaction of "
       "its own."},
      {"EXPLAIN PRAGMA x",
       "PRAGMA is not possible (character 9 of the statement); the historian does this work "
       "itself."},
      {"HELLO",
       "No statement begins like this (character 1 of the statement); begin with SELECT, WITH, "
       "VALUES, INSERT, UPDATE, DELETE, CREATE, ALTER or DROP."},
      {"SELECT load_extension('x')",
       "load_extension is not available to statements (character 8 of the statement); leave it "
       "out."},
      {"SELECT * FROM pragma_database_list",
       "pragma_database_list is not available to statements (character 15 of the statement); leave "
       "it out."},
      {"SELECT * FROM generate('x')",
       "This function makes no table (character 15 of the statement); read catalog..table, as in "
       "Plant1..Data."},
      {"CREATE TRIGGER Plant1..t",
       "This cannot be created, altered or dropped (character 8 of the statement); create and drop "
       "a TABLE, an INDEX, a VIEW or a DATABASE, or alter a TABLE."},
      {"CREATE TEMP TABLE x (a)",
       "TEMP is not possible (character 8 of the statement); tables live in catalogs; write "
       "catalog..table."},
      {"SELECT (1", "A bracket is never closed (character 8 of the statement); close it with )."},
      {"SELECT 1)",
       "A bracket closes that was never opened (character 9 of the statement); remove it or open "
       "it before."},
  };
  for (const auto& [sStatement, sFailure] : rows) EXPECT_EQ(Sql(sStatement), sFailure);
}

TEST(translator, refuses_what_is_nested_beyond_measure) {
  Text sDeep;
  for (int i = 0; i < 5000; ++i) sDeep += "SELECT (";
  for (int i = 0; i < 5000; ++i) sDeep += ")";
  EXPECT_NE(Sql(sDeep).find("Queries are nested too deeply"), Text::npos);
  const Text sOpen(20000, '(');
  const Text sClosed(20000, ')');
  EXPECT_NE(Sql("SELECT 1 FROM " + sOpen + sClosed).find("nested too deeply"), Text::npos);
  EXPECT_EQ(Sql("SELECT " + sOpen + "1" + sClosed).size(), 40008U);
}

// What comes out is at most one statement to the engine, whatever goes in.
TEST(translator, never_crashes_and_never_passes_a_second_statement) {
  const char* const pieces[] = {"SELECT ",
                                "* ",
                                "FROM ",
                                "Plant1..Data ",
                                "Plant1",
                                "..",
                                ".",
                                "Data ",
                                "WHERE ",
                                "Timestamp ",
                                ">= ",
                                "'*-1h' ",
                                "'",
                                "\"",
                                "[",
                                "]",
                                "(",
                                ")",
                                ",",
                                ";",
                                "-- ",
                                "/* ",
                                "*/ ",
                                "\n",
                                "BETWEEN ",
                                "AND ",
                                "IN ",
                                "NOT ",
                                "WITH ",
                                "a ",
                                "AS ",
                                "UNION ",
                                "JOIN ",
                                "ON ",
                                "INSERT ",
                                "INTO ",
                                "VALUES ",
                                "UPDATE ",
                                "SET ",
                                "DELETE ",
                                "CREATE ",
                                "INDEX ",
                                "VIEW ",
                                "TABLE ",
                                "DROP ",
                                "x'00' ",
                                "1 ",
                                "-1.5e3 ",
                                "= ",
                                "\xC3\xA9",
                                "\xFF",
                                "\\",
                                "`",
                                "EXPLAIN ",
                                "Orv_Data ",
                                "max(",
                                "IS ",
                                "DISTINCT ",
                                "CASE ",
                                "END ",
                                "RETURNING ",
                                "LIMIT ",
                                "USING ",
                                "ATTACH ",
                                "main.",
                                "sqlite_master ",
                                "load_extension(",
                                "RECURSIVE ",
                                "+",
                                "||"};
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(":memory:", &database), SQLITE_OK);
  std::mt19937 random(20240515);
  int nTranslated = 0;
  for (int i = 0; i < 20000; ++i) {
    Text sStatement = i % 3 == 0 ? "SELECT * FROM Plant1..Data WHERE " : "";
    const auto nPieces = random() % 14;
    for (unsigned piece = 0; piece < nPieces; ++piece)
      sStatement += pieces[random() % std::size(pieces)];
    try {
      const auto translation = Translated(sStatement, {i % 2 == 0, i % 5 == 0});
      ++nTranslated;
      sqlite3_stmt* statement = nullptr;
      const char* tail = nullptr;
      const auto& sSql = translation.sSql;
      if (sqlite3_prepare_v2(database, sSql.c_str(), static_cast<int>(sSql.size()), &statement,
                             &tail) == SQLITE_OK) {
        EXPECT_EQ(Text(tail).find_first_not_of("; \t\n\r\f"), Text::npos) << sStatement;
        EXPECT_EQ(sqlite3_bind_parameter_count(statement),
                  static_cast<int>(translation.parameters.size()))
            << sStatement;
      }
      sqlite3_finalize(statement);
    } catch (const platform::Failure& failure) {
      EXPECT_EQ(failure.Number(), platform::failure::kSqlError) << sStatement;
      EXPECT_FALSE(failure.Description().empty()) << sStatement;
    }
  }
  sqlite3_close(database);
  EXPECT_GT(nTranslated, 500);
}

}  // namespace
}  // namespace orvane::provider::dialect
