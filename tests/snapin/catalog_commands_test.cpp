#include "tests/snapin/snap_in_fixture.h"

namespace orvane::snapin {
namespace {

using platform::MsgBoxResult;

class catalog_commands : public SnapInTest {
 protected:
  catalog_commands() {
    driver.historian->onExecute = [this](const Text& sText) -> platform::RecordsetPtr {
      statements.push_back(sText);
      if (sText == sFailing) throw platform::Failure(3805, "The server refused.");
      std::vector<fakes::FakeRecordset::Row> rows;
      if (sText.starts_with("SELECT Identity")) rows.push_back({"{GUID}"});
      return std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{{"Identity"}},
                                                    rows);
    };
  }
  void Add(const Text& sName, const Text& sPath, const Text& sSize) {
    driver.forms->WhenShown("AddCatalogDlg", [=](fakes::FakeForm& form) {
      form.TextBox("m_txtName").Text(sName);
      form.TextBox("m_txtPath").Text(sPath);
      form.TextBox("m_txtSize").Text(sSize);
      form.Button("m_btnOk").Click();
    });
    driver.Click("m_mnuAddCatalog", "S1.Catalogs");
  }

  std::vector<Text> statements;
  Text sFailing;
};

TEST_F(catalog_commands, an_added_catalog_appears_under_an_expanded_folder) {
  const auto server = ExpandAll();
  Add("New", "/data", "");
  ExpectNoBoxes();
  EXPECT_EQ(statements, std::vector<Text>{"CREATE DATABASE \"New\" ON (PATH='/data')"});
  const auto node = server->CatalogNodes()->Item("New");
  ASSERT_NE(node, nullptr);
  const auto item = driver.Item("S1.Catalogs.New");
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->NodeTypeName(), "Catalog");
  EXPECT_EQ(item->DisplayName(), "New");
  EXPECT_EQ(item->NodeId(), "S1.Catalogs.New");
  EXPECT_EQ(item->ListSubItems().Texts(), std::vector<Text>{"New"});
  EXPECT_EQ(item->Tag(), node);
  EXPECT_TRUE(item->node->bHasChildren);
  EXPECT_EQ(driver.ui->MousePointer(), platform::kMousePointerDefault);
  EXPECT_EQ(driver.ui->pointers.front(), platform::kMousePointerHourglass);
}

TEST_F(catalog_commands, under_a_folder_never_expanded_only_the_node_is_added) {
  const auto server = AddServer("S1");
  driver.Expand("");
  driver.Expand("S1");
  Add("New", "", "");
  EXPECT_NE(server->CatalogNodes()->Item("New"), nullptr);
  EXPECT_FALSE(driver.HasItem("S1.Catalogs.New"));
}

TEST_F(catalog_commands, empty_boxes_are_an_empty_path_and_size_0) {
  ExpandAll();
  Add("New", "", "");
  EXPECT_EQ(statements, std::vector<Text>{"CREATE DATABASE \"New\" "});
}

TEST_F(catalog_commands, a_size_is_passed_in_kilobytes) {
  ExpandAll();
  Add("New", "", "512");
  EXPECT_EQ(statements, std::vector<Text>{"CREATE DATABASE \"New\" ON (SIZE=512)"});
}

TEST_F(catalog_commands, a_size_that_is_no_number_fails_before_anything_is_sent) {
  const auto server = ExpandAll();
  Add("New", "", "big");
  EXPECT_EQ(ErrorBox(), "\"big\" is not a number; enter digits only.");
  EXPECT_TRUE(statements.empty());
  EXPECT_TRUE(driver.ui->pointers.empty());
  EXPECT_EQ(server->CatalogNodes()->Item("New"), nullptr);
}

TEST_F(catalog_commands, cancelling_adds_nothing) {
  const auto server = ExpandAll();
  driver.forms->WhenShown("AddCatalogDlg", [](fakes::FakeForm& form) {
    form.TextBox("m_txtName").Text("New");
    form.Button("m_btnCancel").Click();
  });
  driver.Click("m_mnuAddCatalog", "S1.Catalogs");
  EXPECT_TRUE(statements.empty());
  EXPECT_EQ(server->CatalogNodes()->Item("New"), nullptr);
}

