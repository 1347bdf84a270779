#include "platform/conversions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "platform/failure.h"

namespace orvane::platform {
namespace {

using namespace std::chrono;

Long NumberOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Failure& failure) {
    EXPECT_FALSE(failure.Description().empty());
    return failure.Number();
  }
  return 0;
}

Long TextFailure(std::string_view sText) {
  return NumberOf([&] { TextToLong(sText); });
}

TEST(conversions, text_is_kept_as_it_is) {
  EXPECT_EQ(ToText(" a\n\"b\" "), " a\n\"b\" ");
}

TEST(conversions, integers_are_shown_in_decimal) {
  EXPECT_EQ(ToText(Long{-2147483647 - 1}), "-2147483648");
  EXPECT_EQ(ToText(std::int64_t{9007199254740993}), "9007199254740993");
  EXPECT_EQ(ToText(Long{0}), "0");
}

TEST(conversions, booleans_are_shown_as_true_and_false) {
  EXPECT_EQ(ToText(true), "True");
  EXPECT_EQ(ToText(false), "False");
}

TEST(conversions, null_is_shown_as_the_empty_text) {
  EXPECT_EQ(ToText(Null{}), "");
}

TEST(conversions, doubles_are_shown_in_the_shortest_form_that_reads_back) {
  EXPECT_EQ(ToText(0.1), "0.1");
  EXPECT_EQ(ToText(1e300), "1e+300");
  EXPECT_EQ(std::stod(ToText(1.0 / 3.0)), 1.0 / 3.0);
}

TEST(conversions, times_are_shown_in_utc_without_trailing_zeros) {
  const Timestamp timestamp = sys_days(2026y / 3 / 9) + 7h + 5min + 3s;
  EXPECT_EQ(ToText(timestamp), "2026-03-09 07:05:03");
  EXPECT_EQ(ToText(timestamp + 120ms), "2026-03-09 07:05:03.12");
  EXPECT_EQ(ToText(Timestamp(-1us)), "1969-12-31 23:59:59.999999");
  EXPECT_EQ(ToText(Date(sys_days(2026y / 3 / 9))), "2026-03-09");
  EXPECT_EQ(ToText(TimeOfDay(23h + 1us)), "23:00:00.000001");
}

TEST(conversions, bytes_and_guids_are_shown_in_hex) {
  EXPECT_EQ(ToText(Bytes{std::byte{0x0F}, std::byte{0xA0}}), "0x0FA0");
  Guid guid;
  for (std::size_t i = 0; i < 16; ++i) guid.bytes[i] = static_cast<std::uint8_t>(i * 17);
  EXPECT_EQ(ToText(guid), "{00112233-4455-6677-8899-AABBCCDDEEFF}");
  EXPECT_EQ(ToText(Decimal{"-12.50"}), "-12.50");
}

TEST(conversions, an_object_has_no_text_and_no_number) {
  const Value vtObject(std::make_shared<Object>());
  EXPECT_EQ(NumberOf([&] { ToText(vtObject); }), 13);
  EXPECT_EQ(NumberOf([&] { ToLong(vtObject); }), 13);
}

TEST(conversions, plain_digits_with_an_optional_sign_count) {
  EXPECT_EQ(TextToLong("0"), 0);
  EXPECT_EQ(TextToLong("-17"), -17);
  EXPECT_EQ(TextToLong("+17"), 17);
  EXPECT_EQ(TextToLong("007"), 7);
  EXPECT_EQ(TextToLong("2147483647"), 2147483647);
  EXPECT_EQ(TextToLong("-2147483648"), std::numeric_limits<Long>::min());
}

TEST(conversions, blanks_around_a_number_count) {
  EXPECT_EQ(TextToLong(" \t12 \t"), 12);
  EXPECT_EQ(TextFailure("- 1"), 13);
  EXPECT_EQ(TextFailure("1\n"), 13);
}

TEST(conversions, a_fraction_is_rounded_half_to_even) {
  EXPECT_EQ(TextToLong("1.5"), 2);
  EXPECT_EQ(TextToLong("2.5"), 2);
  EXPECT_EQ(TextToLong("2.500001"), 3);
  EXPECT_EQ(TextToLong("-2.5"), -2);
  EXPECT_EQ(TextToLong("-3.5"), -4);
  EXPECT_EQ(TextToLong("2.49"), 2);
  EXPECT_EQ(TextToLong("3."), 3);
}

TEST(conversions, letters_grouping_and_exponents_do_not_count) {
  for (const char* const sText :
       {"", " ", "a", "1a", "1,000", "1e3", ".", ".5", "0x10", "--1", "1.2.3", "١٢", "1 2"}) {
    EXPECT_EQ(TextFailure(sText), 13) << sText;
  }
}

TEST(conversions, numbers_beyond_32_bits_do_not_count) {
  for (const char* const sText : {"2147483648", "-2147483649", "99999999999999999999999999",
                                  "2147483647.9", "-2147483648.6"}) {
    EXPECT_EQ(TextFailure(sText), 6) << sText;
  }
}

TEST(conversions, values_convert_to_a_32_bit_integer) {
  EXPECT_EQ(ToLong(true), -1);
  EXPECT_EQ(ToLong(false), 0);
  EXPECT_EQ(ToLong(2.5), 2);
  EXPECT_EQ(ToLong(-3.5), -4);
  EXPECT_EQ(ToLong(std::int64_t{12}), 12);
  EXPECT_EQ(ToLong(Decimal{"3.5"}), 4);
  EXPECT_EQ(NumberOf([] { ToLong(std::int64_t{2147483648}); }), 6);
  EXPECT_EQ(NumberOf([] { ToLong(2147483647.5); }), 6);
  EXPECT_EQ(NumberOf([] { ToLong(std::nan("")); }), 13);
  EXPECT_EQ(NumberOf([] { ToLong(HUGE_VAL); }), 6);
  EXPECT_EQ(NumberOf([] { ToLong(Null{}); }), 13);
  EXPECT_EQ(NumberOf([] { ToLong(Timestamp{}); }), 13);
}

TEST(conversions, values_convert_to_a_boolean) {
  EXPECT_FALSE(ToBoolean(Null{}));
  EXPECT_TRUE(ToBoolean(Long{-1}));
  EXPECT_FALSE(ToBoolean(0.0));
  EXPECT_TRUE(ToBoolean("true"));
  EXPECT_FALSE(ToBoolean("FALSE"));
  EXPECT_TRUE(ToBoolean("2"));
  EXPECT_TRUE(ToBoolean(Decimal{"0.1"}));
  EXPECT_EQ(NumberOf([] { ToBoolean("yes"); }), 13);
}

}  // namespace
}  // namespace orvane::platform
