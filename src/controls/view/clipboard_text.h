// The selected cells of a grid as text for other programs: a line a row, tabs between the cells.
// Used by the view of the rows; user-interface thread.
#pragma once

#include <QItemSelection>
#include <optional>
#include <utility>
#include <vector>

#include "controls/view/row_model.h"

namespace orvane::controls {

/// The cells of the selection's rows in these columns; those not selected are left empty, as is
/// null; the empty text is two quotes. A text with a tab, a line break or a quote is put
/// between quotes, and quotes in it are doubled. With bNames the first line has the names of the
/// columns. None when that is more than the limit of characters, which is as much as other programs
/// take without a stall.
constexpr qsizetype kMostCopiedCharacters = 32'000'000;
std::optional<QString> ClipboardText(const RowModel& model, const QItemSelection& selection,
                                     const std::vector<int>& columns, bool bNames,
                                     qsizetype nMost = kMostCopiedCharacters);

/// First and last rows of which a cell is selected, without overlap, in order.
std::vector<std::pair<int, int>> RowSpans(const QItemSelection& selection);

/// The columns of which a cell is selected, in order.
std::vector<int> SelectedColumns(const QItemSelection& selection);
/// The number of rows of which a cell is selected.
platform::RowIndex SelectedRows(const QItemSelection& selection);

}  // namespace orvane::controls
