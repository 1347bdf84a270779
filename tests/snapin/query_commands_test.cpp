#include "tests/snapin/snap_in_fixture.h"

namespace orvane::snapin {
namespace {

using platform::MsgBoxResult;
using platform::Text;

constexpr const char* kNameTaken = "Query with the specified name already exists.";

struct Typed {
  Text sName;
  Text sSql;
};

class query_commands : public SnapInTest {
 protected:
  /// Types each pair in turn and presses OK; when none is left, presses Cancel.
  void AnswerWith(std::vector<Typed> answers) {
    shown.clear();
    driver.forms->WhenShown("QueryDlg", [this, answers = std::move(answers),
                                         n = std::size_t{0}](fakes::FakeForm& form) mutable {
      shown.push_back({form.TextBox("m_txtName").Text(), form.TextBox("m_txtSqlStatement").Text()});
      if (n == answers.size()) return form.PressEscape();
      form.TextBox("m_txtName").Text(answers[n].sName);
      form.TextBox("m_txtSqlStatement").Text(answers[n].sSql);
      ++n;
      form.Button("m_btnOk").Click();
    });
  }
  void New(std::vector<Typed> answers) {
    AnswerWith(std::move(answers));
    driver.Click("m_mnuNewQuery", "S1.Queries");
  }
  void Edit(const Text& sQuery, std::vector<Typed> answers) {
    AnswerWith(std::move(answers));
    driver.Click("m_mnuEdit", "S1.Queries." + sQuery);
  }
  std::vector<Text> Names(nodes::ServerNode& server) {
    std::vector<Text> names;
    for (const auto& query : server.QueryNodes()->NewEnum()) names.push_back(query->QueryName());
    return names;
  }
  std::vector<Typed> shown;  ///< what the dialog held each time it came up
};

// ---- new query

TEST_F(query_commands, a_new_query_appears_under_an_expanded_folder) {
  const auto server = ExpandAll();
  New({{"Q2", "SELECT 2"}});
  ExpectNoBoxes();
  EXPECT_EQ(Names(*server), (std::vector<Text>{"Q1", "Q2"}));
  const auto item = driver.Item("S1.Queries.Q2");
  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->ListSubItems().Texts(), (std::vector<Text>{"Q2", "SELECT 2"}));
  EXPECT_TRUE(driver.Item("S1.Queries")->node->bHasChildren);
}

TEST_F(query_commands, under_a_folder_never_expanded_the_mark_alone_appears) {
  const auto server = AddServer("S1");
  driver.Expand("");
  driver.Expand("S1");
  EXPECT_FALSE(driver.Item("S1.Queries")->node->bHasChildren);
  New({{"Q2", "SELECT 2"}});
  EXPECT_FALSE(driver.HasItem("S1.Queries.Q2"));
  EXPECT_TRUE(driver.Item("S1.Queries")->node->bHasChildren);
  driver.Expand("S1.Queries");
  EXPECT_TRUE(driver.HasItem("S1.Queries.Q2"));
}

TEST_F(query_commands, the_dialog_of_a_new_query_opens_empty) {
  ExpandAll();
  New({});
  EXPECT_EQ(shown.at(0).sName, "");
  EXPECT_EQ(shown.at(0).sSql, "");
}

TEST_F(query_commands, a_taken_name_is_told_and_the_dialog_comes_back_with_the_texts) {
  const auto server = ExpandAll();
  New({{"Q1", "SELECT 2"}});
  EXPECT_EQ(ErrorBox(), kNameTaken);
  ASSERT_EQ(shown.size(), 2U);
  EXPECT_EQ(shown[1].sName, "Q1");
  EXPECT_EQ(shown[1].sSql, "SELECT 2");
  EXPECT_EQ(Names(*server), std::vector<Text>{"Q1"});
}

TEST_F(query_commands, a_taken_name_can_be_corrected) {
  const auto server = ExpandAll();
  New({{"q1", "SELECT 2"}, {"Q2", "SELECT 2"}});
  EXPECT_EQ(ErrorBox(), kNameTaken);
  EXPECT_EQ(Names(*server), (std::vector<Text>{"Q1", "Q2"}));
}

TEST_F(query_commands, whatever_keeps_the_list_from_taking_a_query_counts_as_a_taken_name) {
  class Refusing : public nodes::ServersNodeOwner {
   public:
    void ServersNodeChanged() override { throw platform::Failure(5, "No changes now."); }
  };
  ExpandAll();
  const Text sTree = driver.Tree();
  const auto refusing = std::make_shared<Refusing>();
  Root()->Parent(refusing);
  New({{"Q2", "SELECT 2"}});
  EXPECT_EQ(ErrorBox(), kNameTaken);
  ASSERT_EQ(shown.size(), 2U);
  EXPECT_EQ(shown[1].sName, "Q2");
  EXPECT_EQ(shown[1].sSql, "SELECT 2");
  EXPECT_EQ(driver.Tree(), sTree);
  EXPECT_FALSE(driver.HasItem("S1.Queries.Q2"));
}

TEST_F(query_commands, a_box_that_cannot_be_read_is_no_name_that_is_taken) {
  for (const char* const sBox : {"m_txtName", "m_txtSqlStatement"}) {
    driver.NewDocument();
    const auto server = ExpandAll();
    driver.forms->WhenShown("QueryDlg", [sBox, n = 0](fakes::FakeForm& form) mutable {
      // Shown once more, the loop would otherwise never end.
      if (n++ > 0) return form.PressEscape();
      form.TextBox("m_txtName").Text("Q2");
      form.TextBox("m_txtSqlStatement").Text("SELECT 2");
      form.Button("m_btnOk").Click();
      form.TextBox(sBox).bUnreadable = true;
    });
    driver.Click("m_mnuNewQuery", "S1.Queries");
    EXPECT_EQ(ErrorBox(), "The box cannot be read.") << sBox;
    EXPECT_EQ(driver.forms->Last("QueryDlg").TimesShown(), 1) << sBox;
    EXPECT_EQ(Names(*server), std::vector<Text>{"Q1"}) << sBox;
  }
}

TEST_F(query_commands, a_cancelled_new_query_changes_nothing) {
  const auto server = ExpandAll();
  driver.Item("S1.Queries")->node->bHasChildren = false;
  New({});
  EXPECT_EQ(Names(*server), std::vector<Text>{"Q1"});
  EXPECT_FALSE(driver.Item("S1.Queries")->node->bHasChildren);
}

// ---- edit query

TEST_F(query_commands, the_dialog_of_an_edited_query_shows_it_with_ok_enabled) {
  ExpandAll();
  driver.forms->WhenShown("QueryDlg", [](fakes::FakeForm& form) {
    EXPECT_EQ(form.TextBox("m_txtName").Text(), "Q1");
    EXPECT_EQ(form.TextBox("m_txtSqlStatement").Text(), "SELECT Name FROM Plant..Pumps");
    EXPECT_TRUE(form.Button("m_btnOk").Enabled());
    form.PressEscape();
  });
  driver.Click("m_mnuEdit", "S1.Queries.Q1");
  EXPECT_EQ(driver.forms->Last("QueryDlg").TimesShown(), 1);
}

TEST_F(query_commands, unchanged_texts_are_stored_again_and_drop_the_rows) {
  ExpandAll();
  const auto query = Query();
  query->Recordset(std::make_shared<fakes::FakeRecordset>(
      std::vector<fakes::FakeColumn>{}, std::vector<fakes::FakeRecordset::Row>{}));
  Edit("Q1", {{"Q1", "SELECT Name FROM Plant..Pumps"}});
  ExpectNoBoxes();
  EXPECT_EQ(query->Recordset(), nullptr);
  EXPECT_EQ(query->Query(), "SELECT Name FROM Plant..Pumps");
}

TEST_F(query_commands, a_cancelled_edit_changes_nothing) {
  ExpandAll();
  const auto rs = std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{},
                                                         std::vector<fakes::FakeRecordset::Row>{});
  Query()->Recordset(rs);
  Edit("Q1", {});
  EXPECT_EQ(Query()->Recordset(), rs);
  EXPECT_EQ(Query()->Query(), "SELECT Name FROM Plant..Pumps");
}

