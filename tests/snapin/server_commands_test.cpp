// The commands that add, connect, disconnect and remove servers.
#include "tests/snapin/snap_in_fixture.h"

namespace orvane::snapin {
namespace {

using platform::MsgBoxResult;

using server_commands = SnapInTest;

// ---- adding a server

TEST_F(server_commands, adding_a_server_expands_the_root_and_selects_the_new_item) {
  driver.historian->sChosenServer = "S2";
  driver.Click("m_mnuServersConnect", "");
  ExpectNoBoxes();
  ASSERT_NE(Root()->ServerNodes()->Item("S2"), nullptr);
  EXPECT_NE(Root()->ServerNodes()->Item("S2")->Connection(), nullptr);
  const auto item = driver.Item("S2");
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->NodeTypeName(), "Server");
  EXPECT_EQ(item->DisplayName(), "S2");
  EXPECT_EQ(item->NodeId(), "S2");
  EXPECT_EQ(item->ListSubItems().Texts(), std::vector<Text>{"S2"});
  EXPECT_EQ(item->Tag(), Root()->ServerNodes()->Item("S2"));
  EXPECT_TRUE(driver.console->staticItem->node->bExpandedOnce);
  EXPECT_EQ(driver.console->CurrentView().selected, item);
  EXPECT_EQ(driver.historian->log[0],
            "ConnectionString Provider = ORVOLEDB; Data Source = localhost;");
}

TEST_F(server_commands, an_expanded_root_is_not_expanded_again) {
  driver.Expand("");
  int nExpanded = 0;
  driver.console->staticItem->node->onExpand = [&] { ++nExpanded; };
  driver.historian->sChosenServer = "S1";
  driver.Click("m_mnuServersConnect", "");
  EXPECT_EQ(nExpanded, 0);
  EXPECT_TRUE(driver.HasItem("S1"));
}

TEST_F(server_commands, a_failed_logon_leaves_both_trees_alone) {
  driver.historian->bCancelLogon = true;
  driver.Click("m_mnuServersConnect", "");
  EXPECT_EQ(ErrorBox(), "The logon was cancelled.");
  EXPECT_EQ(Root()->ServerNodes()->Count(), 0);
  EXPECT_FALSE(driver.console->staticItem->node->bExpandedOnce);
}

TEST_F(server_commands, a_failing_expansion_of_the_root_only_costs_the_item) {
  driver.console->staticItem->node->onExpand = [] {
    throw platform::Failure(5, "The root cannot be expanded.");
  };
  driver.historian->sChosenServer = "S1";
  driver.Click("m_mnuServersConnect", "");
  ExpectNoBoxes();
  EXPECT_NE(Root()->ServerNodes()->Item("S1"), nullptr);
  EXPECT_FALSE(driver.HasItem("S1"));
}

TEST_F(server_commands, a_root_that_cannot_be_selected_only_costs_the_item) {
  driver.console->CurrentView().onSelect = [](const platform::ScopeItemPtr&) {
    throw platform::Failure(5, "The root cannot be selected.");
  };
  driver.historian->sChosenServer = "S1";
  driver.Click("m_mnuServersConnect", "");
  ExpectNoBoxes();
  EXPECT_EQ(driver.console->CurrentView().selected, driver.console->staticItem);
  EXPECT_EQ(Root()->ServerNodes()->Count(), 1);
  EXPECT_NE(Root()->ServerNodes()->Item("S1"), nullptr);
  EXPECT_FALSE(driver.HasItem("S1"));
}

// ---- connecting and disconnecting

TEST_F(server_commands, connecting_a_server_never_expanded_leaves_its_folders_for_later) {
  const auto server = AddServer("S1");
  driver.Expand("");
  // A disconnection takes the expand mark, which the connection has to bring back.
  driver.Click("m_mnuDisconnect", "S1");
  ASSERT_FALSE(driver.Item("S1")->node->bHasChildren);
  driver.Click("m_mnuConnect", "S1");
  ExpectNoBoxes();
  EXPECT_NE(server->Connection(), nullptr);
  EXPECT_FALSE(driver.HasItem("S1.Catalogs"));
  EXPECT_TRUE(driver.Item("S1")->node->bHasChildren);
  EXPECT_EQ(driver.console->CurrentView().selected, driver.Item("S1"));
  driver.Expand("S1");
  EXPECT_TRUE(driver.HasItem("S1.Catalogs"));
  EXPECT_EQ(driver.historian->nLogons, 1);
}

TEST_F(server_commands, connecting_a_server_expanded_before_adds_its_folders_at_once) {
  const auto server = ExpandAll();
  driver.Click("m_mnuDisconnect", "S1");
  driver.Click("m_mnuConnect", "S1");
  ExpectNoBoxes();
  EXPECT_EQ(driver.Children("S1"), (std::vector<Text>{"S1.Catalogs", "S1.Queries"}));
  EXPECT_EQ(driver.console->CurrentView().selected, driver.Item("S1"));
}

TEST_F(server_commands, a_failed_connect_is_shown_and_changes_nothing) {
  const auto server = AddServer("S1");
  driver.Expand("");
  driver.historian->bCancelLogon = true;
  driver.Click("m_mnuConnect", "S1");
  EXPECT_EQ(ErrorBox(), "The logon was cancelled.");
  EXPECT_EQ(server->Connection(), nullptr);
}

TEST_F(server_commands, disconnecting_releases_rows_closes_and_clears_the_item) {
  const auto server = ExpandAll();
  driver.Select("S1.Catalogs.Plant.Pumps");
  const auto grid = driver.TableEditor();
  ASSERT_NE(grid->recordset, nullptr);
  const auto pumps = Pumps();
  pumps->SetRecordset(grid->recordset, 1);
  driver.historian->onClose = [&](const Text&) {
    Long lUpdatability = 1;
    EXPECT_EQ(grid->recordset, nullptr) << "the grid lets go of its rows first";
    EXPECT_EQ(pumps->GetRecordset(lUpdatability), nullptr) << "then the cached ones go";
  };
  driver.historian->log.clear();
  driver.Click("m_mnuDisconnect", "S1");
  ExpectNoBoxes();
  EXPECT_EQ(driver.historian->log, std::vector<Text>{"Close"});
  EXPECT_EQ(server->Connection(), nullptr);
  EXPECT_TRUE(driver.Children("S1").empty());
  EXPECT_FALSE(driver.HasItem("S1.Catalogs.Plant"));
  EXPECT_FALSE(driver.Item("S1")->node->bHasChildren);
}

TEST_F(server_commands, disconnecting_keeps_the_rows_of_named_queries) {
  ExpandAll();
  const auto query = Query();
  const auto rs = std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{},
                                                         std::vector<fakes::FakeRecordset::Row>{});
  query->Recordset(rs);
  driver.Click("m_mnuDisconnect", "S1");
  EXPECT_EQ(query->Recordset(), rs);
}

