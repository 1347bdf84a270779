// Selected cells written for a clipboard: what is written of them is told cell by cell, so that
// many take many small pieces of work. Made by the form that they take, driven by copying;
// user-interface thread.
#pragma once

#include <string_view>
#include <vector>

#include "controls/view/row_model.h"
#include "controls/view/selection_bands.h"

namespace orvane::controls {

class CellsWriter {
 public:
  CellsWriter() = default;
  CellsWriter(const CellsWriter&) = delete;
  CellsWriter& operator=(const CellsWriter&) = delete;
  virtual ~CellsWriter() = default;

  virtual void BeginRow() {}
  virtual void Cell(const platform::Value& vtValue, const CellFormat& format) = 0;
  /// The same of a text that is held elsewhere.
  virtual void TextCell(std::string_view sText) = 0;
  /// One that is not selected, between others that are.
  virtual void NoCell() = 0;
  virtual void EndRow() {}
};

/// Appends the whole value as CellFormat::Whole has it.
void AppendWhole(platform::Text& sOut, const platform::Value& vtValue, const CellFormat& format);

/// Reads cells of these columns of the rows for a writer.
class CellsReader {
 public:
  CellsReader(const RowModel& model, std::vector<int> columns);

  const std::vector<int>& Columns() const { return m_columns; }
  /// One row of the selection; gives how many bytes its values have, or less.
  std::size_t WriteRow(const RowBand& band, int nPlace, CellsWriter& writer);

 private:
  /// What the last row suggests of a column: whether its texts are held so that they can be looked
  /// at where they are.
  enum class Held : std::uint8_t { AsText, Otherwise };

  const RowModel& m_model;
  std::vector<int> m_columns;
  std::vector<Held> m_held;  ///< by the column's place among them
};

}  // namespace orvane::controls
