#include "controls/view/clipboard_text.h"

#include <algorithm>
#include <utility>

namespace orvane::controls {

using platform::Text;
using platform::ValueKind;

namespace {

bool NeedsQuotes(std::string_view sText) {
  // Looked at whole: nearly none needs them, and a search that may end anywhere is slower.
  constexpr unsigned char kNoneFrom = '"' + 1;
  unsigned char nLow = 0;
  for (const char c : sText) nLow |= static_cast<unsigned char>(c) < kNoneFrom ? 1U : 0U;
  if (nLow == 0) return false;
  return sText.find_first_of("\t\n\r\"") != std::string_view::npos;
}

}  // namespace

void ClipboardText::Names(const RowModel& model, const std::vector<int>& columns) {
  m_copied.bNames = true;
  BeginRow();
  for (const int nColumn : columns) {
    const Text& sName = model.Recordset()->FieldAt(nColumn).Name();
    Part();
    if (!sName.empty()) AppendText(sName);
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
  m_copied.kinds.push_back(static_cast<std::uint8_t>(vtValue.Kind()));
  if (const auto* time = vtValue.As<platform::Timestamp>()) m_copied.times.push_back(*time);
  if (!vtValue.IsNull()) AppendWhole(m_text.Next(), vtValue, format);
}

void ClipboardText::TextCell(std::string_view sText) {
  Part();
  m_copied.kinds.push_back(static_cast<std::uint8_t>(ValueKind::Text));
  AppendText(sText);
}

void ClipboardText::NoCell() {
  Part();
  m_copied.kinds.push_back(CopiedText::kNoCell);
}

// Nothing else than a text needs quotes.
void ClipboardText::AppendText(std::string_view sText) {
  if (sText.empty()) {
    // Null is an empty cell, so the empty text has to be something.
    m_text.Next() += "\"\"";
  } else if (NeedsQuotes(sText)) {
    Quote(sText);
  } else {
    m_text.Next() += sText;
  }
}

void ClipboardText::Quote(std::string_view sText) {
  Text& sNext = m_text.Next();
  sNext += '"';
  for (const char c : sText) {
    if (c == '"') sNext += '"';
    sNext += c;
  }
  sNext += '"';
}

CopiedText ClipboardText::Take() {
  m_copied.sText = m_text.Take();
  return std::exchange(m_copied, {});
}

std::string_view CopiedTextReader::Next() {
  std::string_view sCell;
  if (m_sLeft.starts_with('"')) {
    m_sUnquoted.clear();
    std::size_t n = 1;
    while (n < m_sLeft.size()) {
      const std::size_t nQuote = std::min(m_sLeft.find('"', n), m_sLeft.size());
      m_sUnquoted += m_sLeft.substr(n, nQuote - n);
      n = nQuote + 1;
      if (n >= m_sLeft.size() || m_sLeft[n] != '"') break;
      m_sUnquoted += '"';
      ++n;
    }
    sCell = m_sUnquoted;
    m_sLeft.remove_prefix(std::min(n, m_sLeft.size()));
  } else {
    const std::size_t nEnd = std::min(m_sLeft.find_first_of("\t\n"), m_sLeft.size());
    sCell = m_sLeft.substr(0, nEnd);
    m_sLeft.remove_prefix(nEnd);
  }
  // The tab or the line break behind it.
  if (!m_sLeft.empty()) m_sLeft.remove_prefix(1);
  return sCell;
}

}  // namespace orvane::controls
