// Rows of tables that another program made on a PostgreSQL server, with types and orders that
// historian SQL has not: found by what a grid sends for them.
#include "provider/engines/postgres/postgres_link.h"
#include "tests/provider/conformance/conformance.h"
#include "tests/provider/conformance/postgres_under_test.h"

namespace orvane::provider::conformance {
namespace {

class server_rows : public SessionActs, public testing::Test {
 protected:
  using SessionActs::Run;

  server_rows() { Do("CREATE SCHEMA p"); }

  /// In the server's own words.
  void Do(const char* sSql) { m_link.Command(sSql, {}); }
  platform::Long Changed(const Text& sSql, std::vector<Value> parameters) {
    ado::Statement statement{sSql};
    statement.parameters = std::move(parameters);
    return m_session->Execute(statement, {}).lRecordsAffected;
  }
  std::unique_ptr<ado::Session> Open() {
    const SessionPlace place{{m_server->Engine()}, FixedNow};
    return HistorianProvider(place).Open(
        ado::ConnectionSettings::Parse("Provider = ORVOLEDB; Data Source = " +
                                       m_server->DataSource() + "; User ID = " + m_server->User()),
        m_server->Password(), {});
  }

  std::unique_ptr<TestServer> m_server = PostgresUnderTest().start();
  engines::PostgresLink m_link{engines::ReadPostgresAddress(m_server->DataSource()),
                               m_server->User(),
                               m_server->Password(),
                               {}};
  std::unique_ptr<ado::Session> m_session = Open();
};

TEST_F(server_rows, of_texts_that_their_column_takes_for_equal_are_told_apart) {
  Do("CREATE EXTENSION citext SCHEMA p");
  Do("CREATE COLLATION p.folding (provider = icu, locale = 'und-u-ks-level2', deterministic = "
     "false)");
  for (const char* const sType : {"text COLLATE p.folding", "p.citext"}) {
    SCOPED_TRACE(sType);
    Do("DROP TABLE IF EXISTS p.t");
    Do((Text("CREATE TABLE p.t (k ") + sType + " PRIMARY KEY, v " + sType + ", w int)").c_str());
    Do("INSERT INTO p.t VALUES ('k', 'V', 1), ('n', NULL, 2)");
    const Text sByKey =
        "UPDATE \"p\"..\"t\" SET \"w\" = ? WHERE \"k\" = ? AND \"k\" = ? COLLATE "
        "BINARY AND \"v\" = ? COLLATE BINARY";
    EXPECT_EQ(Changed(sByKey, {3, "k", "k", "v"}), 0);
    EXPECT_EQ(Changed(sByKey, {3, "K", "K", "V"}), 0);
    EXPECT_EQ(Changed(sByKey, {3, "k", "k", "V"}), 1);
    // Without the order as the column says, where the server's own operators know it.
    const bool bFolds = Text(sType).starts_with("text");
    EXPECT_EQ(Changed("UPDATE p..t SET w = 4 WHERE v = ?", {bFolds ? "v" : "V"}), 1);
    EXPECT_EQ(Select(*m_session, "SELECT k FROM p..t WHERE v <> 'v' COLLATE BINARY"), "k\n");
    EXPECT_EQ(Select(*m_session, "SELECT k FROM p..t WHERE v != 'V' COLLATE BINARY"), "");
    EXPECT_EQ(Select(*m_session, "SELECT k FROM p..t WHERE NOT v == ('v') COLLATE BINARY"), "k\n");
    EXPECT_EQ(Select(*m_session, "SELECT k FROM p..t WHERE v IS NOT 'v' COLLATE BINARY ORDER BY k"),
              "k\nn\n");
    EXPECT_EQ(Select(*m_session, "SELECT k FROM p..t WHERE v IS DISTINCT FROM 'V' COLLATE BINARY"),
              "n\n");
    EXPECT_EQ(
        Select(*m_session, "SELECT k FROM p..t WHERE v COLLATE BINARY IS NOT DISTINCT FROM 'V'"),
        "k\n");
    EXPECT_EQ(Select(*m_session, "SELECT k FROM p..t WHERE v COLLATE BINARY IS NULL"), "n\n");
    const Text sDeleted =
        "DELETE FROM p..t WHERE k = ? AND k IS ? COLLATE BINARY AND v IS ? "
        "COLLATE BINARY AND w IS ? COLLATE BINARY";
    EXPECT_EQ(Changed(sDeleted, {"k", "k", "v", 4}), 0);
    EXPECT_EQ(Changed(sDeleted, {"k", "k", Value(), 4}), 0);
    EXPECT_EQ(Changed(sDeleted, {"n", "n", "v", 2}), 0);
    EXPECT_EQ(Changed(sDeleted, {"k", "k", "V", 4}), 1);
    EXPECT_EQ(Changed(sDeleted, {"n", "n", Value(), 2}), 1);
  }
}

// What a row was read as finds it again, whatever the server keeps it as.
TEST_F(server_rows, of_any_type_are_found_by_their_values) {
  for (const auto& [sType, sValue] :
       std::vector<std::pair<Text, Text>>{{"json", "'{\"b\": 1,  \"a\":[]}'"},
                                          {"jsonb", "'{\"b\": 1,  \"a\":[]}'"},
                                          {"xml", "'<a>b</a>'"},
                                          {"point", "'(1,2.5)'"},
                                          {"box", "'(1,2),(3,4)'"},
                                          {"int[]", "'{1,2,NULL}'"},
                                          {"text[]", "'{a,\"b c\"}'"},
                                          {"char(5)", "'ab'"},
                                          {"varchar(5)", "'ab '"},
                                          {"name", "'ab'"},
                                          {"numeric", "1.50"},
                                          {"numeric", "'NaN'"},
                                          {"smallint", "7"},
                                          {"bigint", "9007199254740993"},
                                          {"double precision", "0.1"},
                                          {"double precision", "'-0'"},
                                          {"boolean", "true"},
                                          {"uuid", "'a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11'"},
                                          {"bytea", "'\\x00ff'"},
                                          {"date", "'2024-02-29'"},
                                          {"date", "'infinity'"},
                                          {"time", "'12:34:56.789'"},
                                          {"timestamp", "'2024-02-29 12:00'"},
                                          {"interval", "'1 mon 2 days'"},
                                          {"inet", "'10.0.0.1'"},
                                          {"money", "'1.5'"},
                                          {"bit(3)", "'101'"},
                                          {"p.kind", "'high'"}}) {
    SCOPED_TRACE(sType + " " + sValue);
    Do("DROP TYPE IF EXISTS p.kind CASCADE");
    Do("CREATE TYPE p.kind AS ENUM ('low', 'high')");
    Do("DROP TABLE IF EXISTS p.t");
    Do(("CREATE TABLE p.t (k int PRIMARY KEY, v " + sType + ")").c_str());
    Do(("INSERT INTO p.t VALUES (1, " + sValue + "), (2, " + sValue + ")").c_str());
    try {
      const Value vt = Run(*m_session, "SELECT v FROM p..t").recordset->ValueAt(0, 0);
      EXPECT_EQ(Changed("UPDATE p..t SET v = ? WHERE k = ? AND v = ? COLLATE BINARY", {vt, 1, vt}),
                1);
      EXPECT_EQ(Changed("DELETE FROM p..t WHERE k = ? AND v IS ? COLLATE BINARY", {1, vt}), 1);
      EXPECT_EQ(Changed("DELETE FROM p..t WHERE k = ? AND v IS ? COLLATE BINARY", {2, Value()}), 0);
      Do("UPDATE p.t SET v = NULL");
      EXPECT_EQ(Changed("DELETE FROM p..t WHERE k = ? AND v IS ? COLLATE BINARY", {2, vt}), 0);
      EXPECT_EQ(Changed("DELETE FROM p..t WHERE k = ? AND v IS ? COLLATE BINARY", {2, Value()}), 1);
    } catch (const platform::Failure& failed) {
      ADD_FAILURE() << failed.Description();
    }
  }
}

}  // namespace
}  // namespace orvane::provider::conformance
