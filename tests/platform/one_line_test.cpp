#include "platform/one_line.h"

#include <gtest/gtest.h>

namespace orvane::platform {
namespace {

TEST(one_line, leaves_what_can_be_read) {
  EXPECT_EQ(OneLine(""), "");
  EXPECT_EQ(OneLine("SELECT 'Größe' FROM a..b"), "SELECT 'Größe' FROM a..b");
}

TEST(one_line, escapes_line_breaks_and_controls) {
  EXPECT_EQ(OneLine("a\nb\r\nc\td\\n"), "a\\nb\\r\\nc\\td\\\\n");
  EXPECT_EQ(OneLine(Text("\x1B[2J\0\x7F", 6)), "\\x1B[2J\\x00\\x7F");
  EXPECT_EQ(OneLine("\xC2\x9B"
                    "2J"),
            "\\u{009B}2J");
}

TEST(one_line, escapes_separators_and_marks_of_direction) {
  // In pieces, so that no literal here turns the direction of this file.
  const Text sMarks = Text("\xE2\x80") + "\xAE" + "\xE2\x81" + "\xA6";
  EXPECT_EQ(OneLine("a\xE2\x80\xA8z\xE2\x80\xA9" + sMarks + "\xEF\xBB\xBF"),
            "a\\u{2028}z\\u{2029}\\u{202E}\\u{2066}\\u{FEFF}");
}

TEST(one_line, escapes_bytes_that_are_no_text) {
  EXPECT_EQ(OneLine("\xFF"
                    "a\xC3"),
            "\\xFFa\\xC3");
}

TEST(one_line, is_cut_between_characters) {
  EXPECT_EQ(OneLine("abc", 3), "abc");
  EXPECT_EQ(OneLine("abcd", 3), "abc...");
  EXPECT_EQ(OneLine("abä", 3), "ab...");
}

}  // namespace
}  // namespace orvane::platform
