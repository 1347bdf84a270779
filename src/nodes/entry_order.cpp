#include "nodes/entry_order.h"

namespace orvane::nodes {

EntryOrder::Link* EntryOrder::At(std::size_t nPosition) const noexcept {
  if (m_found && nPosition == m_nFound) return m_found;
  Link* entry = nullptr;
  if (m_found && nPosition == m_nFound + 1) {
    entry = Next(m_found);
  } else {
    entry = m_root;
    for (std::size_t nLeft = nPosition; nLeft != CountOf(entry->m_left);) {
      if (nLeft < CountOf(entry->m_left)) {
        entry = entry->m_left;
      } else {
        nLeft -= CountOf(entry->m_left) + 1;
        entry = entry->m_right;
      }
    }
  }
  m_found = entry;
  m_nFound = nPosition;
  return entry;
}

void EntryOrder::Insert(Link& entry, std::size_t nPosition) noexcept {
  m_nRandom ^= m_nRandom << 13U;
  m_nRandom ^= m_nRandom >> 17U;
  m_nRandom ^= m_nRandom << 5U;
  entry.m_nPriority = m_nRandom;
  entry.m_parent = entry.m_left = entry.m_right = nullptr;
  entry.m_nCount = 1;
  if (nPosition <= m_nFound) m_found = nullptr;
  Link** place = &m_root;
  while (*place) {
    Link& above = **place;
    entry.m_parent = &above;
    ++above.m_nCount;
    if (nPosition <= CountOf(above.m_left)) {
      place = &above.m_left;
    } else {
      nPosition -= CountOf(above.m_left) + 1;
      place = &above.m_right;
    }
  }
  *place = &entry;
  while (entry.m_parent && entry.m_parent->m_nPriority < entry.m_nPriority) RotateUp(entry);
}

void EntryOrder::Remove(Link& entry) noexcept {
  m_found = nullptr;
  // Down until it has one neighbour beneath at most, which then takes its place.
  while (entry.m_left && entry.m_right) {
    RotateUp(entry.m_left->m_nPriority > entry.m_right->m_nPriority ? *entry.m_left
                                                                    : *entry.m_right);
  }
  Link* const beneath = entry.m_left ? entry.m_left : entry.m_right;
  if (beneath) beneath->m_parent = entry.m_parent;
  PlaceOf(entry) = beneath;
  for (Link* above = entry.m_parent; above; above = above->m_parent) --above->m_nCount;
  entry.m_parent = entry.m_left = entry.m_right = nullptr;
}

EntryOrder::Link* EntryOrder::Next(const Link* entry) const noexcept {
  Link* next = entry ? entry->m_right : m_root;
  if (next) {
    while (next->m_left) next = next->m_left;
    return next;
  }
  if (!entry) return nullptr;
  next = entry->m_parent;
  while (next && next->m_right == entry) {
    entry = next;
    next = next->m_parent;
  }
  return next;
}

EntryOrder::Link* EntryOrder::Previous(const Link& entry) const noexcept {
  Link* previous = entry.m_left;
  if (previous) {
    while (previous->m_right) previous = previous->m_right;
    return previous;
  }
  const Link* beneath = &entry;
  previous = entry.m_parent;
  while (previous && previous->m_left == beneath) {
    beneath = previous;
    previous = previous->m_parent;
  }
  return previous;
}

EntryOrder::Link*& EntryOrder::PlaceOf(const Link& entry) noexcept {
  Link* const above = entry.m_parent;
  if (!above) return m_root;
  return above->m_left == &entry ? above->m_left : above->m_right;
}

/// Changes places with the entry above, keeping the order.
void EntryOrder::RotateUp(Link& entry) noexcept {
  Link& above = *entry.m_parent;
  PlaceOf(above) = &entry;
  entry.m_parent = above.m_parent;
  above.m_parent = &entry;
  const bool bLeft = above.m_left == &entry;
  Link*& given = bLeft ? entry.m_right : entry.m_left;
  (bLeft ? above.m_left : above.m_right) = given;
  if (given) given->m_parent = &above;
  given = &above;
  above.m_nCount = CountOf(above.m_left) + CountOf(above.m_right) + 1;
  entry.m_nCount = CountOf(entry.m_left) + CountOf(entry.m_right) + 1;
}

}  // namespace orvane::nodes
