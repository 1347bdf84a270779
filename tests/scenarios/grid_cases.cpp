// The toolbar of the grids, and Refresh.
#include "tests/scenarios/command_fixture.h"

namespace orvane::scenarios::commands {
namespace {

// ---- the toolbar

struct ButtonExpected {
  Text sKey;
  Long lNumber = 0;
  Text sToolTip;
};

void ExpectButtons(const std::vector<ButtonSeen>& seen,
                   const std::vector<ButtonExpected>& expected) {
  ASSERT_EQ(seen.size(), expected.size());
  // An older console takes every second image.
  const Long lFactor = seen[0].lImage;
  EXPECT_TRUE(lFactor == 1 || lFactor == 2) << lFactor;
  for (std::size_t n = 0; n < seen.size(); ++n) {
    EXPECT_EQ(seen[n].sKey, expected[n].sKey);
    EXPECT_EQ(seen[n].sToolTip, expected[n].sToolTip);
    if (seen[n].sKey.empty()) continue;
    EXPECT_EQ(seen[n].lImage, expected[n].lNumber * lFactor);
  }
}

TEST_F(command_scenario, a_table_shows_its_toolbar_and_a_query_a_smaller_one) {
  OpenTables();
  driver->Expand(kQueries);
  EXPECT_TRUE(driver->Toolbar().empty());
  driver->Select(kPumps);
  ExpectButtons(driver->Toolbar(),
                {{"MoveFirst", 1, "Move to First Row"},
                 {"MoveLast", 2, "Move to Last Row"},
                 {},
                 {"SortAsc", 3, "Sort Ascending"},
                 {"SortDesc", 4, "Sort Descending"},
                 {},
                 {"CellQuery", 5, "Put Results of a Query into the Current Cell"},
                 {"Delete", 6, "Delete Selected Rows"},
                 {},
                 {"Sql", 7, "Show/Hide SQL Statement"}});
  driver->Select(kAllPumps);
  ExpectButtons(driver->Toolbar(),
                {{"MoveFirst", 1, "Move to First Row"},
                 {"MoveLast", 2, "Move to Last Row"},
                 {},
                 {"CellQuery", 5, "Put Results of a Query into the Current Cell"},
                 {"Delete", 6, "Delete Selected Rows"},
                 {},
                 {"Sql", 7, "Show/Hide SQL Statement"}});
  driver->Select(kQueries);
  EXPECT_TRUE(driver->Toolbar().empty());
  ExpectNoBoxes();
}

TEST_F(command_scenario, the_other_view_of_a_table_has_no_toolbar) {
  OpenTables();
  driver->Select(kPumps);
  driver->ShowView("TableStructureListView");
  EXPECT_TRUE(driver->Toolbar().empty());
  driver->ShowView("TableEditorOcxView");
  EXPECT_EQ(driver->Toolbar().size(), 10U);
  ExpectNoBoxes();
}

TEST_F(command_scenario, rows_can_be_moved_through_and_only_selected_ones_deleted) {
  OpenTables();
  driver->Expand(kQueries);
  for (const char* sKey : {kPumps, kAllPumps}) {
    driver->Select(sKey);
    for (const ButtonSeen& button : driver->Toolbar()) {
      if (button.sKey == "MoveFirst" || button.sKey == "MoveLast") {
        EXPECT_TRUE(button.bEnabled) << sKey << " " << button.sKey;
      }
      EXPECT_FALSE(button.sKey == "Delete" && button.bEnabled) << sKey;
      EXPECT_FALSE(button.bPressed) << button.sKey;
    }
    driver->Press("Delete");
    EXPECT_EQ(FirstColumn(), (Texts{"P1", "P2", "P3"}));
    driver->Press("MoveLast");
    driver->Press("MoveFirst");
    EXPECT_EQ(FirstColumn(), (Texts{"P1", "P2", "P3"}));
  }
  ExpectNoBoxes();
}

TEST_F(command_scenario, the_sql_button_shows_the_statement_here_and_in_the_next_grids) {
  OpenTables();
  driver->Expand(kQueries);
  driver->Select(kPumps);
  EXPECT_FALSE(driver->Grid().bSqlStatements);
  driver->Press("Sql");
  EXPECT_TRUE(driver->Grid().bSqlStatements);
  EXPECT_TRUE(driver->Toolbar().back().bPressed);
  driver->Select(kFans);
  EXPECT_TRUE(driver->Grid().bSqlStatements);
  driver->Select(kAllPumps);
  EXPECT_TRUE(driver->Grid().bSqlStatements);
  EXPECT_TRUE(driver->Toolbar().back().bPressed);
  driver->SaveAndReopen();
  EXPECT_EQ(Saved("SqlStatements"), Value(true));
  for (const char* sKey : {kStaticNode, kServer, kQueries}) driver->Expand(sKey);
  driver->Select(kAllPumps);
  EXPECT_TRUE(driver->Toolbar().back().bPressed);
  driver->Press("Sql");
  EXPECT_FALSE(driver->Grid().bSqlStatements);
  EXPECT_FALSE(driver->Toolbar().back().bPressed);
  ExpectNoBoxes();
}

// ---- refresh

TEST_F(command_scenario, refresh_is_offered_where_a_grid_is_shown_and_nowhere_else) {
  OpenTables();
  driver->Expand(kQueries);
  for (const char* sKey : {kStaticNode, kServer, kCatalogs, kPlant, kQueries}) {
    driver->Select(kPumps);
    EXPECT_TRUE(driver->CanRefresh());
    driver->Select(sKey);
    EXPECT_FALSE(driver->CanRefresh()) << sKey;
    const Long lStatements = driver->StatementsSent();
    driver->Refresh();
    EXPECT_EQ(driver->StatementsSent(), lStatements);
  }
  driver->Select(kAllPumps);
  EXPECT_TRUE(driver->CanRefresh());
  driver->Select(kPumps);
  driver->ShowView("TableStructureListView");
  EXPECT_FALSE(driver->CanRefresh());
  ExpectNoBoxes();
}

TEST_F(command_scenario, refresh_brings_what_came_to_the_server_meanwhile) {
  OpenTables();
  driver->Expand(kQueries);
  driver->Select(kAllPumps);
  driver->Select(kPumps);
  driver->AppendRow(kServer, "Plant", "Pumps", {"P4", 4.5});
  EXPECT_EQ(FirstColumn().size(), 3U);
  driver->Refresh();
  EXPECT_EQ(FirstColumn(), (Texts{"P1", "P2", "P3", "P4"}));
  driver->Select(kAllPumps);
  EXPECT_EQ(FirstColumn().size(), 3U);
  driver->Refresh();
  EXPECT_EQ(FirstColumn(), (Texts{"P1", "P2", "P3", "P4"}));
  ExpectNoBoxes();
}

}  // namespace
}  // namespace orvane::scenarios::commands
