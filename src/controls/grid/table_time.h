// What a grid does with time: the bar above the rows and its range, following what comes, and the
// trend's part in both; of a table as of a named query. Owned by the grid; user-interface thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "controls/grid/row_following.h"
#include "controls/grid/time_bar.h"
#include "controls/order/rows_states.h"
#include "controls/statements/table_statement.h"
#include "trend/trend_view.h"

namespace orvane::controls {

class GridCore;
struct GridQuery;

class TableTime {
 public:
  /// What the grid does for it.
  struct Grid {
    /// None for a named query.
    std::function<platform::TableQueryPtr()> query;
    std::function<void()> requery;
    /// What requery would send now.
    std::function<GridQuery()> sent;
    /// False while rows are edited.
    std::function<bool()> mayFollow;
    /// The named query's statement; a table has none.
    std::function<platform::Text()> statement = {};
  };

  TableTime(GridCore& core, Grid grid);

  const Viewing& View() const { return m_viewing; }
  /// Forgets what is known of a table or query before another one is shown.
  void Forget();
  /// Learns the table's time column before its rows are asked for. False when the grid is gone: the
  /// server was waited for.
  bool Learn();
  /// Shows or hides the bar as the rows that are there now need it.
  void RowsShown();

  /// Puts the range into the state, or takes it from there.
  void Keep(RowsState& state) const;
  void Restore(const RowsState* state);

 private:
  void Choose(const std::optional<TimeRange>& range);
  void KeepRange();
  void Requery();
  /// Asks the server whether the named query takes the range; the sentence why it does not. The
  /// grid may be gone afterwards.
  QString WhyNoRange(const TimeRange& range);
  void StopFollowing();
  void ShowRange();
  platform::TableQueryPtr Query() const;
  /// The range in the query's filter that another one takes the place of.
  std::optional<TimeRange> OwnRange() const;
  /// While rows are followed up to now, the times that they are those of.
  std::optional<trend::TrendSpan> FollowedTimes() const;
  trend::TrendView::Units AskUnits();

  GridCore& m_core;
  Grid m_grid;
  Viewing m_viewing;
  TimeBar* m_bar;
  /// True while the server is asked about the table. Whoever may outlive the grid tells by it
  /// whether that is still there.
  std::shared_ptr<bool> m_asking = std::make_shared<bool>(false);
  RowFollowing m_following;
};

}  // namespace orvane::controls
