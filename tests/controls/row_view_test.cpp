#include "controls/row_view.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include "tests/controls/fake_data.h"

namespace orvane::controls {
namespace {

using platform::RowIndex;
using platform::Value;

const CellFormat kUtcZone;

void Show(RowView& view, QSize size = {600, 400}) {
  view.resize(size);
  view.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
}

void ClickCell(RowView& view, int nRow, int nColumn, Qt::KeyboardModifiers modifiers = {}) {
  QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers,
                    view.visualRect(view.model()->index(nRow, nColumn)).center());
}

void ClickRowNumber(RowView& view, int nRow, Qt::KeyboardModifiers modifiers = {}) {
  const auto* header = view.verticalHeader();
  QTest::mouseClick(
      header->viewport(), Qt::LeftButton, modifiers,
      {header->width() / 2, header->sectionViewportPosition(nRow) + header->sectionSize(nRow) / 2});
}

std::pair<int, int> Current(const RowView& view) {
  return {view.currentIndex().row(), view.currentIndex().column()};
}

std::shared_ptr<FakeRecordset> OneColumn(std::vector<Value> values) {
  const auto nRows = static_cast<RowIndex>(values.size());
  auto rs = std::make_shared<FakeRecordset>(nRows, [values = std::move(values)](auto row, auto) {
    return values[static_cast<std::size_t>(row)];
  });
  rs->Column("a", platform::DataType::WChar);
  return rs;
}

TEST(row_view, painting_a_page_of_a_million_rows_asks_only_for_the_cells_in_sight) {
  RowView view;
  const auto rs = Plant(1'000'000);
  view.ShowRows(rs, kUtcZone);
  Show(view);
  for (const int nTop : {0, 1, 499'999, 999'999}) {
    view.verticalScrollBar()->setValue(nTop);
    QCoreApplication::processEvents();
    rs->TakeCellsAsked();
    rs->TakeRowsAsked();
    view.grab();
    const auto rows = rs->TakeRowsAsked();
    const int nInSight = view.viewport()->height() / view.rowHeight(0) + 1;
    ASSERT_FALSE(rows.empty());
    EXPECT_LE(rows.size(), static_cast<std::size_t>(nInSight));
    EXPECT_EQ(*rows.begin(), view.rowAt(0));
    EXPECT_EQ(rs->TakeCellsAsked(), rows.size() * 4);
  }
}

TEST(row_view, the_first_look_measures_no_more_than_the_first_hundred_rows) {
  RowView view;
  const auto rs = Plant(1'000'000);
  view.ShowRows(rs, kUtcZone);
  EXPECT_LE(rs->TakeCellsAsked(), 400U);
  EXPECT_LT(*rs->TakeRowsAsked().rbegin(), 100);
}

TEST(row_view, typing_a_letter_searches_nothing) {
  RowView view;
  const auto rs = Plant(1'000'000);
  view.ShowRows(rs, kUtcZone);
  Show(view);
  rs->TakeRowsAsked();
  QTest::keyClicks(&view, "zz");
  EXPECT_LE(rs->TakeRowsAsked().size(), 100U);
  EXPECT_EQ(Current(view), std::pair(0, 0));
}

TEST(row_view, starts_at_the_first_cell_with_nothing_selected) {
  RowView view;
  view.ShowRows(Plant(5), kUtcZone);
  EXPECT_EQ(Current(view), std::pair(0, 0));
  EXPECT_FALSE(view.selectionModel()->hasSelection());
  EXPECT_FALSE(view.RowsSelected());
  EXPECT_TRUE(view.HasRows());
}

TEST(row_view, a_click_moves_the_current_cell) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  ClickCell(view, 3, 1);
  EXPECT_EQ(Current(view), std::pair(3, 1));
  EXPECT_FALSE(view.RowsSelected());
}

