// A column before it has rows.
// A plain value; any thread.
#pragma once

#include "platform/ado/recordset.h"

namespace orvane::ado {

struct ColumnDescription {
  platform::Text sName;
  /// Empty leaves the type to the values that come.
  platform::DataType type = platform::DataType::Empty;
  platform::Boolean bNullable = true;
  /// The column of a table whose values stand here as they are, by the table's name for it.
  platform::Text sOrigin = {};
  platform::TextOrder textOrder = platform::TextOrder::Bytes;
  /// Its numbers are points in time, as days since 1899-12-30.
  platform::Boolean bDays = false;
  /// Null, and before it what is no number, stand behind all values.
  platform::Boolean bNullIsLast = false;
};

}  // namespace orvane::ado
