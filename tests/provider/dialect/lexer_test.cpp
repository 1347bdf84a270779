#include "provider/dialect/lexer.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "platform/quoting.h"
#include "tests/provider/dialect/tokens.h"

namespace orvane::provider::dialect {
namespace {

using platform::Text;

Text Kinds(std::string_view sStatement) {
  static constexpr const char* kNames[] = {"word",      "name", "string", "blob", "number",
                                           "parameter", "time", "symbol", "end"};
  Text sKinds;
  for (const auto& token : Tokens(sStatement)) {
    if (!sKinds.empty()) sKinds += " ";
    sKinds += kNames[static_cast<int>(token.kind)];
    if (token.kind != TokenKind::End) sKinds += "=" + token.sText;
  }
  return sKinds;
}

Text FailureOfReading(std::string_view sStatement) {
  try {
    Tokens(sStatement);
  } catch (const platform::Failure& failure) {
    EXPECT_EQ(failure.Number(), platform::failure::kSqlError);
    return failure.Description();
  }
  return "no failure";
}

TEST(lexer, tells_the_kinds_of_tokens_apart) {
  EXPECT_EQ(Kinds("SELECT a1, \"b\"\"c\" FROM [d e].`f`"),
            "word=SELECT word=a1 symbol=, name=b\"c word=FROM name=d e symbol=. name=f end");
  EXPECT_EQ(Kinds("'it''s' x'00fF' X''"), "string=it's blob=x'00fF' blob=X'' end");
  EXPECT_EQ(Kinds("1 1.5 .5 1e3 1.5E-3 0x1F 1."),
            "number=1 number=1.5 number=.5 number=1e3 number=1.5E-3 number=0x1F number=1. end");
  EXPECT_EQ(Kinds("a<=b<>c!=d==e||f->>g->h<<i>>j"),
            "word=a symbol=<= word=b symbol=<> word=c symbol=!= word=d symbol=== word=e "
            "symbol=|| word=f symbol=->> word=g symbol=-> word=h symbol=<< word=i symbol=>> "
            "word=j end");
  EXPECT_EQ(Kinds("Plant1..Data"), "word=Plant1 symbol=. symbol=. word=Data end");
  EXPECT_EQ(Kinds("caf\xC3\xA9 \xD0\x91$"), "word=caf\xC3\xA9 word=\xD0\x91$ end");
}

TEST(lexer, leaves_comments_out) {
  EXPECT_EQ(Kinds("a -- it's ; nothing\n/* ; ' */ b"), "word=a word=b end");
  EXPECT_EQ(Kinds("a -- to the end"), "word=a end");
}

TEST(lexer, lets_semicolons_stand_at_the_end_only) {
  EXPECT_EQ(Kinds("a;"), "word=a end");
  EXPECT_EQ(Kinds("a ; ; -- all\n ;"), "word=a end");
  EXPECT_EQ(FailureOfReading("SELECT 1; DROP TABLE x"),
            "A second statement begins (character 11 of the statement); send one statement at a "
            "time.");
  EXPECT_EQ(FailureOfReading("\xC3\xA9;\xC3\xA9"),
            "A second statement begins (character 3 of the statement); send one statement at a "
            "time.");
  EXPECT_EQ(FailureOfReading(";a"),
            "A second statement begins (character 2 of the statement); send one statement at a "
            "time.");
}

TEST(lexer, fails_with_a_place_and_an_advice) {
  EXPECT_EQ(FailureOfReading(""), "There is no statement; enter one such as SELECT.");
  EXPECT_EQ(FailureOfReading(" ; -- nothing"), "There is no statement; enter one such as SELECT.");
  EXPECT_EQ(FailureOfReading("a 'b''"),
            "A quote is never closed (character 3 of the statement); close it with '.");
  EXPECT_EQ(FailureOfReading("[a"),
            "A quote is never closed (character 1 of the statement); close it with ].");
  EXPECT_EQ(FailureOfReading("a /* b"),
            "A comment never ends (character 3 of the statement); end it with */.");
  EXPECT_EQ(Kinds("a=?"), "word=a symbol== parameter=? end");
  EXPECT_EQ(FailureOfReading("a = ?1"),
            "There is a parameter mark (character 5 of the statement); write the value itself "
            "into the statement.");
  EXPECT_EQ(FailureOfReading("a \\ b"),
            "There is a character without a meaning (character 3 of the statement); remove it or "
            "put it between quotes.");
  EXPECT_EQ(FailureOfReading("12abc"),
            "A name begins with a digit (character 1 of the statement); put it between double "
            "quotes.");
  EXPECT_EQ(
      FailureOfReading("x'0'"),
      "Bytes are unfinished (character 1 of the statement); write an even number of hexadecimal "
      "digits between quotes, such as x'00ff'.");
  EXPECT_EQ(FailureOfReading(std::string_view("a\0;b", 4)),
            "There is a zero character (character 2 of the statement); remove it.");
}

TEST(lexer, knows_where_each_token_stands) {
  const auto tokens = Tokens("  ab 'c''d'");
  ASSERT_EQ(tokens.size(), 3U);
  EXPECT_EQ(tokens[0].position, 2U);
  EXPECT_EQ(tokens[0].length, 2U);
  EXPECT_EQ(tokens[0].sUpper, "AB");
  EXPECT_EQ(tokens[1].position, 5U);
  EXPECT_EQ(tokens[1].length, 6U);
  EXPECT_EQ(tokens[2].position, 11U);
}

TEST(lexer, quotes_names_so_that_they_read_back) {
  EXPECT_EQ(platform::QuotedName("a\"b"), "\"a\"\"b\"");
  EXPECT_EQ(Tokens(platform::QuotedName("a\"b"))[0].sText, "a\"b");
}

TEST(lexer, compares_names_without_regard_to_ascii_case) {
  EXPECT_TRUE(SameName("Data", "dATA"));
  EXPECT_FALSE(SameName("Data", "Data2"));
  EXPECT_FALSE(SameName("\xC3\x89", "\xC3\xA9"));
}

}  // namespace
}  // namespace orvane::provider::dialect
