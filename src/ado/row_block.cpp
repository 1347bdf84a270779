#include "ado/row_block.h"

#include <cstring>

namespace orvane::ado {

using platform::Value;
using platform::ValueKind;

// Stands in front, once for each column: where its parts lie, from the beginning of the block.
struct RowBlock::PackedColumn {
  ValueKind kind;
  bool bMixed;
  std::uint32_t nullWords;
  std::uint64_t nulls;
  std::uint64_t wides;
  std::uint64_t words;
  std::uint64_t textEnds;
  std::uint64_t bytes;
  std::uint64_t texts;
  std::uint64_t end;
};

namespace {

template <class T>
T Load(const std::byte* bytes, std::uint64_t part, std::size_t index) {
  T value;
  std::memcpy(&value, bytes + part + index * sizeof(T), sizeof(T));
  return value;
}

template <class Values>
void Copy(std::byte* bytes, std::uint64_t part, const Values& values) {
  if (!values.empty()) {
    std::memcpy(bytes + part, values.data(), values.size() * sizeof(*values.data()));
  }
}

}  // namespace

// The wider parts come first, so that all are aligned.
RowBlock::PackedColumn RowBlock::LayOut(const Column& column, std::size_t offset) {
  PackedColumn packed{};
  packed.kind = column.m_kind;
  packed.bMixed = column.m_bMixed;
  packed.nullWords = static_cast<std::uint32_t>(column.m_nulls.size());
  packed.nulls = offset;
  packed.wides = packed.nulls + column.m_nulls.size() * sizeof(std::uint64_t);
  packed.words = packed.wides + column.m_wides.size() * sizeof(std::uint64_t);
  packed.textEnds = packed.words + column.m_words.size() * sizeof(std::uint32_t);
  packed.bytes = packed.textEnds + column.m_pool.Ends().size() * sizeof(std::uint32_t);
  packed.texts = packed.bytes + column.m_bytes.size();
  packed.end = (packed.texts + column.m_pool.Content().size() + 7) / 8 * 8;
  return packed;
}

std::size_t RowBlock::BytesOf(std::span<const Column> columns) {
  std::size_t offset = columns.size() * sizeof(PackedColumn);
  for (const Column& column : columns) offset = LayOut(column, offset).end;
  return offset;
}

void RowBlock::Pack(std::span<const Column> columns, std::byte* target) {
  std::size_t offset = columns.size() * sizeof(PackedColumn);
  std::byte* head = target;
  for (const Column& column : columns) {
    const PackedColumn packed = LayOut(column, offset);
    std::memcpy(head, &packed, sizeof packed);
    head += sizeof packed;
    Copy(target, packed.nulls, column.m_nulls);
    Copy(target, packed.wides, column.m_wides);
    Copy(target, packed.words, column.m_words);
    Copy(target, packed.textEnds, column.m_pool.Ends());
    Copy(target, packed.bytes, column.m_bytes);
    Copy(target, packed.texts, column.m_pool.Content());
    const std::uint64_t used = packed.texts + column.m_pool.Content().size();
    std::memset(target + used, 0, packed.end - used);
    offset = packed.end;
  }
}

const RowBlock::PackedColumn& RowBlock::ColumnAt(std::size_t column) const {
  return *reinterpret_cast<const PackedColumn*>(m_bytes + column * sizeof(PackedColumn));
}

std::optional<ValueKind> RowBlock::KindOf(std::size_t column) const {
  const PackedColumn& packed = ColumnAt(column);
  return packed.bMixed ? std::nullopt : std::optional(packed.kind);
}

std::string_view RowBlock::TextsOf(std::size_t column) const {
  const PackedColumn& packed = ColumnAt(column);
  const std::size_t texts = (packed.bytes - packed.textEnds) / sizeof(std::uint32_t);
  if (texts == 0) return {};
  return {reinterpret_cast<const char*>(m_bytes + packed.texts),
          Load<std::uint32_t>(m_bytes, packed.textEnds, texts - 1)};
}

Value RowBlock::ValueAt(std::size_t row, std::size_t column) const {
  const PackedColumn& packed = ColumnAt(column);
  const ValueKind kind =
      packed.bMixed ? static_cast<ValueKind>(Load<std::uint8_t>(m_bytes, packed.bytes, row))
                    : packed.kind;
  if (kind == ValueKind::Null) return {};
  if (IsNullAt(packed, row)) return {};
  std::uint64_t payload = 0;
  if (packed.bMixed || IsWide(kind)) {
    payload = Load<std::uint64_t>(m_bytes, packed.wides, row);
  } else if (kind == ValueKind::Boolean) {
    payload = Load<std::uint8_t>(m_bytes, packed.bytes, row);
  } else {
    payload = Load<std::uint32_t>(m_bytes, packed.words, row);
  }
  if (!IsPooled(kind)) return CellValue(kind, payload, {});
  return CellValue(kind, payload, PooledAt(packed, payload));
}

bool RowBlock::IsNullAt(const PackedColumn& packed, std::size_t row) const {
  return row / 64 < packed.nullWords &&
         (Load<std::uint64_t>(m_bytes, packed.nulls, row / 64) >> (row % 64) & 1) != 0;
}

std::string_view RowBlock::PooledAt(const PackedColumn& packed, std::uint64_t payload) const {
  const std::uint32_t begin =
      payload == 0 ? 0 : Load<std::uint32_t>(m_bytes, packed.textEnds, payload - 1);
  const std::uint32_t end = Load<std::uint32_t>(m_bytes, packed.textEnds, payload);
  return {reinterpret_cast<const char*>(m_bytes + packed.texts + begin), end - begin};
}

std::optional<std::string_view> RowBlock::TextAt(std::size_t row, std::size_t column) const {
  const PackedColumn& packed = ColumnAt(column);
  if (packed.bMixed || packed.kind != ValueKind::Text || IsNullAt(packed, row)) return std::nullopt;
  return PooledAt(packed, Load<std::uint32_t>(m_bytes, packed.words, row));
}

}  // namespace orvane::ado
