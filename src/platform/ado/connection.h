// Connection, command and properties, in the terms of ActiveX Data Objects.
// Implemented by the connection layer; one thread at a time.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "platform/ado/recordset.h"

namespace orvane::platform {

/// Schema rowsets by the numbers that data access publishes for them.
enum class SchemaNumber : std::int32_t {
  Catalogs = 1,
  Columns = 4,
  Indexes = 12,
  Tables = 20,
  ProviderTypes = 22,
  PrimaryKeys = 28,
};

constexpr Long kOptionUnspecified = -1;
/// Value of the connection property "Prompt": the provider always shows its logon dialog.
constexpr Long kPromptAlways = 1;
/// The connection property, and the item of a connection string, that names the server.
constexpr const char* kDataSource = "Data Source";

class Property {
 public:
  Property() = default;
  Property(const Property&) = delete;
  Property& operator=(const Property&) = delete;
  virtual ~Property() = default;

  virtual const Text& Name() const = 0;
  virtual platform::Value Value() const = 0;
  /// Fails with failure::kTypeMismatch for a value that the property cannot take.
  virtual void Value(const platform::Value& vtValue) = 0;
};

class Properties {
 public:
  Properties() = default;
  Properties(const Properties&) = delete;
  Properties& operator=(const Properties&) = delete;
  virtual ~Properties() = default;

  virtual Long Count() const = 0;
  /// By position from 0 or by name without regard to case; fails with failure::kItemNotFound.
  /// The reference lives as long as the connection.
  virtual Property& Item(const platform::Value& vtIndexName) = 0;
};

class Connection : public Object {
 public:
  virtual Text ConnectionString() const = 0;
  virtual void ConnectionString(const Text& sConnectionString) = 0;
  /// Before Open: "Prompt" and "Data Source"; the provider's own join them once it is named.
  virtual platform::Properties& Properties() = 0;
  /// Opens with the string, asking through the logon prompt when "Prompt" says so. On failure,
  /// also the user's Cancel (failure::kCancelled), the connection stays closed.
  virtual void Open(const Text& sConnectionString, const Text& sUserId, const Text& sPassword,
                    Long lOptions) = 0;
  virtual void Close() = 0;
  virtual Boolean IsOpen() const = 0;
  /// A null restriction is an unset one; missing ones at the end are unset too.
  virtual RecordsetPtr OpenSchema(SchemaNumber schema,
                                  std::span<const platform::Value> vtRestrictions = {}) = 0;
};

using ConnectionPtr = std::shared_ptr<Connection>;

/// Which way a parameter's value goes: only into the statement.
enum class ParameterDirection : std::int32_t { Input = 1 };

/// A value for one "?" of a statement, by position. Values never become part of the text.
class Parameter : public Object {
 public:
  virtual const Text& Name() const = 0;
  virtual DataType Type() const = 0;
  virtual platform::Value Value() const = 0;
  virtual void Value(const platform::Value& vtValue) = 0;
};

using ParameterPtr = std::shared_ptr<Parameter>;

class Parameters {
 public:
  Parameters() = default;
  Parameters(const Parameters&) = delete;
  Parameters& operator=(const Parameters&) = delete;
  virtual ~Parameters() = default;

