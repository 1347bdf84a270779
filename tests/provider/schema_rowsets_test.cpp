// Schema rowsets of the embedded historian: what they cost, and what is read anew.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <atomic>

#include "provider/session.h"
#include "tests/provider/temporary_root.h"

namespace orvane::provider {
namespace {

using platform::RecordsetPtr;
using platform::SchemaNumber;
using platform::Text;
using platform::Value;

class schema_rowsets : public testing::Test {
 protected:
  schema_rowsets() { Reopen(""); }

  void Reopen(const Text& sOptions) {
    HistorianProvider provider(PlaceAt(m_root.Path()));
    m_session = provider.Open(ado::ConnectionSettings::Parse(sOptions), "", {});
  }
  void Run(const Text& sText) { m_session->Execute({sText, 0, {}}, {}); }
  RecordsetPtr Schema(SchemaNumber schema, const std::vector<Value>& vtRestrictions = {}) {
    return m_session->OpenSchema(schema, vtRestrictions, {});
  }

  TemporaryRoot m_root;
  std::unique_ptr<ado::Session> m_session;
};

TEST_F(schema_rowsets, show_the_name_of_a_catalog_whose_identity_is_lost) {
  Run("CREATE DATABASE \"Plant1\" ");
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open((m_root.Historian() / "Orvane.db").c_str(), &db), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(db, "UPDATE Historians SET Identity = ''", nullptr, nullptr, nullptr),
            SQLITE_OK);
  sqlite3_close(db);
  Reopen("Historians By GUID = True;");
  EXPECT_EQ(Cells(*Schema(SchemaNumber::Catalogs), "CATALOG_NAME"), "Functions Orvane Plant1");
  EXPECT_EQ(Cells(*Schema(SchemaNumber::Tables, {Value("Plant1")}), "TABLE_NAME"),
            "Data Data2 Tags");
  Run("DROP DATABASE \"Plant1\"");
  EXPECT_EQ(Cells(*Schema(SchemaNumber::Catalogs), "CATALOG_NAME"), "Functions Orvane");
}

// Statements as the database sees them. Those that it runs itself to answer ours, which it marks as
// comments, are left out.
class CountedStatements {
 public:
  CountedStatements() {
    g_nStatements = 0;
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(&Watch));
  }
  CountedStatements(const CountedStatements&) = delete;
  CountedStatements& operator=(const CountedStatements&) = delete;
  ~CountedStatements() { sqlite3_reset_auto_extension(); }
  static int Count() { return g_nStatements; }

 private:
  static int Watch(sqlite3* database, char**, const void*) {
    return sqlite3_trace_v2(database, SQLITE_TRACE_STMT, &Counted, nullptr);
  }
  static int Counted(unsigned, void*, void*, void* text) {
    const std::string_view sText = static_cast<const char*>(text);
    if (!sText.starts_with("--")) ++g_nStatements;
    return 0;
  }
  static std::atomic<int> g_nStatements;
};

std::atomic<int> CountedStatements::g_nStatements{0};

TEST_F(schema_rowsets, list_a_catalog_with_all_its_columns_in_three_statements) {
  Run("CREATE DATABASE \"Plant1\" ");
  for (int i = 0; i < 50; ++i) {
    Run("CREATE TABLE Plant1..T" + std::to_string(i) + " (a INT, b TEXT)");
  }
  const CountedStatements counted;
  Reopen("");
  const int nBefore = CountedStatements::Count();
  EXPECT_GT(nBefore, 0);
  const auto tables = Schema(SchemaNumber::Tables, {Value("Plant1")});
  EXPECT_EQ(tables->RecordCount(), 53);
  int nColumns = 0;
  for (tables->MoveFirst(); !tables->Eof(); tables->MoveNext()) {
    const Value vtTable = tables->Fields().Item("TABLE_NAME").Value();
    nColumns += static_cast<int>(
        Schema(SchemaNumber::Columns, {Value("Plant1"), Value(), vtTable})->RecordCount());
  }
  EXPECT_EQ(nColumns, 50 * 2 + 12);
  EXPECT_LE(CountedStatements::Count() - nBefore, 3);
}

