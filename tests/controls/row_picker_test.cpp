#include "controls/view/row_picker.h"

#include <gtest/gtest.h>

#include <QScrollBar>

#include "tests/controls/row_view_fixture.h"

namespace orvane::controls {
namespace {

TEST(row_picker, typing_a_letter_searches_nothing) {
  RowView view;
  const auto rs = Plant(1'000'000);
  view.ShowRows(rs, kUtcZone);
  Show(view);
  rs->TakeRowsAsked();
  QTest::keyClicks(&view, "zz");
  EXPECT_LE(rs->TakeRowsAsked().size(), 100U);
  EXPECT_EQ(Current(view), std::pair(0, 0));
}

TEST(row_picker, starts_at_the_first_cell_with_nothing_selected) {
  RowView view;
  view.ShowRows(Plant(5), kUtcZone);
  EXPECT_EQ(Current(view), std::pair(0, 0));
  EXPECT_FALSE(view.selectionModel()->hasSelection());
  EXPECT_FALSE(view.RowsSelected());
  EXPECT_TRUE(view.HasRows());
}

TEST(row_picker, a_click_moves_the_current_cell) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  ClickCell(view, 3, 1);
  EXPECT_EQ(Current(view), std::pair(3, 1));
  EXPECT_FALSE(view.RowsSelected());
}

TEST(row_picker, arrow_page_and_end_keys_move_the_current_cell) {
  RowView view;
  view.ShowRows(Plant(1'000), kUtcZone);
  Show(view);
  QTest::keyClick(&view, Qt::Key_Down);
  QTest::keyClick(&view, Qt::Key_Right);
  EXPECT_EQ(Current(view), std::pair(1, 1));
  QTest::keyClick(&view, Qt::Key_PageDown);
  EXPECT_GT(Current(view).first, 5);
  QTest::keyClick(&view, Qt::Key_End);
  EXPECT_EQ(Current(view).second, 3);
  QTest::keyClick(&view, Qt::Key_End, Qt::ControlModifier);
  EXPECT_EQ(Current(view).first, 999);
  QTest::keyClick(&view, Qt::Key_Home, Qt::ControlModifier);
  EXPECT_EQ(Current(view), std::pair(0, 0));
}

TEST(row_picker, tab_leaves_the_grid) {
  RowView view;
  view.ShowRows(Plant(5), kUtcZone);
  Show(view);
  QTest::keyClick(&view, Qt::Key_Tab);
  EXPECT_EQ(Current(view), std::pair(0, 0));
}

TEST(row_picker, a_click_on_a_row_number_selects_the_row) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  ClickRowNumber(view, 2);
  EXPECT_TRUE(view.RowsSelected());
  ClickRowNumber(view, 4, Qt::ShiftModifier);
  const auto selection = view.State().selection;
  EXPECT_EQ(selection, (std::vector<CellRange>{{2, 0, 4, 3}}));
  ClickCell(view, 1, 1);
  EXPECT_FALSE(view.RowsSelected());
}

TEST(row_picker, some_cells_of_a_row_are_no_row) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  ClickCell(view, 1, 0);
  ClickCell(view, 1, 2, Qt::ShiftModifier);
  EXPECT_FALSE(view.RowsSelected());
}

TEST(row_picker, a_cell_of_the_only_column_is_no_row_and_its_row_number_is_one) {
  RowView view;
  view.ShowRows(OneColumn({Value("x"), Value("y")}), kUtcZone);
  Show(view);
  ClickCell(view, 1, 0);
  EXPECT_TRUE(view.selectionModel()->hasSelection());
  EXPECT_FALSE(view.RowsSelected());
  ClickRowNumber(view, 1);
  EXPECT_TRUE(view.RowsSelected());
  QTest::keyClick(&view, Qt::Key_Up);
  EXPECT_FALSE(view.RowsSelected());
  QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
  EXPECT_TRUE(view.RowsSelected());
}

TEST(row_picker, shift_and_space_select_the_current_row) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  ClickCell(view, 3, 2);
  QTest::keyClick(&view, Qt::Key_Space, Qt::ShiftModifier);
  EXPECT_TRUE(view.RowsSelected());
  EXPECT_EQ(Current(view), std::pair(3, 2));
}

TEST(row_picker, selecting_everything_of_a_million_rows_reads_none) {
  RowView view;
  const auto rs = Plant(1'000'000);
  view.ShowRows(rs, kUtcZone);
  Show(view);
  QCoreApplication::processEvents();
  rs->TakeRowsAsked();
  QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
  QCoreApplication::processEvents();
  EXPECT_TRUE(view.RowsSelected());
  EXPECT_LE(rs->TakeRowsAsked().size(), 100U);
}

TEST(row_picker, the_secondary_button_keeps_a_selection_it_hits) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  ClickRowNumber(view, 2);
  const auto point = view.visualRect(view.model()->index(2, 1)).center();
  QTest::mouseClick(view.viewport(), Qt::RightButton, {}, point);
  EXPECT_TRUE(view.RowsSelected());
}

