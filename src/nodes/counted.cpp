#include "nodes/counted.h"

#include <atomic>

namespace orvane::nodes {
namespace {

std::atomic<platform::Long> g_lAlive{0};

}  // namespace

Counted::Counted() noexcept {
  ++g_lAlive;
}
Counted::~Counted() {
  --g_lAlive;
}
platform::Long Counted::Alive() noexcept {
  return g_lAlive;
}

}  // namespace orvane::nodes
