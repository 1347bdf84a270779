#include "controls/view/cells_writer.h"

#include <utility>

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

CellsReader::CellsReader(const RowModel& model, std::vector<int> columns)
    : m_model(model), m_columns(std::move(columns)), m_held(m_columns.size(), Held::AsText) {}

std::size_t CellsReader::WriteRow(const RowBand& band, int nPlace, CellsWriter& writer) {
  const platform::Recordset& rs = *m_model.Recordset();
  const bool bEmpty = m_model.IsEmptyRow(nPlace);
  const platform::RowIndex row = m_model.RecordRow(nPlace);
  std::size_t bytes = 0;
  writer.BeginRow();
  for (std::size_t n = 0; n < m_columns.size(); ++n) {
    if (!(*band.selected)[n]) {
      writer.NoCell();
      continue;
    }
    // Most of what is copied are texts, and a copy of each takes longer than all the rest.
    if (!bEmpty && m_held[n] == Held::AsText) {
      if (const auto text = rs.TextAt(row, m_columns[n])) {
        bytes += text->size();
        writer.TextCell(*text);
        continue;
      }
    }
    const Value vtValue = bEmpty ? Value() : rs.ValueAt(row, m_columns[n]);
    // Null says nothing of the others.
    if (!vtValue.IsNull())
      m_held[n] = vtValue.As<platform::Text>() ? Held::AsText : Held::Otherwise;
    bytes += BytesOf(vtValue);
    writer.Cell(vtValue, m_model.Format());
  }
  writer.EndRow();
  return bytes;
}

}  // namespace orvane::controls
