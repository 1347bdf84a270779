// The selected cells of a grid in forms for other programs: as a table of a page for those that
// read that better than text, and whole rows as exports write them.
// Used by copying; user-interface thread.
#pragma once

#include <memory>

#include "controls/view/clipboard_text.h"
#include "exports/row_writer.h"

namespace orvane::controls {

/// The cells that ClipboardText has, as a table: null is a cell in italics, so that it is told from
/// the text of that name, and line breaks and tabs stay within their cells.
class ClipboardPage final : public CellsWriter {
 public:
  ClipboardPage();

  /// A first row with the names of the columns.
  void Names(const RowModel& model, const std::vector<int>& columns);
  void BeginRow() override { m_text.Next() += "<tr>"; }
  void Cell(const platform::Value& vtValue, const CellFormat& format) override;
  void TextCell(std::string_view sText) override;
  void NoCell() override { m_text.Next() += "<td></td>"; }
  void EndRow() override;

  /// Of the page, but for a last few.
  qsizetype Characters() const { return m_text.Size(); }
  QString Take();

 private:
  void AppendInPage(std::string_view sText);

  LongText m_text;
  platform::Text m_sWhole;
};

/// The rows of which a cell is selected as an export writes them, with these columns; cells that
/// are not selected are written with them.
class ClipboardRows {
 public:
  ClipboardRows(const exports::WriterOptions& options, const RowModel& model,
                const std::vector<int>& columns);

  /// The row of the recordset; gives the bytes that came of it.
  std::size_t Row(const platform::Recordset& rs, platform::RowIndex row);
  qsizetype Characters() const { return m_text.Size(); }
  QString Take() { return m_text.Take(); }

 private:
  std::unique_ptr<exports::RowWriter> m_writer;
  LongText m_text;
};

}  // namespace orvane::controls