TEST_F(query_commands, a_renamed_query_keeps_its_place_and_its_item) {
  const auto server = ExpandAll();
  New({{"Q2", "SELECT 2"}});
  New({{"Q3", "SELECT 3"}});
  const auto item = driver.Item("S1.Queries.Q2");
  Edit("Q2", {{"Renamed.x", "SELECT 22"}});
  ExpectNoBoxes();
  EXPECT_EQ(Names(*server), (std::vector<Text>{"Q1", "Renamed.x", "Q3"}));
  EXPECT_EQ(server->QueryNodes()->Item("renamed.x")->Query(), "SELECT 22");
  EXPECT_FALSE(driver.HasItem("S1.Queries.Q2"));
  EXPECT_EQ(driver.Item("S1.Queries.Renamed.x"), item);
  EXPECT_EQ(item->NodeId(), "S1.Queries.Renamed.x");
  EXPECT_EQ(item->DisplayName(), "Renamed.x");
  EXPECT_EQ(item->ListSubItems().Texts(), (std::vector<Text>{"Renamed.x", "SELECT 22"}));
}

TEST_F(query_commands, the_name_of_another_query_is_refused) {
  const auto server = ExpandAll();
  New({{"Q2", "SELECT 2"}});
  Edit("Q2", {{"Q1", "SELECT 22"}});
  EXPECT_EQ(ErrorBox(), kNameTaken);
  ASSERT_EQ(shown.size(), 2U);
  EXPECT_EQ(shown[1].sName, "Q1");
  EXPECT_EQ(shown[1].sSql, "SELECT 22");
  EXPECT_EQ(Names(*server), (std::vector<Text>{"Q1", "Q2"}));
  EXPECT_EQ(server->QueryNodes()->Item("Q2")->Query(), "SELECT 2");
}

