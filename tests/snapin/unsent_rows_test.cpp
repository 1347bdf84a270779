// Commands that take away what rows lie in, where rows are edited and not stored: the console is
// asked first, and told when it is done.
#include "tests/snapin/query_fixture.h"

namespace orvane::snapin {
namespace {

using platform::RowsPlace;

class rows_not_stored : public QueryTest {
 protected:
  fakes::FakeUnsentRows& Unsent() { return *driver.unsentRows; }
  const RowsPlace m_server{"S1"};
};

TEST_F(rows_not_stored, a_server_stays_connected_when_its_rows_are_to_stay) {
  const auto server = ExpandAll();
  Unsent().bMayLose = false;
  driver.Click("m_mnuDisconnect", "S1");
  ExpectNoBoxes();
  EXPECT_NE(server->Connection(), nullptr);
  EXPECT_TRUE(driver.HasItem("S1.Catalogs"));
  EXPECT_EQ(Unsent().asked, std::vector<RowsPlace>{m_server});
  EXPECT_TRUE(Unsent().lost.empty());
  Unsent().bMayLose = true;
  driver.Click("m_mnuDisconnect", "S1");
  EXPECT_EQ(server->Connection(), nullptr);
  EXPECT_EQ(Unsent().lost, std::vector<RowsPlace>{m_server});
}

TEST_F(rows_not_stored, a_server_is_removed_after_both_questions) {
  ExpandAll();
  Unsent().bMayLose = false;
  driver.Click("m_mnuRemoveServer", "S1");
  EXPECT_EQ(driver.ui->boxes.size(), 1U);
  EXPECT_TRUE(driver.HasItem("S1"));
  EXPECT_TRUE(Unsent().lost.empty());
  Unsent().bMayLose = true;
  driver.Click("m_mnuRemoveServer", "S1");
  EXPECT_FALSE(driver.HasItem("S1"));
  EXPECT_EQ(Unsent().lost, std::vector<RowsPlace>{m_server});
}

TEST_F(rows_not_stored, a_catalog_is_dropped_only_when_its_rows_may_go) {
  ExpandAll();
  const Text sKey = "S1.Catalogs.Plant";
  const RowsPlace catalog{"S1", "Plant"};
  int nSent = 0;
  driver.historian->onExecute = [&](const Text&) -> platform::RecordsetPtr {
    ++nSent;
    return nullptr;
  };
  Unsent().bMayLose = false;
  driver.Click("m_mnuCatalogRemove", sKey);
  EXPECT_TRUE(driver.HasItem(sKey));
  EXPECT_EQ(nSent, 0);
  Unsent().bMayLose = true;
  driver.Click("m_mnuCatalogRemove", sKey);
  EXPECT_FALSE(driver.HasItem(sKey));
  EXPECT_EQ(Unsent().asked, (std::vector<RowsPlace>{catalog, catalog}));
  EXPECT_EQ(Unsent().lost, std::vector<RowsPlace>{catalog});
}

TEST_F(rows_not_stored, a_drop_that_fails_loses_nothing) {
  ExpandAll();
  const Text sKey = "S1.Catalogs.Plant";
  driver.historian->onExecute = [](const Text&) -> platform::RecordsetPtr {
    throw platform::Failure(3805, "The server refused.");
  };
  driver.Click("m_mnuCatalogRemove", sKey);
  EXPECT_TRUE(driver.HasItem(sKey));
  EXPECT_TRUE(Unsent().lost.empty());
}

TEST_F(rows_not_stored, a_query_is_removed_only_when_its_rows_may_go) {
  ExpandAll();
  const RowsPlace query{"S1", {}, {}, "Q1"};
  Unsent().bMayLose = false;
  driver.Click("m_mnuRemove", "S1.Queries.Q1");
  EXPECT_TRUE(driver.HasItem("S1.Queries.Q1"));
  EXPECT_TRUE(Unsent().lost.empty());
  Unsent().bMayLose = true;
  driver.Click("m_mnuRemove", "S1.Queries.Q1");
  EXPECT_FALSE(driver.HasItem("S1.Queries.Q1"));
  EXPECT_EQ(Unsent().asked, (std::vector<RowsPlace>{query, query}));
  EXPECT_EQ(Unsent().lost, std::vector<RowsPlace>{query});
}

TEST_F(rows_not_stored, a_query_gets_another_name_only_when_its_rows_may_go) {
  const auto server = ExpandAll();
  const RowsPlace query{"S1", {}, {}, "Q1"};
  Unsent().bMayLose = false;
  Edit("Q1", {{"Other", "SELECT 1"}});
  EXPECT_EQ(Names(*server), std::vector<Text>{"Q1"});
  // Another text alone leaves them where they are found again.
  Unsent().asked.clear();
  Edit("Q1", {{"Q1", "SELECT 2"}});
  EXPECT_TRUE(Unsent().asked.empty());
  Unsent().bMayLose = true;
  Edit("Q1", {{"Other", "SELECT 1"}});
  EXPECT_EQ(Names(*server), std::vector<Text>{"Other"});
  EXPECT_EQ(Unsent().lost, std::vector<RowsPlace>{query});
}

}  // namespace
}  // namespace orvane::snapin
