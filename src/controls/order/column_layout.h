// What a user made of the columns of a grid: widths, order, which are hidden, how many stay in
// sight. A plain value about names, as a later fetch may bring other columns; the host keeps it as
// a text. Used by the columns of the view; pure, any thread.
#pragma once

#include <vector>

#include "platform/types.h"

namespace orvane::controls {

struct LaidOutColumn {
  platform::Text sName;
  int nWidth = 0;  ///< pixels; 0 is as wide as the rows need
  bool bHidden = false;
  int nPlace = -1;  ///< where it stands; -1 where nobody gave it a place
  friend bool operator==(const LaidOutColumn&, const LaidOutColumn&) = default;
};

struct ColumnLayout {
  static constexpr int kLeastWidth = 48;
  static constexpr int kMostWidth = 4000;
  static constexpr int kMostFrozen = 1000;
  /// Of more columns that are not there any more the last ones are forgotten.
  static constexpr std::size_t kMostColumns = 5000;

  /// In the order in which they were fetched. Of equal names the first is that of the first column.
  std::vector<LaidOutColumn> columns;
  int nFrozen = 0;  ///< columns at the left that stay in sight

  /// True where nobody has changed anything.
  bool IsNone() const;
  friend bool operator==(const ColumnLayout&, const ColumnLayout&) = default;
};

/// A layout as it is for the columns of one fetch.
struct FittedLayout {
  std::vector<LaidOutColumn> columns;  ///< one for each
  std::vector<int> order;              ///< the columns by their numbers, as they are to stand
};

/// Columns that the layout does not know stand at the end of those that were given places. Where
/// the columns are fetched in another order than then, that order holds: it was asked for since. A
/// layout that leaves nothing to be seen hides nothing.
FittedLayout LayoutFor(const ColumnLayout& layout, const std::vector<platform::Text>& names);
/// These columns, and behind them what the layout before knows of others.
ColumnLayout WithColumns(const ColumnLayout& before, std::vector<LaidOutColumn> columns);

/// Empty for a layout that is none.
platform::Text WrittenLayout(const ColumnLayout& layout);
/// Any text may be given: what is no layout is none, and numbers are kept in their bounds.
ColumnLayout ReadLayout(const platform::Text& sLayout);

}  // namespace orvane::controls
