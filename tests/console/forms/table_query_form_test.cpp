#include <QCheckBox>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QPushButton>

#include "console/forms/column_list.h"
#include "console/forms/elided_label.h"
#include "dialogs/table_query_dlg.h"
#include "tests/console/forms/forms_fixture.h"

namespace orvane::console {
namespace {

using Names = std::vector<std::string>;

struct table_query_form : FormsFixture {
  table_query_form() {
    dialog.Columns({"Tag", "Timestamp", "Value", "Status"});
    dialog.CatalogLabel("Plant1");
    dialog.TableLabel("Data");
    dialog.AddSelectedColumn("Value");
    dialog.UpdateAvailableColumns();
    dialog.DefaultFilterCondition("Timestamp >= '*-1h'");
    dialog.UpdateSortColumns();
    dialog.SetSortingCriteria("Value", false);
    dialog.UpdateButtons();
  }

  static ColumnList& List(QWidget& window, const char* sName) {
    auto* const list = dynamic_cast<ColumnList*>(&Find(window, sName));
    if (!list) throw std::runtime_error(std::string("no list named ") + sName);
    return *list;
  }
  static QPoint At(ColumnList& list, const char* sItem) {
    const QModelIndexList found =
        list.model()->match(list.model()->index(0, 0), Qt::DisplayRole, QLatin1String(sItem), 1,
                            Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (found.isEmpty()) throw std::runtime_error(std::string("no item ") + sItem);
    return list.visualRect(found.front()).center();
  }
  static void ClickItem(QWidget& window, const char* sList, const char* sItem,
                        Qt::KeyboardModifiers modifiers = {}) {
    ColumnList& list = List(window, sList);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, modifiers, At(list, sItem));
  }
  static void DblClickItem(QWidget& window, const char* sList, const char* sItem) {
    ColumnList& list = List(window, sList);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, At(list, sItem));
  }
  static Names Items(QWidget& window, const char* sList) {
    const ColumnListModel& names = List(window, sList).Names();
    Names items;
    for (int i = 0; i < names.rowCount(); ++i) items.push_back(names.At(i));
    return items;
  }
  static Names Available(QWidget& window) { return Items(window, "m_lvAvailableCols"); }
  static Names Selected(QWidget& window) { return Items(window, "m_lvSelCols"); }
  static bool Enabled(QWidget& window, const char* sButton) {
    return Find(window, sButton).isEnabled();
  }
  static QPlainTextEdit& Filter(QWidget& window) {
    return Find<QPlainTextEdit>(window, "m_txtFilterCond");
  }

  dialogs::TableQueryDlg dialog{services};
};

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

TEST_F(table_query_form, a_click_enables_the_button_and_the_button_moves) {
  Show(dialog, [](QWidget& window) {
    EXPECT_FALSE(Enabled(window, "m_btnSelectCol"));
    ClickItem(window, "m_lvAvailableCols", "Status");
    EXPECT_TRUE(Enabled(window, "m_btnSelectCol"));
    Click(window, "m_btnSelectCol");
    EXPECT_EQ(Selected(window), (Names{"Value", "Status"}));
    EXPECT_EQ(Available(window), (Names{"Tag", "Timestamp"}));
    EXPECT_FALSE(Enabled(window, "m_btnSelectCol"));
    ClickItem(window, "m_lvSelCols", "Value");
    EXPECT_TRUE(Enabled(window, "m_btnDeselectCol"));
    Click(window, "m_btnDeselectCol");
    EXPECT_EQ(Selected(window), (Names{"Status"}));
    EXPECT_EQ(Available(window), (Names{"Tag", "Timestamp", "Value"}));
  });
}

TEST_F(table_query_form, a_click_of_any_button_enables_the_buttons) {
  Show(dialog, [](QWidget& window) {
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
      ColumnList& available = List(window, "m_lvAvailableCols");
      ColumnList& selected = List(window, "m_lvSelCols");
      QTest::mouseClick(available.viewport(), button, {}, At(available, "Status"));
      EXPECT_TRUE(Enabled(window, "m_btnSelectCol")) << button;
      EXPECT_FALSE(Enabled(window, "m_btnDeselectCol")) << button;
      QTest::mouseClick(selected.viewport(), button, {}, At(selected, "Value"));
      EXPECT_TRUE(Enabled(window, "m_btnDeselectCol")) << button;
      // Taken away again, so that the next button has something to do.
      for (ColumnList* const list : {&available, &selected}) {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->viewport()->rect().bottomLeft() + QPoint(5, -5));
      }
      EXPECT_FALSE(Enabled(window, "m_btnSelectCol")) << button;
      EXPECT_FALSE(Enabled(window, "m_btnDeselectCol")) << button;
    }
  });
}

TEST_F(table_query_form, a_click_beside_the_items_takes_the_choice_away) {
  Show(dialog, [](QWidget& window) {
    ClickItem(window, "m_lvAvailableCols", "Tag");
    ColumnList& list = List(window, "m_lvAvailableCols");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.viewport()->rect().bottomLeft() + QPoint(5, -5));
    EXPECT_FALSE(Enabled(window, "m_btnSelectCol"));
  });
}

