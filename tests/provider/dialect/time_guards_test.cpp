// What is made from a stored time meets what may be anything: columns without a type or of numbers
// that hold texts, values of JSON, what other programs compute. Where it turns out to be of the
// wrong kind nothing is changed.
#include <sqlite3.h>

#include "tests/provider/dialect/forms.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

class time_guards : public Forms {
 protected:
  // A stored time in unixepoch() is 1715774400 - n * 3600 in the row of n hours ago.
  time_guards() {
    sqlite3* file = nullptr;
    EXPECT_EQ(sqlite3_open((m_root.Historian() / "catalogs" / "Plant1.db").c_str(), &file),
              SQLITE_OK);
    EXPECT_EQ(
        sqlite3_exec(
            file,
            "CREATE TABLE Nums (n, i INTEGER, r REAL, d DATE, b TEXT);"
            "INSERT INTO Nums VALUES (1715767200, 1715767200, 1715767200.0, '2024-05-14', "
            "'2024-05-14');"
            "CREATE TABLE Odd (n, i INTEGER, r REAL, k NUMERIC, x BLOB);"
            "INSERT INTO Odd VALUES ('2024-01-01', '2024-01-01', '2024-01-01', '2024-01-01', "
            "x'00');"
            "CREATE TABLE Names (rowid TEXT, v);"
            "INSERT INTO Names VALUES ('2024-01-01', 1);"
            "CREATE TABLE Gen (Tag, At TIMESTAMP, x AS (At), y INTEGER AS (x), z TIMESTAMP AS "
            "(At), w AS (At < '2024-01-01'), m REAL AS (length(Tag)), late TIMESTAMP AS (after), "
            "after TIMESTAMP AS (At));"
            "INSERT INTO Gen (Tag, At) SELECT Tag, Timestamp FROM Data;"
            "CREATE VIEW Half AS SELECT Tag, CAST(Timestamp + 0.5 AS TIMESTAMP) AS t FROM Copy;"
            "CREATE VIEW OverHalf AS SELECT t AS u FROM Half;"
            "CREATE VIEW Bad AS SELECT Tag FROM Data WHERE unixepoch(Timestamp) < (SELECT n FROM "
            "Nums)",
            nullptr, nullptr, nullptr),
        SQLITE_OK)
        << sqlite3_errmsg(file);
    sqlite3_close(file);
  }
};

TEST_F(time_guards, numbers_and_texts_of_any_column_choose_what_is_meant) {
  const Form forms[] = {
      {"unixepoch(Timestamp) >= (SELECT n FROM Plant1..Nums)", "0-2"},
      {"unixepoch(Timestamp) >= (SELECT i FROM Plant1..Nums)", "0-2"},
      {"(SELECT r FROM Plant1..Nums) <= unixepoch(Timestamp)", "0-2"},
      {"unixepoch(Timestamp) IN (SELECT n FROM Plant1..Nums)", "2"},
      {"unixepoch(Timestamp) NOT IN (SELECT i FROM Plant1..Nums UNION SELECT 1715774400)",
       "1,3-23"},
      {"unixepoch(Timestamp) IN (VALUES (1715767200), ((SELECT r FROM Plant1..Nums)))", "2"},
      {"unixepoch(Timestamp) BETWEEN (SELECT n FROM Plant1..Nums) AND 1715770800", "1-2"},
      {"unixepoch(Timestamp) = (SELECT value FROM json_each('[1715767200]'))", "2"},
      {"unixepoch(Timestamp) >= json_extract('[1715767200]', '$[0]')", "0-2"},
      {"unixepoch(Timestamp) >= '[1715767200]' ->> 0", "0-2"},
      {"unixepoch(Timestamp) >= CAST((SELECT n FROM Plant1..Odd) AS INTEGER)", "0-23"},
      {"unixepoch(Timestamp) >= (SELECT k FROM Plant1..Odd) + 1715767200 - 2024", "0-2"},
      {"(1, unixepoch(Timestamp)) >= (SELECT 1, n FROM Plant1..Nums)", "0-2"},
      {"(unixepoch(Timestamp), 1) IN (SELECT n, 1 FROM Plant1..Nums)", "2"},
      {"CASE (SELECT n FROM Plant1..Nums) WHEN unixepoch(Timestamp) THEN 1 END", "2"},
      {"nullif(unixepoch(Timestamp), (SELECT n FROM Plant1..Nums)) IS NULL", "2"},
      {"max(unixepoch(Timestamp), (SELECT r FROM Plant1..Nums)) = 1715767200", "2-23"},
      {"EXISTS (SELECT 1 FROM Plant1..Nums m WHERE unixepoch(d.Timestamp) = m.i)", "2"},
      {"EXISTS (SELECT unixepoch(d.Timestamp) INTERSECT SELECT n FROM Plant1..Nums)", "2"},
      {"unixepoch(Timestamp) - 1715774400 > (SELECT v.rowid FROM Plant1..Names x, Plant1..Nums v) "
       "- 3601",
       "0"},
      {"unixepoch(Timestamp) > TRUE AND unixepoch(Timestamp) IS NOT FALSE", "0-23"},
      {"length(Timestamp) = (SELECT 16)", "0-23"},
      {"date(Timestamp) = (SELECT d FROM Plant1..Nums)", "13-23"},
      {"date(Timestamp) <= (SELECT b FROM Plant1..Nums)", "13-23"},
      {"date(Timestamp) IN (SELECT value FROM json_each('[\"2024-05-14\"]'))", "13-23"},
      {"strftime('%H', Timestamp) = (SELECT value FROM json_each('[\"03\"]'))", "9"},
      {"strftime('%H', Timestamp) BETWEEN '05' AND '07'", "5-7"},
      {"strftime('%H', Timestamp) < strftime('%H', '2024-05-15 01:00')", "12"},
      {"strftime('%d.%m.%Y', Timestamp) = '14.05.2024'", "13-23"},
      {"time(Timestamp) < '02:00'", "11-12"},
      {"strftime('%Y', Timestamp) || '-' || strftime('%m', Timestamp) <= '2024-05'", "0-23"},
      {"substr(datetime(Timestamp), 12, 2) < '02'", "11-12"},
      {"date(Timestamp) < '2024-05-15 10:00'", "0-23"},
      {"EXISTS (SELECT 1 FROM Plant1..Gen g WHERE g.z = d.Timestamp AND z >= '*-2h' AND m = 2)",
       "0-2"},
      {"Timestamp IN (SELECT after FROM Plant1..Gen WHERE after < '*-20h')", "21-23"},
  };
  for (const Form& form : forms) Check(form);
}

