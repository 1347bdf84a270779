#include "tests/nodes/model.h"

namespace orvane::nodes {
namespace {

using platform::Long;
using platform::Text;

using collections = Model;

Text Names(const QueryNodesCollection& queries) {
  Text sNames;
  for (const auto& query : queries.NewEnum()) sNames += query->QueryName() + " ";
  return sNames;
}

TEST_F(collections, a_missing_server_catalog_or_table_is_none) {
  const auto server = AddServer("S1");
  const auto catalog = server->CatalogNodes()->Add("C");
  EXPECT_EQ(root->ServerNodes()->Item("x"), nullptr);
  EXPECT_EQ(root->ServerNodes()->Item(Long{2}), nullptr);
  EXPECT_EQ(server->CatalogNodes()->Item("x"), nullptr);
  EXPECT_EQ(server->CatalogNodes()->Item(Long{0}), nullptr);
  EXPECT_EQ(catalog->TableNodes()->Item("x"), nullptr);
  EXPECT_EQ(catalog->TableNodes()->Item(platform::Value()), nullptr);
}

TEST_F(collections, a_missing_query_is_a_failure) {
  const auto server = AddServer("S1");
  EXPECT_EQ(FailureOf([&] { server->QueryNodes()->Item("x"); }), 5);
  EXPECT_EQ(FailureOf([&] { server->QueryNodes()->Item(Long{1}); }), 9);
}

TEST_F(collections, adding_a_server_links_it_to_the_list_and_the_root) {
  const auto server = AddServer("S1");
  EXPECT_EQ(server->ParentServersNode(), root);
  EXPECT_EQ(root->ServerNodes()->Item("s1"), server);
  EXPECT_EQ(root->ServerNodes()->Item(Long{1}), server);
}

TEST_F(collections, a_server_of_a_present_name_is_refused_and_left_as_it_was) {
  AddServer("S1");
  const auto second = ServerNode::Create(objects);
  second->Server("s1");
  EXPECT_EQ(FailureOf([&] { root->ServerNodes()->Add(second); }), 457);
  EXPECT_EQ(root->ServerNodes()->Count(), 1);
  EXPECT_EQ(second->ParentServersNode(), nullptr);
  EXPECT_EQ(ChangesDuring([&] { second->User("U"); }), 0);
}

TEST_F(collections, set_server_keeps_the_key_under_which_it_was_filed) {
  const auto server = AddServer("S1");
  server->Server("S2");
  EXPECT_EQ(root->ServerNodes()->Item("S1"), server);
  EXPECT_EQ(root->ServerNodes()->Item("S2"), nullptr);
}

TEST_F(collections, a_catalog_name_in_another_case_is_the_same_key) {
  const auto server = AddServer("S1");
  server->CatalogNodes()->Add("Main");
  EXPECT_EQ(FailureOf([&] { server->CatalogNodes()->Add("MAIN"); }), 457);
  EXPECT_EQ(server->CatalogNodes()->Count(), 1);
  EXPECT_EQ(server->CatalogNodes()->Item("MAIN")->Catalog(), "Main");
}

TEST_F(collections, adding_a_catalog_names_and_links_it) {
  const auto server = AddServer("S1");
  const auto catalog = server->CatalogNodes()->Add("Plant");
  EXPECT_EQ(catalog->Catalog(), "Plant");
  EXPECT_EQ(catalog->ParentServerNode(), server);
  EXPECT_EQ(server->CatalogNodes()->Item("Plant"), catalog);
}

TEST_F(collections, adding_a_table_sets_its_query_to_catalog_and_table) {
  const auto catalog = AddServer("S1")->CatalogNodes()->Add("C");
  TableNodePtr table;
  // The node is not in the tree while its query is set: one notification, from the list.
  EXPECT_EQ(ChangesDuring([&] { table = catalog->TableNodes()->Add("T1"); }), 1);
  EXPECT_EQ(table->Query()->Catalog(), "C");
  EXPECT_EQ(table->Query()->Table(), "T1");
  EXPECT_EQ(table->ParentCatalogNode(), catalog);
  EXPECT_EQ(catalog->TableNodes()->Item("t1"), table);
}

TEST_F(collections, a_table_list_without_its_catalog_takes_no_table) {
  TableNodesCollection tables(objects);
  EXPECT_EQ(FailureOf([&] { tables.Add("T1"); }), 91);
  EXPECT_EQ(tables.Count(), 0);
}

TEST_F(collections, adding_a_query_names_and_links_it) {
  const auto server = AddServer("S1");
  const auto query = server->QueryNodes()->Add("Q", "SELECT 1");
  EXPECT_EQ(query->QueryName(), "Q");
  EXPECT_EQ(query->Query(), "SELECT 1");
  EXPECT_EQ(query->ParentServerNode(), server);
  EXPECT_EQ(server->QueryNodes()->Item("q"), query);
}

TEST_F(collections, find_compares_exactly_while_keys_ignore_case) {
  const auto queries = AddServer("S1")->QueryNodes();
  queries->Add("other", "");
  queries->Add("ABC", "");
  EXPECT_EQ(queries->Find("ABC"), 2);
  EXPECT_EQ(queries->Find("abc"), -1);
  EXPECT_EQ(FailureOf([&] { queries->Add("abc", ""); }), 457);
}

TEST_F(collections, find_in_an_empty_list_is_minus_1) {
  EXPECT_EQ(AddServer("S1")->QueryNodes()->Find("x"), -1);
}

TEST_F(collections, find_goes_by_the_current_name_and_not_by_the_key) {
  const auto queries = AddServer("S1")->QueryNodes();
  queries->Add("Q", "")->QueryName("renamed");
  EXPECT_EQ(queries->Find("renamed"), 1);
  EXPECT_EQ(queries->Find("Q"), -1);
  EXPECT_EQ(queries->Item("Q")->QueryName(), "renamed");
}

TEST_F(collections, insert_puts_a_query_before_a_position_or_at_the_end) {
  const auto queries = AddServer("S1")->QueryNodes();
  queries->Add("a", "");
  queries->Add("b", "");
  const auto named = [](const char* sName) {
    auto query = std::make_shared<QueryNode>();
    query->QueryName(sName);
    return query;
  };
  queries->Insert(named("first"), 1);
  EXPECT_EQ(Names(*queries), "first a b ");
  queries->Insert(named("before_b"), 3);
  EXPECT_EQ(Names(*queries), "first a before_b b ");
  queries->Insert(named("end"), queries->Count() + 1);
  queries->Insert(named("far"), 1000);
  EXPECT_EQ(Names(*queries), "first a before_b b end far ");
  EXPECT_EQ(FailureOf([&] { queries->Insert(named("zero"), 0); }), 9);
  EXPECT_EQ(FailureOf([&] { queries->Insert(named("minus"), -1); }), 9);
  EXPECT_EQ(FailureOf([&] { queries->Insert(named("A"), 1); }), 457);
  EXPECT_EQ(FailureOf([&] { queries->Insert(named("A"), 1000); }), 457);
  EXPECT_EQ(Names(*queries), "first a before_b b end far ");
}

TEST_F(collections, insert_at_position_0_of_an_empty_list_fails) {
  const auto queries = AddServer("S1")->QueryNodes();
  EXPECT_EQ(FailureOf([&] { queries->Insert(std::make_shared<QueryNode>(), 0); }), 9);
}

TEST_F(collections, insert_files_the_query_under_its_current_name) {
  const auto queries = AddServer("S1")->QueryNodes();
  const auto query = queries->Add("old", "");
  queries->Remove("old");
  query->QueryName("new");
  queries->Insert(query, 1);
  EXPECT_EQ(queries->Item("NEW"), query);
  EXPECT_EQ(FailureOf([&] { queries->Item("old"); }), 5);
}

TEST_F(collections, insert_is_silent_and_sets_no_back_reference_while_remove_tells) {
  const auto server = AddServer("S1");
  const auto query = std::make_shared<QueryNode>();
  query->QueryName("Q");
  EXPECT_EQ(ChangesDuring([&] { server->QueryNodes()->Insert(query, 1); }), 0);
  EXPECT_EQ(query->ParentServerNode(), nullptr);
  EXPECT_EQ(ChangesDuring([&] { query->Query("SELECT 1"); }), 0);
  EXPECT_EQ(ChangesDuring([&] { server->QueryNodes()->Remove("Q"); }), 1);
}

TEST_F(collections, a_node_that_is_none_is_a_failure) {
  EXPECT_EQ(FailureOf([&] { root->ServerNodes()->Add(nullptr); }), 91);
  const auto queries = AddServer("S1")->QueryNodes();
  EXPECT_EQ(FailureOf([&] { queries->Insert(nullptr, 1); }), 91);
  EXPECT_FALSE(queries->Holds(nullptr));
}

TEST_F(collections, a_list_holds_the_very_node_of_that_exact_name) {
  const auto queries = AddServer("S1")->QueryNodes();
  const auto query = queries->Add("Q", "");
  const auto other = std::make_shared<QueryNode>();
  other->QueryName("Q");
  EXPECT_TRUE(queries->Holds(query));
  EXPECT_FALSE(queries->Holds(other));
  other->QueryName("q");
  EXPECT_FALSE(queries->Holds(other));
  queries->Remove("Q");
  EXPECT_FALSE(queries->Holds(query));
}

TEST_F(collections, a_walk_reaches_every_node_though_each_visited_one_is_removed) {
  const auto queries = AddServer("S1")->QueryNodes();
  for (const char* sName : {"a", "b", "c"}) queries->Add(sName, "");
  Text sVisited;
  for (const auto& query : queries->NewEnum()) {
    sVisited += query->QueryName();
    queries->Remove(query->QueryName());
  }
  EXPECT_EQ(sVisited, "abc");
}

TEST_F(collections, removing_the_only_item_by_position_empties_the_list) {
  AddServer("S1");
  EXPECT_EQ(ChangesDuring([&] { root->ServerNodes()->Remove(Long{1}); }), 1);
  EXPECT_EQ(root->ServerNodes()->Count(), 0);
}

TEST_F(collections, a_walk_visits_the_nodes_in_list_order) {
  for (const char* sServer : {"S3", "S1", "S2"}) AddServer(sServer);
  Text sNames;
  for (const auto& server : root->ServerNodes()->NewEnum()) sNames += server->Server() + " ";
  EXPECT_EQ(sNames, "S3 S1 S2 ");
}

}  // namespace
}  // namespace orvane::nodes
