// Where the room ran out when SQLite found none: on a catalog's disk, in a catalog with a limit of
// its own, or on the disk of temporary files. SQLite says the same of all three.
// Used by the session behind a statement that failed; any thread.
#pragma once

#include <span>

#include "platform/failure.h"
#include "provider/engines/engine.h"

namespace orvane::provider::engines {

/// Whether the catalog's disk is full before the catalog reaches its limit: whether it has less
/// left for this user than the catalog may still grow.
bool IsDiskFirst(const Catalog& catalog);

/// Fails like the failure, with the sentence for the catalog whose room ran out. A statement that
/// only reads writes nothing but temporary files.
[[noreturn]] void FailWithoutRoom(const platform::Failure& failed,
                                  std::span<const Catalog> catalogs, bool bReads);

/// The failure for a catalog that has reached its own limit.
platform::Failure LimitReached(const Catalog& catalog, const platform::Failure& failed);

}  // namespace orvane::provider::engines
