// The distinct texts (and other byte strings) of one column, each kept once and known by a
// number. A column whose texts hardly repeat stops looking for repetitions and only stores.
// Used by the columns of a recordset; one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace orvane::ado {

class TextPool {
 public:
  using Code = std::uint32_t;

  /// The number of the text, which is copied when it is new.
  Code Intern(std::string_view sText) {
    if (m_last < m_entries.size() && m_entries[m_last] == sText) return m_last;
    return m_last = Find(sText);
  }
  /// Lives as long as the pool.
  std::string_view At(Code code) const { return m_entries[code]; }
  std::size_t Count() const { return m_entries.size(); }
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
  std::vector<Slot> m_index;
  std::uint64_t m_lookups = 0;
  Code m_last = 0;
  bool m_bInterning = true;
};

}  // namespace orvane::ado
