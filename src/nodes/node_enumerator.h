// One walk over the nodes of a collection, in list order: each node that is there when it is
// reached is visited, whatever was added or removed meanwhile. It holds the list it walks: a
// collection that is loaded anew or destroyed leaves the walk on the list it began with.
#pragma once

#include <memory>
#include <utility>

#include "nodes/keyed_list.h"

namespace orvane::nodes {

template <class T>
class NodeEnumerator {
 public:
  using Ptr = std::shared_ptr<T>;

  explicit NodeEnumerator(std::shared_ptr<const KeyedList<T>> list)
      : m_list(std::move(list)), m_walk(*m_list) {}

  /// The next node, none behind the last one.
  Ptr Next() { return m_walk.Next(); }

  /// For "for (const auto& node : list.NewEnum())".
  class Iterator {
   public:
    Iterator() = default;
    explicit Iterator(NodeEnumerator& walk) : m_walk(&walk), m_node(walk.Next()) {}
    const Ptr& operator*() const noexcept { return m_node; }
    Iterator& operator++() {
      m_node = m_walk->Next();
      return *this;
    }
    friend bool operator!=(const Iterator& left, const Iterator& right) noexcept {
      return left.m_node != right.m_node;
    }

   private:
    NodeEnumerator* m_walk = nullptr;
    Ptr m_node;
  };
  Iterator begin() { return Iterator(*this); }
  Iterator end() { return Iterator(); }

 private:
  std::shared_ptr<const KeyedList<T>> m_list;
  typename KeyedList<T>::Walk m_walk;
};

}  // namespace orvane::nodes
