#include "platform/exact_number.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "platform/conversions.h"

namespace orvane::platform {
namespace {

using Limits = std::numeric_limits<double>;

TEST(exact_number, is_what_has_exactly_the_digits_of_the_text) {
  const std::pair<const char*, Value> cases[] = {
      {"0", std::int64_t{0}},
      {"-0", std::int64_t{0}},
      {"007", std::int64_t{7}},
      {"+5", std::int64_t{5}},
      {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
      {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
      {"9223372036854775808", 0x1p63},
      {"10000000000000000000000", 1e22},
      {"0.1", 0.1},
      {"+0.10", 0.1},
      {"00.500", 0.5},
      {".5", 0.5},
      {"5.", 5.0},
      {"1e3", 1000.0},
      {"12.5E-1", 1.25},
      {"0.1234567890123456", 0.1234567890123456},
      {"1.7976931348623157e+308", Limits::max()},
      {"5e-324", Limits::denorm_min()},
      {"0e999999999999999999999", 0.0},
  };
  for (const auto& [sText, vtNumber] : cases) {
    const auto exact = ExactNumber(sText);
    ASSERT_TRUE(exact) << sText;
    EXPECT_TRUE(*exact == vtNumber) << sText;
  }
}

TEST(exact_number, is_none_where_digits_would_be_lost) {
  for (const char* const sText :
       {"12345678901234567890123456789012345678", "12345678901234567000", "0.10000000000000000001",
        "12345678901234567890.0123456789", "0.1000000000000000055511151231257827", "1e400",
        "-1e400", "1e-400", "4e-324", "1e99999999999999999999", "1.7976931348623158e308"}) {
    EXPECT_FALSE(ExactNumber(sText)) << sText;
    EXPECT_TRUE(ReadDigits(sText)) << sText;
  }
}

TEST(exact_number, is_none_for_what_is_no_number) {
  for (const char* const sText : {"", "-", "+", ".", "e5", "1e", "1e+", "1 ", " 1", "1,5", "0x10",
                                  "inf", "nan", "--1", "+-1", "1.2.3", "1e5.5", "one"}) {
    EXPECT_FALSE(ExactNumber(sText)) << sText;
    EXPECT_FALSE(ReadDigits(sText)) << sText;
  }
}

TEST(exact_number, takes_every_double_as_it_is_written) {
  std::mt19937_64 random(3);
  for (int i = 0; i < 20'000; ++i) {
    const double d = std::bit_cast<double>(random());
    if (!std::isfinite(d)) continue;
    const Text sText = ToText(d);
    const auto exact = ExactNumber(sText);
    ASSERT_TRUE(exact) << sText;
    const auto* const ll = exact->As<std::int64_t>();
    EXPECT_EQ(ll != nullptr ? static_cast<double>(*ll) : *exact->As<double>(), d) << sText;
  }
}

TEST(exact_number, of_two_texts_has_the_same_digits_when_they_are_the_same_number) {
  EXPECT_EQ(ReadDigits("1.50")->sDigits, "15");
  EXPECT_EQ(ReadDigits("1.50")->exponent, 1);
  EXPECT_EQ(ReadDigits("0.0015")->exponent, -2);
  EXPECT_EQ(ReadDigits("15e-4")->exponent, -2);
  EXPECT_EQ(ReadDigits("-000.000")->sDigits, "");
  EXPECT_EQ(ReadDigits("0e50")->exponent, 0);
}

}  // namespace
}  // namespace orvane::platform
