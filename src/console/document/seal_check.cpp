#include "console/document/seal_check.h"

#include <algorithm>

namespace orvane::console {

namespace {

/// More than are written beneath each other; an end is looked for among them.
constexpr std::size_t kMostOpen = 32;

}  // namespace

void SealCheck::AddLine(SealMaker& seal, const Line& line) {
  seal.Add(line.sText);
  seal.Add("\n");
}

void SealCheck::Header(const Line& line, bool bWholeNames) {
  m_bWholeNames = bWholeNames;
  AddLine(m_begins, line);
}

void SealCheck::Break(std::size_t nLine) {
  if (m_nBroken == 0 || nLine < m_nBroken) m_nBroken = nLine;
}

std::string_view SealCheck::Prefix() const {
  const Part* part = Top();
  return part && !m_bWholeNames ? std::string_view(part->sName) : std::string_view();
}

void SealCheck::BackTo(std::size_t nDepth) {
  for (; m_nOpen > nDepth; --m_nOpen) Break(Top()->nLine);
}

void SealCheck::Open(const Line& line, std::string_view sName, std::string_view sEnd) {
  if (m_nOpen == m_parts.size()) m_parts.push_back(std::make_unique<Part>());
  ++m_nOpen;
  Part& part = *Top();
  part.sName = sName;
  part.sEnd = sEnd;
  part.nLine = line.nNumber;
  part.bSealed = false;
  part.seal.Clear();
  AddLine(part.seal, line);
}

void SealCheck::BeginSection(const Line& line, std::string_view sEnd, bool bView) {
  BackTo(0);
  m_bView = bView;
  AddLine(m_begins, line);
  Open(line, {}, sEnd);
}

void SealCheck::BeginPart(const Line& line, std::string_view sPart) {
  if (m_bWholeNames) {
    BackTo(0);
    AddLine(m_begins, line);
    return Open(line, sPart, sPart);
  }
  std::size_t nDepth = m_nOpen;
  while (nDepth > 1 && !sPart.starts_with(m_parts[nDepth - 1]->sName)) --nDepth;
  BackTo(std::min(nDepth, kMostOpen - 1));
  Part* above = Top();
  if (!above || above->bSealed) {
    Break(line.nNumber);
  } else if (!m_bView) {
    AddLine(above->seal, line);
  }
  Open(line, sPart, EndNameOf(sPart));
}

void SealCheck::Property(const Line& line) {
  Part* part = Top();
  if (!part || part->bSealed) return Break(line.nNumber);
  AddLine(part->seal, line);
}

void SealCheck::Seal(const Line& line, std::string_view sSeal) {
  Part* part = Top();
  if (!part || part->bSealed) return Break(line.nNumber);
  part->bSealed = true;
  if (sSeal != part->seal.Take()) Break(part->nLine);
}

void SealCheck::EndPart(const Line& line, std::string_view sEnd) {
  std::size_t nDepth = m_nOpen;
  while (nDepth > 0 && m_parts[nDepth - 1]->sEnd != sEnd) --nDepth;
  if (nDepth == 0) return Break(line.nNumber);
  BackTo(nDepth);
  if (!Top()->bSealed) Break(Top()->nLine);
  --m_nOpen;
}

void SealCheck::EndSections(const Line& line) {
  BackTo(0);
  AddLine(m_begins, line);
}

void SealCheck::LastSeal(const Line& line, std::string_view sSeal) {
  if (sSeal != m_begins.Take()) Break(line.nNumber);
}

}  // namespace orvane::console
