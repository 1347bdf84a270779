#include "controls/statements/row_conflict.h"

#include <utility>

#include "controls/statements/row_statements.h"

namespace orvane::controls {

using platform::ColumnIndex;
using platform::Recordset;
using platform::RowIndex;
using platform::RowState;
using platform::Text;
using platform::Value;

namespace {

Text SentenceOfConflict(bool bGone, bool bDelete) {
  if (bGone) {
    return bDelete ? "Somebody else has deleted this row already, or has changed its key."
                   : "Somebody else has deleted this row, or has changed its key, since it was "
                     "read: discard what was typed, or add it as a new row.";
  }
  return bDelete ? "Somebody else has changed this row since it was read: look at what it holds "
                   "now, then delete it or keep it."
                 : "Somebody else has changed this row since it was read: choose which values are "
                   "to stay.";
}

}  // namespace

RowConflict CompareRow(const Recordset& rs, RowIndex row, std::vector<Value> theirs) {
  RowConflict conflict;
  conflict.theirs = std::move(theirs);
  for (ColumnIndex column = 0; column < rs.FieldCount(); ++column) {
    ColumnConflict one{column, rs.ValueAt(row, column), rs.OriginalAt(row, column), {}};
    one.bMine = rs.IsEdited(row, column) && !SameValue(one.vtMine, one.vtOriginal);
    if (!conflict.IsGone()) {
      one.vtTheirs = conflict.theirs[static_cast<std::size_t>(column)];
      one.bTheirs = !SameValue(one.vtTheirs, one.vtOriginal);
    }
    if (one.bMine || one.bTheirs) conflict.columns.push_back(std::move(one));
  }
  conflict.sSentence = SentenceOfConflict(conflict.IsGone(), rs.StateAt(row) == RowState::Deleted);
  return conflict;
}

void Settle(Recordset& rs, RowIndex row, const RowConflict& conflict,
            std::span<const ColumnIndex> mine, bool bDelete) {
  if (conflict.IsGone()) {
    rs.Delete(row);
    rs.Accept(row);
    return;
  }
  std::vector<std::pair<ColumnIndex, Value>> kept;
  for (const ColumnIndex column : mine) kept.emplace_back(column, rs.ValueAt(row, column));
  rs.CancelUpdate(row);
  rs.Accept(row, conflict.theirs);
  for (const auto& [column, vtValue] : kept) rs.ValueAt(row, column, vtValue);
  if (bDelete) rs.Delete(row);
}

}  // namespace orvane::controls
