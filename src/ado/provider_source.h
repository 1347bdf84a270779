// Where the connection layer gets providers from; the host answers from the component registry.
// Asked on the thread that opens the connection.
#pragma once

#include <memory>
#include <string_view>

#include "ado/provider.h"

namespace orvane::ado {

class ProviderSource {
 public:
  ProviderSource() = default;
  ProviderSource(const ProviderSource&) = delete;
  ProviderSource& operator=(const ProviderSource&) = delete;
  virtual ~ProviderSource() = default;

  /// The provider of that name, without regard to case, or null when none is registered. Fails
  /// with failure::kComponent when it is registered but cannot be loaded.
  virtual std::shared_ptr<Provider> Find(std::string_view sName) = 0;
};

}  // namespace orvane::ado
