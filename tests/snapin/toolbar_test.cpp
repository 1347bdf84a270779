#include "tests/snapin/snap_in_fixture.h"

namespace orvane::snapin {
namespace {

using platform::Long;

constexpr const char* kPumps = "S1.Catalogs.Plant.Pumps";
constexpr const char* kDataTable = "S1.Catalogs.Plant.Data";
constexpr const char* kQuery = "S1.Queries.Q1";

class toolbar : public SnapInTest {
 protected:
  toolbar() { ExpandAll(); }

  /// The attached toolbar's buttons, one text each: key, image, tooltip, style.
  std::vector<Text> Buttons() {
    std::vector<Text> texts;
    if (!driver.controlBar.attached) return texts;
    for (const auto& button : driver.console->toolbar->Buttons().buttons) {
      texts.push_back(button->Key() + "|" + std::to_string(button->lImage) + "|" +
                      button->sToolTip + "|" + std::to_string(static_cast<int>(button->style)));
    }
    return texts;
  }
  void Update(bool bSelected) {
    driver.snapIn->Views_UpdateControlbar(driver.console->CurrentView(), fakes::FakeSelection(),
                                          bSelected, driver.controlBar);
  }
  bool IsEnabled(const char* sButton) {
    return driver.console->toolbar->Buttons().Item(sButton).Enabled();
  }
  /// Lets the refresh itself select rows, when the snap-in has already handled what the grid tells
  /// of its rows: only what comes after the run sees them.
  template <class Grid>
  static platform::Subscription SelectRowsLate(const std::shared_ptr<Grid>& grid) {
    return grid->OnRowColChange([grid = grid.get()] { grid->bRowsSelected = true; });
  }
};

TEST_F(toolbar, a_table_shows_the_table_toolbar) {
  driver.Select(kPumps);
  EXPECT_EQ(Buttons(),
            (std::vector<Text>{
                "MoveFirst|1|Move to First Row|0", "MoveLast|2|Move to Last Row|0", "|1||8",
                "SortAsc|3|Sort Ascending|0", "SortDesc|4|Sort Descending|0", "|1||8",
                "CellQuery|5|Put Results of a Query into the Current Cell|0",
                "Delete|6|Delete Selected Rows|0", "|1||8", "Sql|7|Show/Hide SQL Statement|1"}));
  ExpectNoBoxes();
}

TEST_F(toolbar, a_query_shows_the_query_toolbar) {
  driver.Select(kQuery);
  EXPECT_EQ(Buttons(),
            (std::vector<Text>{
                "MoveFirst|1|Move to First Row|0", "MoveLast|2|Move to Last Row|0", "|1||8",
                "CellQuery|5|Put Results of a Query into the Current Cell|0",
                "Delete|6|Delete Selected Rows|0", "|1||8", "Sql|7|Show/Hide SQL Statement|1"}));
  ExpectNoBoxes();
}

TEST_F(toolbar, an_older_console_takes_every_second_image) {
  driver.fileVersion->info = fakes::FakeFileVersion::Product(5, 1, 2599, 0);
  driver.NewDocument();
  ExpandAll();
  driver.Select(kPumps);
  const auto buttons = Buttons();
  ASSERT_EQ(buttons.size(), 10U);
  EXPECT_EQ(buttons[0], "MoveFirst|2|Move to First Row|0");
  EXPECT_EQ(buttons[2], "|1||8") << "a separator keeps its image";
  EXPECT_EQ(buttons[9], "Sql|14|Show/Hide SQL Statement|1");
}

TEST_F(toolbar, moving_between_tables_keeps_the_toolbar) {
  driver.Select(kPumps);
  const int nAdded = driver.console->toolbar->Buttons().nAdded;
  driver.Select(kDataTable);
  EXPECT_EQ(driver.console->toolbar->Buttons().nAdded, nAdded);
  EXPECT_EQ(driver.controlBar.nAttached, 1);
}

TEST_F(toolbar, moving_from_a_table_to_a_query_rebuilds_it) {
  driver.Select(kPumps);
  driver.Select(kQuery);
  EXPECT_EQ(Buttons().size(), 7U);
  EXPECT_EQ(driver.controlBar.nAttached, 2);
  driver.Select(kPumps);
  EXPECT_EQ(Buttons().size(), 10U);
  ExpectNoBoxes();
}

TEST_F(toolbar, is_attached_when_its_buttons_have_their_states_and_detached_with_its_buttons) {
  std::vector<Text> steps;
  const auto step = [&](const char* sStep) {
    auto& buttons = driver.console->toolbar->Buttons();
    steps.push_back(sStep + std::to_string(buttons.Count()) +
                    (buttons.Item("Delete").Enabled() ? "" : ", no deleting"));
  };
  driver.controlBar.onAttach = [&] { step("attached with "); };
  driver.controlBar.onDetach = [&] { step("detached with "); };
  driver.Select(kPumps);
  EXPECT_EQ(steps, std::vector<Text>{"attached with 10, no deleting"});
  steps.clear();
  driver.Select(kQuery);
  EXPECT_EQ(steps,
            (std::vector<Text>{"detached with 10, no deleting", "attached with 7, no deleting"}));
  steps.clear();
  driver.Select("S1");
  EXPECT_EQ(steps, std::vector<Text>{"detached with 7, no deleting"});
  ExpectNoBoxes();
}

TEST_F(toolbar, moving_to_another_item_or_view_removes_it) {
  driver.Select(kPumps);
  driver.Select("S1.Catalogs");
  EXPECT_EQ(driver.controlBar.attached, nullptr);
  EXPECT_EQ(driver.console->toolbar->Buttons().Count(), 0);
  driver.Select(kPumps);
  driver.ShowView("TableStructureListView");
  EXPECT_EQ(driver.controlBar.attached, nullptr);
}

TEST_F(toolbar, deselecting_removes_it_even_while_the_grid_is_shown) {
  driver.Select(kPumps);
  Update(false);
  EXPECT_EQ(driver.controlBar.attached, nullptr);
  Update(true);
  EXPECT_NE(driver.controlBar.attached, nullptr);
}

TEST_F(toolbar, a_failing_step_is_ignored_and_the_next_ones_go_on) {
  driver.Select(kPumps);
  driver.Select("S1");
  driver.console->toolbar->Buttons().sFailingKey = "CellQuery";
  driver.ui->boxes.clear();
  driver.Select(kQuery);
  EXPECT_EQ(Buttons().size(), 6U);
  EXPECT_EQ(driver.console->toolbar->Buttons().Item("Sql").Key(), "Sql");
  // Setting the states is guarded by itself and tells of the missing button.
  EXPECT_EQ(ErrorBox(), "There is no button \"CellQuery\".");
}

TEST_F(toolbar, a_toolbar_that_cannot_be_detached_is_rebuilt_all_the_same) {
  driver.Select(kPumps);
  driver.controlBar.bFailDetach = true;
  driver.Select(kQuery);
  EXPECT_EQ(Buttons().size(), 7U);
  ExpectNoBoxes();
}

TEST_F(toolbar, a_toolbar_that_cannot_be_cleared_is_detached_and_built_all_the_same) {
  driver.Select(kPumps);
  auto& buttons = driver.console->toolbar->Buttons();
  buttons.bFailClear = true;
  driver.Select("S1");
  EXPECT_EQ(driver.controlBar.attached, nullptr);
  EXPECT_EQ(buttons.Count(), 10);
  buttons.nAdded = 0;
  driver.Select("S1.Catalogs");
  driver.Select(kQuery);
  EXPECT_EQ(buttons.nAdded, 7) << "it was remembered that there is none, so this one is built";
  EXPECT_EQ(driver.controlBar.attached, driver.console->toolbar);
  ExpectNoBoxes();
}

TEST_F(toolbar, a_toolbar_that_cannot_be_attached_is_remembered_and_not_tried_again) {
  driver.controlBar.bFailAttach = true;
  driver.Select(kPumps);
  auto& buttons = driver.console->toolbar->Buttons();
  EXPECT_EQ(driver.controlBar.attached, nullptr);
  EXPECT_EQ(buttons.Count(), 10);
  EXPECT_FALSE(buttons.Item("Delete").Enabled()) << "the states come before";
  driver.controlBar.bFailAttach = false;
  Update(true);
  EXPECT_EQ(buttons.nAdded, 10);
  EXPECT_EQ(driver.controlBar.nAttached, 0);
  driver.Select(kQuery);
  EXPECT_EQ(Buttons().size(), 7U);
  ExpectNoBoxes();
}

TEST_F(toolbar, a_console_without_a_toolbar_shows_the_grid_and_is_asked_at_the_next_kind) {
  driver.console->bFailCreateToolbar = true;
  driver.Select(kPumps);
  EXPECT_EQ(driver.Grid().rows.size(), 3U);
  EXPECT_EQ(driver.console->toolbar, nullptr);
  EXPECT_EQ(driver.console->nToolbarsAskedFor, 1);
  driver.console->bFailCreateToolbar = false;
  Update(true);
  EXPECT_EQ(driver.console->nToolbarsAskedFor, 1) << "the kind is remembered all the same";
  driver.Select(kQuery);
  EXPECT_EQ(Buttons().size(), 7U);
  EXPECT_EQ(driver.controlBar.attached, driver.console->toolbar);
  ExpectNoBoxes();
}

TEST_F(toolbar, the_button_states_follow_the_grid_when_it_is_built) {
  driver.Select(kPumps);
  auto& buttons = driver.console->toolbar->Buttons();
  EXPECT_TRUE(buttons.Item("MoveFirst").Enabled());
  EXPECT_FALSE(buttons.Item("Delete").Enabled());
  EXPECT_TRUE(buttons.Item("Sql").Pressed());
}

TEST_F(toolbar, refresh_is_offered_exactly_while_a_grid_is_shown) {
  driver.Select(kPumps);
  EXPECT_TRUE(driver.verbs.Enabled(32774));
  driver.ShowView("TableStructureListView");
  EXPECT_FALSE(driver.verbs.Enabled(32774));
  driver.Select(kQuery);
  EXPECT_TRUE(driver.verbs.Enabled(32774));
  for (const char* sKey : {"", "S1", "S1.Catalogs", "S1.Catalogs.Plant", "S1.Queries"}) {
    driver.Select(sKey);
    EXPECT_FALSE(driver.verbs.Enabled(32774)) << sKey;
  }
  EXPECT_EQ(driver.verbs.verbs.size(), 1U) << "no other verb is touched";
}

TEST_F(toolbar, deselecting_leaves_the_verbs_alone) {
  driver.Select(kPumps);
  driver.snapIn->Views_Select(driver.console->CurrentView(), fakes::FakeSelection(), false,
                              driver.verbs);
  EXPECT_TRUE(driver.verbs.Enabled(32774));
}

TEST_F(toolbar, a_verb_that_cannot_be_set_is_reported) {
  driver.verbs.bFail = true;
  driver.snapIn->Views_Select(driver.console->CurrentView(), fakes::FakeSelection(), true,
                              driver.verbs);
  EXPECT_EQ(ErrorBox(), "There is no such verb.");
}

TEST_F(toolbar, refresh_runs_the_grid_shown_again) {
  driver.Select(kPumps);
  driver.AppendRow("S1", "Plant", "Pumps", {"P4", 4.5});
  driver.snapIn->Views_Refresh(driver.console->CurrentView());
  EXPECT_EQ(driver.Grid().rows.size(), 4U);
  driver.Select(kQuery);
  driver.QueryResults()->log.clear();
  driver.snapIn->Views_Refresh(driver.console->CurrentView());
  EXPECT_EQ(driver.QueryResults()->log, std::vector<std::string>{"Execute"});
  driver.Select("S1");
  driver.historian->log.clear();
  driver.snapIn->Views_Refresh(driver.console->CurrentView());
  EXPECT_TRUE(driver.historian->log.empty());
  ExpectNoBoxes();
}

TEST_F(toolbar, refresh_sets_the_button_states) {
  driver.Select(kPumps);
  const auto late = SelectRowsLate(driver.TableEditor());
  EXPECT_FALSE(IsEnabled("Delete"));
  driver.snapIn->Views_Refresh(driver.console->CurrentView());
  EXPECT_TRUE(IsEnabled("Delete"));
  ExpectNoBoxes();
}

TEST_F(toolbar, a_refresh_that_fails_is_reported) {
  driver.Select(kPumps);
  driver.TableEditor()->sFailing = "Requery";
  driver.snapIn->Views_Refresh(driver.console->CurrentView());
  EXPECT_EQ(ErrorBox(), "The grid cannot do that.");
}

// ---- images and positions

TEST_F(toolbar, an_older_console_takes_every_second_image_of_every_button) {
  driver.fileVersion->info = fakes::FakeFileVersion::Product(5, 0, 2600, 0);
  driver.NewDocument();
  ExpandAll();
  driver.Select(kPumps);
  EXPECT_EQ(Buttons(),
            (std::vector<Text>{
                "MoveFirst|2|Move to First Row|0", "MoveLast|4|Move to Last Row|0", "|1||8",
                "SortAsc|6|Sort Ascending|0", "SortDesc|8|Sort Descending|0", "|1||8",
                "CellQuery|10|Put Results of a Query into the Current Cell|0",
                "Delete|12|Delete Selected Rows|0", "|1||8", "Sql|14|Show/Hide SQL Statement|1"}));
  driver.Select(kQuery);
  EXPECT_EQ(Buttons(),
            (std::vector<Text>{
                "MoveFirst|2|Move to First Row|0", "MoveLast|4|Move to Last Row|0", "|1||8",
                "CellQuery|10|Put Results of a Query into the Current Cell|0",
                "Delete|12|Delete Selected Rows|0", "|1||8", "Sql|14|Show/Hide SQL Statement|1"}));
}

TEST_F(toolbar, the_first_console_of_the_newer_kind_takes_every_image) {
  using fakes::FakeFileVersion;
  const auto imageOfSql = [this](const platform::FixedFileInfo& version) {
    driver.fileVersion->info = version;
    driver.controlBar.attached.reset();
    driver.NewDocument();
    ExpandAll();
    driver.Select(kPumps);
    return driver.console->toolbar->Buttons().Item("Sql").lImage;
  };
  EXPECT_EQ(imageOfSql(FakeFileVersion::Product(5, 1, 2600, 0)), 7);
  EXPECT_EQ(imageOfSql(FakeFileVersion::Product(5, 1, 2599, 65535)), 14);
  EXPECT_EQ(imageOfSql(FakeFileVersion::Product(5, 1, 2600, 32768)), 14) << "signed, and meant so";
  EXPECT_EQ(imageOfSql(FakeFileVersion::Product(5, 2, 0, 0)), 7);
}

TEST_F(toolbar, a_console_without_a_version_counts_as_an_older_one) {
  driver.fileVersion->dwBlockSize = 0;
  driver.NewDocument();
  ExpandAll();
  driver.Select(kPumps);
  EXPECT_EQ(driver.console->toolbar->Buttons().Item("MoveFirst").lImage, 2);
}

TEST_F(toolbar, buttons_are_added_at_their_positions_from_1) {
  driver.Select(kPumps);
  auto& positions = driver.console->toolbar->Buttons().positions;
  EXPECT_EQ(positions, (std::vector<Long>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
  positions.clear();
  driver.Select(kQuery);
  EXPECT_EQ(positions, (std::vector<Long>{1, 2, 3, 4, 5, 6, 7}));
}

TEST_F(toolbar, the_styles_have_the_consoles_numbers) {
  EXPECT_EQ(static_cast<int>(platform::ButtonStyle::Default), 0);
  EXPECT_EQ(static_cast<int>(platform::ButtonStyle::Check), 1);
  EXPECT_EQ(static_cast<int>(platform::ButtonStyle::Separator), 8);
}

TEST_F(toolbar, a_query_without_a_grid_has_no_toolbar_and_no_refresh) {
  driver.otherControl = std::make_shared<fakes::FakeTableQuery>();
  driver.Select(kQuery);
  EXPECT_EQ(driver.controlBar.attached, nullptr);
  EXPECT_FALSE(driver.verbs.Enabled(32774));
  ExpectNoBoxes();
}

TEST_F(toolbar, a_refresh_of_a_query_sets_its_button_states) {
  driver.Select(kQuery);
  const auto late = SelectRowsLate(driver.QueryResults());
  EXPECT_FALSE(IsEnabled("Delete"));
  driver.snapIn->Views_Refresh(driver.console->CurrentView());
  EXPECT_TRUE(IsEnabled("Delete"));
  driver.QueryResults()->sFailing = "Execute";
  driver.snapIn->Views_Refresh(driver.console->CurrentView());
  EXPECT_EQ(ErrorBox(), "The grid cannot do that.");
}

TEST_F(toolbar, the_query_toolbars_states_follow_the_grid_when_it_is_built) {
  Root()->SqlStatements(false);
  driver.Select(kQuery);
  auto& buttons = driver.console->toolbar->Buttons();
  EXPECT_TRUE(buttons.Item("MoveLast").Enabled());
  EXPECT_FALSE(buttons.Item("Delete").Enabled());
  EXPECT_FALSE(buttons.Item("Sql").Pressed());
}

}  // namespace
}  // namespace orvane::snapin
