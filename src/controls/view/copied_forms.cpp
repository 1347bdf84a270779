#include "controls/view/copied_forms.h"

#include <algorithm>
#include <cmath>

#include "controls/view/pasted_page.h"

namespace orvane::controls {

using platform::Text;
using platform::Value;
using platform::ValueKind;

// ---- a page

ClipboardPage::ClipboardPage() {
  m_text.Next() = Text("<meta charset=\"utf-8\"><table ") + kOwnTableMark + ">";
}

void ClipboardPage::Names(const RowModel& model, const std::vector<int>& columns) {
  BeginRow();
  for (const int nColumn : columns) {
    m_text.Next() += "<th>";
    AppendInPage(model.Recordset()->FieldAt(nColumn).Name());
    m_text.Next() += "</th>";
  }
  EndRow();
}

// Spreadsheets are told what is a number and what a text, whatever the language they count in: a
// text of digits would become a number, and 1.5 a day in May.
void ClipboardPage::Cell(const Value& vtValue, const CellFormat& format) {
  Text& sNext = m_text.Next();
  const auto* number = vtValue.As<double>();
  const bool bFinite = !number || std::isfinite(*number);
  switch (vtValue.Kind()) {
    case ValueKind::Null:
      sNext += "<td><i></i></td>";
      return;
    case ValueKind::Long:
    case ValueKind::LongLong:
    case ValueKind::Double:
    case ValueKind::Decimal:
      if (!bFinite) break;
      m_sWhole.clear();
      AppendWhole(m_sWhole, vtValue, format);
      sNext.append("<td sdval=\"").append(m_sWhole).append("\" sdnum=\"1033;\">");
      sNext.append(m_sWhole).append("</td>");
      return;
    case ValueKind::Text:
      TextCell(*vtValue.As<Text>());
      return;
    case ValueKind::Boolean:
    case ValueKind::Timestamp:
    case ValueKind::WallTime:
    case ValueKind::Date:
    case ValueKind::TimeOfDay:
    case ValueKind::Bytes:
    case ValueKind::Guid:
    case ValueKind::Object:
      break;
  }
  m_sWhole.clear();
  AppendWhole(m_sWhole, vtValue, format);
  sNext += "<td>";
  AppendInPage(m_sWhole);
  sNext += "</td>";
}

void ClipboardPage::TextCell(std::string_view sText) {
  m_text.Next() += "<td sdnum=\"1033;0;@\">";
  AppendInPage(sText);
  m_text.Next() += "</td>";
}

void ClipboardPage::AppendInPage(std::string_view sText) {
  Text& sNext = m_text.Next();
  const auto markAt = [&](std::size_t n) -> std::string_view {
    switch (sText[n]) {
      case '<':
        return "&lt;";
      case '>':
        return "&gt;";
      case '&':
        return "&amp;";
      case '"':
        return "&quot;";
      case '\t':
        return "&#9;";
      case '\r':
        // Of both, the line feed is the line break.
        return n + 1 < sText.size() && sText[n + 1] == '\n' ? std::string_view() : "&#13;";
      default:
        return "<br>";
    }
  };
  const auto isMarked = [](char c) {
    return c == '<' || c == '>' || c == '&' || c == '"' || c == '\t' || c == '\n' || c == '\r';
  };
  for (std::size_t n = 0; n < sText.size(); ++n) {
    const std::string_view sLeft = sText.substr(n);
    const auto plain =
        static_cast<std::size_t>(std::ranges::find_if(sLeft, isMarked) - sLeft.begin());
    sNext += sLeft.substr(0, plain);
    n += plain;
    if (n < sText.size()) sNext += markAt(n);
  }
}

void ClipboardPage::EndRow() {
  m_text.Next() += "</tr>";
  m_text.Settle();
}

QString ClipboardPage::Take() {
  m_text.Next() += "</table>";
  return m_text.Take();
}

// ---- rows

ClipboardRows::ClipboardRows(const exports::WriterOptions& options, const RowModel& model,
                             const std::vector<int>& columns)
    : m_writer(exports::MakeRowWriter(options)) {
  m_writer->Begin(*model.Recordset(), {columns.begin(), columns.end()}, m_text.Next());
}

std::size_t ClipboardRows::Row(const platform::Recordset& rs, platform::RowIndex row) {
  const std::size_t before = m_text.Next().size();
  m_writer->Row(rs, row, m_text.Next());
  const std::size_t bytes = m_text.Next().size() - before;
  m_text.Settle();
  return bytes;
}

}  // namespace orvane::controls
