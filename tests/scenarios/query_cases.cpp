// The commands of the queries folder and of a named query.
#include "tests/scenarios/command_fixture.h"

namespace orvane::scenarios::commands {
namespace {

constexpr const char* kNameTaken = "Query with the specified name already exists.";

TEST_F(command_scenario, a_new_query_is_kept_listed_and_run) {
  OpenQueries();
  driver->AnswerForm([](ShownForm& form) {
    EXPECT_EQ(form.Title(), "Query");
    EXPECT_EQ(form.BoxText("m_txtName"), "");
    EXPECT_EQ(form.BoxText("m_txtSqlStatement"), "");
    EXPECT_FALSE(form.Enabled("m_btnOk"));
    form.Type("m_txtName", "My fans");
    form.Type("m_txtSqlStatement", "SELECT Name FROM Plant..Fans");
    form.Click("m_btnOk");
  });
  driver->Choose(kQueries, "New Query...");
  ExpectNoBoxes();
  EXPECT_EQ(driver->Children(kQueries), (Texts{kAllPumps, kAllFans, "localhost.Queries.My fans"}));
  const auto rows = driver->ListRows();
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows[2].sSubItems, (Texts{"My fans", "SELECT Name FROM Plant..Fans"}));
  driver->Select("localhost.Queries.My fans");
  EXPECT_EQ(FirstColumn(), (Texts{"F1"}));
  driver->SaveAndReopen();
  EXPECT_EQ(SavedQueryName(3), "My fans");
  ExpectNoBoxes();
}

TEST_F(command_scenario, a_query_added_to_a_folder_never_opened_gives_it_its_mark) {
  OpenServers();
  driver->Expand(kServer);
  EXPECT_FALSE(driver->HasExpandMark(kQueries));
  NewQuery("My fans", "SELECT Name FROM Plant..Fans");
  EXPECT_TRUE(driver->HasExpandMark(kQueries));
  EXPECT_TRUE(driver->Children(kQueries).empty());
  driver->Expand(kQueries);
  EXPECT_EQ(driver->Children(kQueries), (Texts{kAllPumps, kAllFans, "localhost.Queries.My fans"}));
  ExpectNoBoxes();
}

TEST_F(command_scenario, a_taken_name_brings_the_dialog_back_with_what_was_typed) {
  OpenQueries();
  // Letter case does not make another name.
  Fill({{"m_txtName", "ALL PUMPS"}, {"m_txtSqlStatement", "SELECT 1"}});
  driver->AnswerForm([](ShownForm& form) {
    EXPECT_EQ(form.BoxText("m_txtName"), "ALL PUMPS");
    EXPECT_EQ(form.BoxText("m_txtSqlStatement"), "SELECT 1");
    form.Type("m_txtName", "One");
    form.Click("m_btnOk");
  });
  driver->Choose(kQueries, "New Query...");
  EXPECT_EQ(ErrorBox(), kNameTaken);
  EXPECT_EQ(driver->Children(kQueries).back(), "localhost.Queries.One");
}

TEST_F(command_scenario, giving_up_a_taken_name_adds_no_query) {
  OpenQueries();
  Fill({{"m_txtName", "All fans"}});
  Answer("m_btnCancel");
  driver->Choose(kQueries, "New Query...");
  EXPECT_EQ(ErrorBox(), kNameTaken);
  EXPECT_EQ(driver->Children(kQueries), (Texts{kAllPumps, kAllFans}));
}

TEST_F(command_scenario, an_edited_query_runs_its_new_text) {
  OpenQueries();
  driver->Select(kAllPumps);
  driver->AnswerForm([](ShownForm& form) {
    EXPECT_EQ(form.BoxText("m_txtName"), "All pumps");
    EXPECT_EQ(form.BoxText("m_txtSqlStatement"), "SELECT Name FROM Plant..Pumps");
    EXPECT_TRUE(form.Enabled("m_btnOk"));
    form.Type("m_txtSqlStatement", "SELECT Name FROM Plant..Fans");
    form.Click("m_btnOk");
  });
  driver->Choose(kAllPumps, "Edit...");
  EXPECT_EQ(FirstColumn(), (Texts{"F1"}));
  driver->Select(kQueries);
  EXPECT_EQ(driver->ListRows().at(0).sSubItems,
            (Texts{"All pumps", "SELECT Name FROM Plant..Fans"}));
  ExpectNoBoxes();
}

TEST_F(command_scenario, a_query_accepted_unchanged_is_run_again) {
  OpenQueries();
  driver->Select(kAllPumps);
  driver->AppendRow(kServer, "Plant", "Pumps", {"P4", 4.5});
  Answer("m_btnOk");
  driver->Choose(kAllPumps, "Edit...");
  EXPECT_EQ(FirstColumn(), (Texts{"P1", "P2", "P3", "P4"}));
  ExpectNoBoxes();
}

TEST_F(command_scenario, a_renamed_query_keeps_its_place) {
  OpenQueries();
  driver->Select(kAllPumps);
  Fill({{"m_txtName", "Every pump"}});
  driver->Choose(kAllPumps, "Edit...");
  ExpectNoBoxes();
  const Text sRenamed = "localhost.Queries.Every pump";
  EXPECT_EQ(driver->Children(kQueries), (Texts{sRenamed, kAllFans}));
  EXPECT_EQ(driver->DisplayName(sRenamed), "Every pump");
  EXPECT_EQ(driver->Selected(), sRenamed);
  EXPECT_EQ(FirstColumn(), (Texts{"P1", "P2", "P3"}));
  driver->SaveAndReopen();
  EXPECT_EQ(SavedQueryName(1), "Every pump");
  EXPECT_EQ(SavedQueryName(2), "All fans");
  ExpectNoBoxes();
}

TEST_F(command_scenario, a_query_renamed_in_letter_case_alone_is_renamed) {
  OpenQueries();
  Fill({{"m_txtName", "ALL PUMPS"}});
  driver->Choose(kAllPumps, "Edit...");
  EXPECT_EQ(driver->Children(kQueries), (Texts{"localhost.Queries.ALL PUMPS", kAllFans}));
  ExpectNoBoxes();
}

TEST_F(command_scenario, renaming_a_query_to_the_name_of_another_is_refused) {
  OpenQueries();
  Fill({{"m_txtName", "All fans"}});
  driver->AnswerForm([](ShownForm& form) {
    EXPECT_EQ(form.BoxText("m_txtName"), "All fans");
    form.Click("m_btnCancel");
  });
  driver->Choose(kAllPumps, "Edit...");
  EXPECT_EQ(ErrorBox(), kNameTaken);
  EXPECT_EQ(driver->Children(kQueries), (Texts{kAllPumps, kAllFans}));
}

TEST_F(command_scenario, a_name_that_differs_from_anothers_in_case_alone_loses_the_query) {
  OpenQueries();
  Fill({{"m_txtName", "ALL FANS"}});
  driver->Choose(kAllPumps, "Edit...");
  EXPECT_NE(ErrorBox(), kNameTaken);
  // Its item stays where it was, but the list has it no more.
  EXPECT_EQ(driver->Children(kQueries), (Texts{kAllPumps, kAllFans}));
  driver->SaveAndReopen();
  EXPECT_EQ(Saved("ServerNodes_ServerNode1_QueryNodes_QueryNodeCount"), Value(Long{1}));
  EXPECT_EQ(SavedQueryName(1), "All fans");
}

TEST_F(command_scenario, a_query_is_removed_only_when_the_question_is_answered_yes) {
  OpenQueries();
  driver->Select(kAllPumps);
  const Text sQuestion = "Are you sure you want to remove the \"All pumps\" query?";
  driver->AnswerBox(BoxAnswer::No);
  driver->Choose(kAllPumps, "Remove");
  ExpectQuestion(sQuestion, "Confirm Query Removal");
  EXPECT_EQ(driver->Children(kQueries), (Texts{kAllPumps, kAllFans}));
  EXPECT_EQ(driver->Selected(), kAllPumps);
  driver->AnswerBox(BoxAnswer::Yes);
  driver->Choose(kAllPumps, "Remove");
  ExpectQuestion(sQuestion, "Confirm Query Removal");
  EXPECT_EQ(driver->Children(kQueries), (Texts{kAllFans}));
  EXPECT_EQ(driver->Selected(), kQueries);
  EXPECT_EQ(driver->ListRows().size(), 1U);
  EXPECT_TRUE(driver->Toolbar().empty());
  ExpectNoBoxes();
}

TEST_F(command_scenario, removing_the_last_query_takes_the_folders_mark) {
  OpenQueries();
  driver->Choose(kAllFans, "Remove");
  EXPECT_TRUE(driver->HasExpandMark(kQueries));
  driver->Choose(kAllPumps, "Remove");
  EXPECT_FALSE(driver->HasExpandMark(kQueries));
  EXPECT_EQ(driver->TakeBoxes().size(), 2U);
  NewQuery("Again", "SELECT Name FROM Plant..Fans");
  EXPECT_TRUE(driver->HasExpandMark(kQueries));
  EXPECT_EQ(driver->Children(kQueries), (Texts{"localhost.Queries.Again"}));
  ExpectNoBoxes();
}

}  // namespace
}  // namespace orvane::scenarios::commands
