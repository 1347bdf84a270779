// Some thousand rows in one piece of memory that never changes, wherever that is: on the heap, or
// in a file that is mapped.
// Packed from columns by FetchedRows, read by any thread.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "ado/column.h"

namespace orvane::ado {

class RowBlock {
 public:
  /// Bytes that the rows take.
  static std::size_t BytesOf(std::span<const Column> columns);
  /// Writes so many bytes. The columns have equally many rows; the target is aligned to 8.
  static void Pack(std::span<const Column> columns, std::byte* target);

  /// What was packed, as long as it is there.
  explicit RowBlock(const std::byte* bytes) : m_bytes(bytes) {}

  /// The row and the column must be of the block.
  platform::Value ValueAt(std::size_t row, std::size_t column) const;
  /// Of a column of texts, without a copy; none for null and in any other column.
  std::optional<std::string_view> TextAt(std::size_t row, std::size_t column) const;
  /// The kind of all values of the column, and its texts, as in a CellRun.
  std::optional<platform::ValueKind> KindOf(std::size_t column) const;
  std::string_view TextsOf(std::size_t column) const;

 private:
  struct PackedColumn;

  const PackedColumn& ColumnAt(std::size_t column) const;
  bool IsNullAt(const PackedColumn& packed, std::size_t row) const;
  /// What the pool holds under the payload of a cell.
  std::string_view PooledAt(const PackedColumn& packed, std::uint64_t payload) const;
  static PackedColumn LayOut(const Column& column, std::size_t offset);

  const std::byte* m_bytes;
};

}  // namespace orvane::ado
