#include "dialogs/numeric_guard.h"

#include "tests/dialogs/dialog_fixture.h"

namespace orvane::dialogs {
namespace {

struct numeric_guard : DialogFixture {
  fakes::FakeTextBox txt;
  NumericGuard guard{txt, *ui};
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

TEST_F(numeric_guard, a_negative_number_is_accepted) {
  txt.Text("-5");
  EXPECT_EQ(txt.Text(), "-5");
  EXPECT_EQ(ui->nBeeps, 0);
}

}  // namespace
}  // namespace orvane::dialogs
