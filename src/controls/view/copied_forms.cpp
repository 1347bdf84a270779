#include "controls/view/copied_forms.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "controls/view/pasted_page.h"

namespace orvane::controls {

using platform::Text;
using platform::ValueKind;

namespace {

constexpr std::string_view kTextCell = "<td sdnum=\"1033;0;@\">";
constexpr std::string_view kNullCell = "<td><i></i></td>";

void AppendInPage(Text& sPage, std::string_view sText) {
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
    sPage += sLeft.substr(0, plain);
    n += plain;
    if (n < sText.size()) sPage += markAt(n);
  }
}

bool IsFiniteNumber(ValueKind kind, std::string_view sText) {
  const bool bNumber = kind == ValueKind::Long || kind == ValueKind::LongLong ||
                       kind == ValueKind::Double || kind == ValueKind::Decimal;
  if (!bNumber) return false;
  const std::size_t nFirst = sText.starts_with('-') ? 1 : 0;
  return nFirst < sText.size() && sText[nFirst] >= '0' && sText[nFirst] <= '9';
}

/// True for a number that a spreadsheet, which counts in doubles, keeps. Of one that is held as a
/// double already it has the same, but for those next to zero, and the sign of zero.
bool IsKept(ValueKind kind, std::string_view sNumber) {
  constexpr std::ptrdiff_t kKeptDigits = 15;
  if (kind == ValueKind::Double) {
    double number = 0;
    std::from_chars(sNumber.data(), sNumber.data() + sNumber.size(), number);
    return std::isnormal(number) || sNumber == "0";
  }
  const std::size_t first = std::min(sNumber.find_first_of("123456789"), sNumber.size());
  return std::ranges::count_if(sNumber.substr(first),
                               [](char c) { return c >= '0' && c <= '9'; }) <= kKeptDigits;
}

/// True for what a spreadsheet is to take as it stands: a text, and any other value that it would
/// not keep.
bool IsTextThere(ValueKind kind, std::string_view sText) {
  switch (kind) {
    case ValueKind::Text:
      return true;
    case ValueKind::Timestamp:
    case ValueKind::WallTime:
    case ValueKind::TimeOfDay:
      return sText.find('.') != std::string_view::npos;
    case ValueKind::Long:
    case ValueKind::LongLong:
    case ValueKind::Double:
    case ValueKind::Decimal:
      return !IsFiniteNumber(kind, sText) || !IsKept(kind, sText);
    case ValueKind::Null:
    case ValueKind::Boolean:
    case ValueKind::Date:
    case ValueKind::Bytes:
    case ValueKind::Guid:
    case ValueKind::Object:
      break;
  }
  return false;
}

void AppendText(Text& sPage, std::string_view sText) {
  // Of other blanks than one between two words, spreadsheets leave out what browsers do.
  const bool bBlanks = !sText.empty() && (sText.front() == ' ' || sText.back() == ' ' ||
                                          sText.find("  ") != std::string_view::npos);
  sPage += kTextCell;
  if (bBlanks) sPage += "<pre>";
  AppendInPage(sPage, sText);
  sPage += bBlanks ? "</pre></td>" : "</td>";
}

// Spreadsheets are told what is a number and what a text, whatever the language they count in: a
// text of digits would become a number, and 1.5 a day in May.
void AppendCell(Text& sPage, std::uint8_t nKind, std::string_view sText) {
  if (nKind == CopiedText::kNoCell) {
    sPage.append("<td ").append(kOwnGapMark).append("></td>");
    return;
  }
  const auto kind = static_cast<ValueKind>(nKind);
  if (kind == ValueKind::Null) {
    sPage += kNullCell;
    return;
  }
  if (IsTextThere(kind, sText)) return AppendText(sPage, sText);
  if (IsFiniteNumber(kind, sText)) {
    sPage.append("<td sdval=\"").append(sText).append("\" sdnum=\"1033;\">");
    sPage.append(sText).append("</td>");
    return;
  }
  sPage += "<td>";
  AppendInPage(sPage, sText);
  sPage += "</td>";
}

}  // namespace

Text PageOf(const CopiedText& copied) {
  Text sPage = Text("<meta charset=\"utf-8\"><table ") + kOwnTableMark + ">";
  CopiedTextReader cells(copied.sText);
  if (copied.bNames) {
    sPage += "<tr>";
    for (std::size_t n = 0; n < copied.columns; ++n) {
      sPage += "<th>";
      AppendInPage(sPage, cells.Next());
      sPage += "</th>";
    }
    sPage += "</tr>";
  }
  for (std::size_t n = 0; n < copied.kinds.size(); ++n) {
    if (n % copied.columns == 0) sPage += "<tr>";
    AppendCell(sPage, copied.kinds[n], cells.Next());
    if ((n + 1) % copied.columns == 0) sPage += "</tr>";
  }
  sPage += "</table>";
  return sPage;
}

std::size_t LeastOfPage(const CopiedText& copied) {
  return copied.sText.size() + copied.kinds.size() * kNullCell.size();
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
  return m_text.Next().size() - before;
}

}  // namespace orvane::controls
