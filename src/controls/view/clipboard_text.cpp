#include "controls/view/clipboard_text.h"

#include <string_view>

namespace orvane::controls {

using platform::Text;

void ClipboardText::Names(const RowModel& model, const std::vector<int>& columns) {
  BeginRow();
  for (const int nColumn : columns) {
    const Text& sName = model.Recordset()->FieldAt(nColumn).Name();
    if (sName.empty()) {
      Part();
    } else {
      TextCell(sName);
    }
  }
  EndRow();
}

void ClipboardText::Part() {
  if (!m_bFirst) m_text.Next() += '\t';
  m_bFirst = false;
}

void ClipboardText::Cell(const platform::Value& vtValue, const CellFormat& format) {
  if (const auto* text = vtValue.As<Text>()) return TextCell(*text);
  Part();
  if (!vtValue.IsNull()) AppendWhole(m_text.Next(), vtValue, format);
}

void ClipboardText::TextCell(std::string_view sText) {
  Part();
  if (sText.empty()) {
    // Null is an empty cell, so the empty text has to be something.
    m_text.Next() += "\"\"";
    return;
  }
  // Looked at whole: nearly none needs quotes, and a search that may end anywhere is slower.
  bool bQuotes = false;
  for (const char c : sText) bQuotes |= c == '\t' || c == '\n' || c == '\r' || c == '"';
  if (bQuotes) {
    Quote(sText);
  } else {
    m_text.Next() += sText;
  }
}

// Nothing else than a text needs it.
void ClipboardText::Quote(std::string_view sText) {
  Text& sNext = m_text.Next();
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