TEST_F(catalog_commands, a_failed_creation_leaves_the_hourglass_until_something_resets_it) {
  const auto server = ExpandAll();
  sFailing = "CREATE DATABASE \"New\" ";
  Add("New", "", "");
  EXPECT_EQ(ErrorBox(), "The server refused.");
  EXPECT_EQ(driver.ui->MousePointer(), platform::kMousePointerHourglass);
  EXPECT_EQ(server->CatalogNodes()->Item("New"), nullptr);
}

TEST_F(catalog_commands, a_catalog_known_by_guid_is_filed_under_its_identity) {
  const auto server = ExpandAll();
  driver.historian->options[5].second = true;
  Add("New", "", "");
  EXPECT_NE(server->CatalogNodes()->Item("{GUID}"), nullptr);
  EXPECT_TRUE(driver.HasItem("S1.Catalogs.{GUID}"));
}

TEST_F(catalog_commands, a_created_catalog_stays_when_a_later_step_fails) {
  ExpandAll();
  Add("PLANT", "", "");
  EXPECT_EQ(ErrorBox(), "The key \"PLANT\" is already in the collection; choose another name.");
  EXPECT_EQ(statements, std::vector<Text>{"CREATE DATABASE \"PLANT\" "});
}

TEST_F(catalog_commands, removing_asks_first) {
  const auto server = ExpandAll();
  driver.ui->answer = MsgBoxResult::No;
  driver.Click("m_mnuCatalogRemove", "S1.Catalogs.Plant");
  ASSERT_EQ(driver.ui->boxes.size(), 1U);
  EXPECT_EQ(driver.ui->boxes[0].sText, "Are you sure you want to remove the \"Plant\" catalog?");
  EXPECT_EQ(driver.ui->boxes[0].sTitle, "Confirm Catalog Removal");
  EXPECT_EQ(driver.ui->boxes[0].buttons, platform::MsgBoxButtons::YesNo);
  EXPECT_EQ(driver.ui->icons[0], platform::MsgBoxIcon::None);
  EXPECT_TRUE(statements.empty());
  EXPECT_NE(server->CatalogNodes()->Item("Plant"), nullptr);
}

TEST_F(catalog_commands, a_removed_catalog_goes_from_the_server_and_both_trees) {
  const auto server = ExpandAll();
  driver.Click("m_mnuCatalogRemove", "S1.Catalogs.Plant");
  EXPECT_EQ(statements, std::vector<Text>{"DROP DATABASE \"Plant\""});
  EXPECT_EQ(server->CatalogNodes()->Item("Plant"), nullptr);
  EXPECT_FALSE(driver.HasItem("S1.Catalogs.Plant"));
  EXPECT_FALSE(driver.HasItem("S1.Catalogs.Plant.Pumps"));
}

TEST_F(catalog_commands, a_catalog_without_a_name_is_removed_from_the_tree_alone) {
  const auto server = ExpandAll();
  server->CatalogNodes()->Add("");
  driver.historian->Server("S1")->catalogs.push_back({"", {}});
  const auto folder = driver.Item("S1.Catalogs");
  driver.console->ScopeItems().RemoveChildren(folder->node);
  driver.snapIn->ScopeItems_Expand(folder);
  const auto nStatements = driver.StatementsSent();
  driver.Click("m_mnuCatalogRemove", "S1.Catalogs.");
  ASSERT_EQ(driver.TakeBoxes().size(), 1U) << "the question alone";
  EXPECT_EQ(driver.StatementsSent(), nStatements);
  EXPECT_FALSE(driver.HasItem("S1.Catalogs."));
  EXPECT_EQ(server->CatalogNodes()->Item(""), nullptr);
}

