// Every key that a tree writes, in its order.
#include "tests/nodes/model.h"

namespace orvane::nodes {
namespace {

using platform::Long;
using platform::Text;
using platform::Value;

using saving = Model;

constexpr const char* kSixOptions =
    "Log File = orv.log;Log Level = 2;Identifier Prefixes = False;Time as Double = True;"
    "Time Zone = ;Historians By GUID = False;";

TEST_F(saving, a_default_root_writes_its_options_and_an_empty_list) {
  root->WriteProperties(bag, "ServersNode_");
  EXPECT_EQ(bag.order,
            (std::vector<Text>{"ServersNode_MaxRows", "ServersNode_QueryTimeout",
                               "ServersNode_DefaultStartTime", "ServersNode_DefaultEndTime",
                               "ServersNode_SqlStatements", "ServersNode_Context",
                               "ServersNode_ServerNodes_ServerNodeCount"}));
  EXPECT_EQ(bag.At("ServersNode_MaxRows"), Value(Long{100}));
  EXPECT_EQ(bag.At("ServersNode_QueryTimeout"), Value(Long{60}));
  EXPECT_EQ(bag.At("ServersNode_DefaultStartTime"), Value("*-1h"));
  EXPECT_EQ(bag.At("ServersNode_DefaultEndTime"), Value("*"));
  EXPECT_EQ(bag.At("ServersNode_SqlStatements"), Value(true));
  EXPECT_EQ(bag.At("ServersNode_Context"), Value(false));
  EXPECT_EQ(bag.At("ServersNode_ServerNodes_ServerNodeCount"), Value(Long{0}));
  EXPECT_EQ(bag.nDefaultsPassed, 0);
}

TEST_F(saving, a_whole_tree_writes_every_key_in_order) {
  const auto server = AddServer("S1");
  const auto catalog = server->CatalogNodes()->Add("C");
  catalog->TableNodes()->Add("T");
  server->QueryNodes()->Add("Q", "SELECT 1");
  root->ServerNodes()->WriteProperties(bag, "L_");
  const Text sServer = "L_ServerNode1_";
  const Text sTable = sServer + "CatalogNodes_CatalogNode1_TableNodes_";
  EXPECT_EQ(bag.order,
            (std::vector<Text>{
                "L_ServerNodeCount", sServer + "Provider", sServer + "Server", sServer + "User",
                sServer + "ExtendedOptions", sServer + "CatalogNodes_CatalogNodeCount",
                sServer + "CatalogNodes_CatalogNode1_Catalog", sTable + "TableNodeCount",
                sTable + "TableNode1_Query", sTable + "TableNode1_DefaultFilterCondition",
                sServer + "QueryNodes_QueryNodeCount", sServer + "QueryNodes_QueryNode1_QueryName",
                sServer + "QueryNodes_QueryNode1_Query"}));
  EXPECT_EQ(bag.At(sServer + "Provider"), Value("ORVOLEDB"));
  EXPECT_EQ(bag.At(sServer + "Server"), Value("S1"));
  EXPECT_EQ(bag.At(sServer + "User"), Value("orvanesnapin"));
  EXPECT_EQ(bag.At(sTable + "TableNode1_DefaultFilterCondition"), Value(true));
  EXPECT_EQ(bag.At(sServer + "QueryNodes_QueryNode1_Query"), Value("SELECT 1"));
  EXPECT_EQ(bag.nDefaultsPassed, 0);
}

TEST_F(saving, keys_of_deep_items_are_their_prefixes_in_a_row) {
  AddServer("S1")->CatalogNodes()->Add("C");
  AddServer("S2");
  const auto tables = root->ServerNodes()->Item("S1")->CatalogNodes()->Item("C")->TableNodes();
  for (const char* sTable : {"T1", "T2", "T3"}) tables->Add(sTable);
  root->WriteProperties(bag, "ServersNode_");
  EXPECT_TRUE(bag.Has("ServersNode_ServerNodes_ServerNode1_Provider"));
  EXPECT_EQ(bag.At("ServersNode_ServerNodes_ServerNode2_CatalogNodes_CatalogNodeCount"),
            Value(Long{0}));
  EXPECT_TRUE(
      bag.Has("ServersNode_ServerNodes_ServerNode1_CatalogNodes_CatalogNode1_TableNodes_"
              "TableNode3_Query"));
}

TEST_F(saving, items_are_numbered_in_decimal_without_leading_zeros) {
  const auto catalogs = AddServer("S1")->CatalogNodes();
  for (int i = 1; i <= 11; ++i) catalogs->Add("C" + std::to_string(i));
  catalogs->WriteProperties(bag, "L_");
  EXPECT_EQ(bag.At("L_CatalogNode9_Catalog"), Value("C9"));
  EXPECT_EQ(bag.At("L_CatalogNode10_Catalog"), Value("C10"));
  EXPECT_EQ(bag.At("L_CatalogNode11_Catalog"), Value("C11"));
  EXPECT_FALSE(bag.Has("L_CatalogNode01_Catalog"));
}

TEST_F(saving, a_disconnected_server_writes_its_options_unchanged) {
  const auto server = AddServer("S1");
  server->WriteProperties(bag, "S_");
  EXPECT_EQ(bag.At("S_ExtendedOptions"), Value(""));
  server->ExtendedOptions("X=1;");
  server->WriteProperties(bag, "S_");
  EXPECT_EQ(bag.At("S_ExtendedOptions"), Value("X=1;"));
}

TEST_F(saving, a_connected_server_writes_the_options_in_effect_behind_the_stored_ones) {
  const auto server = AddServer("S1");
  server->Connect();
  server->WriteProperties(bag, "S_");
  EXPECT_EQ(bag.At("S_ExtendedOptions"), Value(kSixOptions));
  server->ExtendedOptions("X=1;");
  server->WriteProperties(bag, "S_");
  EXPECT_EQ(bag.At("S_ExtendedOptions"), Value(Text("X=1;") + kSixOptions));
}

TEST_F(saving, again_without_loading_does_not_lengthen_the_options) {
  const auto server = AddServer("S1");
  server->ExtendedOptions("X=1;");
  server->Connect();
  server->WriteProperties(bag, "S_");
  const Value vtFirst = bag.At("S_ExtendedOptions");
  server->WriteProperties(bag, "S_");
  EXPECT_EQ(bag.At("S_ExtendedOptions"), vtFirst);
  EXPECT_EQ(server->ExtendedOptions(), "X=1;");
}

TEST_F(saving, after_loading_and_reconnecting_writes_the_options_twice) {
  const auto server = AddServer("S1");
  server->ExtendedOptions("X=1;");
  server->Connect();
  server->WriteProperties(bag, "S_");
  const auto loaded = ServerNode::Create(objects);
  loaded->ReadProperties(bag, "S_");
  loaded->Connect();
  loaded->WriteProperties(bag, "S_");
  EXPECT_EQ(bag.At("S_ExtendedOptions"), Value(Text("X=1;") + kSixOptions + kSixOptions));
}

TEST_F(saving, a_missing_provider_property_fails_and_keeps_what_was_written_before) {
  const auto server = AddServer("S1");
  server->Connect();
  historian->options.erase(historian->options.begin() + 3);
  EXPECT_EQ(FailureOf([&] { server->WriteProperties(bag, "S_"); }), 3265);
  EXPECT_EQ(bag.order, (std::vector<Text>{"S_Provider", "S_Server", "S_User"}));
  EXPECT_EQ(server->ExtendedOptions(), "");
}

TEST_F(saving, changes_nothing_in_the_tree) {
  AddServer("S1")->CatalogNodes()->Add("C")->TableNodes()->Add("T");
  EXPECT_EQ(ChangesDuring([&] { root->WriteProperties(bag, "P_"); }), 0);
}

}  // namespace
}  // namespace orvane::nodes
