#include "tests/snapin/snap_in_fixture.h"

namespace orvane::snapin {
namespace {

using platform::MsgBoxResult;

class server_commands : public SnapInTest {
 protected:
  void AnswerOptions(std::function<void(fakes::FakeForm&)> user) {
    driver.forms->WhenShown("OptionsDlg", std::move(user));
    driver.Click("m_mnuOptions", "");
  }
  static void Ok(fakes::FakeForm& form) { form.Button("m_btnOK").Click(); }
};

// ---- Options

TEST_F(server_commands, options_shows_what_is_set) {
  Root()->MaxRows(-7);
  Root()->QueryTimeout(45);
  Root()->SetDefaultTimeRange("t", " * ");
  AnswerOptions([](fakes::FakeForm& form) {
    EXPECT_EQ(form.TextBox("m_txtMaxRows").Text(), "-7");
    EXPECT_EQ(form.TextBox("m_txtTimeout").Text(), "45");
    EXPECT_EQ(form.TextBox("m_txtDefStartTime").Text(), "t");
    EXPECT_EQ(form.TextBox("m_txtDefEndTime").Text(), " * ");
  });
  EXPECT_TRUE(driver.forms->WasLoaded("OptionsDlg"));
}

TEST_F(server_commands, options_stores_what_was_accepted) {
  AnswerOptions([](fakes::FakeForm& form) {
    form.TextBox("m_txtMaxRows").Text("250");
    form.TextBox("m_txtTimeout").Text("5");
    form.TextBox("m_txtDefStartTime").Text("*-2h");
    form.TextBox("m_txtDefEndTime").Text("*-1h");
    Ok(form);
  });
  Text sStart;
  Text sEnd;
  Root()->GetDefaultTimeRange(sStart, sEnd);
  EXPECT_EQ(Root()->MaxRows(), 250);
  EXPECT_EQ(Root()->QueryTimeout(), 5);
  EXPECT_EQ(sStart, "*-2h");
  EXPECT_EQ(sEnd, "*-1h");
}

TEST_F(server_commands, an_emptied_limit_stays_what_it_was_and_emptied_times_are_stored) {
  AnswerOptions([](fakes::FakeForm& form) {
    for (const char* const sBox :
         {"m_txtMaxRows", "m_txtTimeout", "m_txtDefStartTime", "m_txtDefEndTime"}) {
      form.TextBox(sBox).Text("");
    }
    Ok(form);
  });
  Text sStart = "x";
  Text sEnd = "x";
  Root()->GetDefaultTimeRange(sStart, sEnd);
  EXPECT_EQ(Root()->MaxRows(), 100);
  EXPECT_EQ(Root()->QueryTimeout(), 60);
  EXPECT_EQ(sStart, "");
  EXPECT_EQ(sEnd, "");
}

TEST_F(server_commands, cancelled_options_change_nothing_and_drop_no_rows) {
  ExpandAll();
  const auto rs = std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{},
                                                         std::vector<fakes::FakeRecordset::Row>{});
  Pumps()->SetRecordset(rs, 3);
  Query()->Recordset(rs);
  AnswerOptions([](fakes::FakeForm& form) {
    form.TextBox("m_txtMaxRows").Text("250");
    form.Button("m_btnCancel").Click();
  });
  Long lUpdatability = 0;
  EXPECT_EQ(Root()->MaxRows(), 100);
  EXPECT_EQ(Pumps()->GetRecordset(lUpdatability), rs);
  EXPECT_EQ(Query()->Recordset(), rs);
}

TEST_F(server_commands, accepted_options_reach_every_table_and_drop_all_rows) {
  const auto connected = ExpandAll();
  const auto offline = AddServer("S2");
  const auto table = offline->CatalogNodes()->Add("Plant")->TableNodes()->Add("Data");
  const auto own = offline->CatalogNodes()->Item("Plant")->TableNodes()->Add("Data2");
  own->DefaultFilterCondition(false);
  own->Query()->FilterCondition("Tag = 'A'");
  const auto query = offline->QueryNodes()->Add("Q2", "SELECT 1");
  const auto rs = std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{},
                                                         std::vector<fakes::FakeRecordset::Row>{});
  Pumps()->SetRecordset(rs, 3);
  Query()->Recordset(rs);
  table->SetRecordset(rs, 3);
  query->Recordset(rs);
  AnswerOptions([](fakes::FakeForm& form) {
    form.TextBox("m_txtMaxRows").Text("9");
    form.TextBox("m_txtTimeout").Text("8");
    form.TextBox("m_txtDefStartTime").Text("y");
    form.TextBox("m_txtDefEndTime").Text("t");
    Ok(form);
  });
  Long lUpdatability = 1;
  for (const auto& node : {Pumps(), table}) {
    EXPECT_EQ(node->GetRecordset(lUpdatability), nullptr);
    EXPECT_EQ(lUpdatability, 0);
    EXPECT_EQ(node->Query()->MaxRows(), 9);
    EXPECT_EQ(node->Query()->QueryTimeout(), 8);
  }
  EXPECT_EQ(Query()->Recordset(), nullptr);
  EXPECT_EQ(query->Recordset(), nullptr);
  EXPECT_EQ(table->Query()->FilterCondition(), "Timestamp BETWEEN 'y' AND 't'");
  EXPECT_EQ(own->Query()->FilterCondition(), "Tag = 'A'");
}

TEST_F(server_commands, accepted_options_drop_rows_even_when_nothing_was_changed) {
  ExpandAll();
  Pumps()->SetRecordset(
      std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{},
                                             std::vector<fakes::FakeRecordset::Row>{}),
      1);
  AnswerOptions(Ok);
  Long lUpdatability = 1;
  EXPECT_EQ(Pumps()->GetRecordset(lUpdatability), nullptr);
}

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

TEST_F(server_commands, a_server_added_twice_is_refused) {
  driver.historian->sChosenServer = "S1";
  driver.Click("m_mnuServersConnect", "");
  const auto first = Root()->ServerNodes()->Item("S1");
  driver.Click("m_mnuServersConnect", "");
  EXPECT_EQ(ErrorBox(), "The key \"S1\" is already in the collection; choose another name.");
  EXPECT_EQ(Root()->ServerNodes()->Count(), 1);
  EXPECT_EQ(Root()->ServerNodes()->Item("S1"), first);
}

// ---- connecting and disconnecting

TEST_F(server_commands, connecting_a_server_never_expanded_leaves_its_folders_for_later) {
  const auto server = AddServer("S1");
  driver.Expand("");
  driver.Click("m_mnuConnect", "S1");
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

}  // namespace
}  // namespace orvane::snapin
