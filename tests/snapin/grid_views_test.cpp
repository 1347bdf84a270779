#include "tests/snapin/snap_in_fixture.h"

namespace orvane::snapin {
namespace {

using fakes::FakeQueryResults;
using fakes::FakeResultView;
using fakes::FakeTableEditor;
using platform::Long;

class grid_views : public SnapInTest {
 protected:
  grid_views() { ExpandAll(); }

  using Log = std::vector<std::string>;
  /// The table's view with a grid of ours as its control.
  std::unique_ptr<FakeResultView> TableView() {
    auto view = std::make_unique<FakeResultView>("TableEditorOcxView",
                                                 driver.Item("S1.Catalogs.Plant.Pumps"));
    view->control = editor;
    return view;
  }
  std::unique_ptr<FakeResultView> QueryView() {
    auto view =
        std::make_unique<FakeResultView>("QueryResultsOcxView", driver.Item("S1.Queries.Q1"));
    view->control = results;
    return view;
  }

  std::shared_ptr<FakeTableEditor> editor = std::make_shared<FakeTableEditor>();
  std::shared_ptr<FakeQueryResults> results = std::make_shared<FakeQueryResults>();
};

TEST_F(grid_views, a_new_control_gets_mode_0) {
  driver.snapIn->ResultViews_InitializeControl(*TableView());
  EXPECT_EQ(editor->log, (Log{"Mode 0"}));
  driver.snapIn->ResultViews_InitializeControl(*QueryView());
  EXPECT_EQ(results->log, (Log{"Mode 0"}));
}

TEST_F(grid_views, a_control_of_another_kind_gets_nothing) {
  auto view = TableView();
  view->control = results;
  driver.snapIn->ResultViews_InitializeControl(*view);
  view->control = nullptr;
  driver.snapIn->ResultViews_InitializeControl(*view);
  view->bNoControl = true;
  driver.snapIn->ResultViews_InitializeControl(*view);
  EXPECT_TRUE(results->log.empty());
  ExpectNoBoxes();
}

TEST_F(grid_views, a_mode_that_is_refused_is_reported) {
  editor->sFailing = "Mode 0";
  driver.snapIn->ResultViews_InitializeControl(*TableView());
  EXPECT_EQ(ErrorBox(), "The grid cannot do that.");
}

TEST_F(grid_views, a_filter_that_was_kept_is_not_replaced_by_the_default_one) {
  FakeResultView view("TableEditorOcxView", driver.Item("S1.Catalogs.Plant.Data"));
  view.control = editor;
  driver.snapIn->ResultViews_Activate(view);
  const auto data = std::dynamic_pointer_cast<nodes::TableNode>(view.ScopeItem()->Tag());
  ASSERT_TRUE(data->DefaultFilterCondition());
  data->Query()->FilterCondition("Timestamp BETWEEN '*-7d' AND '*'");
  editor->filterKept.Raise();
  EXPECT_FALSE(data->DefaultFilterCondition());
  EXPECT_TRUE(Pumps()->DefaultFilterCondition());
  driver.forms->WhenShown("OptionsDlg", [](fakes::FakeForm& form) {
    form.TextBox("m_txtDefStartTime").Text("y");
    form.Button("m_btnOK").Click();
  });
  driver.Click("m_mnuOptions", "");
  EXPECT_EQ(data->Query()->FilterCondition(), "Timestamp BETWEEN '*-7d' AND '*'");
  // The builder shows it as the table's own.
  int nShown = 0;
  driver.forms->WhenShown("TableQueryDlg", [&](fakes::FakeForm& form) {
    ++nShown;
    EXPECT_FALSE(form.CheckBox("m_chkDefaultFilterCond").Checked());
    EXPECT_EQ(form.TextBox("m_txtFilterCond").Text(), "Timestamp BETWEEN '*-7d' AND '*'");
    form.Button("m_btnOk").Click();
  });
  driver.Click("m_mnuQuery", "S1.Catalogs.Plant.Data");
  EXPECT_EQ(nShown, 1);
  EXPECT_EQ(data->Query()->FilterCondition(), "Timestamp BETWEEN '*-7d' AND '*'");
  ExpectNoBoxes();
}

TEST_F(grid_views, a_grid_that_is_hidden_changes_no_table) {
  const auto view = TableView();
  driver.snapIn->ResultViews_Activate(*view);
  driver.snapIn->ResultViews_Deactivate(*view);
  editor->filterKept.Raise();
  EXPECT_TRUE(Pumps()->DefaultFilterCondition());
}

TEST_F(grid_views, showing_a_table_binds_the_grid_in_order_and_queries) {
  driver.snapIn->ResultViews_Activate(*TableView());
  EXPECT_EQ(editor->log, (Log{"ShowSqlStatements True", "Connection", "TableQuery", "Requery"}));
  EXPECT_EQ(editor->connection, Root()->ServerNodes()->Item("S1")->Connection());
  EXPECT_EQ(editor->tableQuery, Pumps()->Query());
  ExpectNoBoxes();
}

TEST_F(grid_views, hiding_a_table_keeps_its_rows_and_empties_the_grid) {
  const auto view = TableView();
  driver.snapIn->ResultViews_Activate(*view);
  const auto rows = editor->recordset;
  editor->log.clear();
  driver.snapIn->ResultViews_Deactivate(*view);
  EXPECT_EQ(editor->log, (Log{"DetachRecordset", "AttachRecordset none 0", "Connection none"}));
  Long lUpdatability = 0;
  EXPECT_EQ(Pumps()->GetRecordset(lUpdatability), rows);
  EXPECT_EQ(lUpdatability, 3);
  ExpectNoBoxes();
}

TEST_F(grid_views, showing_a_table_with_cached_rows_attaches_them_with_their_updatability) {
  Pumps()->SetRecordset(
      std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{},
                                             std::vector<fakes::FakeRecordset::Row>{}),
      5);
  driver.snapIn->ResultViews_Activate(*TableView());
  EXPECT_EQ(editor->log,
            (Log{"ShowSqlStatements True", "Connection", "TableQuery", "AttachRecordset 5"}));
}

TEST_F(grid_views, after_hiding_the_grid_is_no_longer_driven) {
  const auto view = TableView();
  driver.snapIn->ResultViews_Activate(*view);
  driver.snapIn->ResultViews_Deactivate(*view);
  editor->log.clear();
  driver.snapIn->Views_Refresh(driver.console->CurrentView());
  driver.snapIn->ResultViews_Deactivate(*view);
  EXPECT_TRUE(editor->log.empty());
}

TEST_F(grid_views, showing_a_query_binds_the_grid_in_order_and_runs_it) {
  Root()->MaxRows(2);
  Root()->QueryTimeout(9);
  Root()->SqlStatements(false);
  driver.snapIn->ResultViews_Activate(*QueryView());
  EXPECT_EQ(results->log, (Log{"ShowSqlStatements False", "Connection", "QueryName Q1",
                               "SqlText SELECT Name FROM Plant..Pumps", "MaxRows 2",
                               "QueryTimeout 9", "Execute"}));
  EXPECT_EQ(results->connection, Root()->ServerNodes()->Item("S1")->Connection());
}

TEST_F(grid_views, hiding_a_query_keeps_its_rows_and_empties_the_grid) {
  const auto view = QueryView();
  driver.snapIn->ResultViews_Activate(*view);
  const auto rows = results->recordset;
  results->log.clear();
  driver.snapIn->ResultViews_Deactivate(*view);
  EXPECT_EQ(results->log, (Log{"Recordset none", "Connection none"}));
  EXPECT_EQ(Query()->Recordset(), rows);
}

TEST_F(grid_views, showing_a_query_with_cached_rows_gives_them_to_the_grid) {
  driver.Select("S1.Queries.Q1");
  driver.Select("S1.Queries");
  driver.Select("S1.Queries.Q1");
  EXPECT_EQ(driver.QueryResults()->log.back(), "Recordset");
  EXPECT_EQ(driver.StatementsSent(), 1);
}

TEST_F(grid_views, the_roots_new_limit_reaches_queries_but_no_table_already_met) {
  Root()->MaxRows(1);
  driver.Select("S1.Queries.Q1");
  EXPECT_EQ(driver.Grid().rows.size(), 1U);
  driver.Select("S1.Catalogs.Plant.Pumps");
  EXPECT_EQ(driver.Grid().rows.size(), 3U);
}

TEST_F(grid_views, a_control_that_never_became_a_grid_stores_nothing) {
  auto view = TableView();
  view->control = results;
  driver.snapIn->ResultViews_Activate(*view);
  driver.snapIn->ResultViews_Deactivate(*view);
  view->bNoControl = true;
  driver.snapIn->ResultViews_Activate(*view);
  driver.snapIn->ResultViews_Deactivate(*view);
  Long lUpdatability = 0;
  EXPECT_EQ(Pumps()->GetRecordset(lUpdatability), nullptr);
  auto query = QueryView();
  query->control = editor;
  driver.snapIn->ResultViews_Activate(*query);
  driver.snapIn->ResultViews_Deactivate(*query);
  EXPECT_EQ(Query()->Recordset(), nullptr);
  EXPECT_TRUE(editor->log.empty());
  EXPECT_TRUE(results->log.empty());
  ExpectNoBoxes();
}

TEST_F(grid_views, other_items_bind_no_grid) {
  FakeResultView view("DefaultListView", driver.Item("S1"));
  view.control = editor;
  driver.snapIn->ResultViews_InitializeControl(view);
  driver.snapIn->ResultViews_Activate(view);
  driver.snapIn->ResultViews_Deactivate(view);
  EXPECT_TRUE(editor->log.empty());
  ExpectNoBoxes();
}

TEST_F(grid_views, a_query_that_fails_is_reported_and_the_grid_stays_bound) {
  Query()->Query("nonsense");
  const auto view = QueryView();
  driver.snapIn->ResultViews_Activate(*view);
  EXPECT_EQ(ErrorBox(), "The statement cannot be run.");
  results->log.clear();
  driver.snapIn->ResultViews_Deactivate(*view);
  EXPECT_EQ(results->log, (Log{"Recordset none", "Connection none"}));
}

TEST_F(grid_views, a_table_of_a_disconnected_server_is_reported) {
  Root()->ServerNodes()->Item("S1")->Disconnect();
  driver.snapIn->ResultViews_Activate(*TableView());
  EXPECT_EQ(editor->connection, nullptr);
  EXPECT_EQ(ErrorBox(), "The grid has no connection; connect the server.");
}

TEST_F(grid_views, a_grid_that_cannot_hand_out_its_rows_is_reported) {
  const auto view = TableView();
  driver.snapIn->ResultViews_Activate(*view);
  editor->sFailing = "DetachRecordset";
  driver.snapIn->ResultViews_Deactivate(*view);
  EXPECT_EQ(ErrorBox(), "The grid cannot do that.");
  Long lUpdatability = 0;
  EXPECT_EQ(Pumps()->GetRecordset(lUpdatability), nullptr);
}

TEST_F(grid_views, disconnecting_releases_the_rows_kept_for_tables) {
  driver.Select("S1.Catalogs.Plant.Pumps");
  driver.Select("S1");
  Long lUpdatability = 0;
  EXPECT_NE(Pumps()->GetRecordset(lUpdatability), nullptr);
  Root()->ServerNodes()->Item("S1")->ReleaseCachedRecordsets();
  EXPECT_EQ(Pumps()->GetRecordset(lUpdatability), nullptr);
}

TEST_F(grid_views, unloading_lets_go_of_the_grid) {
  driver.snapIn->ResultViews_Activate(*TableView());
  const std::weak_ptr<FakeTableEditor> watched = editor;
  editor.reset();
  ASSERT_FALSE(watched.expired());
  driver.snapIn->SnapIn_Unload();
  EXPECT_TRUE(watched.expired());
}

TEST_F(grid_views, unloading_lets_go_of_the_results_grid) {
  driver.snapIn->ResultViews_Activate(*QueryView());
  const std::weak_ptr<FakeQueryResults> watched = results;
  results.reset();
  ASSERT_FALSE(watched.expired());
  driver.snapIn->SnapIn_Unload();
  EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace orvane::snapin
