// Rows in the order that this program makes, to be held against a server's.
#pragma once

#include <numeric>

#include "controls/order/sort_keys.h"
#include "platform/ado/recordset.h"
#include "platform/conversions.h"

namespace orvane::controls {

/// The row numbers of a recordset's first column, sorted here by its second one.
inline platform::Text SortedHere(const platform::Recordset& rs, bool bAscending) {
  SortKeys keys(static_cast<std::size_t>(rs.RecordCount()),
                {rs.FieldAt(1).TextOrder(), rs.FieldAt(1).NullIsLast()});
  RowOrder::Numbers rows(static_cast<std::size_t>(rs.RecordCount()));
  std::iota(rows.begin(), rows.end(), 0U);
  for (platform::RowIndex row = 0; row < rs.RecordCount(); ++row) keys.Append(rs.ValueAt(row, 1));
  const std::atomic<bool> bStop = false;
  keys.Sort(rows, bAscending, bStop);
  platform::Text sNumbers;
  for (const auto row : rows) {
    sNumbers += platform::ToText(rs.ValueAt(row, 0)) + "\n";
  }
  return sNumbers;
}

}  // namespace orvane::controls
