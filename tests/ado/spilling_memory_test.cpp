// Memory for what is worked out of rows: within the budget on the heap, beyond it in files.
#include "ado/spilling_memory.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdint>
#include <numeric>
#include <vector>

#include "ado/row_collector.h"
#include "platform/failure.h"
#include "tests/ado/failure_of.h"

namespace orvane::ado {
namespace {

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

TEST(spilling_memory, takes_from_the_budget_and_gives_back) {
  const auto budget = std::make_shared<MemoryBudget>(4 * kMegabyte);
  SpillingMemory memory(budget);
  {
    const std::pmr::vector<char> held(kMegabyte, 'x', &memory);
    EXPECT_EQ(budget->Taken(), kMegabyte);
    const std::pmr::vector<char> small(100, 'y', &memory);
    EXPECT_EQ(budget->Taken(), kMegabyte) << "what is small counts nowhere";
  }
  EXPECT_EQ(budget->Taken(), 0U);
}

TEST(spilling_memory, goes_on_in_a_file_beyond_the_budget) {
  const auto budget = std::make_shared<MemoryBudget>(kMegabyte);
  SpillingMemory memory(budget);
  {
    std::pmr::vector<std::uint64_t> held(&memory);
    for (std::uint64_t n = 0; n < kMegabyte; ++n) held.push_back(n * 3);
    EXPECT_LE(budget->Taken(), kMegabyte);
    std::uint64_t wrong = 0;
    for (std::uint64_t n = 0; n < kMegabyte; ++n) wrong += held[n] == n * 3 ? 0 : 1;
    EXPECT_EQ(wrong, 0U);
    const std::pmr::vector<std::uint64_t> copy(held, &memory);
    EXPECT_EQ(copy, held);
  }
  EXPECT_EQ(budget->Taken(), 0U);
}

TEST(spilling_memory, a_file_that_cannot_grow_is_told) {
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const rlimit limit{2 * kMegabyte, before.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &limit);
  SpillingMemory memory(std::make_shared<MemoryBudget>(kMegabyte));
  const auto failed =
      tests::FailureOf([&] { const std::pmr::vector<char> held(4 * kMegabyte, 'x', &memory); });
  const std::pmr::vector<char> fits(kMegabyte + 1, 'x', &memory);
  ::setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(failed.lNumber, platform::failure::kStorage);
  EXPECT_NE(failed.sSentence.find("has no room left for more rows"), std::string::npos);
  EXPECT_EQ(fits.back(), 'x') << "what has room goes on";
}

TEST(spilling_memory, is_what_rows_with_a_budget_hand_out) {
  const auto budget = std::make_shared<MemoryBudget>(4 * kMegabyte);
  RowCollector rows(RowStorage{budget, true});
  rows.Begin({{"A", platform::DataType::BigInt}}, true);
  rows.End(false);
  const auto memory = rows.Recordset()->Memory();
  const std::pmr::vector<char> held(kMegabyte, 'x', memory.get());
  EXPECT_EQ(budget->Taken(), kMegabyte);
  RowCollector unbounded(RowStorage{});
  unbounded.Begin({{"A", platform::DataType::BigInt}}, true);
  unbounded.End(false);
  EXPECT_EQ(unbounded.Recordset()->Memory().get(), std::pmr::new_delete_resource());
}

}  // namespace
}  // namespace orvane::ado
