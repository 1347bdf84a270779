// Memory that runs out for whoever allocates by new.
// Used by tests of the engine on PostgreSQL, whose program has a new of its own for it.
#pragma once

#include <cstddef>

namespace orvane::tests {

/// As long as it lives, this thread gets that many pieces of memory and no more. One at a time.
class ScarceMemory {
 public:
  explicit ScarceMemory(std::size_t nPieces);
  ScarceMemory(const ScarceMemory&) = delete;
  ScarceMemory& operator=(const ScarceMemory&) = delete;
  ~ScarceMemory();
};

}  // namespace orvane::tests
