// The order of rows of a PostgreSQL server: made here where it can be, else asked of the server.
#include <QTest>

#include "controls/grid/query_results.h"
#include "controls/grid/table_editor.h"
#include "controls/statements/table_query.h"
#include "provider/engines/postgres/postgres_engine.h"
#include "tests/controls/grid_fixture.h"
#include "tests/controls/historian_server.h"
#include "tests/controls/sorted_here.h"
#include "tests/provider/engines/postgres_cluster.h"

namespace orvane::controls {
namespace {

using platform::Text;
using platform::TextOrder;
using tests::PostgresCluster;

class Databases final : public platform::ObjectFactory, public ado::ProviderSource {
 public:
  platform::ConnectionPtr CreateConnection() override { return nullptr; }
  platform::CommandPtr CreateCommand() override {
    ++nCommands;
    return std::make_shared<ado::Command>();
  }
  platform::TableQueryPtr CreateTableQuery() override { return nullptr; }
  std::shared_ptr<ado::Provider> Find(std::string_view) override {
    return std::make_shared<provider::HistorianProvider>(provider::SessionPlace{
        {std::make_shared<provider::engines::PostgresEngine>()}, provider::FixedNow});
  }
  int nCommands = 0;
};

class postgres_order : public GridFixture {
 protected:
  postgres_order() { Open("LOCALE 'C'"); }
  ~postgres_order() override {
    if (m_cn->IsOpen()) m_cn->Close();
    PostgresCluster::Get().Do("postgres", "DROP DATABASE " + m_sDatabase);
  }
  /// A new database whose texts stand in that order, with a schema "p".
  void Open(const Text& sOrder) {
    if (m_cn) {
      m_cn->Close();
      PostgresCluster::Get().Do("postgres", "DROP DATABASE " + m_sDatabase);
    }
    PostgresCluster::Get().Do("postgres",
                              "CREATE DATABASE " + m_sDatabase + " TEMPLATE template0 " + sOrder);
    Do("CREATE SCHEMA p");
    m_cn =
        std::make_shared<ado::Connection>(ado::ConnectionServices{m_databases, nullptr, nullptr});
    constexpr platform::Long kNeverPrompt = 4;
    m_cn->ConnectionString("Provider = ORVOLEDB; Data Source = " +
                           PostgresCluster::Get().AddressByPort(m_sDatabase));
    m_cn->Properties().Item("Prompt").Value(kNeverPrompt);
    m_cn->Open({}, PostgresCluster::kUser, PostgresCluster::kPassword,
               platform::kOptionUnspecified);
  }
  /// In the server's own words.
  void Do(const Text& sSql) { PostgresCluster::Get().Do(m_sDatabase, sSql); }
  platform::RecordsetPtr Run(const Text& sSql) {
    const auto command = m_databases->CreateCommand();
    command->ActiveConnection(m_cn);
    command->CommandText(sSql);
    return command->Execute();
  }
  TextOrder OrderOf(const Text& sSql) { return Run(sSql)->FieldAt(0).TextOrder(); }
  GridServices Ours() { return {m_databases, m_states, m_life}; }
  std::unique_ptr<controls::TableEditor> Editor() {
    const auto query = std::make_shared<controls::TableQuery>();
    query->Catalog("p");
    query->Table("t");
    auto editor = std::make_unique<controls::TableEditor>(Ours());
    editor->Connection(m_cn);
    editor->TableQuery(query);
    editor->Requery();
    return editor;
  }
  /// The second column as it stands, without the empty row at the end.
  static Text Column(platform::Control& grid) {
    Text sCells;
    for (int nRow = 0; nRow < RowsOf(grid); ++nRow) {
      if (const Text sCell = CellOf(grid, nRow, 1); !sCell.empty()) sCells += sCell + " ";
    }
    return sCells;
  }
  static void Sort(platform::Control& grid, bool bAscending = true) {
    ViewOf(grid)->SortBy(1, bAscending);
  }

