// PostgreSQL's built-in types by the numbers that its catalog gives them for good (pg_type.dat of
// its sources), as far as this program knows them as more than a text. Constants, any thread.
#pragma once

#include <libpq-fe.h>

#include <span>

#include "provider/engines/engine.h"

namespace orvane::provider::engines {

enum class PostgresType : Oid {
  Any = 0,
  Bool = 16,
  Bytea = 17,
  Char = 18,
  Name = 19,
  Int8 = 20,
  Int2 = 21,
  Int4 = 23,
  Text = 25,
  Oid = 26,
  Json = 114,
  Xml = 142,
  Point = 600,
  LSeg = 601,
  Path = 602,
  Box = 603,
  Polygon = 604,
  Line = 628,
  Float4 = 700,
  Float8 = 701,
  Unknown = 705,
  Circle = 718,
  BpChar = 1042,
  VarChar = 1043,
  Date = 1082,
  Time = 1083,
  Timestamp = 1114,
  TimestampTz = 1184,
  Numeric = 1700,
  Uuid = 2950,
  Jsonb = 3802,
};

/// The column type for a type of the server; WChar for what is known as its text only.
platform::DataType TypeOfOid(Oid type);

/// By what the server puts the values of the type in order that are texts here; bBytes where those
/// of the column stand by their bytes.
platform::TextOrder TextOrderOf(Oid type, bool bBytes);

/// True when a value of the type is read in the server's binary form.
bool IsReadInBinary(Oid type);

/// The types that columns can be declared with.
std::span<const TypeSchema> PostgresTypes();

}  // namespace orvane::provider::engines
