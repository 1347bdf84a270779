// What this process has at the moment, to see that something left nothing behind.
// Used by tests; any thread.
#pragma once

#include <algorithm>
#include <filesystem>

namespace orvane::tests {

inline auto PartsIn(const char* sFolder) {
  return std::distance(std::filesystem::directory_iterator(sFolder),
                       std::filesystem::directory_iterator());
}

/// Its threads.
inline auto Threads() {
  return PartsIn("/proc/self/task");
}

/// Its open files, with that of the looking.
inline auto OpenFiles() {
  return PartsIn("/proc/self/fd");
}

}  // namespace orvane::tests
