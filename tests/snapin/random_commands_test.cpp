// Thousands of random commands, each followed by a comparison of the console with a plain model of
// what its tree must be. ORVANE_TEST_SEED=n runs one sequence alone, as a failure asks for, and
// prints its commands.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <memory>

#include "tests/snapin/random_console.h"

namespace orvane::snapin {
namespace {

constexpr unsigned kSequences = 60;
constexpr int kSteps = 120;

/// Runs one sequence to its end and sees that nothing of it is left.
void RunSequence(unsigned nSeed) {
  const auto lAliveBefore = AliveObjects();
  auto console = std::make_unique<RandomConsole>(nSeed);
  for (int nStep = 0; nStep < kSteps; ++nStep) {
    ASSERT_TRUE(console->Step()) << console->Differences() << "after these commands:\n"
                                 << console->History() << "ORVANE_TEST_SEED=" << nSeed
                                 << " runs them again";
  }
  if (std::getenv("ORVANE_TEST_SEED")) std::cout << console->History();
  const auto seen = console->TakeSeen();
  EXPECT_FALSE(seen.empty());
  console.reset();
  const auto nLeft =
      std::count_if(seen.begin(), seen.end(), [](const auto& object) { return !object.expired(); });
  EXPECT_EQ(nLeft, 0) << "items, nodes, connections or rowsets outlive ORVANE_TEST_SEED=" << nSeed;
  EXPECT_EQ(AliveObjects(), lAliveBefore) << "ORVANE_TEST_SEED=" << nSeed;
}

TEST(random_commands, keep_the_tree_as_the_rules_want_it) {
  if (const char* const sSeed = std::getenv("ORVANE_TEST_SEED")) {
    return RunSequence(static_cast<unsigned>(std::strtoul(sSeed, nullptr, 10)));
  }
  for (unsigned nSeed = 1; nSeed <= kSequences && !testing::Test::HasFailure(); ++nSeed) {
    RunSequence(nSeed);
  }
}

TEST(random_commands, are_the_same_for_the_same_seed) {
  RandomConsole first(7);
  RandomConsole second(7);
  for (int nStep = 0; nStep < kSteps; ++nStep) {
    first.Step();
    second.Step();
  }
  EXPECT_EQ(first.History(), second.History());
  RandomConsole other(8);
  for (int nStep = 0; nStep < kSteps; ++nStep) other.Step();
  EXPECT_NE(first.History(), other.History());
}

}  // namespace
}  // namespace orvane::snapin
