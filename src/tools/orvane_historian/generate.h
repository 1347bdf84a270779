// orvane-historian generate: signals of a plant that does not exist, to try the console with.
// Run by the program alone; may be run again and again.
#pragma once

#include <chrono>
#include <cstdint>

#include "platform/failure.h"
#include "platform/value.h"
#include "tools/orvane_historian/opened_catalog.h"

namespace orvane::tools {

struct GenerateOrder {
  platform::Text sCatalog;
  std::chrono::hours span{};    ///< up to now
  std::chrono::seconds step{};  ///< between two values of a signal
  platform::Timestamp now;
};

/// A catalog that somebody else has made: nothing was written into it.
class NotGenerated : public platform::Failure {
 public:
  using Failure::Failure;
};

/// Writes the signals of the span and gives the number of new values. A signal's value at a time
/// is always the same, and what is there already stays: generating again adds what is missing.
/// Into a catalog that was not made here it writes nothing and fails with NotGenerated; of one that
/// was, tags that somebody else has described stay as they are.
std::int64_t Generate(const ServerPlace& place, const GenerateOrder& order);

}  // namespace orvane::tools
