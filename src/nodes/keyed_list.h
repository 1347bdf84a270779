// An ordered list whose items are also found by a text key: what all collections of nodes keep.
// Positions count from 1; keys compare by Unicode case folding and are taken once, when an item is
// filed. Finding an item by key or by position costs the same in a list of any length. One thread.
#pragma once

#include <algorithm>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/case_folding.h"
#include "platform/failure.h"
#include "platform/value.h"

namespace orvane::nodes {

/// The failures of a keyed list: platform::Failure with number 457, 5 and 9.
[[noreturn]] void FailKeyExists(const platform::Text& sKey);
[[noreturn]] void FailNoSuchKey(const platform::Text& sKey);
[[noreturn]] void FailNoSuchPosition(platform::Long lIndex, std::size_t nCount);

/// Reads a number as a position; fails with 13 when the value is none.
platform::Long PositionOf(const platform::Value& vtIndexKey);

template <class T>
class KeyedList {
 public:
  using Ptr = std::shared_ptr<T>;

  KeyedList() = default;
  KeyedList(const KeyedList&) = delete;
  KeyedList& operator=(const KeyedList&) = delete;

  platform::Long Count() const noexcept { return static_cast<platform::Long>(m_entries.size()); }

  /// Files the item at the end. Fails with 457, unchanged, when the key is present.
  void Add(const platform::Text& sKey, Ptr item) { File(sKey, std::move(item), m_entries.size()); }

  /// Files the item before the position. Fails with 9 outside 1..Count, with 457 as Add does.
  void Insert(const platform::Text& sKey, Ptr item, platform::Long lIndexBefore) {
    File(sKey, std::move(item), Offset(lIndexBefore));
  }

  /// The item at a position (a number) or of a key (text). Fails with 9 outside 1..Count, with 5
  /// for an absent key and with 13 when the index is neither.
  const Ptr& Item(const platform::Value& vtIndexKey) const {
    if (const auto* sKey = vtIndexKey.As<platform::Text>()) return FindKey(*sKey)->second;
    return m_entries[Offset(PositionOf(vtIndexKey))]->second;
  }

  /// The same with none in place of every failure; a miss is cheap.
  Ptr Probe(const platform::Value& vtIndexKey) const {
    if (const auto* sKey = vtIndexKey.As<platform::Text>()) {
      const auto entry = m_index.find(platform::FoldCase(*sKey));
      return entry == m_index.end() ? nullptr : entry->second;
    }
    try {
      return Item(vtIndexKey);
    } catch (const platform::Failure&) {
      return nullptr;
    }
  }

  /// Takes the item out and returns it; fails as Item does.
  Ptr Remove(const platform::Value& vtIndexKey) {
    if (const auto* sKey = vtIndexKey.As<platform::Text>()) {
      const Entry* const entry = &*FindKey(*sKey);
      return Take(std::find(m_entries.begin(), m_entries.end(), entry));
    }
    const auto nOffset = Offset(PositionOf(vtIndexKey));
    return Take(m_entries.begin() + static_cast<std::ptrdiff_t>(nOffset));
  }

 private:
  // The entries live in the index, whose nodes stay where they are; the order points at them.
  using Index = std::unordered_map<platform::Text, Ptr>;
  using Entry = typename Index::value_type;
  using Order = std::vector<Entry*>;

  std::size_t Offset(platform::Long lIndex) const {
    if (lIndex < 1 || lIndex > Count()) FailNoSuchPosition(lIndex, m_entries.size());
    return static_cast<std::size_t>(lIndex) - 1;
  }

  typename Index::const_iterator FindKey(const platform::Text& sKey) const {
    const auto entry = m_index.find(platform::FoldCase(sKey));
    if (entry == m_index.end()) FailNoSuchKey(sKey);
    return entry;
  }

  void File(const platform::Text& sKey, Ptr item, std::size_t nOffset) {
    // Room first, so that nothing can fail between the index and the order.
    if (m_entries.size() == m_entries.capacity()) m_entries.reserve(2 * m_entries.size() + 8);
    const auto [entry, bNew] = m_index.try_emplace(platform::FoldCase(sKey), std::move(item));
    if (!bNew) FailKeyExists(sKey);
    m_entries.insert(m_entries.begin() + static_cast<std::ptrdiff_t>(nOffset), &*entry);
  }

  Ptr Take(typename Order::iterator position) {
    Entry* const entry = *position;
    m_entries.erase(position);
    const auto node = m_index.find(entry->first);
    Ptr item = std::move(node->second);
    m_index.erase(node);
    return item;
  }

  Index m_index;
  Order m_entries;
};

}  // namespace orvane::nodes
