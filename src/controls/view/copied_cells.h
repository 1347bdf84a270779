// Cells on the clipboard: in a form of this library's own, exact in every value, and the tables of
// text that other programs put there. Used by copying and pasting; user-interface thread.
#pragma once

#include <QByteArray>
#include <QMimeData>
#include <memory>
#include <optional>
#include <vector>

#include "controls/view/clipboard_text.h"
#include "zones/time_zone.h"

namespace orvane::controls {

/// A cell as it can be typed.
struct CopiedCell {
  std::optional<platform::Text> sText;  ///< none is null
  /// Of this library's own cells what the value is; nobody knows it of others.
  std::optional<platform::ValueKind> kind{};
  /// The same of a point in time, whose text is by the clocks of the grid that it comes from.
  std::optional<platform::Timestamp> instant{};
  bool bGap = false;   ///< was not selected between others that were: nothing is to be pasted
  bool bVoid = false;  ///< of a page that shows nothing there
};

using CopiedCells = std::vector<std::vector<CopiedCell>>;

/// More cells are not read from a clipboard, as nobody could paste them; a few more tell that there
/// are too many.
inline constexpr std::size_t kMostReadCells = 400'000;

/// The name of the library's own form.
inline constexpr const char* kCellsFormat = "application/x-orvane-cell-block";

/// The cells in that form: times as the clocks of the zone have them, and their
/// instant.
QByteArray ExactCells(const CopiedText& copied, const zones::TimeZone& zone);

/// What of the clipboard is about cells, as its own data: for who reads it on another thread.
std::unique_ptr<QMimeData> CellsOn(const QMimeData& data);

/// The cells on the clipboard: of this library's own form, else of the table of a page, else those
/// of its text, parted by tabs and line breaks, where text in quotes may have both. An empty cell
/// of a text is null, two quotes are the empty text. Where a page shows nothing in a cell and the
/// text beside it has the same cells, it may have blanks or line breaks there. None when there is
/// nothing of these; of more than kMostReadCells the first ones.
std::optional<CopiedCells> ReadCells(const QMimeData& data);

}  // namespace orvane::controls
