#include "tests/snapin/snap_in_fixture.h"

namespace orvane::snapin {
namespace {

using fakes::FakeColumnHeader;
using platform::Long;
using platform::SchemaNumber;

class scope_items : public SnapInTest {
 protected:
  void ExpectNameColumn(const Text& sKey, const Text& sName) {
    const auto item = driver.Item(sKey);
    EXPECT_EQ(item->ColumnHeaders().headers,
              (std::map<Long, FakeColumnHeader>{{1, {"Name", "Name", 200}}}));
    EXPECT_EQ(item->ListSubItems().items,
              (std::map<Long, std::pair<Text, Text>>{{1, {"Name", sName}}}));
    EXPECT_EQ(item->ColumnHeaders().nClears, 1);
    EXPECT_EQ(item->ListSubItems().nClears, 1);
  }
  long Logged(const Text& sStart) {
    const auto& log = driver.historian->log;
    return std::count_if(log.begin(), log.end(),
                         [&](const Text& sEntry) { return sEntry.starts_with(sStart); });
  }
};

TEST_F(scope_items, the_static_node_is_tied_to_a_new_root) {
  ASSERT_NE(Root(), nullptr);
  EXPECT_EQ(Root()->ServerNodes()->Count(), 0);
}

TEST_F(scope_items, an_item_of_another_type_is_not_tied) {
  driver.Start();
  const auto item = std::make_shared<fakes::FakeScopeItem>("Server", "x", "x");
  driver.snapIn->ScopeItems_Initialize(item);
  EXPECT_EQ(item->Tag(), nullptr);
  const auto lower = std::make_shared<fakes::FakeScopeItem>("servers", "y", "y");
  driver.snapIn->ScopeItems_Initialize(lower);
  EXPECT_EQ(lower->Tag(), nullptr);
}

TEST_F(scope_items, an_item_that_cannot_be_tied_is_reported) {
  driver.Start();
  driver.console->staticItem->bFailTag = true;
  EXPECT_NO_THROW(driver.snapIn->ScopeItems_Initialize(driver.console->staticItem));
  EXPECT_EQ(ErrorBox(), "The item cannot be tagged.");
}

TEST_F(scope_items, initializing_again_keeps_the_root) {
  const auto root = Root();
  driver.snapIn->ScopeItems_Initialize(driver.console->staticItem);
  EXPECT_EQ(Root(), root);
}

TEST_F(scope_items, expanding_without_servers_adds_nothing) {
  driver.Expand("");
  EXPECT_TRUE(driver.Children("").empty());
  ExpectNoBoxes();
}

TEST_F(scope_items, servers_are_added_in_their_order_under_their_names) {
  const auto second = AddServer("S2");
  const auto first = AddServer("S1");
  driver.Expand("");
  EXPECT_EQ(driver.Children(""), (std::vector<Text>{"S2", "S1"}));
  const auto item = driver.Item("S1");
  EXPECT_EQ(item->NodeTypeName(), "Server");
  EXPECT_EQ(item->NodeId(), "S1");
  EXPECT_EQ(item->DisplayName(), "S1");
  EXPECT_EQ(item->Tag(), first);
  EXPECT_TRUE(item->node->bHasChildren);
  ExpectNameColumn("S1", "S1");
  EXPECT_EQ(driver.Item("S2")->Tag(), second);
}

TEST_F(scope_items, two_servers_of_one_name_are_reported_and_the_earlier_items_stay) {
  AddServer("S1");
  AddServer("S2")->Server("S1");
  driver.Expand("");
  EXPECT_EQ(driver.Children(""), (std::vector<Text>{"S1"}));
  EXPECT_EQ(ErrorBox(), "The item is already in the tree.");
}

TEST_F(scope_items, a_server_is_connected_and_gets_its_two_folders) {
  const auto server = AddServer("S1");
  driver.Expand("");
  driver.Expand("S1");
  EXPECT_EQ(Logged("Open "), 1);
  ASSERT_NE(server->Connection(), nullptr);
  EXPECT_EQ(driver.Children("S1"), (std::vector<Text>{"S1.Catalogs", "S1.Queries"}));
  const auto catalogs = driver.Item("S1.Catalogs");
  EXPECT_EQ(catalogs->NodeTypeName(), "Catalogs");
  EXPECT_EQ(catalogs->NodeId(), "S1.Catalogs");
  EXPECT_EQ(catalogs->DisplayName(), "Catalogs");
  EXPECT_TRUE(catalogs->node->bHasChildren);
  EXPECT_EQ(catalogs->Tag(), server);
  ExpectNameColumn("S1.Catalogs", "Catalogs");
  const auto queries = driver.Item("S1.Queries");
  EXPECT_EQ(queries->NodeTypeName(), "Queries");
  EXPECT_EQ(queries->NodeId(), "S1.Queries");
  EXPECT_EQ(queries->DisplayName(), "Queries");
  EXPECT_FALSE(queries->node->bHasChildren);
  EXPECT_EQ(queries->Tag(), server);
  ExpectNameColumn("S1.Queries", "Queries");
}

TEST_F(scope_items, a_connected_server_is_not_connected_again) {
  AddServer("S1")->Connect();
  driver.Expand("");
  driver.Expand("S1");
  EXPECT_EQ(Logged("Open "), 1);
  EXPECT_EQ(driver.Children("S1"), (std::vector<Text>{"S1.Catalogs", "S1.Queries"}));
}

TEST_F(scope_items, a_server_that_cannot_be_connected_shows_no_children_and_the_error) {
  const auto server = AddServer("nowhere");
  driver.Expand("");
  driver.Expand("nowhere");
  EXPECT_TRUE(driver.Children("nowhere").empty());
  EXPECT_FALSE(driver.Item("nowhere")->node->bHasChildren);
  EXPECT_EQ(server->Connection(), nullptr);
  EXPECT_EQ(ErrorBox(), "The server \"nowhere\" is unknown; check its name.");
}

TEST_F(scope_items, catalogs_become_items_and_nodes) {
  const auto server = AddServer("S1");
  server->CatalogNodes()->Add("Gone");
  for (const char* sKey : {"", "S1", "S1.Catalogs"}) driver.Expand(sKey);
  EXPECT_EQ(driver.Children("S1.Catalogs"), (std::vector<Text>{"S1.Catalogs.Plant"}));
  const auto item = driver.Item("S1.Catalogs.Plant");
  EXPECT_EQ(item->NodeTypeName(), "Catalog");
  EXPECT_EQ(item->NodeId(), "S1.Catalogs.Plant");
  EXPECT_EQ(item->DisplayName(), "Plant");
  EXPECT_TRUE(item->node->bHasChildren);
  ExpectNameColumn("S1.Catalogs.Plant", "Plant");
  EXPECT_EQ(item->Tag(), server->CatalogNodes()->Item("Plant"));
  EXPECT_NE(server->CatalogNodes()->Item("Gone"), nullptr) << "unlisted catalogs stay";
  EXPECT_EQ(server->CatalogNodes()->Count(), 2);
}

TEST_F(scope_items, a_known_catalog_keeps_its_node) {
  const auto server = AddServer("S1");
  const auto known = server->CatalogNodes()->Add("PLANT");
  for (const char* sKey : {"", "S1", "S1.Catalogs"}) driver.Expand(sKey);
  EXPECT_EQ(driver.Item("S1.Catalogs.Plant")->Tag(), known);
  EXPECT_EQ(server->CatalogNodes()->Count(), 1);
}

TEST_F(scope_items, a_server_without_catalogs_adds_nothing) {
  const auto server = AddServer("S2");
  for (const char* sKey : {"", "S2", "S2.Catalogs"}) driver.Expand(sKey);
  EXPECT_TRUE(driver.Children("S2.Catalogs").empty());
  EXPECT_EQ(server->CatalogNodes()->Count(), 0);
  ExpectNoBoxes();
}

TEST_F(scope_items, catalogs_of_a_server_disconnected_meanwhile_are_reported) {
  const auto server = AddServer("S1");
  driver.Expand("");
  driver.Expand("S1");
  server->Disconnect();
  driver.Expand("S1.Catalogs");
  EXPECT_EQ(ErrorBox(), "The server is not connected; connect it first.");
}

TEST_F(scope_items, a_refused_schema_rowset_is_reported) {
  AddServer("S1");
  driver.historian->schemas[SchemaNumber::Catalogs] = [](auto) -> platform::RecordsetPtr {
    throw platform::Failure(3801, "You may not read the catalogs.");
  };
  for (const char* sKey : {"", "S1", "S1.Catalogs"}) driver.Expand(sKey);
  EXPECT_EQ(ErrorBox(), "You may not read the catalogs.");
}

TEST_F(scope_items, tables_become_items_and_nodes_with_limits_filter_and_columns) {
  Root()->MaxRows(11);
  Root()->QueryTimeout(22);
  const auto server = ExpandAll();
  EXPECT_EQ(driver.Children("S1.Catalogs.Plant"),
            (std::vector<Text>{"S1.Catalogs.Plant.Pumps", "S1.Catalogs.Plant.Data"}));
  const auto item = driver.Item("S1.Catalogs.Plant.Pumps");
  EXPECT_EQ(item->NodeTypeName(), "Table");
  EXPECT_EQ(item->NodeId(), "S1.Catalogs.Plant.Pumps");
  EXPECT_EQ(item->DisplayName(), "Pumps");
  EXPECT_FALSE(item->node->bHasChildren);
  ExpectNameColumn("S1.Catalogs.Plant.Pumps", "Pumps");
  const auto tables = server->CatalogNodes()->Item("Plant")->TableNodes();
  EXPECT_EQ(item->Tag(), tables->Item("Pumps"));
  EXPECT_EQ(Pumps()->Query()->Catalog(), "Plant");
  EXPECT_EQ(Pumps()->Query()->Table(), "Pumps");
  EXPECT_EQ(Pumps()->Query()->MaxRows(), 11);
  EXPECT_EQ(Pumps()->Query()->QueryTimeout(), 22);
  EXPECT_EQ(Pumps()->Query()->FilterCondition(), "");
  EXPECT_EQ(Pumps()->Query()->Columns().Count(), 2);
  EXPECT_EQ(tables->Item("Data")->Query()->FilterCondition(), "Timestamp BETWEEN '*-1h' AND '*'");
}

TEST_F(scope_items, a_known_table_keeps_its_limits_and_filter) {
  const auto catalog = AddServer("S1")->CatalogNodes()->Add("Plant");
  const auto known = catalog->TableNodes()->Add("Data");
  known->Query()->MaxRows(1);
  known->Query()->QueryTimeout(2);
  known->Query()->FilterCondition("mine");
  for (const char* sKey : {"", "S1", "S1.Catalogs", "S1.Catalogs.Plant"}) driver.Expand(sKey);
  EXPECT_EQ(driver.Item("S1.Catalogs.Plant.Data")->Tag(), known);
  EXPECT_EQ(known->Query()->MaxRows(), 1);
  EXPECT_EQ(known->Query()->QueryTimeout(), 2);
  EXPECT_EQ(known->Query()->FilterCondition(), "mine");
  EXPECT_EQ(known->Query()->Columns().Count(), 1) << "its columns follow the server";
}

TEST_F(scope_items, expanding_a_catalog_again_finds_the_same_table_nodes) {
  const auto server = ExpandAll();
  const auto tables = server->CatalogNodes()->Item("Plant")->TableNodes();
  const auto pumps = Pumps();
  const auto item = driver.Item("S1.Catalogs.Plant");
  driver.console->ScopeItems().RemoveChildren(item->node);
  EXPECT_TRUE(driver.snapIn->ScopeItems_Expand(item));
  EXPECT_EQ(tables->Count(), 2);
  EXPECT_EQ(Pumps(), pumps);
  ExpectNoBoxes();
}

TEST_F(scope_items, a_table_whose_saved_columns_are_gone_is_reported_and_earlier_items_stay) {
  const auto tables = AddServer("S1")->CatalogNodes()->Add("Plant")->TableNodes();
  const auto known = tables->Add("Data");
  for (const char* sColumn : {"Gone", "Tag"}) known->Query()->Columns().Add(sColumn);
  for (const char* sKey : {"", "S1", "S1.Catalogs", "S1.Catalogs.Plant"}) driver.Expand(sKey);
  EXPECT_EQ(
      ErrorBox(),
      "The table \"Data\" of the catalog \"Plant\" has lost columns that its query names, and "
      "the query loses them too; expand the catalog again to go on.");
  EXPECT_NE(driver.Item("S1.Catalogs.Plant.Pumps")->Tag(), nullptr);
  EXPECT_EQ(driver.Item("S1.Catalogs.Plant.Data")->Tag(), nullptr);
  const auto item = driver.Item("S1.Catalogs.Plant");
  driver.console->ScopeItems().RemoveChildren(item->node);
  EXPECT_TRUE(driver.snapIn->ScopeItems_Expand(item)) << "the next expansion goes on";
  EXPECT_EQ(driver.Item("S1.Catalogs.Plant.Data")->Tag(), known);
  ExpectNoBoxes();
}

TEST_F(scope_items, a_table_whose_expansion_failed_half_way_is_told_of_once_in_each_view) {
  AddServer("S1");
  driver.historian->schemas[platform::SchemaNumber::Columns] = [](auto) -> platform::RecordsetPtr {
    throw platform::Failure(3801, "The rowset is refused.");
  };
  for (const char* sKey : {"", "S1", "S1.Catalogs", "S1.Catalogs.Plant"}) driver.Expand(sKey);
  const Text sHalf = "S1.Catalogs.Plant.Pumps";
  EXPECT_EQ(ErrorBox(), "The rowset is refused.");
  ASSERT_EQ(driver.Item(sHalf)->Tag(), nullptr);
  driver.Select(sHalf);
  ErrorBox();
  driver.ShowView("TableStructureListView");
  ErrorBox();
}

TEST_F(scope_items, a_catalog_without_a_name_lists_no_tables_of_others) {
  const auto server = AddServer("S1");
  const auto catalog = server->CatalogNodes()->Add("");
  driver.historian->Server("S1")->catalogs.push_back({"", {{"Lost", {{"Tag"}}, {}}}});
  for (const char* sKey : {"", "S1", "S1.Catalogs", "S1.Catalogs."}) driver.Expand(sKey);
  EXPECT_EQ(driver.Item("S1.Catalogs.")->Tag(), catalog);
  EXPECT_TRUE(driver.Children("S1.Catalogs.").empty());
  EXPECT_EQ(catalog->TableNodes()->Count(), 0);
  ExpectNoBoxes();
}

TEST_F(scope_items, a_catalog_that_has_left_the_tree_is_reported) {
  auto server = AddServer("S1");
  for (const char* sKey : {"", "S1", "S1.Catalogs"}) driver.Expand(sKey);
  const auto item = driver.Item("S1.Catalogs.Plant");
  Root()->ServerNodes()->Remove("S1");
  driver.console->ScopeItems().Find("S1")->Tag(nullptr);
  driver.Item("S1.Catalogs")->Tag(nullptr);
  driver.Item("S1.Queries")->Tag(nullptr);
  server.reset();
  EXPECT_FALSE(driver.snapIn->ScopeItems_Expand(item));
  EXPECT_EQ(ErrorBox(), "The item is no longer in the tree; select another one.");
}

TEST_F(scope_items, queries_become_items_with_name_and_sql) {
  const auto server = AddServer("S1");
  server->QueryNodes()->Add("v1.2", "SELECT 1");
  server->QueryNodes()->Add("a", "SELECT 2");
  for (const char* sKey : {"", "S1", "S1.Queries"}) driver.Expand(sKey);
  EXPECT_EQ(driver.Children("S1.Queries"), (std::vector<Text>{"S1.Queries.v1.2", "S1.Queries.a"}));
  const auto item = driver.Item("S1.Queries.v1.2");
  EXPECT_EQ(item->NodeTypeName(), "Query");
  EXPECT_EQ(item->NodeId(), "S1.Queries.v1.2");
  EXPECT_EQ(item->DisplayName(), "v1.2");
  EXPECT_FALSE(item->node->bHasChildren);
  EXPECT_EQ(item->Tag(), server->QueryNodes()->Item("v1.2"));
  EXPECT_EQ(
      item->ColumnHeaders().headers,
      (std::map<Long, FakeColumnHeader>{{1, {"Name", "Name", 200}}, {2, {"Query", "Query", 300}}}));
  EXPECT_EQ(item->ListSubItems().items, (std::map<Long, std::pair<Text, Text>>{
                                            {1, {"Name", "v1.2"}}, {2, {"Query", "SELECT 1"}}}));
  EXPECT_EQ(item->ColumnHeaders().nClears, 1);
  EXPECT_EQ(item->ListSubItems().nClears, 1);
}

TEST_F(scope_items, tables_queries_and_foreign_items_have_nothing_to_expand) {
  ExpandAll();
  driver.Expand("S1.Catalogs.Plant.Pumps");
  driver.Expand("S1.Queries.Q1");
  EXPECT_TRUE(driver.Children("S1.Catalogs.Plant.Pumps").empty());
  EXPECT_TRUE(driver.Children("S1.Queries.Q1").empty());
  EXPECT_TRUE(
      driver.snapIn->ScopeItems_Expand(std::make_shared<fakes::FakeScopeItem>("server", "x", "x")));
  ExpectNoBoxes();
}

TEST_F(scope_items, an_item_without_its_node_is_reported) {
  EXPECT_FALSE(driver.snapIn->ScopeItems_Expand(
      std::make_shared<fakes::FakeScopeItem>("Server", "x", "Lost")));
  EXPECT_EQ(ErrorBox(),
            "\"Lost\" stands for nothing any more; reload its server, or select another item.");
  const auto item = std::make_shared<fakes::FakeScopeItem>("Queries", "x", "Wrong");
  item->Tag(Root());
  EXPECT_FALSE(driver.snapIn->ScopeItems_Expand(item));
  EXPECT_EQ(ErrorBox(),
            "\"Wrong\" stands for something else; reload its server, or select another item.");
}

TEST_F(scope_items, expanding_without_a_root_is_reported) {
  driver.Start();
  EXPECT_FALSE(driver.snapIn->ScopeItems_Expand(driver.console->staticItem));
  EXPECT_EQ(ErrorBox(), "No servers are loaded; open a document or create a new one.");
}

}  // namespace
}  // namespace orvane::snapin