TEST_F(query_commands, a_name_used_on_another_server_is_free) {
  const auto server = ExpandAll();
  AddServer("S2")->QueryNodes()->Add("Other", "SELECT 1");
  Edit("Q1", {{"Other", "SELECT 1"}});
  ExpectNoBoxes();
  EXPECT_EQ(Names(*server), std::vector<Text>{"Other"});
}

TEST_F(query_commands, renaming_only_in_letter_case_succeeds) {
  const auto server = ExpandAll();
  Edit("Q1", {{"q1", "SELECT 1"}});
  ExpectNoBoxes();
  EXPECT_EQ(Names(*server), std::vector<Text>{"q1"});
  EXPECT_TRUE(driver.HasItem("S1.Queries.q1"));
}

TEST_F(query_commands, a_name_that_differs_from_anothers_in_case_alone_loses_the_query) {
  const auto server = ExpandAll();
  New({{"Q2", "SELECT 2"}});
  const auto lost = server->QueryNodes()->Item("Q2");
  Edit("Q2", {{"q1", "SELECT 22"}});
  EXPECT_EQ(ErrorBox(), "The key \"q1\" is already in the collection; choose another name.");
  EXPECT_EQ(Names(*server), std::vector<Text>{"Q1"});
  EXPECT_EQ(lost->QueryName(), "q1");
  EXPECT_EQ(lost->Query(), "SELECT 22");
  EXPECT_EQ(driver.Item("S1.Queries.Q2")->Tag(), lost);
}

