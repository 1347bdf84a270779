#include "console/document/unsent_rows.h"

#include <gtest/gtest.h>

namespace orvane::console {
namespace {

using platform::RowsPlace;

TEST(unsent_rows_told, count_a_table_once_however_many_grids_edit_it) {
  UnsentRows rows([](const auto&) { return true; });
  rows.Tell({"localhost", "Plant", "Data"}, 2);
  rows.Tell({"localhost", "Plant", "Data", "Hot"}, 1);
  EXPECT_EQ(rows.Sentence(), "3 rows of the table \"Data\" are not stored.");
  rows.Tell({"localhost", "Plant", "Tags", "Hot"}, 1);
  EXPECT_EQ(rows.Sentence(), "4 rows of 2 tables are not stored.");
}

TEST(unsent_rows_told, of_one_query_go_with_it_and_leave_the_others) {
  UnsentRows rows([](const auto&) { return true; });
  const RowsPlace table{"localhost", "Plant", "Data"};
  const RowsPlace ofQuery{"localhost", "Plant", "Data", "Hot"};
  rows.Tell(table, 2);
  rows.Tell(ofQuery, 1);
  const auto lRound = rows.Round(table);
  rows.Lose({"LOCALHOST", {}, {}, "hot"});
  EXPECT_EQ(rows.Sentence(), "2 rows of the table \"Data\" are not stored.");
  EXPECT_EQ(rows.Round(table), lRound);
  EXPECT_GT(rows.Round(ofQuery), 0);
  rows.Lose({"localhost", "Plant"});
  EXPECT_EQ(rows.Sentence(), "");
  EXPECT_GT(rows.Round(table), lRound);
}

}  // namespace
}  // namespace orvane::console
