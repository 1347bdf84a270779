#include "platform/case_folding.h"

#include <gtest/gtest.h>

namespace orvane::platform {
namespace {

TEST(case_folding, folds_ascii_letters_and_nothing_else) {
  EXPECT_EQ(FoldCase("Tag_01.[X] \"q\"\n"), "tag_01.[x] \"q\"\n");
}

TEST(case_folding, folds_letters_of_other_scripts) {
  EXPECT_EQ(FoldCase("ÄÖÜ"), FoldCase("äöü"));
  EXPECT_EQ(FoldCase("ΣΊΣΥΦΟΣ"), FoldCase("σίσυφος"));
  EXPECT_EQ(FoldCase("НАСОС"), FoldCase("насос"));
  EXPECT_EQ(FoldCase("𐐀"), FoldCase("𐐨"));
}

TEST(case_folding, uses_the_full_foldings) {
  EXPECT_EQ(FoldCase("Straße"), FoldCase("STRASSE"));
  EXPECT_EQ(FoldCase("ﬁ"), "fi");
  EXPECT_EQ(FoldCase("ΐ"), FoldCase("\u03B9\u0308\u0301"));
}

TEST(case_folding, keeps_scripts_without_case) {
  EXPECT_EQ(FoldCase("温度計"), "温度計");
  EXPECT_EQ(FoldCase("مضخة"), "مضخة");
}

TEST(case_folding, keeps_the_dotted_and_the_dotless_i_apart) {
  EXPECT_EQ(FoldCase("I"), "i");
  EXPECT_NE(FoldCase("ı"), FoldCase("i"));
}

TEST(case_folding, keeps_bytes_that_are_no_utf8) {
  for (const char* const sText :
       {"\xFF", "a\xC3", "\xE2\x82", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\x80\x80"}) {
    EXPECT_EQ(FoldCase(sText), sText);
  }
}

}  // namespace
}  // namespace orvane::platform
