// The distinct texts (and other byte strings) of one column, each kept once and known by a
// number. A column whose texts hardly repeat stops looking for repetitions and only stores.
// Used by the columns of a recordset; one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

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

  /// The number of the text, which is copied when it is new.
  Code Intern(std::string_view sText) {
    if (m_last < m_entries.size() && detail::Same(m_entries[m_last], sText)) return m_last;
    return m_last = Find(sText);
  }
  /// Lives as long as the pool.
  std::string_view At(Code code) const { return m_entries[code]; }
  /// Memory taken.
  std::size_t Bytes() const {
    return m_blockBytes + m_entries.capacity() * sizeof(std::string_view) +
           m_index.capacity() * sizeof(Slot);
  }
  /// Gives back what only Intern needs; Intern may still be called, and then only stores.
  void Seal();

 private:
  struct Slot {
    std::uint32_t hash = 0;
    Code codePlusOne = 0;
  };

  Code Find(std::string_view sText);
  Code Store(std::string_view sText);
  void GrowIndex();

  std::vector<std::string_view> m_entries;
  std::vector<std::unique_ptr<char[]>> m_blocks;
  char* m_free = nullptr;
  std::size_t m_room = 0;
  std::size_t m_blockSize = 0;
  std::size_t m_blockBytes = 0;  // of all blocks
  std::vector<Slot> m_index;
  std::uint64_t m_lookups = 0;
  Code m_last = 0;
  bool m_bInterning = true;
};

}  // namespace orvane::ado
