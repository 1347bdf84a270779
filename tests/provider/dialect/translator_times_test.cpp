#include "tests/provider/dialect/translated.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

TEST(translator_times, reads_the_default_filter_conditions) {
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

TEST(translator_times, takes_a_time_in_every_comparison_on_either_side) {
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
  EXPECT_EQ(Sql(sHead + "'t' IN (Timestamp, NULL)"), sOut + "? IN (Timestamp, NULL)" + sTime);
  EXPECT_EQ(Sql(sHead + "Timestamp NOT BETWEEN 't' AND NULL AND Tag = 't'"),
            sOut + "Timestamp NOT BETWEEN ? AND NULL AND Tag = 't'" + sTime);
  EXPECT_EQ(Sql(sHead + "'t' BETWEEN Timestamp AND d.Timestamp"),
            sOut + "? BETWEEN Timestamp AND d.Timestamp" + sTime);
  EXPECT_EQ(Sql(sHead + "Timestamp BETWEEN (Timestamp) AND 't'"),
            sOut + "Timestamp BETWEEN (Timestamp) AND ?" + sTime);
  EXPECT_EQ(Sql(sHead + "(Tag, Timestamp) = ('t', 't')"),
            sOut + "(Tag, Timestamp) = ('t', ?)" + sTime);
  EXPECT_EQ(Sql(sHead + "max(Timestamp) > 't' OR (((Timestamp))) < 't'"),
            sOut + "max(Timestamp) > ? OR (((Timestamp))) < ?" + sTime + sTime);
}

TEST(translator_times, lets_the_engine_read_what_is_known_only_when_the_statement_runs) {
  const Text sHead = "SELECT 1 FROM Plant1..Data WHERE ";
  const Text sOut = "SELECT 1 FROM \"Plant1\".\"Data\" WHERE ";
  const std::pair<const char*, const char*> rows[] = {
      {"Timestamp = 'a' || 'b'", "Timestamp = orvane_time('a' || 'b')"},
      {"Tag = Timestamp", "orvane_time(Tag) = Timestamp"},
      {"Timestamp < date('now')", "Timestamp < orvane_time_utc(date('now'))"},
      {"Timestamp < coalesce(Tag, 't', CURRENT_DATE)",
       "Timestamp < coalesce(orvane_time(Tag), ?, orvane_time_utc(CURRENT_DATE)) | 2024-05-15 "
       "00:00:00"},
      {"Timestamp < 't' COLLATE NOCASE", "Timestamp < ? COLLATE NOCASE | 2024-05-15 00:00:00"},
      {"date(Timestamp) = Tag",
       "date(((Timestamp) + 62135596800000000) / 1000 / 1000.0 - 62135596800, 'unixepoch') = "
       "orvane_time_text(Tag)"},
  };
  for (const auto& [sFrom, sTo] : rows) EXPECT_EQ(Sql(sHead + sFrom), sOut + sTo);
  EXPECT_EQ(Translated(sHead + "Timestamp = Tag").functions.size(), 11U);
  EXPECT_TRUE(Translated(sHead + "Timestamp = 't'").functions.empty());
}

TEST(translator_times, finds_time_columns_through_aliases_joins_and_subqueries) {
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

TEST(translator_times, ends_with_queries_that_read_themselves) {
  const Text sNo = "There is no column \"x\"";
  EXPECT_EQ(Sql("WITH RECURSIVE q AS (SELECT * FROM q WHERE x = 't') SELECT x FROM q")
                .substr(0, sNo.size()),
            sNo);
  EXPECT_EQ(Sql("WITH a AS (SELECT x FROM b), b AS (SELECT x FROM a) SELECT x FROM a WHERE x = 't'")
                .substr(0, sNo.size()),
            sNo);
  EXPECT_EQ(Sql("SELECT a AS b, b AS a WHERE a = 't'").substr(0, sNo.size()),
            "There is no column \"a\"");
}

TEST(translator_times, takes_times_on_their_way_into_a_table) {
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

// "t" for a column of times, "m" for one that mixes, "0" for one of null, "-" for any other.
Text Columns(std::string_view sStatement) {
  Text sColumns;
  for (const Content content : Translated(sStatement).columns) {
    sColumns += "-0tm"[static_cast<std::size_t>(content)];
  }
  return sColumns;
}

TEST(translator_times, tells_which_columns_of_the_result_hold_times) {
  EXPECT_EQ(Columns("SELECT *, max(Timestamp), Value, (Timestamp) x, Tag || 'a' FROM Plant1..Data"),
            "-t--t-t-");
  EXPECT_EQ(Columns("SELECT max(DISTINCT Timestamp), ifnull(min(Timestamp), Timestamp), "
                    "coalesce(Timestamp, 0), count(Timestamp), max(Timestamp, '*'), +Timestamp, "
                    "Timestamp + 1, "
                    "CAST('*' AS TIMESTAMP), date(Timestamp) FROM Plant1..Data"),
            "ttm-tttt-");
  EXPECT_EQ(Columns("DELETE FROM Plant1..Data"), "");
}

TEST(translator_times, finds_times_behind_window_functions) {
  EXPECT_EQ(Columns("SELECT max(Timestamp) OVER (PARTITION BY Tag), lag(Timestamp) OVER w, "
                    "lead(Timestamp, 2, NULL) OVER w AS a, lag(Timestamp, 1, 0) OVER w, "
                    "first_value(Timestamp) OVER w b, last_value(Timestamp) OVER w, "
                    "nth_value(Timestamp, 2) OVER w, count(Timestamp) OVER w, "
                    "min(Timestamp) FILTER (WHERE Value > 0) OVER (ORDER BY Tag), "
                    "max(Timestamp) OVER w + 1 FROM Plant1..Data WINDOW w AS (ORDER BY Tag)"),
            "tttmttt-tt");
  EXPECT_EQ(Sql("SELECT a FROM (SELECT lag(Timestamp) OVER w a FROM Plant1..Data WINDOW w AS "
                "(ORDER BY Tag)) WHERE a >= 't'"),
            "SELECT a FROM (SELECT lag(Timestamp) OVER w a FROM \"Plant1\".\"Data\" WINDOW w AS "
            "(ORDER BY Tag)) WHERE a >= ? | 2024-05-15 00:00:00");
}

TEST(translator_times, calls_a_column_of_a_compound_a_time_when_all_of_it_is_one) {
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

TEST(translator_times, calls_nothing_a_time_in_what_explains_a_statement) {
  EXPECT_EQ(Columns("EXPLAIN SELECT Timestamp FROM Plant1..Data"), "");
  EXPECT_EQ(Columns("EXPLAIN QUERY PLAN SELECT Timestamp, Timestamp FROM Plant1..Data"), "");
}

TEST(translator_times, compares_numbers_of_days_where_the_option_says_so) {
  const Options doubles{false, true};
  const Text sHead = "SELECT 1 FROM Plant1..Data WHERE ";
  const Text sOut = "SELECT 1 FROM \"Plant1\".\"Data\" WHERE ";
  EXPECT_EQ(Sql(sHead + "Timestamp > 45292.25 AND Value > 1", doubles),
            sOut + "Timestamp > ? AND Value > 1 | 2024-01-01 06:00:00");
  EXPECT_EQ(Sql(sHead + "-1 < Timestamp AND Timestamp > 't'", doubles),
            sOut + "? < Timestamp AND Timestamp > ? | 1899-12-29 00:00:00 | 2024-05-15 00:00:00");
  EXPECT_EQ(Sql(sHead + "Timestamp > 1 - 1", doubles), sOut + "Timestamp > orvane_time(1 - 1)");
  EXPECT_EQ(Sql(sHead + "Timestamp > 9e99", doubles),
            "9e99 is no time (character 46 of the statement); write a number of days since "
            "1899-12-30.");
  EXPECT_EQ(Sql(sHead + "Timestamp > 45292.25"),
            "A number stands where a time is meant (character 46 of the statement); write a time "
            "between single quotes, such as '*-1h'.");
}

}  // namespace
}  // namespace orvane::provider::dialect
