#include "controls/order/column_layout.h"

#include <gtest/gtest.h>

namespace orvane::controls {
namespace {

using platform::Text;
using Names = std::vector<Text>;

TEST(column_layout, is_nothing_until_something_is_changed) {
  ColumnLayout layout;
  layout.columns = {{"a"}, {"b"}};
  EXPECT_TRUE(layout.IsNone());
  EXPECT_EQ(WrittenLayout(layout), "");
  EXPECT_TRUE(ReadLayout("").IsNone());
}

TEST(column_layout, comes_back_as_it_was_written) {
  const ColumnLayout layout{
      {{"a \"quoted\"\n", 120, false, 1}, {"S\xE4ule", 0, true, 0}, {"a", 48, false, -1}}, 2};
  EXPECT_EQ(ReadLayout(WrittenLayout(layout)), layout);
}

TEST(column_layout, has_a_stated_form) {
  EXPECT_EQ(
      WrittenLayout({{{"a", 120, true, 1}, {"b", 0, false, 0}}, 1}),
      R"({"version":1,"frozen":1,"columns":[{"name":"a","width":120,"hidden":true,"place":1},)"
      R"({"name":"b","place":0}]})");
}

TEST(column_layout, that_is_damaged_or_newer_is_none) {
  for (const Text sState :
       {"{", "null", "[1]", "17", "\"text\"", R"({"version":2,"frozen":3,"columns":[]})",
        R"({"frozen":3,"columns":[]})", R"({"version":1,"frozen":3})",
        R"({"version":1,"frozen":3,"columns":{}})", R"({"version":1e400,"columns":[]})",
        "\xFF\xFE"}) {
    EXPECT_EQ(ReadLayout(sState), ColumnLayout()) << sState;
  }
}

TEST(column_layout, numbers_of_a_stranger_are_kept_in_their_bounds) {
  const ColumnLayout layout = ReadLayout(
      R"({"version":1,"frozen":1e9,"columns":[{"name":"a","width":1000000000,"place":1e300},)"
      R"({"name":"b","width":1,"place":-5},{"name":"c","width":-7,"hidden":"yes"},)"
      R"({"name":"d","width":"wide","place":[]},{"bytes":7},5,null]})");
  const ColumnLayout expected{{{"a", ColumnLayout::kMostWidth, false, 2147483646},
                               {"b", ColumnLayout::kLeastWidth, false, -1},
                               {"c"},
                               {"d"},
                               {""}},
                              ColumnLayout::kMostFrozen};
  EXPECT_EQ(layout, expected);
}

TEST(column_layout, of_very_many_columns_the_first_ones_are_read) {
  Text sState = R"({"version":1,"columns":[{"name":"a"})";
  for (std::size_t n = 0; n < 2 * ColumnLayout::kMostColumns; ++n) sState += R"(,{"name":"x"})";
  EXPECT_EQ(ReadLayout(sState + "]}").columns.size(), ColumnLayout::kMostColumns);
}

TEST(column_layout, fits_columns_by_their_names) {
  const ColumnLayout layout{{{"a", 0, false, 1}, {"b", 90, false, 2}, {"c", 0, true, 0}}, 0};
  const FittedLayout fitted = LayoutFor(layout, {"a", "new", "c"});
  EXPECT_EQ(fitted.order, (std::vector<int>{2, 0, 1}));
  EXPECT_TRUE(fitted.columns[2].bHidden);
  EXPECT_EQ(fitted.columns[1], LaidOutColumn{"new"});
}

TEST(column_layout, tells_columns_of_one_name_by_their_order) {
  const ColumnLayout layout{{{"a", 90}, {"a", 100}}, 0};
  const FittedLayout fitted = LayoutFor(layout, {"a", "a", "a"});
  EXPECT_EQ(fitted.columns[0].nWidth, 90);
  EXPECT_EQ(fitted.columns[1].nWidth, 100);
  EXPECT_EQ(fitted.columns[2].nWidth, 0);
}

TEST(column_layout, of_equal_places_is_an_order_all_the_same) {
  const ColumnLayout layout{{{"a", 0, false, 5}, {"b", 0, false, 5}, {"c", 0, false, 0}}, 0};
  EXPECT_EQ(LayoutFor(layout, {"a", "b", "c"}).order, (std::vector<int>{2, 0, 1}));
}

TEST(column_layout, that_hides_all_hides_none) {
  const ColumnLayout layout{{{"a", 0, true}, {"b", 0, true}, {"c"}}, 0};
  const FittedLayout fitted = LayoutFor(layout, {"a", "b"});
  EXPECT_FALSE(fitted.columns[0].bHidden);
  EXPECT_FALSE(fitted.columns[1].bHidden);
}

TEST(column_layout, gives_way_to_a_query_that_fetches_in_another_order) {
  const ColumnLayout layout{{{"a", 0, false, 1}, {"b", 70, false, 0}}, 0};
  const FittedLayout fitted = LayoutFor(layout, {"b", "a"});
  EXPECT_EQ(fitted.order, (std::vector<int>{0, 1}));
  EXPECT_EQ(fitted.columns[0].nWidth, 70);
}

TEST(column_layout, keeps_what_was_chosen_for_columns_that_are_away) {
  const ColumnLayout before{{{"a", 90, false, 1}, {"b", 0, true, 0}, {"c", 0, false, 2}}, 1};
  const ColumnLayout now = WithColumns(before, {{"c"}, {"d"}});
  EXPECT_EQ(now, (ColumnLayout{{{"c"}, {"d"}, {"a", 90}, {"b", 0, true}}, 1}));
}

}  // namespace
}  // namespace orvane::controls
