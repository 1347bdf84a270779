// How what lies beneath an item comes into the tree: expanded for the first time, tried again after
// a failure, and read anew from its server. Part of the session; user-interface thread.
#pragma once

#include "console/session/scope_tree.h"
#include "console/session/snap_in_calls.h"

namespace orvane::console {

class ShownItem;

class Branches final : public QObject {
  Q_OBJECT

 public:
  /// All of them outlive this.
  Branches(SnapInCalls& calls, ScopeTree& tree, ShownItem& shown);

  /// See ConsoleSession.
  void Expand(const ScopeTreeItemPtr& item);
  bool CanReload(const ScopeTreeItem& item) const;
  void Reload(const ScopeTreeItemPtr& item);

 signals:
  void ExpansionFailed(const orvane::console::ScopeTreeItemPtr& item);

 private:
  bool IsReadFromServer(const ScopeTreeItem& item) const;
  void ReloadChildren(const ScopeTreeItemPtr& item);
  void ReloadList(const ScopeTreeItemPtr& item);
  /// Expands and selects from the last of the keys to the first, as far as there are such items.
  void SelectAlong(const std::vector<platform::Text>& keys);

  SnapInCalls& m_calls;
  ScopeTree& m_tree;
  ShownItem& m_shown;
};

}  // namespace orvane::console
