// Statements that read and change, and what is refused.
#include "tests/provider/conformance/conformance.h"

namespace orvane::provider::conformance {
namespace {

class statements : public Conformance {};

ORVANE_ON_EVERY_ENGINE(statements);

TEST_P(statements, reads_and_writes_through_the_dialect) {
  const auto opened = OpenPlant();
  EXPECT_EQ(Select(*opened, "SELECT * FROM Plant1..Data WHERE Timestamp BETWEEN '*-1h' AND '*'"),
            "T1|2024-05-15 11:00:00|1.5|Good\nT1|2024-05-15 12:00:00|0.5|Good\n");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data WHERE Timestamp >= '*-3h'"), "4\n");
  EXPECT_EQ(Select(*opened, "SELECT count(*) FROM Plant1..Data WHERE Timestamp <= '*-20h'"), "4\n");
  EXPECT_EQ(
      Run(*opened, "UPDATE Plant1..Data SET Value = 7 WHERE Timestamp = '*'").lRecordsAffected, 1);
  EXPECT_EQ(Run(*opened, "DELETE FROM Plant1..Data WHERE Timestamp < '*-1h'").lRecordsAffected, 22);
  EXPECT_EQ(Select(*opened, "SELECT Value FROM Plant1.Data ORDER BY Timestamp"), "1.5\n7\n");
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
