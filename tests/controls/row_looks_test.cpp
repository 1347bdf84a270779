#include <gtest/gtest.h>

#include "controls/view/row_view.h"
#include "tests/controls/row_view_fixture.h"

namespace orvane::controls {
namespace {

QStringList g_complaints;

/// Hears what the toolkit prints of its own accord as long as it is there.
struct ToolkitHeard {
  ToolkitHeard() {
    g_complaints.clear();
    qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& sText) { g_complaints << sText; });
  }
  ~ToolkitHeard() { qInstallMessageHandler(nullptr); }
  ToolkitHeard(const ToolkitHeard&) = delete;
  ToolkitHeard& operator=(const ToolkitHeard&) = delete;
};

/// The picture of one cell that is neither current nor selected.
QImage CellPicture(RowView& view, int nRow) {
  return view.viewport()->grab(view.visualRect(view.model()->index(nRow, 0))).toImage();
}

TEST(row_looks, null_looks_unlike_the_empty_text_and_unlike_the_text_null) {
  RowView view;
  view.ShowRows(OneColumn({Value("first"), Value(), Value("NULL"), Value(""), Value()}), kUtcZone);
  Show(view);
  const QImage null = CellPicture(view, 1);
  EXPECT_NE(null, CellPicture(view, 2));
  EXPECT_NE(null, CellPicture(view, 3));
  EXPECT_NE(CellPicture(view, 2), CellPicture(view, 3));
  EXPECT_EQ(null, CellPicture(view, 4));
}

TEST(row_looks, colours_come_from_the_palette) {
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

TEST(row_looks, shows_that_it_has_the_keys_with_rows_and_without) {
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

TEST(row_looks, an_order_that_is_only_offered_looks_unlike_one_that_was_made) {
  RowView view;
  view.ShowRows(Plant(5), kUtcZone);
  Show(view);
  const QRect arrow = view.Names().ArrowOf(0);
  ASSERT_TRUE(arrow.isValid());
  const QPoint inside(arrow.left() + arrow.width() / 2, arrow.center().y());
  const auto ink = [&] {
    const QImage names = view.Names().viewport()->grab().toImage();
    return std::abs(names.pixelColor(inside).lightness() -
                    names.pixelColor(2, inside.y()).lightness());
  };
  const int nOffered = ink();
  view.SortBy(0, true);
  EXPECT_GT(ink(), 2 * nOffered);
  EXPECT_GT(ink(), 100);
}

TEST(row_looks, without_columns_nothing_is_drawn_in_no_room) {
  RowView view;
  const ToolkitHeard heard;
  Show(view);
  ASSERT_EQ(view.Names().height(), 0);
  view.Numbers().repaint();
  EXPECT_EQ(g_complaints.join('\n').toStdString(), "");
}

TEST(row_looks, a_number_too_wide_for_its_column_is_no_other_number) {
  const auto picture = [](std::int64_t number) {
    const auto rs = std::make_shared<FakeRecordset>(2, [number](auto, auto) { return number; });
    rs->Column("Number", platform::DataType::BigInt);
    RowView view;
    view.ShowRows(rs, kUtcZone);
    view.ColumnWidth(0, RowView::kLeastColumnWidth);
    Show(view);
    return CellPicture(view, 1);
  };
  EXPECT_EQ(picture(9'990'000'000'001), picture(1'234'567'890'123)) << "both are marks";
  EXPECT_NE(picture(99), picture(12));
}

}  // namespace
}  // namespace orvane::controls
