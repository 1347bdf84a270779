// Names with a prefix beside names that really begin with it: each means what is listed under it.
#include "provider/shown_names.h"

#include <sqlite3.h>

#include "tests/provider/session_fixture.h"

namespace orvane::provider {
namespace {

using platform::SchemaNumber;
using platform::Text;
using platform::Value;

TEST(shown_names, mean_the_catalog_that_is_shown_under_them) {
  SessionOptions options;
  const ShownNames names(options);
  std::vector<engines::Catalog> catalogs;
  for (const char* const sName : {"Orv_X", "X", "orv_Only", "ORV_y", "y"}) {
    catalogs.emplace_back().sName = sName;
  }
  const auto meant = [&](const Text& sName) {
    const auto* const found = names.Find(catalogs, sName);
    return found == nullptr ? Text("none") : found->sName;
  };
  EXPECT_EQ(meant("Orv_X"), "Orv_X");
  EXPECT_EQ(meant("x"), "X");
  options.Set("Identifier Prefixes", true);
  EXPECT_EQ(names.Catalog(catalogs[0]).sName, "Orv_Orv_X");
  EXPECT_EQ(meant("Orv_X"), "X");
  EXPECT_EQ(meant("orv_x"), "X");
  EXPECT_EQ(meant("ORV_Y"), "y");
  EXPECT_EQ(meant("Orv_Orv_X"), "Orv_X");
  EXPECT_EQ(meant("Orv_orv_x"), "Orv_X");
  EXPECT_EQ(meant("X"), "X");
  EXPECT_EQ(meant("Orv_Only"), "orv_Only");
  EXPECT_EQ(meant("Only"), "none");
  // Whatever is listed can be reached as it is listed.
  for (const auto& catalog : catalogs) {
    EXPECT_EQ(names.Find(catalogs, names.Catalog(catalog).sName), &catalog) << catalog.sName;
  }
}

TEST(shown_names, mean_an_identity_before_a_name_that_looks_like_one) {
  SessionOptions options;
  options.Set("Historians By GUID", true);
  const ShownNames names(options);
  std::vector<engines::Catalog> catalogs(2);
  catalogs[0].sName = "{B}";
  catalogs[0].sIdentity = "{A}";
  catalogs[1].sName = "X";
  catalogs[1].sIdentity = "{B}";
  EXPECT_EQ(names.Find(catalogs, "{b}"), &catalogs[1]);
  EXPECT_EQ(names.Find(catalogs, "x"), &catalogs[1]);
}

// Of catalogs and of tables there is a pair each: one name, and the same behind the prefix.
class shown_name_pairs : public SessionFixture {
 protected:
  shown_name_pairs() {
    m_session = Open();
    for (const char* const sCatalog : {"Plant1", "Other"}) {
      const Text sIn(sCatalog);
      Do("CREATE DATABASE \"" + sIn + "\" ");
      for (const char* const sTable : {"Pump", "Orv_Pump"}) {
        const Text sOf = sIn + ".." + sTable;
        Do("CREATE TABLE " + sOf + " (Id INTEGER PRIMARY KEY, Name TEXT, At TIMESTAMP)");
        Do("INSERT INTO " + sOf + " VALUES (1, '" + sIn + " " + sTable + "', '*')");
      }
    }
    m_session.reset();
    // No statement makes a catalog of such a name; older versions may have.
    sqlite3* db = nullptr;
    EXPECT_EQ(sqlite3_open((m_root.Historian() / "Orvane.db").c_str(), &db), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(db, "UPDATE Historians SET Name = 'Orv_Plant1' WHERE Name = 'Other'",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(db);
    m_session = Open("Identifier Prefixes = True;");
  }
  void Do(const Text& sText) { SessionActs::Run(*m_session, sText); }
  Text Of(const Text& sText) { return Select(*m_session, sText); }
  Text Fails(const Text& sText) { return Failing(*m_session, sText); }
  Text Listed(SchemaNumber schema, const std::vector<Value>& vtRestrictions, const Text& sField) {
    return Cells(*m_session->OpenSchema(schema, vtRestrictions, {}), sField);
  }

  std::unique_ptr<ado::Session> m_session;
};

TEST_F(shown_name_pairs, mean_in_queries_what_is_listed_so) {
  EXPECT_EQ(Listed(SchemaNumber::Catalogs, {}, "CATALOG_NAME"),
            "Orv_Functions Orv_Orv_Plant1 Orv_Orvane Orv_Plant1");
  EXPECT_EQ(Of("SELECT Name FROM Orv_Plant1..Orv_Pump"), "Plant1 Pump\n");
  EXPECT_EQ(Of("SELECT Name FROM Plant1..Pump"), "Plant1 Pump\n");
  EXPECT_EQ(Of("SELECT Name FROM Orv_Plant1..Orv_Orv_Pump"), "Plant1 Orv_Pump\n");
  EXPECT_EQ(Of("SELECT Name FROM Orv_Orv_Plant1..Orv_Pump"), "Other Pump\n");
  EXPECT_EQ(Of("SELECT Name FROM Orv_Orv_Plant1..Orv_Orv_Pump"), "Other Orv_Pump\n");
}

TEST_F(shown_name_pairs, mean_before_a_column_the_table_that_is_listed_so) {
  const Text sBoth = " FROM Orv_Plant1..Orv_Orv_Pump, Orv_Plant1..Orv_Pump";
  EXPECT_EQ(Of("SELECT Orv_Pump.Name, Orv_Orv_Pump.Name, Pump.Name" + sBoth),
            "Plant1 Pump|Plant1 Orv_Pump|Plant1 Pump\n");
  EXPECT_EQ(Of("SELECT Orv_Plant1..Orv_Pump.Name, Plant1..Orv_Orv_Pump.Name" + sBoth),
            "Plant1 Pump|Plant1 Orv_Pump\n");
  EXPECT_EQ(Of("SELECT Orv_Orv_Pump.*" + sBoth + " WHERE Orv_Pump.At > '*-1d'").substr(0, 18),
            "1|Plant1 Orv_Pump|");
  EXPECT_EQ(Fails("SELECT Orv_Pump.Name FROM Orv_Plant1..Orv_Orv_Pump").substr(0, 33),
            "3805: There is no column \"Name\" (");
}

TEST_F(shown_name_pairs, change_what_is_listed_so) {
  Do("UPDATE Orv_Plant1..Orv_Pump SET Name = 'a'");
  Do("DELETE FROM Orv_Plant1..Orv_Orv_Pump");
  EXPECT_EQ(Of("SELECT Name FROM Plant1..Pump"), "a\n");
  EXPECT_EQ(Of("SELECT count(*) FROM Plant1..Orv_Orv_Pump"), "0\n");
  EXPECT_EQ(Of("SELECT count(*) FROM Orv_Orv_Plant1..Pump"), "1\n");
  Do("DROP TABLE Orv_Plant1..Orv_Pump");
  EXPECT_EQ(Listed(SchemaNumber::Tables, {Value("Orv_Plant1")}, "TABLE_NAME"),
            "Orv_Data Orv_Data2 Orv_Orv_Pump Orv_Tags");
  // Now there is only one that it can mean.
  EXPECT_EQ(Of("SELECT count(*) FROM Orv_Plant1..Orv_Pump"), "0\n");
  // A new one is listed as it was typed.
  Do("CREATE TABLE IF NOT EXISTS Orv_Plant1..Orv_Pump (Id INTEGER PRIMARY KEY, Name TEXT)");
  Do("INSERT INTO Orv_Plant1..Orv_Pump VALUES (7, 'new')");
  EXPECT_EQ(Of("SELECT Name FROM Plant1..Pump"), "new\n");
  Do("ALTER TABLE Orv_Plant1..Orv_Pump RENAME TO Orv_Valve");
  EXPECT_EQ(Listed(SchemaNumber::Tables, {Value("Orv_Plant1")}, "TABLE_NAME"),
            "Orv_Data Orv_Data2 Orv_Orv_Pump Orv_Tags Orv_Valve");
  EXPECT_EQ(Of("SELECT Name FROM Orv_Plant1..Orv_Valve"), "new\n");
}

TEST_F(shown_name_pairs, drop_the_catalog_that_is_listed_so) {
  Do("DROP DATABASE \"Orv_Plant1\"");
  EXPECT_EQ(Of("SELECT Name FROM Orvane..Historians"), "Orv_Plant1\n");
  EXPECT_EQ(Of("SELECT Name FROM Orv_Orv_Plant1..Pump"), "Other Pump\n");
  Do("DROP DATABASE \"Orv_Orv_Plant1\"");
  EXPECT_EQ(Of("SELECT count(*) FROM Orvane..Historians"), "0\n");
}

TEST_F(shown_name_pairs, restrict_rowsets_to_what_is_listed_so) {
  EXPECT_EQ(Listed(SchemaNumber::Catalogs, {Value("Orv_Plant1")}, "CATALOG_NAME"), "Orv_Plant1");
  EXPECT_EQ(Listed(SchemaNumber::Catalogs, {Value("Orv_Orv_Plant1")}, "CATALOG_NAME"),
            "Orv_Orv_Plant1");
  Do("ALTER TABLE Orv_Plant1..Orv_Pump ADD COLUMN OfPump TEXT");
  Do("ALTER TABLE Orv_Orv_Plant1..Orv_Pump ADD COLUMN OfOther TEXT");
  const Value vtCatalog("Orv_Plant1");
  const Value vtPump("Orv_Pump");
  EXPECT_EQ(Listed(SchemaNumber::Tables, {vtCatalog, {}, vtPump}, "TABLE_NAME"), "Orv_Pump");
  const std::vector<Value> vtPumps{vtCatalog, {}, vtPump};
  EXPECT_EQ(Listed(SchemaNumber::Columns, vtPumps, "COLUMN_NAME"), "Id Name At OfPump");
  EXPECT_EQ(Listed(SchemaNumber::Columns, {vtCatalog, {}, Value("Orv_Orv_Pump")}, "COLUMN_NAME"),
            "Id Name At");
  EXPECT_EQ(Listed(SchemaNumber::Columns, {Value("Orv_Orv_Plant1"), {}, vtPump}, "COLUMN_NAME"),
            "Id Name At OfOther");
  EXPECT_EQ(Listed(SchemaNumber::PrimaryKeys, vtPumps, "TABLE_NAME"), "Orv_Pump");
  // From the listing of the whole catalog it is the same.
  EXPECT_EQ(Listed(SchemaNumber::Tables, {vtCatalog}, "TABLE_NAME"),
            "Orv_Data Orv_Data2 Orv_Orv_Pump Orv_Pump Orv_Tags");
  EXPECT_EQ(Listed(SchemaNumber::Columns, vtPumps, "COLUMN_NAME"), "Id Name At OfPump");
}

TEST_F(shown_name_pairs, take_the_name_of_an_index_as_it_is_listed) {
  Do("CREATE INDEX Plant1..ByName ON Orv_Pump (Name)");
  Do("CREATE INDEX Plant1..Orv_ByName ON Orv_Pump (Name)");
  const std::vector<Value> vtOf{Value("Orv_Plant1"), {}, {}, {}, Value("Orv_Pump")};
  EXPECT_EQ(Listed(SchemaNumber::Indexes, vtOf, "INDEX_NAME"), "ByName Orv_ByName");
  Do("DROP INDEX Orv_Plant1..Orv_ByName");
  EXPECT_EQ(Listed(SchemaNumber::Indexes, vtOf, "INDEX_NAME"), "ByName");
}

}  // namespace
}  // namespace orvane::provider
