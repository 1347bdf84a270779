// New queries and their removal.
#include "tests/snapin/query_fixture.h"

namespace orvane::snapin {
namespace {

using platform::MsgBoxResult;

using query_commands = QueryTest;

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

}  // namespace
}  // namespace orvane::snapin
