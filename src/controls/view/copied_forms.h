// The selected cells of a grid in forms for other programs: as comma-separated values, JSON Lines
// or SQL, and as a table of a page for those that read that better than text.
// Used by the view of the rows; user-interface thread.
#pragma once

#include <QItemSelection>
#include <optional>

#include "controls/view/clipboard_text.h"
#include "exports/row_writer.h"

namespace orvane::controls {

/// The rows of which a cell is selected, with these columns, as an export writes them; cells that
/// are not selected are written with them. None beyond the limit of characters.
std::optional<QString> SelectionAs(const exports::WriterOptions& options, const RowModel& model,
                                   const QItemSelection& selection, const std::vector<int>& columns,
                                   qsizetype nMost = kMostCopiedCharacters);

/// The cells that ClipboardText has, as a table: null is a cell in italics, so that it is told from
/// the text of that name, and line breaks and tabs stay within their cells.
std::optional<QString> SelectionAsPage(const RowModel& model, const QItemSelection& selection,
                                       const std::vector<int>& columns, bool bNames,
                                       qsizetype nMost = kMostCopiedCharacters);

}  // namespace orvane::controls
