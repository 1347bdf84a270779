// Follows what comes into the rows of a grid: fetches them again and again beneath those that are
// shown, which can be worked with all the time. What the user does meanwhile comes first: it ends
// the fetch, and rows that came while he began to edit are dropped. A failure takes nothing away
// and ends nothing. Owned by what a grid does with time; user-interface thread.
#pragma once

#include <functional>
#include <memory>

#include "controls/grid/followed_rows.h"
#include "controls/grid/follower.h"
#include "controls/grid/grid_core.h"

namespace orvane::controls {

struct GridQuery;

class RowFollowing {
 public:
  struct Grid {
    std::function<GridQuery()> query;  ///< as it is sent now
    std::function<bool()> mayFollow;   ///< false while rows are edited, or where nothing is shown
    std::function<void()> shown;       ///< other rows are there
  };

  RowFollowing(GridCore& core, Grid grid);

  /// The pause between the end of a fetch and the next one; none stops.
  void Every(std::optional<std::chrono::seconds> pause) { m_follower.Every(pause); }
  bool IsFollowing() const { return m_follower.IsFollowing(); }

 private:
  bool MayFetch() const;
  void FetchOnce();
  bool MayExchange(const platform::RecordsetPtr& before) const;
  /// False where these are not to be shown after all, or nothing is there to show them.
  bool CarrySteps(GridCore::Fresh& fresh, const platform::RecordsetPtr& before);
  void Exchange(GridCore::Fresh fresh, const RowMoves& moves);
  void Tell(platform::Long lNumber, const std::exception& exception);

  GridCore& m_core;
  Grid m_grid;
  FollowedRows m_compared;
  platform::Text m_sNoted;  ///< the last failure that was put into the log
  std::shared_ptr<char> m_life = std::make_shared<char>();
  Follower m_follower;
};

}  // namespace orvane::controls
