// Statements that read and change, and what is refused.
#include <algorithm>
#include <fstream>
#include <sstream>

#include "tests/provider/conformance/conformance.h"
#include "tests/provider/conformance/embedded_under_test.h"

namespace orvane::provider::conformance {
namespace {

using platform::Text;

class statements : public Conformance {};

ORVANE_ON_EVERY_ENGINE(statements);

TEST_P(statements, reads_and_writes_through_the_dialect) {
  const auto opened = OpenPlant();
  EXPECT_EQ(
      Select(
          *opened,
          "SELECT * FROM Plant1..Data WHERE Timestamp BETWEEN '*-1h' AND '*' ORDER BY Timestamp"),
      "T1|2024-05-15 11:00:00|1.5|Good\nT1|2024-05-15 12:00:00|0.5|Good\n");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data WHERE Timestamp >= '*-3h'"), "4\n");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data WHERE Timestamp <= '*-20h'"), "4\n");
  EXPECT_EQ(
      Run(*opened, "UPDATE Plant1..Data SET Value = 7 WHERE Timestamp = '*'").lRecordsAffected, 1);
  EXPECT_EQ(Run(*opened, "DELETE FROM Plant1..Data WHERE Timestamp < '*-1h'").lRecordsAffected, 22);
  EXPECT_EQ(Select(*opened, "SELECT Value FROM Plant1.Data ORDER BY Timestamp"), "1.5\n7\n");
}

TEST_P(statements, chooses_the_greatest_and_the_least_of_several_values) {
  const auto opened = OpenPlant();
  EXPECT_EQ(Select(*opened,
                   "SELECT max(1, 3, 2), min(1.5, 3), max('a', 'b'), max(1, NULL), "
                   "min(NULL, 'x'), max(2, 2)"),
            "3|1.5|b|||2\n");
  EXPECT_EQ(Select(*opened,
                   "SELECT max(max(Value), 100), min(min(Value), count(Tag)), max(Value) FROM "
                   "Plant1..Data"),
            "100|0.5|23.5\n");
  EXPECT_EQ(Select(*opened,
                   "SELECT max(Value, 22) FROM Plant1..Data WHERE min(Value, 21, 30) = 21 "
                   "ORDER BY max(Value, 22)"),
            "22\n22.5\n23.5\n");
  EXPECT_EQ(
      Select(*opened, "SELECT max(Value, 22), count(*) FROM Plant1..Data GROUP BY 1 ORDER BY 1"),
      "22|22\n22.5|1\n23.5|1\n");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data WHERE max(Value, NULL) IS NULL"),
            "24\n");
}

TEST_P(statements, that_are_nested_too_deeply_are_told_what_can_be_done) {
  const auto opened = OpenPlant();
  Text sDeep = "1";
  for (int i = 0; i < 900; ++i) sDeep = "abs(" + sDeep + ")";
  const Text sFailure = Failing(*opened, "SELECT " + sDeep);
  if (sFailure != "no failure") {
    EXPECT_NE(sFailure.find("nest fewer brackets"), Text::npos) << sFailure;
    EXPECT_EQ(sFailure.find("stack overflow"), Text::npos) << sFailure;
  }
}

TEST_P(statements, refer_to_tables_by_the_names_that_are_listed) {
  const auto opened = OpenPlant("Identifier Prefixes = True;");
  Run(*opened, "CREATE TABLE Orv_Plant1..Orv_Kinds (Id INTEGER PRIMARY KEY, Name TEXT)");
  Run(*opened, "INSERT INTO Orv_Plant1..Orv_Kinds (Id, Name) VALUES (1, 'one')");
  Run(*opened,
      "CREATE TABLE Orv_Plant1..Orv_Parts (Id INTEGER PRIMARY KEY, Kind INTEGER REFERENCES "
      "Orv_Kinds (Orv_Id), Whole INTEGER REFERENCES Orv_Parts (Id))");
  Run(*opened, "INSERT INTO Orv_Plant1..Orv_Parts (Id, Kind, Whole) VALUES (1, 1, 1)");
  Run(*opened,
      "CREATE TABLE Orv_Plant1..Orv_More (Kind INTEGER, FOREIGN KEY (Kind) REFERENCES "
      "orv_kinds (id))");
  Run(*opened, "INSERT INTO Orv_Plant1..Orv_More (Kind) VALUES (1)");
  EXPECT_EQ(
      Failing(*opened, "INSERT INTO Orv_Plant1..Orv_Parts (Id, Kind) VALUES (2, 7)").substr(0, 5),
      "3806:");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Orv_Plant1..Orv_Parts"), "1\n");
}

