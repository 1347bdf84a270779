#include "provider/engines/postgres/postgres_parameters.h"

#include <gmock/gmock.h>

#include <cmath>

#include "tests/ado/failure_of.h"

namespace orvane::provider::engines {
namespace {

using platform::Text;
using platform::Value;
using tests::FailureOf;
namespace failure = platform::failure;

TEST(NumberedTextTest, numbers_parameters_and_nothing_else) {
  const std::vector<std::pair<Text, Text>> all = {
      {"SELECT ?", "SELECT $1"},
      {"a = ? AND b = ?", "a = $1 AND b = $2"},
      {"'?' ? '''?'", "'?' $1 '''?'"},
      {"\"?\" ? \"a\"\"?\"", "\"?\" $1 \"a\"\"?\""},
      {"E'\\'?' ?", "E'\\'?' $1"},
      {"'\\' ? '?'", "'\\' $1 '?'"},
      {"name'?' ?", "name'?' $1"},
      {"-- ?\n?", "-- ?\n$1"},
      {"-- ?", "-- ?"},
      {"/* ? /* ? */ ? */ ?", "/* ? /* ? */ ? */ $1"},
      {"$$ ? $$ ?", "$$ ? $$ $1"},
      {"$t$ ? $$ ? $t$ ?", "$t$ ? $$ ? $t$ $1"},
      {"a$b$? ?", "a$b$$1 $2"},
      {"'?", "'?"},
      {"/* ?", "/* ?"},
      {"$x$ ?", "$x$ ?"},
      {"E'\\", "E'\\"},
      {"\xC3\xA4? ?", "\xC3\xA4$1 $2"},
  };
  for (const auto& [sGiven, sExpected] : all) {
    EXPECT_EQ(NumberParameters(sGiven, true).sSql, sExpected) << sGiven;
    EXPECT_EQ(NumberParameters(sGiven, false).sSql, sGiven);
  }
}

TEST(NumberedTextTest, finds_places_in_the_text_as_it_was) {
  Text sSql = "SELECT ?";
  for (int n = 0; n < 11; ++n) sSql += ", ?";
  sSql += " FRM t";
  const auto text = NumberParameters(sSql, true);
  EXPECT_EQ(text.nParameters, 12U);
  EXPECT_EQ(text.PlaceBefore(text.sSql.find("FRM")), sSql.find("FRM"));
  EXPECT_EQ(text.PlaceBefore(0), 0U);
}

TEST(PostgresParametersTest, refuse_what_no_database_can_hold) {
  const std::vector<Value> zero = {Value(Text("a\0b", 3))};
  EXPECT_EQ(FailureOf([&] { PostgresParameters parameters(zero); }).sSentence,
            "The server keeps no text with a character of number 0: take it out.");
  const std::vector<Value> object = {Value(1), Value(platform::ObjectPtr())};
  const auto failed = FailureOf([&] { PostgresParameters parameters(object); });
  EXPECT_EQ(failed.lNumber, failure::kTypeMismatch);
  EXPECT_EQ(failed.sSentence,
            "Parameter 2 is an object, which no database can hold: give a plain value.");
}

TEST(PostgresParametersTest, fit_what_was_prepared_with_null_of_any_type) {
  const std::vector<Value> first = {Value(1), Value("a")};
  const PostgresParameters prepared(first);
  const std::vector<Oid> types(prepared.Types(), prepared.Types() + prepared.Count());
  const std::vector<Value> same = {Value(), Value("b")};
  EXPECT_TRUE(PostgresParameters(same).Fit(types));
  const std::vector<Value> other = {Value(1.5), Value("b")};
  EXPECT_FALSE(PostgresParameters(other).Fit(types));
  EXPECT_FALSE(PostgresParameters(same).Fit({}));
}

}  // namespace
}  // namespace orvane::provider::engines
