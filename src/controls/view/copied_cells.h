// Cells on the clipboard: in a form of this library's own, exact in every value, and the tables of
// text that other programs put there. Used by copying and pasting; user-interface thread.
#pragma once

#include <QItemSelection>
#include <QMimeData>
#include <optional>
#include <vector>

#include "controls/view/row_model.h"

namespace orvane::controls {

/// A cell as it can be typed.
struct CopiedCell {
  std::optional<platform::Text> sText;  ///< none is null
  /// Of this library's own cells what the value is; nobody knows it of others.
  std::optional<platform::ValueKind> kind{};
};

using CopiedCells = std::vector<std::vector<CopiedCell>>;

/// Adds the values of the selection's rows in these columns to what goes on the clipboard; false
/// where they are too many for that.
bool AddCells(QMimeData& data, const RowModel& model, const QItemSelection& selection,
              const std::vector<int>& columns);
/// The cells on the clipboard: of this library's own form, else of the table of a page, else those
/// of its text, parted by tabs and line breaks, where text in quotes may have both. An empty cell
/// of a text is null, two quotes are the empty text. None when there is nothing of these.
std::optional<CopiedCells> ReadCells(const QMimeData& data);

}  // namespace orvane::controls
