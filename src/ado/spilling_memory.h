// Memory for what is worked out of rows: orders, keys, the points of a trend. Within the memory
// budget of the rows it lies on the heap, beyond it in temporary files, mapped one for each piece.
// Handed out by recordsets; any thread.
#pragma once

#include <memory>
#include <memory_resource>
#include <mutex>
#include <set>

#include "ado/memory_budget.h"

namespace orvane::ado {

class SpillingMemory final : public std::pmr::memory_resource {
 public:
  /// Pieces below this size are on the heap and count nowhere.
  static constexpr std::size_t kLeastCounted = std::size_t{64} << 10;

  explicit SpillingMemory(std::shared_ptr<MemoryBudget> budget) : m_budget(std::move(budget)) {}

 private:
  void* do_allocate(std::size_t bytes, std::size_t alignment) override;
  void do_deallocate(void* piece, std::size_t bytes, std::size_t alignment) override;
  bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override {
    return this == &other;
  }

  const std::shared_ptr<MemoryBudget> m_budget;
  std::mutex m_mutex;
  std::set<void*> m_mapped;  ///< pieces in files; under the mutex
};

}  // namespace orvane::ado
