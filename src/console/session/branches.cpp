#include "console/session/branches.h"

#include <algorithm>

#include "console/session/shown_item.h"

namespace orvane::console {

using platform::Text;

Branches::Branches(SnapInCalls& calls, ScopeTree& tree, ShownItem& shown)
    : m_calls(calls), m_tree(tree), m_shown(shown) {}

void Branches::Expand(const ScopeTreeItemPtr& item) {
  if (!m_calls.IsOpen() || !item || item->IsRemoved()) return;
  if (item->State() == NodeState::Loaded || item->State() == NodeState::Loading) return;
  {
    const SnapInCalls::Event event(m_calls, EventKind::Finding);
    m_calls.Found();
    if (item->State() == NodeState::Failed) {
      // Beginning anew removes what the failed try left behind, and a view of that goes first.
      m_shown.Removing(item, true);
      if (item->IsRemoved() || item->State() != NodeState::Failed) return;
    }
    m_tree.BeginExpansion(*item);
    bool bWhole = false;
    m_calls.Call(EventKind::Finding,
                 [&](platform::SnapIn& it) { bWhole = it.ScopeItems_Expand(item); });
    m_tree.EndExpansion(*item, !bWhole);
  }
  if (item->State() == NodeState::Failed) emit ExpansionFailed(item);
}

bool Branches::CanReload(const ScopeTreeItem& item) const {
  if (item.IsRemoved() || !item.Parent()) return false;
  const auto state = item.State();
  if (IsReadFromServer(item)) return state == NodeState::Loaded || state == NodeState::Failed;
  const auto& children = item.Children();
  return state == NodeState::Loaded &&
         std::any_of(children.begin(), children.end(), [this](const auto& child) {
           return IsReadFromServer(*child) && child->State() != NodeState::Loading;
         });
}

bool Branches::IsReadFromServer(const ScopeTreeItem& item) const {
  const auto* type = m_tree.NodeType(item.Type());
  return type && type->bReadFromServer;
}

void Branches::Reload(const ScopeTreeItemPtr& item) {
  if (!m_calls.IsOpen() || !item || !CanReload(*item)) return;
  const SnapInCalls::Event event(m_calls, EventKind::Finding);
  m_calls.Found();
  if (IsReadFromServer(*item)) {
    ReloadList(item);
  } else {
    ReloadChildren(item);
  }
}

void Branches::ReloadChildren(const ScopeTreeItemPtr& item) {
  const auto children = item->Children();
  for (const auto& child : children) {
    if (!IsReadFromServer(*child) || child->IsRemoved()) continue;
    if (CanReload(*child)) {
      ReloadList(child);
    } else {
      Expand(child);
    }
  }
}

void Branches::ReloadList(const ScopeTreeItemPtr& item) {
  const auto selected = m_shown.Item();
  std::vector<Text> keys;  // from the selected item up to, but not with, the one reloaded
  if (selected && selected->IsWithin(*item)) {
    for (const auto* at = selected.get(); at != item.get(); at = at->Parent()) {
      keys.push_back(at->Key());
    }
  }
  const auto sView = m_shown.View() ? m_shown.View()->Description().sName : Text();
  m_tree.RemoveChildren(item->ScopeNode());
  Expand(item);
  SelectAlong(keys);
  const auto views = m_shown.Views();
  for (std::size_t n = 1; !keys.empty() && n < views.size(); ++n) {
    if (m_shown.Item()->Key() == keys.front() && views[n].sName == sView) m_shown.ShowView(n);
  }
}

void Branches::SelectAlong(const std::vector<Text>& keys) {
  ScopeTreeItemPtr last;
  for (auto at = keys.rbegin(); at != keys.rend(); ++at) {
    const auto next = m_tree.Find(*at);
    if (!next) break;
    last = next;
    if (std::next(at) != keys.rend()) Expand(next);
  }
  if (last) m_shown.Select(last);
}

}  // namespace orvane::console
