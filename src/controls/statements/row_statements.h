// The statements by which one row of a table is changed, found and read: texts with a "?" for each
// value, and the values beside them. A row is named by its key, and by the original values of what
// is changed, so that nobody's change is overwritten unseen.
// Used by RowChanges. Pure functions, any thread.
#pragma once

#include <span>
#include <vector>

#include "platform/ado/recordset.h"

namespace orvane::controls {

/// Where the rows of a recordset are stored.
struct RowTable {
  platform::Text sCatalog;
  platform::Text sTable;
  /// The columns of the recordset by whose values a row is told from all others.
  std::vector<platform::ColumnIndex> key;
  /// For each column of the recordset its name in the table, empty for what is worked out. Without
  /// any names the fields' own are the table's.
  std::vector<platform::Text> names = {};

  platform::Text NameOf(const platform::Recordset& rs, platform::ColumnIndex column) const;
};

struct TypedValue {
  platform::DataType type = platform::DataType::Empty;
  platform::Value vtValue;
};

struct RowStatement {
  platform::Text sSql;
  std::vector<TypedValue> values;  ///< one for each "?"
};

/// True for the same kind and content to the last bit: numbers that are equal may still differ.
bool SameValue(const platform::Value& vtOne, const platform::Value& vtOther);

/// The columns of the row that were given another value than the original.
std::vector<platform::ColumnIndex> ChangedColumns(const platform::Recordset& rs,
                                                  platform::RowIndex row);

/// Sets the columns where the row has its original key and their original values. Fails with
/// failure::kNotSupported for a row that its values cannot name.
RowStatement UpdateRow(const RowTable& table, const platform::Recordset& rs, platform::RowIndex row,
                       std::span<const platform::ColumnIndex> columns);
/// Deletes a row of the recordset where it has all of its original values: one statement that is
/// run for many of them, each with its ValuesOfDeleted.
platform::Text DeleteEachRow(const RowTable& table, const platform::Recordset& rs);
/// Fails as UpdateRow does.
std::vector<platform::Value> ValuesOfDeleted(const RowTable& table, const platform::Recordset& rs,
                                             platform::RowIndex row);
/// Inserts the values that the row was given, so that others get their defaults, and puts out the
/// key that it has then.
RowStatement InsertRow(const RowTable& table, const platform::Recordset& rs,
                       platform::RowIndex row);
/// Puts out the table's columns, in the recordset's order, of the row with that key, whose values
/// stand in the order of the key's columns.
RowStatement SelectRow(const RowTable& table, const platform::Recordset& rs,
                       std::span<const platform::Value> key);

}  // namespace orvane::controls
