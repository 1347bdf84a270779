// orvane-historian generate: signals of a plant that does not exist, to try the console with.
// Run by the program alone; may be run again and again.
#pragma once

#include <chrono>
#include <cstdint>

#include "platform/value.h"
#include "tools/orvane_historian/opened_catalog.h"

namespace orvane::tools {

struct GenerateOrder {
  platform::Text sCatalog;
  std::chrono::hours span{};    ///< up to now
  std::chrono::seconds step{};  ///< between two values of a signal
  platform::Timestamp now;
};

/// Writes the signals of the span and gives the number of new values. A signal's value at a time
/// is always the same, and what is there already stays: generating again adds what is missing.
std::int64_t Generate(const ServerPlace& place, const GenerateOrder& order);

}  // namespace orvane::tools
