// The values of one column as keys by which rows are put in order: read once, then sorted without
// the recordset. The order is the engine's own: null, then numbers and points in time by value
// whatever their kind, then dates, times of day, texts by the rule of their column, GUIDs, bytes.
// Used by the arranger of rows; keys are filled on the thread of the recordset and sorted on any.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "controls/order/row_order.h"

namespace orvane::controls {

class SortKeys {
 public:
  /// Bytes of text beyond which keys are not kept.
  static constexpr std::size_t kMostTextBytes = std::size_t{1} << 30;

  /// Texts stand in that order.
  explicit SortKeys(std::size_t expectedRows,
                    platform::TextOrder order = platform::TextOrder::Bytes)
      : m_expected(expectedRows), m_order(order) {}

  /// The value of the next row.
  void Append(const platform::Value& vtValue);
  /// False when the texts are more than can be kept; what is appended then counts for nothing.
  bool HaveRoom() const { return m_texts.size() <= kMostTextBytes; }
  /// Puts the rows, which are as many as were appended and in that order, in the order of their
  /// keys; equal ones stay as they stand. Descending is the reverse, null last. Ends early, with
  /// rows in any order, when bStop becomes true.
  void Sort(std::vector<RowOrder::Number>& rows, bool bAscending, const std::atomic<bool>& bStop);

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

  bool Belongs(Family family);
  void BecomeMixed();
  void AppendWide(std::uint64_t key);
  void AppendText(std::string_view sText);
  std::size_t KeepText(std::string_view sText);
  void AppendMixed(const platform::Value& vtValue);
  std::string_view TextAt(std::uint64_t offset, std::uint32_t length) const {
    return std::string_view(m_texts).substr(offset, length);
  }
  int Compare(const MixedKey& one, const MixedKey& other) const;
  void SortWide(bool bAscending, const std::atomic<bool>& bStop);
  void SortTexts(bool bAscending, const std::atomic<bool>& bStop);
  void SortMixed(bool bAscending, const std::atomic<bool>& bStop);

  std::size_t m_expected;
  platform::TextOrder m_order;
  Family m_family = Family::None;
  std::uint32_t m_places = 0;
  std::vector<std::uint32_t> m_nulls;
  std::vector<WideKey> m_wides;
  std::vector<TextKey> m_textKeys;
  std::vector<MixedKey> m_mixed;
  std::string m_texts;
};

/// -1, 0 or 1 as the first decimal is less than, equal to or greater than the second; both as
/// canonical digits, however many.
int CompareDecimals(std::string_view sOne, std::string_view sOther);

}  // namespace orvane::controls
