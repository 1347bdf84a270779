// The catalogs of one call, within reach while this lives. Those that an outer call has attached
// already stay with that one. Made for one call of a session, on its stack.
#pragma once

#include <set>
#include <span>
#include <vector>

#include "provider/engines/engine.h"
#include "provider/engines/sqlite/sqlite_handle.h"

namespace orvane::provider::engines {

class SqliteAttachments {
 public:
  /// What a session has attached, by folded names; all calls of the session share it.
  using Attached = std::set<platform::Text>;

  /// Fails like opening a database, and with failure::kInvalidArgument for a catalog that would
  /// join a transaction later.
  SqliteAttachments(sqlite3* database, Attached& attached, std::span<const Catalog> catalogs);
  SqliteAttachments(const SqliteAttachments&) = delete;
  SqliteAttachments& operator=(const SqliteAttachments&) = delete;
  ~SqliteAttachments() { Detach(); }

 private:
  struct Own {
    platform::Text sDetach;  ///< the statement
    platform::Text sKey;
  };

  void Attach(const Catalog& catalog);
  void Detach() noexcept;

  sqlite3* m_database;
  Attached& m_attached;
  std::vector<Own> m_own;
};

}  // namespace orvane::provider::engines
