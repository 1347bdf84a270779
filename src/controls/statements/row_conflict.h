// What stands against a change of a row: somebody else has changed it since it was read. Shown
// value by value, settled, and sent again. Made by RowChanges, asked about by the editing of a
// grid; user-interface thread.
#pragma once

#include <span>
#include <vector>

#include "platform/ado/recordset.h"

namespace orvane::controls {

/// One column of the row, where mine or theirs is not the original.
struct ColumnConflict {
  platform::ColumnIndex column = 0;
  platform::Value vtMine;
  platform::Value vtOriginal;
  platform::Value vtTheirs;
  bool bMine = false;    ///< I gave it another value
  bool bTheirs = false;  ///< they did
};

struct RowConflict {
  /// The row as the server has it now, a value for each column of the recordset; empty when it is
  /// not there any more.
  std::vector<platform::Value> theirs;
  std::vector<ColumnConflict>
      columns;               ///< of a row that is not there any more: those that I changed
  platform::Text sSentence;  ///< what has happened and what can be done

  bool IsGone() const { return theirs.empty(); }
};

/// What there is between the row and the server's, given as in RowConflict.
RowConflict CompareRow(const platform::Recordset& rs, platform::RowIndex row,
                       std::vector<platform::Value> theirs);

/// Takes theirs for the originals, and lays mine over those columns again; a row that was to be
/// deleted is so only when bDelete says it again. Of a row that is gone, what lies over it is
/// dropped, and the row stays as one that was deleted. What is laid over it then can be sent.
void Settle(platform::Recordset& rs, platform::RowIndex row, const RowConflict& conflict,
            std::span<const platform::ColumnIndex> mine, bool bDelete = false);

}  // namespace orvane::controls
