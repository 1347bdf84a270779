// Columns of times in which another program has put texts or bytes: each is greater than every
// time, so nothing is compared with them. They are shown, found and put right all the same.
#include <sqlite3.h>

#include "tests/provider/dialect/plant.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

class stored_times : public Plant {
 protected:
  stored_times() {
    Theirs(
        "CREATE TABLE Log (At TIMESTAMP, Done DATETIME, Line TEXT);"
        "INSERT INTO Log VALUES (1715770800000000, NULL, 'a'), (1715767200000000, "
        "'2024-05-15 09:00', 'b'), (NULL, 1715760000000000, 'c');"
        "CREATE TABLE Keys (At TIMESTAMP PRIMARY KEY, Nr) WITHOUT ROWID;"
        "INSERT INTO Keys VALUES (1715770800000000, 1), (x'00ff', 2);"
        "CREATE VIEW Lines AS SELECT Line, At, Done FROM Log;"
        "CREATE VIEW Stars AS SELECT * FROM Log;"
        "CREATE VIEW Both AS SELECT At AS t FROM Log UNION ALL SELECT Done FROM Log;"
        "CREATE VIEW Late AS SELECT Line FROM Log WHERE Done > At;"
        "CREATE VIEW Days AS SELECT date(Done) AS d, Line FROM Log");
  }
  // As another program does it; gives what SQLite answers.
  int Theirs(const char* sSql) {
    sqlite3* file = nullptr;
    EXPECT_EQ(sqlite3_open((m_root.Historian() / "catalogs" / "Plant1.db").c_str(), &file),
              SQLITE_OK);
    const int nCode = sqlite3_exec(file, sSql, nullptr, nullptr, nullptr);
    sqlite3_close(file);
    return nCode;
  }
  static constexpr const char* kDone =
      "The column \"Done\" of the table \"Log\" in the catalog Plant1 holds '2024-05-15 09:00' in "
      "its row 2 and no time, so nothing can be compared with it: write a time there by UPDATE ... "
      "SET \"Done\" = '2024-05-31 10:00' WHERE rowid = 2, or DELETE that row.";
  static constexpr const char* kKeys =
      "The column \"At\" of the table \"Keys\" in the catalog Plant1 holds X'00FF' in one of its "
      "rows and no time, so nothing can be compared with it: write a time there by UPDATE ... SET "
      "\"At\" = '2024-05-31 10:00' WHERE typeof(\"At\") = 'blob', or DELETE that row.";
};

TEST_F(stored_times, that_are_none_end_what_relies_on_them) {
  const char* const statements[] = {
      "SELECT * FROM Plant1..Log WHERE Done < '*-1h'",
      "SELECT * FROM Plant1..Log WHERE Done > '*-1h'",
      "SELECT Line FROM Plant1..Log WHERE NOT Done = '*'",
      "SELECT Line FROM Plant1..Log WHERE '*' IN (Done, At)",
      "SELECT Line FROM Plant1..Log WHERE '*' BETWEEN At AND Done",
      "SELECT Line FROM Plant1..Log l WHERE l.done >= datetime('now')",
      "DELETE FROM Plant1..Log WHERE Done > '*-1h'",
      "UPDATE Plant1..Log SET Line = 'x' WHERE Done > '*-1h'",
      "UPDATE Plant1..Log SET At = Done",
      "INSERT INTO Plant1..Copy (Tag, Timestamp) SELECT Line, Done FROM Plant1..Log",
      "INSERT INTO Plant1..Copy (Tag, Timestamp) SELECT Line, coalesce(Done, '*') FROM Plant1..Log",
      "INSERT INTO Plant1..Log VALUES ('*','*',1) ON CONFLICT DO UPDATE SET At='*' WHERE Done<'*'",
      "SELECT max(Done) FROM Plant1..Log",
      "SELECT count(DISTINCT Done) FROM Plant1..Log",
      "SELECT date(Done) FROM Plant1..Log",
      "SELECT Done + 5 FROM Plant1..Log",
      "SELECT Done - At FROM Plant1..Log",
      "SELECT Done > At FROM Plant1..Log",
      "SELECT CAST(Done AS TIMESTAMP) FROM Plant1..Log",
      "SELECT Line FROM Plant1..Log GROUP BY Line HAVING max(Done) > '*'",
      "SELECT Line FROM Plant1..Log GROUP BY date(Done)",
      "SELECT Line FROM Plant1..Log ORDER BY Done > '*'",
      "SELECT Line FROM Plant1..Log ORDER BY coalesce(Done, At)",
      "SELECT sum(1) OVER (ORDER BY Done - At) FROM Plant1..Log",
      "SELECT Value FROM Plant1..Data d JOIN Plant1..Log l ON l.Done = d.Timestamp",
      ("SELECT Value FROM Plant1..Data JOIN (SELECT Done AS Timestamp FROM Plant1..Log) USING "
       "(Timestamp)"),
      "SELECT Value FROM Plant1..Data WHERE Timestamp IN (SELECT Done FROM Plant1..Log)",
      "DELETE FROM Plant1..Data WHERE Timestamp < (SELECT max(Done) FROM Plant1..Log)",
      ("DELETE FROM Plant1..Data WHERE Timestamp < (SELECT Done FROM Plant1..Log ORDER BY Done "
       "DESC)"),
      "DELETE FROM Plant1..Data WHERE EXISTS (SELECT 1 FROM Plant1..Log WHERE Done >= Timestamp)",
      "SELECT Line FROM (SELECT Done AS t, Line FROM Plant1..Log) WHERE t > '*'",
      "SELECT Line FROM (SELECT * FROM Plant1..Log) WHERE Done > '*'",
      "WITH q AS (SELECT * FROM Plant1..Log) SELECT Line FROM q WHERE Done > '*'",
      "WITH q(a, b, c) AS (SELECT * FROM Plant1..Log) SELECT c FROM q WHERE b > '*'",
      ("WITH q AS (SELECT At FROM Plant1..Log UNION ALL SELECT Done FROM Plant1..Log) SELECT At "
       "FROM q WHERE At > '*'"),
      "SELECT Line FROM Plant1..Lines WHERE Done > '*'",
      "SELECT Line FROM Plant1..Stars WHERE Done > '*'",
      "SELECT t FROM Plant1..Both WHERE t > '*'",
      "SELECT Line FROM Plant1..Late",
      "SELECT count(*) FROM Plant1..Late",
      "SELECT Line FROM Plant1..Days",
  };
  for (const char* const sStatement : statements)
    EXPECT_EQ(Failing(sStatement), kDone) << sStatement;
  EXPECT_EQ(Failing("SELECT Nr FROM Plant1..Keys WHERE At < '*'"), kKeys);
  EXPECT_EQ(Failing("SELECT Value FROM Plant1..Data WHERE (Timestamp, Value) IN Plant1..Keys"),
            kKeys);
  EXPECT_EQ(Failing("SELECT Nr FROM Plant1..Keys NATURAL JOIN (SELECT max(Timestamp) AS At FROM "
                    "Plant1..Data)"),
            kKeys);
  EXPECT_EQ(Count("Plant1..Data"), "24 ");
  EXPECT_EQ(Run("SELECT group_concat(Line) FROM Plant1..Log"), "a,b,c\n");
}

