// An array of plain numbers that grows, with nothing between a value and its place but one
// comparison: what a standard vector makes of that is a call for each value.
// Used by the columns of a block while it is filled; one thread at a time.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <type_traits>

namespace orvane::ado {

template <class T>
class Growing {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  Growing() = default;
  Growing(Growing&& other) noexcept { Swap(other); }
  Growing& operator=(Growing&& other) noexcept {
    Swap(other);
    return *this;
  }

  void push_back(T value) {
    if (m_next == m_end) [[unlikely]]
      Grow();
    *m_next++ = value;
  }
  T operator[](std::size_t index) const { return m_values[index]; }
  const T* data() const { return m_values.get(); }
  std::size_t size() const { return static_cast<std::size_t>(m_next - m_values.get()); }
  bool empty() const { return size() == 0; }
  std::size_t capacity() const { return static_cast<std::size_t>(m_end - m_values.get()); }
  /// Keeps the first values, no more than there are, and all room.
  void Shorten(std::size_t size) { m_next = m_values.get() + std::min(size, this->size()); }
  void clear() { Shorten(0); }

 private:
  [[gnu::noinline]] void Grow() {
    constexpr std::size_t kFirst = 16;
    const std::size_t used = size();
    const std::size_t room = std::max(kFirst, used * 2);
    auto values = std::make_unique_for_overwrite<T[]>(room);
    std::copy_n(m_values.get(), used, values.get());
    m_values = std::move(values);
    m_next = m_values.get() + used;
    m_end = m_values.get() + room;
  }
  void Swap(Growing& other) noexcept {
    std::swap(m_values, other.m_values);
    std::swap(m_next, other.m_next);
    std::swap(m_end, other.m_end);
  }

  std::unique_ptr<T[]> m_values;
  T* m_next = nullptr;
  T* m_end = nullptr;
};

}  // namespace orvane::ado
