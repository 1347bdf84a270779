#include "controls/view/row_area.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QScrollBar>
#include <QWheelEvent>

#include "tests/controls/row_view_fixture.h"

namespace orvane::controls {
namespace {

TEST(row_area, painting_a_page_of_a_million_rows_asks_only_for_the_cells_in_sight) {
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
    const int nInSight = view.viewport()->height() / view.RowHeight() + 1;
    ASSERT_FALSE(rows.empty());
    EXPECT_LE(rows.size(), static_cast<std::size_t>(nInSight));
    EXPECT_EQ(*rows.begin(), view.TopRow());
    EXPECT_LE(rs->TakeCellsAsked(), rows.size() * 5) << "times once more, for their digits";
  }
}

TEST(row_area, the_first_look_measures_no_more_than_the_first_hundred_rows) {
  RowView view;
  const auto rs = Plant(1'000'000);
  view.ShowRows(rs, kUtcZone);
  EXPECT_LE(rs->TakeCellsAsked(), 500U) << "times once more, for their digits";
  EXPECT_LT(*rs->TakeRowsAsked().rbegin(), 100);
}

TEST(row_area, columns_are_as_wide_as_their_first_rows_need_within_bounds) {
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
  EXPECT_LT(view.ColumnWidth(0), view.ColumnWidth(1));
  EXPECT_LT(view.ColumnWidth(1), view.ColumnWidth(2));
  EXPECT_EQ(view.ColumnWidth(0), 48);
  EXPECT_EQ(view.ColumnWidth(2), view.WidthOf(52));
  EXPECT_GT(view.ColumnWidth(1), view.fontMetrics().horizontalAdvance("twenty characters.."));
}

TEST(row_area, columns_are_bounded_by_characters_and_not_by_dots) {
  const auto widths = [](int nPixels) {
    RowView view;
    QFont font = view.font();
    font.setPixelSize(nPixels);
    view.setFont(font);
    const auto rs = std::make_shared<FakeRecordset>(
        2, [](auto, auto) { return Value(platform::Text(5000, 'x')); });
    rs->Column("a", platform::DataType::WChar)
        .Column(platform::Text(5000, 'n'), platform::DataType::WChar);
    view.ShowRows(rs, kUtcZone);
    return std::pair(view.ColumnWidth(0), view.Names().sectionSizeHint(1));
  };
  const auto [nUsual, nUsualName] = widths(13);
  const auto [nDouble, nDoubleName] = widths(26);
  // Letters are not exactly twice as wide at twice the height.
  EXPECT_NEAR(nDouble, 2 * nUsual, 0.25 * nUsual);
  EXPECT_NEAR(nDoubleName, 2 * nUsualName, 0.25 * nUsualName);
}

TEST(row_area, a_double_click_on_the_edge_of_a_name_fits_the_column) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  Show(view);
  const int nFitting = view.ColumnWidth(1);
  view.ColumnWidth(1, 300);
  auto* header = &view.Names();
  const QPoint edge(header->sectionViewportPosition(2) - 1, header->height() / 2);
  QTest::mouseMove(header->viewport(), edge);
  QTest::mouseDClick(header->viewport(), Qt::LeftButton, {}, edge);
  EXPECT_NEAR(view.ColumnWidth(1), nFitting, 2);
}

TEST(row_area, widths_are_kept_for_the_same_columns_and_measured_for_others) {
  RowView view;
  view.ShowRows(Plant(50), kUtcZone);
  view.ColumnWidth(1, 222);
  view.ShowRows(nullptr, kUtcZone);
  view.ShowRows(Plant(60), kUtcZone);
  EXPECT_EQ(view.ColumnWidth(1), 222);
  view.ShowRows(OneColumn({Value("x")}), kUtcZone);
  EXPECT_NE(view.ColumnWidth(0), 222);
}

