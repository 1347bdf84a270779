// The engine itself, in its own plain SQL: what it promises to whatever stands above.
#include <numeric>

#include "tests/fakes/scripted_rows.h"
#include "tests/provider/conformance/conformance.h"

namespace orvane::provider::conformance {
namespace {

using engines::EngineStatement;
using platform::DataType;
using tests::ScriptedRows;

class engine : public Conformance {
 protected:
  engine() {
    m_session->CreateCatalog({"P", {}, 0}, {});
    m_catalog = Find("P");
    RunSql("CREATE TABLE \"P\".\"T\" (a INTEGER)");
  }
  engines::Catalog Find(const Text& sName) {
    const auto catalogs = m_session->Catalogs({});
    const auto found = std::ranges::find(catalogs, sName, &engines::Catalog::sName);
    if (found == catalogs.end()) throw std::runtime_error("no catalog " + sName);
    return *found;
  }
  EngineStatement Statement(const Text& sSql) {
    EngineStatement statement;
    statement.sSql = sSql;
    statement.catalogs = {m_catalog};
    return statement;
  }
  engines::EngineResult RunSql(const Text& sSql) { return m_session->Run(Statement(sSql), {}); }
  Text RunFails(const EngineStatement& statement, std::stop_token stop = {}) {
    return FailureOf([&] { m_session->Run(statement, std::move(stop)); });
  }
  Text Count() { return Rows(*RunSql("SELECT count(*) FROM \"P\".\"T\"").recordset); }

