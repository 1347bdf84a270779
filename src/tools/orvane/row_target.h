// Where rows go as they come.
// Fed by a fetch; one thread at a time.
#pragma once

#include "platform/ado/recordset.h"

namespace orvane::tools {

class RowTarget {
 public:
  RowTarget() = default;
  RowTarget(const RowTarget&) = delete;
  RowTarget& operator=(const RowTarget&) = delete;
  virtual ~RowTarget() = default;

  /// Takes rows of a recordset that has the fields of all of them.
  virtual void Rows(const platform::Recordset& rs) = 0;
  /// All rows have come; the recordset has their fields. When the source had more, they were cut.
  virtual void End(const platform::Recordset& rs, bool bCut) = 0;
  virtual platform::RowIndex Count() const = 0;
};

}  // namespace orvane::tools
