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
  EXPECT_EQ(ErrorBox(), "\"S1\" stands for nothing any more; refresh the tree.");
}

TEST_F(menus, a_command_does_nothing_unless_one_scope_item_is_selected) {
  const char* const kItems[] = {"m_mnuServersConnect", "m_mnuOptions",      "m_mnuConnect",
                                "m_mnuDisconnect",     "m_mnuRemoveServer", "m_mnuAddCatalog",
                                "m_mnuCatalogRemove",  "m_mnuQuery",        "m_mnuNewQuery",
                                "m_mnuEdit",           "m_mnuRemove"};
  const Text sTree = driver.Tree();
  driver.historian->log.clear();
  for (const Long lType : {1, 2, 3, 4, 5}) {
    for (const char* const sItem : kItems) {
      fakes::FakeSelection selection(driver.Item("S1"));
      selection.lType = lType;
      driver.snapIn->Menu_Click(sItem, 0, selection);
    }
  }
  EXPECT_TRUE(driver.ui->boxes.empty());
  EXPECT_TRUE(driver.historian->log.empty());
  EXPECT_FALSE(driver.forms->WasLoaded("OptionsDlg"));
  EXPECT_EQ(driver.Tree(), sTree);
}

}  // namespace
}  // namespace orvane::snapin
