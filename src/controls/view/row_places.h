// Where the current cell, the selection and the scroll bar stand, by the rows of the recordset, so
// that they follow these into another order. Used by the view of the rows around an exchange of the
// order; user-interface thread.
#pragma once

#include <vector>

#include "controls/view/row_model.h"
#include "controls/view/row_picker.h"

namespace orvane::controls {

class RowPlaces {
 public:
  /// Selected rows beyond this number do not follow, unless all are selected: no eye follows them
  /// through an order either.
  static constexpr int kMostFollowing = 2000;

  /// Remembers what the view looks like.
  RowPlaces(const RowPicker& view, const RowModel& model);
  /// Puts it back. Raises no signal of the selection.
  void Restore(RowPicker& view, const RowModel& model) const;

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
  bool m_bRowsChosen = false;
};

}  // namespace orvane::controls
