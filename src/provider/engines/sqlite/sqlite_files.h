// Database files: whether one can be opened at all, and the name by which SQLite opens it.
// Used by the engine before it opens or attaches a file; on any thread.
#pragma once

#include "provider/engines/engine.h"

namespace orvane::provider::engines {

/// The beginning of a sentence about the catalog.
platform::Text SubjectOf(const Catalog& catalog);

/// Fails with kServerNotFound, kNoRights or kNotADatabase when the catalog's file cannot be opened
/// for a reason that SQLite does not tell apart.
void CheckFile(const Catalog& catalog);

/// The URI that opens the existing file and never makes one.
platform::Text UriOf(const Catalog& catalog);

}  // namespace orvane::provider::engines
