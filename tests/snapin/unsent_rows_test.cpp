// Commands that take away what rows lie in, where rows are edited and not stored: the console is
// asked first, and told when it is done.
#include "tests/snapin/snap_in_fixture.h"

namespace orvane::snapin {
namespace {

using platform::RowsPlace;

class rows_not_stored : public SnapInTest {
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

}  // namespace
}  // namespace orvane::snapin
