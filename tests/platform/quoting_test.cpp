#include "platform/quoting.h"

#include <gtest/gtest.h>

namespace orvane::platform {
namespace {

TEST(quoting, puts_names_and_texts_between_quotes_and_doubles_those_inside) {
  EXPECT_EQ(QuotedName("Value"), "\"Value\"");
  EXPECT_EQ(QuotedName("a\"b'c"), "\"a\"\"b'c\"");
  EXPECT_EQ(QuotedName(""), "\"\"");
  EXPECT_EQ(QuotedText("it's \"it\""), "'it''s \"it\"'");
  EXPECT_EQ(QuotedText(std::string_view("a\0'", 3)), Text("'a\0'''", 6));
}

TEST(quoting, names_in_sentences_stay_as_they_are) {
  EXPECT_EQ(InQuotes(""), "\"\"");
  EXPECT_EQ(InQuotes("a\"b'c"), "\"a\"b'c\"");
}

}  // namespace
}  // namespace orvane::platform
