// Selected cells written for a clipboard: what is written of them is told cell by cell, so that
// many take many small pieces of work. Made by the form that they take, driven by copying;
// user-interface thread.
#pragma once

#include <span>
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

/// One row of the selection for each of the writers; gives how many bytes its values have, or less.
std::size_t WriteRow(const RowModel& model, const RowBand& band, int nPlace,
                     const std::vector<int>& columns, std::span<CellsWriter* const> writers);

}  // namespace orvane::controls