  const Text m_sDatabase = "ordered";
  std::shared_ptr<Databases> m_databases = std::make_shared<Databases>();
  platform::ConnectionPtr m_cn;
};

TEST_F(postgres_order, is_the_server_s_own_for_every_type_that_is_sorted_here) {
  Do("CREATE TABLE p.t(id int PRIMARY KEY, c text COLLATE \"C\", posix varchar COLLATE \"POSIX\", "
     "cut char(6), code text COLLATE \"C.utf8\", own name, f float8, r real, n numeric, b boolean, "
     "k uuid, x bytea, day date, moment timestamptz, clock time, large int8)");
  Do("INSERT INTO p.t SELECT i, w.t, w.t, w.t, w.t, w.t, "
     "(ARRAY['NaN', 'Infinity', '-Infinity', '-0', '0', '1.5', '-1e300'])[1 + i % 7]::float8, "
     "(ARRAY['NaN', '0.1', '-0.1', 'Infinity'])[1 + i % 4]::real, "
     "(ARRAY['NaN', 'Infinity', '-Infinity', '1.10', '1.1', '-20', '123456789012345678901', "
     "'123456789012345678900', '-3'])[1 + i % 9]::numeric, i % 2 = 0, "
     "md5(i::text)::uuid, decode(md5(i::text), 'hex'), "
     "(ARRAY['infinity', '-infinity', '0044-03-15 BC', '0044-03-14 BC', '4713-01-01 BC', "
     "'20000-01-01', '100000-02-02', '2026-01-01', '0001-01-01'])[1 + i % 9]::date, "
     "(ARRAY['infinity', '-infinity', '0044-03-15 01:00+00 BC', '0045-03-15 01:00+00 BC', "
     "'20000-01-01 00:00+00', '100000-02-02 00:00+00', '2026-01-01 00:00:00.000001+00', "
     "'2026-01-01 00:00+00'])[1 + i % 8]::timestamptz, "
     "time '00:00' + i % 5 * interval '7 hours', (9007199254740993 + i % 3) "
     "FROM generate_series(1, 60) AS g(i), LATERAL (SELECT (ARRAY['a', 'B', 'b', '\xC3\xA4', 'a ', "
     "'a  b', 'Z', '', '\xEF\xBF\xBD', '\xF0\x9F\x98\x80', NULL])[1 + i % 11] AS t) AS w");
  Do("UPDATE p.t SET f = NULL, r = NULL, n = NULL, b = NULL, k = NULL, x = NULL, day = NULL, "
     "moment = NULL, clock = NULL, large = NULL WHERE id % 13 = 0");
  for (const char* sColumn : {"c", "posix", "cut", "code", "own", "f", "r", "n", "b", "k", "x",
                              "day", "moment", "clock", "large"}) {
    const auto rs = Run(Text("SELECT id, ") + sColumn + " FROM p..t ORDER BY id");
    ASSERT_EQ(rs->RecordCount(), 60);
    EXPECT_NE(rs->FieldAt(1).TextOrder(), TextOrder::Source) << sColumn;
    for (const bool bAscending : {true, false}) {
      EXPECT_EQ(SortedHere(*rs, bAscending),
                provider::Rows(*Run(Text("SELECT id FROM p..t ORDER BY ") + sColumn +
                                    (bAscending ? " ASC" : " DESC") + ", id")))
          << sColumn << bAscending;
    }
  }
}

TEST_F(postgres_order, newest_first_has_rows_without_a_time_behind_the_others) {
  Do("CREATE TABLE p.t(id int PRIMARY KEY, seen timestamptz)");
  Do("INSERT INTO p.t SELECT i, CASE WHEN i % 3 = 0 THEN timestamptz '2026-01-01 00:00+00' + i * "
     "interval '1 day' END FROM generate_series(1, 9) AS g(i)");
  const auto editor = Editor();
  EXPECT_EQ(Column(*editor),
            "2026-01-10 00:00:00 2026-01-07 00:00:00 2026-01-04 00:00:00 NULL NULL NULL NULL NULL "
            "NULL ");
  EXPECT_EQ(PaneOf(*editor).text().toStdString(),
            "SELECT *\nFROM \"p\"..\"t\"\nORDER BY \"seen\" DESC NULLS LAST");
  // Any index on it serves this order.
  Do("DELETE FROM p.t WHERE seen IS NULL; ALTER TABLE p.t ALTER seen SET NOT NULL");
  editor->Requery();
  EXPECT_EQ(PaneOf(*editor).text().toStdString(),
            "SELECT *\nFROM \"p\"..\"t\"\nORDER BY \"seen\" DESC");
}

TEST_F(postgres_order, of_texts_is_told_by_their_column_and_its_database) {
  const auto make = [this] {
    Do("CREATE TABLE p.t(id int PRIMARY KEY, plain text, c text COLLATE \"C\", swedish text "
       "COLLATE \"sv-x-icu\", cut char(3), own name, days interval, told json, place point)");
    Do("CREATE VIEW p.v AS SELECT plain, c AS other FROM p.t");
  };
  make();
  EXPECT_EQ(OrderOf("SELECT plain FROM p..t"), TextOrder::Bytes);
  EXPECT_EQ(OrderOf("SELECT cut AS short FROM p..t"), TextOrder::TrailingBlanks);
  EXPECT_EQ(OrderOf("SELECT own FROM p..t"), TextOrder::Bytes);
  EXPECT_EQ(OrderOf("SELECT swedish FROM p..t"), TextOrder::Source);
  EXPECT_EQ(OrderOf("SELECT days FROM p..t"), TextOrder::Source) << "a text here, a span there";
  EXPECT_EQ(OrderOf("SELECT plain || 'x' FROM p..t"), TextOrder::Source) << "nobody tells";
  for (const char* sColumn : {"told", "place"}) {
    EXPECT_EQ(OrderOf(Text("SELECT ") + sColumn + " FROM p..t"), TextOrder::Bytes)
        << "the server has no order for it";
  }
  Open("LOCALE_PROVIDER icu ICU_LOCALE 'en' LOCALE 'C.utf8'");
  make();
  EXPECT_EQ(OrderOf("SELECT plain FROM p..t"), TextOrder::Source);
  EXPECT_EQ(OrderOf("SELECT cut FROM p..t"), TextOrder::Source);
  EXPECT_EQ(OrderOf("SELECT c FROM p..t"), TextOrder::Bytes);
  EXPECT_EQ(OrderOf("SELECT own FROM p..t"), TextOrder::Bytes);
  EXPECT_EQ(OrderOf("SELECT plain FROM p..v"), TextOrder::Source);
  EXPECT_EQ(OrderOf("SELECT other FROM p..v"), TextOrder::Bytes);
}

TEST_F(postgres_order, is_asked_of_the_server_where_only_that_knows_it) {
  Do("CREATE TABLE p.t(id int PRIMARY KEY, w text COLLATE \"en-x-icu\", c text COLLATE \"C\")");
  Do("INSERT INTO p.t VALUES (1, 'b', 'b'), (2, NULL, NULL), (3, 'B', 'B'), (4, 'a', 'a'), "
     "(5, 'A', 'A')");
  const auto editor = Editor();
  const int nAsked = m_databases->nCommands;
  ViewOf(*editor)->SortBy(2, true);
  EXPECT_EQ(Column(*editor), "A B a b NULL ");
  EXPECT_EQ(Label(*editor, "arrangement"), "Sorted here: c \u2191");
  EXPECT_EQ(m_databases->nCommands, nAsked);
  Sort(*editor);
  EXPECT_EQ(Column(*editor), "a A b B NULL ");
  EXPECT_EQ(Label(*editor, "arrangement"), "Sorted by the server: w \u2191");
  EXPECT_GT(m_databases->nCommands, nAsked);
  Sort(*editor, false);
  EXPECT_EQ(Column(*editor), "NULL B b A a ");

  controls::QueryResults results(Ours());
  results.Connection(m_cn);
  results.SqlText("SELECT DISTINCT id, upper(w) || id AS u FROM p..t");
  results.Execute();
  Sort(results, false);
  EXPECT_EQ(Column(results), "NULL B3 B1 A5 A4 ");
  EXPECT_EQ(Label(results, "arrangement").substr(0, 21), "Sorted by the server:");
}

TEST_F(postgres_order, does_not_take_their_edits_from_the_rows_of_a_query) {
  Do("CREATE TABLE p.t(id int PRIMARY KEY, w text COLLATE \"en-x-icu\")");
  Do("INSERT INTO p.t VALUES (1, 'b'), (2, NULL), (3, 'B'), (4, 'a')");
  controls::QueryResults results(Ours());
  results.Connection(m_cn);
  results.SqlText("SELECT id, w FROM p..t");
  results.Execute();
  ASSERT_TRUE(results.DeleteAllowed());
  Sort(results);
  EXPECT_EQ(Column(results), "B a b NULL ");
  EXPECT_EQ(Label(results, "arrangement"),
            "Sorted here, texts otherwise than by the server: w \u2191");
  EXPECT_TRUE(results.DeleteAllowed());
}

TEST_F(postgres_order, of_rows_that_the_server_cannot_sort_is_told_to_be_another_one) {
  Do("CREATE TABLE p.t(id int PRIMARY KEY, w text COLLATE \"en-x-icu\")");
  Do("INSERT INTO p.t VALUES (1, 'b'), (2, NULL), (3, 'B'), (4, 'a')");
  const auto editor = Editor();
  m_cn->Close();
  Sort(*editor);
  EXPECT_EQ(Column(*editor), "B a b NULL ");
  EXPECT_EQ(Label(*editor, "arrangement"),
            "Sorted here, texts otherwise than by the server: w \u2191");
}

}  // namespace
}  // namespace orvane::controls
