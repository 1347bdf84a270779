// The functions that one statement brings along, known to SQLite while the statement runs.
// Made by a session on its stack, for one statement.
#pragma once

#include <sqlite3.h>

#include <deque>
#include <optional>
#include <span>
#include <utility>

#include "platform/failure.h"
#include "provider/engines/engine.h"

namespace orvane::provider::engines {

class SqliteFunctions {
 public:
  SqliteFunctions(sqlite3* database, std::span<const StatementFunction> functions);
  SqliteFunctions(const SqliteFunctions&) = delete;
  SqliteFunctions& operator=(const SqliteFunctions&) = delete;
  ~SqliteFunctions();

  /// Does the work. Where it fails because a function did, that failure is what leaves.
  template <class Work>
  auto Guard(Work&& work) {
    try {
      return std::forward<Work>(work)();
    } catch (const platform::Failure&) {
      if (m_failed) throw platform::Failure(*m_failed);
      throw;
    }
  }

 private:
  struct Known {
    SqliteFunctions* owner;
    const StatementFunction* function;
  };
  static void Call(sqlite3_context* context, int nArguments, sqlite3_value** arguments);

  sqlite3* m_database;
  std::deque<Known> m_known;
  std::optional<platform::Failure> m_failed;
};

}  // namespace orvane::provider::engines
