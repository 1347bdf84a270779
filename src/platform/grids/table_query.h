// The table query object of the grid library: what a table's grid selects.
// Held by a table of the model, shared with the grid while it is shown; user-interface thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/property_bag.h"
#include "platform/signal.h"

namespace orvane::platform {

/// Progid under which the grid library creates an empty TableQuery.
constexpr const char* kTableQueryProgId = "ORVOLEDBCtls.TableQuery";

/// Keyed list of column names; positions count from 1, names are unique as written.
class ColumnList {
 public:
  ColumnList() = default;
  ColumnList(const ColumnList&) = delete;
  ColumnList& operator=(const ColumnList&) = delete;
  virtual ~ColumnList() = default;

  virtual Long Count() const = 0;
  /// Fails with 9 outside 1..Count.
  virtual Text Item(Long lIndex) const = 0;
  /// Appends. Fails with 457 when the name is already in the list.
  virtual void Add(const Text& sColumn) = 0;
  /// Fails with 9 outside 1..Count.
  virtual void Remove(Long lIndex) = 0;
  virtual void Clear() = 0;
};

struct SortCriterion {
  Text sColumn;
  Boolean bAscending = true;
  friend bool operator==(const SortCriterion&, const SortCriterion&) = default;
};

/// Every setter and every change of the column list raises Change, whether or not the value
/// differs; restoring a state does not.
class TableQuery : public PersistedObject {
 public:
  virtual Text Catalog() const = 0;
  virtual void Catalog(const Text& sCatalog) = 0;
  virtual Text Table() const = 0;
  virtual void Table(const Text& sTable) = 0;
  /// Owned by the query.
  virtual ColumnList& Columns() = 0;
  virtual Text FilterCondition() const = 0;
  /// Another condition has no part that is a grid's, until that is told.
  virtual void FilterCondition(const Text& sFilterCondition) = 0;
  /// The part of the filter condition that is nobody's own but a range of time which another one
  /// takes the place of: all of it while it is the default condition, otherwise the range that a
  /// grid has put there. Empty where all of the condition is somebody's own.
  virtual Text TimeFilter() const { return {}; }
  /// Told by a grid that has put a range into the condition; saved with the query.
  virtual void TimeFilter(const Text& /*sTimeFilter*/) {}
  /// Told by whoever knows whether the filter condition is the default one. It is not saved here,
  /// and raises no Change.
  virtual void FilterIsDefault(Boolean /*bDefault*/) {}
  virtual std::optional<platform::SortCriterion> SortCriterion() const = 0;
  virtual void SortCriterion(const std::optional<platform::SortCriterion>& criterion) = 0;
  /// Row limit; 0 is no limit.
  virtual Long MaxRows() const = 0;
  virtual void MaxRows(Long lMaxRows) = 0;
  /// Time-out in seconds.
  virtual Long QueryTimeout() const = 0;
  virtual void QueryTimeout(Long lQueryTimeout) = 0;
  /// The SQL text that the table's grid sends.
  virtual Text SqlText() const = 0;
  /// The handler is called when one of the properties has changed.
  [[nodiscard]] virtual Subscription OnChange(std::function<void()> handler) = 0;
};

using TableQueryPtr = std::shared_ptr<TableQuery>;

}  // namespace orvane::platform
