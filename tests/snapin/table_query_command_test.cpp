#include "tests/snapin/snap_in_fixture.h"

namespace orvane::snapin {
namespace {

using Columns = std::vector<platform::Text>;

constexpr const char* kPumps = "S1.Catalogs.Plant.Pumps";
constexpr const char* kData = "S1.Catalogs.Plant.Data";

class table_query_command : public SnapInTest {
 protected:
  table_query_command() { ExpandAll(); }

  void WhenShown(std::function<void(fakes::FakeForm&)> user, const char* sKey = kPumps) {
    nShown = 0;
    driver.forms->WhenShown("TableQueryDlg", [this, user](fakes::FakeForm& form) {
      ++nShown;
      user(form);
    });
    driver.Click("m_mnuQuery", sKey);
  }
  nodes::TableNodePtr Data() {
    return std::dynamic_pointer_cast<nodes::TableNode>(driver.Item(kData)->Tag());
  }
  Columns ColumnsOf(platform::TableQuery& query) {
    Columns columns;
    for (Long l = 1; l <= query.Columns().Count(); ++l) columns.push_back(query.Columns().Item(l));
    return columns;
  }

  int nShown = 0;
};

TEST_F(table_query_command, the_dialog_shows_the_query_as_it_is) {
  Pumps()->DefaultFilterCondition(false);
  Pumps()->Query()->FilterCondition("Speed > 1");
  Pumps()->Query()->Columns().Remove(1);
  Pumps()->Query()->SortCriterion(platform::SortCriterion{"Speed", false});
  WhenShown([](fakes::FakeForm& form) {
    EXPECT_EQ(form.Caption("m_lblCatalog2").Label(), "Plant");
    EXPECT_EQ(form.Caption("m_lblTable2").Label(), "Pumps");
    EXPECT_EQ(form.ListView("m_lvSelCols").Texts(), Columns{"Speed"});
    EXPECT_EQ(form.ListView("m_lvAvailableCols").Texts(), Columns{"Name"});
    EXPECT_EQ(form.TextBox("m_txtFilterCond").Text(), "Speed > 1");
    EXPECT_FALSE(form.CheckBox("m_chkDefaultFilterCond").Checked());
    EXPECT_EQ(form.DropDownList("m_cmbSortCol").ListIndex(), 1);
    EXPECT_EQ(form.DropDownList("m_cmbSortOrder").ListIndex(), 1);
    EXPECT_FALSE(form.CheckBox("m_chkNoSortingCriteria").Checked());
    EXPECT_TRUE(form.Button("m_btnOk").Enabled());
    form.PressEscape();
  });
  EXPECT_EQ(nShown, 1);
}

TEST_F(table_query_command, the_default_filter_is_shown_checked_and_locked) {
  WhenShown(
      [](fakes::FakeForm& form) {
        EXPECT_TRUE(form.CheckBox("m_chkDefaultFilterCond").Checked());
        EXPECT_EQ(form.TextBox("m_txtFilterCond").Text(), "Timestamp BETWEEN '*-1h' AND '*'");
        EXPECT_TRUE(form.TextBox("m_txtFilterCond").Locked());
        EXPECT_TRUE(form.CheckBox("m_chkNoSortingCriteria").Checked());
        form.PressEscape();
      },
      kData);
  EXPECT_EQ(nShown, 1);
}

TEST_F(table_query_command, cancel_leaves_query_flag_and_rows_untouched) {
  const auto rs = std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{},
                                                         std::vector<fakes::FakeRecordset::Row>{});
  Pumps()->SetRecordset(rs, 5);
  const Text sState = Pumps()->Query()->WriteState();
  WhenShown([](fakes::FakeForm& form) {
    form.CheckBox("m_chkDefaultFilterCond").Checked(false);
    form.Button("m_btnDeselectAllCols").Click();
    form.Button("m_btnCancel").Click();
  });
  Long lUpdatability = 0;
  EXPECT_EQ(Pumps()->Query()->WriteState(), sState);
  EXPECT_TRUE(Pumps()->DefaultFilterCondition());
  EXPECT_EQ(Pumps()->GetRecordset(lUpdatability), rs);
  EXPECT_EQ(lUpdatability, 5);
}

TEST_F(table_query_command, ok_writes_the_choices_back_and_drops_the_rows) {
  Pumps()->SetRecordset(
      std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{},
                                             std::vector<fakes::FakeRecordset::Row>{}),
      5);
  WhenShown([](fakes::FakeForm& form) {
    form.Button("m_btnDeselectAllCols").Click();
    form.ListView("m_lvAvailableCols").DblClick("Speed");
    form.ListView("m_lvAvailableCols").DblClick("Name");
    form.CheckBox("m_chkDefaultFilterCond").Checked(false);
    form.TextBox("m_txtFilterCond").Text("Speed > 2");
    form.CheckBox("m_chkNoSortingCriteria").Checked(false);
    form.DropDownList("m_cmbSortOrder").ListIndex(1);
    form.Button("m_btnOk").Click();
  });
  ExpectNoBoxes();
  Long lUpdatability = 1;
  auto& query = *Pumps()->Query();
  EXPECT_EQ(ColumnsOf(query), (Columns{"Speed", "Name"}));
  EXPECT_FALSE(Pumps()->DefaultFilterCondition());
  EXPECT_EQ(query.FilterCondition(), "Speed > 2");
  EXPECT_EQ(query.SortCriterion(), (platform::SortCriterion{"Name", false}));
  EXPECT_EQ(Pumps()->GetRecordset(lUpdatability), nullptr);
  EXPECT_EQ(lUpdatability, 0);
}

