#include "ado/column.h"

#include <bit>
#include <cstring>
#include <type_traits>

#include "platform/failure.h"

namespace orvane::ado {

using platform::DataType;
using platform::Value;
using platform::ValueKind;

namespace {

constexpr std::uint16_t Bit(ValueKind kind) {
  return static_cast<std::uint16_t>(1U << static_cast<unsigned>(kind));
}

DataType TypeOf(ValueKind kind) {
  switch (kind) {
    case ValueKind::Boolean:
      return DataType::Boolean;
    case ValueKind::Long:
      return DataType::Integer;
    case ValueKind::LongLong:
      return DataType::BigInt;
    case ValueKind::Double:
      return DataType::Double;
    case ValueKind::Decimal:
      return DataType::Numeric;
    case ValueKind::Timestamp:
      return DataType::DBTimeStamp;
    case ValueKind::WallTime:
      return DataType::WallTime;
    case ValueKind::Date:
      return DataType::DBDate;
    case ValueKind::TimeOfDay:
      return DataType::DBTime;
    case ValueKind::Bytes:
      return DataType::Binary;
    case ValueKind::Guid:
      return DataType::Guid;
    case ValueKind::Null:
      return DataType::Empty;
    case ValueKind::Text:
    case ValueKind::Object:
      break;
  }
  return DataType::WChar;
}

std::string_view AsCharacters(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

bool IsWide(ValueKind kind) {
  return kind == ValueKind::LongLong || kind == ValueKind::Double || kind == ValueKind::Timestamp ||
         kind == ValueKind::TimeOfDay || kind == ValueKind::WallTime;
}

std::size_t TextBytes(const Value& vtValue) {
  if (const auto* const sText = vtValue.As<platform::Text>()) return sText->size();
  if (const auto* const bytes = vtValue.As<platform::Bytes>()) return bytes->size();
  return 0;
}

bool IsPooled(ValueKind kind) {
  return kind == ValueKind::Text || kind == ValueKind::Decimal || kind == ValueKind::Bytes ||
         kind == ValueKind::Guid;
}

DataType FittingType(std::uint16_t kinds) {
  if (std::has_single_bit(kinds)) return TypeOf(static_cast<ValueKind>(std::countr_zero(kinds)));
  constexpr std::uint16_t kIntegers = Bit(ValueKind::Long) | Bit(ValueKind::LongLong);
  if (kinds == 0) return DataType::Empty;
  if ((kinds & ~kIntegers) == 0) return DataType::BigInt;
  if ((kinds & ~(kIntegers | Bit(ValueKind::Double))) == 0) return DataType::Double;
  return DataType::WChar;
}

void Column::Shorten(platform::RowIndex rows) {
  const auto kept = static_cast<std::size_t>(rows);
  if (kept >= m_rows) return;
  if (kept / 64 < m_nulls.size()) m_nulls[kept / 64] &= ~(std::uint64_t{1} << (kept % 64));
  m_bytes.Shorten(kept);
  m_words.Shorten(kept);
  m_wides.Shorten(kept);
  m_rows = kept;
}

void Column::Clear() {
  m_kind = ValueKind::Null;
  m_bMixed = false;
  m_kindsSeen = 0;
  m_rows = 0;
  m_nulls.clear();
  m_bytes.clear();
  m_words.clear();
  m_wides.clear();
  m_pool.Clear();
}

void Column::AppendNull() {
  if (m_bMixed) {
    Store(ValueKind::Null, 0);
  } else if (m_kind != ValueKind::Null) {
    m_nulls.resize(m_rows / 64 + 1);
    m_nulls[m_rows / 64] |= std::uint64_t{1} << (m_rows % 64);
    Store(m_kind, 0);
  }
  ++m_rows;
}

void Column::AppendBytes(std::span<const std::byte> bytes) {
  AppendWord(ValueKind::Bytes, m_pool.Intern(AsCharacters(bytes)));
}

void Column::AppendValue(const Value& vtValue) {
  std::visit(
      [this](const auto& content) {
        using T = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<T, platform::Null>) {
          AppendNull();
        } else if constexpr (std::is_same_v<T, bool>) {
          AppendBoolean(content);
        } else if constexpr (std::is_same_v<T, std::int32_t>) {
          AppendLong(content);
        } else if constexpr (std::is_same_v<T, std::int64_t>) {
          AppendLongLong(content);
        } else if constexpr (std::is_same_v<T, double>) {
          AppendDouble(content);
        } else if constexpr (std::is_same_v<T, platform::Decimal>) {
          AppendWord(ValueKind::Decimal, m_pool.Intern(content.sDigits));
        } else if constexpr (std::is_same_v<T, platform::Text>) {
          AppendText(content);
        } else if constexpr (std::is_same_v<T, platform::Timestamp>) {
          AppendTimestamp(content);
        } else if constexpr (std::is_same_v<T, platform::WallTime>) {
          AppendWallTime(content);
        } else if constexpr (std::is_same_v<T, platform::Date>) {
          AppendWord(ValueKind::Date,
                     static_cast<std::uint32_t>(content.time_since_epoch().count()));
        } else if constexpr (std::is_same_v<T, platform::TimeOfDay>) {
          AppendWide(ValueKind::TimeOfDay, static_cast<std::uint64_t>(content.count()));
        } else if constexpr (std::is_same_v<T, platform::Bytes>) {
          AppendBytes(content);
        } else if constexpr (std::is_same_v<T, platform::Guid>) {
          AppendWord(ValueKind::Guid,
                     m_pool.Intern(AsCharacters(std::as_bytes(std::span(content.bytes)))));
        } else {
          static_assert(std::is_same_v<T, platform::ObjectPtr>);
          throw platform::Failure(platform::failure::kTypeMismatch,
                                  "A recordset cannot hold an object: give it a plain value.");
        }
      },
      vtValue.Content());
}

// The first value after nulls only, a value of another kind, and everything in a mixed column.
void Column::AppendSlow(ValueKind kind, std::uint64_t payload) {
  if (!m_bMixed && m_kind == ValueKind::Null) {
    m_kind = kind;
    m_nulls.resize((m_rows + 63) / 64);
    for (std::size_t row = 0; row < m_rows; ++row) {
      m_nulls[row / 64] |= std::uint64_t{1} << (row % 64);
      Store(kind, 0);
    }
  } else if (!m_bMixed && m_kind != kind) {
    BecomeMixed();
  }
  m_kindsSeen |= Bit(kind);
  Store(kind, payload);
  ++m_rows;
}

void Column::Store(ValueKind kind, std::uint64_t payload) {
  if (m_bMixed) {
    m_bytes.push_back(static_cast<std::uint8_t>(kind));
    m_wides.push_back(payload);
  } else if (IsWide(kind)) {
    m_wides.push_back(payload);
  } else if (kind == ValueKind::Boolean) {
    m_bytes.push_back(static_cast<std::uint8_t>(payload));
  } else {
    m_words.push_back(static_cast<std::uint32_t>(payload));
  }
}

void Column::BecomeMixed() {
  Growing<std::uint8_t> kinds;
  Growing<std::uint64_t> payloads;
  for (std::size_t row = 0; row < m_rows; ++row) {
    const bool bNull = IsNullAt(row);
    kinds.push_back(static_cast<std::uint8_t>(bNull ? ValueKind::Null : m_kind));
    payloads.push_back(bNull ? 0 : PayloadAt(row));
  }
  m_bMixed = true;
  m_kind = ValueKind::Null;
  m_nulls.clear();
  m_words.clear();
  m_bytes = std::move(kinds);
  m_wides = std::move(payloads);
}

std::uint64_t Column::PayloadAt(std::size_t row) const {
  if (m_bMixed || IsWide(m_kind)) return m_wides[row];
  return m_kind == ValueKind::Boolean ? m_bytes[row] : m_words[row];
}

Value Column::ValueAt(platform::RowIndex rowIndex) const {
  const auto row = static_cast<std::size_t>(rowIndex);
  const ValueKind kind = m_bMixed ? static_cast<ValueKind>(m_bytes[row]) : m_kind;
  if (kind == ValueKind::Null || IsNullAt(row)) return {};
  const std::uint64_t payload = PayloadAt(row);
  return CellValue(kind, payload,
                   IsPooled(kind) ? m_pool.At(static_cast<TextPool::Code>(payload)) : "");
}

Value CellValue(ValueKind kind, std::uint64_t payload, std::string_view sPooled) {
  const auto lPayload = static_cast<std::int32_t>(payload);
  const auto llPayload = static_cast<std::int64_t>(payload);
  switch (kind) {
    case ValueKind::Boolean:
      return payload != 0;
    case ValueKind::Long:
      return lPayload;
    case ValueKind::LongLong:
      return llPayload;
    case ValueKind::Double:
      return std::bit_cast<double>(payload);
    case ValueKind::Decimal:
      return platform::Decimal{platform::Text(sPooled)};
    case ValueKind::Text:
      return platform::Text(sPooled);
    case ValueKind::Timestamp:
      return platform::Timestamp(std::chrono::microseconds(llPayload));
    case ValueKind::WallTime:
      return platform::WallTime(std::chrono::microseconds(llPayload));
    case ValueKind::Date:
      return platform::Date(std::chrono::days(lPayload));
    case ValueKind::TimeOfDay:
      return platform::TimeOfDay(llPayload);
    case ValueKind::Bytes: {
      const auto bytes = std::as_bytes(std::span(sPooled));
      return platform::Bytes(bytes.begin(), bytes.end());
    }
    case ValueKind::Guid: {
      platform::Guid guid;
      std::memcpy(guid.bytes.data(), sPooled.data(), guid.bytes.size());
      return guid;
    }
    case ValueKind::Null:
    case ValueKind::Object:
      break;
  }
  return {};
}

}  // namespace orvane::ado
