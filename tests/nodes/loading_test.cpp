// Trees read back from a bag, whole or with parts missing.
#include "tests/nodes/initial_options.h"
#include "tests/nodes/model.h"

namespace orvane::nodes {
namespace {

using platform::Long;
using platform::Text;
using platform::Value;

class loading : public Model {
 protected:
  ServersNodePtr Load() {
    auto loaded = ServersNode::Create(objects);
    loaded->ReadProperties(bag, "P_");
    return loaded;
  }
};

TEST_F(loading, an_empty_bag_gives_the_default_options_and_no_servers) {
  root->MaxRows(1);
  root->QueryTimeout(2);
  root->SetDefaultTimeRange("a", "b");
  root->SqlStatements(false);
  root->Context(true);
  AddServer("S1");
  root->ReadProperties(bag, "P_");
  ExpectInitialOptionsAndNoServers(*root);
}

TEST_F(loading, gives_back_what_was_saved) {
  root->MaxRows(7);
  root->QueryTimeout(8);
  root->SetDefaultTimeRange("", "t");
  root->SqlStatements(false);
  root->Context(true);
  AddServer("zeta");
  const auto server = AddServer("Alpha \"quoted\"\nline");
  server->Provider("P");
  server->User("U");
  server->ExtendedOptions("X=1;");
  for (const char* sCatalog : {"b", "a", "Ωmega"}) server->CatalogNodes()->Add(sCatalog);
  const auto tables = server->CatalogNodes()->Item("a")->TableNodes();
  for (const char* sTable : {"t2", "t1"}) tables->Add(sTable);
  tables->Item("t1")->DefaultFilterCondition(false);
  tables->Item("t1")->Query()->FilterCondition("x = 'y'");
  tables->Item("t1")->Query()->MaxRows(5);
  tables->Item("t1")->Query()->Columns().Add("c2");
  tables->Item("t1")->Query()->Columns().Add("c1");
  for (const char* sQuery : {"q.2", "q1"})
    server->QueryNodes()->Add(sQuery, Text("SQL of ") + sQuery);
  root->WriteProperties(bag, "P_");

  const auto loaded = Load();
  Text sStart;
  Text sEnd;
  loaded->GetDefaultTimeRange(sStart, sEnd);
  EXPECT_EQ(loaded->MaxRows(), 7);
  EXPECT_EQ(loaded->QueryTimeout(), 8);
  EXPECT_EQ(sStart, "");
  EXPECT_EQ(sEnd, "t");
  EXPECT_FALSE(loaded->SqlStatements());
  EXPECT_TRUE(loaded->Context());
  const auto loadedServer = loaded->ServerNodes()->Item("ALPHA \"QUOTED\"\nLINE");
  ASSERT_NE(loadedServer, nullptr);
  EXPECT_EQ(loaded->ServerNodes()->Item(Long{2}), loadedServer);
  EXPECT_EQ(loadedServer->Provider(), "P");
  EXPECT_EQ(loadedServer->User(), "U");
  EXPECT_EQ(loadedServer->ExtendedOptions(), "X=1;");
  EXPECT_EQ(loadedServer->Connection(), nullptr);
  const auto loadedTable = loadedServer->CatalogNodes()->Item("a")->TableNodes()->Item("t1");
  ASSERT_NE(loadedTable, nullptr);
  EXPECT_FALSE(loadedTable->DefaultFilterCondition());
  const auto toldDefault = [](const TableNodePtr& table) {
    return std::dynamic_pointer_cast<fakes::FakeTableQuery>(table->Query())->bFilterIsDefault;
  };
  EXPECT_FALSE(toldDefault(loadedTable));
  loadedTable->DefaultFilterCondition(true);
  EXPECT_TRUE(toldDefault(loadedTable));
  EXPECT_TRUE(toldDefault(tables->Add("t3"))) << "a new table has the default filter";
  loadedTable->DefaultFilterCondition(false);
  EXPECT_EQ(loadedTable->Query()->Catalog(), "a");
  EXPECT_EQ(loadedTable->Query()->FilterCondition(), "x = 'y'");
  EXPECT_EQ(loadedTable->Query()->MaxRows(), 5);
  EXPECT_EQ(loadedTable->Query()->Columns().Item(1), "c2");
  EXPECT_EQ(loadedServer->QueryNodes()->Item("Q.2")->Query(), "SQL of q.2");

  // The same again, written in the same order: nothing was lost and no list was reordered.
  fakes::FakePropertyBag second;
  loaded->WriteProperties(second, "P_");
  EXPECT_EQ(second.order, bag.order);
  for (const Text& sName : bag.order) {
    if (!sName.ends_with("_TableNode1_Query") && !sName.ends_with("_TableNode2_Query")) {
      EXPECT_EQ(second.At(sName), bag.At(sName)) << sName;
    }
  }
}

TEST_F(loading, links_every_node_to_what_is_above_it) {
  AddServer("S1")->CatalogNodes()->Add("C")->TableNodes()->Add("T");
  root->ServerNodes()->Item("S1")->QueryNodes()->Add("Q", "");
  root->WriteProperties(bag, "P_");
  const auto loaded = Load();
  loaded->Parent(owner);
  const auto server = loaded->ServerNodes()->Item("S1");
  const auto catalog = server->CatalogNodes()->Item("C");
  const auto table = catalog->TableNodes()->Item("T");
  const auto query = server->QueryNodes()->Item("Q");
  EXPECT_EQ(server->ParentServersNode(), loaded);
  EXPECT_EQ(catalog->ParentServerNode(), server);
  EXPECT_EQ(table->ParentCatalogNode(), catalog);
  EXPECT_EQ(query->ParentServerNode(), server);
  EXPECT_EQ(ChangesDuring([&] { table->Query()->MaxRows(1); }), 1);
  EXPECT_EQ(ChangesDuring([&] { table->DefaultFilterCondition(true); }), 1);
  EXPECT_EQ(ChangesDuring([&] { query->Query("x"); }), 1);
  EXPECT_EQ(ChangesDuring([&] { catalog->Catalog("D"); }), 1);
}

TEST_F(loading, the_root_and_its_options_tells_nobody) {
  const auto server = AddServer("S1");
  server->CatalogNodes()->Add("C")->TableNodes()->Add("T");
  server->QueryNodes()->Add("Q", "x");
  root->WriteProperties(bag, "P_");
  // Only the four settings of each loaded server go through their setters.
  EXPECT_EQ(ChangesDuring([&] { root->ReadProperties(bag, "P_"); }), 4);
}

TEST_F(loading, missing_settings_of_a_server_are_empty_and_not_those_of_a_new_one) {
  AddServer("S1");
  root->WriteProperties(bag, "P_");
  bag.Erase("P_ServerNodes_ServerNode1_Provider");
  bag.Erase("P_ServerNodes_ServerNode1_Server");
  bag.Erase("P_ServerNodes_ServerNode1_User");
  bag.Erase("P_ServerNodes_ServerNode1_ExtendedOptions");
  const auto server = Load()->ServerNodes()->Item(Long{1});
  EXPECT_EQ(server->Provider(), "");
  EXPECT_EQ(server->Server(), "");
  EXPECT_EQ(server->User(), "");
  EXPECT_EQ(server->ExtendedOptions(), "");
}

TEST_F(loading, an_item_without_keys_is_an_empty_one) {
  AddServer("S1");
  root->WriteProperties(bag, "P_");
  bag.WriteProperty("P_ServerNodes_ServerNodeCount", Long{2}, std::nullopt);
  const auto servers = Load()->ServerNodes();
  ASSERT_EQ(servers->Count(), 2);
  EXPECT_EQ(servers->Item(Long{2})->Server(), "");
  EXPECT_EQ(servers->Item(""), servers->Item(Long{2}));
}

TEST_F(loading, a_missing_count_is_an_empty_list) {
  AddServer("S1")->CatalogNodes()->Add("C");
  root->WriteProperties(bag, "P_");
  bag.Erase("P_ServerNodes_ServerNode1_CatalogNodes_CatalogNodeCount");
  EXPECT_EQ(Load()->ServerNodes()->Item("S1")->CatalogNodes()->Count(), 0);
}

TEST_F(loading, a_missing_table_query_is_an_empty_one_and_the_filter_flag_is_true) {
  bag.WriteProperty("L_TableNodeCount", Long{1}, std::nullopt);
  const auto catalog = CatalogNode::Create(objects);
  catalog->TableNodes()->ReadProperties(bag, "L_");
  const auto table = catalog->TableNodes()->Item("");
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->Query()->Table(), "");
  EXPECT_TRUE(table->DefaultFilterCondition());
}

TEST_F(loading, makes_one_query_for_each_table) {
  class CountingObjects : public fakes::FakeObjects {
   public:
    CountingObjects(fakes::FakeHistorianPtr historian, int& nMade)
        : FakeObjects(std::move(historian)), m_nMade(nMade) {}
    platform::TableQueryPtr CreateTableQuery() override {
      ++m_nMade;
      return FakeObjects::CreateTableQuery();
    }

   private:
    int& m_nMade;
  };
  int nMade = 0;
  int nRead = 0;
  objects = std::make_shared<CountingObjects>(historian, nMade);
  bag.Creates(platform::kTableQueryProgId, [&] {
    ++nRead;
    return std::make_shared<fakes::FakeTableQuery>();
  });
  const auto catalog = CatalogNode::Create(objects);
  catalog->TableNodes()->Add("A");
  catalog->TableNodes()->Add("B");
  EXPECT_EQ(nMade, 2);
  catalog->TableNodes()->WriteProperties(bag, "L_");
  nMade = 0;
  nRead = 0;
  catalog->TableNodes()->ReadProperties(bag, "L_");
  EXPECT_EQ(nMade, 0);
  EXPECT_EQ(nRead, 2);
  bag.Erase("L_TableNode2_Query");
  nRead = 0;
  catalog->TableNodes()->ReadProperties(bag, "L_");
  EXPECT_EQ(nMade, 1);
  EXPECT_EQ(nRead, 1);
}

TEST_F(loading, files_a_table_under_the_table_of_its_query) {
  const auto catalog = AddServer("S1")->CatalogNodes()->Add("C");
  catalog->TableNodes()->Add("T")->Query()->Table("Renamed");
  root->WriteProperties(bag, "P_");
  const auto tables = Load()->ServerNodes()->Item("S1")->CatalogNodes()->Item("C")->TableNodes();
  EXPECT_EQ(tables->Item("T"), nullptr);
  EXPECT_NE(tables->Item("Renamed"), nullptr);
}

TEST_F(loading, two_items_of_one_key_fail_with_457) {
  AddServer("S1");
  AddServer("S2");
  root->WriteProperties(bag, "P_");
  bag.WriteProperty("P_ServerNodes_ServerNode2_Server", "s1", std::nullopt);
  EXPECT_EQ(FailureOf([&] { Load(); }), 457);
}

TEST_F(loading, two_tables_without_a_name_fail_with_457) {
  bag.WriteProperty("L_TableNodeCount", Long{2}, std::nullopt);
  const auto catalog = CatalogNode::Create(objects);
  EXPECT_EQ(FailureOf([&] { catalog->TableNodes()->ReadProperties(bag, "L_"); }), 457);
}

TEST_F(loading, a_list_that_fails_keeps_what_it_had) {
  AddServer("S1");
  bag.WriteProperty("L_ServerNodeCount", Long{2}, std::nullopt);
  EXPECT_EQ(FailureOf([&] { root->ServerNodes()->ReadProperties(bag, "L_"); }), 457);
  EXPECT_EQ(root->ServerNodes()->Count(), 1);
  EXPECT_NE(root->ServerNodes()->Item("S1"), nullptr);
}

TEST_F(loading, a_table_query_of_another_kind_fails_with_13) {
  class Other : public platform::PersistedObject {
   public:
    Text ProgId() const override { return "Other"; }
    Text WriteState() const override { return {}; }
    void ReadState(const Text&) override {}
  };
  bag.Creates("Other", [] { return std::make_shared<Other>(); });
  bag.WriteProperty("T_Query", std::make_shared<Other>(), std::nullopt);
  const auto table = TableNode::Create(objects);
  EXPECT_EQ(FailureOf([&] { table->ReadProperties(bag, "T_"); }), 13);
  bag.WriteProperty("T_Query", "text", std::nullopt);
  EXPECT_EQ(FailureOf([&] { table->ReadProperties(bag, "T_"); }), 13);
}

TEST_F(loading, a_number_that_is_none_fails_with_13) {
  AddServer("S1")->CatalogNodes()->Add("C")->TableNodes()->Add("T");
  root->WriteProperties(bag, "P_");
  const Text sServer = "P_ServerNodes_ServerNode1_";
  for (const Text& sNumber :
       {Text("P_MaxRows"), Text("P_QueryTimeout"), Text("P_ServerNodes_ServerNodeCount"),
        sServer + "CatalogNodes_CatalogNodeCount", sServer + "QueryNodes_QueryNodeCount",
        sServer + "CatalogNodes_CatalogNode1_TableNodes_TableNodeCount"}) {
    const Value vtGood = bag.At(sNumber);
    ASSERT_FALSE(vtGood.IsNull()) << sNumber;
    bag.WriteProperty(sNumber, "many", std::nullopt);
    EXPECT_EQ(FailureOf([&] { Load(); }), 13) << sNumber;
    bag.WriteProperty(sNumber, vtGood, std::nullopt);
  }
  EXPECT_EQ(FailureOf([&] { Load(); }), 0);
}

TEST_F(loading, numbers_written_as_text_are_converted) {
  const auto server = AddServer("S1");
  AddServer("S2");
  for (const char* sName : {"A", "B"}) {
    server->CatalogNodes()->Add(sName);
    server->QueryNodes()->Add(sName, "x");
  }
  root->WriteProperties(bag, "P_");
  bag.WriteProperty("P_MaxRows", "12", std::nullopt);
  bag.WriteProperty("P_QueryTimeout", "13", std::nullopt);
  for (const char* sCount : {"ServerNodeCount", "ServerNode1_CatalogNodes_CatalogNodeCount",
                             "ServerNode1_QueryNodes_QueryNodeCount"}) {
    bag.WriteProperty(Text("P_ServerNodes_") + sCount, "2", std::nullopt);
  }
  const auto loaded = Load();
  EXPECT_EQ(loaded->MaxRows(), 12);
  EXPECT_EQ(loaded->QueryTimeout(), 13);
  ASSERT_EQ(loaded->ServerNodes()->Count(), 2);
  EXPECT_EQ(loaded->ServerNodes()->Item(Long{2})->Server(), "S2");
  EXPECT_EQ(loaded->ServerNodes()->Item("S1")->CatalogNodes()->Count(), 2);
  EXPECT_EQ(loaded->ServerNodes()->Item("S1")->QueryNodes()->Count(), 2);
}

TEST_F(loading, a_table_lets_go_of_its_old_query) {
  const auto table = AddServer("S1")->CatalogNodes()->Add("C")->TableNodes()->Add("T");
  const auto old = table->Query();
  table->WriteProperties(bag, "T_");
  table->ReadProperties(bag, "T_");
  EXPECT_NE(table->Query(), old);
  EXPECT_EQ(ChangesDuring([&] { old->MaxRows(1); }), 0);
  EXPECT_EQ(ChangesDuring([&] { table->Query()->MaxRows(1); }), 1);
}

TEST_F(loading, a_connected_server_disconnects_it_first) {
  const auto server = AddServer("S1");
  server->Connect();
  server->ReadProperties(bag, "S_");
  EXPECT_EQ(historian->log.back(), "Close");
  EXPECT_EQ(server->Connection(), nullptr);
}

TEST_F(loading, a_connection_that_cannot_be_closed_leaves_the_server_as_it_is) {
  const auto server = AddServer("S1");
  server->QueryNodes()->Add("Q", "x");
  server->WriteProperties(bag, "S_");
  for (const char* sSetting : {"Provider", "Server", "User", "ExtendedOptions"}) {
    bag.WriteProperty(Text("S_") + sSetting, "other", std::nullopt);
  }
  bag.WriteProperty("S_QueryNodes_QueryNodeCount", Long{0}, std::nullopt);
  server->Connect();
  const auto connection = server->Connection();
  historian->bFailClose = true;
  EXPECT_EQ(ChangesDuring(
                [&] { EXPECT_EQ(FailureOf([&] { server->ReadProperties(bag, "S_"); }), 3704); }),
            0);
  EXPECT_EQ(server->Connection(), connection);
  EXPECT_EQ(server->Provider(), "ORVOLEDB");
  EXPECT_EQ(server->Server(), "S1");
  EXPECT_EQ(server->User(), "orvanesnapin");
  EXPECT_EQ(server->ExtendedOptions(), "");
  EXPECT_EQ(server->QueryNodes()->Count(), 1);
  historian->bFailClose = false;
}

TEST_F(loading, many_tables_are_all_found_again) {
  const auto tables = AddServer("S1")->CatalogNodes()->Add("C")->TableNodes();
  for (int i = 1; i <= 3000; ++i) tables->Add("Table" + std::to_string(i));
  root->WriteProperties(bag, "P_");
  const auto loaded = Load()->ServerNodes()->Item("S1")->CatalogNodes()->Item("C")->TableNodes();
  ASSERT_EQ(loaded->Count(), 3000);
  for (int i = 1; i <= 3000; ++i) {
    EXPECT_EQ(loaded->Item(Long{i}), loaded->Item("TABLE" + std::to_string(i)));
  }
}

}  // namespace
}  // namespace orvane::nodes
