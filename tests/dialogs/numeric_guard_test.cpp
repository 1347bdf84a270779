#include "dialogs/numeric_guard.h"

#include "tests/dialogs/dialog_fixture.h"

namespace orvane::dialogs {
namespace {

struct numeric_guard : DialogFixture {
  fakes::FakeTextBox txt;
  NumericGuard guard{txt, *ui};
  platform::Subscription change = txt.OnChange([this] { guard.Change(); });
};

TEST_F(numeric_guard, a_letter_beeps_and_leaves_the_number) {
  txt.Text("100");
  txt.Type("x");
  EXPECT_EQ(txt.Text(), "100");
  EXPECT_EQ(ui->nBeeps, 1);
}

TEST_F(numeric_guard, clearing_the_box_is_allowed) {
  txt.Text("100");
  txt.Text("");
  EXPECT_EQ(txt.Text(), "");
  EXPECT_EQ(ui->nBeeps, 0);
}

TEST_F(numeric_guard, a_letter_in_a_cleared_box_brings_back_the_last_number_not_the_empty_text) {
  txt.Text("100");
  txt.Text("");
  txt.Type("x");
  EXPECT_EQ(txt.Text(), "100");
  EXPECT_EQ(ui->nBeeps, 1);
}

TEST_F(numeric_guard, a_letter_in_a_box_that_never_held_a_number_empties_it) {
  txt.Type("x");
  EXPECT_EQ(txt.Text(), "");
  EXPECT_EQ(ui->nBeeps, 1);
}

TEST_F(numeric_guard, a_number_beyond_32_bits_is_refused_like_a_letter) {
  txt.Text("2147483647");
  EXPECT_EQ(ui->nBeeps, 0);
  txt.Text("2147483648");
  EXPECT_EQ(txt.Text(), "2147483647");
  EXPECT_EQ(ui->nBeeps, 1);
}

TEST_F(numeric_guard, the_smallest_number_is_accepted_and_one_below_is_refused) {
  txt.Text("-2147483648");
  EXPECT_EQ(ui->nBeeps, 0);
  txt.Text("-2147483649");
  EXPECT_EQ(txt.Text(), "-2147483648");
  EXPECT_EQ(ui->nBeeps, 1);
}

TEST_F(numeric_guard, putting_the_text_back_is_a_change_of_its_own_and_beeps_no_second_time) {
  txt.Text("100");
  int nChanges = 0;
  const auto subscription = txt.OnChange([&] { ++nChanges; });
  txt.Type("x");
  EXPECT_EQ(nChanges, 2);
  EXPECT_EQ(ui->nBeeps, 1);
  EXPECT_EQ(ui->nBoxes, 0);
}

TEST_F(numeric_guard, the_text_put_back_is_the_one_typed_last_not_the_first) {
  txt.Text("100");
  txt.Type("5");
  txt.Type("x");
  EXPECT_EQ(txt.Text(), "1005");
}

TEST_F(numeric_guard, blanks_and_a_fraction_count_as_a_number_and_grouping_does_not) {
  for (const char* const sText : {" 7 ", "+7", "1.5", "1."}) {
    txt.Text(sText);
    EXPECT_EQ(txt.Text(), sText);
  }
  EXPECT_EQ(ui->nBeeps, 0);
  for (const char* const sText : {"1,000", "1e3", "0x10", " ", "-", "."}) {
    txt.Text(sText);
    EXPECT_EQ(txt.Text(), "1.") << sText;
  }
  EXPECT_EQ(ui->nBeeps, 6);
}

TEST_F(numeric_guard, a_negative_number_is_accepted) {
  txt.Text("-5");
  EXPECT_EQ(txt.Text(), "-5");
  EXPECT_EQ(ui->nBeeps, 0);
}

}  // namespace
}  // namespace orvane::dialogs
