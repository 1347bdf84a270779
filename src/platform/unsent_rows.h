// Rows that were changed in a grid and are not stored at the server, as the host is told of them so
// that it asks before they are lost. Implemented by the host, handed over in Services;
// user-interface thread.
#pragma once

#include "platform/ado/recordset.h"

namespace orvane::platform {

class UnsentRows {
 public:
  UnsentRows() = default;
  UnsentRows(const UnsentRows&) = delete;
  UnsentRows& operator=(const UnsentRows&) = delete;
  virtual ~UnsentRows() = default;

  /// So many rows of a table are not stored now; 0 when all are. The place tells the table from all
  /// others, the name is how it is shown.
  virtual void Tell(const Text& sPlace, const Text& sTable, RowIndex rows) = 0;
  /// The number of times that all rows told so far were given up: what is kept from an earlier
  /// round is not to come back.
  virtual Long Round() const = 0;
};

}  // namespace orvane::platform
