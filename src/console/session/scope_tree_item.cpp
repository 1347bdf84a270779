#include "console/session/scope_tree_item.h"

#include "console/session/scope_tree.h"

namespace orvane::console {

using platform::Boolean;
using platform::Text;

Boolean ScopeTreeNode::ExpandedOnce() const {
  return m_item.m_bExpandedOnce;
}

Boolean ScopeTreeNode::HasChildren() const {
  return m_item.HasExpandMark();
}

void ScopeTreeNode::HasChildren(Boolean bHasChildren) {
  m_item.m_bHasChildren = bHasChildren;
  m_item.Changed();
}

void ScopeTreeNode::ExpandInNameSpace() {
  if (m_item.m_tree) m_item.m_tree->ExpandInNameSpace(m_item.shared_from_this());
}

ScopeTreeItem::ScopeTreeItem(ScopeTree* tree, Text sNodeTypeName, Text sKey, Text sDisplayName,
                             platform::Long lImage, bool bHasChildren)
    : m_tree(tree),
      m_sNodeTypeName(std::move(sNodeTypeName)),
      m_sKey(std::move(sKey)),
      m_sDisplayName(std::move(sDisplayName)),
      m_columnHeaders([this] { Changed(); }),
      m_subItems([this] { Changed(); }),
      m_node(*this),
      m_lImage(lImage),
      m_bHasChildren(bHasChildren) {}

ScopeTreeItem::~ScopeTreeItem() = default;

void ScopeTreeItem::Key(const Text& sKey) {
  if (m_tree) m_tree->Rekey(*this, sKey);
}

void ScopeTreeItem::NodeId(const Text& sNodeId) {
  m_sNodeId = sNodeId;
}

void ScopeTreeItem::DisplayName(const Text& sDisplayName) {
  m_sDisplayName = sDisplayName;
  Changed();
}

void ScopeTreeItem::Tag(const platform::ObjectPtr& tag) {
  // A removed item must not keep the model alive behind the snap-in's back.
  if (m_tree) m_tag = tag;
}

platform::ScopeNodePtr ScopeTreeItem::ScopeNode() {
  return platform::ScopeNodePtr(shared_from_this(), &m_node);
}

bool ScopeTreeItem::IsWithin(const ScopeTreeItem& item) const noexcept {
  for (const ScopeTreeItem* at = this; at; at = at->m_parent) {
    if (at == &item) return true;
  }
  return false;
}

void ScopeTreeItem::Changed() {
  if (m_tree) m_tree->ItemChanged(*this);
}

}  // namespace orvane::console
