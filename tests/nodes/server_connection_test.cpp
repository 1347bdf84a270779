// What a server node asks of data access when it connects and disconnects.
#include "tests/fakes/user_interface.h"
#include "tests/nodes/model.h"

namespace orvane::nodes {
namespace {

using platform::Long;
using platform::Text;
using platform::Value;

class server_connection : public Model {
 protected:
  server_connection() { server->Server("S1"); }
  ServerNodePtr server = ServerNode::Create(objects);
};

TEST_F(server_connection, connect_disables_server_selection_and_always_prompts) {
  server->Connect();
  const Text sString = "Provider = ORVOLEDB; Data Source = S1;Disable Server Selection = True;";
  EXPECT_EQ(historian->log, (std::vector<Text>{"ConnectionString " + sString, "Prompt 1",
                                               "Open " + sString + "|orvanesnapin||-1"}));
  ASSERT_NE(server->Connection(), nullptr);
  EXPECT_TRUE(server->Connection()->IsOpen());
}

TEST_F(server_connection, the_prompt_is_the_32_bit_number_1) {
  const auto prompt = [&] { return server->Connection()->Properties().Item("Prompt").Value(); };
  server->Connect();
  EXPECT_EQ(prompt(), Value(Long{1}));
  server->Connection(nullptr);
  server->ConnectEx();
  EXPECT_EQ(prompt(), Value(Long{1}));
}

TEST_F(server_connection, connect_appends_the_extended_options_as_they_are) {
  server->ExtendedOptions("Log Level = 3;odd=;=");
  server->Connect();
  EXPECT_EQ(server->Connection()->ConnectionString(),
            "Provider = ORVOLEDB; Data Source = S1;Disable Server Selection = True;"
            "Log Level = 3;odd=;=");
}

TEST_F(server_connection, connect_does_not_read_the_server_back) {
  historian->sChosenServer = "S2";
  historian->bFailDataSource = true;
  server->Connect();
  EXPECT_EQ(server->Server(), "S1");
}

TEST_F(server_connection, connect_ex_lets_the_dialog_choose_the_server) {
  server->ExtendedOptions("X=1;");
  server->User("U");
  historian->sChosenServer = "S2";
  server->ConnectEx();
  const Text sString = "Provider = ORVOLEDB; Data Source = S1;";
  EXPECT_EQ(historian->log, (std::vector<Text>{"ConnectionString " + sString, "Prompt 1",
                                               "Open " + sString + "|U||-1"}));
  EXPECT_EQ(server->Server(), "S2");
  EXPECT_TRUE(server->Connection()->IsOpen());
}

TEST_F(server_connection, an_empty_server_still_has_its_item_in_the_string) {
  server->Server("");
  EXPECT_NE(FailureOf([&] { server->ConnectEx(); }), 0);
  EXPECT_EQ(historian->log.front(), "ConnectionString Provider = ORVOLEDB; Data Source = ;");
}

TEST_F(server_connection, a_cancelled_logon_fails_and_changes_nothing) {
  historian->bCancelLogon = true;
  historian->sChosenServer = "S2";
  EXPECT_EQ(FailureOf([&] { server->ConnectEx(); }), platform::failure::kCancelled);
  EXPECT_EQ(FailureOf([&] { server->Connect(); }), platform::failure::kCancelled);
  EXPECT_EQ(server->Connection(), nullptr);
  EXPECT_EQ(server->Server(), "S1");
}

TEST_F(server_connection, a_failed_open_keeps_an_earlier_connection) {
  server->Connect();
  const auto earlier = server->Connection();
  historian->bCancelLogon = true;
  EXPECT_EQ(FailureOf([&] { server->Connect(); }), platform::failure::kCancelled);
  EXPECT_EQ(server->Connection(), earlier);
  historian->sChosenServer = "S2";
  EXPECT_EQ(FailureOf([&] { server->ConnectEx(); }), platform::failure::kCancelled);
  EXPECT_EQ(server->Connection(), earlier);
  EXPECT_TRUE(earlier->IsOpen());
  EXPECT_EQ(server->Server(), "S1");
}

TEST_F(server_connection, an_unreadable_data_source_leaves_server_and_connection_as_they_were) {
  historian->bFailDataSource = true;
  historian->sChosenServer = "S2";
  EXPECT_EQ(FailureOf([&] { server->ConnectEx(); }), 3265);
  EXPECT_EQ(server->Server(), "S1");
  EXPECT_EQ(server->Connection(), nullptr);
  server->Connect();
  const auto earlier = server->Connection();
  EXPECT_EQ(FailureOf([&] { server->ConnectEx(); }), 3265);
  EXPECT_EQ(server->Server(), "S1");
  EXPECT_EQ(server->Connection(), earlier);
  EXPECT_TRUE(earlier->IsOpen());
}

TEST_F(server_connection, connecting_again_replaces_the_connection_without_closing_it) {
  server->Connect();
  const auto first = server->Connection();
  server->Connect();
  const auto second = server->Connection();
  EXPECT_NE(second, first);
  server->ConnectEx();
  EXPECT_NE(server->Connection(), second);
  EXPECT_TRUE(server->Connection()->IsOpen());
  EXPECT_TRUE(first->IsOpen());
  EXPECT_TRUE(second->IsOpen());
  EXPECT_EQ(std::count(historian->log.begin(), historian->log.end(), "Close"), 0);
}

TEST_F(server_connection, disconnect_closes_and_drops) {
  server->Connect();
  const auto connection = server->Connection();
  server->Disconnect();
  EXPECT_FALSE(connection->IsOpen());
  EXPECT_EQ(server->Connection(), nullptr);
}

TEST_F(server_connection, disconnect_without_a_connection_does_nothing_and_tells_nobody) {
  const auto added = AddServer("S2");
  EXPECT_EQ(ChangesDuring([&] { added->Disconnect(); }), 0);
  EXPECT_TRUE(historian->log.empty());
}

TEST_F(server_connection, a_failed_close_keeps_the_connection) {
  server->Connect();
  historian->bFailClose = true;
  EXPECT_EQ(FailureOf([&] { server->Disconnect(); }), 3704);
  EXPECT_NE(server->Connection(), nullptr);
  historian->bFailClose = false;
}

TEST_F(server_connection, releasing_cached_rows_keeps_the_connection_open) {
  server->Connect();
  server->ReleaseCachedRecordsets();
  EXPECT_TRUE(server->Connection()->IsOpen());
}

// ---- catalogs on the server

TEST_F(server_connection, adding_a_catalog_sends_it_and_gives_its_identifier) {
  historian->onExecute = [](const Text&) {
    return std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{},
                                                  std::vector<fakes::FakeRecordset::Row>{});
  };
  server->Connect();
  fakes::FakeUserInterface ui;
  Text sCatalog = "of before";
  server->AddCatalog(ui, "N", "P", 0, sCatalog);
  EXPECT_EQ(sCatalog, "N");
  EXPECT_EQ(historian->log.back(), "Execute CREATE DATABASE \"N\" ON (PATH='P')");
  server->AddCatalog(ui, "N", "P", 7, sCatalog);
  EXPECT_EQ(historian->log.back(), "Execute CREATE DATABASE \"N\" ON (SIZE=7)");
  EXPECT_EQ(server->CatalogNodes()->Count(), 0) << "the tree is the caller's";
}

TEST_F(server_connection, a_catalog_that_cannot_be_added_leaves_an_empty_identifier) {
  fakes::FakeUserInterface ui;
  Text sCatalog = "of before";
  EXPECT_THROW(server->AddCatalog(ui, "N", "", 0, sCatalog), platform::Failure);
  EXPECT_EQ(sCatalog, "");
}

TEST_F(server_connection, removing_a_catalog_sends_it_and_leaves_the_tree) {
  historian->onExecute = [](const Text&) {
    return std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{},
                                                  std::vector<fakes::FakeRecordset::Row>{});
  };
  server->Connect();
  server->CatalogNodes()->Add("N");
  server->RemoveCatalog("N");
  EXPECT_EQ(historian->log.back(), "Execute DROP DATABASE \"N\"");
  EXPECT_EQ(server->CatalogNodes()->Count(), 1);
}

TEST_F(server_connection, a_catalog_of_a_server_without_a_connection_cannot_be_removed) {
  try {
    server->RemoveCatalog("N");
    FAIL();
  } catch (const platform::Failure& failure) {
    EXPECT_EQ(failure.Number(), 91);
    EXPECT_EQ(failure.Description(), "The server is not connected; connect it first.");
  }
}

}  // namespace
}  // namespace orvane::nodes
