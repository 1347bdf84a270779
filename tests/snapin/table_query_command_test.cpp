#include "tests/snapin/snap_in_fixture.h"

namespace orvane::snapin {
namespace {

using Columns = std::vector<platform::Text>;

constexpr const char* kPumpsTable = "S1.Catalogs.Plant.Pumps";
constexpr const char* kData = "S1.Catalogs.Plant.Data";

class table_query_command : public SnapInTest {
 protected:
  table_query_command() { ExpandAll(); }

  void WhenShown(std::function<void(fakes::FakeForm&)> user, const char* sKey = kPumpsTable) {
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
  driver.Select(kPumpsTable);
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

// ---- writing back

/// Writes down, at each change of the query, what has been written so far.
class write_back : public table_query_command {
 protected:
  write_back() {
    table = Pumps();
    table->SetRecordset(
        std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{},
                                               std::vector<fakes::FakeRecordset::Row>{}),
        5);
    table->Query()->SortCriterion(platform::SortCriterion{"Speed", true});
    heard = table->Query()->OnChange([this] {
      steps.push_back(Written());
      if (steps.size() == nFailing) throw platform::Failure(5, "The query refuses.");
    });
  }
  Text Written() {
    auto& query = *table->Query();
    Text sText;
    for (const Text& sColumn : ColumnsOf(query)) sText += sColumn + " ";
    const auto sort = query.SortCriterion();
    Long lUpdatability = 0;
    return sText + (table->DefaultFilterCondition() ? "default" : "own") + " '" +
           query.FilterCondition() + "' " + (sort ? sort->sColumn : "unsorted") +
           (table->GetRecordset(lUpdatability) ? " rows" : "");
  }
  void ChooseSpeedAlone() {
    WhenShown([](fakes::FakeForm& form) {
      form.Button("m_btnDeselectAllCols").Click();
      form.ListView("m_lvAvailableCols").DblClick("Speed");
      form.ListView("m_lvAvailableCols").DblClick("Name");
      form.CheckBox("m_chkDefaultFilterCond").Checked(false);
      form.TextBox("m_txtFilterCond").Text("a");
      form.DropDownList("m_cmbSortCol").ListIndex(0);
      form.Button("m_btnOk").Click();
    });
  }

  nodes::TableNodePtr table;
  platform::Subscription heard;
  std::vector<Text> steps;
  std::size_t nFailing = 0;
};

TEST_F(write_back, goes_by_columns_flag_filter_order_and_rows) {
  ChooseSpeedAlone();
  EXPECT_EQ(steps,
            (std::vector<Text>{"default '' Speed rows", "Speed default '' Speed rows",
                               "Speed Name default '' Speed rows", "Speed Name own 'a' Speed rows",
                               "Speed Name own 'a' Name rows"}));
  EXPECT_EQ(Written(), "Speed Name own 'a' Name");
}

TEST_F(write_back, what_was_written_before_a_failure_stays_written) {
  const std::vector<Text> expected{"default '' Speed rows", "Speed default '' Speed rows",
                                   "Speed Name default '' Speed rows",
                                   "Speed Name own 'a' Speed rows", "Speed Name own 'a' Name rows"};
  for (nFailing = 1; nFailing <= expected.size(); ++nFailing) {
    steps.assign(100, "");  // no failure while the query is set back
    table->Query()->Columns().Clear();
    for (const char* const sColumn : {"Name", "Speed"}) table->Query()->Columns().Add(sColumn);
    table->DefaultFilterCondition(true);
    table->Query()->FilterCondition("");
    table->Query()->SortCriterion(platform::SortCriterion{"Speed", true});
    steps.clear();
    ChooseSpeedAlone();
    EXPECT_EQ(ErrorBox(), "The query refuses.") << nFailing;
    EXPECT_EQ(Written(), expected[nFailing - 1]) << nFailing;
  }
}

TEST_F(write_back, none_clears_the_order_in_its_place) {
  WhenShown([](fakes::FakeForm& form) {
    form.CheckBox("m_chkNoSortingCriteria").Checked(true);
    form.Button("m_btnOk").Click();
  });
  ASSERT_EQ(steps.size(), 5U);
  EXPECT_EQ(steps[3], "Name Speed default '' Speed rows");
  EXPECT_EQ(steps[4], "Name Speed default '' unsorted rows");
}

TEST_F(table_query_command, a_grid_that_refuses_the_changed_query_leaves_it_changed) {
  driver.Select(kPumpsTable);
  driver.TableEditor()->sFailing = "Requery";
  Long lUpdatability = 0;
  Pumps()->SetRecordset(driver.TableEditor()->recordset, 3);
  WhenShown([](fakes::FakeForm& form) {
    form.CheckBox("m_chkDefaultFilterCond").Checked(false);
    form.TextBox("m_txtFilterCond").Text("Speed > 2");
    form.Button("m_btnOk").Click();
  });
  EXPECT_EQ(ErrorBox(), "The grid cannot do that.");
  EXPECT_EQ(Pumps()->Query()->FilterCondition(), "Speed > 2");
  EXPECT_EQ(Pumps()->GetRecordset(lUpdatability), nullptr);
}

TEST_F(table_query_command, ok_with_a_sort_column_that_the_server_lost_stores_no_column) {
  Pumps()->Query()->SortCriterion(platform::SortCriterion{"Gone", true});
  WhenShown([](fakes::FakeForm& form) {
    EXPECT_FALSE(form.CheckBox("m_chkNoSortingCriteria").Checked());
    EXPECT_EQ(form.DropDownList("m_cmbSortCol").ListIndex(), -1);
    EXPECT_EQ(form.DropDownList("m_cmbSortOrder").ListIndex(), 0);
    form.Button("m_btnOk").Click();
  });
  ExpectNoBoxes();
  EXPECT_EQ(Pumps()->Query()->SortCriterion(), (platform::SortCriterion{"", true}));
  // The next time it is an order without a column, until one is chosen.
  WhenShown([](fakes::FakeForm& form) {
    EXPECT_FALSE(form.CheckBox("m_chkNoSortingCriteria").Checked());
    EXPECT_EQ(form.DropDownList("m_cmbSortCol").ListIndex(), -1);
    form.DropDownList("m_cmbSortCol").ListIndex(1);
    form.DropDownList("m_cmbSortOrder").ListIndex(1);
    form.Button("m_btnOk").Click();
  });
  EXPECT_EQ(Pumps()->Query()->SortCriterion(), (platform::SortCriterion{"Speed", false}));
}

TEST_F(table_query_command, ok_keeps_a_chosen_column_that_the_server_lost) {
  Pumps()->Query()->Columns().Add("Gone");
  WhenShown([](fakes::FakeForm& form) { form.Button("m_btnOk").Click(); });
  EXPECT_EQ(ColumnsOf(*Pumps()->Query()), (Columns{"Name", "Speed", "Gone"}));
}

TEST_F(table_query_command, the_columns_are_read_from_the_server_each_time) {
  driver.historian->log.clear();
  driver.historian->Table("S1", "Plant", "Pumps")->columns.push_back({"New"});
  WhenShown([](fakes::FakeForm& form) {
    EXPECT_EQ(form.ListView("m_lvAvailableCols").Texts(), Columns{"New"});
    EXPECT_EQ(form.DropDownList("m_cmbSortCol").Count(), 3);
    EXPECT_EQ(form.DropDownList("m_cmbSortCol").Item(2), "New");
    form.PressEscape();
  });
  EXPECT_EQ(driver.historian->log, (std::vector<Text>{"OpenSchema 4(Plant,null,Pumps)"}));
}

TEST_F(table_query_command, columns_that_cannot_be_read_end_the_command) {
  const Text sState = Pumps()->Query()->WriteState();
  driver.historian->schemas[platform::SchemaNumber::Columns] = [](auto) -> platform::RecordsetPtr {
    throw platform::Failure(3801, "You may not read the columns.");
  };
  WhenShown([](fakes::FakeForm& form) { form.Button("m_btnOk").Click(); });
  EXPECT_EQ(ErrorBox(), "You may not read the columns.");
  EXPECT_EQ(nShown, 0);
  EXPECT_EQ(Pumps()->Query()->WriteState(), sState);
}

TEST_F(table_query_command, the_default_filter_is_the_roots_of_now_not_the_tables_of_then) {
  Root()->SetDefaultTimeRange("y", "t");
  EXPECT_EQ(Data()->Query()->FilterCondition(), "Timestamp BETWEEN '*-1h' AND '*'");
  WhenShown(
      [](fakes::FakeForm& form) {
        EXPECT_EQ(form.TextBox("m_txtFilterCond").Text(), "Timestamp BETWEEN 'y' AND 't'");
        form.Button("m_btnOk").Click();
      },
      kData);
  EXPECT_EQ(Data()->Query()->FilterCondition(), "Timestamp BETWEEN 'y' AND 't'");
}

TEST_F(table_query_command, without_columns_there_is_no_ok_and_nothing_is_written) {
  const Text sState = Pumps()->Query()->WriteState();
  WhenShown([](fakes::FakeForm& form) {
    form.Button("m_btnDeselectAllCols").Click();
    form.Button("m_btnOk").Click();
    form.PressEnter();
  });
  EXPECT_EQ(nShown, 1);
  EXPECT_EQ(Pumps()->Query()->WriteState(), sState);
}

TEST_F(table_query_command, the_structure_view_of_the_table_runs_nothing) {
  driver.Select(kPumpsTable);
  driver.ShowView("TableStructureListView");
  const Long lSent = driver.StatementsSent();
  WhenShown([](fakes::FakeForm& form) { form.Button("m_btnOk").Click(); });
  ExpectNoBoxes();
  EXPECT_EQ(driver.StatementsSent(), lSent);
}

TEST_F(table_query_command, leaves_the_limits_alone) {
  Pumps()->Query()->MaxRows(7);
  Pumps()->Query()->QueryTimeout(8);
  WhenShown([](fakes::FakeForm& form) { form.Button("m_btnOk").Click(); });
  EXPECT_EQ(Pumps()->Query()->MaxRows(), 7);
  EXPECT_EQ(Pumps()->Query()->QueryTimeout(), 8);
}

}  // namespace
}  // namespace orvane::snapin
