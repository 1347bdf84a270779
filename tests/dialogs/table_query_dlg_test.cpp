#include "dialogs/table_query_dlg.h"

#include "tests/dialogs/dialog_fixture.h"

namespace orvane::dialogs {
namespace {

using Columns = std::vector<platform::Text>;

struct table_query_dlg : DialogFixture {
  table_query_dlg() {
    dialog.Columns({"Tag", "Timestamp", "Value", "Status"});
    dialog.AddSelectedColumn("Value");
    dialog.UpdateAvailableColumns();
    dialog.DefaultFilterCondition("Timestamp >= '*-1h'");
    dialog.UpdateSortColumns();
    dialog.UpdateButtons();
  }

  bool Enabled(const char* sButton) { return form.Button(sButton).Enabled(); }
  void Click(const char* sButton) { form.Button(sButton).Click(); }

  TableQueryDlg dialog{services};
  fakes::FakeForm& form = forms->Last("TableQueryDlg");
  fakes::FakeListView& available = form.ListView("m_lvAvailableCols");
  fakes::FakeListView& selected = form.ListView("m_lvSelCols");
  fakes::FakeTextBox& filter = form.TextBox("m_txtFilterCond");
  fakes::FakeDropDownList& sortCol = form.DropDownList("m_cmbSortCol");
  fakes::FakeDropDownList& sortOrder = form.DropDownList("m_cmbSortOrder");
};

TEST_F(table_query_dlg, has_its_title_and_captions) {
  EXPECT_EQ(form.Title(), "Table Query");
  EXPECT_EQ(form.Button("m_btnSelectCol").Label(), "Add >");
  EXPECT_EQ(form.Button("m_btnSelectAllCols").Label(), "Add All >>");
  EXPECT_EQ(form.Button("m_btnDeselectCol").Label(), "< Remove");
  EXPECT_EQ(form.Button("m_btnDeselectAllCols").Label(), "<< Remove All");
  EXPECT_EQ(form.Caption("m_frmTable").Label(), "Table");
  EXPECT_EQ(form.Caption("m_lblCatalog1").Label(), "Catalog:");
  EXPECT_EQ(form.Caption("m_lblTable1").Label(), "Table:");
  EXPECT_EQ(form.Caption("m_frmColumns").Label(), "Columns");
  EXPECT_EQ(form.Caption("m_lblAvailableCols").Label(), "Available columns:");
  EXPECT_EQ(form.Caption("m_lblSelectedCols").Label(), "Selected columns:");
  EXPECT_EQ(form.Caption("m_frmFilterCond").Label(), "Filter condition");
  EXPECT_EQ(form.CheckBox("m_chkDefaultFilterCond").Label(), "&Default");
  EXPECT_EQ(form.Caption("m_frmSortingCriteria").Label(), "Sorting criteria");
  EXPECT_EQ(form.Caption("m_lblSortCol").Label(), "Column:");
  EXPECT_EQ(form.Caption("m_lblSortOrder").Label(), "Order:");
  EXPECT_EQ(form.CheckBox("m_chkNoSortingCriteria").Label(), "&None");
  EXPECT_EQ(form.Button("m_btnOk").Label(), "OK");
  EXPECT_EQ(form.Button("m_btnCancel").Label(), "&Cancel");
}

TEST_F(table_query_dlg, shows_the_catalog_and_the_table) {
  dialog.CatalogLabel("Plant1");
  dialog.TableLabel("Data");
  EXPECT_EQ(form.Caption("m_lblCatalog2").Label(), "Plant1");
  EXPECT_EQ(form.Caption("m_lblTable2").Label(), "Data");
}

TEST_F(table_query_dlg, lists_the_columns_that_are_not_chosen_in_server_order) {
  EXPECT_EQ(available.Texts(), (Columns{"Tag", "Timestamp", "Status"}));
}

TEST_F(table_query_dlg, compares_column_names_exactly) {
  dialog.Columns({"value", "Value"});
  dialog.UpdateAvailableColumns();
  EXPECT_EQ(available.Texts(), Columns{"value"});
}

TEST_F(table_query_dlg, without_chosen_columns_ok_and_both_deselect_buttons_are_disabled) {
  Click("m_btnDeselectAllCols");
  EXPECT_FALSE(Enabled("m_btnOk"));
  EXPECT_FALSE(Enabled("m_btnDeselectCol"));
  EXPECT_FALSE(Enabled("m_btnDeselectAllCols"));
  EXPECT_TRUE(Enabled("m_btnSelectAllCols"));
}

TEST_F(table_query_dlg, with_columns_but_none_highlighted_only_the_single_buttons_are_disabled) {
  EXPECT_FALSE(Enabled("m_btnDeselectCol"));
  EXPECT_TRUE(Enabled("m_btnDeselectAllCols"));
  EXPECT_TRUE(Enabled("m_btnOk"));
  EXPECT_FALSE(Enabled("m_btnSelectCol"));
  EXPECT_TRUE(Enabled("m_btnSelectAllCols"));
}

TEST_F(table_query_dlg, a_click_in_a_list_enables_its_single_button) {
  available.Click("Tag");
  EXPECT_TRUE(Enabled("m_btnSelectCol"));
  EXPECT_FALSE(Enabled("m_btnDeselectCol"));
  selected.Click("Value");
  EXPECT_TRUE(Enabled("m_btnDeselectCol"));
}

TEST_F(table_query_dlg, select_moves_every_highlighted_column_behind_the_chosen_ones) {
  available.Click("Tag");
  available.ControlClick("Status");
  Click("m_btnSelectCol");
  EXPECT_EQ(selected.Texts(), (Columns{"Value", "Tag", "Status"}));
  EXPECT_EQ(available.Texts(), Columns{"Timestamp"});
}

TEST_F(table_query_dlg, the_row_behind_the_last_that_moved_is_selected_next) {
  Click("m_btnDeselectAllCols");
  available.Click("Tag");
  available.ControlClick("Value");
  Click("m_btnSelectCol");
  EXPECT_EQ(available.Texts(), (Columns{"Timestamp", "Status"}));
  EXPECT_FALSE(available.Selected(1));
  EXPECT_TRUE(available.Selected(2));
  EXPECT_TRUE(Enabled("m_btnSelectCol"));
  Click("m_btnSelectCol");
  EXPECT_EQ(available.Texts(), Columns{"Timestamp"});
  EXPECT_TRUE(available.Selected(1)) << "behind the last row comes the one before it";
  Click("m_btnSelectCol");
  EXPECT_EQ(selected.Texts(), (Columns{"Tag", "Value", "Status", "Timestamp"}));
  EXPECT_FALSE(Enabled("m_btnSelectCol"));
  selected.Click("Value");
  Click("m_btnDeselectCol");
  EXPECT_TRUE(selected.Selected(2));
  EXPECT_EQ(selected.Item(2), "Status");
  EXPECT_FALSE(available.Selected(1)) << "what arrives is not selected";
}

TEST_F(table_query_dlg, deselect_returns_every_highlighted_column) {
  selected.Click("Value");
  Click("m_btnDeselectCol");
  EXPECT_EQ(selected.Texts(), Columns{});
  EXPECT_EQ(available.Texts(), (Columns{"Tag", "Timestamp", "Status", "Value"}));
  EXPECT_FALSE(Enabled("m_btnOk"));
}

TEST_F(table_query_dlg, deselect_moves_several_at_once_in_list_order) {
  Click("m_btnSelectAllCols");
  selected.Click("Status");
  selected.ControlClick("Value");
  Click("m_btnDeselectCol");
  EXPECT_EQ(selected.Texts(), (Columns{"Tag", "Timestamp"}));
  EXPECT_EQ(available.Texts(), (Columns{"Value", "Status"}));
  EXPECT_TRUE(Enabled("m_btnDeselectCol"));
  EXPECT_TRUE(Enabled("m_btnDeselectAllCols"));
  EXPECT_TRUE(Enabled("m_btnSelectAllCols"));
  EXPECT_TRUE(Enabled("m_btnOk"));
}

TEST_F(table_query_dlg, a_click_beside_the_items_disables_the_single_button_again) {
  available.Click("Tag");
  EXPECT_TRUE(Enabled("m_btnSelectCol"));
  available.Click("none of them");
  EXPECT_FALSE(Enabled("m_btnSelectCol"));
  selected.Click("Value");
  EXPECT_TRUE(Enabled("m_btnDeselectCol"));
  selected.Click("none of them");
  EXPECT_FALSE(Enabled("m_btnDeselectCol"));
}

TEST_F(table_query_dlg, the_last_available_column_takes_select_all_with_it) {
  available.Click("Tag");
  available.ControlClick("Timestamp");
  available.ControlClick("Status");
  Click("m_btnSelectCol");
  EXPECT_FALSE(Enabled("m_btnSelectCol"));
  EXPECT_FALSE(Enabled("m_btnSelectAllCols"));
}

TEST_F(table_query_dlg, a_lost_column_that_is_deselected_is_listed_until_the_list_is_filled_anew) {
  dialog.AddSelectedColumn("Gone");
  selected.DblClick("Gone");
  EXPECT_EQ(available.Texts(), (Columns{"Tag", "Timestamp", "Status", "Gone"}));
  Click("m_btnDeselectAllCols");
  EXPECT_EQ(available.Texts(), (Columns{"Tag", "Timestamp", "Value", "Status"}));
}

TEST_F(table_query_dlg, listing_the_columns_again_replaces_both_lists_of_them) {
  dialog.Columns({"B", "A"});
  dialog.UpdateAvailableColumns();
  dialog.UpdateSortColumns();
  EXPECT_EQ(available.Texts(), (Columns{"B", "A"}));
  ASSERT_EQ(sortCol.Count(), 2);
  EXPECT_EQ(sortCol.Item(0), "B");
  EXPECT_EQ(sortCol.Item(1), "A");
  EXPECT_EQ(sortOrder.Count(), 2) << "the two orders stay";
}

TEST_F(table_query_dlg, a_double_click_moves_like_the_button) {
  available.DblClick("Timestamp");
  EXPECT_EQ(selected.Texts(), (Columns{"Value", "Timestamp"}));
  selected.DblClick("Value");
  EXPECT_EQ(selected.Texts(), Columns{"Timestamp"});
}

TEST_F(table_query_dlg, select_all_appends_the_rest_in_order) {
  Click("m_btnSelectAllCols");
  EXPECT_EQ(selected.Texts(), (Columns{"Value", "Tag", "Timestamp", "Status"}));
  EXPECT_EQ(available.Texts(), Columns{});
  EXPECT_FALSE(Enabled("m_btnSelectAllCols"));
}

TEST_F(table_query_dlg, deselect_all_restores_server_order_whatever_was_chosen_first) {
  Click("m_btnSelectAllCols");
  Click("m_btnDeselectAllCols");
  EXPECT_EQ(available.Texts(), (Columns{"Tag", "Timestamp", "Value", "Status"}));
  EXPECT_EQ(selected.Texts(), Columns{});
}

TEST_F(table_query_dlg, the_default_filter_is_shown_grey_and_locked) {
  dialog.UseDefaultFilter(true);
  EXPECT_EQ(filter.Text(), "Timestamp >= '*-1h'");
  EXPECT_EQ(filter.ForeColor(), (platform::Color{128, 128, 128}));
  EXPECT_TRUE(filter.Locked());
  filter.Type("x");
  EXPECT_EQ(dialog.FilterCondition(), "Timestamp >= '*-1h'");
}

TEST_F(table_query_dlg, unchecking_default_keeps_the_text_black_editable_and_focused) {
  dialog.UseDefaultFilter(true);
  EXPECT_EQ(filter.TimesFocused(), 0);
  dialog.UseDefaultFilter(false);
  EXPECT_EQ(filter.Text(), "Timestamp >= '*-1h'");
  EXPECT_EQ(filter.ForeColor(), (platform::Color{0, 0, 0}));
  EXPECT_FALSE(filter.Locked());
  EXPECT_EQ(filter.TimesFocused(), 1);
}

TEST_F(table_query_dlg, offers_every_column_and_both_orders_for_sorting) {
  ASSERT_EQ(sortCol.Count(), 4);
  EXPECT_EQ(sortCol.Item(0), "Tag");
  EXPECT_EQ(sortCol.Item(3), "Status");
  ASSERT_EQ(sortOrder.Count(), 2);
  EXPECT_EQ(sortOrder.Item(0), "Ascending");
  EXPECT_EQ(sortOrder.ItemData(0), -1);
  EXPECT_EQ(sortOrder.Item(1), "Descending");
  EXPECT_EQ(sortOrder.ItemData(1), 0);
}

TEST_F(table_query_dlg, shows_the_sorting_criteria_it_is_given) {
  dialog.SetSortingCriteria("Value", false);
  EXPECT_EQ(sortCol.ListIndex(), 2);
  EXPECT_EQ(sortOrder.ListIndex(), 1);
  EXPECT_EQ(dialog.SortingCriteria(), (platform::SortCriterion{"Value", false}));
  dialog.SetSortingCriteria("Tag", true);
  EXPECT_EQ(dialog.SortingCriteria(), (platform::SortCriterion{"Tag", true}));
}

TEST_F(table_query_dlg, a_sort_column_that_the_server_lost_has_no_entry) {
  dialog.SetSortingCriteria("Gone", true);
  EXPECT_EQ(sortCol.ListIndex(), -1);
  EXPECT_EQ(dialog.SortingCriteria().sColumn, "");
}

TEST_F(table_query_dlg, a_sort_column_is_compared_exactly) {
  dialog.SetSortingCriteria("value", true);
  EXPECT_EQ(sortCol.ListIndex(), -1);
  EXPECT_EQ(sortOrder.ListIndex(), 0) << "the order is shown all the same";
}

TEST_F(table_query_dlg, nothing_is_chosen_for_sorting_before_the_caller_says_so) {
  EXPECT_EQ(sortCol.ListIndex(), -1);
  EXPECT_EQ(sortOrder.ListIndex(), -1);
  EXPECT_EQ(dialog.SortingCriteria(), (platform::SortCriterion{"", false}));
}

TEST_F(table_query_dlg, none_takes_the_selection_of_both_boxes_and_disables_them) {
  dialog.SetSortingCriteria("Value", false);
  dialog.NoSortingCriteria(true);
  EXPECT_EQ(sortCol.ListIndex(), -1);
  EXPECT_EQ(sortOrder.ListIndex(), -1);
  EXPECT_FALSE(sortCol.Enabled());
  EXPECT_FALSE(sortOrder.Enabled());
}

TEST_F(table_query_dlg, unchecking_none_selects_the_first_column_and_ascending) {
  dialog.NoSortingCriteria(true);
  dialog.NoSortingCriteria(false);
  EXPECT_TRUE(sortCol.Enabled());
  EXPECT_TRUE(sortOrder.Enabled());
  EXPECT_EQ(dialog.SortingCriteria(), (platform::SortCriterion{"Tag", true}));
}

TEST_F(table_query_dlg, unchecking_none_without_columns_selects_the_order_alone) {
  dialog.Columns({});
  dialog.UpdateSortColumns();
  dialog.NoSortingCriteria(true);
  dialog.NoSortingCriteria(false);
  EXPECT_EQ(sortCol.ListIndex(), -1);
  EXPECT_EQ(sortOrder.ListIndex(), 0);
}

TEST_F(table_query_dlg, a_chosen_column_that_the_server_lost_stays_chosen) {
  dialog.AddSelectedColumn("Gone");
  dialog.UpdateAvailableColumns();
  EXPECT_EQ(dialog.SelectedColumns(), (Columns{"Value", "Gone"}));
}

TEST_F(table_query_dlg, checking_default_again_brings_its_text_back) {
  dialog.UseDefaultFilter(true);
  dialog.UseDefaultFilter(false);
  filter.Text("Value > 1");
  EXPECT_FALSE(dialog.UseDefaultFilter());
  EXPECT_EQ(dialog.FilterCondition(), "Value > 1");
  dialog.UseDefaultFilter(true);
  EXPECT_EQ(dialog.FilterCondition(), "Timestamp >= '*-1h'");
  EXPECT_EQ(filter.TimesFocused(), 1) << "only unchecking takes the focus";
}

TEST_F(table_query_dlg, cancel_after_an_ok_takes_the_flag_back) {
  forms->WhenShown("TableQueryDlg", [](fakes::FakeForm& shown) {
    shown.Button(shown.TimesShown() == 1 ? "m_btnOk" : "m_btnCancel").Click();
  });
  EXPECT_FALSE(dialog.Ok());
  dialog.ShowModal();
  EXPECT_TRUE(dialog.Ok());
  dialog.ShowModal();
  EXPECT_FALSE(dialog.Ok());
}

TEST_F(table_query_dlg, binds_enter_to_ok_and_escape_to_cancel) {
  EXPECT_EQ(form.DefaultButton(), "m_btnOk");
  EXPECT_EQ(form.CancelButton(), "m_btnCancel");
}

TEST_F(table_query_dlg, ok_sets_the_flag_and_hides) {
  forms->WhenShown("TableQueryDlg", [](fakes::FakeForm& shown) { shown.PressEnter(); });
  dialog.ShowModal();
  EXPECT_TRUE(dialog.Ok());
  EXPECT_FALSE(form.Shown());
}

TEST_F(table_query_dlg, cancel_clears_the_flag_and_hides) {
  forms->WhenShown("TableQueryDlg", [](fakes::FakeForm& shown) { shown.PressEscape(); });
  dialog.ShowModal();
  EXPECT_FALSE(dialog.Ok());
  EXPECT_FALSE(form.Shown());
}

}  // namespace
}  // namespace orvane::dialogs
