#include "platform/utf8.h"

#include <gtest/gtest.h>

namespace orvane::platform {
namespace {

TEST(utf8, takes_well_formed_text) {
  for (const char* const sText :
       {"", "plain", "Größe", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF",
        "\xEE\x80\x80", "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF",
        "plain then 日本語 then plain"}) {
    EXPECT_TRUE(IsUtf8(sText)) << sText;
  }
}

TEST(utf8, refuses_everything_else) {
  for (const char* const sText :
       {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC2", "\xC2\x41", "\xE0\x80\x80", "\xE0\x9F\xBF",
        "\xE2\x82", "\xED\xA0\x80", "\xED\xBF\xBF", "\xF0\x80\x80\x80", "\xF0\x8F\xBF\xBF",
        "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFE", "\xFF", "good \xC3"}) {
    EXPECT_FALSE(IsUtf8(sText));
  }
}

TEST(utf8, tells_the_first_character) {
  char32_t code = 0;
  EXPECT_EQ(FirstCharacter("a\xC3\xA4", code), 1U);
  EXPECT_EQ(code, U'a');
  EXPECT_EQ(FirstCharacter("\xF0\x9F\x98\x80x", code), 4U);
  EXPECT_EQ(code, char32_t{0x1F600});
  EXPECT_EQ(FirstCharacter("\xC3x", code), 0U);
  EXPECT_EQ(FirstCharacter("", code), 0U);
}

}  // namespace
}  // namespace orvane::platform