TEST_P(statements, refuses_a_text_or_time_in_double_quotes) {
  const auto opened = OpenPlant();
  const auto sentence = [](const Text& sName, const Text& sPlace) {
    return "3805: There is no column \"" + sName + "\" (character " + sPlace +
           " of the statement); write the name of one that the tables have; a text or a time "
           "stands between "
           "single quotes.";
  };
  EXPECT_EQ(Failing(*opened, "SELECT \"Gone\" FROM Plant1..Data"), sentence("Gone", "8"));
  EXPECT_EQ(Failing(*opened, "DELETE FROM Plant1..Data WHERE \"Tga\" <> 'x'"),
            sentence("Tga", "32"));
  EXPECT_EQ(Failing(*opened, "SELECT Tag FROM Plant1..Data WHERE Timestamp > \"*-1h\""),
            sentence("*-1h", "48"));
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
}

TEST_P(statements, stores_nothing_of_a_change_that_fails_whatever_its_rule) {
  const auto opened = OpenPlant();
  EXPECT_EQ(
      Failing(*opened, "INSERT " + Text(Differs(Difference::kConflictClauses) ? "OR FAIL " : "") +
                           "INTO Plant1..Data (Tag, Timestamp) VALUES ('T2', '*'), ('T1', '*')")
          .substr(0, 4),
      "3806");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
}

TEST_P(statements, cuts_the_result_at_the_row_limit_and_says_so) {
  const auto opened = OpenPlant();
  auto rs = Run(*opened, "SELECT * FROM Plant1..Data", 5).recordset;
  EXPECT_EQ(rs->RecordCount(), 5);
  EXPECT_TRUE(rs->Truncated());
  opened->PropertyValue("Time as Double", true);
  rs = Run(*opened, "SELECT * FROM Plant1..Data", 5).recordset;
  EXPECT_EQ(rs->RecordCount(), 5);
  EXPECT_TRUE(rs->Truncated());
}

TEST_P(statements, changes_nothing_when_it_is_only_to_read) {
  const auto opened = OpenPlant();
  const auto read = [&](const Text& sText) {
    return FailureOf([&] { opened->Execute({sText, 0, {}, true}, {}); });
  };
  for (const char* const sText :
       {"DELETE FROM Plant1..Data", "INSERT INTO Plant1..Tags (Tag) VALUES ('a') RETURNING Tag",
        "CREATE VIEW Plant1..v AS SELECT 1", "DROP TABLE Plant1..Tags",
        "CREATE DATABASE \"Plant2\" ", "DROP DATABASE \"Plant1\""}) {
    EXPECT_EQ(read(sText),
              "3811: The statement changes data and has not been run, as only reading was asked "
              "for: run it as a change if that is what is wanted.")
        << sText;
  }
  EXPECT_EQ(read("SELECT * FROM Plant1..Data"), "no failure");
  EXPECT_EQ(read("EXPLAIN DELETE FROM Plant1..Data"), "no failure");
  EXPECT_EQ(read("DELETE FROM Orvane..Historians").substr(0, 4), "3805");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
  EXPECT_EQ(Select(*opened, "SELECT Name FROM Orvane..Historians"), "Plant1\n");
}

TEST_P(statements, refuses_a_second_statement) {
  const auto opened = OpenPlant();
  EXPECT_EQ(Failing(*opened, "SELECT 1; DELETE FROM Plant1..Data"),
            "3805: A second statement begins (character 11 of the statement); send one statement "
            "at a time.");
  EXPECT_EQ(Failing(*opened, "DROP DATABASE \"x\"; DELETE FROM Plant1..Data").substr(0, 37),
            "3805: A second statement begins (char");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data"), "24\n");
}

TEST_P(statements, runs_every_example_of_the_catalog_of_functions) {
  const auto opened = OpenPlant();
  const auto rs = Run(*opened,
                      "SELECT Example FROM Functions..Functions UNION ALL SELECT Example FROM "
                      "Functions..TimeExpressions")
                      .recordset;
  EXPECT_GT(rs->RecordCount(), 30);
  for (platform::RowIndex row = 0; row < rs->RecordCount(); ++row) {
    const Text sExample = platform::ToText(rs->ValueAt(row, 0));
    EXPECT_EQ(Failing(*opened, sExample), "no failure") << sExample;
  }
}

