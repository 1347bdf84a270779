#include "tests/snapin/snap_in_fixture.h"

namespace orvane::snapin {
namespace {

using fakes::FakeResultView;
using platform::Long;
using platform::SchemaNumber;

class list_views : public SnapInTest {
 protected:
  fakes::FakeScopeItemPtr ExpandedPumps() {
    ExpandAll();
    return driver.Item("S1.Catalogs.Plant.Pumps");
  }
  FakeResultView structure{"TableStructureListView", ExpandedPumps()};
};

TEST_F(list_views, the_structure_view_gets_a_row_for_each_column) {
  driver.snapIn->ResultViews_Initialize(structure);
  const auto& rows = structure.ListItems().items;
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0]->sText, "Name");
  EXPECT_EQ(rows[0]->lIcon, 6);
  EXPECT_EQ(rows[0]->ListSubItems().Texts(), (std::vector<Text>{"Name", "text", "no"}));
  EXPECT_EQ(rows[1]->sText, "Speed");
  EXPECT_EQ(rows[1]->lIcon, 5);
  EXPECT_EQ(rows[1]->ListSubItems().Texts(), (std::vector<Text>{"Speed", "double", "yes"}));
  ExpectNoBoxes();
}

TEST_F(list_views, every_other_pairing_stays_empty) {
  driver.historian->log.clear();
  FakeResultView data("TableEditorOcxView", driver.Item("S1.Catalogs.Plant.Pumps"));
  driver.snapIn->ResultViews_Initialize(data);
  EXPECT_EQ(data.ListItems().Count(), 0);
  for (const char* sKey : {"", "S1", "S1.Catalogs", "S1.Catalogs.Plant", "S1.Queries"}) {
    FakeResultView list("DefaultListView", driver.Item(sKey));
    driver.snapIn->ResultViews_Initialize(list);
    EXPECT_EQ(list.ListItems().Count(), 0) << sKey;
  }
  FakeResultView odd("TableStructureListView", driver.Item("S1.Catalogs"));
  driver.snapIn->ResultViews_Initialize(odd);
  EXPECT_EQ(odd.ListItems().Count(), 0);
  EXPECT_TRUE(driver.historian->log.empty());
  ExpectNoBoxes();
}

TEST_F(list_views, the_structure_is_read_again_each_time) {
  driver.historian->log.clear();
  driver.snapIn->ResultViews_Initialize(structure);
  const auto nOnce = driver.historian->log.size();
  EXPECT_EQ(nOnce, 3U);
  FakeResultView again("TableStructureListView", driver.Item("S1.Catalogs.Plant.Pumps"));
  driver.snapIn->ResultViews_Initialize(again);
  EXPECT_EQ(driver.historian->log.size(), 2 * nOnce);
}

TEST_F(list_views, a_provider_without_primary_keys_shows_an_empty_structure_and_no_message) {
  driver.historian->schemas[SchemaNumber::PrimaryKeys] = [](auto) -> platform::RecordsetPtr {
    throw platform::Failure(3808, "The provider has no such rowset.");
  };
  driver.snapIn->ResultViews_Initialize(structure);
  EXPECT_EQ(structure.ListItems().Count(), 0);
  ExpectNoBoxes();
}

TEST_F(list_views, the_structure_of_a_disconnected_server_is_empty_without_a_message) {
  Root()->ServerNodes()->Item("S1")->Disconnect();
  driver.snapIn->ResultViews_Initialize(structure);
  EXPECT_EQ(structure.ListItems().Count(), 0);
  ExpectNoBoxes();
}

TEST_F(list_views, a_column_that_cannot_be_read_is_reported) {
  driver.historian->schemas[SchemaNumber::Columns] = [](auto) {
    auto rs = std::make_shared<fakes::FakeRecordset>(
        std::vector<fakes::FakeColumn>{{"COLUMN_NAME"}, {"DATA_TYPE"}, {"IS_NULLABLE"}},
        std::vector<fakes::FakeRecordset::Row>{{"A", Long{3}, true}, {"B", Long{3}, true}});
    rs->failing = {{1, 0}};
    return rs;
  };
  driver.snapIn->ResultViews_Initialize(structure);
  EXPECT_EQ(structure.ListItems().Count(), 1) << "what was listed before stays";
  EXPECT_EQ(ErrorBox(), "The cell cannot be read.");
}

TEST_F(list_views, a_column_whose_nullability_cannot_be_read_is_listed_before_that_is_reported) {
  driver.historian->schemas[SchemaNumber::Columns] = [](auto) {
    auto rs = std::make_shared<fakes::FakeRecordset>(
        std::vector<fakes::FakeColumn>{{"COLUMN_NAME"}, {"DATA_TYPE"}, {"IS_NULLABLE"}},
        std::vector<fakes::FakeRecordset::Row>{{"A", Long{3}, true}});
    rs->failing = {{0, 2}};
    return rs;
  };
  driver.snapIn->ResultViews_Initialize(structure);
  ASSERT_EQ(structure.ListItems().Count(), 1);
  EXPECT_EQ(structure.ListItems().items[0]->ListSubItems().Texts(),
            (std::vector<Text>{"A", "integer"}));
  EXPECT_EQ(ErrorBox(), "The cell cannot be read.");
}

TEST_F(list_views, activating_and_deactivating_a_list_does_nothing) {
  driver.Select("S1.Catalogs.Plant.Pumps");
  driver.ShowView("TableStructureListView");
  driver.Select("S1.Catalogs");
  Long lUpdatability = 0;
  EXPECT_NE(Pumps()->GetRecordset(lUpdatability), nullptr) << "kept from the grid, not overwritten";
  ExpectNoBoxes();
}

}  // namespace
}  // namespace orvane::snapin
