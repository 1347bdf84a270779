#include "controls/order/arrangement.h"

#include <gtest/gtest.h>

namespace orvane::controls {
namespace {

using Columns = std::vector<SortColumn>;

TEST(ArrangementTest, a_chosen_column_counts_alone_or_after_the_others) {
  const Columns sorted = {{1, true}, {2, false}};
  EXPECT_EQ(SortedBy(sorted, {3, false}, false), (Columns{{3, false}}));
  EXPECT_EQ(SortedBy(sorted, {3, false}, true), (Columns{{1, true}, {2, false}, {3, false}}));
  EXPECT_EQ(SortedBy(sorted, {2, true}, true), (Columns{{1, true}, {2, true}})) << "once";
}

TEST(ArrangementTest, an_arrow_goes_up_down_and_away) {
  Columns sorted = SortedByArrow({}, 1, false);
  EXPECT_EQ(sorted, (Columns{{1, true}}));
  sorted = SortedByArrow(sorted, 1, false);
  EXPECT_EQ(sorted, (Columns{{1, false}}));
  EXPECT_EQ(SortedByArrow(sorted, 1, false), Columns());
  sorted = SortedByArrow(sorted, 2, true);
  sorted = SortedByArrow(sorted, 2, true);
  EXPECT_EQ(sorted, (Columns{{1, false}, {2, false}}));
  EXPECT_EQ(SortedByArrow(sorted, 1, true), (Columns{{2, false}})) << "the others stay";
}

}  // namespace
}  // namespace orvane::controls
