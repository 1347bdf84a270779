#include "provider/engines/postgres/postgres_types.h"

namespace orvane::provider::engines {

using platform::DataType;

namespace {

constexpr TypeSchema kTypes[] = {
    {"integer", DataType::Integer, 10, nullptr, nullptr, nullptr, true},
    {"smallint", DataType::Integer, 5, nullptr, nullptr, nullptr, false},
    {"double precision", DataType::Double, 15, nullptr, nullptr, nullptr, true},
    {"real", DataType::Double, 6, nullptr, nullptr, nullptr, false},
    {"boolean", DataType::Boolean, 1, nullptr, nullptr, nullptr, true},
    {"bigint", DataType::BigInt, 19, nullptr, nullptr, nullptr, true},
    {"uuid", DataType::Guid, 38, "'", "'", nullptr, true},
    {"bytea", DataType::Binary, 1'000'000'000, "'\\x", "'", nullptr, true},
    {"text", DataType::WChar, 1'000'000'000, "'", "'", nullptr, true},
    {"varchar", DataType::WChar, 10'485'760, "'", "'", "length", false},
    {"numeric", DataType::Numeric, 1'000, nullptr, nullptr, "precision,scale", true},
    {"date", DataType::DBDate, 10, "'", "'", nullptr, true},
    {"time", DataType::DBTime, 15, "'", "'", nullptr, true},
    {"timestamptz", DataType::DBTimeStamp, 26, "'", "'", nullptr, true},
};

}  // namespace

std::span<const TypeSchema> PostgresTypes() {
  return kTypes;
}

DataType TypeOfOid(Oid type) {
  switch (static_cast<PostgresType>(type)) {
    case PostgresType::Bool:
      return DataType::Boolean;
    case PostgresType::Bytea:
      return DataType::Binary;
    case PostgresType::Int2:
    case PostgresType::Int4:
      return DataType::Integer;
    case PostgresType::Int8:
    case PostgresType::Oid:
      return DataType::BigInt;
    case PostgresType::Float4:
    case PostgresType::Float8:
      return DataType::Double;
    case PostgresType::Numeric:
      return DataType::Numeric;
    case PostgresType::Date:
      return DataType::DBDate;
    case PostgresType::Time:
      return DataType::DBTime;
    case PostgresType::Timestamp:
      return DataType::WallTime;
    case PostgresType::TimestampTz:
      return DataType::DBTimeStamp;
    case PostgresType::Uuid:
      return DataType::Guid;
    default:
      return DataType::WChar;
  }
}

platform::TextOrder TextOrderOf(Oid type, bool bBytes) {
  using platform::TextOrder;
  switch (static_cast<PostgresType>(type)) {
    case PostgresType::Text:
    case PostgresType::VarChar:
    case PostgresType::Name:
      return bBytes ? TextOrder::Bytes : TextOrder::Source;
    case PostgresType::BpChar:
      return bBytes ? TextOrder::TrailingBlanks : TextOrder::Source;
    case PostgresType::Date:
    case PostgresType::Time:
    case PostgresType::Timestamp:
    case PostgresType::TimestampTz:
    case PostgresType::Numeric:
      return TextOrder::BeyondValues;
    // The server has no order for them, so any is as good.
    case PostgresType::Json:
    case PostgresType::Xml:
    case PostgresType::Point:
    case PostgresType::LSeg:
    case PostgresType::Path:
    case PostgresType::Box:
    case PostgresType::Polygon:
    case PostgresType::Line:
    case PostgresType::Circle:
      return TextOrder::Bytes;
    default:
      return TypeOfOid(type) == DataType::WChar ? TextOrder::Source : TextOrder::Bytes;
  }
}

bool IsReadInBinary(Oid type) {
  switch (static_cast<PostgresType>(type)) {
    case PostgresType::Bool:
    case PostgresType::Bytea:
    case PostgresType::Char:
    case PostgresType::Name:
    case PostgresType::Int8:
    case PostgresType::Int2:
    case PostgresType::Int4:
    case PostgresType::Text:
    case PostgresType::Oid:
    case PostgresType::Json:
    case PostgresType::Xml:
    case PostgresType::Float4:
    case PostgresType::Float8:
    case PostgresType::Unknown:
    case PostgresType::BpChar:
    case PostgresType::VarChar:
    case PostgresType::Date:
    case PostgresType::Time:
    case PostgresType::Timestamp:
    case PostgresType::TimestampTz:
    case PostgresType::Numeric:
    case PostgresType::Uuid:
    case PostgresType::Jsonb:
      return true;
    default:
      return false;
  }
}

}  // namespace orvane::provider::engines