TEST_F(time_guards, end_the_statement_at_the_first_text) {
  const char* const sText = "'2024-01-01' is compared with a number made from a time; compare the";
  const char* const sBytes = "A row of bytes is compared with a number made from a time; compare";
  const char* const sNumber = "23 is compared with a written time; compare the time itself, as in";
  const char* const sPart =
      "'2024-01-01' is compared with a part of a time; compare the time itself";
  const char* const sFormat = "'2024-01-01' is compared with a written time; compare the time or";
  const char* const sSorts = "Texts of this format do not sort as their times do (character ";
  const char* const sWhole = "A part of a time is compared with a whole one (character ";
  const char* const sWritten = "A written time is compared with something else (character ";
  const char* const sCounted = "A number made from a time is compared with a text (character ";
  const char* const sMade = "What was made from a time is compared with something else (character ";
  const char* const sMixed =
      "What is a time in some rows and something else in others meets a time (character ";
  const Form forms[] = {
      {"unixepoch(Timestamp) < (SELECT value FROM json_each('[\"2024-01-01\"]'))", sText},
      {"unixepoch(Timestamp) < (SELECT n FROM Plant1..Odd)", sText},
      {"unixepoch(Timestamp) < (SELECT i FROM Plant1..Odd)", sText},
      {"unixepoch(Timestamp) < (SELECT r FROM Plant1..Odd)", sText},
      {"unixepoch(Timestamp) < (SELECT k FROM Plant1..Odd)", sText},
      {"unixepoch(Timestamp) < (SELECT x FROM Plant1..Odd)", sBytes},
      {"unixepoch(Timestamp) < (SELECT key FROM json_each('{\"2024-01-01\": 1}'))", sText},
      {"unixepoch(Timestamp) < (SELECT first_value(n) OVER () FROM Plant1..Odd)", sText},
      {"unixepoch(Timestamp) < likely((SELECT n FROM Plant1..Odd))", sText},
      {"unixepoch(Timestamp) < (WITH q AS (SELECT * FROM Plant1..Odd) SELECT n FROM q)", sText},
      {"unixepoch(Timestamp) < (WITH q(a) AS (VALUES ('2024')) SELECT a FROM q)", sCounted},
      {"substr(date(Timestamp), 1, 4) > Value", sNumber},
      {"instr(date(Timestamp), '-') < 'x'", sCounted},
      {"julianday(Timestamp) < json_extract('[\"2024-01-01\"]', '$[0]')", sText},
      {"julianday(Timestamp) < '[\"2024-01-01\"]' ->> 0", sText},
      {"unixepoch(Timestamp) NOT IN (SELECT n FROM Plant1..Odd)", sText},
      {"unixepoch(Timestamp) NOT IN (VALUES (5), ((SELECT n FROM Plant1..Odd)))", sText},
      {"unixepoch(Timestamp) NOT IN (SELECT * FROM (SELECT n FROM Plant1..Odd))",
       "A star stands for what may be a text or a number and meets a time (character "},
      {"unixepoch(Timestamp) NOT IN Plant1..Odd", "The column of a table meets a time (character "},
      {"EXISTS (SELECT unixepoch(Timestamp) EXCEPT SELECT n FROM Plant1..Odd)", sText},
      {"unixepoch(Timestamp) BETWEEN 0 AND (SELECT max(n) FROM Plant1..Odd)", sText},
      {"(SELECT n FROM Plant1..Odd) NOT IN ('a', unixepoch(Timestamp))", sText},
      {"(unixepoch(Timestamp), 1) < ((SELECT n FROM Plant1..Odd), 2)", sText},
      {"(unixepoch(Timestamp), 1) < (1, 2, 3)", "Rows of different lengths are compared (char"},
      {"CASE (SELECT n FROM Plant1..Odd) WHEN unixepoch(Timestamp) THEN 0 ELSE 1 END", sText},
      {"nullif((SELECT n FROM Plant1..Odd), unixepoch(Timestamp)) IS NOT NULL", sText},
      {"max(unixepoch(Timestamp), (SELECT n FROM Plant1..Odd)) > 5", sText},
      {"Timestamp - (SELECT min(Timestamp) FROM Plant1..Copy) < (SELECT n FROM Plant1..Odd)",
       sText},
      {"EXISTS (SELECT 1 FROM Plant1..Odd o WHERE unixepoch(d.Timestamp) <> o.n)", sText},
      {"(SELECT max(u) FROM (SELECT unixepoch(Timestamp) AS u UNION ALL SELECT n FROM "
       "Plant1..Odd)) > 5",
       sText},
      {"(SELECT u FROM (SELECT unixepoch(Timestamp) AS u UNION ALL SELECT n FROM Plant1..Odd) "
       "ORDER BY u DESC) > 5",
       sText},
      {"(SELECT u FROM (SELECT unixepoch(Timestamp) AS u UNION ALL SELECT n FROM Plant1..Odd) "
       "ORDER BY 1 DESC) > 5",
       sText},
      {"EXISTS (SELECT 1 FROM (SELECT unixepoch(d.Timestamp) AS n) NATURAL LEFT JOIN Plant1..Odd)",
       "Tables are joined by a time and something else (character "},
      {"julianday(Timestamp) < CAST('2024-01-01' AS \"NUMTEXT\")", sCounted},
      {"julianday(Timestamp) < CAST('2024-01-01' AS \"REAL BLOB\")", sCounted},
      {"length(Timestamp) < '2024-01-01'", sCounted},
      {"EXISTS (SELECT 1 FROM json_each(json_array(unixepoch(d.Timestamp))) WHERE value < 'a')",
       sMade},
      {"EXISTS (WITH q(a, b, c, d, e, f, g, h, t) AS (SELECT j.*, Timestamp FROM json_each('[1]') "
       "j, Plant1..Copy) SELECT 1 FROM q WHERE t < 'a')",
       "'a' is no time (character "},
      {"unixepoch(Timestamp) < \"true\"", "There is no column \"true\" (character "},
      {"unixepoch(Timestamp) < d.true", "There is no column \"true\" (character "},
      {"unixepoch(Timestamp) < (SELECT s.oid FROM (SELECT 'a' AS k) s)",
       "There is no column \"oid\" (character "},
      {"unixepoch(Timestamp) < (SELECT h.rowid FROM Plant1..Half h)",
       "There is no column \"rowid\" (character "},
      {"unixepoch(Timestamp) < (SELECT x.rowid FROM Plant1..Names x)", sCounted},
      {"date(Timestamp) > Value", sNumber},
      {"date(Timestamp) > (SELECT max(Value) FROM Plant1..Copy)", sNumber},
      {"(1, date(Timestamp)) > (SELECT 1, Value FROM Plant1..Copy WHERE Value = 23)", sNumber},
      {"date(Timestamp) > json_extract('[23]', '$[0]')", sNumber},
      {"date(Timestamp) NOT IN (SELECT Value FROM Plant1..Copy WHERE Value = 23)", sNumber},
      {"date(Timestamp) NOT IN (VALUES (5), (6))", sWritten},
      {"date(Timestamp) > '15.05.2024'", sWritten},
      {"date(Timestamp) <> '2024'", sWritten},
      {"datetime(Timestamp) >= '2024-05-15T10:00'", sWritten},
      {"strftime('%H', Timestamp) < '2024-01-01'", sWritten},
      {"strftime('%H', Timestamp) < '31.12.2023'", sWritten},
      {"strftime('%H', Timestamp) < '8'", sWritten},
      {"strftime('%H', Timestamp) < (SELECT '8')", "'8' is compared with a written time"},
      {"time(Timestamp) < '8'", sWritten},
      {"time(Timestamp) < '8:00'", sWritten},
      {"time(Timestamp) BETWEEN '8:00' AND '09:00'", sWritten},
      {"date(Timestamp) < (SELECT '31.12.2023')", "'31.12.2023' is compared with a written time"},
      {"date(Timestamp) < lower('31.12.2023')", "'31.12.2023' is compared with a written time"},
      {"date(Timestamp) > (SELECT '2023/12/31')", "'2023/12/31' is compared with a written time"},
      {"EXISTS (SELECT 1 FROM (SELECT date(d.Timestamp) AS x) WHERE x < '31.12.2023')", sWritten},
      {"EXISTS (WITH q(x) AS (SELECT date(Timestamp) FROM Plant1..Data) SELECT 1 FROM q WHERE x < "
       "'31.12.2023')",
       sWritten},
      {"EXISTS (SELECT 1 FROM (SELECT date(d.Timestamp) AS x UNION ALL SELECT date('now')) WHERE x "
       "< '31.12.2023')",
       sWritten},
      {"date(Timestamp) || '' < '31.12.2023'", sWritten},
      {"lower(date(Timestamp)) < '31.12.2023'", sWritten},
      {"coalesce(date(Timestamp), NULL) < '31.12.2023'", sWritten},
      {"coalesce(date(Timestamp), '2024') < '31.12.2023'", sWritten},
      {"iif(Value > 5, date(Timestamp), datetime(Timestamp)) < '31.12.2023'", sWritten},
      {"CASE WHEN Value > 5 THEN date(Timestamp) END < '31.12.2023'", sWritten},
      {"max(date(Timestamp), '31.12.2023') = '31.12.2023'", sWritten},
      {"substr(datetime(Timestamp), 1, 10) < '31.12.2023'", sWritten},
      {"substr(date(Timestamp), -2) < '5'", sWritten},
      {"quote(date(Timestamp)) < '2024'", sSorts},
      {"date(Timestamp) < strftime('%Y%m%d', 'now')", sWritten},
      {"strftime('%H:%M', Timestamp) >= strftime('%H%M', 'now')", sWritten},
      {"(SELECT strftime('%H', Timestamp)) < '2024-01-01'", sWritten},
      {"strftime('%f%w', Timestamp) < '2024-01-01'", sSorts},
      {"strftime('%f%w', Timestamp) BETWEEN '00' AND '2024-01-01'", sSorts},
      {"lower(strftime('%f%w', Timestamp)) < '2024-01-01'", sSorts},
      {"max(strftime('%d.%m.%Y', Timestamp), '01.01.2024') = '01.01.2024'", sSorts},
      {"strftime('%f%w', Timestamp) = '2024-01-01'", sWritten},
      {"strftime('%H', Timestamp) < date('now')", sWhole},
      {"date(Timestamp) > CURRENT_TIME", sWhole},
      {"strftime('%H', Timestamp) < (SELECT n FROM Plant1..Odd)", sFormat},
      {"strftime('%H', Timestamp) <> (SELECT n FROM Plant1..Odd)", sPart},
      {"strftime('%H', Timestamp) < lower('2024-01-01')", sFormat},
      {"EXISTS (SELECT 1 FROM Plant1..Gen WHERE x < '2024-01-01')", sMixed},
      {"EXISTS (SELECT 1 FROM Plant1..Gen WHERE y < 'a')", sMixed},
      {"EXISTS (SELECT 1 FROM Plant1..Gen WHERE late < '*')", sMixed},
      {"EXISTS (SELECT 1 FROM Plant1..Gen WHERE w)",
       "The column \"w\" compares times with something else (character "},
      {"EXISTS (SELECT 1 FROM (SELECT * FROM Plant1..Gen) WHERE w)",
       "The column \"w\" compares times with something else (character "},
      {"Tag IN (SELECT Tag FROM Plant1..Bad)",
       "The view \"Bad\" compares times with something else (character "},
  };
  for (const Form& form : forms) CheckRefused(form);
}

