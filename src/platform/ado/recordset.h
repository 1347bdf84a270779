// Rows as the server access sees them: fields, a current row, and rows by number.
// Implemented by the connection layer; used by the snap-in and the grids.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <variant>

#include "platform/value.h"

namespace orvane::platform {

/// Number of a row, from 0.
using RowIndex = std::int64_t;
/// Number of a column, from 0.
using ColumnIndex = std::int32_t;

/// Column types by the numbers that data access publishes for them; schema rowsets carry these
/// in "DATA_TYPE".
enum class DataType : std::int32_t {
  Empty = 0,
  Integer = 3,
  Double = 5,
  Boolean = 11,
  BigInt = 20,
  Guid = 72,
  Binary = 128,
  WChar = 130,
  Numeric = 131,
  DBDate = 133,
  DBTime = 134,
  DBTimeStamp = 135,
};

/// One column of a recordset, at the recordset's current row. Owned by its Fields.
class Field {
 public:
  Field() = default;
  Field(const Field&) = delete;
  Field& operator=(const Field&) = delete;
  virtual ~Field() = default;

  virtual const Text& Name() const = 0;
  virtual DataType Type() const = 0;
  /// False only when the source says that the column refuses null.
  virtual Boolean Nullable() const = 0;
  /// The value in the current row; fails with failure::kNoCurrentRow when there is none.
  virtual platform::Value Value() const = 0;
};

class Fields {
 public:
  Fields() = default;
  Fields(const Fields&) = delete;
  Fields& operator=(const Fields&) = delete;
  virtual ~Fields() = default;

  virtual Long Count() const = 0;
  /// By position from 0 (a number) or by name without regard to case (text). Fails with
  /// failure::kItemNotFound. The reference lives as long as the recordset.
  virtual Field& Item(const platform::Value& vtIndexName) = 0;
};

/// An open rowset. All rows are fetched when it is made; it stays usable after its connection
/// was closed.
class Recordset : public Object {
 public:
  virtual platform::Fields& Fields() = 0;
  /// True behind the last row and in an empty recordset. (The published name, in capitals, is a
  /// macro of the C library.)
  virtual Boolean Eof() const = 0;
  virtual Boolean Bof() const = 0;
  /// Fails with failure::kNoCurrentRow when Eof is already true.
  virtual void MoveNext() = 0;
  /// Goes to the first row; in an empty recordset does nothing.
  virtual void MoveFirst() = 0;
  virtual void MoveLast() = 0;
  /// The current row's number from 0, or RecordCount at the end.
  virtual RowIndex Position() const = 0;
  virtual void Position(RowIndex row) = 0;

  virtual RowIndex RecordCount() const = 0;
  virtual ColumnIndex FieldCount() const = 0;
  /// Name, type and nullability of a column without a current row.
  virtual const Field& FieldAt(ColumnIndex column) const = 0;
  /// Any cell, in constant time, without moving the current row.
  virtual platform::Value ValueAt(RowIndex row, ColumnIndex column) const = 0;

  /// True when the row limit cut the result: the server had more rows.
  virtual Boolean Truncated() const = 0;
  /// Time between sending the statement and having the last row.
  virtual std::chrono::microseconds Elapsed() const = 0;
};

using RecordsetPtr = std::shared_ptr<Recordset>;

}  // namespace orvane::platform
