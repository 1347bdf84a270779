// The scope pane's model: the items of one snap-in, filed by key, and shown as a tree.
// The snap-in adds and removes through platform::ScopeItems; views read through the item model.
// Items added are shown in one batch for each parent, at the latest when the snap-in's handler
// returns, so that adding one costs the same beside ten others or a hundred thousand.
// User-interface thread.
#pragma once

#include <QAbstractItemModel>
#include <functional>
#include <unordered_map>

#include "console/session/scope_tree_item.h"
#include "platform/console/snap_in.h"

namespace orvane::console {

class ItemLook;

class ScopeTree final : public QAbstractItemModel, public platform::ScopeItems {
  Q_OBJECT

 public:
  enum Role : int { StateRole = Qt::UserRole + 1, KeyRole };

  /// The look may be null, then items are their names; otherwise it outlives the tree.
  explicit ScopeTree(const ItemLook* look = nullptr, QObject* parent = nullptr);
  ~ScopeTree() override;

  /// Takes the snap-in's node types and makes the static node, the only item at the top. Whatever
  /// was there is removed.
  void Reset(const platform::SnapInDescription& description);
  /// Removes every item, the static node too.
  void Clear();

  const ItemLook* Look() const noexcept { return m_look; }
  const ScopeTreeItemPtr& StaticItem() const noexcept { return m_static; }
  const platform::NodeTypeDescription* NodeType(const platform::Text& sName) const;

  // platform::ScopeItems
  platform::ScopeItemPtr Add(const platform::Text& sNodeTypeName, const platform::Text& sKey,
                             const platform::ScopeNodePtr& parent,
                             platform::Boolean bHasChildren) override;
  platform::ScopeItemPtr Item(const platform::Text& sKey) override;
  void Remove(const platform::Text& sKey) override;
  void RemoveChildren(const platform::ScopeNodePtr& parent) override;

  ScopeTreeItemPtr Find(const platform::Text& sKey) const;
  /// The item behind a scope item reference, or null when it is removed or of another console.
  ScopeTreeItemPtr ItemOf(const platform::ScopeItemPtr& item) const;

  /// An expansion is about to run: the item looks as if it were loading, and what is added beneath
  /// it is shown when the expansion has ended.
  void BeginExpansion(ScopeTreeItem& item);
  /// The expansion has ended: with bFailed the item looks failed and can be expanded again.
  void EndExpansion(ScopeTreeItem& item, bool bFailed);
  /// Shows what was added and is not shown yet.
  void Flush();
  /// Looks at the servers, which are right beneath the static node, for those that were connected
  /// or disconnected.
  void FollowServers();

  QModelIndex IndexOf(const ScopeTreeItem& item) const;
  ScopeTreeItemPtr ItemAt(const QModelIndex& index) const;

  /// Called when a snap-in wants the item expanded; returns when that is done.
  void OnExpandInNameSpace(std::function<void(const ScopeTreeItemPtr&)> handler);
  /// Called before an item, or everything beneath an item (bChildrenOnly), goes.
  void OnRemoving(std::function<void(const ScopeTreeItemPtr&, bool bChildrenOnly)> handler);
  /// Called before an item gets another key.
  void OnRekeying(std::function<void(const ScopeTreeItem&, const platform::Text& sKey)> handler);

  // QAbstractItemModel
  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  bool hasChildren(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  friend class ScopeTreeItem;
  friend class ScopeTreeNode;

  void ItemChanged(ScopeTreeItem& item);
  void Rekey(ScopeTreeItem& item, const platform::Text& sKey);
  void ExpandInNameSpace(const ScopeTreeItemPtr& item);
  void FlushItem(ScopeTreeItem& item);
  void RemoveAllChildren(ScopeTreeItem& item);
  /// Takes the item and everything beneath it out of the index; no view shows them any more.
  void Forget(ScopeTreeItem& item);
  ScopeTreeItem* Raw(const QModelIndex& index) const;

  const ItemLook* m_look;
  std::vector<platform::NodeTypeDescription> m_nodeTypes;
  std::unordered_map<platform::Text, std::size_t> m_nodeTypeIndex;
  ScopeTreeItemPtr m_static;
  std::unordered_map<platform::Text, ScopeTreeItem*> m_index;
  std::vector<std::weak_ptr<ScopeTreeItem>> m_pending;
  bool m_bFlushPosted = false;
  std::function<void(const ScopeTreeItemPtr&)> m_expand;
  std::function<void(const ScopeTreeItemPtr&, bool)> m_removing;
  std::function<void(const ScopeTreeItem&, const platform::Text&)> m_rekeying;
};

}  // namespace orvane::console
