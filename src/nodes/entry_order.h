// The order of a list whose entries come and go anywhere: by position, before a position, out of
// the middle, each in logarithmic time. Entries are linked, not owned; KeyedList owns them.
// Positions count from 0 here. One thread.
#pragma once

#include <cstddef>
#include <cstdint>

namespace orvane::nodes {

class EntryOrder {
 public:
  /// What an entry brings along to be linked. In one order at a time, and at one address.
  class Link {
   public:
    Link() = default;
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

   protected:
    friend class EntryOrder;
    Link* m_parent = nullptr;
    Link* m_left = nullptr;
    Link* m_right = nullptr;
    std::size_t m_nCount = 1;  ///< of the entries beneath and this one
    std::uint32_t m_nPriority = 0;
  };

  EntryOrder() = default;
  EntryOrder(const EntryOrder&) = delete;
  EntryOrder& operator=(const EntryOrder&) = delete;

  std::size_t Count() const noexcept { return CountOf(m_root); }
  /// The entry at a position below Count. Going on from the position asked for before is constant.
  Link* At(std::size_t nPosition) const noexcept;
  /// Links the entry before the position; at the end when the position is Count.
  void Insert(Link& entry, std::size_t nPosition) noexcept;
  void Remove(Link& entry) noexcept;
  /// The neighbours; null behind the last and before the first. The next of null is the first.
  Link* Next(const Link* entry) const noexcept;
  Link* Previous(const Link& entry) const noexcept;

 private:
  static std::size_t CountOf(const Link* entry) noexcept { return entry ? entry->m_nCount : 0; }
  Link*& PlaceOf(const Link& entry) noexcept;
  void RotateUp(Link& entry) noexcept;

  // A treap: sorted by position from left to right, a heap by random priorities from top to bottom.
  Link* m_root = nullptr;
  std::uint32_t m_nRandom = 0x9E3779B9U;
  // The entry found last; walks by position go on from here.
  mutable Link* m_found = nullptr;
  mutable std::size_t m_nFound = 0;
};

}  // namespace orvane::nodes
