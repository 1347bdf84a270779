#include "ado/text_pool.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <functional>
#include <limits>
#include <stdexcept>
#include <utility>

namespace orvane::ado {
namespace {

// From so many distinct texts on, in all blocks so far, the texts must repeat at least once each on
// average.
constexpr std::uint64_t kTrial = 4096;
// Room that a cleared pool keeps.
constexpr std::size_t kMostKept = std::size_t{4} << 20;
constexpr std::size_t kFewestSlots = 64;

// Tags and states are short texts: those of up to 16 bytes are read in two words, which overlap.
// Only the upper bits of a product depend on all bits of what is multiplied: tags differ in their
// last characters, which are the uppermost of a word.
std::uint32_t HashOf(std::string_view sText) {
  const char* first = sText.data();
  const char* last = sText.data() + sText.size();
  std::uint64_t head = 0;
  std::uint64_t tail = 0;
  if (sText.size() > 16) {
    head = std::hash<std::string_view>{}(sText);
  } else if (sText.size() >= 8) {
    head = detail::Load<std::uint64_t>(first);
    tail = detail::Load<std::uint64_t>(last - 8);
  } else if (sText.size() >= 4) {
    head = detail::Load<std::uint32_t>(first);
    tail = detail::Load<std::uint32_t>(last - 4);
  } else {
    for (const char character : sText) head = head << 8 | static_cast<unsigned char>(character);
  }
  std::uint64_t hash = (head ^ sText.size()) * 0x9E3779B97F4A7C15U;
  hash = (hash ^ (hash >> 32) ^ tail) * 0xC2B2AE3D27D4EB4FU;
  return static_cast<std::uint32_t>(hash >> 32);
}

}  // namespace

TextPool::Code TextPool::Find(std::string_view sText) {
  if (!m_bInterning) return Store(sText);
  ++m_lookups;
  if (m_distinct >= kTrial && m_distinct * 2 > m_lookups) {
    m_bInterning = false;
    m_index = {};
    return Store(sText);
  }
  // Tags that are sampled one after the other come round in the same order.
  const Code next = m_last + 1 < m_ends.size() ? m_last + 1 : 0;
  if (next < m_ends.size() && detail::Same(At(next), sText)) return next;
  // At most every second slot is taken, so that a search is short, and ends.
  if ((m_ends.size() + 1) * 2 > m_index.size()) GrowIndex();
  const std::uint32_t hash = HashOf(sText);
  const std::size_t mask = m_index.size() - 1;
  for (std::size_t at = hash >> m_nShift;; at = (at + 1) & mask) {
    Slot& slot = m_index[at];
    if (slot.codePlusOne == 0) {
      const Code code = Store(sText);
      const auto size = static_cast<std::uint32_t>(sText.size());
      slot = {hash, code + 1, static_cast<std::uint32_t>(m_bytes.size()) - size, size};
      ++m_distinct;
      return code;
    }
    if (slot.hash == hash && detail::Same(TextOf(slot), sText)) {
      return slot.codePlusOne - 1;
    }
  }
}

TextPool::Code TextPool::Store(std::string_view sText) {
  if (sText.size() > std::numeric_limits<std::uint32_t>::max() - m_bytes.size()) {
    throw std::length_error("text pool");
  }
  m_bytes.insert(m_bytes.end(), sText.begin(), sText.end());
  m_ends.push_back(static_cast<std::uint32_t>(m_bytes.size()));
  return static_cast<Code>(m_ends.size() - 1);
}

void TextPool::GrowIndex() {
  const std::vector<Slot> old = std::exchange(
      m_index, std::vector<Slot>(std::max<std::size_t>(kFewestSlots, m_index.size() * 2)));
  const std::size_t mask = m_index.size() - 1;
  m_nShift = 32 - std::countr_zero(m_index.size());
  for (const Slot& slot : old) {
    if (slot.codePlusOne == 0) continue;
    std::size_t at = slot.hash >> m_nShift;
    while (m_index[at].codePlusOne != 0) at = (at + 1) & mask;
    m_index[at] = slot;
  }
}

void TextPool::Clear() {
  if (m_bytes.capacity() > kMostKept) m_bytes = {};
  m_bytes.clear();
  m_ends.clear();
  std::fill(m_index.begin(), m_index.end(), Slot{});
  m_last = 0;
}

}  // namespace orvane::ado
