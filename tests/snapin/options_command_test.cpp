// The command "Options...": what it shows, what it stores and whom that reaches.
#include <limits>

#include "tests/snapin/snap_in_fixture.h"

namespace orvane::snapin {
namespace {

class options_command : public SnapInTest {
 protected:
  void AnswerOptions(std::function<void(fakes::FakeForm&)> user) {
    driver.forms->WhenShown("OptionsDlg", std::move(user));
    driver.Click("m_mnuOptions", "");
  }
  static void Ok(fakes::FakeForm& form) { form.Button("m_btnOK").Click(); }
};

TEST_F(options_command, options_shows_what_is_set) {
  Root()->MaxRows(-7);
  Root()->QueryTimeout(45);
  Root()->SetDefaultTimeRange("t", " * ");
  AnswerOptions([](fakes::FakeForm& form) {
    EXPECT_EQ(form.TextBox("m_txtMaxRows").Text(), "-7");
    EXPECT_EQ(form.TextBox("m_txtTimeout").Text(), "45");
    EXPECT_EQ(form.TextBox("m_txtDefStartTime").Text(), "t");
    EXPECT_EQ(form.TextBox("m_txtDefEndTime").Text(), " * ");
  });
  EXPECT_TRUE(driver.forms->WasLoaded("OptionsDlg"));
}

TEST_F(options_command, options_stores_what_was_accepted) {
  AnswerOptions([](fakes::FakeForm& form) {
    form.TextBox("m_txtMaxRows").Text("250");
    form.TextBox("m_txtTimeout").Text("5");
    form.TextBox("m_txtDefStartTime").Text("*-2h");
    form.TextBox("m_txtDefEndTime").Text("*-1h");
    Ok(form);
  });
  Text sStart;
  Text sEnd;
  Root()->GetDefaultTimeRange(sStart, sEnd);
  EXPECT_EQ(Root()->MaxRows(), 250);
  EXPECT_EQ(Root()->QueryTimeout(), 5);
  EXPECT_EQ(sStart, "*-2h");
  EXPECT_EQ(sEnd, "*-1h");
}

TEST_F(options_command, cancelled_options_change_nothing_and_drop_no_rows) {
  ExpandAll();
  const auto rs = std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{},
                                                         std::vector<fakes::FakeRecordset::Row>{});
  Pumps()->SetRecordset(rs, 3);
  Query()->Recordset(rs);
  AnswerOptions([](fakes::FakeForm& form) {
    form.TextBox("m_txtMaxRows").Text("250");
    form.Button("m_btnCancel").Click();
  });
  Long lUpdatability = 0;
  EXPECT_EQ(Root()->MaxRows(), 100);
  EXPECT_EQ(Pumps()->GetRecordset(lUpdatability), rs);
  EXPECT_EQ(Query()->Recordset(), rs);
}

TEST_F(options_command, accepted_options_reach_every_table_and_drop_all_rows) {
  const auto connected = ExpandAll();
  const auto offline = AddServer("S2");
  const auto table = offline->CatalogNodes()->Add("Plant")->TableNodes()->Add("Data");
  const auto own = offline->CatalogNodes()->Item("Plant")->TableNodes()->Add("Data2");
  own->DefaultFilterCondition(false);
  own->Query()->FilterCondition("Tag = 'A'");
  const auto query = offline->QueryNodes()->Add("Q2", "SELECT 1");
  const auto rs = std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{},
                                                         std::vector<fakes::FakeRecordset::Row>{});
  Pumps()->SetRecordset(rs, 3);
  Query()->Recordset(rs);
  table->SetRecordset(rs, 3);
  query->Recordset(rs);
  AnswerOptions([](fakes::FakeForm& form) {
    form.TextBox("m_txtMaxRows").Text("9");
    form.TextBox("m_txtTimeout").Text("8");
    form.TextBox("m_txtDefStartTime").Text("y");
    form.TextBox("m_txtDefEndTime").Text("t");
    Ok(form);
  });
  Long lUpdatability = 1;
  for (const auto& node : {Pumps(), table}) {
    EXPECT_EQ(node->GetRecordset(lUpdatability), nullptr);
    EXPECT_EQ(lUpdatability, 0);
    EXPECT_EQ(node->Query()->MaxRows(), 9);
    EXPECT_EQ(node->Query()->QueryTimeout(), 8);
  }
  EXPECT_EQ(Query()->Recordset(), nullptr);
  EXPECT_EQ(query->Recordset(), nullptr);
  EXPECT_EQ(table->Query()->FilterCondition(), "Timestamp BETWEEN 'y' AND 't'");
  EXPECT_EQ(own->Query()->FilterCondition(), "Tag = 'A'");
}

TEST_F(options_command, accepted_options_drop_rows_even_when_nothing_was_changed) {
  ExpandAll();
  Pumps()->SetRecordset(
      std::make_shared<fakes::FakeRecordset>(std::vector<fakes::FakeColumn>{},
                                             std::vector<fakes::FakeRecordset::Row>{}),
      1);
  AnswerOptions(Ok);
  Long lUpdatability = 1;
  EXPECT_EQ(Pumps()->GetRecordset(lUpdatability), nullptr);
}

TEST_F(options_command, options_ask_in_a_new_dialog_each_time) {
  AnswerOptions([](fakes::FakeForm& form) {
    form.TextBox("m_txtMaxRows").Text("250");
    form.Button("m_btnCancel").Click();
  });
  AnswerOptions([](fakes::FakeForm& form) {
    EXPECT_EQ(form.TextBox("m_txtMaxRows").Text(), "100");
    EXPECT_EQ(form.TextBox("m_txtTimeout").Text(), "60");
    EXPECT_EQ(form.TextBox("m_txtDefStartTime").Text(), "*-1h");
    EXPECT_EQ(form.TextBox("m_txtDefEndTime").Text(), "*");
  });
}

TEST_F(options_command, options_take_the_smallest_and_the_largest_number) {
  AnswerOptions([](fakes::FakeForm& form) {
    form.TextBox("m_txtMaxRows").Text("-2147483648");
    form.TextBox("m_txtTimeout").Text("2147483647");
    Ok(form);
  });
  ExpectNoBoxes();
  EXPECT_EQ(Root()->MaxRows(), std::numeric_limits<Long>::min());
  EXPECT_EQ(Root()->QueryTimeout(), std::numeric_limits<Long>::max());
}

TEST_F(options_command, options_leave_the_grid_that_is_shown_alone) {
  ExpandAll();
  driver.Select("S1.Catalogs.Plant.Pumps");
  driver.TableEditor()->log.clear();
  AnswerOptions(Ok);
  EXPECT_TRUE(driver.TableEditor()->log.empty());
  EXPECT_NE(driver.TableEditor()->recordset, nullptr);
}

}  // namespace
}  // namespace orvane::snapin