// Of a document's line that holds the statement of a named query, the statement; else nothing.
Text StatementIn(const Text& sLine) {
  const auto name = sLine.find("\"name\":\"Query\",\"text\":\"");
  if (name == Text::npos) return {};
  Text sStatement;
  for (std::size_t n = sLine.find("\"text\":\"", name) + 8; sLine.at(n) != '"'; ++n) {
    // The samples escape nothing but ends of lines.
    if (sLine[n] == '\\') ++n;
    sStatement += sLine[n - 1] == '\\' ? '\n' : sLine[n];
  }
  return sStatement;
}

std::vector<Text> StatementsOf(const char* sDocument) {
  std::ifstream document(sDocument);
  std::vector<Text> statements;
  for (Text sLine; std::getline(document, sLine);) {
    if (Text sStatement = StatementIn(sLine); !sStatement.empty()) {
      statements.push_back(std::move(sStatement));
    }
  }
  return statements;
}

TEST_P(statements, gives_the_rows_of_the_embedded_engine_for_every_query_of_the_samples) {
  const auto embedded = EmbeddedUnderTest().start();
  const auto expected = OpenAt(*embedded);
  const auto opened = Open();
  for (auto* const session : {expected.get(), opened.get()}) {
    FillPlant(*session);
    Run(*session, "INSERT INTO Plant1..Tags (Tag, Unit) VALUES ('T1', 'bar')");
    Run(*session, "CREATE DATABASE Machine");
    Run(*session, "INSERT INTO Machine..Tags (Tag, Unit) VALUES ('cpu.load', '%'), ('T1', NULL)");
    Run(*session, "INSERT INTO Machine..Data SELECT * FROM Plant1..Data");
    Run(*session,
        "INSERT INTO Machine..Data (Tag, Timestamp, Value) VALUES ('cpu.load', '*-10m', 5.5), "
        "('cpu.load', '*-20m', NULL), ('cpu.load', '*-2h', 7)");
  }
  for (const char* const sDocument : {ORVANE_SAMPLE, ORVANE_SERVER_SAMPLE}) {
    const auto samples = StatementsOf(sDocument);
    EXPECT_EQ(samples.size(), 3U) << sDocument;
    for (const Text& sStatement : samples) {
      const Text sRows = Select(*expected, sStatement);
      EXPECT_NE(sRows, "") << sStatement;
      EXPECT_EQ(Select(*opened, sStatement), sRows) << sStatement;
    }
  }
}

// Whatever the engine, and in whatever order it gives them.
TEST_P(statements, gives_the_rows_of_the_embedded_engine_for_every_example) {
  const auto sorted = [](const Text& sRows) {
    std::vector<Text> rows;
    std::istringstream lines(sRows);
    for (Text sRow; std::getline(lines, sRow);) rows.push_back(sRow);
    std::ranges::sort(rows);
    return rows;
  };
  const auto embedded = EmbeddedUnderTest().start();
  const auto expected = OpenAt(*embedded);
  const auto opened = Open();
  for (auto* const session : {expected.get(), opened.get()}) {
    FillPlant(*session);
    Run(*session, "INSERT INTO Plant1..Tags (Tag, Unit) VALUES ('T1', 'bar'), ('T2', NULL)");
  }
  const Text sExamples =
      "SELECT Example FROM Functions..Functions WHERE Name <> 'random' UNION ALL SELECT Example "
      "FROM Functions..TimeExpressions";
  const auto examples = sorted(Select(*opened, sExamples));
  EXPECT_EQ(examples, sorted(Select(*expected, sExamples)));
  for (const Text& sExample : examples) {
    const auto rs = Run(*opened, sExample).recordset;
    const auto rsExpected = Run(*expected, sExample).recordset;
    EXPECT_EQ(sorted(Rows(*rs)), sorted(Rows(*rsExpected))) << sExample;
    for (platform::ColumnIndex column = 0; column < rs->FieldCount(); ++column) {
      EXPECT_EQ(rs->FieldAt(column).Name(), rsExpected->FieldAt(column).Name()) << sExample;
    }
  }
}

