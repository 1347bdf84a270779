// What the four collections have in common: the keyed list, the way back to the owning node, and
// the walk through the property bag. Owned by the node above; owns its nodes. One thread.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "nodes/counted.h"
#include "nodes/keyed_list.h"
#include "nodes/node_enumerator.h"
#include "platform/conversions.h"
#include "platform/property_bag.h"

namespace orvane::nodes {

template <class TNode, class TOwner>
class NodesCollection : public platform::Object,
                        public std::enable_shared_from_this<NodesCollection<TNode, TOwner>>,
                        private Counted {
 public:
  using NodePtr = std::shared_ptr<TNode>;

  ~NodesCollection() override {
    m_parent.reset();
    m_items.reset();
  }

  /// The node that owns the collection. It is told of every change while it lives.
  void Parent(const std::shared_ptr<TOwner>& owner) { m_parent = owner; }

  platform::Long Count() const noexcept { return m_items->Count(); }

  /// One walk over the nodes in list order.
  NodeEnumerator<TNode> NewEnum() const { return NodeEnumerator<TNode>(m_items); }

  /// Takes the node at a position or of a key out of the list and tells the owner. The node keeps
  /// its back references. Fails, telling nobody, with 9 or 5 when there is none.
  void Remove(const platform::Value& vtIndexKey) {
    m_items->Remove(vtIndexKey);
    Changed();
  }

  /// Writes the count and every node under the prefix, in list order.
  void WriteProperties(platform::PropertyBag& pb, const platform::Text& sPrefix) const {
    pb.WriteProperty(sPrefix + m_sItemName + "Count", Count());
    platform::Long i = 0;
    for (const NodePtr& node : NewEnum()) node->WriteProperties(pb, ItemPrefix(sPrefix, ++i));
  }

  /// Reads a whole new list and then takes it in place of the old one, telling nobody. Fails,
  /// unchanged, when a node does or when two keys match (457).
  void ReadProperties(const platform::PropertyBag& pb, const platform::Text& sPrefix) {
    const auto items = std::make_shared<KeyedList<TNode>>();
    const platform::Long lCount =
        platform::ToLong(pb.ReadProperty(sPrefix + m_sItemName + "Count", platform::Long{0}));
    for (platform::Long i = 1; i <= lCount; ++i) {
      const NodePtr node = CreateNode();
      Adopt(*node);
      node->ReadProperties(pb, ItemPrefix(sPrefix, i));
      items->Add(KeyOf(*node), node);
    }
    m_items = items;
  }

 protected:
  explicit NodesCollection(const char* sItemName) : m_sItemName(sItemName) {}

  /// A node about to be read, not yet in the tree.
  virtual NodePtr CreateNode() const = 0;
  /// Sets the node's two back references.
  virtual void Adopt(TNode& node) = 0;
  /// The key under which a loaded node is filed.
  virtual platform::Text KeyOf(const TNode& node) const = 0;
  virtual void NotifyOwner(TOwner& owner) = 0;

  std::shared_ptr<TOwner> Owner() const { return m_parent.lock(); }
  /// Tells the owner, if it lives.
  void Changed() {
    if (const auto owner = Owner()) NotifyOwner(*owner);
  }
  KeyedList<TNode>& Items() noexcept { return *m_items; }
  const KeyedList<TNode>& Items() const noexcept { return *m_items; }

 private:
  platform::Text ItemPrefix(const platform::Text& sPrefix, platform::Long i) const {
    return sPrefix + m_sItemName + std::to_string(i) + "_";
  }

  const char* m_sItemName;
  std::weak_ptr<TOwner> m_parent;
  std::shared_ptr<KeyedList<TNode>> m_items = std::make_shared<KeyedList<TNode>>();
};

}  // namespace orvane::nodes