TEST_F(time_guards, hold_in_every_part_of_a_statement) {
  const Text sText = "'2024-01-01' is compared with a number made from a time";
  const Text sOdd = "unixepoch(Timestamp) < (SELECT n FROM Plant1..Odd)";
  const Text sIn = " FROM Plant1..Data";
  const Text statements[] = {
      "DELETE" + sIn + " WHERE Value = 0 RETURNING " + sOdd,
      "UPDATE Plant1..Data SET Value = " + sOdd,
      Text("UPDATE Plant1..Data SET Value = 7 FROM Plant1..Odd o WHERE unixepoch(Timestamp) < "
           "o.i"),
      Text("INSERT INTO Plant1..Data VALUES ('T1', '*', 1, 'x') ON CONFLICT DO UPDATE SET Status "
           "= 'y' WHERE unixepoch(excluded.Timestamp) < (SELECT n FROM Plant1..Odd)"),
      "SELECT count(*) FILTER (WHERE " + sOdd + ")" + sIn,
      "SELECT sum(Value) OVER (PARTITION BY " + sOdd + ")" + sIn,
      "SELECT 1" + sIn +
          " GROUP BY Tag HAVING max(unixepoch(Timestamp)) < (SELECT n FROM Plant1..Odd)",
      "SELECT 1" + sIn +
          " GROUP BY coalesce(nullif(unixepoch(Timestamp), 1715774400), (SELECT n FROM "
          "Plant1..Odd))",
      "SELECT coalesce(nullif(unixepoch(Timestamp), 1715774400), (SELECT n FROM Plant1..Odd)) AS "
      "k" +
          sIn + " ORDER BY k",
      "SELECT coalesce(nullif(unixepoch(Timestamp), 1715774400), (SELECT n FROM Plant1..Odd))" +
          sIn + " GROUP BY 1",
      "SELECT max(coalesce(nullif(unixepoch(Timestamp), 1715774400), (SELECT n FROM "
      "Plant1..Odd)))" +
          sIn,
      "SELECT DISTINCT coalesce(nullif(unixepoch(Timestamp), 1715774400), (SELECT n FROM "
      "Plant1..Odd))" +
          sIn,
      Text("SELECT n FROM Plant1..Odd UNION SELECT unixepoch(Timestamp) FROM Plant1..Data")};
  for (const Text& sStatement : statements) {
    EXPECT_EQ(Failing(sStatement).substr(0, sText.size()), sText) << sStatement;
  }
  EXPECT_EQ(OnOneLine(Run("SELECT count(*), sum(Value), min(Status) FROM Plant1..Data")),
            "24|276|Good ");
  const Text sKept = "What may be a text or a number meets a time in ";
  EXPECT_EQ(
      Refusal("CREATE VIEW Plant1..v AS SELECT 1" + sIn + " WHERE unixepoch(Timestamp) > Value"),
      sKept + "a view");
  EXPECT_EQ(Refusal("CREATE TABLE Plant1..c (t TIMESTAMP, n REAL, CHECK (unixepoch(t) > n))"),
            sKept + "the definition of a table");
  Run("CREATE VIEW Plant1..v AS SELECT Tag" + sIn +
      " WHERE unixepoch(Timestamp) > CAST(Value AS REAL)");
  EXPECT_EQ(Run("SELECT count(*) FROM Plant1..v"), "24\n");
}

