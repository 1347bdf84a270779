// The journals that SQLite keeps beside a database while it is changed, open to all who may write
// the database: whoever comes after a program that was killed has to take its change back, and
// SQLite gives a journal the mode of the database, but the group of whoever made it.
// Used where databases are opened; any thread.
#pragma once

namespace orvane::provider::engines {

/// The name of SQLite's own file system, but that journals are shared like their databases.
const char* SharedJournals();

}  // namespace orvane::provider::engines
