#include "console/document/document_content.h"

#include <algorithm>

namespace orvane::console {

const DocumentBag* DocumentContent::FindSnapIn(const platform::Text& sProgId) const {
  const auto found = std::find_if(m_snapIns.begin(), m_snapIns.end(),
                                  [&](const Section& s) { return s.sProgId == sProgId; });
  return found == m_snapIns.end() ? nullptr : found->bag.get();
}

DocumentBag& DocumentContent::SnapIn(const platform::Text& sProgId) {
  for (const Section& section : m_snapIns) {
    if (section.sProgId == sProgId) return *section.bag;
  }
  m_snapIns.push_back({sProgId, std::make_unique<DocumentBag>(m_creator)});
  return *m_snapIns.back().bag;
}

std::vector<platform::Text> DocumentContent::Texts() const {
  std::vector<platform::Text> texts;
  for (const Section& section : m_snapIns) {
    for (const auto& entry : section.bag->Entries()) {
      if (const auto* sText = std::get_if<platform::Text>(&entry.value)) texts.push_back(*sText);
    }
  }
  return texts;
}

}  // namespace orvane::console
