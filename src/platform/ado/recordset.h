// Rows as the server access sees them: fields, a current row, and rows by number.
// Implemented by the connection layer; used by the snap-in and the grids.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <memory_resource>
#include <optional>
#include <span>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/failure.h"
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
  WallTime = 1135,  ///< of this system alone: a time without a zone
};

/// By what the source puts the texts of a column in order.
enum class TextOrder : std::uint8_t {
  Bytes,           ///< of their UTF-8
  NoCase,          ///< the same, with the letters A to Z as small ones
  TrailingBlanks,  ///< the same as bytes, without the blanks at the end
  /// As values of the column's type for which there is no other form: what begins with "-" or ends
  /// in " BC" before all values of the type, the latest first where they are years; others behind
  /// them. The column takes them (see ReadBeyond).
  BeyondValues,
  Source,  ///< in a way that only the source knows
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
  /// True where the column holds points in time: also where the source gives them as numbers of
  /// days since 1899-12-30.
  virtual Boolean HoldsTimes() const {
    return Type() == DataType::DBTimeStamp || Type() == DataType::WallTime;
  }
  /// False only when the source says that the column refuses null.
  virtual Boolean Nullable() const = 0;
  virtual platform::TextOrder TextOrder() const { return platform::TextOrder::Bytes; }
  /// Where the source puts null: before all values, or behind them, and there also what is no
  /// number, between the numbers and null. Descending is the reverse.
  virtual Boolean NullIsLast() const { return false; }
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

/// How far the fetching of a rowset has come. Each but the first is for good.
enum class FetchState : std::uint8_t {
  Running,    ///< more rows are coming
  Complete,   ///< all rows are here
  Truncated,  ///< the row limit cut the result: the server had more rows
  Stopped,    ///< ended before the last row; FetchRemark says why
};

/// The cells of one column in rows that lie together; for who looks through many of them.
struct CellRun {
  RowIndex begin = 0;
  RowIndex end = 0;  ///< behind the last row
  /// Of all values; Null where there are none, nothing where they differ in it.
  std::optional<ValueKind> kind = {};
  /// Of texts: each that there is, once at least, one behind the other in any order. Lives as long
  /// as the recordset.
  std::string_view texts = {};
};

/// Where the rows of a statement are stored, where each of them is one row of one table.
struct RowSource {
  Text sCatalog;
  Text sTable;  ///< empty where the rows are not those of one table
  /// Of each column the table's own name for it; empty for what the statement works out, and for a
  /// column that stands further to the left already.
  std::vector<Text> columns;
  Text sWhyNone;  ///< without a table one sentence; empty where nothing is known
};

/// What the overlay has made of a row.
enum class RowState : std::uint8_t { Fetched, Edited, New, Deleted };

/// An open rowset; it stays usable after its connection was closed. Its rows may still be coming:
/// then RecordCount grows, and the rows that are counted never change. Over what was fetched lies
/// what was edited: values, new rows behind the last one, deleted rows. Nothing of that is sent by
/// itself. A row keeps its number until its overlay is taken away.
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

  /// The text of a cell without a copy, as long as the recordset lives and the row is not edited.
  /// None where the cell holds something else, or is not held so: then ValueAt has it.
  virtual std::optional<std::string_view> TextAt(RowIndex /*row*/, ColumnIndex /*column*/) const {
    return std::nullopt;
  }

  /// What is known of the cell and of those in the rows around it; of a row that is there.
  virtual CellRun RunAt(RowIndex row, ColumnIndex /*column*/) const { return {row, row + 1}; }

  /// True when the row limit cut the result: the server had more rows.
  virtual Boolean Truncated() const = 0;
  virtual FetchState State() const {
    return Truncated() ? FetchState::Truncated : FetchState::Complete;
  }
  /// Of a stopped fetch one sentence with what ended it; otherwise empty.
  virtual Text FetchRemark() const { return {}; }
  /// Of a stopped fetch the number of the failure that ended it; otherwise 0.
  virtual Long FetchFailure() const { return 0; }
  /// Time between sending the statement and having the last row.
  virtual std::chrono::microseconds Elapsed() const = 0;

  /// Whose rows these are, as far as their source tells.
  virtual const RowSource& Source() const {
    static const RowSource kUnknown;
    return kUnknown;
  }

  /// Memory for what is worked out of the rows and grows with their number; it counts as they do
  /// and goes on in temporary files. Fails with std::bad_alloc, and with failure::kStorage where
  /// the disk has no room either. For any thread; never null.
  virtual std::shared_ptr<std::pmr::memory_resource> Memory() const {
    return {std::shared_ptr<void>(), std::pmr::new_delete_resource()};
  }

  /// Rows as they were fetched; RecordCount counts new rows too.
  virtual RowIndex FetchedCount() const { return RecordCount(); }
  /// The cell as it was fetched; null in a new row.
  virtual platform::Value OriginalAt(RowIndex row, ColumnIndex column) const {
    return ValueAt(row, column);
  }
  virtual RowState StateAt(RowIndex /*row*/) const { return RowState::Fetched; }
  /// True when the cell was given a value that was not sent yet, also one equal to the original.
  virtual Boolean IsEdited(RowIndex /*row*/, ColumnIndex /*column*/) const { return false; }
  /// The rows that are not as they were fetched, in the order of their numbers.
  virtual std::vector<RowIndex> PendingRows() const { return {}; }
  /// Whether the row is one of those, and how many there are.
  virtual Boolean IsPending(RowIndex row) const {
    const std::vector<RowIndex> rows = PendingRows();
    return std::find(rows.begin(), rows.end(), row) != rows.end();
  }
  virtual RowIndex PendingCount() const { return static_cast<RowIndex>(PendingRows().size()); }
  /// Lays a value over the cell. A kind that differs from the column's is kept as it is given.
  virtual void ValueAt(RowIndex /*row*/, ColumnIndex /*column*/, const platform::Value& /*vt*/) {
    FailReadOnly();
  }
  /// Takes the value away that was laid over the cell.
  virtual void Restore(RowIndex /*row*/, ColumnIndex /*column*/) { FailReadOnly(); }
  /// Adds a row behind the last one, without values, and gives its number.
  virtual RowIndex AddNew() { FailReadOnly(); }
  /// Marks the row as one to be deleted; its cells can still be read.
  virtual void Delete(RowIndex /*row*/) { FailReadOnly(); }
  /// Takes away all that lies over the row. A new row stays as one without values, deleted, so
  /// that the numbers of others stay.
  virtual void CancelUpdate(RowIndex /*row*/) { FailReadOnly(); }
  /// What lies over the row was stored: the values become its fetched ones, a new row an ordinary
  /// one, a deleted one goes from PendingRows but stays Deleted. The values, one for each column,
  /// are the row as the server has it now; none are those that were laid over it.
  virtual void Accept(RowIndex /*row*/, std::span<const platform::Value> /*stored*/ = {}) {
    FailReadOnly();
  }

 private:
  [[noreturn]] static void FailReadOnly() {
    throw Failure(failure::kNotSupported,
                  "These rows cannot be edited: their source gives them to be looked at only.");
  }
};

using RecordsetPtr = std::shared_ptr<Recordset>;

}  // namespace orvane::platform