TEST_F(query_commands, removing_a_lost_query_finds_its_folder) {
  const auto server = ExpandAll();
  New({{"Temperature", "SELECT 2"}});
  driver.Click("m_mnuRemove", "S1.Queries.Q1");
  New({{"Q2", "SELECT 2"}});
  Edit("Q2", {{"TEMPERATURE", "SELECT 22"}});
  driver.TakeBoxes();
  driver.Click("m_mnuRemove", "S1.Queries.Q2");
  EXPECT_EQ(server->QueryNodes()->Count(), 0) << "keys ignore case, so the other query went";
  EXPECT_FALSE(driver.HasItem("S1.Queries.Q2"));
  EXPECT_FALSE(driver.Item("S1.Queries")->node->bHasChildren);
}

TEST_F(query_commands, the_grid_that_shows_an_edited_query_takes_its_name_and_runs_its_text) {
  ExpandAll();
  driver.Select("S1.Queries.Q1");
  const auto grid = driver.QueryResults();
  grid->log.clear();
  Edit("Q1", {{"Q9", "SELECT Speed FROM Plant..Pumps"}});
  ExpectNoBoxes();
  EXPECT_EQ(grid->QueryName(), "Q9");
  EXPECT_EQ(grid->SqlText(), "SELECT Speed FROM Plant..Pumps");
  EXPECT_EQ(driver.historian->log.back(), "Execute SELECT Speed FROM Plant..Pumps");
}

TEST_F(query_commands, a_grid_that_shows_another_item_is_left_alone) {
  ExpandAll();
  New({{"Q2", "SELECT Name FROM Plant..Pumps"}});
  driver.Select("S1.Queries.Q1");
  const auto grid = driver.QueryResults();
  grid->log.clear();
  Edit("Q2", {{"Q9", "SELECT Speed FROM Plant..Pumps"}});
  EXPECT_TRUE(grid->log.empty());
  EXPECT_EQ(grid->QueryName(), "Q1");
}

// ---- remove query

TEST_F(query_commands, removing_asks_first) {
  const auto server = ExpandAll();
  driver.ui->answer = MsgBoxResult::No;
  driver.Click("m_mnuRemove", "S1.Queries.Q1");
  ASSERT_EQ(driver.ui->boxes.size(), 1U);
  EXPECT_EQ(driver.ui->boxes[0].sText, "Are you sure you want to remove the \"Q1\" query?");
  EXPECT_EQ(driver.ui->boxes[0].sTitle, "Confirm Query Removal");
  EXPECT_EQ(driver.ui->boxes[0].buttons, platform::MsgBoxButtons::YesNo);
  EXPECT_EQ(driver.ui->icons[0], platform::MsgBoxIcon::None);
  EXPECT_EQ(Names(*server), std::vector<Text>{"Q1"});
  EXPECT_TRUE(driver.HasItem("S1.Queries.Q1"));
}

TEST_F(query_commands, removing_the_last_query_takes_the_folders_mark) {
  const auto server = ExpandAll();
  New({{"Q2", "SELECT 2"}});
  driver.Click("m_mnuRemove", "S1.Queries.Q1");
  EXPECT_EQ(Names(*server), std::vector<Text>{"Q2"});
  EXPECT_FALSE(driver.HasItem("S1.Queries.Q1"));
  EXPECT_TRUE(driver.Item("S1.Queries")->node->bHasChildren);
  driver.Click("m_mnuRemove", "S1.Queries.Q2");
  EXPECT_TRUE(Names(*server).empty());
  EXPECT_FALSE(driver.Item("S1.Queries")->node->bHasChildren);
}

TEST_F(query_commands, a_query_whose_item_is_gone_leaves_the_list_but_the_folder_keeps_its_mark) {
  const auto server = ExpandAll();
  driver.Item("S1.Queries")->node->bHasChildren = true;
  const auto item = driver.console->ScopeItems().items.extract("S1.Queries.Q1").mapped();
  driver.snapIn->Menu_Click("m_mnuRemove", 0, fakes::FakeSelection(item));
  EXPECT_EQ(driver.ui->boxes.back().sText, "The item is not in the tree.");
  EXPECT_EQ(driver.ui->boxes.back().sTitle, "Error");
  EXPECT_EQ(server->QueryNodes()->Count(), 0);
  EXPECT_TRUE(driver.Item("S1.Queries")->node->bHasChildren);
}

