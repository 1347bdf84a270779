#include "controls/view/clipboard_text.h"

#include <algorithm>
#include <string_view>

namespace orvane::controls {

using platform::Text;

void ClipboardText::Names(const RowModel& model, const std::vector<int>& columns) {
  BeginRow();
  for (const int nColumn : columns) {
    Part();
    const std::size_t begin = m_text.Next().size();
    m_text.Next() += model.Recordset()->FieldAt(nColumn).Name();
    Quote(begin);
  }
  EndRow();
}

void ClipboardText::Part() {
  if (!m_bFirst) m_text.Next() += '\t';
  m_bFirst = false;
}

void ClipboardText::Cell(const platform::Value& vtValue, const CellFormat& format) {
  Part();
  if (vtValue.IsNull()) return;
  const std::size_t begin = m_text.Next().size();
  AppendWhole(m_text.Next(), vtValue, format);
  if (m_text.Next().size() == begin) {
    // Null is an empty cell, so the empty text has to be something.
    m_text.Next() += "\"\"";
  } else if (vtValue.Kind() == platform::ValueKind::Text) {
    Quote(begin);
  }
}

// Nothing else than a text needs it.
void ClipboardText::Quote(std::size_t begin) {
  Text& sNext = m_text.Next();
  const auto needsQuotes = [](char c) { return c == '\t' || c == '\n' || c == '\r' || c == '"'; };
  if (std::ranges::none_of(std::string_view(sNext).substr(begin), needsQuotes)) return;
  const Text sText = sNext.substr(begin);
  sNext.resize(begin);
  sNext += '"';
  for (const char c : sText) {
    if (c == '"') sNext += '"';
    sNext += c;
  }
  sNext += '"';
}

void ClipboardText::EndRow() {
  m_text.Next() += '\n';
  m_text.Settle();
}

}  // namespace orvane::controls
