#include "ado/text_pool.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <utility>

namespace orvane::ado {
namespace {

constexpr std::size_t kSmallestBlock = 256;
constexpr std::size_t kLargestBlock = std::size_t{64} * 1024;
// From so many distinct texts on, the texts must repeat at least once each on average.
constexpr std::size_t kTrial = 4096;

// Tags and states are short texts: those of up to 16 bytes are read in two words, which overlap.
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
  return static_cast<std::uint32_t>(hash ^ (hash >> 32));
}

}  // namespace

TextPool::Code TextPool::Find(std::string_view sText) {
  if (!m_bInterning) return Store(sText);
  ++m_lookups;
  if (m_entries.size() >= kTrial && m_entries.size() * 2 > m_lookups) {
    Seal();
    return Store(sText);
  }
  // At most every second slot is taken, so that a search is short, and ends.
  if ((m_entries.size() + 1) * 2 > m_index.size()) GrowIndex();
  const std::uint32_t hash = HashOf(sText);
  const std::size_t mask = m_index.size() - 1;
  for (std::size_t at = hash & mask;; at = (at + 1) & mask) {
    Slot& slot = m_index[at];
    if (slot.codePlusOne == 0) {
      const Code code = Store(sText);
      slot = {hash, code + 1};
      return code;
    }
    if (slot.hash == hash && detail::Same(m_entries[slot.codePlusOne - 1], sText)) {
      return slot.codePlusOne - 1;
    }
  }
}

TextPool::Code TextPool::Store(std::string_view sText) {
  if (sText.size() > m_room) {
    m_blockSize = std::clamp(m_blockSize * 2, kSmallestBlock, kLargestBlock);
    const std::size_t size = std::max(m_blockSize, sText.size());
    m_blocks.push_back(std::make_unique_for_overwrite<char[]>(size));
    m_blockBytes += size;
    m_free = m_blocks.back().get();
    m_room = size;
  }
  if (!sText.empty()) std::memcpy(m_free, sText.data(), sText.size());
  m_entries.emplace_back(m_free, sText.size());
  m_free += sText.size();
  m_room -= sText.size();
  return static_cast<Code>(m_entries.size() - 1);
}

void TextPool::GrowIndex() {
  const std::vector<Slot> old =
      std::exchange(m_index, std::vector<Slot>(std::max<std::size_t>(64, m_index.size() * 2)));
  const std::size_t mask = m_index.size() - 1;
  for (const Slot& slot : old) {
    if (slot.codePlusOne == 0) continue;
    std::size_t at = slot.hash & mask;
    while (m_index[at].codePlusOne != 0) at = (at + 1) & mask;
    m_index[at] = slot;
  }
}

void TextPool::Seal() {
  m_bInterning = false;
  m_index = {};
}

}  // namespace orvane::ado