TEST_F(stored_times, that_are_none_are_shown_and_found) {
  const Text sAll =
      "2024-05-15 11:00:00||a\n2024-05-15 10:00:00|2024-05-15 09:00|b\n|2024-05-15 08:00:00|c\n";
  EXPECT_EQ(Run("SELECT * FROM Plant1..Log"), sAll);
  EXPECT_EQ(Run("SELECT At, Done, Line FROM Plant1..Log ORDER BY Line"), sAll);
  EXPECT_EQ(Run("SELECT Line FROM Plant1..Log ORDER BY Done DESC"), "b\nc\na\n");
  EXPECT_EQ(Run("SELECT Done FROM Plant1..Log WHERE Line = 'b'"), "2024-05-15 09:00\n");
  EXPECT_EQ(Run("SELECT Done AS d FROM Plant1..Lines GROUP BY Done"),
            "\n2024-05-15 08:00:00\n2024-05-15 09:00\n");
  EXPECT_EQ(Run("SELECT Done FROM (SELECT * FROM Plant1..Log) WHERE Line > 'a'"),
            "2024-05-15 09:00\n2024-05-15 08:00:00\n");
  EXPECT_EQ(
      Run("WITH q AS (SELECT Done, Line FROM Plant1..Log) SELECT Done FROM q WHERE Line = 'b'"),
      "2024-05-15 09:00\n");
  EXPECT_EQ(Run("SELECT count(Done), typeof(Done) FROM Plant1..Log WHERE Done IS NOT NULL GROUP BY "
                "typeof(Done)"),
            "1|integer\n1|text\n");
  EXPECT_EQ(Run("SELECT count(*) FROM Plant1..Stars"), "3\n");
  EXPECT_EQ(Count("Plant1..Both"), "6 ");
  // Another column of the same table is sound.
  EXPECT_EQ(Run("SELECT Done, Line FROM Plant1..Log WHERE At < '*-1h'"), "2024-05-15 09:00|b\n");
  EXPECT_EQ(Run("SELECT Line FROM Plant1..Lines WHERE At = '*-1h'"), "a\n");
  EXPECT_EQ(Run("SELECT * FROM Plant1..Stars WHERE At = '*-1h'"), "2024-05-15 11:00:00||a\n");
  Run("INSERT INTO Plant1..Log SELECT Timestamp, NULL, 'd' FROM Plant1..Data WHERE Timestamp = "
      "'*'");
  Run("UPDATE Plant1..Log SET Done = NULL WHERE Line = 'd' RETURNING Done");
  Run("DELETE FROM Plant1..Log WHERE Line = 'd'");
  EXPECT_EQ(Run("SELECT * FROM Plant1..Log"), sAll);
}