  virtual Long Count() const = 0;
  /// Becomes the last one. Fails with failure::kInvalidArgument for one that this layer did not
  /// make.
  virtual void Append(const ParameterPtr& parameter) = 0;
  /// By position from 0 or by name without regard to case; fails with failure::kItemNotFound.
  virtual const ParameterPtr& Item(const platform::Value& vtIndexName) const = 0;
  virtual void Clear() = 0;
};

/// Takes rows as they are fetched, in pieces of some thousand, each a recordset of its own that
/// is not changed any more. Called on the thread of the fetch, one call at a time; what it throws
/// ends the statement and is what its caller gets.
using RowSink = std::function<void(const RecordsetPtr& rows)>;

/// Shown the growing recordset on the thread of the caller, a few times a second at most, while
/// its rows are fetched; the first time as soon as there are rows to be seen. Rows of a statement
/// that changes data are not shown before it is done. What it throws ends the statement and is
/// what its caller gets.
using RowsHandler = std::function<void(const RecordsetPtr& rs)>;

/// Gives the values for the next run of a statement; false when there is none. Called on the thread
/// of the statement, one call at a time, and ahead of the runs (see RowFailure); what it throws
/// undoes all and is what the caller gets. It owns what it uses: a cancelled statement may wait.
using ParameterRows = std::function<bool(std::vector<platform::Value>& values)>;

class Command : public Object {
 public:
  virtual void ActiveConnection(const ConnectionPtr& cn) = 0;
  virtual Text CommandText() const = 0;
  virtual void CommandText(const Text& sCommandText) = 0;
  /// Time-out in seconds; 0 waits for ever. 30 when never set.
  virtual Long CommandTimeout() const = 0;
  virtual void CommandTimeout(Long lSeconds) = 0;
  /// Row limit; 0 fetches all rows, which is also the initial value.
  virtual Long MaxRecords() const = 0;
  virtual void MaxRecords(Long lMaxRecords) = 0;
  /// Whether the command only reads: a statement that would change anything then fails with
  /// failure::kWouldChange, and nothing was changed. False when never set.
  virtual Boolean ReadOnly() const = 0;
  virtual void ReadOnly(Boolean bReadOnly) = 0;
  /// Made but not yet appended. The size is that of the type's longest value, 0 where it has none.
  virtual ParameterPtr CreateParameter(const Text& sName, DataType type,
                                       ParameterDirection direction, Long lSize,
                                       const Value& vtValue) = 0;
  /// One for each "?" of the text, in order; owned by the command.
  virtual platform::Parameters& Parameters() = 0;
  /// Has Execute run the statement once for each of these rows of values, instead of once with the
  /// Parameters: all runs in one transaction, so that all are done or none. RowsExpected is about
  /// each run. The values go to their columns as they are; no text is read as a time. Only for a
  /// statement that changes rows. Where a rule of the table would give up that row or another one
  /// for it, the row is refused, unless the statement itself says what to do. None, at first.
  virtual void Batch(ParameterRows rows) = 0;
  /// How many rows the statement must change: when it changes another number, Execute fails with
  /// failure::kConflict, and nothing was changed. With any, no other row is given up for one that
  /// conflicts with it, as for a Batch. None, at first, lets it change any number.
  virtual void RowsExpected(std::optional<RowIndex> rows) = 0;
  /// Whether rows that were fetched are kept when the user cancels, the time is over, or there is
  /// no more room: Execute then gives them, with FetchState::Stopped, instead of failing. Only
  /// for a statement that reads and has begun to give rows. False when never set.
  virtual void KeepRows(Boolean bKeep) = 0;
  /// Whether the statement gives way to the user: nothing tells of it while it runs, and what he
  /// does meanwhile ends it with failure::kCancelled. False when never set.
  virtual void GivesWay(Boolean /*bGivesWay*/) {}
  /// Called while rows are fetched; none at first.
  virtual void OnRows(RowsHandler handler) = 0;
  /// Rows go to the sink and are not kept: Execute gives an empty recordset with the fields, whose
  /// State tells how the fetch ended. None, at first, keeps them.
  virtual void Sink(RowSink sink) = 0;
  /// Ends the statement that this command is running, as the user's own Cancel does; called on the
  /// caller's thread out of a handler or an event that comes meanwhile. Otherwise does nothing.
  virtual void Cancel() {}
  /// Runs one statement and fetches its rows. A statement without rows gives an empty recordset
  /// without fields; the rows it changed are told through lRecordsAffected.
  virtual RecordsetPtr Execute(Long* lRecordsAffected = nullptr,
                               Long lOptions = kOptionUnspecified) = 0;
};

using CommandPtr = std::shared_ptr<Command>;

}  // namespace orvane::platform
