// The selected cells of a grid as text for other programs: a line a row, tabs between the cells.
// Used by copying; user-interface thread.
#pragma once

#include "controls/view/cells_writer.h"
#include "controls/view/long_text.h"

namespace orvane::controls {

/// As much as other programs take without a stall.
inline constexpr qsizetype kMostCopiedCharacters = 32'000'000;

/// Cells that are not selected are left empty, as is null; the empty text is two quotes. A text
/// with a tab, a line break or a quote is put between quotes, and quotes in it are doubled.
class ClipboardText final : public CellsWriter {
 public:
  /// A first line with the names of the columns.
  void Names(const RowModel& model, const std::vector<int>& columns);
  void BeginRow() override { m_bFirst = true; }
  void Cell(const platform::Value& vtValue, const CellFormat& format) override;
  void TextCell(std::string_view sText) override;
  void NoCell() override { Part(); }
  void EndRow() override;

  /// Of the text, but for a last few.
  qsizetype Characters() const { return m_text.Size(); }
  QString Take() { return m_text.Take(); }

 private:
  void Part();
  void Quote(std::string_view sText);

  LongText m_text;
  bool m_bFirst = true;
};

}  // namespace orvane::controls