TEST_F(server_commands, a_connection_that_cannot_be_closed_keeps_its_items) {
  const auto server = ExpandAll();
  driver.historian->bFailClose = true;
  driver.Click("m_mnuDisconnect", "S1");
  EXPECT_EQ(ErrorBox(), "The connection cannot be closed.");
  EXPECT_NE(server->Connection(), nullptr);
  EXPECT_TRUE(driver.HasItem("S1.Catalogs"));
  driver.historian->bFailClose = false;
}

// ---- removing

TEST_F(server_commands, removing_a_server_asks_first) {
  ExpandAll();
  driver.ui->answer = MsgBoxResult::No;
  driver.Click("m_mnuRemoveServer", "S1");
  ASSERT_EQ(driver.ui->boxes.size(), 1U);
  EXPECT_EQ(driver.ui->boxes[0].sText,
            "Are you sure you want to remove the \"S1\" server from the tree?");
  EXPECT_EQ(driver.ui->boxes[0].sTitle, "Confirm Server Removal");
  EXPECT_EQ(driver.ui->boxes[0].buttons, platform::MsgBoxButtons::YesNo);
  EXPECT_EQ(driver.ui->icons[0], platform::MsgBoxIcon::None);
  EXPECT_NE(Root()->ServerNodes()->Item("S1"), nullptr);
  EXPECT_TRUE(driver.HasItem("S1.Catalogs.Plant.Pumps"));
}

TEST_F(server_commands, a_removed_server_leaves_both_trees_without_being_disconnected) {
  const auto server = ExpandAll();
  driver.historian->log.clear();
  driver.Click("m_mnuRemoveServer", "S1");
  EXPECT_EQ(Root()->ServerNodes()->Count(), 0);
  EXPECT_FALSE(driver.HasItem("S1"));
  EXPECT_FALSE(driver.HasItem("S1.Catalogs.Plant.Pumps"));
  EXPECT_TRUE(driver.historian->log.empty());
  EXPECT_NE(server->Connection(), nullptr);
}

