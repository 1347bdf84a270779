// A query that a refused rename has left out of its list, while its item stands in the tree.
#include "tests/fakes/property_bag.h"
#include "tests/snapin/query_fixture.h"

namespace orvane::snapin {
namespace {

class lost_query : public QueryTest {
 protected:
  lost_query() : server(ExpandAll()) { New({{"Q2", "SELECT 2"}}); }
  /// Renames Q2 to a name that differs from Q1's in case alone.
  void Lose() {
    Edit("Q2", {{"q1", "SELECT 22"}});
    EXPECT_EQ(ErrorBox(), "The key \"q1\" is already in the collection; choose another name.");
    lost = std::dynamic_pointer_cast<nodes::QueryNode>(driver.Item("S1.Queries.Q2")->Tag());
  }
  nodes::ServerNodePtr server;
  nodes::QueryNodePtr lost;
};

TEST_F(lost_query, a_name_that_differs_from_anothers_in_case_alone_loses_the_query) {
  Lose();
  EXPECT_EQ(Names(*server), std::vector<Text>{"Q1"});
  EXPECT_EQ(lost->QueryName(), "q1");
  EXPECT_EQ(lost->Query(), "SELECT 22");
  EXPECT_EQ(driver.Item("S1.Queries.Q2")->Tag(), lost);
}

TEST_F(lost_query, removing_it_takes_its_item_and_no_other_query) {
  Lose();
  driver.Click("m_mnuRemove", "S1.Queries.Q2");
  EXPECT_EQ(driver.TakeBoxes().size(), 1U) << "the question alone";
  EXPECT_FALSE(driver.HasItem("S1.Queries.Q2"));
  EXPECT_TRUE(driver.HasItem("S1.Queries.Q1"));
  EXPECT_EQ(Names(*server), std::vector<Text>{"Q1"});
  EXPECT_TRUE(driver.Item("S1.Queries")->node->bHasChildren);
}

TEST_F(lost_query, removing_the_last_one_finds_its_folder) {
  Lose();
  driver.Click("m_mnuRemove", "S1.Queries.Q1");
  driver.Click("m_mnuRemove", "S1.Queries.Q2");
  EXPECT_EQ(driver.TakeBoxes().size(), 2U) << "two questions";
  EXPECT_TRUE(driver.Children("S1.Queries").empty());
  EXPECT_FALSE(driver.Item("S1.Queries")->node->bHasChildren);
}

TEST_F(lost_query, removing_it_spares_one_that_has_taken_its_exact_name) {
  Lose();
  Edit("Q1", {{"q1", "SELECT 1"}});
  driver.Click("m_mnuRemove", "S1.Queries.Q2");
  EXPECT_EQ(Names(*server), std::vector<Text>{"q1"});
  EXPECT_TRUE(driver.HasItem("S1.Queries.q1"));
  EXPECT_FALSE(driver.HasItem("S1.Queries.Q2"));
}

TEST_F(lost_query, editing_it_puts_it_back_at_the_end_under_its_new_name) {
  New({{"Q3", "SELECT 3"}});
  Lose();
  Edit("Q2", {{"Q9", "SELECT 9"}});
  ExpectNoBoxes();
  EXPECT_EQ(Names(*server), (std::vector<Text>{"Q1", "Q3", "Q9"}));
  EXPECT_EQ(server->QueryNodes()->Item("Q9"), lost);
  EXPECT_EQ(lost->Query(), "SELECT 9");
  EXPECT_EQ(driver.Item("S1.Queries.Q9")->Tag(), lost);
  EXPECT_FALSE(driver.HasItem("S1.Queries.Q2"));
}

TEST_F(lost_query, editing_it_under_the_name_it_has_puts_it_back_when_that_is_free) {
  Lose();
  driver.Click("m_mnuRemove", "S1.Queries.Q1");
  driver.TakeBoxes();
  ASSERT_FALSE(driver.Item("S1.Queries")->node->bHasChildren);
  Edit("Q2", {{"q1", "SELECT 22"}});
  ExpectNoBoxes();
  EXPECT_EQ(Names(*server), std::vector<Text>{"q1"});
  EXPECT_EQ(driver.Item("S1.Queries.q1")->Tag(), lost);
  EXPECT_EQ(driver.DisplayName("S1.Queries.q1"), "q1");
  EXPECT_TRUE(driver.Item("S1.Queries")->node->bHasChildren);
}

TEST_F(lost_query, editing_it_under_a_name_that_is_still_refused_loses_no_other) {
  Lose();
  Edit("Q2", {{"q1", "SELECT 23"}});
  EXPECT_EQ(ErrorBox(), "The key \"q1\" is already in the collection; choose another name.");
  EXPECT_EQ(Names(*server), std::vector<Text>{"Q1"});
  EXPECT_TRUE(driver.HasItem("S1.Queries.Q2"));
  Edit("Q2", {{"Q1", "SELECT 23"}});
  EXPECT_EQ(ErrorBox(), kNameTaken);
  EXPECT_EQ(Names(*server), std::vector<Text>{"Q1"});
}

TEST_F(lost_query, it_is_none_of_what_is_saved_until_it_is_put_back) {
  Lose();
  fakes::FakePropertyBag bag;
  server->QueryNodes()->WriteProperties(bag, "");
  EXPECT_EQ(bag.ReadProperty("QueryNodeCount", Long{0}), platform::Value(Long{1}));
}

}  // namespace
}  // namespace orvane::snapin
