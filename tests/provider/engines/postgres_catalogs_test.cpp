#include <thread>

#include "provider/engines/postgres/postgres_engine.h"
#include "tests/provider/engines/postgres_fixture.h"

namespace orvane::provider::engines {
namespace {

using platform::Text;
using platform::Value;
using testing::HasSubstr;
using tests::FailureOf;
namespace failure = platform::failure;

class PostgresCatalogsTest : public tests::PostgresTest {
 protected:
  ~PostgresCatalogsTest() override {
    Do("DROP SCHEMA IF EXISTS plant CASCADE");
    Do("DROP SCHEMA IF EXISTS \"other \"\" one\" CASCADE");
  }
  tests::Told Creating(const NewCatalog& catalog) {
    return FailureOf([&] { m_session->CreateCatalog(catalog, {}); });
  }
  tests::Told Dropping(const Text& sName) {
    return FailureOf([&] { m_session->DropCatalog(sName, {}); });
  }
  bool IsThere(const Text& sName) {
    for (const Catalog& catalog : m_other->Catalogs({})) {
      if (catalog.sName == sName) return true;
    }
    return false;
  }
};

TEST_F(PostgresCatalogsTest, are_the_schemas_without_the_servers_and_with_the_historians_own) {
  Do("COMMENT ON SCHEMA s IS 'what it is for'");
  std::vector<Text> names;
  for (const Catalog& catalog : m_session->Catalogs({})) {
    names.push_back(catalog.sName + (catalog.bSystem ? " (own)" : "") +
                    (catalog.sDescription == "what it is for" ? " described" : ""));
  }
  EXPECT_THAT(names,
              testing::ElementsAre("Functions (own)", "Orvane (own)", "public", "s described"));
}

TEST_F(PostgresCatalogsTest, are_made_with_their_first_tables) {
  EXPECT_EQ(Creating({"plant", {}}), tests::Told());
  EXPECT_TRUE(IsThere("plant"));
  EXPECT_EQ(Do("INSERT INTO plant.\"Data\" VALUES ('T1', now(), 1.5)").lRecordsAffected, 1);
  const auto tables = m_session->Schema({"plant", {}}, {{}, true, true}, {});
  ASSERT_EQ(tables.size(), 3U);
  EXPECT_EQ(tables[0].sName, "Data");
  EXPECT_EQ(tables[1].sName, "Data2");
  EXPECT_EQ(tables[2].sName, "Tags");
  EXPECT_EQ(tables[0].indexes.size(), 2U);
}

TEST_F(PostgresCatalogsTest, have_any_name_that_the_server_keeps) {
  // By hand only.
  EXPECT_EQ(Creating({"other \" one", {}}).lNumber, failure::kInvalidArgument);
  Do("CREATE SCHEMA \"other \"\" one\"");
  EXPECT_TRUE(IsThere("other \" one"));
  EXPECT_EQ(Dropping("other \" one"), tests::Told());
  EXPECT_FALSE(IsThere("other \" one"));
  EXPECT_EQ(Creating({"", {}}).sSentence, "A catalog needs a name; enter one.");
  EXPECT_THAT(Creating({Text(64, 'x'), {}}).sSentence, HasSubstr("is longer than the 63 bytes"));
  EXPECT_EQ(
      Creating({"S", {}}),
      (tests::Told{failure::kKeyExists, "There is a catalog \"s\" already; choose another name."}));
  EXPECT_THAT(Creating({"pg_mine", {}}).sSentence, HasSubstr("unacceptable schema name"));
}

TEST_F(PostgresCatalogsTest, have_records_in_a_database_with_a_historian) {
  const Text sAddress = tests::PostgresCluster::Get().Address();
  const auto identities = [](Session& session) {
    std::vector<Text> all;
    for (const Catalog& catalog : session.Catalogs({})) {
      if (!catalog.bSystem) all.push_back(catalog.sName + catalog.sIdentity);
    }
    return all;
  };
  const auto before = identities(*m_session);
  PostgresEngine().MakeHistorian({sAddress, {}}, {}, {});
  PostgresEngine().MakeHistorian({sAddress, {}}, {}, {});
  const auto session = Open();
  EXPECT_EQ(identities(*session), before) << "what there is keeps its identity";
  session->CreateCatalog({"plant", {}, 0}, {});
  const auto created = Stored(
      "SELECT \"Created\" > now() - interval '1 h' FROM \"Orvane\".\"Historians\" WHERE "
      "\"Name\" = 'plant'");
  EXPECT_EQ(created, Value(true));
  // A reader sees the records and needs no right to change them.
  Do("DROP ROLE IF EXISTS maker");
  Do("CREATE ROLE maker LOGIN");
  Do("GRANT CREATE ON DATABASE postgres TO maker");
  const auto maker = Open(sAddress, "maker");
  EXPECT_EQ(identities(*maker), identities(*session));
  maker->CreateCatalog({"mine", {}, 0}, {});
  maker->DropCatalog("mine", {});
  session->DropCatalog("plant", {});
  EXPECT_EQ(Stored("SELECT count(*) FROM \"Orvane\".\"Historians\" WHERE \"Name\" = 'plant'"),
            Value(std::int64_t{0}));
  Do("REVOKE CREATE ON DATABASE postgres FROM maker");
  Do("DROP ROLE maker");
  Do("DROP SCHEMA \"Orvane\" CASCADE");
}

// A server that has its statements done before it hears of the stop: it waits in the last one, and
// takes the cancelling for nothing.
TEST_F(PostgresCatalogsTest, are_not_made_or_dropped_when_a_stop_comes_behind_the_last_statement) {
  Do("CREATE FUNCTION s.waits() RETURNS event_trigger LANGUAGE plpgsql AS $$ BEGIN "
     "PERFORM pg_catalog.pg_sleep(600); EXCEPTION WHEN query_canceled THEN END $$");
  Do("CREATE FUNCTION s.waits_at_last() RETURNS event_trigger LANGUAGE plpgsql AS $$ BEGIN "
     "PERFORM pg_catalog.pg_sleep(600) FROM pg_catalog.pg_event_trigger_ddl_commands() WHERE "
     "object_identity LIKE '%Data2ByTime%'; EXCEPTION WHEN query_canceled THEN END $$");
  const auto stopped = [&](const auto& act) {
    std::stop_source stop;
    std::thread stops([&] {
      const Text sWaiting =
          "SELECT count(*) FROM pg_stat_activity WHERE wait_event = 'PgSleep' AND datname = "
          "current_database()";
      while (Stored(sWaiting) == Value(std::int64_t{0})) std::this_thread::yield();
      stop.request_stop();
    });
    const auto told = FailureOf([&] { act(stop.get_token()); });
    stops.join();
    EXPECT_EQ(told, (tests::Told{failure::kCancelled, "The statement was cancelled."}));
  };
  Do("CREATE EVENT TRIGGER waits ON ddl_command_end WHEN TAG IN ('CREATE INDEX') EXECUTE FUNCTION "
     "s.waits_at_last()");
  stopped([&](const std::stop_token& stop) { m_session->CreateCatalog({"plant", {}}, stop); });
  Do("DROP EVENT TRIGGER waits");
  EXPECT_FALSE(IsThere("plant"));
  EXPECT_EQ(Creating({"plant", {}}), tests::Told());
  Do("CREATE EVENT TRIGGER waits ON sql_drop EXECUTE FUNCTION s.waits()");
  stopped([&](const std::stop_token& stop) { m_session->DropCatalog("plant", stop); });
  // It would wait for its own end.
  Do("ALTER EVENT TRIGGER waits DISABLE");
  Do("DROP EVENT TRIGGER waits");
  EXPECT_TRUE(IsThere("plant"));
}

TEST_F(PostgresCatalogsTest, lie_where_the_servers_administrator_chose) {
  EXPECT_EQ(Creating({"plant", "/tmp"}),
            (tests::Told{failure::kNotSupported,
                         "The server keeps its catalogs where its administrator chose; leave the "
                         "path out."}));
  EXPECT_EQ(Creating({"plant", {}, 1024}),
            (tests::Told{failure::kNotSupported,
                         "The server limits no catalog's size; leave the size out."}));
  EXPECT_FALSE(IsThere("plant"));
}

TEST_F(PostgresCatalogsTest, are_dropped_with_all_that_is_in_them_and_nothing_else) {
  Do("CREATE TABLE s.t(a int PRIMARY KEY)");
  Do("CREATE VIEW s.v AS SELECT * FROM s.t");
  EXPECT_EQ(Creating({"plant", {}}), tests::Told());
  Do("CREATE VIEW plant.w AS SELECT * FROM s.t");
  EXPECT_EQ(Dropping("s"),
            (tests::Told{failure::kBusy,
                         "The catalog \"s\" is used by plant.w, which is in another one; drop that "
                         "first."}));
  Do("DROP VIEW plant.w");
  Do("CREATE TABLE plant.k(a int REFERENCES s.t)");
  EXPECT_THAT(Dropping("s").sSentence, HasSubstr("is used by plant.k"));
  EXPECT_TRUE(IsThere("s"));
  Do("DROP TABLE plant.k");
  EXPECT_EQ(Dropping("s"), tests::Told());
  EXPECT_FALSE(IsThere("s"));
  EXPECT_EQ(Dropping("nowhere").lNumber, failure::kInvalidArgument);
  EXPECT_EQ(Dropping("pg_catalog").lNumber, failure::kInvalidArgument);
  EXPECT_EQ(Dropping("Orvane").sSentence,
            "The catalog Orvane belongs to the historian itself and cannot be dropped; choose "
            "another one.");
}

}  // namespace
}  // namespace orvane::provider::engines
