// Who keeps whom alive, and in which order a tree comes down.
#include "nodes/counted.h"
#include "tests/nodes/model.h"

namespace orvane::nodes {
namespace {

using platform::Long;

using lifetime = Model;

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
