// Where the current cell, the selection and the scroll bar stand, by the rows of the recordset, so
// that they follow these into another order. Used by the view of the rows around an exchange of the
// order; user-interface thread.
#pragma once

#include <optional>
#include <vector>

#include "controls/order/rows_states.h"
#include "controls/view/row_model.h"
#include "controls/view/row_picker.h"

namespace orvane::controls {

class RowPlaces {
 public:
  /// Selected rows beyond this number do not follow, unless all are selected: no eye follows them
  /// through an order either. All that a filter leaves are no more than that: another filter has
  /// others.
  static constexpr int kMostFollowing = 2000;

  /// Remembers what the view looks like.
  RowPlaces(const RowPicker& view, const RowModel& model);
  /// Puts it back, with another first row in sight where one is given. Raises no signal of the
  /// selection.
  void Restore(RowPicker& view, const RowModel& model,
               const std::optional<FirstInSight>& first = std::nullopt) const;

 private:
  struct Selected {
    platform::RowIndex row;
    int nLeft;
    int nRight;
  };
  QItemSelection Selection(const RowModel& model) const;

  platform::RowIndex m_current = -1;
  int m_nColumn = -1;
  int m_nCurrentBelowTop = -1;  ///< rows between the first one in sight and the current one
  int m_nTopRow = 0;
  std::vector<Selected> m_selected;
  std::vector<std::pair<int, int>> m_wholeColumns;
  int m_nPlaces = 0;
  bool m_bAllRows = false;  ///< no row of the recordset was filtered out
  bool m_bRowsChosen = false;
};

}  // namespace orvane::controls
