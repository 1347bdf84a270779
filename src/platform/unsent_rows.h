// Rows that were changed in a grid and are not stored at the server, as the host is told of them so
// that it asks before they are lost. Implemented by the host, handed over in Services;
// user-interface thread.
#pragma once

#include "platform/ado/recordset.h"

namespace orvane::platform {

/// Where such rows are: one table of a catalog of a server, edited in its own grid or in that of a
/// named query. Of what is left empty any is meant, so that without a server it is everything.
struct RowsPlace {
  Text sServer = {};
  Text sCatalog = {};
  Text sTable = {};
  Text sQuery = {};
  friend auto operator<=>(const RowsPlace&, const RowsPlace&) = default;
};

class UnsentRows {
 public:
  UnsentRows() = default;
  UnsentRows(const UnsentRows&) = delete;
  UnsentRows& operator=(const UnsentRows&) = delete;
  virtual ~UnsentRows() = default;

  /// So many rows of a table are not stored now; 0 when all are. What is being typed counts as a
  /// row of its own or as part of one.
  virtual void Tell(const RowsPlace& table, RowIndex rows) = 0;
  /// How often the rows of a table were given up: what is kept of an earlier round is not to come
  /// back.
  virtual Long Round(const RowsPlace& table) const = 0;

  /// Asks whether the rows that are not stored may be lost with what they lie in; true at once
  /// where there are none. Changes nothing.
  virtual Boolean MayLose(const RowsPlace& place) = 0;
  /// What they lay in is gone, and so are they. Called when that is done: until then they are kept.
  virtual void Lose(const RowsPlace& place) = 0;
};

}  // namespace orvane::platform
