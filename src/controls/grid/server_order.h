// The order of a grid's rows where not all of them are here, or where only the server knows how
// texts stand: it is asked for the rows in that order. The query itself stays as it is. Owned by
// the grids; user-interface thread.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "controls/order/arrangement.h"
#include "platform/grids/table_query.h"

namespace orvane::controls {

class GridCore;

class ServerOrder {
 public:
  using Criteria = std::vector<platform::SortCriterion>;

  struct Grid {
    /// True where the server takes the order; events may be handled meanwhile.
    std::function<bool(const Criteria& order)> takes;
    /// Fetches the rows in the order, by which the columns are then marked.
    std::function<void(const std::vector<SortColumn>& columns)> fetch;
    /// True where rows that came in the order could not be edited any more, which these can.
    std::function<bool()> costsEdits = {};
  };

  /// Takes over what the grid's rows are to be sorted by.
  ServerOrder(GridCore& core, Grid grid);
  ServerOrder(const ServerOrder&) = delete;
  ServerOrder& operator=(const ServerOrder&) = delete;

  /// What the server is asked for, beside the order of the query.
  const Criteria& Now() const { return m_order; }
  void Now(Criteria order) { m_order = std::move(order); }
  /// Other rows are to come, which nobody has asked for in any order.
  void Forget();
  /// Rows were fetched. Where the row limit has cut them, and they are sorted here, the server is
  /// asked for them in that order, once. The grid may be gone afterwards.
  void RowsFetched();

 private:
  /// True when the server was asked; the grid may be gone then.
  bool Sort(const std::vector<SortColumn>& columns);
  /// The end of a sentence; empty where it can be asked.
  QString WhyNotAsked() const;
  /// False: the view sorts the rows that it has.
  bool SortHere();

  GridCore& m_core;
  Grid m_grid;
  Criteria m_order;
  std::vector<SortColumn> m_asked;  ///< what the server was asked for last, or does not take
  std::shared_ptr<int> m_life = std::make_shared<int>();  ///< gone with the grid
};

}  // namespace orvane::controls