  std::shared_ptr<engines::Engine> m_engine = m_server->Engine();
  std::unique_ptr<engines::EngineSession> m_session =
      m_engine->Open({m_server->DataSource(), m_server->User()}, m_server->Password(), {});
  engines::Catalog m_catalog;
  std::shared_ptr<ScriptedRows> m_rows = std::make_shared<ScriptedRows>();
};

ORVANE_ON_EVERY_ENGINE(engine);

constexpr const char* kInsert = "INSERT INTO \"P\".\"T\" VALUES (1) RETURNING a";

TEST_P(engine, serves_its_own_data_source) {
  EXPECT_TRUE(m_engine->Serves(m_server->DataSource()));
}

TEST_P(engine, asks_once_before_a_change_is_made_for_good) {
  auto insert = Statement(kInsert);
  int nAsked = 0;
  insert.mayCommit = [&] {
    ++nAsked;
    return false;
  };
  EXPECT_EQ(RunFails(insert), "3712: The statement was cancelled.");
  EXPECT_EQ(nAsked, 1);
  EXPECT_EQ(Count(), "0\n");
  insert.mayCommit = [&] { return ++nAsked == 2; };
  EXPECT_EQ(m_session->Run(insert, {}).lRecordsAffected, 1);
  EXPECT_EQ(nAsked, 2);
  EXPECT_EQ(Count(), "1\n");
}

TEST_P(engine, hands_all_rows_over_before_a_change_is_made_for_good) {
  auto insert = Statement(kInsert);
  insert.rows = m_rows;
  std::stop_source stop;
  m_rows->onEnd = [&] { stop.request_stop(); };
  EXPECT_EQ(RunFails(insert, stop.get_token()), "3712: The statement was cancelled.");
  m_rows = std::make_shared<ScriptedRows>();
  insert.rows = m_rows;
  m_rows->onTake = [] { throw platform::Failure(3807, "There is no room."); };
  EXPECT_EQ(RunFails(insert), "3807: There is no room.");
  m_rows = std::make_shared<ScriptedRows>();
  insert.rows = m_rows;
  m_rows->onEnd = [] { throw platform::Failure(3807, "There is no room."); };
  EXPECT_EQ(RunFails(insert), "3807: There is no room.");
  EXPECT_EQ(Count(), "0\n");
}

TEST_P(engine, tells_who_takes_rows_whether_they_are_of_a_change) {
  for (const bool bReads : {false, true}) {
    m_rows = std::make_shared<ScriptedRows>();
    auto statement = Statement(bReads ? "SELECT a FROM \"P\".\"T\"" : kInsert);
    statement.rows = m_rows;
    EXPECT_EQ(m_session->Run(statement, {}).recordset, nullptr);
    EXPECT_EQ(m_rows->bReads, bReads);
    EXPECT_EQ(Rows(*m_rows->Recordset()), "1\n");
  }
}

TEST_P(engine, hands_rows_over_in_blocks) {
  auto numbers = Statement(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 20000) SELECT i "
      "FROM n");
  numbers.rows = m_rows;
  m_session->Run(numbers, {});
  EXPECT_GT(m_rows->blocks.size(), 1U);
  for (const auto count : m_rows->blocks) {
    EXPECT_LE(count, static_cast<platform::RowIndex>(ado::kRowsInBlock));
  }
  EXPECT_EQ(std::accumulate(m_rows->blocks.begin(), m_rows->blocks.end(), platform::RowIndex{0}),
            20'000);
  EXPECT_FALSE(m_rows->Recordset()->Truncated());
}

TEST_P(engine, runs_one_statement_and_no_transaction_of_the_statements_own) {
  RunSql(kInsert);
  EXPECT_EQ(RunFails(Statement("SELECT 1; DELETE FROM \"P\".\"T\"")).substr(0, 4), "3805");
  EXPECT_EQ(RunFails(Statement("")).substr(0, 4), "3805");
  for (const char* const sSql : {"BEGIN", "COMMIT", "ROLLBACK", "SAVEPOINT s"}) {
    EXPECT_EQ(RunFails(Statement(sSql)).substr(0, 4), "3808") << sSql;
  }
  EXPECT_EQ(Count(), "1\n");
}

TEST_P(engine, changes_nothing_where_it_is_only_to_read) {
  RunSql(kInsert);
  auto change = Statement("DELETE FROM \"P\".\"T\"");
  change.bReadOnly = true;
  EXPECT_EQ(RunFails(change).substr(0, 4), "3811");
  change.bReadOnly = false;
  change.catalogs.front().bReadOnly = true;
  EXPECT_NE(RunFails(change), "no failure");
  EXPECT_EQ(Count(), "1\n");
}

TEST_P(engine, keeps_the_statement_apart_from_what_it_fails_with) {
  try {
    RunSql("SELECT nothing FROM \"P\".\"T\"");
    ADD_FAILURE() << "no failure";
  } catch (const platform::Failure& failed) {
    EXPECT_EQ(failed.Number(), platform::failure::kSqlError);
    EXPECT_EQ(failed.SqlText(), "SELECT nothing FROM \"P\".\"T\"");
    EXPECT_EQ(failed.Description().find("FROM"), Text::npos) << failed.Description();
  }
}

TEST_P(engine, calls_functions_that_a_statement_brings_where_it_says_so) {
  if (!m_session->Can().bStatementFunctions) {
    EXPECT_NE(RunFails(Statement("SELECT twice(4)")), "no failure");
    return;
  }
  auto statement = Statement("SELECT twice(4)");
  statement.functions = {
      {"twice", [](const Value& vt) -> Value { return std::int64_t{2} * platform::ToLong(vt); }}};
  EXPECT_EQ(Rows(*m_session->Run(statement, {}).recordset), "8\n");
  statement.functions.front().call = [](const Value&) -> Value {
    throw platform::Failure(3805, "Not twice.");
  };
  EXPECT_EQ(RunFails(statement), "3805: Not twice.");
  EXPECT_EQ(RunFails(Statement("SELECT twice(4)")).substr(0, 4), "3805") << "it is gone again";
}

TEST_P(engine, lists_catalogs_by_their_folded_names_and_marks_its_own) {
  m_session->CreateCatalog({"a", {}, 0}, {});
  m_session->CreateCatalog({"Z", {}, 0}, {});
  Text sNames;
  for (const auto& catalog : m_session->Catalogs({})) {
    sNames += catalog.sName + " ";
    EXPECT_EQ(catalog.bSystem, catalog.sName == "Orvane" || catalog.sName == "Functions");
    EXPECT_EQ(catalog.sIdentity.empty(), catalog.bSystem) << catalog.sName;
  }
  EXPECT_EQ(sNames, "a Functions Orvane P Z ");
  EXPECT_EQ(FailureOf([&] { m_session->DropCatalog("Orvane", {}); }).substr(0, 2), "5:");
  EXPECT_EQ(FailureOf([&] { m_session->DropCatalog("nowhere", {}); }).substr(0, 2), "5:");
  EXPECT_EQ(FailureOf([&] { m_session->CreateCatalog({"Z", {}, 0}, {}); }).substr(0, 4), "457:");
}

TEST_P(engine, describes_what_is_asked_for_and_no_more) {
  RunSql("CREATE TABLE \"P\".\"Odd\" (b INT NOT NULL, a INT DEFAULT 7, PRIMARY KEY (b))");
  // What a view reads lies in its own catalog and is named without it.
  RunSql("CREATE VIEW \"P\".\"V\" AS SELECT a FROM \"Odd\"");
  const auto describe = [&](const engines::SchemaRequest& request) {
    return m_session->Schema(m_catalog, request, {});
  };
  Text sNames;
  for (const auto& table : describe({std::nullopt, false})) {
    sNames += table.sName + (table.bView ? "(view) " : " ");
    EXPECT_TRUE(table.columns.empty()) << table.sName;
    EXPECT_TRUE(table.indexes.empty()) << table.sName;
  }
  EXPECT_EQ(sNames, "Data Data2 Odd T Tags V(view) ");
  const auto one = describe({"ODD", true, true});
  ASSERT_EQ(one.size(), 1U);
  ASSERT_EQ(one[0].columns.size(), 2U);
  EXPECT_EQ(one[0].columns[0].sName, "b");
  EXPECT_EQ(one[0].columns[0].type, DataType::Integer);
  EXPECT_FALSE(one[0].columns[0].bNullable);
  EXPECT_EQ(one[0].columns[0].lKeyOrdinal, 1);
  EXPECT_TRUE(one[0].columns[1].bNullable);
  EXPECT_EQ(one[0].columns[1].sDefault, "7");
  ASSERT_EQ(one[0].indexes.size(), 1U);
  EXPECT_TRUE(one[0].indexes[0].bPrimaryKey);
  EXPECT_TRUE(describe({"Od", true}).empty());
  std::stop_source stop;
  stop.request_stop();
  EXPECT_EQ(FailureOf([&] { m_session->Schema(m_catalog, {}, stop.get_token()); }).substr(0, 4),
            "3712");
}

TEST_P(engine, has_one_best_match_for_each_of_its_types) {
  std::set<DataType> all;
  std::set<DataType> best;
  for (const auto& type : m_session->Types()) {
    all.insert(type.type);
    if (!type.bBestMatch) continue;
    EXPECT_TRUE(best.insert(type.type).second) << type.sName;
  }
  EXPECT_EQ(best, all);
}

TEST_P(engine, does_nothing_any_more_when_its_session_is_closed) {
  m_session->Close();
  m_session->Close();
  const Text sClosed = "3704: The connection is closed; connect again.";
  EXPECT_EQ(RunFails(Statement("SELECT 1")), sClosed);
  EXPECT_EQ(FailureOf([&] { m_session->Catalogs({}); }), sClosed);
  EXPECT_EQ(FailureOf([&] { m_session->Schema(m_catalog, {}, {}); }), sClosed);
  EXPECT_EQ(FailureOf([&] { m_session->CreateCatalog({"Q", {}, 0}, {}); }), sClosed);
  EXPECT_EQ(FailureOf([&] { m_session->DropCatalog("P", {}); }), sClosed);
  EXPECT_FALSE(m_session->Types().empty());
}

}  // namespace
}  // namespace orvane::provider::conformance
