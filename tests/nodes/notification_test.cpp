// The way of a change from where it happens up to the owner of the root.
#include <functional>
#include <vector>

#include "tests/nodes/model.h"

namespace orvane::nodes {
namespace {

using platform::Long;
using platform::Text;

class notification : public Model {
 protected:
  /// The owner is told once by the step, and once more when the value is no longer new.
  template <class Step>
  void ExpectToldEachTime(const char* sSetting, Step&& step) {
    EXPECT_EQ(ChangesDuring(step), 1) << sSetting;
    EXPECT_EQ(ChangesDuring(step), 1) << sSetting << " to the value that it has";
  }
};

/// An owner that does something of its own when it is told.
class ActingOwner : public ServersNodeOwner {
 public:
  void ServersNodeChanged() override {
    if (act) act();
  }
  std::function<void()> act;
};

TEST_F(notification, each_setting_of_the_root_tells_the_owner_once_whatever_its_value) {
  ExpectToldEachTime("MaxRows", [&] { root->MaxRows(5); });
  ExpectToldEachTime("QueryTimeout", [&] { root->QueryTimeout(5); });
  ExpectToldEachTime("SetDefaultTimeRange", [&] { root->SetDefaultTimeRange("y", "t"); });
  ExpectToldEachTime("SqlStatements", [&] { root->SqlStatements(false); });
  ExpectToldEachTime("Context", [&] { root->Context(true); });
}

TEST_F(notification, each_setting_of_a_server_tells_the_owner_once_whatever_its_value) {
  const auto server = AddServer("S1");
  ExpectToldEachTime("Provider", [&] { server->Provider("P"); });
  ExpectToldEachTime("Server", [&] { server->Server("S9"); });
  ExpectToldEachTime("User", [&] { server->User("U"); });
  ExpectToldEachTime("ExtendedOptions", [&] { server->ExtendedOptions("X=1;"); });
}

TEST_F(notification, settings_of_catalogs_tables_and_queries_reach_it_whatever_their_value) {
  const auto server = AddServer("S1");
  const auto catalog = server->CatalogNodes()->Add("C");
  const auto table = catalog->TableNodes()->Add("T");
  const auto query = server->QueryNodes()->Add("Q", "SELECT 1");
  ExpectToldEachTime("Catalog", [&] { catalog->Catalog("D"); });
  ExpectToldEachTime("DefaultFilterCondition", [&] { table->DefaultFilterCondition(false); });
  ExpectToldEachTime("QueryName", [&] { query->QueryName("R"); });
  ExpectToldEachTime("Query", [&] { query->Query("SELECT 2"); });
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

TEST_F(notification, is_sent_when_a_new_node_is_filed_and_knows_what_is_above_it) {
  const auto acting = std::make_shared<ActingOwner>();
  root->Parent(acting);
  const auto server = ServerNode::Create(objects);
  server->Server("S1");
  int nSeen = 0;
  acting->act = [&] {
    ++nSeen;
    EXPECT_EQ(root->ServerNodes()->Count(), 1);
    EXPECT_EQ(root->ServerNodes()->Item("S1"), server);
    EXPECT_EQ(server->ParentServersNode(), root);
  };
  root->ServerNodes()->Add(server);
  acting->act = [&] {
    ++nSeen;
    ASSERT_EQ(server->CatalogNodes()->Count(), 1);
    EXPECT_EQ(server->CatalogNodes()->Item("C")->ParentServerNode(), server);
  };
  const auto catalog = server->CatalogNodes()->Add("C");
  acting->act = [&] {
    ++nSeen;
    ASSERT_EQ(catalog->TableNodes()->Count(), 1);
    EXPECT_EQ(catalog->TableNodes()->Item("T")->ParentCatalogNode(), catalog);
  };
  catalog->TableNodes()->Add("T");
  acting->act = [&] {
    ++nSeen;
    ASSERT_EQ(server->QueryNodes()->Count(), 1);
    EXPECT_EQ(server->QueryNodes()->Item("Q")->ParentServerNode(), server);
  };
  server->QueryNodes()->Add("Q", "SELECT 1");
  EXPECT_EQ(nSeen, 4);
}

TEST_F(notification, is_sent_when_a_removed_node_is_out_of_the_list) {
  const auto server = AddServer("S1");
  const auto catalog = server->CatalogNodes()->Add("C");
  catalog->TableNodes()->Add("T");
  server->QueryNodes()->Add("Q", "SELECT 1");
  std::vector<Long> counts;
  const auto acting = std::make_shared<ActingOwner>();
  acting->act = [&] {
    counts = {root->ServerNodes()->Count(), server->CatalogNodes()->Count(),
              catalog->TableNodes()->Count(), server->QueryNodes()->Count()};
  };
  root->Parent(acting);
  server->QueryNodes()->Remove("Q");
  EXPECT_EQ(counts, (std::vector<Long>{1, 1, 1, 0}));
  catalog->TableNodes()->Remove("T");
  EXPECT_EQ(counts, (std::vector<Long>{1, 1, 0, 0}));
  server->CatalogNodes()->Remove("C");
  EXPECT_EQ(counts, (std::vector<Long>{1, 0, 0, 0}));
  root->ServerNodes()->Remove("S1");
  EXPECT_EQ(counts, (std::vector<Long>{0, 0, 0, 0}));
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
  const auto catalog = server->CatalogNodes()->Add("C");
  catalog->TableNodes()->Add("T");
  server->QueryNodes()->Add("Q", "SELECT 1");
  const auto second = ServerNode::Create(objects);
  second->Server("s1");
  EXPECT_EQ(ChangesDuring([&] {
              EXPECT_EQ(FailureOf([&] { root->ServerNodes()->Add(second); }), 457);
              EXPECT_EQ(FailureOf([&] { server->CatalogNodes()->Add("c"); }), 457);
              EXPECT_EQ(FailureOf([&] { catalog->TableNodes()->Add("t"); }), 457);
              EXPECT_EQ(FailureOf([&] { server->QueryNodes()->Add("q", "SELECT 2"); }), 457);
            }),
            0);
  EXPECT_EQ(root->ServerNodes()->Count(), 1);
  EXPECT_EQ(server->CatalogNodes()->Count(), 1);
  EXPECT_EQ(catalog->TableNodes()->Count(), 1);
  EXPECT_EQ(server->QueryNodes()->Count(), 1);
  EXPECT_EQ(server->QueryNodes()->Item("q")->Query(), "SELECT 1");
  EXPECT_EQ(second->ParentServersNode(), nullptr);
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
  const auto catalog = server->CatalogNodes()->Add("C");

  const auto newServer = ServerNode::Create(objects);
  newServer->ParentServersNode(root);
  EXPECT_EQ(ChangesDuring([&] { newServer->User("U"); }), 0);
  newServer->Parent(root->ServerNodes());
  newServer->ParentServersNode(nullptr);
  EXPECT_EQ(ChangesDuring([&] { newServer->User("V"); }), 1);

  const auto newCatalog = CatalogNode::Create(objects);
  newCatalog->ParentServerNode(server);
  EXPECT_EQ(ChangesDuring([&] { newCatalog->Catalog("D"); }), 0);
  newCatalog->Parent(server->CatalogNodes());
  newCatalog->ParentServerNode(nullptr);
  EXPECT_EQ(ChangesDuring([&] { newCatalog->Catalog("E"); }), 1);

  const auto table = TableNode::Create(objects);
  const auto change = [&] {
    table->DefaultFilterCondition(false);
    table->Query()->Table("T");
  };
  table->ParentCatalogNode(catalog);
  EXPECT_EQ(ChangesDuring(change), 0);
  table->Parent(catalog->TableNodes());
  table->ParentCatalogNode(nullptr);
  EXPECT_EQ(ChangesDuring(change), 2);

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

TEST_F(notification, a_failure_of_the_owner_reaches_whoever_set_the_field_and_the_value_stays) {
  const auto server = AddServer("S1");
  const auto catalog = server->CatalogNodes()->Add("C");
  const auto table = catalog->TableNodes()->Add("T");
  const auto query = server->QueryNodes()->Add("Q", "SELECT 1");
  const auto refusing = std::make_shared<ActingOwner>();
  refusing->act = [] { throw platform::Failure(5, "No changes now."); };
  root->Parent(refusing);

  EXPECT_EQ(FailureOf([&] { root->MaxRows(7); }), 5);
  EXPECT_EQ(root->MaxRows(), 7);
  EXPECT_EQ(FailureOf([&] { root->QueryTimeout(8); }), 5);
  EXPECT_EQ(root->QueryTimeout(), 8);
  EXPECT_EQ(FailureOf([&] { root->SetDefaultTimeRange("y", "t"); }), 5);
  Text sStart;
  Text sEnd;
  root->GetDefaultTimeRange(sStart, sEnd);
  EXPECT_EQ(sStart, "y");
  EXPECT_EQ(sEnd, "t");
  EXPECT_EQ(FailureOf([&] { root->SqlStatements(false); }), 5);
  EXPECT_FALSE(root->SqlStatements());
  EXPECT_EQ(FailureOf([&] { root->Context(true); }), 5);
  EXPECT_TRUE(root->Context());

  EXPECT_EQ(FailureOf([&] { server->Provider("P"); }), 5);
  EXPECT_EQ(server->Provider(), "P");
  EXPECT_EQ(FailureOf([&] { server->Server("S9"); }), 5);
  EXPECT_EQ(server->Server(), "S9");
  EXPECT_EQ(FailureOf([&] { server->User("U"); }), 5);
  EXPECT_EQ(server->User(), "U");
  EXPECT_EQ(FailureOf([&] { server->ExtendedOptions("X=1;"); }), 5);
  EXPECT_EQ(server->ExtendedOptions(), "X=1;");

  EXPECT_EQ(FailureOf([&] { catalog->Catalog("D"); }), 5);
  EXPECT_EQ(catalog->Catalog(), "D");
  EXPECT_EQ(FailureOf([&] { table->DefaultFilterCondition(false); }), 5);
  EXPECT_FALSE(table->DefaultFilterCondition());
  EXPECT_EQ(FailureOf([&] { query->QueryName("R"); }), 5);
  EXPECT_EQ(query->QueryName(), "R");
  EXPECT_EQ(FailureOf([&] { query->Query("SELECT 2"); }), 5);
  EXPECT_EQ(query->Query(), "SELECT 2");
}

}  // namespace
}  // namespace orvane::nodes
