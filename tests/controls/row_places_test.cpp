#include "controls/view/row_places.h"

#include <QItemSelectionModel>

#include "controls/view/selection_bands.h"
#include "tests/controls/row_view_fixture.h"

namespace orvane::controls {
namespace {

TEST(row_places, are_found_among_two_thousand_million_rows_without_a_look_at_each) {
  RowView view;
  const auto rs = Plant(2'000'000'000);
  view.ShowRows(rs, kUtcZone);
  Show(view);
  const auto select = [&](int nTop, int nBottom, int nLeft, int nRight) {
    view.selectionModel()->select(
        QItemSelection(view.Model().index(nTop, nLeft), view.Model().index(nBottom, nRight)),
        QItemSelectionModel::Select);
  };
  select(1'999'999'990, 1'999'999'995, 0, 1);
  select(1'000'000'000, 1'000'000'001, 2, 2);
  const QItemSelection before = view.selectionModel()->selection();
  view.selectionModel()->setCurrentIndex(view.Model().index(1'999'999'992, 1),
                                         QItemSelectionModel::NoUpdate);
  const RowPlaces places(view, view.Model());
  view.selectionModel()->clear();
  places.Restore(view, view.Model());
  EXPECT_EQ(view.currentIndex(), view.Model().index(1'999'999'992, 1));
  for (const QItemSelectionRange& range : before) {
    EXPECT_TRUE(view.selectionModel()->selection().contains(range.topLeft()));
    EXPECT_TRUE(view.selectionModel()->selection().contains(range.bottomRight()));
  }
  EXPECT_EQ(SelectedRows(view.selectionModel()->selection()), 8);
}

/// Leaves the rows whose numbers the filter takes.
void Leave(RowView& view, const char* sFilter) {
  view.Filter({ColumnFilter::Read(sFilter, 0, platform::DataType::BigInt, kUtcZone)});
}

TEST(row_places, the_one_row_that_a_filter_leaves_is_not_all_of_them) {
  RowView view;
  view.ShowRows(Plant(100), kUtcZone);
  Show(view);
  for (const char* sFilter : {"= 7", "7..9"}) {
    Leave(view, sFilter);
    view.selectAll();
    const auto rows = SelectedRows(view.selectionModel()->selection());
    EXPECT_EQ(rows, view.Model().Places());
    view.Filter({});
    EXPECT_EQ(view.Model().Places(), 100);
    EXPECT_EQ(SelectedRows(view.selectionModel()->selection()), rows) << sFilter;
  }
}

TEST(row_places, the_many_rows_that_a_filter_leaves_are_not_all_of_them) {
  RowView view;
  view.ShowRows(Plant(10'000), kUtcZone);
  Show(view);
  Leave(view, "< 5000");
  view.selectAll();
  view.SortBy(0, false);
  EXPECT_EQ(SelectedRows(view.selectionModel()->selection()), 5'000) << "the same rows";
  view.Filter({});
  EXPECT_EQ(SelectedRows(view.selectionModel()->selection()), 0);
  view.selectAll();
  Leave(view, "< 5000");
  EXPECT_EQ(SelectedRows(view.selectionModel()->selection()), 5'000) << "all are selected";
}

}  // namespace
}  // namespace orvane::controls
