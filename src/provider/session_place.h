// What a session stands on: where the historians are, the engine, the clock.
// Given by the provider to each of its sessions; a plain value.
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>

#include "platform/value.h"
#include "provider/engines/engine.h"
#include "provider/historian/known_historians.h"

namespace orvane::provider {

struct SessionPlace {
  std::filesystem::path root;  ///< folder of all historians
  std::shared_ptr<engines::Engine> engine;
  std::function<platform::Timestamp()> clock;  ///< what "*" means
  historian::KnownHistorians known{};          ///< those that were there once
  /// How long a statement that is to end is waited for before it is left to end by itself.
  std::chrono::milliseconds patience{1500};
};

}  // namespace orvane::provider
