// One column of a recordset: a vector of the one kind its values have, with a null map. Texts,
// decimals, bytes and GUIDs are kept once each and referred to by number. A column that meets a
// second kind keeps a kind for each row from then on, so that every value stays exactly what it
// was. A column of nulls takes no room.
// Filled by RecordsetBuilder, read by ColumnarRecordset; one thread at a time.
#pragma once

#include <bit>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "ado/chunked.h"
#include "ado/text_pool.h"
#include "platform/ado/recordset.h"

namespace orvane::ado {

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
  void AppendText(std::string_view sText) {
    AppendWord(platform::ValueKind::Text, m_pool.Intern(sText));
  }
  void AppendBytes(std::span<const std::byte> bytes);
  /// Any value but an object, which fails with failure::kTypeMismatch.
  void AppendValue(const platform::Value& vtValue);

  platform::RowIndex RowCount() const { return static_cast<platform::RowIndex>(m_rows); }
  /// The row must be one of the column's rows.
  platform::Value ValueAt(platform::RowIndex row) const;
  /// The type that fits all values: Empty when all are null, the wider number where numbers
  /// differ, WChar where kinds differ otherwise.
  platform::DataType FittingType() const;
  /// Memory taken.
  std::size_t Bytes() const {
    return m_nulls.capacity() * sizeof(std::uint64_t) + m_bytes.Bytes() + m_words.Bytes() +
           m_wides.Bytes() + m_pool.Bytes();
  }
  /// Gives back what only appending needs.
  void Seal() { m_pool.Seal(); }

 private:
  void AppendWord(platform::ValueKind kind, std::uint32_t payload) {
    if (m_kind == kind) [[likely]] {
      m_words.Append(payload);
      ++m_rows;
    } else {
      AppendSlow(kind, payload);
    }
  }
  void AppendWide(platform::ValueKind kind, std::uint64_t payload) {
    if (m_kind == kind) [[likely]] {
      m_wides.Append(payload);
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
  Chunked<std::uint8_t> m_bytes;       // Booleans, or the kinds of a mixed column
  Chunked<std::uint32_t> m_words;      // values of 32 bits and numbers of texts
  Chunked<std::uint64_t> m_wides;      // values of 64 bits, or the payloads of a mixed column
  TextPool m_pool;
};

}  // namespace orvane::ado