TEST(row_area, any_of_two_hundred_million_rows_comes_into_sight) {
  RowView view;
  const auto rs = Plant(kMany);
  view.ShowRows(rs, kUtcZone);
  Show(view);
  QScrollBar* bar = view.verticalScrollBar();
  EXPECT_EQ(bar->maximum(), kMany - view.RowsInSight());
  EXPECT_EQ(bar->pageStep(), view.RowsInSight());
  for (const int nRow : {0, 1, 150'000'000, 199'999'999, 77}) {
    const QModelIndex index = view.model()->index(nRow, 1);
    view.scrollTo(index);
    const QRect rect = view.visualRect(index);
    EXPECT_TRUE(view.viewport()->rect().contains(rect)) << nRow;
    EXPECT_EQ(view.indexAt(rect.center()), index) << nRow;
    rs->TakeRowsAsked();
    view.grab();
    EXPECT_TRUE(rs->TakeRowsAsked().contains(nRow)) << nRow;
  }
}

TEST(row_area, the_wheel_and_the_bar_go_by_rows_wherever_they_are) {
  RowView view;
  view.ShowRows(Plant(kMany), kUtcZone);
  Show(view);
  QScrollBar* bar = view.verticalScrollBar();
  bar->setSliderPosition(kMany / 2);
  EXPECT_EQ(view.TopRow(), kMany / 2);
  bar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
  EXPECT_EQ(view.TopRow(), kMany / 2 + 1);
  bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
  EXPECT_EQ(view.TopRow(), kMany / 2 + 1 + view.RowsInSight());
  const QPoint middle = view.viewport()->rect().center();
  QWheelEvent wheel(middle, view.viewport()->mapToGlobal(middle), {}, {0, -120}, {}, {},
                    Qt::NoScrollPhase, false);
  const int nBefore = view.TopRow();
  QCoreApplication::sendEvent(view.viewport(), &wheel);
  EXPECT_EQ(view.TopRow(), nBefore + QApplication::wheelScrollLines());
  bar->triggerAction(QAbstractSlider::SliderToMaximum);
  EXPECT_TRUE(view.viewport()->rect().contains(view.visualRect(view.model()->index(kMany - 1, 0))))
      << "the last row is seen whole";
}

TEST(row_area, a_row_far_away_is_nowhere_near) {
  RowView view;
  view.ShowRows(Plant(RowModel::kMaxRows), kUtcZone);
  Show(view);
  EXPECT_LT(view.viewport()->height(),
            view.visualRect(view.model()->index(RowModel::kMaxRows - 1, 0)).top());
  view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
  EXPECT_GT(0, view.visualRect(view.model()->index(0, 0)).bottom());
  view.grab();
}

TEST(row_area, rows_that_came_are_within_reach_and_leave_what_is_in_sight) {
  RowView view;
  const auto rs = Plant(1'000);
  view.ShowRows(rs, kUtcZone);
  Show(view);
  view.verticalScrollBar()->setValue(500);
  view.GoTo(505, 1);
  rs->Rows(100'000'000);
  view.Model().TakeRowsIn();
  EXPECT_EQ(view.TopRow(), 500);
  EXPECT_EQ(Current(view), std::pair(505, 1));
  EXPECT_EQ(view.verticalScrollBar()->maximum(), 100'000'000 - view.RowsInSight());
}

TEST(row_area, an_editor_stays_on_its_cell_while_rows_scroll) {
  RowView view;
  view.ShowRows(Plant(1'000), kUtcZone);
  Show(view);
  const QModelIndex index = view.model()->index(5, 1);
  view.openPersistentEditor(index);
  QWidget* editor = view.indexWidget(index);
  const auto* line = view.viewport()->findChild<QLineEdit*>();
  ASSERT_NE(line, nullptr);
  EXPECT_EQ(line->geometry(), view.visualRect(index)) << editor;
  view.verticalScrollBar()->setValue(3);
  EXPECT_EQ(line->geometry(), view.visualRect(index));
  EXPECT_EQ(line->y(), view.YOf(5));
  EXPECT_EQ(view.YOf(5), 2 * view.RowHeight());
}

}  // namespace
}  // namespace orvane::controls
