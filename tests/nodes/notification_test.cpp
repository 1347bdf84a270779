// The way of a change from where it happens up to the owner of the root.
#include "tests/nodes/model.h"

namespace orvane::nodes {
namespace {

using platform::Long;
using platform::Text;

using notification = Model;

TEST_F(notification, each_setting_of_the_root_tells_the_owner_once) {
  EXPECT_EQ(ChangesDuring([&] { root->MaxRows(5); }), 1);
  EXPECT_EQ(ChangesDuring([&] { root->QueryTimeout(5); }), 1);
  EXPECT_EQ(ChangesDuring([&] { root->SetDefaultTimeRange("y", "t"); }), 1);
  EXPECT_EQ(ChangesDuring([&] { root->SqlStatements(false); }), 1);
  EXPECT_EQ(ChangesDuring([&] { root->Context(true); }), 1);
}

TEST_F(notification, an_equal_value_is_a_change_too) {
  EXPECT_EQ(ChangesDuring([&] { root->MaxRows(root->MaxRows()); }), 1);
  const auto server = AddServer("S1");
  EXPECT_EQ(ChangesDuring([&] { server->User(Text(server->User())); }), 1);
}

TEST_F(notification, each_setting_of_a_server_tells_the_owner_once) {
  const auto server = AddServer("S1");
  EXPECT_EQ(ChangesDuring([&] { server->Provider("P"); }), 1);
  EXPECT_EQ(ChangesDuring([&] { server->Server("S9"); }), 1);
  EXPECT_EQ(ChangesDuring([&] { server->User("U"); }), 1);
  EXPECT_EQ(ChangesDuring([&] { server->ExtendedOptions("X=1;"); }), 1);
}

TEST_F(notification, settings_of_catalogs_tables_and_queries_reach_the_owner) {
  const auto server = AddServer("S1");
  const auto catalog = server->CatalogNodes()->Add("C");
  const auto table = catalog->TableNodes()->Add("T");
  const auto query = server->QueryNodes()->Add("Q", "SELECT 1");
  EXPECT_EQ(ChangesDuring([&] { catalog->Catalog("D"); }), 1);
  EXPECT_EQ(ChangesDuring([&] { table->DefaultFilterCondition(false); }), 1);
  EXPECT_EQ(ChangesDuring([&] { query->QueryName("R"); }), 1);
  EXPECT_EQ(ChangesDuring([&] { query->Query("SELECT 2"); }), 1);
}

TEST_F(notification, a_change_of_a_tables_query_reaches_the_owner) {
  const auto table = AddServer("S1")->CatalogNodes()->Add("C")->TableNodes()->Add("T");
  EXPECT_EQ(ChangesDuring([&] { table->Query()->MaxRows(3); }), 1);
  EXPECT_EQ(ChangesDuring([&] { table->Query()->Columns().Add("Name"); }), 1);
  EXPECT_EQ(ChangesDuring([&] { table->Query()->FilterCondition("x > 1"); }), 1);
}

TEST_F(notification, what_is_not_saved_changes_silently) {
  const auto server = AddServer("S1");
  const auto catalog = server->CatalogNodes()->Add("C");
  const auto table = catalog->TableNodes()->Add("T");
  const auto query = server->QueryNodes()->Add("Q", "SELECT 1");
  EXPECT_EQ(ChangesDuring([&] {
              server->Connection(objects->CreateConnection());
              server->Connection(nullptr);
              server->ParentServersNode(root);
              table->SetRecordset(Rows(), 1);
              query->Recordset(Rows());
              catalog->ParentServerNode(server);
              table->ParentCatalogNode(catalog);
              query->ParentServerNode(server);
            }),
            0);
}

TEST_F(notification, adding_and_removing_tell_the_owner_once_each) {
  const auto server = ServerNode::Create(objects);
  server->Server("S1");
  EXPECT_EQ(ChangesDuring([&] { root->ServerNodes()->Add(server); }), 1);
  EXPECT_EQ(ChangesDuring([&] { server->CatalogNodes()->Add("C"); }), 1);
  const auto catalog = server->CatalogNodes()->Item("C");
  EXPECT_EQ(ChangesDuring([&] { catalog->TableNodes()->Add("T"); }), 1);
  EXPECT_EQ(ChangesDuring([&] { server->QueryNodes()->Add("Q", "SELECT 1"); }), 1);
  EXPECT_EQ(ChangesDuring([&] { server->QueryNodes()->Remove("Q"); }), 1);
  EXPECT_EQ(ChangesDuring([&] { catalog->TableNodes()->Remove(Long{1}); }), 1);
  EXPECT_EQ(ChangesDuring([&] { server->CatalogNodes()->Remove("c"); }), 1);
  EXPECT_EQ(ChangesDuring([&] { root->ServerNodes()->Remove("s1"); }), 1);
}

TEST_F(notification, a_failed_removal_tells_nobody) {
  AddServer("S1");
  EXPECT_EQ(ChangesDuring([&] {
              EXPECT_EQ(FailureOf([&] { root->ServerNodes()->Remove("S9"); }), 5);
              EXPECT_EQ(FailureOf([&] { root->ServerNodes()->Remove(Long{2}); }), 9);
            }),
            0);
}

TEST_F(notification, a_failed_addition_tells_nobody) {
  const auto server = AddServer("S1");
  server->CatalogNodes()->Add("C");
  EXPECT_EQ(
      ChangesDuring([&] { EXPECT_EQ(FailureOf([&] { server->CatalogNodes()->Add("c"); }), 457); }),
      0);
}

TEST_F(notification, nodes_outside_the_tree_change_freely) {
  const auto server = ServerNode::Create(objects);
  const auto table = TableNode::Create(objects);
  QueryNode query;
  EXPECT_EQ(ChangesDuring([&] {
              server->Server("S1");
              server->CatalogNodes()->Add("C")->TableNodes()->Add("T");
              server->QueryNodes()->Add("Q", "");
              table->Query()->Table("T");
              table->DefaultFilterCondition(false);
              query.QueryName("Q");
            }),
            0);
  EXPECT_EQ(server->Server(), "S1");
  EXPECT_EQ(query.QueryName(), "Q");
}

TEST_F(notification, a_root_without_an_owner_changes_freely) {
  root->Parent(nullptr);
  EXPECT_EQ(ChangesDuring([&] { root->MaxRows(1); }), 0);
  EXPECT_EQ(root->MaxRows(), 1);
}

TEST_F(notification, goes_up_through_the_collections_and_not_through_the_direct_links) {
  const auto server = AddServer("S1");
  const auto query = std::make_shared<QueryNode>();
  query->ParentServerNode(server);
  EXPECT_EQ(ChangesDuring([&] { query->QueryName("Q"); }), 0);
  query->Parent(server->QueryNodes());
  query->ParentServerNode(nullptr);
  EXPECT_EQ(ChangesDuring([&] { query->QueryName("R"); }), 1);
}

TEST_F(notification, a_removed_node_still_tells_its_former_collection) {
  const auto server = AddServer("S1");
  const auto query = server->QueryNodes()->Add("Q", "SELECT 1");
  server->QueryNodes()->Remove("Q");
  EXPECT_EQ(query->ParentServerNode(), server);
  EXPECT_EQ(ChangesDuring([&] { query->Query("SELECT 2"); }), 1);
}

TEST_F(notification, a_failure_of_the_owner_reaches_whoever_set_the_field) {
  class Refusing : public ServersNodeOwner {
   public:
    void ServersNodeChanged() override { throw platform::Failure(5, "No changes now."); }
  };
  const auto server = AddServer("S1");
  const auto refusing = std::make_shared<Refusing>();
  root->Parent(refusing);
  EXPECT_EQ(FailureOf([&] { server->User("U"); }), 5);
  EXPECT_EQ(server->User(), "U");
}

}  // namespace
}  // namespace orvane::nodes
