// Who keeps whom alive, and in which order a tree comes down.
#include "nodes/counted.h"
#include "tests/nodes/model.h"

namespace orvane::nodes {
namespace {

using platform::Long;

using platform::Text;

using Log = std::vector<Text>;

/// Rows that write down their end.
class LoggingRows : public fakes::FakeRecordset {
 public:
  LoggingRows(Log& log, Text sName)
      : FakeRecordset({{"Name"}}, {}), m_log(log), m_sName(std::move(sName)) {}
  ~LoggingRows() override { m_log.push_back("rows of " + m_sName); }

 private:
  Log& m_log;
  Text m_sName;
};

/// A table query that writes down its end.
class LoggingTableQuery : public fakes::FakeTableQuery {
 public:
  explicit LoggingTableQuery(Log& log) : m_log(log) {}
  ~LoggingTableQuery() override { m_log.push_back("query of " + Table()); }

 private:
  Log& m_log;
};

/// Data access whose table queries write down their end.
class LoggingObjects : public fakes::FakeObjects {
 public:
  LoggingObjects(fakes::FakeHistorianPtr historian, Log& log)
      : FakeObjects(std::move(historian)), m_log(log) {}
  platform::TableQueryPtr CreateTableQuery() override {
    return std::make_shared<LoggingTableQuery>(m_log);
  }

 private:
  Log& m_log;
};

class lifetime : public Model {
 protected:
  std::shared_ptr<LoggingRows> RowsOf(const Text& sName) {
    return std::make_shared<LoggingRows>(log, sName);
  }
  Log log;
};

TEST_F(lifetime, nothing_is_kept_alive_by_a_back_reference) {
  const Long lBefore = Counted::Alive();
  {
    const auto other = ServersNode::Create(objects);
    const auto server = ServerNode::Create(objects);
    other->ServerNodes()->Add(server);
    server->CatalogNodes()->Add("C")->TableNodes()->Add("T");
    server->QueryNodes()->Add("Q", "");
    EXPECT_GT(Counted::Alive(), lBefore);
  }
  EXPECT_EQ(Counted::Alive(), lBefore);
}

TEST_F(lifetime, nodes_held_beyond_their_tree_have_no_parents_and_change_freely) {
  const auto server = AddServer("S1");
  const auto catalog = server->CatalogNodes()->Add("C");
  const auto table = catalog->TableNodes()->Add("T");
  root.reset();
  EXPECT_EQ(server->ParentServersNode(), nullptr);
  EXPECT_EQ(ChangesDuring([&] {
              server->User("U");
              table->Query()->Table("T2");
            }),
            0);
  EXPECT_EQ(table->ParentCatalogNode(), catalog);
}

TEST_F(lifetime, a_collection_held_beyond_its_node_works_on_without_an_owner) {
  const auto servers = root->ServerNodes();
  AddServer("S1");
  root.reset();
  servers->Remove("S1");
  EXPECT_EQ(servers->Count(), 0);
  const auto server = ServerNode::Create(objects);
  servers->Add(server);
  EXPECT_EQ(server->ParentServersNode(), nullptr);
}

TEST_F(lifetime, a_table_query_held_beyond_its_node_tells_nobody) {
  auto table = AddServer("S1")->CatalogNodes()->Add("C")->TableNodes()->Add("T");
  const auto query = table->Query();
  table->ParentCatalogNode()->TableNodes()->Remove("T");
  table.reset();
  EXPECT_EQ(ChangesDuring([&] { query->MaxRows(1); }), 0);
}

TEST_F(lifetime, an_owner_that_is_gone_is_not_told) {
  owner.reset();
  root->MaxRows(3);
  EXPECT_EQ(root->MaxRows(), 3);
}

TEST_F(lifetime, a_dying_server_disconnects_before_it_drops_its_lists) {
  auto server = ServerNode::Create(objects);
  server->Server("S1");
  server->Connect();
  server->CatalogNodes()->Add("C")->TableNodes()->Add("T");
  std::weak_ptr<CatalogNodesCollection> catalogs = server->CatalogNodes();
  std::weak_ptr<QueryNodesCollection> queries = server->QueryNodes();
  bool bListsAlive = false;
  historian->onClose = [&](const platform::Text&) {
    bListsAlive = !catalogs.expired() && !queries.expired();
  };
  server.reset();
  EXPECT_EQ(historian->log.back(), "Close");
  EXPECT_TRUE(bListsAlive);
  EXPECT_TRUE(catalogs.expired());
  EXPECT_TRUE(queries.expired());
}

TEST_F(lifetime, a_dying_server_drops_its_catalogs_first_and_a_table_its_query_before_its_rows) {
  auto server = ServerNode::Create(std::make_shared<LoggingObjects>(historian, log));
  server->QueryNodes()->Add("Q", "SELECT 1")->Recordset(RowsOf("Q"));
  server->CatalogNodes()->Add("C")->TableNodes()->Add("T")->SetRecordset(RowsOf("T"), 1);
  EXPECT_TRUE(log.empty());
  server.reset();
  EXPECT_EQ(log, (Log{"query of T", "rows of T", "rows of Q"}));
}

TEST_F(lifetime, cached_rows_are_released_in_the_order_of_the_catalogs_and_tables) {
  const auto server = AddServer("S1");
  for (const char* sCatalog : {"C2", "C1"}) {
    const auto tables = server->CatalogNodes()->Add(sCatalog)->TableNodes();
    for (const char* sTable : {"T2", "T1"}) {
      tables->Add(sTable)->SetRecordset(RowsOf(Text(sCatalog) + "." + sTable), 1);
    }
  }
  server->ReleaseCachedRecordsets();
  EXPECT_EQ(log, (Log{"rows of C2.T2", "rows of C2.T1", "rows of C1.T2", "rows of C1.T1"}));
}

TEST_F(lifetime, a_failing_close_does_not_escape_a_dying_server) {
  auto server = ServerNode::Create(objects);
  server->Server("S1");
  server->Connect();
  std::weak_ptr<platform::Connection> connection = server->Connection();
  historian->bFailClose = true;
  server.reset();
  EXPECT_EQ(historian->log.back(), "Close");
  EXPECT_TRUE(connection.expired());
}

TEST_F(lifetime, nothing_leaves_the_end_of_a_server_whatever_closing_throws) {
  auto server = ServerNode::Create(objects);
  server->Server("S1");
  server->Connect();
  std::weak_ptr<platform::Connection> connection = server->Connection();
  historian->onClose = [](const Text&) { throw 5; };
  server.reset();
  EXPECT_EQ(historian->log.back(), "Close");
  EXPECT_TRUE(connection.expired());
}

TEST_F(lifetime, removing_a_connected_server_closes_its_connection_with_the_last_reference) {
  auto server = AddServer("S1");
  server->Connect();
  root->ServerNodes()->Remove("S1");
  EXPECT_NE(historian->log.back(), "Close");
  server.reset();
  EXPECT_EQ(historian->log.back(), "Close");
}

TEST_F(lifetime, a_node_may_be_dropped_within_its_own_notification) {
  class Dropping : public ServersNodeOwner {
   public:
    void ServersNodeChanged() override { table.reset(); }
    TableNodePtr table;
  };
  const auto dropping = std::make_shared<Dropping>();
  const auto catalog = AddServer("S1")->CatalogNodes()->Add("C");
  dropping->table = catalog->TableNodes()->Add("T");
  const std::weak_ptr<TableNode> watched = dropping->table;
  catalog->TableNodes()->Remove("T");
  root->Parent(dropping);
  const auto query = dropping->table->Query();
  query->MaxRows(1);
  EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace orvane::nodes
