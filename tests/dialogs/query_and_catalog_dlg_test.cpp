#include "dialogs/add_catalog_dlg.h"
#include "dialogs/query_dlg.h"
#include "tests/dialogs/dialog_fixture.h"

namespace orvane::dialogs {
namespace {

struct query_dlg : DialogFixture {
  QueryDlg dialog{services};
  fakes::FakeForm& form = forms->Last("QueryDlg");
};

struct add_catalog_dlg : DialogFixture {
  AddCatalogDlg dialog{services};
  fakes::FakeForm& form = forms->Last("AddCatalogDlg");
};

TEST_F(query_dlg, has_its_title_and_captions) {
  EXPECT_EQ(form.Title(), "Query");
  EXPECT_EQ(form.Caption("m_lblName").Label(), "Name:");
  EXPECT_EQ(form.Caption("m_lblSqlStatement").Label(), "SQL statement:");
  EXPECT_EQ(form.Button("m_btnOk").Label(), "&OK");
  EXPECT_EQ(form.Button("m_btnCancel").Label(), "&Cancel");
}

TEST_F(query_dlg, enter_presses_ok_only_while_it_is_enabled) {
  forms->WhenShown("QueryDlg", [](fakes::FakeForm& shown) { shown.PressEnter(); });
  dialog.ShowModal();
  EXPECT_FALSE(dialog.Accepted());
  EXPECT_TRUE(form.Shown());
  dialog.Name().Text("q");
  dialog.ShowModal();
  EXPECT_TRUE(dialog.Accepted());
  EXPECT_FALSE(form.Shown());
}

TEST_F(query_dlg, escape_presses_cancel_and_leaves_the_flag_false) {
  forms->WhenShown("QueryDlg", [](fakes::FakeForm& shown) {
    shown.TextBox("m_txtName").Type("q");
    shown.PressEscape();
  });
  dialog.ShowModal();
  EXPECT_FALSE(dialog.Accepted());
  EXPECT_FALSE(form.Shown());
}

TEST_F(query_dlg, a_name_filled_in_by_the_caller_enables_ok_at_once) {
  EXPECT_FALSE(form.Button("m_btnOk").Enabled());
  dialog.Name().Text("q");
  EXPECT_TRUE(form.Button("m_btnOk").Enabled());
}

TEST_F(query_dlg, the_sql_text_does_not_matter_to_ok) {
  dialog.SqlStatement().Text("SELECT 1");
  EXPECT_FALSE(form.Button("m_btnOk").Enabled());
}

TEST_F(query_dlg, deleting_the_last_character_disables_ok_again) {
  dialog.Name().Text(" ");
  EXPECT_TRUE(form.Button("m_btnOk").Enabled());
  dialog.Name().Text("");
  EXPECT_FALSE(form.Button("m_btnOk").Enabled());
}

TEST_F(query_dlg, binds_enter_to_ok_and_escape_to_cancel) {
  EXPECT_EQ(form.DefaultButton(), "m_btnOk");
  EXPECT_EQ(form.CancelButton(), "m_btnCancel");
}

TEST_F(query_dlg, cancel_leaves_the_flag_as_it_is) {
  dialog.Accepted(true);
  forms->WhenShown("QueryDlg", [](fakes::FakeForm& shown) { shown.Button("m_btnCancel").Click(); });
  dialog.ShowModal();
  EXPECT_TRUE(dialog.Accepted());
  EXPECT_FALSE(form.Shown());
}

TEST_F(query_dlg, its_accessors_are_the_boxes_of_those_names) {
  dialog.Name().Text("n");
  dialog.SqlStatement().Text("s");
  EXPECT_EQ(form.TextBox("m_txtName").Text(), "n");
  EXPECT_EQ(form.TextBox("m_txtSqlStatement").Text(), "s");
}

TEST_F(query_dlg, can_be_shown_again_with_the_texts_kept) {
  forms->WhenShown("QueryDlg", [](fakes::FakeForm& shown) { shown.PressEnter(); });
  dialog.Name().Text("q");
  dialog.SqlStatement().Text("SELECT 1");
  dialog.ShowModal();
  dialog.Accepted(false);
  EXPECT_FALSE(dialog.Accepted());
  dialog.ShowModal();
  EXPECT_TRUE(dialog.Accepted());
  EXPECT_EQ(dialog.Name().Text(), "q");
  EXPECT_EQ(dialog.SqlStatement().Text(), "SELECT 1");
}

TEST_F(add_catalog_dlg, has_its_title_and_captions) {
  EXPECT_EQ(form.Title(), "Add Catalog");
  EXPECT_EQ(form.Caption("Label1").Label(), "Name:");
  EXPECT_EQ(form.Caption("Label2").Label(), "Path:");
  EXPECT_EQ(form.Caption("Label3").Label(), "Size:");
  EXPECT_EQ(form.Caption("Label4").Label(), "kilobytes");
  EXPECT_EQ(form.Button("m_btnOk").Label(), "&OK");
  EXPECT_EQ(form.Button("m_btnCancel").Label(), "&Cancel");
}

TEST_F(add_catalog_dlg, binds_neither_enter_nor_escape) {
  EXPECT_EQ(form.DefaultButton(), "");
  EXPECT_EQ(form.CancelButton(), "");
}

TEST_F(add_catalog_dlg, ok_needs_a_name_and_accepts) {
  forms->WhenShown("AddCatalogDlg",
                   [](fakes::FakeForm& shown) { shown.Button("m_btnOk").Click(); });
  dialog.ShowModal();
  EXPECT_FALSE(dialog.Accepted());
  dialog.Name().Text(" ");
  dialog.ShowModal();
  EXPECT_TRUE(dialog.Accepted());
  EXPECT_FALSE(form.Shown());
}

TEST_F(add_catalog_dlg, ok_is_disabled_until_a_name_is_typed_and_again_without_one) {
  EXPECT_FALSE(form.Button("m_btnOk").Enabled());
  dialog.Path().Text("/data");
  dialog.Size().Text("5");
  EXPECT_FALSE(form.Button("m_btnOk").Enabled());
  dialog.Name().Text("N");
  EXPECT_TRUE(form.Button("m_btnOk").Enabled());
  dialog.Name().Text("");
  EXPECT_FALSE(form.Button("m_btnOk").Enabled());
}

TEST_F(add_catalog_dlg, enter_and_escape_press_nothing) {
  dialog.Name().Text("N");
  forms->WhenShown("AddCatalogDlg", [](fakes::FakeForm& shown) {
    shown.PressEnter();
    shown.PressEscape();
  });
  dialog.ShowModal();
  EXPECT_TRUE(form.Shown());
  EXPECT_FALSE(dialog.Accepted());
}

TEST_F(add_catalog_dlg, cancel_leaves_the_flag_as_it_is) {
  dialog.Name().Text("N");
  forms->WhenShown("AddCatalogDlg", [](fakes::FakeForm& shown) {
    shown.Button(shown.TimesShown() == 1 ? "m_btnOk" : "m_btnCancel").Click();
  });
  dialog.ShowModal();
  dialog.ShowModal();
  EXPECT_TRUE(dialog.Accepted());
  EXPECT_FALSE(form.Shown());
}

TEST_F(add_catalog_dlg, its_accessors_are_the_boxes_of_those_names) {
  dialog.Name().Text("n");
  dialog.Path().Text("p");
  dialog.Size().Text("s");
  EXPECT_EQ(form.TextBox("m_txtName").Text(), "n");
  EXPECT_EQ(form.TextBox("m_txtPath").Text(), "p");
  EXPECT_EQ(form.TextBox("m_txtSize").Text(), "s");
}

TEST_F(add_catalog_dlg, the_size_is_not_checked_while_typing) {
  form.TextBox("m_txtSize").Type("big");
  EXPECT_EQ(dialog.Size().Text(), "big");
  EXPECT_EQ(ui->nBeeps, 0);
}

TEST_F(add_catalog_dlg, cancel_after_typing_leaves_the_flag_false) {
  forms->WhenShown("AddCatalogDlg", [](fakes::FakeForm& shown) {
    shown.TextBox("m_txtName").Type("Plant1");
    shown.Button("m_btnCancel").Click();
  });
  dialog.ShowModal();
  EXPECT_FALSE(dialog.Accepted());
  EXPECT_FALSE(form.Shown());
}

}  // namespace
}  // namespace orvane::dialogs