// ---- what was done before a failure stays done

TEST_F(server_commands, an_added_server_has_the_name_column) {
  driver.historian->sChosenServer = "S2";
  driver.Click("m_mnuServersConnect", "");
  EXPECT_EQ(driver.Item("S2")->ColumnHeaders().headers,
            (std::map<Long, fakes::FakeColumnHeader>{{1, {"Name", "Name", 200}}}));
  EXPECT_EQ(driver.Item("S2")->ListSubItems().items,
            (std::map<Long, std::pair<Text, Text>>{{1, {"Name", "S2"}}}));
  EXPECT_TRUE(driver.HasExpandMark("S2"));
}

TEST_F(server_commands, a_data_source_that_cannot_be_read_adds_no_server) {
  driver.historian->bFailDataSource = true;
  driver.historian->sChosenServer = "S1";
  driver.Click("m_mnuServersConnect", "");
  EXPECT_EQ(ErrorBox(), "The data source cannot be read.");
  EXPECT_EQ(Root()->ServerNodes()->Count(), 0);
  EXPECT_TRUE(driver.Children("").empty());
}

TEST_F(server_commands, a_server_whose_key_is_taken_in_the_tree_is_kept_without_an_item) {
  ExpandAll();
  driver.AddServer({"S1.Queries", {}});
  driver.historian->sChosenServer = "S1.Queries";
  driver.Click("m_mnuServersConnect", "");
  EXPECT_EQ(ErrorBox(), "The item is already in the tree.");
  EXPECT_NE(Root()->ServerNodes()->Item("S1.Queries"), nullptr);
  EXPECT_EQ(driver.Children(""), std::vector<Text>{"S1"});
}

TEST_F(server_commands, a_server_refused_twice_is_closed_again) {
  driver.historian->sChosenServer = "S1";
  driver.Click("m_mnuServersConnect", "");
  driver.historian->log.clear();
  driver.historian->sChosenServer = "s1";
  driver.AddServer({"s1", {}});
  driver.Click("m_mnuServersConnect", "");
  EXPECT_EQ(ErrorBox(), "The key \"s1\" is already in the collection; choose another name.");
  EXPECT_EQ(driver.historian->log.back(), "Close");
  EXPECT_NE(Root()->ServerNodes()->Item("S1")->Connection(), nullptr);
  EXPECT_EQ(driver.Children(""), std::vector<Text>{"S1"});
}

TEST_F(server_commands, a_server_stays_connected_when_its_folders_cannot_be_added) {
  const auto server = ExpandAll();
  driver.Click("m_mnuDisconnect", "S1");
  driver.console->ScopeItems().Add("Server", "S1.Queries", driver.console->staticItem->ScopeNode(),
                                   true);
  driver.Click("m_mnuConnect", "S1");
  EXPECT_EQ(ErrorBox(), "The item is already in the tree.");
  EXPECT_NE(server->Connection(), nullptr);
  EXPECT_EQ(driver.Children("S1"), std::vector<Text>{"S1.Catalogs"});
}

TEST_F(server_commands, connecting_after_a_failed_expansion_adds_the_folders) {
  AddServer("S1");
  driver.Expand("");
  driver.historian->bCancelLogon = true;
  driver.Expand("S1");
  EXPECT_EQ(ErrorBox(), "The logon was cancelled.");
  EXPECT_FALSE(driver.HasExpandMark("S1"));
  driver.historian->bCancelLogon = false;
  driver.Click("m_mnuConnect", "S1");
  ExpectNoBoxes();
  EXPECT_EQ(driver.Children("S1"), (std::vector<Text>{"S1.Catalogs", "S1.Queries"}));
}

TEST_F(server_commands, a_grid_that_keeps_its_rows_keeps_the_connection) {
  const auto server = ExpandAll();
  Query()->Recordset(nullptr);
  driver.Select("S1.Catalogs.Plant.Data");
  driver.Select("S1.Catalogs.Plant.Pumps");
  Long lUpdatability = 0;
  const auto data = server->CatalogNodes()->Item("Plant")->TableNodes()->Item("Data");
  ASSERT_NE(data->GetRecordset(lUpdatability), nullptr);
  driver.TableEditor()->sFailing = "AttachRecordset none 0";
  driver.historian->log.clear();
  driver.Click("m_mnuDisconnect", "S1");
  EXPECT_EQ(ErrorBox(), "The grid cannot do that.");
  EXPECT_TRUE(driver.historian->log.empty()) << "not closed";
  EXPECT_NE(server->Connection(), nullptr);
  EXPECT_NE(data->GetRecordset(lUpdatability), nullptr) << "not released";
  EXPECT_TRUE(driver.HasItem("S1.Catalogs"));
}

