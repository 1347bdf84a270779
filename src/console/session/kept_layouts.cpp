#include "console/session/kept_layouts.h"

#include <utility>

namespace orvane::console {

using platform::Text;

namespace {

Text Escaped(const Text& sName) {
  Text sEscaped;
  for (const char c : sName) {
    if (c == '/' || c == '\\') sEscaped += '\\';
    sEscaped += c;
  }
  return sEscaped;
}

}  // namespace

Text KeptLayouts::PlaceOf(const ScopeTreeItem& item, const Text& sKey) {
  const ScopeTreeItem* above = item.Parent();
  if (!above) return {};
  if (!above->Parent()) return Escaped(sKey);
  const Text sPrefix = above->Key() + ".";
  return PlaceOf(*above) + "/" +
         Escaped(sKey.starts_with(sPrefix) ? sKey.substr(sPrefix.size()) : sKey);
}

Text KeptLayouts::Of(const Text& sPlace) const {
  const auto found = m_layouts.find(sPlace);
  return found == m_layouts.end() ? Text() : found->second;
}

void KeptLayouts::Keep(const Text& sPlace, Text sLayout) {
  if (sPlace.empty()) return;
  if (sLayout.empty()) {
    m_layouts.erase(sPlace);
  } else {
    m_layouts.insert_or_assign(sPlace, std::move(sLayout));
  }
}

KeptLayouts::Layouts KeptLayouts::Take(const Text& sPlace) {
  Layouts taken;
  if (sPlace.empty()) return taken;
  const auto take = [&](Layouts::iterator at) {
    taken.emplace(at->first.substr(sPlace.size()), std::move(at->second));
    return m_layouts.erase(at);
  };
  if (const auto own = m_layouts.find(sPlace); own != m_layouts.end()) take(own);
  const Text sBeneath = sPlace + "/";
  for (auto at = m_layouts.lower_bound(sBeneath);
       at != m_layouts.end() && at->first.starts_with(sBeneath);) {
    at = take(at);
  }
  return taken;
}

void KeptLayouts::Carry(const Text& sFrom, const Text& sTo) {
  if (sFrom == sTo || sTo.empty()) return;
  Layouts taken = Take(sFrom);
  // What was kept of another item of that name is not this one's.
  Take(sTo);
  for (auto& [sBeneath, sLayout] : taken) Keep(sTo + sBeneath, std::move(sLayout));
}

}  // namespace orvane::console
