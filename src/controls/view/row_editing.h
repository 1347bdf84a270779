// What a grid's rows ask of whoever edits them. Set into the row model by a grid whose rows can be
// edited; a model without one only shows. User-interface thread.
#pragma once

#include <QString>
#include <set>

#include "platform/ado/recordset.h"

namespace orvane::controls {

class RowEditing {
 public:
  RowEditing() = default;
  RowEditing(const RowEditing&) = delete;
  RowEditing& operator=(const RowEditing&) = delete;
  virtual ~RowEditing() = default;

  /// Rows are those of the recordset; the one behind the last is the empty row at the end.
  virtual bool CanEdit(platform::RowIndex row, platform::ColumnIndex column) const = 0;
  /// Lays the value over the cell. Whoever implements it tells the model what else changed.
  virtual void Edit(platform::RowIndex row, platform::ColumnIndex column,
                    const platform::Value& vtValue) = 0;
  /// What is being typed becomes a value of its cell: the rows are about to get other places.
  virtual void TakeTyped() = 0;
  /// Whether an empty row, which becomes a new one when something is typed, stands at the end.
  virtual bool OffersNewRow() const = 0;
  /// Rows that are to be seen no more, and never again: deleted, or never to be added.
  virtual const std::set<platform::RowIndex>& GoneRows() const = 0;
  /// Why the row could not be stored, as a sentence; empty when that is not so.
  virtual QString RemarkOf(platform::RowIndex row) const = 0;
};

}  // namespace orvane::controls