TEST_F(query_commands, a_query_that_left_the_list_keeps_its_item) {
  const auto server = ExpandAll();
  server->QueryNodes()->Remove("Q1");
  driver.Click("m_mnuRemove", "S1.Queries.Q1");
  EXPECT_EQ(driver.ui->boxes.back().sText,
            "The argument is invalid: the collection has no key \"Q1\"; check the name.");
  EXPECT_TRUE(driver.HasItem("S1.Queries.Q1"));
}

// ---- the rest of the items and of the order

TEST_F(query_commands, a_new_query_without_a_place_in_the_tree_stays_and_leaves_the_mark) {
  const auto server = ExpandAll();
  driver.console->ScopeItems().Add("Query", "S1.Queries.Q2", driver.Item("S1.Queries")->ScopeNode(),
                                   false);
  New({{"Q2", "SELECT 2"}});
  EXPECT_EQ(ErrorBox(), "The item is already in the tree.");
  EXPECT_EQ(Names(*server), (std::vector<Text>{"Q1", "Q2"}));
  EXPECT_FALSE(driver.Item("S1.Queries")->node->bHasChildren);
}

TEST_F(query_commands, a_new_query_has_both_columns_and_its_node) {
  const auto server = ExpandAll();
  New({{"Q2", "SELECT 2"}});
  const auto item = driver.Item("S1.Queries.Q2");
  EXPECT_EQ(item->ColumnHeaders().headers,
            (std::map<platform::Long, fakes::FakeColumnHeader>{{1, {"Name", "Name", 200}},
                                                               {2, {"Query", "Query", 300}}}));
  EXPECT_EQ(item->NodeTypeName(), "Query");
  EXPECT_EQ(item->NodeId(), "S1.Queries.Q2");
  EXPECT_EQ(item->DisplayName(), "Q2");
  EXPECT_EQ(item->Tag(), server->QueryNodes()->Item("Q2"));
  EXPECT_FALSE(item->node->bHasChildren);
}

TEST_F(query_commands, the_message_of_a_taken_name_has_only_ok_and_no_icon) {
  ExpandAll();
  New({{"Q1", "SELECT 2"}});
  Edit("Q1", {});
  ASSERT_EQ(driver.ui->boxes.size(), 1U);
  EXPECT_EQ(driver.ui->boxes[0].sText, kNameTaken);
  EXPECT_EQ(driver.ui->boxes[0].sTitle, "Error");
  EXPECT_EQ(driver.ui->boxes[0].buttons, platform::MsgBoxButtons::OkOnly);
  EXPECT_EQ(driver.ui->icons[0], platform::MsgBoxIcon::None);
}

TEST_F(query_commands, a_name_taken_again_and_again_is_told_each_time) {
  const auto server = ExpandAll();
  New({{"Q1", "a"}, {"q1", "b"}, {"Q1", "c"}, {"Q3", "d"}});
  EXPECT_EQ(driver.TakeBoxes().size(), 3U);
  EXPECT_EQ(shown.size(), 4U);
  EXPECT_EQ(server->QueryNodes()->Item("Q3")->Query(), "d");
}

TEST_F(query_commands, a_cancel_after_a_refused_name_is_no_acceptance) {
  const auto server = ExpandAll();
  New({{"Q2", "SELECT 2"}});
  Edit("Q2", {{"Q1", "SELECT 22"}});
  ErrorBox();
  EXPECT_EQ(shown.size(), 2U);
  EXPECT_EQ(server->QueryNodes()->Item("Q2")->Query(), "SELECT 2");
  EXPECT_TRUE(driver.HasItem("S1.Queries.Q2"));
}

