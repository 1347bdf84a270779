// Queries that are edited: their texts, their names and the grid that shows them.
#include "tests/snapin/query_fixture.h"

namespace orvane::snapin {
namespace {

using query_edit = QueryTest;

TEST_F(query_edit, unchanged_texts_are_stored_again_and_drop_the_rows) {
  ExpandAll();
  const auto query = Query();
  query->Recordset(std::make_shared<fakes::FakeRecordset>(
      std::vector<fakes::FakeColumn>{}, std::vector<fakes::FakeRecordset::Row>{}));
  Edit("Q1", {{"Q1", "SELECT Name FROM Plant..Pumps"}});
  ExpectNoBoxes();
  EXPECT_EQ(query->Recordset(), nullptr);
  EXPECT_EQ(query->Query(), "SELECT Name FROM Plant..Pumps");
}

TEST_F(query_edit, a_cancelled_edit_changes_nothing) {
  ExpandAll();
  const auto rs = std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{},
                                                         std::vector<fakes::FakeRecordset::Row>{});
  Query()->Recordset(rs);
  Edit("Q1", {});
  EXPECT_EQ(Query()->Recordset(), rs);
  EXPECT_EQ(Query()->Query(), "SELECT Name FROM Plant..Pumps");
}

TEST_F(query_edit, a_renamed_query_keeps_its_place_and_its_item) {
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

TEST_F(query_edit, the_name_of_another_query_is_refused) {
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

TEST_F(query_edit, a_name_used_on_another_server_is_free) {
  const auto server = ExpandAll();
  AddServer("S2")->QueryNodes()->Add("Other", "SELECT 1");
  Edit("Q1", {{"Other", "SELECT 1"}});
  ExpectNoBoxes();
  EXPECT_EQ(Names(*server), std::vector<Text>{"Other"});
}

TEST_F(query_edit, the_grid_that_shows_an_edited_query_takes_its_name_and_runs_its_text) {
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

TEST_F(query_edit, a_grid_that_shows_another_item_is_left_alone) {
  ExpandAll();
  New({{"Q2", "SELECT Name FROM Plant..Pumps"}});
  driver.Select("S1.Queries.Q1");
  const auto grid = driver.QueryResults();
  grid->log.clear();
  Edit("Q2", {{"Q9", "SELECT Speed FROM Plant..Pumps"}});
  EXPECT_TRUE(grid->log.empty());
  EXPECT_EQ(grid->QueryName(), "Q1");
}

TEST_F(query_edit, a_cancel_after_a_refused_name_is_no_acceptance) {
  const auto server = ExpandAll();
  New({{"Q2", "SELECT 2"}});
  Edit("Q2", {{"Q1", "SELECT 22"}});
  ErrorBox();
  EXPECT_EQ(shown.size(), 2U);
  EXPECT_EQ(server->QueryNodes()->Item("Q2")->Query(), "SELECT 2");
  EXPECT_TRUE(driver.HasItem("S1.Queries.Q2"));
}

TEST_F(query_edit, a_new_text_alone_changes_the_items_second_column) {
  ExpandAll();
  Edit("Q1", {{"Q1", "SELECT 11"}});
  ExpectNoBoxes();
  EXPECT_EQ(Query()->Query(), "SELECT 11");
  EXPECT_EQ(driver.Item("S1.Queries.Q1")->ListSubItems().items,
            (std::map<platform::Long, std::pair<Text, Text>>{{1, {"Name", "Q1"}},
                                                             {2, {"Query", "SELECT 11"}}}));
}

TEST_F(query_edit, the_first_and_the_last_query_keep_their_places_too) {
  const auto server = ExpandAll();
  New({{"Q2", "SELECT 2"}});
  New({{"Q3", "SELECT 3"}});
  Edit("Q1", {{"A", "SELECT 1"}});
  Edit("Q3", {{"B", "SELECT 3"}});
  ExpectNoBoxes();
  EXPECT_EQ(Names(*server), (std::vector<Text>{"A", "Q2", "B"}));
}

TEST_F(query_edit, a_renamed_query_whose_new_key_is_taken_keeps_its_old_item_and_rows) {
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
  // As long as it does, the query's text can be edited all the same.
  Edit("Q1", {{"Q2", "SELECT 11"}});
  ExpectNoBoxes();
  EXPECT_EQ(query->Query(), "SELECT 11");
  EXPECT_EQ(driver.DisplayName("S1.Queries.Q1"), "Q1");
  driver.ui->answers = {platform::MsgBoxResult::Yes};
  driver.Click("m_mnuRemove", "S1.Queries.Q2");
  driver.ui->boxes.clear();
  Edit("Q1", {{"Q2", "SELECT 11"}});
  ExpectNoBoxes();
  EXPECT_EQ(driver.Item("S1.Queries.Q2")->Tag(), query);
  EXPECT_EQ(driver.DisplayName("S1.Queries.Q2"), "Q2");
  EXPECT_EQ(driver.Item("S1.Queries.Q2")->NodeId(), "S1.Queries.Q2");
  EXPECT_FALSE(driver.HasItem("S1.Queries.Q1"));
}

TEST_F(query_edit, a_name_that_the_grid_shows_already_is_not_set_again) {
  ExpandAll();
  driver.Select("S1.Queries.Q1");
  driver.QueryResults()->log.clear();
  Edit("Q1", {{"Q1", "SELECT Speed FROM Plant..Pumps"}});
  EXPECT_EQ(driver.QueryResults()->log,
            (std::vector<std::string>{"SqlText SELECT Speed FROM Plant..Pumps", "Execute"}));
}

TEST_F(query_edit, a_new_name_alone_runs_nothing_and_keeps_the_rows_shown) {
  ExpandAll();
  driver.Select("S1.Queries.Q1");
  const auto grid = driver.QueryResults();
  const auto rows = grid->recordset;
  ASSERT_NE(rows, nullptr);
  grid->log.clear();
  Edit("Q1", {{"Q9", Query()->Query()}});
  ExpectNoBoxes();
  EXPECT_EQ(grid->log, std::vector<std::string>{"QueryName Q9"});
  EXPECT_EQ(grid->recordset, rows);
}

TEST_F(query_edit, an_edited_query_whose_text_cannot_be_run_stays_edited) {
  ExpandAll();
  driver.Select("S1.Queries.Q1");
  Edit("Q1", {{"Q9", "nonsense"}});
  EXPECT_EQ(ErrorBox(), "The statement cannot be run.");
  EXPECT_EQ(driver.DisplayName("S1.Queries.Q9"), "Q9");
  EXPECT_EQ(driver.QueryResults()->QueryName(), "Q9");
}

}  // namespace
}  // namespace orvane::snapin
