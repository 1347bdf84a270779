// One item of the scope pane, as the tree keeps it and as the snap-in sees it.
// The tree owns its items; a reference that somebody keeps stays safe after the item was removed,
// and then does nothing. User-interface thread.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "console/session/list_texts.h"
#include "platform/console/scope_items.h"

namespace orvane::console {

class ScopeTree;
class ScopeTreeItem;
using ScopeTreeItemPtr = std::shared_ptr<ScopeTreeItem>;

/// What the console knows of the items beneath an item.
enum class NodeState : std::uint8_t { NotLoaded, Loading, Loaded, Failed };

/// What the console knows of the server that an item stands for.
enum class ServerState : std::uint8_t { None, Disconnected, Connected };

/// The console's node behind an item; lives and dies with it.
class ScopeTreeNode final : public platform::ScopeNode {
 public:
  explicit ScopeTreeNode(ScopeTreeItem& item) : m_item(item) {}

  platform::Boolean ExpandedOnce() const override;
  platform::Boolean HasChildren() const override;
  void HasChildren(platform::Boolean bHasChildren) override;
  void ExpandInNameSpace() override;

  ScopeTreeItem& Owner() const noexcept { return m_item; }

 private:
  ScopeTreeItem& m_item;
};

class ScopeTreeItem final : public platform::ScopeItem,
                            public std::enable_shared_from_this<ScopeTreeItem> {
 public:
  ScopeTreeItem(ScopeTree* tree, platform::Text sNodeTypeName, platform::Text sKey,
                platform::Text sDisplayName, platform::Long lImage, bool bHasChildren);
  ~ScopeTreeItem() override;

  platform::Text NodeTypeName() const override { return m_sNodeTypeName; }
  platform::Text Key() const override { return m_sKey; }
  void Key(const platform::Text& sKey) override;
  platform::Text NodeId() const override { return m_sNodeId; }
  void NodeId(const platform::Text& sNodeId) override;
  platform::Text DisplayName() const override { return m_sDisplayName; }
  void DisplayName(const platform::Text& sDisplayName) override;
  platform::ObjectPtr Tag() const override { return m_tag; }
  void Tag(const platform::ObjectPtr& tag) override;
  platform::ColumnHeaders& ColumnHeaders() override { return m_columnHeaders; }
  platform::ListSubItems& ListSubItems() override { return m_subItems; }
  platform::ScopeNodePtr ScopeNode() override;

  const platform::Text& Type() const noexcept { return m_sNodeTypeName; }
  const platform::Text& Name() const noexcept { return m_sDisplayName; }
  const std::vector<HostedColumnHeaders::Header>& Headers() const {
    return m_columnHeaders.Headers();
  }
  const std::vector<platform::Text>& SubItemTexts() const { return m_subItems.Texts(); }
  /// Image number of the snap-in's folder lists, from 1.
  platform::Long Image() const noexcept { return m_lImage; }
  NodeState State() const noexcept { return m_state; }
  bool ExpandedOnce() const noexcept { return m_bExpandedOnce; }
  /// As of the end of the last event; None for what lies beneath a server.
  ServerState Server() const noexcept { return m_server; }
  /// True when the item shows an expand mark: it was said to have children, or has some.
  bool HasExpandMark() const noexcept { return m_bHasChildren || !m_children.empty(); }
  /// The item above, or null for the static node and for a removed item.
  ScopeTreeItem* Parent() const noexcept { return m_parent; }
  const std::vector<ScopeTreeItemPtr>& Children() const noexcept { return m_children; }
  bool IsRemoved() const noexcept { return m_tree == nullptr; }
  /// True when this is the item, or beneath it.
  bool IsWithin(const ScopeTreeItem& item) const noexcept;

 private:
  friend class ScopeTree;
  friend class ScopeTreeNode;

  void Changed();

  ScopeTree* m_tree;  // null once removed
  ScopeTreeItem* m_parent = nullptr;
  std::vector<ScopeTreeItemPtr> m_children;
  std::size_t m_nShown = 0;  // children that the views know of; the others are behind them
  std::size_t m_nRow = 0;
  platform::Text m_sNodeTypeName;
  platform::Text m_sKey;
  platform::Text m_sNodeId;
  platform::Text m_sDisplayName;
  platform::ObjectPtr m_tag;
  HostedColumnHeaders m_columnHeaders;
  HostedSubItems m_subItems;
  ScopeTreeNode m_node;
  platform::Long m_lImage;
  NodeState m_state = NodeState::NotLoaded;
  ServerState m_server = ServerState::None;
  bool m_bExpandedOnce = false;
  bool m_bHasChildren;
  bool m_bPending = false;  // listed in the tree among the items with children not yet shown
};

}  // namespace orvane::console