TEST_F(server_commands, rows_are_gone_when_the_connection_then_cannot_be_closed) {
  const auto server = ExpandAll();
  driver.Select("S1.Catalogs.Plant.Data");
  driver.Select("S1.Catalogs.Plant.Pumps");
  driver.historian->bFailClose = true;
  driver.Click("m_mnuDisconnect", "S1");
  EXPECT_EQ(ErrorBox(), "The connection cannot be closed.");
  Long lUpdatability = 1;
  const auto data = server->CatalogNodes()->Item("Plant")->TableNodes()->Item("Data");
  EXPECT_EQ(data->GetRecordset(lUpdatability), nullptr);
  EXPECT_EQ(lUpdatability, 0);
  EXPECT_EQ(driver.TableEditor()->recordset, nullptr);
  EXPECT_TRUE(driver.HasExpandMark("S1"));
  driver.historian->bFailClose = false;
}

TEST_F(server_commands, the_grid_of_another_server_is_emptied_too) {
  ExpandAll();
  AddServer("S2")->Connect();
  driver.console->ScopeItems()
      .Add("Server", "S2", driver.console->staticItem->ScopeNode(), true)
      ->Tag(Root()->ServerNodes()->Item("S2"));
  driver.Select("S1.Catalogs.Plant.Pumps");
  ASSERT_NE(driver.TableEditor()->recordset, nullptr);
  driver.Click("m_mnuDisconnect", "S2");
  ExpectNoBoxes();
  EXPECT_EQ(driver.TableEditor()->recordset, nullptr);
  EXPECT_NE(driver.TableEditor()->connection, nullptr);
}

TEST_F(server_commands, disconnecting_a_disconnected_server_only_clears_its_item) {
  const auto server = ExpandAll();
  driver.Click("m_mnuDisconnect", "S1");
  driver.historian->log.clear();
  driver.Click("m_mnuDisconnect", "S1");
  ExpectNoBoxes();
  EXPECT_TRUE(driver.historian->log.empty());
  EXPECT_FALSE(driver.HasExpandMark("S1"));
}

TEST_F(server_commands, a_server_that_left_the_list_keeps_its_item) {
  ExpandAll();
  Root()->ServerNodes()->Remove("S1");
  driver.Click("m_mnuRemoveServer", "S1");
  EXPECT_EQ(driver.ui->boxes.back().sText,
            "The argument is invalid: the collection has no key \"S1\"; check the name.");
  EXPECT_EQ(driver.ui->boxes.back().sTitle, "Error");
  EXPECT_TRUE(driver.HasItem("S1"));
}

TEST_F(server_commands, a_server_whose_item_is_gone_leaves_the_list) {
  ExpandAll();
  const auto item = driver.console->ScopeItems().items.extract("S1").mapped();
  driver.snapIn->Menu_Click("m_mnuRemoveServer", 0, fakes::FakeSelection(item));
  EXPECT_EQ(driver.ui->boxes.back().sText, "The item is not in the tree.");
  EXPECT_EQ(Root()->ServerNodes()->Count(), 0);
}

TEST_F(server_commands, the_connection_of_a_removed_server_ends_with_its_last_reference) {
  ExpandAll();
  driver.historian->log.clear();
  driver.Click("m_mnuRemoveServer", "S1");
  EXPECT_EQ(driver.historian->log, std::vector<Text>{"Close"});
}

TEST_F(server_commands, an_unexpanded_root_is_expanded_and_selected_before_a_server_is_refused) {
  const auto first = AddServer("S1");
  driver.historian->sChosenServer = "S1";
  driver.Click("m_mnuServersConnect", "");
  EXPECT_EQ(ErrorBox(), "The key \"S1\" is already in the collection; choose another name.");
  EXPECT_EQ(driver.Children(""), std::vector<Text>{"S1"});
  EXPECT_EQ(driver.Item("S1")->Tag(), first);
  EXPECT_EQ(driver.console->CurrentView().selected, driver.console->staticItem);
}

}  // namespace
}  // namespace orvane::snapin