TEST_F(table_query_form, several_items_move_together_in_list_order) {
  Show(dialog, [](QWidget& window) {
    ClickItem(window, "m_lvAvailableCols", "Status");
    ClickItem(window, "m_lvAvailableCols", "Tag", Qt::ControlModifier);
    Click(window, "m_btnSelectCol");
    EXPECT_EQ(Selected(window), (Names{"Value", "Tag", "Status"}));
    EXPECT_EQ(Available(window), (Names{"Timestamp"}));
  });
}

TEST_F(table_query_form, a_double_click_moves_either_way) {
  Show(dialog, [](QWidget& window) {
    DblClickItem(window, "m_lvAvailableCols", "Timestamp");
    EXPECT_EQ(Selected(window), (Names{"Value", "Timestamp"}));
    EXPECT_EQ(Available(window), (Names{"Tag", "Status"}));
    EXPECT_FALSE(Enabled(window, "m_btnSelectCol"));
    DblClickItem(window, "m_lvSelCols", "Value");
    EXPECT_EQ(Selected(window), (Names{"Timestamp"}));
    EXPECT_EQ(Available(window), (Names{"Tag", "Status", "Value"}));
  });
}

TEST_F(table_query_form, a_double_click_beside_the_items_moves_nothing) {
  Show(dialog, [](QWidget& window) {
    ColumnList& list = List(window, "m_lvAvailableCols");
    const QPoint beside = list.viewport()->rect().bottomLeft() + QPoint(5, -5);
    ClickItem(window, "m_lvAvailableCols", "Tag");
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, Qt::ControlModifier, beside);
    EXPECT_EQ(Selected(window), (Names{"Value"}));
  });
}

TEST_F(table_query_form, a_double_click_of_the_right_button_moves_nothing) {
  Show(dialog, [](QWidget& window) {
    ColumnList& list = List(window, "m_lvAvailableCols");
    QTest::mouseDClick(list.viewport(), Qt::RightButton, {}, At(list, "Tag"));
    EXPECT_EQ(Selected(window), (Names{"Value"}));
  });
}

TEST_F(table_query_form, keys_choose_and_move) {
  Show(dialog, [](QWidget& window) {
    Key(Qt::Key_Space);
    EXPECT_TRUE(Enabled(window, "m_btnSelectCol"));
    Key(Qt::Key_Down, Qt::ShiftModifier);
    Key(Qt::Key_Tab);
    EXPECT_EQ(Focus(), "m_btnSelectCol");
    Key(Qt::Key_Space);
    EXPECT_EQ(Selected(window), (Names{"Value", "Tag", "Timestamp"}));
    List(window, "m_lvSelCols").setFocus();
    Key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_TRUE(Enabled(window, "m_btnDeselectCol"));
  });
}

TEST_F(table_query_form, a_letter_goes_to_the_item_and_chooses_it) {
  Show(dialog, [](QWidget& window) {
    Type("s");
    EXPECT_TRUE(Enabled(window, "m_btnSelectCol"));
    Click(window, "m_btnSelectCol");
    EXPECT_EQ(Selected(window), (Names{"Value", "Status"}));
  });
}

TEST_F(table_query_form, all_columns_move_and_come_back_in_server_order) {
  Show(dialog, [](QWidget& window) {
    Click(window, "m_btnSelectAllCols");
    EXPECT_EQ(Selected(window), (Names{"Value", "Tag", "Timestamp", "Status"}));
    EXPECT_FALSE(Enabled(window, "m_btnSelectAllCols"));
    EXPECT_TRUE(Enabled(window, "m_btnOk"));
    Click(window, "m_btnDeselectAllCols");
    EXPECT_EQ(Available(window), (Names{"Tag", "Timestamp", "Value", "Status"}));
    EXPECT_EQ(Selected(window), Names{});
    for (const char* const sButton : {"m_btnDeselectCol", "m_btnDeselectAllCols", "m_btnOk"}) {
      EXPECT_FALSE(Enabled(window, sButton)) << sButton;
    }
    Key(Qt::Key_Return);
    EXPECT_TRUE(window.isVisible());
  });
  EXPECT_FALSE(dialog.Ok());
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

TEST_F(table_query_form, enter_accepts_from_every_control) {
  for (const char* const sControl :
       {"m_lvAvailableCols", "m_btnSelectAllCols", "m_lvSelCols", "m_txtFilterCond",
        "m_chkDefaultFilterCond", "m_cmbSortCol", "m_chkNoSortingCriteria", "m_btnOk"}) {
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

TEST_F(table_query_form, thousands_of_columns_move_at_once) {
  dialogs::TableQueryDlg fresh(services);
  std::vector<platform::Text> columns;
  for (int i = 0; i < 3000; ++i) columns.push_back("Column" + std::to_string(i));
  fresh.Columns(columns);
  fresh.UpdateAvailableColumns();
  fresh.UpdateSortColumns();
  fresh.UpdateButtons();
  Show(fresh, [&](QWidget& window) {
    Key(Qt::Key_A, Qt::ControlModifier);
    Click(window, "m_btnSelectCol");
    EXPECT_EQ(Selected(window), columns);
    EXPECT_EQ(Available(window), Names{});
  });
}

}  // namespace
}  // namespace orvane::console
