// Values as SQLite keeps them: the one way in which each kind is given to a statement.
// Used by the engine's statements and by programs that write many rows. Pure functions, any thread.
#pragma once

#include "platform/value.h"
#include "provider/engines/sqlite/sqlite_handle.h"

namespace orvane::provider::engines {

/// How long texts and bytes of a value stay where they are.
enum class Lifetime : std::uint8_t {
  Longer,   ///< as long as the statement has them
  Shorter,  ///< not behind this call: they are copied
};

/// Gives the value to the place, counted from 1; the result code of SQLite. Fails with
/// failure::kTypeMismatch for an object and for NaN, which SQLite cannot keep.
int BindValue(sqlite3_stmt* statement, int nPlace, const platform::Value& vtValue,
              Lifetime lifetime);

}  // namespace orvane::provider::engines
