#include "exports/aligned_lines.h"

#include <algorithm>

namespace orvane::exports {

using platform::Text;

namespace {

constexpr const char* kGap = "  ";

}  // namespace

std::size_t AlignedLines::WidthOf(const Text& sText) {
  return static_cast<std::size_t>(std::ranges::count_if(
      sText, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

void AlignedLines::Add(std::vector<Text> cells, Text& sOut) {
  if (!m_nWidths.empty()) return Append(cells, sOut);
  m_kept.push_back(std::move(cells));
  if (m_kept.size() == kKept) End(sOut);
}

void AlignedLines::End(Text& sOut) {
  if (m_kept.empty()) return;
  m_nWidths.assign(m_right.size(), 0);
  for (const auto& cells : m_kept) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
      m_nWidths[i] = std::max(m_nWidths[i], WidthOf(cells[i]));
    }
  }
  for (const auto& cells : m_kept) Append(cells, sOut);
  m_kept = {};
}

void AlignedLines::Append(const std::vector<Text>& cells, Text& sOut) const {
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) sOut += kGap;
    const std::size_t nCharacters = WidthOf(cells[i]);
    const std::size_t nPadding = m_nWidths[i] - std::min(m_nWidths[i], nCharacters);
    if (m_right[i]) sOut.append(nPadding, ' ');
    sOut += cells[i];
    // Nothing stands behind the last cell.
    if (!m_right[i] && i + 1 < cells.size()) sOut.append(nPadding, ' ');
  }
  sOut += '\n';
}

}  // namespace orvane::exports
