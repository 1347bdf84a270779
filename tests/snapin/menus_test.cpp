#include "tests/snapin/snap_in_fixture.h"

namespace orvane::snapin {
namespace {

class menus : public SnapInTest {
 protected:
  menus() { server = ExpandAll(); }

  /// The menus of the item, each as "name caption: item caption (disabled), ...".
  Text MenuOf(const Text& sKey, bool bAllowed = true) {
    fakes::FakeContextMenu menu;
    driver.snapIn->Views_AddTopMenuItems(driver.console->CurrentView(),
                                         fakes::FakeSelection(driver.Item(sKey)), menu, bAllowed);
    Text sText;
    for (const auto& top : menu.menus) {
      sText += top.sName + " " + top.sCaption + ":";
      for (const auto& item : top.items) {
        sText += " [" + item.sName + " " + item.sCaption + (item.bEnabled ? "]" : "] disabled");
      }
    }
    return sText;
  }

  nodes::ServerNodePtr server;
};

TEST_F(menus, the_root_offers_connect_and_options) {
  EXPECT_EQ(MenuOf(""),
            "m_mnuServers Servers: [m_mnuServersConnect Connect...] [m_mnuOptions Options...]");
}

TEST_F(menus, a_connected_server_offers_disconnect) {
  EXPECT_EQ(MenuOf("S1"),
            "m_mnuServer Server: [m_mnuConnect Connect...] disabled"
            " [m_mnuDisconnect Disconnect] [m_mnuRemoveServer Remove]");
}

TEST_F(menus, a_disconnected_server_offers_connect) {
  server->Disconnect();
  EXPECT_EQ(MenuOf("S1"),
            "m_mnuServer Server: [m_mnuConnect Connect...] [m_mnuDisconnect Disconnect] disabled"
            " [m_mnuRemoveServer Remove]");
}

TEST_F(menus, the_catalogs_folder_offers_add_catalog) {
  EXPECT_EQ(MenuOf("S1.Catalogs"), "m_mnuCatalogs Catalogs: [m_mnuAddCatalog Add Catalog...]");
}

TEST_F(menus, removing_a_catalog_says_what_becomes_of_it) {
  const auto item = driver.Item("S1.Catalogs.Plant");
  const auto statusText = [&] {
    fakes::FakeContextMenu menu;
    driver.snapIn->Views_AddTopMenuItems(driver.console->CurrentView(), fakes::FakeSelection(item),
                                         menu, true);
    return menu.menus.at(0).items.at(0).sStatusText;
  };
  EXPECT_EQ(statusText(),
            "Drops the catalog on the server. Its file is deleted when it lies with the historian; "
            "one at a path of its own stays.");
  std::dynamic_pointer_cast<nodes::CatalogNode>(item->Tag())->Catalog("");
  EXPECT_EQ(statusText(),
            "Takes the catalog out of this document; without a name it stands for none of the "
            "server's, and nothing is dropped.");
}

TEST_F(menus, a_catalog_offers_remove) {
  EXPECT_EQ(MenuOf("S1.Catalogs.Plant"), "m_mnuCatalog Catalog: [m_mnuCatalogRemove Remove]");
}

TEST_F(menus, the_two_system_catalogs_have_none) {
  const auto catalog =
      std::dynamic_pointer_cast<nodes::CatalogNode>(driver.Item("S1.Catalogs.Plant")->Tag());
  for (const char* const sName : {"Functions", "Orvane"}) {
    catalog->Catalog(sName);
    EXPECT_EQ(MenuOf("S1.Catalogs.Plant"), "") << sName;
  }
  for (const char* const sName : {"functions", "ORVANE", "Orv_Orvane"}) {
    catalog->Catalog(sName);
    EXPECT_EQ(MenuOf("S1.Catalogs.Plant"), "m_mnuCatalog Catalog: [m_mnuCatalogRemove Remove]");
  }
}

TEST_F(menus, a_table_offers_its_query) {
  EXPECT_EQ(MenuOf("S1.Catalogs.Plant.Pumps"), "m_mnuTable Table: [m_mnuQuery Query...]");
}

TEST_F(menus, the_queries_folder_offers_new_query) {
  EXPECT_EQ(MenuOf("S1.Queries"), "m_mnuQueries Queries: [m_mnuNewQuery New Query...]");
}

TEST_F(menus, a_query_offers_edit_and_remove) {
  EXPECT_EQ(MenuOf("S1.Queries.Q1"), "m_mnuQuery2 Query: [m_mnuEdit Edit...] [m_mnuRemove Remove]");
}

TEST_F(menus, nothing_is_added_where_insertion_is_not_allowed) {
  EXPECT_EQ(MenuOf("", false), "");
}

TEST_F(menus, nothing_is_added_without_a_selection) {
  fakes::FakeContextMenu menu;
  driver.snapIn->Views_AddTopMenuItems(driver.console->CurrentView(), fakes::FakeSelection(), menu,
                                       true);
  EXPECT_TRUE(menu.menus.empty());
  ExpectNoBoxes();
}

TEST_F(menus, a_failure_while_building_is_shown) {
  driver.Item("S1")->Tag(nullptr);
  EXPECT_EQ(MenuOf("S1"), "");
  EXPECT_EQ(ErrorBox(),
            "\"S1\" stands for nothing any more; reload its server, or select another item.");
}

TEST_F(menus, a_command_does_nothing_unless_one_scope_item_is_selected) {
  const std::pair<const char*, const char*> kItems[] = {{"m_mnuServersConnect", ""},
                                                        {"m_mnuOptions", ""},
                                                        {"m_mnuConnect", "S1"},
                                                        {"m_mnuDisconnect", "S1"},
                                                        {"m_mnuRemoveServer", "S1"},
                                                        {"m_mnuAddCatalog", "S1.Catalogs"},
                                                        {"m_mnuCatalogRemove", "S1.Catalogs.Plant"},
                                                        {"m_mnuQuery", "S1.Catalogs.Plant.Pumps"},
                                                        {"m_mnuNewQuery", "S1.Queries"},
                                                        {"m_mnuEdit", "S1.Queries.Q1"},
                                                        {"m_mnuRemove", "S1.Queries.Q1"}};
  std::vector<std::pair<Text, fakes::FakeScopeItemPtr>> clicks;
  for (const auto& [sItem, sKey] : kItems) clicks.emplace_back(sItem, driver.Item(sKey));
  const Text sTree = driver.Tree();
  driver.historian->log.clear();
  for (const Long lType : {1, 2, 3, 4, 5}) {
    for (const auto& [sItem, item] : clicks) {
      fakes::FakeSelection selection(item);
      selection.lType = lType;
      driver.snapIn->Menu_Click(sItem, 0, selection);
    }
  }
  EXPECT_TRUE(driver.ui->boxes.empty());
  EXPECT_TRUE(driver.historian->log.empty());
  for (const char* const sForm : {"OptionsDlg", "AddCatalogDlg", "QueryDlg", "TableQueryDlg"}) {
    EXPECT_FALSE(driver.forms->WasLoaded(sForm)) << sForm;
  }
  EXPECT_EQ(driver.Tree(), sTree);
}

TEST_F(menus, of_several_selected_items_the_first_decides) {
  fakes::FakeContextMenu menu;
  fakes::FakeSelection selection(driver.Item("S1.Queries"));
  selection.items.push_back(driver.Item("S1"));
  driver.snapIn->Views_AddTopMenuItems(driver.console->CurrentView(), selection, menu, true);
  ASSERT_EQ(menu.menus.size(), 1U);
  EXPECT_EQ(menu.menus[0].sName, "m_mnuQueries");
}

TEST_F(menus, an_item_of_an_unknown_type_has_none) {
  fakes::FakeContextMenu menu;
  for (const char* const sType : {"server", "Folder", ""}) {
    const auto item = std::make_shared<fakes::FakeScopeItem>(sType, "x", "x");
    driver.snapIn->Views_AddTopMenuItems(driver.console->CurrentView(), fakes::FakeSelection(item),
                                         menu, true);
  }
  EXPECT_TRUE(menu.menus.empty());
  ExpectNoBoxes();
}

TEST_F(menus, one_selected_scope_item_is_the_selection_of_type_0) {
  EXPECT_EQ(platform::kSelectionSingleScopeItem, 0);
  fakes::FakeSelection selection(driver.Item("S1"));
  selection.lType = 0;
  driver.snapIn->Menu_Click("m_mnuDisconnect", 0, selection);
  EXPECT_EQ(server->Connection(), nullptr);
}

TEST_F(menus, the_index_of_a_click_does_not_matter) {
  driver.snapIn->Menu_Click("m_mnuDisconnect", 77, fakes::FakeSelection(driver.Item("S1")));
  EXPECT_EQ(server->Connection(), nullptr);
}

TEST_F(menus, a_name_that_is_no_menu_item_does_nothing) {
  const Text sTree = driver.Tree();
  for (const char* const sItem : {"", "m_mnuServer", "m_mnudisconnect", "Disconnect"}) {
    driver.Click(sItem, "S1");
  }
  EXPECT_EQ(driver.Tree(), sTree);
  EXPECT_NE(server->Connection(), nullptr);
  ExpectNoBoxes();
}

TEST_F(menus, every_command_reports_a_lost_node_in_the_error_box) {
  const std::pair<const char*, const char*> kCommands[] = {
      {"m_mnuConnect", "S1"},
      {"m_mnuDisconnect", "S1"},
      {"m_mnuRemoveServer", "S1"},
      {"m_mnuAddCatalog", "S1.Catalogs"},
      {"m_mnuCatalogRemove", "S1.Catalogs.Plant"},
      {"m_mnuQuery", "S1.Catalogs.Plant.Pumps"},
      {"m_mnuNewQuery", "S1.Queries"},
      {"m_mnuEdit", "S1.Queries.Q1"},
      {"m_mnuRemove", "S1.Queries.Q1"}};
  for (const auto& [sCommand, sKey] : kCommands) {
    const auto item = driver.Item(sKey);
    const auto tag = item->Tag();
    item->Tag(nullptr);
    driver.ui->icons.clear();
    driver.Click(sCommand, sKey);
    EXPECT_EQ(ErrorBox(),
              "\"" + item->DisplayName() +
                  "\" stands for nothing any more; reload its server, or select another item.")
        << sCommand;
    EXPECT_EQ(driver.ui->icons, std::vector<platform::MsgBoxIcon>{platform::MsgBoxIcon::None});
    item->Tag(tag);
  }
  driver.snapIn->SnapIn_Unload();
  for (const char* const sCommand : {"m_mnuOptions", "m_mnuServersConnect"}) {
    driver.historian->sChosenServer = "S2";
    driver.console->staticItem->node->bExpandedOnce = true;
    driver.Click(sCommand, "");
    EXPECT_EQ(ErrorBox(), "No servers are loaded; open a document or create a new one.")
        << sCommand;
  }
}

}  // namespace
}  // namespace orvane::snapin
