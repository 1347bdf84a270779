// The values of one column as keys by which rows are put in order: read once, then sorted without
// the recordset. The order is the engine's own: null, then numbers and points in time by value
// whatever their kind, then dates, times of day, texts by the rule of their column, GUIDs, bytes;
// or null behind all of them, where the column says so. Used by the arranger of rows; keys are
// filled on the thread of the recordset and sorted on any.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory_resource>
#include <string_view>
#include <vector>

#include "controls/order/row_order.h"

namespace orvane::controls {

/// What a column says of the order of its values.
struct ValueOrder {
  platform::TextOrder texts = platform::TextOrder::Bytes;
  bool bNullIsLast = false;  ///< what is no number stands in front of null then, otherwise with it
};

class SortKeys {
 public:
  /// The keys lie in the memory, which must outlive them, and fail as it does.
  explicit SortKeys(std::size_t expectedRows, ValueOrder order = {},
                    std::pmr::memory_resource* memory = std::pmr::new_delete_resource())
      : m_expected(expectedRows),
        m_order(order),
        m_nulls(memory),
        m_wides(memory),
        m_textKeys(memory),
        m_mixed(memory) {}

  /// The value of the next row.
  void Append(const platform::Value& vtValue);
  /// Puts the rows, which are as many as were appended and in that order, in the order of their
  /// keys; equal ones stay as they stand. Descending is the reverse. Ends early, with
  /// the rows as they stood, when bStop becomes true.
  void Sort(RowOrder::Numbers& rows, bool bAscending, const std::atomic<bool>& bStop);

 private:
  /// Of the values so far; a second family makes the keys mixed ones.
  enum class Family : std::uint8_t { None, Numbers, Doubles, Dates, Times, Texts, Mixed };
  struct WideKey {
    std::uint64_t key;
    std::uint32_t place;
  };
  struct TextKey {
    std::uint64_t prefix;
    std::uint64_t offset;
    std::uint32_t length;
    std::uint32_t place;
  };
  struct MixedKey {
    long double number;  ///< wide enough for every 64-bit integer and every double
    std::uint64_t offset;
    std::uint32_t length;  ///< of a text, of bytes, or of a decimal's digits
    std::uint32_t place;
    std::uint8_t rank;
  };

  static constexpr int kPieceShift = 32;
  static constexpr std::uint64_t kWithinPiece = 0xFFFF'FFFF;

  bool Belongs(Family family);
  void BecomeMixed();
  void AppendWide(std::uint64_t key);
  void AppendText(std::string_view sText);
  /// Keeps the bytes and gives where they are: the piece in the upper half, the place in it below.
  std::uint64_t Keep(std::string_view sText);
  std::uint64_t KeepText(std::string_view sText, std::uint32_t& length);
  void AppendMixed(const platform::Value& vtValue);
  /// Of a date or a time of day, which has its number already.
  void AsDay(MixedKey& key, const platform::Value& vtValue, std::uint8_t rank);
  std::string_view TextAt(std::uint64_t offset, std::uint32_t length) const {
    const std::pmr::vector<char>& piece = m_texts[static_cast<std::size_t>(offset >> kPieceShift)];
    return {piece.data() + (offset & kWithinPiece), length};
  }
  int Compare(const MixedKey& one, const MixedKey& other) const;
  void SortWide(bool bAscending, const std::atomic<bool>& bStop);
  void SortTexts(bool bAscending, const std::atomic<bool>& bStop);
  void SortMixed(bool bAscending, const std::atomic<bool>& bStop);

  std::size_t m_expected;
  ValueOrder m_order;
  Family m_family = Family::None;
  std::uint32_t m_places = 0;
  std::pmr::vector<std::uint32_t> m_nulls;
  std::pmr::vector<WideKey> m_wides;
  std::pmr::vector<TextKey> m_textKeys;
  std::pmr::vector<MixedKey> m_mixed;
  /// In pieces that never move: nobody waits for gigabytes to be copied into larger room.
  std::vector<std::pmr::vector<char>> m_texts;
  std::size_t m_textBytes = 0;
};

}  // namespace orvane::controls
