// Database files: whether one can be opened at all, what has to be put right in it before, and the
// name by which SQLite opens it.
// Used by the engine before it opens or attaches a file; on any thread.
#pragma once

#include "provider/engines/engine.h"

namespace orvane::provider::engines {

/// The beginning of a sentence about the catalog.
platform::Text SubjectOf(const Catalog& catalog);

/// Fails with kServerNotFound, kNoRights or kNotADatabase when the catalog's file cannot be opened
/// for a reason that SQLite does not tell apart. A change that a killed program left half done is
/// taken back, if this user may write the file, as reading alone could not; that fails with
/// kNoRights where the journal is kept from him. A file in the log mode of older versions, in which
/// every reader leaves files beside it that lock the others out, is taken out of it by its owner
/// and refused to others.
void CheckFile(const Catalog& catalog);

/// The URI that opens the existing file and never makes one.
platform::Text UriOf(const Catalog& catalog);

}  // namespace orvane::provider::engines
