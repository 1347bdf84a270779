// Toolbar clicks act on the grid, and the grid's events set the toolbar's buttons.
#include "tests/snapin/snap_in_fixture.h"

namespace orvane::snapin {
namespace {

class grid_events : public SnapInTest {
 protected:
  grid_events() { ExpandAll(); }

  void SelectTable() {
    driver.Select("S1.Catalogs.Plant.Pumps");
    editor = driver.TableEditor();
    editor->log.clear();
  }
  void SelectQuery() {
    driver.Select("S1.Queries.Q1");
    results = driver.QueryResults();
    results->log.clear();
  }
  fakes::FakeToolbarButton& Button(const Text& sKey) {
    return driver.console->toolbar->Buttons().Item(sKey);
  }
  /// Clicks a button that is on no toolbar.
  void ClickLoose(const Text& sKey) {
    fakes::FakeToolbarButton button(sKey, 1, "", platform::ButtonStyle::Default);
    driver.snapIn->Toolbar_ButtonClick(button);
  }

  std::shared_ptr<fakes::FakeTableEditor> editor;
  std::shared_ptr<fakes::FakeQueryResults> results;
};

TEST_F(grid_events, table_buttons_call_their_operations) {
  SelectTable();
  for (const char* sKey : {"MoveFirst", "MoveLast", "SortAsc", "SortDesc", "CellQuery", "Delete"}) {
    driver.snapIn->Toolbar_ButtonClick(Button(sKey));
  }
  EXPECT_EQ(editor->log,
            (std::vector<std::string>{"MoveFirst", "MoveLast", "SortAscending", "SortDescending",
                                      "CellQuery", "DeleteSelectedRows"}));
  ExpectNoBoxes();
}

TEST_F(grid_events, query_buttons_call_their_operations_and_sort_keys_do_nothing) {
  SelectQuery();
  for (const char* sKey : {"MoveFirst", "MoveLast", "CellQuery", "Delete"}) {
    driver.snapIn->Toolbar_ButtonClick(Button(sKey));
  }
  ClickLoose("SortAsc");
  ClickLoose("SortDesc");
  EXPECT_EQ(results->log,
            (std::vector<std::string>{"MoveFirst", "MoveLast", "CellQuery", "DeleteSelectedRows"}));
  ExpectNoBoxes();
}

TEST_F(grid_events, no_button_of_a_toolbar_is_without_an_action) {
  const auto clickAll = [&](std::vector<std::string>& log) {
    for (const auto& button : driver.console->toolbar->Buttons().buttons) {
      if (button->style == platform::ButtonStyle::Separator) continue;
      log.clear();
      driver.snapIn->Toolbar_ButtonClick(*button);
      EXPECT_EQ(log.size(), 1U) << button->Key();
    }
  };
  SelectTable();
  clickAll(editor->log);
  SelectQuery();
  clickAll(results->log);
  ExpectNoBoxes();
}

TEST_F(grid_events, sql_toggles_the_option_the_button_and_the_table_grid) {
  SelectTable();
  ASSERT_TRUE(Root()->SqlStatements());
  driver.snapIn->Toolbar_ButtonClick(Button("Sql"));
  EXPECT_FALSE(Root()->SqlStatements());
  EXPECT_FALSE(Button("Sql").Pressed());
  EXPECT_EQ(editor->log, (std::vector<std::string>{"ShowSqlStatements False"}));
  driver.snapIn->Toolbar_ButtonClick(Button("Sql"));
  EXPECT_TRUE(Root()->SqlStatements());
  EXPECT_TRUE(Button("Sql").Pressed());
  EXPECT_TRUE(editor->ShowSqlStatements());
}

TEST_F(grid_events, sql_is_kept_for_the_next_grid_and_the_document) {
  SelectTable();
  driver.snapIn->Toolbar_ButtonClick(Button("Sql"));
  SelectQuery();
  EXPECT_FALSE(results->ShowSqlStatements());
  EXPECT_FALSE(Button("Sql").Pressed());
  driver.snapIn->Toolbar_ButtonClick(Button("Sql"));
  EXPECT_TRUE(results->ShowSqlStatements());
  driver.snapIn->Toolbar_ButtonClick(Button("Sql"));
  const auto bag = driver.NewBag();
  driver.snapIn->SnapIn_WriteProperties(*bag);
  EXPECT_EQ(bag->At("ServersNode_SqlStatements"), platform::Value(false));
}

TEST_F(grid_events, context_toggles_its_option_and_its_button) {
  SelectTable();
  fakes::FakeToolbarButton button("Context", 1, "", platform::ButtonStyle::Check);
  driver.snapIn->Toolbar_ButtonClick(button);
  EXPECT_TRUE(Root()->Context());
  EXPECT_TRUE(button.Pressed());
  driver.snapIn->Toolbar_ButtonClick(button);
  EXPECT_FALSE(Root()->Context());
  EXPECT_FALSE(button.Pressed());
  EXPECT_TRUE(editor->log.empty());
}

TEST_F(grid_events, without_a_grid_a_click_changes_only_the_options) {
  driver.Select("S1");
  for (const char* sKey : {"MoveFirst", "Delete", "Sql"}) ClickLoose(sKey);
  EXPECT_FALSE(Root()->SqlStatements());
  ExpectNoBoxes();
}

TEST_F(grid_events, keys_are_compared_exactly) {
  SelectTable();
  for (const char* sKey : {"movefirst", "SQL", "sql", "", "Other"}) ClickLoose(sKey);
  EXPECT_TRUE(editor->log.empty());
  EXPECT_TRUE(Root()->SqlStatements());
}

TEST_F(grid_events, an_operation_that_fails_is_reported) {
  SelectTable();
  editor->sFailing = "DeleteSelectedRows";
  driver.snapIn->Toolbar_ButtonClick(Button("Delete"));
  EXPECT_EQ(ErrorBox(), "The grid cannot do that.");
}

TEST_F(grid_events, a_click_does_not_set_the_states_itself) {
  SelectTable();
  editor->bCanMove = false;
  driver.snapIn->Toolbar_ButtonClick(Button("MoveFirst"));
  EXPECT_TRUE(Button("MoveFirst").Enabled());
}

TEST_F(grid_events, every_event_of_the_table_grid_sets_the_states) {
  SelectTable();
  for (auto* event : {&editor->headClick, &editor->rowColChange, &editor->selChange,
                      &editor->insert, &editor->deleted}) {
    editor->bCanMove = !editor->bCanMove;
    event->Raise();
    EXPECT_EQ(Button("MoveFirst").Enabled(), editor->bCanMove);
    EXPECT_EQ(Button("MoveLast").Enabled(), editor->bCanMove);
  }
}

TEST_F(grid_events, every_event_of_the_query_grid_sets_the_states) {
  SelectQuery();
  for (auto* event :
       {&results->rowColChange, &results->selChange, &results->insert, &results->deleted}) {
    results->bCanMove = !results->bCanMove;
    event->Raise();
    EXPECT_EQ(Button("MoveFirst").Enabled(), results->bCanMove);
    EXPECT_EQ(Button("MoveLast").Enabled(), results->bCanMove);
  }
}

TEST_F(grid_events, each_table_button_follows_its_property) {
  SelectTable();
  const auto enabled = [&] {
    editor->selChange.Raise();
    Text sEnabled;
    for (const char* sKey :
         {"MoveFirst", "MoveLast", "SortAsc", "SortDesc", "CellQuery", "Delete"}) {
      if (Button(sKey).Enabled()) sEnabled += Text(sKey) + " ";
    }
    return sEnabled;
  };
  editor->bCanMove = editor->bCanSort = editor->bCanCellQuery = editor->bDeleteAllowed = false;
  EXPECT_EQ(enabled(), "");
  editor->bCanMove = true;
  EXPECT_EQ(enabled(), "MoveFirst MoveLast ");
  editor->bCanMove = false;
  editor->bCanSort = true;
  EXPECT_EQ(enabled(), "SortAsc SortDesc ");
  editor->bCanSort = false;
  editor->bCanCellQuery = true;
  EXPECT_EQ(enabled(), "CellQuery ");
  editor->bCanCellQuery = false;
  editor->bDeleteAllowed = true;
  EXPECT_EQ(enabled(), "");
  editor->bRowsSelected = true;
  EXPECT_EQ(enabled(), "Delete ");
  editor->bDeleteAllowed = false;
  EXPECT_EQ(enabled(), "");
}

TEST_F(grid_events, each_query_button_follows_its_property) {
  SelectQuery();
  results->bCanMove = false;
  results->bRowsSelected = true;
  results->selChange.Raise();
  EXPECT_FALSE(Button("MoveFirst").Enabled());
  EXPECT_TRUE(Button("CellQuery").Enabled());
  EXPECT_TRUE(Button("Delete").Enabled());
  results->bCanCellQuery = false;
  results->bDeleteAllowed = false;
  results->selChange.Raise();
  EXPECT_FALSE(Button("CellQuery").Enabled());
  EXPECT_FALSE(Button("Delete").Enabled());
}

TEST_F(grid_events, the_sql_button_is_pressed_as_the_grid_shows) {
  SelectTable();
  editor->ShowSqlStatements(false);
  editor->selChange.Raise();
  EXPECT_FALSE(Button("Sql").Pressed());
  editor->ShowSqlStatements(true);
  editor->selChange.Raise();
  EXPECT_TRUE(Button("Sql").Pressed());
}

TEST_F(grid_events, a_missing_button_is_reported_from_an_event) {
  SelectTable();
  auto& buttons = driver.console->toolbar->Buttons().buttons;
  buttons.erase(buttons.begin());
  editor->selChange.Raise();
  EXPECT_EQ(ErrorBox(), "There is no button \"MoveFirst\".");
}

TEST_F(grid_events, a_grid_that_tells_of_its_rows_before_its_toolbar_is_built_shows_no_error) {
  // The fake grids raise RowColChange while they are bound, first without any toolbar and then
  // under the toolbar of the other kind.
  SelectQuery();
  SelectTable();
  SelectQuery();
  ExpectNoBoxes();
}

TEST_F(grid_events, a_hidden_grid_is_not_heard) {
  SelectTable();
  driver.Select("S1.Catalogs.Plant.Data");
  editor->bCanMove = false;
  editor->rowColChange.Raise();
  EXPECT_TRUE(Button("MoveFirst").Enabled());
}

TEST_F(grid_events, each_query_button_follows_its_own_property) {
  SelectQuery();
  const auto enabled = [&] {
    results->selChange.Raise();
    Text sEnabled;
    for (const char* sKey : {"MoveFirst", "MoveLast", "CellQuery", "Delete"}) {
      if (Button(sKey).Enabled()) sEnabled += Text(sKey) + " ";
    }
    return sEnabled;
  };
  results->bCanMove = results->bCanCellQuery = results->bDeleteAllowed = false;
  EXPECT_EQ(enabled(), "");
  results->bCanMove = true;
  EXPECT_EQ(enabled(), "MoveFirst MoveLast ");
  results->bCanMove = false;
  results->bCanCellQuery = true;
  EXPECT_EQ(enabled(), "CellQuery ");
  results->bCanCellQuery = false;
  results->bDeleteAllowed = true;
  EXPECT_EQ(enabled(), "");
  results->bRowsSelected = true;
  EXPECT_EQ(enabled(), "Delete ");
  results->bDeleteAllowed = false;
  EXPECT_EQ(enabled(), "");
}

TEST_F(grid_events, the_sql_button_is_pressed_as_the_query_grid_shows) {
  SelectQuery();
  results->ShowSqlStatements(false);
  results->selChange.Raise();
  EXPECT_FALSE(Button("Sql").Pressed());
  results->ShowSqlStatements(true);
  results->selChange.Raise();
  EXPECT_TRUE(Button("Sql").Pressed());
}

TEST_F(grid_events, an_option_toggled_before_the_grid_refuses_stays_toggled) {
  SelectTable();
  editor->sFailing = "ShowSqlStatements False";
  driver.snapIn->Toolbar_ButtonClick(Button("Sql"));
  EXPECT_EQ(ErrorBox(), "The grid cannot do that.");
  EXPECT_FALSE(Root()->SqlStatements());
  EXPECT_FALSE(Button("Sql").Pressed());
  EXPECT_TRUE(editor->ShowSqlStatements());
}

TEST_F(grid_events, without_a_grid_context_changes_its_option_and_nothing_else) {
  driver.Select("S1");
  ClickLoose("Context");
  EXPECT_TRUE(Root()->Context());
  EXPECT_TRUE(Root()->SqlStatements());
  ExpectNoBoxes();
}

TEST_F(grid_events, sql_toggles_the_query_grid_too) {
  SelectQuery();
  driver.snapIn->Toolbar_ButtonClick(Button("Sql"));
  EXPECT_EQ(results->log, (std::vector<std::string>{"ShowSqlStatements False"}));
  EXPECT_FALSE(Button("Sql").Pressed());
  EXPECT_FALSE(Root()->SqlStatements());
}

TEST_F(grid_events, every_operation_that_a_query_grid_refuses_is_reported) {
  SelectQuery();
  const std::pair<const char*, const char*> kSteps[] = {{"MoveFirst", "MoveFirst"},
                                                        {"MoveLast", "MoveLast"},
                                                        {"CellQuery", "CellQuery"},
                                                        {"Delete", "DeleteSelectedRows"}};
  for (const auto& [sKey, sStep] : kSteps) {
    results->sFailing = sStep;
    driver.ui->icons.clear();
    driver.snapIn->Toolbar_ButtonClick(Button(sKey));
    EXPECT_EQ(ErrorBox(), "The grid cannot do that.") << sKey;
    EXPECT_EQ(driver.ui->icons, std::vector<platform::MsgBoxIcon>{platform::MsgBoxIcon::None});
  }
}

TEST_F(grid_events, every_operation_that_a_table_grid_refuses_is_reported) {
  SelectTable();
  const std::pair<const char*, const char*> kSteps[] = {
      {"MoveFirst", "MoveFirst"},     {"MoveLast", "MoveLast"},   {"SortAsc", "SortAscending"},
      {"SortDesc", "SortDescending"}, {"CellQuery", "CellQuery"}, {"Delete", "DeleteSelectedRows"}};
  for (const auto& [sKey, sStep] : kSteps) {
    editor->sFailing = sStep;
    driver.snapIn->Toolbar_ButtonClick(Button(sKey));
    EXPECT_EQ(ErrorBox(), "The grid cannot do that.") << sKey;
  }
}

TEST_F(grid_events, states_set_before_a_missing_button_stay_set) {
  SelectQuery();
  auto& buttons = driver.console->toolbar->Buttons().buttons;
  std::erase_if(buttons, [](const auto& button) { return button->Key() == "CellQuery"; });
  results->bCanMove = false;
  results->bRowsSelected = true;
  results->selChange.Raise();
  EXPECT_EQ(ErrorBox(), "There is no button \"CellQuery\".");
  EXPECT_FALSE(Button("MoveFirst").Enabled());
  EXPECT_FALSE(Button("Delete").Enabled()) << "behind the missing one";
}

}  // namespace
}  // namespace orvane::snapin