TEST_F(table_query_command, ok_with_the_default_filter_keeps_it_as_shown) {
  WhenShown([](fakes::FakeForm& form) { form.Button("m_btnOk").Click(); }, kData);
  EXPECT_TRUE(Data()->DefaultFilterCondition());
  EXPECT_EQ(Data()->Query()->FilterCondition(), "Timestamp BETWEEN '*-1h' AND '*'");
}

TEST_F(table_query_command, none_and_ok_leave_no_sort_criterion) {
  Pumps()->Query()->SortCriterion(platform::SortCriterion{"Speed", true});
  WhenShown([](fakes::FakeForm& form) {
    form.CheckBox("m_chkNoSortingCriteria").Checked(true);
    form.Button("m_btnOk").Click();
  });
  EXPECT_EQ(Pumps()->Query()->SortCriterion(), std::nullopt);
}

TEST_F(table_query_command, a_column_that_the_server_lost_is_shown_among_the_chosen) {
  Pumps()->Query()->Columns().Add("Gone");
  Pumps()->Query()->SortCriterion(platform::SortCriterion{"Gone", true});
  WhenShown([](fakes::FakeForm& form) {
    EXPECT_EQ(form.ListView("m_lvSelCols").Texts(), (Columns{"Name", "Speed", "Gone"}));
    EXPECT_EQ(form.DropDownList("m_cmbSortCol").ListIndex(), -1);
    form.PressEscape();
  });
  EXPECT_EQ(nShown, 1);
}

TEST_F(table_query_command, the_grid_that_shows_the_table_runs_the_changed_query) {
  driver.Select(kPumps);
  driver.TableEditor()->log.clear();
  WhenShown([](fakes::FakeForm& form) { form.Button("m_btnOk").Click(); });
  const auto& log = driver.TableEditor()->log;
  EXPECT_EQ(std::count(log.begin(), log.end(), "Requery"), 1);
}

TEST_F(table_query_command, a_grid_that_shows_another_table_is_left_alone) {
  driver.Select(kData);
  driver.TableEditor()->log.clear();
  WhenShown([](fakes::FakeForm& form) { form.Button("m_btnOk").Click(); });
  EXPECT_TRUE(driver.TableEditor()->log.empty());
}

TEST_F(table_query_command, without_a_connection_nothing_is_shown_or_changed) {
  const auto pumps = Pumps();
  const Text sState = pumps->Query()->WriteState();
  Root()->ServerNodes()->Item("S1")->Disconnect();
  WhenShown([](fakes::FakeForm& form) { form.Button("m_btnOk").Click(); });
  EXPECT_EQ(ErrorBox(), "The server is not connected; connect it first.");
  EXPECT_EQ(nShown, 0);
  EXPECT_EQ(pumps->Query()->WriteState(), sState);
}

}  // namespace
}  // namespace orvane::snapin
