// Takes what was edited and not stored from rows that were fetched before to those that were
// fetched now: a refresh, another order or another filter loses no edit. Used by a grid's core when
// it exchanges its rows; user-interface thread.
#pragma once

#include "controls/editing/edit_session.h"
#include "controls/editing/waits.h"

namespace orvane::controls {

/// True when every edit has its column among the new rows, and the key too.
bool CanCarryEdits(const platform::Recordset& from, const RowTable& fromTable,
                   const platform::Recordset& to, const RowTable& toTable);

/// Lays the edits over the same rows of the other recordset, found by their keys. Where somebody
/// else has changed an edited value meanwhile, that stays the one by which the row is found, so
/// that the conflict shows when it is sent. A row that was not fetched again is added behind the
/// others as it was, with a remark. Gives what is known of the rows: their sentences, conflicts and
/// the steps that can be undone. Only after CanCarryEdits. Many rows are looked through beside the
/// window, and many edits laid in slices; where that is cancelled, fails with failure::kCancelled,
/// and the other recordset is of no use any more.
std::shared_ptr<EditNotes> CarryEdits(const platform::Recordset& from, const RowTable& fromTable,
                                      const EditNotes& notes, platform::Recordset& to,
                                      const RowTable& toTable, const Waits& waits = {});

/// The same into a recordset that holds nothing yet, to be kept until there are rows again.
std::shared_ptr<EditNotes> KeepEdits(const platform::Recordset& from, const RowTable& table,
                                     const EditNotes& notes, platform::Recordset& to);

}  // namespace orvane::controls