// Names without regard to case, operators and functions that the engines call otherwise.
TEST_P(statements, mean_the_same_to_every_engine) {
  const auto opened = OpenPlant("Time Zone = UTC;");
  Run(*opened,
      "CREATE TABLE Plant1..Odd (Id INT PRIMARY KEY, \"a b\" TEXT, N DOUBLE, W TIMESTAMP, B BLOB)");
  Run(*opened,
      "INSERT INTO plant1..ODD (ID, \"A B\", n, w, b) VALUES (1, 'Pump', 2.5, '2024-05-15 10:00', "
      "x'00ff'), (2, NULL, NULL, NULL, NULL)");
  const std::vector<std::pair<Text, Text>> cases = {
      {"SELECT [a b], N FROM Plant1..odd WHERE id == 1", "Pump|2.5\n"},
      {"SELECT o.ID FROM Plant1..Odd O WHERE o.n IS NOT 2.5", "2\n"},
      {"SELECT Id FROM Plant1..Odd WHERE \"a b\" LIKE 'pu%'", "1\n"},
      {"SELECT Id FROM Plant1..Odd WHERE \"a b\" NOT NULL", "1\n"},
      {"SELECT Id FROM Plant1..Odd WHERE B = x'00FF'", "1\n"},
      {"SELECT Id AS Nr FROM Plant1..Odd ORDER BY nr DESC LIMIT 1", "2\n"},
      {"SELECT x.K FROM (SELECT Id AS k FROM Plant1..Odd) AS X WHERE X.k > 1", "2\n"},
      {"WITH N(I) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE I < 3) SELECT sum(i) FROM N",
       "6\n"},
      {"SELECT a.Id FROM Plant1..Odd a JOIN Plant1..Odd b USING (id) WHERE b.Id = 2", "2\n"},
      {"SELECT iif(N > 2, upper(\"a b\"), 'x') || '!' FROM Plant1..Odd ORDER BY Id", "PUMP!\nx!\n"},
      {"SELECT round(total(N), 1), group_concat(Id) FROM Plant1..Odd WHERE Id = 1", "2.5|1\n"},
      {"SELECT format('%s is %.2f%%', \"a b\", N) FROM Plant1..Odd WHERE Id = 1",
       "Pump is 2.50%\n"},
      {"SELECT date(W), time(W), strftime('%Y/%m', W), unixepoch(W) FROM Plant1..Odd WHERE Id = 1",
       "2024-05-15|10:00:00|2024/05|1715767200\n"},
      {"SELECT Id FROM Plant1..Odd WHERE W + 3600000000 = '2024-05-15 11:00'", "1\n"},
      {"SELECT a.Timestamp - b.W FROM Plant1..Data a, Plant1..Odd b WHERE a.Timestamp = '*' AND "
       "b.Id = 1",
       "7200000000\n"},
      {"SELECT Id FROM Plant1..Odd WHERE W < CAST('2024-05-15 11:00' AS TIMESTAMP)", "1\n"},
      {"SELECT Plant1..Odd.Id, odd.N FROM Plant1..Odd WHERE Plant1..odd.ID = 1", "1|2.5\n"},
      {"SELECT count(DISTINCT Id) FROM Plant1..Odd", "2\n"},
      {"SELECT max(Id) OVER (PARTITION BY N ORDER BY Id) FROM Plant1..Odd WHERE ID = 1", "1\n"},
      {"SELECT typeof(N), ifnull(N, 0), instr('abc', 'c') FROM Plant1..Odd WHERE Id = 1",
       "real|2.5|3\n"},
      {"SELECT Name FROM Orvane..Historians H WHERE h.NAME = 'Plant1'", "Plant1\n"},
      {"SELECT Orvane..Historians.Name FROM Orvane..Historians", "Plant1\n"},
  };
  for (const auto& [sStatement, sRows] : cases) {
    try {
      EXPECT_EQ(Select(*opened, sStatement), sRows) << sStatement;
    } catch (const platform::Failure& failed) {
      ADD_FAILURE() << sStatement << ": " << failed.Description();
    }
  }
  Run(*opened, "ALTER TABLE Plant1..Odd RENAME COLUMN n TO Number");
  Run(*opened, "ALTER TABLE Plant1..Odd ADD COLUMN Extra GUID");
  Run(*opened, "CREATE VIEW Plant1..Seen (Nr, Amount) AS SELECT id, NUMBER FROM Plant1..ODD");
  Run(*opened, "CREATE INDEX Plant1..ByNumber ON Odd (number DESC)");
  EXPECT_EQ(Select(*opened, "SELECT nr, AMOUNT FROM Plant1..seen ORDER BY NR"), "1|2.5\n2|\n");
  Run(*opened, "UPDATE Plant1..Odd SET number = NUMBER + 1 WHERE ID = 1");
  Run(*opened,
      "INSERT INTO Plant1..Odd (Id, Number) VALUES (1, 9) ON CONFLICT (id) DO UPDATE SET number = "
      "excluded.NUMBER + Number");
  EXPECT_EQ(Select(*opened, "SELECT Number FROM Plant1..Odd WHERE Id = 1"), "12.5\n");
  Run(*opened, "DROP INDEX Plant1..ByNumber");
  Run(*opened, "DROP VIEW Plant1..SEEN");
  Run(*opened, "DROP TABLE Plant1..odd");
}

