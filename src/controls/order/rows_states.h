// How a recordset was being looked at when its grid was hidden, kept until it is shown again.
// One for the whole library: the console makes a fresh control for each visit, and only the
// recordset itself travels between them. User-interface thread.
#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "controls/order/arrangement.h"
#include "controls/order/column_layout.h"
#include "controls/order/row_order.h"
#include "controls/statements/table_statement.h"
#include "platform/ado/connection.h"
#include "platform/unsent_rows.h"

namespace orvane::controls {

/// Rows and columns from 0, both ends included.
struct CellRange {
  int nTop = 0;
  int nLeft = 0;
  int nBottom = 0;
  int nRight = 0;
  friend bool operator==(const CellRange&, const CellRange&) = default;
};

/// Where rows come from. The connection is the host's own object, which outlives this library; no
/// more than a weak reference is held, so that it closes when its server does.
struct RowsOrigin {
  platform::Timestamp fetched;
  std::weak_ptr<platform::Connection> connection;

  bool IsConnectionClosed() const {
    const auto cn = connection.lock();
    return !cn || !cn->IsOpen();
  }
};

/// The row of the recordset that is to be the first in sight, or where it is none of those that are
/// seen, a place among them.
struct FirstInSight {
  platform::RowIndex row = -1;
  int nPlace = 0;
};

struct EditNotes;
struct Updatability;

struct RowsState {
  int nCurrentRow = -1;  ///< -1 when there is no current cell
  int nCurrentColumn = -1;
  std::vector<CellRange> selection;
  bool bRowsSelected = false;
  int nTopRow = 0;  ///< first row in sight
  /// Of rows that are put in their order only when they are shown; none keeps the current row where
  /// it is in the window.
  std::optional<FirstInSight> first = std::nullopt;
  int nLeftOffset = 0;  ///< pixels scrolled sideways
  std::vector<int> columnWidths;
  ColumnLayout layout;
  Arrangement arrangement;
  bool bOrderLost = false;                ///< there was an order, which was let go
  std::shared_ptr<const RowOrder> order;  ///< what came of the arrangement; null for none
  platform::Text sSqlText;                ///< the statement that fetched the rows
  std::optional<RowsOrigin> origin;
  Viewing viewing;  ///< what the grid had added to its table's query
  /// The order of that query itself when the rows came; none where nobody knows.
  std::optional<std::optional<platform::SortCriterion>> criterion;
  platform::RowsPlace place;  ///< of their table; without a table where there is none
  platform::Long lRound = 0;  ///< how often edits of the place had been given up by then
  std::shared_ptr<const Updatability> updatability;  ///< null where nobody asked the server
  std::shared_ptr<EditNotes> notes;                  ///< null for rows that cannot be edited
};

class RowsStates {
 public:
  /// States beyond this number push out the oldest.
  static constexpr std::size_t kMaxStates = 1000;
  /// Orders of rows beyond this memory are let go, the oldest first: states outlive their rows.
  static constexpr std::size_t kMostOrderBytes = std::size_t{64} << 20;

  /// Keeps the state and gives the number to find it by, never 0. A recordset has one number.
  platform::Long Keep(const platform::Recordset& rs, RowsState state);
  /// Null unless the number was given for this very recordset. Valid until the next Keep.
  const RowsState* Find(platform::Long lNumber, const platform::Recordset& rs) const;
  /// Null when no state was kept for the recordset. Valid until the next Keep.
  const RowsState* Find(const platform::Recordset& rs) const;

 private:
  /// A weak reference would tell a recordset for certain, but nothing of a provider may be held
  /// here, not even that: its library could be unloaded meanwhile. An address that is used again
  /// is told from the first by what else is known of the rows.
  struct Identity {
    const platform::Recordset* address;
    platform::RowIndex rows;
    platform::ColumnIndex columns;
    std::chrono::microseconds elapsed;
    friend bool operator==(const Identity&, const Identity&) = default;
  };
  struct Entry {
    Identity identity;
    RowsState state;
  };
  static Identity IdentityOf(const platform::Recordset& rs);
  platform::Long FreeNumber();
  void LetOrdersGo(platform::Long lKept);

  std::map<platform::Long, Entry> m_states;
  platform::Long m_lLast = 0;
};

}  // namespace orvane::controls