TEST(row_view, arrow_page_and_end_keys_move_the_current_cell) {
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

TEST(row_view, tab_leaves_the_grid) {
  RowView view;
  view.ShowRows(Plant(5), kUtcZone);
  Show(view);
  QTest::keyClick(&view, Qt::Key_Tab);
  EXPECT_EQ(Current(view), std::pair(0, 0));
}

TEST(row_view, a_click_on_a_row_number_selects_the_row) {
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

TEST(row_view, some_cells_of_a_row_are_no_row) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  ClickCell(view, 1, 0);
  ClickCell(view, 1, 2, Qt::ShiftModifier);
  EXPECT_FALSE(view.RowsSelected());
}

TEST(row_view, a_cell_of_the_only_column_is_no_row_and_its_row_number_is_one) {
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

TEST(row_view, shift_and_space_select_the_current_row) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  ClickCell(view, 3, 2);
  QTest::keyClick(&view, Qt::Key_Space, Qt::ShiftModifier);
  EXPECT_TRUE(view.RowsSelected());
  EXPECT_EQ(Current(view), std::pair(3, 2));
}

TEST(row_view, selecting_everything_of_a_million_rows_reads_none) {
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

TEST(row_view, copies_the_selection_with_the_keys) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  ClickCell(view, 1, 0);
  ClickCell(view, 2, 1, Qt::ShiftModifier);
  QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "1\trow 1\n2\trow 2\n");
  QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "Number\tName\n1\trow 1\n2\trow 2\n");
}

TEST(row_view, more_rows_than_can_be_copied_leave_the_clipboard_alone_and_are_not_read) {
  QGuiApplication::clipboard()->setText("before");
  RowView view;
  QString sWhyNot;
  view.OnCopied([&](const QString& sSentence) { sWhyNot = sSentence; });
  const auto rs = Plant(1'000'000);
  view.ShowRows(rs, kUtcZone);
  view.selectAll();
  rs->TakeCellsAsked();
  view.Copy(false);
  EXPECT_EQ(rs->TakeCellsAsked(), 0U);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "before");
  EXPECT_EQ(sWhyNot.toStdString(),
            "Not copied: 1,000,000 rows are selected, and at most 100,000 rows can be copied at "
            "once. Select fewer.");
  view.SelectRow(7);
  view.Copy(false);
  EXPECT_EQ(sWhyNot, "");
  EXPECT_TRUE(QGuiApplication::clipboard()->text().startsWith("7\trow 7\t"));
}

TEST(row_view, more_text_than_can_be_copied_leaves_the_clipboard_alone) {
  QGuiApplication::clipboard()->setText("before");
  RowView view;
  QString sWhyNot;
  view.OnCopied([&](const QString& sSentence) { sWhyNot = sSentence; });
  const platform::Text sLong(1'000'000, 'x');
  const auto rs = std::make_shared<FakeRecordset>(1'000, [&](auto, auto) { return Value(sLong); });
  rs->Column("a", platform::DataType::WChar);
  view.ShowRows(rs, kUtcZone);
  view.selectAll();
  view.Copy(true);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "before");
  EXPECT_EQ(sWhyNot.toStdString(),
            "Not copied: the selection has more than 32 million characters. Select fewer cells.");
}

TEST(row_view, copies_the_current_cell_without_a_line_end_when_nothing_is_selected) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  view.Copy(false);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "0");
}

TEST(row_view, without_rows_leaves_the_clipboard_alone) {
  QGuiApplication::clipboard()->setText("before");
  RowView view;
  view.Copy(false);
  view.ShowRows(Plant(0), kUtcZone);
  view.Copy(true);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "before");
}

TEST(row_view, the_menu_of_the_rows_copies_and_selects) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  ClickCell(view, 1, 1);
  const QPoint point = view.visualRect(view.currentIndex()).center();
  QContextMenuEvent event(QContextMenuEvent::Mouse, point, view.viewport()->mapToGlobal(point));
  QCoreApplication::sendEvent(view.viewport(), &event);
  auto* menu = view.findChild<QMenu*>();
  ASSERT_NE(menu, nullptr);
  QStringList labels;
  for (const QAction* action : menu->actions()) labels << action->text().section(u'\t', 0, 0);
  EXPECT_EQ(labels, (QStringList{"&Copy", "Copy with Column &Names", "", "Select &All"}));
  menu->actions().at(1)->trigger();
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "Name\nrow 1\n");
  menu->actions().at(3)->trigger();
  EXPECT_TRUE(view.RowsSelected());
  menu->close();
}

TEST(row_view, the_secondary_button_keeps_a_selection_it_hits) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  ClickRowNumber(view, 2);
  const auto point = view.visualRect(view.model()->index(2, 1)).center();
  QTest::mouseClick(view.viewport(), Qt::RightButton, {}, point);
  EXPECT_TRUE(view.RowsSelected());
}

