#include "dialogs/options_dlg.h"

#include "tests/dialogs/dialog_fixture.h"

namespace orvane::dialogs {
namespace {

struct options_dlg : DialogFixture {
  OptionsDlg dialog{services};
  fakes::FakeForm& form = forms->Last("OptionsDlg");

  void Show(const std::function<void()>& user) {
    forms->WhenShown("OptionsDlg", [&](fakes::FakeForm&) { user(); });
    dialog.ShowModal();
  }
};

TEST_F(options_dlg, has_its_title_and_captions) {
  EXPECT_EQ(form.Title(), "Options");
  EXPECT_EQ(form.Caption("m_frmQueryLimits").Label(), "Query Limits");
  EXPECT_EQ(form.Caption("m_lblMaxRows").Label(), "Maximum number of rows:");
  EXPECT_EQ(form.Caption("m_lblTimeout").Label(), "Timeout:");
  EXPECT_EQ(form.Caption("m_lblSeconds").Label(), "[s]");
  EXPECT_EQ(form.Caption("m_frmDefTimeRange").Label(), "Default Time Range");
  EXPECT_EQ(form.Caption("m_lblDefStartTime").Label(), "Start time:");
  EXPECT_EQ(form.Caption("m_lblDefEndTime").Label(), "End time:");
  EXPECT_EQ(form.Button("m_btnOK").Label(), "OK");
  EXPECT_EQ(form.Button("m_btnCancel").Label(), "Cancel");
}

TEST_F(options_dlg, enter_presses_ok_and_escape_nothing) {
  EXPECT_EQ(form.DefaultButton(), "m_btnOK");
  EXPECT_EQ(form.CancelButton(), "");
}

TEST_F(options_dlg, ok_accepts_and_hides) {
  EXPECT_FALSE(dialog.Accepted());
  Show([&] { form.PressEnter(); });
  EXPECT_TRUE(dialog.Accepted());
  EXPECT_FALSE(form.Shown());
}

TEST_F(options_dlg, cancel_after_editing_hides_without_accepting) {
  Show([&] {
    form.TextBox("m_txtMaxRows").Type("5");
    form.Button("m_btnCancel").Click();
  });
  EXPECT_FALSE(dialog.Accepted());
  EXPECT_FALSE(form.Shown());
}

TEST_F(options_dlg, opens_with_empty_boxes_until_the_caller_fills_them) {
  for (const char* const sBox :
       {"m_txtMaxRows", "m_txtTimeout", "m_txtDefStartTime", "m_txtDefEndTime"}) {
    EXPECT_EQ(form.TextBox(sBox).Text(), "") << sBox;
  }
}

TEST_F(options_dlg, its_accessors_are_the_boxes_of_those_names) {
  dialog.MaxRows().Text("1");
  dialog.Timeout().Text("2");
  dialog.DefStartTime().Text("3");
  dialog.DefEndTime().Text("4");
  EXPECT_EQ(form.TextBox("m_txtMaxRows").Text(), "1");
  EXPECT_EQ(form.TextBox("m_txtTimeout").Text(), "2");
  EXPECT_EQ(form.TextBox("m_txtDefStartTime").Text(), "3");
  EXPECT_EQ(form.TextBox("m_txtDefEndTime").Text(), "4");
}

TEST_F(options_dlg, cancel_leaves_the_flag_as_it_is) {
  Show([&] { form.Button("m_btnOK").Click(); });
  Show([&] { form.Button("m_btnCancel").Click(); });
  EXPECT_TRUE(dialog.Accepted());
  EXPECT_FALSE(form.Shown());
}

TEST_F(options_dlg, escape_does_nothing) {
  Show([&] { form.PressEscape(); });
  EXPECT_TRUE(form.Shown());
  EXPECT_FALSE(dialog.Accepted());
}

TEST_F(options_dlg, the_first_wrong_key_brings_back_what_the_caller_put_in) {
  dialog.MaxRows().Text("100");
  dialog.Timeout().Text("60");
  Show([&] {
    form.TextBox("m_txtMaxRows").Type("a");
    form.TextBox("m_txtTimeout").Type("b");
  });
  EXPECT_EQ(dialog.MaxRows().Text(), "100");
  EXPECT_EQ(dialog.Timeout().Text(), "60");
  EXPECT_EQ(ui->nBeeps, 2);
}

TEST_F(options_dlg, each_numeric_box_remembers_its_own_last_text) {
  dialog.MaxRows().Text("100");
  dialog.Timeout().Text("60");
  dialog.MaxRows().Text("");
  dialog.Timeout().Text("");
  Show([&] {
    form.TextBox("m_txtTimeout").Type("b");
    form.TextBox("m_txtMaxRows").Type("a");
  });
  EXPECT_EQ(dialog.MaxRows().Text(), "100");
  EXPECT_EQ(dialog.Timeout().Text(), "60");
}

TEST_F(options_dlg, the_times_are_not_checked) {
  Show([&] {
    form.TextBox("m_txtDefStartTime").Type("nonsense '");
    form.TextBox("m_txtDefEndTime").Type("*");
  });
  EXPECT_EQ(dialog.DefStartTime().Text(), "nonsense '");
  EXPECT_EQ(dialog.DefEndTime().Text(), "*");
  EXPECT_EQ(ui->nBeeps, 0);
}

TEST_F(options_dlg, reports_nothing_in_words) {
  Show([&] { form.TextBox("m_txtMaxRows").Type("a"); });
  EXPECT_EQ(ui->nBoxes, 0);
}

}  // namespace
}  // namespace orvane::dialogs
