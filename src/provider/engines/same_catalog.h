// Which names mean one catalog.
// Used wherever a catalog is looked for, above the engines and within; pure.
#pragma once

#include "platform/case_folding.h"

namespace orvane::provider::engines {

/// The name as the key of catalogs: case does not count, in any script.
inline bool IsSameCatalog(const platform::Text& sLeft, const platform::Text& sRight) {
  return platform::FoldCase(sLeft) == platform::FoldCase(sRight);
}

}  // namespace orvane::provider::engines