TEST_F(catalog_commands, a_catalog_without_a_name_can_be_removed_from_the_document_that_brings_it) {
  AddServer("S1")->CatalogNodes()->Add("");
  driver.SaveAndReopen();
  for (const char* sKey : {"", "S1", "S1.Catalogs"}) driver.Expand(sKey);
  EXPECT_EQ(driver.Children("S1.Catalogs"),
            (std::vector<Text>{"S1.Catalogs.Plant", "S1.Catalogs."}));
  const auto server = Root()->ServerNodes()->Item("S1");
  EXPECT_EQ(driver.Item("S1.Catalogs.")->Tag(), server->CatalogNodes()->Item(""));
  driver.Expand("S1.Catalogs.");
  EXPECT_TRUE(driver.Children("S1.Catalogs.").empty());
  ExpectNoBoxes();
  driver.Click("m_mnuCatalogRemove", "S1.Catalogs.");
  ASSERT_EQ(driver.TakeBoxes().size(), 1U) << "the question alone";
  EXPECT_TRUE(statements.empty());
  driver.SaveAndReopen();
  for (const char* sKey : {"", "S1", "S1.Catalogs"}) driver.Expand(sKey);
  EXPECT_EQ(driver.Children("S1.Catalogs"), std::vector<Text>{"S1.Catalogs.Plant"});
}

TEST_F(catalog_commands, a_removal_that_fails_on_the_server_leaves_node_and_item) {
  const auto server = ExpandAll();
  sFailing = "DROP DATABASE \"Plant\"";
  driver.Click("m_mnuCatalogRemove", "S1.Catalogs.Plant");
  EXPECT_EQ(driver.ui->boxes.back().sText, "The server refused.");
  EXPECT_EQ(driver.ui->boxes.back().sTitle, "Error");
  EXPECT_NE(server->CatalogNodes()->Item("Plant"), nullptr);
  EXPECT_TRUE(driver.HasItem("S1.Catalogs.Plant"));
}

// ---- what was done before a failure stays done

TEST_F(catalog_commands, the_pointer_goes_to_the_hourglass_and_back_around_the_creation) {
  ExpandAll();
  Add("New", "", "");
  // Once by the command, once by the creation itself.
  EXPECT_EQ(driver.ui->pointers, (std::vector<Long>{11, 11, 0, 0}));
}

TEST_F(catalog_commands, the_next_creation_resets_the_hourglass_of_a_failed_one) {
  ExpandAll();
  sFailing = "CREATE DATABASE \"New\" ";
  Add("New", "", "");
  EXPECT_EQ(driver.ui->pointers, (std::vector<Long>{11, 11}));
  sFailing.clear();
  Add("New", "", "");
  EXPECT_EQ(driver.ui->MousePointer(), 0);
}

TEST_F(catalog_commands, without_a_connection_the_hourglass_stays_too) {
  const auto server = ExpandAll();
  server->Disconnect();
  Add("New", "", "");
  EXPECT_EQ(ErrorBox(), "The server is not connected; connect it first.");
  EXPECT_EQ(driver.ui->pointers, std::vector<Long>{11});
  EXPECT_EQ(server->CatalogNodes()->Item("New"), nullptr);
}

TEST_F(catalog_commands, a_lookup_that_fails_leaves_the_catalog_on_the_server_and_no_hourglass) {
  const auto server = ExpandAll();
  driver.historian->options[5].second = true;
  sFailing = "SELECT Identity FROM Orvane..Historians WHERE Name = 'New'";
  Add("New", "", "");
  EXPECT_EQ(ErrorBox(), "The server refused.");
  EXPECT_EQ(statements, (std::vector<Text>{"CREATE DATABASE \"New\" ", sFailing}));
  EXPECT_EQ(server->CatalogNodes()->Count(), 1);
  EXPECT_FALSE(driver.HasItem("S1.Catalogs.New"));
  EXPECT_EQ(driver.ui->MousePointer(), 0);
}

TEST_F(catalog_commands, an_identity_that_is_not_found_is_told_and_the_name_is_empty) {
  const auto server = ExpandAll();
  driver.historian->options[5].second = true;
  driver.historian->onExecute = [](const Text&) {
    return std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{{"Identity"}},
                                                  std::vector<fakes::FakeRecordset::Row>{});
  };
  Add("New", "", "");
  ASSERT_EQ(driver.ui->boxes.size(), 1U);
  EXPECT_EQ(driver.ui->boxes[0].sText, "Historian GUID not found.");
  EXPECT_EQ(driver.ui->boxes[0].sTitle, "");
  EXPECT_EQ(driver.ui->icons[0], platform::MsgBoxIcon::Critical);
  const auto node = server->CatalogNodes()->Item("");
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->Catalog(), "");
  ASSERT_TRUE(driver.HasItem("S1.Catalogs."));
  EXPECT_EQ(driver.DisplayName("S1.Catalogs."), "");
  EXPECT_EQ(driver.Item("S1.Catalogs.")->Tag(), node);
}

