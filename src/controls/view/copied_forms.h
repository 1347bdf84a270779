// The selected cells of a grid in forms for other programs: as a table of a page for those that
// read that better than text, and whole rows as exports write them.
// Used by copying; user-interface thread.
#pragma once

#include <memory>

#include "controls/view/clipboard_text.h"
#include "exports/row_writer.h"

namespace orvane::controls {

/// The cells as a table, in UTF-8: null is a cell in italics, so that it is told from the text of
/// that name, and line breaks and tabs stay within their cells.
platform::Text PageOf(const CopiedText& copied);
/// How long that is at least.
std::size_t LeastOfPage(const CopiedText& copied);

/// The rows of which a cell is selected as an export writes them, with these columns; cells that
/// are not selected are written with them.
class ClipboardRows {
 public:
  ClipboardRows(const exports::WriterOptions& options, const RowModel& model,
                const std::vector<int>& columns);

  /// The row of the recordset; gives the bytes that came of it.
  std::size_t Row(const platform::Recordset& rs, platform::RowIndex row);
  bool IsTooLong() { return m_text.IsTooLong(); }
  platform::Text Take() { return m_text.Take(); }

 private:
  std::unique_ptr<exports::RowWriter> m_writer;
  LongText m_text;
};

}  // namespace orvane::controls
