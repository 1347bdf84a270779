// A growing array of plain numbers in chunks: appending never moves what is there, reading by
// number takes constant time, and at most one chunk is unused room.
// Used by the columns of a recordset; one thread at a time.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <type_traits>
#include <vector>

namespace orvane::ado {

template <class T>
class Chunked {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  void Append(T value) {
    if (m_next == m_end) Grow();
    *m_next++ = value;
  }

  /// The number must be below the count of values appended.
  T operator[](std::size_t index) const { return m_chunks[index >> kChunkBits][index & kMask]; }

  /// Memory taken.
  std::size_t Bytes() const {
    return m_chunks.empty() ? 0 : ((m_chunks.size() - 1) * kChunk + m_firstRoom) * sizeof(T);
  }

 private:
  static constexpr std::size_t kChunkBits = 13;
  static constexpr std::size_t kChunk = std::size_t{1} << kChunkBits;
  static constexpr std::size_t kMask = kChunk - 1;
  static constexpr std::size_t kFirstRoom = 16;

  // Small recordsets stay small: the first chunk doubles until it is whole.
  void Grow() {
    if (m_chunks.size() == 1 && m_firstRoom < kChunk) {
      const std::size_t used = m_firstRoom;
      m_firstRoom = std::min(used * 2, kChunk);
      auto chunk = std::make_unique_for_overwrite<T[]>(m_firstRoom);
      std::copy_n(m_chunks.front().get(), used, chunk.get());
      m_chunks.front() = std::move(chunk);
      m_next = m_chunks.front().get() + used;
      m_end = m_chunks.front().get() + m_firstRoom;
      return;
    }
    const std::size_t room = m_chunks.empty() ? m_firstRoom : kChunk;
    m_chunks.push_back(std::make_unique_for_overwrite<T[]>(room));
    m_next = m_chunks.back().get();
    m_end = m_next + room;
  }

  std::vector<std::unique_ptr<T[]>> m_chunks;
  std::size_t m_firstRoom = kFirstRoom;
  T* m_next = nullptr;
  T* m_end = nullptr;
};

}  // namespace orvane::ado