TEST_F(catalog_commands, a_node_without_a_place_in_the_tree_stays_in_the_list) {
  const auto server = ExpandAll();
  driver.console->ScopeItems().Add("Catalog", "S1.Catalogs.New",
                                   driver.Item("S1.Catalogs")->ScopeNode(), true);
  Add("New", "", "");
  EXPECT_EQ(ErrorBox(), "The item is already in the tree.");
  EXPECT_NE(server->CatalogNodes()->Item("New"), nullptr);
  EXPECT_EQ(driver.Item("S1.Catalogs.New")->Tag(), nullptr);
}

TEST_F(catalog_commands, an_added_item_has_the_name_column) {
  ExpandAll();
  Add("New", "", "");
  const auto item = driver.Item("S1.Catalogs.New");
  EXPECT_EQ(item->ColumnHeaders().headers,
            (std::map<Long, fakes::FakeColumnHeader>{{1, {"Name", "Name", 200}}}));
  EXPECT_EQ(item->ListSubItems().items,
            (std::map<Long, std::pair<Text, Text>>{{1, {"Name", "New"}}}));
}

TEST_F(catalog_commands, a_size_drops_the_path) {
  ExpandAll();
  Add("New", "/data", "10");
  EXPECT_EQ(statements, std::vector<Text>{"CREATE DATABASE \"New\" ON (SIZE=10)"});
}

TEST_F(catalog_commands, each_new_catalog_is_asked_for_in_a_new_dialog) {
  ExpandAll();
  Add("New", "/data", "5");
  driver.forms->WhenShown("AddCatalogDlg", [](fakes::FakeForm& form) {
    for (const char* const sBox : {"m_txtName", "m_txtPath", "m_txtSize"}) {
      EXPECT_EQ(form.TextBox(sBox).Text(), "") << sBox;
    }
    EXPECT_FALSE(form.Button("m_btnOk").Enabled());
    form.Button("m_btnCancel").Click();
  });
  driver.Click("m_mnuAddCatalog", "S1.Catalogs");
  EXPECT_EQ(statements.size(), 1U);
}

TEST_F(catalog_commands, a_catalog_filed_under_another_name_is_dropped_but_keeps_its_item) {
  const auto server = ExpandAll();
  server->CatalogNodes()->Item("Plant")->Catalog("Other");
  driver.Click("m_mnuCatalogRemove", "S1.Catalogs.Plant");
  EXPECT_EQ(statements, std::vector<Text>{"DROP DATABASE \"Other\""});
  EXPECT_EQ(driver.ui->boxes.back().sText,
            "The argument is invalid: the collection has no key \"Other\"; check the name.");
  EXPECT_NE(server->CatalogNodes()->Item("Plant"), nullptr);
  EXPECT_TRUE(driver.HasItem("S1.Catalogs.Plant"));
}

TEST_F(catalog_commands, a_catalog_whose_item_is_gone_leaves_the_server_and_the_list) {
  const auto server = ExpandAll();
  auto& items = driver.console->ScopeItems();
  const auto item = items.items.extract("S1.Catalogs.Plant").mapped();
  driver.snapIn->Menu_Click("m_mnuCatalogRemove", 0, fakes::FakeSelection(item));
  EXPECT_EQ(driver.ui->boxes.back().sText, "The item is not in the tree.");
  EXPECT_EQ(driver.ui->boxes.back().sTitle, "Error");
  EXPECT_EQ(statements, std::vector<Text>{"DROP DATABASE \"Plant\""});
  EXPECT_EQ(server->CatalogNodes()->Item("Plant"), nullptr);
}

TEST_F(catalog_commands, a_removal_changes_no_pointer) {
  ExpandAll();
  driver.Click("m_mnuCatalogRemove", "S1.Catalogs.Plant");
  EXPECT_TRUE(driver.ui->pointers.empty());
  EXPECT_EQ(driver.ui->nDoEvents, 0);
}

}  // namespace
}  // namespace orvane::snapin
