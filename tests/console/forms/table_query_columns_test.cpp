// The two lists of the table query builder: which columns are marked and which move.
#include "tests/console/forms/table_query_fixture.h"

namespace orvane::console {
namespace {

struct table_query_columns : TableQueryFixture {};

TEST_F(table_query_columns, a_click_enables_the_button_and_the_button_moves) {
  Show(dialog, [](QWidget& window) {
    EXPECT_FALSE(Enabled(window, "m_btnSelectCol"));
    ClickItem(window, "m_lvAvailableCols", "Status");
    EXPECT_TRUE(Enabled(window, "m_btnSelectCol"));
    Click(window, "m_btnSelectCol");
    EXPECT_EQ(Selected(window), (Names{"Value", "Status"}));
    EXPECT_EQ(Available(window), (Names{"Tag", "Timestamp"}));
    ClickItem(window, "m_lvSelCols", "Value");
    EXPECT_TRUE(Enabled(window, "m_btnDeselectCol"));
    Click(window, "m_btnDeselectCol");
    EXPECT_EQ(Selected(window), (Names{"Status"}));
    EXPECT_EQ(Available(window), (Names{"Tag", "Timestamp", "Value"}));
  });
}

TEST_F(table_query_columns, a_click_of_any_button_enables_the_buttons) {
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

TEST_F(table_query_columns, a_click_beside_the_items_takes_the_choice_away) {
  Show(dialog, [](QWidget& window) {
    ClickItem(window, "m_lvAvailableCols", "Tag");
    ColumnList& list = List(window, "m_lvAvailableCols");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.viewport()->rect().bottomLeft() + QPoint(5, -5));
    EXPECT_FALSE(Enabled(window, "m_btnSelectCol"));
  });
}

TEST_F(table_query_columns, several_items_move_together_in_list_order) {
  Show(dialog, [](QWidget& window) {
    ClickItem(window, "m_lvAvailableCols", "Status");
    ClickItem(window, "m_lvAvailableCols", "Tag", Qt::ControlModifier);
    Click(window, "m_btnSelectCol");
    EXPECT_EQ(Selected(window), (Names{"Value", "Tag", "Status"}));
    EXPECT_EQ(Available(window), (Names{"Timestamp"}));
  });
}

TEST_F(table_query_columns, a_double_click_moves_either_way) {
  Show(dialog, [](QWidget& window) {
    DblClickItem(window, "m_lvAvailableCols", "Timestamp");
    EXPECT_EQ(Selected(window), (Names{"Value", "Timestamp"}));
    EXPECT_EQ(Available(window), (Names{"Tag", "Status"}));
    DblClickItem(window, "m_lvSelCols", "Value");
    EXPECT_EQ(Selected(window), (Names{"Timestamp"}));
    EXPECT_EQ(Available(window), (Names{"Tag", "Status", "Value"}));
  });
}

TEST_F(table_query_columns, a_double_click_beside_the_items_moves_nothing) {
  Show(dialog, [](QWidget& window) {
    ColumnList& list = List(window, "m_lvAvailableCols");
    const QPoint beside = list.viewport()->rect().bottomLeft() + QPoint(5, -5);
    ClickItem(window, "m_lvAvailableCols", "Tag");
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, Qt::ControlModifier, beside);
    EXPECT_EQ(Selected(window), (Names{"Value"}));
  });
}

TEST_F(table_query_columns, a_double_click_of_the_right_button_moves_nothing) {
  Show(dialog, [](QWidget& window) {
    ColumnList& list = List(window, "m_lvAvailableCols");
    QTest::mouseDClick(list.viewport(), Qt::RightButton, {}, At(list, "Tag"));
    EXPECT_EQ(Selected(window), (Names{"Value"}));
  });
}

TEST_F(table_query_columns, keys_choose_and_move) {
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

TEST_F(table_query_columns, space_on_add_moves_one_column_after_the_other) {
  Show(dialog, [](QWidget& window) {
    ClickItem(window, "m_lvAvailableCols", "Timestamp");
    Key(Qt::Key_Tab);
    Key(Qt::Key_Space);
    EXPECT_EQ(Focus(), "m_btnSelectCol");
    EXPECT_EQ(Chosen(window, "m_lvAvailableCols"), (Names{"Status"}));
    Key(Qt::Key_Space);
    EXPECT_EQ(Selected(window), (Names{"Value", "Timestamp", "Status"}));
    // Behind the last row comes the one before it.
    EXPECT_EQ(Chosen(window, "m_lvAvailableCols"), (Names{"Tag"}));
    EXPECT_EQ(Focus(), "m_btnSelectCol");
    Key(Qt::Key_Return);
    EXPECT_EQ(Selected(window), (Names{"Value", "Timestamp", "Status", "Tag"}));
    EXPECT_TRUE(window.isVisible());
  });
}

TEST_F(table_query_columns, another_space_after_the_last_column_moves_nothing_back) {
  Show(dialog, [](QWidget& window) {
    for (const char* const sButton : {"m_btnSelectAllCols", "m_btnSelectCol"}) {
      Key(Qt::Key_A, Qt::ControlModifier);
      Find(window, sButton).setFocus();
      Key(Qt::Key_Space);
      EXPECT_EQ(Available(window), Names{});
      EXPECT_EQ(Focus(), "m_lvAvailableCols");
      Key(Qt::Key_Space);
      EXPECT_EQ(Available(window), Names{});
      Click(window, "m_btnDeselectAllCols");
      List(window, "m_lvAvailableCols").setFocus();
    }
    for (const char* const sButton : {"m_btnDeselectAllCols", "m_btnDeselectCol"}) {
      Click(window, "m_btnSelectAllCols");
      List(window, "m_lvSelCols").setFocus();
      Key(Qt::Key_A, Qt::ControlModifier);
      Find(window, sButton).setFocus();
      Key(Qt::Key_Space);
      EXPECT_EQ(Selected(window), Names{});
      EXPECT_EQ(Focus(), "m_lvSelCols");
      Key(Qt::Key_Space);
      EXPECT_EQ(Selected(window), Names{});
    }
  });
}

TEST_F(table_query_columns, the_next_row_is_in_sight_and_keys_go_on_from_it) {
  dialogs::TableQueryDlg fresh(services);
  std::vector<platform::Text> columns;
  for (int i = 0; i < 100; ++i) columns.push_back("Column" + std::to_string(i));
  fresh.Columns(columns);
  fresh.UpdateAvailableColumns();
  fresh.UpdateButtons();
  Show(fresh, [](QWidget& window) {
    ColumnList& list = List(window, "m_lvAvailableCols");
    for (int i = 0; i < 60; ++i) {
      if (i == 0) ClickItem(window, "m_lvAvailableCols", "Column0");
      Click(window, "m_btnSelectCol");
    }
    EXPECT_EQ(Chosen(window, "m_lvAvailableCols"), (Names{"Column60"}));
    list.setFocus();
    Key(Qt::Key_Down);
    EXPECT_EQ(Chosen(window, "m_lvAvailableCols"), (Names{"Column61"}));
    EXPECT_TRUE(list.viewport()->rect().contains(At(list, "Column61")));
  });
}

TEST_F(table_query_columns, a_letter_goes_to_the_item_and_chooses_it) {
  Show(dialog, [](QWidget& window) {
    Type("s");
    EXPECT_TRUE(Enabled(window, "m_btnSelectCol"));
    Click(window, "m_btnSelectCol");
    EXPECT_EQ(Selected(window), (Names{"Value", "Status"}));
  });
}

TEST_F(table_query_columns, all_columns_move_and_come_back_in_server_order) {
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

TEST_F(table_query_columns, thousands_of_columns_move_at_once) {
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
