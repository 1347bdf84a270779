// Stores at the server what lies over a row of a recordset: one statement with parameters, which
// must change exactly one row, and the row read back behind it. A row that somebody else has
// changed meanwhile is left as it is, and what differs is told.
// Used by the editing of a grid; user-interface thread, which may handle events while it waits. The
// recordset is only read: whoever sends accepts what was stored.
#pragma once

#include <functional>
#include <optional>
#include <stop_token>

#include "controls/statements/row_conflict.h"
#include "controls/statements/row_statements.h"
#include "platform/services.h"

namespace orvane::controls {

/// What came of sending a row.
struct SentRow {
  /// The row as the server has it now, for Recordset::Accept. Empty where it could not be read any
  /// more: then it was stored all the same.
  std::vector<platform::Value> stored;
  /// Then nothing was changed.
  std::optional<RowConflict> conflict;
};

/// What came of deleting rows together.
struct DeletedRows {
  /// The one that stood against it; none when all are gone. Then nothing was changed.
  std::optional<platform::RowIndex> refused;
  std::optional<RowConflict> conflict;  ///< where somebody else has changed that row
  platform::Text sWhyNot;               ///< otherwise why it could not be deleted
};

class RowChanges {
 public:
  /// The time-out is in seconds; 0 waits for ever.
  RowChanges(platform::ConnectionPtr cn, platform::ObjectFactoryPtr objects, RowTable table,
             platform::Long lTimeout);

  /// Inserts or updates the row, as its state says, which is not Deleted; of an edited row without
  /// another value than the originals nothing is sent. Fails as a command does, and with
  /// failure::kNotSupported for a row that its values cannot name; then nothing was changed.
  SentRow Send(const platform::Recordset& rs, platform::RowIndex row) const;
  /// Deletes the rows, which are all marked so, in one transaction: all of them or none, each of
  /// them by its key and all that was seen of it. Fails as a command does; then nothing was
  /// changed. What is seen of many rows is read by `beside`, where that is given: on another
  /// thread, while the window tells of it.
  DeletedRows Delete(const platform::Recordset& rs, std::span<const platform::RowIndex> rows,
                     const std::function<void(const std::function<void(std::stop_token)>& work)>&
                         beside = {}) const;

 private:
  platform::RecordsetPtr Run(const RowStatement& statement,
                             std::optional<platform::RowIndex> rowsExpected) const;
  /// The row with that key, as in RowConflict; empty when there is none.
  std::vector<platform::Value> Read(const platform::Recordset& rs, platform::RowIndex row,
                                    std::span<const platform::Value> key) const;
  /// What stands between the row and the server's; none where that is nothing.
  std::optional<RowConflict> ConflictOf(const platform::Recordset& rs,
                                        platform::RowIndex row) const;
  platform::CommandPtr Command(const platform::Text& sSql) const;
  std::vector<platform::Value> ReadStored(const platform::Recordset& rs, platform::RowIndex row,
                                          std::span<const platform::Value> key) const;
  std::vector<platform::Value> Insert(const platform::Recordset& rs, platform::RowIndex row) const;

  platform::ConnectionPtr m_connection;
  platform::ObjectFactoryPtr m_objects;
  RowTable m_table;
  platform::Long m_lTimeout;
};

}  // namespace orvane::controls
