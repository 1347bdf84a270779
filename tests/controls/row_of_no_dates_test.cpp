// Rows in whose columns of dates and times another program has left what is none.
#include <gtest/gtest.h>

#include "tests/controls/edited_table.h"

namespace orvane::controls {
namespace {

using platform::RowIndex;
using platform::Text;
using platform::Value;
using provider::FailureOf;

class RowOfNoDatesTest : public tests::EditedTablesFixture {};

TEST_F(RowOfNoDatesTest, a_text_among_times_names_no_row_but_harms_no_other_edit) {
  tests::Raw(m_server->CatalogFile())
      .Run(
          "CREATE TABLE T (id INTEGER PRIMARY KEY, t TIMESTAMP, a TEXT);"
          "INSERT INTO T VALUES (1, '2024-01-01', 'a')");
  auto mine = Open();
  mine.rs->ValueAt(0, 2, "mine");
  EXPECT_FALSE(mine.Store(0));
  mine.rs->ValueAt(0, 1, provider::FixedNow());
  EXPECT_EQ(FailureOf([&] { mine.Store(0); }),
            "3808: The row cannot be told from others, as its \"t\" is no time: change it by a "
            "statement in the query editor.");
  EXPECT_EQ(Read("a"), "mine\n");
}

constexpr const char* const kNoDates[] = {"5", "-2.5", "x'01'", "'soon'", "'2024-05-14 10:00:00'"};

TEST_F(RowOfNoDatesTest, what_is_no_date_among_dates_is_put_right_and_deleted) {
  for (const char* const sType : {"DATE", "TIME"}) {
    for (const Text& sStored : kNoDates) {
      tests::Raw(m_server->CatalogFile())
          .Run("DROP TABLE IF EXISTS T; CREATE TABLE T (id INTEGER PRIMARY KEY, d " + Text(sType) +
               "); INSERT INTO T VALUES (1, " + sStored + "), (2, " + sStored + "), (3, NULL)");
      auto mine = Open();
      if (sType == Text("DATE")) {
        mine.rs->ValueAt(0, 1, platform::Date(std::chrono::year{2024} / 5 / 1));
      } else {
        mine.rs->ValueAt(0, 1, platform::TimeOfDay(0));
      }
      EXPECT_FALSE(mine.Store(0)) << sStored;
      mine.rs->Delete(1);
      EXPECT_FALSE(mine.Store(1)) << sStored;
      EXPECT_EQ(Read("id, typeof(d)"), "1|text\n3|null\n") << sStored;
    }
  }
}

TEST_F(RowOfNoDatesTest, what_is_no_date_is_a_key_all_the_same) {
  for (const Text& sStored : kNoDates) {
    tests::Raw(m_server->CatalogFile())
        .Run(
            "DROP TABLE IF EXISTS T; CREATE TABLE T (d DATE NOT NULL PRIMARY KEY, a TEXT); INSERT "
            "INTO T VALUES (" +
            sStored + ", 'a'), ('2024-01-01', 'b')");
    auto mine = Open();
    ASSERT_EQ(mine.table.key.size(), 1U);
    const RowIndex row = mine.rs->ValueAt(0, 1) == Value("a") ? 0 : 1;
    mine.rs->ValueAt(row, 1, "mine");
    EXPECT_FALSE(mine.Store(row)) << sStored;
    EXPECT_EQ(Read("a"), row == 0 ? "mine\nb\n" : "b\nmine\n") << sStored;
    mine.rs->Delete(row);
    EXPECT_FALSE(mine.Store(row)) << sStored;
    EXPECT_EQ(Read("a"), "b\n") << sStored;
  }
}

}  // namespace
}  // namespace orvane::controls
