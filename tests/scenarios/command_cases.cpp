// Menus, and the commands of the root and of a server.
#include "tests/scenarios/command_fixture.h"

namespace orvane::scenarios::commands {
namespace {

// ---- menus

TEST_F(command_scenario, every_way_to_the_menu_of_an_item_offers_its_commands) {
  OpenTables();
  driver->Expand(kQueries);
  const std::map<Text, std::vector<MenuEntry>> menus{
      {kStaticNode, {{"Connect..."}, {"Options..."}}},
      {kServer, {{"Connect...", false}, {"Disconnect"}, {"Remove"}}},
      {kCatalogs, {{"Add Catalog..."}}},
      {kPlant, {{"Remove"}}},
      {kPumps, {{"Query..."}}},
      {kQueries, {{"New Query..."}}},
      {kAllPumps, {{"Edit..."}, {"Remove"}}}};
  for (const auto way : {MenuWay::RightClick, MenuWay::Keyboard, MenuWay::MenuBar}) {
    for (const auto& [sKey, entries] : menus) EXPECT_EQ(driver->Menu(sKey, way), entries) << sKey;
  }
  ExpectNoBoxes();
}

TEST_F(command_scenario, a_right_click_on_a_table_never_shown_opens_its_menu_and_runs_nothing) {
  OpenTables();
  driver->Select(kStaticNode);
  const Long lStatements = driver->StatementsSent();
  EXPECT_EQ(driver->Menu(kPumps), (std::vector<MenuEntry>{{"Query..."}}));
  EXPECT_EQ(driver->Selected(), kStaticNode);
  EXPECT_EQ(driver->StatementsSent(), lStatements);
  ExpectNoBoxes();
}

TEST_F(command_scenario, the_two_system_catalogs_get_no_menu) {
  OpenTables();
  ASSERT_TRUE(driver->HasItem("localhost.Catalogs.Functions"));
  ASSERT_TRUE(driver->HasItem("localhost.Catalogs.Orvane"));
  for (const auto way : {MenuWay::RightClick, MenuWay::Keyboard, MenuWay::MenuBar}) {
    EXPECT_TRUE(driver->Menu("localhost.Catalogs.Functions", way).empty());
    EXPECT_TRUE(driver->Menu("localhost.Catalogs.Orvane", way).empty());
  }
  ExpectNoBoxes();
}

TEST_F(command_scenario, a_command_chosen_from_the_menu_bar_acts_on_the_selected_item) {
  OpenQueries();
  driver->AnswerBox(BoxAnswer::Yes);
  driver->Choose(kAllPumps, "Remove", MenuWay::MenuBar);
  EXPECT_EQ(driver->Children(kQueries), (Texts{kAllFans}));
}

TEST_F(command_scenario, a_command_chosen_by_the_keyboard_acts_on_the_selected_item) {
  OpenQueries();
  driver->AnswerBox(BoxAnswer::Yes);
  driver->Choose(kAllFans, "Remove", MenuWay::Keyboard);
  EXPECT_EQ(driver->Children(kQueries), (Texts{kAllPumps}));
}

// ---- servers

TEST_F(command_scenario, a_server_is_added_under_the_name_chosen_at_the_logon_and_selected) {
  driver->AddServer({"north", {{"Mill", {}}}});
  driver->NewDocument();
  driver->ChooseServer("north");
  driver->Choose(kStaticNode, "Connect...");
  ExpectNoBoxes();
  EXPECT_EQ(driver->LogonsSeen(), 1);
  EXPECT_EQ(driver->Children(kStaticNode), (Texts{"north"}));
  EXPECT_EQ(driver->DisplayName("north"), "north");
  EXPECT_EQ(driver->Selected(), "north");
  EXPECT_EQ(driver->Menu("north")[0], (MenuEntry{"Connect...", false}));
  driver->Expand("north");
  driver->Expand("north.Catalogs");
  EXPECT_TRUE(driver->HasItem("north.Catalogs.Mill"));
  EXPECT_EQ(driver->LogonsSeen(), 1);
  ExpectNoBoxes();
}

TEST_F(command_scenario, an_added_server_is_saved_with_the_document) {
  driver->NewDocument();
  driver->ChooseServer(kServer);
  driver->Choose(kStaticNode, "Connect...");
  driver->SaveAndReopen();
  driver->Expand(kStaticNode);
  EXPECT_EQ(driver->Children(kStaticNode), (Texts{kServer}));
  EXPECT_EQ(driver->Menu(kServer)[0], (MenuEntry{"Connect...", true}));
  EXPECT_EQ(driver->LogonsSeen(), 1);
  ExpectNoBoxes();
}

TEST_F(command_scenario, a_cancelled_logon_adds_no_server_and_shows_the_error) {
  driver->NewDocument();
  driver->AnswerLogon(LogonAnswer::Cancel);
  driver->Choose(kStaticNode, "Connect...");
  EXPECT_EQ(driver->LogonsSeen(), 1);
  ErrorBox();
  EXPECT_TRUE(driver->Children(kStaticNode).empty());
  EXPECT_EQ(driver->Selected(), kStaticNode);
  driver->SaveAndReopen();
  EXPECT_EQ(Saved("ServerNodes_ServerNodeCount"), Value(Long{0}));
}

TEST_F(command_scenario, a_server_added_twice_is_refused_and_the_first_one_stays) {
  OpenServers();
  driver->ChooseServer(kServer);
  driver->Choose(kStaticNode, "Connect...");
  ErrorBox();
  EXPECT_EQ(driver->Children(kStaticNode), (Texts{kServer}));
}

TEST_F(command_scenario, a_second_server_comes_behind_the_first) {
  driver->AddServer({"north", {}});
  OpenServers();
  driver->ChooseServer("north");
  driver->Choose(kStaticNode, "Connect...");
  EXPECT_EQ(driver->Children(kStaticNode), (Texts{kServer, "north"}));
  EXPECT_EQ(driver->Selected(), "north");
  ExpectNoBoxes();
}

TEST_F(command_scenario, connecting_turns_the_menu_of_a_server_round) {
  OpenServers();
  EXPECT_EQ(driver->Menu(kServer),
            (std::vector<MenuEntry>{{"Connect...", true}, {"Disconnect", false}, {"Remove"}}));
  driver->Choose(kServer, "Connect...");
  EXPECT_EQ(driver->LogonsSeen(), 1);
  EXPECT_EQ(driver->Menu(kServer),
            (std::vector<MenuEntry>{{"Connect...", false}, {"Disconnect", true}, {"Remove"}}));
  EXPECT_EQ(driver->Selected(), kServer);
  // Never expanded, it gets its folders when it is.
  EXPECT_TRUE(driver->Children(kServer).empty());
  EXPECT_TRUE(driver->HasExpandMark(kServer));
  driver->Expand(kServer);
  EXPECT_EQ(driver->Children(kServer), (Texts{kCatalogs, kQueries}));
  EXPECT_EQ(driver->LogonsSeen(), 1);
  ExpectNoBoxes();
}

TEST_F(command_scenario, a_cancelled_connect_leaves_the_server_disconnected) {
  OpenServers();
  driver->AnswerLogon(LogonAnswer::Cancel);
  driver->Choose(kServer, "Connect...");
  ErrorBox();
  EXPECT_EQ(driver->Menu(kServer)[0], (MenuEntry{"Connect...", true}));
}

TEST_F(command_scenario, disconnecting_clears_the_server_and_connecting_again_fills_it_at_once) {
  OpenTables();
  driver->Select(kPumps);
  driver->Choose(kServer, "Disconnect");
  ExpectNoBoxes();
  EXPECT_TRUE(driver->Children(kServer).empty());
  EXPECT_FALSE(driver->HasExpandMark(kServer));
  EXPECT_EQ(driver->Selected(), kServer);
  EXPECT_EQ(driver->Menu(kServer)[1], (MenuEntry{"Disconnect", false}));
  driver->Choose(kServer, "Connect...");
  EXPECT_EQ(driver->LogonsSeen(), 2);
  EXPECT_EQ(driver->Children(kServer), (Texts{kCatalogs, kQueries}));
  driver->Expand(kServer);
  driver->Expand(kCatalogs);
  driver->Expand(kPlant);
  // The rows that were kept went with the connection.
  const Long lStatements = driver->StatementsSent();
  driver->Select(kPumps);
  EXPECT_EQ(FirstColumn(), (Texts{"P1", "P2", "P3"}));
  EXPECT_EQ(driver->StatementsSent(), lStatements + 1);
  ExpectNoBoxes();
}

TEST_F(command_scenario, rows_of_a_named_query_outlive_the_connection) {
  OpenQueries();
  driver->Select(kAllPumps);
  driver->Choose(kServer, "Disconnect");
  driver->Choose(kServer, "Connect...");
  driver->Expand(kServer);
  driver->Expand(kQueries);
  const Long lStatements = driver->StatementsSent();
  driver->Select(kAllPumps);
  EXPECT_EQ(FirstColumn(), (Texts{"P1", "P2", "P3"}));
  EXPECT_EQ(driver->StatementsSent(), lStatements);
  ExpectNoBoxes();
}

TEST_F(command_scenario, a_server_is_removed_only_when_the_question_is_answered_yes) {
  OpenTables();
  const Text sQuestion = "Are you sure you want to remove the \"localhost\" server from the tree?";
  const Text sTree = driver->Tree();
  driver->AnswerBox(BoxAnswer::No);
  driver->Choose(kServer, "Remove");
  ExpectQuestion(sQuestion, "Confirm Server Removal");
  EXPECT_EQ(driver->Tree(), sTree);
  EXPECT_EQ(driver->Selected(), kServer);
  driver->AnswerBox(BoxAnswer::Yes);
  driver->Choose(kServer, "Remove");
  ExpectQuestion(sQuestion, "Confirm Server Removal");
  EXPECT_EQ(driver->Tree(), "ORVANE Servers\n");
  EXPECT_FALSE(driver->HasItem(kPumps));
  EXPECT_EQ(driver->Selected(), kStaticNode);
  driver->SaveAndReopen();
  EXPECT_EQ(Saved("ServerNodes_ServerNodeCount"), Value(Long{0}));
  ExpectNoBoxes();
}

// ---- options

TEST_F(command_scenario, options_show_what_is_set_and_keep_what_is_accepted) {
  OpenServers();
  driver->AnswerForm([](ShownForm& form) {
    EXPECT_EQ(form.Title(), "Options");
    EXPECT_EQ(form.BoxText("m_txtMaxRows"), "100");
    EXPECT_EQ(form.BoxText("m_txtTimeout"), "20");
    EXPECT_EQ(form.BoxText("m_txtDefStartTime"), "*-2h");
    EXPECT_EQ(form.BoxText("m_txtDefEndTime"), "*");
    form.Type("m_txtMaxRows", "250");
    form.Type("m_txtTimeout", "45");
    form.Type("m_txtDefStartTime", "*-8h");
    form.Type("m_txtDefEndTime", "*-1h");
    form.Click("m_btnOK");
  });
  driver->Choose(kStaticNode, "Options...");
  driver->SaveAndReopen();
  EXPECT_EQ(Saved("MaxRows"), Value(Long{250}));
  EXPECT_EQ(Saved("QueryTimeout"), Value(Long{45}));
  EXPECT_EQ(Saved("DefaultStartTime"), Value("*-8h"));
  EXPECT_EQ(Saved("DefaultEndTime"), Value("*-1h"));
  ExpectNoBoxes();
}

TEST_F(command_scenario, options_refuse_letters_key_by_key) {
  OpenServers();
  driver->AnswerForm([](ShownForm& form) {
    form.Type("m_txtMaxRows", "5x7");
    EXPECT_EQ(form.BoxText("m_txtMaxRows"), "57");
    form.Type("m_txtTimeout", "");
    EXPECT_EQ(form.BoxText("m_txtTimeout"), "");
    form.Type("m_txtTimeout", "x");
    EXPECT_EQ(form.BoxText("m_txtTimeout"), "20");
    form.Type("m_txtTimeout", "99999999999");
    EXPECT_EQ(form.BoxText("m_txtTimeout"), "999999999");
    form.Click("m_btnCancel");
  });
  driver->Choose(kStaticNode, "Options...");
  driver->SaveAndReopen();
  EXPECT_EQ(Saved("MaxRows"), Value(Long{100}));
  ExpectNoBoxes();
}

TEST_F(command_scenario, emptied_limits_stay_what_they_were_and_emptied_times_are_kept) {
  OpenServers();
  Fill({{"m_txtMaxRows", ""},
        {"m_txtTimeout", ""},
        {"m_txtDefStartTime", ""},
        {"m_txtDefEndTime", ""}},
       "m_btnOK");
  driver->Choose(kStaticNode, "Options...");
  driver->SaveAndReopen();
  EXPECT_EQ(Saved("MaxRows"), Value(Long{100}));
  EXPECT_EQ(Saved("QueryTimeout"), Value(Long{20}));
  EXPECT_EQ(Saved("DefaultStartTime"), Value(""));
  EXPECT_EQ(Saved("DefaultEndTime"), Value(""));
  ExpectNoBoxes();
}

TEST_F(command_scenario, accepted_options_reach_tables_and_queries_already_met) {
  OpenTables();
  driver->Expand(kQueries);
  driver->Select(kPumps);
  driver->Select(kAllPumps);
  Fill({{"m_txtMaxRows", "2"}}, "m_btnOK");
  driver->Choose(kStaticNode, "Options...");
  driver->Select(kPumps);
  EXPECT_EQ(FirstColumn(), (Texts{"P1", "P2"}));
  driver->Select(kAllPumps);
  EXPECT_EQ(FirstColumn(), (Texts{"P1", "P2"}));
  ExpectNoBoxes();
}

TEST_F(command_scenario, options_accepted_unchanged_drop_all_rows_and_cancelled_ones_none) {
  OpenTables();
  driver->Select(kPumps);
  const Long lStatements = driver->StatementsSent();
  Fill({{"m_txtMaxRows", "1"}}, "m_btnCancel");
  driver->Choose(kStaticNode, "Options...");
  driver->Select(kPumps);
  EXPECT_EQ(driver->StatementsSent(), lStatements);
  Answer("m_btnOK");
  driver->Choose(kStaticNode, "Options...");
  driver->Select(kPumps);
  EXPECT_EQ(driver->StatementsSent(), lStatements + 1);
  EXPECT_EQ(FirstColumn(), (Texts{"P1", "P2", "P3"}));
  ExpectNoBoxes();
}

}  // namespace
}  // namespace orvane::scenarios::commands
