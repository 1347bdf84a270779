// Whose rows a statement gives, as reader of the statement and engine agree on it.
#include "ado/fetch.h"
#include "tests/provider/session_fixture.h"

namespace orvane::provider {
namespace {

class row_source : public SessionFixture {
 protected:
  void SetUp() override {
    m_opened = OpenPlant(m_sOptions);
    Run(*m_opened,
        "CREATE TABLE Plant1..Pumps (Id INTEGER PRIMARY KEY, Name TEXT NOT NULL, Flow REAL, "
        "Twice REAL AS (Flow * 2))");
    Run(*m_opened, "INSERT INTO Plant1..Pumps (Id, Name, Flow) VALUES (1, 'feed', 10.5)");
    Run(*m_opened, "CREATE VIEW Plant1..Seen AS SELECT Id, Name FROM Plant1..Pumps");
  }
  /// "catalog..table: column,,column", or what follows "looked at: ".
  Text SourceOf(const Text& sText) {
    const auto rs = Run(*m_opened, sText).recordset;
    const platform::RowSource& source = rs->Source();
    if (source.sTable.empty()) {
      const Text sBegin = "These rows can only be looked at: ";
      EXPECT_TRUE(source.sWhyNone.starts_with(sBegin)) << source.sWhyNone;
      EXPECT_TRUE(source.columns.empty());
      return source.sWhyNone.substr(std::min(sBegin.size(), source.sWhyNone.size()));
    }
    EXPECT_EQ(source.columns.size(), static_cast<std::size_t>(rs->FieldCount()));
    Text sColumns;
    for (const Text& sName : source.columns)
      sColumns += (sColumns.empty() ? "" : ",") + (sName.empty() ? Text("-") : sName);
    return source.sCatalog + ".." + source.sTable + ": " + sColumns;
  }