TEST_F(schema_rowsets, a_broken_view_costs_no_statement_for_each_table) {
  Run("CREATE DATABASE \"Plant1\" ");
  for (int i = 0; i < 50; ++i) Run("CREATE TABLE Plant1..T" + std::to_string(i) + " (a INT)");
  Run("CREATE VIEW Plant1..Broken AS SELECT a FROM Plant1..T0");
  Run("DROP TABLE Plant1..T0");
  const CountedStatements counted;
  Reopen("");
  const int nBefore = CountedStatements::Count();
  EXPECT_EQ(Schema(SchemaNumber::Tables, {Value("Plant1")})->RecordCount(), 53);
  EXPECT_LE(CountedStatements::Count() - nBefore, 5);
}

TEST_F(schema_rowsets, read_a_tables_columns_anew_for_whoever_asks_twice) {
  Run("CREATE DATABASE \"Plant1\" ");
  Schema(SchemaNumber::Tables, {Value("Plant1")});
  HistorianProvider provider(PlaceAt(m_root.Path()));
  const auto other = provider.Open(ado::ConnectionSettings::Parse(""), "", {});
  other->Execute({"ALTER TABLE Plant1..Tags ADD COLUMN Area TEXT", 0, {}}, {});
  const std::vector<Value> vtTags = {Value("Plant1"), Value(), Value("Tags")};
  EXPECT_EQ(Schema(SchemaNumber::Columns, vtTags)->RecordCount(), 4);
  EXPECT_EQ(Schema(SchemaNumber::Columns, vtTags)->RecordCount(), 5);
}

TEST_F(schema_rowsets, drop_what_is_left_of_a_listing_after_a_pause) {
  Run("CREATE DATABASE \"Plant1\" ");
  platform::Timestamp now = FixedNow();
  SessionPlace place = PlaceAt(m_root.Path());
  place.clock = [&] { return now; };
  m_session = HistorianProvider(place).Open(ado::ConnectionSettings::Parse(""), "", {});
  Schema(SchemaNumber::Tables, {Value("Plant1")});
  {
    const auto other = HistorianProvider(place).Open(ado::ConnectionSettings::Parse(""), "", {});
    other->Execute({"ALTER TABLE Plant1..Tags ADD COLUMN Area TEXT", 0, {}}, {});
    other->Execute({"ALTER TABLE Plant1..Data ADD COLUMN Area TEXT", 0, {}}, {});
    other->Execute({"ALTER TABLE Plant1..Data2 ADD COLUMN Area TEXT", 0, {}}, {});
  }
  const auto columnsOf = [&](const char* sTable) {
    return Schema(SchemaNumber::Columns, {Value("Plant1"), Value(), Value(sTable)})->RecordCount();
  };
  now += std::chrono::seconds(2);
  EXPECT_EQ(columnsOf("Tags"), 4);
  now += std::chrono::seconds(2);
  EXPECT_EQ(columnsOf("Data"), 4);
  now += std::chrono::seconds(3);
  EXPECT_EQ(columnsOf("Data2"), 5);
}

TEST_F(schema_rowsets, drop_what_is_left_of_a_listing_at_any_other_call) {
  Run("CREATE DATABASE \"Plant1\" ");
  const std::vector<Value> vtTags = {Value("Plant1"), Value(), Value("Tags")};
  const auto listed = [&](const std::function<void()>& call) {
    Schema(SchemaNumber::Tables, {Value("Plant1")});
    {
      HistorianProvider provider(PlaceAt(m_root.Path()));
      const auto other = provider.Open(ado::ConnectionSettings::Parse(""), "", {});
      other->Execute({"ALTER TABLE Plant1..Tags ADD COLUMN x", 0, {}}, {});
    }
    call();
    const auto nColumns = Schema(SchemaNumber::Columns, vtTags)->RecordCount();
    Run("ALTER TABLE Plant1..Tags DROP COLUMN x");
    return nColumns;
  };
  EXPECT_EQ(listed([] {}), 4);
  EXPECT_EQ(listed([&] { Run("SELECT 1"); }), 5);
  EXPECT_EQ(listed([&] { Schema(SchemaNumber::Catalogs); }), 5);
  EXPECT_EQ(listed([&] { Schema(SchemaNumber::PrimaryKeys, vtTags); }), 5);
  EXPECT_EQ(listed([&] { m_session->PropertyValue("Log Level", 1); }), 5);
}

}  // namespace
}  // namespace orvane::provider
