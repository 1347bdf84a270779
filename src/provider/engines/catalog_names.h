// What catalogs cannot be called on any server. Used by the session and by the engines that make
// catalogs; pure, any thread.
#pragma once

#include "platform/value.h"

namespace orvane::provider::engines {

/// Why no catalog is made under a name that begins with the prefix of names.
inline constexpr const char* kPrefixedName = "the prefix Orv_ has a meaning of its own";

/// Fails with failure::kInvalidArgument: no catalog can be called so, and why.
[[noreturn]] void RefuseCatalogName(const platform::Text& sName, const char* sWhy);

}  // namespace orvane::provider::engines