TEST_F(time_guards, what_a_view_adds_to_a_time_is_made_whole_where_it_is_stored) {
  EXPECT_EQ(Run("SELECT max(t) FROM Plant1..Half"), "2024-05-15 12:00:00.000001\n");
  Run("INSERT INTO Plant1..Data (Tag, Timestamp) SELECT 'half', t FROM Plant1..Half");
  Run("INSERT INTO Plant1..Data (Tag, Timestamp) SELECT 'over', u FROM Plant1..OverHalf");
  Run("UPDATE Plant1..Data SET Timestamp = (SELECT max(u) FROM Plant1..OverHalf) WHERE Value = 1");
  EXPECT_EQ(Run("SELECT typeof(Timestamp), count(*), max(Timestamp) FROM Plant1..Data GROUP BY 1"),
            "integer|72|2024-05-15 12:00:00.000001\n");
  Run("CREATE VIEW Plant1..Own AS SELECT CAST(Timestamp + 0.5 AS TIMESTAMP) AS t FROM "
      "Plant1..Copy");
  Run("INSERT INTO Plant1..Data (Tag, Timestamp) SELECT 'own', t FROM Plant1..Own");
  EXPECT_EQ(Run("SELECT DISTINCT typeof(Timestamp) FROM Plant1..Data"), "integer\n");
}

}  // namespace
}  // namespace orvane::provider::dialect
