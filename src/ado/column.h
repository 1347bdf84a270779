// One column of a block of rows while it is filled: a vector of the one kind its values have, with
// a null map. Texts, decimals, bytes and GUIDs are kept once each and referred to by number. A
// column that meets a second kind keeps a kind for each row from then on, so that every value stays
// exactly what it was. A column of nulls takes no room.
// Filled by whoever fetches rows, packed into a RowBlock, cleared and filled again; one thread at a
// time.
#pragma once

#include <bit>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "ado/growing.h"
#include "ado/text_pool.h"
#include "platform/ado/recordset.h"

namespace orvane::ado {

/// The type that fits values of these kinds, a bit for each without null: Empty for none, the wider
/// number where numbers differ, WChar where kinds differ otherwise.
platform::DataType FittingType(std::uint16_t kinds);

/// The value of a cell as it is kept: a payload, which for texts, decimals, bytes and GUIDs only
/// finds their bytes.
platform::Value CellValue(platform::ValueKind kind, std::uint64_t payload,
                          std::string_view sPooled);
/// Bytes of a text or of bytes, 0 of any other value.
std::size_t TextBytes(const platform::Value& vtValue);
bool IsPooled(platform::ValueKind kind);
bool IsWide(platform::ValueKind kind);

class Column {
 public:
  void AppendNull();
  void AppendBoolean(bool bValue) { AppendSlow(platform::ValueKind::Boolean, bValue ? 1 : 0); }
  void AppendLong(std::int32_t lValue) {
    AppendWord(platform::ValueKind::Long, static_cast<std::uint32_t>(lValue));
  }
  void AppendLongLong(std::int64_t llValue) {
    AppendWide(platform::ValueKind::LongLong, static_cast<std::uint64_t>(llValue));
  }
  void AppendDouble(double dValue) {
    AppendWide(platform::ValueKind::Double, std::bit_cast<std::uint64_t>(dValue));
  }
  void AppendTimestamp(platform::Timestamp timestamp) {
    AppendWide(platform::ValueKind::Timestamp,
               static_cast<std::uint64_t>(timestamp.time_since_epoch().count()));
  }
  void AppendWallTime(platform::WallTime wall) {
    AppendWide(platform::ValueKind::WallTime,
               static_cast<std::uint64_t>(wall.time_since_epoch().count()));
  }
  void AppendText(std::string_view sText) {
    AppendWord(platform::ValueKind::Text, m_pool.Intern(sText));
  }
  void AppendBytes(std::span<const std::byte> bytes);
  /// Any value but an object, which fails with failure::kTypeMismatch.
  void AppendValue(const platform::Value& vtValue);

  platform::RowIndex RowCount() const { return static_cast<platform::RowIndex>(m_rows); }
  /// The row must be one of the column's rows.
  platform::Value ValueAt(platform::RowIndex row) const;
  /// The kinds of all values but null, a bit for each.
  std::uint16_t KindsSeen() const { return m_kindsSeen; }
  platform::DataType FittingType() const { return ado::FittingType(m_kindsSeen); }
  /// Memory taken.
  std::size_t Bytes() const {
    return m_nulls.capacity() * sizeof(std::uint64_t) + m_bytes.capacity() +
           m_words.capacity() * sizeof(std::uint32_t) + m_wides.capacity() * sizeof(std::uint64_t) +
           m_pool.Bytes();
  }
  /// Takes the rows from there on away, at most the last one.
  void Shorten(platform::RowIndex rows);
  /// Takes all rows away and keeps their room.
  void Clear();

 private:
  friend class RowBlock;

  void AppendWord(platform::ValueKind kind, std::uint32_t payload) {
    if (m_kind == kind) [[likely]] {
      m_words.push_back(payload);
      ++m_rows;
    } else {
      AppendSlow(kind, payload);
    }
  }
  void AppendWide(platform::ValueKind kind, std::uint64_t payload) {
    if (m_kind == kind) [[likely]] {
      m_wides.push_back(payload);
      ++m_rows;
    } else {
      AppendSlow(kind, payload);
    }
  }
  void AppendSlow(platform::ValueKind kind, std::uint64_t payload);
  void Store(platform::ValueKind kind, std::uint64_t payload);
  void BecomeMixed();
  bool IsNullAt(std::size_t row) const {
    return row / 64 < m_nulls.size() && (m_nulls[row / 64] >> (row % 64) & 1) != 0;
  }
  std::uint64_t PayloadAt(std::size_t row) const;

  platform::ValueKind m_kind =
      platform::ValueKind::Null;  // of all values; Null before the first and in a mixed column
  bool m_bMixed = false;
  std::uint16_t m_kindsSeen = 0;
  std::size_t m_rows = 0;
  std::vector<std::uint64_t> m_nulls;  // one bit a row, only as far as the last null
  Growing<std::uint8_t> m_bytes;       // Booleans, or the kinds of a mixed column
  Growing<std::uint32_t> m_words;      // values of 32 bits and numbers of texts
  Growing<std::uint64_t> m_wides;      // values of 64 bits, or the payloads of a mixed column
  TextPool m_pool;
};

}  // namespace orvane::ado
