// What a session stands on: the engines and the clock.
// Given by the provider to each of its sessions; a plain value.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/value.h"
#include "provider/engines/engine.h"

namespace orvane::provider {

struct SessionPlace {
  /// Asked in their order whose a server is. The last one takes what no other serves; its servers,
  /// those of this machine, are offered first.
  std::vector<std::shared_ptr<engines::Engine>> engines;
  std::function<platform::Timestamp()> clock;  ///< what "*" means
};

}  // namespace orvane::provider