// As many characters before it as the user wrote, whatever was made of them.
TEST_P(statements, tells_the_place_of_what_is_wrong) {
  const auto opened = OpenPlant();
  const Text sFailure = Failing(*opened,
                                "SELECT '\xC3\xA4', ifnull(Value, 0), nofunction(Value) FROM "
                                "Plant1..Data WHERE Timestamp > '*-1h'");
  EXPECT_EQ(sFailure.substr(0, 4), "3805");
  EXPECT_NE(sFailure.find("(character 31 of the statement)"), Text::npos) << sFailure;
}

TEST_P(statements, makes_and_reads_views_and_tables_of_ones_own) {
  const auto opened = OpenPlant();
  Run(*opened, "CREATE VIEW Plant1..Recent AS SELECT Tag, Timestamp FROM Plant1..Data");
  EXPECT_EQ(Select(*opened, "SELECT Timestamp FROM Plant1..Recent WHERE Timestamp >= '*'"),
            "2024-05-15 12:00:00\n");
  Run(*opened, "CREATE TABLE Plant1..Notes (Id INTEGER PRIMARY KEY, At TIMESTAMP, Note TEXT)");
  Run(*opened, "CREATE INDEX NotesByTime ON Plant1..Notes (At)");
  Run(*opened, Differs(Difference::kNumbersItsKeys)
                   ? "INSERT INTO Plant1..Notes (At, Note) VALUES ('2024-01-01T00:00Z', 'x')"
                   : "INSERT INTO Plant1..Notes VALUES (1, '2024-01-01T00:00Z', 'x')");
  EXPECT_EQ(Select(*opened, "SELECT * FROM Plant1..Notes WHERE At < '*'"),
            "1|2024-01-01 00:00:00|x\n");
  Run(*opened, "DROP TABLE Plant1..Notes");
  EXPECT_EQ(Failing(*opened, "SELECT * FROM Plant1..Notes"),
            "3805: There is no table \"Notes\" in the catalog Plant1 (character 23 of the "
            "statement); write the name of one that the catalog lists.");
}

// As a grid puts a range of times and an order around a named query.
TEST_P(statements, reads_subqueries_with_or_without_a_name) {
  const auto opened = OpenPlant();
  const Text sQuery = "(\nSELECT Value, Timestamp FROM Plant1..Data -- all\n)";
  for (const char* const sName : {"", " AS \"rows\"", " r"}) {
    EXPECT_EQ(Select(*opened, "SELECT *\nFROM " + sQuery + sName +
                                  "\nWHERE \"Timestamp\" >= '*-1h'\nORDER BY \"Timestamp\" DESC")
                  .substr(0, 24),
              "0.5|2024-05-15 12:00:00\n")
        << sName;
  }
  EXPECT_EQ(Select(*opened,
                   "SELECT count(*) FROM (SELECT n FROM (SELECT 1 AS n UNION SELECT 2)) JOIN "
                   "(SELECT 3 AS m) ON n < m"),
            "2\n");
}

TEST_P(statements, takes_numbers_beyond_all_doubles_for_infinity) {
  const auto opened = OpenPlant();
  for (const char* const sBeyond : {"1.8e308", "17976931348623160e292", "2e308", "9e999"}) {
    EXPECT_EQ(Select(*opened, Text("SELECT CASE WHEN CAST(") + sBeyond +
                                  " AS DOUBLE) > CAST(1.7e308 AS DOUBLE) * 1.05 AND CAST(-" +
                                  sBeyond + " AS DOUBLE) = -CAST(9e999 AS DOUBLE) THEN 1 END"),
              "1\n")
        << sBeyond;
  }
}

TEST_P(statements, is_closed_once_and_for_all) {
  const auto opened = OpenPlant();
  const auto rs = Run(*opened, "SELECT Tag FROM Plant1..Data WHERE Timestamp = '*'").recordset;
  opened->Close();
  opened->Close();
  EXPECT_EQ(Rows(*rs), "T1\n");
  EXPECT_EQ(Failing(*opened, "SELECT 1"), "3704: The connection is closed; connect again.");
  EXPECT_EQ(opened->PropertyValue("Log Level"), Value(0));
}

}  // namespace
}  // namespace orvane::provider::conformance
