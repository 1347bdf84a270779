#include "ado/memory_budget.h"

#include <unistd.h>

namespace orvane::ado {

std::size_t MemoryBudget::QuarterOfMachine() {
  // Where the machine does not tell.
  constexpr std::size_t kUnknown = std::size_t{1} << 30;
  const long nPages = ::sysconf(_SC_PHYS_PAGES);
  const long nPageSize = ::sysconf(_SC_PAGESIZE);
  if (nPages <= 0 || nPageSize <= 0) return kUnknown;
  return static_cast<std::size_t>(nPages) / 4 * static_cast<std::size_t>(nPageSize);
}

}  // namespace orvane::ado
