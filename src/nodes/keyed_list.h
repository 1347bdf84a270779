// An ordered list whose items are also found by a text key: what all collections of nodes keep.
// Positions count from 1; keys compare by Unicode case folding and are taken once, when an item is
// filed. Finding by key costs the same in a list of any length; positions, insertions and removals
// grow with its logarithm, and a walk is constant for each step. One thread.
#pragma once

#include <memory>
#include <unordered_map>
#include <utility>

#include "nodes/entry_order.h"
#include "platform/case_folding.h"
#include "platform/failure.h"
#include "platform/value.h"

namespace orvane::nodes {

/// The failures of a keyed list: platform::Failure with number 457, 5, 9 and 91.
[[noreturn]] void FailKeyExists(const platform::Text& sKey);
[[noreturn]] void FailNoSuchKey(const platform::Text& sKey);
[[noreturn]] void FailNoSuchPosition(platform::Long lIndex, std::size_t nCount);
[[noreturn]] void FailNoItem();

/// Reads a number as a position; fails with 13 when the value is none.
platform::Long PositionOf(const platform::Value& vtIndexKey);

template <class T>
class KeyedList {
 public:
  using Ptr = std::shared_ptr<T>;

  KeyedList() = default;
  KeyedList(const KeyedList&) = delete;
  KeyedList& operator=(const KeyedList&) = delete;

  platform::Long Count() const noexcept { return static_cast<platform::Long>(m_order.Count()); }

  /// Files the item at the end. Fails, unchanged, with 457 when the key is present and with 91
  /// when there is no item.
  void Add(const platform::Text& sKey, Ptr item) { File(sKey, std::move(item), m_order.Count()); }

  /// Files the item before the position. Fails with 9 outside 1..Count, and as Add does.
  void Insert(const platform::Text& sKey, Ptr item, platform::Long lIndexBefore) {
    File(sKey, std::move(item), Offset(lIndexBefore));
  }

  /// The item at a position (a number) or of a key (text). Fails with 9 outside 1..Count, with 5
  /// for an absent key and with 13 when the index is neither.
  const Ptr& Item(const platform::Value& vtIndexKey) const { return EntryOf(vtIndexKey).item; }

  /// The same with none in place of every failure; a miss is cheap.
  Ptr Probe(const platform::Value& vtIndexKey) const {
    if (const auto* sKey = vtIndexKey.As<platform::Text>()) {
      const auto found = m_index.find(platform::FoldCase(*sKey));
      return found == m_index.end() ? nullptr : found->second.item;
    }
    try {
      return Item(vtIndexKey);
    } catch (const platform::Failure&) {
      return nullptr;
    }
  }

  /// Takes the item out and returns it; fails as Item does.
  Ptr Remove(const platform::Value& vtIndexKey) {
    Entry& entry = EntryOf(vtIndexKey);
    for (Walk* walk = m_walks; walk; walk = walk->m_next) walk->Leave(entry);
    m_order.Remove(entry);
    Ptr item = std::move(entry.item);
    m_index.erase(m_index.find(*entry.key));
    return item;
  }

 private:
  struct Entry : EntryOrder::Link {
    const platform::Text* key = nullptr;  ///< folded, as it stands in the index
    Ptr item;
  };

  static Entry& EntryAt(EntryOrder::Link& link) noexcept { return static_cast<Entry&>(link); }

 public:
  /// One walk over the items, known to the list, which moves it off an item that is removed. Each
  /// item that is there when it is reached is visited; one that is taken out and put back at its
  /// place while it is visited is not visited twice. Must not outlive the list.
  class Walk {
   public:
    explicit Walk(const KeyedList& list) noexcept : m_list(list), m_next(list.m_walks) {
      list.m_walks = this;
    }
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;
    ~Walk() {
      Walk** walk = &m_list.m_walks;
      while (*walk != this) walk = &(*walk)->m_next;
      *walk = m_next;
    }

    /// The next item, none behind the last one.
    Ptr Next() {
      EntryOrder::Link* next = m_list.m_order.Next(m_at);
      const Ptr taken = std::exchange(m_taken, nullptr);
      if (next && taken && EntryAt(*next).item == taken) next = m_list.m_order.Next(next);
      if (!next) return nullptr;
      m_at = next;
      return EntryAt(*next).item;
    }

   private:
    friend class KeyedList;
    void Leave(const Entry& entry) noexcept {
      if (m_at != &entry) return;
      m_at = m_list.m_order.Previous(entry);
      m_taken = entry.item;
    }

    const KeyedList& m_list;
    Walk* m_next;
    const EntryOrder::Link* m_at =
        nullptr;  ///< the entry visited last, or the one before its place
    Ptr m_taken;  ///< the item visited last, when it was removed since
  };

 private:
  std::size_t Offset(platform::Long lIndex) const {
    if (lIndex < 1 || lIndex > Count()) FailNoSuchPosition(lIndex, m_order.Count());
    return static_cast<std::size_t>(lIndex) - 1;
  }

  Entry& EntryOf(const platform::Value& vtIndexKey) const {
    if (const auto* sKey = vtIndexKey.As<platform::Text>()) {
      const auto found = m_index.find(platform::FoldCase(*sKey));
      if (found == m_index.end()) FailNoSuchKey(*sKey);
      return found->second;
    }
    return EntryAt(*m_order.At(Offset(PositionOf(vtIndexKey))));
  }

  void File(const platform::Text& sKey, Ptr item, std::size_t nOffset) {
    if (!item) FailNoItem();
    const auto [place, bNew] = m_index.try_emplace(platform::FoldCase(sKey));
    if (!bNew) FailKeyExists(sKey);
    Entry& entry = place->second;
    entry.key = &place->first;
    entry.item = std::move(item);
    m_order.Insert(entry, nOffset);
  }

  // The entries live in the index, whose nodes stay where they are; the order links them.
  mutable std::unordered_map<platform::Text, Entry> m_index;
  EntryOrder m_order;
  mutable Walk* m_walks = nullptr;
};

}  // namespace orvane::nodes
