// The commands of the catalogs folder, of a catalog and of a table.
#include <algorithm>

#include "tests/scenarios/command_fixture.h"

namespace orvane::scenarios::commands {
namespace {

// ---- catalogs

TEST_F(command_scenario, a_new_catalog_appears_under_the_open_folder_and_on_the_server) {
  OpenTables();
  driver->AnswerForm([](ShownForm& form) {
    EXPECT_EQ(form.Title(), "Add Catalog");
    EXPECT_FALSE(form.Enabled("m_btnOk"));
    form.Type("m_txtName", "New plant");
    EXPECT_TRUE(form.Enabled("m_btnOk"));
    form.Type("m_txtName", "");
    EXPECT_FALSE(form.Enabled("m_btnOk"));
    form.Type("m_txtName", "Mill");
    form.Click("m_btnOk");
  });
  const Long lStatements = driver->StatementsSent();
  driver->Choose(kCatalogs, "Add Catalog...");
  ExpectNoBoxes();
  EXPECT_EQ(driver->StatementsSent(), lStatements + 1);
  EXPECT_FALSE(driver->IsHourglassShown());
  EXPECT_EQ(driver->Children(kCatalogs).back(), "localhost.Catalogs.Mill");
  EXPECT_EQ(driver->DisplayName("localhost.Catalogs.Mill"), "Mill");
  EXPECT_TRUE(driver->HasExpandMark("localhost.Catalogs.Mill"));
  EXPECT_EQ(driver->Menu("localhost.Catalogs.Mill"), (std::vector<MenuEntry>{{"Remove"}}));
  OpenTables();
  EXPECT_TRUE(driver->HasItem("localhost.Catalogs.Mill"));
  ExpectNoBoxes();
}

TEST_F(command_scenario, a_catalog_added_to_a_closed_folder_shows_when_that_is_opened) {
  OpenServers();
  driver->Expand(kServer);
  Fill({{"m_txtName", "Mill"}});
  driver->Choose(kCatalogs, "Add Catalog...");
  EXPECT_FALSE(driver->HasItem("localhost.Catalogs.Mill"));
  driver->Expand(kCatalogs);
  EXPECT_TRUE(driver->HasItem("localhost.Catalogs.Mill"));
  ExpectNoBoxes();
}

TEST_F(command_scenario, a_cancelled_catalog_is_not_made) {
  OpenTables();
  const Long lStatements = driver->StatementsSent();
  const Text sTree = driver->Tree();
  Fill({{"m_txtName", "Mill"}}, "m_btnCancel");
  driver->Choose(kCatalogs, "Add Catalog...");
  EXPECT_EQ(driver->StatementsSent(), lStatements);
  EXPECT_EQ(driver->Tree(), sTree);
  ExpectNoBoxes();
}

TEST_F(command_scenario, a_failed_creation_leaves_the_hourglass_until_the_next_one) {
  OpenTables();
  const Text sTree = driver->Tree();
  Fill({{"m_txtName", "Plant"}});
  driver->Choose(kCatalogs, "Add Catalog...");
  ErrorBox();
  EXPECT_TRUE(driver->IsHourglassShown());
  EXPECT_EQ(driver->Tree(), sTree);
  Fill({{"m_txtName", "Mill"}});
  driver->Choose(kCatalogs, "Add Catalog...");
  EXPECT_FALSE(driver->IsHourglassShown());
  EXPECT_TRUE(driver->HasItem("localhost.Catalogs.Mill"));
  ExpectNoBoxes();
}

TEST_F(command_scenario, a_catalog_is_removed_only_when_the_question_is_answered_yes) {
  OpenTables();
  const Text sQuestion = "Are you sure you want to remove the \"Plant\" catalog?";
  const Long lStatements = driver->StatementsSent();
  driver->AnswerBox(BoxAnswer::No);
  driver->Choose(kPlant, "Remove");
  ExpectQuestion(sQuestion, "Confirm Catalog Removal");
  EXPECT_TRUE(driver->HasItem(kPumps));
  EXPECT_EQ(driver->StatementsSent(), lStatements);
  driver->AnswerBox(BoxAnswer::Yes);
  driver->Choose(kPlant, "Remove");
  ExpectQuestion(sQuestion, "Confirm Catalog Removal");
  EXPECT_FALSE(driver->HasItem(kPlant));
  EXPECT_FALSE(driver->HasItem(kPumps));
  EXPECT_EQ(driver->StatementsSent(), lStatements + 1);
  EXPECT_EQ(driver->Selected(), kCatalogs);
  const auto rows = driver->ListRows();
  EXPECT_TRUE(std::none_of(rows.begin(), rows.end(),
                           [](const ListRow& row) { return row.sText == "Plant"; }));
  OpenServers();
  driver->Expand(kServer);
  driver->Expand(kCatalogs);
  EXPECT_FALSE(driver->HasItem(kPlant));
  ExpectNoBoxes();
}

// ---- the table query builder

TEST_F(command_scenario, the_query_builder_shows_the_query_as_it_is) {
  OpenTables();
  driver->AnswerForm([](ShownForm& form) {
    EXPECT_EQ(form.Label("m_lblCatalog2"), "Plant");
    EXPECT_EQ(form.Label("m_lblTable2"), "Pumps");
    EXPECT_TRUE(form.Entries("m_lvAvailableCols").empty());
    EXPECT_EQ(form.Entries("m_lvSelCols"), (Texts{"Name", "Speed"}));
    EXPECT_EQ(form.Entries("m_cmbSortCol"), (Texts{"Name", "Speed"}));
    EXPECT_EQ(form.Entries("m_cmbSortOrder"), (Texts{"Ascending", "Descending"}));
    EXPECT_EQ(form.Chosen("m_cmbSortCol"), "");
    EXPECT_TRUE(form.Checked("m_chkNoSortingCriteria"));
    EXPECT_TRUE(form.Checked("m_chkDefaultFilterCond"));
    EXPECT_FALSE(form.Enabled("m_btnSelectCol"));
    EXPECT_FALSE(form.Enabled("m_btnSelectAllCols"));
    EXPECT_FALSE(form.Enabled("m_btnDeselectCol"));
    EXPECT_TRUE(form.Enabled("m_btnDeselectAllCols"));
    form.Click("m_btnCancel");
  });
  driver->Choose(kPumps, "Query...");
  ExpectNoBoxes();
}

TEST_F(command_scenario, an_accepted_query_builder_runs_the_changed_query) {
  OpenTables();
  driver->Select(kPumps);
  const Long lStatements = driver->StatementsSent();
  driver->AnswerForm([](ShownForm& form) {
    form.Choose("m_lvSelCols", "Name");
    EXPECT_TRUE(form.Enabled("m_btnDeselectCol"));
    form.Click("m_btnDeselectCol");
    EXPECT_EQ(form.Entries("m_lvSelCols"), (Texts{"Speed"}));
    EXPECT_EQ(form.Entries("m_lvAvailableCols"), (Texts{"Name"}));
    form.Click("m_btnSelectAllCols");
    EXPECT_EQ(form.Entries("m_lvSelCols"), (Texts{"Speed", "Name"}));
    form.Click("m_chkNoSortingCriteria");
    EXPECT_EQ(form.Chosen("m_cmbSortCol"), "Name");
    EXPECT_EQ(form.Chosen("m_cmbSortOrder"), "Ascending");
    form.Choose("m_cmbSortCol", "Speed");
    form.Choose("m_cmbSortOrder", "Descending");
    form.Click("m_btnOk");
  });
  driver->Choose(kPumps, "Query...");
  ExpectNoBoxes();
  EXPECT_EQ(driver->StatementsSent(), lStatements + 1);
  const auto grid = driver->Grid();
  EXPECT_EQ(grid.columns, (Texts{"Speed", "Name"}));
  EXPECT_EQ(grid.rows, (std::vector<Texts>{{"3.5", "P3"}, {"2.5", "P2"}, {"1.5", "P1"}}));
  const auto query = SavedTable("Pumps");
  ASSERT_NE(query, nullptr);
  EXPECT_EQ(query->SortCriterion(), (platform::SortCriterion{"Speed", false}));
}

TEST_F(command_scenario, a_cancelled_query_builder_changes_nothing) {
  OpenTables();
  driver->Select(kPumps);
  const Long lStatements = driver->StatementsSent();
  driver->AnswerForm([](ShownForm& form) {
    form.Choose("m_lvSelCols", "Name");
    form.Click("m_btnDeselectCol");
    form.Click("m_chkNoSortingCriteria");
    form.Click("m_btnCancel");
  });
  driver->Choose(kPumps, "Query...");
  EXPECT_EQ(driver->StatementsSent(), lStatements);
  EXPECT_EQ(driver->Grid().columns, (Texts{"Name", "Speed"}));
  const auto query = SavedTable("Pumps");
  ASSERT_NE(query, nullptr);
  EXPECT_EQ(query->Columns().Count(), 2);
  EXPECT_EQ(query->SortCriterion(), std::nullopt);
  ExpectNoBoxes();
}

TEST_F(command_scenario, without_a_column_the_query_builder_cannot_be_accepted) {
  OpenTables();
  driver->AnswerForm([](ShownForm& form) {
    form.Click("m_btnDeselectAllCols");
    EXPECT_EQ(form.Entries("m_lvAvailableCols"), (Texts{"Name", "Speed"}));
    EXPECT_FALSE(form.Enabled("m_btnOk"));
    EXPECT_FALSE(form.Enabled("m_btnDeselectAllCols"));
    form.Choose("m_lvAvailableCols", "Speed");
    form.Click("m_btnSelectCol");
    EXPECT_TRUE(form.Enabled("m_btnOk"));
    form.Click("m_btnOk");
  });
  driver->Choose(kPumps, "Query...");
  driver->Select(kPumps);
  EXPECT_EQ(driver->Grid().columns, (Texts{"Speed"}));
  ExpectNoBoxes();
}

TEST_F(command_scenario, the_default_filter_is_locked_until_it_is_given_up) {
  OpenTables();
  const Text sDefault = "Timestamp BETWEEN '*-2h' AND '*'";
  driver->AnswerForm([&](ShownForm& form) {
    EXPECT_TRUE(form.Checked("m_chkDefaultFilterCond"));
    EXPECT_EQ(form.BoxText("m_txtFilterCond"), sDefault);
    form.Type("m_txtFilterCond", "Tag = 'T1'");
    EXPECT_EQ(form.BoxText("m_txtFilterCond"), sDefault);
    form.Click("m_chkDefaultFilterCond");
    EXPECT_EQ(form.BoxText("m_txtFilterCond"), sDefault);
    form.Type("m_txtFilterCond", "Tag = 'T1'");
    form.Click("m_btnOk");
  });
  driver->Choose(kData, "Query...");
  ExpectNoBoxes();
  Boolean bDefaultFilter = true;
  const auto query = SavedTable("Data", &bDefaultFilter);
  ASSERT_NE(query, nullptr);
  EXPECT_EQ(query->FilterCondition(), "Tag = 'T1'");
  EXPECT_FALSE(bDefaultFilter);
}

TEST_F(command_scenario, a_filter_limits_the_rows_and_options_leave_it_alone) {
  OpenTables();
  driver->AnswerForm([](ShownForm& form) {
    form.Click("m_chkDefaultFilterCond");
    form.Type("m_txtFilterCond", "Name = 'P2'");
    form.Click("m_btnOk");
  });
  driver->Choose(kPumps, "Query...");
  driver->Select(kPumps);
  EXPECT_EQ(FirstColumn(), (Texts{"P2"}));
  Answer("m_btnOK");
  driver->Choose(kStaticNode, "Options...");
  driver->Select(kPumps);
  EXPECT_EQ(FirstColumn(), (Texts{"P2"}));
  ExpectNoBoxes();
}

}  // namespace
}  // namespace orvane::scenarios::commands
