// The table query builder on widgets: how it opens, its filter, its order and its keys.
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>

#include "console/look/elided_label.h"
#include "tests/console/forms/table_query_fixture.h"

namespace orvane::console {
namespace {

struct table_query_form : TableQueryFixture {};

TEST_F(table_query_form, opens_on_the_available_columns) {
  Show(dialog, [](QWidget& window) {
    EXPECT_EQ(window.windowTitle(), "Table Query");
    EXPECT_EQ(Focus(), "m_lvAvailableCols");
    EXPECT_EQ(Available(window), (Names{"Tag", "Timestamp", "Status"}));
    EXPECT_EQ(Selected(window), (Names{"Value"}));
    EXPECT_EQ(List(window, "m_lvSelCols").model()->headerData(0, Qt::Horizontal), "Column");
    EXPECT_EQ(Find<QLabel>(window, "m_lblCatalog2").text(), "Plant1");
    EXPECT_EQ(Find<QLabel>(window, "m_lblTable2").text(), "Data");
    EXPECT_EQ(Find<QComboBox>(window, "m_cmbSortCol").currentText(), "Value");
    EXPECT_EQ(Find<QComboBox>(window, "m_cmbSortOrder").currentText(), "Descending");
  });
}

TEST_F(table_query_form, the_default_filter_is_grey_and_locked_and_gives_its_text_back) {
  Show(dialog, [this](QWidget& window) {
    Filter(window).setFocus();
    Type("Value > 1");
    EXPECT_EQ(dialog.FilterCondition(), "Value > 1");
    Click(window, "m_chkDefaultFilterCond");
    EXPECT_EQ(dialog.FilterCondition(), "Timestamp >= '*-1h'");
    EXPECT_EQ(Filter(window).palette().color(QPalette::Text), QColor(128, 128, 128));
    Filter(window).setFocus();
    Type("x");
    Key(Qt::Key_Delete);
    EXPECT_EQ(dialog.FilterCondition(), "Timestamp >= '*-1h'");
    List(window, "m_lvSelCols").setFocus();
    Click(window, "m_chkDefaultFilterCond");
    EXPECT_EQ(Focus(), "m_txtFilterCond");
    EXPECT_EQ(dialog.FilterCondition(), "Timestamp >= '*-1h'");
    EXPECT_EQ(Filter(window).palette().color(QPalette::Text),
              window.palette().color(QPalette::Text));
    Key(Qt::Key_End, Qt::ControlModifier);
    Type("!");
    EXPECT_EQ(dialog.FilterCondition(), "Timestamp >= '*-1h'!");
  });
}

TEST_F(table_query_form, a_locked_filter_can_be_copied_by_keys) {
  dialog.UseDefaultFilter(true);
  Show(dialog, [](QWidget& window) {
    Filter(window).setFocus();
    Key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(Filter(window).textCursor().selectedText(), "Timestamp >= '*-1h'");
  });
}

TEST_F(table_query_form, access_keys_reach_default_none_and_cancel) {
  Show(dialog, [this](QWidget& window) {
    EXPECT_TRUE(AccessKey(Qt::Key_D, [&] { return dialog.UseDefaultFilter(); }));
    EXPECT_TRUE(AccessKey(Qt::Key_N, [&] { return dialog.NoSortingCriteria(); }));
    EXPECT_TRUE(AccessKey(Qt::Key_C, [&] { return !window.isVisible(); }));
  });
  EXPECT_FALSE(dialog.Ok());
}

TEST_F(table_query_form, no_sorting_empties_both_boxes_and_sorting_takes_the_first_entries) {
  Show(dialog, [](QWidget& window) {
    auto& column = Find<QComboBox>(window, "m_cmbSortCol");
    auto& order = Find<QComboBox>(window, "m_cmbSortOrder");
    Click(window, "m_chkNoSortingCriteria");
    EXPECT_EQ(column.currentText(), "");
    EXPECT_EQ(order.currentText(), "");
    EXPECT_FALSE(column.isEnabled());
    EXPECT_FALSE(order.isEnabled());
    Click(window, "m_chkNoSortingCriteria");
    EXPECT_EQ(column.currentText(), "Tag");
    EXPECT_EQ(order.currentText(), "Ascending");
    EXPECT_TRUE(column.isEnabled());
    EXPECT_TRUE(order.isEnabled());
  });
}

TEST_F(table_query_form, nothing_is_chosen_for_a_sort_column_that_is_gone) {
  dialogs::TableQueryDlg fresh(services);
  fresh.Columns({"Tag", "Value"});
  fresh.AddSelectedColumn("Gone");
  fresh.UpdateAvailableColumns();
  fresh.UpdateSortColumns();
  fresh.SetSortingCriteria("Gone", true);
  fresh.UpdateButtons();
  Show(fresh, [](QWidget& window) {
    EXPECT_EQ(Selected(window), (Names{"Gone"}));
    EXPECT_EQ(Find<QComboBox>(window, "m_cmbSortCol").currentIndex(), -1);
    EXPECT_EQ(Find<QComboBox>(window, "m_cmbSortOrder").currentText(), "Ascending");
  });
}

TEST_F(table_query_form, sort_boxes_are_driven_by_keys) {
  Show(dialog, [this](QWidget& window) {
    Find(window, "m_cmbSortCol").setFocus();
    Key(Qt::Key_Home);
    EXPECT_EQ(dialog.SortingCriteria().sColumn, "Tag");
    Key(Qt::Key_Tab);
    EXPECT_EQ(Focus(), "m_cmbSortOrder");
    Key(Qt::Key_Up);
    EXPECT_TRUE(dialog.SortingCriteria().bAscending);
  });
}

TEST_F(table_query_form, enter_accepts_from_every_control_that_is_no_button) {
  for (const char* const sControl :
       {"m_lvAvailableCols", "m_lvSelCols", "m_txtFilterCond", "m_chkDefaultFilterCond",
        "m_cmbSortCol", "m_chkNoSortingCriteria", "m_btnOk"}) {
    dialogs::TableQueryDlg fresh(services);
    fresh.Columns({"Tag", "Value"});
    fresh.AddSelectedColumn("Value");
    fresh.UpdateAvailableColumns();
    fresh.UpdateSortColumns();
    fresh.UpdateButtons();
    Show(fresh, [&](QWidget& window) {
      Find(window, sControl).setFocus();
      ASSERT_EQ(Focus(), sControl);
      Key(Qt::Key_Return);
      EXPECT_FALSE(window.isVisible()) << sControl;
    });
    EXPECT_TRUE(fresh.Ok()) << sControl;
    EXPECT_EQ(fresh.SelectedColumns(), Names{"Value"});
    EXPECT_FALSE(fresh.UseDefaultFilter());
  }
}

TEST_F(table_query_form, escape_cancels_from_every_control) {
  for (const char* const sControl : {"m_lvAvailableCols", "m_btnSelectAllCols", "m_txtFilterCond",
                                     "m_chkDefaultFilterCond", "m_cmbSortCol"}) {
    Show(dialog, [&](QWidget& window) {
      Find(window, sControl).setFocus();
      Key(Qt::Key_Escape);
      EXPECT_FALSE(window.isVisible()) << sControl;
    });
    EXPECT_FALSE(dialog.Ok()) << sControl;
  }
}

TEST_F(table_query_form, shift_enter_breaks_the_line_of_the_filter_and_tab_leaves_it) {
  Show(dialog, [this](QWidget& window) {
    Filter(window).setFocus();
    Type("Value > 1");
    Key(Qt::Key_Return, Qt::ShiftModifier);
    Type("AND Tag = 'x'");
    EXPECT_EQ(dialog.FilterCondition(), "Value > 1\nAND Tag = 'x'");
    Key(Qt::Key_Tab);
    EXPECT_EQ(Focus(), "m_chkDefaultFilterCond");
    Key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(Focus(), "m_txtFilterCond");
    EXPECT_TRUE(window.isVisible());
  });
}

TEST_F(table_query_form, a_filter_that_is_only_looked_at_comes_back_byte_for_byte) {
  const platform::Text sText = "Value >\xC2\xA0\x31\r\nAND\tTag = 'x'";
  dialog.FilterCondition(sText);
  Show(dialog, [&](QWidget&) {
    QFont larger = QApplication::font();
    larger.setPointSize(larger.pointSize() + 1);
    const QFont before = QApplication::font();
    QApplication::setFont(larger);
    QApplication::processEvents();
    QApplication::setFont(before);
    EXPECT_EQ(dialog.FilterCondition(), sText);
  });
  EXPECT_EQ(dialog.FilterCondition(), sText);
}

TEST_F(table_query_form, a_no_break_space_survives_typing_beside_it) {
  dialog.FilterCondition("a\xC2\xA0z");
  Show(dialog, [](QWidget& window) {
    Filter(window).setFocus();
    Key(Qt::Key_End, Qt::ControlModifier);
    Type("!");
  });
  EXPECT_EQ(dialog.FilterCondition(), "a\xC2\xA0z!");
}

TEST_F(table_query_form, tab_visits_every_control_in_reading_order) {
  Show(dialog, [](QWidget& window) {
    ClickItem(window, "m_lvSelCols", "Value");
    ClickItem(window, "m_lvAvailableCols", "Tag");
    for (const char* const sNext :
         {"m_btnSelectCol", "m_btnSelectAllCols", "m_btnDeselectCol", "m_btnDeselectAllCols",
          "m_lvSelCols", "m_txtFilterCond", "m_chkDefaultFilterCond", "m_cmbSortCol",
          "m_cmbSortOrder", "m_chkNoSortingCriteria", "m_btnOk", "m_btnCancel",
          "m_lvAvailableCols"}) {
      Key(Qt::Key_Tab);
      EXPECT_EQ(Focus(), sNext);
    }
  });
}

TEST_F(table_query_form, the_lists_share_what_the_form_grows_by) {
  Show(dialog, [](QWidget& window) {
    const QSize left = List(window, "m_lvAvailableCols").size();
    const QSize right = List(window, "m_lvSelCols").size();
    const int iFilter = Filter(window).height();
    EXPECT_LE(std::abs(left.width() - right.width()), 1);
    window.resize(window.size() + QSize(100, 60));
    QApplication::processEvents();
    EXPECT_NEAR(List(window, "m_lvAvailableCols").width(), left.width() + 50, 1);
    EXPECT_NEAR(List(window, "m_lvSelCols").width(), right.width() + 50, 1);
    EXPECT_EQ(List(window, "m_lvAvailableCols").height(), left.height() + 60);
    EXPECT_EQ(Filter(window).height(), iFilter);
    const QWidget& button = Find(window, "m_btnSelectCol");
    EXPECT_GT(button.x(), List(window, "m_lvAvailableCols").geometry().right());
    EXPECT_LT(button.geometry().right(), List(window, "m_lvSelCols").x());
  });
}

TEST_F(table_query_form, a_name_of_any_length_is_shown_as_it_is_and_does_not_widen_the_form) {
  int iUsual = 0;
  Show(dialog, [&](QWidget& window) { iUsual = window.width(); });
  dialogs::TableQueryDlg fresh(services);
  fresh.CatalogLabel("<b>R&D</b> " + std::string(300, 'x'));
  Show(fresh, [&](QWidget& window) {
    EXPECT_EQ(window.width(), iUsual);
    const auto& label = Find<QLabel>(window, "m_lblCatalog2");
    EXPECT_TRUE(label.text().startsWith("<b>R&D</b> "));
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
    // The "&D" of the name takes no key from "&Default".
    EXPECT_TRUE(AccessKey(Qt::Key_D, [&] { return fresh.UseDefaultFilter(); }));
  });
}

}  // namespace
}  // namespace orvane::console
