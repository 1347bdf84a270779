// What a user makes of the columns of a grid, on the screen.
#include "controls/view/kept_columns.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QToolTip>

#include "controls/view/filter_row.h"
#include "tests/controls/row_view_fixture.h"
#include "tests/fakes/until.h"

namespace orvane::controls {
namespace {

using Order = std::vector<int>;

/// Twelve columns c0, c1 and so on of numbers that tell row and column.
std::shared_ptr<FakeRecordset> TwelveColumns(int nRows = 20) {
  auto rs = std::make_shared<FakeRecordset>(
      nRows, [](auto row, auto column) { return static_cast<platform::Long>(row * 100 + column); });
  for (int n = 0; n < 12; ++n) rs->Column("c" + std::to_string(n), platform::DataType::Integer);
  return rs;
}

class kept_columns : public testing::Test {
 protected:
  kept_columns() {
    m_view.ShowRows(TwelveColumns(), kUtcZone);
    Show(m_view, {400, 300});
  }
  QPoint NameAt(int nColumn, int nX = 15) const {
    return {m_view.Names().LeftOf(nColumn) + nX, m_view.Names().height() / 2};
  }
  void Drag(QPoint from, QPoint to, Qt::KeyboardModifiers modifiers = {}) {
    QWidget* names = m_view.Names().viewport();
    QTest::mousePress(names, Qt::LeftButton, modifiers, from);
    const QPoint half = (from + to) / 2;
    for (const QPoint at : {half, to}) {
      QMouseEvent move(QEvent::MouseMove, at, names->mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                       modifiers);
      QCoreApplication::sendEvent(names, &move);
    }
    QTest::mouseRelease(names, Qt::LeftButton, modifiers, to);
  }
  void HideColumns(const std::vector<int>& columns) {
    auto hidden = m_view.HiddenColumns();
    for (const int n : columns) hidden[static_cast<std::size_t>(n)] = true;
    m_view.HiddenColumns(hidden);
  }
  RowView m_view;
};

TEST_F(kept_columns, a_name_that_is_dragged_moves_its_column) {
  Drag(NameAt(0), NameAt(2));
  EXPECT_EQ(m_view.Names().Shown(), (Order{1, 2, 0, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
  Drag(NameAt(0), NameAt(1));
  EXPECT_TRUE(m_view.Columns().Layout().IsNone());
}

TEST_F(kept_columns, a_dragged_name_is_not_clicked) {
  int nClicks = 0;
  QObject::connect(&m_view.Names(), &QHeaderView::sectionClicked, [&] { ++nClicks; });
  Drag(NameAt(0), NameAt(2));
  EXPECT_EQ(nClicks, 0);
  ClickColumnName(m_view, 2);
  EXPECT_EQ(nClicks, 1);
}

TEST_F(kept_columns, a_name_that_is_dragged_while_other_columns_come_moves_none_of_them) {
  QWidget* names = m_view.Names().viewport();
  QTest::mousePress(names, Qt::LeftButton, {}, NameAt(0));
  QMouseEvent move(QEvent::MouseMove, NameAt(3), names->mapToGlobal(NameAt(3)), Qt::NoButton,
                   Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(names, &move);
  m_view.ShowRows(TwelveColumns(5), kUtcZone);
  QTest::mouseRelease(names, Qt::LeftButton, {}, NameAt(3));
  EXPECT_TRUE(m_view.Columns().Layout().IsNone());
}

TEST_F(kept_columns, dragging_at_the_edge_brings_further_columns_into_sight) {
  QWidget* names = m_view.Names().viewport();
  QTest::mousePress(names, Qt::LeftButton, {}, NameAt(0));
  const QPoint edge(names->width() + 10, 5);
  QMouseEvent move(QEvent::MouseMove, edge, names->mapToGlobal(edge), Qt::NoButton, Qt::LeftButton,
                   Qt::NoModifier);
  QCoreApplication::sendEvent(names, &move);
  QScrollBar* bar = m_view.horizontalScrollBar();
  ASSERT_GT(bar->maximum(), 0);
  EXPECT_TRUE(tests::Until([&] { return bar->value() == bar->maximum(); }));
  QTest::mouseRelease(names, Qt::LeftButton, {}, edge);
  EXPECT_EQ(m_view.Names().visualIndex(0), 11);
}

TEST_F(kept_columns, boxes_of_the_filter_row_stand_beneath_their_names) {
  FilterRow filter(m_view);
  m_view.PutBeneathNames(&filter);
  filter.show();
  m_view.PutBeneathNames(&filter);
  m_view.horizontalScrollBar()->setValue(100);
  m_view.HoldColumns(0);
  EXPECT_EQ(filter.Box(0).x(), 0);
  EXPECT_EQ(filter.Box(5).x(), m_view.Names().LeftOf(5));
  m_view.HoldColumns(-1);
  EXPECT_EQ(filter.Box(0).x(), -100);
  m_view.PutBeneathNames(nullptr);
}

TEST_F(kept_columns, dragging_with_shift_selects_and_moves_nothing) {
  Drag(NameAt(0), NameAt(2), Qt::ShiftModifier);
  EXPECT_TRUE(m_view.Columns().Layout().IsNone());
  EXPECT_TRUE(m_view.selectionModel()->isSelected(m_view.model()->index(19, 2)));
}

TEST_F(kept_columns, held_columns_stay_where_others_are_scrolled) {
  m_view.HoldColumns(0);
  m_view.horizontalScrollBar()->setValue(m_view.horizontalScrollBar()->maximum());
  EXPECT_EQ(m_view.Names().LeftOf(0), 0);
  EXPECT_EQ(m_view.indexAt({5, 5}).column(), 0);
  EXPECT_EQ(m_view.visualRect(m_view.model()->index(0, 0)).left(), 0);
  EXPECT_LT(m_view.Names().LeftOf(1), m_view.ColumnWidth(0));
  // What lies beneath the held column is not met there.
  EXPECT_NE(m_view.indexAt({m_view.ColumnWidth(0) + 5, 5}).column(), 1);
  EXPECT_EQ(m_view.indexAt({m_view.viewport()->width() - 5, 5}).column(), 11);
}

TEST_F(kept_columns, going_to_a_column_scrolls_it_out_from_beneath_the_held_ones) {
  m_view.HoldColumns(1);
  m_view.GoTo(0, 11);
  m_view.GoTo(0, 2);
  const int nHeld = m_view.ColumnWidth(0) + m_view.ColumnWidth(1);
  EXPECT_EQ(m_view.Names().LeftOf(2), nHeld);
  const int nScrolled = m_view.horizontalScrollBar()->value();
  m_view.GoTo(0, 11);
  EXPECT_GT(m_view.horizontalScrollBar()->value(), nScrolled);
  const int nFar = m_view.horizontalScrollBar()->value();
  m_view.GoTo(0, 0);
  EXPECT_EQ(m_view.horizontalScrollBar()->value(), nFar);
}

TEST_F(kept_columns, names_of_held_columns_are_clicked_where_they_are_seen) {
  m_view.HoldColumns(0);
  m_view.horizontalScrollBar()->setValue(m_view.horizontalScrollBar()->maximum());
  QTest::mouseClick(m_view.Names().viewport(), Qt::LeftButton, {}, NameAt(0));
  EXPECT_EQ(m_view.currentIndex().column(), 0);
  // An edge there is that of the held column.
  const int nWidth = m_view.ColumnWidth(0);
  Drag({nWidth - 1, 5}, {nWidth + 29, 5});
  EXPECT_EQ(m_view.ColumnWidth(0), nWidth + 29);
}

TEST_F(kept_columns, the_tip_over_a_held_name_is_that_of_its_column) {
  m_view.HoldColumns(0);
  m_view.horizontalScrollBar()->setValue(m_view.horizontalScrollBar()->maximum());
  QWidget* names = m_view.Names().viewport();
  QHelpEvent help(QEvent::ToolTip, NameAt(0), names->mapToGlobal(NameAt(0)));
  QCoreApplication::sendEvent(names, &help);
  EXPECT_TRUE(QToolTip::text().contains("c0")) << QToolTip::text().toStdString();
  QToolTip::hideText();
}

TEST_F(kept_columns, held_columns_are_drawn_over_those_that_are_scrolled) {
  m_view.HoldColumns(0);
  const int nHeld = m_view.ColumnWidth(0);
  const auto picture = [&](QWidget* of) {
    return of->grab({0, 0, nHeld - 2, of->height()}).toImage();
  };
  const QImage cells = picture(m_view.viewport());
  const QImage names = picture(m_view.Names().viewport());
  const QImage others = m_view.viewport()->grab().toImage();
  m_view.horizontalScrollBar()->setValue(150);
  EXPECT_EQ(picture(m_view.viewport()), cells);
  EXPECT_EQ(picture(m_view.Names().viewport()), names);
  EXPECT_NE(m_view.viewport()->grab().toImage(), others);
}

TEST_F(kept_columns, held_columns_leave_room_to_others) {
  m_view.HoldColumns(11);
  EXPECT_LT(m_view.Names().HeldEnd(), 12);
  EXPECT_LE(m_view.Names().HeldWidth(), m_view.viewport()->width() - 96);
  m_view.GoTo(0, 11);
  EXPECT_LT(m_view.visualRect(m_view.currentIndex()).right(), m_view.viewport()->width());
}

TEST_F(kept_columns, a_hidden_column_is_left_by_the_current_cell) {
  m_view.GoTo(3, 1);
  HideColumns({1, 2});
  EXPECT_EQ(Current(m_view), std::pair(3, 3));
  QTest::keyClick(&m_view, Qt::Key_Left);
  EXPECT_EQ(Current(m_view), std::pair(3, 0));
  m_view.GoTo(3, 11);
  HideColumns({11});
  EXPECT_EQ(Current(m_view), std::pair(3, 10));
  m_view.GoTo(5, 1);
  EXPECT_EQ(Current(m_view), std::pair(5, 10));
}

TEST_F(kept_columns, the_last_one_cannot_be_hidden) {
  m_view.HiddenColumns(std::vector<bool>(12, true));
  EXPECT_EQ(m_view.Names().Shown().size(), 12U);
}

TEST_F(kept_columns, what_is_copied_has_the_order_shown_and_nothing_hidden) {
  m_view.ShowRows(TwelveColumns(2), kUtcZone);
  m_view.Columns().Move(0, 2);
  HideColumns({1, 4, 5, 6, 7, 8, 9, 10, 11});
  m_view.selectAll();
  m_view.Copy(true);
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
            "c2\tc0\tc3\n2\t0\t3\n102\t100\t103\n");
  EXPECT_FALSE(QGuiApplication::clipboard()->mimeData()->html().contains("c1"));
  m_view.CopyAs(exports::Form::JsonLines);
  EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(),
            "{\"c2\":2,\"c0\":0,\"c3\":3}\n{\"c2\":102,\"c0\":100,\"c3\":103}\n");
}

TEST_F(kept_columns, chosen_widths_order_and_hidden_columns_come_back_in_a_fresh_view) {
  m_view.ColumnWidth(1, 222);
  m_view.Columns().Move(5, -1);
  HideColumns({3});
  m_view.HoldColumns(0);
  const platform::Text sKept = WrittenLayout(m_view.Columns().Layout());
  RowView fresh;
  fresh.Layout(ReadLayout(sKept));
  fresh.ShowRows(TwelveColumns(), kUtcZone);
  EXPECT_EQ(fresh.ColumnWidth(1), 222);
  EXPECT_EQ(fresh.Names().Shown(), (Order{0, 1, 2, 5, 4, 6, 7, 8, 9, 10, 11}));
  EXPECT_EQ(fresh.Names().Held(), 1);
  EXPECT_EQ(WrittenLayout(fresh.Columns().Layout()), sKept);
}

TEST_F(kept_columns, what_was_worked_out_here_is_not_kept) {
  EXPECT_TRUE(m_view.Columns().Layout().IsNone());
  m_view.ShowRows(TwelveColumns(2'000'000), kUtcZone);
  m_view.GoTo(1'999'999, 3);
  QCoreApplication::processEvents();
  m_view.grab();
  QCoreApplication::processEvents();
  EXPECT_TRUE(m_view.Columns().Layout().IsNone());
}

TEST_F(kept_columns, last_through_rows_of_other_columns) {
  m_view.ColumnWidth(1, 222);
  HideColumns({3});
  m_view.ShowRows(OneColumn({platform::Text("x")}), kUtcZone);
  m_view.ShowRows({}, kUtcZone);
  m_view.ShowRows(TwelveColumns(), kUtcZone);
  EXPECT_EQ(m_view.ColumnWidth(1), 222);
  EXPECT_TRUE(m_view.Names().isSectionHidden(3));
}

TEST_F(kept_columns, a_hidden_column_comes_back_as_wide_as_it_was) {
  m_view.ColumnWidth(1, 222);
  HideColumns({1});
  const RowsState state = m_view.State();
  RowView fresh;
  fresh.ShowRows(TwelveColumns(), kUtcZone, &state);
  EXPECT_TRUE(fresh.Names().isSectionHidden(1));
  fresh.HiddenColumns(std::vector<bool>(12));
  EXPECT_EQ(fresh.ColumnWidth(1), 222);
}

TEST_F(kept_columns, are_as_fetched_again_when_they_are_forgotten) {
  const int nWidth = m_view.ColumnWidth(1);
  m_view.ColumnWidth(1, 222);
  m_view.Columns().Move(5, -1);
  HideColumns({3});
  m_view.HoldColumns(0);
  m_view.ForgetColumns();
  EXPECT_TRUE(m_view.Columns().Layout().IsNone());
  EXPECT_EQ(m_view.ColumnWidth(1), nWidth);
  EXPECT_EQ(m_view.Names().Shown(), (Order{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
  EXPECT_EQ(m_view.Names().HeldWidth(), 0);
}

TEST_F(kept_columns, a_layout_of_a_stranger_does_no_harm) {
  m_view.Layout(
      ReadLayout(R"({"version":1,"frozen":1e9,"columns":[{"name":"c0","width":1e9,"place":7},)"
                 R"({"name":"c0","place":7},{"name":"gone","hidden":true,"width":50},)"
                 R"({"name":"c5","place":7}]})"));
  EXPECT_EQ(m_view.ColumnWidth(0), ColumnLayout::kMostWidth);
  EXPECT_EQ(m_view.Names().HeldEnd(), 0);
  EXPECT_EQ(m_view.Names().Shown().size(), 12U);
  m_view.grab();
  m_view.GoTo(0, 11);
  EXPECT_TRUE(m_view.viewport()->rect().intersects(m_view.visualRect(m_view.currentIndex())));
}

TEST(fitted_columns, grow_with_numbers_that_come_into_sight) {
  RowView view;
  auto rs = std::make_shared<FakeRecordset>(1'000'000, [](auto row, auto) -> Value {
    return row < 999'000 ? Value(platform::Long{1}) : Value(1234567.890123456);
  });
  rs->Column("n", platform::DataType::Double);
  view.ShowRows(rs, kUtcZone);
  Show(view);
  const int nBefore = view.ColumnWidth(0);
  view.GoTo(999'999, 0);
  view.grab();
  QCoreApplication::processEvents();
  EXPECT_GE(view.ColumnWidth(0),
            view.fontMetrics().horizontalAdvance(view.Model().CellAt(999'999, 0).sText));
  EXPECT_GT(view.ColumnWidth(0), nBefore);
}

TEST(fitted_columns, grow_with_texts_that_come_into_sight_up_to_a_limit) {
  RowView view;
  auto rs = std::make_shared<FakeRecordset>(1'000'000, [](auto row, auto) -> Value {
    if (row < 500'000) return Value("short");
    return row < 999'000 ? Value("rather a longer text") : Value(platform::Text(10'000, 'x'));
  });
  rs->Column("n", platform::DataType::WChar);
  view.ShowRows(rs, kUtcZone);
  Show(view, {900, 300});
  const int nFirst = view.ColumnWidth(0);
  const auto widthAt = [&](int nRow) {
    view.GoTo(nRow, 0);
    view.grab();
    QCoreApplication::processEvents();
    return view.ColumnWidth(0);
  };
  const int nLonger = widthAt(600'000);
  EXPECT_GT(nLonger, nFirst);
  EXPECT_LT(nLonger, view.WidthOf(52));
  EXPECT_EQ(widthAt(999'999), view.WidthOf(52));
  EXPECT_EQ(widthAt(0), view.WidthOf(52));
}

TEST(fitted_columns, stay_as_wide_as_somebody_made_them) {
  RowView view;
  auto rs =
      std::make_shared<FakeRecordset>(10, [](auto, auto) { return Value(1234567.890123456); });
  rs->Column("n", platform::DataType::Double);
  view.ShowRows(rs, kUtcZone);
  Show(view);
  view.ColumnWidth(0, 50);
  view.grab();
  QCoreApplication::processEvents();
  EXPECT_EQ(view.ColumnWidth(0), 50);
}

}  // namespace
}  // namespace orvane::controls
