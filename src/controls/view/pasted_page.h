// The cells of a table that another program has put on the clipboard as a page (text/html), as
// spreadsheets and browsers do. The page is a stranger's: it is read as text, nothing that it names
// is loaded, and what is no markup is content. Used by pasting; pure, any thread.
#pragma once

#include <QStringView>
#include <optional>

#include "controls/view/copied_cells.h"

namespace orvane::controls {

/// The mark of a table that this library has written, in which null is told from the empty text.
inline constexpr const char* kOwnTableMark = "data-orvane-cells";
/// The mark of a cell in it that was not selected between others that were.
inline constexpr const char* kOwnGapMark = "data-orvane-gap";

/// The cells of the first table; none when there is no cell, or more than anybody could paste. A
/// number comes with the digits that the spreadsheet holds (sdval) and not with those it shows; a
/// time in which the year comes first as it is shown, another one from the number behind it. A cell
/// with nothing in it is null, or where its format is that of texts the empty text. Line breaks of
/// the source are blanks; other blanks are kept.
std::optional<CopiedCells> CellsOfPage(QStringView sPage);

}  // namespace orvane::controls