TEST(row_view, columns_are_as_wide_as_their_first_rows_need_within_bounds) {
  RowView view;
  const auto rs = std::make_shared<FakeRecordset>(2, [](auto, auto column) -> Value {
    return column == 0   ? Value("x")
           : column == 1 ? Value("twenty characters..")
                         : Value(platform::Text(5000, 'x'));
  });
  rs->Column("a", platform::DataType::WChar)
      .Column("b", platform::DataType::WChar)
      .Column("c", platform::DataType::WChar);
  view.ShowRows(rs, kUtcZone);
  EXPECT_LT(view.columnWidth(0), view.columnWidth(1));
  EXPECT_LT(view.columnWidth(1), view.columnWidth(2));
  EXPECT_EQ(view.columnWidth(0), 48);
  EXPECT_EQ(view.columnWidth(2), 360);
  EXPECT_GT(view.columnWidth(1), view.fontMetrics().horizontalAdvance("twenty characters.."));
}

TEST(row_view, a_double_click_on_the_edge_of_a_name_fits_the_column) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  const int nFitting = view.columnWidth(1);
  view.setColumnWidth(1, 300);
  auto* header = view.horizontalHeader();
  const QPoint edge(header->sectionViewportPosition(2) - 1, header->height() / 2);
  QTest::mouseMove(header->viewport(), edge);
  QTest::mouseDClick(header->viewport(), Qt::LeftButton, {}, edge);
  EXPECT_NEAR(view.columnWidth(1), nFitting, 2);
}

TEST(row_view, widths_are_kept_for_the_same_columns_and_measured_for_others) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  view.setColumnWidth(1, 222);
  view.ShowRows(nullptr, kUtcZone);
  view.ShowRows(Plant(60), kUtcZone);
  EXPECT_EQ(view.columnWidth(1), 222);
  view.ShowRows(OneColumn({Value("x")}), kUtcZone);
  EXPECT_NE(view.columnWidth(0), 222);
}