TEST(row_picker, a_selection_goes_over_a_hundred_and_fifty_million_rows) {
  RowView view;
  const auto rs = Plant(kMany);
  view.ShowRows(rs, kUtcZone);
  Show(view);
  ClickCell(view, 2, 1);
  view.verticalScrollBar()->setValue(150'000'000);
  rs->TakeRowsAsked();
  ClickCell(view, 150'000'003, 2, Qt::ShiftModifier);
  EXPECT_EQ(view.State().selection, (std::vector<CellRange>{{2, 1, 150'000'003, 2}}));
  QTest::keyClick(&view, Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(view.State().selection, (std::vector<CellRange>{{2, 1, 150'000'004, 2}}));
  QTest::keyClick(&view, Qt::Key_Home, Qt::ShiftModifier | Qt::ControlModifier);
  EXPECT_EQ(view.State().selection, (std::vector<CellRange>{{0, 0, 2, 1}}));
  ClickRowNumber(view, 1);
  view.verticalScrollBar()->setValue(kMany);
  ClickRowNumber(view, kMany - 1, Qt::ShiftModifier);
  EXPECT_EQ(view.State().selection, (std::vector<CellRange>{{1, 0, kMany - 1, 3}}));
  EXPECT_TRUE(view.RowsSelected());
  EXPECT_LE(rs->TakeRowsAsked().size(), 200U);
}

TEST(row_picker, a_column_of_many_rows_is_selected_and_painted_without_asking_for_them) {
  RowView view;
  const auto rs = Plant(RowModel::kMaxRows);
  view.ShowRows(rs, kUtcZone);
  Show(view);
  rs->TakeRowsAsked();
  ClickColumnName(view, 2);
  ClickColumnName(view, 1, Qt::ShiftModifier);
  view.grab();
  EXPECT_EQ(view.State().selection, (std::vector<CellRange>{{0, 1, RowModel::kMaxRows - 1, 2}}));
  EXPECT_EQ(Current(view), std::pair(0, 1));
  EXPECT_LE(rs->TakeRowsAsked().size(), 100U);
}

TEST(row_picker, a_drag_selects_the_cells_it_goes_over) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  const auto at = [&](int nRow, int nColumn) {
    return view.visualRect(view.model()->index(nRow, nColumn)).center();
  };
  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, at(4, 2));
  QTest::mouseMove(view.viewport(), at(3, 1));
  QMouseEvent move(QEvent::MouseMove, at(2, 1), view.viewport()->mapToGlobal(at(2, 1)),
                   Qt::NoButton, Qt::LeftButton, {});
  QCoreApplication::sendEvent(view.viewport(), &move);
  QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, at(2, 1));
  EXPECT_EQ(view.State().selection, (std::vector<CellRange>{{2, 1, 4, 2}}));
}

TEST(row_picker, row_numbers_are_gone_over_and_added_to_a_selection) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  auto& numbers = view.Numbers();
  const auto at = [&](int nRow) { return QPoint(5, numbers.YOf(nRow) + 5); };
  QTest::mousePress(&numbers, Qt::LeftButton, {}, at(5));
  QMouseEvent move(QEvent::MouseMove, at(3), numbers.mapToGlobal(at(3)), Qt::NoButton,
                   Qt::LeftButton, {});
  QCoreApplication::sendEvent(&numbers, &move);
  QTest::mouseRelease(&numbers, Qt::LeftButton, {}, at(3));
  EXPECT_EQ(view.State().selection, (std::vector<CellRange>{{3, 0, 5, 3}}));
  ClickRowNumber(view, 9, Qt::ControlModifier);
  EXPECT_EQ(view.State().selection.size(), 2U);
  QTest::mouseClick(&numbers, Qt::LeftButton, {}, {3, 3});
  EXPECT_EQ(view.State().selection, (std::vector<CellRange>{{0, 0, 49, 3}})) << "the corner";
}

TEST(row_picker, keys_and_blocks_follow_columns_that_were_moved_and_leave_out_hidden_ones) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  view.Names().moveSection(3, 1);  // Number, Timestamp, Name, Flag
  ClickCell(view, 0, 0);
  QTest::keyClick(&view, Qt::Key_Right);
  EXPECT_EQ(Current(view), std::pair(0, 3));
  QTest::keyClick(&view, Qt::Key_Left);
  QTest::keyClick(&view, Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_EQ(view.State().selection, (std::vector<CellRange>{{0, 0, 0, 0}, {0, 3, 0, 3}}));
  view.Names().hideSection(3);
  ClickCell(view, 0, 0);
  QTest::keyClick(&view, Qt::Key_Right);
  EXPECT_EQ(Current(view), std::pair(0, 1));
}

}  // namespace
}  // namespace orvane::controls