  Text m_sOptions;
  std::unique_ptr<ado::Session> m_opened;
};

TEST_F(row_source, is_the_table_with_all_that_is_plainly_read_from_it) {
  EXPECT_EQ(SourceOf("SELECT * FROM Plant1..Pumps"), "Plant1..Pumps: Id,Name,Flow,Twice");
  EXPECT_EQ(
      SourceOf("SELECT p.*, p.Id FROM plant1..PUMPS AS p WHERE Flow > 1 ORDER BY Name LIMIT 5"),
      "Plant1..Pumps: Id,Name,Flow,Twice,-");
  EXPECT_EQ(SourceOf("SELECT name AS Flow, flow AS Name, Pumps.Id FROM Plant1..Pumps"),
            "Plant1..Pumps: Name,Flow,Id");
  EXPECT_EQ(
      SourceOf(
          "SELECT ALL Id FROM Plant1..Pumps WHERE Flow > (SELECT avg(Flow) FROM Plant1..Pumps)"),
      "Plant1..Pumps: Id");
  EXPECT_EQ(SourceOf("SELECT Tag, Timestamp, Value FROM Plant1..Data WHERE Timestamp > '*-2h'"),
            "Plant1..Data: Tag,Timestamp,Value");
}

TEST_F(row_source, leaves_out_what_is_worked_out_and_what_comes_twice) {
  EXPECT_EQ(
      SourceOf(
          "SELECT Id, Flow * 2, upper(Name), (Flow), +Flow, 'x', NULL, Flow FROM Plant1..Pumps"),
      "Plant1..Pumps: Id,-,-,-,-,-,-,Flow");
  EXPECT_EQ(
      SourceOf(
          "SELECT Id, Id AS Other, Name COLLATE NOCASE, CAST(Name AS TEXT) FROM Plant1..Pumps"),
      "Plant1..Pumps: Id,-,-,-");
  EXPECT_EQ(SourceOf("SELECT Id, (SELECT Name FROM Plant1..Pumps AS q WHERE q.Id = p.Id) FROM "
                     "Plant1..Pumps p"),
            "Plant1..Pumps: Id,-");
}

TEST_F(row_source, takes_no_number_of_a_row_for_a_column) {
  EXPECT_EQ(SourceOf("SELECT rowid, oid, _rowid_, Name FROM Plant1..Pumps"),
            "Plant1..Pumps: -,-,-,Name");
  // What is no column is a text to the engine.
  EXPECT_EQ(SourceOf("SELECT Id, 'Name' FROM Plant1..Pumps"), "Plant1..Pumps: Id,-");
}

TEST_F(row_source, is_none_where_rows_are_made_of_others) {
  const std::pair<Text, Text> cases[] = {
      {"SELECT DISTINCT Id, Name FROM Plant1..Pumps",
       "the query shows equal rows once (DISTINCT); read the rows themselves."},
      {"SELECT Id, Name FROM Plant1..Pumps GROUP BY Id",
       "the query makes one row of several (GROUP BY); read the rows themselves."},
      {"SELECT Id, Name FROM Plant1..Pumps GROUP BY Id HAVING Flow > 1",
       "the query makes one row of several (GROUP BY); read the rows themselves."},
      {"SELECT Id, max(Flow) FROM Plant1..Pumps",
       "the query works values out over several rows; read the rows themselves."},
      {"SELECT Id, count(*) FROM Plant1..Pumps",
       "the query works values out over several rows; read the rows themselves."},
      {"SELECT Id, (SELECT total(p.Flow)) FROM Plant1..Pumps p",
       "the query works values out over several rows; read the rows themselves."},
      {"SELECT Id, json_group_array(Name) FROM Plant1..Pumps",
       "the query works values out over several rows; read the rows themselves."},
      {"SELECT Id, row_number() OVER (ORDER BY Id) FROM Plant1..Pumps",
       "the query works values out over several rows; read the rows themselves."},
      {"SELECT Id FROM Plant1..Pumps UNION ALL SELECT Id FROM Plant1..Pumps",
       "the query puts the rows of several SELECTs together; read one table."},
      {"SELECT Id FROM Plant1..Pumps EXCEPT SELECT 2",
       "the query puts the rows of several SELECTs together; read one table."},
      {"WITH Pumps AS (SELECT 1 AS Id) SELECT Id FROM Pumps",
       "the query reads named queries (WITH); name the table itself behind FROM."},
      {"WITH n AS (SELECT 1) SELECT Id FROM Plant1..Pumps",
       "the query reads named queries (WITH); name the table itself behind FROM."},
      {"SELECT a.Id FROM Plant1..Pumps a, Plant1..Pumps b",
       "the query joins several tables; read one of them."},
      {"SELECT p.Id FROM Plant1..Pumps p LEFT JOIN Plant1..Data d ON d.Tag = p.Name",
       "the query joins several tables; read one of them."},
      {"SELECT Id FROM (SELECT Id, Name FROM Plant1..Pumps)",
       "the query reads a subquery; name the table itself behind FROM."},
      {"SELECT value FROM json_each('[1, 2]')", "the query reads no table."},
      {"SELECT 1, 2", "the query reads no table."},
      {"VALUES (1), (2)", "the query reads no table."},
      {"EXPLAIN QUERY PLAN SELECT Id FROM Plant1..Pumps", "they tell how a statement would run."},
      {"UPDATE Plant1..Pumps SET Flow = Flow RETURNING Id, Name",
       "they are what a change gave back; read them by a query."},
  };
  for (const auto& [sText, sWhyNone] : cases) EXPECT_EQ(SourceOf(sText), sWhyNone) << sText;
}

TEST_F(row_source, of_two_values_the_greater_one_is_of_one_row) {
  EXPECT_EQ(
      SourceOf("SELECT Id, max(Flow, 5), coalesce(Name, '') FROM Plant1..Pumps ORDER BY abs(Flow)"),
      "Plant1..Pumps: Id,-,-");
}

TEST_F(row_source, tells_a_view_by_its_name) {
  // What a view is made of is nobody's guess: whoever edits asks what kind of table it is.
  EXPECT_EQ(SourceOf("SELECT * FROM Plant1..Seen").substr(0, 12), "Plant1..Seen");
}

class row_source_of_prefixed_names : public row_source {
 protected:
  row_source_of_prefixed_names() { m_sOptions = "Identifier Prefixes = True"; }
};

TEST_F(row_source_of_prefixed_names, has_the_names_that_the_table_has) {
  EXPECT_EQ(SourceOf("SELECT Orv_Id, Name FROM Orv_Plant1..Orv_Pumps"),
            "Orv_Plant1..Orv_Pumps: Id,Name");
}

TEST_F(row_source, stays_with_rows_that_were_stopped) {
  auto fetch = std::make_shared<ado::Fetch>(ado::FetchWishes{.bKeepRows = true}, nullptr);
  ado::Statement statement{"SELECT * FROM Plant1..Pumps", 0, std::chrono::seconds(0)};
  statement.rows = fetch;
  m_opened->Execute(statement, {});
  EXPECT_EQ(fetch->Recordset()->Source().sTable, "Pumps");
}

}  // namespace
}  // namespace orvane::provider
