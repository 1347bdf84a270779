// The console's tree items, without a window.
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "platform/console/scope_items.h"
#include "platform/failure.h"

namespace orvane::fakes {

class FakeScopeItem;
using FakeScopeItemPtr = std::shared_ptr<FakeScopeItem>;

struct FakeColumnHeader {
  platform::Text sKey;
  platform::Text sText;
  platform::Long lWidth = 0;
  friend bool operator==(const FakeColumnHeader&, const FakeColumnHeader&) = default;
};

class FakeColumnHeaders : public platform::ColumnHeaders {
 public:
  void Clear() override {
    headers.clear();
    ++nClears;
  }
  void Add(platform::Long lIndex, const platform::Text& sKey, const platform::Text& sText,
           platform::Long lWidth) override {
    headers[lIndex] = {sKey, sText, lWidth};
  }
  std::map<platform::Long, FakeColumnHeader> headers;
  int nClears = 0;
};

class FakeListSubItems : public platform::ListSubItems {
 public:
  void Clear() override {
    items.clear();
    ++nClears;
  }
  void Add(platform::Long lIndex, const platform::Text& sKey,
           const platform::Text& sText) override {
    items[lIndex] = {sKey, sText};
  }
  std::vector<platform::Text> Texts() const {
    std::vector<platform::Text> texts;
    for (const auto& [lIndex, item] : items) texts.push_back(item.second);
    return texts;
  }
  std::map<platform::Long, std::pair<platform::Text, platform::Text>> items;  ///< key and text
  int nClears = 0;
};

class FakeScopeNode : public platform::ScopeNode {
 public:
  platform::Boolean ExpandedOnce() const override { return bExpandedOnce; }
  platform::Boolean HasChildren() const override { return bHasChildren; }
  void HasChildren(platform::Boolean bValue) override { bHasChildren = bValue; }
  void ExpandInNameSpace() override {
    if (onExpand) onExpand();
  }
  bool bExpandedOnce = false;
  bool bHasChildren = false;
  std::vector<FakeScopeItemPtr> children;
  std::function<void()> onExpand;
};

class FakeScopeItem : public platform::ScopeItem {
 public:
  using Text = platform::Text;
  FakeScopeItem(Text sNodeType, Text sKey, Text sDisplayName)
      : m_sNodeType(std::move(sNodeType)),
        m_sKey(std::move(sKey)),
        m_sDisplayName(std::move(sDisplayName)) {}

  Text NodeTypeName() const override { return m_sNodeType; }
  Text Key() const override { return m_sKey; }
  void Key(const Text& sKey) override {
    if (rekey) rekey(m_sKey, sKey);
    m_sKey = sKey;
  }
  Text NodeId() const override { return m_sNodeId; }
  void NodeId(const Text& sNodeId) override { m_sNodeId = sNodeId; }
  Text DisplayName() const override { return m_sDisplayName; }
  void DisplayName(const Text& sDisplayName) override { m_sDisplayName = sDisplayName; }
  platform::ObjectPtr Tag() const override { return m_tag; }
  void Tag(const platform::ObjectPtr& tag) override {
    if (bFailTag) throw platform::Failure(5, "The item cannot be tagged.");
    m_tag = tag;
  }
  FakeColumnHeaders& ColumnHeaders() override { return m_headers; }
  FakeListSubItems& ListSubItems() override { return m_subItems; }
  platform::ScopeNodePtr ScopeNode() override { return node; }

  std::shared_ptr<FakeScopeNode> node = std::make_shared<FakeScopeNode>();
  std::function<void(const Text&, const Text&)> rekey;
  bool bFailTag = false;

 private:
  Text m_sNodeType;
  Text m_sKey;
  Text m_sNodeId;
  Text m_sDisplayName;
  platform::ObjectPtr m_tag;
  FakeColumnHeaders m_headers;
  FakeListSubItems m_subItems;
};

class FakeScopeItems : public platform::ScopeItems {
 public:
  using Text = platform::Text;

  platform::ScopeItemPtr Add(const Text& sNodeTypeName, const Text& sKey,
                             const platform::ScopeNodePtr& parent,
                             platform::Boolean bHasChildren) override {
    if (items.contains(sKey)) throw platform::Failure(457, "The item is already in the tree.");
    const auto item =
        std::make_shared<FakeScopeItem>(sNodeTypeName, sKey, typeNames[sNodeTypeName]);
    item->node->bHasChildren = bHasChildren;
    item->node->onExpand = [this, weak = std::weak_ptr(item)] {
      if (onExpand && weak.lock()) onExpand(weak.lock());
    };
    item->rekey = [this](const Text& sOld, const Text& sNew) {
      if (sOld != sNew && items.contains(sNew)) {
        throw platform::Failure(457, "The item is already in the tree.");
      }
      auto entry = items.extract(sOld);
      entry.key() = sNew;
      items.insert(std::move(entry));
    };
    std::dynamic_pointer_cast<FakeScopeNode>(parent)->children.push_back(item);
    items[sKey] = item;
    return item;
  }
  platform::ScopeItemPtr Item(const Text& sKey) override { return Find(sKey); }
  void Remove(const Text& sKey) override {
    const auto item = Find(sKey);
    if (!item) throw platform::Failure(5, "The item is not in the tree.");
    if (onRemoving) onRemoving(item, false);
    ClearBeneath(*item->node);
    items.erase(sKey);
    std::erase(root->node->children, item);
    for (auto& [sOther, other] : items) std::erase(other->node->children, item);
  }
  void RemoveChildren(const platform::ScopeNodePtr& parent) override {
    const auto node = std::dynamic_pointer_cast<FakeScopeNode>(parent);
    if (onRemoving) onRemoving(Holder(*node), true);
    ClearBeneath(*node);
  }

  FakeScopeItemPtr Find(const Text& sKey) const {
    const auto item = items.find(sKey);
    return item == items.end() ? nullptr : item->second;
  }

  /// The item above, none for the root.
  FakeScopeItemPtr Above(const FakeScopeItemPtr& item) const {
    const auto holds = [&](const FakeScopeItemPtr& other) {
      const auto& children = other->node->children;
      return std::find(children.begin(), children.end(), item) != children.end();
    };
    if (holds(root)) return root;
    for (const auto& [sKey, other] : items) {
      if (holds(other)) return other;
    }
    return nullptr;
  }

  std::map<Text, FakeScopeItemPtr> items;
  FakeScopeItemPtr root;
  /// Called before an item, or everything beneath it, is removed.
  std::function<void(const FakeScopeItemPtr& item, bool bChildrenOnly)> onRemoving;
  std::map<Text, Text> typeNames;  ///< display names of the node types
  std::function<void(const FakeScopeItemPtr&)> onExpand;

 private:
  FakeScopeItemPtr Holder(const FakeScopeNode& node) const {
    for (const auto& [sKey, item] : items) {
      if (item->node.get() == &node) return item;
    }
    return root;
  }
  void ClearBeneath(FakeScopeNode& node) {
    const auto children = std::exchange(node.children, {});
    for (const auto& child : children) {
      ClearBeneath(*child->node);
      items.erase(child->Key());
    }
  }
};

}  // namespace orvane::fakes
