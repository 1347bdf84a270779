// The selected cells of a grid as text for other programs, a line a row with tabs between cells,
// and what it takes to write them in other forms when somebody asks for these.
// Used by copying; user-interface thread.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "controls/view/cells_writer.h"
#include "controls/view/long_text.h"

namespace orvane::controls {

/// Cells that were copied, whatever has become of their rows.
struct CopiedText {
  static constexpr std::uint8_t kNoCell = 0xFF;  ///< for one that was not selected

  platform::Text sText;             ///< UTF-8, where the values are
  std::vector<std::uint8_t> kinds;  ///< of each cell its ValueKind, row by row
  /// Those of the cells that are points in time, in their order: of an hour that comes twice the
  /// text does not say which it is.
  std::vector<platform::Timestamp> times;
  std::size_t columns = 0;
  bool bNames = false;  ///< a first line has the names of the columns, beside the kinds
};

/// Cells that are not selected are left empty, as is null; the empty text is two quotes. A text
/// with a tab, a line break or a quote is put between quotes, and quotes in it are doubled.
class ClipboardText final : public CellsWriter {
 public:
  explicit ClipboardText(std::size_t columns) { m_copied.columns = columns; }

  /// A first line with the names of the columns.
  void Names(const RowModel& model, const std::vector<int>& columns);
  void BeginRow() override { m_bFirst = true; }
  void Cell(const platform::Value& vtValue, const CellFormat& format) override;
  void TextCell(std::string_view sText) override;
  void NoCell() override;
  void EndRow() override { m_text.Next() += '\n'; }

  bool IsTooLong() { return m_text.IsTooLong(); }
  CopiedText Take();

 private:
  void Part();
  void AppendText(std::string_view sText);
  void Quote(std::string_view sText);

  LongText m_text;
  CopiedText m_copied;  ///< without the text
  bool m_bFirst = true;
};

/// Goes through the cells of a copied text again, names and cells alike.
class CopiedTextReader {
 public:
  explicit CopiedTextReader(std::string_view sText) : m_sLeft(sText) {}

  /// What the next cell says, as it was before it was put between quotes; the empty text and null
  /// say nothing. Valid until the next call, of which there are as many as there are cells.
  std::string_view Next();

 private:
  std::string_view m_sLeft;
  platform::Text m_sUnquoted;
};

}  // namespace orvane::controls
