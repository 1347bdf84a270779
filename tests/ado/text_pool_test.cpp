#include "ado/text_pool.h"

#include <gtest/gtest.h>

#include <string>

namespace orvane::ado {
namespace {

TEST(TextPool, keeps_equal_texts_once) {
  TextPool pool;
  const auto a = pool.Intern("alpha");
  const auto b = pool.Intern("beta");
  EXPECT_NE(a, b);
  EXPECT_EQ(pool.Intern("alpha"), a);
  EXPECT_EQ(pool.Intern("alpha"), a);
  EXPECT_EQ(pool.Intern("beta"), b);
  EXPECT_EQ(pool.Intern("gamma"), 2U);
  EXPECT_EQ(pool.At(a), "alpha");
  EXPECT_EQ(pool.At(b), "beta");
}

TEST(TextPool, keeps_thousands_of_repeated_texts_once_each) {
  TextPool pool;
  for (int round = 0; round < 5; ++round) {
    for (int i = 0; i < 3000; ++i) {
      ASSERT_EQ(pool.Intern("tag" + std::to_string(i)), static_cast<TextPool::Code>(i));
    }
  }
  EXPECT_EQ(pool.Intern("another"), 3000U);
}

TEST(TextPool, stops_looking_when_texts_hardly_repeat_and_still_keeps_all) {
  TextPool pool;
  constexpr TextPool::Code kTexts = 20'000;
  for (TextPool::Code i = 0; i < kTexts; ++i) ASSERT_EQ(pool.Intern(std::to_string(i)), i);
  // Stored again, because nobody looks any more.
  EXPECT_EQ(pool.Intern("0"), kTexts);
  for (TextPool::Code i = 0; i < kTexts; ++i) ASSERT_EQ(pool.At(i), std::to_string(i));
}

TEST(TextPool, keeps_a_text_longer_than_a_block) {
  TextPool pool;
  const std::string sLong(1'000'000, 'x');
  const auto before = pool.Intern("before");
  const auto code = pool.Intern(sLong);
  const auto after = pool.Intern("after");
  EXPECT_EQ(pool.At(code), sLong);
  EXPECT_EQ(pool.At(before), "before");
  EXPECT_EQ(pool.At(after), "after");
}

TEST(TextPool, knows_the_empty_text_from_texts_of_zero_bytes) {
  TextPool pool;
  const auto empty = pool.Intern("");
  const auto zero = pool.Intern(std::string_view("\0", 1));
  EXPECT_NE(empty, zero);
  EXPECT_EQ(pool.Intern(""), empty);
  EXPECT_EQ(pool.At(zero).size(), 1U);
}

TEST(TextPool, tells_the_memory_that_it_takes) {
  TextPool pool;
  EXPECT_EQ(pool.Bytes(), 0U);
  pool.Intern(std::string(1'000'000, 'x'));
  const std::size_t bytes = pool.Bytes();
  EXPECT_GE(bytes, 1'000'000U);
  EXPECT_LT(bytes, 1'100'000U);
  pool.Intern(std::string(1'000'000, 'x'));
  EXPECT_EQ(pool.Bytes(), bytes);
}

TEST(TextPool, begins_anew_when_cleared) {
  TextPool pool;
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(pool.Intern("one"), 0U);
    EXPECT_EQ(pool.Intern("two"), 1U);
    EXPECT_EQ(pool.Intern("one"), 0U);
    EXPECT_EQ(pool.At(1), "two");
    ASSERT_EQ(pool.Ends().size(), 2U);
    EXPECT_EQ(pool.Ends()[0], 3U);
    EXPECT_EQ(pool.Ends()[1], 6U);
    EXPECT_EQ(std::string(pool.Content().begin(), pool.Content().end()), "onetwo");
    pool.Clear();
    EXPECT_TRUE(pool.Ends().empty());
  }
}

TEST(TextPool, remembers_over_clearing_that_texts_hardly_repeat) {
  TextPool pool;
  for (int block = 0; block < 10; ++block) {
    pool.Clear();
    for (int i = 0; i < 1000; ++i) pool.Intern(std::to_string(block * 1000 + i));
  }
  pool.Clear();
  EXPECT_EQ(pool.Intern("a"), 0U);
  EXPECT_EQ(pool.Intern("b"), 1U);
  EXPECT_EQ(pool.Intern("a"), 2U);
}

}  // namespace
}  // namespace orvane::ado