TEST(row_view, a_state_comes_back_in_a_fresh_view) {
  const auto rs = Plant(1'000'000);
  RowsState state;
  {
    RowView view;
    view.ShowRows(rs, kUtcZone);
    Show(view);
    view.setColumnWidth(1, 533);
    QCoreApplication::processEvents();
    view.verticalScrollBar()->setValue(700'000);
    ClickCell(view, 700'003, 2);
    ClickCell(view, 700'005, 1, Qt::ControlModifier);
    view.horizontalScrollBar()->setValue(20);
    state = view.State();
  }
  EXPECT_EQ(state.nTopRow, 700'000);
  EXPECT_EQ(state.nLeftOffset, 20);
  RowView fresh;
  fresh.ShowRows(rs, kUtcZone, &state);
  Show(fresh);
  QCoreApplication::processEvents();
  EXPECT_EQ(fresh.verticalScrollBar()->value(), 700'000);
  EXPECT_EQ(fresh.horizontalScrollBar()->value(), 20);
  EXPECT_EQ(fresh.columnWidth(1), 533);
  EXPECT_EQ(Current(fresh), std::pair(700'005, 1));
  EXPECT_EQ(fresh.State().selection, state.selection);
  EXPECT_EQ(state.selection.size(), 2U);
}

TEST(row_view, selected_rows_come_back_as_rows) {
  const auto rs = OneColumn({Value("x"), Value("y")});
  RowView view;
  view.ShowRows(rs, kUtcZone);
  view.SelectRow(1);
  const RowsState state = view.State();
  RowView fresh;
  fresh.ShowRows(rs, kUtcZone, &state);
  EXPECT_TRUE(fresh.RowsSelected());
  EXPECT_EQ(Current(fresh), std::pair(1, 0));
}

TEST(row_view, the_last_page_comes_back_though_the_fresh_view_starts_out_larger) {
  const auto rs = Plant(1'000);
  RowView view;
  view.ShowRows(rs, kUtcZone);
  Show(view, {600, 200});
  view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
  const RowsState state = view.State();
  RowView fresh;
  fresh.resize(600, 2'000);
  fresh.ShowRows(rs, kUtcZone, &state);
  EXPECT_EQ(fresh.State().nTopRow, state.nTopRow);
  Show(fresh, {600, 200});
  QCoreApplication::processEvents();
  EXPECT_EQ(fresh.verticalScrollBar()->value(), state.nTopRow);
}

TEST(row_view, scrolling_by_the_user_ends_the_restored_position) {
  const auto rs = Plant(1'000);
  RowsState state;
  state.nTopRow = 500;
  RowView view;
  view.ShowRows(rs, kUtcZone, &state);
  Show(view);
  ASSERT_EQ(view.verticalScrollBar()->value(), 500);
  view.verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepAdd);
  const int nAfter = view.verticalScrollBar()->value();
  EXPECT_GT(nAfter, 500);
  view.resize(640, 420);
  QCoreApplication::processEvents();
  EXPECT_EQ(view.verticalScrollBar()->value(), nAfter);
}

TEST(row_view, a_state_of_more_rows_than_there_are_is_taken_as_far_as_it_goes) {
  RowsState state;
  state.nCurrentRow = 500;
  state.nCurrentColumn = 9;
  state.selection = {{1, 0, 1, 3}, {400, 0, 500, 3}};
  state.nTopRow = 400;
  state.columnWidths = {100};
  RowView view;
  view.ShowRows(Plant(5), kUtcZone, &state);
  EXPECT_FALSE(view.currentIndex().isValid());
  EXPECT_EQ(view.State().selection, (std::vector<CellRange>{{1, 0, 1, 3}}));
}

TEST(row_view, showing_rows_raises_no_signal_of_the_selection) {
  RowView view;
  view.ShowRows(Plant(5), kUtcZone);
  QSignalSpy current(view.selectionModel(), &QItemSelectionModel::currentChanged);
  QSignalSpy selection(view.selectionModel(), &QItemSelectionModel::selectionChanged);
  view.SelectRow(2);
  EXPECT_EQ(current.count(), 1);
  EXPECT_EQ(selection.count(), 1);
  view.ShowRows(Plant(6), kUtcZone);
  view.ShowRows(nullptr, kUtcZone);
  EXPECT_EQ(current.count(), 1);
  EXPECT_EQ(selection.count(), 1);
}

/// The picture of one cell that is neither current nor selected.
QImage CellPicture(RowView& view, int nRow) {
  return view.viewport()->grab(view.visualRect(view.model()->index(nRow, 0))).toImage();
}

TEST(row_view, null_looks_unlike_the_empty_text_and_unlike_the_text_null) {
  RowView view;
  view.ShowRows(OneColumn({Value("first"), Value(), Value("NULL"), Value(""), Value()}), kUtcZone);
  Show(view);
  const QImage null = CellPicture(view, 1);
  EXPECT_NE(null, CellPicture(view, 2));
  EXPECT_NE(null, CellPicture(view, 3));
  EXPECT_NE(CellPicture(view, 2), CellPicture(view, 3));
  EXPECT_EQ(null, CellPicture(view, 4));
}

TEST(row_view, colours_come_from_the_palette) {
  RowView view;
  QPalette palette = view.palette();
  palette.setColor(QPalette::Base, QColor(10, 20, 30));
  palette.setColor(QPalette::Highlight, QColor(200, 40, 40));
  view.setPalette(palette);
  view.ShowRows(OneColumn({Value("first"), Value("second")}), kUtcZone);
  Show(view);
  const auto corner = [&](int nRow) { return CellPicture(view, nRow).pixelColor(3, 3); };
  EXPECT_EQ(corner(1), QColor(10, 20, 30));
  view.SelectRow(1);
  EXPECT_EQ(corner(1), QColor(200, 40, 40));
}

TEST(row_view, shows_that_it_has_the_keys_with_rows_and_without) {
  RowView view;
  QPalette palette = view.palette();
  palette.setColor(QPalette::Base, QColor(255, 255, 255));
  palette.setColor(QPalette::Highlight, QColor(200, 40, 40));
  view.setPalette(palette);
  Show(view);
  view.clearFocus();
  const auto corner = [&](int nInset) {
    return view.viewport()->grab().toImage().pixelColor(nInset, nInset);
  };
  EXPECT_EQ(corner(0), QColor(255, 255, 255));
  view.activateWindow();
  view.setFocus();
  ASSERT_TRUE(view.hasFocus());
  EXPECT_EQ(corner(0), QColor(200, 40, 40));
  EXPECT_EQ(corner(1), QColor(200, 40, 40));
  EXPECT_EQ(corner(4), QColor(255, 255, 255));
  view.ShowRows(OneColumn({Value("first"), Value("second")}), kUtcZone);
  EXPECT_EQ(corner(0), QColor(200, 40, 40)) << "the first cell is the current one";
  EXPECT_EQ(corner(1), QColor(200, 40, 40));
  EXPECT_EQ(corner(3), QColor(255, 255, 255));
}

}  // namespace
}  // namespace orvane::controls
