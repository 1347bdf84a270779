#include "console/session/hosted_menu.h"

#include "platform/failure.h"

namespace orvane::console {

using platform::Boolean;
using platform::Long;

HostedSelection HostedSelection::OfListItems(Long lCount) {
  HostedSelection selection;
  selection.m_lListItems = lCount;
  return selection;
}

Long HostedSelection::Type() const {
  if (m_items.size() == 1) return platform::kSelectionSingleScopeItem;
  if (m_items.size() > 1) return platform::kSelectionMultipleScopeItems;
  if (m_lListItems == 1) return platform::kSelectionSingleListItem;
  if (m_lListItems > 1) return platform::kSelectionMultipleListItems;
  return platform::kSelectionNothing;
}

platform::ScopeItemPtr HostedSelection::ScopeItem(Long lIndex) const {
  if (lIndex < 1 || lIndex > ScopeItemCount()) {
    throw platform::Failure(
        platform::failure::kOutOfRange,
        "The selection has no item " + std::to_string(lIndex) + "; select one and choose again.",
        "console");
  }
  return m_items[static_cast<std::size_t>(lIndex - 1)];
}

Boolean HostedVerbs::Enabled(Long lVerb) const {
  const auto at = m_enabled.find(lVerb);
  return at != m_enabled.end() && at->second;
}

}  // namespace orvane::console
