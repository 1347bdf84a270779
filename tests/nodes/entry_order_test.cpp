#include "nodes/entry_order.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
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

/// An entry that knows how far it is from the top, which is how far whatever is done with it goes.
struct DeepLink : Link {
  int Depth() const {
    int nDepth = 0;
    for (const Link* above = m_parent; above != nullptr; ++nDepth) {
      above = static_cast<const DeepLink*>(above)->m_parent;
    }
    return nDepth;
  }
};

// What goes as deep as there are entries makes bulk quadratic.
TEST(entry_order_in_bulk, goes_no_deeper_than_a_few_times_the_logarithm) {
  constexpr std::size_t kEntries = 20'000;
  constexpr int kDeepest = 60;
  std::mt19937 random(11);
  const auto atEnd = [](std::size_t nCount) { return nCount; };
  const auto atBegin = [](std::size_t) { return std::size_t{0}; };
  const auto inMiddle = [](std::size_t nCount) { return nCount / 2; };
  const auto anywhere = [&](std::size_t nCount) { return random() % (nCount + 1); };
  const auto deepestOf = [](const std::vector<std::unique_ptr<DeepLink>>& entries) {
    int nDeepest = 0;
    for (const auto& entry : entries) nDeepest = std::max(nDeepest, entry->Depth());
    return nDeepest;
  };
  for (const std::function<std::size_t(std::size_t)>& place :
       {std::function<std::size_t(std::size_t)>(atEnd), {atBegin}, {inMiddle}, {anywhere}}) {
    EntryOrder order;
    std::vector<std::unique_ptr<DeepLink>> entries;
    for (std::size_t n = 0; n < kEntries; ++n) {
      entries.push_back(std::make_unique<DeepLink>());
      order.Insert(*entries.back(), place(n));
    }
    EXPECT_LE(deepestOf(entries), kDeepest);
    // Nor after half of them have gone, wherever they stood.
    std::shuffle(entries.begin(), entries.end(), random);
    while (entries.size() > kEntries / 2) {
      order.Remove(*entries.back());
      entries.pop_back();
    }
    EXPECT_EQ(order.Count(), entries.size());
    EXPECT_LE(deepestOf(entries), kDeepest);
  }
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
