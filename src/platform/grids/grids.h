// The two grid controls as the snap-in drives them.
// The grids are components of their own; the console creates them from their progids.
#pragma once

#include <functional>

#include "platform/ado/connection.h"
#include "platform/grids/table_query.h"

namespace orvane::platform {

constexpr const char* kTableEditorProgId = "ORVOLEDBCtls.TableEditor";
constexpr const char* kQueryResultsProgId = "ORVOLEDBCtls.QueryResults";

/// A control that the console can put into its result pane.
class Control : public Object {
 public:
  /// The toolkit's window, to be placed by the console; the control owns it, and whoever places
  /// it takes it out again before letting go of the control.
  virtual void* Window() = 0;
  /// The toolkit's window of one line that tells of what the control shows, for the console to
  /// place in its own bar; the control shows it no more. Null when there is none.
  virtual void* LendStatusLine() { return nullptr; }
  /// The line lent is the control's to place again; called before the control is let go.
  virtual void TakeStatusLineBack() {}
  /// How the user has laid the control out for what it shows, for the host to keep with its
  /// document; empty where he has changed nothing.
  virtual Text Layout() const { return {}; }
  /// Given before anything is shown. A document may hold any text: what is no layout is none.
  virtual void Layout(const Text& /*sLayout*/) {}
  /// True where rows of a file can be taken in.
  virtual Boolean CanImport() const { return false; }
  /// Asks for a file and takes its rows in, as a command of the control's own does; where that
  /// cannot be, says why.
  virtual void Import() {}
};

/// What both grids offer.
class Grid : public Control {
 public:
  virtual Boolean ShowSqlStatements() const = 0;
  virtual void ShowSqlStatements(Boolean bShow) = 0;
  /// The open connection of the server, or none.
  virtual void Connection(const ConnectionPtr& cn) = 0;
  virtual Long Mode() const = 0;
  virtual void Mode(Long lMode) = 0;
  virtual void MoveFirst() = 0;
  virtual void MoveLast() = 0;
  virtual void CellQuery() = 0;
  virtual void DeleteSelectedRows() = 0;
  virtual Boolean CanMove() const = 0;
  virtual Boolean CanCellQuery() const = 0;
  virtual Boolean DeleteAllowed() const = 0;
  virtual Boolean RowsSelected() const = 0;

  /// Called when the current cell has moved.
  [[nodiscard]] virtual Subscription OnRowColChange(std::function<void()> handler) = 0;
  /// Called when the selected rows have changed.
  [[nodiscard]] virtual Subscription OnSelChange(std::function<void()> handler) = 0;
  /// Called when a row was added.
  [[nodiscard]] virtual Subscription OnInsert(std::function<void()> handler) = 0;
  /// Called when rows were deleted.
  [[nodiscard]] virtual Subscription OnDelete(std::function<void()> handler) = 0;
};

/// Shows and edits a table's rows.
class TableEditor : public Grid {
 public:
  virtual void TableQuery(const TableQueryPtr& query) = 0;
  /// Runs the table query and fills the grid.
  virtual void Requery() = 0;
  /// Shows a recordset as it was left; none and 0 empty the grid.
  virtual void AttachRecordset(const RecordsetPtr& rs, Long lUpdatability) = 0;
  /// Hands out the shown recordset and the value to give back with it. The grid keeps showing it.
  virtual RecordsetPtr DetachRecordset(Long& lUpdatability) = 0;
  virtual void SortAscending() = 0;
  virtual void SortDescending() = 0;
  virtual Boolean CanSort() const = 0;

  /// Called when a column head was clicked.
  [[nodiscard]] virtual Subscription OnHeadClick(std::function<void()> handler) = 0;
  /// Called when the user has made a filter the query's own, which no other is to replace.
  [[nodiscard]] virtual Subscription OnFilterKept(std::function<void()> /*handler*/) { return {}; }
};

/// Shows the rows of a named query.
class QueryResults : public Grid {
 public:
  virtual Text QueryName() const = 0;
  virtual void QueryName(const Text& sName) = 0;
  virtual Text SqlText() const = 0;
  virtual void SqlText(const Text& sSqlText) = 0;
  virtual Long MaxRows() const = 0;
  virtual void MaxRows(Long lMaxRows) = 0;
  virtual Long QueryTimeout() const = 0;
  virtual void QueryTimeout(Long lQueryTimeout) = 0;
  /// Runs the SQL text and fills the grid.
  virtual void Execute() = 0;
  virtual RecordsetPtr Recordset() const = 0;
  virtual void Recordset(const RecordsetPtr& rs) = 0;
};

using TableEditorPtr = std::shared_ptr<TableEditor>;
using QueryResultsPtr = std::shared_ptr<QueryResults>;

}  // namespace orvane::platform
