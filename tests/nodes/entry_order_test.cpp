#include "nodes/entry_order.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

namespace orvane::nodes {
namespace {

using Link = EntryOrder::Link;

class entry_order : public testing::Test {
 protected:
  Link* Insert(std::size_t nPosition) {
    all.push_back(std::make_unique<Link>());
    order.Insert(*all.back(), nPosition);
    expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(nPosition), all.back().get());
    return all.back().get();
  }
  void Remove(std::size_t nPosition) {
    order.Remove(*expected[nPosition]);
    expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(nPosition));
  }
  /// The order by position, from the first to the last and from the last to the first.
  void ExpectTheSame() {
    ASSERT_EQ(order.Count(), expected.size());
    const Link* entry = nullptr;
    for (std::size_t n = 0; n < expected.size(); ++n) {
      entry = order.Next(entry);
      ASSERT_EQ(entry, expected[n]) << "walking to " << n;
      ASSERT_EQ(order.At(n), expected[n]) << "at " << n;
      ASSERT_EQ(order.Previous(*entry), n == 0 ? nullptr : expected[n - 1]) << "back from " << n;
    }
    if (entry) {
      EXPECT_EQ(order.Next(entry), nullptr);
    }
  }

  std::vector<std::unique_ptr<Link>> all;
  std::vector<Link*> expected;
  EntryOrder order;
};

TEST_F(entry_order, an_empty_one_has_no_first) {
  EXPECT_EQ(order.Count(), 0U);
  EXPECT_EQ(order.Next(nullptr), nullptr);
}

TEST_F(entry_order, is_that_of_a_vector_after_any_insertions_and_removals) {
  std::mt19937 random(7);
  for (int nStep = 0; nStep < 3000; ++nStep) {
    const std::size_t nAny = random() % (expected.size() + 1);
    if (nAny < expected.size() && random() % 5 < 2) {
      Remove(nAny);
    } else {
      Insert(nAny);
    }
    // What was found before must not be found again where something else is now.
    if (!expected.empty()) {
      const std::size_t nAsked = random() % expected.size();
      ASSERT_EQ(order.At(nAsked), expected[nAsked]);
      if (nAsked + 1 < expected.size()) {
        ASSERT_EQ(order.At(nAsked + 1), expected[nAsked + 1]);
      }
    }
    if (nStep % 100 == 0) ExpectTheSame();
  }
  ExpectTheSame();
  while (!expected.empty()) Remove(expected.size() / 2);
  ExpectTheSame();
}

TEST_F(entry_order, an_entry_taken_out_can_be_put_in_again) {
  for (std::size_t n = 0; n < 3; ++n) Insert(n);
  Link* const entry = expected[1];
  Remove(1);
  order.Insert(*entry, 2);
  expected.push_back(entry);
  ExpectTheSame();
}

}  // namespace
}  // namespace orvane::nodes