TEST_F(stored_times, are_put_right_as_the_sentence_says) {
  Run("UPDATE Plant1..Log SET \"Done\" = '2024-05-15 11:30' WHERE rowid = 2");
  EXPECT_EQ(Run("SELECT Line FROM Plant1..Log WHERE Done > '*-3h'"), "b\n");
  Run("DELETE FROM Plant1..Keys WHERE typeof(\"At\") = 'blob'");
  EXPECT_EQ(Run("SELECT Nr FROM Plant1..Keys WHERE At <= '*'"), "1\n");
}

TEST_F(stored_times, tell_no_more_than_the_beginning_of_a_long_text) {
  ASSERT_EQ(
      Theirs("UPDATE Log SET Done = replace(hex(zeroblob(500)), '00', 'a''') WHERE rowid = 2"),
      SQLITE_OK);
  const Text sFailure = Failing("SELECT 1 FROM Plant1..Log WHERE Done > '*'");
  EXPECT_NE(sFailure.find("holds 'a''a''"), Text::npos) << sFailure;
  EXPECT_NE(sFailure.find("'... in its row 2"), Text::npos) << sFailure;
  EXPECT_LT(sFailure.size(), 350U);
}

TEST_F(stored_times, of_tables_made_here_are_no_texts_whoever_fills_them) {
  Run("CREATE TABLE Plant1..Own (Nr INTEGER PRIMARY KEY, \"At it\" TIMESTAMP DEFAULT "
      "CURRENT_TIMESTAMP)");
  Run("ALTER TABLE Plant1..Own ADD COLUMN Later DATETIME");
  Run("INSERT INTO Plant1..Own VALUES (1, '*', NULL)");
  EXPECT_EQ(Theirs("INSERT INTO Own VALUES (2, '2024-01-01', NULL)"), SQLITE_CONSTRAINT);
  EXPECT_EQ(Theirs("INSERT INTO Own VALUES (2, 5, 'x')"), SQLITE_CONSTRAINT);
  EXPECT_EQ(Theirs("INSERT INTO Own VALUES (2, x'00', 1)"), SQLITE_CONSTRAINT);
  EXPECT_EQ(Theirs("INSERT INTO Own VALUES (2, 1715770800000000, 1.5)"), SQLITE_OK);
  EXPECT_EQ(Run("SELECT Nr FROM Plant1..Own WHERE \"At it\" < '*'"), "2\n");
}

// A table with such a rule of its own needs no look; one with another rule does.
TEST_F(stored_times, are_not_looked_at_where_the_table_keeps_texts_out) {
  Run("CREATE TABLE Plant1..Own (Nr INTEGER PRIMARY KEY, At TIMESTAMP)");
  const char* const sDefinitions[] = {
      "CREATE TABLE Mine (Nr, At TIMESTAMP, Line, CHECK(typeof([at])='integer'))",
      "CREATE TABLE Loose (Nr, At TIMESTAMP CHECK (typeof(At) = 'integer' OR Nr = 2), Line)",
      "CREATE TABLE Told (Nr, At TIMESTAMP, Line DEFAULT 'CHECK (typeof(At) = integer)')",
      "CREATE TABLE Said (Nr, At TIMESTAMP, Line /* CHECK (typeof(At) = 'integer') */)",
      "CREATE TABLE Other (Nr, At TIMESTAMP, Line CHECK (typeof(Nr) = 'integer'))"};
  for (const char* const sDefinition : sDefinitions) ASSERT_EQ(Theirs(sDefinition), SQLITE_OK);
  // No program that keeps to the rules gets a text into these two.
  for (const char* const sTable : {"Own (Nr, At)", "Mine (Nr, At)"}) {
    ASSERT_EQ(Theirs((Text("PRAGMA ignore_check_constraints = 1; INSERT INTO ") + sTable +
                      " VALUES (2, 'x')")
                         .c_str()),
              SQLITE_OK);
  }
  EXPECT_EQ(Run("SELECT Nr FROM Plant1..Own WHERE At > '*'"), "2\n");
  EXPECT_EQ(Run("SELECT Nr FROM Plant1..Mine WHERE At > '*'"), "2\n");
  for (const Text& sTable : {Text("Loose"), Text("Told"), Text("Said"), Text("Other")}) {
    ASSERT_EQ(Theirs(("INSERT INTO " + sTable + " (Nr, At) VALUES (2, 'x')").c_str()), SQLITE_OK);
    EXPECT_EQ(Failing("SELECT Nr FROM Plant1.." + sTable + " WHERE At > '*'").substr(0, 50),
              ("The column \"At\" of the table \"" + sTable + "\" in the catalog").substr(0, 50));
  }
}

}  // namespace
}  // namespace orvane::provider::dialect