TEST_F(query_commands, a_new_text_alone_changes_the_items_second_column) {
  ExpandAll();
  Edit("Q1", {{"Q1", "SELECT 11"}});
  ExpectNoBoxes();
  EXPECT_EQ(Query()->Query(), "SELECT 11");
  EXPECT_EQ(driver.Item("S1.Queries.Q1")->ListSubItems().items,
            (std::map<platform::Long, std::pair<Text, Text>>{{1, {"Name", "Q1"}},
                                                             {2, {"Query", "SELECT 11"}}}));
}

TEST_F(query_commands, the_first_and_the_last_query_keep_their_places_too) {
  const auto server = ExpandAll();
  New({{"Q2", "SELECT 2"}});
  New({{"Q3", "SELECT 3"}});
  Edit("Q1", {{"A", "SELECT 1"}});
  Edit("Q3", {{"B", "SELECT 3"}});
  ExpectNoBoxes();
  EXPECT_EQ(Names(*server), (std::vector<Text>{"A", "Q2", "B"}));
}

TEST_F(query_commands, a_renamed_query_whose_new_key_is_taken_keeps_its_old_item_and_rows) {
  const auto server = ExpandAll();
  New({{"Q2", "SELECT 2"}});
  const auto rs = std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{},
                                                         std::vector<fakes::FakeRecordset::Row>{});
  Query()->Recordset(rs);
  // The item of a query that left the list still holds the key.
  server->QueryNodes()->Remove("Q2");
  const auto query = Query();
  Edit("Q1", {{"Q2", "SELECT 1"}});
  EXPECT_EQ(ErrorBox(), "The item is already in the tree.");
  EXPECT_EQ(Names(*server), std::vector<Text>{"Q2"});
  EXPECT_EQ(query->QueryName(), "Q2");
  EXPECT_EQ(query->Recordset(), rs);
  EXPECT_EQ(driver.Item("S1.Queries.Q1")->Tag(), query);
  EXPECT_EQ(driver.DisplayName("S1.Queries.Q1"), "Q1");
}

TEST_F(query_commands, a_lost_query_takes_the_one_of_its_key_out_when_it_is_renamed) {
  const auto server = ExpandAll();
  New({{"Q2", "SELECT 2"}});
  const auto lost = server->QueryNodes()->Item("Q2");
  Edit("Q2", {{"q1", "SELECT 22"}});
  driver.TakeBoxes();
  // It is in no place, but the list files another one under its name.
  Edit("Q2", {{"Q9", "SELECT 9"}});
  EXPECT_EQ(ErrorBox(), "The position -1 is out of range; the collection is empty.");
  EXPECT_TRUE(Names(*server).empty());
  EXPECT_EQ(lost->QueryName(), "Q9");
  EXPECT_TRUE(driver.HasItem("S1.Queries.Q1"));
  EXPECT_TRUE(driver.HasItem("S1.Queries.Q2"));
}

TEST_F(query_commands, a_name_that_the_grid_shows_already_is_not_set_again) {
  ExpandAll();
  driver.Select("S1.Queries.Q1");
  driver.QueryResults()->log.clear();
  Edit("Q1", {{"Q1", "SELECT Speed FROM Plant..Pumps"}});
  EXPECT_EQ(driver.QueryResults()->log,
            (std::vector<std::string>{"SqlText SELECT Speed FROM Plant..Pumps", "Execute"}));
}

TEST_F(query_commands, an_edited_query_whose_text_cannot_be_run_stays_edited) {
  ExpandAll();
  driver.Select("S1.Queries.Q1");
  Edit("Q1", {{"Q9", "nonsense"}});
  EXPECT_EQ(ErrorBox(), "The statement cannot be run.");
  EXPECT_EQ(driver.DisplayName("S1.Queries.Q9"), "Q9");
  EXPECT_EQ(driver.QueryResults()->QueryName(), "Q9");
}

}  // namespace
}  // namespace orvane::snapin
