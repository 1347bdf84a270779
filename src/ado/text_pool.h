// The distinct texts (and other byte strings) of one column of a block, each kept once and known by
// a number. A column whose texts hardly repeat stops looking for repetitions and only stores.
// Used by the columns of a block while it is filled; one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "ado/growing.h"

namespace orvane::ado {

namespace detail {

template <class Word>
std::uint64_t Load(const char* bytes) {
  Word word;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

// Texts of 8 to 16 bytes, as tags are, compare in two words without a call.
inline bool Same(std::string_view sOne, std::string_view sOther) {
  const std::size_t size = sOne.size();
  if (size != sOther.size()) return false;
  if (size < 8 || size > 16) return sOne == sOther;
  const std::size_t last = size - 8;
  return Load<std::uint64_t>(sOne.data()) == Load<std::uint64_t>(sOther.data()) &&
         Load<std::uint64_t>(sOne.data() + last) == Load<std::uint64_t>(sOther.data() + last);
}

}  // namespace detail

class TextPool {
 public:
  using Code = std::uint32_t;

  /// The number of the text, which is copied when it is new. Fails with std::length_error for more
  /// bytes than 32 bits count.
  Code Intern(std::string_view sText) {
    if (m_last < m_ends.size() && detail::Same(At(m_last), sText)) return m_last;
    return m_last = Find(sText);
  }
  /// Lives until the next Intern.
  std::string_view At(Code code) const {
    const std::uint32_t begin = code == 0 ? 0 : m_ends[code - 1];
    return {m_bytes.data() + begin, m_ends[code] - begin};
  }
  /// Memory taken.
  std::size_t Bytes() const {
    return m_bytes.capacity() + m_ends.capacity() * sizeof(std::uint32_t) +
           m_index.capacity() * sizeof(Slot);
  }
  /// Of each text in the order of the numbers where it ends in Content.
  const Growing<std::uint32_t>& Ends() const { return m_ends; }
  /// All texts, one behind the other.
  const std::vector<char>& Content() const { return m_bytes; }
  /// Takes all texts away and keeps their room, unless that is large, and what was learnt about
  /// their repeating.
  void Clear();

 private:
  struct Slot {
    std::uint32_t hash = 0;
    Code codePlusOne = 0;
    std::uint32_t begin = 0;
    std::uint32_t size = 0;
  };

  std::string_view TextOf(const Slot& slot) const {
    return {m_bytes.data() + slot.begin, slot.size};
  }
  Code Find(std::string_view sText);
  Code Store(std::string_view sText);
  void GrowIndex();

  std::vector<char> m_bytes;
  Growing<std::uint32_t> m_ends;
  std::vector<Slot> m_index;     // as many as a power of two
  int m_nShift = 0;              // leaves of a hash the place in the index
  std::uint64_t m_lookups = 0;   // in all blocks
  std::uint64_t m_distinct = 0;  // of those the ones that found nothing
  Code m_last = 0;
  bool m_bInterning = true;
};

}  // namespace orvane::ado
