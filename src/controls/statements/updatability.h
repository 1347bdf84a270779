// What may be done with the rows of a table that a grid shows: worked out from what the server
// tells of the table, and kept with the rows. Used by the editing of a grid; user-interface thread.
#pragma once

#include <QString>
#include <set>

#include "controls/statements/row_statements.h"
#include "platform/ado/connection.h"

namespace orvane::controls {

/// At first nothing may be done, and nobody knows why.
struct Updatability {
  bool bUpdate = false;
  bool bInsert = false;
  bool bDelete = false;
  bool bNoTable = false;  ///< known to be a view, or a table that the historian keeps itself
  RowTable table{};
  std::set<platform::ColumnIndex> computed{};  ///< columns that take no value
  QString sWhyNot{};  ///< what may not be done and why, as a sentence; empty when all may be done
};

/// Asks the server what identifies a row of the table whose rows the recordset holds, and what a
/// new one needs. A failure of asking is a reason like any other.
Updatability UpdatabilityOf(platform::Connection& cn, RowTable table,
                            const platform::Recordset& rs);

}  // namespace orvane::controls
