// Which rows and columns a selection has, however many pieces it is made of: in the time of the
// pieces and of what they hold. Used by copying and exporting; pure.
#pragma once

#include <QItemSelection>
#include <memory>
#include <utility>
#include <vector>

#include "platform/ado/recordset.h"

namespace orvane::controls {

/// First and last rows of which a cell is selected, without overlap, in order.
std::vector<std::pair<int, int>> RowSpans(const QItemSelection& selection);
/// The columns of which a cell is selected, in order.
std::vector<int> SelectedColumns(const QItemSelection& selection);
/// The number of rows of which a cell is selected.
platform::RowIndex SelectedRows(const QItemSelection& selection);

/// Rows one behind the other in which the same cells are selected.
struct RowBand {
  int nFirst = 0;
  int nLast = 0;
  /// Of each of the columns whether its cells are selected; one of them is.
  std::shared_ptr<const std::vector<bool>> selected;
};

/// The rows in which a cell of these columns is selected, in order; the columns stand in any order,
/// each once.
std::vector<RowBand> BandsOf(const QItemSelection& selection, const std::vector<int>& columns);

}  // namespace orvane::controls
