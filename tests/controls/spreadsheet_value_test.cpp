#include "controls/view/spreadsheet_value.h"

#include <gtest/gtest.h>

namespace orvane::controls {
namespace {

std::string Held(const char* sShown, const char* sNumber, const char* sNumberFormat) {
  return HeldValue(QString::fromUtf8(sShown), sNumber, QString::fromUtf8(sNumberFormat))
      .toStdString();
}

TEST(spreadsheet_value, of_a_number_has_the_digits_that_are_held) {
  EXPECT_EQ(Held("50%", "0.5", "1033;0;0%"), "0.5");
  EXPECT_EQ(Held("12 days", "12", "1033;0;0 \"days\""), "12");
  EXPECT_EQ(Held("12.00", "12", "1033;0;[RED]0.00"), "12");
  EXPECT_EQ(Held("12", "12", "1033;0;General"), "12");
  EXPECT_EQ(Held("1 234", "1234.5", "1036;0;#&nbsp;##0"), "1234.5");
  EXPECT_EQ(Held("low", "high", "1033;"), "low");
  EXPECT_EQ(Held("007", "7", "1033;0;@"), "007");
}

TEST(spreadsheet_value, counts_with_a_point_whatever_its_language) {
  EXPECT_EQ(Held("1", "0,75", "1031;0;0"), "0.75");
  EXPECT_EQ(Held("-1.234,50", "-1234,5", "1031;0;#.##0,00"), "-1234.5");
  EXPECT_EQ(Held("1,234,567", "1,234,567", "1033;"), "1,234,567") << "nobody writes that";
}

TEST(spreadsheet_value, has_no_exponent_where_that_adds_no_digit_that_is_not_known) {
  EXPECT_EQ(Held("", "1E+022", "1033;"), "10000000000000000000000");
  EXPECT_EQ(Held("", "-1.5E-003", "1033;"), "-0.0015");
  EXPECT_EQ(Held("", "1.25E+001", "1033;"), "12.5");
  EXPECT_EQ(Held("", "1,25E+002", "1031;"), "125");
  EXPECT_EQ(Held("", "9.00719925474099E+015", "1033;"), "9.00719925474099E+015");
  EXPECT_EQ(Held("", "9.00719925474099E+014", "1033;"), "900719925474099");
  EXPECT_EQ(Held("", "1E-300", "1033;"), "1E-300");
}

TEST(spreadsheet_value, of_a_time_is_shown_with_the_year_first_or_worked_out) {
  EXPECT_EQ(Held("2026-05-31 12:00:00,123", "46173,5000014236", "1031;0;JJJJ-MM-TT HH:MM:SS,000"),
            "2026-05-31 12:00:00.123");
  EXPECT_EQ(Held("11/14/23", "45244", "1033;0;MM/DD/YY"), "2023-11-14 00:00:00");
  EXPECT_EQ(Held("06:00 PM", "0.75", "1033;0;HH:MM AM/PM"), "18:00:00");
  EXPECT_EQ(Held("14.11.23", "45244.5000057870", "1033;0;D.M.YY"), "2023-11-14 12:00:00.500");
  EXPECT_EQ(Held("36:00:00", "1.5", "1033;0;[HH]:MM:SS"), "36:00:00");
  // No time that anybody could mean is made up.
  EXPECT_EQ(Held("###", "1e300", "1033;0;YYYY"), "###");
  EXPECT_EQ(Held("1899", "-5", "1033;0;YYYY"), "1899");
}

TEST(spreadsheet_value, of_true_and_false_is_told_from_a_time_in_any_language) {
  EXPECT_EQ(Held("TRUE", "1", "1033;0;BOOLEAN"), "True");
  EXPECT_EQ(Held("FALSCH", "0", "1031;0;LOGISCH"), "False");
  EXPECT_EQ(Held("VRAI", "1", "1036;0;BOOL\u00c9EN"), "True");
  EXPECT_EQ(Held("Sunday", "1", "1033;0;DDDD"), "1899-12-31 00:00:00");
}

}  // namespace
}  // namespace orvane::controls
