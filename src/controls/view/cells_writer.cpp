#include "controls/view/cells_writer.h"

#include "exports/value_text.h"

namespace orvane::controls {

using platform::Value;
using platform::ValueKind;

namespace {

std::size_t BytesOf(const Value& vtValue) {
  constexpr std::size_t kOfOthers = 16;
  if (const auto* text = vtValue.As<platform::Text>()) return text->size();
  const auto* bytes = vtValue.As<platform::Bytes>();
  return bytes ? bytes->size() : kOfOthers;
}

}  // namespace

void AppendWhole(platform::Text& sOut, const Value& vtValue, const CellFormat& format) {
  const bool bSpecial =
      vtValue.Kind() == ValueKind::Timestamp || vtValue.Kind() == ValueKind::Object;
  if (bSpecial) {
    sOut += format.WholeText(vtValue);
  } else {
    exports::AppendValue(sOut, vtValue, format.Zone());
  }
}

std::size_t WriteRow(const RowModel& model, const RowBand& band, int nPlace,
                     const std::vector<int>& columns, std::span<CellsWriter* const> writers) {
  const platform::Recordset& rs = *model.Recordset();
  const bool bEmpty = model.IsEmptyRow(nPlace);
  const platform::RowIndex row = model.RecordRow(nPlace);
  std::size_t bytes = 0;
  for (CellsWriter* writer : writers) writer->BeginRow();
  for (std::size_t n = 0; n < columns.size(); ++n) {
    if (!(*band.selected)[n]) {
      for (CellsWriter* writer : writers) writer->NoCell();
      continue;
    }
    // Most of what is copied are texts, and a copy of each takes longer than all the rest.
    if (const auto text = bEmpty ? std::nullopt : rs.TextAt(row, columns[n])) {
      bytes += text->size();
      for (CellsWriter* writer : writers) writer->TextCell(*text);
      continue;
    }
    const Value vtValue = bEmpty ? Value() : rs.ValueAt(row, columns[n]);
    bytes += BytesOf(vtValue);
    for (CellsWriter* writer : writers) writer->Cell(vtValue, model.Format());
  }
  for (CellsWriter* writer : writers) writer->EndRow();
  return bytes;
}

}  // namespace orvane::controls
