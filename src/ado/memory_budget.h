// Memory that all rows held by a program may take together.
// Made by the host, or for one statement; shared by the rows that count on it; any thread.
#pragma once

#include <atomic>
#include <cstddef>

namespace orvane::ado {

class MemoryBudget {
 public:
  explicit MemoryBudget(std::size_t bytes) : m_bytes(bytes) {}
  MemoryBudget(const MemoryBudget&) = delete;
  MemoryBudget& operator=(const MemoryBudget&) = delete;

  /// True, and the bytes are taken, when they are within the budget.
  bool Take(std::size_t bytes) noexcept {
    std::size_t taken = m_taken.load(std::memory_order_relaxed);
    do {
      if (bytes > m_bytes || taken > m_bytes - bytes) return false;
    } while (!m_taken.compare_exchange_weak(taken, taken + bytes, std::memory_order_relaxed));
    return true;
  }
  void GiveBack(std::size_t bytes) noexcept { m_taken.fetch_sub(bytes, std::memory_order_relaxed); }
  std::size_t Taken() const noexcept { return m_taken.load(std::memory_order_relaxed); }
  std::size_t Bytes() const noexcept { return m_bytes; }

  /// A quarter of the machine's memory.
  static std::size_t QuarterOfMachine();

 private:
  const std::size_t m_bytes;
  std::atomic<std::size_t> m_taken{0};
};

}  // namespace orvane::ado
