// What statements may not do to the session that runs them: attach, set, begin and end
// transactions. Catalogs are within reach only while a statement names them, and a transaction left
// open would keep them there. Made for one statement, on its stack.
#pragma once

#include <functional>

#include "platform/types.h"
#include "provider/engines/sqlite/sqlite_handle.h"

namespace orvane::provider::engines {

class SqliteRefusals {
 public:
  explicit SqliteRefusals(sqlite3* database);
  SqliteRefusals(const SqliteRefusals&) = delete;
  SqliteRefusals& operator=(const SqliteRefusals&) = delete;
  ~SqliteRefusals();

  /// Does the work of one statement in a transaction: where a rule of conflicts is FAIL, SQLite
  /// keeps the rows before the refused one. The subject is what the statement works on.
  void InTransaction(const platform::Text& sSubject, const std::function<void()>& work);

 private:
  void RunOwn(const char* sSql, const platform::Text& sSubject);
  void RollBack() noexcept;
  static int Authorize(void* refusals, int nAction, const char*, const char*, const char*,
                       const char*);

  sqlite3* m_database;
  bool m_bOwn = false;  ///< the transaction that begins or ends is this one's
};

}  // namespace orvane::provider::engines
